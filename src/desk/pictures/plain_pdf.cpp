// The short way for PDFs as barcode tools make them by the thousand: one page, one stream of content, a classic
// cross-reference table, no resources but standard fonts. It takes a few microseconds, where reading any PDF takes
// hundreds. Whatever looks different in the least is left to the general reader.

#include <charconv>
#include <cmath>
#include <optional>

#include "desk/pictures/limits.h"
#include "desk/pictures/pdf_text.h"
#include "desk/pictures/pixels.h"
#include "desk/pictures/standard_fonts.h"

namespace desk {
namespace {

/// Left to the general reader, which also knows how to complain.
struct NotPlain {};

struct Value {
    enum class Kind { Null, Number, Name, Array, Dictionary, Reference, Other };
    Kind kind = Kind::Null;
    double number = 0;         ///< of a reference the object's number
    std::string_view name;     ///< without slash
    std::vector<Value> items;  ///< of a dictionary key, value, key, value, ...

    const Value* get(std::string_view key) const {
        for (size_t i = 0; i + 1 < items.size(); i += 2)
            if (items[i].name == key) return &items[i + 1];
        return nullptr;
    }
};

bool isBlank(char c) {
    return c == ' ' || c == '\n' || c == '\r' || c == '\t' || c == '\f' || c == '\0';
}
bool isDelimiter(char c) {
    return std::string_view("()<>[]{}/%").find(c) != std::string_view::npos;
}

class Parser {
  public:
    Parser(std::string_view bytes, size_t at) : bytes_(bytes), at_(at) {}

    Value value(int depth = 0) {
        constexpr int deepest = 8;
        if (depth > deepest) throw NotPlain();
        skipBlanks();
        if (take("<<")) return container(Value::Kind::Dictionary, ">>", depth);
        if (take("[")) return container(Value::Kind::Array, "]", depth);
        Value value;
        if (take("/")) {
            value.kind = Value::Kind::Name;
            value.name = word();
            if (value.name.find('#') != std::string_view::npos) throw NotPlain();
            return value;
        }
        if (take("(")) {
            skipString();
            value.kind = Value::Kind::Other;
            return value;
        }
        const std::string_view text = word();
        if (text == "null") return value;
        if (text == "true" || text == "false") {
            value.kind = Value::Kind::Other;
            return value;
        }
        value.kind = Value::Kind::Number;
        value.number = numberIn(text);
        takeReference(value);
        return value;
    }

    void expect(std::string_view text) {
        skipBlanks();
        if (!take(text)) throw NotPlain();
    }
    bool take(std::string_view text) {
        if (bytes_.substr(at_, text.size()) != text) return false;
        at_ += text.size();
        return true;
    }
    void skipBlanks() {
        while (at_ < bytes_.size() && isBlank(bytes_[at_])) ++at_;
    }
    size_t integer() {
        skipBlanks();
        size_t number = 0;
        const char* start = bytes_.data() + at_;
        const auto read = std::from_chars(start, bytes_.data() + bytes_.size(), number);
        if (read.ec != std::errc()) throw NotPlain();
        at_ += static_cast<size_t>(read.ptr - start);
        return number;
    }
    size_t at() const { return at_; }

  private:
    std::string_view word() {
        const size_t start = at_;
        while (at_ < bytes_.size() && !isBlank(bytes_[at_]) && !isDelimiter(bytes_[at_])) ++at_;
        if (at_ == start) throw NotPlain();
        return bytes_.substr(start, at_ - start);
    }

    static double numberIn(std::string_view text) {
        if (text.starts_with('+')) text.remove_prefix(1);
        double number = 0;
        const auto read = std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
        if (read.ec != std::errc() || read.ptr != text.data() + text.size() || !std::isfinite(number)) throw NotPlain();
        return number;
    }

