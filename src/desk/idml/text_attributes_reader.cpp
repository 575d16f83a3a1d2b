#include "desk/idml/text_attributes_reader.h"

#include <algorithm>

#include "desk/idml/values.h"

namespace desk {
namespace {

using Setter = void (*)(TextAttributes&, const std::string&);
template <class T>
using Field = std::optional<T> TextAttributes::*;

struct Rule {
    bool ofParagraphs = false;
    Setter set = nullptr;
};

template <class T>
struct Word {
    std::string_view name;
    T value;
};

template <class T, size_t count>
std::optional<T> find(const Word<T> (&words)[count], std::string_view name) {
    for (const Word<T>& word : words)
        if (word.name == name) return word.value;
    return {};
}

std::optional<KerningMethod> meaning(std::string_view text, KerningMethod) {
    static constexpr Word<KerningMethod> words[] = {
        {"$ID/Metrics", KerningMethod::Metrics}, {"Metrics", KerningMethod::Metrics},
        {"$ID/Optical", KerningMethod::Optical}, {"Optical", KerningMethod::Optical},
        {"$ID/None", KerningMethod::None},       {"None", KerningMethod::None}};
    return find(words, text);
}

std::optional<Capitalization> meaning(std::string_view text, Capitalization) {
    using enum Capitalization;
    static constexpr Word<Capitalization> words[] = {{"Normal", Normal},
                                                     {"SmallCaps", SmallCaps},
                                                     {"AllCaps", AllCaps},
                                                     {"CapToSmallCap", CapToSmallCap},
                                                     {"LowerCase", LowerCase}};
    return find(words, text);
}

std::optional<CharacterPosition> meaning(std::string_view text, CharacterPosition) {
    using enum CharacterPosition;
    static constexpr Word<CharacterPosition> words[] = {{"Normal", Normal},
                                                        {"Superscript", Superscript},
                                                        {"Subscript", Subscript},
                                                        {"OTSuperscript", OTSuperscript},
                                                        {"OTSubscript", OTSubscript},
                                                        {"OTNumerator", OTNumerator},
                                                        {"OTDenominator", OTDenominator}};
    return find(words, text);
}

std::optional<FigureStyle> meaning(std::string_view text, FigureStyle) {
    using enum FigureStyle;
    static constexpr Word<FigureStyle> words[] = {{"Default", Default},
                                                  {"TabularLining", TabularLining},
                                                  {"ProportionalLining", ProportionalLining},
                                                  {"TabularOldstyle", TabularOldstyle},
                                                  {"ProportionalOldstyle", ProportionalOldstyle}};
    return find(words, text);
}

std::optional<ParagraphBreak> meaning(std::string_view text, ParagraphBreak) {
    using enum ParagraphBreak;
    static constexpr Word<ParagraphBreak> words[] = {{"Anywhere", Anywhere},       {"NextColumn", NextColumn},
                                                     {"NextFrame", NextFrame},     {"NextPage", NextPage},
                                                     {"NextOddPage", NextOddPage}, {"NextEvenPage", NextEvenPage}};
    return find(words, text);
}

std::optional<Justification> meaning(std::string_view text, Justification) {
    using enum Justification;
    static constexpr Word<Justification> words[] = {{"LeftAlign", Left},
                                                    {"CenterAlign", Center},
                                                    {"RightAlign", Right},
                                                    {"LeftJustified", LeftJustified},
                                                    {"CenterJustified", CenterJustified},
                                                    {"RightJustified", RightJustified},
                                                    {"FullyJustified", FullyJustified},
                                                    {"ToBindingSide", ToBindingSide},
                                                    {"AwayFromBindingSide", AwayFromBindingSide}};
    return find(words, text);
}

std::optional<ListType> meaning(std::string_view text, ListType) {
    static constexpr Word<ListType> words[] = {
        {"NoList", ListType::None}, {"BulletList", ListType::Bullet}, {"NumberedList", ListType::Numbered}};
    return find(words, text);
}

std::optional<TabAlignment> meaning(std::string_view text, TabAlignment) {
    static constexpr Word<TabAlignment> words[] = {{"LeftAlign", TabAlignment::Left},
                                                   {"CenterAlign", TabAlignment::Center},
                                                   {"RightAlign", TabAlignment::Right},
                                                   {"CharacterAlign", TabAlignment::Character}};
    return find(words, text);
}

std::optional<Leading> meaning(std::string_view text, Leading) {
    if (text == "Auto") return Leading{};
    const auto value = toNumber(text);
    return value && *value >= 0 ? std::optional(Leading{false, *value}) : std::nullopt;
}

/// The codes that list text may hold for characters which can't be typed.
std::u16string listText(const std::string& text) {
    static constexpr Word<char16_t> codes[] = {{"t", u'\t'},  {"m", 0x2003}, {">", 0x2002}, {"<", 0x2009},
                                               {"s", 0x00A0}, {"n", 0x2028}, {"^", u'^'}};
    const std::u16string written = toUtf16(text);
    std::u16string result;
    for (size_t i = 0; i < written.size(); ++i) {
        const bool isCode = written[i] == u'^' && i + 1 < written.size() && written[i + 1] < 0x80;
        const char code = isCode ? static_cast<char>(written[i + 1]) : '\0';
        const auto meant = isCode ? find(codes, std::string_view(&code, 1)) : std::nullopt;
        result += meant.value_or(written[i]);
        if (meant) ++i;
    }
    return result;
}

template <Field<double> field>
void number(TextAttributes& attributes, const std::string& text) {
    if (const auto value = toNumber(text)) attributes.*field = *value;
}

/// A number within bounds; one outside is moved to the nearest bound.
template <Field<double> field, int least, int most>
void bounded(TextAttributes& attributes, const std::string& text) {
    if (const auto value = toNumber(text))
        attributes.*field = std::clamp(*value, static_cast<double>(least), static_cast<double>(most));
}

template <Field<int> field>
void integer(TextAttributes& attributes, const std::string& text) {
    if (const auto value = toInteger(text)) attributes.*field = *value;
}

template <Field<bool> field>
void boolean(TextAttributes& attributes, const std::string& text) {
    if (const auto value = toBoolean(text)) attributes.*field = *value;
}

template <auto field>
void word(TextAttributes& attributes, const std::string& text) {
    using Value = typename std::remove_reference_t<decltype(attributes.*field)>::value_type;
    if (const auto value = meaning(text, Value{})) attributes.*field = *value;
}

/// The id of a swatch, or "Text Color".
template <Field<std::string> field>
void colour(TextAttributes& attributes, const std::string& text) {
    if (!text.empty() && text != "n") attributes.*field = text;
}

template <Field<bool> field>
void textWidth(TextAttributes& attributes, const std::string& text) {
    attributes.*field = text == "TextWidth";
}

/// The language's name; some writers give its id, in which a colon is written "%3a".
void language(TextAttributes& attributes, const std::string& text) {
    constexpr std::string_view kind = "Language/";
    if (text.empty() || text == "n") return;
    std::string name = text.starts_with(kind) ? text.substr(kind.size()) : text;
    for (size_t at = name.find("%3a"); at != std::string::npos; at = name.find("%3a", at + 1))
        name.replace(at, 3, 1, ':');
    attributes.language = name;
}

void fontStyle(TextAttributes& attributes, const std::string& text) {
    const std::string style = withoutKeyMark(text);
    if (!style.empty() && style != "Nothing") attributes.fontStyle = style;
}

void composer(TextAttributes& attributes, const std::string& text) {
    attributes.singleLineComposer = text.find("Single") != std::string::npos;
}

using Rules = std::unordered_map<std::string_view, Rule>;

void addCharacterRules(Rules& rules) {
    using A = TextAttributes;
    const auto add = [&](std::string_view name, Setter set) { rules[name] = {false, set}; };
    add("FontStyle", fontStyle);
    add("PointSize", bounded<&A::pointSize, 0, 20000>);
    add("Leading", word<&A::leading>);
    add("KerningMethod", word<&A::kerningMethod>);
    add("KerningValue", number<&A::kerningValue>);
    add("Tracking", number<&A::tracking>);
    add("HorizontalScale", bounded<&A::horizontalScale, 1, 1000>);
    add("VerticalScale", bounded<&A::verticalScale, 1, 1000>);
    add("BaselineShift", number<&A::baselineShift>);
    add("Skew", bounded<&A::skew, -85, 85>);
    add("Capitalization", word<&A::capitalization>);
    add("Position", word<&A::position>);
    add("Underline", boolean<&A::underline>);
    add("UnderlineOffset", number<&A::underlineOffset>);
    add("UnderlineWeight", number<&A::underlineWeight>);
    add("UnderlineColor", colour<&A::underlineColor>);
    add("UnderlineTint", number<&A::underlineTint>);
    add("StrikeThru", boolean<&A::strikeThrough>);
    add("StrikeThroughOffset", number<&A::strikeThroughOffset>);
    add("StrikeThroughWeight", number<&A::strikeThroughWeight>);
    add("StrikeThroughColor", colour<&A::strikeThroughColor>);
    add("StrikeThroughTint", number<&A::strikeThroughTint>);
    add("Ligatures", boolean<&A::ligatures>);
    add("NoBreak", boolean<&A::noBreak>);
    add("FillColor", colour<&A::fillColor>);
    add("FillTint", number<&A::fillTint>);
    add("StrokeColor", colour<&A::strokeColor>);
    add("StrokeWeight", bounded<&A::strokeWeight, 0, 10000>);
    add("StrokeTint", number<&A::strokeTint>);
    add("OverprintFill", boolean<&A::overprintFill>);
    add("AppliedLanguage", language);
    add("OTFFigureStyle", word<&A::figureStyle>);
    add("OTFOrdinal", boolean<&A::ordinal>);
    add("OTFFraction", boolean<&A::fraction>);
    add("OTFDiscretionaryLigature", boolean<&A::discretionaryLigature>);
    add("OTFTitling", boolean<&A::titling>);
    add("OTFSwash", boolean<&A::swash>);
    add("OTFSlashedZero", boolean<&A::slashedZero>);
    add("OTFHistorical", boolean<&A::historical>);
    add("OTFContextualAlternate", boolean<&A::contextualAlternate>);
    add("OTFStylisticSets", integer<&A::stylisticSets>);
    add("ParagraphBreakType", word<&A::paragraphBreak>);
}

void addParagraphRules(Rules& rules) {
    using A = TextAttributes;
    const auto add = [&](std::string_view name, Setter set) { rules[name] = {true, set}; };
    add("AutoLeading", bounded<&A::autoLeading, 0, 1000>);
    add("Justification", word<&A::justification>);
    add("SingleWordJustification", word<&A::singleWordJustification>);
    add("LeftIndent", number<&A::leftIndent>);
    add("RightIndent", number<&A::rightIndent>);
    add("FirstLineIndent", number<&A::firstLineIndent>);
    add("LastLineIndent", number<&A::lastLineIndent>);
    add("SpaceBefore", number<&A::spaceBefore>);
    add("SpaceAfter", number<&A::spaceAfter>);
    add("Composer", composer);
    add("DesiredWordSpacing", number<&A::desiredWordSpacing>);
    add("MinimumWordSpacing", number<&A::minimumWordSpacing>);
    add("MaximumWordSpacing", number<&A::maximumWordSpacing>);
    add("DesiredLetterSpacing", number<&A::desiredLetterSpacing>);
    add("MinimumLetterSpacing", number<&A::minimumLetterSpacing>);
    add("MaximumLetterSpacing", number<&A::maximumLetterSpacing>);
    add("DesiredGlyphScaling", number<&A::desiredGlyphScaling>);
    add("MinimumGlyphScaling", number<&A::minimumGlyphScaling>);
    add("MaximumGlyphScaling", number<&A::maximumGlyphScaling>);
    add("Hyphenation", boolean<&A::hyphenation>);
    add("HyphenateWordsLongerThan", integer<&A::hyphenateWordsLongerThan>);
    add("HyphenateAfterFirst", integer<&A::hyphenateAfterFirst>);
    add("HyphenateBeforeLast", integer<&A::hyphenateBeforeLast>);
    add("HyphenateLadderLimit", integer<&A::hyphenateLadderLimit>);
    add("HyphenationZone", number<&A::hyphenationZone>);
    add("HyphenWeight", integer<&A::hyphenWeight>);
    add("HyphenateCapitalizedWords", boolean<&A::hyphenateCapitalizedWords>);
    add("HyphenateLastWord", boolean<&A::hyphenateLastWord>);
    add("HyphenateAcrossColumns", boolean<&A::hyphenateAcrossColumns>);
    add("KeepWithNext", integer<&A::keepWithNext>);
    add("KeepLinesTogether", boolean<&A::keepLinesTogether>);
    add("KeepFirstLines", integer<&A::keepFirstLines>);
    add("KeepLastLines", integer<&A::keepLastLines>);
    add("KeepAllLinesTogether", boolean<&A::keepAllLinesTogether>);
    add("StartParagraph", word<&A::startParagraph>);
    add("GridAlignment",
        [](A& attributes, const std::string& text) { attributes.alignToBaselineGrid = text != "None"; });
    add("ParagraphDirection",
        [](A& attributes, const std::string& text) { attributes.rightToLeft = text == "RightToLeftDirection"; });
}

void addRuleAndListRules(Rules& rules) {
    using A = TextAttributes;
    const auto add = [&](std::string_view name, Setter set) { rules[name] = {true, set}; };
    add("RuleAbove", boolean<&A::ruleAbove>);
    add("RuleAboveLineWeight", bounded<&A::ruleAboveWeight, 0, 10000>);
    add("RuleAboveOffset", number<&A::ruleAboveOffset>);
    add("RuleAboveLeftIndent", number<&A::ruleAboveLeftIndent>);
    add("RuleAboveRightIndent", number<&A::ruleAboveRightIndent>);
    add("RuleAboveColor", colour<&A::ruleAboveColor>);
    add("RuleAboveTint", number<&A::ruleAboveTint>);
    add("RuleAboveWidth", textWidth<&A::ruleAboveTextWidth>);
    add("RuleBelow", boolean<&A::ruleBelow>);
    add("RuleBelowLineWeight", bounded<&A::ruleBelowWeight, 0, 10000>);
    add("RuleBelowOffset", number<&A::ruleBelowOffset>);
    add("RuleBelowLeftIndent", number<&A::ruleBelowLeftIndent>);
    add("RuleBelowRightIndent", number<&A::ruleBelowRightIndent>);
    add("RuleBelowColor", colour<&A::ruleBelowColor>);
    add("RuleBelowTint", number<&A::ruleBelowTint>);
    add("RuleBelowWidth", textWidth<&A::ruleBelowTextWidth>);
    add("BulletsAndNumberingListType", word<&A::listType>);
    add("BulletsTextAfter",
        [](A& attributes, const std::string& text) { attributes.bulletTextAfter = listText(text); });
    add("NumberingExpression",
        [](A& attributes, const std::string& text) { attributes.numberingExpression = toUtf16(text); });
    add("NumberingStartAt", integer<&A::numberingStartAt>);
    add("NumberingContinue", boolean<&A::numberingContinue>);
}

const Rules& allRules() {
    static const Rules rules = [] {
        Rules made;
        addCharacterRules(made);
        addParagraphRules(made);
        addRuleAndListRules(made);
        return made;
    }();
    return rules;
}

std::vector<TabStop> readTabStops(const XmlElement& list) {
    std::vector<TabStop> stops;
    list.eachChild([&](const XmlElement& record) {
        TabStop stop;
        const auto field = [&](std::string_view name) {
            const XmlElement* child = record.child(name);
            return child ? child->text() : std::string();
        };
        const auto position = toNumber(field("Position"));
        if (!position) return;
        stop.position = *position;
        stop.alignment = meaning(field("Alignment"), TabAlignment{}).value_or(TabAlignment::Left);
        stop.alignmentCharacter = toUtf16(field("AlignmentCharacter"));
        stop.leader = toUtf16(field("Leader"));
        stops.push_back(std::move(stop));
    });
    std::stable_sort(stops.begin(), stops.end(),
                     [](const TabStop& a, const TabStop& b) { return a.position < b.position; });
    return stops;
}

void readBullet(const XmlElement& element, TextAttributes& attributes) {
    const auto value = attributeAs(element, "BulletCharacterValue", toInteger);
    // A glyph number means nothing without the very font.
    if (!value || *value <= 0x20 || *value > 0x10FFFF ||
        attributeText(element, "BulletCharacterType") == "GlyphWithFont")
        return;
    const auto character = static_cast<char32_t>(*value);
    if (character < 0x10000)
        attributes.bulletCharacter = std::u16string(1, static_cast<char16_t>(character));
    else
        attributes.bulletCharacter = std::u16string{static_cast<char16_t>(0xD7C0 + (character >> 10)),
                                                    static_cast<char16_t>(0xDC00 + (character & 0x3FF))};
}

TextAttributes read(const Reading& reading, const XmlElement& element, bool withParagraphs) {
    TextAttributes attributes;
    const auto take = [&](std::string_view name, const std::string& value) {
        if (name == "AppliedFont") {
            const auto family = reading.fontFamilies.find(value);
            const std::string named = withoutKeyMark(family == reading.fontFamilies.end() ? value : family->second);
            if (!named.empty() && named != "n") attributes.fontFamily = named;
            return;
        }
        const auto rule = allRules().find(name);
        if (rule != allRules().end() && (withParagraphs || !rule->second.ofParagraphs))
            rule->second.set(attributes, value);
    };
    for (const XmlAttribute& attribute : element.attributes) take(attribute.name, attribute.value);
    const XmlElement* properties = element.child("Properties");
    if (!properties) return attributes;
    properties->eachChild([&](const XmlElement& property) {
        if (withParagraphs && property.name == "TabList")
            attributes.tabStops = readTabStops(property);
        else if (withParagraphs && property.name == "BulletChar")
            readBullet(property, attributes);
        else
            take(property.name, property.text());
    });
    return attributes;
}

}  // namespace

TextAttributes readCharacterAttributes(const Reading& reading, const XmlElement& element) {
    return read(reading, element, false);
}

TextAttributes readTextAttributes(const Reading& reading, const XmlElement& element) {
    return read(reading, element, true);
}

}  // namespace desk
