#pragma once
// A file that the library knows, and the pictures of its pages. Inner header of this folder.

#include <map>
#include <memory>
#include <string>

#include "desk/pictures/content.h"

namespace desk {

/// One state of one file. Its content may be let go and is then read again when it is needed.
class StoredFile : public std::enable_shared_from_this<StoredFile> {
  public:
    /// `identity` is identityOf(*bytes). For a package's own bytes `path` is empty, and they are kept. Throws
    /// PictureError.
    StoredFile(std::string path, const SharedBytes& bytes, const PictureIdentity& identity);

    PictureFormat format() const { return format_; }
    int pageCount() const { return pageCount_; }
    const PictureIdentity& identity() const { return identity_; }

    /// `name` is the path as it was asked for. Throws PictureError for a page that doesn't exist.
    std::shared_ptr<const Picture> picture(int page, PageBox box, const std::string& name);

    /// The content, read again for the moment where it was let go. Throws PictureError, also when the file isn't the
    /// same any more.
    std::shared_ptr<const PictureContent> content() const;

    bool knows(int page, PageBox box) const { return facts_.contains(placeOf(page, box)); }
    /// Holds the content again.
    void load() { content_ = content(); }
    void letGo() { content_.reset(); }
    size_t heldBytes() const { return content_ ? content_->heldBytes() : 0; }

  private:
    using Place = std::pair<int, PageBox>;
    /// Only PDFs have pages and boxes: the same picture serves every request for another format.
    Place placeOf(int page, PageBox box) const {
        return format_ == PictureFormat::Pdf ? Place{page, box} : Place{1, PageBox::Crop};
    }

    std::string path_;
    SharedBytes kept_;  ///< null for a file of the file system
    PictureFormat format_ = PictureFormat::Jpeg;
    PictureIdentity identity_;
    int pageCount_ = 1;
    std::shared_ptr<const PictureContent> content_;
    std::map<Place, PageFacts> facts_;
};

/// "The picture "photo.jpg" is empty. Save it again." A long name is cut, control characters are replaced.
std::string sentenceAbout(const std::string& name, const std::string& what);

/// Digest of a file's bytes.
PictureIdentity identityOf(std::string_view bytes);

}  // namespace desk
