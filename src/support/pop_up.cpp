#include "support/pop_up.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "support/locale_text.h"
#include "support/paths.h"
#include "support/platform_path.h"

namespace vornaset {

namespace {

std::vector<String> piecesOf(const String& path) {
    std::vector<String> pieces;
    if (path.isNull()) return pieces;
    size_t start = 0;
    for (size_t end = path.find(u'/'); end != String::npos; end = path.find(u'/', start)) {
        pieces.push_back(path.substring(start, end - start));
        start = end + 1;
    }
    pieces.push_back(path.substring(start));
    return pieces;
}

/// A name that begins with its only "." has no extension, nor has one that ends with it.
String extensionOf(const String& name) {
    const size_t dot = name.view().rfind(u'.');
    if (dot == String::npos || dot == 0 || dot + 1 == name.length()) return u"";
    return name.substring(dot + 1);
}

Array namesInFolder(const String& folder) {
    Array names = Array::makeMutable();
    std::error_code failure;
    std::filesystem::directory_iterator entry(platformPath(folder), failure);
    for (const std::filesystem::directory_iterator end; !failure && entry != end; entry.increment(failure)) {
        const String name = textOfPath(entry->path().filename());
        if (!name.isNull()) names.add(name);
    }
    return sortedByStandardCompare(names);
}

}  // namespace

void setupPopupWithPath(PopUpButton* popUp, const String& path) {
    if (popUp == nullptr) return;
    popUp->removeAllItems();
    const std::vector<String> pieces = piecesOf(path);
    for (size_t index = pieces.size(); index > 1; --index) popUp->addItem(pieces[index - 1]);
    popUp->selectItem(0);
}

String pathWithPopup(const PopUpButton* popUp) {
    String path = u"";
    if (popUp == nullptr) return path;
    const int64_t selected = popUp->selectedIndex();
    if (selected < 0) return path;
    for (int64_t index = popUp->itemCount() - 1; index >= selected; --index) path = path + u"/" + popUp->titleAt(index);
    return path;
}

String pathFromPopup(const PopUpButton* popUp, int64_t index) {
    String path = u"/";
    if (popUp == nullptr) return path;
    const int64_t last = index == -1 ? popUp->selectedIndex() : index;
    if (last < 0) return path;
    for (int64_t item = popUp->itemCount() - 1; item >= last; --item) {
        if (popUp->tagAt(item) == 0) path = stringByAppendingPathComponents(path, popUp->titleAt(item), nullptr);
    }
    return path;
}

void setupPopupWithDirectory(PopUpButton* popUp, const String& folder, const String& extension, uint8_t clear) {
    if (popUp == nullptr) return;
    if (clear == 1) popUp->removeAllItems();
    for (const Value& entry : namesInFolder(folder)) {
        const String& name = entry.string();
        if (extensionOf(name) == extension) popUp->addItem(lastPathComponent(name, 0));
    }
    popUp->selectItem(0);
}

void setupPopupWithArray(PopUpButton* popUp, const Array& titles, const String& selected) {
    if (popUp == nullptr) return;
    popUp->removeAllItems();
    if (titles.isEmpty()) return;
    for (const Value& title : titles) popUp->addItem(title.isString() ? title.string() : title.description());
    selectPopup(popUp, selected);
}

void selectPopup(PopUpButton* popUp, const String& title) {
    if (popUp == nullptr || popUp->itemCount() == 0) return;
    popUp->selectItem(std::max<int64_t>(popUp->indexOfTitle(title), 0));
}

}  // namespace vornaset
