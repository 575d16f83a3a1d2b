#include "support/text_files.h"

#include <sys/stat.h>

#include <cstring>

#include "support/printing.h"
#include "support/scratch_folder.h"

namespace vornaset {
namespace {

using namespace std::string_literals;

class TextFiles : public testing::Test {
  protected:
    String fileWith(const std::string& bytes) {
        const std::string path = folder_.path() + "/text";
        writeFile(path, bytes);
        return String::fromUTF8(path);
    }
    String textOf(const std::string& bytes) { return stringWithContentsOfFile(fileWith(bytes)); }

    ScratchFolder folder_;
};

TEST_F(TextFiles, AByteOrderMarkDecidesAndIsNotPartOfTheText) {
    EXPECT_EQ(textOf("\xEF\xBB\xBF\xC3\xA4"s), String(u"\u00E4"));
    EXPECT_EQ(textOf("\xFF\xFE\xE4\0B\0"s), String(u"\u00E4B"));
    EXPECT_EQ(textOf("\xFE\xFF\0\xE4\0B"s), String(u"\u00E4B"));
    EXPECT_EQ(textOf("\xFF\xFE\0\0\xE4\0\0\0"s), String(u"\u00E4"));
    EXPECT_EQ(textOf("\0\0\xFE\xFF\0\x01\xF6\0"s), String(u"\U0001F600"));
    EXPECT_EQ(textOf("\xEF\xBB\xBF"s), String(u""));
}

TEST_F(TextFiles, WithoutAMarkUTF8IsTriedFirst) {
    EXPECT_EQ(textOf("plain"), String("plain"));
    EXPECT_EQ(textOf("\xC3\xA4"s), String(u"\u00E4"));
    EXPECT_EQ(textOf(""), String(u""));
}

TEST_F(TextFiles, OtherBytesAreReadInTheEncodingThatTheFirstGermanLetterNames) {
    EXPECT_EQ(textOf("\xE4"
                     "B"s),
              String(u"\u00E4B"));
    EXPECT_EQ(textOf("\x8A"
                     "B"s),
              String(u"\u00E4B"));
}

TEST_F(TextFiles, AMarkWithDamagedTextBehindItDecidesNothing) {
    // An odd byte at the end of UTF-16: read as Mac OS Roman, in which every byte has a character.
    EXPECT_EQ(textOf("\xFF\xFE\x8A"s), String(u"\u02C7\u02DB\u00E4"));
}

TEST_F(TextFiles, IsNullWhereNothingCanBeRead) {
    EXPECT_TRUE(textOf("\xE4\x81"s).isNull());
    EXPECT_TRUE(stringWithContentsOfFile(nullptr).isNull());
    EXPECT_TRUE(stringWithContentsOfFile("").isNull());
    EXPECT_TRUE(stringWithContentsOfFile(String::fromUTF8(folder_.path())).isNull());
    EXPECT_TRUE(stringWithContentsOfFile(String::fromUTF8(folder_.path() + "/missing")).isNull());
    const String path = fileWith("x");
    EXPECT_TRUE(stringWithContentsOfFile(path + String(std::u16string{0, u'y'})).isNull());
}

TEST_F(TextFiles, APipeIsNoFileAndHoldsNobodyUp) {
    const std::string path = folder_.path() + "/pipe";
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_TRUE(dataWithFile(String::fromUTF8(path)).isNull());
}

TEST_F(TextFiles, AFileThatSaysSizeZeroIsReadToItsEnd) {
    EXPECT_GT(dataWithFile("/proc/self/status").length(), 0u);
}

TEST_F(TextFiles, GetFileDataGivesTheBytesAndAZero) {
    int64_t size = -7;
    const FileBuffer buffer = getFileData(fileWith("a\0b"s), size);
    ASSERT_TRUE(buffer);
    EXPECT_EQ(size, 3);
    EXPECT_EQ(std::memcmp(buffer.get(), "a\0b", 4), 0);
}

TEST_F(TextFiles, GetFileDataOfAnEmptyFileIsOneZeroByte) {
    int64_t size = -7;
    const FileBuffer buffer = getFileData(fileWith(""), size);
    ASSERT_TRUE(buffer);
    EXPECT_EQ(size, 0);
    EXPECT_EQ(*buffer, '\0');
}

TEST_F(TextFiles, GetFileDataThatCannotOpenLeavesTheSizeAlone) {
    int64_t size = -7;
    EXPECT_FALSE(getFileData(String::fromUTF8(folder_.path() + "/missing"), size));
    EXPECT_FALSE(getFileData(String::fromUTF8(folder_.path()), size));
    EXPECT_FALSE(getFileData(nullptr, size));
    EXPECT_EQ(size, -7);
}

TEST_F(TextFiles, ABareBufferIsEndedByFree) {
    int64_t size = 0;
    char* bare = getFileData(fileWith("text"), size).release();
    EXPECT_STREQ(bare, "text");
    std::free(bare);
}

}  // namespace
}  // namespace vornaset
