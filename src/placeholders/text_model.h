#pragma once
// One story of the host for the time of one substitution. Two views of the same text are kept in step: the host's text
// model, which has the characters with all their attributes, and a plain text, the mirror, in which finding and cutting
// are string operations. Every edit goes to both.
//
// Positions and lengths are UTF-16 units from 0 and the same numbers in both views. The text ends in a terminal
// carriage return, which the mirror holds too and the host never gives up.
//
// Objects are short-lived and stand on the stack. One built on nothing has no model: its operations do nothing or give
// their empty value. Positions outside the text and rows outside the rows are the caller's fault and end in a
// RangeException; nothing else throws.
//
// The scanning operations are in scanning.cpp, the substituting ones in substitution.cpp.

#include <string_view>

#include "host/api/text.h"
#include "placeholders/place_holder.h"
#include "support/values.h"

namespace vornaset {

class MyTextModel;

/// Has no content and no other use than in the callback's type.
struct MyTextAttrData {};
using TextAttributesCallback = unsigned char (*)(MyTextModel* text, MyTextAttrData& attributes, void* data);

class MyTextModel {
  public:
    /// On nothing for null.
    explicit MyTextModel(ITextModel* story);
    /// On nothing for an object without a text model.
    explicit MyTextModel(const UIDRef& story);
    MyTextModel(const MyTextModel&) = delete;
    MyTextModel& operator=(const MyTextModel&) = delete;

    /// No model, no rows, and `rmvEmptyLines` on.
    void init();
    /// The same, then takes a reference on the story, when there is one, and reads its text into the mirror.
    void setup(ITextModel* story);

    // --- Reading

    /// All characters with the terminal one, read from the host anew. Null without a model.
    String string() const;
    int32_t length() const;  ///< without the terminal character
    /// A range of the mirror.
    String substringWithRange(int64_t location, int64_t length) const;
    /// Read from the host. A character beyond U+FFFF gives its high surrogate.
    char16_t charAt(int32_t position) const;
    /// The one before the terminal character; 0 when there is none.
    char16_t lastChar() const;
    /// Composes the story and asks the host. True for a story that can't be asked.
    bool isOverset() const;

    const MutableString& mirror() const { return mirror_; }
    ITextModel* model() const { return model_.get(); }

    // --- Row state. Both throw RangeException for a row outside.

    void setRows(const Array& rows) { rows_ = rows; }
    const Array& rows() const { return rows_; }
    void setRow(int64_t number);
    void offsetRow(int64_t delta);
    int64_t row() const { return row_; }
    const Value& rowDict() const { return rowDict_; }

    // --- State of the line that is being worked on

    int32_t lineLen() const { return lineLen_; }  ///< with its carriage return; follows every edit
    void setLineLen(int32_t length) { lineLen_ = length; }
    char16_t punctChar() const { return punctChar_; }  ///< trailing punctuation, 0 for none
    uint8_t rmvEmptyLines() const { return rmvEmptyLines_; }
    void setRmvEmptyLines(uint8_t flag) { rmvEmptyLines_ = flag; }  ///< 1: a line that comes out empty goes

    // --- Editing

    /// Cuts the range out of both views. A range that would reach the terminal character goes from the mirror and stays
    /// in the host. Nothing for a length below 1.
    void deleteTextAt(int32_t position, int32_t length);
    /// Inserts with the attributes of the place, and a character style on top when one is named; text behind the insert
    /// takes no character style from it. The position behind the insert, or `position` when nothing went into the host.
    /// The flag isn't used.
    int32_t insertTextAt(int32_t position, const String& text, const String& charStyle, uint8_t flag);
    // A position of -1 means the end. A null name and one that the document doesn't have leave the text as it is.
    void applyCharStyle(const String& name, int32_t position, int32_t length);
    void applyParaStyle(const String& name, int32_t position, int32_t length);
    /// 0 for none.
    UID paraStyle(const String& name) const;
    void addCR();           ///< before the terminal character
    void deleteLastChar();  ///< the one before the terminal character
    /// Empties the story's main text in the host alone; mirror and line state stay.
    void clear();

    /// For looking at while debugging: writes the mirror as UTF-8 to a file of this name in the user's temporary
    /// folder, over what stands there, and opens the file in the user's application for it.
    void log(const String& fileName) const;

    // --- Reserved: neither changes a character's attributes. Both beep and tell the system log "####\tsetAttributes".
    void setAttributes(int32_t position, int32_t length, const String& attributes);
    void setAttributes(int32_t position, int32_t length, const Dictionary& attributes);
    /// Does nothing and never calls back.
    void enumTextAttributes(TextAttributesCallback callback, void* data) const;

    // --- Scanning (changes the row state)

    /// The paragraphs that hold placeholders, in text order. A key that ends in "#" moves the following placeholders to
    /// the next row, which must be there.
    std::vector<PlaceHolderLine> lines();
    void addPlaceHolders(PlaceHolderLine& line);
    /// Of one line's text; `position` is the line's place in the story. The third argument has no effect.
    std::vector<VornasetPlaceHolder> placeHoldersForLine(std::u16string_view text, int64_t position, int64_t spare);

    // --- Substituting

    /// The row's value of a column, else the rule of that name, else "". Never null.
    String stringForMapping(const String& key, const Value& row) const;
    /// The name of the value's character style, or null.
    String styleForKey(const String& key, const Value& row) const;
    /// The value of a placeholder's key, whose last character may be "#" or a space; the style's name in `style` when
    /// that isn't null. An empty key gives "" and leaves the style alone.
    String stringAndStyleForKey(const String& key, String* style, const Value& row) const;
    void doPlaceHolder(const VornasetPlaceHolder& placeHolder);
    /// Sets `punctChar` from the line's last placeholder: the one character of its key when no column has that name.
    void doLastPlaceHolder(const std::vector<VornasetPlaceHolder>& placeHolders, int64_t index);
    void doLine(const PlaceHolderLine& line);
    /// Deletes the spaces that end at a position. Position 0 is never looked at.
    void rmvSpacesBackwards(int32_t position);

  private:
    int32_t totalLength() const { return model_ ? model_->TotalLength() : 0; }
    std::u16string_view mirrorRange(int64_t location, int64_t length) const;

    InterfacePtr<ITextModel> model_;
    MutableString mirror_;
    Array rows_;
    int64_t row_ = 0;
    Value rowDict_;
    int32_t lineLen_ = 0;
    char16_t punctChar_ = 0;
    uint8_t rmvEmptyLines_ = 1;
};

}  // namespace vornaset
