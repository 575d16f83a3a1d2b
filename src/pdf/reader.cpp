#include "pdf/reader.h"

#define POINTERHOLDER_TRANSITION 4  // no use of the library's old pointer class
#ifdef __clang__
// Clang 14 can't read this header of the library as C++20, a list of an incomplete type, and nothing here needs it.
#define JSON_HH
class JSON;
#endif

#include <algorithm>
#include <charconv>
#include <deque>
#include <filesystem>
#include <functional>
#include <limits>
#include <map>
#include <mutex>
#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFStreamFilter.hh>
#include <stdexcept>
#include <unordered_map>

#include "pdf/lost_trailer.h"
#include "support/exception.h"
#include "support/text_decoding.h"
#include "support/text_files.h"

namespace vornaset {
namespace {

/// Bytes that may still come out of a file's own filters while it is parsed; null outside of that.
thread_local size_t* expansionLeft = nullptr;
thread_local int nestedFilters = 0;

/// Lets the calls of one scope draw on a file's allowance.
class Expansion {
  public:
    explicit Expansion(size_t& left) : former_(expansionLeft) { expansionLeft = &left; }
    Expansion(const Expansion&) = delete;
    Expansion& operator=(const Expansion&) = delete;
    ~Expansion() { expansionLeft = former_; }

  private:
    size_t* former_;
};

using Undo = std::function<UndoneBytes(const std::string& bytes, size_t limit)>;

/// Collects a filter's input and gives its output at once, within the limits.
class BoundedPipeline : public Pipeline {
  public:
    BoundedPipeline(Pipeline* target, Undo undo) : Pipeline("bounded filter", target), undo_(std::move(undo)) {
        if (++nestedFilters > pdf_limits::kMaximumNestedFilters) {
            --nestedFilters;
            throw std::runtime_error("a stream has too many filters");
        }
    }
    BoundedPipeline(const BoundedPipeline&) = delete;
    BoundedPipeline& operator=(const BoundedPipeline&) = delete;
    ~BoundedPipeline() override { --nestedFilters; }

    void write(const unsigned char* data, size_t length) override {
        input_.append(reinterpret_cast<const char*>(data), length);
    }

    void finish() override {
        const std::string input = std::exchange(input_, {});
        const size_t limit = expansionLeft != nullptr ? *expansionLeft : pdf_limits::kMaximumStreamBytes;
        const UndoneBytes output = undo_(input, limit);
        if (output.outcome == UndoOutcome::tooLarge) throw std::runtime_error("a stream is too large");
        if (expansionLeft != nullptr) *expansionLeft -= std::min(*expansionLeft, output.bytes.size());
        getNext()->write(output.bytes.data(), output.bytes.size());
        getNext()->finish();
    }

  private:
    Undo undo_;
    std::string input_;
};

int64_t integerIn(QPDFObjectHandle& dictionary, const char* key, int64_t otherwise) {
    QPDFObjectHandle value = dictionary.isDictionary() ? dictionary.getKey(key) : QPDFObjectHandle::newNull();
    return value.isInteger() ? value.getIntValue() : otherwise;
}

/// Filters of ours in the place of the reader library's: those have no limit on what a few bytes may grow to.
class BoundedFilter : public QPDFStreamFilter {
  public:
    enum class Kind { deflate, lzw, runLength, hex, base85 };
    explicit BoundedFilter(Kind kind) : kind_(kind) {}

    bool setDecodeParms(QPDFObjectHandle parameters) override {
        if (!parameters.isNull() && !parameters.isDictionary()) return false;
        if (kind_ != Kind::deflate && kind_ != Kind::lzw) return true;
        predictor_.predictor = integerIn(parameters, "/Predictor", 1);
        predictor_.colors = integerIn(parameters, "/Colors", 1);
        predictor_.bitsPerComponent = integerIn(parameters, "/BitsPerComponent", 8);
        predictor_.columns = integerIn(parameters, "/Columns", 1);
        change_ = integerIn(parameters, "/EarlyChange", 1) == 0 ? LZWChange::late : LZWChange::early;
        const int64_t predictor = predictor_.predictor;
        return predictor == 1 || predictor == 2 || (predictor >= 10 && predictor <= 15);
    }

