#include "merge/export_provider.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <map>

#include "host/plug_in_object.h"
#include "merge_fixture.h"

/// The host's allocator with a memory: the module finds these two before those of the border's library.
static std::map<void*, size_t> allocated;

namespace K2Memory {

void* RTLCompatibleNewDelegate(size_t size) {
    void* memory = std::malloc(size);
    allocated[memory] = size;
    return memory;
}

void RTLCompatibleDeleteDelegate(void* memory) {
    allocated.erase(memory);
    std::free(memory);
}

}  // namespace K2Memory

using namespace vornaset;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

/// An owner that counts.
class Owner : public IPMUnknown {
  public:
    virtual ~Owner() = default;
    IPMUnknown* QueryInterface(PMIID interfaceId) override {
        asked.push_back(interfaceId);
        ++references;
        return this;
    }
    void AddRef() override { ++references; }
    void Release() override { --references; }

    std::vector<PMIID> asked;
    int references = 0;
};

TEST(ProviderFactoryTest, ProviderLiesInTheHostsMemoryAndHasTheSizeThatIsTold) {
    Owner owner;
    allocated.clear();
    IPMUnknown* provider = CreatekMyPDFExportProviderImpl_(&owner);
    ASSERT_NE(provider, nullptr);
    ASSERT_EQ(allocated.size(), 1u);
    EXPECT_EQ(allocated.begin()->second, SizeOfkMyPDFExportProviderImpl_());
    DestroykMyPDFExportProviderImpl_(provider);
    EXPECT_TRUE(allocated.empty());
    DestroykMyPDFExportProviderImpl_(nullptr);
    EXPECT_EQ(owner.references, 0);
}

TEST(ProviderFactoryTest, RecordOffersTheFactory) {
    const ImplementationRecord& record = *GetkMyPDFExportProviderImpl_InterfaceFactory();
    EXPECT_EQ(record.identifier, kMyPDFExportProviderImpl);
    EXPECT_EQ(record.create, &CreatekMyPDFExportProviderImpl_);
    EXPECT_EQ(record.destroy, &DestroykMyPDFExportProviderImpl_);
    EXPECT_EQ(record.sizeOf, &SizeOfkMyPDFExportProviderImpl_);
    EXPECT_THAT(record.words, ElementsAre(0u, 0u, 0u));
    const ImplementationRecord* linked = OfferedRecords::implementations();
    while (linked && linked != &record) linked = linked->next;
    EXPECT_EQ(linked, &record);
}

TEST(ProviderFactoryTest, ProviderForwardsItsReferencesToItsOwner) {
    Owner owner;
    MyPDFExportProvider provider(&owner);
    provider.AddRef();
    provider.AddRef();
    provider.Release();
    EXPECT_EQ(owner.references, 1);
    EXPECT_EQ(provider.QueryInterface(IID_IUNKNOWN), &owner);
    EXPECT_EQ(owner.references, 2);
    EXPECT_THAT(owner.asked, IsEmpty());
    EXPECT_EQ(provider.QueryInterface(IID_IPDFEXPORTSETUPPROVIDER), &owner);
    EXPECT_THAT(owner.asked, ElementsAre(IID_IPDFEXPORTSETUPPROVIDER));
    EXPECT_EQ(owner.references, 3);
}

class ExportEventsTest : public MergeTest {
  protected:
    ExportEventsTest() : provider(&owner) {}

    int32_t tell(int32_t code, int32_t pageNum = 0) {
        _t_PDFExportEvent event{code, database};
        return balanced([&] { return provider.PDFProcessEvent(&event, pageNum); });
    }

    Owner owner;
    MyPDFExportProvider provider;
};

TEST_F(ExportEventsTest, ExportWithoutAJobPassesThroughUntouched) {
    const Uid frame = numberedFrame(u"<<Name>>", 1);
    document.modified = false;
    EXPECT_EQ(tell(0), 1);
    EXPECT_EQ(gMergeArmed, 0);
    for (int32_t pageNum = 0; pageNum < 3; ++pageNum) EXPECT_EQ(tell(1, pageNum), 1);
    EXPECT_EQ(tell(4), 1);
    EXPECT_EQ(gMergeArmed, 0);
    EXPECT_FALSE(document.modified);
    EXPECT_EQ(textIn(frame), u"<<Name>>");
    EXPECT_EQ(systemLog.size(), 5u);
}

TEST_F(ExportEventsTest, EachEventLeavesALineInTheSystemLog) {
    tell(0);
    tell(7, 12);
    char expected[80];
    std::snprintf(expected, sizeof expected, "pdfEvent: db=%lx, msg=7, pageNum=12",
                  reinterpret_cast<unsigned long>(database));
    ASSERT_EQ(systemLog.size(), 2u);
    EXPECT_EQ(systemLog[1], expected);
}

