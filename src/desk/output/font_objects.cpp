// The objects of an embedded face: Type0 fonts, their CMaps, the CIDFont over the subset file.

#include <algorithm>
#include <stdexcept>

#include "desk/model/document.h"
#include "desk/output/font_embedder.h"

namespace desk {
namespace {

constexpr std::string_view hexDigits = "0123456789ABCDEF";

/// CMap of the codes and CIDFont agree on this character collection: the glyphs of one subset.
constexpr std::string_view systemInfo = "<</Registry(Vornaset)/Ordering(Glyphs)/Supplement 0>>";

/// At most so many entries in one section of a CMap.
constexpr size_t sectionEntries = 100;

void appendByte(ContentBuffer& out, uint8_t byte) {
    out.append('<').append(hexDigits[byte >> 4]).append(hexDigits[byte & 15]).append('>');
}

void appendText(ContentBuffer& out, std::u16string_view text) {
    out.append('<');
    for (char16_t c : text)
        for (int shift = 12; shift >= 0; shift -= 4) out.append(hexDigits[c >> shift & 15]);
    out.append('>');
}

void openCMap(ContentBuffer& out, std::string_view name) {
    out.append("/CIDInit /ProcSet findresource begin\n12 dict begin\nbegincmap\n/CIDSystemInfo ").append(systemInfo);
    out.append(" def\n/CMapName ").append(name).append(" def\n");
}

void closeCMap(ContentBuffer& out) {
    out.append("endcmap\nCMapName currentdict /CMap defineresource pop\nend\nend\n");
}

/// Six capital letters from the name and the glyphs: the same subset has the same tag.
std::string subsetTag(const std::string& name, const std::vector<uint32_t>& glyphs) {
    uint64_t hash = 0xCBF29CE484222325u;
    const auto mix = [&hash](uint64_t value) { hash = (hash ^ value) * 0x100000001B3u; };
    for (char c : name) mix(static_cast<unsigned char>(c));
    for (uint32_t glyph : glyphs) mix(glyph);
    std::string tag;
    for (int i = 0; i < 6; ++i) {
        tag += static_cast<char>('A' + hash % 26);
        hash /= 26;
    }
    return tag + "+";
}

}  // namespace

/// Writes what one Type0 font needs.
class FontObjects {
  public:
    FontObjects(const FontFace& face, const Resource& font, std::vector<const CodedGlyph*> byCode, PdfFile& file)
        : face_(face), font_(font), byCode_(std::move(byCode)), file_(file) {}

    void write() {
        collectGlyphs();
        makeSubset();
        baseName_ = subsetTag(face_.postScriptName(), glyphs_) + face_.postScriptName();
        const ObjectNumber descendant = writeDescendant(writeDescriptor(writeFontFile()));
        const ObjectNumber encoding = writeEncoding();
        const ObjectNumber toUnicode = writeToUnicode();
        ContentBuffer object;
        object.append("<</Type/Font/Subtype/Type0/BaseFont").name(baseName_).append("/Encoding ").integer(encoding);
        object.append(" 0 R/ToUnicode ").integer(toUnicode).append(" 0 R/DescendantFonts[").integer(descendant);
        object.append(" 0 R]>>");
        file_.writeObject(font_.object, object.view());
    }

  private:
    void collectGlyphs() {
        for (const CodedGlyph* coded : byCode_) glyphs_.push_back(coded->glyph);
        std::sort(glyphs_.begin(), glyphs_.end());
        glyphs_.erase(std::unique(glyphs_.begin(), glyphs_.end()), glyphs_.end());
    }

    void makeSubset() {
        try {
            subset_ = face_.subset(glyphs_);
            if (subset_.newGlyphOf.size() != glyphs_.size())
                throw std::runtime_error("glyphs are missing in the subset");
        } catch (const std::exception& failure) {
            throw InputError("The font \"" + face_.family() + " " + face_.style() +
                             "\" can't be embedded: " + failure.what() + ". Use another font in the document.");
        }
    }

    bool isTrueType() const { return subset_.format == OutlineFormat::TrueType; }

