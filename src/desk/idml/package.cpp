#include "desk/idml/package.h"

#include <zip.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "desk/idml/limits.h"
#include "desk/model/document.h"

namespace desk {

struct Package::Archive {
    explicit Archive(zip_t* opened) : zip(opened) {}
    ~Archive() { zip_discard(zip); }
    Archive(const Archive&) = delete;
    Archive& operator=(const Archive&) = delete;
    zip_t* zip;
};

namespace {

/// Message text must stay one line whatever a member is called.
std::string printable(std::string_view text) {
    std::string result(text.substr(0, 200));
    for (char& c : result)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) c = '?';
    return result;
}

bool leavesThePackage(std::string_view name) {
    if (name.empty() || name.front() == '/' || name.find('\\') != std::string_view::npos) return true;
    if (name.size() > 1 && name[1] == ':' && std::isalpha(static_cast<unsigned char>(name[0]))) return true;
    for (size_t from = 0; from <= name.size();) {
        const size_t to = std::min(name.find('/', from), name.size());
        if (name.substr(from, to - from) == "..") return true;
        from = to + 1;
    }
    return false;
}

bool looksLikeXml(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
    const size_t first = bytes.find_first_not_of(" \t\r\n");
    return first != std::string_view::npos && bytes[first] == '<';
}

uint32_t littleEndian(std::string_view bytes, size_t at, int count) {
    uint32_t value = 0;
    for (int i = count - 1; i >= 0; --i)
        value = value << 8 | static_cast<unsigned char>(bytes[at + static_cast<size_t>(i)]);
    return value;
}

/// The library gives names with each NUL turned into a blank, so the file's own directory is asked.
bool hasNulInName(std::string_view bytes) {
    const size_t end = bytes.rfind("PK\5\6");
    if (end == std::string_view::npos || bytes.size() - end < 22) return false;
    size_t at = littleEndian(bytes, end + 16, 4);
    for (uint32_t entries = littleEndian(bytes, end + 10, 2); entries > 0; --entries) {
        if (at > bytes.size() || bytes.size() - at < 46 || bytes.substr(at, 4) != "PK\1\2") return false;
        const size_t nameLength = littleEndian(bytes, at + 28, 2);
        if (bytes.substr(at + 46, nameLength).find('\0') != std::string_view::npos) return true;
        at += 46 + nameLength + littleEndian(bytes, at + 30, 2) + littleEndian(bytes, at + 32, 2);
    }
    return false;
}

}  // namespace

Package::Package(std::string bytes, std::string name) : bytes_(std::move(bytes)), name_(std::move(name)) {}

Package::~Package() = default;

std::unique_ptr<Package> Package::fromFile(const std::string& path) {
    const std::string name = std::filesystem::path(path).filename().string();
    std::error_code problem;
    if (std::filesystem::is_directory(path, problem))
        throw InputError(path + ": this is a folder; name the template file in it.");
    std::ifstream file(path, std::ios::binary);
    if (!file) throw InputError(path + ": the file can't be opened (" + std::strerror(errno) + "); check its path.");
    const auto size = std::filesystem::file_size(path, problem);
    if (!problem && size > limits::packageBytes)
        throw InputError(path + ": the file is too large for a template; check that it is the right one.");
    std::string bytes;
    char block[65536];
    while (file.read(block, sizeof block) || file.gcount() > 0) {
        bytes.append(block, static_cast<size_t>(file.gcount()));
        if (bytes.size() > limits::packageBytes)
            throw InputError(path + ": the file is too large for a template; check that it is the right one.");
    }
    if (file.bad()) throw InputError(path + ": the file can't be read; check the disk.");
    return fromBytes(std::move(bytes), name);
}

std::unique_ptr<Package> Package::fromBytes(std::string bytes, const std::string& name) {
    std::unique_ptr<Package> package(new Package(std::move(bytes), name));
    package->open();
    return package;
}

void Package::open() {
    if (looksLikeXml(bytes_)) {
        isSnippet_ = true;
        members_.emplace_back(snippetMember);
        return;
    }
    zip_error_t error;
    zip_error_init(&error);
    // The library takes no bytes at all for an empty archive.
    zip_source_t* source = bytes_.empty() ? nullptr : zip_source_buffer_create(bytes_.data(), bytes_.size(), 0, &error);
    zip_t* zip = source ? zip_open_from_source(source, ZIP_RDONLY, &error) : nullptr;
    if (!zip) {
        if (source) zip_source_free(source);
        zip_error_fini(&error);
        throw InputError(name_ + ": this isn't an IDML package (no ZIP file); export the document as IDML.");
    }
    zip_error_fini(&error);
    archive_ = std::make_unique<Archive>(zip);
    if (hasNulInName(bytes_))
        throw InputError(name_ + ": a member's name holds a NUL; use a file from a source you trust.");
    const zip_int64_t count = zip_get_num_entries(zip, 0);
    if (count < 0 || static_cast<uint64_t>(count) > limits::members)
        throw InputError(name_ + ": the package has too many members; use a file from a source you trust.");
    members_.reserve(static_cast<size_t>(count));
    for (zip_uint64_t i = 0; i < static_cast<zip_uint64_t>(count); ++i) {
        const char* member = zip_get_name(zip, i, 0);
        if (!member || leavesThePackage(member))
            throw InputError(name_ + ": the member name \"" + printable(member ? member : "") +
                             "\" leaves the package; use a file from a source you trust.");
        members_.emplace_back(member);
    }
}

