#include "companion/report.h"
#include "companion/whole_file.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "companion/error.h"
#include "companion/problem_keeper.h"
#include "support/paths.h"

namespace companion {
namespace {

namespace fs = std::filesystem;

class Report : public testing::Test {
  protected:
    Report() {
        std::string pattern = fs::temp_directory_path() / "vornaset-report-XXXXXX";
        folder_ = ::mkdtemp(pattern.data());
    }
    ~Report() override { fs::remove_all(folder_); }

    std::size_t filesInFolder() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
    }
    static std::string contents(const fs::path& file) {
        std::ostringstream text;
        text << std::ifstream(file).rdbuf();
        return text.str();
    }

    fs::path folder_;
};

TEST_F(Report, TellsCountsAndEveryProblem) {
    MergeOptions options;
    options.openTemplate.path = "t.idml";
    options.dataPath = "d.csv";
    options.outputPath = "Öut\xFF.pdf";
    RunResult result;
    result.records = 3;
    result.pages = 6;
    result.pageSets = 3;
    result.problems = {{"overset", 2, 1, "u7", "u1", "", "", ""},
                       {"missingImg", 4, 2, "u9", "", "photo", "a.jpg", ""},
                       {"importFailed", 6, 3, "u9", "", "photo", "b.jpg", "It is empty."}};
    result.warnings = {"a \"warning\""};
    result.replacedFonts = {{"Foo", "Bar"}};
    EXPECT_EQ(reportText(options, result),
              "{\n"
              "  \"template\": \"t.idml\",\n"
              "  \"data\": \"d.csv\",\n"
              "  \"output\": \"Öut\xEF\xBF\xBD.pdf\",\n"
              "  \"records\": 3,\n"
              "  \"pages\": 6,\n"
              "  \"pageSets\": 3,\n"
              "  \"problems\": [\n"
              "    {\n"
              "      \"kind\": \"overset\",\n"
              "      \"page\": 2,\n"
              "      \"record\": 1,\n"
              "      \"frame\": \"u7\",\n"
              "      \"story\": \"u1\"\n"
              "    },\n"
              "    {\n"
              "      \"kind\": \"missingImg\",\n"
              "      \"page\": 4,\n"
              "      \"record\": 2,\n"
              "      \"frame\": \"u9\",\n"
              "      \"story\": \"\",\n"
              "      \"column\": \"photo\",\n"
              "      \"file\": \"a.jpg\"\n"
              "    },\n"
              "    {\n"
              "      \"kind\": \"importFailed\",\n"
              "      \"page\": 6,\n"
              "      \"record\": 3,\n"
              "      \"frame\": \"u9\",\n"
              "      \"story\": \"\",\n"
              "      \"column\": \"photo\",\n"
              "      \"file\": \"b.jpg\",\n"
              "      \"reason\": \"It is empty.\"\n"
              "    }\n"
              "  ],\n"
              "  \"warnings\": [\n"
              "    \"a \\\"warning\\\"\"\n"
              "  ],\n"
              "  \"missingFonts\": [\n"
              "    {\n"
              "      \"asked\": \"Foo\",\n"
              "      \"used\": \"Bar\"\n"
              "    }\n"
              "  ],\n"
              "  \"missingCharacters\": \"\"\n"
              "}\n");
}

TEST_F(Report, AppearsWhenItIsWhole) {
    fs::path path = folder_ / "r.json";
    std::ofstream(path) << "old";
    {
        WholeFile file("the report", path);
        EXPECT_EQ(contents(path), "old");
        file.finish("new\n");
        EXPECT_EQ(contents(path), "new\n");
    }
    EXPECT_EQ(filesInFolder(), 1u);
    EXPECT_EQ(fs::status(path).permissions() & fs::perms::owner_all, fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(Report, LeavesNothingWithoutFinish) {
    { WholeFile file("the report", folder_ / "r.json"); }
    EXPECT_EQ(filesInFolder(), 0u);
}

TEST_F(Report, AFolderThatCannotBeWrittenIsToldAtOnce) {
    EXPECT_THROW(WholeFile("the report", folder_ / "missing" / "r.json"), Error);
    EXPECT_THROW(WholeFile("the report", folder_.string()), Error);
    EXPECT_EQ(filesInFolder(), 0u);
}

TEST(ProblemKeeper, NamesPageRecordFrameAndStoryAsInfoDoes) {
    TemplateFacts facts;
    FrameFacts frame;
    frame.uid = 7;
    frame.name = "u7";
    frame.page = 3;
    facts.frames = {frame};
    StoryFacts story;
    story.uid = 8;
    story.name = "u8";
    facts.stories = {story};
    std::vector<ProblemPage> problems;
    ProblemKeeper keeper(facts, 5, problems);
    EXPECT_EQ(vornaset::mergeObserver(), &keeper);
    vornaset::MergePlace place;
    place.pageNum = 12;  // the fifth set of three pages
    place.row = 4;
    place.frame = UIDRef(nullptr, UID(7));
    place.story = UIDRef(nullptr, UID(8));
    keeper.problem(vornaset::ProblemKind::Overset, place);
    place.story = UIDRef();
    place.column = u"photo";
    place.path = u"a.jpg";
    keeper.problem(vornaset::ProblemKind::MissingImage, place);
    place.row = 5;
    keeper.problem(vornaset::ProblemKind::Overset, place);
    place.row = -1;
    keeper.problem(vornaset::ProblemKind::Overset, place);
    EXPECT_EQ(problems, (std::vector<ProblemPage>{{"overset", 15, 5, "u7", "u8", "", "", ""},
                                                  {"missingImg", 15, 5, "u7", "", "photo", "a.jpg", ""}}))
        << "padding and rows before the first are no problems";
}

TEST(ProblemKeeper, TellsWhyAPictureIsMissingAndNothingOfTheRunsFolder) {
    const TemplateFacts facts;
    std::vector<ProblemPage> problems;
    ProblemKeeper keeper(facts, 5, problems, [](vornaset::ProblemKind kind, const std::string& path) {
        return std::string(vornaset::nameOf(kind)) + " " + path;
    });
    vornaset::MergePlace place;
    keeper.problem(vornaset::ProblemKind::Overset, place);
    place.column = u"photo";
    place.path = u"a.jpg";
    keeper.problem(vornaset::ProblemKind::MissingImage, place);
    place.path = vornaset::temporaryPath(nullptr, nullptr);  // what an empty cell leads to
    keeper.problem(vornaset::ProblemKind::ImportFailed, place);
    place.path = vornaset::temporaryPath(u"4006381333931", u"pdf");
    keeper.problem(vornaset::ProblemKind::ImportFailed, place);
    ASSERT_EQ(problems.size(), 4u);
    EXPECT_EQ(problems[0].reason, "");
    EXPECT_EQ(problems[1].reason, "missingImg a.jpg");
    EXPECT_EQ(problems[2].file, "");
    EXPECT_EQ(problems[2].reason, "the cell is empty.");
    EXPECT_EQ(problems[3].file, "4006381333931.pdf");
    EXPECT_EQ(problems[3].reason, "importFailed 4006381333931.pdf");
}

TEST(ProblemKeeper, ARowThatIsMissingGivesTheSentenceOfTheRun) {
    TemplateFacts facts;
    facts.path = "t.idml";
    StoryFacts story;
    story.uid = 8;
    story.name = "u8";
    facts.stories = {story};
    std::vector<ProblemPage> problems;
    {
        ProblemKeeper keeper(facts, 5, problems);
        EXPECT_EQ(keeper.failure(), "");
        vornaset::MergePlace place;
        place.row = 4;
        place.story = UIDRef(nullptr, UID(8));
        keeper.rangeFailure(place, vornaset::RangeException("beyond"));
        EXPECT_EQ(
            keeper.failure(),
            "the template \"t.idml\", story u8, record 5: a placeholder that moves on to the next record (its key ends "
            "in \"#\") finds none; give --offset the number of records that the story shows, fill the last page with "
            "empty records, and leave the story's last placeholder without \"#\".");
    }
    EXPECT_EQ(vornaset::mergeObserver(), nullptr);
}

}  // namespace
}  // namespace companion
