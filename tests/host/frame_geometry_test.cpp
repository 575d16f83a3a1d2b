#include "host/frame_geometry.h"

#include <gmock/gmock.h>

#include <cmath>
#include "captured_log.h"

#include "host/my_frame.h"
#include "host_fixture.h"
#include "lone_object.h"
#include "recorded_host.h"

using namespace vornaset;
using desk::Uid;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class FrameGeometryTest : public recorded::With<desk::testing::HostFixture> {
  protected:
    Uid frameAt(double left, double top, double right, double bottom) {
        const Uid uid = pictureFrame();
        document.item(uid)->path = desk::rectanglePath({left, top, right, bottom});
        return uid;
    }
    std::string uidOf(Uid uid) const { return std::to_string(uid); }
};

// --- Bounds

TEST_F(FrameGeometryTest, BoundsAreInPointsUnlessTheFlagIsOne) {
    const Uid frame = frameAt(0, 72, 72, 144);
    EXPECT_EQ(boundsForFrame(ref(frame), uint8_t{0}), PMRect(0, 72, 72, 144));
    EXPECT_EQ(boundsForFrame(ref(frame), uint8_t{2}), PMRect(0, 72, 72, 144));
    EXPECT_EQ(boundsForFrame(ref(frame), uint8_t{1}), PMRect(0, 25.4, 25.4, 50.8));
    EXPECT_EQ(MyFrame(ref(frame)).bounds(1).Width(), 25.4);
    InterfacePtr<IGeometry> object(ref(frame));
    EXPECT_EQ(boundsForFrame(object.get()), PMRect(0, 72, 72, 144));
}

TEST_F(FrameGeometryTest, BoundsAreOnThePasteboard) {
    const Uid frame = frameAt(0, 0, 10, 20);
    document.item(frame)->transform = desk::Matrix::translation(5, 7);
    EXPECT_EQ(boundsForFrame(ref(frame), uint8_t{0}), PMRect(5, 7, 15, 27));
}

TEST_F(FrameGeometryTest, StrokeBoundsReachOverThePath) {
    const Uid frame = frameAt(0, 0, 10, 20);
    EXPECT_EQ(strokeBoundsForFrame(ref(frame), 0), PMRect(0, 0, 10, 20));
    EXPECT_EQ(strokeBoundsForFrame(ref(frame), 1).right, 10 * 25.4 / 72);
}

TEST_F(FrameGeometryTest, MissingItemHasBoundsOfZeros) {
    EXPECT_EQ(boundsForFrame(UIDRef(), uint8_t{0}), PMRect());
    EXPECT_EQ(boundsForFrame(UIDRef(database, UID(9999)), uint8_t{1}), PMRect());
    EXPECT_EQ(boundsForFrame(static_cast<IPMUnknown*>(nullptr)), PMRect());
    EXPECT_EQ(strokeBoundsForFrame(UIDRef(), 0), PMRect());
    EXPECT_EQ(MyFrame().getRect(), PMRect());
}

TEST_F(FrameGeometryTest, InnerBoundsOfATurnedItemAreTurnedAsABox) {
    const Uid frame = frameAt(0, 0, 10, 20);
    document.item(frame)->transform = {0, 1, -1, 0, 100, 200};
    EXPECT_EQ(MyFrame(ref(frame)).getRect(), PMRect(80, 200, 100, 210));
}

TEST_F(FrameGeometryTest, BoundsOfAListAreTheUnion) {
    UIDList list(database);
    EXPECT_EQ(boundsForFrames(list), PMRect());
    list.Append(UID(frameAt(10, 10, 20, 20)));
    EXPECT_EQ(boundsForFrames(list), PMRect(10, 10, 20, 20));
    list.Append(UID(frameAt(15, 5, 30, 12)));
    EXPECT_EQ(boundsForFrames(list), PMRect(10, 5, 30, 20));
    EXPECT_EQ(myRectForFrames(list), (MyRect{10, 5, 20, 15}));
}

