#include "desk/pictures/picture_library.h"

#include <list>
#include <unordered_map>

#include "desk/pictures/converting_program.h"
#include "desk/pictures/stored_picture.h"

namespace desk {
namespace {

/// Files that are known at a time. Each takes some hundred bytes without its content.
constexpr size_t knownFiles = 16'384;

/// A file that was written just now and is as small as this is most likely used once: it isn't worth knowing.
constexpr uint64_t smallFile = 64u << 10;

}  // namespace

struct PictureLibrary::State {
    struct Entry;
    using Entries = std::unordered_map<FileStamp, Entry, FileStampHash>;
    using Order = std::list<Entries::iterator>;  // the longest unused first
    struct Entry {
        std::shared_ptr<StoredFile> file;  ///< null for a file that can't be used
        std::string failure;
        bool stampIsFirm = false;
        size_t held = 0;
        Order::iterator used;    ///< in `byUse`
        Order::iterator loaded;  ///< in `withContent`, as long as `held` isn't 0
    };
    struct Found {
        std::shared_ptr<StoredFile> file;
        std::string failure;  ///< without the picture's name
    };

    /// Throws PictureError for what can't even be read.
    Found find(const std::string& path);
    Found readAnew(const std::string& path);
    void holdFor(const PictureRequest& request, StoredFile& file);
    Entries::iterator entryOf(const FileStamp& stamp);
    void touch(Entries::iterator entry);
    void count(Entries::iterator entry);
    void keepBounds();
    void forget(Entries::iterator entry);

    size_t heldLimit = 0;
    size_t held = 0;
    uint64_t filesRead = 0;
    std::string lastFailure;
    Entries entries;
    Order byUse, withContent;
    /// The last file that wasn't worth knowing: asking for its pages and placing it are two readings.
    std::shared_ptr<StoredFile> last;
};

PictureLibrary::State::Found PictureLibrary::State::find(const std::string& path) {
    const Entries::iterator known = entries.find(stampOf(path));
    if (known == entries.end() || !known->second.stampIsFirm) return readAnew(path);
    touch(known);
    return {known->second.file, known->second.failure};
}

PictureLibrary::State::Found PictureLibrary::State::readAnew(const std::string& path) {
    ReadFile read = readWholeFile(path);
    ++filesRead;
    const PictureIdentity identity = identityOf(read.bytes);
    const Entries::iterator known = entries.find(read.stamp);
    if (known != entries.end()) {
        if (known->second.file && known->second.file->identity() == identity) {
            known->second.stampIsFirm = read.stampIsFirm;
            touch(known);
            return {known->second.file, {}};
        }
        forget(known);
    }
    const FileStamp stamp = read.stamp;
    const bool stampIsFirm = read.stampIsFirm;
    const bool worthKnowing = stampIsFirm || stamp.size > smallFile;
    Found found;
    if (last && last->identity() == identity) {
        found.file = last;
    } else {
        try {
            found.file = std::make_shared<StoredFile>(path, std::make_shared<const std::string>(std::move(read.bytes)),
                                                      identity);
        } catch (const ConversionStopped&) {
            throw;
        } catch (const PictureError& failure) {
            found.failure = failure.what();
        }
    }
    if (!worthKnowing) {
        last = found.file;
        return found;
    }
    const Entries::iterator entry = entryOf(stamp);
    entry->second.file = found.file;
    entry->second.failure = found.failure;
    entry->second.stampIsFirm = stampIsFirm;
    count(entry);
    keepBounds();
    return found;
}

/// A page that wasn't asked for yet needs the content; where it was let go, others of its pages may well come next.
void PictureLibrary::State::holdFor(const PictureRequest& request, StoredFile& file) {
    if (file.heldBytes() > 0 || file.knows(request.page, request.box) || byUse.empty()) return;
    const Entries::iterator entry = byUse.back();  // find() has just put it there
    if (entry->second.file.get() != &file) return;
    file.load();
    count(entry);
    keepBounds();
}

PictureLibrary::State::Entries::iterator PictureLibrary::State::entryOf(const FileStamp& stamp) {
    const Entries::iterator entry = entries.try_emplace(stamp).first;
    entry->second.used = byUse.insert(byUse.end(), entry);
    return entry;
}

void PictureLibrary::State::touch(Entries::iterator entry) {
    byUse.splice(byUse.end(), byUse, entry->second.used);
    if (entry->second.held > 0) withContent.splice(withContent.end(), withContent, entry->second.loaded);
}

/// Takes in what the file holds now.
void PictureLibrary::State::count(Entries::iterator entry) {
    const size_t holds = entry->second.file ? entry->second.file->heldBytes() : 0;
    if (holds > 0 && entry->second.held == 0) entry->second.loaded = withContent.insert(withContent.end(), entry);
    if (holds == 0 && entry->second.held > 0) withContent.erase(entry->second.loaded);
    held += holds - entry->second.held;
    entry->second.held = holds;
}

void PictureLibrary::State::keepBounds() {
    // The newest stays, however large it is: it is about to be used.
    while (held > heldLimit && withContent.size() > 1) {
        const Entries::iterator entry = withContent.front();
        entry->second.file->letGo();
        count(entry);
    }
    while (entries.size() > knownFiles) forget(byUse.front());
}

void PictureLibrary::State::forget(Entries::iterator entry) {
    if (entry->second.held > 0) withContent.erase(entry->second.loaded);
    held -= entry->second.held;
    byUse.erase(entry->second.used);
    entries.erase(entry);
}

PictureLibrary::PictureLibrary(size_t heldBytes) : state_(std::make_unique<State>()) {
    state_->heldLimit = heldBytes;
}

PictureLibrary::~PictureLibrary() = default;

PictureImport PictureLibrary::import(const PictureRequest& request) {
    const auto failed = [&](const std::string& why) -> PictureImport {
        state_->lastFailure = sentenceAbout(request.path, why);
        return {nullptr, state_->lastFailure};
    };
    try {
        const State::Found found = state_->find(request.path);
        if (!found.file) return failed(found.failure);
        state_->holdFor(request, *found.file);
        return {found.file->picture(request.page, request.box, request.path), {}};
    } catch (const PictureError& failure) {
        return failed(failure.what());
    }
}

PictureImport PictureLibrary::importBytes(const std::shared_ptr<const std::string>& bytes, const std::string& name,
                                          int page, PageBox box) {
    try {
        if (!bytes || bytes->empty()) throw PictureError("is empty. Save it again");
        auto file = std::make_shared<StoredFile>(std::string(), bytes, identityOf(*bytes));
        return {file->picture(page, box, name), {}};
    } catch (const PictureError& failure) {
        return {nullptr, sentenceAbout(name, failure.what())};
    }
}

int PictureLibrary::pageCount(const std::string& path) {
    try {
        const State::Found found = state_->find(path);
        return found.file ? found.file->pageCount() : 0;
    } catch (const PictureError&) {
        return 0;
    }
}

const std::string& PictureLibrary::lastFailure() const {
    return state_->lastFailure;
}

uint64_t PictureLibrary::filesRead() const {
    return state_->filesRead;
}

}  // namespace desk