    Pipeline* getDecodePipeline(Pipeline* next) override {
        const auto undo = [kind = kind_, predictor = predictor_, change = change_](const std::string& bytes,
                                                                                   size_t limit) -> UndoneBytes {
            UndoneBytes result;
            switch (kind) {
                case Kind::deflate:
                    result = inflated(bytes, limit);
                    break;
                case Kind::lzw:
                    result = undoLZW(bytes, change, limit);
                    break;
                case Kind::runLength:
                    return undoRunLength(bytes, limit);
                case Kind::hex:
                    return undoASCIIHex(bytes, limit);
                case Kind::base85:
                    return undoASCII85(bytes, limit);
            }
            if (result.outcome == UndoOutcome::tooLarge) return result;
            return undoPredictor(std::move(result.bytes), predictor);
        };
        pipeline_ = std::make_unique<BoundedPipeline>(next, undo);
        return pipeline_.get();
    }

    bool isSpecializedCompression() override { return kind_ == Kind::runLength; }

  private:
    Kind kind_;
    PredictorParameters predictor_;
    LZWChange change_ = LZWChange::early;
    std::unique_ptr<BoundedPipeline> pipeline_;
};

/// For the whole process, before any thread can read a file.
bool registerFilters() {
    const auto put = [](const char* name, BoundedFilter::Kind kind) {
        QPDF::registerStreamFilter(name, [kind] { return std::make_shared<BoundedFilter>(kind); });
    };
    put("/FlateDecode", BoundedFilter::Kind::deflate);
    put("/LZWDecode", BoundedFilter::Kind::lzw);
    put("/RunLengthDecode", BoundedFilter::Kind::runLength);
    put("/ASCIIHexDecode", BoundedFilter::Kind::hex);
    put("/ASCII85Decode", BoundedFilter::Kind::base85);
    return true;
}
const bool filtersAreRegistered = registerFilters();

ReaderType typeOf(qpdf_object_type_e code) {
    switch (code) {
        case ot_boolean:
            return ReaderType::boolean;
        case ot_integer:
            return ReaderType::integer;
        case ot_real:
            return ReaderType::real;
        case ot_name:
            return ReaderType::name;
        case ot_string:
            return ReaderType::string;
        case ot_array:
            return ReaderType::array;
        case ot_dictionary:
            return ReaderType::dictionary;
        case ot_stream:
            return ReaderType::stream;
        default:
            return ReaderType::null;
    }
}

/// The file's digits, whatever the locale. 0 for what is no number.
double realOf(std::string_view digits) {
    if (digits.starts_with('+')) digits.remove_prefix(1);
    double value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed);
    return value;
}

std::string withoutSlash(std::string name) {
    if (name.starts_with('/')) name.erase(0, 1);
    return name;
}

/// Where a stream's bytes stand in the file.
struct StreamPlace {
    size_t offset = 0;
    size_t length = 0;
    bool isKnown = false;
};

String textOfKey(const std::string& bytes) {
    String text = stringWithBytes(bytes.data(), bytes.size(), kUTF8Encoding);
    if (text.isNull()) text = stringWithData(Data(bytes));
    return text.isNull() ? String(u"") : text;
}

}  // namespace

struct ReaderDocument::Parsed {
    Data bytes;
    std::unique_ptr<QPDF> file = std::make_unique<QPDF>();
    size_t expansion = 0;
    std::deque<ReaderObject> objects;
    std::vector<QPDFObjectHandle> containers;  ///< empty once all is read
    std::vector<StreamPlace> places;           ///< of the containers that are streams, from readAll on
    std::unordered_map<uint64_t, const ReaderObject*> indirect;  ///< by number and generation
    std::map<std::string, ReaderKey, std::less<>> keys;
    const ReaderObject* catalog = nullptr;
    const ReaderObject* info = nullptr;
    std::mutex streamAccess;

    /// Throws what the reader library throws when the bytes are no PDF.
    void parse(const Data& data) {
        bytes = data;
        expansion = pdf_limits::kExpansionBase + pdf_limits::kExpansion * data.length();
        const Expansion allowance(expansion);
        file->setSuppressWarnings(true);
        file->processMemoryFile("file", data.view().data(), data.length());
        file->getRoot();
    }

