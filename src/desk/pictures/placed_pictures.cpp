// Pictures of documents: those that are put in, and those that a document brings along.

#include <cmath>
#include <set>

#include "desk/pictures/linked_file.h"
#include "desk/pictures/picture_library.h"
#include "desk/pictures/stored_picture.h"

namespace desk {
namespace {

void show(PageItem& item, PictureImport import) {
    PlacedGraphic& graphic = *item.graphic;
    graphic.picture = std::move(import.picture);
    graphic.failure = std::move(import.failure);
    ++item.revision;
    // A package that doesn't say how large the picture is shows it at its own size.
    if (!graphic.picture || (graphic.bounds.width() > 0 && graphic.bounds.height() > 0)) return;
    graphic.bounds = {0, 0, graphic.picture->width, graphic.picture->height};
    item.path = rectanglePath(graphic.bounds);
}

/// A page that is cut to its content has to be measured, which takes long; most are as large as their crop box.
template <class Import>
PictureImport importFor(const PlacedGraphic& graphic, Import import) {
    constexpr double tolerance = 0.5;
    if (graphic.box != PageBox::Content) return import(graphic.box);
    PictureImport whole = import(PageBox::Crop);
    const bool hasSize = graphic.bounds.width() > 0 && graphic.bounds.height() > 0;
    const bool fits = whole && hasSize && std::abs(whole.picture->width - graphic.bounds.width()) <= tolerance &&
                      std::abs(whole.picture->height - graphic.bounds.height()) <= tolerance;
    return !whole || fits ? whole : import(PageBox::Content);
}

void load(PageItem& item, const std::string& documentPath, PictureLibrary& library) {
    PlacedGraphic& graphic = *item.graphic;
    if (graphic.embedded) {
        const std::string& name = graphic.uri.empty() ? item.self : graphic.uri;
        show(item, importFor(graphic, [&](PageBox box) {
                 return library.importBytes(graphic.embedded, name, graphic.pageNumber, box);
             }));
        return;
    }
    const std::string linked = pathOfLink(graphic.uri);
    graphic.path = fileOfLink(graphic.uri, documentPath);
    if (graphic.path.empty()) {
        graphic.failure =
            sentenceAbout(linked.empty() ? item.self : linked,
                          "isn't there, nor is it beside the document. Put it into the document's folder");
        return;
    }
    show(item, importFor(graphic, [&](PageBox box) {
             return library.import({graphic.path, graphic.pageNumber, box});
         }));
}

/// All items on spreads and in stories, with what stands inside them.
std::vector<Uid> itemsOf(const Document& document) {
    std::vector<Uid> waiting;
    const auto add = [&](const std::vector<Uid>& uids) { waiting.insert(waiting.end(), uids.begin(), uids.end()); };
    for (const std::vector<Uid>* spreads : {&document.spreads, &document.masterSpreads})
        for (Uid spread : *spreads)
            for (Uid layer : document.spread(spread)->layers) add(document.spreadLayer(layer)->items);
    for (Uid story : document.stories)
        for (const OwnedItem& owned : document.story(story)->content().ownedItems) waiting.push_back(owned.item);
    std::vector<Uid> items;
    std::set<Uid> seen;
    while (!waiting.empty()) {
        const Uid uid = waiting.back();
        waiting.pop_back();
        const PageItem* item = document.item(uid);
        if (!item || !seen.insert(uid).second) continue;
        items.push_back(uid);
        add(item->children);
    }
    return items;
}

}  // namespace

PageItem& addPicture(Document& document, std::shared_ptr<const Picture> picture) {
    PageItem& item = document.addItem(ItemKind::Graphic);
    PlacedGraphic graphic;
    graphic.kind = elementNameOf(picture->format);
    graphic.path = picture->path;
    graphic.pageNumber = picture->page;
    graphic.bounds = {0, 0, picture->width, picture->height};
    item.path = rectanglePath(graphic.bounds);
    graphic.picture = std::move(picture);
    item.graphic = std::move(graphic);
    return item;
}

void loadPlacedPictures(Document& document, PictureLibrary& library) {
    for (Uid uid : itemsOf(document)) {
        PageItem* item = document.item(uid);
        if (item->graphic && !item->graphic->picture) load(*item, document.path, library);
    }
}

}  // namespace desk