TEST_F(ExportEventsTest, RunShowsRowAfterRowAndLeavesTheDocumentAsTheLastFillDid) {
    const Uid frame = numberedFrame(u"<<Name>>", 1);
    post(jobOf(rows(3)));
    tell(0);
    EXPECT_EQ(gMergeArmed, 1);
    std::vector<std::string> shown;
    for (int32_t pageNum = 0; pageNum < 3; ++pageNum) {
        EXPECT_EQ(tell(1, pageNum), 1);
        shown.push_back(String(textIn(frame)).utf8());
    }
    EXPECT_THAT(shown, ElementsAre("r0", "r1", "r2"));
    EXPECT_EQ(tell(4), 1);
    EXPECT_TRUE(gMergeJob.isNull());
    EXPECT_EQ(gMergeArmed, 1);
    EXPECT_EQ(textIn(frame), u"r2");
    EXPECT_EQ(document.stories.size(), 2u);
    EXPECT_EQ(tell(4), 1);
}

TEST_F(ExportEventsTest, JobIsUsedByOneExport) {
    const Uid frame = numberedFrame(u"<<Name>>", 1);
    post(jobOf(rows(1)));
    tell(0);
    tell(4);
    tell(0);
    EXPECT_EQ(gMergeArmed, 0);
    tell(1, 0);
    EXPECT_EQ(textIn(frame), u"<<Name>>");
}

TEST_F(ExportEventsTest, OtherEventsDoNothing) {
    const Uid frame = numberedFrame(u"<<Name>>", 1);
    post(jobOf(rows(1)));
    tell(0);
    document.modified = false;
    for (int32_t code : {2, 3, 5, -1, 100}) EXPECT_EQ(tell(code), 1);
    EXPECT_FALSE(document.modified);
    EXPECT_FALSE(gMergeJob.isNull());
    EXPECT_EQ(textIn(frame), u"<<Name>>");
}

TEST_F(ExportEventsTest, SecondStartReplacesTheRun) {
    const Uid frame = numberedFrame(u"<<Name>>", 1);
    const Dictionary first = jobOf(rows(1));
    const Dictionary second = jobOf(Array::makeMutable({Dictionary::make({{"Name", "other"}})}));
    post(first);
    tell(0);
    post(second);
    tell(0);
    EXPECT_TRUE(gMergeJob.isSameObject(second));
    tell(1, 0);
    EXPECT_EQ(textIn(frame), u"other");
}

TEST_F(ExportEventsTest, SecondStartWithoutAJobDisarmsTheRun) {
    const Uid frame = numberedFrame(u"<<Name>>", 1);
    post(jobOf(rows(1)));
    tell(0);
    tell(0);
    EXPECT_EQ(gMergeArmed, 0);
    EXPECT_TRUE(gMergeJob.isNull());
    EXPECT_EQ(tell(1, 0), 1);
    EXPECT_EQ(textIn(frame), u"<<Name>>");
}

TEST_F(ExportEventsTest, PageBehindTheEndIsAFailureAndNoCrash) {
    numberedFrame(u"<<Name>>", 1);
    post(jobOf(rows(1)));
    tell(0);
    tell(4);
    EXPECT_THROW(tell(1, 0), Exception);
}

TEST_F(ExportEventsTest, TooFewRowsLeaveTheEventAsAStandardException) {
    numberedFrame(u"<<Name#>>", 1);
    post(jobOf(rows(1)));
    tell(0);
    EXPECT_THROW(tell(1, 0), std::exception);
    EXPECT_EQ(rangeFailures.size(), 1u);
}

TEST_F(ExportEventsTest, StartWithoutADatabaseArmsTheRunOnNothing) {
    _t_PDFExportEvent event{0, nullptr};
    post(jobOf(rows(1)));
    EXPECT_EQ(provider.PDFProcessEvent(&event, 0), 1);
    EXPECT_EQ(gMergeArmed, 1);
}

// --- By way of the host: the module registers, the host makes the provider and tells it the export

TEST_F(ExportEventsTest, HostThatTookTheModuleInRunsTheMerge) {
    GetPlugIn()->Register(1);
    const Uid frame = numberedFrame(u"Dear <<Name>>,", 1);
    const Uid second = numberedFrame(u"<<Name>>", 2);
    addPage();
    Dictionary job = jobOf(rows(4));
    job.setValue("offset", 2);
    post(job);
    {
        desk::ExportListeners listeners(border);
        ASSERT_FALSE(listeners.isEmpty());
        listeners.tell(0, database, 0);
        listeners.tell(1, database, 0);
        EXPECT_EQ(textIn(frame), u"Dear r0,");
        EXPECT_EQ(textIn(second), u"r1");
        listeners.tell(1, database, 1);
        EXPECT_EQ(textIn(frame), u"Dear r0,");
        listeners.tell(1, database, 2);
        EXPECT_EQ(textIn(frame), u"Dear r2,");
        EXPECT_EQ(textIn(second), u"r3");
        listeners.tell(4, database, 4);
    }
    EXPECT_TRUE(gMergeJob.isNull());
}

}  // namespace
