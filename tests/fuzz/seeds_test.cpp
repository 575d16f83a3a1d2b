// Every fuzz target on its seeds, and on what it once found. The targets are compiled into this program, each with its
// entry under a name of its own.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <set>
#include <string>

using Run = int(const uint8_t* data, size_t size);
extern "C" Run fuzz_csv_table, fuzz_format_text, fuzz_idml_part, fuzz_idml_saving, fuzz_json_text, fuzz_pdf_rewrite,
    fuzz_picture, fuzz_property_list, fuzz_xml_text;

namespace {

namespace fs = std::filesystem;

const fs::path fuzzFolder = fs::path(VORNASET_SOURCE_DIR) / "fuzz";
constexpr size_t fewestSeeds = 10;

struct Target {
    const char* name;
    const char* promise;
    Run* run;  ///< aborts where the promise is broken
};

const Target targets[] = {{"csv_table", "TablesAreReadOrRefused", fuzz_csv_table},
                          {"format_text", "FormatsGiveTexts", fuzz_format_text},
                          {"idml_part", "DocumentsAreReadOrRefused", fuzz_idml_part},
                          {"idml_saving", "SavedDocumentsOpenAsTheyWere", fuzz_idml_saving},
                          {"json_text", "JsonIsReadOrRefused", fuzz_json_text},
                          {"pdf_rewrite", "PdfFilesAreRewrittenOrRefused", fuzz_pdf_rewrite},
                          {"picture", "PicturesAreReadOrRefused", fuzz_picture},
                          {"property_list", "PropertyListsAreReadOrRefused", fuzz_property_list},
                          {"xml_text", "XmlIsReadOrRefused", fuzz_xml_text}};

/// As a failure names it.
void PrintTo(const Target& target, std::ostream* out) {
    *out << target.name;
}

class FuzzSeeds : public ::testing::TestWithParam<Target> {};

TEST_P(FuzzSeeds, KeepThePromise) {
    size_t seeds = 0;
    for (const auto& entry : fs::directory_iterator(fuzzFolder / "seeds" / GetParam().name)) {
        SCOPED_TRACE(entry.path().filename().string());
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string bytes((std::istreambuf_iterator<char>(file)), {});
        EXPECT_EQ(GetParam().run(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()), 0);
        ++seeds;
    }
    EXPECT_GE(seeds, fewestSeeds);
}

INSTANTIATE_TEST_SUITE_P(Fuzz, FuzzSeeds, ::testing::ValuesIn(targets),
                         [](const auto& tested) { return tested.param.promise; });

TEST(FuzzTargets, AllRunHere) {
    std::set<std::string> known, there;
    for (const Target& target : targets) known.insert(target.name);
    for (const auto& entry : fs::directory_iterator(fuzzFolder))
        if (entry.path().extension() == ".cpp") there.insert(entry.path().stem().string());
    EXPECT_EQ(known, there);
}

}  // namespace
