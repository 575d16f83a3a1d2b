#include "support/applications.h"

#include <filesystem>

#include "support/alert.h"
#include "support/atomic_file.h"
#include "support/clipboard.h"
#include "support/desktop_applications.h"
#include "support/log.h"
#include "support/paths.h"
#include "support/platform_path.h"
#include "support/text_decoding.h"

namespace vornaset {

namespace {

constexpr const char* kFileBrowser = "Finder";
constexpr const char* kLastResort = "TextEdit";
constexpr const char* kLastExtension = "txt";
constexpr const char* kEditor = "BBEdit";
constexpr const char* kEditorOfPasteboard = "BBEditWithClipboard";
constexpr const char* kOwnIdentifier = "com.kelmoriandev.indesign.Vornaset";
/// How long a program that only passes something on may take to say that it couldn't.
constexpr int kMostMilliseconds = 3000;

/// By its name, else by the role that the name stands for.
std::optional<Application> applicationCalled(const String& name) {
    if (auto application = applicationNamed(name.utf8())) return application;
    if (name == kFileBrowser) return applicationForType("inode/directory");
    if (name == kLastResort || name == kEditor) return applicationForType("text/plain");
    return std::nullopt;
}

bool start(const std::optional<Application>& application, const Document& document) {
    const auto what = application ? application->launchWith(document) : std::nullopt;
    return what && launch(*what);
}

bool startWithDesktopsOpener(const std::string& document) {
    return launchAndWait({{"xdg-open", document}, {}, {}}, kMostMilliseconds);
}

Document documentAt(const String& path) {
    std::error_code error;
    const std::string place = std::filesystem::absolute(platformPath(path), error).string();
    return {place, fileURLOfPath(place)};
}

std::string extensionOf(const String& path) {
    return platformPathOfItem(path).extension().string().substr(platformPathOfItem(path).has_extension() ? 1 : 0);
}

/// The text of a scheme (RFC 3986, clause 3.1) in lower case; empty when the text begins with none.
std::string schemeOf(const std::string& url) {
    const size_t colon = url.find(':');
    if (colon == std::string::npos || colon == 0) return {};
    std::string scheme;
    for (const char character : url.substr(0, colon)) {
        const bool isUpper = character >= 'A' && character <= 'Z';
        const bool isLetter = isUpper || (character >= 'a' && character <= 'z');
        const bool isOther =
            (character >= '0' && character <= '9') || character == '+' || character == '-' || character == '.';
        if (!isLetter && (!isOther || scheme.empty())) return {};
        scheme += isUpper ? static_cast<char>(character + ('a' - 'A')) : character;
    }
    return scheme;
}

/// Asks the file browser over the session's message bus, with whichever of the two usual programs is there.
bool selectInFileBrowser(const std::string& url) {
    const Launch first{
        {"gdbus", "call", "--session", "--dest", "org.freedesktop.FileManager1", "--object-path",
         "/org/freedesktop/FileManager1", "--method", "org.freedesktop.FileManager1.ShowItems", "['" + url + "']", ""},
        {},
        {}};
    const Launch second{
        {"dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.FileManager1",
         "/org/freedesktop/FileManager1", "org.freedesktop.FileManager1.ShowItems", "array:string:" + url, "string:"},
        {},
        {}};
    return launchAndWait(first, kMostMilliseconds) || launchAndWait(second, kMostMilliseconds);
}

}  // namespace

void openDocWithPath(const String& path) {
    openDocWithApp(path, pathIsFolder(path) ? String(kFileBrowser) : String(), 1);
}

bool openDocWithApp(const String& path, const String& appName, uint8_t /*deactivate*/) {
    if (!pathExists(path)) return false;
    const Document document = documentAt(path);
    if (!appName.isNull()) return start(applicationCalled(appName), document);
    const String extension = String::fromDamagedUTF8(extensionOf(path));
    if (start(applicationCalled(appNameForFileExtension(extension, kLastExtension, kLastResort)), document))
        return true;
    return startWithDesktopsOpener(document.path);
}

String appNameForFileExtension(const String& extension, const String& fallbackExtension, const String& fallbackApp) {
    for (const String& tried : {extension, fallbackExtension}) {
        const auto application = applicationForType(typeOfExtension(tried.utf8()));
        if (application) return String::fromDamagedUTF8(std::filesystem::path(application->path).filename().string());
    }
    return fallbackApp;
}

bool openURL(const String& url) {
    const std::string text = url.utf8();
    const std::string scheme = schemeOf(text);
    if (scheme.empty() || text.find('\0') != std::string::npos) return false;
    if (const auto path = pathOfFileURL(text)) {
        const String file = String::fromUTF8(*path);
        return openDocWithApp(file, pathIsFolder(file) ? String(kFileBrowser) : String(), 1);
    }
    return start(applicationForType("x-scheme-handler/" + scheme), {{}, text}) || startWithDesktopsOpener(text);
}

void selectDoc(const String& path) {
    const Document document = documentAt(path);
    if (pathExists(path) && selectInFileBrowser(document.url)) return;
    const std::string folder = platformPathOfItem(String::fromDamagedUTF8(document.path)).parent_path().string();
    openDocWithApp(String::fromUTF8(folder), kFileBrowser, 1);
}

String appPathForBundleID(const String& bundleIdentifier) {
    const std::string identifier = bundleIdentifier.utf8();
    if (identifier.empty()) return {};
    if (const auto running = runningApplicationFile(identifier)) return String::fromUTF8(*running);
    const auto application = applicationWithIdentifier(identifier);
    return application ? String::fromUTF8(application->path) : String();
}

void setFrontProcess(const String& bundleIdentifier) {
    alertPresenter().activateApplication(bundleIdentifier.isNull() ? String(kOwnIdentifier) : bundleIdentifier);
}

void openWithBBEdit(const String& text) {
    copyToPasteboard(text);
    start(applicationCalled(kEditorOfPasteboard), {});
}

void openWithBBEdit(const Data& data) {
    openWithBBEdit(stringWithData(data));
}

void openWithBBEdit(const String& text, const String& path) {
    writeFileAtomically(dataWithString(text), path);
    openDocWithApp(path, kEditor, 1);
}

void showLogFile() {
    openDocWithPath(getLogPath());
}

}  // namespace vornaset
