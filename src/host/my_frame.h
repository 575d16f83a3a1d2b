#pragma once
// A page item of an open document: what kind it is, its family, how it is deleted. Free functions over a UIDRef do the
// work; MyFrame is the handle that callers hold. Every reading of a missing object gives the empty answer named here;
// nothing throws.

#include "host/api/types.h"
#include "support/values.h"

namespace vornaset {

/// Handle on one page item: the two fields of a UIDRef and nothing else, so that it stands wherever one is asked for.
/// Owns nothing; copying is free. Empty means a null database and UID 0.
class MyFrame : public UIDRef {
  public:
    MyFrame() = default;
    explicit MyFrame(const UIDRef& item) : UIDRef(item) {}
    /// The entry at an index from 0 of a list that holds anything; else empty.
    MyFrame(const UIDList& items, int32_t index);
    MyFrame(IDataBase* database, UID uid) : UIDRef(database, uid) {}
    /// Database and UID of a persistent object; empty for null.
    explicit MyFrame(IPMUnknown* object);

    // The kind. The group test is the host's page item service; the other two read the item's own frame data, so their
    // answers differ from the free functions of like names. 1 or 0; 0 for a missing item.
    uint8_t isGroup() const;
    /// Holds a graphic and is no text frame.
    uint8_t isGraphicFrame() const;
    uint8_t isTextFrame() const;

    UID getParent() const;     ///< 0 when missing
    MyFrame getChild() const;  ///< the first child; empty when there is none
    UIDList children() const;  ///< direct children, lowest first; empty when missing

    UIDRef storyRef() const;  ///< `storyForFrame`

    // Geometry and fit, told in host/frame_geometry.h.
    PMRect bounds(uint8_t mm) const;
    ErrorCode setBounds(PMRect& bounds, uint8_t mm) const;
    /// The item's inner bounds brought to the pasteboard: beside path and stroke bounds a third rectangle, which for a
    /// turned item is the bounds of the turned box.
    PMRect getRect() const;
    void setRect(const PMRect& rectangle) const;
    /// Logs "\t####\tfitFrameToContent: %d" on error.
    int16_t fitFrameToContent() const;
    /// Fits the frame's content proportionally, unlike the free function of this name. Logs
    /// "\t####\tfitContentToFrame: %d" on error.
    int16_t fitContentToFrame() const;

    // Text values under keys, kept with the item (records/tag_values.h has the store itself).
    String getTag(const char* key) const;   ///< null when absent
    int32_t getInt(const char* key) const;  ///< 0 when absent
    void setTag(const char* key, const String& value) const;
    void setTag(const String& key, const String& value) const;
    void setInt(const char* key, int32_t value) const;
    /// The value in UTF-8, null when absent. The text stands in a buffer of the calling thread that the next call on
    /// any frame reuses.
    const char* stringForKey(const char* key) const;
    void setStringForKey(const char* key, const char* value) const;  ///< value in UTF-8
};

// The kind of an item as the host's page item service sees it: 1 or 0; 0 without the service.
uint8_t isGroupFrame(const UIDRef& item);
uint8_t isGraphicFrame(const UIDRef& item);
uint8_t isGraphic(const UIDRef& item);
uint8_t isTextFrame(const UIDRef& item);
uint8_t isInlineFrame(const UIDRef& item);

/// 1 when the reference differs from `UIDRef::gNull` in UID or in database. The object itself isn't asked for.
uint8_t isValidFrame(const UIDRef& item);

/// The parent in the hierarchy; null database and UID 0 for a null database or an object without a hierarchy.
UIDRef getParentRef(const UIDRef& item);
/// The first child; null database and UID 0 for a null database, an object without a hierarchy or without a child.
UIDRef getChildRef(const UIDRef& item);

// Where the item is; 0 for a missing one.
UID pageUIDForFrame(const UIDRef& item);
UID pageUIDForObj(IPMUnknown* item);
UID spreadUIDForFrame(const UIDRef& item);
UID spreadLayerUIDForFrame(const UIDRef& item);
/// The document layer. For a spread layer that can't be asked the spread layer's own UID.
UID docLayerUIDForFrame(const UIDRef& item);
/// The same, but 0 for a spread layer that can't be asked.
UID layerUIDForFrame(const UIDRef& item);
/// That layer's name, null for none; its UID goes to `out` when that isn't null.
String layerNameForFrame(const UIDRef& item, UID* out);

/// Deletes all items of the list in one host command and gives its result. 0 for an empty list and when the command
/// can't be had.
ErrorCode deleteFrames(const UIDList& items);
ErrorCode deleteFrame(const UIDRef& item);

}  // namespace vornaset
