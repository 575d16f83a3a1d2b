#pragma once
// Image slots: numbered picture frames that are empty when a run starts. The start event lists them, each fill empties
// them, and its last step puts the row's picture into each: the file that the cell names or, where no such file exists,
// a barcode of the cell's code, made by the job's barcode program.

#include "host/api/types.h"
#include "support/values.h"

namespace vornaset {

inline constexpr const char* kImageSlots = "links";

/// The walk over the page items of a document at the start of a run; `job` is the run's Dictionary. Adds the UID of an
/// empty picture frame with a number of 1 or more to the job's "links", whether or not a column feeds it. Always 1.
unsigned char collectImageSlot(UIDRef& frame, void* job);

/// The last step of a fill. Slots without a column stay empty. The first slot whose row is past the end stops the step:
/// slots behind it stay empty even if their rows are there. A cell that leads to no file is reported as a missing
/// image; of a file that can't be imported only the observer is told. Throws UnrecognizedOperation for a cell that is
/// no text, and, where there is a barcode program, what running it throws: InvalidArgumentException for a row without
/// the column and Exception for a program that can't be started.
void fillImageSlots(IDataBase* database, const Dictionary& job, int32_t pageNum);

/// Has the program draw an EAN-13 barcode on a page of the frame's size (path bounds, each side cut to single
/// precision) and writes it to the user's temporary folder, under the code as its name with the extension "pdf". Gives
/// that path whether or not a file came of it: a code that can't be drawn leaves an older file of that name in its
/// place. For an empty code that is the folder itself, in which nothing changes. Gives the code itself when the program
/// is null. Throws as pdfDocWithEANCode does.
String pdfPathWithEANCode(const String& script, const String& code, const UIDRef& frame);

/// Imports the file into the frame and fits its width and height to the frame's. Of a PDF of several pages the page
/// behind `pageIndex` (from 0) is taken; a negative index leaves that choice to the session. 0, and `frame` then names
/// the placed item; else a code other than 0, and `frame` stays.
int32_t placeImageInFrame(UIDRef& frame, const String& path, int32_t pageIndex);

}  // namespace vornaset
