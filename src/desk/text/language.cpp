#include "desk/text/language.h"

#include <algorithm>
#include <cctype>

namespace desk {
namespace {

struct KnownLanguage {
    const char* name;  ///< without variant
    const char* tag;
    const char* region;  ///< of the usual dictionary
};

constexpr KnownLanguage languages[] = {
    {"Arabic", "ar", ""},       {"Bengali", "bn", ""},     {"Bulgarian", "bg", "BG"},  {"Catalan", "ca", "ES"},
    {"Croatian", "hr", "HR"},   {"Czech", "cs", "CZ"},     {"Danish", "da", "DK"},     {"Dutch", "nl", "NL"},
    {"English", "en", "US"},    {"Estonian", "et", "EE"},  {"Finnish", "fi", "FI"},    {"French", "fr", "FR"},
    {"German", "de", "DE"},     {"Greek", "el", "GR"},     {"Gujarati", "gu", ""},     {"Hebrew", "he", ""},
    {"Hindi", "hi", ""},        {"Hungarian", "hu", "HU"}, {"Icelandic", "is", "IS"},  {"Indonesian", "id", "ID"},
    {"Italian", "it", "IT"},    {"Japanese", "ja", ""},    {"Kannada", "kn", ""},      {"Korean", "ko", ""},
    {"Latin", "la", ""},        {"Latvian", "lv", "LV"},   {"Lithuanian", "lt", "LT"}, {"Malayalam", "ml", ""},
    {"Marathi", "mr", ""},      {"Norwegian", "nb", "NO"}, {"Oriya", "or", ""},        {"Polish", "pl", "PL"},
    {"Portuguese", "pt", "PT"}, {"Punjabi", "pa", ""},     {"Romanian", "ro", "RO"},   {"Russian", "ru", "RU"},
    {"Serbian", "sr", ""},      {"Slovak", "sk", "SK"},    {"Slovenian", "sl", "SI"},  {"Spanish", "es", "ES"},
    {"Swedish", "sv", "SE"},    {"Tamil", "ta", ""},       {"Telugu", "te", ""},       {"Thai", "th", "TH"},
    {"Turkish", "tr", "TR"},    {"Ukrainian", "uk", "UA"}, {"Vietnamese", "vi", ""},   {"Chinese", "zh", ""},
};

struct Variant {
    const char* language;
    const char* words;  ///< found in the part behind the colon
    const char* tag;
    const char* region;
};

constexpr Variant variants[] = {
    {"English", "USA", "en-US", "US"},
    {"English", "UK", "en-GB", "GB"},
    {"English", "Canadian", "en-CA", "CA"},
    {"French", "Canadian", "fr-CA", "CA"},
    {"German", "Austrian", "de-AT", "AT"},
    {"German", "Swiss", "de-CH", "CH"},
    {"German", "", "de-DE", "DE"},
    {"Spanish", "Castilian", "es-ES", "ES"},
    {"Portuguese", "Brazilian", "pt-BR", "BR"},
    {"Norwegian", "Nynorsk", "nn-NO", "NO"},
    {"Chinese", "Traditional", "zh-Hant", ""},
    {"Chinese", "Simplified", "zh-Hans", ""},
};

std::string plainName(std::string name) {
    for (const char* prefix : {"Language/", "$ID/"})
        if (name.rfind(prefix, 0) == 0) name.erase(0, std::string(prefix).size());
    for (const char* escape : {"%3a", "%3A"})
        if (const size_t at = name.find(escape); at != std::string::npos) name.replace(at, 3, ":");
    return name;
}

void addDictionaries(LanguageName& result, const std::string& language, const std::string& region) {
    if (!region.empty()) result.dictionaries.push_back("hyph_" + language + "_" + region);
    result.dictionaries.push_back("hyph_" + language);
}

/// "de_DE_2006" and "en-GB" name themselves.
bool isTag(const std::string& name) {
    if (name.size() < 5 || (name[2] != '_' && name[2] != '-')) return false;
    return std::islower(static_cast<unsigned char>(name[0])) && std::islower(static_cast<unsigned char>(name[1])) &&
           std::isupper(static_cast<unsigned char>(name[3])) && std::isupper(static_cast<unsigned char>(name[4]));
}

}  // namespace

LanguageName languageNamed(const std::string& documentName) {
    const std::string name = plainName(documentName);
    LanguageName result;
    if (isTag(name)) {
        result.tag = name.substr(0, 2) + "-" + name.substr(3, 2);
        addDictionaries(result, name.substr(0, 2), name.substr(3, 2));
        return result;
    }
    const size_t colon = name.find(':');
    const std::string base = name.substr(0, colon);
    const std::string variant = colon == std::string::npos ? std::string() : name.substr(colon + 1);
    const auto known = std::find_if(std::begin(languages), std::end(languages),
                                    [&](const KnownLanguage& language) { return base == language.name; });
    if (known == std::end(languages)) return result;
    result.tag = known->tag;
    std::string region = known->region;
    for (const Variant& candidate : variants) {
        if (base != candidate.language || variant.find(candidate.words) == std::string::npos) continue;
        result.tag = candidate.tag;
        region = candidate.region;
        break;
    }
    addDictionaries(result, result.tag.substr(0, 2), region);
    return result;
}

}  // namespace desk
