#include "desk/output/document_writer.h"

namespace desk {
namespace {

/// The next code point of UTF-8 text; U+FFFD for bytes that are none. Moves `at` on.
char32_t nextCodePoint(std::string_view text, size_t& at) {
    const unsigned char lead = static_cast<unsigned char>(text[at++]);
    const int more = lead < 0x80 ? 0 : lead >= 0xF0 && lead < 0xF5 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC2 ? 1 : -1;
    if (more < 0 || lead >= 0xF5 || at + static_cast<size_t>(more) > text.size()) return 0xFFFD;
    char32_t point = more == 0 ? lead : lead & (0x3F >> more);
    for (int i = 0; i < more; ++i) {
        const unsigned char next = static_cast<unsigned char>(text[at]);
        if ((next & 0xC0) != 0x80) return 0xFFFD;
        point = point << 6 | (next & 0x3F);
        ++at;
    }
    return point;
}

/// A text string: ASCII as it is, else UTF-16 with its mark. ISO 32000-1, 7.9.2.2.
void appendTextString(ContentBuffer& out, std::string_view text) {
    bool ascii = true;
    for (char c : text) ascii = ascii && c >= 32 && c < 127;
    if (ascii) {
        out.literal(text);
        return;
    }
    std::string bytes = "\xFE\xFF";
    const auto addUnit = [&bytes](char32_t unit) {
        bytes += static_cast<char>(unit >> 8);
        bytes += static_cast<char>(unit);
    };
    for (size_t at = 0; at < text.size();) {
        const char32_t point = nextCodePoint(text, at);
        if (point < 0x10000) {
            addUnit(point);
        } else {
            addUnit(0xD800 + ((point - 0x10000) >> 10));
            addUnit(0xDC00 + ((point - 0x10000) & 0x3FF));
        }
    }
    out.append('<').hexadecimal(bytes).append('>');
}

}  // namespace

DocumentWriter::DocumentWriter(const Document& document, TextSource& texts, const std::string& outputPath,
                               PdfOptions options)
    : options_(std::move(options)),
      file_(outputPath, options_.compressionLevel, options_.inBackground ? Writing::InBackground : Writing::InPlace),
      shared_(file_),
      palette_(document, shared_),
      shapes_(document, palette_, shared_, simplifications_),
      fonts_(shared_),
      textPainter_(fonts_, palette_, shapes_),
      pictures_(shared_, options_.fonts),
      items_(document, texts, shared_, shapes_, textPainter_, pictures_),
      tree_(file_),
      pages_(document, items_, shared_, tree_) {}

ObjectNumber DocumentWriter::writeInformation() {
    ContentBuffer object;
    object.append("<<");
    if (!options_.title.empty()) {
        object.append("/Title");
        appendTextString(object, options_.title);
    }
    object.append("/Producer(Vornaset)>>");
    const ObjectNumber number = file_.allocate();
    file_.writeObject(number, object.view());
    return number;
}

void DocumentWriter::finish() {
    fonts_.finish();
    pictures_.finish();
    const ObjectNumber root = tree_.finish();
    ContentBuffer object;
    object.append("<</Type/Catalog/Pages ").integer(root).append(" 0 R");
    pictures_.appendLayers(object);
    object.append(">>");
    const ObjectNumber catalog = file_.allocate();
    file_.writeObject(catalog, object.view());
    file_.finish(catalog, writeInformation());
}

}  // namespace desk
