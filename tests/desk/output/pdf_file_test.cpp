#include "desk/output/pdf_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <random>

#include "desk/model/document.h"
#include "desk/output/output_testing.h"
#include "desk/output/page_tree.h"

namespace desk {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using namespace desk::testing;

/// A file of empty pages with some content each.
void writePages(const std::string& path, int count, Writing writing, int level = 6) {
    PdfFile file(path, level, writing);
    PageTree tree(file);
    for (int i = 1; i <= count; ++i) {
        const ObjectNumber content = file.allocate(), page = file.allocate();
        file.writeStream(content, "", "q 1 0 0 1 " + std::to_string(i) + " 0 cm 0 0 10 10 re f Q q Q q Q q Q q Q\n");
        const std::string parent = std::to_string(tree.add(page));
        file.writeObject(page, "<</Type/Page/MediaBox[0 0 " + std::to_string(100 + i) + " 50]/Parent " + parent +
                                   " 0 R/Resources<<>>/Contents " + std::to_string(content) + " 0 R>>");
    }
    const ObjectNumber root = tree.finish(), catalog = file.allocate();
    file.writeObject(catalog, "<</Type/Catalog/Pages " + std::to_string(root) + " 0 R>>");
    file.finish(catalog, 0);
}

std::string messageOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const InputError& error) {
        return error.what();
    }
    return "nothing was thrown";
}

TEST(PdfFile, EveryReaderReadsTheTreeWhateverTheNumberOfPages) {
    const ScratchFolder folder;
    for (int count : {1, 2, 31, 32, 33, 1024, 1025, 5000}) {
        const std::string path = folder / (std::to_string(count) + ".pdf");
        writePages(path, count, Writing::InBackground);
        EXPECT_EQ(complaintsOfReaders(path), "") << count;
        EXPECT_EQ(run("qpdf --show-npages " + path).output, std::to_string(count) + "\n");
        const std::string info =
            run("pdfinfo -f " + std::to_string(count) + " -l " + std::to_string(count) + " " + path).output;
        EXPECT_THAT(info, HasSubstr(std::to_string(100 + count) + " x 50 pts")) << "the last page is the last written";
    }
}

TEST(PdfFile, ATreeWithoutPagesIsStillATree) {
    const ScratchFolder folder;
    writePages(folder / "none.pdf", 0, Writing::InPlace);
    EXPECT_EQ(run("qpdf --show-npages " + (folder / "none.pdf")).output, "0\n");
}

TEST(PdfFile, BackgroundAndForegroundWriteTheSameBytes) {
    const ScratchFolder folder;
    for (int level : {0, 1, 6, 12}) {
        writePages(folder / "a.pdf", 700, Writing::InBackground, level);
        writePages(folder / "b.pdf", 700, Writing::InPlace, level);
        writePages(folder / "c.pdf", 700, Writing::InBackground, level);
        EXPECT_EQ(readFile(folder / "a.pdf"), readFile(folder / "b.pdf"));
        EXPECT_EQ(readFile(folder / "a.pdf"), readFile(folder / "c.pdf"));
        EXPECT_EQ(complaintsOfReaders(folder / "a.pdf"), "") << "level " << level;
    }
}

TEST(PdfFile, TheIdentifierFollowsTheContentAlone) {
    const ScratchFolder folder;
    writePages(folder / "a.pdf", 3, Writing::InPlace);
    writePages(folder / "b.pdf", 3, Writing::InPlace);
    writePages(folder / "c.pdf", 4, Writing::InPlace);
    const auto identifier = [&](const char* name) {
        const std::string bytes = readFile(folder / name);
        return bytes.substr(bytes.find("/ID["), 72);
    };
    EXPECT_EQ(identifier("a.pdf"), identifier("b.pdf"));
    EXPECT_NE(identifier("a.pdf"), identifier("c.pdf"));
}

