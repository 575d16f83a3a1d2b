#pragma once
// Barcodes as PDF documents of one page, drawn by an outside program, and PostScript as PDF.

#include "pdf/page_inspection.h"
#include "pdf/pdf_doc.h"

namespace vornaset {

/// Runs a barcode program with the arguments "-e", the kind (as the program names it, such as "ean13"), "-b", the code,
/// "-D" and takes what it prints, unlooked at and unscaled, as the content of the one page of a new document. The page
/// has the given size in points from 0, 0, and the base font Courier under the resource name "Courier", for the digits.
/// Waits until the program has ended. A function that is registered for the path stands for the program
/// (support/processes.h).
///
/// Null for a null path, without starting anything, and when the program prints nothing, as it does for a code that it
/// refuses. Throws as dataWithShellScript does: Exception for a program that can't be started, and
/// InvalidArgumentException for a null kind or code.
Handle<MyPDFDoc> pdfDocWithEANCode(const String& script, const String& encoding, const String& code,
                                   const PageSize& size);

/// PostScript as a PDF file, converted by Ghostscript in its safe mode, with the limits of every program that the
/// toolkit starts. Empty for what can't be converted. Null for null bytes, and where there is no Ghostscript or no
/// temporary folder to write to.
Data pdfDataWithPSData(const Data& bytes);

}  // namespace vornaset
