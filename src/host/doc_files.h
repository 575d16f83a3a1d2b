#pragma once
// Documents and their files: finding open ones, opening, saving, closing, redrawing.

#include "host/api/documents.h"
#include "host/api/types.h"
#include "support/values.h"

namespace vornaset {

// Finding. A null path matches a document without a path.

/// The first open document with exactly this path; null when there is none. Good while it is open.
IDocument* docForPath(const String& path);
/// A null reference when there is none.
UIDRef docRefForPath(const String& path);
uint8_t docIsOpen(const String& path);
int32_t getNumberOfDocs();

// Opening and windows.

/// A null reference when it can't be opened.
UIDRef openDoc1(const String& path);
/// The same through the host's documents service, which gets the option.
UIDRef openDoc2(const String& path, uint8_t option);
/// 0 always.
int32_t openWindowForDoc(const UIDRef& document);
/// Brings the document's window to the front. 0 for a missing document and for one without a window.
uint8_t makeDocActive(IDocument* document);
uint8_t makeDocActive(IDataBase* database);
uint8_t makeDocActive(const UIDRef& document);

// Saving. -1 when the host has no file handler for the document; else the host's global error code, read after the
// attempt, also when the handler refused.

int16_t saveDoc(const UIDRef& document);
int16_t saveDoc(IDocument* document);
/// From now on the path is the document's file. An existing file is left to the host.
int16_t saveDocAs(const UIDRef& document, const String& path);
int16_t saveDocAs(IDocument* document, const String& path);
/// Removes an existing file once the host has agreed to the copy.
int16_t saveCopyAs(IDocument* document, const String& path);
int16_t saveCopyAs(const UIDRef& document, const String& path);

// Closing, unsaved changes are lost.

void closeDoc(const UIDRef& document);
void closeDoc(IDocument* document);
void closeDocWindows(const UIDRef& document);
/// Windows first, then the document; its file goes too when the flag equals 1.
void closeDoc2(const UIDRef& document, uint8_t deleteFile);
void closeDoc2(IDocument* document);
void closeDocs();
/// With a flag of 1 the file at the path goes, also when no document had it open.
void closeDocIfOpen(const String& path, uint8_t deleteFile);

// Redrawing. A missing document means the front one; nothing when none is open.

void redrawDoc(IDocument* document);
void redrawDoc(IDataBase* database);
void redrawDoc(const UIDRef& document);
void redrawDocs();

}  // namespace vornaset
