#pragma once
// Laying pages of one document under those of another, and appending pages. No names are changed and no resources
// merged: a page becomes a form that brings its own resources along, and the target page gains one entry for it.
//
// The documents must be freshly read: content that a write has compressed would be spoiled by what is put in front.

#include <cstdint>
#include <functional>

#include "pdf/pdf_doc.h"

namespace vornaset {

/// Stores the form in the page's "XObject" resources under the first free name of "Kd1", "Kd2", ..., a hundred in all,
/// and gives the name; null when all are taken. What stands under "XObject" and isn't a dictionary is lost. Throws
/// UnrecognizedOperation when the resources aren't a dictionary.
String addFormToPageResource(const Handle<MyPDFDictionary>& page, const Handle<MyPDFStream>& form);
/// Draws the form under that name in front of, and so behind, all that the page draws. The matrix is six numbers as
/// text; null centres the form's box in the page's crop box by their sizes, without their origins. A null name writes
/// "(null)". A page without content gets none.
void addFormToPageContent(const Handle<MyPDFDictionary>& page, const Handle<MyPDFStream>& form, const String& name,
                          const String& matrix);
/// Both of the above for a page of a document, by its place in `pages` from 0, at a point. Nothing for a place outside.
void addFormAtPoint(const Handle<MyPDFDoc>& document, int64_t index, const Handle<MyPDFDictionary>& page, double x,
                    double y);

/// Lays the pages of `source` behind those of `target`, over and over: page j gets page j modulo the source's number of
/// pages. What raises is shown. With an output path the target is written, whatever happened.
void mergeDocs(const Handle<MyPDFDoc>& source, const Handle<MyPDFDoc>& target, const String& output);
/// Reads both; the one with more pages, or the first on a tie, is the target. Gives the path written: `output`, or with
/// a null one the target's own.
String mergeDocs(const String& path1, const String& path2, const String& output);

/// Puts the source's pages, with their inherited boxes but without other inherited entries, behind those of the
/// target's list; its tree stays as it is until rebuildPageList. The source must not be used afterwards.
void appendPages(const Handle<MyPDFDoc>& target, const Handle<MyPDFDoc>& source);
/// Appends the source's pages to the target, with their inherited boxes but without other inherited entries, and writes
/// the target. The source must not be used afterwards.
void mergePages(const Handle<MyPDFDoc>& target, const Handle<MyPDFDoc>& source, const String& output);
void mergePages(const String& path1, const String& path2, const String& output);

/// Rewrites the file without its last page; a single page stays.
void deleteLastPage(const String& path);

/// Lays the first page of the file at each path behind the page of the same place. Each file is opened once. A path
/// without a file gives nothing. Throws RangeException when there are more pages than paths; an empty list does
/// nothing.
void mergeDocWithPaths(const Handle<MyPDFDoc>& target, const Array& paths);
/// Gives the document of a file.
using DocumentOpener = std::function<Handle<MyPDFDoc>(const String& path)>;
/// The same with documents that `open` gives.
void mergeDocWithPaths(const Handle<MyPDFDoc>& target, const Array& paths, const DocumentOpener& open);
/// Reads the file, merges, and gives the document without writing it. What raises is shown, and the result is null.
Handle<MyPDFDoc> mergeDocWithPaths(const String& path, const Array& paths);

/// Reads the file and writes it anew under its path, which it gives. The second argument has no effect.
String doMyPDF(const String& path, uint8_t unused = 0);

/// Writes a test document of 100 pages, a square on each, as "vornaset-test.pdf" in the home folder. Gives its path.
String makePDFDoc();

}  // namespace vornaset