TEST(Digest, IsTheSameHoweverTheBytesAreCut) {
    std::mt19937 random(3);
    std::string bytes(1000, '\0');
    for (char& c : bytes) c = static_cast<char>(random());
    Digest whole;
    whole.add(bytes.data(), bytes.size());
    for (int round = 0; round < 50; ++round) {
        Digest cut;
        for (size_t at = 0; at < bytes.size();) {
            const size_t count = std::min<size_t>(random() % 30, bytes.size() - at);
            cut.add(bytes.data() + at, count);
            at += count;
        }
        ASSERT_EQ(cut.value(), whole.value());
    }
    Digest shorter;
    shorter.add(bytes.data(), bytes.size() - 1);
    EXPECT_NE(shorter.value(), whole.value());
}

TEST(PdfFile, LargeAndIncompressibleStreamsComeBackWhole) {
    const ScratchFolder folder;
    std::mt19937 random(5);
    std::string noise(3000000, '\0');
    for (char& c : noise) c = static_cast<char>(random());
    const std::string path = folder / "large.pdf";
    {
        PdfFile file(path, 6, Writing::InBackground);
        PageTree tree(file);
        const ObjectNumber root = tree.finish(), catalog = file.allocate(), first = file.allocate(),
                           second = file.allocate();
        file.writeStream(first, "/Kind/Noise", noise);
        file.writeStream(second, "", std::string(2000000, 'a'));
        file.writeObject(catalog, "<</Type/Catalog/Pages " + std::to_string(root) + " 0 R/A " + std::to_string(first) +
                                      " 0 R/B " + std::to_string(second) + " 0 R>>");
        file.finish(catalog, 0);
    }
    EXPECT_EQ(run("qpdf --check " + path).status, 0);
    ASSERT_EQ(run("qpdf --show-object=3 --filtered-stream-data " + path).output, noise);
    EXPECT_EQ(run("qpdf --show-object=4 --filtered-stream-data " + path).output, std::string(2000000, 'a'));
}

TEST(PdfFile, StandsUnderItsNameOnlyWhenItIsWhole) {
    const ScratchFolder folder;
    const std::string path = folder / "out.pdf";
    {
        PdfFile file(path, 6, Writing::InBackground);
        file.writeStream(file.allocate(), "", "some bytes");
        EXPECT_FALSE(std::filesystem::exists(path));
        ASSERT_EQ(folder.names().size(), 1u);
        EXPECT_EQ(folder.names()[0], ".out.pdf." + std::to_string(getpid()) + ".part");
    }
    EXPECT_TRUE(folder.names().empty()) << "given up: nothing is left";
    writePages(path, 1, Writing::InBackground);
    EXPECT_THAT(folder.names(), ElementsAre("out.pdf"));
}

TEST(PdfFile, LeavesTheOldFileWhenGivenUp) {
    const ScratchFolder folder;
    const std::string path = folder / "out.pdf";
    std::ofstream(path) << "old";
    {
        PdfFile file(path, 6, Writing::InBackground);
        for (int i = 0; i < 1000; ++i) file.writeStream(file.allocate(), "", std::string(1000, 'x'));
    }
    EXPECT_EQ(readFile(path), "old");
    EXPECT_THAT(folder.names(), ElementsAre("out.pdf"));
    writePages(path, 1, Writing::InPlace);
    EXPECT_EQ(run("qpdf --check " + path).status, 0) << "a finished one takes its place";
}

TEST(PdfFile, TwoExportsToOneNameDoNotDisturbEachOther) {
    const ScratchFolder folder;
    const std::string path = folder / "out.pdf";
    PdfFile first(path, 6, Writing::InPlace);
    writePages(path, 2, Writing::InPlace);
    EXPECT_EQ(run("qpdf --show-npages " + path).output, "2\n");
    EXPECT_EQ(folder.names().size(), 2u) << "the first is still being written";
}

