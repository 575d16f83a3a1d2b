// Pages of PDFs as form XObjects: the page's content as it stands, and every object that it needs under a new number.

#define POINTERHOLDER_TRANSITION 4  // the library's new shared pointers alone
#ifdef __clang__
// Clang 14 can't read this header of the library as C++20, a list of an incomplete type, and nothing here needs it.
#define JSON_HH
class JSON;
#endif

#include <deque>
#include <map>
#include <optional>
#include <qpdf/Pl_Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <set>
#include <unordered_map>

#include "desk/pictures/content.h"
#include "desk/pictures/limits.h"
#include "desk/pictures/painted_box.h"
#include "desk/pictures/pdf_text.h"
#include "desk/pictures/standard_fonts.h"

namespace desk {
namespace {

PictureError damaged() {
    return PictureError("is a damaged PDF. Export it again");
}

std::string_view nameOf(const std::string& withSlash) {
    return std::string_view(withSlash).substr(std::min<size_t>(1, withSlash.size()));
}

std::string nameIn(QPDFObjectHandle dictionary, const std::string& key) {
    QPDFObjectHandle value = dictionary.getKey(key);
    return value.isName() ? std::string(nameOf(value.getName())) : std::string();
}

bool isEmbedded(QPDFObjectHandle font) {
    QPDFObjectHandle descriptor = font.getKey("/FontDescriptor");
    if (!descriptor.isDictionary()) return false;
    return descriptor.hasKey("/FontFile") || descriptor.hasKey("/FontFile2") || descriptor.hasKey("/FontFile3");
}

CodeTable charactersOf(QPDFObjectHandle encoding) {
    if (encoding.isName()) return encodingNamed(nameOf(encoding.getName()));
    if (!encoding.isDictionary()) return encodingNamed("StandardEncoding");
    CodeTable characters = encodingNamed(nameIn(encoding, "/BaseEncoding"));
    QPDFObjectHandle differences = encoding.getKey("/Differences");
    if (!differences.isArray()) return characters;
    long long code = 0;
    for (int i = 0; i < differences.getArrayNItems(); ++i) {
        QPDFObjectHandle item = differences.getArrayItem(i);
        if (item.isInteger()) code = item.getIntValue();
        if (!item.isName()) continue;
        if (code >= 0 && code < 256) characters[static_cast<size_t>(code)] = characterNamed(nameOf(item.getName()));
        ++code;
    }
    return characters;
}

/// A standard font that the file names and doesn't carry.
std::optional<AbsentFont> absentFont(QPDFObjectHandle font) {
    if (!font.isDictionary() || !font.hasKey("/BaseFont")) return {};
    const std::string kind = nameIn(font, "/Subtype");
    if ((kind != "Type1" && kind != "TrueType" && kind != "MMType1") || isEmbedded(font)) return {};
    const std::string_view standard = standardTextFont(nameIn(font, "/BaseFont"));
    if (standard.empty()) return {};
    AbsentFont absent;
    absent.baseFont = standard;
    absent.characters = charactersOf(font.getKey("/Encoding"));
    return absent;
}

using Layers = std::set<QPDFObjGen>;

void addLayersOf(QPDFObjectHandle array, Layers& layers) {
    if (!array.isArray()) return;
    for (int i = 0; i < array.getArrayNItems(); ++i) layers.insert(array.getArrayItem(i).getObjGen());
}

/// The layers that the file doesn't show by itself. ISO 32000-1, 8.11.4.3.
Layers hiddenLayersOf(QPDF& pdf) {
    Layers hidden;
    QPDFObjectHandle properties = pdf.getRoot().getKey("/OCProperties");
    if (!properties.isDictionary()) return hidden;
    QPDFObjectHandle usual = properties.getKey("/D");
    if (!usual.isDictionary()) return hidden;
    if (nameIn(usual, "/BaseState") == "OFF") {
        Layers shown;
        addLayersOf(usual.getKey("/ON"), shown);
        addLayersOf(properties.getKey("/OCGs"), hidden);
        std::erase_if(hidden, [&](const QPDFObjGen& layer) { return shown.contains(layer); });
    }
    addLayersOf(usual.getKey("/OFF"), hidden);
    return hidden;
}

/// Writes objects and all that they refer to.
class ObjectCopier {
  public:
    ObjectCopier(const PictureIdentity& file, const Layers& hiddenLayers, PictureSink& sink)
        : file_(file), hiddenLayers_(hiddenLayers), sink_(sink) {}

