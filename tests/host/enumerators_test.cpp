#include "host/enumerators.h"

#include <gmock/gmock.h>

#include "host/my_doc.h"
#include "host_fixture.h"

using namespace vornaset;
using desk::ItemKind;
using desk::Uid;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

/// What a walk handed over, and after how many items it is to stop.
struct Walk {
    std::vector<Uid> visited;
    int goOn = 1000;

    unsigned char visit(Uid uid) {
        visited.push_back(uid);
        return goOn-- > 1 ? 1 : 0;
    }
};

unsigned char visitItem(UIDRef& item, void* data) {
    return static_cast<Walk*>(data)->visit(item.GetUID().Get());
}
unsigned char visitSpread(ISpread* spread, void* data) {
    return static_cast<Walk*>(data)->visit(::GetUID(spread).Get());
}
unsigned char visitStory(ITextModel* story, void* data) {
    return static_cast<Walk*>(data)->visit(::GetUID(story).Get());
}

class EnumeratorsTest : public desk::testing::HostFixture {
  protected:
    template <class Call>
    std::vector<Uid> visited(uint8_t expected, Call call, int goOn = 1000) {
        Walk walk{{}, goOn};
        balanced([&] { EXPECT_EQ(call(&walk), expected); });
        return walk.visited;
    }
    Uid itemOn(desk::Layer& where, desk::Spread& here) {
        desk::PageItem& made = document.addItem(ItemKind::Rectangle);
        document.placeOnSpread(made, here, where);
        return made.uid;
    }
    Uid spreadLayer(size_t index) const { return spread->layers[index]; }
};

// --- Hierarchies

TEST_F(EnumeratorsTest, HierarchyIsWalkedFromTheTopDown) {
    const Uid a = pictureFrame(), b = pictureFrame(), c = pictureFrame();
    InterfacePtr<IHierarchy> hierarchy(ref(spreadLayer(0)));
    EXPECT_THAT(visited(1, [&](void* w) { return EnumHierarchy(hierarchy.get(), visitItem, w); }),
                ElementsAre(c, b, a));
    InterfacePtr<ISpreadLayer> object(ref(spreadLayer(0)));
    EXPECT_THAT(visited(1, [&](void* w) { return EnumHierarchy(object.get(), visitItem, w); }), ElementsAre(c, b, a));
    EXPECT_THAT(visited(1, [&](void* w) { return EnumHierarchy(database, UID(spreadLayer(0)), visitItem, w); }),
                ElementsAre(c, b, a));
}

TEST_F(EnumeratorsTest, HierarchyWithoutChildrenRunsToTheEnd) {
    EXPECT_THAT(visited(1, [&](void* w) { return EnumHierarchy(database, UID(spreadLayer(0)), visitItem, w); }),
                IsEmpty());
}

TEST_F(EnumeratorsTest, MissingHierarchyGivesZero) {
    Walk walk;
    EXPECT_EQ(EnumHierarchy(static_cast<IHierarchy*>(nullptr), visitItem, &walk), 0);
    EXPECT_EQ(EnumHierarchy(static_cast<IPMUnknown*>(nullptr), visitItem, &walk), 0);
    EXPECT_EQ(EnumHierarchy(nullptr, UID(3), visitItem, &walk), 0);
    EXPECT_EQ(EnumHierarchy(database, UID(9999), visitItem, &walk), 0);
    EXPECT_EQ(EnumHierarchy2(static_cast<IHierarchy*>(nullptr), visitItem, &walk), 0);
    EXPECT_EQ(EnumHierarchy2(static_cast<IPMUnknown*>(nullptr), visitItem, &walk), 0);
    EXPECT_EQ(EnumHierarchy2(nullptr, UID(3), visitItem, &walk), 0);
    InterfacePtr<ITextModel> story(ref(storyOf(textFrame(u"a"))));
    EXPECT_EQ(EnumHierarchy(story.get(), visitItem, &walk), 0);
    EXPECT_THAT(walk.visited, IsEmpty());
}

