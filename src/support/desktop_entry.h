#pragma once
// Desktop entries and the other "key=value" files of the desktop (freedesktop.org, Desktop Entry 1.5, clause 3).

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace vornaset {

/// The groups of such a file. Bytes as they stand, UTF-8 as a rule. Of several values of one key the first counts.
class DesktopEntryFile {
  public:
    DesktopEntryFile() = default;
    explicit DesktopEntryFile(std::string_view text);
    /// Nothing when the file can't be read or is larger than such a file is ever (1 MiB; lists of programs: 16 MiB).
    static std::optional<DesktopEntryFile> atPath(const std::string& path);

    /// Empty when it isn't there. `group` without its brackets.
    std::string value(const std::string& group, const std::string& key) const;
    /// The value with the escapes of texts ("\s", "\n", "\t", "\r", "\\") resolved.
    std::string text(const std::string& group, const std::string& key) const;
    bool isTrue(const std::string& group, const std::string& key) const { return value(group, key) == "true"; }
    /// Keys and values of a group; empty when it isn't there.
    const std::map<std::string, std::string>& group(const std::string& name) const;

  private:
    std::map<std::string, std::map<std::string, std::string>> groups_;
};

/// The path of a "file:" URL of this machine, percent codes resolved; nothing for any other text.
std::optional<std::string> pathOfFileURL(std::string_view url);

/// The "file:" URL of an absolute path: what isn't a letter, a digit or one of "-._~/" becomes "%" and two digits.
std::string fileURLOfPath(std::string_view path);

}  // namespace vornaset
