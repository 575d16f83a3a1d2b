#pragma once
// What page contents refer to by name, and the objects behind it, each written once.

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "desk/output/content_buffer.h"
#include "desk/output/pdf_file.h"

namespace desk {

enum class ResourceKind : uint8_t { ColourSpace, GraphicsState, Font, Pattern, XObject };

/// A name is the kind's letter and a number that is the same on every page: /C1, /G1, /F1, /P1, /X1.
struct Resource {
    ResourceKind kind = ResourceKind::Font;
    uint32_t name = 0;
    ObjectNumber object = 0;
    bool operator==(const Resource&) const = default;
};

/// Appends the name with its slash.
void appendName(ContentBuffer& out, const Resource& resource);

/// What one run of content uses.
class ResourceSet {
  public:
    void add(const Resource& resource);
    void add(const ResourceSet& other);
    void clear();

    /// The entries of a /Resources dictionary, brackets included. XObject is always among them, so that a later tool
    /// finds a dictionary of the page's own to add to.
    void appendDictionary(ContentBuffer& out) const;

    /// Something blends with what lies under it: the page needs a blending space.
    bool blends = false;

  private:
    std::vector<Resource> resources_;  ///< by kind and name
};

/// Bytes of a content stream with what they use. Leaves the graphics state as it found it, but for colours, line width
/// and mitre limit, which every run of content sets before it paints.
struct Fragment {
    ContentBuffer bytes;
    ResourceSet resources;

    void clear() {
        bytes.clear();
        resources.clear();
    }
    void add(const Fragment& other) {
        bytes.append(other.bytes.view());
        resources.add(other.resources);
    }
};

/// Objects that are named by what they say: the same text is written once.
class SharedObjects {
  public:
    explicit SharedObjects(PdfFile& file) : file_(file) {}

    /// A colour space, graphics state or pattern.
    Resource get(ResourceKind kind, std::string_view text);
    /// A form XObject with the content. `group` makes it a transparency group.
    enum class Group { None, Transparency };
    Resource writeForm(const Fragment& content, std::string_view boundingBox, Group group);
    uint32_t nextName(ResourceKind kind) { return ++lastName_[static_cast<size_t>(kind)]; }
    PdfFile& file() { return file_; }

  private:
    PdfFile& file_;
    std::map<std::string, Resource, std::less<>> written_;
    uint32_t lastName_[5] = {};
};

}  // namespace desk