    const ReaderKey& keyFor(const std::string& name) {
        const std::string_view bare = std::string_view(name).substr(name.starts_with('/') ? 1 : 0);
        const auto known = keys.find(bare);
        if (known != keys.end()) return known->second;
        std::string key(bare);
        ReaderKey made{key, textOfKey(key)};
        return keys.emplace(std::move(key), std::move(made)).first->second;
    }

    const ReaderObject& objectFor(ReaderDocument& document, QPDFObjectHandle source) {
        uint64_t identity = 0;
        if (source.isIndirect()) {
            const QPDFObjGen number = source.getObjGen();
            identity = static_cast<uint64_t>(number.getObj()) << 32U | static_cast<uint32_t>(number.getGen());
            const auto known = indirect.find(identity);
            if (known != indirect.end()) return *known->second;
        }
        if (objects.size() >= pdf_limits::kMaximumReaderObjects)
            throw exceptionWithReason("The PDF file has too many objects.");
        ReaderObject& made = objects.emplace_back(document);
        made.serial_ = static_cast<uint32_t>(objects.size() - 1);
        if (identity != 0) indirect.emplace(identity, &made);
        fill(made, source);
        return made;
    }

    StreamPlace placeOf(const ReaderObject& stream) {
        const qpdf_offset_t offset = containers[stream.source_].getParsedOffset();
        const ReaderObject* length = stream.entry("Length");
        if (offset <= 0 || length == nullptr || length->type() != ReaderType::integer || length->integer() < 0)
            return {};
        const std::string_view whole = bytes.view();
        const auto start = static_cast<uint64_t>(offset);
        const auto count = static_cast<uint64_t>(length->integer());
        if (start > whole.size() || count > whole.size() - start) return {};
        std::string_view rest = whole.substr(start + count);
        if (rest.starts_with('\r')) rest.remove_prefix(1);
        if (rest.starts_with('\n')) rest.remove_prefix(1);
        if (!rest.starts_with("endstream")) return {};
        return {start, count, true};
    }

    void fill(ReaderObject& object, QPDFObjectHandle& source) {
        object.type_ = typeOf(source.getTypeCode());
        switch (object.type_) {
            case ReaderType::boolean:
                object.held_ = source.getBoolValue();
                break;
            case ReaderType::integer:
                object.held_ = static_cast<int64_t>(source.getIntValue());
                break;
            case ReaderType::real:
                object.held_ = realOf(source.getRealValue());
                break;
            case ReaderType::name:
                object.held_ = withoutSlash(source.getName());
                break;
            case ReaderType::string:
                object.held_ = source.getStringValue();
                break;
            case ReaderType::null:
                break;
            default:
                object.source_ = static_cast<uint32_t>(containers.size());
                containers.push_back(source);
        }
    }
};

ReaderDocument::ReaderDocument(std::unique_ptr<Parsed> parsed) : parsed_(std::move(parsed)) {
    const Expansion allowance(parsed_->expansion);
    parsed_->catalog = &parsed_->objectFor(*this, parsed_->file->getRoot());
    QPDFObjectHandle info = parsed_->file->getTrailer().getKey("/Info");
    if (info.isDictionary()) parsed_->info = &parsed_->objectFor(*this, info);
}

ReaderDocument::~ReaderDocument() = default;

std::unique_ptr<ReaderDocument> ReaderDocument::open(const String& path) {
    std::error_code failure;
    const uintmax_t size = std::filesystem::file_size(path.utf8(), failure);
    if (failure || size > pdf_limits::kMaximumFileBytes) return nullptr;
    return openBytes(dataWithFile(path));
}

std::unique_ptr<ReaderDocument> ReaderDocument::openBytes(const Data& bytes) {
    if (bytes.length() == 0 || bytes.length() > pdf_limits::kMaximumFileBytes) return nullptr;
    try {
        auto parsed = std::make_unique<Parsed>();
        parsed->parse(bytes);
        return std::unique_ptr<ReaderDocument>(new ReaderDocument(std::move(parsed)));
    } catch (const QPDFExc& problem) {
        if (problem.getErrorCode() == qpdf_e_password) return nullptr;
    } catch (const std::exception&) {
        return nullptr;
    }
    const std::string trailer = trailerForLost(bytes.view());
    if (trailer.empty()) return nullptr;
    try {
        auto parsed = std::make_unique<Parsed>();
        parsed->parse(Data(std::string(bytes.view()) + trailer));
        return std::unique_ptr<ReaderDocument>(new ReaderDocument(std::move(parsed)));
    } catch (const std::exception&) {
        return nullptr;
    }
}

