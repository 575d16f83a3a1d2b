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

#define FUZZ_TARGETS(use)                                                                                    \
    use(csv_table, "TablesAreReadOrRefused") use(format_text, "FormatsGiveTexts")                            \
        use(idml_part, "DocumentsAreReadOrRefused") use(idml_saving, "SavedDocumentsOpenAsTheyWere")         \
            use(json_text, "JsonIsReadOrRefused") use(pdf_rewrite, "PdfFilesAreRewrittenOrRefused")          \
                use(picture, "PicturesAreReadOrRefused") use(property_list, "PropertyListsAreReadOrRefused") \
                    use(xml_text, "XmlIsReadOrRefused")

#define DECLARE(name, promise) extern "C" int fuzz_##name(const uint8_t* data, size_t size);
FUZZ_TARGETS(DECLARE)

namespace {

namespace fs = std::filesystem;

const fs::path fuzzFolder = fs::path(VORNASET_SOURCE_DIR) / "fuzz";
constexpr size_t fewestSeeds = 10;

struct Target {
    const char* name;
    const char* promise;
    int (*run)(const uint8_t* data, size_t size);  ///< aborts where the promise is broken
};

#define LIST(name, promise) {#name, promise, fuzz_##name},
const Target targets[] = {FUZZ_TARGETS(LIST)};

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
