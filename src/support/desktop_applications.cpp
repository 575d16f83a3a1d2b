#include "support/desktop_applications.h"

#include <strings.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <vector>

namespace vornaset {

namespace {

namespace fs = std::filesystem;

constexpr const char* kGroup = "Desktop Entry";
constexpr std::string_view kEnding = ".desktop";

std::string variable(const char* name, const std::string& defaultText) {
    const char* value = std::getenv(name);
    return value != nullptr && *value != 0 ? value : defaultText;
}

std::vector<std::string> parts(std::string_view text, char separator) {
    std::vector<std::string> result;
    while (!text.empty()) {
        const size_t end = std::min(text.find(separator), text.size());
        if (end > 0) result.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return result;
}

/// The user's folder, then the system's, the most important first.
std::vector<std::string> folders(const char* own, const std::string& ownDefault, const char* system,
                                 const std::string& systemDefault) {
    std::vector<std::string> result{variable(own, variable("HOME", "/") + ownDefault)};
    for (std::string& folder : parts(variable(system, systemDefault), ':')) result.push_back(std::move(folder));
    return result;
}

std::vector<std::string> dataFolders() {
    return folders("XDG_DATA_HOME", "/.local/share", "XDG_DATA_DIRS", "/usr/local/share:/usr/share");
}

std::vector<std::string> configurationFolders() {
    return folders("XDG_CONFIG_HOME", "/.config", "XDG_CONFIG_DIRS", "/etc/xdg");
}

bool canStart(const DesktopEntryFile& entry) {
    if (entry.isTrue(kGroup, "Hidden") || entry.value(kGroup, "Type") != "Application") return false;
    const std::string tried = entry.text(kGroup, "TryExec");
    return !entry.value(kGroup, "Exec").empty() && (tried.empty() || !programPath(tried).empty());
}

/// Where an entry of that identifier may stand: each "-" may be a folder's border.
std::optional<fs::path> placeOfEntry(const fs::path& folder, const std::string& identifier) {
    std::error_code error;
    const fs::path place = folder / (identifier + std::string(kEnding));
    if (fs::is_regular_file(place, error)) return place;
    for (size_t dash = identifier.find('-'); dash != std::string::npos; dash = identifier.find('-', dash + 1)) {
        const fs::path inner = folder / identifier.substr(0, dash);
        if (dash == 0 || !fs::is_directory(inner, error)) continue;
        if (auto found = placeOfEntry(inner, identifier.substr(dash + 1))) return found;
    }
    return std::nullopt;
}

std::string withoutEnding(const std::string& name) {
    return name.ends_with(kEnding) ? name.substr(0, name.size() - kEnding.size()) : name;
}

/// The identifiers of all entries below a folder of applications, sorted.
std::set<std::string> identifiersIn(const fs::path& folder) {
    std::set<std::string> identifiers;
    std::error_code error;
    fs::recursive_directory_iterator entry(folder, error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        std::string name = entry->path().lexically_relative(folder).string();
        if (!name.ends_with(kEnding)) continue;
        std::replace(name.begin(), name.end(), '/', '-');
        identifiers.insert(withoutEnding(name));
    }
    return identifiers;
}

std::set<std::string> allIdentifiers() {
    std::set<std::string> identifiers;
    for (const std::string& folder : dataFolders()) identifiers.merge(identifiersIn(fs::path(folder) / "applications"));
    return identifiers;
}

bool equalButForCase(const std::string& first, const std::string& second) {
    return strcasecmp(first.c_str(), second.c_str()) == 0;
}

std::string readWhole(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The type itself, then what it is a kind of, the nearest first.
std::vector<std::string> typeAndItsKinds(const std::string& type) {
    std::vector<std::string> kinds{type};
    for (size_t index = 0; index < kinds.size(); ++index) {
        const auto add = [&](const std::string& kind) {
            if (std::find(kinds.begin(), kinds.end(), kind) == kinds.end()) kinds.push_back(kind);
        };
        for (const std::string& folder : dataFolders()) {
            std::istringstream lines(readWhole(folder + "/mime/subclasses"));
            for (std::string child, parent; lines >> child >> parent;) {
                if (child == kinds[index]) add(parent);
            }
        }
        if (kinds[index].starts_with("text/")) add("text/plain");
    }
    return kinds;
}

/// One place where choices of applications are written down, and the applications beside it, if any.
struct Choices {
    DesktopEntryFile list;
    std::string applications;
};

std::vector<Choices> choicesByImportance() {
    std::vector<Choices> result;
    const auto add = [&](const std::string& folder, const std::string& applications) {
        std::vector<std::string> names;
        for (std::string desktop : parts(variable("XDG_CURRENT_DESKTOP", ""), ':')) {
            std::transform(desktop.begin(), desktop.end(), desktop.begin(),
                           [](unsigned char letter) { return std::tolower(letter); });
            names.push_back(desktop + "-mimeapps.list");
        }
        names.emplace_back("mimeapps.list");
        for (const std::string& name : names) {
            const bool isLast = name == names.back();
            std::string path = folder;
            path.append("/").append(name);
            result.push_back({DesktopEntryFile::atPath(path).value_or(DesktopEntryFile()), isLast ? applications : ""});
        }
    };
    for (const std::string& folder : configurationFolders()) add(folder, "");
    for (const std::string& folder : dataFolders()) add(folder + "/applications", folder + "/applications");
    return result;
}

std::optional<Application> firstInstalled(const std::string& list, const std::set<std::string>& removed) {
    for (const std::string& name : parts(list, ';')) {
        const std::string identifier = withoutEnding(name);
        if (removed.contains(identifier)) continue;
        if (auto application = applicationWithIdentifier(identifier)) return application;
    }
    return std::nullopt;
}

/// The first application beside a list that says itself that it opens the type.
std::optional<Application> applicationThatSaysSo(const std::string& folder, const std::string& type,
                                                 const std::set<std::string>& removed) {
    if (folder.empty()) return std::nullopt;
    for (const std::string& identifier : identifiersIn(folder)) {
        if (removed.contains(identifier)) continue;
        const auto place = placeOfEntry(folder, identifier);
        const auto entry = place ? DesktopEntryFile::atPath(place->string()) : std::nullopt;
        const auto types = entry ? parts(entry->value(kGroup, "MimeType"), ';') : std::vector<std::string>();
        if (std::find(types.begin(), types.end(), type) == types.end()) continue;
        if (auto application = applicationWithIdentifier(identifier)) return application;
    }
    return std::nullopt;
}

std::optional<Application> applicationForExactType(const std::string& type) {
    const std::vector<Choices> choices = choicesByImportance();
    for (const Choices& choice : choices) {
        if (auto found = firstInstalled(choice.list.value("Default Applications", type), {})) return found;
    }
    std::set<std::string> removed;
    for (const Choices& choice : choices) {
        if (auto found = firstInstalled(choice.list.value("Added Associations", type), removed)) return found;
        for (const std::string& name : parts(choice.list.value("Removed Associations", type), ';'))
            removed.insert(withoutEnding(name));
        if (auto found = applicationThatSaysSo(choice.applications, type, removed)) return found;
    }
    return std::nullopt;
}

/// The value of a variable in an environment as the system shows it.
std::string valueIn(const std::string& environment, std::string_view name) {
    for (const std::string& entry : parts(environment, '\0')) {
        if (entry.starts_with(name) && entry.size() > name.size() && entry[name.size()] == '=')
            return entry.substr(name.size() + 1);
    }
    return {};
}

}  // namespace

std::optional<Launch> Application::launchWith(const Document& document) const {
    Launch launch;
    if (identifier.empty()) {
        launch.words = {path};
        if (!document.url.empty()) launch.words.push_back(document.path.empty() ? document.url : document.path);
        return launch;
    }
    launch.words = wordsOfExecLine(entry.text(kGroup, "Exec"), document, entry.text(kGroup, "Name"), path);
    if (launch.words.empty()) return std::nullopt;
    if (entry.isTrue(kGroup, "Terminal")) launch.words.insert(launch.words.begin(), {"x-terminal-emulator", "-e"});
    launch.folder = entry.text(kGroup, "Path");
    launch.applicationFile = path;
    return launch;
}

std::optional<Application> applicationWithIdentifier(const std::string& identifier) {
    if (identifier.empty() || identifier.find('/') != std::string::npos) return std::nullopt;
    for (const std::string& folder : dataFolders()) {
        const auto place = placeOfEntry(fs::path(folder) / "applications", identifier);
        if (!place) continue;
        auto entry = DesktopEntryFile::atPath(place->string());
        // An entry of the user's hides the system's, also when it says that there is no such application.
        if (!entry || !canStart(*entry)) return std::nullopt;
        return Application{identifier, place->string(), std::move(*entry)};
    }
    return std::nullopt;
}

std::optional<Application> applicationNamed(const std::string& name) {
    if (name.empty()) return std::nullopt;
    if (auto application = applicationWithIdentifier(withoutEnding(name))) return application;
    std::optional<Application> shown;
    for (const std::string& identifier : allIdentifiers()) {
        const bool isLastPart = equalButForCase(identifier.substr(identifier.rfind('.') + 1), name);
        auto application = applicationWithIdentifier(identifier);
        if (!application) continue;
        if (isLastPart) return application;
        if (!shown && equalButForCase(application->entry.text(kGroup, "Name"), name)) shown = std::move(application);
    }
    if (shown) return shown;
    const std::string program = name.find('/') == std::string::npos ? programPath(name) : std::string();
    return program.empty() ? std::nullopt : std::optional(Application{{}, program, {}});
}

std::optional<Application> applicationForType(const std::string& type) {
    if (type.empty()) return std::nullopt;
    for (const std::string& kind : typeAndItsKinds(type)) {
        if (auto application = applicationForExactType(kind)) return application;
    }
    return std::nullopt;
}

std::string typeOfExtension(const std::string& extension) {
    if (extension.empty()) return {};
    int best = -1;
    std::string found;
    // A line is "weight:type:pattern", with further fields behind; a "#" begins a comment.
    for (const std::string& folder : dataFolders()) {
        std::istringstream lines(readWhole(folder + "/mime/globs2"));
        for (std::string line; std::getline(lines, line);) {
            const std::vector<std::string> fields = parts(line, ':');
            if (fields.size() < 3 || line.starts_with('#') || !equalButForCase(fields[2], "*." + extension)) continue;
            const int weight = std::atoi(fields[0].c_str());
            if (weight > best) {
                best = weight;
                found = fields[1];
            }
        }
    }
    // A machine without the database still has plain texts.
    return found.empty() && equalButForCase(extension, "txt") ? "text/plain" : found;
}

std::optional<std::string> runningApplicationFile(const std::string& identifier) {
    std::vector<long> processes;
    std::error_code error;
    fs::directory_iterator entry("/proc", error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const long number = std::atol(entry->path().filename().c_str());
        if (number > 0) processes.push_back(number);
    }
    std::sort(processes.begin(), processes.end());
    for (const long process : processes) {
        const std::string number = std::to_string(process);
        const std::string environment = readWhole("/proc/" + number + "/environ");
        // The programs that it started itself inherit the variables, but their number is another.
        if (valueIn(environment, "GIO_LAUNCHED_DESKTOP_FILE_PID") != number) continue;
        const std::string file = valueIn(environment, "GIO_LAUNCHED_DESKTOP_FILE");
        if (withoutEnding(fs::path(file).filename().string()) == identifier) return file;
    }
    return std::nullopt;
}

}  // namespace vornaset
