#include "support/desktop_entry.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace vornaset {

namespace {

constexpr uintmax_t kLargestFile = 16U << 20;

std::string_view trimmed(std::string_view text) {
    const size_t begin = text.find_first_not_of(" \t\r");
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(" \t\r") - begin + 1);
}

int hexDigit(char character) {
    if (character >= '0' && character <= '9') return character - '0';
    if (character >= 'a' && character <= 'f') return character - 'a' + 10;
    if (character >= 'A' && character <= 'F') return character - 'A' + 10;
    return -1;
}

}  // namespace

DesktopEntryFile::DesktopEntryFile(std::string_view text) {
    std::map<std::string, std::string>* group = nullptr;
    while (!text.empty()) {
        const size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = trimmed(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.starts_with('[') && line.ends_with(']')) {
            group = &groups_[std::string(line.substr(1, line.size() - 2))];
            continue;
        }
        const size_t equals = line.find('=');
        if (group == nullptr || line.starts_with('#') || equals == std::string_view::npos) continue;
        group->emplace(trimmed(line.substr(0, equals)), trimmed(line.substr(equals + 1)));
    }
}

std::optional<DesktopEntryFile> DesktopEntryFile::atPath(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error) || std::filesystem::file_size(path, error) > kLargestFile) {
        return std::nullopt;
    }
    std::ifstream file(path, std::ios::binary);
    if (!file) return std::nullopt;
    return DesktopEntryFile(std::string{std::istreambuf_iterator<char>(file), {}});
}

const std::map<std::string, std::string>& DesktopEntryFile::group(const std::string& name) const {
    static const std::map<std::string, std::string> kNone;
    const auto found = groups_.find(name);
    return found == groups_.end() ? kNone : found->second;
}

std::string DesktopEntryFile::value(const std::string& group, const std::string& key) const {
    const auto& entries = this->group(group);
    const auto found = entries.find(key);
    return found == entries.end() ? std::string() : found->second;
}

std::string DesktopEntryFile::text(const std::string& group, const std::string& key) const {
    const std::string raw = value(group, key);
    std::string result;
    for (size_t at = 0; at < raw.size(); ++at) {
        constexpr std::string_view kLetters = "sntr\\";
        constexpr std::string_view kMeanings = " \n\t\r\\";
        const size_t letter = raw[at] == '\\' && at + 1 < raw.size() ? kLetters.find(raw[at + 1]) : std::string::npos;
        result += letter == std::string::npos ? raw[at] : kMeanings[letter];
        if (letter != std::string::npos) ++at;
    }
    return result;
}

std::optional<std::string> pathOfFileURL(std::string_view url) {
    if (url.starts_with("file://localhost/")) {
        url.remove_prefix(16);
    } else if (url.starts_with("file:///")) {
        url.remove_prefix(7);
    } else if (url.starts_with("file:/") && !url.starts_with("file://")) {
        url.remove_prefix(5);
    } else {
        return std::nullopt;
    }
    std::string path;
    for (size_t at = 0; at < url.size(); ++at) {
        if (url[at] != '%') {
            path += url[at];
            continue;
        }
        const int high = at + 1 < url.size() ? hexDigit(url[at + 1]) : -1;
        const int low = at + 2 < url.size() ? hexDigit(url[at + 2]) : -1;
        if (high < 0 || low < 0 || high + low == 0) return std::nullopt;
        path += static_cast<char>(high * 16 + low);
        at += 2;
    }
    return path;
}

std::string fileURLOfPath(std::string_view path) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    const auto isPlain = [](unsigned char byte) {
        return (byte >= 'a' && byte <= 'z') || (byte >= '-' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
               byte == '_' || byte == '~';
    };
    std::string url = "file://";
    url.reserve(url.size() + path.size());
    while (!path.empty()) {
        const auto stop = std::find_if_not(path.begin(), path.end(), isPlain);
        const auto plain = static_cast<size_t>(stop - path.begin());
        url += path.substr(0, plain);
        path.remove_prefix(plain);
        if (path.empty()) break;
        const auto byte = static_cast<unsigned char>(path.front());
        url += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
        path.remove_prefix(1);
    }
    return url;
}

}  // namespace vornaset