TEST_F(EnumeratorsTest, GroupsAreHandedOverWholeOrEntered) {
    const Uid bottom = pictureFrame();
    const Uid inA = pictureFrame(), inB = pictureFrame();
    const Uid inner = groupOf({inA, inB});
    const Uid beside = pictureFrame();
    const Uid outer = groupOf({inner, beside});
    const Uid top = pictureFrame();
    const auto whole = visited(1, [&](void* w) { return EnumHierarchy(database, UID(spreadLayer(0)), visitItem, w); });
    EXPECT_THAT(whole, ElementsAre(top, outer, bottom));
    const std::vector<Uid> leaves{top, beside, inB, inA, bottom};
    EXPECT_EQ(visited(1, [&](void* w) { return EnumHierarchy2(database, UID(spreadLayer(0)), visitItem, w); }), leaves);
    InterfacePtr<ISpreadLayer> object(ref(spreadLayer(0)));
    EXPECT_EQ(visited(1, [&](void* w) { return EnumHierarchy2(object.get(), visitItem, w); }), leaves);
}

TEST_F(EnumeratorsTest, StopInsideAGroupStopsTheWholeWalk) {
    pictureFrame();
    groupOf({pictureFrame(), pictureFrame()});
    EXPECT_EQ(visited(
                  0, [&](void* w) { return EnumHierarchy2(database, UID(spreadLayer(0)), visitItem, w); }, 2)
                  .size(),
              2u);
}

TEST_F(EnumeratorsTest, OnlyTheLowByteOfAnAnswerCounts) {
    pictureFrame();
    pictureFrame();
    int calls = 0;
    const auto answer = [](UIDRef&, void* data) -> unsigned char {
        ++*static_cast<int*>(data);
        return static_cast<unsigned char>(256);
    };
    EXPECT_EQ(EnumHierarchy(database, UID(spreadLayer(0)), answer, &calls), 0);
    EXPECT_EQ(calls, 1);
}

TEST_F(EnumeratorsTest, AnyAnswerButZeroGoesOn) {
    pictureFrame();
    pictureFrame();
    int calls = 0;
    const auto answer = [](UIDRef&, void* data) -> unsigned char {
        ++*static_cast<int*>(data);
        return 2;
    };
    EXPECT_EQ(EnumBoxes(documentRef(), answer, &calls), 1);
    EXPECT_EQ(calls, 2);
}

TEST_F(EnumeratorsTest, CallbackMayChangeTheReferenceItGets) {
    pictureFrame();
    pictureFrame();
    int calls = 0;
    const auto changing = [](UIDRef& item, void* data) -> unsigned char {
        EXPECT_NE(item, UIDRef::gNull);
        item = UIDRef();
        ++*static_cast<int*>(data);
        return 1;
    };
    EXPECT_EQ(EnumBoxes(documentRef(), changing, &calls), 1);
    EXPECT_EQ(calls, 2);
}

// --- Spreads

TEST_F(EnumeratorsTest, SpreadIsWalkedLayerByLayerFromTheBottomLayer) {
    desk::Layer& upper = document.addLayer("Layer 2");
    const Uid c = itemOn(upper, *spread);
    const Uid a = pictureFrame(), b = pictureFrame();
    InterfacePtr<ISpread> walked(ref(spread->uid));
    EXPECT_THAT(visited(1, [&](void* w) { return EnumSpread(walked.get(), visitItem, w); }), ElementsAre(b, a, c));
    EXPECT_THAT(visited(1, [&](void* w) { return EnumSpread(ref(spread->uid), visitItem, w); }), ElementsAre(b, a, c));
    EXPECT_THAT(visited(1, [&](void* w) { return MyDoc(documentRef()).enumSpread(walked.get(), visitItem, w); }),
                ElementsAre(b, a, c));
}

TEST_F(EnumeratorsTest, StopOnTheSecondLayerStopsEveryWalk) {
    desk::Layer& upper = document.addLayer("Layer 2");
    itemOn(upper, *spread);
    itemOn(upper, *spread);
    pictureFrame();
    InterfacePtr<ISpread> walked(ref(spread->uid));
    EXPECT_EQ(visited(
                  0, [&](void* w) { return EnumSpread(walked.get(), visitItem, w); }, 2)
                  .size(),
              2u);
    EXPECT_EQ(visited(
                  0, [&](void* w) { return EnumBoxes(documentRef(), visitItem, w); }, 2)
                  .size(),
              2u);
}

