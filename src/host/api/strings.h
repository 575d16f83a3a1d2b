#pragma once
// The border's text types. Both hold UTF-16.

#include <string>
#include <string_view>

/// Text as the host's services take it.
class WideString {
  public:
    WideString() = default;
    explicit WideString(const char* utf8);
    explicit WideString(std::u16string text) : text_(std::move(text)) {}

    std::u16string_view View() const { return text_; }
    int32_t Length() const { return static_cast<int32_t>(text_.size()); }  ///< UTF-16 units
    bool IsEmpty() const { return text_.empty(); }
    bool operator==(const WideString&) const = default;

  private:
    std::u16string text_;
};

/// A name or a text for a person. The translation argument is taken and ignored; every caller passes 0.
class PMString {
  public:
    PMString() = default;
    explicit PMString(const char* utf8, int32_t translation = 0);
    explicit PMString(const WideString& text) : text_(text.View()) {}

    /// Replaces the text by UTF-16 units.
    void SetCFString(std::u16string_view text) { text_ = text; }
    /// A copy of the UTF-16 units.
    std::u16string CreateCFString() const { return text_; }
    void AppendW(char16_t unit) { text_ += unit; }
    bool IsEmpty() const { return text_.empty(); }
    std::u16string_view View() const { return text_; }
    WideString ToWideString() const { return WideString(text_); }
    bool operator==(const PMString&) const = default;

  private:
    std::u16string text_;
};

/// A file location: an absolute or relative path of the platform, in UTF-8. Empty for none.
class IDFile {
  public:
    IDFile() = default;
    explicit IDFile(std::string path) : path_(std::move(path)) {}
    const std::string& GetPath() const { return path_; }
    bool IsEmpty() const { return path_.empty(); }
    bool operator==(const IDFile&) const = default;

  private:
    std::string path_;
};

/// A resource location, told in its parts. None of them is percent-coded.
class URI {
  public:
    enum class Component { Scheme, Authority, Path };

    URI() = default;
    URI(std::string scheme, std::string path) : scheme_(std::move(scheme)), path_(std::move(path)) {}
    /// Of a local file: scheme "file", no authority, the file's path in UTF-8.
    std::string GetComponent(Component component) const {
        switch (component) {
            case Component::Scheme:
                return scheme_;
            case Component::Path:
                return path_;
            default:
                return {};
        }
    }
    bool operator==(const URI&) const = default;

  private:
    std::string scheme_;
    std::string path_;
};

namespace FileUtils {
/// The file of a URL "file://...", percent codes resolved. False, and the file is left alone, for anything else.
bool FileURLToSysFile(const WideString& url, IDFile* file);
/// The file's path; empty for an empty file. Bytes that are no UTF-8 come out as U+FFFD.
PMString IDFileToPMString(const IDFile& file);
}  // namespace FileUtils
