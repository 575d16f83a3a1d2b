#include "support/xml_reading.h"

#include <libxml/parser.h>

#include <algorithm>
#include <string_view>

#include "support/charset.h"
#include "support/format.h"
#include "support/limits.h"
#include "support/xml_document.h"
#include "support/xml_tree.h"

namespace vornaset {

namespace {

using namespace std::string_view_literals;

constexpr const char* kDocumentTypeRefused = "a document type declaration isn't read; take it out";

/// Looks at the tags alone, before the parser sees the text. What it says no to is ill-formed, has a document type, or
/// has more attributes in one tag than the parser takes in good time. It must never take for a comment or a quotation
/// what the parser, having met an error, reads as tags: so it gives up at the first doubt.
class TagCheck {
  public:
    explicit TagCheck(std::string_view text) : text_(text) {}

    /// Null when nothing is wrong.
    const char* complaint() {
        while ((at_ = text_.find('<', at_)) != std::string_view::npos) {
            if (skip("<!--", "-->") || skip("<![CDATA[", "]]>")) continue;
            const std::string_view rest = text_.substr(at_);
            if (rest.starts_with("<!DOCTYPE")) return kDocumentTypeRefused;
            if (rest.starts_with("<!")) return "neither a comment nor a CDATA section";
            if (rest.starts_with("<?")) {
                if (rest.size() < 3 || !mayBeginAName(rest[2])) return "a processing instruction without a name";
                skip("<?", "?>");
            } else if (const char* fault = tagComplaint(rest)) {
                return fault;
            }
        }
        return nullptr;
    }
    size_t line() const {
        const size_t end = std::min(at_, text_.size());
        return 1 +
               static_cast<size_t>(std::count(text_.begin(), text_.begin() + static_cast<std::ptrdiff_t>(end), '\n'));
    }

  private:
    static bool mayBeginAName(char byte) {
        return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || byte == '_' || byte == ':' ||
               static_cast<unsigned char>(byte) >= 0x80;
    }

    bool skip(std::string_view opening, std::string_view closing) {
        if (!text_.substr(at_).starts_with(opening)) return false;
        const size_t end = text_.find(closing, at_ + opening.size());
        at_ = end == std::string_view::npos ? text_.size() : end + closing.size();
        return true;
    }

    const char* tagComplaint(std::string_view rest) {
        size_t attributes = 0;
        char quote = '\0';
        for (size_t index = 1; index < rest.size(); ++index) {
            const char byte = rest[index];
            if (byte == '<') return "\"<\" inside a tag";
            if (quote != '\0') {
                if (byte == quote) quote = '\0';
            } else if (byte == '"' || byte == '\'') {
                quote = byte;
            } else if (byte == '=' && ++attributes > kMostXmlAttributes) {
                return "more attributes in one element than are read";
            } else if (byte == '>') {
                at_ += index + 1;
                return nullptr;
            }
        }
        return "a tag that never ends";
    }