TEST_F(EnumeratorsTest, SpreadWalkEntersGroupsOnlyInItsSecondForm) {
    const Uid leaf = pictureFrame();
    const Uid group = groupOf({leaf});
    InterfacePtr<ISpread> walked(ref(spread->uid));
    EXPECT_THAT(visited(1, [&](void* w) { return EnumSpread(walked.get(), visitItem, w); }), ElementsAre(group));
    EXPECT_THAT(visited(1, [&](void* w) { return EnumSpread2(walked.get(), visitItem, w); }), ElementsAre(leaf));
}

TEST_F(EnumeratorsTest, PrintableWalkPassesOverLayersThatAreNotPrinted) {
    const Uid printed = pictureFrame();
    desk::Layer& hidden = document.addLayer("Notes");
    itemOn(hidden, *spread);
    hidden.printable = false;
    InterfacePtr<ISpread> walked(ref(spread->uid));
    EXPECT_THAT(visited(1, [&](void* w) { return EnumSpreadPrintable(walked.get(), visitItem, w); }),
                ElementsAre(printed));
    EXPECT_EQ(EnumSpreadPrintable(nullptr, visitItem, nullptr), 1);
}

TEST_F(EnumeratorsTest, MissingSpreadGivesOneByPointerAndZeroByReference) {
    Walk walk;
    EXPECT_EQ(EnumSpread(static_cast<ISpread*>(nullptr), visitItem, &walk), 1);
    EXPECT_EQ(EnumSpread2(nullptr, visitItem, &walk), 1);
    EXPECT_EQ(EnumSpread(UIDRef(), visitItem, &walk), 0);
    EXPECT_EQ(EnumSpread(UIDRef(nullptr, UID(spread->uid)), visitItem, &walk), 0);
    EXPECT_EQ(EnumSpread(UIDRef(database, kInvalidUID), visitItem, &walk), 0);
    EXPECT_EQ(EnumSpread(ref(pictureFrame()), visitItem, &walk), 0);
    EXPECT_EQ(MyDoc().enumSpread(nullptr, visitItem, &walk), 1);
    EXPECT_THAT(walk.visited, IsEmpty());
}

TEST_F(EnumeratorsTest, DocumentWithTheHostsLayerAloneHasNothingToVisit) {
    document.layers.clear();
    spread->layers.clear();
    InterfacePtr<ISpread> walked(ref(spread->uid));
    EXPECT_EQ(EnumSpread(walked.get(), visitItem, nullptr), 1);
    EXPECT_EQ(EnumSpread2(walked.get(), visitItem, nullptr), 1);
    EXPECT_EQ(EnumDocLayers(documentRef(), nullptr, nullptr), 1);
}

TEST_F(EnumeratorsTest, LayerThatASpreadLacksStopsTheWalk) {
    pictureFrame();
    const Uid gone = spread->layers.back();
    spread->layers.pop_back();
    InterfacePtr<ISpread> walked(ref(spread->uid));
    EXPECT_EQ(EnumSpread(walked.get(), visitItem, nullptr), 0);
    EXPECT_EQ(EnumBoxes(documentRef(), visitItem, nullptr), 0);
    spread->layers.push_back(gone);
}

TEST_F(EnumeratorsTest, SpreadsAreWalkedInOrder) {
    addPage();
    addPage();
    const std::vector<Uid> all(document.spreads.begin(), document.spreads.end());
    ASSERT_EQ(all.size(), 3u);
    InterfacePtr<IDocument> walked(documentRef());
    EXPECT_EQ(visited(1, [&](void* w) { return EnumSpreads(documentRef(), visitSpread, w); }), all);
    EXPECT_EQ(visited(1, [&](void* w) { return EnumSpreads(walked.get(), visitSpread, w); }), all);
    EXPECT_EQ(visited(1, [&](void* w) { return MyDoc(documentRef()).enumSpreads(visitSpread, w); }), all);
    EXPECT_EQ(visited(
                  0, [&](void* w) { return EnumSpreads(documentRef(), visitSpread, w); }, 2)
                  .size(),
              2u);
    EXPECT_EQ(EnumSpreads(UIDRef(), visitSpread, nullptr), 1);
    EXPECT_EQ(EnumSpreads(static_cast<IDocument*>(nullptr), visitSpread, nullptr), 1);
    EXPECT_EQ(MyDoc().enumSpreads(visitSpread, nullptr), 1);
}

