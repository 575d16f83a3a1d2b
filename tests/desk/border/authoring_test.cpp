// Pictures, geometry, layers, spreads and files across the border.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "desk/border/document_files.h"
#include "host_fixture.h"

namespace desk {
namespace {

using ::testing::ElementsAre;

class BorderAuthoring : public testing::HostFixture {
  public:
    ErrorCode importFile(const std::string& path, Uid* item = nullptr) {
        InterfacePtr<IPMCommand> command(Adopt::Reference, CmdUtils::CreateCommand(kImportResourceCmdBoss));
        InterfacePtr<IImportResourceCmdData> data(command.get());
        data->Set(database, Utils<IURIUtils>()->IDFileToURI(IDFile(path)), 0, 0, 0, 0, 0);
        const ErrorCode result = CmdUtils::ProcessCommand(command.get());
        if (item) *item = command->GetResultList()[0].Get();
        return result;
    }
    Uid imported() {
        Uid item = 0;
        EXPECT_EQ(importFile(photo(), &item), kSuccess);
        return item;
    }
    static std::string photo() { return std::string(VORNASET_SAMPLES_DIR) + "/photos/01.jpg"; }
    ErrorCode put(Uid item, Uid frame) {
        return Utils<IFrameContentUtils>()->PutItemInFrame(database, UID(item), UID(frame), -1);
    }
    ErrorCode run(ClassID commandClass, const UIDList& items) {
        InterfacePtr<IPMCommand> command(Adopt::Reference, CmdUtils::CreateCommand(commandClass));
        command->SetItemList(items);
        return CmdUtils::ProcessCommand(command.get());
    }
    UIDList one(Uid uid) { return UIDList(database, UID(uid)); }
    PMRect boundsOnPasteboard(Uid uid) {
        InterfacePtr<IGeometry> geometry(database, UID(uid));
        return geometry->GetPathBoundingBox(geometry->InnerToPasteboard());
    }
    ErrorCode newSpreads(int32_t count, int32_t pages, std::vector<Uid>* made = nullptr, int32_t position = -1) {
        InterfacePtr<IPMCommand> command(Adopt::Reference, CmdUtils::CreateCommand(kNewSpreadCmdBoss));
        InterfacePtr<INewSpreadCmdData> data(command.get());
        NewPageRecord record;
        record.width = 300;
        record.height = 200;
        data->Set(documentRef(), count, position, 0, pages, 0, 0, 0, record);
        InterfacePtr<INewSpreadReferenceCmdData>(command.get())->Set(UIDRef::gNull, 1);
        InterfacePtr<INewSpreadOptionCmdData>(command.get())->Set(-1);
        const ErrorCode result = CmdUtils::ProcessCommand(command.get());
        for (int32_t i = 0; made && i < command->GetResultList().Length(); ++i)
            made->push_back(command->GetResultList()[i].Get());
        return result;
    }
};

TEST_F(BorderAuthoring, AnImportedPictureIsLooseUntilItIsPutIntoAFrame) {
    const Uid item = imported(), frame = pictureFrame();
    EXPECT_EQ(GetClass(database, UID(item)), kGraphicItemBoss);
    InterfacePtr<IHierarchy> family(database, UID(item));
    EXPECT_EQ(family->GetParentUID(), kInvalidUID);
    family.reset();
    EXPECT_EQ(put(item, frame), kSuccess);
    EXPECT_EQ(document.item(frame)->children, std::vector<Uid>{item});
    EXPECT_EQ(put(item, frame), kFailure) << "it is no loose one any more";
}

TEST_F(BorderAuthoring, ImportFailuresLeaveNoItem) {
    const size_t before = document.spreadLayer(document.spread(spread->uid)->layers[0])->items.size();
    for (const std::string& path :
         {std::string("/nowhere/at/all.jpg"), std::string(VORNASET_SAMPLES_DIR),
          std::string(VORNASET_SAMPLES_DIR) + "/people_100.csv", std::string("\0.jpg", 5), std::string()}) {
        Uid item = 77;
        EXPECT_NE(importFile(path, &item), kSuccess) << path;
        EXPECT_EQ(item, 0u);
    }
    EXPECT_EQ(document.spreadLayer(document.spread(spread->uid)->layers[0])->items.size(), before);
}

TEST_F(BorderAuthoring, ALoosePictureGoesWithTheNextRemoval) {
    const Uid loose = imported(), frame = pictureFrame(), placed = imported();
    EXPECT_EQ(put(loose, textFrame(u"text")), kFailure);
    EXPECT_EQ(put(placed, frame), kSuccess);
    EXPECT_EQ(run(kDeletePageItemsCmdBoss, one(placed)), kSuccess);
    EXPECT_EQ(document.item(loose), nullptr);
    EXPECT_TRUE(document.item(frame)->children.empty());
    EXPECT_EQ(GetClass(database, UID(frame)), kPathPageItemBoss);
}

TEST_F(BorderAuthoring, WhatAFrameHeldGoesWhenSomethingIsPutIntoIt) {
    const Uid frame = pictureFrame(), first = imported(), second = imported();
    put(first, frame);
    EXPECT_EQ(put(second, frame), kSuccess);
    EXPECT_EQ(document.item(first), nullptr);
    EXPECT_EQ(document.item(frame)->children, std::vector<Uid>{second});
}

TEST_F(BorderAuthoring, FittingTakesFrameOrContentAndFailsForAnythingElse) {
    const Uid frame = pictureFrame(), item = imported();
    put(item, frame);
    Utils<IContentFitUtils> fit;
    EXPECT_EQ(fit->FitContentToFrame(one(item)), kSuccess);
    EXPECT_EQ(boundsOnPasteboard(item), boundsOnPasteboard(frame));
    EXPECT_EQ(fit->FitContentProportionally(one(frame)), kSuccess);
    EXPECT_NEAR(boundsOnPasteboard(item).Height(), 36, 1e-9);
    EXPECT_EQ(fit->FillFrameProportionally(one(frame)), kSuccess);
    EXPECT_NEAR(boundsOnPasteboard(item).Width(), 72, 1e-9);
    EXPECT_EQ(fit->CenterContent(one(frame)), kSuccess);
    EXPECT_EQ(fit->FitFrameToContent(one(frame)), kSuccess);
    EXPECT_EQ(fit->FitContentToFrame(one(textFrame(u"x"))), kFailure);
    EXPECT_EQ(fit->FitContentToFrame(UIDList(UIDRef::gNull)), kFailure);
}

TEST_F(BorderAuthoring, TheSessionKeepsThePageToPlaceAndTheShowFlag) {
    InterfacePtr<IPMUnknown> workspace(Adopt::Reference, GetExecutionContextSession()->QueryWorkspace());
    InterfacePtr<IPDFPlacePrefs> place(workspace.get());
    InterfacePtr<IPDFExportViewPrefs> show(workspace.get());
    EXPECT_EQ(place->GetPage(), 1);
    place->SetPage(3);
    EXPECT_EQ(importFile(photo()), kSuccess) << "a file of one page has this page whatever is asked for";
    EXPECT_TRUE(show->GetShowAfterExport());
    show->SetShowAfterExport(false);
    EXPECT_FALSE(show->GetShowAfterExport());
}

TEST_F(BorderAuthoring, ANewRectangleStandsOnTopOfItsLayerWhereItWasAskedFor) {
    pictureFrame();
    InterfacePtr<IDocument> doc(documentRef());
    InterfacePtr<IDocumentLayer> active(Adopt::Reference, Utils<ILayerUtils>()->QueryActiveLayer(doc.get()));
    InterfacePtr<ISpread> onSpread(ref(spread->uid));
    InterfacePtr<ISpreadLayer> parent(Adopt::Reference, onSpread->QueryLayer(active.get(), LayerPart::Content));
    const UIDRef made =
        Utils<IPageItemFactoryUtils>()->CreateRectangle(GetUIDRef(parent.get()), {10, 20, 40, 90}, 0, 1, PMMatrix());
    ASSERT_NE(made, UIDRef::gNull);
    EXPECT_EQ(boundsOnPasteboard(made.GetUID().Get()), PMRect(10, 20, 40, 90));
    EXPECT_EQ(document.spreadLayer(GetUID(parent.get()).Get())->items.back(), made.GetUID().Get());
    EXPECT_TRUE(Utils<IPageItemTypeUtils>()->IsGraphicFrame(made));
    EXPECT_EQ(Utils<IPageItemFactoryUtils>()->CreateRectangle(ref(page->uid), {0, 0, 1, 1}, 0, 1, PMMatrix()),
              UIDRef::gNull);
}

TEST_F(BorderAuthoring, TheActiveLayerIsTheChosenOneElseTheTopUnlockedOneElseTheTopOne) {
    const Uid top = document.addLayer("top").uid;
    const auto active = [&] {
        InterfacePtr<IDocument> doc(documentRef());
        InterfacePtr<IDocumentLayer> found(Adopt::Reference, Utils<ILayerUtils>()->QueryActiveLayer(doc.get()));
        return GetUID(found.get()).Get();
    };
    EXPECT_EQ(active(), top);
    document.layer(top)->locked = true;
    EXPECT_EQ(active(), layer->uid);
    layer->locked = true;
    EXPECT_EQ(active(), top);
    document.activeLayer = layer->uid;
    EXPECT_EQ(active(), layer->uid);
    EXPECT_EQ(Utils<ILayerUtils>()->QueryActiveLayer(nullptr), nullptr);
}

TEST_F(BorderAuthoring, TheNonPrintingCommandSetsTheFlag) {
    const Uid frame = pictureFrame();
    for (bool flag : {true, false}) {
        InterfacePtr<IPMCommand> command(
            Adopt::Reference, Utils<IGraphicAttributeUtils>()->QueryNonPrintingCommand(flag, one(frame), 0, 0));
        EXPECT_EQ(CmdUtils::ProcessCommand(command.get()), kSuccess);
        EXPECT_EQ(document.item(frame)->attributes.nonprinting, flag);
    }
    EXPECT_EQ(Utils<IGraphicAttributeUtils>()->QueryNonPrintingCommand(true, UIDList(), 0, 0), nullptr);
}

TEST_F(BorderAuthoring, NewSpreadsStandBelowTheOthersAndHaveTheirPages) {
    std::vector<Uid> made;
    EXPECT_EQ(newSpreads(2, 2, &made), kSuccess);
    EXPECT_THAT(document.spreads, ElementsAre(spread->uid, made[0], made[1]));
    EXPECT_EQ(document.pages().size(), 5u);
    const Page& second = *document.page(document.spread(made[0])->pages[1]);
    EXPECT_EQ(second.rectInSpread(), (Rect{0, -100, 300, 100}));
    EXPECT_EQ(second.name, "3");
    EXPECT_GT(document.spread(made[1])->transform.f, document.spread(made[0])->transform.f + 200);
    EXPECT_EQ(newSpreads(0, 1), kFailure);
    EXPECT_EQ(newSpreads(1, 0), kFailure);
}

TEST_F(BorderAuthoring, NewSpreadsAreMadeBehindTheLastAndNowhereElse) {
    std::vector<Uid> made;
    EXPECT_EQ(newSpreads(1, 1, nullptr, 0), kFailure);
    EXPECT_EQ(newSpreads(1, 1, nullptr, 2), kFailure);
    EXPECT_EQ(newSpreads(1, 1, nullptr, -2), kFailure);
    EXPECT_THAT(document.spreads, ElementsAre(spread->uid));
    EXPECT_EQ(newSpreads(1, 1, &made, 1), kSuccess);
    EXPECT_THAT(document.spreads, ElementsAre(spread->uid, made[0]));
}

TEST_F(BorderAuthoring, DeletedSpreadsTakeTheirPagesAndItemsAndTheLastOneStays) {
    std::vector<Uid> made;
    newSpreads(1, 1, &made);
    const Uid frame = item(ItemKind::Rectangle, made[0]), pageUid = document.spread(made[0])->pages[0];
    UIDList list = one(made[0]);
    list.Append(UID(frame));
    EXPECT_EQ(run(kDeleteSpreadCmdBoss, list), kFailure) << "a frame is no spread; the spread goes all the same";
    EXPECT_EQ(document.item(frame), nullptr);
    EXPECT_EQ(document.page(pageUid), nullptr);
    EXPECT_EQ(run(kDeleteSpreadCmdBoss, one(spread->uid)), kFailure);
    EXPECT_EQ(document.spreads.size(), 1u);
}

TEST_F(BorderAuthoring, ResizingChangesTheFrameAndLeavesItsContentWhereItIs) {
    const Uid frame = pictureFrame(), item = imported();
    put(item, frame);
    document.item(frame)->transform = {0, 1, -1, 0, 50, 50};  // a quarter turn
    const PMRect before = boundsOnPasteboard(item);
    K2Vector<PMRect> rectangles;
    rectangles.push_back(PMRect(0, 10, 30, 40));
    EXPECT_EQ(Utils<IGeometryUtils>()->Resize(one(frame), PMMatrix(), true, rectangles), kSuccess);
    const PMRect after = boundsOnPasteboard(frame);
    EXPECT_NEAR(after.left, 0, 1e-9);
    EXPECT_NEAR(after.top, 10, 1e-9);
    EXPECT_NEAR(after.right, 30, 1e-9);
    EXPECT_NEAR(after.bottom, 40, 1e-9);
    EXPECT_EQ(boundsOnPasteboard(item), before);
    EXPECT_EQ(Utils<IGeometryUtils>()->Resize(one(frame), PMMatrix(), true, {}), kFailure);
}

TEST_F(BorderAuthoring, StrokeBoundsAreMetWithTheStrokeAtItsWeight) {
    const Uid frame = pictureFrame();
    document.item(frame)->attributes.strokeWeight = 4;
    document.item(frame)->attributes.strokeColor = "Color/Black";
    K2Vector<PMRect> rectangles;
    rectangles.push_back(PMRect(0, 0, 100, 50));
    EXPECT_EQ(Utils<IGeometryUtils>()->Resize(one(frame), PMMatrix(), false, rectangles), kSuccess);
    EXPECT_EQ(boundsOnPasteboard(frame), PMRect(2, 2, 98, 48));
}

TEST_F(BorderAuthoring, MovingTakesTheContentAlong) {
    const Uid frame = pictureFrame(), item = imported();
    put(item, frame);
    const PMRect before = boundsOnPasteboard(item);
    PMMatrix move;
    move.tx = 5;
    move.ty = -7;
    EXPECT_EQ(Utils<ITransformUtils>()->TransformItems(one(frame), PMMatrix(), {}, move, 2), kSuccess);
    EXPECT_EQ(boundsOnPasteboard(frame), PMRect(5, -7, 77, 29));
    EXPECT_NEAR(boundsOnPasteboard(item).left, before.left + 5, 1e-9);
}

TEST_F(BorderAuthoring, AnItemBelongsToThePageUnderItsMiddle) {
    const Uid frame = pictureFrame();
    const auto owner = [&] {
        InterfacePtr<IHierarchy> family(database, UID(frame));
        return Utils<IHierarchyUtils>()->GetOwnerPageUID(family.get(), 1).Get();
    };
    EXPECT_EQ(owner(), page->uid);
    document.item(frame)->transform = Matrix::translation(-5000, 0);
    EXPECT_EQ(owner(), 0u);
}

TEST_F(BorderAuthoring, APictureWithoutAPathBelongsToThePageUnderTheMiddleOfItsBounds) {
    const Uid picture = graphicIn(pictureFrame());
    PageItem& item = *document.item(picture);
    item.path.clear();
    item.graphic.emplace().bounds = {0, 0, 40, 20};
    item.transform = Matrix::translation(-10, 100);
    const auto owner = [&] {
        InterfacePtr<IHierarchy> family(database, UID(picture));
        return Utils<IHierarchyUtils>()->GetOwnerPageUID(family.get(), 1).Get();
    };
    EXPECT_EQ(owner(), page->uid) << "its corner alone stands beside the page";
    item.transform = Matrix::translation(-30, 100);
    EXPECT_EQ(owner(), 0u);
}

/// Opens and saves as a test tells it.
class ToldFiles final : public DocumentFiles {
  public:
    explicit ToldFiles(BorderAuthoring& fixture) : fixture_(fixture) {}

