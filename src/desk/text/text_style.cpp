#include "desk/text/text_style.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace desk {
namespace {

/// Manual kerning beyond this many ems is the writer's mark for "not set".
constexpr double largestKerning = 100000;
/// Of a face without a space, thousandths of the em.
constexpr double usualSpace = 250;

/// Faces that stand in for a missing one are drawn as wide as text in the missing one runs, where that is known:
/// measured over whole paragraphs of documents that show both.
struct StandInWidth {
    const char* missing;
    const char* standIn;
    double scale;
};
constexpr StandInWidth standInWidths[] = {{"Minion Pro", "Liberation Serif", 0.988}};

double standInScale(const std::string& asked, const FontFace& used) {
    for (const StandInWidth& known : standInWidths)
        if (asked == known.missing && used.family() == known.standIn) return known.scale;
    return 1;
}

void add(std::vector<FontFeature>& features, const char* tag, uint32_t value) {
    FontFeature feature;
    std::memcpy(feature.tag, tag, 4);
    feature.value = value;
    features.push_back(feature);
}

bool hasManualKerning(const ResolvedAttributes& attributes) {
    return attributes.kerningValue != 0 && std::abs(attributes.kerningValue) < largestKerning;
}

void addFigures(std::vector<FontFeature>& features, FigureStyle figures) {
    if (figures == FigureStyle::Default) return;
    const bool tabular = figures == FigureStyle::TabularLining || figures == FigureStyle::TabularOldstyle;
    const bool lining = figures == FigureStyle::TabularLining || figures == FigureStyle::ProportionalLining;
    add(features, tabular ? "tnum" : "pnum", 1);
    add(features, lining ? "lnum" : "onum", 1);
}

void addPosition(std::vector<FontFeature>& features, CharacterPosition position) {
    switch (position) {
        case CharacterPosition::OTSuperscript:
            add(features, "sups", 1);
            break;
        case CharacterPosition::OTSubscript:
            add(features, "subs", 1);
            break;
        case CharacterPosition::OTNumerator:
            add(features, "numr", 1);
            break;
        case CharacterPosition::OTDenominator:
            add(features, "dnom", 1);
            break;
        default:
            break;
    }
}

std::vector<FontFeature> featuresOf(const ResolvedAttributes& a) {
    std::vector<FontFeature> features;
    if (!a.ligatures) {
        add(features, "liga", 0);
        add(features, "clig", 0);
    }
    if (a.kerningMethod == KerningMethod::None || hasManualKerning(a)) add(features, "kern", 0);
    if (!a.contextualAlternate) add(features, "calt", 0);
    if (a.discretionaryLigature) add(features, "dlig", 1);
    if (a.ordinal) add(features, "ordn", 1);
    if (a.fraction) add(features, "frac", 1);
    if (a.titling) add(features, "titl", 1);
    if (a.swash) add(features, "swsh", 1);
    if (a.slashedZero) add(features, "zero", 1);
    if (a.historical) add(features, "hist", 1);
    addFigures(features, a.figureStyle);
    addPosition(features, a.position);
    if (a.capitalization == Capitalization::CapToSmallCap) {
        add(features, "smcp", 1);
        add(features, "c2sc", 1);
    }
    for (int set = 0; set < 20; ++set) {
        if (!(a.stylisticSets >> set & 1)) continue;
        const char tag[5] = {'s', 's', static_cast<char>('0' + (set + 1) / 10), static_cast<char>('0' + (set + 1) % 10),
                             0};
        add(features, tag, 1);
    }
    return features;
}

}  // namespace

TextStyles::TextStyles(const Document& document, FontLibrary& fonts, Hyphenator& hyphenator)
    : document_(document), fonts_(fonts), hyphenator_(hyphenator) {}

void TextStyles::clear() {
    styles_.clear();
    paints_.clear();
}

const TextStyle& TextStyles::style(ParagraphFormatId paragraph, CharacterFormatId character) {
    std::unique_ptr<TextStyle>& known = styles_[uint64_t{paragraph} << 32 | character];
    if (known) return *known;
    known = std::make_unique<TextStyle>();
    known->attributes = std::make_shared<const ResolvedAttributes>(document_.resolved(paragraph, character));
    fill(*known, 1);
    if (known->attributes->capitalization == Capitalization::SmallCaps) {
        auto smaller = std::make_shared<TextStyle>(*known);
        fill(*smaller, document_.preferences.smallCapSize / 100);
        known->smallCapitals = std::move(smaller);
    }
    return *known;
}

void TextStyles::fill(TextStyle& style, double sizeScale) {
    const ResolvedAttributes& a = *style.attributes;
    const Preferences& preferences = document_.preferences;
    style.face = &fonts_.face(a.fontFamily, a.fontStyle);
    style.language = hyphenator_.language(a.language);
    style.shaping = shapingNumber(style);
    style.nominalSize = a.pointSize;
    style.size = a.pointSize * sizeScale;
    style.rise = a.baselineShift;
    if (a.position == CharacterPosition::Superscript) {
        style.size *= preferences.superscriptSize / 100;
        style.rise += a.pointSize * preferences.superscriptPosition / 100;
    } else if (a.position == CharacterPosition::Subscript) {
        style.size *= preferences.subscriptSize / 100;
        style.rise -= a.pointSize * preferences.subscriptPosition / 100;
    }
    style.horizontalScale = a.horizontalScale / 100 * standInScale(a.fontFamily, *style.face);
    style.verticalScale = a.verticalScale / 100;
    style.skew = a.skew;
    style.emUnit = style.size * style.horizontalScale / 1000;
    style.tracking = (a.tracking + (hasManualKerning(a) ? a.kerningValue : 0)) * style.emUnit;
    style.spaceGlyph = style.face->glyphForCharacter(U' ');
    style.spaceAdvance = (style.spaceGlyph ? style.face->glyphAdvance(style.spaceGlyph) : usualSpace) * style.emUnit;
    style.leading = a.leading.automatic ? a.pointSize * a.autoLeading / 100 : a.leading.value;
    style.ascent = style.face->ascent() * a.pointSize / 1000;
    style.capHeight = style.face->capHeight() * a.pointSize / 1000;
    style.xHeight = style.face->xHeight() * a.pointSize / 1000;
    style.paint = paintOf(a);
}

uint32_t TextStyles::shapingNumber(const TextStyle& style) {
    ShapingStyle wanted{style.face, style.language, featuresOf(*style.attributes)};
    const auto found = std::find(shapingStyles_.begin(), shapingStyles_.end(), wanted);
    if (found != shapingStyles_.end()) return static_cast<uint32_t>(found - shapingStyles_.begin());
    shapingStyles_.push_back(std::move(wanted));
    return static_cast<uint32_t>(shapingStyles_.size() - 1);
}

std::shared_ptr<const TextPaint> TextStyles::paintOf(const ResolvedAttributes& a) {
    TextPaint wanted;
    wanted.fillColor = a.fillColor;
    wanted.fillTint = a.fillTint;
    wanted.strokeColor = a.strokeColor;
    wanted.strokeTint = a.strokeTint;
    wanted.strokeWeight = a.strokeWeight;
    wanted.overprintFill = a.overprintFill;
    for (const auto& paint : paints_)
        if (*paint == wanted) return paint;
    paints_.push_back(std::make_shared<const TextPaint>(std::move(wanted)));
    return paints_.back();
}

}  // namespace desk
