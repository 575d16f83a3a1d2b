#pragma once
// Preparing a template: the reserved OMR frame, spreads made and removed in bulk, removal of what has no number, and
// which frames print. For callers outside the export events. Lengths are points.

#include "host/api/types.h"
#include "support/my_geometry.h"
#include "support/values.h"

namespace vornaset {

/// The rectangle of an OMR mark with its left top corner at the point, or, when the flag equals 1, 3 mm to the right of
/// it and 9 mm below. 10.2 by 22.479 mm.
MyRect omrRectForPoint(const MyPoint& point, uint8_t addOffset);

/// Puts an OMR frame, numbered 1 in both its numbers, on the active layer of the front document's first spread, 3 mm
/// from the left edge of its pages and 9 mm below the top. Nothing where a step of that fails.
void createOMRFrame();

/// Adds so many spreads behind the last, each with as many pages as the first spread has, in the size of `pageBounds`.
/// 1 for success; 0, and "\t####\tcreateSpreads: %d" with the host's error in the log, for failure; 0 without a log
/// line where the host can't make spreads.
uint8_t createSpreads(const UIDRef& document, const PMRect& pageBounds, const UIDRef& ref, int32_t count);
/// Nothing for an empty list.
void deleteSpreads(const UIDList& spreads);

/// Deletes every item whose frame number is 0. Groups count as a whole, frames anchored in text aren't looked at.
void removeStaticFrames(const UIDRef& document);

/// 0 keeps a frame off the printed page.
void setPrintingForFrame(const UIDRef& frame, uint8_t print);
/// The same for UIDs (numbers) in the database of any of its objects. Nothing for an empty array.
void setPrintingForFrames(const UIDRef& anyInDoc, const Array& uids, uint8_t print);

}  // namespace vornaset