TEST_F(EnumeratorsTest, OneLayerIsWalkedThroughAllSpreads) {
    addPage();
    desk::Layer& upper = document.addLayer("Layer 2");
    pictureFrame();
    const Uid first = itemOn(upper, *spread);
    const Uid second = itemOn(upper, *document.spread(document.spreads[1]));
    const MyDoc handle(documentRef());
    InterfacePtr<IDocumentLayer> layerObject(ref(upper.uid));
    EXPECT_THAT(visited(1, [&](void* w) { return handle.enumSpreads(layerObject.get(), visitItem, w); }),
                ElementsAre(first, second));
    EXPECT_THAT(visited(1, [&](void* w) { return handle.enumSpreads(ref(upper.uid), visitItem, w); }),
                ElementsAre(first, second));
    EXPECT_THAT(visited(
                    0, [&](void* w) { return handle.enumSpreads(ref(upper.uid), visitItem, w); }, 1),
                ElementsAre(first));
    EXPECT_EQ(handle.enumSpreads(UIDRef(), visitItem, nullptr), 0);
    EXPECT_EQ(handle.enumSpreads(documentRef(), visitItem, nullptr), 0);
    EXPECT_EQ(MyDoc().enumSpreads(layerObject.get(), visitItem, nullptr), 1);
}

// --- Boxes

TEST_F(EnumeratorsTest, BoxesOfADocumentAreReachedByEveryHandle) {
    addPage();
    const Uid a = pictureFrame(), b = pictureFrame();
    const Uid c = item(ItemKind::Rectangle, document.spreads[1]);
    InterfacePtr<IDocument> walked(documentRef());
    const std::vector<Uid> all{b, a, c};
    EXPECT_EQ(visited(1, [&](void* w) { return EnumBoxes(documentRef(), visitItem, w); }), all);
    EXPECT_EQ(visited(1, [&](void* w) { return EnumBoxes(walked.get(), visitItem, w); }), all);
    EXPECT_EQ(visited(1, [&](void* w) { return EnumBoxes(database, visitItem, w); }), all);
    EXPECT_EQ(visited(1, [&](void* w) { return MyDoc(documentRef()).enumBoxes(visitItem, w); }), all);
    EXPECT_EQ(MyDoc().enumBoxes(visitItem, nullptr), 1);
}

TEST_F(EnumeratorsTest, MissingDocumentMeansTheFrontDocument) {
    const Uid a = pictureFrame();
    EXPECT_THAT(visited(1, [&](void* w) { return EnumBoxes(static_cast<IDocument*>(nullptr), visitItem, w); }),
                ElementsAre(a));
    EXPECT_THAT(visited(1, [&](void* w) { return EnumBoxes(UIDRef(), visitItem, w); }), ElementsAre(a));
    EXPECT_THAT(visited(1, [&](void* w) { return EnumBoxes(ref(a), visitItem, w); }), ElementsAre(a));
    border.close(document);
    EXPECT_EQ(EnumBoxes(UIDRef(), visitItem, nullptr), 1);
}

TEST_F(EnumeratorsTest, ItemsOnHiddenLayersAreVisited) {
    const Uid a = pictureFrame();
    layer->visible = false;
    EXPECT_THAT(visited(1, [&](void* w) { return MyDoc(documentRef()).enumVisibleBoxes(visitItem, w); }),
                ElementsAre(a));
}

TEST_F(EnumeratorsTest, BoxesOfOneSpreadCountFromOne) {
    addPage();
    const Uid first = pictureFrame();
    const Uid second = item(ItemKind::Rectangle, document.spreads[1]);
    EXPECT_THAT(visited(1, [&](void* w) { return EnumBoxes(documentRef(), 1, visitItem, w); }), ElementsAre(first));
    EXPECT_THAT(visited(1, [&](void* w) { return EnumBoxes(documentRef(), 2, visitItem, w); }), ElementsAre(second));
    EXPECT_EQ(EnumBoxes(documentRef(), 0, visitItem, nullptr), 0);
    EXPECT_EQ(EnumBoxes(documentRef(), 3, visitItem, nullptr), 0);
    EXPECT_EQ(EnumBoxes(UIDRef(), 1, visitItem, nullptr), 1);
}