TEST_F(FrameGeometryTest, RectanglesChangeFormByNarrowingAndWidening) {
    EXPECT_EQ(myRectWithRect({1.1, 2, 4.2, 8}), (MyRect{1.1F, 2, static_cast<float>(4.2 - 1.1), 6}));
    const float right = 0.1F + 0.2F;
    EXPECT_EQ(rectWithMyRect({0.1F, 1, 0.2F, 2}), PMRect(0.1F, 1, right, 3));
    EXPECT_EQ(myRectForFrame(ref(frameAt(1, 2, 4, 8))), (MyRect{1, 2, 3, 6}));
}

TEST_F(FrameGeometryTest, SettingBoundsResizesThePathAndInMillimetresChangesTheCallersRectangle) {
    const Uid frame = pictureFrame();
    PMRect rectangle(0, 0, 25.4, 50.8);
    EXPECT_EQ(setBoundsForFrame(ref(frame), rectangle, 1), 0);
    EXPECT_EQ(rectangle, PMRect(0, 0, 72, 144));
    EXPECT_EQ(MyFrame(ref(frame)).setBounds(rectangle, 1), 0);
    EXPECT_NEAR(rectangle.right, 72 * 72 / 25.4, 1e-9) << "a second call converts it again";
    ASSERT_EQ(host->calls.size(), 2u);
    EXPECT_EQ(host->calls[0], "resize path " + uidOf(frame) + ": 0 0 72 144");
}

TEST_F(FrameGeometryTest, SettingBoundsInPointsLeavesTheRectangleAlone) {
    const Uid frame = pictureFrame();
    PMRect rectangle(1, 2, 3, 4);
    host->serviceResult = 12;
    EXPECT_EQ(setBoundsForFrame(ref(frame), rectangle, 2), 12);
    EXPECT_EQ(rectangle, PMRect(1, 2, 3, 4));
    EXPECT_EQ(setStrokeBoundsForFrame(ref(frame), rectangle), 12);
    MyFrame(ref(frame)).setRect(rectangle);
    EXPECT_EQ(setMyRectForFrame(ref(frame), {1, 2, 3, 4}), 12);
    const std::string uid = uidOf(frame);
    EXPECT_THAT(host->calls, ElementsAre("resize path " + uid + ": 1 2 3 4", "resize stroke " + uid + ": 1 2 3 4",
                                         "resize path " + uid + ": 1 2 3 4", "resize path " + uid + ": 1 2 4 6"));
}

// --- Scaling into a box

TEST(ScaleRect, ContentIsCentredInTheNarrowerDirection) {
    EXPECT_EQ(scaleRect(MyRect{0, 0, 100, 50}, MyRect{0, 0, 10, 10}, 0), (MyRect{25, 0, 50, 50}));
    EXPECT_EQ(scaleRect(MyRect{0, 0, 50, 100}, MyRect{7, 7, 10, 10}, 0), (MyRect{0, 25, 50, 50}));
}

TEST(ScaleRect, MarginGoesOffEverySide) {
    EXPECT_EQ(scaleRect(MyRect{10, 20, 120, 70}, MyRect{0, 0, 10, 10}, 10), (MyRect{45, 30, 50, 50}));
}

TEST(ScaleRect, SameShapeFillsTheBox) {
    EXPECT_EQ(scaleRect(PMRect(0, 0, 20, 10), PMRect(5, 5, 9, 7), 0), PMRect(0, 0, 20, 10));
}

TEST(ScaleRect, ContentWithoutAWidthFollowsFloatingPoint) {
    const MyRect scaled = scaleRect(MyRect{0, 0, 100, 50}, MyRect{0, 0, 0, 10}, 0);
    EXPECT_EQ(scaled.height, 50);
    EXPECT_EQ(scaled.width, 0);
    const MyRect nothing = scaleRect(MyRect{0, 0, 100, 50}, MyRect{0, 0, 0, 0}, 0);
    EXPECT_TRUE(std::isnan(nothing.width));
}

