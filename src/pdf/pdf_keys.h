#pragma once
// The keys that the toolkit looks up, made once.

#include "support/values.h"

namespace vornaset::pdf_key {

inline const String kArtBox(u"ArtBox");
inline const String kBaseFont(u"BaseFont");
inline const String kBBox(u"BBox");
inline const String kBitsPerComponent(u"BitsPerComponent");
inline const String kBleedBox(u"BleedBox");
inline const String kCatalog(u"Catalog");
inline const String kColorSpace(u"ColorSpace");
inline const String kContents(u"Contents");
inline const String kCount(u"Count");
inline const String kCreator(u"Creator");
inline const String kCropBox(u"CropBox");
inline const String kEncoding(u"Encoding");
inline const String kFilter(u"Filter");
inline const String kFont(u"Font");
inline const String kHeight(u"Height");
inline const String kInfo(u"Info");
inline const String kKids(u"Kids");
inline const String kLength(u"Length");
inline const String kMediaBox(u"MediaBox");
inline const String kName(u"Name");
inline const String kOutputIntents(u"OutputIntents");
inline const String kPages(u"Pages");
inline const String kParent(u"Parent");
inline const String kProcSet(u"ProcSet");
inline const String kProducer(u"Producer");
inline const String kResources(u"Resources");
inline const String kSubtype(u"Subtype");
inline const String kTitle(u"Title");
inline const String kTrimBox(u"TrimBox");
inline const String kType(u"Type");
inline const String kWidth(u"Width");
inline const String kXObject(u"XObject");

}  // namespace vornaset::pdf_key
