#include "merge/template_frames.h"

#include "host/api/host.h"
#include "host/doc_files.h"
#include "host/doc_pages.h"
#include "host/enumerators.h"
#include "host/my_doc.h"
#include "host/my_frame.h"
#include "records/merge_records.h"
#include "support/log.h"

namespace vornaset {

namespace {

// The reserved place: 3 mm, 9 mm, 10.2 mm and 22.479 mm as the nearest single-precision numbers of points.
constexpr double kHorizontalOffset = 8.503936767578125;
constexpr double kVerticalOffset = 25.511810302734375;
constexpr double kWidth = 28.91338539123535;
constexpr double kHeight = 63.720001220703125;

constexpr int64_t kFirstNumber = 1;

/// The spread layer of the document's active layer on its first spread; null where there is none. The bounds of the
/// spread's pages go to `pages`.
InterfacePtr<ISpreadLayer> activeLayerOfFirstSpread(IDocument* document, PMRect& pages) {
    Utils<ILayerUtils> layers;
    InterfacePtr<IDocumentLayer> active(Adopt::Reference, layers ? layers->QueryActiveLayer(document) : nullptr);
    InterfacePtr<ISpread> spread(spreadRefForDoc(document, 0));
    if (!active || !spread) return {};
    pages = getPagesBounds(spread.get());
    return InterfacePtr<ISpreadLayer>(Adopt::Reference, spread->QueryLayer(active.get(), LayerPart::Content));
}

ErrorCode processNonPrinting(const UIDList& frames, uint8_t print) {
    Utils<IGraphicAttributeUtils> attributes;
    InterfacePtr<IPMCommand> command(
        Adopt::Reference, attributes ? attributes->QueryNonPrintingCommand(print == 0, frames, 0, 0) : nullptr);
    return command ? CmdUtils::ProcessCommand(command.get()) : kSuccess;
}

unsigned char collectStaticFrame(UIDRef& frame, void* uids) {
    if (frameNumberForFrame(frame) == 0) static_cast<UIDList*>(uids)->Append(frame.GetUID());
    return 1;
}

}  // namespace

// --- The OMR frame

MyRect omrRectForPoint(const MyPoint& point, uint8_t addOffset) {
    MyRect rectangle{point.x, point.y, static_cast<float>(kWidth), static_cast<float>(kHeight)};
    if (addOffset == 1) {
        rectangle.x += static_cast<float>(kHorizontalOffset);
        rectangle.y += static_cast<float>(kVerticalOffset);
    }
    return rectangle;
}

void createOMRFrame() {
    constexpr int32_t attributeType = 0;
    constexpr int32_t fourthArgument = 1;
    IDocument* document = frontDoc();
    if (!document) return;
    PMRect place;
    InterfacePtr<ISpreadLayer> layer = activeLayerOfFirstSpread(document, place);
    Utils<IPageItemFactoryUtils> factory;
    if (!layer || !factory) return;
    place = {place.left + kHorizontalOffset, place.top + kVerticalOffset, place.right + kHorizontalOffset,
             place.bottom + kVerticalOffset};
    place.SetWidth(kWidth);
    place.SetHeight(kHeight);
    const UIDRef parent(::GetDataBase(document), ::GetUID(layer.get()));
    const UIDRef frame = factory->CreateRectangle(parent, place, attributeType, fourthArgument, PMMatrix());
    if (!frame.GetDataBase() || frame.GetUID() == kInvalidUID) return;
    setIntegerForNode(frame, u"frameNum", kFirstNumber);
    setIntegerForNode(frame, u"omr", kFirstNumber);
    redrawDoc(static_cast<IDocument*>(nullptr));
}

// --- Spreads

uint8_t createSpreads(const UIDRef& document, const PMRect& pageBounds, const UIDRef& ref, int32_t count) {
    constexpr int32_t behindTheLast = -1;
    InterfacePtr<IPMCommand> command(Adopt::Reference, CmdUtils::CreateCommand(kNewSpreadCmdBoss));
    InterfacePtr<INewSpreadCmdData> spread(command.get());
    InterfacePtr<INewSpreadReferenceCmdData> reference(command.get());
    InterfacePtr<INewSpreadOptionCmdData> option(command.get());
    if (!spread || !reference || !option) return 0;
    NewPageRecord page;
    page.width = pageBounds.Width();
    page.height = pageBounds.Height();
    spread->Set(document, count, behindTheLast, 0, pageCntForSpread(document, 0), 0, 0, 0, page);
    reference->Set(ref, 1);
    option->Set(-1);
    const ErrorCode failure = CmdUtils::ProcessCommand(command.get());
    if (failure != kSuccess) MyLog("\t####\tcreateSpreads: %d", failure);
    return failure == kSuccess;
}

void deleteSpreads(const UIDList& spreads) {
    if (spreads.IsEmpty()) return;
    InterfacePtr<IPMCommand> command(Adopt::Reference, CmdUtils::CreateCommand(kDeleteSpreadCmdBoss));
    if (!command) return;
    command->SetItemList(spreads);
    CmdUtils::ProcessCommand(command.get());
}

// --- Frames

void removeStaticFrames(const UIDRef& document) {
    // All are known before the first goes: no item vanishes during the walk.
    UIDList frames(document.GetDataBase());
    EnumBoxes(document, collectStaticFrame, &frames);
    for (int32_t index = 0; index < frames.Length(); ++index) deleteFrame(frames.GetRef(index));
}

void setPrintingForFrame(const UIDRef& frame, uint8_t print) {
    processNonPrinting(UIDList(frame), print);
}

void setPrintingForFrames(const UIDRef& anyInDoc, const Array& uids, uint8_t print) {
    UIDList frames(anyInDoc.GetDataBase());
    for (const Value& uid : uids) frames.Append(frameWithNumber(uid.number(), anyInDoc).GetUID());
    if (!frames.IsEmpty()) processNonPrinting(frames, print);
}

}  // namespace vornaset
