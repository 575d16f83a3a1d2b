#include "support/paths_host.h"

#include <unistd.h>

#include <array>
#include <climits>

#include "support/desktop_entry.h"
#include "support/locale_text.h"
#include "support/platform_path.h"
#include "support/string_tables.h"

namespace vornaset {

namespace {

/// Empty where the working folder is gone.
std::string absolutePath(const std::string& path) {
    if (path.starts_with('/')) return path;
    std::array<char, PATH_MAX> folder;
    if (!::getcwd(folder.data(), folder.size())) return {};
    return std::string(folder.data()) + '/' + path;
}

}  // namespace

String stringWithPMString(const PMString& text) {
    return canonicallyComposed(String(text.View()));
}

String stringWithWideString(const WideString& text) {
    return stringWithPMString(PMString(text));
}

PMString pmString(const String& text) {
    PMString result;
    result.SetCFString(text.view());
    return result;
}

PMString pmString(const char* key) {
    return pmString(stringForKey(key));
}

PMString pmStringWithUTF8String(const char* utf8) {
    return pmString(String(utf8));
}

WideString wideString(const String& text) {
    return WideString(std::u16string(text.view()));
}

String pathWithPMString(const PMString& text) {
    return text.IsEmpty() ? String() : pathWithString(stringWithPMString(text));
}

String hfsPathWithPMString(const PMString& text) {
    return text.IsEmpty() ? String() : hfsPathWithString(stringWithPMString(text));
}

String pathWithIDFile(const IDFile& file) {
    return pathWithPMString(FileUtils::IDFileToPMString(file));
}

IDFile IDFileWithPath(const String& path) {
    IDFile file;
    if (path.isEmpty() || path.find(u'\0') != String::npos) return file;
    const std::string absolute = absolutePath(path.utf8());
    if (!absolute.empty()) FileUtils::FileURLToSysFile(WideString(fileURLOfPath(absolute).c_str()), &file);
    return file;
}

IDFile getSysFile(const char* path) {
    return IDFileWithPath(String(path));
}

Value numberWithUID(UID uid) {
    return Number(uid.Get());
}

Value numberWithUIDRef(const UIDRef& object) {
    return numberWithUID(object.GetUID());
}

Value numberWithObj(IPMUnknown* object) {
    return numberWithUIDRef(object == nullptr ? UIDRef::gNull : GetUIDRef(object));
}

}  // namespace vornaset
