#pragma once
// Compresses the raw streams of a list of objects on all cores, ahead of the one thread that writes them.

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <thread>
#include <vector>

#include "pdf/object_collections.h"
#include "pdf/pdf_stream.h"

namespace vornaset {

/// The other threads see a stream's bytes alone, never the stream: the objects are the calling thread's.
class ParallelCompression {
  public:
    /// Starts threads when there is enough to do. The objects must not be edited while this lives, but by `finish`.
    explicit ParallelCompression(const ObjectList<MyPDFObj>& objects);
    /// Waits for the threads, which stop behind the stream that they are at.
    ~ParallelCompression();
    ParallelCompression(const ParallelCompression&) = delete;
    ParallelCompression& operator=(const ParallelCompression&) = delete;

    /// Gives the object at the place its compressed data, if it is a stream that waits for it. Places must come in
    /// ascending order.
    void finish(size_t place);

  private:
    enum class State { waiting, running, done };
    struct Job {
        size_t place;
        MyPDFStream* stream;
        Data data;
        Data result;
        State state = State::waiting;
    };

    void work();
    /// The next job that waits and lies within the window; null when there is none.
    Job* claim();
    void run(Job& job, std::unique_lock<std::mutex>& lock);

    std::vector<Job> jobs_;
    size_t nextJob_ = 0;       ///< the first that nobody has claimed, or one behind it
    size_t finishedJobs_ = 0;  ///< all before it have been taken
    bool stopping_ = false;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::thread> threads_;
};

}  // namespace vornaset
