// The page of the library names what is there, and nothing that isn't.

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <set>
#include <string>

#include "support/scratch_folder.h"

namespace vornaset {
namespace {

std::string page() {
    return contentOf(VORNASET_SOURCE_DIR "/docs/support-library.md");
}

/// Every word that stands in a header of these folders.
std::set<std::string> wordsOfHeaders() {
    static const std::regex word("[A-Za-z_][A-Za-z0-9_]*");
    std::set<std::string> words;
    for (const char* folder : {"/src/support", "/src/widgets"}) {
        if (!std::filesystem::is_directory(VORNASET_SOURCE_DIR + std::string(folder))) continue;
        for (const auto& entry : std::filesystem::directory_iterator(VORNASET_SOURCE_DIR + std::string(folder))) {
            if (entry.path().extension() != ".h") continue;
            const std::string text = contentOf(entry.path().string());
            for (std::sregex_iterator match(text.begin(), text.end(), word), end; match != end; ++match) {
                words.insert(match->str());
            }
        }
    }
    return words;
}

TEST(LibraryPage, EveryOperationOfATableStandsInAHeader) {
    static const std::regex operation("`([A-Za-z_][A-Za-z0-9_]*)\\(");
    const std::set<std::string> words = wordsOfHeaders();
    const std::string text = page();
    size_t count = 0;
    for (std::sregex_iterator match(text.begin(), text.end(), operation), end; match != end; ++match) {
        EXPECT_TRUE(words.contains((*match)[1])) << (*match)[1];
        ++count;
    }
    EXPECT_GT(count, 200u);
}

TEST(LibraryPage, EveryHeaderThatItNamesIsThere) {
    static const std::regex header("`((?:support|widgets)/[a-z0-9_]+\\.h)`");
    const std::string text = page();
    size_t count = 0;
    for (std::sregex_iterator match(text.begin(), text.end(), header), end; match != end; ++match) {
        EXPECT_TRUE(std::filesystem::exists(VORNASET_SOURCE_DIR "/src/" + (*match)[1].str())) << (*match)[1];
        ++count;
    }
    EXPECT_GT(count, 20u);
}

}  // namespace
}  // namespace vornaset
