#pragma once
// The attributes of text: a sparse set as styles and ranges carry it, and the full set that the cascade ends in.

#include <optional>
#include <string>
#include <vector>

namespace desk {

/// Baseline to baseline in points; automatic is the paragraph's autoLeading percentage of the point size.
struct Leading {
    bool automatic = true;
    double value = 0;
    bool operator==(const Leading&) const = default;
};

enum class KerningMethod { Metrics, Optical, None };
enum class Capitalization { Normal, SmallCaps, AllCaps, CapToSmallCap, LowerCase };
enum class CharacterPosition { Normal, Superscript, Subscript, OTSuperscript, OTSubscript, OTNumerator, OTDenominator };
enum class FigureStyle { Default, TabularLining, ProportionalLining, TabularOldstyle, ProportionalOldstyle };
/// On characters: where the text after this paragraph end goes on. On paragraphs: where the paragraph has to start.
enum class ParagraphBreak { Anywhere, NextColumn, NextFrame, NextPage, NextOddPage, NextEvenPage };
enum class Justification {
    Left,
    Center,
    Right,
    LeftJustified,
    CenterJustified,
    RightJustified,
    FullyJustified,
    ToBindingSide,
    AwayFromBindingSide
};
enum class TabAlignment { Left, Center, Right, Character };
enum class ListType { None, Bullet, Numbered };

struct TabStop {
    double position = 0;  ///< points from the column's left edge
    TabAlignment alignment = TabAlignment::Left;
    std::u16string alignmentCharacter;
    std::u16string leader;
    bool operator==(const TabStop&) const = default;
};

/// A sparse set: what a style or a range says itself.
struct TextAttributes {
#define DESK_ATTRIBUTE(type, name, initial) std::optional<type> name;
#include "desk/model/attributes.def"
#undef DESK_ATTRIBUTE

    /// Takes every attribute that `stronger` has; keeps the others.
    void overlay(const TextAttributes& stronger);
    /// Drops every attribute that `other` has.
    void subtract(const TextAttributes& other);
    bool isEmpty() const;
    /// Equal sets have equal hashes.
    size_t hash() const;
    bool operator==(const TextAttributes&) const = default;
};

/// The full set: every attribute has a value.
struct ResolvedAttributes {
#define DESK_ATTRIBUTE(type, name, initial) type name = initial;
#include "desk/model/attributes.def"
#undef DESK_ATTRIBUTE

    /// Takes every attribute that `stronger` has.
    void apply(const TextAttributes& stronger);
    bool operator==(const ResolvedAttributes&) const = default;
};

}  // namespace desk
