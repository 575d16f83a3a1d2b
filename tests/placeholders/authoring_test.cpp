#include "placeholders/authoring.h"

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "placeholders/substitution.h"
#include "placeholders/text_model.h"
#include "plugin_fixture.h"
#include "recorded_host.h"
#include "support/alert.h"
#include "support/environment_variable.h"
#include "support/log.h"
#include "support/paths.h"

using namespace vornaset;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class AuthoringTest : public recorded::With<PluginTest> {
  protected:
    TextSelection at(Uid frame, int32_t position) const {
        return {ref(frame), storyOf(frame) ? storyRef(frame) : UIDRef(), 0, position};
    }
    std::vector<std::string> missing(const std::vector<const char*>& known) {
        Array keys = Array::makeMutable();
        for (const char* key : known) keys.add(String(key));
        return textsOf(missingPlaceHolders(documentRef(), keys));
    }
    static std::vector<std::string> textsOf(const Array& array) {
        std::vector<std::string> texts;
        for (const Value& value : array) texts.push_back(value.string().utf8());
        return texts;
    }
    std::string redraw() const { return "redraw " + std::to_string(document.rootUid()); }
};

// --- Inserting

TEST_F(AuthoringTest, PlaceholderGoesInWithOrWithoutItsSpace) {
    const Uid frame = numberedFrame(u"ab", 2);
    insertPlaceholder(at(frame, 1), u"Name", 1);
    EXPECT_EQ(textIn(frame), u"a<<Name >>b");
    insertPlaceholder(at(frame, 0), u"Name", 0);
    EXPECT_EQ(textIn(frame), u"<<Name>>a<<Name >>b");
    insertPlaceholder(at(frame, 0), u"X", 7);
    EXPECT_EQ(textIn(frame), u"<<X >><<Name>>a<<Name >>b");
}

TEST_F(AuthoringTest, FrameWithoutANumberBecomesNumberOneAndIsRedrawn) {
    const Uid frame = textFrame(u"");
    insertPlaceholder(at(frame, 0), u"Name", 0);
    EXPECT_EQ(frameNumberForFrame(ref(frame)), 1);
    EXPECT_THAT(host->calls, ElementsAre(redraw()));
}

TEST_F(AuthoringTest, FrameWithANumberKeepsItAndIsNotRedrawn) {
    const Uid frame = numberedFrame(u"", 4);
    insertPlaceholder(at(frame, 0), u"Name", 0);
    EXPECT_EQ(frameNumberForFrame(ref(frame)), 4);
    EXPECT_THAT(host->calls, IsEmpty());
}

TEST_F(AuthoringTest, SelectionWithoutAFrameGetsTheTextAndNoNumber) {
    const Uid frame = textFrame(u"");
    TextSelection selection = at(frame, 0);
    selection.frame = UIDRef();
    insertPlaceholder(selection, u"Name", 0);
    EXPECT_EQ(textIn(frame), u"<<Name>>");
    EXPECT_EQ(frameNumberForFrame(ref(frame)), 0);
    EXPECT_THAT(host->calls, IsEmpty());
}

TEST_F(AuthoringTest, SelectionWithoutAStoryStillNumbersItsFrame) {
    const Uid frame = pictureFrame();
    TextSelection selection = at(frame, 0);
    selection.story = UIDRef();
    insertPlaceholder(selection, u"Name", 0);
    EXPECT_EQ(frameNumberForFrame(ref(frame)), 1);
    EXPECT_THAT(host->calls, ElementsAre(redraw()));
}

TEST_F(AuthoringTest, PlaceholderTakesTheAttributesOfItsPlace) {
    const Uid frame = textFrame(u"ab");
    const Uid bold = style(desk::StyleKind::Character, "Bold");
    (void)bold;
    MyTextModel(storyRef(frame)).applyCharStyle(u"Bold", 0, 1);
    insertPlaceholder(at(frame, 1), u"K", 0);
    EXPECT_EQ(characterStyleAt(storyOf(frame), 2), "Bold");
    EXPECT_EQ(characterStyleAt(storyOf(frame), 6), "[No character style]");
}

TEST_F(AuthoringTest, PercentSignInAKeyStandsForItself) {
    const Uid frame = numberedFrame(u"", 1);
    insertPlaceholder(at(frame, 0), u"100 %@", 0);
    EXPECT_EQ(textIn(frame), u"<<100 %@>>");
}

// --- What no data answers