    /// The glyph's number in the subset.
    uint32_t glyphInSubset(uint32_t glyph) const {
        const auto place = std::lower_bound(glyphs_.begin(), glyphs_.end(), glyph);
        return subset_.newGlyphOf[static_cast<size_t>(place - glyphs_.begin())];
    }

    /// For TrueType the code itself, which a map leads to the glyph: a subset with the parts of composite glyphs has
    /// more than 256. A CFF subset has no parts, and its CIDs are its glyph numbers (see FontSubset).
    uint32_t cidOf(const CodedGlyph& coded) const { return isTrueType() ? coded.code : glyphInSubset(coded.glyph); }

    ObjectNumber writeFontFile() {
        const ObjectNumber number = file_.allocate();
        ContentBuffer entries;
        if (isTrueType()) {
            entries.append("/Length1 ").integer(static_cast<int64_t>(subset_.file.size()));
        } else {
            entries.append("/Subtype/CIDFontType0C");
        }
        file_.writeStream(number, entries.view(),
                          {reinterpret_cast<const char*>(subset_.file.data()), subset_.file.size()});
        return number;
    }

    ObjectNumber writeDescriptor(ObjectNumber fontFile) {
        constexpr int fixedPitch = 1, serif = 2, symbolic = 4, italic = 64;
        int flags = symbolic;
        if (face_.isFixedPitch()) flags |= fixedPitch;
        if (face_.isSerif()) flags |= serif;
        if (face_.italicAngle() != 0) flags |= italic;
        ContentBuffer object;
        object.append("<</Type/FontDescriptor/FontName").name(baseName_).append("/Flags ").integer(flags);
        object.append("/FontBBox[");
        for (int side = 0; side < 4; ++side) object.number(face_.boundingBox(side)).append(' ');
        object.append("]/ItalicAngle ").number(face_.italicAngle()).append("/Ascent ").number(face_.ascent());
        object.append("/Descent ").number(face_.descent()).append("/CapHeight ").number(face_.capHeight());
        object.append("/XHeight ").number(face_.xHeight()).append("/StemV ").number(face_.stemV());
        object.append(isTrueType() ? "/FontFile2 " : "/FontFile3 ");
        object.integer(fontFile).append(" 0 R>>");
        const ObjectNumber number = file_.allocate();
        file_.writeObject(number, object.view());
        return number;
    }

    /// Runs of consecutive CIDs share one array of widths.
    void appendWidths(ContentBuffer& out) const {
        std::vector<std::pair<uint32_t, double>> widths;
        for (const CodedGlyph* coded : byCode_) widths.emplace_back(cidOf(*coded), coded->width);
        std::sort(widths.begin(), widths.end());
        widths.erase(std::unique(widths.begin(), widths.end()), widths.end());
        out.append("/DW 0/W[");
        for (size_t i = 0; i < widths.size(); ++i) {
            const bool goesOn = i > 0 && widths[i].first == widths[i - 1].first + 1;
            if (!goesOn) out.append(i > 0 ? "]" : "").integer(widths[i].first).append('[');
            out.number(widths[i].second).append(' ');
        }
        out.append(widths.empty() ? "]" : "]]");
    }

    /// Two bytes a code.
    ObjectNumber writeGlyphMap() {
        std::string map;
        for (const CodedGlyph* coded : byCode_) {
            const uint32_t glyph = glyphInSubset(coded->glyph);
            map.resize((size_t{coded->code} + 1) * 2);
            map[map.size() - 2] = static_cast<char>(glyph >> 8);
            map[map.size() - 1] = static_cast<char>(glyph);
        }
        const ObjectNumber number = file_.allocate();
        file_.writeStream(number, "", map);
        return number;
    }

    ObjectNumber writeDescendant(ObjectNumber descriptor) {
        const ObjectNumber map = isTrueType() ? writeGlyphMap() : 0;
        ContentBuffer object;
        object.append("<</Type/Font/Subtype").append(isTrueType() ? "/CIDFontType2" : "/CIDFontType0");
        object.append("/BaseFont").name(baseName_).append("/CIDSystemInfo").append(systemInfo);
        object.append("/FontDescriptor ").integer(descriptor).append(" 0 R");
        if (map != 0) object.append("/CIDToGIDMap ").integer(map).append(" 0 R");
        appendWidths(object);
        object.append(">>");
        const ObjectNumber number = file_.allocate();
        file_.writeObject(number, object.view());
        return number;
    }