bool Package::has(std::string_view member) const {
    if (isSnippet_) return member == snippetMember;
    return zip_name_locate(archive_->zip, std::string(member).c_str(), 0) >= 0;
}

std::string Package::read(const std::string& member) {
    const std::string where = name_ + ", " + printable(member) + ": ";
    if (!has(member)) throw InputError(where + "the package lacks this member; export the document again.");
    if (isSnippet_) return bytes_;
    const zip_int64_t index = zip_name_locate(archive_->zip, member.c_str(), 0);
    zip_stat_t stat;
    zip_stat_init(&stat);
    if (index < 0 || zip_stat_index(archive_->zip, static_cast<zip_uint64_t>(index), 0, &stat) != 0)
        throw InputError(where + "the member can't be found; export the document again.");
    const uint64_t stored = stat.valid & ZIP_STAT_COMP_SIZE ? std::min<uint64_t>(stat.comp_size, bytes_.size()) : 0;
    const std::unique_ptr<zip_file_t, decltype(&zip_fclose)> file(
        zip_fopen_index(archive_->zip, static_cast<zip_uint64_t>(index), 0), zip_fclose);
    if (!file)
        throw InputError(where + "the member can't be opened (encrypted or damaged); export the document again.");
    std::string bytes;
    char block[65536];
    zip_int64_t got = 0;
    while ((got = zip_fread(file.get(), block, sizeof block)) > 0) {
        bytes.append(block, static_cast<size_t>(got));
        inflated_ += static_cast<uint64_t>(got);
        const bool bomb =
            bytes.size() > limits::inflationRatioFrom && bytes.size() / (stored + 1) > limits::inflationRatio;
        if (bomb || bytes.size() > limits::memberBytes || inflated_ > limits::inflatedBytes)
            throw InputError(where + "the member inflates beyond all measure; use a file from a source you trust.");
    }
    if (got < 0) throw InputError(where + "the member is damaged; export the document again.");
    return bytes;
}

std::string zipOf(std::span<const PackageMember> members) {
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* target = zip_source_buffer_create(nullptr, 0, 0, &error);
    if (!target) throw std::runtime_error("no memory for a ZIP file");
    zip_t* zip = zip_open_from_source(target, ZIP_TRUNCATE, &error);
    if (!zip) {
        zip_source_free(target);
        throw std::runtime_error("a ZIP file can't be started");
    }
    zip_source_keep(target);
    const std::unique_ptr<zip_source_t, decltype(&zip_source_free)> kept(target, zip_source_free);
    for (const PackageMember& member : members) {
        zip_source_t* source = zip_source_buffer(zip, member.bytes.data(), member.bytes.size(), 0);
        const zip_int64_t index = source ? zip_file_add(zip, member.name.c_str(), source, ZIP_FL_ENC_UTF_8) : -1;
        if (index < 0) {
            if (source) zip_source_free(source);
            zip_discard(zip);
            throw std::runtime_error("the member " + member.name + " can't be added to a ZIP file");
        }
        const bool stored = member.method == PackageMember::Method::Stored;
        zip_set_file_compression(zip, static_cast<zip_uint64_t>(index), stored ? ZIP_CM_STORE : ZIP_CM_DEFLATE, 0);
        zip_file_set_dostime(zip, static_cast<zip_uint64_t>(index), 0, 0x21,
                             0);  // 1 January 1980: same input, same bytes
    }
    if (zip_close(zip) != 0) {
        zip_discard(zip);
        throw std::runtime_error("a ZIP file can't be finished");
    }
    if (zip_source_open(target) != 0) throw std::runtime_error("a ZIP file can't be read back");
    std::string bytes;
    char block[65536];
    for (zip_int64_t got = 0; (got = zip_source_read(target, block, sizeof block)) > 0;)
        bytes.append(block, static_cast<size_t>(got));
    zip_source_close(target);
    return bytes;
}

}  // namespace desk
