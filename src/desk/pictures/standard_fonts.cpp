#include "desk/pictures/standard_fonts.h"

#include <charconv>
#include <map>

namespace desk {
namespace {

constexpr std::string_view asciiNames =
    "space exclam quotedbl numbersign dollar percent ampersand quotesingle parenleft parenright asterisk plus comma "
    "hyphen period slash zero one two three four five six seven eight nine colon semicolon less equal greater question "
    "at A B C D E F G H I J K L M N O P Q R S T U V W X Y Z bracketleft backslash bracketright asciicircum underscore "
    "grave a b c d e f g h i j k l m n o p q r s t u v w x y z braceleft bar braceright asciitilde";

constexpr std::string_view latinNames =
    "exclamdown cent sterling currency yen brokenbar section dieresis copyright ordfeminine guillemotleft logicalnot "
    "sfthyphen registered macron degree plusminus twosuperior threesuperior acute mu paragraph periodcentered cedilla "
    "onesuperior ordmasculine guillemotright onequarter onehalf threequarters questiondown Agrave Aacute Acircumflex "
    "Atilde Adieresis Aring AE Ccedilla Egrave Eacute Ecircumflex Edieresis Igrave Iacute Icircumflex Idieresis Eth "
    "Ntilde Ograve Oacute Ocircumflex Otilde Odieresis multiply Oslash Ugrave Uacute Ucircumflex Udieresis Yacute "
    "Thorn "
    "germandbls agrave aacute acircumflex atilde adieresis aring ae ccedilla egrave eacute ecircumflex edieresis "
    "igrave "
    "iacute icircumflex idieresis eth ntilde ograve oacute ocircumflex otilde odieresis divide oslash ugrave uacute "
    "ucircumflex udieresis yacute thorn ydieresis";

struct NamedCharacter {
    std::string_view name;
    char16_t character;
};
constexpr NamedCharacter otherNames[] = {{"quotedblleft", 0x201C},
                                         {"quotedblright", 0x201D},
                                         {"quoteleft", 0x2018},
                                         {"quoteright", 0x2019},
                                         {"quotesinglbase", 0x201A},
                                         {"quotedblbase", 0x201E},
                                         {"guilsinglleft", 0x2039},
                                         {"guilsinglright", 0x203A},
                                         {"endash", 0x2013},
                                         {"emdash", 0x2014},
                                         {"bullet", 0x2022},
                                         {"ellipsis", 0x2026},
                                         {"dagger", 0x2020},
                                         {"daggerdbl", 0x2021},
                                         {"perthousand", 0x2030},
                                         {"trademark", 0x2122},
                                         {"fi", 0xFB01},
                                         {"fl", 0xFB02},
                                         {"fraction", 0x2044},
                                         {"florin", 0x0192},
                                         {"OE", 0x0152},
                                         {"oe", 0x0153},
                                         {"Scaron", 0x0160},
                                         {"scaron", 0x0161},
                                         {"Zcaron", 0x017D},
                                         {"zcaron", 0x017E},
                                         {"Ydieresis", 0x0178},
                                         {"Lslash", 0x0141},
                                         {"lslash", 0x0142},
                                         {"dotlessi", 0x0131},
                                         {"circumflex", 0x02C6},
                                         {"tilde", 0x02DC},
                                         {"caron", 0x02C7},
                                         {"breve", 0x02D8},
                                         {"dotaccent", 0x02D9},
                                         {"ring", 0x02DA},
                                         {"ogonek", 0x02DB},
                                         {"hungarumlaut", 0x02DD},
                                         {"minus", 0x2212},
                                         {"Euro", 0x20AC},
                                         {"nbspace", 0x00A0},
                                         {"nonbreakingspace", 0x00A0}};

constexpr std::u16string_view macRomanUpper =
    u"\u00C4\u00C5\u00C7\u00C9\u00D1\u00D6\u00DC\u00E1\u00E0\u00E2\u00E4\u00E3\u00E5\u00E7\u00E9\u00E8"
    u"\u00EA\u00EB\u00ED\u00EC\u00EE\u00EF\u00F1\u00F3\u00F2\u00F4\u00F6\u00F5\u00FA\u00F9\u00FB\u00FC"
    u"\u2020\u00B0\u00A2\u00A3\u00A7\u2022\u00B6\u00DF\u00AE\u00A9\u2122\u00B4\u00A8\u2260\u00C6\u00D8"
    u"\u221E\u00B1\u2264\u2265\u00A5\u00B5\u2202\u2211\u220F\u03C0\u222B\u00AA\u00BA\u03A9\u00E6\u00F8"
    u"\u00BF\u00A1\u00AC\u221A\u0192\u2248\u2206\u00AB\u00BB\u2026\u00A0\u00C0\u00C3\u00D5\u0152\u0153"
    u"\u2013\u2014\u201C\u201D\u2018\u2019\u00F7\u25CA\u00FF\u0178\u2044\u00A4\u2039\u203A\uFB01\uFB02"
    u"\u2021\u00B7\u201A\u201E\u2030\u00C2\u00CA\u00C1\u00CB\u00C8\u00CD\u00CE\u00CF\u00CC\u00D3\u00D4"
    u"\uF8FF\u00D2\u00DA\u00DB\u00D9\u0131\u02C6\u02DC\u00AF\u02D8\u02D9\u02DA\u00B8\u02DD\u02DB\u02C7";

/// Codes 0x80 to 0x9F; U+2022 stands for the unused ones, as the standard has it.
constexpr std::u16string_view winAnsiMiddle =
    u"\u20AC\u2022\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u2022\u017D\u2022"
    u"\u2022\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u2022\u017E\u0178";

struct CodedCharacter {
    uint8_t code;
    char16_t character;
};
constexpr CodedCharacter standardUpper[] = {
    {0xA1, 0x00A1}, {0xA2, 0x00A2}, {0xA3, 0x00A3}, {0xA4, 0x2044}, {0xA5, 0x00A5}, {0xA6, 0x0192}, {0xA7, 0x00A7},
    {0xA8, 0x00A4}, {0xA9, 0x0027}, {0xAA, 0x201C}, {0xAB, 0x00AB}, {0xAC, 0x2039}, {0xAD, 0x203A}, {0xAE, 0xFB01},
    {0xAF, 0xFB02}, {0xB1, 0x2013}, {0xB2, 0x2020}, {0xB3, 0x2021}, {0xB4, 0x00B7}, {0xB6, 0x00B6}, {0xB7, 0x2022},
    {0xB8, 0x201A}, {0xB9, 0x201E}, {0xBA, 0x201D}, {0xBB, 0x00BB}, {0xBC, 0x2026}, {0xBD, 0x2030}, {0xBF, 0x00BF},
    {0xC1, 0x0060}, {0xC2, 0x00B4}, {0xC3, 0x02C6}, {0xC4, 0x02DC}, {0xC5, 0x00AF}, {0xC6, 0x02D8}, {0xC7, 0x02D9},
    {0xC8, 0x00A8}, {0xCA, 0x02DA}, {0xCB, 0x00B8}, {0xCD, 0x02DD}, {0xCE, 0x02DB}, {0xCF, 0x02C7}, {0xD0, 0x2014},
    {0xE1, 0x00C6}, {0xE3, 0x00AA}, {0xE8, 0x0141}, {0xE9, 0x00D8}, {0xEA, 0x0152}, {0xEB, 0x00BA}, {0xF1, 0x00E6},
    {0xF5, 0x0131}, {0xF8, 0x0142}, {0xF9, 0x00F8}, {0xFA, 0x0153}, {0xFB, 0x00DF}};

CodeTable ascii() {
    CodeTable table{};
    for (char16_t c = 0x20; c < 0x7F; ++c) table[c] = c;
    return table;
}

CodeTable makeStandard() {
    CodeTable table = ascii();
    table[0x27] = 0x2019;
    table[0x60] = 0x2018;
    for (const CodedCharacter& coded : standardUpper) table[coded.code] = coded.character;
    return table;
}

CodeTable makeWinAnsi() {
    CodeTable table = ascii();
    table[0x7F] = 0x2022;
    for (size_t i = 0; i < winAnsiMiddle.size(); ++i) table[0x80 + i] = winAnsiMiddle[i];
    for (char16_t c = 0xA0; c <= 0xFF; ++c) table[c] = c;
    table[0xAD] = u'-';
    return table;
}

CodeTable makeMacRoman() {
    CodeTable table = ascii();
    for (size_t i = 0; i < macRomanUpper.size(); ++i) table[0x80 + i] = macRomanUpper[i];
    return table;
}

void addNames(std::map<std::string_view, char16_t>& names, std::string_view list, char16_t first) {
    for (char16_t character = first; !list.empty(); ++character) {
        const size_t end = std::min(list.find(' '), list.size());
        names.emplace(list.substr(0, end), character);
        list.remove_prefix(std::min(end + 1, list.size()));
    }
}

std::map<std::string_view, char16_t> makeNames() {
    std::map<std::string_view, char16_t> names;
    addNames(names, asciiNames, 0x20);
    addNames(names, latinNames, 0xA1);
    for (const NamedCharacter& named : otherNames) names.emplace(named.name, named.character);
    return names;
}

/// Families by the names in use; each with what its slanted style is called.
struct Family {
    std::string_view name;
    int standard;  ///< 0 Courier, 1 Helvetica, 2 Times
};
constexpr Family families[] = {{"CourierNewPSMT", 0},    {"CourierNewPS", 0},    {"CourierNew", 0},   {"Courier", 0},
                               {"Helvetica", 1},         {"ArialMT", 1},         {"Arial", 1},        {"Times", 2},
                               {"TimesNewRomanPSMT", 2}, {"TimesNewRomanPS", 2}, {"TimesNewRoman", 2}};

struct Styled {
    std::string_view suffix;
    int style;  ///< 1 bold, 2 slanted, 3 both
};
constexpr Styled styles[] = {{"", 0},           {"-Roman", 0},       {"-Bold", 1},       {"-BoldMT", 1},
                             {",Bold", 1},      {"-Oblique", 2},     {"-Italic", 2},     {"-ItalicMT", 2},
                             {",Italic", 2},    {"-BoldOblique", 3}, {"-BoldItalic", 3}, {"-BoldItalicMT", 3},
                             {",BoldItalic", 3}};

constexpr std::string_view standardNames[3][4] = {
    {"Courier", "Courier-Bold", "Courier-Oblique", "Courier-BoldOblique"},
    {"Helvetica", "Helvetica-Bold", "Helvetica-Oblique", "Helvetica-BoldOblique"},
    {"Times-Roman", "Times-Bold", "Times-Italic", "Times-BoldItalic"}};

}  // namespace

std::string_view standardTextFont(std::string_view baseFont) {
    for (const Family& family : families) {
        if (!baseFont.starts_with(family.name)) continue;
        const std::string_view suffix = baseFont.substr(family.name.size());
        for (const Styled& styled : styles)
            if (styled.suffix == suffix) return standardNames[family.standard][styled.style];
    }
    return {};
}

const CodeTable& encodingNamed(std::string_view name) {
    static const CodeTable standard = makeStandard(), winAnsi = makeWinAnsi(), macRoman = makeMacRoman();
    return name == "WinAnsiEncoding" ? winAnsi : name == "MacRomanEncoding" ? macRoman : standard;
}

char16_t characterNamed(std::string_view glyphName) {
    static const std::map<std::string_view, char16_t> names = makeNames();
    const auto found = names.find(glyphName);
    if (found != names.end()) return found->second;
    constexpr std::string_view prefix = "uni";
    if (!glyphName.starts_with(prefix) || glyphName.size() != 7) return 0;
    uint16_t value = 0;
    const char* end = glyphName.data() + glyphName.size();
    const auto read = std::from_chars(glyphName.data() + prefix.size(), end, value, 16);
    return read.ec == std::errc() && read.ptr == end ? static_cast<char16_t>(value) : u'\0';
}

}  // namespace desk