    std::string text(QPDFObjectHandle object, int depth = 0) {
        if (depth > limits::pdfDepth) throw damaged();
        if (object.isDictionary())
            if (const std::optional<AbsentFont> absent = absentFont(object))
                if (const PictureSink::Number standIn = sink_.standIn(*absent)) return referenceTo(standIn);
        return object.isIndirect() ? referenceOf(object) : directText(object, depth);
    }

    /// The entries of a stream's dictionary that don't depend on the file that it stood in.
    std::string streamEntries(QPDFObjectHandle dictionary, std::initializer_list<std::string_view> leftOut) {
        std::string entries;
        for (const std::string& key : dictionary.getKeys()) {
            if (std::find(leftOut.begin(), leftOut.end(), key) != leftOut.end()) continue;
            appendEntry(entries, key, dictionary.getKey(key), 0);
        }
        return entries;
    }

    void writeWaiting() {
        while (!waiting_.empty()) {
            auto [object, number] = waiting_.front();
            waiting_.pop_front();
            if (object.isStream()) {
                const std::string entries = streamEntries(object.getDict(), {"/Length"});
                write(number, entries, object);
            } else {
                sink_.writeObject(number, directText(object, 0));
            }
        }
    }

    void write(PictureSink::Number number, const std::string& entries, QPDFObjectHandle stream) {
        const std::shared_ptr<Buffer> raw = stream.getRawStreamData();
        sink_.writeEncodedStream(number, entries, {reinterpret_cast<const char*>(raw->getBuffer()), raw->getSize()});
    }

  private:
    std::string referenceOf(QPDFObjectHandle object) {
        // A page among the resources would pull its whole document in; nothing that is painted needs one.
        if (object.isNull() || object.isPageObject() || object.isPagesObject()) return "null";
        const QPDFObjGen name = object.getObjGen();
        const uint64_t key = static_cast<uint64_t>(name.getObj()) << 16 | static_cast<uint64_t>(name.getGen());
        PictureSink::Number number = sink_.known(file_, key);
        if (number == 0) {
            if (++count_ > limits::pdfObjects) throw PictureError("has too many objects. Simplify it");
            number = sink_.allocate();
            sink_.remember(file_, key, number);
            waiting_.emplace_back(object, number);
            if (object.isDictionary() && nameIn(object, "/Type") == "OCG")
                sink_.addLayer(number, !hiddenLayers_.contains(name));
        }
        return referenceTo(number);
    }

    std::string directText(QPDFObjectHandle object, int depth) {
        if (object.isArray()) {
            std::string out = "[";
            for (int i = 0; i < object.getArrayNItems(); ++i) {
                if (i > 0) out += ' ';
                out += text(object.getArrayItem(i), depth + 1);
            }
            return out + "]";
        }
        if (object.isDictionary()) {
            std::string out = "<<";
            for (const std::string& key : object.getKeys()) appendEntry(out, key, object.getKey(key), depth + 1);
            return out + ">>";
        }
        if (object.isStream() || object.isOperator() || object.isInlineImage()) throw damaged();
        return object.unparseResolved();
    }

    void appendEntry(std::string& out, const std::string& key, QPDFObjectHandle value, int depth) {
        if (value.isNull()) return;
        appendName(out, nameOf(key));
        out += ' ' + text(value, depth + 1);
    }

    PictureIdentity file_;
    const Layers& hiddenLayers_;
    PictureSink& sink_;
    std::deque<std::pair<QPDFObjectHandle, PictureSink::Number>> waiting_;
    size_t count_ = 0;
};

/// Takes a page's objects to see whether all of them can be had.
class CountingSink final : public PictureSink {
  public:
    Number allocate() override { return ++last_; }
    void writeObject(Number, std::string_view) override {}
    void writeEncodedStream(Number, std::string_view, std::string_view) override {}
    void writePlainStream(Number, std::string_view, std::string_view) override {}
    Number shared(std::string_view) override { return allocate(); }
    Number sharedStream(std::string_view, std::string_view) override { return allocate(); }
    Number standIn(const AbsentFont&) override { return 0; }
    Number known(const PictureIdentity&, uint64_t object) override {
        const auto found = numbers_.find(object);
        return found == numbers_.end() ? 0 : found->second;
    }
    void remember(const PictureIdentity&, uint64_t object, Number number) override { numbers_[object] = number; }
    void addLayer(Number, bool) override {}