TEST_F(EnumeratorsTest, ListIsWalkedFromItsFirstEntry) {
    UIDList list(database, UID(5));
    list.Append(UID(3));
    list.Append(UID(9));
    EXPECT_THAT(visited(1, [&](void* w) { return EnumBoxes(list, visitItem, w); }), ElementsAre(5u, 3u, 9u));
    EXPECT_THAT(visited(
                    0, [&](void* w) { return EnumFrames(list, visitItem, w); }, 2),
                ElementsAre(5u, 3u));
    EXPECT_EQ(EnumBoxes(UIDList(), visitItem, nullptr), 1);
    EXPECT_EQ(EnumFrames(UIDList(database), visitItem, nullptr), 1);
}

// --- Stories

TEST_F(EnumeratorsTest, StoriesAreWalkedInTheDocumentsOrder) {
    const Uid a = story(u"a");
    const Uid b = storyOf(textFrame(u"b"));
    InterfacePtr<IDocument> walked(documentRef());
    EXPECT_THAT(visited(1, [&](void* w) { return EnumStories(documentRef(), visitStory, w); }), ElementsAre(a, b));
    EXPECT_THAT(visited(1, [&](void* w) { return EnumStories(walked.get(), visitStory, w); }), ElementsAre(a, b));
    EXPECT_THAT(visited(1, [&](void* w) { return MyDoc(documentRef()).enumStories(visitStory, w); }),
                ElementsAre(a, b));
    EXPECT_THAT(visited(
                    0, [&](void* w) { return EnumStories(documentRef(), visitStory, w); }, 1),
                ElementsAre(a));
    EXPECT_EQ(EnumStories(UIDRef(), visitStory, nullptr), 1);
    EXPECT_EQ(EnumStories(static_cast<IDocument*>(nullptr), visitStory, nullptr), 1);
    EXPECT_EQ(MyDoc().enumStories(visitStory, nullptr), 1);
}

TEST_F(EnumeratorsTest, StoriesMadeDuringTheWalkAreNotVisited) {
    story(u"a");
    int calls = 0;
    struct Context {
        desk::Document& document;
        int& calls;
    } context{document, calls};
    const auto making = [](ITextModel*, void* data) -> unsigned char {
        auto* here = static_cast<Context*>(data);
        ++here->calls;
        here->document.addStory();
        return 1;
    };
    EXPECT_EQ(EnumStories(documentRef(), making, &context), 1);
    EXPECT_EQ(calls, 1);
}

// --- Anchored frames

struct Anchored {
    std::vector<std::pair<Uid, int>> visited;
    UIDRef story;
    int goOn = 1000;
};

unsigned char visitAnchored(UIDRef& frame, UIDRef& story, int position, void* data) {
    auto* walk = static_cast<Anchored*>(data);
    walk->visited.emplace_back(frame.GetUID().Get(), position);
    walk->story = story;
    return walk->goOn-- > 1 ? 1 : 0;
}

TEST_F(EnumeratorsTest, AnchoredFramesAreWalkedInATextRange) {
    const Uid holder = storyOf(textFrame(u"abcdef"));
    const Uid first = anchorIn(holder, 1);
    const Uid second = anchorIn(holder, 4);
    InterfacePtr<ITextModel> model(ref(holder));
    const auto walk = [&](auto call, int goOn = 1000) {
        Anchored found{{}, {}, goOn};
        balanced([&] { EXPECT_EQ(call(&found), goOn == 1000 ? 1 : 0); });
        return found;
    };
    const Anchored whole = walk([&](void* w) { return EnumAnchoredBoxes(ref(holder), visitAnchored, w); });
    EXPECT_THAT(whole.visited, ElementsAre(std::pair(first, 1), std::pair(second, 4)));
    EXPECT_EQ(whole.story, ref(holder));
    EXPECT_THAT(walk([&](void* w) { return EnumAnchoredBoxes(model.get(), visitAnchored, 2, -1, w); }).visited,
                ElementsAre(std::pair(second, 4)));
    EXPECT_THAT(walk([&](void* w) { return EnumAnchoredBoxes(ref(holder), visitAnchored, 0, 2, w); }).visited,
                ElementsAre(std::pair(first, 1)));
    EXPECT_THAT(walk([&](void* w) { return EnumAnchoredBoxes(ref(holder), visitAnchored, w); }, 1).visited,
                ElementsAre(std::pair(first, 1)));
}

