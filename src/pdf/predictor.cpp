#include "pdf/predictor.h"

#include <algorithm>
#include <cstdlib>

#include "pdf/limits.h"

namespace vornaset {
namespace {

/// Sizes of a row in bytes; all 0 for parameters that no row can have.
struct Row {
    size_t length = 0;
    size_t pixel = 0;  ///< at least 1
};

Row rowOf(const PredictorParameters& parameters) {
    const int64_t bits = parameters.bitsPerComponent;
    const bool isDepth = bits == 1 || bits == 2 || bits == 4 || bits == 8 || bits == 16;
    constexpr int64_t most = pdf_limits::kMaximumPredictorRow;
    if (!isDepth || parameters.colors < 1 || parameters.colors > 256 || parameters.columns < 1 ||
        parameters.columns > most)
        return {};
    const int64_t pixelBits = bits * parameters.colors;
    const int64_t rowBytes = (pixelBits * parameters.columns + 7) / 8;
    if (rowBytes > most) return {};
    return {static_cast<size_t>(rowBytes), static_cast<size_t>((pixelBits + 7) / 8)};
}

uint8_t paeth(uint8_t left, uint8_t above, uint8_t corner) {
    const int estimate = left + above - corner;
    const int toLeft = std::abs(estimate - left);
    const int toAbove = std::abs(estimate - above);
    const int toCorner = std::abs(estimate - corner);
    if (toLeft <= toAbove && toLeft <= toCorner) return left;
    return toAbove <= toCorner ? above : corner;
}

/// One row of PNG (ISO/IEC 15948, 9.2), in place. The row above has the same length at least, or is null.
void undoPNGRow(uint8_t type, uint8_t* row, const uint8_t* above, size_t length, size_t pixel) {
    const auto up = [&](size_t at) { return above != nullptr ? above[at] : uint8_t{0}; };
    const size_t head = std::min(pixel, length);
    switch (type) {
        case 1:
            for (size_t at = pixel; at < length; ++at) row[at] = static_cast<uint8_t>(row[at] + row[at - pixel]);
            break;
        case 2:
            if (above == nullptr) break;
            for (size_t at = 0; at < length; ++at) row[at] = static_cast<uint8_t>(row[at] + above[at]);
            break;
        case 3:
            for (size_t at = 0; at < head; ++at) row[at] = static_cast<uint8_t>(row[at] + up(at) / 2);
            for (size_t at = pixel; at < length; ++at)
                row[at] = static_cast<uint8_t>(row[at] + (row[at - pixel] + up(at)) / 2);
            break;
        case 4:
            for (size_t at = 0; at < head; ++at) row[at] = static_cast<uint8_t>(row[at] + up(at));
            for (size_t at = pixel; at < length; ++at)
                row[at] = static_cast<uint8_t>(row[at] + paeth(row[at - pixel], up(at), up(at - pixel)));
            break;
        default:
            break;
    }
}

/// Each row has a byte in front that tells its filter. Rows are undone in place and moved together.
UndoneBytes undoPNG(std::string bytes, const Row& row) {
    UndoneBytes result;
    auto* const data = reinterpret_cast<uint8_t*>(bytes.data());
    const size_t count = bytes.size();
    size_t given = 0;
    const uint8_t* above = nullptr;
    for (size_t at = 0; at < count;) {
        const uint8_t type = data[at++];
        const size_t length = std::min(row.length, count - at);
        if (type > 4 || length < row.length) result.outcome = UndoOutcome::partial;
        std::copy(data + at, data + at + length, data + given);
        undoPNGRow(type, data + given, above, length, row.pixel);
        above = data + given;
        given += length;
        at += length;
    }
    bytes.resize(given);
    result.bytes = std::move(bytes);
    return result;
}

/// TIFF 6.0, section 14: each sample is told as the difference from the one before it of the same colour.
void undoTIFFRow(uint8_t* row, size_t length, const PredictorParameters& parameters) {
    const auto colors = static_cast<size_t>(parameters.colors);
    if (parameters.bitsPerComponent == 8) {
        for (size_t at = colors; at < length; ++at) row[at] = static_cast<uint8_t>(row[at] + row[at - colors]);
        return;
    }
    if (parameters.bitsPerComponent == 16) {
        for (size_t at = 2 * colors; at + 1 < length; at += 2) {
            const size_t before = at - 2 * colors;
            const unsigned sum =
                ((row[at] << 8U) | row[at + 1]) + ((static_cast<unsigned>(row[before]) << 8U) | row[before + 1]);
            row[at] = static_cast<uint8_t>(sum >> 8U);
            row[at + 1] = static_cast<uint8_t>(sum);
        }
        return;
    }
    const auto bits = static_cast<size_t>(parameters.bitsPerComponent);
    const unsigned mask = (1U << bits) - 1;
    const size_t samples = std::min(static_cast<size_t>(parameters.columns) * colors, length * 8 / bits);
    const auto shiftOf = [&](size_t sample) { return 8 - bits - sample * bits % 8; };
    const auto sampleAt = [&](size_t sample) { return (row[sample * bits / 8] >> shiftOf(sample)) & mask; };
    for (size_t sample = colors; sample < samples; ++sample) {
        const unsigned value = (sampleAt(sample) + sampleAt(sample - colors)) & mask;
        uint8_t& byte = row[sample * bits / 8];
        byte = static_cast<uint8_t>((byte & ~(mask << shiftOf(sample))) | (value << shiftOf(sample)));
    }
}

}  // namespace

UndoneBytes undoPredictor(std::string bytes, const PredictorParameters& parameters) {
    if (parameters.predictor == 1) return {std::move(bytes), UndoOutcome::whole};
    const Row row = rowOf(parameters);
    const bool isPNG = parameters.predictor >= 10 && parameters.predictor <= 15;
    if (row.length == 0 || (!isPNG && parameters.predictor != 2)) return {std::move(bytes), UndoOutcome::partial};
    if (isPNG) return undoPNG(std::move(bytes), row);
    auto* const data = reinterpret_cast<uint8_t*>(bytes.data());
    for (size_t at = 0; at < bytes.size(); at += row.length)
        undoTIFFRow(data + at, std::min(row.length, bytes.size() - at), parameters);
    const bool isWhole = bytes.size() % row.length == 0;
    return {std::move(bytes), isWhole ? UndoOutcome::whole : UndoOutcome::partial};
}

}  // namespace vornaset
