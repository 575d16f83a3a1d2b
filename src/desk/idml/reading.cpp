#include "desk/idml/reading.h"

#include "desk/idml/limits.h"

namespace desk {

void Reading::note(const std::string& what) {
    if (document.notes.size() >= limits::notes || !known_.emplace(member, what).second) return;
    document.notes.push_back({member, what});
}

InputError Reading::failure(int line, const std::string& sentence) const {
    return InputError(package.name() + ", " + member + ", line " + std::to_string(line) + ": " + sentence);
}

InputError Reading::failure(const std::string& sentence) const {
    return InputError(package.name() + ": " + sentence);
}

std::string quoted(std::string_view text) {
    constexpr size_t longest = 80;
    std::string result = "\"";
    for (char c : text.substr(0, longest)) result += static_cast<unsigned char>(c) < 0x20 || c == 0x7f ? '?' : c;
    // A cut in the middle of a character would leave half of it.
    if (text.size() > longest) {
        while (result.size() > 1 && (static_cast<unsigned char>(result.back()) & 0xC0) == 0x80) result.pop_back();
        if (result.size() > 1 && (static_cast<unsigned char>(result.back()) & 0x80) != 0) result.pop_back();
        result += "...";
    }
    return result + "\"";
}

std::string quotedList(const std::vector<std::string>& names) {
    constexpr size_t longest = 10;
    std::string list;
    for (size_t i = 0; i < names.size() && i < longest; ++i) {
        if (i > 0) list += i + 1 == names.size() ? " and " : ", ";
        list += quoted(names[i]);
    }
    if (names.size() > longest) list += " and " + std::to_string(names.size() - longest) + " more";
    return list;
}

}  // namespace desk
