#include "host/plug_in_object.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <set>

#include "host/resource_access.h"
#include "host_fixture.h"

using namespace vornaset;

namespace vornaset {
extern int16_t gDontDeadStrip;
}

namespace {

/// A session that writes down what is registered.
class RegisteringSession : public IExecutionContextSession, public IObjectModel {
  public:
    virtual ~RegisteringSession() = default;
    IPMUnknown* QueryInterface(PMIID interfaceId) override {
        if (interfaceId != IID_IOBJECTMODEL || !hasObjectModel) return nullptr;
        ++references;
        return static_cast<IObjectModel*>(this);
    }
    void AddRef() override { ++references; }
    void Release() override { --references; }
    IApplication* QueryApplication() override { return nullptr; }
    void RegisterBoss(uint32_t plugIn, ClassID identifier, const void*) override {
        registered.push_back(std::to_string(plugIn) + " boss " + std::to_string(identifier.Get()));
    }
    void RegisterImplementation(uint32_t plugIn, ImplementationID identifier, CreateImplementation create,
                                DestroyImplementation destroy, SizeOfImplementation sizeOf, uint32_t word1,
                                uint32_t word2, uint32_t word3) override {
        registered.push_back(std::to_string(plugIn) + " implementation " + std::to_string(identifier.Get()));
        offered = {identifier, create, destroy, sizeOf, {word1, word2, word3}, nullptr};
    }

    std::vector<std::string> registered;
    ImplementationRecord offered;
    int references = 0;
    bool hasObjectModel = true;
};

class SessionHost : public IHost {
  public:
    explicit SessionHost(IExecutionContextSession* session) : session_(session), former_(InstallHost(this)) {}
    virtual ~SessionHost() { InstallHost(former_); }
    IExecutionContextSession* Session() override { return session_; }
    IPMUnknown* QueryUtils(PMIID) override { return nullptr; }
    IPMCommand* CreateCommand(ClassID) override { return nullptr; }
    ErrorCode ProcessCommand(IPMCommand*) override { return kFailure; }
    bool IsValidDataBase(IDataBase*) override { return false; }

