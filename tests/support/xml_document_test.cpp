#include "support/xml_document.h"

#include <chrono>

#include "support/bundle.h"
#include "support/limits.h"
#include "support/logged.h"
#include "support/printing.h"

namespace vornaset {
namespace {

using namespace std::string_literals;

class Documents : public LoggedTest {
  protected:
    String fileWith(const std::string& bytes) {
        const std::string path = folder_.path() + "/file.xml";
        writeFile(path, bytes);
        return String::fromUTF8(path);
    }
    ScratchFolder folder_;
};

/// Bytes of an XML text with this content and the document's start.
std::string element(const std::string& content) {
    return "<a>" + content + "</a>";
}

std::string repeated(const std::string& text, size_t count) {
    std::string result;
    result.reserve(text.size() * count);
    for (size_t round = 0; round < count; ++round) result += text;
    return result;
}

/// The reason why a text isn't read, and that it was told quickly.
std::string refusalOf(const std::string& text) {
    const auto begin = std::chrono::steady_clock::now();
    Error error;
    const XmlDocument document = XmlDocument::withString(String::fromUTF8(text), 0, error);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
    EXPECT_TRUE(document.isNull());
    return error.localizedDescription().utf8();
}

TEST_F(Documents, HoldTheirRootAndWhatStandsBesideIt) {
    const XmlDocument document = xmlDocWithString("<?xml version=\"1.0\"?><!--c--><?p d?><a b='1'>x<c/></a>", 0);
    ASSERT_FALSE(document.isNull());
    EXPECT_EQ(document.kind(), XmlKind::document);
    EXPECT_TRUE(document.name().isNull());
    EXPECT_TRUE(document.parent().isNull());
    EXPECT_EQ(document.stringValue(), String("x"));
    const std::vector<XmlNode> children = document.children();
    ASSERT_EQ(children.size(), 3u);
    EXPECT_EQ(children[0].kind(), XmlKind::comment);
    EXPECT_TRUE(children[0].name().isNull());
    EXPECT_EQ(children[0].stringValue(), String("c"));
    EXPECT_EQ(children[1].kind(), XmlKind::processingInstruction);
    EXPECT_EQ(children[1].name(), String("p"));
    EXPECT_EQ(children[1].stringValue(), String("d"));
    const Element root = document.rootElement();
    EXPECT_TRUE(root.isSameObject(children[2]));
    EXPECT_TRUE(root.parent().isSameObject(document));
    EXPECT_EQ(root.children()[0].kind(), XmlKind::text);
    EXPECT_EQ(root.children()[0].xmlText(), String("x"));
    EXPECT_EQ(root.attributes().size(), 1u);
    EXPECT_EQ(root.attributes()[0].kind(), XmlKind::attribute);
    EXPECT_EQ(root.attributes()[0].name(), String("b"));
    EXPECT_EQ(root.attributes()[0].stringValue(), String("1"));
    EXPECT_EQ(root.attributes()[0].childCount(), 0u);
    EXPECT_EQ(root.attributes()[0].xmlText(), String("b=\"1\""));
    EXPECT_TRUE(entries().empty());
}

TEST(XmlKinds, BearThePlatformsNumbers) {
    EXPECT_EQ(static_cast<int>(XmlKind::element), 2);
    EXPECT_EQ(static_cast<int>(XmlKind::attribute), 3);
    EXPECT_EQ(static_cast<int>(XmlKind::text), 7);
    EXPECT_EQ(XmlNode().kind(), XmlKind::none);
}

TEST_F(Documents, OptionsKeepWhiteSpaceAndCDATA) {
    const String text = "<a> <b/> <![CDATA[<x>]]></a>";
    EXPECT_EQ(xmlDocWithString(text, 0).rootElement().xmlText(), String("<a><b></b> &lt;x&gt;</a>"));
    const Element kept = xmlDocWithString(text, kPreserveCDataXml | kPreserveWhitespaceXml).rootElement();
    EXPECT_EQ(kept.xmlText(), String("<a> <b></b> <![CDATA[<x>]]></a>"));
    ASSERT_EQ(kept.childCount(), 4u);
    EXPECT_TRUE(kept.children()[3].isCData());
    EXPECT_EQ(kept.children()[3].kind(), XmlKind::text);
    EXPECT_EQ(kept.children()[3].stringValue(), String("<x>"));
    EXPECT_FALSE(kept.children()[2].isCData());
}

TEST_F(Documents, AParseErrorIsLoggedWithItsPlace) {
    EXPECT_TRUE(xmlDocWithString("<a>\n  <b></c>\n</a>", 0).isNull());
    ASSERT_EQ(entries().size(), 1u);
    EXPECT_EQ(entries()[0], "line 2, column 10: Opening and ending tag mismatch: b line 2 and c");
    EXPECT_TRUE(xmlDocWithString(nullptr, 0).isNull());
    EXPECT_TRUE(xmlDocWithString("", 0).isNull());
    EXPECT_TRUE(xmlDocWithString("<!-- nothing else -->", 0).isNull());
    EXPECT_EQ(entries().size(), 4u);
}

TEST_F(Documents, AFilesErrorNamesTheFile) {
    const String path = fileWith("<a>");
    EXPECT_TRUE(xmlDocWithPath(path, 0).isNull());
    EXPECT_TRUE(xmlDocWithPath(path + "x", 0).isNull());
    ASSERT_EQ(entries().size(), 2u);
    EXPECT_EQ(entries()[0].find(path.utf8() + ": line 1, column 4: "), 0u);
    EXPECT_EQ(entries()[1], path.utf8() + "x: the file can't be read");
    EXPECT_TRUE(xmlDocWithPath(nullptr, 0).isNull());
}

TEST_F(Documents, FilesAreReadInTheEncodingThatTheyDeclare) {
    const String expected = u"\u00E4";
    const std::vector<std::string> files = {
        "<a>\xC3\xA4</a>",
        "\xEF\xBB\xBF<a>\xC3\xA4</a>",
        "<?xml version=\"1.0\" encoding=\"utf-8\"?><a>\xC3\xA4</a>",
        "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>\xE4</a>",
        "<?xml version='1.0' encoding='Windows-1252'?><a>\xE4</a>",
        "<?xml version=\"1.0\" encoding=\"macintosh\"?><a>\x8A</a>",
        "\xFF\xFE<\0a\0>\0\xE4\0<\0/\0a\0>\0"s,
        "\xFE\xFF\0<\0a\0>\0\xE4\0<\0/\0a\0>"s,
        "<\0a\0>\0\xE4\0<\0/\0a\0>\0"s,
    };
    for (const std::string& bytes : files) {
        EXPECT_EQ(xmlDocWithPath(fileWith(bytes), 0).rootElement().stringValue(), expected) << bytes;
    }
    EXPECT_TRUE(entries().empty());
}

TEST_F(Documents, BytesThatAreNotInTheirEncodingAreAnError) {
    for (const std::string& bytes :
         {"<a>\xE4</a>"s, "<?xml version='1.0' encoding='Windows-1252'?><a>\x81</a>"s,
          "<?xml version='1.0' encoding='no-such'?><a/>"s, "<?xml version='1.0' encoding='../../x'?><a/>"s,
          "<?xml version='1.0' encoding='UTF-16'?><a>\xE4</a>"s, "\xFF\xFE<\0a"s, "<a>\0</a>"s}) {
        EXPECT_TRUE(xmlDocWithPath(fileWith(bytes), 0).isNull()) << bytes;
    }
    EXPECT_EQ(entries().size(), 7u);
}

TEST_F(Documents, AResourceIsFoundInTheBundle) {
    const Bundle before = gBundle;
    EXPECT_TRUE(xmlDocWithResource("file", "nothing", 0).isNull());
    fileWith("<strings/>");
    gBundle = Bundle::withPath(String::fromUTF8(folder_.path()));
    EXPECT_EQ(xmlDocWithResource("file", "xml", 0).rootElement().name(), String("strings"));
    EXPECT_TRUE(xmlDocWithResource("other", "xml", 0).isNull());
    gBundle = before;
    EXPECT_EQ(entries().size(), 2u);
}

TEST(XmlRefusal, AnEntityBomb) {
    std::string bomb = "<!DOCTYPE a [<!ENTITY e0 \"0123456789\">";
    for (int level = 1; level < 12; ++level) {
        bomb +=
            "<!ENTITY e" + std::to_string(level) + " \"" + repeated("&e" + std::to_string(level - 1) + ";", 10) + "\">";
    }
    EXPECT_EQ(refusalOf(bomb + "]>" + element("&e11;")), "line 1: a document type declaration isn't read; take it out");
}

TEST(XmlRefusal, ExternalEntitiesAndDocumentTypes) {
    const std::string reason = "a document type declaration isn't read; take it out";
    EXPECT_EQ(refusalOf("<!DOCTYPE a [<!ENTITY e SYSTEM \"file:///etc/hostname\">]>\n" + element("&e;")),
              "line 1: " + reason);
    EXPECT_EQ(refusalOf("<?xml version=\"1.0\"?>\n<!DOCTYPE a SYSTEM \"http://127.0.0.1:1/a.dtd\">" + element("")),
              "line 2: " + reason);
    EXPECT_FALSE(refusalOf(element("<!DOCTYPE a>")).empty());
    EXPECT_FALSE(refusalOf("<!ENTITY e 'x'>" + element("&e;")).empty());
    EXPECT_FALSE(refusalOf(element("&nosuch;")).empty());
}

TEST(XmlRefusal, DeepNesting) {
    EXPECT_NE(refusalOf(repeated("<a>", 300) + repeated("</a>", 300)), "");
    EXPECT_NE(refusalOf(repeated("<a>", 2'000'000)), "");
    Error error;
    EXPECT_TRUE(XmlDocument::withString(String::fromUTF8(repeated("<a>", 256) + repeated("</a>", 256)), 0, error));
}

TEST(XmlRefusal, HugeText) {
    EXPECT_NE(refusalOf(element(std::string(11'000'000, 'x'))), "");
    EXPECT_NE(refusalOf(element("<!--" + std::string(11'000'000, 'x') + "-->")), "");
    EXPECT_NE(refusalOf("<a b='" + std::string(11'000'000, 'x') + "'/>"), "");
    EXPECT_NE(refusalOf("<" + std::string(1'000'000, 'x') + "/>"), "");
    EXPECT_EQ(refusalOf(element(std::string(17 << 20, ' '))), "17825799 bytes of XML; no more than 16777216 are read");
}

TEST(XmlRefusal, AFloodOfAttributes) {
    std::string attributes;
    for (int number = 0; number < 200'000; ++number) attributes += " a" + std::to_string(number) + "=''";
    EXPECT_EQ(refusalOf("<a\n" + attributes + "/>"), "line 1: more attributes in one element than are read");
    // The same behind errors that hide a tag from who looks at quotation marks and comments alone.
    for (const char* before : {"<r \"><", "<r ' ", "<r></r x='><", "<r><? ", "<r><!x ", "<r a=\"<!-- ", "<r a=b '"}) {
        EXPECT_NE(refusalOf(std::string(before) + "a " + attributes + "/>' \" --> ?> </r>"), "") << before;
    }
}

TEST(XmlLimits, WhatIsWithinThemIsRead) {
    std::string attributes;
    for (size_t number = 0; number < kMostXmlAttributes; ++number) attributes += " a" + std::to_string(number) + "='='";
    Error error;
    const XmlDocument many = XmlDocument::withString(String::fromUTF8("<a" + attributes + ">a=b='\"</a>"), 0, error);
    EXPECT_TRUE(error.isNull()) << error.localizedDescription().utf8();
    EXPECT_EQ(many.rootElement().attributes().size(), kMostXmlAttributes);
    const auto begin = std::chrono::steady_clock::now();
    const XmlDocument wide = XmlDocument::withString(String::fromUTF8(element(repeated("<b/>x", 500'000))), 0, error);
    EXPECT_EQ(wide.rootElement().childCount(), 1'000'000u);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
}

TEST(XmlString, OfADocumentIsPrettyPrinted) {
    Error error;
    const String declared = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><!--c--><a><b>\u00E4</b><c/></a>";
    EXPECT_EQ(xmlString(XmlDocument::withString(declared, 0, error)),
              String(u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!--c-->\n<a>\n  <b>\u00E4</b>\n  <c/>\n</a>"));
    EXPECT_EQ(xmlString(XmlDocument::withString("<a><b/></a>", 0, error)), String("<a>\n  <b/>\n</a>"));
    EXPECT_TRUE(xmlString(XmlDocument()).isNull());
    EXPECT_EQ(XmlDocument::withString("<a><b/></a>", 0, error).xmlText(), String("<a><b></b></a>"));
}

TEST(XmlString, LeavesMixedContentAlone) {
    Error error;
    const String mixed = "<a>x<b><c/></b></a>";
    EXPECT_EQ(xmlString(XmlDocument::withString(mixed, 0, error)), mixed);
}

TEST(XmlDocumentMake, TakesAFreeRoot) {
    const Element root = Element::make("r");
    const XmlDocument document = XmlDocument::make(root);
    EXPECT_TRUE(document.rootElement().isSameObject(root));
    EXPECT_EQ(document.xmlText(), String("<r></r>"));
    EXPECT_THROW(XmlDocument::make(addNode(root, "c")), InvalidArgumentException);
    EXPECT_TRUE(XmlDocument::make(nullptr).isNull());
    Element::make("other").addChild(root);
    EXPECT_TRUE(document.rootElement().isNull());
    EXPECT_EQ(document.xmlText(), String(""));
}

TEST(XmlHandles, OnTextsOutliveTheTextsReplacement) {
    Element root = Element::withXMLString("<a b='1'>old</a>");
    const XmlNode text = root.children().front();
    const XmlNode attribute = root.attributes().front();
    root.setStringValue("new");
    root.setAttribute("b", "2");
    EXPECT_EQ(text.stringValue(), String("old"));
    EXPECT_TRUE(text.parent().isNull());
    EXPECT_EQ(attribute.stringValue(), String("2"));
    Element holder = Element::make("holder");
    const XmlNode second = root.children().front();
    holder.addChild(root);
    root.setStringValue("newest");
    holder = nullptr;
    root = nullptr;
    EXPECT_EQ(second.stringValue(), String("new"));
}

TEST(XmlHandles, AnElementWithTheXmlPrefixMovesToAnotherTree) {
    Element holder = Element::make("holder");
    holder.addChild(Element::withXMLString("<a xml:lang='de'><b xml:space='preserve'/></a>"));
    EXPECT_EQ(holder.xmlText(), String("<holder><a xml:lang=\"de\"><b xml:space=\"preserve\"></b></a></holder>"));
    EXPECT_EQ(holder.childNamed("a").attribute("xml:lang"), String("de"));
    EXPECT_TRUE(holder.childNamed("a").attribute("lang").isNull());
    holder.childNamed("a").setAttribute("xml:lang", "fr");
    EXPECT_EQ(holder.childNamed("a").attributes().size(), 1u);
    EXPECT_EQ(holder.childNamed("a").attribute("xml:lang"), String("fr"));
}

TEST(XmlHandles, NullNodesAnswerNothing) {
    const XmlNode null;
    EXPECT_FALSE(null);
    EXPECT_FALSE(null.isCData());
    EXPECT_TRUE(null.name().isNull());
    EXPECT_TRUE(null.stringValue().isNull());
    EXPECT_EQ(null.childCount(), 0u);
    EXPECT_TRUE(null.children().empty());
    EXPECT_TRUE(null.parent().isNull());
    EXPECT_TRUE(null.xmlText().isNull());
    EXPECT_TRUE(XmlDocument().rootElement().isNull());
    EXPECT_TRUE(Element().attributes().empty());
    EXPECT_TRUE(Element::with(null).isNull());
}

}  // namespace
}  // namespace vornaset
