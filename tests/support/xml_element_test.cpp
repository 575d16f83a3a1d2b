#include "support/xml_element.h"

#include "support/printing.h"

namespace vornaset {
namespace {

TEST(XmlElement, ReadsNamesTextsAndChildren) {
    const Element element =
        Element::withXMLString("<Vornaset><frameNum>2</frameNum><colName>Fo&amp;to</colName></Vornaset>");
    ASSERT_FALSE(element.isNull());
    EXPECT_EQ(element.name(), String("Vornaset"));
    EXPECT_EQ(element.childCount(), 2u);
    EXPECT_EQ(integerForKey(element, "frameNum", 0), 2);
    EXPECT_EQ(intForKey(element, "frameNum", 0), 2);
    EXPECT_EQ(stringForKey(element, "colName", nullptr), String("Fo&to"));
    EXPECT_EQ(stringForKey(element, "path", "default"), String("default"));
    EXPECT_EQ(integerForKey(element, "omr", 7), 7);
    EXPECT_EQ(element.childElements()[1].name(), String("colName"));
    EXPECT_EQ(element.stringValue(), String("2Fo&to"));
}

TEST(XmlElement, OfSeveralChildrenTheFirstIsMeant) {
    const Element element = Element::withXMLString("<a><k>1</k><k>2</k></a>");
    EXPECT_EQ(stringForKey(element, "k"), String("1"));
    setStringForKey(element, "k", "x");
    EXPECT_EQ(element.xmlText(), String("<a><k>x</k><k>2</k></a>"));
}

TEST(XmlElement, SettingUpdatesTheFirstChildOrAddsOne) {
    const Element element = Element::make("Vornaset");
    EXPECT_EQ(element.childCount(), 0u);
    setIntegerForKey(element, "frameNum", 3);
    setStringForKey(element, "colName", "A<B & C");
    setIntegerForKey(element, "frameNum", 4);
    EXPECT_EQ(element.xmlText(),
              String("<Vornaset><frameNum>4</frameNum><colName>A&lt;B &amp; C</colName></Vornaset>"));
    setStringForKey(element, "colName", nullptr);
    EXPECT_EQ(stringForKey(element, "colName", "default"), String(""));
    EXPECT_EQ(integerForKey(element, "colName", 5), 0);
}

TEST(XmlElement, WhatIsWrittenReadsBack) {
    const Element element = Element::make("r");
    const String text(u"\u00E4 \U0001F600 <>&\"' \r\n\t ]]> &amp; end ");
    setStringForKey(element, "k", text);
    element.childNamed("k");
    EXPECT_EQ(stringForKey(Element::withXMLString(element.xmlText()), "k"), text);
}

TEST(XmlElement, CharactersThatXmlDoesNotHaveAreReplaced) {
    const Element element = Element::make("r");
    setStringForKey(element, "k", String(std::u16string{u'a', 1, 0, 0xD800, u'b'}));
    const Element read = Element::withXMLString(element.xmlText());
    EXPECT_EQ(stringForKey(read, "k"), String(u"a\uFFFD\uFFFD\uFFFDb"));
}

TEST(XmlElement, DropsLayoutSpaceAndKeepsText) {
    const Element element = Element::withXMLString("<?xml version=\"1.0\"?>\n<a>\n  <b> x </b>\n  <c> </c>\n</a>\n");
    EXPECT_EQ(element.xmlText(), String("<a><b> x </b><c> </c></a>"));
    EXPECT_EQ(element.childCount(), 2u);
}

TEST(XmlElement, EncodingDeclarationsDoNotDisturbText) {
    const Element element =
        Element::withXMLString(u"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>\u00E4\u20AC</a>");
    EXPECT_EQ(element.stringValue(), String(u"\u00E4\u20AC"));
}

TEST(XmlElement, IsNullForWhatDoesNotParse) {
    for (const char* text :
         {"", "{\"json\":1}", "text", "<a>", "<a></b>", "<a/><b/>", "<a>&unknown;</a>", "<a b=1/>"}) {
        EXPECT_TRUE(Element::withXMLString(text).isNull()) << text;
    }
    EXPECT_TRUE(Element::withXMLString(nullptr).isNull());
}

TEST(XmlElement, RefusesADocumentType) {
    EXPECT_TRUE(Element::withXMLString("<!DOCTYPE a><a/>").isNull());
    EXPECT_TRUE(Element::withXMLString("<!DOCTYPE a SYSTEM \"http://localhost/a.dtd\"><a/>").isNull());
    EXPECT_TRUE(Element::withXMLString("<!DOCTYPE a [<!ENTITY e \"text\">]><a>&e;</a>").isNull());
    EXPECT_TRUE(
        Element::withXMLString("<!DOCTYPE a [<!ENTITY e SYSTEM \"file:///etc/hostname\">]><a>&e;</a>").isNull());
}

TEST(XmlElement, RefusesAnEntityBomb) {
    std::string bomb = "<!DOCTYPE a [<!ENTITY e0 \"0123456789\">";
    for (int level = 1; level < 12; ++level) {
        const std::string below = "&e" + std::to_string(level - 1) + ";";
        bomb += "<!ENTITY e" + std::to_string(level) + " \"";
        for (int copy = 0; copy < 10; ++copy) bomb += below;
        bomb += "\">";
    }
    EXPECT_TRUE(Element::withXMLString(String::fromUTF8(bomb + "]><a b=\"&e11;\">&e11;</a>")).isNull());
}

TEST(XmlElement, DepthHasALimit) {
    const auto nested = [](size_t depth) {
        std::string text;
        for (size_t level = 0; level < depth; ++level) text += "<a>";
        for (size_t level = 0; level < depth; ++level) text += "</a>";
        return String::fromUTF8(text);
    };
    EXPECT_FALSE(Element::withXMLString(nested(200)).isNull());
    EXPECT_TRUE(Element::withXMLString(nested(300)).isNull());
    EXPECT_TRUE(Element::withXMLString(nested(100000)).isNull());
}

TEST(XmlElement, NullAnswersNothing) {
    Element null;
    EXPECT_TRUE(null.name().isNull());
    EXPECT_TRUE(null.stringValue().isNull());
    EXPECT_EQ(null.childCount(), 0u);
    EXPECT_TRUE(null.childElements().empty());
    EXPECT_TRUE(null.childNamed("a").isNull());
    EXPECT_TRUE(null.attribute("a").isNull());
    EXPECT_TRUE(null.xmlText().isNull());
    EXPECT_TRUE(xmlString(null).isNull());
    EXPECT_EQ(stringForKey(null, "k", "default"), String("default"));
    EXPECT_EQ(integerForKey(null, "k", 3), 3);
    setStringForKey(null, "k", "v");
    null.setStringValue("x");
    null.setAttribute("a", "b");
    EXPECT_TRUE(nodeForKey(null, "k").isNull());
    EXPECT_TRUE(null.isNull());
}

TEST(XmlElement, AHandleKeepsTheWholeTreeAlive) {
    Element child;
    {
        const Element root = Element::withXMLString("<a><b><c>deep</c></b></a>");
        child = root.childNamed("b").childNamed("c");
    }
    EXPECT_EQ(child.stringValue(), String("deep"));
}

TEST(XmlElement, AChildThatWasReplacedStaysReadable) {
    Element root = Element::withXMLString("<a><b>old</b></a>");
    const Element child = root.childNamed("b");
    root.setStringValue("new");
    EXPECT_EQ(child.stringValue(), String("old"));
    EXPECT_EQ(root.xmlText(), String("<a>new</a>"));
    root = nullptr;
    EXPECT_EQ(child.name(), String("b"));
}

TEST(XmlElement, AnAddedElementLivesOnInItsNewTree) {
    Element leaf = Element::make("leaf");
    setStringForKey(leaf, "k", "v");
    const Element inner = leaf.childNamed("k");
    {
        Element middle = Element::make("middle");
        middle.addChild(leaf);
        Element root = Element::make("root");
        root.addChild(middle);
        EXPECT_EQ(root.xmlText(), String("<root><middle><leaf><k>v</k></leaf></middle></root>"));
    }
    EXPECT_EQ(leaf.xmlText(), String("<leaf><k>v</k></leaf>"));
    EXPECT_EQ(inner.stringValue(), String("v"));
    setStringForKey(leaf, "k", "w");
    EXPECT_EQ(inner.stringValue(), String("w"));
}

TEST(XmlElement, OnlyAFreeElementCanBeAdded) {
    Element root = Element::withXMLString("<a><b/></a>");
    EXPECT_THROW(root.addChild(root.childNamed("b")), InvalidArgumentException);
    EXPECT_THROW(root.addChild(root), InvalidArgumentException);
    EXPECT_THROW(root.childNamed("b").addChild(root), InvalidArgumentException);
    EXPECT_THROW(root.addChild(Element()), InvalidArgumentException);
    EXPECT_EQ(root.xmlText(), String("<a><b></b></a>"));
}

TEST(XmlElement, ANameThatIsNoneMakesNoElement) {
    EXPECT_TRUE(Element::make("two words").isNull());
    EXPECT_TRUE(Element::make("").isNull());
    EXPECT_TRUE(Element::make(nullptr).isNull());
    EXPECT_TRUE(Element::make("1a").isNull());
    const Element element = Element::make("a");
    setStringForKey(element, "<x>", "v");
    EXPECT_EQ(element.xmlText(), String("<a></a>"));
    EXPECT_EQ(Element::make(u"Gr\u00F6\u00DFe").name(), String(u"Gr\u00F6\u00DFe"));
}

TEST(XmlElement, AttributesAreReadAndSet) {
    Element element = Element::withXMLString("<a b=\"1 &lt; 2\" c=\"\"/>");
    EXPECT_EQ(element.attribute("b"), String("1 < 2"));
    EXPECT_EQ(element.attribute("c"), String(""));
    EXPECT_TRUE(element.attribute("d").isNull());
    element.setAttribute("b", "A&B \"q\"");
    element.setAttribute("c", nullptr);
    element.setAttribute(nullptr, "x");
    element.setAttribute("no name", "x");
    EXPECT_EQ(element.xmlText(), String("<a b=\"A&amp;B &quot;q&quot;\" c=\"\"></a>"));
}

TEST(XmlText, TheTwoFormsDifferInSpaceAndEmptyElements) {
    const Element element = Element::withXMLString("<a><b>x</b><c/></a>");
    EXPECT_EQ(element.xmlText(), String("<a><b>x</b><c></c></a>"));
    EXPECT_EQ(xmlString(element), String("<a>\n  <b>x</b>\n  <c/>\n</a>"));
}

TEST(NodeWithXMLString, TakesTheFallbackForNullAndForDamage) {
    EXPECT_EQ(nodeWithXMLString("<a/>", "<b/>").name(), String("a"));
    EXPECT_EQ(nodeWithXMLString(nullptr, "<b/>").name(), String("b"));
    EXPECT_EQ(nodeWithXMLString("damaged", "<b/>").name(), String("b"));
    EXPECT_TRUE(nodeWithXMLString("damaged", nullptr).isNull());
    EXPECT_TRUE(nodeWithXMLString("damaged", "too").isNull());
}

TEST(MakingNodes, AddsThemAsTheLastChild) {
    const Element root = nodeWithName("root", nullptr);
    addStringNode(root, "s", "text");
    addIntegerNode(root, "n", -3);
    const Element empty = addNode(root, "e");
    EXPECT_TRUE(addStringNode(root, nullptr, "text").isNull());
    EXPECT_TRUE(addStringNode(nullptr, "s", "text").isNull());
    EXPECT_EQ(root.xmlText(), String("<root><s>text</s><n>-3</n><e></e></root>"));
    EXPECT_TRUE(xmlElementForName(root, "e").isSameObject(empty));
    EXPECT_EQ(nodeWithName("a", "x").xmlText(), String("<a>x</a>"));
}

TEST(NodeForKey, AddsOneEmptyChildAndGivesItAgain) {
    const Element root = Element::make("root");
    const Element made = nodeForKey(root, "k");
    EXPECT_TRUE(nodeForKey(root, "k").isSameObject(made));
    EXPECT_EQ(root.childCount(), 1u);
}

TEST(FloatForKey, OfAnElementReadsADecimalComma) {
    const Element element = Element::withXMLString("<a><f>1,5</f></a>");
    EXPECT_EQ(floatForKey(element, "f", 0), 1.5);
    EXPECT_EQ(floatForKey(element, "g", 0.25), 0.25);
}

}  // namespace
}  // namespace vornaset
