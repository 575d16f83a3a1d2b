#include "support/xpath.h"

#include <chrono>

#include "support/logged.h"
#include "support/printing.h"
#include "support/xml_document.h"

namespace vornaset {
namespace {

class XPath : public LoggedTest {
  protected:
    Element root_ = Element::withXMLString(
        "<shop name='S'><item id='1'>Pen</item><item id='2'>Ink<!--blue--></item><box><item id='3'/></box></shop>");
};

TEST_F(XPath, FindsNodesInDocumentOrder) {
    EXPECT_EQ(stringsForXPath(root_, "//item"), Array::make({"Pen", "Ink", ""}));
    EXPECT_EQ(stringsForXPath(root_, "item/@id"), Array::make({"1", "2"}));
    EXPECT_EQ(stringsForXPath(root_, "//@id[. > 1]"), Array::make({"2", "3"}));
    EXPECT_EQ(stringsForXPath(root_, "item[2] | item[1]"), Array::make({"Pen", "Ink"}));
    EXPECT_EQ(nodesForXPath(root_, "item/node()").size(), 3u);
    EXPECT_EQ(namesForNodes(nodesForXPath(root_, "*")), Array::make({"item", "item", "box"}));
}

TEST_F(XPath, GivesTheFirstMatchOrNull) {
    EXPECT_EQ(stringForXPath(root_, "item"), String("Pen"));
    EXPECT_EQ(stringForXPath(root_, "box/item"), String(""));
    EXPECT_TRUE(stringForXPath(root_, "nothing").isNull());
    EXPECT_TRUE(nodeForXPath(root_, "nothing").isNull());
    EXPECT_EQ(nodeForXPath(root_, "item[2]").kind(), XmlKind::element);
    EXPECT_EQ(nodeForXPath(root_, "//comment()").stringValue(), String("blue"));
    EXPECT_TRUE(stringsForXPath(root_, "nothing").isEmpty());
    EXPECT_FALSE(stringsForXPath(root_, "nothing").isNull());
    EXPECT_TRUE(entries().empty());
}

TEST_F(XPath, IsRelativeToTheNode) {
    const Element box = root_.childNamed("box");
    EXPECT_EQ(stringForXPath(box, "item/@id"), String("3"));
    EXPECT_EQ(stringForXPath(box, ".//@id"), String("3"));
    EXPECT_EQ(stringForXPath(box, "../@name"), String("S"));
    EXPECT_EQ(stringForXPath(box, "/shop/item[1]"), String("Pen"));
    EXPECT_TRUE(nodeForXPath(box, ".").isSameObject(box));
    EXPECT_EQ(nodeForXPath(box, "/").kind(), XmlKind::document);
    EXPECT_EQ(stringForXPath(Element::with(nodeForXPath(XmlDocument::make(root_), "shop/box")), "*/@id"), String("3"));
}

TEST_F(XPath, PrefixesMeanWhatTheyMeanAtTheNode) {
    const Element tree = Element::withXMLString("<a xmlns:p='urn:p' xmlns='urn:d'><p:b>x</p:b><c>y</c></a>");
    EXPECT_EQ(stringForXPath(tree, "p:b"), String("x"));
    EXPECT_EQ(namesForNodes(nodesForXPath(tree, "*")), Array::make({"p:b", "c"}));
    EXPECT_TRUE(stringForXPath(tree, "c").isNull());
    EXPECT_EQ(stringForXPath(tree, "*[local-name()='c']"), String("y"));
    EXPECT_TRUE(entries().empty());
    EXPECT_TRUE(nodesForXPath(tree, "q:b").empty());
    EXPECT_EQ(entries().size(), 1u);
}

TEST_F(XPath, NameSpacesAreNoNodesOfTheTree) {
    EXPECT_TRUE(nodesForXPath(root_, "namespace::*").empty());
}

TEST_F(XPath, AFailedSearchIsLoggedAndFindsNothing) {
    const std::pair<const char*, const char*> failures[] = {
        {"item[", "no XPath from byte 5 on"},
        {"", "no XPath from byte 0 on"},
        {"item item", "no XPath from byte 5 on"},
        {"count(item)", "what it gives are no nodes"},
        {"nosuch()", "no function has this name"},
        {"item[nosuch()]", "no function has this name"},
        {"item[$x]", "no variable has this name"},
        {"q:item", "a prefix that isn't declared here"},
        {"item[count()]", "a function with too few or too many arguments"},
        {"'a' | 'b'", "a value of the wrong type"},
    };
    testing::internal::CaptureStderr();
    for (const auto& [expression, reason] : failures) {
        EXPECT_TRUE(nodesForXPath(root_, expression).empty()) << expression;
        EXPECT_EQ(entries().back(), "XPath \"" + std::string(expression) + "\": " + reason);
    }
    EXPECT_EQ(entries().size(), std::size(failures));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_TRUE(stringForXPath(root_, nullptr).isNull());
    EXPECT_EQ(entries().back(), "XPath \"(null)\": no expression");
    EXPECT_TRUE(nodeForXPath(root_, "item[").isNull());
    EXPECT_TRUE(stringsForXPath(root_, "item[").isEmpty());
}

TEST_F(XPath, ANullNodeHasNothing) {
    EXPECT_TRUE(nodesForXPath(nullptr, "item").empty());
    EXPECT_TRUE(stringForXPath(nullptr, "item").isNull());
    EXPECT_TRUE(entries().empty());
}

TEST_F(XPath, AnEndlessSearchIsEnded) {
    std::string text = "<a>";
    for (int number = 0; number < 20'000; ++number) text += "<b/>";
    const Element tree = Element::withXMLString(String::fromUTF8(text + "</a>"));
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_TRUE(nodesForXPath(tree, "b[count(//b[count(//b) > 1]) > 1]").empty());
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
    EXPECT_NE(entries().at(0).find(": the search takes too long"), std::string::npos);
}

TEST_F(XPath, ADeepExpressionIsAnError) {
    EXPECT_TRUE(nodesForXPath(root_, String::fromUTF8(std::string(100'000, '('))).empty());
    EXPECT_NE(entries().at(0).find(": the expression nests too deep"), std::string::npos);
}

TEST(NamesForNodes, GivesAnEmptyTextForANodeWithoutName) {
    const Element element = Element::withXMLString("<a>x<b/></a>");
    EXPECT_EQ(namesForNodes(element.children()), Array::make({"", "b"}));
    EXPECT_TRUE(namesForNodes({}).isEmpty());
}

}  // namespace
}  // namespace vornaset
