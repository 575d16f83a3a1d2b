#pragma once
// The platform's PDF reader: a parsed file as objects that are only looked at. References are followed before anybody
// sees them, and each indirect object is one ReaderObject, so that its address is its identity.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "pdf/filter_chain.h"
#include "support/values.h"

namespace vornaset {

class ReaderDocument;
class ReaderObject;

/// Kinds of objects, numbered as the toolkit's operations take them.
enum class ReaderType : int32_t {
    null = 1,
    boolean = 2,
    integer = 3,
    real = 4,
    name = 5,
    string = 6,
    array = 7,
    dictionary = 8,
    stream = 9,
};

/// A key of a dictionary: its bytes without the slash, and its text (UTF-8, else as stringWithData tells).
struct ReaderKey {
    std::string bytes;
    String text;
};

struct ReaderEntry {
    const ReaderKey* key;
    const ReaderObject* value;
};

class ReaderObject {
  public:
    using Entries = std::vector<ReaderEntry>;
    using Items = std::vector<const ReaderObject*>;

    explicit ReaderObject(ReaderDocument& document) : document_(document) {}
    ReaderType type() const noexcept { return type_; }
    bool isContainer() const noexcept { return type_ >= ReaderType::array; }
    /// Counts from 0 in the order in which the objects of a document were first met.
    uint32_t serial() const noexcept { return serial_; }
    ReaderDocument& document() const noexcept { return document_; }

    /// Each gives zero or empty for objects of another type.
    bool boolean() const noexcept;
    int64_t integer() const noexcept;
    double real() const noexcept;
    /// A name's bytes without slash and without "#" escapes.
    std::string_view name() const noexcept;
    /// A string's bytes, decrypted.
    std::string_view string() const noexcept;
    /// Of an array.
    const Items& items() const;
    /// Of a dictionary or of a stream's dictionary, sorted by the keys' bytes.
    const Entries& entries() const;
    /// Null when the key isn't there.
    const ReaderObject* entry(std::string_view key) const;

  private:
    friend class ReaderDocument;
    using Held = std::variant<std::monostate, bool, int64_t, double, std::string, Items, Entries>;

    ReaderDocument& document_;
    mutable Held held_;  ///< a container's contents are read when they are first asked for
    uint32_t serial_ = 0;
    uint32_t source_ = 0;  ///< place in the document's table of containers
    ReaderType type_ = ReaderType::null;
};

/// The bytes of a stream as the file holds them, decrypted, and the filters that stand before them.
struct RawStream {
    std::string bytes;
    std::vector<FilterStep> filters;
    bool isReadable = false;  ///< false when the file doesn't give the bytes
};

/// An open file. It is read into memory once. Objects live as long as their document. Containers are read when they are
/// first looked into; that throws Exception when the file has more than kMaximumReaderObjects.
class ReaderDocument {
  public:
    /// Null when the file can't be read, isn't PDF, has no catalog, or asks for a password. A damaged file is repaired
    /// as far as it can be.
    static std::unique_ptr<ReaderDocument> open(const String& path);
    /// The same for a file in memory.
    static std::unique_ptr<ReaderDocument> openBytes(const Data& bytes);
    ReaderDocument(const ReaderDocument&) = delete;
    ReaderDocument& operator=(const ReaderDocument&) = delete;
    ~ReaderDocument();

    const ReaderObject& catalog() const;
    /// Null when the file has none.
    const ReaderObject* info() const;
    /// Leaves of the page tree; 0 for a tree that can't be walked.
    int64_t numberOfPages();
    /// Number from 1. Null when there is no such page.
    const ReaderObject* page(int64_t number);
    /// Reads all that the catalog leads to, and gives up what was needed for that, most of the memory: from here on the
    /// containers that the catalog doesn't lead to are empty, and their streams not readable. Throws as above.
    void readAll();
    /// How many objects have been met so far.
    size_t objectCount() const noexcept;
    /// For a stream; empty and not readable for anything else. Several threads may ask at once, while nobody else looks
    /// at the document.
    RawStream rawStream(const ReaderObject& stream);

  private:
    friend class ReaderObject;
    struct Parsed;

    explicit ReaderDocument(std::unique_ptr<Parsed> parsed);
    void read(const ReaderObject& container);
    void findPages();

    std::unique_ptr<Parsed> parsed_;
    std::vector<const ReaderObject*> pages_;
    bool hasPages_ = false;
};

/// The filters that a stream's dictionary names, with their parameters. An entry that is no name becomes a step that
/// nobody undoes.
std::vector<FilterStep> filtersOf(const ReaderObject& stream);

}  // namespace vornaset
