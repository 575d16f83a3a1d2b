#include "desk/idml/package.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <random>

#include "desk/idml/limits.h"
#include "desk/model/document.h"

namespace desk {
namespace {

using Method = PackageMember::Method;

std::string problemOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const InputError& error) {
        return error.what();
    }
    return {};
}

std::string openingProblem(const std::string& bytes) {
    return problemOf([&] { Package::fromBytes(bytes, "test.idml"); });
}

std::string zipWithName(const std::string& name) {
    const PackageMember members[] = {{name, "content", Method::Deflated}};
    return zipOf(members);
}

/// Bytes that don't compress, the same on every run.
std::string noise(size_t length) {
    std::mt19937 generator(1);
    std::string bytes(length, '\0');
    for (char& byte : bytes) byte = static_cast<char>(generator());
    return bytes;
}

void replaceAll(std::string& bytes, const std::string& from, const std::string& to) {
    for (size_t at = bytes.find(from); at != std::string::npos; at = bytes.find(from, at + to.size()))
        bytes.replace(at, from.size(), to);
}

TEST(Package, ListsItsMembersInTheOrderOfTheFile) {
    const PackageMember members[] = {
        {"mimetype", "type", Method::Stored}, {"b.xml", "<b/>", Method::Deflated}, {"a/", "", Method::Stored}};
    const auto package = Package::fromBytes(zipOf(members), "test.idml");
    EXPECT_EQ(package->members(), (std::vector<std::string>{"mimetype", "b.xml", "a/"}));
    EXPECT_TRUE(package->has("b.xml"));
    EXPECT_FALSE(package->has("B.xml"));
    EXPECT_FALSE(package->isSnippet());
}

TEST(Package, ReadsStoredAndDeflatedMembersAgainAndAgain) {
    const std::string large = noise(300'000);
    const PackageMember members[] = {
        {"stored", large, Method::Stored}, {"deflated", large, Method::Deflated}, {"empty", "", Method::Stored}};
    const auto package = Package::fromBytes(zipOf(members), "test.idml");
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(package->read("deflated"), large);
        EXPECT_EQ(package->read("stored"), large);
        EXPECT_EQ(package->read("empty"), "");
    }
}

TEST(Package, KeepsTheFileForSaving) {
    const std::string bytes = zipWithName("a.xml");
    EXPECT_EQ(Package::fromBytes(bytes, "test.idml")->bytes(), bytes);
}

TEST(Package, WritesTheSameBytesForTheSameMembers) {
    EXPECT_EQ(zipWithName("a.xml"), zipWithName("a.xml"));
}

TEST(Package, OpensABareXmlFileAsASnippet) {
    const auto package = Package::fromBytes("\xEF\xBB\xBF <Document/>", "test.idms");
    EXPECT_TRUE(package->isSnippet());
    EXPECT_EQ(package->read("snippet.xml"), "\xEF\xBB\xBF <Document/>");
    EXPECT_FALSE(package->has("designmap.xml"));
}

TEST(Package, RefusesWhatIsNoZipFile) {
    const std::string zip = zipWithName("a.xml");
    for (const std::string& bytes : {std::string(), std::string("name,town\nAda,London\n"), std::string(1000, '\0'),
                                     zip.substr(0, zip.size() / 2), std::string("PK\3\4")})
        EXPECT_EQ(openingProblem(bytes),
                  "test.idml: this isn't an IDML package (no ZIP file); export the document as IDML.");
}

TEST(Package, RefusesAMemberNameThatLeavesThePackage) {
    for (const char* name :
         {"../evil.xml", "/etc/evil.xml", "Stories/../../evil.xml", "Stories\\evil.xml", "C:evil.xml", "Stories/.."})
        EXPECT_EQ(openingProblem(zipWithName(name)), "test.idml: the member name \"" + std::string(name) +
                                                         "\" leaves the package; use a file from a source you trust.");
}

TEST(Package, AcceptsNamesWithHarmlessDots) {
    for (const char* name : {"Stories/a..b.xml", "...", "./a.xml", "Stories/Story \xC3\xA9.xml"})
        EXPECT_EQ(openingProblem(zipWithName(name)), "") << name;
}

