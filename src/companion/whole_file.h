#pragma once

#include <string>
#include <string_view>

namespace companion {

/// A file that appears under its name when it is whole. The hidden temporary file beside it is made at once, so that a
/// folder that can't be written is told before the work and not after it. A process that is killed leaves at most that
/// file, and the next one that writes the same output takes it away.
class WholeFile {
  public:
    /// `what` names the file in errors: "the report". A symbolic link is followed: the file that it names is replaced.
    /// Throws Error when the folder isn't there or can't be written, or when something that isn't an ordinary writable
    /// file stands under the name.
    WholeFile(const std::string& what, const std::string& path);
    /// Without finish(): takes the temporary file away.
    ~WholeFile();
    WholeFile(const WholeFile&) = delete;
    WholeFile& operator=(const WholeFile&) = delete;

    /// Writes the bytes, waits for the disk and puts the file under its name. Throws Error.
    void finish(std::string_view bytes);

  private:
    void checkPlace() const;
    void removeLeftFiles() const;
    void makeTemporaryFile();
    [[noreturn]] void fail(int reason) const;
    [[noreturn]] void refuse(const std::string& why) const;

    std::string what_;
    std::string shownPath_;      ///< as asked for, for messages
    std::string path_;           ///< links followed
    std::string temporaryPath_;  ///< empty when there is none
    int descriptor_ = -1;
};

}  // namespace companion
