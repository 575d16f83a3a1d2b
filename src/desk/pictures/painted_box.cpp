#include "desk/pictures/painted_box.h"

#include <charconv>

#include "desk/pictures/converting_program.h"

namespace desk {
namespace {

/// Four numbers behind the mark.
std::optional<Rect> boxIn(std::string_view answer) {
    constexpr std::string_view mark = "%%HiResBoundingBox:";
    const size_t found = answer.rfind(mark);
    if (found == std::string_view::npos) return {};
    const char* at = answer.data() + found + mark.size();
    const char* const end = answer.data() + answer.size();
    double sides[4] = {};
    for (double& side : sides) {
        while (at < end && *at == ' ') ++at;
        const auto read = std::from_chars(at, end, side);
        if (read.ec != std::errc()) return {};
        at = read.ptr;
    }
    if (!(sides[2] > sides[0]) || !(sides[3] > sides[1])) return {};
    return Rect{sides[0], sides[1], sides[2], sides[3]};
}

}  // namespace

std::optional<Rect> paintedBoxOf(std::string_view pdf, int page) {
    const std::string number = std::to_string(page);
    try {
        return boxIn(convert({"gs", "-q", "-dSAFER", "-dBATCH", "-dNOPAUSE", "-sDEVICE=bbox", "-dWhiteIsOpaque=true",
                              "-dFirstPage=" + number, "-dLastPage=" + number, inputName},
                             pdf, "ghostscript", AnswerOn::StandardError));
    } catch (const ConversionStopped&) {
        throw;
    } catch (const PictureError&) {
        return {};
    }
}

}  // namespace desk
