#include "support/format.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <optional>

namespace vornaset {

namespace {

/// Wider fields and more digits than these serve nobody; a format that asks for them gets these.
constexpr size_t kLargestWidth = 4096;
constexpr size_t kLargestPrecision = 512;

struct Conversion {
    char16_t letter = 0;
    bool leftAligned = false;
    bool plus = false;
    bool space = false;
    bool zeros = false;
    bool alternate = false;
    size_t width = 0;
    std::optional<size_t> precision;
    std::optional<size_t> position;  ///< from 0
};

/// Walks the format and hands out arguments in order.
class Formatter {
  public:
    Formatter(std::u16string_view format, std::span<const FormatArgument> arguments)
        : format_(format), arguments_(arguments) {}

    std::u16string run() {
        while (at_ < format_.size()) {
            const size_t percent = std::min(format_.find(u'%', at_), format_.size());
            result_ += format_.substr(at_, percent - at_);
            at_ = percent;
            if (at_ < format_.size()) convert();
        }
        return std::move(result_);
    }

  private:
    void convert() {
        const size_t start = at_;
        const size_t argumentBefore = next_;
        const std::optional<Conversion> conversion = parse();
        if (!conversion) {
            result_ += format_[start];
            at_ = start + 1;
            next_ = argumentBefore;
        } else if (conversion->letter == '%') {
            result_ += u'%';
        } else {
            render(*conversion);
        }
    }

    char16_t peek() const { return at_ < format_.size() ? format_[at_] : u'\0'; }

    std::optional<size_t> parseNumber() {
        if (peek() < '0' || peek() > '9') return std::nullopt;
        size_t number = 0;
        for (; peek() >= '0' && peek() <= '9'; ++at_) number = std::min<size_t>(number * 10 + (peek() - u'0'), 1000000);
        return number;
    }

    /// Reads one conversion from its percent sign on; nothing when what follows is none.
    std::optional<Conversion> parse() {
        Conversion conversion;
        ++at_;
        parsePosition(conversion);
        while (parseFlag(conversion)) ++at_;
        parseWidthAndPrecision(conversion);
        while (peek() != 0 && std::u16string_view(u"hlqztjL").find(peek()) != std::u16string_view::npos) ++at_;
        conversion.letter = peek();
        if (conversion.letter == 0 ||
            std::u16string_view(u"@diuxXocCsSfFeEgGaAp%").find(conversion.letter) == std::u16string_view::npos) {
            return std::nullopt;
        }
        ++at_;
        return conversion;
    }

    void parsePosition(Conversion& conversion) {
        const size_t start = at_;
        const std::optional<size_t> number = parseNumber();
        if (number && *number > 0 && peek() == '$') {
            conversion.position = *number - 1;
            ++at_;
        } else {
            at_ = start;
        }
    }

    bool parseFlag(Conversion& conversion) const {
        switch (peek()) {
            case '-':
                return conversion.leftAligned = true;
            case '+':
                return conversion.plus = true;
            case ' ':
                return conversion.space = true;
            case '0':
                return conversion.zeros = true;
            case '#':
                return conversion.alternate = true;
            default:
                return false;
        }
    }

    void parseWidthAndPrecision(Conversion& conversion) {
        if (peek() == '*') {
            ++at_;
            const int64_t width = nextInteger();
            conversion.leftAligned = conversion.leftAligned || width < 0;
            conversion.width = static_cast<size_t>(std::min<uint64_t>(magnitude(width), kLargestWidth));
        } else {
            conversion.width = std::min(parseNumber().value_or(0), kLargestWidth);
        }
        if (peek() != '.') return;
        ++at_;
        if (peek() == '*') {
            ++at_;
            const int64_t precision = nextInteger();
            if (precision >= 0) conversion.precision = static_cast<size_t>(precision);
        } else {
            conversion.precision = parseNumber().value_or(0);
        }
        if (conversion.precision) conversion.precision = std::min(*conversion.precision, kLargestPrecision);
    }

    const FormatArgument* nextArgument(std::optional<size_t> position) {
        const size_t index = position ? *position : next_++;
        return index < arguments_.size() ? &arguments_[index] : nullptr;
    }

    int64_t nextInteger() {
        const FormatArgument* argument = nextArgument(std::nullopt);
        if (argument == nullptr) return 0;
        return numberOf(*argument).value_or(Number(0)).integerValue();
    }

    static uint64_t magnitude(int64_t number) {
        return number < 0 ? 0 - static_cast<uint64_t>(number) : static_cast<uint64_t>(number);
    }

    /// The number that an argument holds, whatever its form.
    static std::optional<Number> numberOf(const FormatArgument& argument) {
        if (const auto* integer = argument.integer()) {
            return integer->isSigned ? Number(static_cast<int64_t>(integer->bits)) : Number(integer->bits);
        }
        if (argument.number() != nullptr) return *argument.number();
        if (argument.value() != nullptr && argument.value()->isNumber()) return argument.value()->number();
        return std::nullopt;
    }

    /// The bit pattern of an integer in its own width; a floating-point number's whole part.
    static uint64_t bitsOf(const FormatArgument& argument) {
        if (const auto* integer = argument.integer()) {
            return integer->size >= 8 ? integer->bits : integer->bits & ((uint64_t{1} << (integer->size * 8)) - 1);
        }
        return static_cast<uint64_t>(numberOf(argument).value_or(Number(0)).integerValue());
    }

    static String textOf(const FormatArgument& argument) {
        if (const auto* integer = argument.integer(); integer != nullptr && !integer->isSigned) {
            return String::fromUTF8(std::to_string(integer->bits));
        }
        if (argument.value() != nullptr) return argument.value()->description();
        return numberOf(argument).value_or(Number(0)).text();
    }

