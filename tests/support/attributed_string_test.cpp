#include "support/attributed_string.h"

#include "support/printing.h"

namespace vornaset {
namespace {

struct Walked {
    std::vector<std::string> runs;
    size_t stopAt = SIZE_MAX;
};

uint8_t note(const String& text, const Value& style, void* context) {
    auto* walked = static_cast<Walked*>(context);
    walked->runs.push_back(text.utf8() + "|" + style.description().utf8());
    return walked->runs.size() == walked->stopAt ? 0 : 2;
}

std::shared_ptr<AttributedString> styled() {
    auto text = std::make_shared<AttributedString>("Dear ");
    text->append("Ms ", Dictionary::make({{"style", "Bold"}}));
    text->append("Miller", Dictionary::make({{"style", "Bold"}}));
    text->append("!", Dictionary::make({{"colour", "red"}}));
    return text;
}

TEST(EnumAttributedString, GivesEachRunWithItsStyle) {
    Walked walked;
    EXPECT_EQ(EnumAttributedString(styled(), note, &walked), 1);
    EXPECT_EQ(walked.runs, (std::vector<std::string>{"Dear |(null)", "Ms Miller|Bold", "!|(null)"}));
}

TEST(EnumAttributedString, ZeroStopsTheWalk) {
    Walked walked{{}, 2};
    EXPECT_EQ(EnumAttributedString(styled(), note, &walked), 0);
    EXPECT_EQ(walked.runs.size(), 2u);
    Walked last{{}, 3};
    EXPECT_EQ(EnumAttributedString(styled(), note, &last), 0);
}

TEST(EnumAttributedString, AnEmptyStringGivesOneWithNoCall) {
    Walked walked;
    EXPECT_EQ(EnumAttributedString(std::make_shared<AttributedString>(), note, &walked), 1);
    EXPECT_EQ(EnumAttributedString(std::make_shared<AttributedString>("", Dictionary::make()), note, &walked), 1);
    EXPECT_EQ(EnumAttributedString(nullptr, note, &walked), 1);
    EXPECT_EQ(EnumAttributedString("plain", note, &walked), 1);
    EXPECT_TRUE(walked.runs.empty());
}

TEST(EnumAttributedString, TheCallbackMayChangeTheText) {
    const std::shared_ptr<AttributedString> text = styled();
    const auto grow = [](const String&, const Value&, void* context) -> uint8_t {
        static_cast<AttributedString*>(context)->append("more", Dictionary::make({{"n", 1}}));
        return 1;
    };
    EXPECT_EQ(EnumAttributedString(text, grow, text.get()), 1);
    EXPECT_EQ(text->string(), String("Dear Ms Miller!moremoremore"));
}

TEST(AttributedString, KnowsItsTextAndLength) {
    EXPECT_EQ(styled()->description(), String("Dear Ms Miller!"));
    EXPECT_EQ(styled()->length(), 15u);
    EXPECT_EQ(AttributedString(u"\U0001F600").length(), 2u);
    EXPECT_EQ(AttributedString().string(), String(""));
}

}  // namespace
}  // namespace vornaset
