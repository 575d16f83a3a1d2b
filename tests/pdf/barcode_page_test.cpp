#include "pdf/barcode_page.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>

#include "pdf/page_count.h"
#include "support/paths.h"
#include "support/processes.h"
#include "toolkit.h"

namespace vornaset {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
namespace fs = std::filesystem;

class BarcodePage : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "barcode-page-XXXXXX").string();
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        folder = pattern;
        tool = path("tool");
    }
    void TearDown() override {
        registerShellScript(tool, nullptr);
        setTemporaryFolder(nullptr);
        fs::remove_all(folder);
    }
    String path(const char* name) const { return String((folder / name).c_str()); }
    /// A program that writes its arguments beside itself, one a line, and then does this.
    void program(const std::string& commands) const {
        std::ofstream(folder / "tool") << "#!/bin/sh\nfor a; do echo \"$a\"; done > \"$(dirname \"$0\")/asked\"\n" +
                                              commands + "\n";
        fs::permissions(folder / "tool", fs::perms::owner_all);
    }
    std::vector<std::string> asked() const {
        std::vector<std::string> lines;
        std::ifstream file(folder / "asked");
        for (std::string line; std::getline(file, line);) lines.push_back(line);
        return lines;
    }
    Handle<MyPDFDoc> drawn(const std::string& description) {
        registerShellScript(tool, [=](const Array&) { return Data(description); });
        return pdfDocWithEANCode(tool, u"ean13", u"4006381333931", {100, 40});
    }
    static std::string textOfObject(const std::string& file, const std::string& words) {
        const size_t found = file.find(words);
        if (found == std::string::npos) return {};
        const size_t begin = file.rfind(" obj", found);
        return file.substr(begin, file.find("endobj", found) - begin);
    }

    fs::path folder;
    String tool;
};

TEST_F(BarcodePage, ProgramGetsExactlyFiveArguments) {
    program("echo '0 0 1 1 re f'");
    ASSERT_TRUE(pdfDocWithEANCode(tool, u"ean13", u"4006381333931", {100, 40}));
    EXPECT_THAT(asked(), ElementsAre("-e", "ean13", "-b", "4006381333931", "-D"));
}

TEST_F(BarcodePage, DescriptionIsThePagesContentUnchangedAndThePageHasTheSize) {
    const std::string description = "q 1 0 0 1 0 0 cm\r\n\t0 0 3 3 re f % \xE4\n";
    const Handle<MyPDFDoc> document = drawn(description);
    const Handle<MyPDFDictionary> page = document->pages().first();
    EXPECT_EQ(textOf(page->contentsData()), description);
    EXPECT_EQ(page->mediaBox(), (Rect{0, 0, 100, 40}));
    EXPECT_EQ(page->cropBox(), (Rect{0, 0, 100, 40}));
    EXPECT_EQ(textOf(document->pdfHeader()).size(), 19u);
}

TEST_F(BarcodePage, ResourcesHoldCourierAndNothingElse) {
    const Handle<MyPDFDoc> document = drawn("0 0 1 1 re f");
    const auto resources = objectAs<MyPDFDictionary>(document->pages().first()->resources());
    ASSERT_EQ(resources->numberOfChildren(), 1);
    const auto fonts = objectAs<MyPDFDictionary>(resources->objectForKeyedSubscript(u"Font"));
    ASSERT_EQ(fonts->numberOfChildren(), 1);
    const auto courier = objectAs<MyPDFDictionary>(fonts->objectForKeyedSubscript(u"Courier"));
    EXPECT_EQ(courier->nameForKey(u"BaseFont"), u"/Courier");
}

TEST_F(BarcodePage, WrittenFileHasOnePageUnderItsNodeAndAnEmptyInfo) {
    const Handle<MyPDFDoc> document = drawn("0 0 1 1 re f");
    const std::string file = textOf(document->pdfData());
    EXPECT_THAT(file, HasSubstr("/Count 1"));
    EXPECT_EQ(file.find("/Producer"), std::string::npos);
    EXPECT_EQ(file.find("/Creator"), std::string::npos);
    EXPECT_THAT(file, HasSubstr("/FlateDecode"));
    // Info, catalog, pages node, kids, page, content, two boxes, resources, fonts, the font.
    EXPECT_EQ(document->pdfObjs().count(), 11u);
    const std::string page = textOfObject(file, "/MediaBox");
    std::smatch parent;
    ASSERT_TRUE(std::regex_search(page, parent, std::regex("/Parent (\\d+) 0 R")));
    EXPECT_EQ(parent[1], std::to_string(document->pagesObj()->objNum()));
}

TEST_F(BarcodePage, WrittenFileIsReadByTheReader) {
    drawn("0 0 1 1 re f")->writeToFile(path("code.pdf"));
    const Handle<MyPDFDoc> read = MyPDFDoc::pdfDocWithPath(path("code.pdf"));
    EXPECT_EQ(read->numberOfPages(), 1);
    EXPECT_EQ(textOf(read->pages().first()->contentsData()), "0 0 1 1 re f");
}

TEST_F(BarcodePage, NullProgramStartsNothing) {
    EXPECT_FALSE(pdfDocWithEANCode(nullptr, u"ean13", u"1", {1, 1}));
    EXPECT_FALSE(pdfDocWithEANCode(nullptr, nullptr, nullptr, {1, 1}));
}

TEST_F(BarcodePage, ProgramThatCannotBeStartedRaises) {
    try {
        pdfDocWithEANCode(path("missing"), u"ean13", u"1", {1, 1});
        FAIL() << "nothing was thrown";
    } catch (const Exception& failure) {
        EXPECT_THAT(failure.reason(), HasSubstr((folder / "missing").string()));
    }
}