TEST(PdfFile, RemovesWhatAKilledRunLeft) {
    const ScratchFolder folder;
    const pid_t child = fork();
    if (child == 0) {
        PdfFile file(folder / "out.pdf", 6, Writing::InPlace);
        kill(getpid(), SIGKILL);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_EQ(folder.names().size(), 1u);
    EXPECT_FALSE(std::filesystem::exists(folder / "out.pdf"));
    std::ofstream(folder / ".other.pdf.1.part") << "of another output";
    std::ofstream(folder / ".out.pdf.notes.part") << "not ours";
    std::ofstream(folder / (".out.pdf." + std::to_string(getppid()) + ".part")) << "of a process that lives";
    writePages(folder / "out.pdf", 1, Writing::InPlace);
    EXPECT_EQ(folder.names().size(), 4u);
    EXPECT_TRUE(std::filesystem::exists(folder / "out.pdf"));
}

TEST(PdfFile, FollowsALinkAndTakesTheUsersModeMask) {
    const ScratchFolder folder;
    std::ofstream(folder / "real.pdf") << "old";
    std::filesystem::create_symlink("real.pdf", folder / "link.pdf");
    const mode_t before = umask(027);
    writePages(folder / "link.pdf", 1, Writing::InPlace);
    umask(before);
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.pdf"));
    EXPECT_EQ(run("qpdf --check " + (folder / "real.pdf")).status, 0);
    struct stat there {};
    ASSERT_EQ(stat((folder / "real.pdf").c_str(), &there), 0);
    EXPECT_EQ(there.st_mode & 0777, 0640u);
}

TEST(PdfFile, SaysWhatIsWrongWithThePlace) {
    const ScratchFolder folder;
    const auto message = [](const std::string& path) {
        return messageOf([&] { PdfFile file(path, 6, Writing::InPlace); });
    };
    EXPECT_EQ(message(folder / "none/out.pdf"), "The folder \"" + folder.path() + "/none\" of the output \"" +
                                                    folder.path() +
                                                    "/none/out.pdf\" does not exist. Make it or choose "
                                                    "another folder.");
    EXPECT_EQ(message(folder.path()), "The output \"" + folder.path() + "\" is a folder. Name a file in it.");
    EXPECT_EQ(message("/dev/null"), "The output \"/dev/null\" is not an ordinary file. Choose another file name.");
    EXPECT_EQ(message(""), "The output has no name. Give it a file name.");
    EXPECT_THAT(message("/proc/out.pdf"),
                HasSubstr("The folder \"/proc\" of the output \"/proc/out.pdf\" can't be written"));
    EXPECT_EQ(message(folder / std::string(250, 'n')), "nothing was thrown") << "the temporary name is cut to fit";
}

/// A child that may write 100 kB to one file; gives its message through its exit and a file.
std::string messageWithALimit(const ScratchFolder& folder, Writing writing, int ignoreSignal) {
    const pid_t child = fork();
    if (child == 0) {
        if (ignoreSignal) signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{100000, 100000};
        setrlimit(RLIMIT_FSIZE, &limit);
        const std::string message = messageOf([&] {
            PdfFile file(folder / "out.pdf", 0, writing);
            for (int i = 0; i < 100000; ++i) file.writeStream(file.allocate(), "", std::string(1000, 'x'));
            file.finish(1, 0);
        });
        std::ofstream(folder / "message") << message;
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return readFile(folder / "message");
}

TEST(PdfFile, AFullDiskIsOneClearSentenceAndLeavesNothing) {
    for (Writing writing : {Writing::InPlace, Writing::InBackground}) {
        const ScratchFolder folder;
        EXPECT_EQ(messageWithALimit(folder, writing, true),
                  "The output \"" + folder.path() +
                      "/out.pdf\" can't be written: it grows beyond the size that a file may "
                      "have here. Raise the limit or export fewer records at a time.");
        EXPECT_THAT(folder.names(), ElementsAre("message"));
    }
}

TEST(PdfFile, InTheBackgroundTheLimitOnFilesDoesNotKillTheProcess) {
    const ScratchFolder folder;
    EXPECT_THAT(messageWithALimit(folder, Writing::InBackground, false), HasSubstr("can't be written"));
}

}  // namespace
}  // namespace desk
