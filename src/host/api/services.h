#pragma once
// Stateless services that UtilsBoss hands out.

#include "host/api/commands.h"
#include "host/api/documents.h"
#include "host/api/page_items.h"
#include "host/api/text.h"

class IPageItemTypeUtils : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IPAGEITEMTYPEUTILS;
    virtual bool IsGroup(const UIDRef& item) = 0;
    virtual bool IsGraphicFrame(const UIDRef& item) = 0;
    virtual bool IsGraphic(const UIDRef& item) = 0;
    virtual bool IsTextFrame(const UIDRef& item) = 0;
    virtual bool IsInline(const UIDRef& item) = 0;
};

class ILayoutUtils : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_ILAYOUTUTILS;
    /// No reference for the caller: good while the document is open. Null without an open document.
    virtual IDocument* GetFrontDocument() = 0;
    virtual void InvalidateViews(IDocument* document) = 0;  ///< null means the front document
};

class ITextUtils : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_ITEXTUTILS;
    /// A new empty story of a text story class; its UID.
    virtual UID CreateStory(IDataBase* database, int32_t flag, ClassID storyClass) = 0;
    /// A command that makes the target's content equal to the source's and keeps the target's frames, with a reference
    /// for the caller; null when it can't.
    virtual IPMCommand* QueryCopyStoryCommand(const UIDRef& source, const UIDRef& target, int32_t flag) = 0;
    virtual bool IsOverset(ITextFrameList* frames) = 0;
};

class IURIUtils : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IURIUTILS;
    virtual URI IDFileToURI(const IDFile& file) = 0;
};

class IFrameContentUtils : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IFRAMECONTENTUTILS;
    /// Makes an item without a parent the content of a frame, in the place of what the frame holds.
    virtual ErrorCode PutItemInFrame(IDataBase* database, UID item, UID frame, int32_t) = 0;
};

/// Brings content and frame together. An entry of a list is the frame, or the content inside one; a list that names
/// neither is a failure. The content keeps its place in the frame's path; nothing is deleted.
class IContentFitUtils : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_ICONTENTFITUTILS;
    virtual ErrorCode FitFrameToContent(const UIDList& items) = 0;
    /// Width and height each fill the frame.
    virtual ErrorCode FitContentToFrame(const UIDList& items) = 0;
    /// All of the content shows, in its own proportions.
    virtual ErrorCode FitContentProportionally(const UIDList& items) = 0;
    virtual ErrorCode CenterContent(const UIDList& items) = 0;
    /// All of the frame is covered, in the content's own proportions.
    virtual ErrorCode FillFrameProportionally(const UIDList& items) = 0;
};

class IGeometryUtils : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IGEOMETRYUTILS;
    /// Gives each item the rectangle of its place in the vector, in pasteboard points under the matrix: its path bounds
    /// (true) or its stroke bounds (false) are that afterwards. The content stays where it is.
    virtual ErrorCode Resize(const UIDList& items, const PMMatrix& matrix, bool pathBounds,
                             const K2Vector<PMRect>& rectangles) = 0;
};

/// Which point a transformation leaves in place; the default is the pasteboard's origin.
struct TransformReferencePoint {
    PMPoint point;
};

class ITransformUtils : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_ITRANSFORMUTILS;
    /// The items move with their content.
    virtual ErrorCode TransformItems(const UIDList& items, const PMMatrix& coordinateSpace,
                                     const TransformReferencePoint& around, const PMMatrix& transformation,
                                     int32_t mode) = 0;
};

class IHierarchyUtils : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IHIERARCHYUTILS;
    /// The page that an item lies on; 0 for none. The number is 1 for climbing up to the page.
    virtual UID GetOwnerPageUID(IHierarchy* item, int32_t) = 0;
};

class ILayerUtils : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_ILAYERUTILS;
    /// The layer that new content goes on, with a reference for the caller; null when the document has none.
    virtual IDocumentLayer* QueryActiveLayer(IDocument* document) = 0;
};

class IPageItemFactoryUtils : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IPAGEITEMFACTORYUTILS;
    /// A new rectangle frame on top of its parent's items, the rectangle under the matrix in the spread's points.
    /// UIDRef::gNull when it can't be made. Attribute type 0 is a frame without content type, the number behind is 1.
    virtual UIDRef CreateRectangle(const UIDRef& parent, const PMRect& rectangle, int32_t attributeType, int32_t,
                                   const PMMatrix& matrix) = 0;
};

class IGraphicAttributeUtils : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IGRAPHICATTRIBUTEUTILS;
    /// A command that sets the non-printing flag of the items, with a reference for the caller; null when it can't.
    virtual IPMCommand* QueryNonPrintingCommand(bool nonPrinting, const UIDList& items, int32_t, int32_t) = 0;
};

class IDocumentUtils : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IDOCUMENTUTILS;
    /// A new document. `created` is left alone on failure.
    virtual ErrorCode CreateDocument(UIDRef& created, const IDFile* file, int32_t, int32_t) = 0;
    /// `opened` is left alone on failure.
    virtual ErrorCode OpenDocument(UIDRef& opened, const IDFile& file, int32_t, int32_t, int32_t, int32_t sixth,
                                   int32_t seventh) = 0;
    virtual void CloseDocument(const UIDRef& document, int32_t) = 0;
    /// With a reference for the caller; null for a reference that names no open document.
    virtual IDocumentFileHandler* QueryFileHandler(const UIDRef& document) = 0;
};

/// The window in which a document is laid out.
class ILayoutWindow : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_ILAYOUTWINDOW;
    virtual void BringToFront() = 0;
};

class IWindowUtils : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IWINDOWUTILS;
    /// With a reference for the caller; null for a document that has no window.
    virtual ILayoutWindow* QueryLayoutWindow(IDataBase* database) = 0;
};

namespace UtilsBoss {
/// A service with a reference for the caller; null for one that the host doesn't know.
IPMUnknown* QueryUtils(PMIID service);
}  // namespace UtilsBoss

/// A service for the time of a scope.
template <class T>
class Utils : public InterfacePtr<T> {
  public:
    Utils() : InterfacePtr<T>(Adopt::Reference, static_cast<T*>(UtilsBoss::QueryUtils(T::kDefaultIID))) {}
};
