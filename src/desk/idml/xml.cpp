#include "desk/idml/xml.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>

#include <cstring>
#include <mutex>

#include "desk/idml/limits.h"
#include "desk/model/document.h"

namespace desk {

const std::string* XmlElement::attribute(std::string_view attributeName) const {
    for (const XmlAttribute& candidate : attributes)
        if (candidate.name == attributeName) return &candidate.value;
    return nullptr;
}

const XmlElement* XmlElement::child(std::string_view childName) const {
    for (const XmlNode& node : content)
        if (node.element && node.element->name == childName) return node.element.get();
    return nullptr;
}

std::string XmlElement::text() const {
    std::string all;
    for (const XmlNode& node : content)
        if (!node.element && node.instruction.empty()) all += node.text;
    return all;
}

namespace {

std::string_view viewOf(const xmlChar* text) {
    return text ? std::string_view(reinterpret_cast<const char*>(text)) : std::string_view();
}

/// Attribute values come with ampersands still written as "&#38;", because a tree builder would expand them later.
std::string attributeValue(const xmlChar* begin, const xmlChar* end) {
    std::string value(reinterpret_cast<const char*>(begin), static_cast<size_t>(end - begin));
    for (size_t at = value.find("&#38;"); at != std::string::npos; at = value.find("&#38;", at + 1))
        value.erase(at + 1, 4);
    return value;
}

}  // namespace

/// Receives the parser's events and builds the tree. Nothing is thrown through the parser: a failure is remembered and
/// the parser stopped.
class XmlBuilder {
  public:
    XmlBuilder(const std::string& file, const std::string& member) : file_(file), member_(member) {
        result_.names_ = std::make_unique<std::set<std::string, std::less<>>>();
    }

    XmlDocument parse(std::string_view bytes);

  private:
    static XmlBuilder& of(void* context) {
        return *static_cast<XmlBuilder*>(static_cast<xmlParserCtxtPtr>(context)->_private);
    }
    int line() const { return parser_->input ? parser_->input->line : 0; }

    void refuse(const std::string& what, int atLine) {
        if (failure_.empty()) {
            failure_ = file_ + ", " + member_ + ", line " + std::to_string(atLine) + ": " + what;
            xmlStopParser(parser_);
        }
    }

    std::string_view interned(const xmlChar* prefix, const xmlChar* local) {
        name_.assign(viewOf(prefix));
        if (prefix) name_ += ':';
        name_ += viewOf(local);
        return *result_.names_->insert(name_).first;
    }

    bool mayAdd(size_t nodes) {
        nodes_ += nodes;
        if (nodes_ <= limits::xmlNodes) return true;
        refuse("the part has too many elements; split the document.", line());
        return false;
    }

    XmlNode* newNode() {
        if (open_.empty() || !failure_.empty() || !mayAdd(1)) return nullptr;
        return &open_.back()->content.emplace_back();
    }

    void startElement(const xmlChar* local, const xmlChar* prefix, int attributeCount, const xmlChar** attributes);
    void text(const xmlChar* characters, int length);
    void instruction(const xmlChar* target, const xmlChar* data);
    static void report(void* context, xmlErrorPtr error);
    xmlSAXHandler handler() const;

