#pragma once
// Files of pictures as the file system has them. Inner header of this folder.

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>

namespace desk {

/// What is wrong with a picture, to be put behind its name: "is empty. Save it again".
class PictureError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Tells one state of one file from another.
struct FileStamp {
    uint64_t device = 0, inode = 0, size = 0;
    int64_t seconds = 0, nanoseconds = 0;  ///< of the last change, of content or of what is known about the file
    bool operator==(const FileStamp&) const = default;
};

struct FileStampHash {
    size_t operator()(const FileStamp& stamp) const {
        uint64_t hash = stamp.inode * 0x9E3779B97F4A7C15u ^ stamp.device;
        hash = (hash ^ stamp.size) * 0xC2B2AE3D27D4EB4Fu;
        hash ^= static_cast<uint64_t>(stamp.seconds) * 1000003 + static_cast<uint64_t>(stamp.nanoseconds);
        return static_cast<size_t>(hash * 0x9E3779B97F4A7C15u >> 16);
    }
};

/// Throws PictureError for what isn't a file that can be read as a picture: nothing there, a folder, a device.
FileStamp stampOf(const std::string& path);

struct ReadFile {
    std::string bytes;
    FileStamp stamp;
    /// False when the file changed so shortly before that a further change might leave the stamp as it is.
    bool stampIsFirm = false;
};

/// The whole file. Throws PictureError: also for an empty and for a far too large file.
ReadFile readWholeFile(const std::string& path);

}  // namespace desk
