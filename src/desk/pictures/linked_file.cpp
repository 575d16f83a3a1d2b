#include "desk/pictures/linked_file.h"

#include <filesystem>
#include <system_error>
#include <vector>

namespace desk {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view scheme = "file:";

int hexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

std::string withoutPercents(std::string_view text) {
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        const int high = text[i] == '%' && i + 2 < text.size() ? hexValue(text[i + 1]) : -1;
        const int low = high >= 0 ? hexValue(text[i + 2]) : -1;
        if (low < 0) {
            out += text[i];
        } else {
            out += static_cast<char>(high * 16 + low);
            i += 2;
        }
    }
    return out;
}

bool isFile(const fs::path& path) {
    std::error_code ignored;
    return fs::is_regular_file(path, ignored);
}

/// The last parts of a path, the shortest first: "c.jpg", "b/c.jpg", "a/b/c.jpg". No part leads upwards.
std::vector<fs::path> tailsOf(const fs::path& path) {
    constexpr size_t mostParts = 6;
    std::vector<fs::path> tails;
    fs::path tail;
    for (fs::path rest = path.relative_path(); !rest.empty() && tails.size() < mostParts; rest = rest.parent_path()) {
        const fs::path part = rest.filename();
        if (part.empty() || part == "." || part == "..") break;
        tail = tail.empty() ? part : part / tail;
        tails.push_back(tail);
    }
    return tails;
}

}  // namespace

std::string pathOfLink(const std::string& uri) {
    if (!uri.starts_with(scheme)) return {};
    std::string path = withoutPercents(std::string_view(uri).substr(scheme.size()));
    if (path.find('\0') != std::string::npos) return {};
    // "file:///path" has an empty host; with a host it is a share, as two strokes say.
    if (path.starts_with("///")) path.erase(0, 2);
    return path;
}

std::string linkOfPath(const std::string& path) {
    constexpr char digits[] = "0123456789ABCDEF";
    constexpr std::string_view plain = "/-_.~!$&'()*+,;=:@";
    std::string uri(scheme);
    for (const char c : path) {
        const bool isWord = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        if (isWord || plain.find(c) != std::string_view::npos) {
            uri += c;
        } else {
            uri += '%';
            uri += digits[static_cast<unsigned char>(c) >> 4];
            uri += digits[static_cast<unsigned char>(c) & 15];
        }
    }
    return uri;
}

std::string fileOfLink(const std::string& uri, const std::string& documentPath) {
    const std::string named = pathOfLink(uri);
    if (named.empty()) return {};
    std::string path = named;
    for (char& c : path)
        if (c == '\\') c = '/';
    if (isFile(named) && fs::path(named).is_absolute()) return named;
    constexpr int mostFolders = 4;
    std::error_code ignored;
    fs::path folder = fs::absolute(documentPath, ignored).parent_path();
    const std::vector<fs::path> tails = tailsOf(path);
    for (int i = 0; i < mostFolders && !folder.empty(); ++i, folder = folder.parent_path()) {
        // The longest tail says most about which file is meant.
        for (auto tail = tails.rbegin(); tail != tails.rend(); ++tail)
            for (const fs::path& candidate : {folder / *tail, folder / "Links" / *tail})
                if (isFile(candidate)) return candidate.string();
        if (folder == folder.root_path()) break;
    }
    return {};
}

}  // namespace desk
