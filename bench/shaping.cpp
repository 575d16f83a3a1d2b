// What shaping costs by word and by line, what opening the list of fonts costs, and a subset.

#include <benchmark/benchmark.h>

#include "desk/fonts/font_library.h"

namespace {

using namespace desk;

FontLibrary& fonts() {
    static FontLibrary library;
    return library;
}

void shapeText(benchmark::State& state, const char* family, std::u16string_view text, std::string_view language) {
    const FontFace& face = fonts().face(family, "Regular");
    const std::vector<FontFeature> features = {{"liga", 1}, {"kern", 1}};
    ShapingRequest request;
    request.text = text;
    request.script = uint32_t{'L'} << 24 | 'a' << 16 | 't' << 8 | 'n';
    request.language = language;
    request.features = &features;
    std::vector<ShapedGlyph> glyphs;
    for (auto _ : state) {
        face.shape(request, glyphs);
        benchmark::DoNotOptimize(glyphs.data());
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

constexpr std::u16string_view kWord = u"Hamburgs";
constexpr std::u16string_view kLine = u"the quick brown fox jumps over the lazy dog and then runs away from it";

BENCHMARK_CAPTURE(shapeText, word_liberation_serif, "Liberation Serif", kWord, "en");
BENCHMARK_CAPTURE(shapeText, word_without_language, "Liberation Serif", kWord, "");
BENCHMARK_CAPTURE(shapeText, word_dejavu_sans, "DejaVu Sans", kWord, "en");
BENCHMARK_CAPTURE(shapeText, word_c059, "C059", kWord, "en");
BENCHMARK_CAPTURE(shapeText, line_liberation_serif, "Liberation Serif", kLine, "en");

// The base for the word: adding up nominal advances, as a setter without kerning would.
void addNominalAdvances(benchmark::State& state) {
    const FontFace& face = fonts().face("Liberation Serif", "Regular");
    for (auto _ : state) {
        double width = 0;
        for (char16_t unit : kWord) width += face.glyphAdvance(face.glyphForCharacter(unit));
        benchmark::DoNotOptimize(width);
    }
}
BENCHMARK(addNominalAdvances);

void listMachineFonts(benchmark::State& state) {
    for (auto _ : state) {
        FontLibrary library;
        benchmark::DoNotOptimize(&library);
    }
}
BENCHMARK(listMachineFonts)->Unit(benchmark::kMillisecond);

void subsetLetters(benchmark::State& state, const char* family) {
    const FontFace& face = fonts().face(family, "Regular");
    std::vector<uint32_t> glyphs;
    for (uint32_t character = 'A'; character <= 'z'; ++character) glyphs.push_back(face.glyphForCharacter(character));
    for (auto _ : state) benchmark::DoNotOptimize(face.subset(glyphs).file.data());
}
BENCHMARK_CAPTURE(subsetLetters, truetype, "Liberation Serif")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(subsetLetters, cff, "C059")->Unit(benchmark::kMillisecond);

}  // namespace
