#include "merge/template_frames.h"

#include <gmock/gmock.h>

#include "captured_log.h"
#include "merge_fixture.h"
#include "recorded_host.h"
#include "support/log.h"

using namespace vornaset;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

/// Writes down the targets of every command on its way to the host.
class CommandTargets final : public IHost {
  public:
    CommandTargets() : real_(InstallHost(this)) {}
    ~CommandTargets() override { InstallHost(real_); }

    IExecutionContextSession* Session() override { return real_->Session(); }
    IPMUnknown* QueryUtils(PMIID service) override { return real_->QueryUtils(service); }
    IPMCommand* CreateCommand(ClassID commandClass) override { return real_->CreateCommand(commandClass); }
    ErrorCode ProcessCommand(IPMCommand* command) override {
        told.push_back(recorded::text(command->GetItemList()));
        return real_->ProcessCommand(command);
    }
    bool IsValidDataBase(IDataBase* database) override { return real_->IsValidDataBase(database); }

    std::vector<std::string> told;

  private:
    IHost* real_;
};

class TemplateFramesTest : public recorded::With<MergeTest> {
  protected:
    Uid layerOfSpread() const { return spread->layers.front(); }
};

// --- The OMR frame

TEST_F(TemplateFramesTest, OmrRectangleHasItsOffsetOnlyWhenAskedWithOne) {
    const MyRect with = omrRectForPoint({10, 20}, 1);
    EXPECT_FLOAT_EQ(with.x, 18.503937F);
    EXPECT_FLOAT_EQ(with.y, 45.51181F);
    EXPECT_FLOAT_EQ(with.width, 28.913385F);
    EXPECT_FLOAT_EQ(with.height, 63.72F);
    const MyRect without = omrRectForPoint({10, 20}, 0);
    EXPECT_EQ(without, (MyRect{10, 20, with.width, with.height}));
    EXPECT_EQ(omrRectForPoint({10, 20}, 2), without);
}

TEST_F(TemplateFramesTest, OmrFrameStandsAtItsPlaceOnTheActiveLayerWithBothNumbersOne) {
    page->bounds = {0, 0, 200, 300};
    host->activeLayer = layer;
    createOMRFrame();
    ASSERT_EQ(document.spreadLayer(layerOfSpread())->items.size(), 1u);
    const UIDRef frame = ref(document.spreadLayer(layerOfSpread())->items.front());
    EXPECT_EQ(frameNumberForFrame(frame), 1);
    EXPECT_EQ(omrNumberForFrame(frame), 1);
    EXPECT_TRUE(isOMRFrame(frame));
    EXPECT_TRUE(isMyFrame(frame));
    ASSERT_EQ(host->calls.size(), 2u);
    EXPECT_EQ(host->calls[0].substr(0, host->calls[0].find(':')), "rectangle under " + std::to_string(layerOfSpread()));
    EXPECT_EQ(host->calls[1], "redraw " + std::to_string(document.rootUid()));
    const desk::Rect box = desk::boundsOf(document.item(frame.GetUID().Get())->path);
    EXPECT_EQ(box.left, 8.503936767578125);
    EXPECT_EQ(box.top, 25.511810302734375);
    EXPECT_DOUBLE_EQ(box.right - box.left, 28.91338539123535);
    EXPECT_DOUBLE_EQ(box.bottom - box.top, 63.720001220703125);
}

TEST_F(TemplateFramesTest, OmrFrameIsPlacedFromTheLeftTopCornerOfAllPagesTogether) {
    page->bounds = {0, 0, 200, 300};
    page->transform = desk::Matrix::translation(0, -150);
    desk::Page& left = document.addPage(*spread);
    left.bounds = page->bounds;
    left.transform = desk::Matrix::translation(-200, -160);
    host->activeLayer = layer;
    createOMRFrame();
    ASSERT_EQ(document.spreadLayer(layerOfSpread())->items.size(), 1u);
    const Uid frame = document.spreadLayer(layerOfSpread())->items.front();
    const desk::Rect box = desk::boundsOf(document.item(frame)->path);
    EXPECT_EQ(box.left, -200 + 8.503936767578125);
    EXPECT_EQ(box.top, -160 + 25.511810302734375);
    EXPECT_DOUBLE_EQ(box.right - box.left, 28.91338539123535);
    EXPECT_DOUBLE_EQ(box.bottom - box.top, 63.720001220703125);
    EXPECT_TRUE(host->calls[0].ends_with(" 0 1")) << host->calls[0];
}

TEST_F(TemplateFramesTest, OmrFrameIsRecordedWithItsNumberFirst) {
    host->activeLayer = layer;
    createOMRFrame();
    const UIDRef frame = ref(document.spreadLayer(layerOfSpread())->items.front());
    EXPECT_EQ(stringForKey(frame, kRecordKey, String()), u"<Vornaset><frameNum>1</frameNum><omr>1</omr></Vornaset>");
}

