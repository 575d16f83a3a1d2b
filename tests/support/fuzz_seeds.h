#pragma once
// Runs the seeds of a fuzz target.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include "support/scratch_folder.h"

using FuzzTarget = int (*)(const uint8_t* data, size_t size);

/// Gives each file under fuzz/seeds/<name> to the target, which aborts when it finds something. Returns their count.
inline size_t runSeeds(const std::string& name, FuzzTarget target) {
    size_t seeds = 0;
    for (const auto& entry : std::filesystem::directory_iterator(VORNASET_SOURCE_DIR "/fuzz/seeds/" + name)) {
        const std::string bytes = vornaset::contentOf(entry.path().string());
        SCOPED_TRACE(entry.path().filename().string());
        EXPECT_EQ(target(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()), 0);
        ++seeds;
    }
    return seeds;
}