TEST_F(AuthoringTest, MissingKeyStandsInTheResultAsOftenAsInTheText) {
    textFrame(u"<<Name>> <<City >> <<City >>");
    EXPECT_THAT(missing({"Name"}), ElementsAre("City", "City"));
}

TEST_F(AuthoringTest, KeyInNextRowFormIsAKeyOfItsOwn) {
    textFrame(u"<<Name#>>");
    EXPECT_THAT(missing({"Name"}), ElementsAre("Name#"));
    EXPECT_THAT(missing({"Name#"}), IsEmpty());
}

TEST_F(AuthoringTest, PunctuationPlaceholderIsReported) {
    textFrame(u"<<,>>");
    EXPECT_THAT(missing({"Name"}), ElementsAre(","));
}

TEST_F(AuthoringTest, KeyOfSpacesIsTheEmptyKey) {
    textFrame(u"<<  >>");
    EXPECT_THAT(missing({"Name"}), ElementsAre(""));
    EXPECT_THAT(missing({""}), IsEmpty());
}

TEST_F(AuthoringTest, OnlySpacesAreTrimmed) {
    textFrame(u"<< \tName\u00A0 >>");
    EXPECT_THAT(missing({}), ElementsAre("\tName\u00A0"));
}

TEST_F(AuthoringTest, EmptyPlaceholderIsNotSeen) {
    textFrame(u"a<<>>b");
    EXPECT_THAT(missing({}), IsEmpty());
}

TEST_F(AuthoringTest, MarksWithoutEndDontHideThePlaceholderOnTheNextLine) {
    textFrame(u"<<a <<b <\r<<Name>> <<c\u2028<<d>>");
    EXPECT_THAT(missing({}), ElementsAre("Name", "d"));
}

TEST_F(AuthoringTest, TextIsReadOnceHoweverManyMarksStayOpenOrAreClosed) {
    // Reading the rest of the line again for each mark would take longer than a test may.
    constexpr size_t many = 300'000;
    std::u16string closed;
    for (size_t key = 0; key < many; ++key) closed += u"<<K>>";
    textFrame(std::u16string(many, u'<'));
    textFrame(closed);
    EXPECT_THAT(missing({"K"}), IsEmpty());
}

TEST_F(AuthoringTest, EmptyPlaceholderTakesInWhatFollowsUpToTheNextEnd) {
    textFrame(u"<<>> and <<Name>>");
    EXPECT_THAT(missing({}), ElementsAre(">> and <<Name"));
}

TEST_F(AuthoringTest, PlaceholderDoesNotCrossALineEnd) {
    textFrame(u"<<Na\rme>> <<A\u2028B>> <<C\nD>> <<Zip>>");
    EXPECT_THAT(missing({}), ElementsAre("Zip"));
}

TEST_F(AuthoringTest, ThirdAngleBracketBelongsToTheKey) {
    textFrame(u"<<<A>> <<B>>>");
    EXPECT_THAT(missing({}), ElementsAre("<A", "B"));
}

TEST_F(AuthoringTest, KeyMayBeTheClosingSignItself) {
    textFrame(u"<<>>>");
    EXPECT_THAT(missing({}), ElementsAre(">"));
}

TEST_F(AuthoringTest, OpeningWithoutAnEndIsNone) {
    textFrame(u"<<Name> <<City");
    EXPECT_THAT(missing({}), IsEmpty());
}

TEST_F(AuthoringTest, DocumentWithoutAPlaceholderGivesAnEmptyMutableArray) {
    textFrame(u"plain");
    const Array found = missingPlaceHolders(documentRef(), nullptr);
    EXPECT_TRUE(found.isMutable());
    EXPECT_EQ(found.count(), 0u);
}

TEST_F(AuthoringTest, RuleNameIsMissingUnlessTheCallerKnowsIt) {
    setupRules(Array::make({Dictionary::make(
        {{"name", "Salutation"}, {"contentOf", "Sex"}, {"replacementsDict", Dictionary::make({{"m", "Mr"}})}})}));
    textFrame(u"<<Salutation>>");
    const std::vector<std::string> withColumn = missing({"Sex"}), withRule = missing({"Sex", "Salutation"});
    gRules = Dictionary();
    EXPECT_THAT(withColumn, ElementsAre("Salutation"));
    EXPECT_THAT(withRule, IsEmpty());
}

TEST_F(AuthoringTest, AllStoriesAreLookedAtInTheirOrder) {
    textFrame(u"<<A>>");
    textFrame(u"<<B>>");
    EXPECT_THAT(missing({}), ElementsAre("A", "B"));
}

