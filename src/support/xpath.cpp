#include "support/xpath.h"

#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include <memory>
#include <string>

#include "support/limits.h"
#include "support/log.h"
#include "support/xml_tree.h"

namespace vornaset {

namespace {

struct ContextCloser {
    void operator()(xmlXPathContext* context) const { xmlXPathFreeContext(context); }
};
struct ResultCloser {
    void operator()(xmlXPathObject* result) const { xmlXPathFreeObject(result); }
};
struct ListCloser {
    void operator()(xmlNs** spaces) const { xmlFree(spaces); }
};

/// What went wrong first in a search.
struct Failure {
    int code = XPATH_EXPRESSION_OK;
    int position = 0;  ///< bytes of the expression before the place
};

/// The library tells the place and a number; without this it would print its own words on standard error.
void keepFailure(void* kept, xmlError* error) {
    auto& failure = *static_cast<Failure*>(kept);
    if (failure.code != XPATH_EXPRESSION_OK) return;
    failure.code = error->code - XML_XPATH_EXPRESSION_OK;
    failure.position = error->int1;
}

void refuseFunction(xmlXPathParserContext* parser, int) {
    xmlXPathErr(parser, XPATH_UNKNOWN_FUNC_ERROR);
}

/// Asked before the library looks itself, which prints the name of a function that it doesn't find.
xmlXPathFunction functionNamed(void* data, const xmlChar* name, const xmlChar* space) {
    auto* context = static_cast<xmlXPathContext*>(data);
    return xmlHashLookup2(context->funcHash, name, space) == nullptr ? refuseFunction : nullptr;
}

std::string reasonOf(const Failure& failure) {
    switch (failure.code) {
        case XPATH_EXPRESSION_OK:
            return "what it gives are no nodes";
        case XPATH_UNDEF_VARIABLE_ERROR:
            return "no variable has this name";
        case XPATH_UNDEF_PREFIX_ERROR:
            return "a prefix that isn't declared here";
        case XPATH_UNKNOWN_FUNC_ERROR:
            return "no function has this name";
        case XPATH_INVALID_ARITY:
            return "a function with too few or too many arguments";
        case XPATH_INVALID_TYPE:
            return "a value of the wrong type";
        case XPATH_OP_LIMIT_EXCEEDED:
            return "the search takes too long";
        case XPATH_RECURSION_LIMIT_EXCEEDED:
            return "the expression nests too deep";
        default:
            return "no XPath from byte " + std::to_string(failure.position) + " on";
    }
}

void registerPrefixes(xmlXPathContext* context, xmlNode* node) {
    const std::unique_ptr<xmlNs*, ListCloser> spaces(xmlGetNsList(node->doc, node));
    if (!spaces) return;
    for (xmlNs** space = spaces.get(); *space != nullptr; ++space) {
        if ((*space)->prefix != nullptr) xmlXPathRegisterNs(context, (*space)->prefix, (*space)->href);
    }
}

void logSearchError(const String& xPath, const std::string& reason) {
    logError(Error(1, stringWithFormat("XPath \"%@\": %s", xPath, reason)));
}

}  // namespace

std::vector<XmlNode> nodesForXPath(const XmlNode& node, const String& xPath) {
    std::vector<XmlNode> nodes;
    if (node.isNull()) return nodes;
    if (xPath.isNull()) {
        logSearchError(xPath, "no expression");
        return nodes;
    }
    xmlNode* start = XmlAccess::node(node);
    xmlDoc* document = start->type == XML_DOCUMENT_NODE ? static_cast<xmlDoc*>(static_cast<void*>(start)) : start->doc;
    const std::unique_ptr<xmlXPathContext, ContextCloser> context(xmlXPathNewContext(document));
    if (!context) return nodes;
    Failure failure;
    context->node = start;
    context->opLimit = kMostXPathSteps;
    context->userData = &failure;
    context->error = keepFailure;
    xmlXPathRegisterFuncLookup(context.get(), functionNamed, context.get());
    registerPrefixes(context.get(), start);
    const std::unique_ptr<xmlXPathObject, ResultCloser> result(
        xmlXPathEvalExpression(xmlBytes(xPath.utf8()), context.get()));
    if (!result || result->type != XPATH_NODESET) {
        logSearchError(xPath, reasonOf(failure));
        return nodes;
    }
    for (int index = 0; result->nodesetval != nullptr && index < result->nodesetval->nodeNr; ++index) {
        xmlNode* found = result->nodesetval->nodeTab[index];
        // A name space stands for itself alone and isn't part of the tree.
        if (found->type != XML_NAMESPACE_DECL) nodes.push_back(XmlAccess::handle(XmlAccess::tree(node), found));
    }
    return nodes;
}

XmlNode nodeForXPath(const XmlNode& node, const String& xPath) {
    const std::vector<XmlNode> nodes = nodesForXPath(node, xPath);
    return nodes.empty() ? XmlNode() : nodes.front();
}

String stringForXPath(const Element& element, const String& xPath) {
    return nodeForXPath(element, xPath).stringValue();
}

Array stringsForXPath(const XmlNode& node, const String& xPath) {
    Array texts = Array::makeMutable();
    for (const XmlNode& match : nodesForXPath(node, xPath)) texts.add(match.stringValue());
    return texts;
}

Array namesForNodes(const std::vector<XmlNode>& nodes) {
    Array names = Array::makeMutable();
    for (const XmlNode& node : nodes) {
        const String name = node.name();
        names.add(name.isNull() ? String(u"") : name);
    }
    return names;
}

}  // namespace vornaset
