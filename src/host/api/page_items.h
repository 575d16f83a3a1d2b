#pragma once
// Page items: their family, their geometry, their content and their tags. Lengths are points.

#include "host/api/database.h"

/// Children count from 0, the lowest in the stacking order first. Of page items, spread layers and spreads. A text
/// frame's one child is its multi-column frame, whose children are the text columns; an empty picture frame has no
/// child.
class IHierarchy : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IHIERARCHY;
    virtual int32_t GetChildCount() = 0;
    virtual UID GetChildUID(int32_t index) = 0;         ///< 0 outside the list
    virtual IHierarchy* QueryChild(int32_t index) = 0;  ///< null outside the list
    virtual UID GetParentUID() = 0;
    virtual UID GetLayerUID() = 0;   ///< of the enclosing spread layer
    virtual UID GetSpreadUID() = 0;  ///< of the enclosing spread
};

/// Inner coordinates are the item's own.
class IGeometry : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IGEOMETRY;
    virtual PMRect GetPathBoundingBox(const PMMatrix& matrix) = 0;
    virtual PMRect GetStrokeBoundingBox(const PMMatrix& matrix) = 0;
    virtual PMRect GetInnerBounds() = 0;
    virtual PMMatrix InnerToPasteboard() = 0;
};

/// The bounds on the pasteboard of a rectangle in the item's inner coordinates.
PMRect TransformInnerRectToPasteboard(IGeometry* item, const PMRect& inner);

/// Of a page.
class IMargins : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IMARGINS;
    virtual PMRect GetMargins() = 0;  ///< distances from the page's left, top, right and bottom edge
};

class IFrameData : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IFRAMEDATA;
    virtual bool IsGraphic() = 0;
    virtual bool IsTextFrame() = 0;
    virtual UID GetTextContentUID() = 0;  ///< of the multi-column text frame, 0 for none
};

class IMultiColumnTextFrame : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IMULTICOLUMNTEXTFRAME;
    virtual int32_t TextStart() = 0;  ///< first text index that the frame shows
    virtual int32_t TextSpan() = 0;   ///< UTF-16 units
    virtual UID GetTextModelUID() = 0;
    virtual int32_t GetColumnCount() = 0;
};

/// Text under keys, kept with the document. An empty value and an absent key are the same.
class ITagStore : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_ITAGSTORE;
    virtual PMString GetTag(const char* key) = 0;
    virtual void SetTag(const char* key, const PMString& value) = 0;
};
