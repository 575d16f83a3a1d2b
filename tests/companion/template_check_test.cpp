#include "companion/template_check.h"

#include <gtest/gtest.h>

#include <cstring>

#include "companion/csv_reader.h"

namespace companion {
namespace {

DataTable table(std::string_view text) {
    ByteBuffer bytes(text.size());
    std::memcpy(bytes.data(), text.data(), text.size());
    return readData(std::move(bytes), "t.csv");
}

StoryFacts story(const char* name, std::int64_t number, std::u16string_view text) {
    StoryFacts facts;
    facts.uid = 1;
    facts.name = name;
    facts.firstFrame = 7;
    facts.number = number;
    facts.characters = text.size();
    facts.placeholders = findPlaceholders(text);
    return facts;
}

TemplateFacts facts(std::vector<StoryFacts> stories) {
    TemplateFacts all;
    all.path = "t.idml";
    all.stories = std::move(stories);
    return all;
}

TEST(PlaceholderScan, FindsWhatTheMergeReplaces) {
    struct {
        std::u16string_view text;
        std::string found;  // column@position, "#" behind an advance, "?" behind possible punctuation
    } cases[] = {
        {u"Dear <<Name>>,\r", "Name@5"},
        {u"<<a >><<b>>\r\r<<c>>\r", "a@0 b@6? c@13?"},
        {u"<<a1#>> <<b1>>\r<<c1>>\r", "a1@0# b1@8 c1@15"},
        {u"<<a1# >>\r", "a1#@0"},
        {u"<<a<<b>>\r", "a<<b@0"},
        {u"<<a1\r>> <<b1\r", ""},
        {u"<<a1>> <<b\r", "a1@0"},
        {u"<<>>\r", "@0"},
        {u">> <<\r", ""},
        {u"<<a1>>>\r<<ü>>", "a1@0 ü@8?"},
        {u"", ""},
    };
    for (auto& [text, expected] : cases) {
        std::string found;
        for (const FoundPlaceholder& one : findPlaceholders(text))
            found += (found.empty() ? "" : " ") + one.column + "@" + std::to_string(one.position) +
                     (one.advancesRow ? "#" : "") + (one.mayBePunctuation ? "?" : "");
        EXPECT_EQ(found, expected);
    }
}

TEST(TemplateCheck, AGoodFitListsNothing) {
    TemplateCheck check = checkTemplate(facts({story("u1", 1, u"<<a>> <<b >>\r<<,>>\r")}), table("a,b\n1,2\n"), {});
    EXPECT_TRUE(check.isGood());
    EXPECT_TRUE(check.unusedColumns.empty());
    EXPECT_EQ(textOfCheck(check), "Template and data fit together.\n");
}

TEST(TemplateCheck, ListsPlaceholdersThatNothingAnswers) {
    TemplateCheck check = checkTemplate(
        facts({story("u1", 1, u"<<name>> <<city#>>\r"), story("u2", 2, u"<<city>> <<city >> <<x>> <<zip>>\r")}),
        table("name\n1\n"), {});
    EXPECT_FALSE(check.isGood());
    EXPECT_EQ(textOfCheck(check),
              "placeholder <<city>>: no column or rule answers it (story u1, u2)\n"
              "placeholder <<x>>: no column or rule answers it (story u2)\n"
              "placeholder <<zip>>: no column or rule answers it (story u2)\n");
}

TEST(TemplateCheck, AnswersCountByColumnByRuleAndAsPunctuation) {
    TemplateCheck check = checkTemplate(facts({story("u1", 1, u"<<Salutation>> <<last>><<,>>\r")}),
                                        table("Sex,last\nm,x\n"), {{"Salutation", "Sex", {}}});
    EXPECT_TRUE(check.isGood());
    EXPECT_TRUE(check.unusedColumns.empty()) << "the rule uses the column Sex";
}

TEST(TemplateCheck, ListsRulesWithoutTheirColumn) {
    TemplateCheck check =
        checkTemplate(facts({story("u1", 1, u"<<aa>> <<Rule>>\r")}), table("aa\n1\n"), {{"Rule", "Sex", {}}});
    EXPECT_EQ(textOfCheck(check), "rule \"Rule\": the column that feeds it isn't in the data\n");
}

TEST(TemplateCheck, ListsColumnsThatNothingUsesAndStaysGood) {
    TemplateCheck check = checkTemplate(facts({story("u1", 1, u"<<aa>>\r")}), table("aa,#aa,bb,#bb\n1,,2,\n"), {});
    EXPECT_EQ(check.unusedColumns, (std::vector<std::string>{"bb", "#bb"}));
    EXPECT_TRUE(check.isGood());
}

TEST(TemplateCheck, ListsStylesThatTheTemplateLacksOnce) {
    TemplateFacts all = facts({story("u1", 1, u"<<aa>>\r")});
    all.characterStyles = {"Bold"};
    TemplateCheck check = checkTemplate(all, table("aa,#aa\n1,Bold\n2,\n3,Red\n4,Red\n5,Blue\n"), {});
    EXPECT_EQ(check.missingStyles, (std::vector<std::pair<std::string, std::size_t>>{{"Red", 3}, {"Blue", 5}}));
    EXPECT_EQ(textOfCheck(check),
              "character style \"Red\": the template lacks it (first in record 3)\n"
              "character style \"Blue\": the template lacks it (first in record 5)\n");
}

TEST(TemplateCheck, ListsFontsPicturesAndStoriesWithoutNumber) {
    TemplateFacts all = facts({story("u1", 0, u"<<aa>>\r"), story("u2", 1, u"<<aa>>\r"), story("u3", 0, u"static\r")});
    all.replacedFonts = {{"Foo Bold", "Liberation Sans Bold"}};
    FrameFacts picture, logo;
    picture.name = "u9";
    picture.number = 1;
    picture.column = "photo";
    logo.name = "u8";
    logo.column = "not asked, the frame has no number";
    all.frames = {picture, logo};
    EXPECT_EQ(textOfCheck(checkTemplate(all, table("aa\n1\n"), {})),
              "story u1: has placeholders, but its first frame has no number; they are printed as they stand\n"
              "frame u9: takes its picture from the column \"photo\", which the data lack\n"
              "font Foo Bold: not on this machine, Liberation Sans Bold stands in\n");
    TemplateCheck check = checkTemplate(all, table("aa,photo\n1,2\n"), {});
    EXPECT_TRUE(check.missingImageColumns.empty());
    EXPECT_TRUE(check.unusedColumns.empty()) << "the frame uses it";
}

TEST(TemplateInfo, TellsEverythingOnce) {
    TemplateFacts all = facts({story("u1", 1, u"<<aa#>> x\r")});
    all.pages = {{"iv", 595.276, 841.89}};
    FrameFacts frame;
    frame.name = "u7";
    frame.givenName = "Address";
    frame.kind = "text frame";
    frame.page = 1;
    frame.left = 10.5;
    frame.width = 100;
    frame.height = 20.001;
    frame.number = 2;
    frame.column = "photo";
    frame.story = "u1";
    all.frames = {frame};
    all.paragraphStyles = {"Body"};
    all.fonts = {"Foo Bold"};
    all.replacedFonts = {{"Foo Bold", "Bar"}};
    EXPECT_EQ(textOfFacts(all),
              "t.idml\n"
              "Pages: 1\n"
              "  iv: 595.28 by 841.89 pt\n"
              "Frames: 1\n"
              "  u7 \"Address\": text frame, page 1, at 10.5 0, 100 by 20 pt, number 2, column \"photo\", story u1\n"
              "Stories: 1\n"
              "  u1: 10 characters, number 1, placeholders <<aa#>>\n"
              "Paragraph styles: 1\n"
              "  Body\n"
              "Character styles: 0\n"
              "Object styles: 0\n"
              "Fonts: 1\n"
              "  Foo Bold\n"
              "  not on this machine: Foo Bold, Bar stands in\n");
}

}  // namespace
}  // namespace companion
