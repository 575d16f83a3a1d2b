#include "desk/output/picture_writer.h"

#include <cstring>

#include "desk/pictures/digest.h"

namespace desk {
namespace {

/// What is written for one picture, in bytes, from which on it is remembered for good.
constexpr uint64_t largePicture = 4096;

/// Small pictures of one generation.
constexpr size_t rememberedSmall = 1u << 14;

/// Shared objects (resources of placed pages, mostly) that are remembered.
constexpr size_t rememberedObjects = 1u << 12;

}  // namespace

const Resource* PictureWriter::find(const PictureIdentity& identity) {
    for (const Written* written : {&large_, &small_, &former_}) {
        const auto found = written->find(identity);
        if (found == written->end()) continue;
        if (written != &former_) return &found->second;
        return &small_.emplace(identity, found->second).first->second;
    }
    return nullptr;
}

Resource PictureWriter::use(const Picture& picture) {
    if (const Resource* known = find(picture.identity)) return *known;
    const uint64_t before = bytesWritten_;
    Resource resource{ResourceKind::XObject, 0, picture.write(*this)};
    resource.name = shared_.nextName(ResourceKind::XObject);
    if (bytesWritten_ - before >= largePicture) {
        large_.emplace(picture.identity, resource);
        return resource;
    }
    if (small_.size() >= rememberedSmall) {
        former_.swap(small_);
        small_.clear();
    }
    small_.emplace(picture.identity, resource);
    return resource;
}

void PictureWriter::writeObject(Number number, std::string_view object) {
    bytesWritten_ += object.size();
    shared_.file().writeObject(number, object);
}

void PictureWriter::writeEncodedStream(Number number, std::string_view entries, std::string_view bytes) {
    bytesWritten_ += entries.size() + bytes.size();
    shared_.file().writeStream(number, entries, bytes, StreamBytes::AsTheyAre);
}

void PictureWriter::writePlainStream(Number number, std::string_view entries, std::string_view bytes) {
    bytesWritten_ += entries.size() + bytes.size();
    shared_.file().writeStream(number, entries, bytes);
}

PictureSink::Number PictureWriter::shared(std::string_view object) {
    const auto found = objects_.find(object);
    if (found != objects_.end()) return found->second;
    if (objects_.size() >= rememberedObjects) objects_.clear();
    const Number number = allocate();
    writeObject(number, object);
    objects_.emplace(object, number);
    return number;
}

PictureSink::Number PictureWriter::sharedStream(std::string_view entries, std::string_view bytes) {
    Digest digest;
    digest.add(entries.data(), entries.size());
    digest.add(bytes.data(), bytes.size());
    const std::string value = digest.value();
    PictureIdentity identity;
    std::memcpy(identity.words.data(), value.data(), sizeof identity.words);
    Number& number = streams_[identity];
    if (number == 0) {
        number = allocate();
        writePlainStream(number, entries, bytes);
    }
    return number;
}

PictureSink::Number PictureWriter::known(const PictureIdentity& file, uint64_t object) {
    const auto parts = partsOfFiles_.find(file);
    if (parts == partsOfFiles_.end()) return 0;
    const auto found = parts->second.find(object);
    return found == parts->second.end() ? 0 : found->second;
}

void PictureWriter::remember(const PictureIdentity& file, uint64_t object, Number number) {
    partsOfFiles_[file].emplace(object, number);
}

// A reader shows every layer that the catalog doesn't know. ISO 32000-1, 8.11.4.
void PictureWriter::appendLayers(ContentBuffer& catalog) const {
    if (layers_.empty()) return;
    catalog.append("/OCProperties<</OCGs[");
    for (const auto& [layer, isShown] : layers_) catalog.integer(layer).append(" 0 R ");
    catalog.append("]/D<</OFF[");
    for (const auto& [layer, isShown] : layers_)
        if (!isShown) catalog.integer(layer).append(" 0 R ");
    catalog.append("]>>>>");
}

}  // namespace desk
