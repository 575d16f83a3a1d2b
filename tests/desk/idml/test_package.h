#pragma once
// A small, whole package in memory: one page with one text frame and its story. Tests change the part they are about.

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "desk/idml/package.h"
#include "desk/idml/reader.h"

namespace desk {

/// A part around its content: `kind` is "Spread", "Story", ...
inline std::string partOf(const std::string& kind, const std::string& content) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<idPkg:" + kind +
           " xmlns:idPkg=\"urn:packaging\" DOMVersion=\"16.0\">" + content + "</idPkg:" + kind + ">";
}

/// Properties with the path of a rectangle from 0 0.
inline std::string rectangleProperties(double width, double height, const std::string& more = {}) {
    const auto point = [](double x, double y) {
        const std::string at = std::to_string(x) + " " + std::to_string(y);
        return "<PathPointType Anchor=\"" + at + "\" LeftDirection=\"" + at + "\" RightDirection=\"" + at + "\"/>";
    };
    return "<Properties><PathGeometry><GeometryPathType PathOpen=\"false\"><PathPointArray>" + point(0, 0) +
           point(0, height) + point(width, height) + point(width, 0) +
           "</PathPointArray></GeometryPathType></PathGeometry>" + more + "</Properties>";
}

class TestPackage {
  public:
    // What a part holds; a test replaces or extends it before read().
    std::string documentAttributes = "DOMVersion=\"16.0\" Self=\"d\"";
    std::string documentContent = "<Layer Self=\"ub1\" Name=\"Layer 1\"/>";
    std::string graphic =
        "<Color Self=\"Color/Black\" Model=\"Process\" Space=\"CMYK\" ColorValue=\"0 0 0 100\" Name=\"Black\"/>";
    std::string fonts;
    std::string styles =
        "<RootObjectStyleGroup Self=\"u1\"><ObjectStyle Self=\"ObjectStyle/$ID/[None]\" "
        "Name=\"$ID/[None]\"/></RootObjectStyleGroup>";
    std::string preferences = "<DocumentPreference PageWidth=\"600\" PageHeight=\"800\" FacingPages=\"false\"/>";
    std::string pages =
        "<Page Self=\"uc1\" Name=\"1\" AppliedMaster=\"n\" GeometricBounds=\"0 0 800 600\" ItemTransform=\"1 0 0 1 "
        "-300 -400\"/>";
    std::string items = textFrame("uf1", "us1");
    std::string spreadAttributes = "Self=\"uc0\"";
    std::vector<std::pair<std::string, std::string>> stories = {{"us1", range("One")}};
    std::vector<std::pair<std::string, std::string>> masters;    ///< attributes and content
    std::vector<std::pair<std::string, std::string>> moreParts;  ///< kind and whole content, named by the designmap
    std::vector<std::string> lostMembers;                        ///< named by the designmap, but not there
    std::string designmap;  ///< the whole part, if it isn't to be made from the above

    static std::string textFrame(const std::string& self, const std::string& story, const std::string& attributes = {},
                                 const std::string& content = {}) {
        return "<TextFrame Self=\"" + self + "\" ParentStory=\"" + story + "\" ItemLayer=\"ub1\" " + attributes +
               " ItemTransform=\"1 0 0 1 -100 -50\">" + rectangleProperties(200, 100) + content + "</TextFrame>";
    }

    /// One paragraph range with one character range.
    static std::string range(const std::string& text, const std::string& paragraph = {},
                             const std::string& character = {}) {
        return "<ParagraphStyleRange " + paragraph + "><CharacterStyleRange " + character + "><Content>" + text +
               "</Content></CharacterStyleRange></ParagraphStyleRange>";
    }

    std::vector<PackageMember> members() const {
        using Method = PackageMember::Method;
        std::vector<PackageMember> parts = {
            {"Resources/Graphic.xml", partOf("Graphic", graphic), Method::Deflated},
            {"Resources/Fonts.xml", partOf("Fonts", fonts), Method::Deflated},
            {"Resources/Styles.xml", partOf("Styles", styles), Method::Deflated},
            {"Resources/Preferences.xml", partOf("Preferences", preferences), Method::Deflated}};
        std::string list =
            "<idPkg:Graphic src=\"Resources/Graphic.xml\"/><idPkg:Fonts src=\"Resources/Fonts.xml\"/>"
            "<idPkg:Styles src=\"Resources/Styles.xml\"/><idPkg:Preferences src=\"Resources/Preferences.xml\"/>";
        const auto add = [&](const std::string& kind, const std::string& name, const std::string& bytes) {
            list += "<idPkg:" + kind + " src=\"" + name + "\"/>";
            parts.push_back({name, bytes, Method::Deflated});
        };
        for (size_t i = 0; i < masters.size(); ++i)
            add("MasterSpread", "MasterSpreads/" + std::to_string(i) + ".xml",
                partOf("MasterSpread",
                       "<MasterSpread " + masters[i].first + ">" + masters[i].second + "</MasterSpread>"));
        add("Spread", "Spreads/1.xml",
            partOf("Spread", "<Spread " + spreadAttributes + ">" + pages + items + "</Spread>"));
        for (const auto& [self, content] : stories)
            add("Story", "Stories/Story_" + self + ".xml",
                partOf("Story", "<Story Self=\"" + self + "\">" + content + "</Story>"));
        for (size_t i = 0; i < moreParts.size(); ++i)
            add(moreParts[i].first, "More/" + std::to_string(i) + ".xml", moreParts[i].second);
        const std::string map = !designmap.empty()
                                    ? designmap
                                    : "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Document "
                                      "xmlns:idPkg=\"urn:packaging\" " +
                                          documentAttributes + ">" + documentContent + list + "</Document>";
        parts.insert(parts.begin(), {"designmap.xml", map, Method::Deflated});
        parts.insert(parts.begin(), {"mimetype", "application/x-idml-package", Method::Stored});
        std::erase_if(parts, [&](const PackageMember& part) {
            return std::find(lostMembers.begin(), lostMembers.end(), part.name) != lostMembers.end();
        });
        return parts;
    }

    std::string bytes() const { return zipOf(members()); }
    std::unique_ptr<Document> read() const { return readDocument(bytes(), "test.idml"); }

    /// The message of the InputError that reading throws; empty when it throws none.
    std::string problem() const {
        try {
            read();
        } catch (const InputError& error) {
            return error.what();
        }
        return {};
    }
};

/// True when the document keeps a note that holds these words.
inline bool hasNote(const Document& document, const std::string& words) {
    for (const ReadingNote& note : document.notes)
        if (note.what.find(words) != std::string::npos) return true;
    return false;
}

}  // namespace desk