    std::string cMapName(std::string_view kind) const { return "/" + std::string(kind) + std::to_string(font_.name); }

    ObjectNumber writeEncoding() {
        struct Range {
            uint8_t first, last;
            uint32_t cid;
        };
        std::vector<Range> ranges;
        for (const CodedGlyph* coded : byCode_) {
            const uint32_t cid = cidOf(*coded);
            if (!ranges.empty() && coded->code == ranges.back().last + 1 &&
                cid == ranges.back().cid + (coded->code - ranges.back().first)) {
                ranges.back().last = coded->code;
            } else {
                ranges.push_back({coded->code, coded->code, cid});
            }
        }
        const std::string name = cMapName("Codes");
        ContentBuffer map;
        openCMap(map, name);
        map.append("/CMapType 1 def\n1 begincodespacerange\n<00> <FF>\nendcodespacerange\n");
        for (size_t start = 0; start < ranges.size(); start += sectionEntries) {
            const size_t end = std::min(ranges.size(), start + sectionEntries);
            map.integer(static_cast<int64_t>(end - start)).append(" begincidrange\n");
            for (size_t i = start; i < end; ++i) {
                appendByte(map, ranges[i].first);
                map.append(' ');
                appendByte(map, ranges[i].last);
                map.append(' ').integer(ranges[i].cid).append('\n');
            }
            map.append("endcidrange\n");
        }
        closeCMap(map);
        const ObjectNumber number = file_.allocate();
        const std::string entries = "/Type/CMap/CMapName" + name + "/CIDSystemInfo" + std::string(systemInfo);
        file_.writeStream(number, entries, map.view());
        return number;
    }

    ObjectNumber writeToUnicode() {
        std::vector<const CodedGlyph*> copied;
        for (const CodedGlyph* coded : byCode_)
            if (!coded->copiesAs.empty()) copied.push_back(coded);
        ContentBuffer map;
        openCMap(map, cMapName("Text"));
        map.append("/CMapType 2 def\n1 begincodespacerange\n<00> <FF>\nendcodespacerange\n");
        for (size_t start = 0; start < copied.size(); start += sectionEntries) {
            const size_t end = std::min(copied.size(), start + sectionEntries);
            map.integer(static_cast<int64_t>(end - start)).append(" beginbfchar\n");
            for (size_t i = start; i < end; ++i) {
                appendByte(map, copied[i]->code);
                map.append(' ');
                appendText(map, copied[i]->copiesAs);
                map.append('\n');
            }
            map.append("endbfchar\n");
        }
        closeCMap(map);
        const ObjectNumber number = file_.allocate();
        file_.writeStream(number, "", map.view());
        return number;
    }

    const FontFace& face_;
    const Resource& font_;
    std::vector<const CodedGlyph*> byCode_;
    PdfFile& file_;
    std::vector<uint32_t> glyphs_;  ///< of the original face, rising
    FontSubset subset_;
    std::string baseName_;
};

void writeCodedFont(const FontFace& face, const Resource& font, const std::vector<CodedGlyph>& glyphs, PdfFile& file) {
    std::vector<const CodedGlyph*> byCode;
    for (const CodedGlyph& coded : glyphs) byCode.push_back(&coded);
    std::sort(byCode.begin(), byCode.end(), [](auto* a, auto* b) { return a->code < b->code; });
    FontObjects(face, font, std::move(byCode), file).write();
}

void EmbeddedFace::write(PdfFile& file) {
    for (const Type0Font& font : fonts_) {
        std::vector<const CodedGlyph*> byCode;
        for (uint32_t index : font.glyphs) byCode.push_back(&glyphs_[index]);
        std::sort(byCode.begin(), byCode.end(), [](auto* a, auto* b) { return a->code < b->code; });
        FontObjects(face_, font.resource, std::move(byCode), file).write();
    }
}

}  // namespace desk
