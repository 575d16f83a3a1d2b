#include "desk/idml/writer.h"

#include "desk/idml/package.h"
#include "desk/idml/package_changes.h"
#include "desk/idml/reader.h"
#include "desk/idml/saved_check.h"

namespace desk {
namespace {

constexpr const char* typeMember = "mimetype";

/// The members in their order; the type comes first and stored, as the container asks for.
std::vector<PackageMember> membersOf(Package& package, const std::map<std::string, std::string>& changed,
                                     const std::set<std::string>& removed) {
    std::vector<PackageMember> members;
    const auto method = [](const std::string& name) {
        return name == typeMember || name.ends_with('/') ? PackageMember::Method::Stored
                                                         : PackageMember::Method::Deflated;
    };
    std::set<std::string> known;
    if (package.has(typeMember)) {
        known.insert(typeMember);
        members.push_back({typeMember, package.read(typeMember), PackageMember::Method::Stored});
    }
    for (const std::string& name : package.members()) {
        if (removed.contains(name) || !known.insert(name).second) continue;
        const auto change = changed.find(name);
        members.push_back({name, change == changed.end() ? package.read(name) : change->second, method(name)});
    }
    for (const auto& [name, bytes] : changed)
        if (known.insert(name).second) members.push_back({name, bytes, method(name)});
    return members;
}

}  // namespace

std::string packageOf(const Document& document) {
    if (!document.package)
        throw InputError(document.name +
                         ": the document was made in memory and can't be saved as IDML; start from an IDML file.");
    // Reading is repeatable: an object that was read has the same Uid in both documents.
    const std::string& original = static_cast<const Package*>(document.package.get())->bytes();
    const std::unique_ptr<Package> package = Package::fromBytes(original, document.name);
    const std::unique_ptr<Document> before = readDocument(original, document.name);
    PackageChanges changes(*before, document, *package);
    changes.find();
    if (changes.changed().empty() && changes.removed().empty()) return original;
    const std::string bytes = package->isSnippet() ? changes.changed().begin()->second
                                                   : zipOf(membersOf(*package, changes.changed(), changes.removed()));
    checkSaved(document, *readDocument(bytes, document.name), changes);
    return bytes;
}

}  // namespace desk