    Document* open(const std::string& path) override {
        if (path != "/there.idml") return nullptr;
        other.path = path;
        fixture_.border.open(other, fixture_.layout);
        return &other;
    }
    Document* create() override { return open("/there.idml"); }
    bool write(const Document&, const std::string& path) override {
        if (writes) written.push_back(path);
        return writes;
    }
    void close(Document& document) override { fixture_.border.close(document); }

    Document other;
    std::vector<std::string> written;
    bool writes = true;

  private:
    BorderAuthoring& fixture_;
};

TEST_F(BorderAuthoring, ADocumentIsOpenedAndComesToTheFront) {
    ToldFiles files(*this);
    border.useFiles(&files);
    UIDRef opened;
    EXPECT_EQ(Utils<IDocumentUtils>()->OpenDocument(opened, IDFile("/nowhere.idml"), 0, 0, 0, 0, 1), kFailure);
    EXPECT_EQ(Utils<IDocumentUtils>()->OpenDocument(opened, IDFile("/there.idml"), 0, 0, 0, 0, 1), kSuccess);
    EXPECT_EQ(GetUIDRef(Utils<ILayoutUtils>()->GetFrontDocument()), opened);
    EXPECT_EQ(run(kOpenLayoutWindowCmdBoss, UIDList(documentRef())), kSuccess);
    EXPECT_EQ(GetUIDRef(Utils<ILayoutUtils>()->GetFrontDocument()), documentRef());
    InterfacePtr<ILayoutWindow> window(Adopt::Reference,
                                       Utils<IWindowUtils>()->QueryLayoutWindow(opened.GetDataBase()));
    window->BringToFront();
    EXPECT_EQ(GetUIDRef(Utils<ILayoutUtils>()->GetFrontDocument()), opened);
    Utils<IDocumentUtils>()->CloseDocument(opened, 0);
    EXPECT_FALSE(DBUtils::IsValidDataBase(opened.GetDataBase()));
    window.reset();
    border.useFiles(nullptr);
}

TEST_F(BorderAuthoring, SavingAsksWhetherItCanAndTellsHowItEnded) {
    ToldFiles files(*this);
    EXPECT_EQ(Utils<IDocumentUtils>()->QueryFileHandler(documentRef()), nullptr) << "nobody saves";
    border.useFiles(&files);
    InterfacePtr<IDocumentFileHandler> handler(Adopt::Reference,
                                               Utils<IDocumentUtils>()->QueryFileHandler(documentRef()));
    EXPECT_FALSE(handler->CanSaveAs(documentRef())) << "it was made in memory";
    document.package = std::make_shared<int>(0);
    EXPECT_FALSE(handler->CanSave(documentRef())) << "it has no file";
    handler->SaveAs(documentRef(), IDFile("/folder/new.idml"), 2, 0, 0);
    EXPECT_EQ(ErrorUtils::PMGetGlobalErrorCode(), kSuccess);
    EXPECT_EQ(document.path, "/folder/new.idml");
    EXPECT_EQ(document.name, "new.idml");
    EXPECT_TRUE(handler->CanSave(documentRef()));
    handler->Save(documentRef(), 2);
    handler->SaveACopy(documentRef(), IDFile("/copy.idml"), 2, 0, 0);
    EXPECT_EQ(document.path, "/folder/new.idml");
    EXPECT_THAT(files.written, ElementsAre("/folder/new.idml", "/folder/new.idml", "/copy.idml"));
    files.writes = false;
    handler->Save(documentRef(), 2);
    EXPECT_NE(ErrorUtils::PMGetGlobalErrorCode(), kSuccess);
    handler.reset();
    border.useFiles(nullptr);
}

}  // namespace
}  // namespace desk
