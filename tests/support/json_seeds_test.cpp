// The seeds of the fuzz target, and what it once found, run as ordinary tests.
#define LLVMFuzzerTestOneInput jsonTextFuzzTarget
#include "../fuzz/json_text.cpp"
#undef LLVMFuzzerTestOneInput

#include "support/fuzz_seeds.h"

namespace {

TEST(FuzzSeeds, EveryJsonTextIsReadOrRefused) {
    EXPECT_GT(runSeeds("json_text", jsonTextFuzzTarget), 10u);
}

}  // namespace
