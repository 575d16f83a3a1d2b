// The seeds of the fuzz target, and what it once found, run as ordinary tests.
#define LLVMFuzzerTestOneInput formatTextFuzzTarget
#include "../fuzz/format_text.cpp"
#undef LLVMFuzzerTestOneInput

#include <gtest/gtest.h>

#include <filesystem>

#include "support/scratch_folder.h"

namespace {

TEST(FormatSeeds, EveryFormatGivesAText) {
    size_t seeds = 0;
    for (const auto& entry : std::filesystem::directory_iterator(VORNASET_SOURCE_DIR "/fuzz/seeds/format_text")) {
        const std::string bytes = vornaset::contentOf(entry.path().string());
        formatTextFuzzTarget(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
        ++seeds;
    }
    EXPECT_GT(seeds, 30u);
}

}  // namespace
