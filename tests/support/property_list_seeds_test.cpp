// The seeds of the fuzz target, and what it once found, run as ordinary tests.
#define LLVMFuzzerTestOneInput propertyListFuzzTarget
#include "../fuzz/property_list.cpp"
#undef LLVMFuzzerTestOneInput

#include "support/fuzz_seeds.h"

namespace {

TEST(FuzzSeeds, EveryPropertyListIsReadOrRefused) {
    EXPECT_GT(runSeeds("property_list", propertyListFuzzTarget), 10u);
}

}  // namespace