TEST_F(EnumeratorsTest, StoryWithoutAnchoredFramesRunsToTheEnd) {
    const Uid holder = storyOf(textFrame(u"abc"));
    EXPECT_EQ(EnumAnchoredBoxes(ref(holder), visitAnchored, nullptr), 1);
    EXPECT_EQ(EnumAnchoredBoxes(UIDRef(), visitAnchored, nullptr), 1);
    EXPECT_EQ(EnumAnchoredBoxes(UIDRef(database, kInvalidUID), visitAnchored, nullptr), 1);
    EXPECT_EQ(EnumAnchoredBoxes(documentRef(), visitAnchored, nullptr), 1);
    EXPECT_EQ(EnumAnchoredBoxes(static_cast<ITextModel*>(nullptr), visitAnchored, 0, -1, nullptr), 1);
}

// --- Documents and layers

struct Names {
    std::vector<std::string> names;
    int goOn = 1000;
    unsigned char add(const String& name) {
        names.push_back(name.isNull() ? "(null)" : name.utf8());
        return goOn-- > 1 ? 1 : 0;
    }
};

TEST_F(EnumeratorsTest, LayersAreHandedOverWithTheirNames) {
    document.addLayer("Second");
    InterfacePtr<IDocument> walked(documentRef());
    const auto visit = [](IDocumentLayer* layerObject, const String& name, void* data) {
        EXPECT_NE(layerObject, nullptr);
        return static_cast<Names*>(data)->add(name);
    };
    Names all, again, member, one{{}, 1};
    balanced([&] {
        EXPECT_EQ(EnumDocLayers(documentRef(), visit, &all), 1);
        EXPECT_EQ(EnumDocLayers(walked.get(), visit, &again), 1);
        EXPECT_EQ(MyDoc(documentRef()).enumDocLayers(visit, &member), 1);
        EXPECT_EQ(EnumDocLayers(documentRef(), visit, &one), 0);
        EXPECT_EQ(EnumDocLayers(UIDRef(), visit, nullptr), 1);
        EXPECT_EQ(MyDoc().enumDocLayers(visit, nullptr), 1);
    });
    EXPECT_THAT(all.names, ElementsAre("Layer 1", "Second"));
    EXPECT_EQ(again.names, all.names);
    EXPECT_EQ(member.names, all.names);
    EXPECT_THAT(one.names, ElementsAre("Layer 1"));
}

TEST_F(EnumeratorsTest, OpenDocumentsAreHandedOverWithTheirPaths) {
    document.path = "/jobs/letter.idml";
    desk::Document other;
    border.open(other, layout);
    const auto visit = [](IDocument* found, const String& path, void* data) {
        EXPECT_NE(found, nullptr);
        return static_cast<Names*>(data)->add(path);
    };
    Names all, one{{}, 1};
    balanced([&] { EXPECT_EQ(EnumDocs(visit, &all), 1); });
    EXPECT_EQ(EnumDocs(visit, &one), 0);
    EXPECT_THAT(all.names, ElementsAre("/jobs/letter.idml", "(null)"));
    EXPECT_EQ(one.names.size(), 1u);
    border.close(other);
    InstallHost(nullptr);
    EXPECT_EQ(EnumDocs(visit, nullptr), 1);
    InstallHost(&border);
}

TEST_F(EnumeratorsTest, DocumentsClosedDuringTheWalkArePassedOver) {
    desk::Document other;
    border.open(other, layout);
    struct Context {
        desk::Border& border;
        desk::Document& other;
        int calls;
    } context{border, other, 0};
    const auto closing = [](IDocument*, const String&, void* data) -> unsigned char {
        auto* here = static_cast<Context*>(data);
        ++here->calls;
        here->border.close(here->other);
        return 1;
    };
    EXPECT_EQ(EnumDocs(closing, &context), 1);
    EXPECT_EQ(context.calls, 1);
}

}  // namespace
