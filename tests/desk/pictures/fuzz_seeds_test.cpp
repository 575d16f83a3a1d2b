// The seeds of the fuzz target, and what it once found, run as ordinary tests.
#include "../fuzz/picture.cpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace {

TEST(PictureFuzzSeeds, AreReadOrRefusedWithASentence) {
    const std::filesystem::path folder = std::filesystem::path(VORNASET_SOURCE_DIR) / "fuzz/seeds/picture";
    size_t seeds = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        SCOPED_TRACE(entry.path().filename().string());
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string bytes((std::istreambuf_iterator<char>(file)), {});
        EXPECT_NO_THROW(LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()));
        ++seeds;
    }
    EXPECT_GT(seeds, 15u);
}

}  // namespace
