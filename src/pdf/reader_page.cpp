#include "pdf/reader_page.h"

#include <algorithm>
#include <utility>

#include "pdf/pdf_doc.h"
#include "pdf/pdf_keys.h"
#include "pdf/reader.h"

namespace vornaset {

namespace {

constexpr int kDeepestTree = 1000;
constexpr Rect kLetterPage{0, 0, 612, 792};

/// The page's entry, or that of the nearest node above that has one.
const ReaderObject* inherited(const ReaderObject& page, std::string_view key) {
    const ReaderObject* node = &page;
    for (int level = 0; node != nullptr && level < kDeepestTree; ++level, node = node->entry("Parent")) {
        if (const ReaderObject* found = node->entry(key)) return found;
    }
    return nullptr;
}

std::optional<double> numberOf(const ReaderObject& object) {
    if (object.type() == ReaderType::integer) return static_cast<double>(object.integer());
    if (object.type() == ReaderType::real) return object.real();
    return std::nullopt;
}

std::optional<Rect> boxOf(const ReaderObject* array) {
    if (array == nullptr || array->items().size() != 4) return std::nullopt;
    double numbers[4];
    for (size_t index = 0; index < 4; ++index) {
        const std::optional<double> number = numberOf(*array->items()[index]);
        if (!number) return std::nullopt;
        numbers[index] = *number;
    }
    const auto [left, right] = std::minmax(numbers[0], numbers[2]);
    const auto [bottom, top] = std::minmax(numbers[1], numbers[3]);
    if (right <= left || top <= bottom) return std::nullopt;
    return Rect{left, bottom, right - left, top - bottom};
}

/// What both hold; the second when they have nothing in common.
Rect intersection(const Rect& one, const Rect& other) {
    const double left = std::max(one.x, other.x), right = std::min(one.x + one.width, other.x + other.width);
    const double bottom = std::max(one.y, other.y), top = std::min(one.y + one.height, other.y + other.height);
    return right > left && top > bottom ? Rect{left, bottom, right - left, top - bottom} : other;
}

void keepInherited(const Handle<MyPDFDictionary>& page, const String& key) {
    Handle<MyPDFDictionary> node = page->parent();
    for (int level = 0; node && level < kDeepestTree && !page->objectForKeyedSubscript(key); ++level) {
        page->setObject(node->objectForKeyedSubscript(key), key);
        node = node->parent();
    }
}

}  // namespace

int64_t ReaderPage::numberOfPages(const String& path) {
    const auto document = path.isNull() ? nullptr : ReaderDocument::open(path);
    return document ? document->numberOfPages() : 0;
}

std::shared_ptr<const ReaderPage> ReaderPage::open(const String& path, int64_t number) {
    const auto document = path.isNull() ? nullptr : ReaderDocument::open(path);
    const ReaderObject* found = document ? document->page(number) : nullptr;
    if (found == nullptr) return nullptr;
    ReaderPage page;
    page.path_ = path;
    page.number_ = number;
    const Rect media = boxOf(inherited(*found, "MediaBox")).value_or(kLetterPage);
    const Rect crop = intersection(boxOf(inherited(*found, "CropBox")).value_or(media), media);
    const auto own = [&](std::string_view key) { return boxOf(found->entry(key)).value_or(crop); };
    const Rect boxes[] = {media, crop, own("BleedBox"), own("TrimBox"), own("ArtBox")};
    std::copy(std::begin(boxes), std::end(boxes), page.boxes_);
    const ReaderObject* turn = inherited(*found, "Rotate");
    const std::optional<double> degrees = turn != nullptr ? numberOf(*turn) : std::nullopt;
    const auto turns = static_cast<int64_t>(degrees.value_or(0)) / 90 % 4;
    page.quarterTurns_ = static_cast<int>((turns + 4) % 4);
    return std::make_shared<const ReaderPage>(std::move(page));
}

PageToDraw ReaderPage::toDraw() const {
    const Rect crop = boundsForBox(PageBox::crop);
    return {path_, number_, crop.width, crop.height, quarterTurns_};
}

Data ReaderPage::dataRepresentation() const {
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDocWithPath(path_);
    const size_t index = static_cast<size_t>(number_) - 1;
    if (index >= document->pages().count()) return {};
    const Handle<MyPDFDictionary> page = document->pages()[index];
    for (const String& key : {pdf_key::kResources, pdf_key::kMediaBox, pdf_key::kCropBox, String(u"Rotate")})
        keepInherited(page, key);
    document->setPages(ObjectList<MyPDFDictionary>::make({page}));
    document->rebuildPageList(0);
    return document->pdfData();
}

}  // namespace vornaset