  private:
    Number last_ = 0;
    std::unordered_map<uint64_t, Number> numbers_;
};

class PdfPages final : public PictureContent {
  public:
    explicit PdfPages(const SharedBytes& bytes) : bytes_(bytes) {
        requireEnd();
        pdf_ = QPDF::create();
        pdf_->setSuppressWarnings(true);
        try {
            pdf_->processMemoryFile("picture", bytes->data(), bytes->size());
            pages_ = QPDFPageDocumentHelper(*pdf_).getAllPages();
            hiddenLayers_ = hiddenLayersOf(*pdf_);
        } catch (const QPDFExc& failure) {
            if (failure.getErrorCode() == qpdf_e_password)
                throw PictureError("is protected by a password. Save it without one");
            throw damaged();
        } catch (const std::exception&) {
            throw damaged();
        }
        if (pages_.empty()) throw PictureError("is a PDF without pages. Export it again");
    }

    int pageCount() const override { return static_cast<int>(pages_.size()); }

    PageFacts facts(int page, PageBox box) const override {
        return guarded([&] {
            const PageFacts facts = factsOf(pageAt(page), boxOf(page, box));
            check(page, box);
            return facts;
        });
    }

    PictureSink::Number write(int page, PageBox box, const PictureIdentity& file, PictureSink& sink) const override {
        return guarded([&] { return writePage(page, box, file, sink); });
    }

    size_t heldBytes() const override {
        // The objects of a file take about as much again as their text, as far as they were looked at.
        return sizeof *this + bytes_->size() + bytes_->size() / 2 + (1u << 14);
    }

  private:
    /// A copy that broke off lacks its end, and what the repair of such a file gives may be half a page.
    void requireEnd() const {
        constexpr size_t tail = 4096;
        const std::string_view end =
            std::string_view(*bytes_).substr(bytes_->size() > tail ? bytes_->size() - tail : 0);
        if (end.find("startxref") == std::string_view::npos)
            throw PictureError("is cut off in the middle. Copy or export it again");
    }

    /// Whether all that the page needs can be had. What pages share is looked at once.
    void check(int page, PageBox box) const {
        try {
            writePage(page, box, {}, checked_);
        } catch (...) {
            checked_ = CountingSink();  // it knows objects that weren't reached
            throw;
        }
    }

    template <class Work>
    static auto guarded(Work work) -> decltype(work()) {
        try {
            return work();
        } catch (const PictureError&) {
            throw;
        } catch (const QPDFExc&) {
            throw damaged();
        } catch (const std::logic_error&) {
            throw damaged();
        } catch (const std::runtime_error&) {
            throw damaged();
        }
    }

    QPDFPageObjectHelper pageAt(int page) const {
        if (page < 1 || static_cast<size_t>(page) > pages_.size())
            throw PictureError("has only " + std::to_string(pages_.size()) + (pages_.size() == 1 ? " page" : " pages") +
                               ": there is no page " + std::to_string(page) + ". Give a page that exists");
        return pages_[static_cast<size_t>(page) - 1];
    }

    static std::optional<Rect> rectangle(QPDFObjectHandle box) {
        if (!box.isRectangle()) return {};
        const QPDFObjectHandle::Rectangle r = box.getArrayAsRectangle();
        return Rect{r.llx, r.lly, r.urx, r.ury};
    }

    static Rect intersection(const Rect& a, const Rect& b) {
        return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                std::min(a.bottom, b.bottom)};
    }

    Rect boxOf(int number, PageBox box) const {
        QPDFPageObjectHelper page = pageAt(number);
        if (box != PageBox::Content) return boxNamedBy(page, box);
        const auto known = painted_.find(number);
        if (known != painted_.end()) return known->second;
        return painted_.emplace(number, paintedPart(number, page)).first->second;
    }

    /// The crop box for a page whose content can't be measured.
    Rect paintedPart(int number, const QPDFPageObjectHelper& page) const {
        const Rect crop = boxNamedBy(page, PageBox::Crop);
        const std::optional<Rect> shown = paintedBoxOf(*bytes_, number);
        if (!shown) return crop;
        const Matrix toPage = factsOf(page, boxNamedBy(page, PageBox::Media)).toNatural.inverted();
        const Rect painted = intersection(toPage.boundsOf(*shown), crop);
        return painted.width() > 0 && painted.height() > 0 ? painted : crop;
    }