    void render(const Conversion& conversion) {
        const FormatArgument* argument = nextArgument(conversion.position);
        if (argument == nullptr) return pad(conversion, u"(null)");
        const bool asText = conversion.letter == '@' || conversion.letter == 's' || conversion.letter == 'S';
        if (asText || !numberOf(*argument)) {
            const String text = textOf(*argument);
            return pad(conversion, text.view().substr(0, conversion.precision.value_or(String::npos)));
        }
        switch (conversion.letter) {
            case 'c':
            case 'C':
                return renderCharacter(conversion, *argument);
            case 'd':
            case 'i':
            case 'u':
            case 'x':
            case 'X':
            case 'o':
            case 'p':
                return renderInteger(conversion, *argument);
            default:
                return renderReal(conversion, numberOf(*argument)->doubleValue());
        }
    }

    void renderCharacter(const Conversion& conversion, const FormatArgument& argument) {
        const uint64_t character = bitsOf(argument);
        std::u16string text;
        if (character < 0x10000) {
            text += static_cast<char16_t>(character);
        } else if (character < 0x110000) {
            text += static_cast<char16_t>(0xD7C0 + (character >> 10));
            text += static_cast<char16_t>(0xDC00 + (character & 0x3FF));
        } else {
            text += u'\xFFFD';
        }
        pad(conversion, text);
    }

    void renderInteger(const Conversion& conversion, const FormatArgument& argument) {
        const bool decimal = conversion.letter == 'd' || conversion.letter == 'i';
        const auto* integer = argument.integer();
        const bool isSigned = decimal && (integer == nullptr || integer->isSigned);
        const int64_t number = isSigned ? numberOf(argument)->integerValue() : 0;
        const uint64_t bits = isSigned ? magnitude(number) : bitsOf(argument);
        const bool hexadecimal = conversion.letter == 'x' || conversion.letter == 'X' || conversion.letter == 'p';
        char buffer[32];
        const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, bits,
                                                hexadecimal                ? 16
                                                : conversion.letter == 'o' ? 8
                                                                           : 10);
        std::string digits(buffer, end);
        if (conversion.precision == 0U && bits == 0) digits.clear();
        if (conversion.precision && digits.size() < *conversion.precision) {
            digits.insert(0, *conversion.precision - digits.size(), '0');
        }
        std::string prefix = number < 0 ? "-" : isSigned ? signPrefix(conversion) : "";
        if (conversion.letter == 'p' || (hexadecimal && conversion.alternate && bits != 0)) prefix = "0x";
        if (conversion.letter == 'o' && conversion.alternate && !digits.starts_with('0')) prefix = "0";
        padNumber(conversion, prefix, digits, conversion.precision ? Padding::blanks : Padding::zerosAllowed);
    }

    static std::string signPrefix(const Conversion& conversion) {
        return conversion.plus ? "+" : conversion.space ? " " : "";
    }

    void renderReal(const Conversion& conversion, double number) {
        const auto lower = static_cast<char16_t>(conversion.letter | 0x20);
        const double absolute = std::abs(number);
        const int precision = static_cast<int>(conversion.precision.value_or(6));
        char buffer[kLargestPrecision + 400];
        std::to_chars_result written{};
        if (lower == 'a') {
            written = conversion.precision
                          ? std::to_chars(buffer, std::end(buffer), absolute, std::chars_format::hex, precision)
                          : std::to_chars(buffer, std::end(buffer), absolute, std::chars_format::hex);
        } else {
            const auto form = lower == 'f'   ? std::chars_format::fixed
                              : lower == 'e' ? std::chars_format::scientific
                                             : std::chars_format::general;
            written = std::to_chars(buffer, std::end(buffer), absolute, form, precision);
        }
        std::string prefix = std::signbit(number) ? "-" : signPrefix(conversion);
        if (lower == 'a' && std::isfinite(number)) prefix += "0x";
        padNumber(conversion, prefix, std::string(buffer, written.ptr),
                  std::isfinite(number) ? Padding::zerosAllowed : Padding::blanks);
    }

    enum class Padding { blanks, zerosAllowed };

    void padNumber(const Conversion& conversion, std::string prefix, std::string digits, Padding padding) {
        const size_t length = prefix.size() + digits.size();
        if (padding == Padding::zerosAllowed && conversion.zeros && !conversion.leftAligned &&
            length < conversion.width) {
            digits.insert(0, conversion.width - length, '0');
        }
        std::u16string text(prefix.begin(), prefix.end());
        text.append(digits.begin(), digits.end());
        if (conversion.letter >= 'A' && conversion.letter <= 'Z') {
            for (char16_t& unit : text) {
                if (unit >= 'a' && unit <= 'z') unit = static_cast<char16_t>(unit - 32);
            }
        }
        pad(conversion, text);
    }

    void pad(const Conversion& conversion, std::u16string_view text) {
        const size_t missing = text.size() < conversion.width ? conversion.width - text.size() : 0;
        if (!conversion.leftAligned) result_.append(missing, u' ');
        result_ += text;
        if (conversion.leftAligned) result_.append(missing, u' ');
    }

    std::u16string_view format_;
    std::span<const FormatArgument> arguments_;
    size_t at_ = 0;
    size_t next_ = 0;
    std::u16string result_;
};

}  // namespace

FormatArgument::FormatArgument(const char* utf8)
    : held_(utf8 == nullptr ? Value() : Value(String::fromDamagedUTF8(utf8))) {}

String formatText(const String& format, std::span<const FormatArgument> arguments) {
    if (format.isNull()) return {};
    return String(Formatter(format.view(), arguments).run());
}

}  // namespace vornaset
