#include "support/xml_attributes.h"

#include "support/logged.h"
#include "support/printing.h"

namespace vornaset {
namespace {

class Attributes : public LoggedTest {
  protected:
    Element element_ = Element::withXMLString("<a text='x' n='42' f='2.5' comma='1,5' empty=''><b/><b/></a>");
};

TEST_F(Attributes, GettersGiveTheValueOrTheDefault) {
    EXPECT_EQ(stringForAttribute(element_, "text", "d"), String("x"));
    EXPECT_EQ(stringForAttribute(element_, "empty", "d"), String(""));
    EXPECT_EQ(stringForAttribute(element_, "none", "d"), String("d"));
    EXPECT_TRUE(stringForAttribute(element_, "none").isNull());
    EXPECT_EQ(integerForAttribute(element_, "n", 7), 42);
    EXPECT_EQ(integerForAttribute(element_, "text", 7), 0);
    EXPECT_EQ(integerForAttribute(element_, "none", INT64_MIN), INT64_MIN);
    EXPECT_EQ(floatForAttribute(element_, "f", 7), 2.5f);
    EXPECT_EQ(floatForAttribute(element_, "none", 0.1f), 0.1f);
    EXPECT_EQ(floatForAttribute(nullptr, "f", 1e30f), 1e30f);
    EXPECT_EQ(integerForAttribute(nullptr, "n", 7), 7);
}

TEST_F(Attributes, ADecimalCommaIsNotReplaced) {
    EXPECT_EQ(floatForAttribute(element_, "comma", 7), 1.0f);
}

TEST_F(Attributes, SettingWritesNumbersAsText) {
    const Element made = Element::make("a");
    setNodeAttribute(made, "s", "x & y");
    setNodeAttribute(made, "i", 5);
    setNodeAttribute(made, "l", INT64_MIN);
    setNodeAttribute(made, "d", 0.1);
    setNodeAttribute(made, "w", 2.0);
    setNodeAttribute(made, "i", 6);
    EXPECT_EQ(made.xmlText(), String("<a s=\"x &amp; y\" i=\"6\" l=\"-9223372036854775808\" d=\"0.1\" w=\"2\"></a>"));
}

TEST_F(Attributes, ANullNameOrTextChangesNothing) {
    const String before = element_.xmlText();
    setNodeAttribute(element_, "text", nullptr);
    setNodeAttribute(element_, nullptr, "x");
    setNodeAttribute(element_, nullptr, 5);
    setNodeAttribute(element_, "two words", "x");
    setNodeAttribute(nullptr, "text", "x");
    EXPECT_EQ(element_.xmlText(), before);
}

TEST_F(Attributes, AnXPathNamesTheFirstElementThatItFinds) {
    const Element tree = Element::withXMLString("<a><b/><b/></a>");
    setNodeAttribute(tree, "b", "s", "x");
    setNodeAttribute(tree, "b[2]", "i", 5);
    setNodeAttribute(tree, "b[2]", "d", 0.5);
    setNodeAttribute(tree, "b", "s", nullptr);
    EXPECT_EQ(tree.xmlText(), String("<a><b s=\"x\"></b><b i=\"5\" d=\"0.5\"></b></a>"));
    EXPECT_TRUE(entries().empty());
}

TEST_F(Attributes, WithoutAMatchNothingHappensAndAFailedSearchIsLogged) {
    const String before = element_.xmlText();
    setNodeAttribute(element_, "c", "s", "x");
    setNodeAttribute(element_, "@text", "s", "x");
    EXPECT_TRUE(entries().empty());
    setNodeAttribute(element_, "b[", "s", "x");
    ASSERT_EQ(entries().size(), 1u);
    EXPECT_EQ(entries()[0].find("XPath \"b[\": "), 0u);
    EXPECT_EQ(element_.xmlText(), before);
}

TEST_F(Attributes, ADictionaryAddsEachEntry) {
    const Element made = Element::make("a");
    addNodeAttributes(made, Dictionary::make({{"s", "x"}, {"n", 5}, {"two words", "y"}}));
    addNodeAttributes(made, nullptr);
    addNodeAttributes(nullptr, Dictionary::make({{"s", "x"}}));
    EXPECT_EQ(made.xmlText(), String("<a s=\"x\" n=\"5\"></a>"));
}

TEST_F(Attributes, NodesAreMadeWithThem) {
    EXPECT_EQ(nodeWithName("a", "t", Dictionary::make({{"k", "v"}})).xmlText(), String("<a k=\"v\">t</a>"));
    EXPECT_EQ(nodeWithName("a", nullptr, nullptr).xmlText(), String("<a></a>"));
    EXPECT_TRUE(nodeWithName("two words", "t", Dictionary::make({{"k", "v"}})).isNull());
}

TEST_F(Attributes, ACDATANodeIsNamedStoryWhateverTheNameSays) {
    const Element story = nodeWithCDATA("other", "a < b & c", Dictionary::make({{"id", 3}}));
    EXPECT_EQ(story.name(), String("story"));
    EXPECT_EQ(story.xmlText(), String("<story id=\"3\"><![CDATA[a < b & c]]></story>"));
    EXPECT_EQ(story.stringValue(), String("a < b & c"));
    EXPECT_EQ(story.childCount(), 1u);
    EXPECT_TRUE(story.children()[0].isCData());
    EXPECT_EQ(nodeWithCDATA(nullptr, "", nullptr).xmlText(), String("<story><![CDATA[]]></story>"));
    const String end = nodeWithCDATA("x", "a]]>b", nullptr).xmlText();
    EXPECT_EQ(Element::withXMLString(end).stringValue(), String("a]]>b"));
}

}  // namespace
}  // namespace vornaset
