#include "records/merge_records.h"

#include <gmock/gmock.h>

#include "host/api/host.h"
#include "plugin_fixture.h"

using namespace vornaset;
using ::testing::ElementsAre;

namespace {

class MergeRecordsTest : public PluginTest {
  protected:
    std::string stored(Uid item) const { return document.item(item)->labels.get("Vornaset"); }
    std::string storedInDocument() const { return document.labels.get("Vornaset"); }

    template <class Call>
    bool writes(Call call) {
        document.modified = false;
        balanced([&] { call(); });
        return document.modified;
    }

    struct Walk {
        std::vector<Uid> visited;
        int answersLeft = 1000;  ///< so many answers of 1 before `lastAnswer`
        unsigned char lastAnswer = 0;

        static unsigned char visit(UIDRef& item, void* data) {
            auto* walk = static_cast<Walk*>(data);
            walk->visited.push_back(item.GetUID().Get());
            return walk->answersLeft-- > 0 ? 1 : walk->lastAnswer;
        }
    };
};

// --- Documents

TEST_F(MergeRecordsTest, FreshDocumentHasNoData) {
    EXPECT_FALSE(docHasData(documentRef()));
    EXPECT_EQ(modeForDoc(documentRef()), 0);
    EXPECT_TRUE(dataPathForDoc(documentRef()).isNull());
    EXPECT_TRUE(sheetForDoc(documentRef()).isNull());
    EXPECT_TRUE(pdfStyleForDoc(documentRef()).isNull());
    setSheetForDoc(documentRef(), "Table 1");
    EXPECT_TRUE(docHasData(documentRef()));
    EXPECT_EQ(sheetForDoc(documentRef()), u"Table 1");
}

TEST_F(MergeRecordsTest, FieldsOfADocumentStandUnderTheirNames) {
    setDataPathForDoc(documentRef(), "/data/people.csv");
    setSheetForDoc(documentRef(), "One");
    setModeForDoc(documentRef(), 2);
    setPDFStyleForDoc(documentRef(), "Print");
    EXPECT_EQ(storedInDocument(),
              "<Vornaset><path>/data/people.csv</path><sheet>One</sheet><mode>2</mode>"
              "<pdfStyle>Print</pdfStyle></Vornaset>");
    EXPECT_EQ(dataPathForDoc(documentRef()), u"/data/people.csv");
    EXPECT_EQ(modeForDoc(documentRef()), 2);
    EXPECT_EQ(stringForDoc(documentRef(), "mode", nullptr), u"2");
    EXPECT_EQ(pdfStyleForDoc(documentRef()), u"Print");
}

TEST_F(MergeRecordsTest, StoredValueOfADocumentIsNotWrittenAgain) {
    EXPECT_TRUE(writes([&] { setDataPathForDoc(documentRef(), "/a"); }));
    EXPECT_FALSE(writes([&] { setDataPathForDoc(documentRef(), "/a"); }));
    EXPECT_TRUE(writes([&] { setDataPathForDoc(documentRef(), "/b"); }));
    EXPECT_TRUE(writes([&] { setModeForDoc(documentRef(), 3); }));
    EXPECT_FALSE(writes([&] { setModeForDoc(documentRef(), 3); }));
}

TEST_F(MergeRecordsTest, NullOnADocumentWithoutTheFieldWritesNothing) {
    EXPECT_FALSE(writes([&] { setDataPathForDoc(documentRef(), nullptr); }));
    EXPECT_EQ(storedInDocument(), "");
    setDataPathForDoc(documentRef(), "/a");
    EXPECT_TRUE(writes([&] { setDataPathForDoc(documentRef(), nullptr); }));
    EXPECT_EQ(dataPathForDoc(documentRef()), u"");
}

TEST_F(MergeRecordsTest, AnyFieldOfADocumentIsReadWithADefault) {
    EXPECT_EQ(stringForDoc(documentRef(), "x", "default"), u"default");
    EXPECT_EQ(integerForDoc(documentRef(), "n", 9), 9);
    setStringForDoc(documentRef(), "x", "C string");
    setIntegerForDoc(documentRef(), "n", -5000000000);
    EXPECT_EQ(stringForDoc(documentRef(), "x", "default"), u"C string");
    EXPECT_EQ(integerForDoc(documentRef(), "n", 9), -5000000000);
}

// --- Frames

TEST_F(MergeRecordsTest, FrameWithoutARecordIsStatic) {
    for (const UIDRef& frame : {ref(pictureFrame()), UIDRef(), ref(9999)}) {
        EXPECT_EQ(frameNumberForFrame(frame), 0);
        EXPECT_EQ(omrNumberForFrame(frame), 0);
        EXPECT_FALSE(isOMRFrame(frame));
        EXPECT_FALSE(colNameForFrame(frame).isNull());
        EXPECT_EQ(colNameForFrame(frame), u"");
        EXPECT_EQ(dataPathForFrame(frame), u"");
        EXPECT_EQ(sheetForFrame(frame), u"");
    }
}

TEST_F(MergeRecordsTest, FieldsOfAFrameStandUnderTheirNames) {
    const Uid frame = pictureFrame();
    setFrameNumberForFrame(ref(frame), 2);
    setOmrNumberForFrame(ref(frame), 3);
    setColNameForFrame(ref(frame), "Photo");
    setDataPathForFrame(ref(frame), "/p");
    setSheetForFrame(ref(frame), "S");
    EXPECT_EQ(stored(frame),
              "<Vornaset><frameNum>2</frameNum><omr>3</omr><colName>Photo</colName><path>/p</path>"
              "<sheet>S</sheet></Vornaset>");
    EXPECT_EQ(frameNumberForFrame(ref(frame)), 2);
    EXPECT_TRUE(isOMRFrame(ref(frame)));
    EXPECT_EQ(colNameForFrame(ref(frame)), u"Photo");
    EXPECT_EQ(dataPathForFrame(ref(frame)), u"/p");
    EXPECT_EQ(sheetForFrame(ref(frame)), u"S");
    EXPECT_FALSE(writes([&] { setColNameForFrame(ref(frame), "Photo"); }));
    EXPECT_FALSE(writes([&] { setFrameNumberForFrame(ref(frame), 2); }));
}

TEST_F(MergeRecordsTest, FrameNumberIsThatOfTheRecordAsItStandsNow) {
    const UIDRef frame = ref(pictureFrame());
    for (int64_t number = 1; number <= 3000; ++number) {
        setFrameNumberForFrame(frame, number);
        ASSERT_EQ(frameNumberForFrame(frame), number);
        ASSERT_EQ(integerForNode(frame, "frameNum", 0), number);
    }
    document.item(frame.GetUID().Get())->labels.set("Vornaset", "no record");
    EXPECT_EQ(frameNumberForFrame(frame), 0);
    document.item(frame.GetUID().Get())->labels.set("Vornaset", "<Vornaset><frameNum>many</frameNum></Vornaset>");
    EXPECT_EQ(frameNumberForFrame(frame), 0);
}

TEST_F(MergeRecordsTest, RecordWithoutAColumnNameReadsAsEmpty) {
    const UIDRef frame = ref(imageSlot(1));
    EXPECT_FALSE(colNameForFrame(frame).isNull());
    EXPECT_EQ(colNameForFrame(frame), u"");
}

TEST_F(MergeRecordsTest, EmptyTextIsAFieldAndNullWithoutTheFieldIsNone) {
    const Uid frame = pictureFrame();
    EXPECT_FALSE(writes([&] { setColNameForFrame(ref(frame), nullptr); }));
    EXPECT_EQ(stored(frame), "");
    EXPECT_TRUE(writes([&] { setColNameForFrame(ref(frame), u""); }));
    EXPECT_EQ(stored(frame), "<Vornaset><colName></colName></Vornaset>");
    EXPECT_FALSE(writes([&] { setColNameForFrame(ref(frame), u""); }));
    EXPECT_TRUE(writes([&] { setDataPathForFrame(ref(frame), u"/p"); }));
    EXPECT_FALSE(writes([&] { setDataPathForFrame(ref(frame), u"/p"); }));
    EXPECT_TRUE(writes([&] { setSheetForFrame(ref(frame), u"S"); }));
    EXPECT_FALSE(writes([&] { setSheetForFrame(ref(frame), u"S"); }));
}

TEST_F(MergeRecordsTest, WritingAFieldKeepsWhatElseTheRecordHolds) {
    const Uid frame = pictureFrame();
    document.item(frame)->labels.set("Vornaset", "<Vornaset><mine>1</mine><frameNum>2</frameNum></Vornaset>");
    setFrameNumberForFrame(ref(frame), 3);
    setColNameForFrame(ref(frame), u"Photo");
    EXPECT_EQ(stored(frame), "<Vornaset><mine>1</mine><frameNum>3</frameNum><colName>Photo</colName></Vornaset>");
}

TEST_F(MergeRecordsTest, WritingAFieldOverARecordInJsonStartsAnew) {
    setDictForDoc(documentRef(), Dictionary::make({{"mode", 2}}));
    EXPECT_EQ(modeForDoc(documentRef()), 0);
    EXPECT_FALSE(docHasData(documentRef()));
    setModeForDoc(documentRef(), 1);
    EXPECT_EQ(storedInDocument(), "<Vornaset><mode>1</mode></Vornaset>");
}

TEST_F(MergeRecordsTest, RenumberingKeepsTheOmrNumberEqual) {
    const UIDRef frame = ref(pictureFrame());
    setOmrNumberForFrame(frame, 3);
    setFrameNumberForFrame(frame, 4);
    EXPECT_EQ(omrNumberForFrame(frame), 3);
    setFrameNumberForFrame2(frame, 5);
    EXPECT_EQ(frameNumberForFrame(frame), 5);
    EXPECT_EQ(omrNumberForFrame(frame), 5);
}

TEST_F(MergeRecordsTest, RenumberingAFrameThatIsNoOmrFrameAddsNoOmrNumber) {
    const Uid frame = pictureFrame();
    setFrameNumberForFrame2(ref(frame), 5);
    EXPECT_EQ(stored(frame), "<Vornaset><frameNum>5</frameNum></Vornaset>");
    setOmrNumberForFrame(ref(frame), 0);
    setFrameNumberForFrame2(ref(frame), 6);
    EXPECT_EQ(omrNumberForFrame(ref(frame)), 0);
    EXPECT_EQ(stored(frame), "<Vornaset><frameNum>6</frameNum><omr>0</omr></Vornaset>");
}

// --- Questions

TEST_F(MergeRecordsTest, OnlyAnEmptyPathItemIsAnEmptyPictureFrame) {
    const Uid empty = pictureFrame();
    const Uid filled = pictureFrame();
    const Uid picture = graphicIn(filled);
    const Uid text = textFrame(u"a");
    const Uid group = groupOf({pictureFrame()});
    EXPECT_TRUE(isEmptyPictureFrame(ref(empty)));
    EXPECT_TRUE(isEmptyPictureFrame(ref(item(ItemKind::Oval))));
    EXPECT_FALSE(isEmptyPictureFrame(ref(filled)));
    EXPECT_FALSE(isEmptyPictureFrame(ref(picture)));
    EXPECT_FALSE(isEmptyPictureFrame(ref(text)));
    EXPECT_FALSE(isEmptyPictureFrame(ref(group)));
    EXPECT_FALSE(isEmptyPictureFrame(UIDRef()));
    EXPECT_FALSE(isEmptyPictureFrame(ref(9999)));
    EXPECT_FALSE(isEmptyPictureFrame(storyRef(text)));
}

TEST_F(MergeRecordsTest, MergeFramesAreTextFramesEmptyPictureFramesAndOmrFrames) {
    const Uid filled = pictureFrame();
    graphicIn(filled);
    EXPECT_TRUE(isMyFrame(ref(textFrame(u"a"))));
    EXPECT_TRUE(isMyFrame(ref(pictureFrame())));
    EXPECT_FALSE(isMyFrame(ref(filled)));
    setOmrNumberForFrame(ref(filled), 1);
    EXPECT_TRUE(isMyFrame(ref(filled)));
    EXPECT_FALSE(isMyFrame(UIDRef()));
}

TEST_F(MergeRecordsTest, FramesOfAListAreCounted) {
    const Uid text = textFrame(u"a");
    const Uid empty = pictureFrame();
    const Uid filled = pictureFrame();
    graphicIn(filled);
    const Array uids = Array::make({Number(text), Number(empty), Number(filled), Number(9999)});
    EXPECT_EQ(validFramesCnt(database, uids), 2);
    EXPECT_EQ(emptyFramesCnt(database, uids), 1);
    EXPECT_EQ(validFramesCnt(database, Array::make()), 0);
    EXPECT_EQ(emptyFramesCnt(database, Array()), 0);
    EXPECT_EQ(validFramesCnt(nullptr, uids), 0);
}

TEST_F(MergeRecordsTest, FrameOfANumberIsAUidInTheSameDatabase) {
    EXPECT_EQ(frameWithNumber(17, documentRef()), ref(17));
}

// --- Walks

TEST_F(MergeRecordsTest, WalkEntersFramesAnchoredInTextOneLevelDeep) {
    const Uid first = textFrame(u"ab");
    const Uid anchored = anchorIn(storyOf(first), 1, ItemKind::TextFrame);
    document.item(anchored)->story = story(u"inner");
    document.threadsChanged();
    anchorIn(storyOf(anchored), 0);
    const Uid second = pictureFrame();
    Walk walk;
    EXPECT_EQ(balanced([&] { return EnumMyBoxes(documentRef(), Walk::visit, &walk); }), 1);
    EXPECT_THAT(walk.visited, ElementsAre(second, first, anchored));

    Walk spreadWalk;
    InterfacePtr<ISpread> walked(ref(spread->uid));
    EXPECT_EQ(balanced([&] { return EnumMySpread(walked.get(), Walk::visit, &spreadWalk); }), 1);
    EXPECT_EQ(spreadWalk.visited, walk.visited);
}

TEST_F(MergeRecordsTest, AnyAnswerButOneForAPageItemEndsTheWalk) {
    const Uid below = textFrame(u"a");
    anchorIn(storyOf(below), 0);
    const Uid above = textFrame(u"b");
    for (const unsigned char answer : {0, 2}) {
        Walk walk{{}, 0, answer};
        EXPECT_EQ(EnumMyBoxes(documentRef(), Walk::visit, &walk), 0);
        EXPECT_THAT(walk.visited, ElementsAre(above));
    }
    Walk atAnchored{{}, 2, 0};
    EXPECT_EQ(EnumMyBoxes(documentRef(), Walk::visit, &atAnchored), 0);
    EXPECT_EQ(atAnchored.visited.size(), 3u);
}

// --- Counting

TEST_F(MergeRecordsTest, DifferentFrameNumbersAreCounted) {
    EXPECT_EQ(uniqueFrameNumbersForDoc(documentRef()), 0);
    numberedFrame(u"a", 1);
    numberedFrame(u"b", 1);
    imageSlot(2);
    pictureFrame();
    imageSlot(-3);
    EXPECT_EQ(uniqueFrameNumbersForDoc(documentRef()), 2);
}

TEST_F(MergeRecordsTest, NumberOfAFrameAnchoredInTextCounts) {
    const Uid frame = textFrame(u"a");
    setFrameNumberForFrame(ref(anchorIn(storyOf(frame), 0)), 4);
    EXPECT_EQ(uniqueFrameNumbersForDoc(documentRef()), 1);
}

TEST_F(MergeRecordsTest, LargestNumberIsTheLengthOfTheFirstRun) {
    EXPECT_EQ(maxFrameNumberForDoc(documentRef()), 0);
    imageSlot(4);
    imageSlot(3);
    EXPECT_EQ(maxFrameNumberForDoc(documentRef()), 2);
    imageSlot(2);
    EXPECT_EQ(maxFrameNumberForDoc(documentRef()), 3);
    imageSlot(1);
    EXPECT_EQ(maxFrameNumberForDoc(documentRef()), 4);
    imageSlot(7);
    EXPECT_EQ(maxFrameNumberForDoc(documentRef()), 4);
}

TEST_F(MergeRecordsTest, GapAfterTheFirstRunEndsTheCount) {
    imageSlot(1);
    imageSlot(2);
    imageSlot(4);
    EXPECT_EQ(maxFrameNumberForDoc(documentRef()), 2);
}

}  // namespace
