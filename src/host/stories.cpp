#include "host/stories.h"

#include "host/api/host.h"
#include "host/my_frame.h"

namespace vornaset {

namespace {

InterfacePtr<IMultiColumnTextFrame> multiColumnFrameOf(const UIDRef& frame) {
    InterfacePtr<IFrameData> data(frame);
    if (!data) return {};
    return InterfacePtr<IMultiColumnTextFrame>(frame.GetDataBase(), data->GetTextContentUID());
}

UIDRef pageItemOfColumn(IDataBase* database, UID column) {
    return getParentRef(getParentRef(UIDRef(database, column)));
}

}  // namespace

UIDRef storyForFrame(const UIDRef& frame) {
    InterfacePtr<IMultiColumnTextFrame> columns = multiColumnFrameOf(frame);
    return columns ? UIDRef(frame.GetDataBase(), columns->GetTextModelUID()) : UIDRef::gNull;
}

UIDRef storyForFrame(const UIDRef& frame, int32_t& start, int32_t& end) {
    InterfacePtr<IMultiColumnTextFrame> columns = multiColumnFrameOf(frame);
    if (!columns) return UIDRef::gNull;
    start = columns->TextStart();
    end = start + columns->TextSpan();
    return UIDRef(frame.GetDataBase(), columns->GetTextModelUID());
}

UIDList frameListForStory(const UIDRef& story) {
    IDataBase* database = story.GetDataBase();
    UIDList result(database);
    InterfacePtr<ITextModel> model(story);
    if (!model) return result;
    InterfacePtr<ITextFrameList> columns(Adopt::Reference, model->QueryFrameList());
    if (!columns) return result;
    const int32_t count = columns->GetFrameCount();
    for (int32_t index = 0; index < count; ++index) {
        const UID item = pageItemOfColumn(database, columns->GetNthFrameUID(index)).GetUID();
        if (!result.Contains(item)) result.Append(item);
    }
    return result;
}

// Asked for every story of every fill: goes straight to the first column instead of collecting the list.
UIDRef firstFrameForStory(const UIDRef& story) {
    InterfacePtr<ITextModel> model(story);
    if (!model) return UIDRef::gNull;
    InterfacePtr<ITextFrameList> columns(Adopt::Reference, model->QueryFrameList());
    if (!columns || columns->GetFrameCount() < 1) return UIDRef::gNull;
    IDataBase* database = story.GetDataBase();
    return UIDRef(database, pageItemOfColumn(database, columns->GetNthFrameUID(0)).GetUID());
}

UIDRef lastFrameForStory(const UIDRef& story) {
    const UIDList frames = frameListForStory(story);
    return frames.GetRef(frames.Length() - 1);
}

UIDRef frameForTextModel(ITextModel* story, int32_t index) {
    if (!story) return UIDRef();
    InterfacePtr<ITextFrameList> columns(Adopt::Reference, story->QueryFrameList());
    if (!columns) return UIDRef();
    return pageItemOfColumn(::GetDataBase(story), columns->GetNthFrameUID(columns->GetFrameIndexContaining(index)));
}

}  // namespace vornaset
