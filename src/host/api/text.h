#pragma once
// Stories. Positions and lengths are UTF-16 units from 0. The text ends in a terminal carriage return that can't be
// deleted.

#include "host/api/database.h"

class ITextFrameList;

enum class AttributeStrand { Character, Paragraph };

/// A run of the text that lies together in memory, good until the next edit of the story.
struct TextChunk {
    const char16_t* text = nullptr;
    int32_t length = 0;
};

class ITextModel : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_ITEXTMODEL;
    virtual int32_t TotalLength() = 0;                ///< with the terminal character
    virtual int32_t GetPrimaryStoryThreadSpan() = 0;  ///< the story's main text, with the terminal character
    /// From a position on; empty outside the text.
    virtual TextChunk GetChunk(int32_t position) = 0;
    virtual void Insert(int32_t position, const WideString& text) = 0;
    virtual void Delete(int32_t position, int32_t length) = 0;
    /// Sets the style of a range. `replace` puts it in place of the one there; `override` drops local overrides of what
    /// the style itself defines. A length of 0 sets the style of what is inserted there next.
    virtual void ApplyStyle(int32_t position, int32_t length, UID style, AttributeStrand strand, bool replace,
                            bool override) = 0;
    virtual ITextFrameList* QueryFrameList() = 0;
};

/// Reads characters forwards from a position. Past the end it reads 0.
class TextIterator {
  public:
    TextIterator(ITextModel* model, int32_t position) : model_(model), position_(position) {}
    /// The code point at the place; a low surrogate read by itself gives its own value.
    uint32_t operator*() const;
    TextIterator& operator+=(int32_t units) {
        position_ += units;
        return *this;
    }
    TextIterator& operator++();  ///< to the next code point
    int32_t Position() const { return position_; }

  private:
    ITextModel* model_;
    int32_t position_;
};

/// The text columns that show a story, in reading order. An entry's parent's parent is the page item.
class ITextFrameList : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_ITEXTFRAMELIST;
    virtual int32_t GetFrameCount() = 0;
    virtual UID GetNthFrameUID(int32_t index) = 0;                   ///< 0 outside the list
    virtual int32_t GetFrameIndexContaining(int32_t textIndex) = 0;  ///< -1 for text that no column shows
};

class IFrameListComposer : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IFRAMELISTCOMPOSER;
    virtual ErrorCode RecomposeThruLastFrame() = 0;
};

struct OwnedItemRecord {
    int32_t position = 0;
    UID item;
};

/// What stands in the text and holds a page item: its presence is the statement. The object's IHierarchy has the item
/// as its one child.
class IAnchoredObject : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IANCHOREDOBJECT;
};

/// What is anchored in the text. Present on a story that holds anything.
class IOwnedItemStrand : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IOWNEDITEMSTRAND;
    /// Appends the anchored objects from start up to and including end, in text order.
    virtual void CollectOwnedItems(int32_t start, int32_t end, K2Vector<OwnedItemRecord>& items) = 0;
};

/// Names of one kind of style, an interface of a workspace.
class IStyleNameTable : public IPMUnknown {
  public:
    virtual UID FindByName(const PMString& name) = 0;  ///< 0 for none
};
