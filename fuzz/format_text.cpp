// Whatever the format and its arguments are: a text comes out, nothing is read that wasn't passed, and what the C
// library understands comes out as the C library has it.

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/format.h"

namespace {

using namespace vornaset;

void require(bool holds) {
    if (!holds) std::abort();
}

/// Takes values off the front of the input; zeros when it has run out.
class Input {
  public:
    Input(const uint8_t* data, size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

    template <class T>
    T take() {
        T value{};
        std::memcpy(&value, rest_.data(), std::min(sizeof value, rest_.size()));
        rest_.remove_prefix(std::min(sizeof value, rest_.size()));
        return value;
    }
    std::string_view takeText(size_t length) {
        const std::string_view text = rest_.substr(0, length);
        rest_.remove_prefix(text.size());
        return text;
    }
    std::string_view rest() const { return rest_; }

  private:
    std::string_view rest_;
};

FormatArgument takeArgument(Input& input) {
    switch (input.take<uint8_t>() % 10) {
        case 0:
            return input.take<int32_t>();
        case 1:
            return input.take<int64_t>();
        case 2:
            return input.take<uint64_t>();
        case 3:
            return input.take<int8_t>();
        case 4:
            return input.take<double>();
        case 5:
            return input.take<float>();
        case 6:
            return input.takeText(input.take<uint8_t>() % 16);
        case 7:
            return Array::make({Value(input.take<int16_t>()), Value("a%@")});
        case 8:
            return Data(std::string(input.takeText(4)));
        default:
            return nullptr;
    }
}

/// The letter of a format that is one plain conversion, without positions, length letters and arguments for widths;
/// width and precision small. 0 for any other format.
char plainConversion(const std::string& format) {
    size_t at = 0;
    const auto skipNumber = [&] {
        size_t digits = 0;
        for (; at < format.size() && format[at] >= '0' && format[at] <= '9'; ++at) ++digits;
        return digits <= 2;
    };
    if (format.empty() || format[at++] != '%') return 0;
    while (at < format.size() && std::strchr("-+ 0#", format[at]) != nullptr) ++at;
    if (!skipNumber()) return 0;
    if (at < format.size() && format[at] == '.') {
        ++at;
        if (!skipNumber()) return 0;
    }
    return at + 1 == format.size() ? format[at] : '\0';
}

template <class T>
std::string inC(const std::string& format, T value) {
    char text[1024];
    const int length = std::snprintf(text, sizeof text, format.c_str(), value);
    return {text, static_cast<size_t>(length)};
}

void compareWithC(const std::string& format, Input values) {
    const char letter = plainConversion(format);
    if (letter == 0) return;
    if (std::strchr("diuxXo", letter) != nullptr) {
        const auto number = values.take<int32_t>();
        require(stringWithFormat(String(format.c_str()), number).utf8() == inC(format, number));
    } else if (std::strchr("fFeEgG", letter) != nullptr && format.find('#') == std::string::npos) {
        const auto number = values.take<double>();
        if (std::isnan(number)) return;  // whose sign the C library prints
        require(stringWithFormat(String(format.c_str()), number).utf8() == inC(format, number));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input input(data, size);
    const Input values = input;
    std::vector<FormatArgument> arguments;
    for (size_t count = input.take<uint8_t>() % 6; count > 0; --count) arguments.push_back(takeArgument(input));
    const std::string bytes(input.rest().substr(0, 256));
    const String format = String::fromDamagedUTF8(bytes);
    const String result = formatText(format, arguments);
    require(!result.isNull());
    require(result.length() <= (format.length() + 1) * 4200);
    if (format.find(u'%') == String::npos) require(result == format);
    require(stringWithFormat("%@", result) == result);
    if (bytes.find('\0') == std::string::npos) compareWithC(bytes, values);
    return 0;
}