TEST_F(TemplateFramesTest, OmrFrameGoesToTheFirstSpreadWhereverTheOthersAre) {
    desk::Spread& second = document.addSpread(false);
    document.addPage(second);
    host->activeLayer = layer;
    createOMRFrame();
    EXPECT_EQ(document.spreadLayer(document.spread(spread->uid)->layers.front())->items.size(), 1u);
    EXPECT_TRUE(document.spreadLayer(second.layers.front())->items.empty());
}

TEST_F(TemplateFramesTest, OmrFrameWithoutAnOpenDocumentIsNothing) {
    border.close(document);
    createOMRFrame();
    EXPECT_THAT(host->calls, IsEmpty());
}

TEST_F(TemplateFramesTest, OmrFrameWithoutAnActiveLayerIsNothing) {
    createOMRFrame();
    EXPECT_THAT(host->calls, IsEmpty());
}

TEST_F(TemplateFramesTest, OmrFrameWithoutTheLayerServiceIsNothing) {
    host->activeLayer = layer;
    host->missingServices = {IID_ILAYERUTILS};
    createOMRFrame();
    EXPECT_THAT(host->calls, IsEmpty());
}

TEST_F(TemplateFramesTest, OmrFrameOfADocumentWithoutSpreadsIsNothing) {
    host->activeLayer = layer;
    document.spreads.clear();
    createOMRFrame();
    EXPECT_THAT(host->calls, IsEmpty());
}

TEST_F(TemplateFramesTest, OmrFrameThatTheHostCannotMakeGetsNoNumberAndNoRedraw) {
    host->activeLayer = layer;
    host->createsRectangles = false;
    createOMRFrame();
    EXPECT_EQ(host->calls.size(), 1u);
}

TEST_F(TemplateFramesTest, OmrFrameWithoutAFrameFactoryIsNothing) {
    host->activeLayer = layer;
    host->missingServices = {IID_IPAGEITEMFACTORYUTILS};
    createOMRFrame();
    EXPECT_THAT(host->calls, IsEmpty());
}

// --- Spreads

TEST_F(TemplateFramesTest, NewSpreadsHaveThePagesOfTheFirstInTheGivenSize) {
    document.addPage(*spread);
    const UIDRef other = ref(pictureFrame());
    EXPECT_EQ(createSpreads(documentRef(), PMRect(10, 20, 110, 70), other, 3), 1);
    EXPECT_THAT(host->calls,
                ElementsAre("make new spread", "new spread (document " + std::to_string(document.rootUid()) +
                                                   ": 3 -1 0 2 0 0 0 page 100 50 1 1 0; reference " +
                                                   std::to_string(other.GetUID().Get()) + " 1; option -1)"));
}

TEST_F(TemplateFramesTest, HostWithoutTheSpreadCommandOrOneOfItsDataGivesZero) {
    host->missingCommands = {kNewSpreadCmdBoss};
    EXPECT_EQ(createSpreads(documentRef(), PMRect(0, 0, 1, 1), UIDRef(), 1), 0);
    host->missingCommands.clear();
    for (const PMIID data : {IID_INEWSPREADCMDDATA, IID_INEWSPREADREFERENCECMDDATA, IID_INEWSPREADOPTIONCMDDATA}) {
        host->missingCommandData = {data};
        host->calls.clear();
        EXPECT_EQ(createSpreads(documentRef(), PMRect(0, 0, 1, 1), UIDRef(), 1), 0);
        EXPECT_THAT(host->calls, ElementsAre("make new spread")) << "the command must not run";
    }
}

TEST_F(TemplateFramesTest, FailedSpreadCommandGivesZero) {
    host->commandResult = 17;
    EXPECT_EQ(createSpreads(documentRef(), PMRect(0, 0, 1, 1), UIDRef(), 1), 0);
}

TEST_F(TemplateFramesTest, FailedSpreadCommandIsLoggedAndAMissingOneIsNot) {
    CapturedLog log;
    host->commandResult = -17;
    createSpreads(documentRef(), PMRect(0, 0, 1, 1), UIDRef(), 1);
    host->missingCommands = {kNewSpreadCmdBoss};
    createSpreads(documentRef(), PMRect(0, 0, 1, 1), UIDRef(), 1);
    EXPECT_EQ(log.texts(), "\t####\tcreateSpreads: -17\n");
}

TEST_F(TemplateFramesTest, DeletingSpreadsRunsOneCommandOnTheList) {
    deleteSpreads(UIDList(ref(spread->uid)));
    EXPECT_THAT(host->calls, ElementsAre("make delete spread", "delete spread " + std::to_string(spread->uid)));
}

