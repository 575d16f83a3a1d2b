// The seeds of the fuzz target, and what it once found, run as ordinary tests.
#define LLVMFuzzerTestOneInput xmlTextFuzzTarget
#include "../fuzz/xml_text.cpp"
#undef LLVMFuzzerTestOneInput

#include "support/fuzz_seeds.h"

namespace {

TEST(FuzzSeeds, EveryXmlTextIsReadOrRefused) {
    EXPECT_GT(runSeeds("xml_text", xmlTextFuzzTarget), 20u);
}

}  // namespace
