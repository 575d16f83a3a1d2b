// What logging costs while it is off: one compare, whatever the arguments are. The bare compare stands beside it as the
// base of the same run.

#include <benchmark/benchmark.h>

#include "support/log.h"

namespace {

using namespace vornaset;

void bareCompare(benchmark::State& state) {
    setLogging(0, 0);
    for (auto _ : state) {
        benchmark::DoNotOptimize(gLogging);
        if (gLogging == 1) state.SkipWithError("the log is on");
    }
}

void switchedOffLine(benchmark::State& state) {
    setLogging(0, 0);
    const String text = "a text that is never looked at";
    const Array array = Array::make({1, 2, 3});
    for (auto _ : state) {
        benchmark::DoNotOptimize(gLogging);
        MyLog("%@: %@ of %d, %.2f", text, array, 42, 2.5);
    }
}

void switchedOffRectangles(benchmark::State& state) {
    setLogging(0, 0);
    Array rectangles = Array::makeMutable();
    for (int count = 0; count < 1000; ++count) rectangles.add(valueWithRect({1, 2, 3, 4}));
    for (auto _ : state) {
        benchmark::DoNotOptimize(gLogging);
        logRects(rectangles, 1);
    }
}

/// Not off, for the order of size: formatting alone, without the file.
void formattedLine(benchmark::State& state) {
    const String text = "a text that is looked at";
    for (auto _ : state) benchmark::DoNotOptimize(stringWithFormat("%@: %d, %.2f", text, 42, 2.5));
}

BENCHMARK(bareCompare);
BENCHMARK(switchedOffLine);
BENCHMARK(switchedOffRectangles);
BENCHMARK(formattedLine);

}  // namespace
