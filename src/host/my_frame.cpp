#include "host/my_frame.h"

#include <type_traits>

#include "host/api/host.h"
#include "host/host_operations.h"
#include "host/stories.h"

namespace vornaset {

static_assert(sizeof(MyFrame) == sizeof(UIDRef) && std::is_trivially_destructible_v<MyFrame>);

MyFrame::MyFrame(const UIDList& items, int32_t index) : UIDRef(items.IsEmpty() ? UIDRef() : items.GetRef(index)) {}

MyFrame::MyFrame(IPMUnknown* object) : UIDRef(::GetDataBase(object), ::GetUID(object)) {}

uint8_t MyFrame::isGroup() const {
    return isGroupFrame(*this);
}

uint8_t MyFrame::isGraphicFrame() const {
    InterfacePtr<IFrameData> data(*this);
    return data && data->IsGraphic() && !data->IsTextFrame();
}

uint8_t MyFrame::isTextFrame() const {
    InterfacePtr<IFrameData> data(*this);
    return data && data->IsTextFrame();
}

UID MyFrame::getParent() const {
    return getParentRef(*this).GetUID();
}

MyFrame MyFrame::getChild() const {
    return MyFrame(getChildRef(*this));
}

UIDList MyFrame::children() const {
    UIDList result(database_);
    InterfacePtr<IHierarchy> hierarchy(*this);
    if (!hierarchy) return result;
    const int32_t count = hierarchy->GetChildCount();
    for (int32_t index = 0; index < count; ++index) result.Append(hierarchy->GetChildUID(index));
    return result;
}

UIDRef MyFrame::storyRef() const {
    return storyForFrame(*this);
}

uint8_t isGroupFrame(const UIDRef& item) {
    Utils<IPageItemTypeUtils> kinds;
    return kinds && kinds->IsGroup(item);
}

uint8_t isGraphicFrame(const UIDRef& item) {
    Utils<IPageItemTypeUtils> kinds;
    return kinds && kinds->IsGraphicFrame(item);
}

uint8_t isGraphic(const UIDRef& item) {
    Utils<IPageItemTypeUtils> kinds;
    return kinds && kinds->IsGraphic(item);
}

uint8_t isTextFrame(const UIDRef& item) {
    Utils<IPageItemTypeUtils> kinds;
    return kinds && kinds->IsTextFrame(item);
}

uint8_t isInlineFrame(const UIDRef& item) {
    Utils<IPageItemTypeUtils> kinds;
    return kinds && kinds->IsInline(item);
}

uint8_t isValidFrame(const UIDRef& item) {
    return item != UIDRef::gNull;
}

UIDRef getParentRef(const UIDRef& item) {
    InterfacePtr<IHierarchy> hierarchy(item);
    return hierarchy ? UIDRef(item.GetDataBase(), hierarchy->GetParentUID()) : UIDRef();
}

UIDRef getChildRef(const UIDRef& item) {
    InterfacePtr<IHierarchy> hierarchy(item);
    if (!hierarchy || hierarchy->GetChildCount() < 1) return UIDRef();
    return UIDRef(item.GetDataBase(), hierarchy->GetChildUID(0));
}

UID pageUIDForFrame(const UIDRef& item) {
    constexpr int32_t climbToThePage = 1;
    InterfacePtr<IHierarchy> hierarchy(item);
    Utils<IHierarchyUtils> pages;
    return hierarchy && pages ? pages->GetOwnerPageUID(hierarchy.get(), climbToThePage) : kInvalidUID;
}

UID pageUIDForObj(IPMUnknown* item) {
    return pageUIDForFrame(::GetUIDRef(item));
}

UID spreadUIDForFrame(const UIDRef& item) {
    InterfacePtr<IHierarchy> hierarchy(item);
    return hierarchy ? hierarchy->GetSpreadUID() : kInvalidUID;
}

UID spreadLayerUIDForFrame(const UIDRef& item) {
    InterfacePtr<IHierarchy> hierarchy(item);
    return hierarchy ? hierarchy->GetLayerUID() : kInvalidUID;
}

UID docLayerUIDForFrame(const UIDRef& item) {
    const UID spreadLayer = spreadLayerUIDForFrame(item);
    InterfacePtr<ISpreadLayer> layer(item.GetDataBase(), spreadLayer);
    return layer ? layer->GetDocLayerUID() : spreadLayer;
}

UID layerUIDForFrame(const UIDRef& item) {
    InterfacePtr<ISpreadLayer> layer(item.GetDataBase(), spreadLayerUIDForFrame(item));
    return layer ? layer->GetDocLayerUID() : kInvalidUID;
}

String layerNameForFrame(const UIDRef& item, UID* out) {
    const UID uid = layerUIDForFrame(item);
    if (out) *out = uid;
    InterfacePtr<IDocumentLayer> layer(item.GetDataBase(), uid);
    return layer ? stringWithPMString(layer->GetName()) : String();
}

ErrorCode deleteFrames(const UIDList& items) {
    return items.IsEmpty() ? kSuccess : processOnItems(kDeletePageItemsCmdBoss, items);
}

ErrorCode deleteFrame(const UIDRef& item) {
    return deleteFrames(UIDList(item));
}

}  // namespace vornaset