  private:
    IExecutionContextSession* session_;
    IHost* former_;
};

TEST(PlugInObjectTest, EntryPointGivesTheOneObject) {
    EXPECT_EQ(GetPlugIn(), &gPlugIn);
}

TEST(PlugInObjectTest, OperationsGiveTheirFixedAnswers) {
    PlugIn plugIn;
    EXPECT_EQ(plugIn.Startup(), 1);
    EXPECT_EQ(plugIn.Initialize(), 1);
    EXPECT_EQ(plugIn.IsLazy(), 0);
    EXPECT_EQ(plugIn.Shutdown(), 1);
    plugIn.Idle();
    EXPECT_EQ(plugIn.GetPlugInID(), 0u);
    plugIn.SetPlugInID(0xFFFFFFFE);
    EXPECT_EQ(plugIn.GetPlugInID(), 0xFFFFFFFE);
}

TEST(PlugInObjectTest, LoadingKeepsTheResourceFileAndTheHandle) {
    const MBaseResourceAccess::ResourceFileInfo& info = MBaseResourceAccess::resourceFileInfo();
    EXPECT_EQ(info.isUnopened, 1);
    EXPECT_EQ(info.referenceNumber, -1);
    EXPECT_TRUE(gPlugIn.GetResourceFile().IsEmpty());
    gPlugIn.Load(IDFile("/modules/one.rsrc"), nullptr);
    EXPECT_EQ(gPlugIn.GetResourceFile(), IDFile("/modules/one.rsrc"));
    EXPECT_EQ(info.isUnopened, 1);
    EXPECT_EQ(info.hasHandle, 0);
    int module = 0;
    gPlugIn.Load(IDFile("/modules/two.rsrc"), &module);
    EXPECT_EQ(gPlugIn.GetResourceFile(), IDFile("/modules/two.rsrc"));
    EXPECT_EQ(info.isUnopened, 0);
    EXPECT_EQ(info.hasHandle, 1);
    EXPECT_EQ(info.handle, &module);
    gPlugIn.Load(IDFile("/modules/two.rsrc"), nullptr);
    EXPECT_EQ(info.handle, &module);
}

TEST(PlugInObjectTest, DestructionGivesTheResourceFileBack) {
    {
        PlugIn plugIn;
        plugIn.Load(IDFile("/modules/one.rsrc"), nullptr);
    }
    EXPECT_TRUE(gPlugIn.GetResourceFile().IsEmpty());
}

TEST(PlugInObjectTest, RegistrationOffersTheExportProviderAlone) {
    RegisteringSession session;
    SessionHost host(&session);
    gPlugIn.Register(77);
    EXPECT_THAT(session.registered,
                ::testing::ElementsAre("77 implementation " + std::to_string(kMyPDFExportProviderImpl.Get())));
    const ImplementationRecord& record = *GetkMyPDFExportProviderImpl_InterfaceFactory();
    EXPECT_EQ(session.offered.create, record.create);
    EXPECT_EQ(session.offered.destroy, record.destroy);
    EXPECT_EQ(session.offered.sizeOf, record.sizeOf);
    EXPECT_THAT(session.offered.words, ::testing::ElementsAre(0u, 0u, 0u));
    EXPECT_EQ(session.references, 0);
}

TEST(PlugInObjectTest, BossesAreRegisteredFirstAndThoseWithoutDataArePassedOver) {
    // Linked for the rest of the process, as every record is.
    static const int data = 0;
    static BossRecord empty{ClassID(501), nullptr, nullptr};
    static BossRecord full{ClassID(502), &data, nullptr};
    static ImplementationRecord offer{ImplementationID(503), nullptr, nullptr, nullptr, {0, 0, 0}, nullptr};
    OfferedRecords::link(empty);
    OfferedRecords::link(full);
    OfferedRecords::link(offer);
    EXPECT_EQ(OfferedRecords::bosses(), &full);
    EXPECT_EQ(full.next, &empty);
    RegisteringSession session;
    SessionHost host(&session);
    gPlugIn.Register(1);
    EXPECT_THAT(session.registered,
                ::testing::ElementsAre("1 boss 502", "1 implementation 503",
                                       "1 implementation " + std::to_string(kMyPDFExportProviderImpl.Get())));
}

TEST(PlugInObjectTest, WithoutASessionOrAnObjectModelNothingIsRegistered) {
    {
        SessionHost host(nullptr);
        gPlugIn.Register(1);
    }
    RegisteringSession session;
    session.hasObjectModel = false;
    SessionHost host(&session);
    gPlugIn.Register(1);
    EXPECT_TRUE(session.registered.empty());
}

TEST(PlugInObjectTest, FactoryIsKeptWithoutBeingCalled) {
    EXPECT_EQ(gDontDeadStrip, 0);
    DontDeadStrip();
    EXPECT_EQ(gDontDeadStrip, 0);
}

// --- The module's symbol table

std::set<std::string> symbolsOf(const char* command) {
    std::set<std::string> symbols;
    FILE* lines = popen(command, "r");
    if (!lines) return symbols;
    char line[4096];
    while (std::fgets(line, sizeof line, lines)) {
        // "address kind name"; an undefined symbol has no address.
        std::string text(line);
        if (!text.empty() && text.back() == '\n') text.pop_back();
        const size_t kind = text.find(' ');
        if (kind != std::string::npos && text.size() > kind + 3) symbols.insert(text.substr(kind + 3));
    }
    pclose(lines);
    return symbols;
}

TEST(ModuleSymbolsTest, EntryPointsHavePlainNames) {
    const std::set<std::string> symbols = symbolsOf("nm -D --defined-only '" VORNASET_BUILD_DIR "/libvornaset.so'");
    ASSERT_FALSE(symbols.empty()) << "nm reads no symbols from the module";
    for (const char* name : {"GetPlugIn", "CreatekMyPDFExportProviderImpl_", "DestroykMyPDFExportProviderImpl_",
                             "SizeOfkMyPDFExportProviderImpl_"}) {
        EXPECT_TRUE(symbols.contains(name)) << name;
    }
}

TEST(ModuleSymbolsTest, LibraryFunctionsAreExportedUnderTheirOwnNames) {
    const std::set<std::string> symbols = symbolsOf("nm -D --defined-only -C '" VORNASET_BUILD_DIR "/libvornaset.so'");
    std::set<std::string> names;
    for (const std::string& symbol : symbols) names.insert(symbol.substr(0, symbol.find('(')));
    for (const char* name : {"DontDeadStrip",
                             "GetkMyPDFExportProviderImpl_InterfaceFactory",
                             "EnumBoxes",
                             "EnumStories",
                             "EnumHierarchy",
                             "EnumSpread",
                             "EnumAnchoredBoxes",
                             "getChildRef",
                             "getParentRef",
                             "isTextFrame",
                             "isValidFrame",
                             "deleteFrames",
                             "deleteFrame",
                             "storyForFrame",
                             "frameListForStory",
                             "firstFrameForStory",
                             "lastFrameForStory",
                             "frontDoc",
                             "pathForDoc",
                             "getCharStyle",
                             "stringForKey",
                             "nodeForFrame",
                             "setDictForDoc",
                             "frameNumberForFrame",
                             "maxFrameNumberForDoc",
                             "EnumMyBoxes",
                             "setupRules",
                             "processTextModel",
                             "processMyTextModel",
                             "setupFrameProcessing",
                             "processFrames",
                             "cleanupFrameProcessing",
                             "createStory",
                             "copyStory",
                             "deleteStory",
                             "stageStory",
                             "restoreStories",
                             "collectImageSlot",
                             "setMergeObserver"}) {
        EXPECT_TRUE(names.contains("vornaset::" + std::string(name))) << name;
    }
}

TEST(ModuleSymbolsTest, ModuleLeavesTheProcessItsAllocator) {
    const std::set<std::string> symbols = symbolsOf("nm -D --defined-only -C '" VORNASET_BUILD_DIR "/libvornaset.so'");
    for (const char* name : {"operator new(unsigned long)", "operator new[](unsigned long)", "operator delete(void*)",
                             "operator delete[](void*)", "operator delete(void*, unsigned long)"}) {
        EXPECT_FALSE(symbols.contains(name)) << name;
    }
}

}  // namespace
