#include "support/paths_host.h"

#include "support/desktop_entry.h"
#include "support/locale_text.h"
#include "support/platform_path.h"
#include "support/string_tables.h"

namespace vornaset {

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
    return pmString(text).ToWideString();
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
    const std::filesystem::path place = platformPath(path);
    if (place.empty()) return file;
    std::error_code error;
    const std::string url = fileURLOfPath(std::filesystem::absolute(place, error).native());
    if (!error) FileUtils::FileURLToSysFile(WideString(url.c_str()), &file);
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
