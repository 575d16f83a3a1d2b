// What the file system says of a file.

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <array>
#include <cerrno>
#include <string>

#include "support/log.h"
#include "support/paths.h"
#include "support/platform_path.h"
#include "support/text_decoding.h"

namespace vornaset {

namespace {

constexpr const char* kLabelAttribute = "user.vornaset.label";
/// As a volume of the old kind shows it, one of the later kind, and a copy on a file system of another kind. Where
/// there is more than the type, the type comes first.
constexpr std::array<const char*, 3> kTypeAttributes{"hfs.type", "osx.com.apple.FinderInfo",
                                                     "user.com.apple.FinderInfo"};

std::optional<struct statx> attributesOf(const String& path) {
    struct statx attributes {};
    constexpr unsigned kWanted = STATX_SIZE | STATX_MTIME | STATX_BTIME;
    const std::string place = platformPath(path).native();
    if (place.empty() || statx(AT_FDCWD, place.c_str(), 0, kWanted, &attributes) != 0) return std::nullopt;
    return attributes;
}

Date dateOf(const struct statx_timestamp& time) {
    return {static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9};
}

/// Empty when there is none.
std::string extendedAttribute(const String& path, const char* name) {
    std::array<char, 256> bytes{};
    const ssize_t length = getxattr(platformPath(path).c_str(), name, bytes.data(), bytes.size());
    return length <= 0 ? std::string() : std::string(bytes.data(), static_cast<size_t>(length));
}

uint32_t codeOf(std::string_view bytes) {
    uint32_t code = 0;
    for (size_t index = 0; index < 4; ++index) code = code << 8 | static_cast<uint8_t>(bytes[index]);
    return code;
}

/// -1 for a character that Mac OS Roman doesn't have.
int macRomanByte(char16_t character) {
    for (int number = 0; number < 256; ++number) {
        const auto byte = static_cast<uint8_t>(number);
        if (stringWithBytes(&byte, 1, kMacRomanEncoding).view() == std::u16string_view(&character, 1)) return number;
    }
    return -1;
}

}  // namespace

bool fileIsBusy(const String& path) {
    const auto attributes = attributesOf(path);
    if (!attributes) return true;
    const bool knowsCreation = (attributes->stx_mask & STATX_BTIME) != 0;
    return isBusy(static_cast<int64_t>(attributes->stx_size),
                  knowsCreation ? std::optional(dateOf(attributes->stx_btime)) : std::nullopt);
}

bool isBusy(int64_t size, const std::optional<Date>& created) {
    return size == 0 || (created && created->seconds < 0);
}

int64_t fileSizeForPath(const String& path) {
    const auto attributes = attributesOf(path);
    return attributes ? static_cast<int64_t>(attributes->stx_size) : 0;
}

std::optional<Date> modDateForPath(const String& path) {
    const auto attributes = attributesOf(path);
    return attributes ? std::optional(dateOf(attributes->stx_mtime)) : std::nullopt;
}

double modDateSecondsForPath(const String& path) {
    return modDateForPath(path).value_or(Date{}).seconds;
}

String dateStringForPath(const String& path) {
    const auto date = modDateForPath(path);
    return date ? date->description() : String();
}

uint32_t fileHFSType(const String& path) {
    for (const char* name : kTypeAttributes) {
        const std::string bytes = extendedAttribute(path, name);
        if (bytes.size() >= 4) return codeOf(bytes);
    }
    return 0;
}

eLabelColor labelColorForPath(const String& path) {
    const int64_t number = String::fromDamagedUTF8(extendedAttribute(path, kLabelAttribute)).integerValue();
    return number < 0 || number > UINT32_MAX ? 0 : static_cast<eLabelColor>(number);
}

void setLabelColorForPath(const String& path, eLabelColor label) {
    if (!pathExists(path)) return;
    const std::string place = platformPath(path).native();
    const std::string text = std::to_string(label);
    const int failed = label == 0 ? removexattr(place.c_str(), kLabelAttribute)
                                  : setxattr(place.c_str(), kLabelAttribute, text.data(), text.size(), 0);
    if (failed != 0 && !(label == 0 && errno == ENODATA))
        logError(Error(std::error_code(errno, std::generic_category())));
}

String stringWithOSType(uint32_t code) {
    const std::array<uint8_t, 4> bytes{static_cast<uint8_t>(code >> 24), static_cast<uint8_t>(code >> 16),
                                       static_cast<uint8_t>(code >> 8), static_cast<uint8_t>(code)};
    return stringWithBytes(bytes.data(), bytes.size(), kMacRomanEncoding);
}

uint32_t OSTypeWithString(const String& text) {
    if (text.length() != 4) return 0;
    uint32_t code = 0;
    for (const char16_t character : text.view()) {
        const int byte = macRomanByte(character);
        if (byte < 0) return 0;
        code = code << 8 | static_cast<uint32_t>(byte);
    }
    return code;
}

String stringWithPascalString(const uint8_t* bytes) {
    return bytes == nullptr ? String() : stringWithBytes(bytes + 1, *bytes, kMacRomanEncoding);
}

}  // namespace vornaset
