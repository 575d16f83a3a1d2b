#include "support/xml_text.h"

#include "support/alert.h"
#include "support/limits.h"
#include "support/logged.h"
#include "support/messages.h"
#include "support/printing.h"
#include "support/xml_document.h"

namespace vornaset {
namespace {

const std::string kHeader = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n";

String plain(const char* xml) {
    return xmlString2(Element::withXMLString(xml));
}

class Remembering : public AlertPresenter {
  public:
    void beep() override {}
    AlertAnswer run(const Alert& alert) override {
        messages.push_back(alert.message.utf8());
        return AlertAnswer::defaultButton;
    }
    std::vector<std::string> messages;
};

TEST(XmlString2, AnElementWithOneTextIsOneLine) {
    EXPECT_EQ(plain("<a>text</a>"), String::fromUTF8(kHeader + "<a>text</a>\n"));
}

TEST(XmlString2, ATabALevel) {
    EXPECT_EQ(plain("<a><b><c>x</c></b><d>y</d></a>"),
              String::fromUTF8(kHeader + "<a>\n\t<b>\n\t\t<c>x</c>\n\t</b>\n\t<d>y</d>\n</a>\n"));
}

TEST(XmlString2, AnElementWithoutChildrenTakesTwoLines) {
    EXPECT_EQ(plain("<a><b/></a>"), String::fromUTF8(kHeader + "<a>\n\t<b>\n\t</b>\n</a>\n"));
}

TEST(XmlString2, AttributesAreDropped) {
    EXPECT_EQ(plain("<a k='v'>x</a>"), String::fromUTF8(kHeader + "<a>x</a>\n"));
}

TEST(XmlString2, TextStandsRaw) {
    EXPECT_EQ(plain("<a>1 &lt; 2 &amp; 3</a>"), String::fromUTF8(kHeader + "<a>1 < 2 & 3</a>\n"));
    EXPECT_EQ(xmlString2(nodeWithCDATA("x", "<&>", nullptr)), String::fromUTF8(kHeader + "<story><&></story>\n"));
    EXPECT_EQ(plain("<a>100%@ %d</a>"), String::fromUTF8(kHeader + "<a>100%@ %d</a>\n"));
}

TEST(XmlString2, TextBesideElementsIsLost) {
    EXPECT_EQ(plain("<a>x<b>y</b></a>"),
              String::fromUTF8(kHeader + "<a>\n\t<(null)>\n\t</(null)>\n\t<b>y</b>\n</a>\n"));
    EXPECT_EQ(plain("<a><!--c--></a>"), String::fromUTF8(kHeader + "<a>\n\t<(null)>\n\t</(null)>\n</a>\n"));
}

TEST(XmlString2, ANullElementIsNamedSo) {
    EXPECT_EQ(xmlString2(nullptr), String::fromUTF8(kHeader + "<(null)>\n</(null)>\n"));
}

TEST(XmlString2, TheIndentationIsMadeAfreshAtEachCall) {
    gXMLIndent = MutableString(String("xx"));
    EXPECT_EQ(plain("<a>x</a>"), String::fromUTF8(kHeader + "<a>x</a>\n"));
    EXPECT_EQ(gXMLIndent.length(), 0u);
    gXMLIndent = MutableString(String("\t"));
    EXPECT_EQ(xmlStringForNode(Element::withXMLString("<a><b>x</b></a>")), String("\t<a>\n\t\t<b>x</b>\n\t</a>\n"));
    gXMLIndent = nullptr;
    EXPECT_EQ(xmlStringForNode(Element::withXMLString("<a><b>x</b></a>")), String("<a>\n\t<b>x</b>\n</a>\n"));
}

TEST(XmlString2, AFailureIsShownAndLeavesTheHeaderAlone) {
    const auto remembering = std::make_shared<Remembering>();
    const std::shared_ptr<AlertPresenter> before = setAlertPresenter(remembering);
    Element root = Element::make("a");
    Element innermost = root;
    for (size_t level = 0; level <= kDeepestXmlOutput; ++level) innermost = addNode(innermost, "a");
    EXPECT_EQ(xmlString2(root), String::fromUTF8(kHeader));
    setAlertPresenter(before);
    EXPECT_EQ(remembering->messages,
              (std::vector<std::string>{"An XML tree of more than 1000 levels can't be written"}));
    EXPECT_EQ(plain("<a>x</a>"), String::fromUTF8(kHeader + "<a>x</a>\n"));
}

class DictionaryXml : public LoggedTest {};

TEST_F(DictionaryXml, AnEmptyDictionaryIsAnEmptyRoot) {
    EXPECT_EQ(xmlStringWithDict(Dictionary::make()), String("<d></d>"));
    EXPECT_EQ(xmlStringWithDict(nullptr), String("<d></d>"));
    EXPECT_TRUE(dictWithXMLString("<d></d>").isEmpty());
    EXPECT_TRUE(dictWithXMLString("<d></d>").isMutable());
}

TEST_F(DictionaryXml, KeysStandInTheDictionarysOrder) {
    const Dictionary record = Dictionary::make({{"b", "1 < 2"}, {"a", ""}, {"c", u"\u00E4"}});
    EXPECT_EQ(xmlStringWithDict(record), String(u"<d><b>1 &lt; 2</b><a></a><c>\u00E4</c></d>"));
    EXPECT_EQ(dictWithXMLString(xmlStringWithDict(record)), record);
}

TEST_F(DictionaryXml, EveryValueIsTakenAsItsText) {
    const Dictionary record = Dictionary::make({{"n", 2.5}, {"l", Array::make({1})}, {"x", Data("a")}});
    EXPECT_EQ(dictWithXMLString(xmlStringWithDict(record)),
              Dictionary::make({{"n", "2.5"}, {"l", "(\n    1\n)"}, {"x", "<61>"}}));
}

TEST_F(DictionaryXml, NoKeyIsSkipped) {
    EXPECT_EQ(xmlStringWithDict(Dictionary::make({{"two words", "x"}})), String("<d><two words>x</two words></d>"));
}

TEST_F(DictionaryXml, NullAndDamagedTextGiveAnEmptyDictionary) {
    EXPECT_FALSE(dictWithXMLString(nullptr).isNull());
    EXPECT_TRUE(dictWithXMLString(nullptr).isEmpty());
    EXPECT_TRUE(entries().empty());
    EXPECT_FALSE(dictWithXMLString("<d><a>").isNull());
    EXPECT_TRUE(dictWithXMLString("<d><a>").isEmpty());
    EXPECT_EQ(entries().size(), 2u);
}

TEST_F(DictionaryXml, CommentsAndTextBetweenTheEntriesAreIgnored) {
    EXPECT_EQ(dictWithXMLString("<any>x<a>1</a><!--c--> y <b>2<i>3</i></b><?p?></any>"),
              Dictionary::make({{"a", "1"}, {"b", "23"}}));
}

TEST_F(DictionaryXml, OfSeveralEntriesWithOneNameTheLastWins) {
    EXPECT_EQ(dictWithXMLString("<d><a>1</a><a>2</a></d>"), Dictionary::make({{"a", "2"}}));
}

TEST_F(DictionaryXml, CharactersThatXmlDoesNotHaveAreReplaced) {
    const Dictionary record = Dictionary::make({{"a", String(std::u16string{1, u'x', 0xD800})}});
    EXPECT_EQ(dictWithXMLString(xmlStringWithDict(record)), Dictionary::make({{"a", u"\uFFFDx\uFFFD"}}));
}

uint8_t collect(const XmlNode& node, void* context) {
    auto* texts = static_cast<std::vector<std::string>*>(context);
    texts->push_back(node.parent().name().utf8() + ":" + node.stringValue().utf8());
    return 0;
}

TEST(EnumXMLNodes, VisitsTheTextsInDocumentOrderAndCannotBeStopped) {
    std::vector<std::string> texts;
    EnumXMLNodes(Element::withXMLString("<a>1<b>2<c/>3</b><!--x-->4<d><e>5</e></d></a>"), collect, &texts);
    EXPECT_EQ(texts, (std::vector<std::string>{"a:1", "b:2", "b:3", "a:4", "e:5"}));
    EXPECT_EQ(gXMLElementName, String("e"));
}

TEST(EnumXMLNodes, KeepsTheNameOfTheElementThatItEnteredLast) {
    std::vector<std::string> texts;
    EnumXMLNodes(Element::withXMLString("<a><b>1</b>2</a>"), collect, &texts);
    EXPECT_EQ(gXMLElementName, String("b"));
    EXPECT_EQ(texts.size(), 2u);
}

TEST(EnumXMLNodes, TakesATextItselfAndPassesOverOtherKinds) {
    Error error;
    const XmlDocument document = XmlDocument::withString("<a>1<![CDATA[2]]><?p 3?></a>", kPreserveCDataXml, error);
    std::vector<std::string> texts;
    EnumXMLNodes(document, collect, &texts);
    EnumXMLNodes(nullptr, collect, &texts);
    EnumXMLNodes(document.rootElement().children()[2], collect, &texts);
    EXPECT_TRUE(texts.empty());
    EnumXMLNodes(document.rootElement(), collect, &texts);
    EnumXMLNodes(document.rootElement().children()[1], collect, &texts);
    EXPECT_EQ(texts, (std::vector<std::string>{"a:1", "a:2", "a:2"}));
}

TEST(EnumXMLNodes, GoesAsDeepAsATreeWasBuilt) {
    Element root = Element::make("a");
    Element innermost = root;
    for (int level = 0; level < 20'000; ++level) innermost = addNode(innermost, "a");
    innermost.setStringValue("deep");
    std::vector<std::string> texts;
    EnumXMLNodes(root, collect, &texts);
    EXPECT_EQ(texts, (std::vector<std::string>{"a:deep"}));
}

TEST(EnumXMLNodes, TheCallbackMayEditTheTree) {
    Element root = Element::withXMLString("<a><b>1</b><b>2</b></a>");
    const auto empty = [](const XmlNode&, void* context) -> uint8_t {
        static_cast<Element*>(context)->setStringValue(nullptr);
        return 1;
    };
    EnumXMLNodes(root, empty, &root);
    EXPECT_EQ(root.childCount(), 0u);
}

}  // namespace
}  // namespace vornaset
