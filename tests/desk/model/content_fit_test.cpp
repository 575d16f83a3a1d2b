#include "desk/model/content_fit.h"

#include <gtest/gtest.h>

namespace desk {
namespace {

/// A frame with a picture of 100 by 50 points in it.
class ContentFitTest : public ::testing::Test {
  protected:
    ContentFitTest() {
        Layer& layer = document.addLayer("Layer");
        Spread& spread = document.addSpread(false);
        frame = &document.addItem(ItemKind::Rectangle);
        frame->path = rectanglePath({10, 20, 210, 220});
        document.placeOnSpread(*frame, spread, layer);
        picture = &newPicture();
    }

    PageItem& newPicture() {
        PageItem& item = document.addItem(ItemKind::Graphic);
        PlacedGraphic graphic;
        graphic.bounds = {0, 0, 100, 50};
        item.path = rectanglePath(graphic.bounds);
        item.graphic = graphic;
        return item;
    }

    Rect shown() const { return picture->transform.boundsOf(picture->graphic->bounds); }
    static void expectRect(const Rect& got, const Rect& wanted) {
        EXPECT_NEAR(got.left, wanted.left, 1e-9);
        EXPECT_NEAR(got.top, wanted.top, 1e-9);
        EXPECT_NEAR(got.right, wanted.right, 1e-9);
        EXPECT_NEAR(got.bottom, wanted.bottom, 1e-9);
    }