// --- Moving

TEST_F(FrameGeometryTest, OffsetSetsThePathsBounds) {
    const Uid frame = frameAt(1, 2, 11, 22);
    EXPECT_EQ(offsetFrame(ref(frame), 5, -2), 0);
    EXPECT_THAT(host->calls, ElementsAre("resize path " + uidOf(frame) + ": 6 0 16 20"));
}

TEST_F(FrameGeometryTest, MovingTranslatesTheItemWithItsContent) {
    const Uid frame = frameAt(1, 2, 11, 22);
    const std::string moved = "transform " + uidOf(frame) + " by 1 0 0 1 ";
    moveFrameBy(ref(frame), 1.5F, 2.0F);
    moveFrameBy(ref(frame), 3.0, 4.0);
    moveFrameTo(ref(frame), 10.0, 20.0);
    moveFrameTo(ref(frame), PMPoint{0, 0});
    EXPECT_THAT(host->calls, ElementsAre(moved + "1.5 2 mode 2", moved + "3 4 mode 2", moved + "9 18 mode 2",
                                         moved + "-1 -2 mode 2"));
}

TEST_F(FrameGeometryTest, MovingNothingIsNothingButAListIsHandedOn) {
    moveFrameBy(UIDRef(), 1.0, 1.0);
    moveFrameBy(UIDRef(database, kInvalidUID), 1.0F, 1.0F);
    moveFrameTo(UIDRef(), 1.0, 1.0);
    EXPECT_THAT(host->calls, IsEmpty());
    moveFramesBy(UIDList(), 1, 1);
    EXPECT_THAT(host->calls, ElementsAre("transform by 1 0 0 1 1 1 mode 2"));
}

// --- Fit

TEST_F(FrameGeometryTest, EachFitIsItsOwnServiceOperation) {
    const UIDRef frame = ref(pictureFrame());
    host->serviceResult = 6;
    EXPECT_EQ(vornaset::fitFrameToContent(frame), 6);
    EXPECT_EQ(vornaset::fitContentToFrame(frame), 6);
    EXPECT_EQ(fitContentProp(frame), 6);
    EXPECT_EQ(centerContent(frame), 6);
    EXPECT_EQ(fillContentProp(frame), 6);
    const std::string uid = " " + std::to_string(frame.GetUID().Get());
    EXPECT_THAT(host->calls, ElementsAre("fit frame to content" + uid, "fit content to frame" + uid,
                                         "fit proportionally" + uid, "centre" + uid, "fill proportionally" + uid));
}

TEST_F(FrameGeometryTest, HandleFitsItsContentProportionally) {
    const Uid frame = pictureFrame();
    const Uid picture = graphicIn(frame);
    host->serviceResult = 0x10003;
    EXPECT_EQ(MyFrame(ref(frame)).fitContentToFrame(), 3);
    EXPECT_EQ(MyFrame(ref(frame)).fitFrameToContent(), 3);
    EXPECT_THAT(host->calls,
                ElementsAre("fit proportionally " + uidOf(picture), "fit frame to content " + uidOf(frame)));
}

TEST_F(FrameGeometryTest, FailedFitsOfTheHandleAndMovesToAPointAreLogged) {
    const MyFrame frame(ref(frameAt(1, 2, 11, 22)));
    host->serviceResult = 4;
    CapturedLog log;
    frame.fitFrameToContent();
    frame.fitContentToFrame();
    vornaset::fitFrameToContent(frame);
    moveFrameTo(frame, 10.0, 20.25);
    EXPECT_EQ(log.texts(),
              "\t####\tfitFrameToContent: 4\n\t####\tfitContentToFrame: 4\n"
              "moveFrame: [1.0 2.0] --> [10.0 20.2]\n");
}