    /// "12 0 R" where 12 was read.
    void takeReference(Value& value) {
        size_t ahead = at_;
        const auto blanks = [&] {
            const size_t start = ahead;
            while (ahead < bytes_.size() && isBlank(bytes_[ahead])) ++ahead;
            return ahead > start;
        };
        if (!blanks() || ahead >= bytes_.size() || bytes_[ahead] != '0') return;
        ++ahead;
        if (!blanks() || ahead >= bytes_.size() || bytes_[ahead] != 'R') return;
        if (ahead + 1 < bytes_.size() && !isBlank(bytes_[ahead + 1]) && !isDelimiter(bytes_[ahead + 1])) return;
        at_ = ahead + 1;
        value.kind = Value::Kind::Reference;
    }

    void skipString() {
        for (int depth = 1; depth > 0; ++at_) {
            if (at_ >= bytes_.size()) throw NotPlain();
            if (bytes_[at_] == '\\')
                ++at_;
            else if (bytes_[at_] == '(')
                ++depth;
            else if (bytes_[at_] == ')')
                --depth;
        }
    }

    Value container(Value::Kind kind, std::string_view end, int depth) {
        constexpr size_t mostItems = 64;
        Value value;
        value.kind = kind;
        for (skipBlanks(); !take(end); skipBlanks()) {
            if (at_ >= bytes_.size() || value.items.size() >= mostItems) throw NotPlain();
            value.items.push_back(this->value(depth + 1));
            const bool isKey = kind == Value::Kind::Dictionary && value.items.size() % 2 == 1;
            if (isKey && value.items.back().kind != Value::Kind::Name) throw NotPlain();
        }
        if (kind == Value::Kind::Dictionary && value.items.size() % 2 != 0) throw NotPlain();
        return value;
    }

    std::string_view bytes_;
    size_t at_;
};

struct PlainFont {
    std::string_view name;
    std::string_view standard;
    std::string_view encoding;
};

class PlainPage final : public PictureContent {
  public:
    PlainPage(SharedBytes file, const Rect& box, std::string_view content, bool isDeflated,
              std::vector<PlainFont> fonts)
        : file_(std::move(file)), box_(box), content_(content), isDeflated_(isDeflated), fonts_(std::move(fonts)) {}

    PageFacts facts(int page, PageBox box) const override {
        if (box == PageBox::Content) return general().facts(page, box);
        if (page != 1)
            throw PictureError("has only 1 page: there is no page " + std::to_string(page) +
                               ". Give a page that exists");
        PageFacts facts;
        facts.width = box_.width();
        facts.height = box_.height();
        facts.toNatural = Matrix::translation(-box_.left, -box_.top);
        return facts;
    }

    PictureSink::Number write(int page, PageBox box, const PictureIdentity& file, PictureSink& sink) const override {
        if (box == PageBox::Content) return general().write(page, box, file, sink);
        std::string entries = "/Subtype/Form" + boundingBoxEntry(box_);
        entries += "/Resources " + referenceTo(sink.shared(resources(sink)));
        const PictureSink::Number number = sink.allocate();
        if (isDeflated_) {
            sink.writeEncodedStream(number, entries + "/Filter/FlateDecode", content_);
        } else {
            sink.writePlainStream(number, entries, content_);
        }
        return number;
    }

    size_t heldBytes() const override {
        return sizeof *this + file_->capacity() + fonts_.capacity() * sizeof(PlainFont);
    }

  private:
    std::string resources(PictureSink& sink) const {
        if (fonts_.empty()) return "<<>>";
        std::string text = "<</Font<<";
        for (const PlainFont& font : fonts_) {
            appendName(text, font.name);
            text += ' ' + referenceTo(fontObject(font, sink));
        }
        return text + ">>>>";
    }

    /// For what isn't plain: a part of the page that has to be measured.
    const PictureContent& general() const {
        if (!general_) general_ = readPdf(file_);
        return *general_;
    }

    static PictureSink::Number fontObject(const PlainFont& font, PictureSink& sink) {
        AbsentFont absent;
        absent.baseFont = font.standard;
        absent.characters = encodingNamed(font.encoding);
        if (const PictureSink::Number standIn = sink.standIn(absent)) return standIn;
        std::string text = "<</Type/Font/Subtype/Type1";
        text += "/BaseFont";
        appendName(text, font.standard);
        if (!font.encoding.empty()) {
            text += "/Encoding";
            appendName(text, font.encoding);
        }
        return sink.shared(text + ">>");
    }

