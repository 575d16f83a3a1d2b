#pragma once
// What changed in a document since it was read, as changes to the parts of its package.

#include <map>
#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "desk/idml/package.h"
#include "desk/idml/part_editor.h"
#include "desk/model/document.h"

namespace desk {

class PackageChanges {
  public:
    /// `before` is a fresh reading of the package.
    PackageChanges(const Document& before, const Document& now, Package& package);
    ~PackageChanges();

    /// Compares and writes. Throws InputError for a part that can't be changed.
    void find();

    /// Bytes of the parts that changed or came, by member name.
    const std::map<std::string, std::string>& changed() const { return changed_; }
    /// Members that are gone.
    const std::set<std::string>& removed() const { return removed_; }
    /// The id of an object in the written package; empty for one that isn't written.
    std::string idOf(Uid uid) const;

  private:
    struct Part {
        std::string member;
        std::unique_ptr<XmlSource> source;
        std::unique_ptr<PartEditor> editor;
    };
    struct Place {
        Part* part = nullptr;
        const SourceElement* element = nullptr;
    };

    void openParts();
    Part& openPart(const std::string& member);
    void index(Part& part, const SourceElement& element);
    void giveIds();
    std::vector<Uid> itemsIn(const Document& document) const;
    void addItem(const Document& document, Uid uid, std::vector<Uid>& items) const;

    void changeItems();
    void changeItem(const PageItem& was, const PageItem& is);
    void changeOrder();
    void fillContainer(const std::vector<Uid>& was, const std::vector<Uid>& is, const Place& place);
    std::string itemXml(Uid uid) const;
    void changeStories();
    void addStory(const Story& story);
    void changeSpreads();
    /// Takes a spread or a story out: its element in a snippet, else the map's line for its part, which goes too.
    void removePart(const Place& place);
    void addSpread(const Spread& spread);
    void changeSections();
    void changeMap();
    Place placeOfItem(const PageItem& item) const;

    const Document& before_;
    const Document& now_;
    Package& package_;
    std::vector<std::unique_ptr<Part>> parts_;
    Part* map_ = nullptr;                                               ///< the part with the document element
    std::unordered_map<std::string, Place> items_, stories_, spreads_;  ///< by id
    std::unordered_map<std::string, const SourceElement*> partLines_;   ///< of the map, by member
    std::unordered_map<Uid, std::string> newIds_;
    std::set<Uid> wasThere_, isThere_, moved_;
    std::map<std::string, std::string> changed_;
    std::set<std::string> removed_;
};

}  // namespace desk