TEST_F(TemplateFramesTest, DeletingNoSpreadsMakesNoCommand) {
    deleteSpreads(UIDList(database));
    EXPECT_THAT(host->calls, IsEmpty());
}

// --- Static frames

TEST_F(TemplateFramesTest, StaticFramesGoAndNumberedOnesStay) {
    const Uid numbered = numberedFrame(u"a", 1), text = textFrame(u"b"), picture = pictureFrame();
    const Uid omr = pictureFrame(), negative = imageSlot(-1);
    setFrameNumberForFrame(ref(omr), 1);
    setOmrNumberForFrame(ref(omr), 1);
    removeStaticFrames(documentRef());
    EXPECT_TRUE(document.item(numbered));
    EXPECT_TRUE(document.item(omr));
    EXPECT_TRUE(document.item(negative)) << "only a number of exactly 0 marks a static frame";
    EXPECT_FALSE(document.item(text));
    EXPECT_FALSE(document.item(picture));
}

TEST_F(TemplateFramesTest, StaticFramesOfAllSpreadsGoWithoutDisturbingTheWalk) {
    desk::Spread& second = document.addSpread(false);
    document.addPage(second);
    std::vector<Uid> gone;
    for (int count = 0; count < 3; ++count) gone.push_back(pictureFrame());
    gone.push_back(item(ItemKind::Rectangle, second.uid));
    removeStaticFrames(documentRef());
    for (const Uid uid : gone) EXPECT_FALSE(document.item(uid));
}

TEST_F(TemplateFramesTest, StaticFramesGoOneAtATimeInTheOrderOfTheWalk) {
    const Uid lower = pictureFrame(), upper = textFrame(u"a");
    desk::Spread& second = document.addSpread(false);
    document.addPage(second);
    const Uid last = item(ItemKind::Rectangle, second.uid);
    CommandTargets targets;
    removeStaticFrames(documentRef());
    EXPECT_THAT(targets.told,
                ElementsAre(" " + std::to_string(upper), " " + std::to_string(lower), " " + std::to_string(last)))
        << "each spread from the top of the stacking order down";
}

TEST_F(TemplateFramesTest, GroupsGoOrStayAsAWhole) {
    const Uid numbered = imageSlot(1), plain = pictureFrame();
    const Uid withoutNumber = groupOf({numbered}), withNumber = groupOf({plain});
    setFrameNumberForFrame(ref(withNumber), 2);
    removeStaticFrames(documentRef());
    EXPECT_FALSE(document.item(withoutNumber));
    EXPECT_FALSE(document.item(numbered));
    EXPECT_TRUE(document.item(withNumber));
    EXPECT_TRUE(document.item(plain));
}

TEST_F(TemplateFramesTest, StaticFramesAnchoredInTextAreNotSeen) {
    const Uid holder = numberedFrame(u"text", 1);
    const Uid anchored = anchorIn(storyOf(holder), 2);
    removeStaticFrames(documentRef());
    EXPECT_TRUE(document.item(anchored));
}

// --- Printing

TEST_F(TemplateFramesTest, PrintingClearsTheNonPrintingFlagAndNotPrintingSetsIt) {
    const Uid frame = pictureFrame();
    const std::string uid = std::to_string(frame);
    setPrintingForFrame(ref(frame), 1);
    EXPECT_THAT(host->takeCalls(),
                ElementsAre("ask for printing " + uid + " 0 0", "make non-printing", "non-printing " + uid));
    setPrintingForFrame(ref(frame), 0);
    EXPECT_THAT(host->takeCalls(),
                ElementsAre("ask for non-printing " + uid + " 0 0", "make non-printing", "non-printing " + uid));
}

TEST_F(TemplateFramesTest, PrintingOfSeveralFramesIsOneCommand) {
    const Uid first = pictureFrame(), second = pictureFrame();
    const std::string both = std::to_string(first) + " " + std::to_string(second);
    Array uids = Array::makeMutable();
    uids.add(Number(first));
    uids.add(Number(second));
    setPrintingForFrames(documentRef(), uids, 0);
    EXPECT_THAT(host->calls,
                ElementsAre("ask for non-printing " + both + " 0 0", "make non-printing", "non-printing " + both));
}

TEST_F(TemplateFramesTest, PrintingOfNoFramesAsksForNoCommand) {
    setPrintingForFrames(documentRef(), Array::makeMutable(), 0);
    setPrintingForFrames(documentRef(), nullptr, 0);
    EXPECT_THAT(host->calls, IsEmpty());
}

TEST_F(TemplateFramesTest, HostWithoutThePrintingCommandIsPassedOver) {
    host->missingCommands = {kSetNonPrintingCmdBoss};
    setPrintingForFrame(ref(pictureFrame()), 0);
    EXPECT_EQ(host->calls.size(), 1u);
}

}  // namespace
