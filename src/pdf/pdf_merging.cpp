#include "pdf/pdf_merging.h"

#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "pdf/pdf_keys.h"
#include "pdf/pdf_text.h"
#include "support/format.h"
#include "support/messages.h"
#include "support/paths.h"

namespace vornaset {

using namespace pdf_key;

namespace {

/// How many names are tried for a form before the page takes no more.
constexpr int64_t kNameCandidates = 100;

String formName(int64_t number) {
    return stringWithFormat(u"Kd%ld", number);
}

String translation(double x, double y) {
    std::string matrix = "1 0 0 1 ";
    appendSixDigits(matrix, x);
    matrix += ' ';
    appendSixDigits(matrix, y);
    return String::fromUTF8(matrix);
}

/// Under a page, in the middle.
void underlay(const Handle<MyPDFDictionary>& page, const Handle<MyPDFStream>& form) {
    const String name = addFormToPageResource(page, form);
    addFormToPageContent(page, form, name, nullptr);
}

}  // namespace

String addFormToPageResource(const Handle<MyPDFDictionary>& page, const Handle<MyPDFStream>& form) {
    const auto resources = operandOf<MyPDFDictionary>(page->resources(), "objectForKeyedSubscript:");
    auto names = objectAs<MyPDFDictionary>(resources->objectForKeyedSubscript(kXObject));
    if (!names) {
        names = MyPDFDictionary::make();
        resources->setObject(names, kXObject);
    }
    const int64_t first = names->count() + 1;
    for (int64_t candidate = 0; candidate < kNameCandidates; ++candidate) {
        String name = formName(first + candidate);
        if (names->objectForKeyedSubscript(name)) continue;
        names->setObject(form, name);
        return name;
    }
    return {};
}

void addFormToPageContent(const Handle<MyPDFDictionary>& page, const Handle<MyPDFStream>& form, const String& name,
                          const String& matrix) {
    String placement = matrix;
    if (placement.isNull()) {
        const Rect crop = page->cropBox();
        const Rect box = form->bbox();
        placement = translation((crop.width - box.width) / 2, (crop.height - box.height) / 2);
    }
    prependToContents(page, stringWithFormat(u"q %@ cm /%@ Do Q\n", placement, name).utf8());
}

void addFormAtPoint(const Handle<MyPDFDoc>& document, int64_t index, const Handle<MyPDFDictionary>& page, double x,
                    double y) {
    const Handle<MyPDFStream> form = document->formForPageNum(index);
    if (!form) return;
    const String name = addFormToPageResource(page, form);
    addFormToPageContent(page, form, name, translation(x, y));
}

void mergeDocs(const Handle<MyPDFDoc>& source, const Handle<MyPDFDoc>& target, const String& output) {
    try {
        const size_t sourcePages = source->pages().count();
        const size_t targetPages = target->pages().count();
        for (size_t first = 0; first < sourcePages; ++first) {
            const Handle<MyPDFStream> form = source->formForPageNum(static_cast<int64_t>(first));
            for (size_t place = first; place < targetPages; place += sourcePages) {
                underlay(target->pages()[place], form);
            }
        }
    } catch (const std::exception& exception) {
        msgBox(exception);
    }
    if (!output.isNull()) target->writeToFile(output);
}

String mergeDocs(const String& path1, const String& path2, const String& output) {
    const Handle<MyPDFDoc> first = MyPDFDoc::pdfDocWithPath(path1);
    const Handle<MyPDFDoc> second = MyPDFDoc::pdfDocWithPath(path2);
    const bool firstIsTarget = first->numberOfPages() >= second->numberOfPages();
    const String ownPath = firstIsTarget ? path1 : path2;
    String path = output.isNull() ? ownPath : output;
    if (firstIsTarget) {
        mergeDocs(second, first, path);
    } else {
        mergeDocs(first, second, path);
    }
    return path;
}

void appendPages(const Handle<MyPDFDoc>& target, const Handle<MyPDFDoc>& source) {
    // A document may be appended to itself, so the list is copied before it grows.
    const std::vector<Handle<MyPDFDictionary>> pages(source->pages().begin(), source->pages().end());
    for (const Handle<MyPDFDictionary>& page : pages) {
        page->setBoxRectsForPage();
        target->pages().add(page);
    }
}

void mergePages(const Handle<MyPDFDoc>& target, const Handle<MyPDFDoc>& source, const String& output) {
    appendPages(target, source);
    target->rebuildPageList(0);
    target->writeToFile(output);
}

void mergePages(const String& path1, const String& path2, const String& output) {
    const Handle<MyPDFDoc> target = MyPDFDoc::pdfDocWithPath(path1);
    const Handle<MyPDFDoc> source = MyPDFDoc::pdfDocWithPath(path2);
    mergePages(target, source, output);
}

void deleteLastPage(const String& path) {
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDocWithPath(path);
    document->deleteLastPage();
    document->writeToFile(path);
}

void mergeDocWithPaths(const Handle<MyPDFDoc>& target, const Array& paths) {
    mergeDocWithPaths(target, paths, [](const String& path) { return MyPDFDoc::pdfDocWithPath(path); });
}

void mergeDocWithPaths(const Handle<MyPDFDoc>& target, const Array& paths, const DocumentOpener& open) {
    if (paths.isEmpty()) return;
    std::map<String, Handle<MyPDFStream>> forms;
    for (const Value& entry : paths) {
        const String path = entry.string();
        if (forms.contains(path)) continue;
        const bool isFile = pathIsFile(path);
        forms[path] = isFile ? open(path)->formForPageNum(0) : nullptr;
    }
    const auto pageCount = static_cast<int32_t>(target->numberOfPages());
    for (int32_t index = 0; index < pageCount; ++index) {
        const auto place = static_cast<size_t>(index);
        const Handle<MyPDFStream>& form = forms[paths[place].string()];
        if (form) underlay(target->pages()[place], form);
    }
}

Handle<MyPDFDoc> mergeDocWithPaths(const String& path, const Array& paths) {
    try {
        Handle<MyPDFDoc> document = MyPDFDoc::pdfDocWithPath(path);
        mergeDocWithPaths(document, paths);
        return document;
    } catch (const std::exception& exception) {
        msgBox(exception);
        return nullptr;
    }
}

String doMyPDF(const String& path, uint8_t) {
    MyPDFDoc::pdfDocWithPath(path)->writeToFile(path);
    return path;
}

String makePDFDoc() {
    constexpr int64_t kPageCount = 100;
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDocWithPath(nullptr);
    const Handle<MyPDFDictionary> pages = document->pagesObj();
    const Handle<MyPDFArray> kids = MyPDFArray::array();
    pages->setKids(kids);
    pages->setCount(kPageCount);
    pages->setMediaBox({0, 0, 300, 500});
    const Handle<MyPDFDictionary> resources = MyPDFDictionary::resources(Array::make({"PDF", "Text"}));
    for (int64_t number = 0; number < kPageCount; ++number) {
        const Handle<MyPDFStream> content = MyPDFStream::stream();
        content->setData(Data(std::string("100 100 m 100 200 l 200 200 l 200 100 l f")));
        const Handle<MyPDFDictionary> page = MyPDFDictionary::make();
        page->setType(u"Page");
        page->setParent(pages);
        page->setContents(content);
        page->setResources(resources);
        kids->addObject(page);
    }
    const char* home = std::getenv("HOME");
    String path = home == nullptr ? temporaryPath(u"vornaset-test", u"pdf")
                                  : stringByAppendingPathComponents(home, u"vornaset-test", u"pdf");
    document->writeToFile(path);
    return path;
}

}  // namespace vornaset
