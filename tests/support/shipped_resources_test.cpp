// What is shipped is whole: each key that the code or a dialog uses has its text in every language.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <regex>
#include <set>
#include <string>

#include "support/bundle.h"
#include "support/scratch_folder.h"
#include "support/string_table_file.h"

namespace vornaset {
namespace {

const std::string kShipped = VORNASET_SOURCE_DIR "/resources/com.kelmoriandev.vornaset/";
const char* const kTables[] = {"MyStrings_E", "MyStrings_D", "MyStrings_F"};

/// A text that no element can be named by stands for itself in every language.
bool canBeKey(const std::string& text) {
    static const std::regex name("[A-Za-z_][A-Za-z0-9_.-]*");
    return std::regex_match(text, name);
}

/// Texts under keys that are no names, each looked at by a person: they are shown as they stand.
const std::set<std::string> kTextsWithoutEntry = {"Error loading nib: %@"};

using Places = std::map<std::string, std::string>;  ///< key to the file that uses it

/// First arguments that are literals, of the operations that look a C string up.
void collectFromSource(const std::filesystem::path& file, Places& keys) {
    static const std::regex use(
        "\\b(msgBox|msgBoxYesNo|msgBoxOkCancel|msgBoxYesNoCancel|msgBoxYesNoIgnore|setMsg2|localizeString|stringForKey|"
        "pmString)"
        "\\(\\s*\"((?:[^\"\\\\]|\\\\.)*)\"");
    const std::string text = contentOf(file.string());
    for (std::sregex_iterator match(text.begin(), text.end(), use), end; match != end; ++match) {
        keys.emplace((*match)[2], file.filename().string());
    }
}

/// What localising replaces in a dialog: titles and texts, without the punctuation that is no part of a key.
void collectFromDialog(const std::filesystem::path& file, Places& keys) {
    static const std::regex use(
        "<(?:property|attribute) name=\"(?:text|title|windowTitle|label)\">\\s*<string[^>]*>([^<]*)</string>");
    const std::string text = contentOf(file.string());
    for (std::sregex_iterator match(text.begin(), text.end(), use), end; match != end; ++match) {
        std::string key = (*match)[1];
        if (key.ends_with("\xE2\x80\xA6")) {
            key.resize(key.size() - 3);
        } else if (!key.empty() && std::string_view(":?!").find(key.back()) != std::string_view::npos) {
            key.pop_back();
        }
        if (!key.empty()) keys.emplace(key, file.filename().string());
    }
}

Places keysInUse() {
    Places keys;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(VORNASET_SOURCE_DIR "/src")) {
        const auto extension = entry.path().extension();
        if (extension == ".cpp" || extension == ".h") collectFromSource(entry.path(), keys);
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(VORNASET_SOURCE_DIR "/resources")) {
        if (entry.path().extension() == ".ui") collectFromDialog(entry.path(), keys);
    }
    return keys;
}

Dictionary shippedTable(const std::string& name) {
    const StringTableFile file = readStringTable(contentOf(kShipped + name + ".xml"), StringTableForm::flat, "en");
    EXPECT_TRUE(file.error.isNull()) << file.error.localizedDescription().utf8();
    return file.table;
}

TEST(ShippedResources, EveryKeyInUseHasATextInEveryLanguage) {
    const Places keys = keysInUse();
    for (const char* button : {"yes", "no", "ok", "cancel", "ignore"}) {
        EXPECT_TRUE(keys.contains(button)) << "the keys in the sources aren't found any more: " << button;
    }
    for (const char* name : kTables) {
        const Dictionary table = shippedTable(name);
        for (const auto& [key, file] : keys) {
            if (!canBeKey(key)) continue;
            EXPECT_TRUE(table.contains(String::fromUTF8(key))) << name << " lacks \"" << key << "\" of " << file;
        }
    }
}

TEST(ShippedResources, TextsThatCanHaveNoEntryAreMeant) {
    for (const auto& [key, file] : keysInUse()) {
        if (canBeKey(key)) continue;
        EXPECT_TRUE(kTextsWithoutEntry.contains(key))
            << file << " shows \"" << key << "\", which no table can translate";
    }
}

TEST(ShippedResources, AllTablesHaveTheSameKeysAndNoEmptyText) {
    const Dictionary english = shippedTable(kTables[0]);
    for (const char* name : kTables) {
        const Dictionary table = shippedTable(name);
        EXPECT_EQ(table.count(), english.count()) << name;
        for (size_t index = 0; index < table.count(); ++index) {
            EXPECT_TRUE(english.contains(table.keyAt(index))) << name << ": " << table.keyAt(index).utf8();
            EXPECT_FALSE(table.valueAt(index).string().isEmpty()) << name << ": " << table.keyAt(index).utf8();
        }
    }
}

TEST(ShippedResources, TextsOfOneKeyTakeTheSameConversions) {
    static const std::regex conversion("%[-+ 0-9.]*[a-zA-Z@]");
    const auto conversionsOf = [](const std::string& text) {
        std::multiset<std::string> found;
        for (std::sregex_iterator match(text.begin(), text.end(), conversion), end; match != end; ++match) {
            found.insert(match->str());
        }
        return found;
    };
    const Dictionary english = shippedTable(kTables[0]);
    for (const char* name : kTables) {
        const Dictionary table = shippedTable(name);
        for (size_t index = 0; index < table.count(); ++index) {
            const String key = table.keyAt(index);
            EXPECT_EQ(conversionsOf(table.valueAt(index).string().utf8()),
                      conversionsOf(english.valueForKey(key).string().utf8()))
                << name << ": " << key.utf8();
        }
    }
}

TEST(ShippedResources, TheIconIsASquarePicture) {
    const std::string icon = contentOf(kShipped + "Keld.png");
    ASSERT_GT(icon.size(), 24u);
    EXPECT_EQ(icon.substr(0, 8), "\x89PNG\r\n\x1A\n");
    EXPECT_EQ(icon.substr(16, 4), icon.substr(20, 4));  // width and height, PNG 1.2, 4.1.1
}

}  // namespace
}  // namespace vornaset