    Document document;
    PageItem* frame = nullptr;
    PageItem* picture = nullptr;
};

TEST_F(ContentFitTest, APictureComesInAtFullSizeLeftTop) {
    ASSERT_TRUE(putIntoFrame(document, picture->uid, frame->uid));
    expectRect(shown(), {10, 20, 110, 70});
    EXPECT_EQ(picture->parent, frame->uid);
    EXPECT_EQ(pictureIn(document, frame->uid), picture);
    EXPECT_TRUE(document.modified);
}

TEST_F(ContentFitTest, TheFramesAlignmentSaysWhereItStands) {
    frame->fitting.alignment = Point{0.5, 1};
    putIntoFrame(document, picture->uid, frame->uid);
    expectRect(shown(), {60, 170, 160, 220});
}

TEST_F(ContentFitTest, TheFramesOptionForEmptyFramesFits) {
    const std::pair<EmptyFrameFitting, Rect> cases[] = {
        {EmptyFrameFitting::None, {10, 20, 110, 70}},
        {EmptyFrameFitting::ContentToFrame, {10, 20, 210, 220}},
        {EmptyFrameFitting::Proportionally, {10, 20, 210, 120}},
        {EmptyFrameFitting::FillProportionally, {10, 20, 410, 220}},
    };
    for (const auto& [option, rect] : cases) {
        frame->fitting.onEmptyFrame = option;
        putIntoFrame(document, picture->uid, frame->uid);
        expectRect(shown(), rect);
    }
}

TEST_F(ContentFitTest, AnObjectStyleCarriesTheOptionToo) {
    Style& style = document.addStyle(StyleKind::Object, "Photo", "ObjectStyle/Photo");
    style.fitting.onEmptyFrame = EmptyFrameFitting::ContentToFrame;
    style.fitting.alignment = Point{1, 1};
    frame->objectStyle = "ObjectStyle/Photo";
    putIntoFrame(document, picture->uid, frame->uid);
    expectRect(shown(), {10, 20, 210, 220});
    frame->fitting.onEmptyFrame = EmptyFrameFitting::None;
    putIntoFrame(document, picture->uid, frame->uid);
    expectRect(shown(), {110, 170, 210, 220});
}

TEST_F(ContentFitTest, ASecondPictureTakesThePlaceOfTheFirst) {
    putIntoFrame(document, picture->uid, frame->uid);
    const Uid first = picture->uid;
    PageItem& second = newPicture();
    EXPECT_TRUE(putIntoFrame(document, second.uid, frame->uid));
    EXPECT_EQ(frame->children, std::vector<Uid>{second.uid});
    EXPECT_EQ(document.item(first), nullptr);
}

TEST_F(ContentFitTest, OnlyPicturesGoIntoFramesAndOnlyIntoFrames) {
    PageItem& text = document.addItem(ItemKind::TextFrame);
    PageItem& group = document.addItem(ItemKind::Group);
    EXPECT_FALSE(putIntoFrame(document, picture->uid, text.uid));
    EXPECT_FALSE(putIntoFrame(document, picture->uid, group.uid));
    EXPECT_FALSE(putIntoFrame(document, text.uid, frame->uid));
    EXPECT_FALSE(putIntoFrame(document, picture->uid, 0));
    EXPECT_FALSE(putIntoFrame(document, 9999, frame->uid));
    EXPECT_TRUE(frame->children.empty());
}

TEST_F(ContentFitTest, ContentToFrameStretchesBothWays) {
    putIntoFrame(document, picture->uid, frame->uid);
    // The frame and the picture are as good as each other.
    EXPECT_TRUE(fitContent(document, frame->uid, ContentFit::ContentToFrame));
    expectRect(shown(), {10, 20, 210, 220});
    EXPECT_NEAR(picture->transform.a, 2, 1e-9);
    EXPECT_NEAR(picture->transform.d, 4, 1e-9);
    picture->transform = Matrix{0.5, 0, 0, 0.5, 99, 99};
    EXPECT_TRUE(fitContent(document, picture->uid, ContentFit::ContentToFrame));
    expectRect(shown(), {10, 20, 210, 220});
}

TEST_F(ContentFitTest, ProportionalFitsGiveTheStretchedPictureItsProportionsBack) {
    putIntoFrame(document, picture->uid, frame->uid);
    fitContent(document, frame->uid, ContentFit::ContentToFrame);
    EXPECT_TRUE(fitContent(document, frame->uid, ContentFit::ContentProportionally));
    expectRect(shown(), {10, 20, 210, 120});
    EXPECT_TRUE(fitContent(document, frame->uid, ContentFit::FillProportionally));
    expectRect(shown(), {10, 20, 410, 220});
    frame->fitting.alignment = Point{0.5, 0.5};
    EXPECT_TRUE(fitContent(document, frame->uid, ContentFit::FillProportionally));
    expectRect(shown(), {-90, 20, 310, 220});
}

TEST_F(ContentFitTest, CentringChangesNoSize) {
    putIntoFrame(document, picture->uid, frame->uid);
    EXPECT_TRUE(fitContent(document, frame->uid, ContentFit::CenterContent));
    expectRect(shown(), {60, 95, 160, 145});
}

TEST_F(ContentFitTest, TheFrameTakesThePicturesSizeAndKeepsItsShape) {
    frame->path = {{{{{0, 0}, {0, 0}, {5, 0}}, {{20, 10}, {20, 5}, {20, 10}}, {{0, 10}, {0, 10}, {0, 10}}}, false}};
    putIntoFrame(document, picture->uid, frame->uid);
    picture->transform = Matrix::translation(30, 40);
    const uint64_t revision = frame->revision;
    EXPECT_TRUE(fitContent(document, frame->uid, ContentFit::FrameToContent));
    const Rect bounds = boundsOf(frame->path);
    expectRect(bounds, {30, 40, 130, 90});
    expectRect(shown(), {30, 40, 130, 90});
    EXPECT_EQ(frame->path[0].points.size(), 3u);
    EXPECT_EQ(frame->path[0].points[0].outgoing, (Point{55, 40}));
    EXPECT_GT(frame->revision, revision);
}

TEST_F(ContentFitTest, AFrameWithoutAreaTakesThePicturesRectangle) {
    frame->path = rectanglePath({5, 5, 5, 5});
    putIntoFrame(document, picture->uid, frame->uid);
    EXPECT_FALSE(fitContent(document, frame->uid, ContentFit::ContentToFrame));
    EXPECT_FALSE(fitContent(document, frame->uid, ContentFit::ContentProportionally));
    EXPECT_TRUE(fitContent(document, frame->uid, ContentFit::FrameToContent));
    expectRect(boundsOf(frame->path), {5, 5, 105, 55});
}

TEST_F(ContentFitTest, ATurnedPictureIsFittedByTheBoxAroundIt) {
    putIntoFrame(document, picture->uid, frame->uid);
    picture->transform = Matrix{0, 1, -1, 0, 0, 0};  // 50 wide, 100 high
    EXPECT_TRUE(fitContent(document, frame->uid, ContentFit::ContentProportionally));
    expectRect(shown(), {10, 20, 110, 220});
    EXPECT_NEAR(picture->transform.b, 2, 1e-9);
    EXPECT_TRUE(fitContent(document, frame->uid, ContentFit::ContentToFrame));
    expectRect(shown(), {10, 20, 210, 220});
}

TEST_F(ContentFitTest, AMirroredPictureStaysMirrored) {
    putIntoFrame(document, picture->uid, frame->uid);
    picture->transform = Matrix{-1, 0, 0, 1, 100, 0};
    EXPECT_TRUE(fitContent(document, frame->uid, ContentFit::FillProportionally));
    EXPECT_NEAR(picture->transform.a, -4, 1e-9);
}

TEST_F(ContentFitTest, NothingToFitIsAFailure) {
    for (const ContentFit fit :
         {ContentFit::ContentToFrame, ContentFit::ContentProportionally, ContentFit::FillProportionally,
          ContentFit::FrameToContent, ContentFit::CenterContent}) {
        EXPECT_FALSE(fitContent(document, frame->uid, fit));    // empty frame
        EXPECT_FALSE(fitContent(document, picture->uid, fit));  // picture without a frame
        EXPECT_FALSE(fitContent(document, 0, fit));
    }
    EXPECT_FALSE(document.modified);
}

TEST_F(ContentFitTest, AGroupIsNoFrameForThePictureInIt) {
    PageItem& group = document.addItem(ItemKind::Group);
    document.placeInside(*picture, group);
    EXPECT_FALSE(fitContent(document, picture->uid, ContentFit::FrameToContent));
    EXPECT_TRUE(group.path.empty());
}

TEST_F(ContentFitTest, EveryChangeOfThePictureIsSeenByItsRevision) {
    putIntoFrame(document, picture->uid, frame->uid);
    const uint64_t revision = picture->revision;
    fitContent(document, frame->uid, ContentFit::CenterContent);
    EXPECT_GT(picture->revision, revision);
}

}  // namespace
}  // namespace desk
