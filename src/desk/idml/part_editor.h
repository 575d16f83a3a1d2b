#pragma once
// Changes to one part, gathered and carried out in one go. What no change is about keeps its bytes.

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "desk/idml/xml_source.h"

namespace desk {

/// Elements and offsets are those of the source, which must outlive the editor. Texts of attributes are UTF-8, given as
/// they mean; XML is given as it is to be written.
class PartEditor {
  public:
    explicit PartEditor(const XmlSource& source) : source_(source) {}

    const XmlSource& source() const { return source_; }

    /// Changes the value in place, or adds the attribute behind the others.
    void setAttribute(const SourceElement& element, std::string_view name, std::string_view value);
    void removeAttribute(const SourceElement& element, std::string_view name);
    /// XML as the first or the last content of an element; several come in the order of the calls.
    void addFirst(const SourceElement& element, std::string_view xml);
    void addLast(const SourceElement& element, std::string_view xml);
    /// XML at a place between markup or inside text, not inside a tag.
    void insert(size_t at, std::string_view xml);
    void remove(size_t begin, size_t end);
    /// Removes the element, with the white space in front of it where nothing but elements stands around it.
    void remove(const SourceElement& element);

    bool isTouched() const { return !edits_.empty() || !pending_.empty(); }
    /// The whole part with all changes.
    std::string result() const;
    /// One element with the changes inside it, whether the element itself is removed or not.
    std::string result(const SourceElement& element) const;

  private:
    struct Edit {
        size_t begin, end;
        std::string xml;
    };
    struct Pending {
        std::vector<std::pair<std::string, std::string>> attributes;  ///< that the element has not
        std::string first, last;
    };
    std::vector<Edit> allEdits() const;
    void addPending(const SourceElement& element, const Pending& pending, std::vector<Edit>& edits) const;
    std::string rendered(size_t begin, size_t end, const SourceElement* kept) const;

    const XmlSource& source_;
    std::vector<Edit> edits_;
    std::map<size_t, std::pair<const SourceElement*, Pending>> pending_;  ///< by the element's place
};

}  // namespace desk
