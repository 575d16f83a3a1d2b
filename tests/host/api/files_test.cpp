// File locations and rectangles of the border.
#include <gtest/gtest.h>

#include "host/api/page_items.h"
#include "host/api/strings.h"

namespace {

std::string fileOf(const char* url) {
    IDFile file("untouched");
    return FileUtils::FileURLToSysFile(WideString(url), &file) ? file.GetPath() : "refused: " + file.GetPath();
}

TEST(FileUrl, GivesItsPathWithoutPercentCodes) {
    EXPECT_EQ(fileOf("file:///a/b%20c.pdf"), "/a/b c.pdf");
    EXPECT_EQ(fileOf("file://localhost/a"), "/a");
    EXPECT_EQ(fileOf("file:///%C3%A4%25"), "/\xC3\xA4%");
    EXPECT_EQ(fileOf("file:///\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"), "/\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(fileOf("file:///"), "/");
}

TEST(FileUrl, AnythingElseLeavesTheFileAlone) {
    for (const char* url :
         {"", "http://host/a", "file://server/a", "/a", "file:///a%", "file:///a%2", "file:///a%zz", "file:///a%00b"}) {
        EXPECT_EQ(fileOf(url), "refused: untouched") << url;
    }
}

TEST(FileUrl, LoneSurrogateBecomesTheReplacementCharacter) {
    IDFile file;
    ASSERT_TRUE(FileUtils::FileURLToSysFile(WideString(std::u16string(u"file:///") + char16_t{0xD800}), &file));
    EXPECT_EQ(file.GetPath(), "/\xEF\xBF\xBD");
}

TEST(FileUrl, FileGivesItsPathAsText) {
    EXPECT_EQ(FileUtils::IDFileToPMString(IDFile("/a/\xC3\xA4")).View(), u"/a/\u00E4");
    EXPECT_TRUE(FileUtils::IDFileToPMString(IDFile()).IsEmpty());
}

TEST(Uri, TellsItsParts) {
    const URI uri("file", "/a b");
    EXPECT_EQ(uri.GetComponent(URI::Component::Scheme), "file");
    EXPECT_EQ(uri.GetComponent(URI::Component::Path), "/a b");
    EXPECT_EQ(uri.GetComponent(URI::Component::Authority), "");
    EXPECT_EQ(URI().GetComponent(URI::Component::Path), "");
}

}  // namespace
