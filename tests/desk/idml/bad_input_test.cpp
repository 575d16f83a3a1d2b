// Every kind of package that can't be used: one sentence that says what, where and what to do.
#include <gtest/gtest.h>

#include "desk/idml/test_package.h"

namespace desk {
namespace {

std::string styleOn(const std::string& name, const std::string& parent) {
    return "<ParagraphStyle Self=\"ParagraphStyle/" + name + "\" Name=\"" + name +
           "\"><Properties><BasedOn type=\"string\">" + parent + "</BasedOn></Properties></ParagraphStyle>";
}

TEST(BadInput, TheTestPackageItselfIsGood) {
    EXPECT_EQ(TestPackage().problem(), "");
    EXPECT_TRUE(TestPackage().read()->notes.empty());
}

TEST(BadInput, AZipFileWithoutDesignmap) {
    TestPackage package;
    package.lostMembers = {"designmap.xml"};
    EXPECT_EQ(package.problem(),
              "test.idml: this ZIP file isn't an IDML package (it has no designmap.xml); export the document as IDML.");
}

TEST(BadInput, BrokenXmlIsToldWithMemberAndLine) {
    TestPackage package;
    package.moreParts.push_back({"Story", "<a>\n<b></a>"});
    EXPECT_EQ(package.problem().substr(0, 50), "test.idml, More/0.xml, line 2: the XML is broken (");
}

TEST(BadInput, AnEntityBombInAPart) {
    TestPackage package;
    package.designmap = "<!DOCTYPE a [<!ENTITY e 'ha'>]><Document DOMVersion=\"16.0\">&e;</Document>";
    EXPECT_EQ(package.problem(),
              "test.idml, designmap.xml, line 1: the part declares a document type, which no package has; use a file "
              "from a source you trust.");
}

TEST(BadInput, ADesignmapThatDescribesNoDocument) {
    TestPackage package;
    package.designmap = "<html/>";
    EXPECT_EQ(package.problem(),
              "test.idml, designmap.xml, line 1: this describes no document; export the document as IDML.");
}

TEST(BadInput, AVersionThatCannotBeRead) {
    for (const char* version : {"", "new", "-1", "0", "1e9"}) {
        TestPackage package;
        package.documentAttributes = "DOMVersion=\"" + std::string(version) + "\"";
        EXPECT_EQ(package.problem(), "test.idml, designmap.xml, line 2: the version \"" + std::string(version) +
                                         "\" of the format is unknown; export the document again.");
    }
    TestPackage package;
    package.documentAttributes = "Self=\"d\"";
    EXPECT_NE(package.problem().find("the version \"\" of the format is unknown"), std::string::npos);
}

TEST(BadInput, AStoryThatIsMissing) {
    TestPackage package;
    package.items = "\n" + TestPackage::textFrame("uf1", "us9");
    EXPECT_EQ(package.problem(),
              "test.idml, Spreads/1.xml, line 3: the text frame \"uf1\" shows the story \"us9\", which is missing; "
              "export the document again.");
}

TEST(BadInput, APartThatIsMissing) {
    TestPackage package;
    package.lostMembers = {"Stories/Story_us1.xml"};
    EXPECT_EQ(package.problem(),
              "test.idml, Stories/Story_us1.xml: the package lacks this member; export the document again.");
}

TEST(BadInput, AnEmptyPartIsPassedOver) {
    TestPackage package;
    package.moreParts.push_back({"Story", ""});
    EXPECT_EQ(package.problem(), "");
    EXPECT_TRUE(hasNote(*package.read(), "the part is empty"));
}

TEST(BadInput, ACircleOfThreadedFrames) {
    TestPackage package;
    package.items = TestPackage::textFrame("a", "us1", "NextTextFrame=\"b\" PreviousTextFrame=\"c\"") +
                    TestPackage::textFrame("b", "us1", "NextTextFrame=\"c\" PreviousTextFrame=\"a\"") +
                    TestPackage::textFrame("c", "us1", "NextTextFrame=\"a\" PreviousTextFrame=\"b\"");
    EXPECT_EQ(package.problem(),
              "test.idml, Spreads/1.xml, line 2: the text frames \"a\", \"b\" and \"c\" are threaded in a circle; "
              "break the thread between two of them.");
}

TEST(BadInput, AFrameThreadedToItself) {
    TestPackage package;
    package.items = TestPackage::textFrame("a", "us1", "NextTextFrame=\"a\"");
    EXPECT_NE(package.problem().find("the text frames \"a\" are threaded in a circle"), std::string::npos);
}

TEST(BadInput, ACircleOfStyleParents) {
    TestPackage package;
    package.styles += styleOn("x", "a") + styleOn("a", "b") + styleOn("b", "c") + styleOn("c", "a");
    EXPECT_EQ(package.problem(),
              "test.idml: the styles \"a\", \"b\" and \"c\" are based on each other in a circle; give one of them "
              "another parent.");
    package.styles = styleOn("a", "a");
    EXPECT_EQ(package.problem(),
              "test.idml: the styles \"a\" are based on each other in a circle; give one of them another parent.");
}

TEST(BadInput, ACircleOfMasters) {
    TestPackage package;
    package.masters = {{"Self=\"um\" Name=\"A-Master\"", "<Page Self=\"p\" AppliedMaster=\"un\"/>"},
                       {"Self=\"un\" Name=\"B-Master\"", "<Page Self=\"q\" AppliedMaster=\"um\"/>"}};
    EXPECT_EQ(package.problem(),
              "test.idml: the masters \"A-Master\" and \"B-Master\" are based on each other in a circle; give one of "
              "them another master.");
}

TEST(BadInput, AStoryAnchoredInsideItself) {
    TestPackage package;
    const auto holding = [](const std::string& frame, const std::string& story) {
        return "<ParagraphStyleRange><CharacterStyleRange>" + TestPackage::textFrame(frame, story) +
               "</CharacterStyleRange></ParagraphStyleRange>";
    };
    package.items = "";
    package.stories = {{"us1", holding("a", "us2")}, {"us2", holding("b", "us1")}};
    EXPECT_NE(package.problem().find("is anchored inside itself; move its frame out of the text."), std::string::npos);
    package.stories = {{"us1", holding("a", "us2")}, {"us2", holding("b", "us3")}, {"us3", ""}};
    EXPECT_EQ(package.problem(), "");
}

TEST(BadInput, APageWithoutSize) {
    for (const char* geometry : {"0 0 0 600", "0 0 800 0", "800 0 0 600", "5 5 5 5"}) {
        TestPackage package;
        package.pages = "\n<Page Self=\"p\" Name=\"7\" GeometricBounds=\"" + std::string(geometry) +
                        "\" ItemTransform=\"1 0 0 1 0 0\"/>";
        EXPECT_EQ(package.problem(),
                  "test.idml, Spreads/1.xml, line 3: the page \"7\" has no size; give it a width and a height.");
    }
    TestPackage package;
    package.pages = "<Page Self=\"p\" Name=\"7\" GeometricBounds=\"0 0 800 600\" ItemTransform=\"0 0 0 0 0 0\"/>";
    EXPECT_NE(package.problem().find("has no size"), std::string::npos);
}

TEST(BadInput, ADocumentWithoutPages) {
    TestPackage package;
    package.pages = "";
    EXPECT_EQ(package.problem(), "test.idml: the document has no page; export the document again.");
}

TEST(BadInput, NamesFromOutsideStayShortAndOnOneLine) {
    TestPackage package;
    package.items = TestPackage::textFrame("uf1", "a&#xa;b" + std::string(5000, 'x'));
    const std::string problem = package.problem();
    EXPECT_EQ(problem.find('\n'), std::string::npos);
    EXPECT_LT(problem.size(), 300u);
}

TEST(BadInput, APackageOfAnotherTypeIsOnlyNoted) {
    auto members = TestPackage().members();
    members[0].bytes = "application/epub+zip";
    EXPECT_TRUE(hasNote(*readDocument(zipOf(members), "test.idml"), "of another type"));
    members.erase(members.begin());
    EXPECT_TRUE(hasNote(*readDocument(zipOf(members), "test.idml"), "doesn't say its type"));
}

}  // namespace
}  // namespace desk
