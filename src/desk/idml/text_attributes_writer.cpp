#include "desk/idml/text_attributes_writer.h"

#include "desk/idml/values.h"
#include "desk/idml/xml_source.h"

namespace desk {
namespace {

const char* textOf(KerningMethod value) {
    constexpr const char* words[] = {"$ID/Metrics", "$ID/Optical", "$ID/None"};
    return words[static_cast<size_t>(value)];
}

const char* textOf(Capitalization value) {
    constexpr const char* words[] = {"Normal", "SmallCaps", "AllCaps", "CapToSmallCap", "LowerCase"};
    return words[static_cast<size_t>(value)];
}

const char* textOf(CharacterPosition value) {
    constexpr const char* words[] = {"Normal",      "Superscript", "Subscript",    "OTSuperscript",
                                     "OTSubscript", "OTNumerator", "OTDenominator"};
    return words[static_cast<size_t>(value)];
}

const char* textOf(FigureStyle value) {
    constexpr const char* words[] = {"Default", "TabularLining", "ProportionalLining", "TabularOldstyle",
                                     "ProportionalOldstyle"};
    return words[static_cast<size_t>(value)];
}

const char* textOf(ParagraphBreak value) {
    constexpr const char* words[] = {"Anywhere", "NextColumn", "NextFrame", "NextPage", "NextOddPage", "NextEvenPage"};
    return words[static_cast<size_t>(value)];
}

const char* textOf(Justification value) {
    constexpr const char* words[] = {"LeftAlign",      "CenterAlign",     "RightAlign",
                                     "LeftJustified",  "CenterJustified", "RightJustified",
                                     "FullyJustified", "ToBindingSide",   "AwayFromBindingSide"};
    return words[static_cast<size_t>(value)];
}

const char* textOf(ListType value) {
    constexpr const char* words[] = {"NoList", "BulletList", "NumberedList"};
    return words[static_cast<size_t>(value)];
}

const char* textOf(TabAlignment value) {
    constexpr const char* words[] = {"LeftAlign", "CenterAlign", "RightAlign", "CharacterAlign"};
    return words[static_cast<size_t>(value)];
}

const char* textOf(bool value) {
    return value ? "true" : "false";
}

std::string textOf(double value) {
    return numberText(value);
}

std::string textOf(int value) {
    return std::to_string(value);
}

const std::string& textOf(const std::string& value) {
    return value;
}

/// The codes for characters that list text can't hold as they are.
std::string listText(const std::u16string& text) {
    std::u16string coded;
    for (char16_t c : text) {
        if (c == u'\t')
            coded += u"^t";
        else if (c == u'^')
            coded += u"^^";
        else
            coded += c;
    }
    return toUtf8(coded);
}

class Writer {
  public:
    explicit Writer(const TextAttributes& attributes) : attributes_(attributes) {}

    WrittenAttributes run() {
        writeCharacters();
        writeCharacterProperties();
        writeParagraphs();
        writeHyphenationAndKeeps();
        writeRules();
        writeLists();
        return std::move(written_);
    }

  private:
    using A = TextAttributes;

    void tag(const char* name, const std::string& value) {
        written_.tag += std::string(" ") + name + "=\"" + escapedAttribute(value) + "\"";
    }
    template <class T>
    void tag(const char* name, std::optional<T> A::*field) {
        if (attributes_.*field) tag(name, std::string(textOf(*(attributes_.*field))));
    }
    void property(const char* name, const char* type, const std::string& value) {
        written_.properties +=
            std::string("<") + name + " type=\"" + type + "\">" + escapedText(value) + "</" + name + ">";
    }
    /// A swatch by its id, or the word that stands for the text's own colour.
    void colour(const char* name, std::optional<std::string> A::*field) {
        const std::optional<std::string>& value = attributes_.*field;
        if (value) property(name, value->find('/') == std::string::npos ? "string" : "object", *value);
    }

