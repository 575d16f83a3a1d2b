#pragma once
// Pictures in frames: the placed file as data, and how a frame takes what is put into it.

#include <memory>
#include <optional>
#include <string>

#include "desk/model/geometry.h"

namespace desk {

class Picture;  // desk/pictures/picture.h; the model only carries it

/// The part of a PDF page that is placed. Boxes that the page doesn't have fall back as ISO 32000-1, 14.11.2 says.
/// Content is the smallest upright box around all that the page paints inside its crop box.
enum class PageBox { Crop, Media, Trim, Bleed, Art, Content };

/// What an item of kind Graphic shows. Its PageItem is the first child of the frame; the PageItem's transform maps
/// `bounds` to the frame's inner coordinates, and the frame's path clips it.
struct PlacedGraphic {
    std::string kind;             ///< element name in the package: Image, PDF, EPS, SVG, ...
    std::string uri;              ///< the link as the package spells it; the file may be missing. Empty for none
    std::string path;             ///< the linked file on this machine, as far as it was found; empty for none
    int pageNumber = 1;           ///< of a PDF, from 1
    PageBox box = PageBox::Crop;  ///< of a PDF
    Rect bounds;                  ///< natural size in points, in the graphic's own coordinates
    std::shared_ptr<const std::string> embedded;  ///< the file's bytes where the package carries them
    std::shared_ptr<const Picture> picture;       ///< null: not loaded yet, missing or not to be used
    std::string failure;                          ///< the sentence that says why it can't be used; empty when it can
};

/// What happens to a picture that comes into an empty frame.
enum class EmptyFrameFitting { None, ContentToFrame, Proportionally, FillProportionally };

/// How a frame takes a picture, sparse as styles and items carry it.
struct FrameFitting {
    std::optional<EmptyFrameFitting> onEmptyFrame;  ///< absent is None
    std::optional<Point> alignment;  ///< 0 is left or top, 0.5 the middle, 1 right or bottom; absent is left top
    std::optional<bool> autoFit;
    /// How far the picture reaches beyond the frame, in the picture's own unscaled points.
    std::optional<double> leftCrop, topCrop, rightCrop, bottomCrop;

    void overlay(const FrameFitting& stronger);
};

}  // namespace desk