    std::string_view text_;
    size_t at_ = 0;
};

/// A document type declaration can define entities, which expand without bound or name files: it ends the reading.
void refuseDocumentType(void* context, const xmlChar*, const xmlChar*, const xmlChar*) {
    auto* parser = static_cast<xmlParserCtxt*>(context);
    *static_cast<bool*>(parser->_private) = true;
    xmlStopParser(parser);
}

/// White space between elements is layout; in an element without child elements it is text.
void removeLayoutSpace(xmlNode* element) {
    if (xmlChildElementCount(element) == 0) return;
    for (xmlNode* child = element->children; child != nullptr;) {
        xmlNode* next = child->next;
        if (child->type == XML_ELEMENT_NODE) {
            removeLayoutSpace(child);
        } else if (xmlIsBlankNode(child) != 0) {
            xmlUnlinkNode(child);
            xmlFreeNode(child);
        }
        child = next;
    }
}

struct ParserCloser {
    void operator()(xmlParserCtxt* parser) const { xmlFreeParserCtxt(parser); }
};

Error errorOf(xmlParserCtxt* parser) {
    const xmlError* error = xmlCtxtGetLastError(parser);
    if (error == nullptr || error->message == nullptr) return {1, "no XML"};
    std::string message = error->message;
    while (message.ends_with('\n')) message.pop_back();
    return {error->code, stringWithFormat("line %d, column %d: %s", error->line, error->int2, message)};
}

std::string asciiLower(std::string_view text) {
    std::string lower(text);
    for (char& byte : lower) byte = byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + 32) : byte;
    return lower;
}

/// XML 1.0, clause 4.3.3. Nothing else is handed to the library that looks for the character set.
bool isEncodingName(std::string_view name) {
    return std::all_of(name.begin(), name.end(), [](char byte) {
        return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
               byte == '.' || byte == '_' || byte == '-';
    });
}

/// What the declaration at the start names as encoding; empty without one.
std::string declaredEncoding(std::string_view bytes) {
    if (!bytes.starts_with("<?xml")) return {};
    const std::string_view declaration = bytes.substr(0, bytes.find("?>"));
    size_t at = declaration.find("encoding");
    if (at == std::string_view::npos || (at = declaration.find_first_of("\"'", at)) == std::string_view::npos)
        return {};
    const size_t end = declaration.find(declaration[at], at + 1);
    return end == std::string_view::npos ? std::string() : std::string(declaration.substr(at + 1, end - at - 1));
}

/// The character set of the bytes; `markLength` tells how many of them are a byte-order mark.
std::string charsetOf(std::string_view bytes, size_t& markLength) {
    const ByteOrderMark mark = byteOrderMark(bytes);
    markLength = mark.length;
    if (mark.charset != nullptr) return mark.charset;
    if (bytes.starts_with("<\0"sv)) return "UTF-16LE";
    if (bytes.starts_with("\0<"sv)) return "UTF-16BE";
    const std::string declared = declaredEncoding(bytes);
    const std::string lower = asciiLower(declared);
    if (lower.empty() || lower == "utf-8" || lower == "us-ascii") return "UTF-8";
    // A declaration that could be read byte by byte isn't in one of these.
    if (lower.starts_with("utf-16") || lower.starts_with("utf-32") || lower.starts_with("ucs-")) return "UTF-8";
    return lower == "windows-1252" ? lower : declared;
}

XmlReading refusal(int32_t code, const String& reason) {
    return {nullptr, Error(code, reason)};
}

}  // namespace

XmlReading readXml(std::string utf8, uint64_t options) {
    if (utf8.starts_with("\xEF\xBB\xBF")) utf8.erase(0, 3);
    if (utf8.size() > kLargestXmlText) {
        return refusal(1,
                       stringWithFormat("%zu bytes of XML; no more than %zu are read", utf8.size(), kLargestXmlText));
    }
    TagCheck check(utf8);
    if (const char* complaint = check.complaint()) {
        return refusal(1, stringWithFormat("line %zu: %s", check.line(), complaint));
    }
    const std::unique_ptr<xmlParserCtxt, ParserCloser> parser(xmlNewParserCtxt());
    if (!parser) return refusal(1, "no memory for reading XML");
    bool hasDocumentType = false;
    parser->_private = &hasDocumentType;
    parser->sax->internalSubset = refuseDocumentType;
    int parserOptions = XML_PARSE_NONET | XML_PARSE_NODICT | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
    if ((options & kPreserveCDataXml) == 0) parserOptions |= XML_PARSE_NOCDATA;
    xmlDoc* document =
        xmlCtxtReadMemory(parser.get(), utf8.data(), static_cast<int>(utf8.size()), nullptr, "UTF-8", parserOptions);
    if (hasDocumentType) {
        xmlFreeDoc(document);
        return refusal(1, kDocumentTypeRefused);
    }
    if (document == nullptr) return {nullptr, errorOf(parser.get())};
    auto tree = std::make_shared<XmlTree>(document);
    xmlNode* root = xmlDocGetRootElement(document);
    if (root == nullptr) return refusal(1, "XML without an element");
    if ((options & kPreserveWhitespaceXml) == 0) removeLayoutSpace(root);
    return {std::move(tree), nullptr};
}

XmlReading readXmlBytes(const Data& bytes, uint64_t options) {
    size_t markLength = 0;
    const std::string charset = charsetOf(bytes.view(), markLength);
    const std::string_view content = bytes.view().substr(markLength);
    // The parser itself says where UTF-8 is damaged.
    if (charset == "UTF-8") return readXml(std::string(content), options);
    // No character takes less than a byte, nor more than three in UTF-8.
    if (content.size() > kLargestXmlText) return readXml(std::string(content), options);
    const String text = isEncodingName(charset) ? decodedText(content, charset.c_str()) : String();
    if (text.isNull()) return refusal(1, stringWithFormat("the bytes aren't text in the encoding \"%s\"", charset));
    return readXml(text.utf8(), options);
}

}  // namespace vornaset
