#include "pdf/predictor.h"

#include <gtest/gtest.h>

#include "pdf/encoders.h"
#include "pdf/limits.h"

namespace vornaset {
namespace {

std::vector<PredictorParameters> everyRow() {
    std::vector<PredictorParameters> all;
    for (int64_t colors : {1, 2, 3, 4, 5})
        for (int64_t bits : {1, 2, 4, 8, 16})
            for (int64_t columns : {1, 2, 3, 7, 16}) all.push_back({12, colors, bits, columns});
    return all;
}

TEST(Predictor, GivesBackPNGRowsOfEveryKind) {
    std::mt19937 random(15);
    for (PredictorParameters parameters : everyRow()) {
        for (int64_t predictor : {10, 11, 12, 13, 14, 15}) {
            parameters.predictor = predictor;
            const std::string bytes = encoders::randomBytes(random, encoders::rowLength(parameters) * 11);
            const UndoneBytes undone = undoPredictor(encoders::png(bytes, parameters), parameters);
            ASSERT_EQ(undone.bytes, bytes) << parameters.colors << " colours of " << parameters.bitsPerComponent;
            ASSERT_EQ(undone.outcome, UndoOutcome::whole);
        }
    }
}

TEST(Predictor, GivesBackTIFFRowsOfEveryDepth) {
    std::mt19937 random(2);
    for (PredictorParameters parameters : everyRow()) {
        parameters.predictor = 2;
        const std::string bytes = encoders::randomBytes(random, encoders::rowLength(parameters) * 5);
        const UndoneBytes undone = undoPredictor(encoders::tiff(bytes, parameters), parameters);
        ASSERT_EQ(undone.bytes, bytes) << parameters.colors << " colours of " << parameters.bitsPerComponent << ", "
                                       << parameters.columns << " columns";
        ASSERT_EQ(undone.outcome, UndoOutcome::whole);
    }
}

TEST(Predictor, LeavesTheBytesWithoutOne) {
    EXPECT_EQ(undoPredictor("abc", {}).bytes, "abc");
    EXPECT_EQ(undoPredictor("abc", {}).outcome, UndoOutcome::whole);
}

TEST(Predictor, TakesALastRowThatEndsEarly) {
    const PredictorParameters parameters{12, 1, 8, 4};
    const UndoneBytes undone = undoPredictor(std::string("\x02"
                                                         "abcd\x02\x01\x01",
                                                         8),
                                             parameters);
    EXPECT_EQ(undone.bytes, "abcdbc");
    EXPECT_EQ(undone.outcome, UndoOutcome::partial);
}

TEST(Predictor, TakesARowOfUnknownKindAsItStands) {
    const PredictorParameters parameters{15, 1, 8, 3};
    const UndoneBytes undone = undoPredictor(
        "\x09"
        "abc",
        parameters);
    EXPECT_EQ(undone.bytes, "abc");
    EXPECT_EQ(undone.outcome, UndoOutcome::partial);
}

TEST(Predictor, LeavesTheBytesForParametersThatNoRowCanHave) {
    const std::vector<PredictorParameters> impossible{
        {3, 1, 8, 1},
        {16, 1, 8, 1},
        {-1, 1, 8, 1},
        {12, 0, 8, 1},
        {12, -1, 8, 1},
        {12, 1, 3, 1},
        {12, 1, 0, 1},
        {12, 1, 8, 0},
        {12, 257, 8, 1},
        {12, 1, 8, -5},
        {2, 1, 8, INT64_MAX},
        {12, INT64_MAX, 16, INT64_MAX},
        {12, 256, 16, static_cast<int64_t>(pdf_limits::kMaximumPredictorRow)}};
    for (const PredictorParameters& parameters : impossible) {
        const UndoneBytes undone = undoPredictor("abcdef", parameters);
        EXPECT_EQ(undone.bytes, "abcdef") << parameters.predictor << " " << parameters.colors;
        EXPECT_EQ(undone.outcome, UndoOutcome::partial);
    }
}

TEST(Predictor, TakesEmptyBytes) {
    EXPECT_EQ(undoPredictor("", {12, 3, 8, 10}).bytes, "");
    EXPECT_EQ(undoPredictor("", {2, 3, 8, 10}).bytes, "");
    EXPECT_EQ(undoPredictor("\x02", {12, 3, 8, 10}).bytes, "");
}

}  // namespace
}  // namespace vornaset