TEST_F(BarcodePage, NullCodeOrKindRaises) {
    program("echo x");
    EXPECT_THROW(pdfDocWithEANCode(tool, u"ean13", nullptr, {1, 1}), InvalidArgumentException);
    EXPECT_THROW(pdfDocWithEANCode(tool, nullptr, u"1", {1, 1}), InvalidArgumentException);
    EXPECT_THAT(asked(), ElementsAre());
}

TEST_F(BarcodePage, ProgramThatPrintsNothingGivesNothing) {
    program("echo refused >&2; exit 0");
    EXPECT_FALSE(pdfDocWithEANCode(tool, u"ean13", u"1", {1, 1}));
}

TEST_F(BarcodePage, ProgramThatFailsButPrintsIsTakenAtItsWord) {
    program("printf '0 0 1 1 re f'; exit 3");
    const Handle<MyPDFDoc> document = pdfDocWithEANCode(tool, u"ean13", u"1", {1, 1});
    EXPECT_EQ(textOf(document->pages().first()->contentsData()), "0 0 1 1 re f");
}

TEST_F(BarcodePage, AbsentDocumentWritesNoFile) {
    pdfDocWithEANCode(nullptr, u"ean13", u"1", {1, 1})->writeToFile(path("none.pdf"));
    EXPECT_FALSE(fs::exists(folder / "none.pdf"));
}

// --- PostScript

/// Asked of the machine and not of the operation, whose failure must not pass for a missing program.
bool hasGhostscript() {
    return std::system("command -v gs > /dev/null") == 0;
}

TEST_F(BarcodePage, PostScriptBecomesAPdfFile) {
    if (!hasGhostscript()) GTEST_SKIP() << "there is no Ghostscript on this machine";
    const Data made =
        pdfDataWithPSData(Data(std::string("%!PS\n<</PageSize [100 50]>> setpagedevice\n"
                                           "newpath 10 10 moveto 90 40 lineto stroke showpage\n")));
    ASSERT_FALSE(made.isNull());
    ASSERT_EQ(made.view().substr(0, 5), "%PDF-");
    std::ofstream(folder / "made.pdf", std::ios::binary) << made.view();
    EXPECT_EQ(pageCountOfPDFFile(path("made.pdf")), 1);
}

TEST_F(BarcodePage, PostScriptThatFailsGivesEmptyBytesAndNotNull) {
    if (!hasGhostscript()) GTEST_SKIP() << "there is no Ghostscript on this machine";
    const Data made = pdfDataWithPSData(Data(std::string("%!PS\nnosuchoperator showpage\n")));
    ASSERT_FALSE(made.isNull());
    EXPECT_EQ(made.length(), 0u);
}

TEST_F(BarcodePage, PostScriptMayNotReadOtherFiles) {
    if (!hasGhostscript()) GTEST_SKIP() << "there is no Ghostscript on this machine";
    std::ofstream(folder / "secret") << "secret";
    const Data made =
        pdfDataWithPSData(Data("%!PS\n(" + (folder / "secret").string() + ") (r) file closefile showpage\n"));
    ASSERT_FALSE(made.isNull());
    EXPECT_EQ(made.length(), 0u);
}

TEST_F(BarcodePage, NullPostScriptGivesNull) {
    EXPECT_TRUE(pdfDataWithPSData(nullptr).isNull());
}

TEST_F(BarcodePage, ConversionLeavesNothingInTheTemporaryFolder) {
    fs::create_directory(folder / "tmp");
    setTemporaryFolder(path("tmp"));
    pdfDataWithPSData(Data(std::string("%!PS\nshowpage\n")));
    EXPECT_TRUE(fs::is_empty(folder / "tmp"));
    setTemporaryFolder(path("not there"));
    EXPECT_TRUE(pdfDataWithPSData(Data(std::string("%!PS\nshowpage\n"))).isNull());
}

// --- Page counts

TEST_F(BarcodePage, PagesOfAFileAreCounted) {
    documentOfPages(5)->writeToFile(path("five.pdf"));
    EXPECT_EQ(pageCountOfPDFFile(path("five.pdf")), 5);
    EXPECT_EQ(pageCountOfPDFFile(path("five.pdf")), 5);
}

TEST_F(BarcodePage, FileThatChangedIsCountedAgain) {
    documentOfPages(2)->writeToFile(path("some.pdf"));
    EXPECT_EQ(pageCountOfPDFFile(path("some.pdf")), 2);
    documentOfPages(3)->writeToFile(path("some.pdf"));
    EXPECT_EQ(pageCountOfPDFFile(path("some.pdf")), 3);
}

TEST_F(BarcodePage, FileThatIsRewrittenInTheSameInstantWithTheSameSizeIsCountedAgain) {
    const String some = path("some.pdf");
    std::string bytes[2];
    for (const int pages : {1, 2}) {
        std::string& made = bytes[pages - 1];
        made = documentOfPages(pages)->pdfData().view();
        made.resize(2048, '\n');
    }
    for (int round = 0; round < 50; ++round) {
        std::ofstream(some.utf8(), std::ios::binary) << bytes[round % 2];
        ASSERT_EQ(pageCountOfPDFFile(some), round % 2 + 1) << round;
    }
}

TEST_F(BarcodePage, WhatIsNoPdfHasNoPages) {
    std::ofstream(folder / "text.pdf") << "no PDF";
    EXPECT_EQ(pageCountOfPDFFile(path("text.pdf")), 0);
    EXPECT_EQ(pageCountOfPDFFile(path("missing.pdf")), 0);
    EXPECT_EQ(pageCountOfPDFFile(String(folder.c_str())), 0);
    EXPECT_EQ(pageCountOfPDFFile(nullptr), 0);
}

}  // namespace
}  // namespace vornaset