    void writeCharacters() {
        tag("FontStyle", &A::fontStyle);
        tag("PointSize", &A::pointSize);
        tag("KerningMethod", &A::kerningMethod);
        tag("KerningValue", &A::kerningValue);
        tag("Tracking", &A::tracking);
        tag("HorizontalScale", &A::horizontalScale);
        tag("VerticalScale", &A::verticalScale);
        tag("BaselineShift", &A::baselineShift);
        tag("Skew", &A::skew);
        tag("Capitalization", &A::capitalization);
        tag("Position", &A::position);
        tag("Underline", &A::underline);
        tag("UnderlineOffset", &A::underlineOffset);
        tag("UnderlineWeight", &A::underlineWeight);
        tag("UnderlineTint", &A::underlineTint);
        tag("StrikeThru", &A::strikeThrough);
        tag("StrikeThroughOffset", &A::strikeThroughOffset);
        tag("StrikeThroughWeight", &A::strikeThroughWeight);
        tag("StrikeThroughTint", &A::strikeThroughTint);
        tag("Ligatures", &A::ligatures);
        tag("NoBreak", &A::noBreak);
        tag("FillColor", &A::fillColor);
        tag("FillTint", &A::fillTint);
        tag("StrokeColor", &A::strokeColor);
        tag("StrokeWeight", &A::strokeWeight);
        tag("StrokeTint", &A::strokeTint);
        tag("OverprintFill", &A::overprintFill);
        tag("AppliedLanguage", &A::language);
        tag("OTFFigureStyle", &A::figureStyle);
        tag("OTFOrdinal", &A::ordinal);
        tag("OTFFraction", &A::fraction);
        tag("OTFDiscretionaryLigature", &A::discretionaryLigature);
        tag("OTFTitling", &A::titling);
        tag("OTFSwash", &A::swash);
        tag("OTFSlashedZero", &A::slashedZero);
        tag("OTFHistorical", &A::historical);
        tag("OTFContextualAlternate", &A::contextualAlternate);
        tag("OTFStylisticSets", &A::stylisticSets);
        tag("ParagraphBreakType", &A::paragraphBreak);
    }

    void writeCharacterProperties() {
        if (attributes_.fontFamily) property("AppliedFont", "string", *attributes_.fontFamily);
        if (const auto& leading = attributes_.leading)
            property("Leading", leading->automatic ? "enumeration" : "unit",
                     leading->automatic ? "Auto" : numberText(leading->value));
        colour("UnderlineColor", &A::underlineColor);
        colour("StrikeThroughColor", &A::strikeThroughColor);
    }

    void writeParagraphs() {
        tag("AutoLeading", &A::autoLeading);
        tag("Justification", &A::justification);
        tag("SingleWordJustification", &A::singleWordJustification);
        tag("LeftIndent", &A::leftIndent);
        tag("RightIndent", &A::rightIndent);
        tag("FirstLineIndent", &A::firstLineIndent);
        tag("LastLineIndent", &A::lastLineIndent);
        tag("SpaceBefore", &A::spaceBefore);
        tag("SpaceAfter", &A::spaceAfter);
        if (attributes_.singleLineComposer)
            tag("Composer", *attributes_.singleLineComposer ? "HL Single" : "HL Composer");
        tag("DesiredWordSpacing", &A::desiredWordSpacing);
        tag("MinimumWordSpacing", &A::minimumWordSpacing);
        tag("MaximumWordSpacing", &A::maximumWordSpacing);
        tag("DesiredLetterSpacing", &A::desiredLetterSpacing);
        tag("MinimumLetterSpacing", &A::minimumLetterSpacing);
        tag("MaximumLetterSpacing", &A::maximumLetterSpacing);
        tag("DesiredGlyphScaling", &A::desiredGlyphScaling);
        tag("MinimumGlyphScaling", &A::minimumGlyphScaling);
        tag("MaximumGlyphScaling", &A::maximumGlyphScaling);
        if (attributes_.alignToBaselineGrid)
            tag("GridAlignment", *attributes_.alignToBaselineGrid ? "AlignBaseline" : "None");
        if (attributes_.rightToLeft)
            tag("ParagraphDirection", *attributes_.rightToLeft ? "RightToLeftDirection" : "LeftToRightDirection");
        if (attributes_.tabStops) writeTabStops(*attributes_.tabStops);
    }

