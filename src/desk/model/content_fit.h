#pragma once
// Pictures into frames, and frames and pictures made to fit each other.
//
// All functions take a frame or, just as well, the picture in it. They answer false, and change nothing, for an item
// that is neither, for a frame that holds no picture, and where an empty area leaves nothing to scale by.

#include "desk/model/document.h"

namespace desk {

enum class ContentFit {
    ContentToFrame,         ///< stretches the picture in both directions until it covers the frame exactly
    ContentProportionally,  ///< the largest size of the picture's own proportions that lies inside the frame
    FillProportionally,     ///< the smallest size of the picture's own proportions that covers the frame
    FrameToContent,         ///< the frame's path takes the size and place of the picture
    CenterContent           ///< moves the picture's middle onto the frame's; no size changes
};

/// Where proportions leave room (or cut something off), the frame's fitting alignment says at which side.
bool fitContent(Document& document, Uid frameOrPicture, ContentFit fit);

/// The first item of kind Graphic inside the frame; null for none.
PageItem* pictureIn(Document& document, Uid frame);
const PageItem* pictureIn(const Document& document, Uid frame);

/// True for a shape (rectangle, oval, polygon, line) that holds a picture or could: no text frame and no group.
bool canHoldPicture(const PageItem& item);

/// Puts an item of kind Graphic into a frame in place of what the frame held, at full size and aligned, or as the
/// frame's option for empty frames says. False, and nothing changes, when one of the two isn't what it must be.
bool putIntoFrame(Document& document, Uid picture, Uid frame);

}  // namespace desk
