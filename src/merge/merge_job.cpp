#include "merge/merge_job.h"

#include "host/api/host.h"
#include "merge/page_fill.h"
#include "support/dictionary_access.h"
#include "support/exception.h"
#include "support/pasteboard.h"

namespace vornaset {

uint8_t gMergeArmed = 0;
Dictionary gMergeJob;

namespace {

const String kDataBase(u"dataBase");
const String kPageCnt(u"pageCnt");
const String kStartNr(u"startNr");
const String kOffset(u"offset");

Pasteboard mergePasteboard() {
    return Pasteboard::withName(kMergePasteboard);
}

/// Truncates. In 64 bits, where no quotient of 32-bit numbers overflows.
int64_t quotient(int32_t pageNum, int32_t pageCnt) {
    if (pageCnt == 0) {
        throw Exception("DivisionByZero", "A page event came while no merge run is open: the page count is 0.");
    }
    return int64_t{pageNum} / pageCnt;
}

/// Two's complement, wrapping.
int32_t wrapped(int64_t number) {
    return static_cast<int32_t>(static_cast<uint32_t>(static_cast<uint64_t>(number)));
}

int32_t pageCountOf(const UIDRef& document) {
    InterfacePtr<IPageList> pages(document);
    return pages ? pages->GetPageCount() : 0;
}

}  // namespace

uint8_t setupFrameProcessing(const UIDRef& document) {
    Pasteboard pasteboard = mergePasteboard();
    const Dictionary job = pasteboard.propertyListForType(kMergeJobType).dictionary();
    // The run writes keys of its own into the job.
    gMergeJob = job.isNull() || job.isMutable() ? job : job.mutableCopy();
    pasteboard.clear();
    return setupFrameProcessing(document, gMergeJob);
}

uint8_t setupFrameProcessing(const UIDRef& document, const Dictionary& job) {
    if (!job) return 0;
    setIntegerForKey(job, kDataBase, static_cast<int64_t>(reinterpret_cast<intptr_t>(document.GetDataBase())));
    setIntegerForKey(job, kPageCnt, pageCountOf(document));
    runSetupPasses(document, job);
    return 1;
}

void processFrames(IDataBase* database, int32_t pageNum) {
    const int32_t pageCnt = intForKey(gMergeJob, kPageCnt, 0);
    if (quotient(pageNum, pageCnt) * pageCnt == pageNum) processFrames(database, gMergeJob, pageNum);
}

void cleanupFrameProcessing() {
    gMergeJob = Dictionary();
}

RowArithmetic::RowArithmetic(const Dictionary& job)
    : startNr(intForKey(job, kStartNr, 1)), offset(intForKey(job, kOffset, 1)), pageCnt(intForKey(job, kPageCnt, 1)) {}

int64_t RowArithmetic::rowOf(int32_t pageNum, int64_t frameNumber) const {
    const int64_t set = wrapped(quotient(pageNum, pageCnt));
    const int64_t advance = wrapped(set * offset);
    return wrapped(advance + startNr + wrapped(frameNumber) - 2);
}

void reportProblem(ProblemKind kind, const MergePlace& place) {
    if (MergeObserver* observer = mergeObserver()) observer->problem(kind, place);
    Pasteboard pasteboard = mergePasteboard();
    const String type = nameOf(kind);
    if (!pasteboard.stringForType(type).isNull()) return;
    pasteboard.clear();
    pasteboard.setString(Number(wrapped(int64_t{place.pageNum} + 1)).text(), type);
}

}  // namespace vornaset
