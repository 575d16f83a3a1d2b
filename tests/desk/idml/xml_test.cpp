#include "desk/idml/xml.h"

#include <gtest/gtest.h>

#include "desk/idml/limits.h"
#include "desk/model/document.h"

namespace desk {
namespace {

XmlDocument parse(const std::string& text) {
    return XmlDocument::parse(text, "test.idml", "part.xml");
}

std::string problem(const std::string& text) {
    try {
        parse(text);
    } catch (const InputError& error) {
        return error.what();
    }
    return {};
}

std::string repeated(const std::string& piece, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) all += piece;
    return all;
}

TEST(Xml, KeepsTextInstructionsAndElementsInOrder) {
    const XmlDocument document = parse("<Content>a<?ACE 18?>b<Br/>c<!-- no -->d</Content>");
    const auto& content = document.root().content;
    ASSERT_EQ(content.size(), 5u);
    EXPECT_EQ(content[0].text, "a");
    EXPECT_EQ(content[1].instruction, "ACE");
    EXPECT_EQ(content[1].text, "18");
    EXPECT_EQ(content[2].text, "b");
    EXPECT_EQ(content[3].element->name, "Br");
    EXPECT_EQ(content[4].text, "cd");
    EXPECT_EQ(document.root().text(), "abcd");
}

TEST(Xml, KeepsNamesWithTheirPrefix) {
    const XmlDocument document = parse("<p:Story xmlns:p='urn:p' p:a='1' a='2'/>");
    EXPECT_EQ(document.root().name, "p:Story");
    EXPECT_EQ(*document.root().attribute("p:a"), "1");
    EXPECT_EQ(*document.root().attribute("a"), "2");
    EXPECT_EQ(document.root().attribute("b"), nullptr);
}

TEST(Xml, ReadsAPrefixThatNothingDeclares) {
    EXPECT_EQ(parse("<p:Story/>").root().name, "p:Story");
}

TEST(Xml, ExpandsTheEntitiesThatXmlItselfHas) {
    const XmlDocument document =
        parse("<a v='&lt;&gt;&amp;&quot;&apos;&#38;&#xe9;&#xa;&amp;#38;&amp;amp;'>&lt;&amp;&#xe9;<![CDATA[<&>]]></a>");
    EXPECT_EQ(*document.root().attribute("v"), "<>&\"'&\xC3\xA9\n&#38;&amp;");
    EXPECT_EQ(document.root().text(), "<&\xC3\xA9<&>");
}

TEST(Xml, ReadsOtherEncodings) {
    EXPECT_EQ(parse("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE9</a>").root().text(), "\xC3\xA9");
    EXPECT_EQ(parse("\xEF\xBB\xBF<a>\xC3\xA9</a>").root().text(), "\xC3\xA9");
}

TEST(Xml, CountsLinesFromOne) {
    const XmlDocument document = parse("<a>\n\n<b/></a>");
    EXPECT_EQ(document.root().line, 1);
    EXPECT_EQ(document.root().child("b")->line, 3);
}

TEST(Xml, TellsBrokenXmlWithItsLine) {
    EXPECT_EQ(problem("<a>\n<b>\n</a>").substr(0, 56), "test.idml, part.xml, line 3: the XML is broken (Opening ");
    EXPECT_NE(problem("<a>&undefined;</a>").find("line 1: the XML is broken"), std::string::npos);
    EXPECT_NE(problem("<a><b>"), "");
    EXPECT_NE(problem("<a/><b/>"), "");
    EXPECT_NE(problem("<a v='1' v='2'/>"), "");
    EXPECT_NE(problem("<a>\xFF\xFE\xFF</a>"), "");
    EXPECT_NE(problem("no XML at all"), "");
    EXPECT_NE(problem("<a>" + std::string(1, '\0') + "</a>"), "");
    EXPECT_EQ(problem(""), "test.idml, part.xml: the part is empty; export the document again.");
}

TEST(Xml, ProblemsStayOnOneLine) {
    EXPECT_EQ(problem("<a><b\n>\n</a>").find('\n'), std::string::npos);
}

TEST(Xml, RefusesEveryDocumentType) {
    const std::string refusal =
        "test.idml, part.xml, line 1: the part declares a document type, which no package has; use a file from a "
        "source "
        "you trust.";
    std::string bomb = "<!DOCTYPE a [<!ENTITY e0 'ha'>";
    for (int i = 1; i < 12; ++i) {
        const std::string inner = "&e" + std::to_string(i - 1) + ";";
        bomb += "<!ENTITY e" + std::to_string(i) + " '" + repeated(inner, 10) + "'>";
    }
    EXPECT_EQ(problem(bomb + "]><a>&e11;</a>"), refusal);
    EXPECT_EQ(problem("<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///etc/hostname'>]><a>&e;</a>"), refusal);
    EXPECT_EQ(problem("<!DOCTYPE a SYSTEM 'http://localhost/a.dtd'><a/>"), refusal);
    EXPECT_EQ(problem("<!DOCTYPE a><a/>"), refusal);
}

TEST(Xml, RefusesElementsNestedTooDeep) {
    EXPECT_EQ(problem(repeated("<a>", limits::xmlDepth) + repeated("</a>", limits::xmlDepth)), "");
    EXPECT_EQ(problem(repeated("<a>", limits::xmlDepth + 1)),
              "test.idml, part.xml, line 1: the elements are nested too deep; ungroup what is grouped most deeply.");
    EXPECT_NE(problem(repeated("<a>", 200'000)), "");
}

TEST(Xml, RefusesTooManyElements) {
    std::string many = "<a>";
    for (size_t i = 0; i <= limits::xmlNodes; ++i) many += "<b/>";
    EXPECT_EQ(problem(many + "</a>"),
              "test.idml, part.xml, line 1: the part has too many elements; split the document.");
}

TEST(Xml, ReadsTextLongerThanTheParsersOwnLimit) {
    const std::string picture(12'000'000, 'A');
    EXPECT_EQ(parse("<a><![CDATA[" + picture + "]]></a>").root().text().size(), picture.size());
}

}  // namespace
}  // namespace desk
