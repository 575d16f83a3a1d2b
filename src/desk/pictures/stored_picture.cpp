#include "desk/pictures/stored_picture.h"

#include <cstring>

#include "desk/model/document.h"
#include "desk/pictures/digest.h"

namespace desk {
namespace {

PictureIdentity identityFrom(const Digest& digest) {
    const std::string value = digest.value();
    PictureIdentity identity;
    std::memcpy(identity.words.data(), value.data(), sizeof identity.words);
    return identity;
}

class StoredPicture final : public Picture {
  public:
    StoredPicture(std::shared_ptr<const StoredFile> file, PageBox box) : file_(std::move(file)), box_(box) {}

    PictureSink::Number write(PictureSink& sink) const override {
        try {
            return file_->content()->write(page, box_, file_->identity(), sink);
        } catch (const PictureError& failure) {
            throw InputError(sentenceAbout(path, failure.what()));
        }
    }

  private:
    std::shared_ptr<const StoredFile> file_;
    PageBox box_;
};

}  // namespace

PictureIdentity identityOf(std::string_view bytes) {
    Digest digest;
    digest.add(bytes.data(), bytes.size());
    return identityFrom(digest);
}

std::string sentenceAbout(const std::string& name, const std::string& what) {
    constexpr size_t longest = 200;
    std::string shown = name;
    if (shown.size() > longest) {
        size_t start = shown.size() - longest;
        while (start < shown.size() && (static_cast<unsigned char>(shown[start]) & 0xC0) == 0x80) ++start;
        shown = "..." + shown.substr(start);
    }
    for (char& c : shown)
        if (static_cast<unsigned char>(c) < 32 || c == 127) c = '?';
    return "The picture \"" + shown + "\" " + what + ".";
}

StoredFile::StoredFile(std::string path, const SharedBytes& bytes, const PictureIdentity& identity)
    : path_(std::move(path)),
      kept_(path_.empty() ? bytes : nullptr),
      format_(formatOf(*bytes)),
      identity_(identity),
      content_(readContent(format_, bytes)) {
    pageCount_ = content_->pageCount();
}

std::shared_ptr<const Picture> StoredFile::picture(int page, PageBox box, const std::string& name) {
    constexpr size_t rememberedPages = 4096;
    const Place place = placeOf(page, box);
    auto known = facts_.find(place);
    if (known == facts_.end()) {
        if (facts_.size() >= rememberedPages) facts_.clear();
        known = facts_.emplace(place, content()->facts(place.first, place.second)).first;
    }
    const PageFacts& facts = known->second;
    auto made = std::make_shared<StoredPicture>(shared_from_this(), place.second);
    made->format = format_;
    made->width = facts.width;
    made->height = facts.height;
    made->page = place.first;
    made->pageCount = pageCount_;
    made->path = name;
    made->toNatural = facts.toNatural;
    made->isTransparent = facts.isTransparent;
    Digest digest;
    for (const uint64_t word : identity_.words) digest.add(word);
    digest.add(static_cast<uint64_t>(place.first) << 8 | static_cast<uint64_t>(place.second));
    made->identity = identityFrom(digest);
    return made;
}

std::shared_ptr<const PictureContent> StoredFile::content() const {
    if (content_) return content_;
    SharedBytes bytes = kept_;
    if (!bytes) bytes = std::make_shared<const std::string>(readWholeFile(path_).bytes);
    if (!(identityOf(*bytes) == identity_)) throw PictureError("was changed while it was in use. Run the export again");
    return readContent(format_, bytes);
}

}  // namespace desk