    static Rect boxNamedBy(QPDFPageObjectHelper page, PageBox box) {
        const Rect media = rectangle(page.getAttribute("/MediaBox", false)).value_or(Rect{0, 0, 612, 792});
        if (box == PageBox::Media) return media;
        const Rect crop = intersection(rectangle(page.getAttribute("/CropBox", false)).value_or(media), media);
        const char* key = box == PageBox::Trim    ? "/TrimBox"
                          : box == PageBox::Bleed ? "/BleedBox"
                          : box == PageBox::Art   ? "/ArtBox"
                                                  : nullptr;
        if (!key) return crop;
        return intersection(rectangle(page.getAttribute(key, false)).value_or(crop), media);
    }

    /// Quarter turns clockwise, 0 to 3.
    static int turnsOf(QPDFPageObjectHelper page) {
        QPDFObjectHandle rotate = page.getAttribute("/Rotate", false);
        if (!rotate.isInteger()) return 0;
        return static_cast<int>((rotate.getIntValue() / 90 % 4 + 4) % 4);
    }

    static PageFacts factsOf(QPDFPageObjectHelper page, const Rect& box) {
        QPDFObjectHandle userUnit = page.getObjectHandle().getKey("/UserUnit");
        const double unit = userUnit.isNumber() ? userUnit.getNumericValue() : 1;
        const int turns = turnsOf(page);
        const double width = box.width() * unit, height = box.height() * unit;
        constexpr double smallest = 1e-3;
        if (!(width > smallest && height > smallest && width < limits::pageSide && height < limits::pageSide))
            throw PictureError("has a page without a usable size. Export it again");
        PageFacts facts;
        facts.width = turns % 2 == 0 ? width : height;
        facts.height = turns % 2 == 0 ? height : width;
        const Matrix turned[4] = {{1, 0, 0, 1, -box.left, -box.top},
                                  {0, -1, 1, 0, -box.top, box.right},
                                  {-1, 0, 0, -1, box.right, box.bottom},
                                  {0, 1, -1, 0, box.bottom, -box.left}};
        facts.toNatural = Matrix{unit, 0, 0, unit, 0, 0}.after(turned[turns]);
        facts.isTransparent = page.getObjectHandle().getKey("/Group").isDictionary();
        return facts;
    }

    PictureSink::Number writePage(int number, PageBox box, const PictureIdentity& file, PictureSink& sink) const {
        QPDFPageObjectHelper page = pageAt(number);
        ObjectCopier copier(file, hiddenLayers_, sink);
        std::string entries = "/Type/XObject/Subtype/Form" + boundingBoxEntry(boxOf(number, box));
        QPDFObjectHandle resources = page.getAttribute("/Resources", false);
        entries += "/Resources " + (resources.isDictionary() ? copier.text(resources) : std::string("<<>>"));
        QPDFObjectHandle group = page.getObjectHandle().getKey("/Group");
        if (group.isDictionary()) entries += "/Group " + copier.text(group);
        const PictureSink::Number form = sink.allocate();
        QPDFObjectHandle contents = page.getObjectHandle().getKey("/Contents");
        if (contents.isArray() && contents.getArrayNItems() == 1) contents = contents.getArrayItem(0);
        if (contents.isStream()) {
            QPDFObjectHandle dictionary = contents.getDict();
            copier.write(form, entries + copier.streamEntries(dictionary, {"/Length", "/Type"}), contents);
        } else {
            Pl_Buffer joined("contents");
            page.pipeContents(&joined);
            const std::shared_ptr<Buffer> content = joined.getBufferSharedPointer();
            sink.writePlainStream(form, entries,
                                  {reinterpret_cast<const char*>(content->getBuffer()), content->getSize()});
        }
        copier.writeWaiting();
        return form;
    }

    SharedBytes bytes_;
    std::shared_ptr<QPDF> pdf_;
    std::vector<QPDFPageObjectHelper> pages_;
    Layers hiddenLayers_;
    mutable CountingSink checked_;
    mutable std::map<int, Rect> painted_;  ///< by page, as far as they were asked for
};

}  // namespace

std::unique_ptr<PictureContent> readPdf(const SharedBytes& bytes) {
    return std::make_unique<PdfPages>(bytes);
}

}  // namespace desk
