#include "desk/output/resources.h"

#include <algorithm>
#include <tuple>

namespace desk {
namespace {

constexpr char letters[] = "CGFPX";
constexpr std::string_view dictionaryNames[] = {"/ColorSpace", "/ExtGState", "/Font", "/Pattern", "/XObject"};

/// Shared objects remembered; patterns that follow moving items could grow without end.
constexpr size_t rememberedObjects = 1u << 14;

bool before(const Resource& a, const Resource& b) {
    return std::tie(a.kind, a.name) < std::tie(b.kind, b.name);
}

}  // namespace

void appendName(ContentBuffer& out, const Resource& resource) {
    out.append('/').append(letters[static_cast<size_t>(resource.kind)]).integer(resource.name);
}

void ResourceSet::add(const Resource& resource) {
    const auto place = std::lower_bound(resources_.begin(), resources_.end(), resource, before);
    if (place == resources_.end() || *place != resource) resources_.insert(place, resource);
}

void ResourceSet::add(const ResourceSet& other) {
    for (const Resource& resource : other.resources_) add(resource);
    blends = blends || other.blends;
}

void ResourceSet::clear() {
    resources_.clear();
    blends = false;
}

void ResourceSet::appendDictionary(ContentBuffer& out) const {
    out.append("<<");
    size_t next = 0;
    for (size_t kind = 0; kind < std::size(dictionaryNames); ++kind) {
        const bool any = next < resources_.size() && static_cast<size_t>(resources_[next].kind) == kind;
        if (!any && kind != static_cast<size_t>(ResourceKind::XObject)) continue;
        out.append(dictionaryNames[kind]).append("<<");
        for (; next < resources_.size() && static_cast<size_t>(resources_[next].kind) == kind; ++next) {
            appendName(out, resources_[next]);
            out.append(' ').integer(resources_[next].object).append(" 0 R");
        }
        out.append(">>");
    }
    out.append(">>");
}

Resource SharedObjects::get(ResourceKind kind, std::string_view text) {
    const auto found = written_.find(text);
    if (found != written_.end()) return found->second;
    if (written_.size() >= rememberedObjects) written_.clear();
    const Resource resource{kind, nextName(kind), file_.allocate()};
    file_.writeObject(resource.object, text);
    written_.emplace(text, resource);
    return resource;
}

Resource SharedObjects::writeForm(const Fragment& content, std::string_view boundingBox, Group group) {
    const Resource form{ResourceKind::XObject, nextName(ResourceKind::XObject), file_.allocate()};
    ContentBuffer entries;
    entries.append("/Type/XObject/Subtype/Form/BBox").append(boundingBox);
    if (group == Group::Transparency) entries.append("/Group<</S/Transparency>>");
    entries.append("/Resources");
    content.resources.appendDictionary(entries);
    file_.writeStream(form.object, entries.view(), content.bytes.view());
    return form;
}

}  // namespace desk
