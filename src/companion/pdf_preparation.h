#pragma once

#include "pdf/pdf_doc.h"

namespace companion {

/// Makes a freshly read document fit for what the commands do with it. The toolkit's operations edit pages in place and
/// rewrite streams by one rule; on a person's file that would reach further than meant. Afterwards
///   - each page has what it would inherit (resources, boxes, rotation) as entries of its own,
///   - no two pages share a resource dictionary, a dictionary of XObjects, a box, an array of contents or a first
///   content
///     stream; a page without content has an empty one,
///   - a stream whose filters were undone says nothing of their parameters, and one that ended in JPEG or JPEG 2000
///   names
///     that filter alone,
///   - a number whose text would need an exponent is written in plain digits: 0 when it is too small for three of them.
/// What the pages show stays the same.
void prepareForCommands(const vornaset::Handle<vornaset::MyPDFDoc>& document);

}  // namespace companion
