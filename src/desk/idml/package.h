#pragma once
// The container of a package: a ZIP file held in memory, its members read on demand. A snippet, which is one bare XML
// file, opens as a package of that one member.

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace desk {

class Package {
  public:
    /// Name under which a snippet's one part stands.
    static constexpr std::string_view snippetMember = "snippet.xml";

    /// Reads a file. Throws InputError when it can't be read or isn't a package (see fromBytes).
    static std::unique_ptr<Package> fromFile(const std::string& path);

    /// `name` is used in messages. Throws InputError for what isn't a ZIP file (nor XML), for too many members, and for
    /// a member whose name would leave the package or holds a NUL.
    static std::unique_ptr<Package> fromBytes(std::string bytes, const std::string& name);

    ~Package();
    Package(const Package&) = delete;
    Package& operator=(const Package&) = delete;

    /// File name without folder, for messages.
    const std::string& name() const { return name_; }
    bool isSnippet() const { return isSnippet_; }

    /// All member names in the order of the file; folders end in "/".
    const std::vector<std::string>& members() const { return members_; }
    bool has(std::string_view member) const;

    /// The inflated bytes. Throws InputError for an absent or damaged member and for one that inflates beyond the
    /// limits.
    std::string read(const std::string& member);

    /// The file as it was stored, from which untouched members can be copied.
    const std::string& bytes() const { return bytes_; }

  private:
    struct Archive;
    Package(std::string bytes, std::string name);
    void open();

    std::string bytes_;
    std::string name_;
    bool isSnippet_ = false;
    std::vector<std::string> members_;
    uint64_t inflated_ = 0;  ///< bytes inflated so far
    std::unique_ptr<Archive> archive_;
};

/// A member to write, in the order of the file.
struct PackageMember {
    std::string name;
    std::string bytes;
    enum class Method { Stored, Deflated } method = Method::Deflated;
};

/// A ZIP file of these members. Throws std::runtime_error when the library can't build one.
std::string zipOf(std::span<const PackageMember> members);

}  // namespace desk
