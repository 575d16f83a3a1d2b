// Session, documents, layers, spreads, page items: what a query answers and what the lists hold.
#include <gmock/gmock.h>

#include "host_fixture.h"

namespace desk {
namespace {

using ::testing::ElementsAre;

class BorderObjects : public testing::HostFixture {};

TEST_F(BorderObjects, SessionLeadsToTheOpenDocument) {
    InterfacePtr<IApplication> application(Adopt::Reference, GetExecutionContextSession()->QueryApplication());
    ASSERT_TRUE(application);
    InterfacePtr<IDocumentList> documents(Adopt::Reference, application->QueryDocumentList());
    ASSERT_TRUE(documents);
    EXPECT_EQ(documents->GetDocCount(), 1);
    EXPECT_EQ(GetUIDRef(documents->GetNthDoc(0)), documentRef());
    EXPECT_EQ(documents->GetNthDoc(1), nullptr);
    EXPECT_EQ(documents->GetNthDoc(-1), nullptr);
}

TEST_F(BorderObjects, FrontDocumentIsTheOneOpenedLast) {
    Document other;
    IDataBase* otherDatabase = border.open(other, layout);
    {
        Utils<ILayoutUtils> layoutUtils;
        EXPECT_EQ(GetDataBase(layoutUtils->GetFrontDocument()), otherDatabase);
        border.bringToFront(document);
        EXPECT_EQ(GetDataBase(layoutUtils->GetFrontDocument()), database);
    }
    border.close(document);
    EXPECT_FALSE(DBUtils::IsValidDataBase(database));
    EXPECT_TRUE(DBUtils::IsValidDataBase(otherDatabase));
    EXPECT_EQ(GetDataBase(Utils<ILayoutUtils>()->GetFrontDocument()), otherDatabase);
    border.close(other);
    EXPECT_EQ(Utils<ILayoutUtils>()->GetFrontDocument(), nullptr);
}

TEST_F(BorderObjects, QueryForAnUnknownInterfaceGivesNull) {
    EXPECT_FALSE(InterfacePtr<ITextModel>(documentRef()));
    EXPECT_FALSE(InterfacePtr<IDocument>(ref(page->uid)));
    EXPECT_FALSE(InterfacePtr<IDocument>(ref(99999)));
    EXPECT_FALSE(InterfacePtr<IDocument>(ref(0)));
    EXPECT_FALSE(InterfacePtr<IDocument>(UIDRef::gNull));
    EXPECT_EQ(UtilsBoss::QueryUtils(PMIID(4711)), nullptr);
    EXPECT_EQ(CmdUtils::CreateCommand(ClassID(4711)), nullptr);
}

TEST_F(BorderObjects, RootInterfaceAnswersOnEveryObject) {
    for (Uid uid : {document.rootUid(), document.workspaceUid(), spread->uid, page->uid, layer->uid, spread->layers[0],
                    textFrame(u"x")}) {
        InterfacePtr<IPMPersist> object(ref(uid), IID_IUNKNOWN);
        EXPECT_TRUE(object) << uid;
        EXPECT_EQ(GetUIDRef(object.get()), ref(uid));
    }
}

TEST_F(BorderObjects, ClassesTellTheKindOfAnObject) {
    const Uid frame = textFrame(u"x"), picture = pictureFrame(), graphic = graphicIn(picture);
    EXPECT_EQ(GetClass(database, UID(frame)), kPathPageItemBoss);
    EXPECT_EQ(GetClass(database, UID(picture)), kPathPageItemBoss);
    EXPECT_EQ(GetClass(database, UID(graphic)), kGraphicItemBoss);
    EXPECT_EQ(GetClass(database, UID(groupOf({picture}))), kGroupItemBoss);
    EXPECT_EQ(GetClass(database, UID(storyOf(frame))), kTextStoryBoss);
    EXPECT_EQ(GetClass(database, UID(4711)), ClassID());
    EXPECT_EQ(GetClass(nullptr), ClassID());
}

TEST_F(BorderObjects, PageListRunsOverAllSpreads) {
    const Uid second = addPage().uid;
    const Uid third = document.addPage(*document.spread(document.page(second)->spread)).uid;
    InterfacePtr<IPageList> pages(documentRef());
    ASSERT_EQ(pages->GetPageCount(), 3);
    EXPECT_EQ(pages->GetNthPageUID(0), UID(page->uid));
    EXPECT_EQ(pages->GetNthPageUID(2), UID(third));
    EXPECT_EQ(pages->GetNthPageUID(3), kInvalidUID);
    EXPECT_EQ(pages->GetNthPageUID(-1), kInvalidUID);
    EXPECT_EQ(pages->GetPageIndex(UID(third)), 2);
    EXPECT_EQ(pages->GetPageIndex(UID(second)), 1);
    EXPECT_EQ(pages->GetPageIndex(UID(1)), -1);
}

TEST_F(BorderObjects, MasterSpreadsAreNoDocumentSpreads) {
    document.addSpread(true);
    InterfacePtr<ISpreadList> spreads(documentRef());
    EXPECT_EQ(spreads->GetSpreadCount(), 1);
    EXPECT_EQ(spreads->GetNthSpreadUID(0), UID(spread->uid));
    EXPECT_EQ(spreads->GetNthSpreadUID(-1), kInvalidUID);
    EXPECT_EQ(spreads->GetSpreadIndex(UID(spread->uid)), 0);
}

TEST_F(BorderObjects, LayerListBeginsWithTheHostsOwn) {
    document.addLayer("Above").printable = false;
    InterfacePtr<ILayerList> layers(documentRef());
    ASSERT_EQ(layers->GetCount(), 3);
    InterfacePtr<IDocumentLayer> own(Adopt::Reference, layers->QueryLayer(0));
    InterfacePtr<IDocumentLayer> first(Adopt::Reference, layers->QueryLayer(1));
    InterfacePtr<IDocumentLayer> above(Adopt::Reference, layers->QueryLayer(2));
    ASSERT_TRUE(own && first && above);
    EXPECT_EQ(GetUID(own.get()), kInvalidUID);
    EXPECT_EQ(first->GetName(), PMString("Layer 1"));
    EXPECT_EQ(first->IsPrintable(), 1);
    EXPECT_EQ(above->IsPrintable(), 0);
    EXPECT_EQ(layers->QueryLayer(3), nullptr);
    EXPECT_EQ(layers->FindByName(PMString("Above")), GetUID(above.get()));
    EXPECT_EQ(layers->FindByName(PMString("Nowhere")), kInvalidUID);
    above->SetLocked(true);
    EXPECT_TRUE(document.layers[1].locked);
}

TEST_F(BorderObjects, SpreadGivesItsLayerOfADocumentLayer) {
    const Uid lower = pictureFrame(), upper = pictureFrame();
    InterfacePtr<ISpread> here(ref(spread->uid));
    InterfacePtr<IDocumentLayer> wanted(ref(layer->uid));
    InterfacePtr<ISpreadLayer> found(Adopt::Reference, here->QueryLayer(wanted.get(), LayerPart::Content));
    ASSERT_TRUE(found);
    EXPECT_EQ(found->GetDocLayerUID(), UID(layer->uid));
    InterfacePtr<IHierarchy> items(found.get());
    ASSERT_EQ(items->GetChildCount(), 2);
    EXPECT_EQ(items->GetChildUID(0), UID(lower));
    EXPECT_EQ(items->GetChildUID(1), UID(upper));
    EXPECT_EQ(items->GetSpreadUID(), UID(spread->uid));
    EXPECT_EQ(here->QueryLayer(wanted.get(), LayerPart::Guides), nullptr);
    EXPECT_EQ(here->QueryLayer(nullptr, LayerPart::Content), nullptr);
    EXPECT_EQ(here->GetNumPages(), 1);
    EXPECT_EQ(here->GetPageIndex(UID(page->uid)), 0);
}

TEST_F(BorderObjects, SpreadHasNoLayerOfAnotherDocument) {
    Document other;
    while (other.addLayer("Layer").uid < layer->uid) continue;
    ASSERT_EQ(other.layers.back().uid, layer->uid) << "the same number in another document";
    IDataBase* otherDatabase = border.open(other, layout);
    {
        InterfacePtr<ISpread> here(ref(spread->uid));
        InterfacePtr<IDocumentLayer> foreign(otherDatabase, UID(layer->uid));
        ASSERT_TRUE(here && foreign);
        EXPECT_EQ(here->QueryLayer(foreign.get(), LayerPart::Content), nullptr);
    }
    border.close(other);
}

TEST_F(BorderObjects, PagesBoundsHoldEveryPageOfTheSpread) {
    Page& right = document.addPage(*spread);
    right.transform = Matrix::translation(612, 0);
    InterfacePtr<ISpread> here(ref(spread->uid));
    EXPECT_EQ(here->GetPagesBounds(PMMatrix()), PMRect(0, 0, 1224, 792));
    EXPECT_EQ(here->GetPagesBounds(PMMatrix{1, 0, 0, 1, 10, 20}), PMRect(10, 20, 1234, 812));
}

TEST_F(BorderObjects, TextColumnLeadsToItsPageItemInTwoSteps) {
    const Uid frame = textFrame(story(u"text"), 2);
    InterfacePtr<IHierarchy> item(ref(frame));
    ASSERT_EQ(item->GetChildCount(), 1);
    InterfacePtr<IFrameData> data(ref(frame));
    EXPECT_EQ(item->GetChildUID(0), data->GetTextContentUID());
    InterfacePtr<IHierarchy> multi(Adopt::Reference, item->QueryChild(0));
    ASSERT_EQ(multi->GetChildCount(), 2);
    InterfacePtr<IHierarchy> column(Adopt::Reference, multi->QueryChild(1));
    EXPECT_EQ(column->GetParentUID(), item->GetChildUID(0));
    EXPECT_EQ(multi->GetParentUID(), UID(frame));
    EXPECT_EQ(column->GetSpreadUID(), UID(spread->uid));
    EXPECT_EQ(column->GetLayerUID(), UID(spread->layers[0]));
    EXPECT_EQ(item->QueryChild(1), nullptr);
}

TEST_F(BorderObjects, EmptyPictureFrameHasNoChildAndAFilledOneHasItsGraphic) {
    const Uid frame = pictureFrame();
    InterfacePtr<IHierarchy> item(ref(frame));
    InterfacePtr<IFrameData> data(ref(frame));
    EXPECT_EQ(item->GetChildCount(), 0);
    EXPECT_EQ(item->GetChildUID(0), kInvalidUID);
    EXPECT_FALSE(data->IsGraphic());
    const Uid graphic = graphicIn(frame);
    EXPECT_EQ(item->GetChildUID(0), UID(graphic));
    EXPECT_TRUE(data->IsGraphic());
    EXPECT_FALSE(data->IsTextFrame());
    EXPECT_EQ(data->GetTextContentUID(), kInvalidUID);
    EXPECT_EQ(InterfacePtr<IHierarchy>(ref(graphic))->GetParentUID(), UID(frame));
}

TEST_F(BorderObjects, GroupsAndGraphicsHaveNoFrameData) {
    const Uid frame = pictureFrame(), graphic = graphicIn(frame), group = groupOf({frame});
    EXPECT_FALSE(InterfacePtr<IFrameData>(ref(group)));
    EXPECT_FALSE(InterfacePtr<IFrameData>(ref(graphic)));
    EXPECT_TRUE(InterfacePtr<IFrameData>(ref(frame)));
}

TEST_F(BorderObjects, GeometryComesInInnerAndPasteboardCoordinates) {
    spread->transform = Matrix::translation(0, 1000);
    const Uid frame = pictureFrame();
    document.item(frame)->transform = Matrix::translation(100, 200);
    document.item(frame)->attributes.strokeWeight = 4;
    document.item(frame)->attributes.strokeColor = "Color/Black";
    InterfacePtr<IGeometry> geometry(ref(frame));
    EXPECT_EQ(geometry->GetInnerBounds(), PMRect(0, 0, 72, 36));
    EXPECT_EQ(geometry->GetPathBoundingBox(geometry->InnerToPasteboard()), PMRect(100, 1200, 172, 1236));
    EXPECT_EQ(geometry->GetStrokeBoundingBox(geometry->InnerToPasteboard()), PMRect(98, 1198, 174, 1238));
}

TEST_F(BorderObjects, GroupMeasuresWhatIsInIt) {
    const Uid left = pictureFrame(), right = pictureFrame();
    document.item(right)->transform = Matrix::translation(100, 10);
    const Uid group = groupOf({left, right});
    document.item(group)->transform = Matrix::translation(5, 5);
    InterfacePtr<IGeometry> geometry(ref(group));
    EXPECT_EQ(geometry->GetInnerBounds(), PMRect(0, 0, 172, 46));
    EXPECT_EQ(geometry->GetPathBoundingBox(geometry->InnerToPasteboard()), PMRect(5, 5, 177, 51));
}

TEST_F(BorderObjects, TagsReadWhatWasWrittenAndEmptyRemoves) {
    const Uid frame = pictureFrame();
    for (const UIDRef& object : {ref(frame), documentRef()}) {
        InterfacePtr<ITagStore> tags(object);
        ASSERT_TRUE(tags);
        EXPECT_TRUE(tags->GetTag("Vornaset").IsEmpty());
        tags->SetTag("Vornaset", PMString("größer \xF0\x9F\x98\x80"));
        EXPECT_EQ(tags->GetTag("Vornaset"), PMString("größer \xF0\x9F\x98\x80"));
    }
    EXPECT_EQ(document.item(frame)->labels.get("Vornaset"), "größer \xF0\x9F\x98\x80");
    EXPECT_TRUE(document.modified);
    InterfacePtr<ITagStore> tags(ref(frame));
    tags->SetTag("Vornaset", PMString());
    EXPECT_TRUE(document.item(frame)->labels.pairs().empty());
    EXPECT_FALSE(InterfacePtr<ITagStore>(ref(page->uid)));
}

TEST_F(BorderObjects, StyleTablesFindStylesByKindAndName) {
    const Uid strong = style(StyleKind::Character, "Strong"), body = style(StyleKind::Paragraph, "Strong");
    InterfacePtr<IDocument> here(documentRef());
    const UIDRef workspace = here->GetDocWorkSpace();
    InterfacePtr<IStyleNameTable> characters(workspace, IID_ICHARACTERSTYLENAMETABLE);
    InterfacePtr<IStyleNameTable> paragraphs(workspace, IID_IPARAGRAPHSTYLENAMETABLE);
    ASSERT_TRUE(characters && paragraphs);
    EXPECT_EQ(characters->FindByName(PMString("Strong")), UID(strong));
    EXPECT_EQ(paragraphs->FindByName(PMString("Strong")), UID(body));
    EXPECT_NE(characters->FindByName(PMString("[No character style]")), kInvalidUID);
    EXPECT_EQ(characters->FindByName(PMString("strong")), kInvalidUID);
    for (PMIID table : {IID_ITABLESTYLENAMETABLE, IID_ICELLSTYLENAMETABLE, IID_IOBJECTSTYLENAMETABLE})
        EXPECT_TRUE(InterfacePtr<IStyleNameTable>(workspace, table));
    EXPECT_EQ(GetUIDRef(characters.get()), workspace);
}

TEST_F(BorderObjects, DatabaseNamesItsDocumentAndFile) {
    document.name = "letter.idml";
    document.path = "/templates/letter.idml";
    EXPECT_EQ(database->GetRootUID(), UID(document.rootUid()));
    EXPECT_EQ(database->GetReadFile().GetPath(), "/templates/letter.idml");
    EXPECT_TRUE(database->GetSaveFile().IsEmpty());
    PMString name;
    InterfacePtr<IDocument>(documentRef())->GetName(name);
    EXPECT_EQ(name, PMString("letter.idml"));
    database->SetModified(true);
    EXPECT_TRUE(document.modified);
    database->SetModified(false);
    EXPECT_FALSE(document.modified);
}

TEST_F(BorderObjects, KindServiceTellsItemsApart) {
    const Uid text = textFrame(u"x"), picture = pictureFrame(), graphic = graphicIn(picture),
              group = groupOf({picture});
    const Uid anchored = anchorIn(storyOf(text), 1);
    Utils<IPageItemTypeUtils> kinds;
    ASSERT_TRUE(kinds);
    EXPECT_TRUE(kinds->IsGroup(ref(group)));
    EXPECT_FALSE(kinds->IsGroup(ref(text)));
    EXPECT_TRUE(kinds->IsTextFrame(ref(text)));
    EXPECT_TRUE(kinds->IsGraphicFrame(ref(picture)));
    EXPECT_FALSE(kinds->IsGraphicFrame(ref(text)));
    EXPECT_TRUE(kinds->IsGraphic(ref(graphic)));
    EXPECT_TRUE(kinds->IsInline(ref(anchored)));
    EXPECT_FALSE(kinds->IsInline(ref(picture)));
    EXPECT_FALSE(kinds->IsGroup(UIDRef::gNull));
    EXPECT_FALSE(kinds->IsTextFrame(documentRef()));
}

}  // namespace
}  // namespace desk
