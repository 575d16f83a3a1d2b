// Commands, references and plug-ins.
#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>

#include "host_fixture.h"

namespace desk {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class BorderCommands : public testing::HostFixture {
  public:
    ErrorCode run(ClassID commandClass, const UIDList& items) {
        InterfacePtr<IPMCommand> command(Adopt::Reference, CmdUtils::CreateCommand(commandClass));
        command->SetItemList(items);
        return CmdUtils::ProcessCommand(command.get());
    }
    ErrorCode copyStory(Uid from, Uid to) {
        InterfacePtr<IPMCommand> command(Adopt::Reference,
                                         Utils<ITextUtils>()->QueryCopyStoryCommand(ref(from), ref(to), 0));
        return command ? CmdUtils::ProcessCommand(command.get()) : kFailure;
    }
    /// The test breaks a rule on purpose and has seen the report.
    std::string onlyMisuse() {
        const std::string misuse = border.misuses().size() == 1 ? border.misuses()[0] : "not one misuse";
        border.forgetMisuses();
        return misuse;
    }
};

TEST_F(BorderCommands, CopiedStoryHasTheSourcesTextAndItsOwnFrames) {
    const Uid source = textFrame(u"source"), target = textFrame(u"target");
    const Uid strong = style(StyleKind::Character, "Strong");
    InterfacePtr<ITextModel>(ref(storyOf(source)))
        ->ApplyStyle(0, 3, UID(strong), AttributeStrand::Character, true, true);
    EXPECT_EQ(copyStory(storyOf(source), storyOf(target)), kSuccess);
    EXPECT_EQ(textOf(storyOf(target)), u"source\r");
    EXPECT_EQ(characterStyleAt(storyOf(target), 1), "Strong");
    EXPECT_EQ(document.framesOfStory(storyOf(target)), std::vector<Uid>{target});
    InterfacePtr<ITextModel>(ref(storyOf(target)))->Insert(0, WideString("X"));
    EXPECT_EQ(textOf(storyOf(source)), u"source\r");
}

TEST_F(BorderCommands, CopyAcrossDocumentsOrOfNoStoryIsRefused) {
    const Uid source = story(u"source");
    Document other;
    IDataBase* otherDatabase = border.open(other, layout);
    const UIDRef foreign(otherDatabase, UID(other.addStory().uid));
    EXPECT_EQ(Utils<ITextUtils>()->QueryCopyStoryCommand(ref(source), foreign, 0), nullptr);
    EXPECT_EQ(Utils<ITextUtils>()->QueryCopyStoryCommand(ref(source), ref(page->uid), 0), nullptr);
    EXPECT_EQ(Utils<ITextUtils>()->QueryCopyStoryCommand(UIDRef::gNull, UIDRef::gNull, 0), nullptr);
    border.close(other);
}

TEST_F(BorderCommands, NewStoryIsEmptyAndHasNoFrame) {
    const UID made = Utils<ITextUtils>()->CreateStory(database, 1, kTextStoryBoss);
    ASSERT_NE(made, kInvalidUID);
    EXPECT_EQ(textOf(made.Get()), u"\r");
    InterfacePtr<IStoryList> stories(documentRef());
    EXPECT_EQ(stories->GetStoryCount(), 1);
    EXPECT_EQ(stories->GetNthStory(0), ref(made.Get()));
    EXPECT_EQ(stories->GetNthStory(1), UIDRef::gNull);
    EXPECT_EQ(Utils<ITextUtils>()->CreateStory(database, 1, kDocumentBoss), kInvalidUID);
    EXPECT_EQ(Utils<ITextUtils>()->CreateStory(nullptr, 1, kTextStoryBoss), kInvalidUID);
}

TEST_F(BorderCommands, DeletedStoryIsGone) {
    const Uid frame = textFrame(u"text"), uid = storyOf(frame);
    EXPECT_EQ(run(kDeleteStoryCmdBoss, UIDList(ref(uid))), kSuccess);
    EXPECT_FALSE(InterfacePtr<ITextModel>(ref(uid)));
    EXPECT_EQ(document.item(frame)->story, 0u);
    EXPECT_EQ(run(kDeleteStoryCmdBoss, UIDList(ref(uid))), kFailure);
}

TEST_F(BorderCommands, DeletedItemsAreGoneAndTheirFrameIsEmpty) {
    const Uid frame = pictureFrame(), graphic = graphicIn(frame), other = pictureFrame();
    UIDList items(database, UID(graphic));
    items.Append(UID(other));
    EXPECT_EQ(run(kDeletePageItemsCmdBoss, items), kSuccess);
    EXPECT_EQ(InterfacePtr<IHierarchy>(ref(frame))->GetChildCount(), 0);
    EXPECT_FALSE(InterfacePtr<IHierarchy>(ref(graphic)));
    EXPECT_EQ(GetClass(database, UID(other)), ClassID());
}

TEST_F(BorderCommands, DeletingWhatIsNoItemFailsAndDeletesTheRest) {
    const Uid frame = pictureFrame();
    UIDList items(database, UID(page->uid));
    items.Append(UID(frame));
    EXPECT_EQ(run(kDeletePageItemsCmdBoss, items), kFailure);
    EXPECT_EQ(document.item(frame), nullptr);
    EXPECT_NE(document.page(page->uid), nullptr);
    EXPECT_EQ(run(kDeletePageItemsCmdBoss, UIDList()), kFailure);
    EXPECT_EQ(CmdUtils::ProcessCommand(nullptr), kFailure);
}

TEST_F(BorderCommands, ReferencesAreCountedFromQueryToRelease) {
    EXPECT_EQ(border.outstandingReferences(), 0);
    {
        InterfacePtr<IDocument> here(documentRef());
        EXPECT_EQ(border.outstandingReferences(), 1);
        InterfacePtr<IPageList> pages(here.get());
        EXPECT_EQ(border.outstandingReferences(), 2);
        here->AddRef();
        EXPECT_EQ(border.outstandingReferences(), 3);
        here->Release();
        InterfacePtr<IPMCommand> command(Adopt::Reference, CmdUtils::CreateCommand(kDeleteStoryCmdBoss));
        EXPECT_EQ(border.outstandingReferences(), 3);
    }
    EXPECT_EQ(border.outstandingReferences(), 0);
}

TEST_F(BorderCommands, ObjectDeletedUnderAReferenceIsReportedAndAnswersEmpty) {
    const Uid uid = story(u"text");
    {
        InterfacePtr<ITextModel> held(ref(uid));
        run(kDeleteStoryCmdBoss, UIDList(ref(uid)));
        EXPECT_THAT(onlyMisuse(), HasSubstr("was deleted while 1 of its references"));
        EXPECT_EQ(held->TotalLength(), 0);
        EXPECT_EQ(held->GetChunk(0).length, 0);
        held->Insert(0, WideString("x"));
        held->ApplyStyle(0, 1, UID(3), AttributeStrand::Character, true, true);
        EXPECT_FALSE(InterfacePtr<ITextModel>(ref(uid)));
    }
    EXPECT_EQ(border.outstandingReferences(), 0);
}

TEST_F(BorderCommands, EveryPartOfADeletedFrameAnswersEmpty) {
    const Uid frame = textFrame(u"text");
    {
        InterfacePtr<IHierarchy> item(ref(frame));
        InterfacePtr<IHierarchy> multi(Adopt::Reference, item->QueryChild(0));
        InterfacePtr<IHierarchy> column(Adopt::Reference, multi->QueryChild(0));
        InterfacePtr<IGeometry> geometry(item.get());
        InterfacePtr<ITagStore> tags(item.get());
        run(kDeletePageItemsCmdBoss, UIDList(ref(frame)));
        EXPECT_EQ(border.misuses().size(), 3u);
        border.forgetMisuses();
        EXPECT_EQ(item->GetChildCount(), 0);
        EXPECT_EQ(item->GetParentUID(), kInvalidUID);
        EXPECT_EQ(multi->GetChildCount(), 0);
        EXPECT_EQ(column->GetParentUID(), kInvalidUID);
        EXPECT_EQ(geometry->GetInnerBounds(), PMRect());
        tags->SetTag("key", PMString("x"));
        EXPECT_TRUE(tags->GetTag("key").IsEmpty());
    }
    EXPECT_EQ(border.outstandingReferences(), 0);
}

TEST_F(BorderCommands, ClosedDocumentAnswersEmptyUnderAReference) {
    {
        InterfacePtr<ISpreadList> spreads(documentRef());
        InterfacePtr<ILayerList> layers(documentRef());
        border.close(document);
        EXPECT_THAT(onlyMisuse(), HasSubstr("closed document"));
        EXPECT_EQ(spreads->GetSpreadCount(), 0);
        EXPECT_EQ(layers->GetCount(), 0);
        EXPECT_EQ(layers->QueryLayer(0), nullptr);
    }
    EXPECT_FALSE(InterfacePtr<IDocument>(Utils<ILayoutUtils>()->GetFrontDocument()));
}

TEST_F(BorderCommands, ReferenceGivenBackTwiceIsReported) {
    InterfacePtr<IDocument> here(documentRef());
    IDocument* pointer = here.get();
    here.reset();
    pointer->Release();
    EXPECT_THAT(onlyMisuse(), HasSubstr("nobody holds"));
}

TEST_F(BorderCommands, FixtureSeesAReferenceThatIsKept) {
    static BorderCommands* fixture = nullptr;
    static InterfacePtr<IDocument> kept;
    fixture = this;
    EXPECT_NONFATAL_FAILURE(fixture->balanced([] { kept = InterfacePtr<IDocument>(fixture->documentRef()); }),
                            "references that are out");
    kept.reset();
}

// --- Plug-ins

std::vector<std::string> heard;
int aliveProviders = 0;

class TestProvider final : public CPMUnknown<IPDFExportSetupProvider> {
  public:
    explicit TestProvider(IPMUnknown* boss) : boss_(boss) { ++aliveProviders; }
    ~TestProvider() { --aliveProviders; }
    IPMUnknown* QueryInterface(PMIID id) override { return boss_->QueryInterface(id); }
    void AddRef() override { boss_->AddRef(); }
    void Release() override { boss_->Release(); }
    int32_t PDFProcessEvent(_t_PDFExportEvent* event, int32_t page) override {
        if (page == 13) throw std::runtime_error("thirteen");
        heard.push_back(std::to_string(event->messageCode) + "/" + std::to_string(page));
        return 1;
    }