    std::string file_, member_;
    XmlDocument result_;
    std::vector<XmlElement*> open_;
    size_t nodes_ = 0;
    std::string failure_;
    std::string name_;
    xmlParserCtxtPtr parser_ = nullptr;
};

void XmlBuilder::startElement(const xmlChar* local, const xmlChar* prefix, int attributeCount,
                              const xmlChar** attributes) {
    if (!failure_.empty() || !mayAdd(1 + static_cast<size_t>(attributeCount))) return;
    if (open_.size() >= static_cast<size_t>(limits::xmlDepth))
        return refuse("the elements are nested too deep; ungroup what is grouped most deeply.", line());
    auto element = std::make_unique<XmlElement>();
    element->name = interned(prefix, local);
    element->line = line();
    element->attributes.reserve(static_cast<size_t>(attributeCount));
    for (int i = 0; i < attributeCount; ++i) {
        // Local name, prefix, namespace, begin and end of the value.
        const xmlChar** field = attributes + static_cast<ptrdiff_t>(5) * i;
        element->attributes.push_back({interned(field[1], field[0]), attributeValue(field[3], field[4])});
    }
    XmlElement* opened = element.get();
    if (open_.empty())
        result_.root_ = std::move(element);
    else
        open_.back()->content.emplace_back().element = std::move(element);
    open_.push_back(opened);
}

void XmlBuilder::text(const xmlChar* characters, int length) {
    if (open_.empty() || !failure_.empty()) return;
    // The parser hands over long text in pieces.
    std::vector<XmlNode>& content = open_.back()->content;
    const bool goesOn = !content.empty() && !content.back().element && content.back().instruction.empty();
    XmlNode* node = goesOn ? &content.back() : newNode();
    if (node) node->text.append(reinterpret_cast<const char*>(characters), static_cast<size_t>(length));
}

void XmlBuilder::instruction(const xmlChar* target, const xmlChar* data) {
    XmlNode* node = newNode();
    if (!node) return;
    node->instruction = interned(nullptr, target);
    node->text = viewOf(data);
}

void XmlBuilder::report(void* context, xmlErrorPtr error) {
    auto* parser = static_cast<xmlParserCtxtPtr>(context);
    // Namespace complaints don't make a document unreadable.
    if (!parser || !parser->_private || error->level < XML_ERR_ERROR || error->domain == XML_FROM_NAMESPACE) return;
    std::string message = error->message ? error->message : "unknown error";
    while (!message.empty() && (message.back() == '\n' || message.back() == '.')) message.pop_back();
    for (char& c : message)
        if (static_cast<unsigned char>(c) < 0x20) c = ' ';
    of(context).refuse("the XML is broken (" + message + "); export the document again.", error->line);
}

xmlSAXHandler XmlBuilder::handler() const {
    xmlSAXHandler sax;
    std::memset(&sax, 0, sizeof sax);
    sax.initialized = XML_SAX2_MAGIC;
    sax.startElementNs = [](void* context, const xmlChar* local, const xmlChar* prefix, const xmlChar*, int,
                            const xmlChar**, int count, int,
                            const xmlChar** attributes) { of(context).startElement(local, prefix, count, attributes); };
    sax.endElementNs = [](void* context, const xmlChar*, const xmlChar*, const xmlChar*) {
        XmlBuilder& self = of(context);
        if (self.failure_.empty() && !self.open_.empty()) self.open_.pop_back();
    };
    sax.characters = [](void* context, const xmlChar* characters, int length) { of(context).text(characters, length); };
    sax.ignorableWhitespace = sax.characters;
    sax.cdataBlock = sax.characters;
    sax.processingInstruction = [](void* context, const xmlChar* target, const xmlChar* data) {
        of(context).instruction(target, data);
    };
    sax.internalSubset = [](void* context, const xmlChar*, const xmlChar*, const xmlChar*) {
        XmlBuilder& self = of(context);
        self.refuse("the part declares a document type, which no package has; use a file from a source you trust.",
                    self.line());
    };
    sax.serror = report;
    return sax;
}

XmlDocument XmlBuilder::parse(std::string_view bytes) {
    static std::once_flag once;
    std::call_once(once, xmlInitParser);
    if (bytes.empty()) throw InputError(file_ + ", " + member_ + ": the part is empty; export the document again.");
    if (bytes.size() > limits::memberBytes)
        throw InputError(file_ + ", " + member_ + ": the part is too large; split the document.");

    const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> parser(xmlNewParserCtxt(), xmlFreeParserCtxt);
    if (!parser) throw std::bad_alloc();
    parser_ = parser.get();
    *parser_->sax = handler();
    parser_->_private = this;
    // HUGE lifts the library's limit on the length of a text, which embedded pictures pass; depth, count and size have
    // limits of our own.
    xmlDocPtr tree = xmlCtxtReadMemory(parser_, bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr,
                                       XML_PARSE_NONET | XML_PARSE_HUGE);
    if (tree) xmlFreeDoc(tree);
    if (failure_.empty() && (!parser_->wellFormed || !result_.root_ || !open_.empty()))
        refuse("the XML ends too early; export the document again.", line());
    if (!failure_.empty()) throw InputError(failure_);
    return std::move(result_);
}

XmlDocument XmlDocument::parse(std::string_view bytes, const std::string& file, const std::string& member) {
    return XmlBuilder(file, member).parse(bytes);
}

}  // namespace desk
