#include "merge/template_services.h"

#include <filesystem>

#include "merge_fixture.h"
#include "recorded_host.h"
#include "support/paths.h"

using namespace vornaset;
namespace fs = std::filesystem;

namespace {

class TemplateServicesTest : public recorded::With<MergeTest> {
  protected:
    void SetUp() override {
        With::SetUp();
        std::string pattern = (fs::temp_directory_path() / "services-XXXXXX").string();
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        folder = pattern;
        setTemporaryFolder(String(folder.c_str()));
    }
    void TearDown() override {
        setTemporaryFolder(nullptr);
        fs::remove_all(folder);
        With::TearDown();
    }
    fs::path folder;
};

TEST_F(TemplateServicesTest, SavedDocumentHasItsOwnPath) {
    document.path = "/jobs/letter.idml";
    EXPECT_EQ(tmpPathForDoc(documentRef()), u"/jobs/letter.idml");
}

TEST_F(TemplateServicesTest, DocumentNeverSavedGetsItsNameInTheTemporaryFolder) {
    document.path.clear();
    document.name = "Untitled-1";
    EXPECT_EQ(tmpPathForDoc(documentRef()).utf8(), (folder / "Untitled-1").string());
}

TEST_F(TemplateServicesTest, ReferenceToNoDocumentGivesTheTemporaryFolder) {
    EXPECT_EQ(tmpPathForDoc(UIDRef()).utf8(), folder.string());
    EXPECT_EQ(tmpPathForDoc(ref(pictureFrame())).utf8(), folder.string());
}

TEST_F(TemplateServicesTest, OutputGoesToAFolderBesideTheFileWhichIsMade) {
    const String made = outputPath(String((folder / "letter.idml").c_str()));
    EXPECT_EQ(made.utf8(), (folder / "Vornaset").string());
    EXPECT_TRUE(fs::is_directory(folder / "Vornaset"));
    EXPECT_EQ(outputPath(String((folder / "other.idml").c_str())), made);
}

TEST_F(TemplateServicesTest, OutputOfAFolderGoesBesideTheFolder) {
    fs::create_directory(folder / "job");
    for (const char* spelling : {"job", "job/", "job//"}) {
        EXPECT_EQ(outputPath(String((folder / spelling).c_str())).utf8(), (folder / "Vornaset").string()) << spelling;
    }
    EXPECT_TRUE(fs::is_empty(folder / "job"));
}

TEST_F(TemplateServicesTest, OutputOfNoPathIsNoFolder) {
    const fs::path former = fs::current_path();
    fs::current_path(folder);
    const String made = outputPath(nullptr);
    fs::current_path(former);
    EXPECT_TRUE(made.isNull());
    EXPECT_TRUE(fs::is_empty(folder));
}

TEST_F(TemplateServicesTest, ShowingAfterExportIsChangedAndTheFormerSettingComesBack) {
    EXPECT_EQ(setShowPreviewAfterPDFExport(0), 1);
    EXPECT_FALSE(host->workspace.showAfterExport);
    EXPECT_EQ(setShowPreviewAfterPDFExport(1), 0);
    EXPECT_TRUE(host->workspace.showAfterExport);
}

TEST_F(TemplateServicesTest, HostWithoutTheSettingGivesWhatWasAsked) {
    host->session.hasWorkspace = false;
    EXPECT_EQ(setShowPreviewAfterPDFExport(0), 0);
    EXPECT_EQ(setShowPreviewAfterPDFExport(1), 1);
    host->session.hasWorkspace = true;
    host->workspace.withheld = {IID_IPDFEXPORTVIEWPREFS};
    EXPECT_EQ(setShowPreviewAfterPDFExport(0), 0);
    EXPECT_TRUE(host->workspace.showAfterExport);
}

TEST_F(TemplateServicesTest, DateIsToldInTheStyleWithoutItsTime) {
    const Date moment{1709294400};  // 1 March 2024, 12:00 GMT
    EXPECT_EQ(dateInStyle(moment, DateStyle::Short, u"en_US", u"GMT"), u"3/1/24");
    EXPECT_EQ(dateInStyle(moment, DateStyle::Medium, u"en_US", u"GMT"), u"Mar 1, 2024");
    EXPECT_EQ(dateInStyle(moment, DateStyle::Long, u"de_DE", u"GMT"), u"1. März 2024");
    EXPECT_EQ(dateInStyle(moment, DateStyle::Full, u"fr_FR", u"GMT"), u"vendredi 1 mars 2024");
    EXPECT_EQ(dateInStyle(moment, DateStyle::None, u"en_US", u"GMT"), u"");
    EXPECT_EQ(dateString(DateStyle::Long, moment), dateInStyle(moment, DateStyle::Long));
}

TEST_F(TemplateServicesTest, NullDateIsToday) {
    const auto today = [] { return dateInStyle(Date{static_cast<double>(::time(nullptr))}, DateStyle::Full); };
    const String before = today(), told = dateString(DateStyle::Full, std::nullopt), after = today();
    EXPECT_TRUE(told == before || told == after) << told.utf8();
}

TEST_F(TemplateServicesTest, DateIsStoredUnderAKeyPath) {
    const Dictionary inner = Dictionary::makeMutable();
    const Dictionary values = Dictionary::makeMutable({{"job", inner}});
    const Date moment{1709294400};
    addDateString(values, u"job.date", moment, DateStyle::Long);
    EXPECT_EQ(inner.valueForKey("date").string(), dateString(DateStyle::Long, moment));
}

TEST_F(TemplateServicesTest, FloatingWindowsAreLeftAlone) {
    hideFloatingWindows();
    showFloatingWindows();
    EXPECT_TRUE(host->calls.empty());
}

}  // namespace