  private:
    IPMUnknown* boss_;
};

IPMUnknown* createProvider(IPMUnknown* boss) {
    return new TestProvider(boss);
}
void destroyProvider(IPMUnknown* object) {
    delete static_cast<TestProvider*>(object);
}
size_t sizeOfProvider() {
    return sizeof(TestProvider);
}

class BorderPlugIns : public testing::HostFixture {
  public:
    BorderPlugIns() { heard.clear(); }
    void offer(ImplementationID identifier, CreateImplementation create = createProvider) {
        InterfacePtr<IObjectModel> model(GetExecutionContextSession());
        ASSERT_TRUE(model);
        model->RegisterImplementation(1, identifier, create, destroyProvider, sizeOfProvider, 0, 0, 0);
    }
};

TEST_F(BorderPlugIns, RegisteredProviderHearsTheEventsOfAnExport) {
    offer(kMyPDFExportProviderImpl);
    {
        ExportListeners listeners(border);
        EXPECT_FALSE(listeners.isEmpty());
        EXPECT_EQ(aliveProviders, 1);
        EXPECT_EQ(border.outstandingReferences(), 0);
        listeners.tell(0, database, 0);
        listeners.tell(1, database, 7);
        EXPECT_THROW(listeners.tell(1, database, 13), std::runtime_error);
    }
    EXPECT_EQ(aliveProviders, 0);
    EXPECT_THAT(heard, ElementsAre("0/0", "1/7"));
}

TEST_F(BorderPlugIns, SecondRegistrationTakesTheFirstsPlace) {
    offer(kMyPDFExportProviderImpl);
    offer(kMyPDFExportProviderImpl);
    ExportListeners listeners(border);
    listeners.tell(4, database, 0);
    EXPECT_THAT(heard, ElementsAre("4/0"));
}

TEST_F(BorderPlugIns, WhatIsNoExportProviderHearsNothing) {
    offer(ImplementationID(0x9999));
    offer(kMyPDFExportProviderImpl, [](IPMUnknown*) -> IPMUnknown* { return nullptr; });
    ExportListeners listeners(border);
    EXPECT_TRUE(listeners.isEmpty());
    listeners.tell(0, database, 0);
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(BorderPlugIns, ProviderAnswersOnItsObject) {
    static IPMUnknown* owner = nullptr;
    offer(kMyPDFExportProviderImpl, [](IPMUnknown* boss) -> IPMUnknown* {
        owner = boss;
        return createProvider(boss);
    });
    ExportListeners listeners(border);
    ASSERT_NE(owner, nullptr);
    InterfacePtr<IPDFExportSetupProvider> provider(owner);
    ASSERT_TRUE(provider);
    EXPECT_EQ(border.outstandingReferences(), 1);
    InterfacePtr<IPDFExportSetupProvider> again(provider.get());
    EXPECT_EQ(provider.get(), again.get());
    EXPECT_EQ(border.outstandingReferences(), 2);
}

}  // namespace
}  // namespace desk