    SharedBytes file_;
    Rect box_;
    std::string_view content_;  ///< of file_
    bool isDeflated_;
    std::vector<PlainFont> fonts_;  ///< views of file_ and of fixed names
    mutable std::unique_ptr<PictureContent> general_;
};

class PlainReader {
  public:
    explicit PlainReader(const SharedBytes& bytes) : shared_(bytes), bytes_(*bytes) {}

    std::unique_ptr<PictureContent> read() {
        readTable();
        const Value catalog = object(static_cast<size_t>(root_));
        const Value pages = dictionary(catalog.get("Pages"));
        const Value kids = resolved(pages.get("Kids"));
        if (kids.kind != Value::Kind::Array || kids.items.size() != 1) throw NotPlain();
        const Value page = dictionary(&kids.items.front());
        requireOnly(page, {"Type", "Parent", "MediaBox", "CropBox", "Contents", "Resources"});
        if (!page.get("Type") || page.get("Type")->name != "Page") throw NotPlain();
        const Rect box = boxOf(page);
        std::vector<PlainFont> fonts = fontsOf(dictionary(page.get("Resources")));
        bool isDeflated = false;
        const std::string_view content = contentOf(page.get("Contents"), isDeflated);
        return std::make_unique<PlainPage>(shared_, box, content, isDeflated, std::move(fonts));
    }

  private:
    void readTable() {
        constexpr size_t tail = 64, mostObjects = 64, entrySize = 20;
        const size_t start = bytes_.rfind("startxref");
        if (start == std::string_view::npos || start + tail < bytes_.size() || !bytes_.starts_with("%PDF-"))
            throw NotPlain();
        if (bytes_.find("%%EOF", start) == std::string_view::npos) throw NotPlain();
        const size_t table = Parser(bytes_, start + 9).integer();
        if (table >= start) throw NotPlain();
        Parser parser(bytes_, table);
        if (!parser.take("xref")) throw NotPlain();
        const size_t first = parser.integer(), count = parser.integer();
        if (first != 0 || count < 2 || count > mostObjects) throw NotPlain();
        parser.skipBlanks();
        const size_t entries = parser.at();
        if (bytes_.size() - entries < count * entrySize) throw NotPlain();
        for (size_t i = 0; i < count; ++i) {
            const std::string_view entry = bytes_.substr(entries + i * entrySize, entrySize);
            offsets_.push_back(entry[17] == 'n' ? Parser(entry, 0).integer() : 0);
        }
        Parser trailerParser(bytes_, entries + count * entrySize);
        trailerParser.expect("trailer");
        const Value trailer = trailerParser.value();
        requireOnly(trailer, {"Size", "Root", "Info", "ID"});
        const Value* root = trailer.get("Root");
        if (!root || root->kind != Value::Kind::Reference) throw NotPlain();
        root_ = root->number;
    }

    /// The value of an object; `behind` is told where it ends.
    Value object(size_t number, size_t* behind = nullptr) const {
        if (number == 0 || number >= offsets_.size() || offsets_[number] == 0 || offsets_[number] >= bytes_.size())
            throw NotPlain();
        Parser parser(bytes_, offsets_[number]);
        if (parser.integer() != number) throw NotPlain();
        parser.expect("0");
        parser.expect("obj");
        Value value = parser.value();
        parser.skipBlanks();
        if (behind) *behind = parser.at();
        return value;
    }

    Value resolved(const Value* value) const {
        if (!value) throw NotPlain();
        return value->kind == Value::Kind::Reference ? object(static_cast<size_t>(value->number)) : *value;
    }
    Value dictionary(const Value* value) const {
        Value found = resolved(value);
        if (found.kind != Value::Kind::Dictionary) throw NotPlain();
        return found;
    }

