#include "support/string_table_file.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <climits>
#include <initializer_list>
#include <memory>
#include <string>

#include "support/format.h"

namespace vornaset {

namespace {

struct DocumentCloser {
    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
struct ParserCloser {
    void operator()(xmlParserCtxt* parser) const { xmlFreeParserCtxt(parser); }
};
struct TextCloser {
    void operator()(xmlChar* text) const { xmlFree(text); }
};

using Document = std::unique_ptr<xmlDoc, DocumentCloser>;

String textOf(const xmlChar* utf8) {
    return utf8 == nullptr ? String(u"") : String::fromDamagedUTF8(reinterpret_cast<const char*>(utf8));
}

String stringValueOf(const xmlNode* node) {
    const std::unique_ptr<xmlChar, TextCloser> text(xmlNodeGetContent(node));
    return textOf(text.get());
}

/// The first child element of that name, or null.
const xmlNode* childNamed(const xmlNode* parent, const String& name) {
    for (const xmlNode* child = parent->children; child != nullptr; child = child->next) {
        if (child->type == XML_ELEMENT_NODE && textOf(child->name) == name) return child;
    }
    return nullptr;
}

/// An entry for each child element of the node.
Dictionary dictWithStringNodes(const xmlNode* parent) {
    Dictionary table = Dictionary::makeMutable();
    for (const xmlNode* child = parent->children; child != nullptr; child = child->next) {
        if (child->type == XML_ELEMENT_NODE) table.setValue(textOf(child->name), stringValueOf(child));
    }
    return table;
}

Dictionary tableFromSections(const xmlNode* root, const String& languageCode) {
    for (const String& language : {languageCode, String("en"), String("de")}) {
        if (const xmlNode* section = childNamed(root, language)) return dictWithStringNodes(section);
    }
    return dictWithStringNodes(root);
}

Dictionary tableFromEntries(const xmlNode* root, const String& languageCode) {
    Dictionary table = Dictionary::makeMutable();
    for (const xmlNode* entry = root->children; entry != nullptr; entry = entry->next) {
        if (entry->type != XML_ELEMENT_NODE) continue;
        const xmlNode* text = childNamed(entry, languageCode);
        if (text == nullptr) text = childNamed(entry, "en");
        if (text != nullptr) table.setValue(textOf(entry->name), stringValueOf(text));
    }
    return table;
}

void refuseDocumentType(void* context, const xmlChar*, const xmlChar*, const xmlChar*) {
    auto* parser = static_cast<xmlParserCtxt*>(context);
    *static_cast<bool*>(parser->_private) = true;
    xmlStopParser(parser);
}

/// "line 3: Opening and ending tag mismatch ...": what the parser says, without its line feed.
Error errorOf(xmlParserCtxt* parser) {
    const xmlError* error = xmlCtxtGetLastError(parser);
    if (error == nullptr || error->message == nullptr) return {1, "this is no XML"};
    std::string message = error->message;
    while (!message.empty() && message.back() == '\n') message.pop_back();
    return {error->code, stringWithFormat("line %d: %s", error->line, message)};
}

Document parse(std::string_view bytes, Error& error) {
    if (bytes.size() > INT_MAX) {
        error = Error(1, "the file is too large");
        return nullptr;
    }
    const std::unique_ptr<xmlParserCtxt, ParserCloser> parser(xmlNewParserCtxt());
    if (!parser) throw std::bad_alloc();
    bool hasDocumentType = false;
    parser->_private = &hasDocumentType;
    parser->sax->internalSubset = refuseDocumentType;
    Document document(xmlCtxtReadMemory(parser.get(), bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr,
                                        XML_PARSE_NONET | XML_PARSE_NODICT | XML_PARSE_NOERROR | XML_PARSE_NOWARNING));
    if (hasDocumentType) {
        error = Error(1, "a document type declaration isn't allowed here");
        return nullptr;
    }
    if (!document) error = errorOf(parser.get());
    return document;
}

}  // namespace

StringTableFile readStringTable(std::string_view bytes, StringTableForm form, const String& languageCode) {
    StringTableFile result;
    const Document document = parse(bytes, result.error);
    const xmlNode* root = document ? xmlDocGetRootElement(document.get()) : nullptr;
    if (root == nullptr) return result;
    if (form == StringTableForm::flat) {
        result.table = dictWithStringNodes(root);
    } else if (textOf(root->name) == String("strings")) {
        result.table = tableFromSections(root, languageCode);
    } else if (textOf(root->name) == String("strings2")) {
        result.table = tableFromEntries(root, languageCode);
    }
    return result;
}

}  // namespace vornaset