    void writeTabStops(const std::vector<TabStop>& stops) {
        std::string list;
        for (const TabStop& stop : stops) {
            const auto field = [&](const char* name, const char* type, const std::string& value) {
                list += std::string("<") + name + " type=\"" + type + "\">" + escapedText(value) + "</" + name + ">";
            };
            list += "<ListItem type=\"record\">";
            field("Alignment", "enumeration", textOf(stop.alignment));
            field("AlignmentCharacter", "string", toUtf8(stop.alignmentCharacter));
            field("Leader", "string", toUtf8(stop.leader));
            field("Position", "unit", numberText(stop.position));
            list += "</ListItem>";
        }
        written_.properties += "<TabList type=\"list\">" + list + "</TabList>";
    }

    void writeHyphenationAndKeeps() {
        tag("Hyphenation", &A::hyphenation);
        tag("HyphenateWordsLongerThan", &A::hyphenateWordsLongerThan);
        tag("HyphenateAfterFirst", &A::hyphenateAfterFirst);
        tag("HyphenateBeforeLast", &A::hyphenateBeforeLast);
        tag("HyphenateLadderLimit", &A::hyphenateLadderLimit);
        tag("HyphenationZone", &A::hyphenationZone);
        tag("HyphenWeight", &A::hyphenWeight);
        tag("HyphenateCapitalizedWords", &A::hyphenateCapitalizedWords);
        tag("HyphenateLastWord", &A::hyphenateLastWord);
        tag("HyphenateAcrossColumns", &A::hyphenateAcrossColumns);
        tag("KeepWithNext", &A::keepWithNext);
        tag("KeepLinesTogether", &A::keepLinesTogether);
        tag("KeepFirstLines", &A::keepFirstLines);
        tag("KeepLastLines", &A::keepLastLines);
        tag("KeepAllLinesTogether", &A::keepAllLinesTogether);
        tag("StartParagraph", &A::startParagraph);
    }

    void writeRules() {
        tag("RuleAbove", &A::ruleAbove);
        tag("RuleAboveLineWeight", &A::ruleAboveWeight);
        tag("RuleAboveOffset", &A::ruleAboveOffset);
        tag("RuleAboveLeftIndent", &A::ruleAboveLeftIndent);
        tag("RuleAboveRightIndent", &A::ruleAboveRightIndent);
        tag("RuleAboveTint", &A::ruleAboveTint);
        colour("RuleAboveColor", &A::ruleAboveColor);
        if (attributes_.ruleAboveTextWidth) tag("RuleAboveWidth", widthText(*attributes_.ruleAboveTextWidth));
        tag("RuleBelow", &A::ruleBelow);
        tag("RuleBelowLineWeight", &A::ruleBelowWeight);
        tag("RuleBelowOffset", &A::ruleBelowOffset);
        tag("RuleBelowLeftIndent", &A::ruleBelowLeftIndent);
        tag("RuleBelowRightIndent", &A::ruleBelowRightIndent);
        tag("RuleBelowTint", &A::ruleBelowTint);
        colour("RuleBelowColor", &A::ruleBelowColor);
        if (attributes_.ruleBelowTextWidth) tag("RuleBelowWidth", widthText(*attributes_.ruleBelowTextWidth));
    }
    static std::string widthText(bool ofText) { return ofText ? "TextWidth" : "ColumnWidth"; }

    void writeLists() {
        tag("BulletsAndNumberingListType", &A::listType);
        if (attributes_.bulletTextAfter) tag("BulletsTextAfter", listText(*attributes_.bulletTextAfter));
        if (attributes_.numberingExpression) tag("NumberingExpression", toUtf8(*attributes_.numberingExpression));
        tag("NumberingStartAt", &A::numberingStartAt);
        tag("NumberingContinue", &A::numberingContinue);
        if (!attributes_.bulletCharacter || attributes_.bulletCharacter->empty()) return;
        const std::u16string& bullet = *attributes_.bulletCharacter;
        const bool isPair = bullet.size() > 1 && bullet[0] >= 0xD800 && bullet[0] < 0xDC00;
        const uint32_t code = isPair ? 0x10000u + ((bullet[0] - 0xD800u) << 10) + (bullet[1] - 0xDC00u) : bullet[0];
        written_.properties +=
            "<BulletChar BulletCharacterType=\"UnicodeOnly\" BulletCharacterValue=\"" + std::to_string(code) + "\"/>";
    }

    const TextAttributes& attributes_;
    WrittenAttributes written_;
};

}  // namespace

WrittenAttributes writeTextAttributes(const TextAttributes& attributes) {
    return Writer(attributes).run();
}

}  // namespace desk
