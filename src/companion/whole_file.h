#pragma once

#include <string>
#include <string_view>

namespace companion {

/// A file that appears under its name when it is whole. The temporary file beside it is made at once, so that a
/// folder that can't be written is told before the work and not after it.
class WholeFile {
  public:
    /// `what` names the file in errors: "the report". Throws Error.
    WholeFile(const std::string& what, const std::string& path);
    /// Without finish(): takes the temporary file away.
    ~WholeFile();
    WholeFile(const WholeFile&) = delete;
    WholeFile& operator=(const WholeFile&) = delete;

    /// Writes the bytes, waits for the disk and puts the file under its name. Throws Error.
    void finish(std::string_view bytes);

  private:
    [[noreturn]] void fail(const std::string& why, int reason);

    std::string what_;
    std::string path_;
    std::string temporaryPath_;
    int descriptor_ = -1;
};

}  // namespace companion
