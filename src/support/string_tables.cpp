#include "support/string_tables.h"

#include <cstdlib>
#include <string>
#include <string_view>

#include "support/alert.h"
#include "support/dictionary_access.h"
#include "support/messages.h"
#include "support/string_table_file.h"

namespace vornaset {

Dictionary gStrings;

namespace {

constexpr std::u16string_view kPunctuationOfLabels = u":?!\u2026";

/// What the environment says for the language of messages; empty for nothing and for the languageless locales.
std::string messageLocale() {
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(name);
        if (value == nullptr || *value == 0) continue;
        const std::string locale = value;
        const std::string language = locale.substr(0, locale.find_first_of(".@"));
        return language == "C" || language == "POSIX" ? std::string() : locale;
    }
    return {};
}

std::string firstPreferredLanguage() {
    const std::string locale = messageLocale();
    if (locale.empty()) return "en";
    const char* list = std::getenv("LANGUAGE");
    std::string_view rest = list == nullptr ? "" : list;
    while (!rest.empty()) {
        const std::string_view entry = rest.substr(0, rest.find(':'));
        if (!entry.empty()) return std::string(entry);
        rest.remove_prefix(1);
    }
    return locale;
}

Dictionary loadTable(const String& name, StringTableForm form) {
    const String path = pathForResource(name, "xml");
    if (path.isNull()) return gStrings;
    const Data content = dataWithResource(name, "xml");
    const StringTableFile file = readStringTable(content.view(), form, preferredLanguageCode());
    if (!file.error.isNull()) msgBox(String("%@: %@"), path, file.error.localizedDescription());
    if (!file.table.isNull()) gStrings = file.table;
    return gStrings;
}

}  // namespace

void setupBundle(const String& identifier) {
    if (!identifier.isNull() && gBundle.isNull()) gBundle = Bundle::withIdentifier(identifier);
}

void setupCocoa(const String& identifier) {
    alertPresenter().prepare();
    setupBundle(identifier);
}

void setupCocoa(const Bundle& bundle) {
    alertPresenter().prepare();
    if (!bundle.isNull()) gBundle = bundle;
}

void setupLiterals() {}

void setupStrings(int64_t language) {
    if (language == kPreferredLanguage) {
        language = preferredLanguageCode() == String("de") ? kGerman : kEnglish;
    }
    switch (language) {
        case kFrench:
            setupStrings1("MyStrings_F");
            break;
        case kGerman:
            setupStrings1("MyStrings_D");
            break;
        default:
            setupStrings1("MyStrings_E");
    }
    if (gStrings.isNull()) setupStrings2("MyStrings");
    if (gStrings.isNull()) msgBox(String("\t%s: gStrings = NULL!"), "Vornaset");
}

Dictionary setupStrings1(const String& name) {
    return loadTable(name, StringTableForm::flat);
}

Dictionary setupStrings2(const String& name) {
    return loadTable(name, StringTableForm::byLanguage);
}

String preferredLanguageCode() {
    const String language = String::fromDamagedUTF8(firstPreferredLanguage());
    return language.length() < 2 ? language : language.substring(0, 2);
}

String stringForKey(const String& key) {
    return stringForKey(gStrings, key, key);
}
String stringForKey(const char* key) {
    return stringForKey(String(key));
}
String stringForKey(const String& key, const String& defaultText) {
    return stringForKey(gStrings, key, defaultText);
}
String stringForKey(const char* key, const String& defaultText) {
    return stringForKey(gStrings, String(key), defaultText);
}
String stringForKey(const char* key, const char* defaultText) {
    return stringForKey(gStrings, String(key), String(defaultText));
}

String localizeString(const String& text) {
    if (text.isEmpty()) return u"";
    const char16_t last = text.view().back();
    if (kPunctuationOfLabels.find(last) == std::u16string_view::npos) return stringForKey(text);
    return stringForKey(text.substring(0, text.length() - 1)) + String(std::u16string_view(&last, 1));
}

}  // namespace vornaset
