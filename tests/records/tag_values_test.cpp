#include "records/tag_values.h"

#include "captured_log.h"
#include "host/api/host.h"
#include "host/my_frame.h"
#include "plugin_fixture.h"
#include "recorded_host.h"

using namespace vornaset;

namespace {

class TagValuesTest : public PluginTest {
  protected:
    std::string stored(Uid item, const char* key = "Vornaset") const { return document.item(item)->labels.get(key); }
    std::string storedInDocument() const { return document.labels.get("Vornaset"); }
    void store(Uid item, const char* text) { document.item(item)->labels.set("Vornaset", text); }

    /// Whether a call writes to the document.
    template <class Call>
    bool writes(Call call) {
        document.modified = false;
        balanced([&] { call(); });
        return document.modified;
    }
};

// --- Text under keys

TEST_F(TagValuesTest, TextIsStoredAndReadUnderItsKey) {
    const Uid frame = pictureFrame();
    setStringForKey(ref(frame), "note", "Gr\u00FC\u00DFe \U0001F600");
    EXPECT_EQ(stored(frame, "note"), "Gr\u00FC\u00DFe \U0001F600");
    EXPECT_EQ(stringForKey(ref(frame), "note", nullptr), u"Gr\u00FC\u00DFe \U0001F600");
    EXPECT_EQ(stringForKey(ref(frame), String(u"note"), nullptr), u"Gr\u00FC\u00DFe \U0001F600");
    EXPECT_EQ(stringForKey(ref(frame), "other", "default"), u"default");
}

TEST_F(TagValuesTest, NullReferenceGivesTheDefaultAndAsksTheHostNothing) {
    InstallHost(nullptr);
    EXPECT_EQ(stringForKey(UIDRef(), "note", "default"), u"default");
    EXPECT_TRUE(stringForKey(UIDRef(), "note", nullptr).isNull());
    EXPECT_EQ(intForKey(UIDRef(), "note", 7), 7);
    EXPECT_EQ(floatForKey(UIDRef(), "note", 1.5f), 1.5f);
    setStringForKey(UIDRef(), "note", "x");
    EXPECT_EQ(stringForKey(static_cast<IPMUnknown*>(nullptr), "note", "default"), u"default");
    InstallHost(&border);
}

TEST_F(TagValuesTest, ObjectWithoutATagStoreReadsAsTheDefaultAndSwallowsWrites) {
    const UIDRef story = storyRef(textFrame(u"a"));
    setStringForKey(story, "note", "x");
    EXPECT_EQ(stringForKey(story, "note", "default"), u"default");
}

TEST_F(TagValuesTest, StoredEmptyTextReadsAsTheDefault) {
    const Uid frame = pictureFrame();
    setStringForKey(ref(frame), "note", "x");
    setStringForKey(ref(frame), "note", u"");
    EXPECT_EQ(stringForKey(ref(frame), "note", "default"), u"default");
}

TEST_F(TagValuesTest, NullValueLeavesTheOldOne) {
    const Uid frame = pictureFrame();
    setStringForKey(ref(frame), "note", "old");
    EXPECT_FALSE(writes([&] { setStringForKey(ref(frame), "note", nullptr); }));
    EXPECT_EQ(stringForKey(ref(frame), "note", nullptr), u"old");
}

TEST_F(TagValuesTest, NumbersAreStoredAsText) {
    const UIDRef frame = ref(pictureFrame());
    setIntForKey(frame, "int", -42);
    setFloatForKey(frame, "float", 0.1f);
    EXPECT_EQ(stringForKey(frame, "int", nullptr), u"-42");
    EXPECT_EQ(stringForKey(frame, "float", nullptr), u"0.1");
    EXPECT_EQ(intForKey(frame, "int", 7), -42);
    EXPECT_EQ(floatForKey(frame, "float", 7), 0.1f);
    EXPECT_EQ(intForKey(frame, "absent", 7), 7);
    EXPECT_EQ(floatForKey(frame, "absent", 2.5f), 2.5f);
}

TEST_F(TagValuesTest, TextThatIsNoNumberReadsAsZeroAndNotAsTheDefault) {
    const UIDRef frame = ref(pictureFrame());
    setStringForKey(frame, "n", "many");
    EXPECT_EQ(intForKey(frame, "n", 7), 0);
    EXPECT_EQ(floatForKey(frame, "n", 7), 0);
    EXPECT_EQ(MyFrame(frame).getInt("n"), 0);
}

TEST_F(TagValuesTest, EveryFormOfWritingReachesTheSamePlace) {
    const Uid frame = pictureFrame();
    setStringForKey(ref(frame), String(u"a"), "1");
    setStringForKey(database, static_cast<int>(frame), "b", "2");
    {
        InterfacePtr<IHierarchy> object(ref(frame));
        setStringForKey(object.get(), "c", "3");
        EXPECT_EQ(stringForKey(object.get(), "a", nullptr), u"1");
    }
    EXPECT_EQ(stored(frame, "a") + stored(frame, "b") + stored(frame, "c"), "123");
}

TEST_F(TagValuesTest, NullObjectSwallowsWrites) {
    EXPECT_FALSE(writes([&] { setStringForKey(static_cast<IPMUnknown*>(nullptr), "a", "1"); }));
    EXPECT_FALSE(writes([&] { setStringForKey(static_cast<IDataBase*>(nullptr), 7, "a", "1"); }));
}

class TagValuesInARecordedHost : public recorded::With<PluginTest> {};

TEST_F(TagValuesInARecordedHost, WritesUseNoCommand) {
    const Uid frame = pictureFrame();
    setStringForKey(ref(frame), "a", "1");
    setIntForKey(ref(frame), "b", 2);
    MyFrame(ref(frame)).setTag("c", "3");
    setNodeForFrame(ref(frame), Element::make("Vornaset"));
    setDictForDoc(documentRef(), Dictionary::make({{"a", 1}}));
    EXPECT_EQ(host->commandsMade, 0);
    EXPECT_TRUE(host->calls.empty());
}

// --- A frame's own view

TEST_F(TagValuesTest, FrameReadsAndWritesItsValues) {
    const Uid uid = pictureFrame();
    const MyFrame frame(ref(uid));
    EXPECT_TRUE(frame.getTag("a").isNull());
    EXPECT_EQ(frame.getInt("a"), 0);
    EXPECT_EQ(frame.stringForKey("a"), nullptr);
    frame.setTag("a", "text");
    frame.setTag(String(u"b"), "more");
    frame.setInt("n", -3);
    frame.setStringForKey("c", "caf\xC3\xA9");
    EXPECT_EQ(frame.getTag("a"), u"text");
    EXPECT_EQ(frame.getTag("b"), u"more");
    EXPECT_EQ(stored(uid, "n"), "-3");
    EXPECT_EQ(frame.getInt("n"), -3);
    EXPECT_EQ(frame.getInt("a"), 0);
    EXPECT_EQ(stored(uid, "c"), "caf\xC3\xA9");
    EXPECT_STREQ(frame.stringForKey("c"), "caf\xC3\xA9");
}

TEST_F(TagValuesTest, LongTextOfAFrameComesBackWhole) {
    const MyFrame frame(ref(pictureFrame()));
    const std::string text(100000, 'x');
    frame.setStringForKey("long", text.c_str());
    EXPECT_EQ(frame.stringForKey("long"), text);
}

// --- Records in XML

TEST_F(TagValuesTest, RecordIsOneElementWithAChildForEachField) {
    const Uid frame = pictureFrame();
    Element node = nodeForFrame(ref(frame));
    EXPECT_EQ(node.name(), u"Vornaset");
    EXPECT_EQ(node.childCount(), 0u);
    setStringForKey(node, "frameNum", "2");
    setStringForKey(node, "colName", "A & B");
    EXPECT_EQ(stored(frame), "");
    setNodeForFrame(ref(frame), node);
    EXPECT_EQ(stored(frame), "<Vornaset><frameNum>2</frameNum><colName>A &amp; B</colName></Vornaset>");
    EXPECT_EQ(stringForKey(nodeForFrame(ref(frame)), "colName"), u"A & B");
}

TEST_F(TagValuesTest, TextThatIsNoXmlReadsAsAnEmptyRecordAndStaysUntilSomethingWrites) {
    const Uid frame = pictureFrame();
    store(frame, "no <xml");
    EXPECT_EQ(nodeForFrame(ref(frame)).name(), u"Vornaset");
    EXPECT_EQ(nodeForFrame(ref(frame)).childCount(), 0u);
    EXPECT_EQ(stored(frame), "no <xml");
    setNodeForFrame(ref(frame), nodeForFrame(ref(frame)));
    EXPECT_EQ(stored(frame), "<Vornaset></Vornaset>");
}

TEST_F(TagValuesTest, RecordOfAnotherNameIsTakenAsItIs) {
    const Uid frame = pictureFrame();
    store(frame, "<Other mine='1'><frameNum>2</frameNum></Other>");
    const Element node = nodeForFrame(ref(frame));
    EXPECT_EQ(node.name(), u"Other");
    setStringForKey(node, "colName", "x");
    setNodeForFrame(ref(frame), node);
    EXPECT_EQ(stored(frame), "<Other mine=\"1\"><frameNum>2</frameNum><colName>x</colName></Other>");
}

TEST_F(TagValuesTest, EqualRecordOfAFrameIsNotWrittenAgain) {
    const UIDRef frame = ref(pictureFrame());
    const Element node = nodeForFrame(frame);
    setStringForKey(node, "a", "1");
    EXPECT_TRUE(writes([&] { setNodeForFrame(frame, node); }));
    EXPECT_FALSE(writes([&] { setNodeForFrame(frame, nodeForFrame(frame)); }));
}

TEST_F(TagValuesTest, NullRecordOfAFrameIsTheEmptyText) {
    const Uid frame = pictureFrame();
    EXPECT_FALSE(writes([&] { setNodeForFrame(ref(frame), nullptr); }));
    store(frame, "<Vornaset/>");
    setNodeForFrame(ref(frame), nullptr);
    EXPECT_EQ(stored(frame), "");
}

TEST_F(TagValuesTest, RecordOfADocumentIsAlwaysWritten) {
    const Element node = nodeForDoc(documentRef());
    EXPECT_TRUE(writes([&] { setNodeForDoc(documentRef(), node); }));
    EXPECT_TRUE(writes([&] { setNodeForDoc(documentRef(), node); }));
    setNodeForDoc(documentRef(), nullptr);
    EXPECT_EQ(storedInDocument(), "<Vornaset></Vornaset>");
}

// --- Records in JSON

TEST_F(TagValuesTest, DictionaryIsStoredAsCompactJson) {
    EXPECT_EQ(dictForDoc(documentRef()).count(), 0u);
    setDictForDoc(documentRef(), Dictionary::make({{"name", "x"}, {"n", 2}}));
    EXPECT_EQ(storedInDocument(), "{\"name\":\"x\",\"n\":2}");
    const Dictionary read = dictForDoc(documentRef());
    EXPECT_TRUE(read.isMutable());
    EXPECT_EQ(read.valueForKey("name").string(), u"x");
}

TEST_F(TagValuesTest, DictionaryThatJsonCannotHoldIsNotWritten) {
    setDictForDoc(documentRef(), Dictionary::make({{"a", 1}}));
    EXPECT_FALSE(writes([&] { setDictForDoc(documentRef(), Dictionary::make({{"bytes", Data(std::string("x"))}})); }));
    EXPECT_FALSE(writes([&] { setDictForDoc(documentRef(), nullptr); }));
    EXPECT_EQ(storedInDocument(), "{\"a\":1}");
}

TEST_F(TagValuesTest, EachFormReadsTheOtherAsAnEmptyRecord) {
    setNodeForDoc(documentRef(), nodeForDoc(documentRef()));
    EXPECT_EQ(dictForDoc(documentRef()).count(), 0u);
    EXPECT_TRUE(dictForDoc(documentRef()).isMutable());
    setDictForDoc(documentRef(), Dictionary::make({{"a", 1}}));
    EXPECT_EQ(nodeForDoc(documentRef()).name(), u"Vornaset");
    EXPECT_EQ(nodeForDoc(documentRef()).childCount(), 0u);
}

TEST_F(TagValuesTest, UnreadableAndUnwritableRecordsAreNotReported) {
    CapturedLog log;
    for (const char* text : {"<Vornaset><mode>2</mode></Vornaset>", "[1,2]", "{", "no <xml"}) {
        document.labels.set("Vornaset", text);
        EXPECT_EQ(dictForDoc(documentRef()).count(), 0u) << text;
    }
    EXPECT_EQ(nodeForDoc(documentRef()).childCount(), 0u);
    setDictForDoc(documentRef(), Dictionary::make({{"bytes", Data(std::string("x"))}}));
    EXPECT_EQ(log.texts(), "");
}

TEST_F(TagValuesTest, JsonThatIsNoDictionaryReadsAsAnEmptyRecord) {
    document.labels.set("Vornaset", "[1,2]");
    EXPECT_EQ(dictForDoc(documentRef()).count(), 0u);
}

}  // namespace
