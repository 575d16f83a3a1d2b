// A pasteboard space in a folder: a folder for each pasteboard, in it an XML property list for each type.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <map>
#include <utility>

#include "support/file_handle.h"
#include "support/pasteboard_space.h"
#include "support/property_list.h"

namespace vornaset {

namespace {

constexpr std::string_view kExtension = ".plist";
/// The end of the name of a file that isn't whole yet; before it stand "." and the writing process's number.
constexpr std::string_view kUnfinished = ".new";

/// What tells one writing of a file from the next: each writing makes a new file. Who compares holds the former file
/// open, since the system gives the number of a file that is gone to the next one.
struct FileIdentity {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    int64_t seconds = 0;
    int64_t nanoseconds = 0;
    bool operator==(const FileIdentity&) const = default;
};

FileIdentity identityOf(const struct stat& status) {
    return {status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

bool isPlainByte(char byte) {
    return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') ||
           byte == '-' || byte == '_' || byte == '.';
}

/// A file name that no text can leave the folder with: all but plain letters becomes "%" and two digits.
std::string fileNameOf(const String& text) {
    std::string result;
    for (const char byte : text.utf8()) {
        if (isPlainByte(byte) && !(result.empty() && byte == '.')) {
            result += byte;
        } else {
            char escaped[4];
            std::snprintf(escaped, sizeof escaped, "%%%02X", static_cast<unsigned>(static_cast<uint8_t>(byte)));
            result += escaped;
        }
    }
    return result.empty() ? "%" : result;
}

String textOfFileName(const std::string& name) {
    if (name == "%") return u"";
    std::string result;
    for (size_t at = 0; at < name.size(); ++at) {
        if (name[at] == '%' && at + 2 < name.size()) {
            result += static_cast<char>(std::strtoul(name.substr(at + 1, 2).c_str(), nullptr, 16));
            at += 2;
        } else {
            result += name[at];
        }
    }
    return String::fromUTF8(result);
}

bool writeWhole(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        bytes.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

/// The process that writes an unfinished file of that name; 0 for any other name.
pid_t writerOf(const std::string& fileName) {
    if (!fileName.starts_with('.') || !fileName.ends_with(kUnfinished)) return 0;
    const std::string number = fileName.substr(1, fileName.size() - 1 - kUnfinished.size());
    const bool isNumber =
        !number.empty() && number.size() < 10 && number.find_first_not_of("0123456789") == number.npos;
    return isNumber ? std::atoi(number.c_str()) : 0;
}

/// Takes away what processes left that died over their writing.
void removeLeftovers(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::recursive_directory_iterator entry(folder, error);
    for (; !error && entry != std::filesystem::recursive_directory_iterator(); entry.increment(error)) {
        const pid_t writer = writerOf(entry->path().filename().string());
        if (writer > 0 && kill(writer, 0) != 0 && errno == ESRCH) unlink(entry->path().c_str());
    }
}

class FolderSpace : public PasteboardSpace {
  public:
    explicit FolderSpace(std::filesystem::path folder) : folder_(std::move(folder)) {}

    Value value(const String& name, const String& type) override {
        const std::string path = pathOf(name, type);
        struct stat status {};
        if (stat(path.c_str(), &status) != 0) {
            known_.erase(path);
            return {};
        }
        const auto found = known_.find(path);
        if (found != known_.end() && found->second.identity == identityOf(status)) return found->second.value;
        return read(path);
    }

    bool setValue(const String& name, const String& type, const Value& value) override {
        const Data data = propertyListData(value);
        std::error_code error;
        std::filesystem::create_directories(folder_ / fileNameOf(name), error);
        if (data.isNull() || error) return false;
        const std::string path = pathOf(name, type);
        const std::string temporary = (folder_ / fileNameOf(name) / temporaryName()).string();
        FileHandle file(open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
        struct stat status {};
        if (!file.isOpen()) return false;
        const bool written = writeWhole(file.number(), data.view()) && fstat(file.number(), &status) == 0;
        if (!written || std::rename(temporary.c_str(), path.c_str()) != 0) {
            unlink(temporary.c_str());
            return false;
        }
        known_[path] = {value, identityOf(status), std::move(file)};
        return true;
    }

    void clear(const String& name) override {
        for (const std::string& fileName : fileNames(name)) {
            const std::string path = (folder_ / fileNameOf(name) / fileName).string();
            unlink(path.c_str());
            known_.erase(path);
        }
    }

    std::vector<String> types(const String& name) override {
        std::vector<String> types;
        for (const std::string& fileName : fileNames(name)) {
            types.push_back(textOfFileName(fileName.substr(0, fileName.size() - kExtension.size())));
        }
        return types;
    }

  private:
    struct Known {
        Value value;
        FileIdentity identity;
        FileHandle file;  ///< keeps the identity from being given away
    };

    static std::string temporaryName() { return "." + std::to_string(getpid()) + std::string(kUnfinished); }

    std::string pathOf(const String& name, const String& type) const {
        return (folder_ / fileNameOf(name) / (fileNameOf(type) + std::string(kExtension))).string();
    }

    /// The identity is taken of the open file, so that the bytes and the identity belong together.
    Value read(const std::string& path) {
        FileHandle file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
        struct stat status {};
        if (!file.isOpen() || fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
        std::string bytes(static_cast<size_t>(status.st_size), 0);
        size_t got = 0;
        while (got < bytes.size()) {
            const ssize_t count = ::read(file.number(), bytes.data() + got, bytes.size() - got);
            if (count < 0 && errno == EINTR) continue;
            if (count <= 0) break;
            got += static_cast<size_t>(count);
        }
        bytes.resize(got);
        const Value value = propertyListWithData(Data(std::move(bytes)));
        if (!value.isNull()) known_[path] = {value, identityOf(status), std::move(file)};
        return value;
    }

    /// Sorted. A file that is being written begins with a dot and is none of them.
    std::vector<std::string> fileNames(const String& name) const {
        std::vector<std::string> names;
        std::error_code error;
        std::filesystem::directory_iterator entry(folder_ / fileNameOf(name), error);
        for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
            const std::string fileName = entry->path().filename().string();
            if (fileName.ends_with(kExtension) && !fileName.starts_with('.')) names.push_back(fileName);
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    std::filesystem::path folder_;
    std::map<std::string, Known> known_;  ///< by path: what was written or read last, and as which file
};

}  // namespace

std::shared_ptr<PasteboardSpace> makeFolderPasteboardSpace(const std::string& folder) {
    std::error_code error;
    if (std::filesystem::create_directories(folder, error)) {
        std::filesystem::permissions(folder, std::filesystem::perms::owner_all, error);
    }
    std::error_code ignored;
    if (error || !std::filesystem::is_directory(folder, ignored)) {
        const std::string why = error ? error.message() : "it is no folder";
        throw exceptionWithReason("the pasteboard folder " + folder + " can't be used: " + why);
    }
    removeLeftovers(folder);
    return std::make_shared<FolderSpace>(folder);
}

}  // namespace vornaset
