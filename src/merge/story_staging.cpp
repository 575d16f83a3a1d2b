#include "merge/story_staging.h"

#include "host/api/host.h"
#include "host/host_operations.h"
#include "host/stories.h"
#include "records/merge_records.h"
#include "support/dictionary_access.h"

namespace vornaset {

namespace {

constexpr int32_t kOrdinaryStory = 1;  ///< the flag that every caller of the host's story making passes

void append(const Dictionary& job, const char* key, const UIDRef& story) {
    arrayForKey(job, key, uint8_t{1}).add(Number(story.GetUID().Get()));
}

}  // namespace

UIDRef createStory(const UIDRef& anyObject) {
    IDataBase* database = anyObject.GetDataBase();
    Utils<ITextUtils> text;
    if (!database || !text) return UIDRef(database, kInvalidUID);
    return UIDRef(database, text->CreateStory(database, kOrdinaryStory, kTextStoryBoss));
}

void copyStory(const UIDRef& from, const UIDRef& to) {
    Utils<ITextUtils> text;
    if (!text) return;
    InterfacePtr<IPMCommand> command(Adopt::Reference, text->QueryCopyStoryCommand(from, to, 0));
    if (command) CmdUtils::ProcessCommand(command.get());
}

void deleteStory(const UIDRef& story) {
    processOnItems(kDeleteStoryCmdBoss, UIDList(story));
}

unsigned char stageStory(ITextModel* story, void* job) {
    const UIDRef frame = firstFrameForStory(::GetUIDRef(story));
    if (frameNumberForFrame(frame) < 1) return 1;
    const UIDRef source = storyForFrame(frame);
    const UIDRef shadow = createStory(frame);
    copyStory(source, shadow);
    const Dictionary& run = *static_cast<const Dictionary*>(job);
    append(run, kSourceStories, source);
    append(run, kShadowStories, shadow);
    return 1;
}

UIDList storiesOfJob(IDataBase* database, const Dictionary& job, const char* key) {
    UIDList stories(database);
    for (const Value& uid : arrayForKey(job, key, Array())) {
        stories.Append(UID(static_cast<uint32_t>(uid.number().integerValue())));
    }
    return stories;
}

void restoreStories(IDataBase* database, const Dictionary& job) {
    const UIDList sources = storiesOfJob(database, job, kSourceStories);
    const UIDList shadows = storiesOfJob(database, job, kShadowStories);
    for (int32_t index = 0; index < sources.Length(); ++index) copyStory(shadows.GetRef(index), sources.GetRef(index));
}

}  // namespace vornaset
