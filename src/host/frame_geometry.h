#pragma once
// Where a page item is, how it is moved and resized, and how its content is brought to fit. Rectangles are in
// pasteboard points. A flag named `mm` asks for millimetres when it equals 1; every other value means points.
//
// Readings of a missing item give a rectangle of zeros. The writing functions hand the reference to the host as it is
// and give its result, 0 for success; they give 1 where the host has no such service.

#include "host/api/types.h"
#include "support/my_geometry.h"

namespace vornaset {

/// x = left, y = top; width and height are subtracted in 64 bits and narrowed.
MyRect myRectWithRect(const PMRect& rectangle);
/// right = x + width and bottom = y + height are added in 32 bits and widened.
PMRect rectWithMyRect(const MyRect& rectangle);

/// The bounds of the item's path.
PMRect boundsForFrame(const UIDRef& item, uint8_t mm);
PMRect boundsForFrame(IPMUnknown* item);  ///< in points
/// The bounds of path and stroke.
PMRect strokeBoundsForFrame(const UIDRef& item, uint8_t mm);
/// Makes the rectangle the bounds of the item's path; the content stays where it is. In millimetres the caller's
/// rectangle is converted to points in place and stays so.
ErrorCode setBoundsForFrame(const UIDRef& item, PMRect& bounds, uint8_t mm);
ErrorCode setStrokeBoundsForFrame(const UIDRef& item, const PMRect& bounds);

MyRect myRectForFrame(const UIDRef& item);
ErrorCode setMyRectForFrame(const UIDRef& item, const MyRect& bounds);

/// What holds the path bounds of all items; zeros for an empty list.
PMRect boundsForFrames(const UIDList& items);
MyRect myRectForFrames(const UIDList& items);

/// The largest rectangle of the shape of `content` that fits centred in `box` after that has lost `margin` on every
/// side. Of `content` width and height count alone; a 0 there gives what floating point makes of the division.
MyRect scaleRect(const MyRect& box, const MyRect& content, double margin);
PMRect scaleRect(const PMRect& box, const PMRect& content, double margin);

/// Moves the path's bounds; the content stays where it is.
ErrorCode offsetFrame(const UIDRef& item, PMReal dx, PMReal dy);

// The item moves with its content. Nothing without a database or with UID 0; a list has no such guard.
void moveFrameBy(const UIDRef& item, float dx, float dy);
void moveFrameBy(const UIDRef& item, PMReal dx, PMReal dy);
void moveFramesBy(const UIDList& items, PMReal dx, PMReal dy);
/// Puts the left top corner of the path bounds at a point. Logs "moveFrame: [%.1f %.1f] --> [%.1f %.1f]".
void moveFrameTo(const UIDRef& item, PMReal x, PMReal y);
void moveFrameTo(const UIDRef& item, const PMPoint& point);

ErrorCode fitFrameToContent(const UIDRef& item);
/// Width and height of the content each fill the frame.
ErrorCode fitContentToFrame(const UIDRef& item);
/// All of the content shows, in its own proportions.
ErrorCode fitContentProp(const UIDRef& item);
ErrorCode centerContent(const UIDRef& item);
/// The content covers all of the frame, in its own proportions.
ErrorCode fillContentProp(const UIDRef& item);

}  // namespace vornaset