const ReaderObject& ReaderDocument::catalog() const {
    return *parsed_->catalog;
}

const ReaderObject* ReaderDocument::info() const {
    return parsed_->info;
}

size_t ReaderDocument::objectCount() const noexcept {
    return parsed_->objects.size();
}

void ReaderDocument::read(const ReaderObject& container) {
    const Expansion allowance(parsed_->expansion);
    if (parsed_->file == nullptr) {
        if (container.type_ == ReaderType::array) {
            container.held_ = ReaderObject::Items();
        } else {
            container.held_ = ReaderObject::Entries();
        }
        return;
    }
    QPDFObjectHandle source = parsed_->containers[container.source_];
    if (container.type_ == ReaderType::array) {
        ReaderObject::Items items;
        const int count = source.getArrayNItems();
        items.reserve(static_cast<size_t>(std::max(count, 0)));
        for (int at = 0; at < count; ++at) items.push_back(&parsed_->objectFor(*this, source.getArrayItem(at)));
        container.held_ = std::move(items);
        return;
    }
    if (container.type_ == ReaderType::stream) source = source.getDict();
    ReaderObject::Entries entries;
    for (const auto& [key, value] : source.getDictAsMap())
        entries.push_back({&parsed_->keyFor(key), &parsed_->objectFor(*this, value)});
    container.held_ = std::move(entries);
}

// Nothing is decided here by what the parser remembers: where its own place and length of a stream don't lead to the
// word that ends a stream, it keeps the file.
void ReaderDocument::readAll() {
    if (parsed_->file == nullptr) return;
    std::vector<char> isMet;
    std::vector<const ReaderObject*> waiting{parsed_->catalog};
    std::vector<const ReaderObject*> streams;
    const auto meet = [&](const ReaderObject& object) {
        if (!object.isContainer()) return;
        if (isMet.size() <= object.serial()) isMet.resize(parsed_->objects.size());
        if (std::exchange(isMet[object.serial()], char{1}) == 0) waiting.push_back(&object);
    };
    while (!waiting.empty()) {
        const ReaderObject& container = *waiting.back();
        waiting.pop_back();
        if (container.type() == ReaderType::stream) streams.push_back(&container);
        for (const ReaderObject* item : container.items()) meet(*item);
        for (const ReaderEntry& entry : container.entries()) meet(*entry.value);
    }
    if (parsed_->file->isEncrypted()) return;
    std::vector<StreamPlace> places(parsed_->containers.size());
    for (const ReaderObject* stream : streams) {
        const StreamPlace place = parsed_->placeOf(*stream);
        if (!place.isKnown) return;
        places[stream->source_] = place;
    }
    parsed_->places = std::move(places);
    parsed_->containers = {};
    parsed_->file.reset();
}

RawStream ReaderDocument::rawStream(const ReaderObject& stream) {
    RawStream raw;
    if (stream.type() != ReaderType::stream) return raw;
    if (parsed_->file == nullptr) {
        const StreamPlace place = parsed_->places[stream.source_];
        if (!place.isKnown) return raw;
        raw.filters = filtersOf(stream);
        raw.bytes = parsed_->bytes.view().substr(place.offset, place.length);
        raw.isReadable = true;
        return raw;
    }
    const std::lock_guard lock(parsed_->streamAccess);
    const Expansion allowance(parsed_->expansion);
    raw.filters = filtersOf(stream);
    try {
        const std::shared_ptr<Buffer> buffer = parsed_->containers[stream.source_].getRawStreamData();
        raw.bytes.assign(reinterpret_cast<const char*>(buffer->getBuffer()), buffer->getSize());
        raw.isReadable = true;
    } catch (const std::exception&) {
        raw.isReadable = false;
    }
    return raw;
}

}  // namespace vornaset
