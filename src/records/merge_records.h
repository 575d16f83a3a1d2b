#pragma once
// What a template remembers of its merge: which data it belongs to (the document's record) and what role each of its
// frames has (the frame's record). Both are XML records (records/tag_values.h); integers stand in them as decimal text.
// A null or dead reference reads as the defaults. Nothing here reports or throws.

#include "host/enumerators.h"
#include "records/tag_values.h"

namespace vornaset {

// --- The document's record

String dataPathForDoc(const UIDRef& document);  ///< path of the data file; null when absent
String sheetForDoc(const UIDRef& document);     ///< sheet in the data file; null when absent
int64_t modeForDoc(const UIDRef& document);     ///< the companion's own; 0 when absent
String pdfStyleForDoc(const UIDRef& document);  ///< name of the PDF export style; null when absent

void setDataPathForDoc(const UIDRef& document, const String& path);
void setSheetForDoc(const UIDRef& document, const String& sheet);
void setModeForDoc(const UIDRef& document, int64_t mode);
void setPDFStyleForDoc(const UIDRef& document, const String& style);

// Any field. A write of the value that is stored already, or of null where the field is absent, writes nothing.
String stringForDoc(const UIDRef& document, const String& key, const String& defaultText);
void setStringForDoc(const UIDRef& document, const String& key, const String& value);
void setStringForDoc(const UIDRef& document, const String& key, const char* value);
int64_t integerForDoc(const UIDRef& document, const String& key, int64_t defaultNumber);
void setIntegerForDoc(const UIDRef& document, const String& key, int64_t value);

/// The document's record has any child.
bool docHasData(const UIDRef& document);

// --- A frame's record

/// The 1-based place of the frame's record within a page set. 0 (or absent) marks a static frame. Numbers need be
/// neither consecutive nor unique: frames with the same number show the same record.
int64_t frameNumberForFrame(const UIDRef& frame);
void setFrameNumberForFrame(const UIDRef& frame, int64_t number);
/// For renumbering: when the frame has an OMR number above 0, that follows.
void setFrameNumberForFrame2(const UIDRef& frame, int64_t number);

/// Above 0 on an OMR frame alone.
int64_t omrNumberForFrame(const UIDRef& frame);
bool isOMRFrame(const UIDRef& frame);
void setOmrNumberForFrame(const UIDRef& frame, int64_t number);

/// The column that feeds an image frame; empty means that no image is placed. Never null.
String colNameForFrame(const UIDRef& frame);
void setColNameForFrame(const UIDRef& frame, const String& column);
/// The frame's own data file and sheet; empty when absent.
String dataPathForFrame(const UIDRef& frame);
void setDataPathForFrame(const UIDRef& frame, const String& path);
String sheetForFrame(const UIDRef& frame);
void setSheetForFrame(const UIDRef& frame, const String& sheet);

int64_t integerForNode(const UIDRef& frame, const String& key, int64_t defaultNumber);
void setIntegerForNode(const UIDRef& frame, const String& key, int64_t value);

// --- Questions about frames

/// A page item whose form is a path and that holds nothing: neither text nor a picture.
bool isEmptyPictureFrame(const UIDRef& frame);
/// A text frame, an empty picture frame or an OMR frame.
bool isMyFrame(const UIDRef& frame);

/// How many UIDs of the array (numbers) name frames of the kind in the database.
int64_t validFramesCnt(IDataBase* database, const Array& uids);
int64_t emptyFramesCnt(IDataBase* database, const Array& uids);

/// The reference of a UID in the database of `any`. The number is a UID, no frame number.
UIDRef frameWithNumber(const Number& uid, const UIDRef& any);

// --- Questions about the whole document

/// How many different frame numbers of 1 or more there are, on frames of layers and on frames anchored in their text.
int64_t uniqueFrameNumbersForDoc(const UIDRef& document);
/// The length of the first run of consecutive frame numbers: the largest number for frames numbered 1 to n without
/// gaps, 2 for frames 1, 2 and 4, and 2 for frames 3 and 4. 0 without a numbered frame.
int64_t maxFrameNumberForDoc(const UIDRef& document);

// Walks as EnumBoxes and EnumSpread do, and behind each text frame the frames anchored in its story, one level deep.
// Only 1 goes on: for a page item any other answer ends the walk with 0; for an anchored frame 0 does.
uint8_t EnumMyBoxes(const UIDRef& document, ItemCallback callback, void* data);
uint8_t EnumMySpread(ISpread* spread, ItemCallback callback, void* data);

}  // namespace vornaset
