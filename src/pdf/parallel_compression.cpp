#include "pdf/parallel_compression.h"

#include <algorithm>
#include <system_error>

#include "pdf/stream_compression.h"

namespace vornaset {

namespace {

/// Below this many bytes a thread costs more than it gives.
constexpr size_t kWorthAThread = size_t{64} * 1024;
/// How many jobs the threads may be ahead of the writer: their results are held beside the data that they replace.
constexpr size_t kWindow = 256;

}  // namespace

ParallelCompression::ParallelCompression(const ObjectList<MyPDFObj>& objects) {
    size_t bytes = 0;
    for (size_t place = 0; place < objects.count(); ++place) {
        MyPDFObj* object = objects.begin()[place].get();
        if (!MyPDFStream::isKind(object->kind())) continue;
        auto* stream = static_cast<MyPDFStream*>(object);
        if (stream->dataFormat() != kStreamRaw) continue;
        bytes += stream->data().length();
        jobs_.push_back({place, stream, stream->data(), Data(), State::waiting});
    }
    // Asking reads a file of the system, which costs more than a barcode's compression.
    static const size_t cores = std::max(1U, std::thread::hardware_concurrency());
    const size_t helpers = std::min({cores - 1, bytes / kWorthAThread, jobs_.size()});
    try {
        for (size_t number = 0; number < helpers; ++number) threads_.emplace_back([this] { work(); });
    } catch (const std::system_error&) {
        // Fewer threads, or none: the writer does what they don't.
    }
}

ParallelCompression::~ParallelCompression() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    changed_.notify_all();
    for (std::thread& thread : threads_) thread.join();
}

ParallelCompression::Job* ParallelCompression::claim() {
    while (nextJob_ < jobs_.size() && jobs_[nextJob_].state != State::waiting) ++nextJob_;
    if (nextJob_ >= jobs_.size() || nextJob_ >= finishedJobs_ + kWindow) return nullptr;
    return &jobs_[nextJob_++];
}

void ParallelCompression::run(Job& job, std::unique_lock<std::mutex>& lock) {
    job.state = State::running;
    lock.unlock();
    Data result = compressedData(job.data);
    lock.lock();
    job.result = std::move(result);
    job.state = State::done;
    changed_.notify_all();
}

void ParallelCompression::work() {
    std::unique_lock lock(mutex_);
    while (!stopping_) {
        if (Job* job = claim()) {
            run(*job, lock);
        } else if (nextJob_ >= jobs_.size()) {
            return;
        } else {
            changed_.wait(lock);
        }
    }
}

void ParallelCompression::finish(size_t place) {
    if (finishedJobs_ >= jobs_.size() || jobs_[finishedJobs_].place != place) return;
    Job& job = jobs_[finishedJobs_];
    {
        std::unique_lock lock(mutex_);
        // While a thread is at this stream, the writer does one that nobody has begun.
        while (job.state != State::done) {
            Job* next = job.state == State::waiting ? &job : claim();
            if (next != nullptr) {
                run(*next, lock);
            } else {
                changed_.wait(lock);
            }
        }
        ++finishedJobs_;
    }
    changed_.notify_all();
    if (job.stream->dataFormat() == kStreamRaw && job.stream->data().isSameObject(job.data)) {
        job.stream->takeCompressed(job.result);
    }
    job.data = Data();
    job.result = Data();
}

}  // namespace vornaset