TEST_F(AuthoringTest, WithoutKnownKeysAllAreMissing) {
    textFrame(u"<<A>>");
    EXPECT_THAT(textsOf(missingPlaceHolders(documentRef(), nullptr)), ElementsAre("A"));
}

TEST_F(AuthoringTest, EachCallGivesANewArray) {
    textFrame(u"<<A>>");
    EXPECT_EQ(missing({}).size(), 1u);
    EXPECT_EQ(missing({}).size(), 1u);
}

// --- A story's text

TEST_F(AuthoringTest, StoryTextHasItsTerminalReturn) {
    EXPECT_EQ(stringForStory(storyRef(textFrame(u"ab"))), u"ab\r");
}

TEST_F(AuthoringTest, NoStoryGivesNull) {
    EXPECT_TRUE(stringForStory(static_cast<ITextModel*>(nullptr)).isNull());
    EXPECT_TRUE(stringForStory(UIDRef()).isNull());
    EXPECT_TRUE(stringForStory(ref(pictureFrame())).isNull());
}

// --- Reserved operations

class CountingPresenter : public AlertPresenter {
  public:
    void beep() override { ++beeps; }
    AlertAnswer run(const Alert&) override { return {}; }
    int beeps = 0;
};

TEST_F(AuthoringTest, SettingAttributesBeepsAndSaysSoInTheSystemLog) {
    auto presenter = std::make_shared<CountingPresenter>();
    const std::shared_ptr<AlertPresenter> former = setAlertPresenter(presenter);
    std::vector<std::string> lines;
    const SystemLogSink sink = setSystemLogSink([&](std::string_view line) { lines.emplace_back(line); });
    const Uid frame = textFrame(u"ab");
    MyTextModel text(storyRef(frame));
    text.setAttributes(0, 1, String(u"<a/>"));
    text.setAttributes(0, 1, Dictionary::make({{"a", String(u"b")}}));
    setSystemLogSink(sink);
    setAlertPresenter(former);
    EXPECT_EQ(presenter->beeps, 2);
    EXPECT_THAT(lines, ElementsAre("####\tsetAttributes", "####\tsetAttributes"));
    EXPECT_EQ(textIn(frame), u"ab");
}

TEST_F(AuthoringTest, WalkOverAttributesNeverCallsBack) {
    int calls = 0;
    MyTextModel text(storyRef(textFrame(u"ab")));
    text.enumTextAttributes(
        [](MyTextModel*, MyTextAttrData&, void* counter) -> unsigned char {
            ++*static_cast<int*>(counter);
            return 1;
        },
        &calls);
    EXPECT_EQ(calls, 0);
}

// --- Looking at the mirror

TEST_F(AuthoringTest, MirrorIsWrittenToTheTemporaryFolderAndOpened) {
    namespace fs = std::filesystem;
    std::string pattern = (fs::temp_directory_path() / "authoring-XXXXXX").string();
    ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
    const fs::path folder = pattern;
    fs::create_directory(folder / "bin");
    std::ofstream(folder / "bin" / "xdg-open")
        << "#!/bin/sh\necho \"$1\" > '" << (folder / "opened.new").string() << "'\n/bin/mv '"
        << (folder / "opened.new").string() << "' '" << (folder / "opened").string() << "'\n";
    fs::permissions(folder / "bin" / "xdg-open", fs::perms::owner_all);
    {
        const EnvironmentVariable programs("PATH", (folder / "bin").c_str());
        const EnvironmentVariable data("XDG_DATA_HOME", folder.c_str());
        const EnvironmentVariable system("XDG_DATA_DIRS", folder.c_str());
        const EnvironmentVariable settings("XDG_CONFIG_HOME", folder.c_str());
        setTemporaryFolder(String(folder.c_str()));
        std::ofstream(folder / "story.txt") << "what stood here before is longer";
        MyTextModel(storyRef(textFrame(u"\u00E4b"))).log(u"story.txt");
        setTemporaryFolder(nullptr);
        for (int waited = 0; waited < 1000 && !fs::exists(folder / "opened"); ++waited) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }
    std::string written, opened;
    std::getline(std::ifstream(folder / "story.txt", std::ios::binary), written, '\0');
    std::getline(std::ifstream(folder / "opened"), opened);
    EXPECT_EQ(written,
              "\xC3\xA4"
              "b\r");
    EXPECT_THAT(opened, ::testing::EndsWith((folder / "story.txt").string()));
    fs::remove_all(folder);
}

}  // namespace
