#include "desk/idml/stories.h"

#include <gtest/gtest.h>

#include "desk/idml/limits.h"
#include "desk/idml/test_package.h"

namespace desk {
namespace {

/// A document whose one story has this content.
struct Read {
    std::unique_ptr<Document> document;
    const StoryContent* content = nullptr;

    explicit Read(const std::string& story, const TestPackage& base = {}) {
        TestPackage package = base;
        package.stories[0].second = story;
        document = package.read();
        content = &document->story(document->stories.at(0))->content();
    }
    const std::u16string& text() const { return content->text; }
    const CharacterFormat& character(int32_t position) const {
        return document->characterFormat(content->characterFormatAt(position));
    }
    const ParagraphFormat& paragraph(int32_t position) const {
        return document->paragraphFormat(content->paragraphFormatAt(position));
    }
    std::string paragraphStyle(int32_t position) const {
        const Style* style = document->style(paragraph(position).style);
        return style ? style->name : "";
    }
};

std::string inRange(const std::string& content) {
    return "<ParagraphStyleRange><CharacterStyleRange>" + content + "</CharacterStyleRange></ParagraphStyleRange>";
}

TestPackage withStyles() {
    TestPackage package;
    package.styles +=
        "<RootParagraphStyleGroup><ParagraphStyle Self=\"ParagraphStyle/Body\" Name=\"Body\"/>"
        "<ParagraphStyle Self=\"ParagraphStyle/Head\" Name=\"Head\"/></RootParagraphStyleGroup>"
        "<RootCharacterStyleGroup><CharacterStyle Self=\"CharacterStyle/Strong\" Name=\"Strong\" FontStyle=\"Bold\"/>"
        "<CharacterStyle Self=\"CharacterStyle/Link\" Name=\"Link\"/></RootCharacterStyleGroup>";
    return package;
}

TEST(StoryReading, BreaksEndParagraphsAndTheLastOneEndsWithoutBreak) {
    EXPECT_EQ(Read(inRange("<Content>a</Content><Br/><Content>b</Content>")).text(), u"a\rb\r");
}

TEST(StoryReading, ABreakAtTheEndIsFollowedByAnEmptyParagraph) {
    EXPECT_EQ(Read(inRange("<Content>a</Content><Br/>")).text(), u"a\r\r");
    EXPECT_EQ(Read(inRange("<Br/>")).text(), u"\r\r");
}

TEST(StoryReading, AnEmptyStoryHasItsTerminalReturnInTheFormatsOfItsRange) {
    EXPECT_EQ(Read("").text(), u"\r");
    const Read read(
        "<ParagraphStyleRange AppliedParagraphStyle=\"ParagraphStyle/Head\">"
        "<CharacterStyleRange PointSize=\"20\"/></ParagraphStyleRange>",
        withStyles());
    EXPECT_EQ(read.text(), u"\r");
    EXPECT_EQ(read.paragraphStyle(0), "Head");
    EXPECT_EQ(read.character(0).overrides.pointSize, 20);
}

TEST(StoryReading, WhiteSpaceOutsideContentsIsIndentationAndInsideIsText) {
    EXPECT_EQ(
        Read("\n <ParagraphStyleRange>\n  <CharacterStyleRange>\n <Content> a\tb </Content>\n </CharacterStyleRange>\n"
             "</ParagraphStyleRange>\n")
            .text(),
        u" a\tb \r");
}

TEST(StoryReading, RangesGiveFormatsToTheirText) {
    const Read read(
        TestPackage::range(
            "one", "AppliedParagraphStyle=\"ParagraphStyle/Head\" Justification=\"CenterAlign\" PointSize=\"9\"",
            "AppliedCharacterStyle=\"CharacterStyle/Strong\" PointSize=\"30\""),
        withStyles());
    EXPECT_EQ(read.paragraphStyle(0), "Head");
    EXPECT_EQ(read.paragraph(0).overrides.justification, Justification::Center);
    EXPECT_EQ(read.paragraph(0).overrides.pointSize, 9);
    EXPECT_EQ(read.document->style(read.character(0).style)->name, "Strong");
    EXPECT_EQ(read.character(0).overrides.pointSize, 30);
    EXPECT_EQ(read.character(0).overrides.justification, std::nullopt);
    const ResolvedAttributes& resolved =
        read.document->resolved(read.content->paragraphFormatAt(0), read.content->characterFormatAt(0));
    EXPECT_EQ(resolved.pointSize, 30);
    EXPECT_EQ(resolved.fontStyle, "Bold");
    EXPECT_EQ(resolved.justification, Justification::Center);
}

TEST(StoryReading, AppliedStylesAreUnderstoodInBothSpellings) {
    for (const char* spelling : {"ParagraphStyle/Head", "Head", "$ID/Head"})
        EXPECT_EQ(Read(TestPackage::range("a", "AppliedParagraphStyle=\"" + std::string(spelling) + "\""), withStyles())
                      .paragraphStyle(0),
                  "Head");
    const Read none(TestPackage::range("a", "AppliedParagraphStyle=\"ParagraphStyle/$ID/[No paragraph style]\"",
                                       "AppliedCharacterStyle=\"$ID/[No character style]\""));
    EXPECT_EQ(none.content->characterFormatAt(0), 0u);
    EXPECT_EQ(none.content->paragraphFormatAt(0), 0u);
}

TEST(StoryReading, AStyleThatDoesNotExistIsNotedAndLeftOut) {
    const Read read(TestPackage::range("a", "AppliedParagraphStyle=\"ParagraphStyle/Lost\""));
    EXPECT_EQ(read.paragraph(0).style, 0u);
    EXPECT_TRUE(hasNote(*read.document, "\"ParagraphStyle/Lost\" is applied but doesn't exist"));
}

TEST(StoryReading, AParagraphTakesTheRangeOfItsFirstContent) {
    const Read read(
        "<ParagraphStyleRange AppliedParagraphStyle=\"ParagraphStyle/Head\"><CharacterStyleRange>"
        "<Content>a</Content><Br/></CharacterStyleRange></ParagraphStyleRange>"
        "<ParagraphStyleRange AppliedParagraphStyle=\"ParagraphStyle/Body\"><CharacterStyleRange>"
        "<Content>b</Content></CharacterStyleRange></ParagraphStyleRange>"
        "<ParagraphStyleRange AppliedParagraphStyle=\"ParagraphStyle/Head\"><CharacterStyleRange>"
        "<Content>c</Content><Br/><Br/><Content>d</Content></CharacterStyleRange></ParagraphStyleRange>",
        withStyles());
    EXPECT_EQ(read.text(), u"a\rbc\r\rd\r");
    EXPECT_EQ(read.paragraphStyle(0), "Head");
    EXPECT_EQ(read.paragraphStyle(2), "Body");
    EXPECT_EQ(read.paragraphStyle(4), "Body");
    EXPECT_EQ(read.paragraphStyle(5), "Head");
    EXPECT_EQ(read.paragraphStyle(6), "Head");
    ASSERT_EQ(read.content->paragraphRuns.size(), 3u);
}

TEST(StoryReading, RangesWithEqualFormatsShareARun) {
    const Read read(TestPackage::range("a") + TestPackage::range("b"));
    EXPECT_EQ(read.text(), u"ab\r");
    EXPECT_EQ(read.content->characterRuns.size(), 1u);
    EXPECT_EQ(read.content->paragraphRuns.size(), 1u);
}

TEST(StoryReading, AttributesOfTheStoryStandUnderThoseOfItsParagraphs) {
    TestPackage package;
    package.stories.clear();
    package.moreParts.push_back(
        {"Story", partOf("Story", "<Story Self=\"us1\" PointSize=\"7\" SpaceAfter=\"3\">" +
                                      TestPackage::range("a", "SpaceAfter=\"5\"") + "</Story>")});
    const auto document = package.read();
    const StoryContent& content = document->story(document->stories.at(0))->content();
    const ParagraphFormat& format = document->paragraphFormat(content.paragraphFormatAt(0));
    EXPECT_EQ(format.overrides.pointSize, 7);
    EXPECT_EQ(format.overrides.spaceAfter, 5);
}

TEST(StoryReading, SpecialCharactersStayAsTheyAre) {
    const std::u16string special = u"\u2028\u200B\u00AD\u2011\u00A0\u202F\u2003\u2001\t\u200C";
    EXPECT_EQ(Read(inRange("<Content>"
                           "\xE2\x80\xA8\xE2\x80\x8B\xC2\xAD\xE2\x80\x91\xC2\xA0\xE2\x80\xAF\xE2\x80\x83\xE2\x80\x81\t"
                           "\xE2\x80\x8C</Content>"))
                  .text(),
              special + u"\r");
}

TEST(StoryReading, InstructionsInContentsBecomeMarkers) {
    const Read read(inRange(
        "<Content>p<?ACE 18?>s<?ACE 19?>i<?ACE 7?>r<?ACE 8?>n<?ACE 3?>f<?ACE 4?>u<?ACE 99?>x<?other 18?></Content>"));
    EXPECT_EQ(read.text(),
              u"p\xE000s\xE003i\xE004r\xE005n\xE006"
              u"f\xE007ux\r");
}

TEST(StoryReading, TheRangeSaysWhichPageNumberIsMeant) {
    const auto range = [](const std::string& type) {
        return "<CharacterStyleRange PageNumberType=\"" + type +
               "\"><Content><?ACE 18?></Content></CharacterStyleRange>";
    };
    EXPECT_EQ(Read("<ParagraphStyleRange>" + range("AutoPageNumber") + range("NextPageNumber") +
                   range("PreviousPageNumber") + "</ParagraphStyleRange>")
                  .text(),
              u"\xE000\xE001\xE002\r");
}

TEST(StoryReading, CharactersWithAMeaningOfTheirOwnAreNotTakenFromOutside) {
    const Read read(
        inRange("<Content>a\xEF\xBB\xBF"
                "b\xEF\xBF\xBC"
                "c\xEE\x80\x80"
                "d&#13;e\nf</Content>"));
    EXPECT_EQ(read.text(), u"abcd\u2028e\u2028f\r");
    EXPECT_TRUE(hasNote(*read.document, "forced line break"));
    EXPECT_TRUE(hasNote(*read.document, "private use character"));
}

TEST(StoryReading, ContainersAreWalkedThrough) {
    EXPECT_EQ(Read("<XMLElement MarkupTag=\"t\">" + TestPackage::range("a") + "</XMLElement>" +
                   inRange("<XMLElement MarkupTag=\"t\"><Content>b</Content></XMLElement>"
                           "<HyperlinkTextSource><Content>c</Content></HyperlinkTextSource>"
                           "<CrossReferenceSource>" +
                           TestPackage::range("d") +
                           "</CrossReferenceSource>"
                           "<EndnoteRange><Content>e</Content></EndnoteRange><ParagraphDestination Self=\"u9\"/>"))
                  .text(),
              u"abcde\r");
}

TEST(StoryReading, TextAfterAContainerHasTheFormatOfItsOwnRange) {
    const Read read(inRange(
        "<Content>a</Content><HyperlinkTextSource><ParagraphStyleRange><CharacterStyleRange PointSize=\"40\">"
        "<Content>b</Content></CharacterStyleRange></ParagraphStyleRange></HyperlinkTextSource><Content>c</Content>"));
    EXPECT_EQ(read.text(), u"abc\r");
    EXPECT_EQ(read.character(1).overrides.pointSize, 40);
    EXPECT_EQ(read.character(2).overrides.pointSize, std::nullopt);
}

TEST(StoryReading, ALinkStylesTextThatHasNoStyle) {
    const std::string link =
        "<HyperlinkTextSource AppliedCharacterStyle=\"CharacterStyle/Link\"><Content>a</Content></HyperlinkTextSource>";
    const Read plain(inRange(link), withStyles());
    EXPECT_EQ(plain.document->style(plain.character(0).style)->name, "Link");
    const Read styled("<ParagraphStyleRange><CharacterStyleRange AppliedCharacterStyle=\"CharacterStyle/Strong\">" +
                          link + "</CharacterStyleRange></ParagraphStyleRange>",
                      withStyles());
    EXPECT_EQ(styled.document->style(styled.character(0).style)->name, "Strong");
}

TEST(StoryReading, DeletedTextAndNotesAreLeftOut) {
    EXPECT_EQ(Read(inRange("<Change ChangeType=\"DeletedText\"><Content>x</Content><Br/></Change>"
                           "<Change ChangeType=\"InsertedText\"><Content>a</Content></Change>"
                           "<Change ChangeType=\"MovedText\"><Content>b</Content></Change>"
                           "<Note>" +
                           TestPackage::range("x") + "</Note><HiddenText>" + TestPackage::range("x") +
                           "</HiddenText>"
                           "<PageReference/><XMLComment Value=\"x\"/>"))
                  .text(),
              u"ab\r");
}

TEST(StoryReading, TablesAndNotesAreToldAndTheirTextLeftOut) {
    const Read read(inRange("<Content>a</Content><Table><Cell Name=\"0:0\">" + TestPackage::range("cell") +
                            "</Cell></Table>"
                            "<Footnote>" +
                            TestPackage::range("note") + "</Footnote><Endnote/><Content>b</Content>"));
    EXPECT_EQ(read.text(), u"ab\r");
    EXPECT_TRUE(hasNote(*read.document, "tables aren't set"));
    EXPECT_TRUE(hasNote(*read.document, "footnotes aren't set"));
    EXPECT_TRUE(hasNote(*read.document, "endnote references aren't set"));
    EXPECT_EQ(read.document->notes.back().where, "Stories/Story_us1.xml");
}

TEST(StoryReading, ElementsThatAreNotUnderstoodAreToldOnce) {
    const Read read(inRange("<Hologram/><Hologram/><Content>a</Content>"));
    EXPECT_EQ(read.text(), u"a\r");
    EXPECT_EQ(std::count_if(read.document->notes.begin(), read.document->notes.end(),
                            [](const ReadingNote& note) { return note.what.find("Hologram") != std::string::npos; }),
              1);
}

TEST(StoryReading, AVariablePrintsItsLastResult) {
    EXPECT_EQ(Read(inRange("<Content>on </Content><TextVariableInstance ResultText=\"21 May\"/>")).text(),
              u"on 21 May\r");
}

TEST(StoryReading, TextIsHiddenWhenAllItsConditionsAre) {
    TestPackage package;
    package.documentContent +=
        "<Condition Self=\"Condition/Print Only\" Visible=\"true\"/><Condition Self=\"Condition/Web\" "
        "Visible=\"false\"/>";
    const auto range = [](const std::string& conditions, const std::string& text) {
        return "<CharacterStyleRange AppliedConditions=\"" + conditions + "\"><Content>" + text +
               "</Content></CharacterStyleRange>";
    };
    const Read read("<ParagraphStyleRange>" + range("Condition/Web", "a") +
                        range("Condition/Web Condition/Print%20Only", "b") + range("Condition/Print%20Only", "c") +
                        range("Condition/Lost", "d") + range("", "e") + "</ParagraphStyleRange>",
                    package);
    ASSERT_EQ(read.text(), u"abcde\r");
    EXPECT_EQ(read.character(0).overrides.hiddenByCondition, true);
    EXPECT_EQ(read.character(1).overrides.hiddenByCondition, false);
    EXPECT_EQ(read.character(2).overrides.hiddenByCondition, false);
    EXPECT_EQ(read.character(3).overrides.hiddenByCondition, false);
    EXPECT_EQ(read.character(4).overrides.hiddenByCondition, std::nullopt);
}

TEST(StoryReading, InlineItemsAreOwnedByTheStory) {
    TestPackage package;
    package.stories.push_back({"us2", TestPackage::range("inner")});
    const Read read(
        inRange("<Content>a</Content><Group Self=\"ug\" ItemTransform=\"1 0 0 1 5 6\">" +
                TestPackage::textFrame("ui", "us2") + "</Group><Content>b</Content><Rectangle Self=\"ur\"/>"),
        package);
    EXPECT_EQ(read.text(), u"a\uFFFCb\uFFFC\r");
    ASSERT_EQ(read.content->ownedItems.size(), 2u);
    EXPECT_EQ(read.content->ownedItems[0].position, 1);
    EXPECT_EQ(read.content->ownedItems[1].position, 3);
    const PageItem* group = read.document->item(read.content->ownedItems[0].item);
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(group->kind, ItemKind::Group);
    EXPECT_EQ(group->spread, 0u);
    ASSERT_EQ(group->children.size(), 1u);
    const PageItem* frame = read.document->item(group->children[0]);
    EXPECT_EQ(frame->parent, group->uid);
    EXPECT_EQ(read.document->story(frame->story)->self, "us2");
}

TEST(StoryReading, LocalAttributesComeFromPropertiesToo) {
    const Read read(
        "<ParagraphStyleRange SpaceBefore=\"2\"><Properties><TabList type=\"list\">"
        "<ListItem type=\"record\"><Alignment type=\"enumeration\">RightAlign</Alignment><AlignmentCharacter "
        "type=\"string\">.</AlignmentCharacter>"
        "<Leader type=\"string\">. </Leader><Position type=\"unit\">120</Position></ListItem>"
        "<ListItem type=\"record\"><Alignment type=\"enumeration\">CenterAlign</Alignment><Position "
        "type=\"unit\">60</Position></ListItem>"
        "</TabList></Properties><CharacterStyleRange><Properties><Leading type=\"unit\">14</Leading>"
        "<AppliedFont type=\"string\">Open "
        "Sans</AppliedFont></Properties><Content>a</Content></CharacterStyleRange></ParagraphStyleRange>");
    ASSERT_TRUE(read.paragraph(0).overrides.tabStops);
    const std::vector<TabStop>& stops = *read.paragraph(0).overrides.tabStops;
    ASSERT_EQ(stops.size(), 2u);
    EXPECT_EQ(stops[0], (TabStop{60, TabAlignment::Center, u"", u""}));
    EXPECT_EQ(stops[1], (TabStop{120, TabAlignment::Right, u".", u". "}));
    EXPECT_EQ(read.character(0).overrides.leading, (Leading{false, 14}));
    EXPECT_EQ(read.character(0).overrides.fontFamily, "Open Sans");
}

TEST(StoryReading, AStoryIsNamedByItsIdAndStandsInTheOrderOfThePackage) {
    TestPackage package;
    package.stories.push_back({"us2", ""});
    const auto document = package.read();
    ASSERT_EQ(document->stories.size(), 2u);
    EXPECT_EQ(document->story(document->stories[0])->self, "us1");
    EXPECT_EQ(document->story(document->stories[1])->self, "us2");
}

}  // namespace
}  // namespace desk
