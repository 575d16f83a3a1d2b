#include "desk/idml/xml_source.h"

#include <algorithm>
#include <charconv>

#include "desk/idml/values.h"
#include "desk/model/document.h"

namespace desk {
namespace {

constexpr std::string_view blanks = " \t\r\n";

bool isBlank(char c) {
    return blanks.find(c) != std::string_view::npos;
}

void appendUtf8(std::string& text, char32_t code) {
    const auto byte = [&](char32_t value) { text += static_cast<char>(value); };
    if (code < 0x80) {
        byte(code);
    } else if (code < 0x800) {
        byte(0xC0 | code >> 6);
        byte(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        byte(0xE0 | code >> 12);
        byte(0x80 | (code >> 6 & 0x3F));
        byte(0x80 | (code & 0x3F));
    } else {
        byte(0xF0 | code >> 18);
        byte(0x80 | (code >> 12 & 0x3F));
        byte(0x80 | (code >> 6 & 0x3F));
        byte(0x80 | (code & 0x3F));
    }
}

/// "&amp;" and its like; length 0 when it is none.
WrittenCharacter reference(std::string_view written) {
    const size_t end = written.find(';');
    if (end == std::string_view::npos) return {};
    const std::string_view name = written.substr(1, end - 1);
    constexpr std::pair<std::string_view, char32_t> named[] = {
        {"lt", U'<'}, {"gt", U'>'}, {"amp", U'&'}, {"quot", U'"'}, {"apos", U'\''}};
    for (const auto& [word, code] : named)
        if (name == word) return {code, end + 1};
    if (name.size() < 2 || name[0] != '#') return {};
    const bool hexadecimal = name[1] == 'x';
    const std::string_view digits = name.substr(hexadecimal ? 2 : 1);
    uint32_t code = 0;
    const auto [stop, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), code, hexadecimal ? 16 : 10);
    if (error != std::errc() || stop != digits.data() + digits.size()) return {};
    return {code, end + 1};
}

std::string declaredEncoding(std::string_view bytes) {
    if (!bytes.starts_with("<?xml")) return {};
    const std::string_view declaration = bytes.substr(0, bytes.find("?>"));
    const size_t at = declaration.find("encoding");
    const size_t open = at == std::string_view::npos ? at : declaration.find_first_of("\"'", at);
    if (open == std::string_view::npos) return {};
    const size_t close = declaration.find(declaration[open], open + 1);
    std::string name(declaration.substr(open + 1, close - open - 1));
    for (char& c : name)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
    return name;
}

}  // namespace

const SourceElement* SourceElement::child(std::string_view childName) const {
    for (const SourcePiece& piece : content)
        if (piece.element && piece.element->name == childName) return piece.element.get();
    return nullptr;
}

const SourceAttribute* SourceElement::attribute(std::string_view attributeName) const {
    for (const SourceAttribute& candidate : attributes)
        if (candidate.name == attributeName) return &candidate;
    return nullptr;
}

XmlSource::XmlSource(std::string bytes, const std::string& file, const std::string& member)
    : bytes_(std::move(bytes)), where_(file + ", " + member + ": ") {
    scan();
}

void XmlSource::fail(const std::string& what) const {
    throw InputError(where_ + what);
}

std::string XmlSource::attributeText(const SourceElement& element, std::string_view name) const {
    const SourceAttribute* found = element.attribute(name);
    if (!found) return {};
    // Blanks that stand there as they are count as spaces (XML 1.0, 3.3.3); written as references they stay.
    std::string meant;
    for (std::string_view written = text(found->begin, found->end); !written.empty();) {
        const WrittenCharacter next = firstCharacter(written, true);
        appendUtf8(meant, isBlank(written[0]) ? U' ' : next.code);
        written.remove_prefix(next.length);
    }
    return meant;
}

/// `at` is the tag's "<".
void XmlSource::scanTag(size_t at, SourceElement& element) const {
    const auto broken = [&] { fail("the XML is broken; export the document again."); };
    const std::string_view all = bytes_;
    element.begin = at++;
    const size_t nameEnd = all.find_first_of(" \t\r\n/>", at);
    if (nameEnd == std::string_view::npos) broken();
    element.name = all.substr(at, nameEnd - at);
    for (at = nameEnd;;) {
        at = all.find_first_not_of(blanks, at);
        if (at == std::string_view::npos) broken();
        if (all[at] == '>' || all.substr(at, 2) == "/>") break;
        const size_t equals = all.find('=', at);
        const size_t quote = equals == std::string_view::npos ? equals : all.find_first_of("\"'", equals);
        const size_t close = quote == std::string_view::npos ? quote : all.find(all[quote], quote + 1);
        if (close == std::string_view::npos) broken();
        std::string_view name = all.substr(at, equals - at);
        while (!name.empty() && isBlank(name.back())) name.remove_suffix(1);
        element.attributes.push_back({name, quote + 1, close});
        at = close + 1;
    }
    element.isOneTag = all[at] == '/';
    element.tagEnd = element.contentEnd = element.end = at + (element.isOneTag ? 2 : 1);
}

void XmlSource::scan() {
    const std::string encoding = declaredEncoding(bytes_);
    const bool isUtf8 = encoding.empty() || encoding == "utf-8" || encoding == "utf8" || encoding == "us-ascii";
    if (!isUtf8 || bytes_.find('\0') != std::string::npos)
        fail("the part isn't in UTF-8, so that it can't be changed in place; export the document again.");
    const std::string_view all = bytes_;
    std::vector<SourceElement*> open;
    const auto add = [&](SourcePiece::Kind kind, size_t begin, size_t end) {
        if (!open.empty() && begin < end) open.back()->content.push_back({kind, begin, end, nullptr});
    };
    const auto behind = [&](std::string_view mark, size_t from) {
        const size_t found = all.find(mark, from);
        if (found == std::string_view::npos) fail("the XML is broken; export the document again.");
        return found + mark.size();
    };
    for (size_t at = 0; at < all.size();) {
        const size_t tag = std::min(all.find('<', at), all.size());
        add(SourcePiece::Kind::Text, at, tag);
        if (tag == all.size()) break;
        const std::string_view rest = all.substr(tag);
        if (rest.starts_with("<!--")) {
            at = behind("-->", tag + 4);
            add(SourcePiece::Kind::Comment, tag, at);
        } else if (rest.starts_with("<![CDATA[")) {
            at = behind("]]>", tag);
            add(SourcePiece::Kind::CData, tag, at);
        } else if (rest.starts_with("<?")) {
            at = behind("?>", tag);
            add(SourcePiece::Kind::Instruction, tag, at);
        } else if (rest.starts_with("</")) {
            at = behind(">", tag);
            if (open.empty()) fail("the XML is broken; export the document again.");
            open.back()->contentEnd = tag;
            open.back()->end = at;
            open.pop_back();
            if (!open.empty()) open.back()->content.back().end = at;
        } else {
            auto element = std::make_unique<SourceElement>();
            scanTag(tag, *element);
            at = element->tagEnd;
            SourceElement* opened = element.get();
            if (open.empty()) {
                if (root_) fail("the XML is broken; export the document again.");
                root_ = std::move(element);
            } else {
                opened->parent = open.back();
                open.back()->content.push_back({SourcePiece::Kind::Element, tag, at, std::move(element)});
            }
            if (!opened->isOneTag) open.push_back(opened);
        }
    }
    if (!root_ || !open.empty()) fail("the XML is broken; export the document again.");
}

WrittenCharacter firstCharacter(std::string_view written, bool entities) {
    const auto lead = static_cast<unsigned char>(written[0]);
    if (entities && lead == '&') {
        const WrittenCharacter resolved = reference(written);
        if (resolved.length > 0) return resolved;
    }
    if (lead == '\r') return {U'\n', written.substr(0, 2) == "\r\n" ? size_t{2} : size_t{1}};
    if (lead < 0xC0) return {lead, 1};
    const size_t length = std::min<size_t>(lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2, written.size());
    char32_t code = lead & (0xFF >> (length + 1));
    for (size_t i = 1; i < length; ++i) code = code << 6 | (static_cast<unsigned char>(written[i]) & 0x3F);
    return {code, length};
}

std::string escapedText(std::string_view utf8) {
    std::u16string characters = toUtf16(utf8);
    for (char16_t& c : characters) {
        const bool isControl = c < 0x20 && c != u'\t' && c != u'\n' && c != u'\r';
        if (isControl || c >= 0xFFFE) c = u'\uFFFD';  // XML can't hold it, not even as a reference
    }
    std::string text;
    text.reserve(utf8.size());
    for (char c : toUtf8(characters)) {
        if (c == '<')
            text += "&lt;";
        else if (c == '>')
            text += "&gt;";
        else if (c == '&')
            text += "&amp;";
        else if (c == '\r')
            text += "&#xd;";
        else
            text += c;
    }
    return text;
}

std::string escapedAttribute(std::string_view utf8) {
    std::string text;
    for (char c : escapedText(utf8)) {
        if (c == '"')
            text += "&quot;";
        else if (c == '\n')
            text += "&#xa;";
        else if (c == '\t')
            text += "&#x9;";
        else
            text += c;
    }
    return text;
}

}  // namespace desk