TEST_F(FrameGeometryTest, FitsThatSucceedAreNotLogged) {
    CapturedLog log;
    MyFrame(ref(pictureFrame())).fitFrameToContent();
    EXPECT_EQ(log.texts(), "");
}

TEST_F(FrameGeometryTest, HandleWithoutAChildFitsTheEmptyReference) {
    MyFrame(ref(pictureFrame())).fitContentToFrame();
    EXPECT_THAT(host->calls, ElementsAre("fit proportionally 0"));
}

TEST_F(FrameGeometryTest, HostWithoutTheServicesGivesAFailure) {
    host->missingServices = {IID_IGEOMETRYUTILS, IID_ITRANSFORMUTILS, IID_ICONTENTFITUTILS};
    const UIDRef frame = ref(pictureFrame());
    PMRect rectangle;
    EXPECT_EQ(setBoundsForFrame(frame, rectangle, 0), 1);
    EXPECT_EQ(vornaset::fitContentToFrame(frame), 1);
    moveFrameBy(frame, 1.0, 1.0);
    EXPECT_THAT(host->calls, IsEmpty());
}

// --- Layers

TEST_F(FrameGeometryTest, ItemKnowsItsSpreadAndLayers) {
    const UIDRef frame = ref(pictureFrame());
    EXPECT_EQ(spreadUIDForFrame(frame), UID(spread->uid));
    EXPECT_EQ(spreadLayerUIDForFrame(frame), UID(spread->layers.front()));
    EXPECT_EQ(docLayerUIDForFrame(frame), UID(layer->uid));
    EXPECT_EQ(layerUIDForFrame(frame), UID(layer->uid));
    UID found;
    EXPECT_EQ(layerNameForFrame(frame, &found), u"Layer 1");
    EXPECT_EQ(found, UID(layer->uid));
    EXPECT_EQ(layerNameForFrame(frame, nullptr), u"Layer 1");
}

/// Lies on spread layer 7, which the host can't give.
struct ItemOnAnUnknownLayer : recorded::Object<IHierarchy> {
    using Object::Object;
    int32_t GetChildCount() override { return 0; }
    UID GetChildUID(int32_t) override { return kInvalidUID; }
    IHierarchy* QueryChild(int32_t) override { return nullptr; }
    UID GetParentUID() override { return UID(7); }
    UID GetLayerUID() override { return UID(7); }
    UID GetSpreadUID() override { return kInvalidUID; }
};

TEST(FrameLayers, SpreadLayerThatCannotBeAskedStandsForItsLayerInOneAnswerAlone) {
    recorded::LoneObject<ItemOnAnUnknownLayer> items;
    const UIDRef item(&items, UID(3));
    EXPECT_EQ(docLayerUIDForFrame(item), UID(7));
    EXPECT_EQ(layerUIDForFrame(item), kInvalidUID);
    EXPECT_TRUE(layerNameForFrame(item, nullptr).isNull());
    EXPECT_EQ(items.references, 0);
}

TEST_F(FrameGeometryTest, MissingItemHasNoSpreadLayerOrName) {
    UID found(7);
    EXPECT_EQ(spreadUIDForFrame(UIDRef()), kInvalidUID);
    EXPECT_EQ(spreadLayerUIDForFrame(UIDRef()), kInvalidUID);
    EXPECT_EQ(docLayerUIDForFrame(UIDRef()), kInvalidUID);
    EXPECT_EQ(layerUIDForFrame(UIDRef()), kInvalidUID);
    EXPECT_TRUE(layerNameForFrame(UIDRef(), &found).isNull());
    EXPECT_EQ(found, kInvalidUID);
    EXPECT_EQ(pageUIDForFrame(UIDRef()), kInvalidUID);
    EXPECT_EQ(pageUIDForObj(nullptr), kInvalidUID);
}

}  // namespace
