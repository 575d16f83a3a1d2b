#pragma once
// Puts the paragraphs of a story into its columns, line by line, and says what found no room.

#include <memory>
#include <vector>

#include "desk/text/paragraph_cache.h"
#include "desk/text/text_columns.h"

namespace desk {

/// The paragraphs of one story as the filler asks for them.
class ParagraphSequence {
  public:
    virtual ~ParagraphSequence() = default;
    virtual uint32_t count() const = 0;
    /// The paragraph as it is set when it starts in that column; the spans are the filler's to put in. Good until the
    /// next call.
    virtual ParagraphSource& source(uint32_t index, const TextColumn& column) = 0;
    /// UTF-16 position in the story of the paragraph's first character, and of the one behind its carriage return.
    virtual int32_t start(uint32_t index) const = 0;
    virtual int32_t end(uint32_t index) const = 0;
    /// Attributes of the paragraph, and where the text goes on behind it.
    virtual const ResolvedAttributes& attributes(uint32_t index) const = 0;
    virtual ParagraphBreak breakBehind(uint32_t index) const = 0;
};

/// Lines of one paragraph in one column.
struct PlacedLines {
    std::shared_ptr<const LayoutParagraph> paragraph;
    uint32_t paragraphIndex = 0;
    uint32_t column = 0;
    uint32_t firstLine = 0;
    std::vector<double> baselines;
};

struct FilledColumns {
    std::vector<PlacedLines> places;  ///< in text order
    bool overset = false;
    int32_t composedLength = 0;
};

class FrameFiller {
  public:
    FrameFiller(ParagraphCache& paragraphs, const std::vector<TextColumn>& columns, ParagraphSequence& sequence)
        : paragraphs_(paragraphs), columns_(columns), sequence_(sequence) {}

    FilledColumns fill();

  private:
    /// Where the next line would stand.
    struct Cursor {
        uint32_t column = 0;
        bool started = false;   ///< the column holds a line
        double baseline = 0;    ///< of the last line
        double spaceAfter = 0;  ///< of the paragraph above
    };
    struct LinePlace {
        uint32_t column = 0;
        double baseline = 0;
    };
    struct Attempt {
        std::vector<LinePlace> lines;  ///< those that found room
        Cursor after;
        int mismatch = -1;             ///< line whose room differs from the assumed
        std::vector<LineSpan> wanted;  ///< of that line, and what those below it will likely find
        bool overset = false;
    };
    enum class SpanCheck { Strict, Ignored };

    bool atEnd(const Cursor& cursor) const { return cursor.column >= columns_.size(); }
    void nextColumn(Cursor& cursor) const;
    void obeyBreak(Cursor& cursor, ParagraphBreak where) const;
    bool placeLine(const LayoutParagraph& paragraph, uint32_t line, const ResolvedAttributes& attributes,
                   Cursor& cursor, LineSpan& span) const;
    double baselineOf(const LayoutParagraph& paragraph, uint32_t line, const ResolvedAttributes& attributes,
                      const Cursor& cursor) const;
    Attempt tryLines(const ParagraphSource& source, const LayoutParagraph& paragraph,
                     const ResolvedAttributes& attributes, Cursor cursor, SpanCheck check) const;
    void lookAhead(const LayoutLine& line, const Cursor& cursor, std::vector<LineSpan>& spans) const;
    uint32_t keptLines(const LayoutParagraph& paragraph, const ResolvedAttributes& attributes, uint32_t firstInColumn,
                       uint32_t placed, bool columnHadText) const;
    Attempt placeParagraph(uint32_t index, std::shared_ptr<const LayoutParagraph>& paragraph);
    bool pullBack(uint32_t index, const Attempt& attempt);
    void record(uint32_t index, const std::shared_ptr<const LayoutParagraph>& paragraph, const Attempt& attempt);

    ParagraphCache& paragraphs_;
    const std::vector<TextColumn>& columns_;
    ParagraphSequence& sequence_;
    Cursor cursor_;
    FilledColumns result_;
    std::vector<Cursor> before_;  ///< of each paragraph
    std::vector<size_t> placesBefore_;
    uint32_t pulledBack_ = 0;  ///< paragraphs below this were moved for what follows them already
};

/// Moves lines down as the frame asks. `places` are of one column.
void justifyVertically(const TextColumn& column, PlacedLines* first, PlacedLines* end);

}  // namespace desk
