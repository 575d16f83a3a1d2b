#pragma once
// Pictures by path: a file is read and understood once, however often it is placed.
//
// A file counts as the same as long as device, inode, size and time of its last change are the same. Of a file that is
// used over and over the library keeps the bytes as they go into the PDF (a JPEG's own, others compressed) up to a
// bound; beyond it they are read again when they are needed. A file that is used once is soon forgotten.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "desk/model/document.h"
#include "desk/pictures/picture.h"

namespace desk {

/// Either a picture or the sentence that says what is wrong and what to do.
struct PictureImport {
    std::shared_ptr<const Picture> picture;
    std::string failure;
    explicit operator bool() const { return picture != nullptr; }
};

struct PictureRequest {
    std::string path;  ///< UTF-8; relative paths start at the process's working folder
    int page = 1;      ///< of a PDF, from 1; other formats have no pages
    PageBox box = PageBox::Crop;
};

/// Thread: one at a time.
class PictureLibrary {
  public:
    /// `heldBytes`: how much of the files' content stays in memory, apart from what documents show at the moment.
    explicit PictureLibrary(size_t heldBytes = size_t{64} << 20);
    ~PictureLibrary();
    PictureLibrary(const PictureLibrary&) = delete;
    PictureLibrary& operator=(const PictureLibrary&) = delete;

    /// Never throws for what a file holds. A picture that can't be used costs no second reading either.
    PictureImport import(const PictureRequest& request);
    /// The same for bytes that a package carries; `name` is used in messages.
    PictureImport importBytes(const std::shared_ptr<const std::string>& bytes, const std::string& name, int page = 1,
                              PageBox box = PageBox::Crop);
    /// The sentence of the last import() that gave no picture; empty before.
    const std::string& lastFailure() const;

    /// Pages of a PDF; 1 for a picture of another format; 0 when the file can't be read.
    int pageCount(const std::string& path);

    /// How many files were opened and read so far.
    uint64_t filesRead() const;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

/// Makes an item of kind Graphic that shows the picture at full size. It stands in no frame yet; see putIntoFrame.
PageItem& addPicture(Document& document, std::shared_ptr<const Picture> picture);

/// Finds the files of all placed pictures of a document that was just opened (the path that the link names, the
/// document's folder, the link's last folders joined to the document's folder and those above it) and loads them.
/// What can't be used keeps the reason in `failure`, and the frame is drawn without it.
void loadPlacedPictures(Document& document, PictureLibrary& library);

}  // namespace desk
