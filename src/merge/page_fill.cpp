#include "merge/page_fill.h"

#include "host/api/host.h"
#include "host/enumerators.h"
#include "host/my_frame.h"
#include "host/stories.h"
#include "merge/image_slots.h"
#include "merge/merge_job.h"
#include "merge/story_staging.h"
#include "placeholders/substitution.h"
#include "records/merge_records.h"
#include "support/dictionary_access.h"

namespace vornaset {

namespace {

const String kRows(u"rows");
const String kRemoveEmptyLines(u"rmvEmptyLines");

/// A story that can't be asked counts as not overset here.
bool isStoryOverset(const UIDRef& story) {
    InterfacePtr<ITextModel> model(story);
    if (!model) return false;
    InterfacePtr<ITextFrameList> frames(Adopt::Reference, model->QueryFrameList());
    Utils<ITextUtils> text;
    return frames && text && text->IsOverset(frames.get());
}

void fillStory(const MergePlace& place, const Array& rows, uint8_t rmvEmptyLines) {
    try {
        processTextModel(place.story, rows, place.row, rmvEmptyLines);
    } catch (const RangeException& failure) {
        if (MergeObserver* observer = mergeObserver()) observer->rangeFailure(place, failure);
        throw;
    }
    if (isStoryOverset(place.story)) reportProblem(ProblemKind::Overset, place);
}

void fillStories(IDataBase* database, const Dictionary& job, int32_t pageNum) {
    const RowArithmetic arithmetic(job);
    const Array rows = arrayForKey(job, kRows, Array());
    const auto rmvEmptyLines = static_cast<uint8_t>(integerForKey(job, kRemoveEmptyLines, 0));
    const UIDList stories = storiesOfJob(database, job, kSourceStories);
    for (int32_t index = 0; index < stories.Length(); ++index) {
        MergePlace place;
        place.pageNum = pageNum;
        place.story = stories.GetRef(index);
        place.frame = firstFrameForStory(place.story);
        place.row = arithmetic.rowOf(pageNum, frameNumberForFrame(place.frame));
        fillStory(place, rows, rmvEmptyLines);
    }
}

/// The pictures of the last fill go before anything new is placed, all in one command.
void clearImageSlots(IDataBase* database, const Dictionary& job) {
    UIDList pictures(database);
    for (const Value& slot : arrayForKey(job, kImageSlots, Array())) {
        const UIDRef picture = getChildRef(frameWithNumber(slot.number(), UIDRef(database, kInvalidUID)));
        if (picture != UIDRef::gNull) pictures.Append(picture.GetUID());
    }
    deleteFrames(pictures);
}

/// The database that the open run noted; null when that document is no longer open.
IDataBase* databaseOfRun() {
    auto* noted = reinterpret_cast<IDataBase*>(static_cast<intptr_t>(integerForKey(gMergeJob, "dataBase", 0)));
    return DBUtils::IsValidDataBase(noted) ? noted : nullptr;
}

}  // namespace

void runSetupPasses(const UIDRef& document, const Dictionary& job) {
    Dictionary run = job;
    // Only frames that are empty in the untouched document can be image slots, so they are looked for first.
    EnumBoxes(document, collectImageSlot, &run);
    EnumStories(document, stageStory, &run);
}

void processFrames(IDataBase* database, const Dictionary& job, int32_t pageNum) {
    if (!database) database = databaseOfRun();
    restoreStories(database, job);
    fillStories(database, job, pageNum);
    clearImageSlots(database, job);
    fillImageSlots(database, job, pageNum);
}

void cleanupFrameProcessing(IDataBase* database, const Dictionary& job) {
    restoreStories(database, job);
    const UIDList stories = storiesOfJob(database, job, kSourceStories);
    for (int32_t index = 0; index < stories.Length(); ++index) deleteStory(stories.GetRef(index));
    clearImageSlots(database, job);
}

}  // namespace vornaset
