#pragma once
// For the template's author: putting a placeholder into a story, and finding the placeholders that no data answers. The
// search has rules of its own, simpler than those of a merge: see `missingPlaceHolders`.

#include "host/api/types.h"
#include "support/values.h"

class ITextModel;

namespace vornaset {

/// Where text goes, as a caller fills it.
struct TextSelection {
    UIDRef frame;              ///< the text frame of the selection; may be null
    UIDRef story;              ///< the story
    int32_t firstInteger = 0;  ///< the caller's own
    int32_t position = 0;      ///< UTF-16 units from 0
};

/// Inserts "<<key>>" with the attributes of its place, for a flag other than 0 as "<<key >>", which asks the merge for
/// a space behind a value that isn't empty. A frame without a number becomes number 1, and the front document is
/// redrawn.
void insertPlaceholder(const TextSelection& selection, const String& key, uint8_t withSpace);

/// The keys of all placeholders of a document that aren't among the known ones, in a new mutable array, as often as
/// they stand there. A key is what stands between "<<" and the next ">>" of the same line, at least one character,
/// without spaces at its ends: "Name#" and "," are keys of their own, and so is a mapping rule's name.
Array missingPlaceHolders(const UIDRef& document, const Array& knownKeys);

/// The whole text with the terminal carriage return; null for a null model and an object without one.
String stringForStory(ITextModel* story);
String stringForStory(const UIDRef& story);

/// What `collectMissingPlaceHolders` works on.
struct MissingPlaceHolders {
    Array knownKeys;
    Array result;  ///< mutable
};

/// The walk over stories of `missingPlaceHolders`; the context is a MissingPlaceHolders. Always 1.
unsigned char collectMissingPlaceHolders(ITextModel* story, void* context);

}  // namespace vornaset
