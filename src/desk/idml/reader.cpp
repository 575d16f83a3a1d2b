#include "desk/idml/reader.h"

#include "desk/idml/designmap.h"
#include "desk/idml/links.h"
#include "desk/idml/resources.h"
#include "desk/idml/spreads.h"
#include "desk/idml/stories.h"

namespace desk {
namespace {

constexpr const char* mapMember = "designmap.xml";
constexpr const char* packageType = "-idml-package";  ///< what the media type ends in

/// Calls a function with the root of every part of a list. A part without bytes, as some tools leave behind, is noted.
template <class Function>
void eachPart(Reading& reading, const std::vector<std::string>& members, Function function) {
    for (const std::string& member : members) {
        reading.member = member;
        const std::string bytes = reading.package.read(member);
        if (bytes.empty()) {
            reading.note("the part is empty");
            continue;
        }
        const XmlDocument part = XmlDocument::parse(bytes, reading.package.name(), member);
        function(part.root());
    }
}

void readSpreadsIn(Reading& reading, const XmlElement& around) {
    around.eachChild([&](const XmlElement& child) {
        if (child.name == "Spread") readSpread(reading, child, SpreadRole::Document);
        if (child.name == "MasterSpread") readSpread(reading, child, SpreadRole::Master);
    });
}

void readStoriesIn(Reading& reading, const XmlElement& around) {
    around.eachChild([&](const XmlElement& child) {
        if (child.name == "Story") readStory(reading, child);
    });
}

void link(Reading& reading) {
    linkFrames(reading);
    linkMasters(reading);
    linkSections(reading);
}

void checkType(Reading& reading) {
    reading.member = "mimetype";
    if (!reading.package.has(reading.member))
        reading.note("the package doesn't say its type");
    else if (!reading.package.read(reading.member).ends_with(packageType))
        reading.note("the package says that it is of another type");
}

/// What refers comes after what is referred to: styles name fonts and colours, items name styles and layers, stories
/// name all of them.
void readPackage(Reading& reading) {
    checkType(reading);
    reading.member = mapMember;
    if (!reading.package.has(mapMember))
        throw reading.failure(
            "this ZIP file isn't an IDML package (it has no designmap.xml); export the document as IDML.");
    const XmlDocument map = XmlDocument::parse(reading.package.read(mapMember), reading.package.name(), mapMember);
    readDocumentElement(reading, map.root());
    const PartList parts = listParts(map.root());
    eachPart(reading, parts.preferences, [&](const XmlElement& root) { readPreferences(reading, root); });
    eachPart(reading, parts.fonts, [&](const XmlElement& root) { readFonts(reading, root); });
    eachPart(reading, parts.graphic, [&](const XmlElement& root) { readGraphic(reading, root); });
    eachPart(reading, parts.styles, [&](const XmlElement& root) { readStyles(reading, root); });
    linkStyles(reading);
    eachPart(reading, parts.spreads, [&](const XmlElement& root) { readSpreadsIn(reading, root); });
    eachPart(reading, parts.masterSpreads, [&](const XmlElement& root) { readSpreadsIn(reading, root); });
    eachPart(reading, parts.stories, [&](const XmlElement& root) { readStoriesIn(reading, root); });
    link(reading);
}

/// A snippet has the same elements side by side in one part.
void readSnippet(Reading& reading) {
    reading.member = Package::snippetMember;
    const XmlDocument snippet =
        XmlDocument::parse(reading.package.read(reading.member), reading.package.name(), reading.member);
    const XmlElement& root = snippet.root();
    readDocumentElement(reading, root);
    readPreferences(reading, root);
    readFonts(reading, root);
    readGraphic(reading, root);
    readStyles(reading, root);
    linkStyles(reading);
    readSpreadsIn(reading, root);
    readStoriesIn(reading, root);
    link(reading);
    for (Uid uid : reading.document.spreads) {
        Spread& spread = *reading.document.spread(uid);
        if (spread.pages.empty()) coverItemsWithPage(reading.document, spread);
    }
}

std::unique_ptr<Document> read(std::shared_ptr<Package> package) {
    auto document = std::make_unique<Document>();
    document->name = package->name();
    Reading reading(*document, *package);
    if (package->isSnippet())
        readSnippet(reading);
    else
        readPackage(reading);
    if (document->pages().empty()) throw reading.failure("the document has no page; export the document again.");
    document->stylesChanged();
    document->modified = false;
    document->package = std::move(package);
    return document;
}

}  // namespace

std::unique_ptr<Document> readDocument(const std::string& path) {
    auto document = read(Package::fromFile(path));
    document->path = path;
    return document;
}

std::unique_ptr<Document> readDocument(std::string bytes, const std::string& name) {
    return read(Package::fromBytes(std::move(bytes), name));
}

}  // namespace desk
