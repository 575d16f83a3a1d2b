#include "desk/idml/spreads.h"

#include <gtest/gtest.h>

#include "desk/idml/test_package.h"

namespace desk {
namespace {

std::unique_ptr<Document> withItems(const std::string& items) {
    TestPackage package;
    package.items = items;
    return package.read();
}

const Spread& firstSpread(const Document& document) {
    return *document.spread(document.spreads.at(0));
}

std::vector<std::string> itemsOf(const Document& document, const Spread& spread, size_t layer) {
    std::vector<std::string> selves;
    for (Uid uid : document.spreadLayer(spread.layers.at(layer))->items) selves.push_back(document.item(uid)->self);
    return selves;
}

TEST(Spreads, PagesStandWhereTheFileSays) {
    TestPackage package;
    package.spreadAttributes += " BindingLocation=\"1\" ShowMasterItems=\"false\" ItemTransform=\"1 0 0 1 0 900\"";
    package.pages =
        "<Page Self=\"p1\" Name=\"iv\" AppliedMaster=\"n\" GeometricBounds=\"10 20 810 620\" ItemTransform=\"1 0 0 1 "
        "-620 -410\">"
        "<MarginPreference Top=\"1\" Bottom=\"2\" Left=\"3\" Right=\"4\"/></Page>";
    const auto document = package.read();
    const Spread& spread = firstSpread(*document);
    EXPECT_EQ(spread.self, "uc0");
    EXPECT_EQ(spread.bindingLocation, 1);
    EXPECT_FALSE(spread.showMasterItems);
    EXPECT_EQ(spread.transform, Matrix::translation(0, 900));
    const Page& page = *document->page(spread.pages.at(0));
    EXPECT_EQ(page.name, "iv");
    EXPECT_EQ(page.bounds, (Rect{20, 10, 620, 810}));
    EXPECT_EQ(page.rectInSpread(), (Rect{-600, -400, 0, 400}));
    EXPECT_EQ(page.margins, (Rect{3, 1, 4, 2}));
    EXPECT_EQ(page.appliedMaster, "");
}

TEST(Spreads, PagesOfTheOldestVersionTakeTheirPlaceFromThePreferences) {
    TestPackage package;
    package.documentAttributes = "DOMVersion=\"6.0\" Self=\"d\"";
    package.pages = "<Page Self=\"p1\" Name=\"1\"/>";
    const auto single = package.read();
    EXPECT_EQ(single->page(single->pages().at(0))->rectInSpread(), (Rect{-300, -400, 300, 400}));

    package.preferences = "<DocumentPreference PageWidth=\"600\" PageHeight=\"800\" FacingPages=\"true\"/>";
    package.spreadAttributes += " BindingLocation=\"1\"";
    package.pages += "<Page Self=\"p2\" Name=\"2\"/>";
    const auto facing = package.read();
    EXPECT_EQ(facing->page(facing->pages().at(0))->rectInSpread(), (Rect{-600, -400, 0, 400}));
    EXPECT_EQ(facing->page(facing->pages().at(1))->rectInSpread(), (Rect{0, -400, 600, 400}));
}

TEST(Spreads, MastersKeepWhatPagesNeed) {
    TestPackage package;
    package.masters = {{"Self=\"um\" Name=\"A-Master\"",
                        "<Page Self=\"ump\" Name=\"A\" AppliedMaster=\"n\"/><Rectangle Self=\"umr\"/>"},
                       {"Self=\"un\" Name=\"B-Master\"", "<Page Self=\"unp\" Name=\"B\" AppliedMaster=\"um\"/>"}};
    package.pages =
        "<Page Self=\"p1\" Name=\"1\" AppliedMaster=\"un\" OverrideList=\"umr uf1 umx uf2\" MasterPageTransform=\"1 0 "
        "0 1 5 6\"/>";
    const auto document = package.read();
    ASSERT_EQ(document->masterSpreads.size(), 2u);
    const Spread& first = *document->spread(document->masterSpreads[0]);
    EXPECT_TRUE(first.isMaster);
    EXPECT_EQ(first.name, "A-Master");
    EXPECT_EQ(first.basedOn, "");
    EXPECT_EQ(document->spread(document->masterSpreads[1])->basedOn, "um");
    const Page& page = *document->page(document->pages().at(0));
    EXPECT_EQ(page.appliedMaster, "un");
    EXPECT_EQ(page.overriddenMasterItems, (std::vector<std::string>{"umr", "umx"}));
    EXPECT_EQ(page.masterTransform, Matrix::translation(5, 6));
    EXPECT_EQ(document->pages().size(), 1u);
}

TEST(Spreads, AMasterThatDoesNotExistIsTold) {
    TestPackage package;
    package.pages = "<Page Self=\"p1\" Name=\"1\" AppliedMaster=\"lost\"/>";
    const auto document = package.read();
    EXPECT_EQ(document->page(document->pages().at(0))->appliedMaster, "");
    EXPECT_TRUE(hasNote(*document, "names the master \"lost\""));
}

TEST(Spreads, SectionsMarkTheirPages) {
    TestPackage package;
    package.documentContent += "<Section Self=\"a\" PageStart=\"p2\" Marker=\"Part Two\"/>";
    package.pages = "<Page Self=\"p1\" Name=\"1\"/><Page Self=\"p2\" Name=\"2\"/><Page Self=\"p3\" Name=\"3\"/>";
    const auto document = package.read();
    const auto pages = document->pages();
    EXPECT_EQ(document->page(pages[0])->sectionMarker, "");
    EXPECT_EQ(document->page(pages[1])->sectionMarker, "Part Two");
    EXPECT_EQ(document->page(pages[2])->sectionMarker, "Part Two");
}

TEST(Layers, TheFirstIsTheLowest) {
    TestPackage package;
    package.documentContent =
        "<Layer Self=\"l1\" Name=\"below\" Visible=\"false\" Printable=\"false\" Locked=\"true\"/><Layer Self=\"l2\" "
        "Name=\"above\"/>";
    package.items =
        "<Rectangle Self=\"a\" ItemLayer=\"l2\"/><Rectangle Self=\"b\" ItemLayer=\"l1\"/><Rectangle Self=\"c\" "
        "ItemLayer=\"l2\"/><Rectangle Self=\"d\"/>"
        "<Rectangle Self=\"e\" ItemLayer=\"lost\"/>";
    const auto document = package.read();
    ASSERT_EQ(document->layers.size(), 2u);
    EXPECT_EQ(document->layers[0].name, "below");
    EXPECT_FALSE(document->layers[0].visible);
    EXPECT_FALSE(document->layers[0].printable);
    EXPECT_TRUE(document->layers[0].locked);
    EXPECT_TRUE(document->layers[1].visible);
    EXPECT_EQ(itemsOf(*document, firstSpread(*document), 0), (std::vector<std::string>{"b", "d", "e"}));
    EXPECT_EQ(itemsOf(*document, firstSpread(*document), 1), (std::vector<std::string>{"a", "c"}));
    EXPECT_TRUE(hasNote(*document, "names a layer that doesn't exist"));
}

TEST(Layers, ADocumentWithoutLayersGetsOne) {
    TestPackage package;
    package.documentContent = "";
    const auto document = package.read();
    ASSERT_EQ(document->layers.size(), 1u);
    EXPECT_EQ(itemsOf(*document, firstSpread(*document), 0), std::vector<std::string>{"uf1"});
}

TEST(Items, KindsAreKnownByTheirElement) {
    const auto document = withItems(
        "<Rectangle Self=\"a\"/><Oval Self=\"b\"/><Polygon Self=\"c\"/><GraphicLine Self=\"d\"/><Group "
        "Self=\"e\"/><TextFrame Self=\"f\"/>"
        "<Button Self=\"g\"/><Oval Self=\"h\" ParentStory=\"us1\"/><Guide Self=\"i\"/>");
    const ItemKind kinds[] = {ItemKind::Rectangle, ItemKind::Oval,      ItemKind::Polygon, ItemKind::GraphicLine,
                              ItemKind::Group,     ItemKind::TextFrame, ItemKind::Unknown, ItemKind::TextFrame};
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(document->itemWithSelf(std::string(1, static_cast<char>('a' + i)))->kind, kinds[i]) << i;
    EXPECT_EQ(document->itemWithSelf("i"), nullptr);
    EXPECT_TRUE(hasNote(*document, "items of the kind Button aren't drawn"));
}

TEST(Items, PathsHaveCurvesAndSeveralContours) {
    const auto document = withItems(
        "<Polygon Self=\"a\"><Properties><PathGeometry><GeometryPathType PathOpen=\"true\"><PathPointArray>"
        "<PathPointType Anchor=\"0 0\" LeftDirection=\"-1 0\" RightDirection=\"1 0\"/><PathPointType Anchor=\"10 "
        "10\"/></PathPointArray></GeometryPathType>"
        "<GeometryPathType PathOpen=\"false\"><PathPointArray><PathPointType Anchor=\"1 1\"/><PathPointType "
        "Anchor=\"x\"/></PathPointArray></GeometryPathType>"
        "<GeometryPathType PathOpen=\"false\"></GeometryPathType></PathGeometry></Properties></Polygon>");
    const Path& path = document->itemWithSelf("a")->path;
    ASSERT_EQ(path.size(), 2u);
    EXPECT_TRUE(path[0].open);
    ASSERT_EQ(path[0].points.size(), 2u);
    EXPECT_EQ(path[0].points[0], (PathPoint{{0, 0}, {-1, 0}, {1, 0}}));
    EXPECT_EQ(path[0].points[1], (PathPoint{{10, 10}, {10, 10}, {10, 10}}));
    EXPECT_FALSE(path[1].open);
    EXPECT_EQ(path[1].points.size(), 1u);
}

TEST(Items, TransformsHoldOnEveryLevel) {
    const auto document = withItems(
        "<Group Self=\"a\" ItemLayer=\"ub1\" ItemTransform=\"0 1 -1 0 100 50\"><Group Self=\"b\" ItemTransform=\"2 0 0 "
        "2 0 0\">"
        "<Rectangle Self=\"c\" ItemTransform=\"1 0 0 1 3 4\"/></Group></Group>");
    const PageItem& inner = *document->itemWithSelf("c");
    EXPECT_EQ(document->toSpread(inner).apply({1, 1}), (Point{100 - 2 * 5, 50 + 2 * 4}));
    EXPECT_EQ(inner.parent, document->itemWithSelf("b")->uid);
    EXPECT_EQ(inner.spread, document->spreads.at(0));
    EXPECT_EQ(inner.layer, document->layers.front().uid);
    EXPECT_EQ(document->itemWithSelf("a")->children, std::vector<Uid>{document->itemWithSelf("b")->uid});
}

TEST(Items, TheLookIsReadFromAttributesAndChildren) {
    const auto document = withItems(
        "<Rectangle Self=\"a\" Name=\"Box\" Visible=\"false\" FillColor=\"Color/Black\" FillTint=\"20\" "
        "StrokeColor=\"n\" StrokeWeight=\"-2\" StrokeAlignment=\"OutsideAlignment\" "
        "EndCap=\"ProjectingEndCap\" EndJoin=\"BevelEndJoin\" MiterLimit=\"0\" StrokeDashAndGap=\"4 2\" "
        "TopRightCornerOption=\"RoundedCorner\" TopRightCornerRadius=\"6\" "
        "LeftLineEnd=\"SimpleArrowHead\" OverprintFill=\"true\" Nonprinting=\"true\" GradientFillAngle=\"45\" "
        "GradientFillLength=\"100\" GradientFillStart=\"1 2\">"
        "<TransparencySetting><BlendingSetting Opacity=\"60\" BlendMode=\"Multiply\"/><DropShadowSetting "
        "Mode=\"Drop\"/></TransparencySetting>"
        "<TextWrapPreference TextWrapMode=\"JumpObjectTextWrap\"><Properties><TextWrapOffset Top=\"1\" Left=\"2\" "
        "Bottom=\"3\" Right=\"4\"/></Properties></TextWrapPreference></Rectangle>");
    const PageItem& item = *document->itemWithSelf("a");
    EXPECT_EQ(item.name, "Box");
    EXPECT_FALSE(item.visible);
    const ItemAttributes& look = item.attributes;
    EXPECT_EQ(look.fillColor, "Color/Black");
    EXPECT_EQ(look.fillTint, 20);
    EXPECT_EQ(look.strokeColor, std::nullopt);
    EXPECT_EQ(look.strokeWeight, 0);
    EXPECT_EQ(look.strokeAlignment, 2);
    EXPECT_EQ(look.endCap, 2);
    EXPECT_EQ(look.endJoin, 2);
    EXPECT_EQ(look.miterLimit, 1);
    EXPECT_EQ(look.dashes, (std::vector<double>{4, 2}));
    EXPECT_EQ(look.cornerOption[1], "RoundedCorner");
    EXPECT_EQ(look.cornerRadius[1], 6);
    EXPECT_EQ(look.cornerOption[0], std::nullopt);
    EXPECT_EQ(look.leftLineEnd, "SimpleArrowHead");
    EXPECT_EQ(look.overprintFill, true);
    EXPECT_EQ(look.nonprinting, true);
    EXPECT_EQ(look.gradientAngle, 45);
    EXPECT_EQ(look.gradientLength, 100);
    EXPECT_EQ(look.gradientStart, (Point{1, 2}));
    EXPECT_EQ(look.opacity, 60);
    EXPECT_EQ(look.blendMode, "Multiply");
    EXPECT_EQ(item.wrap.mode, TextWrapMode::JumpObject);
    EXPECT_EQ(item.wrap.top, 1);
    EXPECT_EQ(item.wrap.right, 4);
    EXPECT_TRUE(hasNote(*document, "effects aren't drawn"));
}

TEST(Items, OneCornerOptionForAllCornersIsUnderstood) {
    const auto document = withItems(
        "<Rectangle Self=\"a\" CornerOption=\"BevelCorner\" CornerRadius=\"5\" TopLeftCornerOption=\"None\"/>");
    const ItemAttributes& look = document->itemWithSelf("a")->attributes;
    EXPECT_EQ(look.cornerOption[0], "None");
    EXPECT_EQ(look.cornerOption[3], "BevelCorner");
    EXPECT_EQ(look.cornerRadius[0], 5);
}

TEST(Items, TheObjectStyleFillsInWhatTheItemLeavesOut) {
    TestPackage package;
    package.styles =
        "<ObjectStyle Self=\"ObjectStyle/$ID/[None]\" Name=\"$ID/[None]\" MiterLimit=\"4\"><TextWrapPreference "
        "TextWrapMode=\"None\"/></ObjectStyle>"
        "<ObjectStyle Self=\"ObjectStyle/Card\" Name=\"Card\" FillColor=\"Color/Cyan\" "
        "StrokeWeight=\"1\"><Properties><BasedOn type=\"string\">$ID/[None]</BasedOn></Properties>"
        "<TextWrapPreference TextWrapMode=\"Contour\"><Properties><TextWrapOffset Top=\"7\" Left=\"0\" Bottom=\"0\" "
        "Right=\"0\"/></Properties></TextWrapPreference></ObjectStyle>";
    package.items =
        "<Rectangle Self=\"a\" AppliedObjectStyle=\"ObjectStyle/Card\" StrokeWeight=\"5\"/><Rectangle Self=\"b\"/>"
        "<Rectangle Self=\"c\" AppliedObjectStyle=\"ObjectStyle/Card\"><TextWrapPreference "
        "TextWrapMode=\"None\"/></Rectangle>";
    const auto document = package.read();
    const PageItem& styled = *document->itemWithSelf("a");
    EXPECT_EQ(document->itemAttributes(styled).fillColor, "Color/Cyan");
    EXPECT_EQ(document->itemAttributes(styled).strokeWeight, 5);
    EXPECT_EQ(document->itemAttributes(styled).miterLimit, 4);
    EXPECT_EQ(styled.wrap.mode, TextWrapMode::Contour);
    EXPECT_EQ(styled.wrap.top, 7);
    EXPECT_EQ(document->itemWithSelf("b")->objectStyle, "ObjectStyle/$ID/[None]");
    EXPECT_EQ(document->itemWithSelf("c")->wrap.mode, TextWrapMode::None);
}

TEST(Items, LabelsAreKeptExactly) {
    const auto document = withItems(
        "<Rectangle Self=\"a\"><Properties><Label><KeyValuePair Key=\"Label\" "
        "Value=\"{&quot;a&quot;:&#xa;1}\"/><KeyValuePair Key=\"k\" Value=\"old\"/></Label>"
        "<Label><KeyValuePair Key=\"k\" Value=\"&lt;new&gt; &amp;amp;\"/></Label></Properties></Rectangle>");
    const Labels& labels = document->itemWithSelf("a")->labels;
    ASSERT_EQ(labels.pairs().size(), 2u);
    EXPECT_EQ(labels.get("Label"), "{\"a\":\n1}");
    EXPECT_EQ(labels.get("k"), "<new> &amp;");
}

TEST(Items, PlacedGraphicsStandInTheirFrame) {
    const auto document = withItems(
        "<Rectangle Self=\"a\"><Image Self=\"b\" ItemTransform=\"0.5 0 0 0.5 1 2\"><Properties><GraphicBounds "
        "Left=\"0\" Top=\"0\" Right=\"200\" Bottom=\"100\"/></Properties>"
        "<Link Self=\"l\" LinkResourceURI=\"file:/photos/01.jpg\"/></Image></Rectangle>");
    const PageItem& image = *document->itemWithSelf("b");
    EXPECT_EQ(image.kind, ItemKind::Graphic);
    EXPECT_EQ(image.parent, document->itemWithSelf("a")->uid);
    ASSERT_TRUE(image.graphic);
    EXPECT_EQ(image.graphic->kind, "Image");
    EXPECT_EQ(image.graphic->uri, "file:/photos/01.jpg");
    EXPECT_EQ(image.graphic->bounds, (Rect{0, 0, 200, 100}));
    EXPECT_EQ(boundsOf(image.path), (Rect{0, 0, 200, 100}));
}

TEST(Items, TextFrameOptionsAreRead) {
    const auto document = withItems(TestPackage::textFrame(
        "a", "us1", "",
        "<TextFramePreference TextColumnCount=\"99\" TextColumnGutter=\"8\" FirstBaselineOffset=\"FixedHeight\" "
        "MinimumFirstBaselineOffset=\"5\" VerticalJustification=\"JustifyAlign\" "
        "VerticalThreshold=\"6\" IgnoreWrap=\"true\" AutoSizingType=\"HeightOnly\"><Properties><InsetSpacing "
        "type=\"list\"><ListItem type=\"unit\">1</ListItem><ListItem type=\"unit\">2</ListItem>"
        "<ListItem type=\"unit\">3</ListItem><ListItem "
        "type=\"unit\">4</ListItem></InsetSpacing></Properties></TextFramePreference>"));
    const TextFrameOptions& options = document->itemWithSelf("a")->frameOptions;
    EXPECT_EQ(options.columnCount, 40);
    EXPECT_EQ(options.columnGutter, 8);
    EXPECT_EQ(options.insetTop, 1);
    EXPECT_EQ(options.insetLeft, 2);
    EXPECT_EQ(options.insetBottom, 3);
    EXPECT_EQ(options.insetRight, 4);
    EXPECT_EQ(options.firstBaseline, FirstBaseline::FixedHeight);
    EXPECT_EQ(options.minimumFirstBaseline, 5);
    EXPECT_EQ(options.verticalJustification, VerticalJustification::Justify);
    EXPECT_EQ(options.verticalThreshold, 6);
    EXPECT_EQ(options.ignoreWrap, true);
    EXPECT_EQ(options.autoSizing, "HeightOnly");
}

TEST(Items, OneInsetHoldsForAllSides) {
    const auto document =
        withItems(TestPackage::textFrame("a", "us1", "",
                                         "<TextFramePreference><Properties><InsetSpacing "
                                         "type=\"unit\">9</InsetSpacing></Properties></TextFramePreference>"));
    const TextFrameOptions& options = document->itemWithSelf("a")->frameOptions;
    EXPECT_EQ(options.insetTop, 9);
    EXPECT_EQ(options.insetRight, 9);
}

TEST(Threads, FramesFollowEachOther) {
    const auto document = withItems(TestPackage::textFrame("b", "us1", "PreviousTextFrame=\"a\" NextTextFrame=\"n\"") +
                                    TestPackage::textFrame("a", "us1", "PreviousTextFrame=\"n\" NextTextFrame=\"b\""));
    const Uid a = document->itemWithSelf("a")->uid, b = document->itemWithSelf("b")->uid;
    EXPECT_EQ(document->itemWithSelf("a")->nextFrame, b);
    EXPECT_EQ(document->itemWithSelf("b")->previousFrame, a);
    EXPECT_EQ(document->framesOfStory(document->stories.at(0)), (std::vector<Uid>{a, b}));
}

TEST(Threads, OneEndOfAJointIsEnough) {
    const auto document =
        withItems(TestPackage::textFrame("a", "us1", "NextTextFrame=\"b\"") + TestPackage::textFrame("b", "us1") +
                  TestPackage::textFrame("c", "us1", "PreviousTextFrame=\"b\""));
    EXPECT_EQ(document->framesOfStory(document->stories.at(0)).size(), 3u);
}

TEST(Threads, AFrameThatDoesNotExistEndsTheThread) {
    const auto document = withItems(TestPackage::textFrame("a", "us1", "NextTextFrame=\"lost\""));
    EXPECT_EQ(document->itemWithSelf("a")->nextFrame, 0u);
    EXPECT_TRUE(hasNote(*document, "\"lost\" is no text frame"));
}

TEST(Threads, FramesOfDifferentStoriesAreNotJoined) {
    TestPackage package;
    package.stories.push_back({"us2", ""});
    package.items = TestPackage::textFrame("a", "us1", "NextTextFrame=\"b\"") + TestPackage::textFrame("b", "us2");
    const auto document = package.read();
    EXPECT_EQ(document->itemWithSelf("a")->nextFrame, 0u);
    EXPECT_TRUE(hasNote(*document, "they show different stories"));
}

TEST(Threads, AFrameHasOneNeighbourOnEachSide) {
    const auto document =
        withItems(TestPackage::textFrame("a", "us1", "NextTextFrame=\"c\"") +
                  TestPackage::textFrame("b", "us1", "NextTextFrame=\"c\"") + TestPackage::textFrame("c", "us1"));
    EXPECT_EQ(document->itemWithSelf("c")->previousFrame, document->itemWithSelf("a")->uid);
    EXPECT_EQ(document->itemWithSelf("b")->nextFrame, 0u);
    EXPECT_EQ(document->itemWithSelf("b")->story, 0u);
    EXPECT_TRUE(hasNote(*document, "another thread shows its story"));
}

}  // namespace
}  // namespace desk
