#pragma once
// Bundles: folders of resources, found by identifier. A resource is a file; nothing is read until it is asked for.
//
// A bundle is a folder that bears its identifier as its name, in one of the folders of bundles. These are, in this
// order: those that setBundleFolders was given; "resources" beside the library that holds this code, "resources" beside
// that library's folder, and "share/vornaset/resources" beside that folder; the same three for the running program. So
// an installed library finds what was installed with it, wherever that is, and a program in the build folder finds the
// copies that the build makes.

#include <vector>

#include "support/values.h"

namespace vornaset {

/// A handle on a bundle, or null. A null bundle has no resources.
class Bundle {
  public:
    constexpr Bundle() noexcept = default;
    constexpr Bundle(std::nullptr_t) noexcept {}

    /// Null when no folder of bundles has a folder of that name, and for an identifier that is null, empty or has a
    /// "/".
    static Bundle withIdentifier(const String& identifier);
    /// The folder at the path; its name is the identifier. Null when no folder stands there.
    static Bundle withPath(const String& path);

    bool isNull() const noexcept { return path_.isNull(); }
    explicit operator bool() const noexcept { return !isNull(); }
    const String& path() const noexcept { return path_; }
    String identifier() const;
    /// The path of the file "name.type" in the bundle, or of "name" when the type is null or empty. Null when there is
    /// no such file, and for a name that is null or empty.
    String pathForResource(const String& name, const String& type) const;

    bool operator==(const Bundle&) const = default;

  private:
    explicit Bundle(String path) noexcept : path_(std::move(path)) {}

    String path_;
};

/// The identifier of the bundle that the library ships.
inline constexpr const char* kBundleIdentifier = "com.kelmoriandev.vornaset";

/// Folders of bundles to be asked first. Returns the former list.
std::vector<String> setBundleFolders(std::vector<String> folders);

/// The plug-in's bundle, where all resources are looked up. Null until it is set up; then nothing is found.
extern Bundle gBundle;

/// The path of a resource of gBundle; null when there is none.
String pathForResource(const String& name, const String& type);
String pathForResource(const char* name, const char* type);
/// The resource's text; null when there is no such resource or its bytes are no UTF-8.
String stringWithResource(const String& name, const String& type);
/// The resource's bytes; null when there is no such resource.
Data dataWithResource(const String& name, const String& type);

}  // namespace vornaset
