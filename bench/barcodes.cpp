// EAN-13 symbols as page descriptions, as a merge of labels asks for them: one after the other, none twice.

#include <benchmark/benchmark.h>

#include <string>

#include "tools/barcode/barcode.h"

namespace {

void eanSymbols(benchmark::State& state) {
    long long code = 400'000'000'000;
    for (auto _ : state) {
        benchmark::DoNotOptimize(barcode::draw("ean13", std::to_string(code)));
        code += 7;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(eanSymbols);

}  // namespace
