// Finding pages, keeping tree and list in step, taking pages away and adding new ones. ISO 32000-1, 7.7.3.

#include <algorithm>
#include <set>
#include <unordered_set>
#include <vector>

#include "pdf/limits.h"
#include "pdf/pdf_doc.h"
#include "pdf/pdf_keys.h"
#include "support/raise_exception.h"

namespace vornaset {

using namespace pdf_key;

namespace {

ObjectList<MyPDFObj> childrenOf(const Handle<MyPDFObj>& object) {
    return operandOf<MyPDFArray>(object, "children")->children();
}

/// The part of the tree that is being read.
struct TreeLevel {
    ObjectList<MyPDFObj> list;
    size_t next = 0;
    const MyPDFObj* node = nullptr;  ///< whose kids the list is; null for the list that a caller gave
};

uint8_t appendToList(const Handle<MyPDFObj>& child, void* list) {
    static_cast<ObjectList<MyPDFObj>*>(list)->add(child);
    return 1;
}

uint8_t appendColorSpace(const Handle<MyPDFObj>& child, void* list) {
    if (child->isColorSpace()) static_cast<std::vector<Handle<MyPDFObj>>*>(list)->push_back(child);
    return 1;
}

}  // namespace

void MyPDFDoc::setupPages() {
    if (absent_) return;
    pagesObj_ = operandOf<MyPDFDictionary>(catalog_->objectForKeyedSubscript(kPages), "kids");
    pages_ = ObjectList<MyPDFDictionary>::make();
    addPages(childrenOf(pagesObj_->kids()));
}

// A list of its own for a stack: a foreign file decides how deep the tree is.
void MyPDFDoc::addPages(const ObjectList<MyPDFObj>& list) {
    std::vector<TreeLevel> levels{{list, 0, nullptr}};
    std::unordered_set<const MyPDFObj*> path;
    size_t met = 0;
    while (!levels.empty()) {
        TreeLevel& level = levels.back();
        if (level.next >= level.list.count()) {
            path.erase(level.node);
            levels.pop_back();
            continue;
        }
        if (++met > pdf_limits::kMaximumPages) {
            raiseException("The page tree lists more than %d kids.", pdf_limits::kMaximumPages);
        }
        const auto element = objectAs<MyPDFDictionary>(level.list[level.next++]);
        if (element->isPage()) {
            pages_.add(element);
        } else if (element->isPages()) {
            const auto kids = objectAs<MyPDFArray>(element->kids());
            if (kids && path.insert(element.get()).second) levels.push_back({kids->children(), 0, element.get()});
        }
    }
}

void MyPDFDoc::setFlatKids(const std::vector<Handle<MyPDFObj>>& kids) {
    const Handle<MyPDFArray> array = MyPDFArray::array();
    for (const Handle<MyPDFObj>& kid : kids) array->addObject(kid);
    pagesObj_->setKids(array);
    pagesObj_->setCount(static_cast<int64_t>(kids.size()));
    for (const Handle<MyPDFDictionary>& page : pages_) page->setParent(pagesObj_);
}

void MyPDFDoc::rebuildPageList(int64_t size) {
    auto remaining = static_cast<int64_t>(pages_.count());
    const int64_t perNode = size == 0 ? remaining : size;
    if (remaining <= perNode) {
        setFlatKids({pages_.begin(), pages_.end()});
        return;
    }
    pagesObj_->setCount(remaining);
    const Handle<MyPDFArray> nodes = MyPDFArray::array();
    pagesObj_->setKids(nodes);
    do {
        nodes->addObject(kidsObjectForPages(pagesObj_, pages_, perNode));
        remaining -= perNode;
    } while (remaining > perNode);
    if (remaining >= 1) nodes->addObject(kidsObjectForPages(pagesObj_, pages_, remaining));
}

Handle<MyPDFDictionary> kidsObjectForPages(const Handle<MyPDFDictionary>& parent,
                                           const ObjectList<MyPDFDictionary>& list, int64_t number) {
    Handle<MyPDFDictionary> node = MyPDFDictionary::make();
    node->setParent(parent);
    const Handle<MyPDFArray> kids = MyPDFArray::array();
    const auto taken = static_cast<size_t>(number);
    if (taken > list.count()) raiseBeyondEnd(taken, list.count());
    for (const Handle<MyPDFDictionary>& page : list) page->setParent(node);
    node->setKids(kids);
    for (size_t index = 0; index < taken; ++index) kids->addObject(list[index]);
    list.removeRange(0, taken);
    node->setCount(number);
    node->setType(kPages);
    return node;
}

void MyPDFDoc::deleteLastPage() {
    if (pages_.count() < 2) return;
    pages_.removeLast();
    setFlatKids({pages_.begin(), pages_.end()});
    setRebuildPDFObjs(1);
}

void MyPDFDoc::revertPages() {
    if (pages_.count() < 2) return;
    std::vector<Handle<MyPDFObj>> kids(pages_.begin(), pages_.end());
    std::reverse(kids.begin(), kids.end());
    setFlatKids(kids);
    ObjectList<MyPDFObj> objects = ObjectList<MyPDFObj>::make();
    objects.add(pdfObjs_.objectAt(0));
    objects.add(catalog_);
    catalog_->enumChildren(appendToList, &objects);
    pdfObjs_ = objects;
}

Handle<MyPDFDictionary> MyPDFDoc::addPageWithRect(const Rect& rectangle, int64_t pos) {
    if (absent_) return nullptr;
    Handle<MyPDFDictionary> page = MyPDFDictionary::make();
    page->setType(u"Page");
    page->setMediaBox(rectangle);
    page->setCropBox(rectangle);
    page->setParent(pagesObj_);
    page->setContents(MyPDFStream::stream());
    page->setResources(MyPDFDictionary::make());
    const ObjectList<MyPDFObj> kids = childrenOf(pagesObj_->kids());
    kids.add(page);
    pagesObj_->setCount(static_cast<int64_t>(kids.count()));
    if (pos == -1) {
        pages_.add(page);
    } else {
        pages_.insert(static_cast<size_t>(pos), page);
    }
    return page;
}

void MyPDFDoc::addEmptyPages(int64_t number, int64_t pos) {
    const Rect box = pages_.first()->mediaBox();
    for (int64_t added = 0; added < number; ++added) addPageWithRect(box, pos);
}

Handle<MyPDFDictionary> MyPDFDoc::addFont(const String& font, const String& pdfName) {
    if (absent_) return nullptr;
    Handle<MyPDFDictionary> dictionary = MyPDFDictionary::make();
    dictionary->setType(kFont);
    dictionary->setSubtype(u"Type1");
    dictionary->setName(pdfName, kName);
    dictionary->setName(font, kBaseFont);
    dictionary->setName(u"MacRomanEncoding", kEncoding);
    return dictionary;
}

ObjectList<MyPDFObj> MyPDFDoc::colorSpacesForPageRange(const Range& range) {
    const auto pageCount = static_cast<int64_t>(pages_.count());
    if (range.location < 0 || range.location >= pageCount) return nullptr;
    const bool toTheEnd = range.length == 0 || range.length > pageCount - range.location;
    const int64_t end = toTheEnd ? pageCount : range.location + range.length;
    std::vector<Handle<MyPDFObj>> found;
    // Since the result is a set, it makes no difference whether a walk tells a shared object once or each time that it
    // is reached; telling it once ends on every graph.
    for (int64_t index = range.location; index < end; ++index) {
        MyPDFObj::enumChildren(pages_[static_cast<size_t>(index)], appendColorSpace, &found);
    }
    ObjectList<MyPDFObj> result = ObjectList<MyPDFObj>::make();
    std::set<const MyPDFObj*> taken;
    for (const Handle<MyPDFObj>& object : found) {
        if (taken.insert(object.get()).second) result.add(object);
    }
    return result;
}

}  // namespace vornaset
