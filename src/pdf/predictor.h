#pragma once

#include <cstdint>
#include <string>

#include "pdf/inflate.h"

namespace vornaset {

/// What stands in /DecodeParms for the predictors (ISO 32000-1, 7.4.4.4), with the defaults of the format.
struct PredictorParameters {
    int64_t predictor = 1;  ///< 1 none, 2 TIFF, 10 to 15 PNG
    int64_t colors = 1;
    int64_t bitsPerComponent = 8;
    int64_t columns = 1;
};

/// The samples behind the predictor. Bytes that don't fill the last row are treated as a row that ends early. An
/// unknown predictor and parameters that no row can have leave the bytes as they are, as `partial`; so does a row
/// beyond kMaximumPredictorRow.
UndoneBytes undoPredictor(std::string bytes, const PredictorParameters& parameters);

}  // namespace vornaset