TEST(Package, RefusesANulInAMemberName) {
    std::string bytes = zipWithName("a_b.xml");
    replaceAll(bytes, "a_b.xml", std::string("a\0b.xml", 7));
    EXPECT_EQ(openingProblem(bytes), "test.idml: a member's name holds a NUL; use a file from a source you trust.");
}

TEST(Package, RefusesTooManyMembers) {
    std::vector<PackageMember> members;
    for (size_t i = 0; i <= limits::members; ++i) members.push_back({std::to_string(i), "", Method::Stored});
    EXPECT_EQ(openingProblem(zipOf(members)),
              "test.idml: the package has too many members; use a file from a source you trust.");
}

TEST(Package, RefusesAMemberThatInflatesBeyondAllMeasure) {
    const PackageMember members[] = {{"bomb.xml", std::string(16u << 20, ' '), Method::Deflated}};
    const auto package = Package::fromBytes(zipOf(members), "test.idml");
    EXPECT_EQ(problemOf([&] { package->read("bomb.xml"); }),
              "test.idml, bomb.xml: the member inflates beyond all measure; use a file from a source you trust.");
}

TEST(Package, CountsWhatIsReallyInflatedWhenTheDeclaredSizeLies) {
    const size_t size = 16u << 20;
    const PackageMember members[] = {{"bomb.xml", std::string(size, ' '), Method::Deflated}};
    std::string bytes = zipOf(members);
    const size_t inDirectory = bytes.find("PK\1\2") + 24;
    for (size_t at : {size_t{22}, inDirectory}) {  // the inflated size, in the member's own header and in the directory
        ASSERT_EQ(bytes.substr(at, 4), std::string("\0\0\0\1", 4));
        bytes.replace(at, 4, std::string("\x10\0\0\0", 4));
    }
    const auto package = Package::fromBytes(bytes, "test.idml");
    EXPECT_NE(problemOf([&] { package->read("bomb.xml"); }), "");
}

TEST(Package, CountsAllMembersTogether) {
    const std::string large = noise(8u << 20);
    const PackageMember members[] = {{"large", large, Method::Stored}};
    const auto package = Package::fromBytes(zipOf(members), "test.idml");
    const uint64_t allowed = limits::inflatedBytes / large.size();
    for (uint64_t i = 0; i < allowed; ++i) ASSERT_EQ(package->read("large").size(), large.size());
    EXPECT_NE(problemOf([&] { package->read("large"); }), "");
}

TEST(Package, TellsADamagedMember) {
    const PackageMember members[] = {{"a.xml", noise(5000), Method::Deflated}};
    std::string bytes = zipOf(members);
    bytes[bytes.size() / 2] = static_cast<char>(~bytes[bytes.size() / 2]);
    const auto package = Package::fromBytes(bytes, "test.idml");
    EXPECT_EQ(problemOf([&] { package->read("a.xml"); }),
              "test.idml, a.xml: the member is damaged; export the document again.");
}

TEST(Package, TellsAMemberThatIsNotThere) {
    const auto package = Package::fromBytes(zipWithName("a.xml"), "test.idml");
    EXPECT_EQ(problemOf([&] { package->read("b.xml"); }),
              "test.idml, b.xml: the package lacks this member; export the document again.");
}

TEST(Package, TellsAFileThatCannotBeOpened) {
    const std::string folder = testing::TempDir();
    const std::string absent = folder + "no-such-template.idml";
    EXPECT_EQ(problemOf([&] { Package::fromFile(absent); }),
              absent + ": the file can't be opened (No such file or directory); check its path.");
    EXPECT_EQ(problemOf([&] { Package::fromFile(folder); }),
              folder + ": this is a folder; name the template file in it.");
}

TEST(Package, ReadsAFileAndTakesItsNameWithoutFolder) {
    const std::string path = testing::TempDir() + "package_test.idml";
    std::ofstream(path, std::ios::binary) << zipWithName("a.xml");
    const auto package = Package::fromFile(path);
    EXPECT_EQ(package->name(), "package_test.idml");
    EXPECT_EQ(package->read("a.xml"), "content");
    std::remove(path.c_str());
}

}  // namespace
}  // namespace desk
