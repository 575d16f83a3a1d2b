#include "desk/output/pdf_file.h"

#include <pthread.h>
#include <signal.h>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>

namespace desk {
namespace {

/// Objects in one object stream: enough to deflate well, few enough to read one page without reading much.
constexpr size_t objectsInAStream = 128;
constexpr size_t bytesInAnObjectStream = 1u << 17;

/// A batch goes to the background when it is this large, so that the threads seldom have to wake each other.
constexpr size_t bytesInABatch = 1u << 16;
/// Batches that may wait; then the producer waits.
constexpr size_t batchesWaiting = 8;
/// Memory of a written batch that is kept for the next.
constexpr size_t keptBatchBytes = 1u << 20;

}  // namespace

/// One thread that writes batches in the order of their coming. Its failure is thrown at the producer's next call.
class PdfFile::Background {
  public:
    explicit Background(BodyWriter& body) : body_(body) {
        // Signals are for the program's own threads; a file that grows too large shall fail the write, not the process.
        sigset_t all, before;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before);
        try {
            thread_ = std::thread([this] { run(); });
        } catch (...) {
            pthread_sigmask(SIG_SETMASK, &before, nullptr);
            throw;
        }
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }

    ~Background() {
        {
            const std::lock_guard lock(mutex_);
            closing_ = true;
            waiting_.clear();
        }
        changed_.notify_all();
        if (thread_.joinable()) thread_.join();
    }

    /// Takes the batch and gives an empty one in its place. Throws what the thread failed with.
    void exchange(Batch& batch) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return waiting_.size() < batchesWaiting || failure_; });
        if (failure_) std::rethrow_exception(failure_);
        waiting_.push_back(std::move(batch));
        batch = Batch();
        if (!written_.empty()) {
            batch = std::move(written_.back());
            written_.pop_back();
        }
        lock.unlock();
        changed_.notify_all();
    }

    /// Waits until everything is written. Throws what the thread failed with.
    void drain() {
        {
            const std::lock_guard lock(mutex_);
            closing_ = true;
        }
        changed_.notify_all();
        thread_.join();
        if (failure_) std::rethrow_exception(failure_);
    }

    void throwFailure() {
        if (!failed_.load(std::memory_order_acquire)) return;
        const std::lock_guard lock(mutex_);
        std::rethrow_exception(failure_);
    }

  private:
    void run() {
        std::unique_lock lock(mutex_);
        for (;;) {
            changed_.wait(lock, [this] { return !waiting_.empty() || closing_; });
            if (waiting_.empty()) return;
            Batch batch = std::move(waiting_.front());
            waiting_.pop_front();
            if (waiting_.size() + 1 == batchesWaiting) changed_.notify_all();
            lock.unlock();
            std::exception_ptr failure;
            try {
                body_.write(batch);
                batch.clear();
                if (batch.text.capacity() > keptBatchBytes) batch = Batch();
            } catch (...) {
                failure = std::current_exception();
            }
            lock.lock();
            if (failure) {
                failure_ = failure;
                failed_.store(true, std::memory_order_release);
                waiting_.clear();
                changed_.notify_all();
                return;
            }
            written_.push_back(std::move(batch));
        }
    }

    BodyWriter& body_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Batch> waiting_;
    std::vector<Batch> written_;
    bool closing_ = false;
    std::exception_ptr failure_;
    std::atomic<bool> failed_ = false;
    std::thread thread_;
};

PdfFile::PdfFile(const std::string& path, int compressionLevel, Writing writing) : body_(path, compressionLevel) {
    if (writing == Writing::InBackground) background_ = std::make_unique<Background>(body_);
}

PdfFile::~PdfFile() = default;

void PdfFile::writeStream(ObjectNumber number, std::string_view entries, std::string_view bytes, StreamBytes kind) {
    if (background_) background_->throwFailure();
    Batch::Piece piece;
    piece.number = number;
    piece.entries = batch_.text.size();
    batch_.text.append(entries);
    piece.bytes = batch_.text.size();
    batch_.text.append(bytes);
    piece.end = batch_.text.size();
    piece.compressed = kind == StreamBytes::Deflate;
    batch_.pieces.push_back(piece);
    if (batch_.text.size() >= bytesInABatch) passOn();
}

void PdfFile::writeObject(ObjectNumber number, std::string_view object) {
    packedPlaces_.integer(number).append(' ').integer(static_cast<int64_t>(packedObjects_.size())).append(' ');
    packedObjects_.append(object).append('\n');
    packedNumbers_.push_back(number);
    if (packedNumbers_.size() == objectsInAStream || packedObjects_.size() >= bytesInAnObjectStream)
        closeObjectStream();
}

void PdfFile::closeObjectStream() {
    if (packedNumbers_.empty()) return;
    ContentBuffer entries;
    entries.append("/Type/ObjStm/N ").integer(static_cast<int64_t>(packedNumbers_.size()));
    entries.append("/First ").integer(static_cast<int64_t>(packedPlaces_.size()));
    packedPlaces_.append(packedObjects_.view());
    const size_t firstPacked = batch_.packed.size();
    batch_.packed.insert(batch_.packed.end(), packedNumbers_.begin(), packedNumbers_.end());
    Batch::Piece piece;
    piece.number = allocate();
    piece.entries = batch_.text.size();
    batch_.text.append(entries.view());
    piece.bytes = batch_.text.size();
    batch_.text.append(packedPlaces_.view());
    piece.end = batch_.text.size();
    piece.packed = firstPacked;
    piece.packedCount = packedNumbers_.size();
    batch_.pieces.push_back(piece);
    packedPlaces_.clear();
    packedObjects_.clear();
    packedNumbers_.clear();
    if (batch_.text.size() >= bytesInABatch) passOn();
}

void PdfFile::passOn() {
    if (background_) {
        background_->exchange(batch_);
    } else {
        body_.write(batch_);
        batch_.clear();
    }
}

void PdfFile::finish(ObjectNumber catalog, ObjectNumber info) {
    closeObjectStream();
    passOn();
    if (background_) background_->drain();
    body_.finish(allocate(), catalog, info);
}

}  // namespace desk
