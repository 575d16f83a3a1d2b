#include "support/text_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "support/charset.h"
#include "support/file_handle.h"
#include "support/text_decoding.h"

namespace vornaset {

namespace {

struct StreamCloser {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};

/// A name for the file system; empty for null and for a text that would name another file there, cut at a zero.
std::string fileName(const String& path) {
    return path.find(u'\0') == String::npos ? path.utf8() : std::string();
}

}  // namespace

Data dataWithFile(const String& path) {
    const std::string name = fileName(path);
    if (name.empty()) return {};
    // Without blocking: opening a pipe would wait for its other end.
    const FileHandle file(open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat state {};
    if (!file.isOpen() || fstat(file.number(), &state) != 0 || !S_ISREG(state.st_mode)) return {};
    std::string bytes(static_cast<size_t>(state.st_size), '\0');
    size_t length = 0;
    for (;;) {
        // The size is a promise that the file need not keep: it may grow meanwhile, and some files say 0.
        if (length == bytes.size()) bytes.resize(length + 4096);
        const ssize_t taken = read(file.number(), bytes.data() + length, bytes.size() - length);
        if (taken < 0 && errno == EINTR) continue;
        if (taken < 0) return {};
        if (taken == 0) break;
        length += static_cast<size_t>(taken);
    }
    bytes.resize(length);
    return Data(std::move(bytes));
}

String stringWithContentsOfFile(const String& path) {
    const Data data = dataWithFile(path);
    if (data.isNull()) return {};
    if (const ByteOrderMark mark = byteOrderMark(data.view()); mark.charset != nullptr) {
        const String text = decodedText(data.view().substr(mark.length), mark.charset);
        if (!text.isNull()) return text;
    }
    return stringWithData(data);
}

FileBuffer getFileData(const String& path, int64_t& size) {
    const std::string name = fileName(path);
    const std::unique_ptr<std::FILE, StreamCloser> file(name.empty() ? nullptr : std::fopen(name.c_str(), "rbe"));
    struct stat state {};
    if (!file || fstat(fileno(file.get()), &state) != 0 || S_ISDIR(state.st_mode)) return nullptr;
    if (fseeko(file.get(), 0, SEEK_END) != 0) return nullptr;
    const off_t end = ftello(file.get());
    if (end < 0 || fseeko(file.get(), 0, SEEK_SET) != 0) return nullptr;
    size = end;
    FileBuffer buffer(static_cast<char*>(std::malloc(static_cast<size_t>(end) + 1)));
    if (!buffer) return nullptr;
    const size_t taken = std::fread(buffer.get(), 1, static_cast<size_t>(end), file.get());
    // A file that has shrunk meanwhile ends in zeros.
    for (size_t at = taken; at <= static_cast<size_t>(end); ++at) buffer.get()[at] = '\0';
    return buffer;
}

}  // namespace vornaset
