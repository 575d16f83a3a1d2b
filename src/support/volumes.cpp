#include "support/volumes.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>

namespace vornaset {

namespace {

namespace fs = std::filesystem;

struct Mount {
    std::string point;
    std::string device;
};

std::optional<int> digit(char character, int base) {
    int value = base;
    if (character >= '0' && character <= '9') value = character - '0';
    if (character >= 'a' && character <= 'f') value = character - 'a' + 10;
    return value < base ? std::optional(value) : std::nullopt;
}

/// Resolves escapes of a fixed width: "\040" in the list of mounts, "\x20" in the names of labels.
std::string unescaped(std::string_view text, std::string_view mark, size_t digits, int base) {
    std::string result;
    while (!text.empty()) {
        int value = 0;
        bool isEscape = text.starts_with(mark) && text.size() >= mark.size() + digits;
        for (size_t index = 0; isEscape && index < digits; ++index) {
            const auto next = digit(text[mark.size() + index], base);
            isEscape = next.has_value();
            value = value * base + next.value_or(0);
        }
        result += isEscape ? static_cast<char>(value) : text.front();
        text.remove_prefix(isEscape ? mark.size() + digits : 1);
    }
    return result;
}

bool isNetworkType(std::string_view type) {
    constexpr std::array<std::string_view, 9> kTypes{"nfs",      "nfs4", "cifs", "smb3",      "9p",
                                                     "virtiofs", "ceph", "afs",  "fuse.sshfs"};
    return std::find(kTypes.begin(), kTypes.end(), type) != kTypes.end();
}

/// Where the machine keeps its own things. What users mount below /run stands in /run/media.
bool isPlaceForUsers(const std::string& point) {
    constexpr std::array<std::string_view, 5> kOwn{"/proc/", "/sys/", "/dev/", "/boot/", "/run/"};
    if (point.starts_with("/run/media/")) return true;
    return std::none_of(kOwn.begin(), kOwn.end(), [&](std::string_view own) { return (point + "/").starts_with(own); });
}

/// A line is: number, parent, device number, root in the file system, mount point, options, any number of further
/// fields, "-", type, source, options. A mount whose root isn't "/" shows a part of a file system (or one file) a
/// second time and is no volume.
std::optional<Mount> mountOf(const std::string& line) {
    std::istringstream words(line);
    const std::vector<std::string> fields{std::istream_iterator<std::string>(words), {}};
    const auto dash = std::find(fields.begin(), fields.end(), "-");
    if (fields.size() < 6 || fields.end() - dash < 3) return std::nullopt;
    Mount mount{unescaped(fields[4], "\\", 3, 8), unescaped(dash[2], "\\", 3, 8)};
    if (mount.point == "/") return mount;
    const bool isVolume = mount.device.starts_with("/dev/") || isNetworkType(dash[1]);
    return isVolume && fields[3] == "/" && isPlaceForUsers(mount.point) ? std::optional(mount) : std::nullopt;
}

String volumeName(const Mount& mount, const std::map<std::string, std::string>& labels) {
    const auto label = labels.find(mount.device);
    std::string name = label != labels.end() ? label->second : fs::path(mount.point).filename().string();
    if (name.empty()) name = "Root";
    std::replace(name.begin(), name.end(), ':', '/');
    return String::fromDamagedUTF8(name);
}

bool isTaken(const std::vector<Volume>& table, const String& name) {
    return std::any_of(table.begin(), table.end(), [&](const Volume& volume) { return volume.name == name; });
}

std::map<std::string, std::string> labelsOfDevices() {
    std::map<std::string, std::string> labels;
    std::error_code error;
    fs::directory_iterator entry("/dev/disk/by-label", error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        std::error_code broken;
        const fs::path device = fs::canonical(entry->path(), broken);
        if (!broken) labels[device.string()] = unescaped(entry->path().filename().string(), "\\x", 2, 16);
    }
    return labels;
}

std::vector<Volume> volumesOfMachine() {
    std::ifstream file("/proc/self/mountinfo", std::ios::binary);
    const std::string mounts{std::istreambuf_iterator<char>(file), {}};
    return volumesOfMounts(mounts, labelsOfDevices());
}

struct Table {
    std::vector<Volume> chosen;
    std::vector<Volume> ofMachine;
    std::chrono::steady_clock::time_point read;
};

Table& table() {
    static Table shared;
    return shared;
}

}  // namespace

std::vector<Volume> volumesOfMounts(std::string_view mounts, const std::map<std::string, std::string>& labels) {
    std::vector<Mount> found;
    std::istringstream lines{std::string(mounts)};
    for (std::string line; std::getline(lines, line);) {
        auto mount = mountOf(line);
        if (!mount) continue;
        // What is mounted over another hides it.
        std::erase_if(found, [&](const Mount& hidden) { return hidden.point == mount->point; });
        found.push_back(std::move(*mount));
    }
    const bool hasRoot = std::any_of(found.begin(), found.end(), [](const Mount& mount) { return mount.point == "/"; });
    if (!hasRoot) found.insert(found.begin(), Mount{"/", {}});
    std::vector<Volume> result;
    for (const Mount& mount : found) {
        const String name = volumeName(mount, labels);
        String unique = name;
        for (int64_t number = 1; isTaken(result, unique); ++number) unique = name + " " + Number(number).text();
        result.push_back({unique, String::fromDamagedUTF8(mount.point)});
    }
    return result;
}

std::vector<Volume> volumes() {
    Table& shared = table();
    if (!shared.chosen.empty()) return shared.chosen;
    const auto now = std::chrono::steady_clock::now();
    if (shared.ofMachine.empty() || now - shared.read > std::chrono::seconds(1)) {
        shared.ofMachine = volumesOfMachine();
        shared.read = now;
    }
    return shared.ofMachine;
}

void setVolumes(std::vector<Volume> chosen) {
    table().chosen = std::move(chosen);
}

}  // namespace vornaset
