#pragma once
// A file that appears under its name only when it is whole.

#include <cstdint>
#include <string>
#include <vector>

namespace desk {

/// Bytes go to a hidden temporary file beside the output; commit() puts it under the name. A process that is killed
/// leaves at most the temporary file, and the next export to the same name removes it.
class OutputFile {
  public:
    /// Throws InputError when the folder doesn't exist or can't be written, or when something that isn't an ordinary
    /// writable file stands under the name. A symbolic link is followed: the file that it names is replaced.
    explicit OutputFile(const std::string& path);
    /// Without commit(): removes the temporary file.
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Throws InputError (a full disk, a limit on file sizes).
    void write(const char* bytes, size_t count);
    /// Bytes written so far.
    uint64_t position() const { return position_; }
    /// Throws InputError; then nothing stands under the name but what was there before.
    void commit();

  private:
    void flush();
    void writeThrough(const char* bytes, size_t count);
    void remove() noexcept;
    [[noreturn]] void fail(int error) const;

    std::string shownPath_;      ///< as asked for, for messages
    std::string path_;           ///< links followed
    std::string temporaryPath_;  ///< empty when there is none
    int descriptor_ = -1;
    uint64_t position_ = 0;
    std::vector<char> buffer_;
};

}  // namespace desk
