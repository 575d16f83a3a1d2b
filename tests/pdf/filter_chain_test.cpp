#include "pdf/filter_chain.h"

#include <gtest/gtest.h>

#include "pdf/encoders.h"

namespace vornaset {
namespace {

const std::string text = "0 0 100 100 re f 0 0 100 100 re f 0 0 100 100 re f";

std::vector<FilterStep> steps(const std::vector<std::string>& names) {
    std::vector<FilterStep> all;
    for (const std::string& name : names) {
        FilterStep step;
        step.name = name;
        all.push_back(step);
    }
    return all;
}

void expectChain(const std::string& raw, const std::vector<FilterStep>& filters, const std::string& bytes,
                 ChainOutcome outcome) {
    const UndoneChain undone = undoFilters(raw, filters);
    EXPECT_EQ(undone.bytes, bytes);
    EXPECT_EQ(undone.outcome, outcome);
}

TEST(FilterChain, WithoutFiltersGivesTheBytes) {
    expectChain(text, {}, text, ChainOutcome::undone);
}

TEST(FilterChain, UndoesEachFilterAloneUnderBothItsNames) {
    for (const char* name : {"FlateDecode", "Fl"})
        expectChain(encoders::deflated(text), steps({name}), text, ChainOutcome::undone);
    for (const char* name : {"LZWDecode", "LZW"})
        expectChain(encoders::lzw(text, true), steps({name}), text, ChainOutcome::undone);
    for (const char* name : {"ASCII85Decode", "A85"})
        expectChain(encoders::base85(text), steps({name}), text, ChainOutcome::undone);
    for (const char* name : {"ASCIIHexDecode", "AHx"})
        expectChain(encoders::hex(text), steps({name}), text, ChainOutcome::undone);
    for (const char* name : {"RunLengthDecode", "RL"})
        expectChain(encoders::runLength(text), steps({name}), text, ChainOutcome::undone);
}

TEST(FilterChain, UndoesFiltersInTheirOrder) {
    const std::string raw =
        encoders::hex(encoders::base85(encoders::runLength(encoders::lzw(encoders::deflated(text), true))));
    expectChain(raw, steps({"ASCIIHexDecode", "ASCII85Decode", "RunLengthDecode", "LZWDecode", "FlateDecode"}), text,
                ChainOutcome::undone);
}

TEST(FilterChain, UndoesThePredictorOfItsOwnStepAlone) {
    std::vector<FilterStep> filters = steps({"FlateDecode", "LZWDecode"});
    filters[0].predictor = {12, 1, 8, 5};
    filters[1].predictor = {2, 1, 8, 10};
    filters[1].change = LZWChange::late;
    const std::string inner = encoders::lzw(encoders::tiff(text, filters[1].predictor), false);
    const std::string raw = encoders::deflated(encoders::png(inner, filters[0].predictor));
    expectChain(raw, filters, text, ChainOutcome::undone);
}

TEST(FilterChain, IgnoresPredictorParametersOfOtherFilters) {
    std::vector<FilterStep> filters = steps({"ASCIIHexDecode"});
    filters[0].predictor = {12, 1, 8, 5};
    expectChain(encoders::hex(text), filters, text, ChainOutcome::undone);
}

TEST(FilterChain, LeavesALastJPEG) {
    expectChain("jpeg bytes", steps({"DCTDecode"}), "jpeg bytes", ChainOutcome::jpeg);
    expectChain(encoders::deflated("jpeg bytes"), steps({"FlateDecode", "DCTDecode"}), "jpeg bytes",
                ChainOutcome::jpeg);
    expectChain(encoders::hex("more bytes"), steps({"AHx", "JPXDecode"}), "more bytes", ChainOutcome::jpeg2000);
}

TEST(FilterChain, PassesOverDecryption) {
    expectChain(encoders::deflated(text), steps({"Crypt", "FlateDecode"}), text, ChainOutcome::undone);
    expectChain(text, steps({"Crypt"}), text, ChainOutcome::undone);
}

TEST(FilterChain, CarriesTheWholeStreamWhenAFilterIsForeign) {
    const std::string raw = encoders::deflated("fax bytes");
    expectChain(raw, steps({"FlateDecode", "CCITTFaxDecode"}), raw, ChainOutcome::carried);
    expectChain("jbig2", steps({"JBIG2Decode"}), "jbig2", ChainOutcome::carried);
    expectChain("what", steps({""}), "what", ChainOutcome::carried);
    expectChain("what", steps({"flatedecode"}), "what", ChainOutcome::carried);
}

TEST(FilterChain, CarriesAPictureThatIsNotTheLast) {
    expectChain("bytes", steps({"DCTDecode", "FlateDecode"}), "bytes", ChainOutcome::carried);
}

TEST(FilterChain, CarriesWhatWouldBeTooLarge) {
    const std::string raw = encoders::deflated(std::string(5000, ' '));
    const UndoneChain undone = undoFilters(raw, steps({"FlateDecode"}), 4999);
    EXPECT_EQ(undone.bytes, raw);
    EXPECT_EQ(undone.outcome, ChainOutcome::carried);
    EXPECT_EQ(undoFilters(raw, steps({"FlateDecode"}), 5000).outcome, ChainOutcome::undone);
}

TEST(FilterChain, StopsAChainThatGrowsByAMillion) {
    std::string raw = encoders::deflated(encoders::deflated(std::string(50'000'000, '\0')));
    const UndoneChain undone = undoFilters(raw, steps({"FlateDecode", "FlateDecode"}), 1'000'000);
    EXPECT_EQ(undone.outcome, ChainOutcome::carried);
    EXPECT_EQ(undone.bytes, raw);
}

TEST(FilterChain, CarriesAChainOfTooManyFilters) {
    std::string raw = text;
    std::vector<std::string> names;
    for (size_t count = 0; count < pdf_limits::kMaximumFilters; ++count) {
        raw = encoders::hex(raw);
        names.emplace_back("AHx");
    }
    expectChain(raw, steps(names), text, ChainOutcome::undone);
    names.emplace_back("AHx");
    expectChain(raw, steps(names), raw, ChainOutcome::carried);
}

TEST(FilterChain, GivesWhatDamagedDataHold) {
    const std::string raw = encoders::deflated(text);
    expectChain("no deflate data", steps({"FlateDecode"}), "", ChainOutcome::undone);
    expectChain(raw.substr(0, raw.size() - 4), steps({"FlateDecode"}), text, ChainOutcome::undone);
}

}  // namespace
}  // namespace vornaset