    static void requireOnly(const Value& dictionary, std::initializer_list<std::string_view> keys) {
        for (size_t i = 0; i < dictionary.items.size(); i += 2)
            if (std::find(keys.begin(), keys.end(), dictionary.items[i].name) == keys.end()) throw NotPlain();
    }

    Rect rectangle(const Value* value) const {
        const Value array = resolved(value);
        if (array.kind != Value::Kind::Array || array.items.size() != 4) throw NotPlain();
        double n[4] = {};
        for (size_t i = 0; i < 4; ++i) {
            const Value side = resolved(&array.items[i]);
            if (side.kind != Value::Kind::Number) throw NotPlain();
            n[i] = side.number;
        }
        return {std::min(n[0], n[2]), std::min(n[1], n[3]), std::max(n[0], n[2]), std::max(n[1], n[3])};
    }

    Rect boxOf(const Value& page) const {
        const Rect media = rectangle(page.get("MediaBox"));
        // Boxes that differ are rare, and choosing between them is the general reader's.
        if (page.get("CropBox") && !(rectangle(page.get("CropBox")) == media)) throw NotPlain();
        constexpr double smallest = 1e-3;
        if (!(media.width() > smallest && media.height() > smallest && media.width() < limits::pageSide &&
              media.height() < limits::pageSide))
            throw NotPlain();
        return media;
    }

    std::vector<PlainFont> fontsOf(const Value& resources) const {
        requireOnly(resources, {"Font", "ProcSet"});
        std::vector<PlainFont> fonts;
        if (!resources.get("Font")) return fonts;
        const Value named = dictionary(resources.get("Font"));
        for (size_t i = 0; i < named.items.size(); i += 2) {
            const Value font = dictionary(&named.items[i + 1]);
            requireOnly(font, {"Type", "Subtype", "Name", "BaseFont", "Encoding"});
            const Value* kind = font.get("Subtype");
            const Value* base = font.get("BaseFont");
            const Value* encoding = font.get("Encoding");
            if (!kind || kind->name != "Type1" || !base) throw NotPlain();
            if (encoding && encoding->kind != Value::Kind::Name) throw NotPlain();
            const std::string_view standard = standardTextFont(base->name);
            if (standard.empty()) throw NotPlain();
            fonts.push_back({named.items[i].name, standard, encoding ? encoding->name : std::string_view()});
        }
        return fonts;
    }

    std::string_view contentOf(const Value* contents, bool& isDeflated) const {
        if (!contents || contents->kind != Value::Kind::Reference) throw NotPlain();
        size_t at = 0;
        const Value entries = object(static_cast<size_t>(contents->number), &at);
        requireOnly(entries, {"Length", "Filter"});
        const Value* length = entries.get("Length");
        const Value* filter = entries.get("Filter");
        if (!length || length->kind != Value::Kind::Number || !(length->number >= 0)) throw NotPlain();
        isDeflated = filter != nullptr;
        if (filter && filter->name != "FlateDecode") throw NotPlain();
        Parser parser(bytes_, at);
        if (!parser.take("stream") || !(parser.take("\r\n") || parser.take("\n"))) throw NotPlain();
        const size_t size = static_cast<size_t>(length->number);
        if (size > bytes_.size() - parser.at()) throw NotPlain();
        const std::string_view content = bytes_.substr(parser.at(), size);
        Parser(bytes_, parser.at() + size).expect("endstream");
        constexpr size_t mostContent = 1u << 20;
        if (isDeflated && inflatedUpTo(content, mostContent).empty()) throw NotPlain();
        return content;
    }

    SharedBytes shared_;
    std::string_view bytes_;
    std::vector<size_t> offsets_;
    double root_ = 0;
};

}  // namespace

std::unique_ptr<PictureContent> readPlainPdf(const SharedBytes& bytes) {
    constexpr size_t largest = 64u << 10;
    if (bytes->size() > largest) return nullptr;
    try {
        return PlainReader(bytes).read();
    } catch (const NotPlain&) {
        return nullptr;
    }
}

}  // namespace desk
