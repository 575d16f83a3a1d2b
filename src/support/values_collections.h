#pragma once
// Array and Dictionary: shared by reference, mutable or not, possibly a view on something that reads itself on demand;
// and Value over all kinds of plain values.

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

#include "support/values_plain.h"
#include "support/values_string.h"

namespace vornaset {

class ArrayBody;
class DictionaryBody;
class Value;

enum class Mutability { fixed, changeable };

/// Something that gives the entries of an array when they are asked for. It may be asked often and in any order, and
/// must give equal values for the same index.
class ArraySource {
  public:
    virtual ~ArraySource();
    virtual size_t count() const = 0;
    /// index < count(). Never null.
    virtual Value objectAt(size_t index) const = 0;
};

/// Something that gives the entries of a dictionary when they are asked for: a row of a table, whose keys belong to the
/// table.
class DictionarySource {
  public:
    virtual ~DictionarySource();
    virtual size_t count() const = 0;
    /// index < count(), in the dictionary's order. Never null.
    virtual String keyAt(size_t index) const = 0;
    virtual Value valueAt(size_t index) const = 0;
    /// Null when the key isn't there.
    virtual Value find(const String& key) const = 0;
};

/// Distinct keys in a fixed order with a fast way from a key to its place: what the rows of one table share, and what
/// a dictionary keeps its keys in.
class KeyTable {
  public:
    static constexpr size_t npos = static_cast<size_t>(-1);

    KeyTable() = default;
    /// Of equal keys the first alone is taken. Throws InvalidArgumentException for a null key.
    explicit KeyTable(const std::vector<String>& keys);

    size_t count() const noexcept { return keys_.size(); }
    const String& keyAt(size_t index) const noexcept { return keys_[index]; }
    /// npos when the key isn't there or is null.
    size_t indexOf(const String& key) const noexcept;

    /// Appends a key that isn't there yet.
    void append(const String& key);
    /// Takes time in proportion to the count.
    void removeAt(size_t index);
    void removeAll() noexcept;

  private:
    void rebuildSlots(size_t slotCount);
    void enter(size_t index) noexcept;

    std::vector<String> keys_;
    std::vector<uint32_t> slots_;  ///< empty while a plain search is as fast; else place + 1, open addressing
};

/// An array of values. Copying the handle shares the entries. A null array answers 0 and null, and edits of it do
/// nothing. Indices count from 0. Edits of an immutable array throw UnrecognizedOperation.
class Array {
  public:
    Array() noexcept = default;  ///< null
    Array(std::nullptr_t) noexcept {}

    /// These throw InvalidArgumentException for a null entry.
    static Array make();
    static Array make(std::vector<Value> entries);
    static Array make(std::initializer_list<Value> entries);
    static Array makeMutable();
    static Array makeMutable(std::vector<Value> entries);
    static Array makeMutable(std::initializer_list<Value> entries);
    /// An array whose entries the source gives. The first edit of a changeable one reads them all.
    static Array view(std::shared_ptr<const ArraySource> source, Mutability mutability = Mutability::changeable);

    bool isNull() const noexcept { return body_ == nullptr; }
    explicit operator bool() const noexcept { return body_ != nullptr; }
    bool isMutable() const noexcept;
    /// True as long as the entries come from a source.
    bool isView() const noexcept;
    size_t count() const;
    bool isEmpty() const { return count() == 0; }

    /// Throws RangeException ("index 7 beyond the end of an array of 6"); null for a null array. A view may give a new
    /// object at each call.
    Value objectAt(size_t index) const;
    Value operator[](size_t index) const;

    /// These throw InvalidArgumentException for a null value and RangeException for an index outside.
    void add(Value value);
    void insert(size_t index, Value value);
    void replace(size_t index, Value value);
    void exchange(size_t first, size_t second);
    void removeAt(size_t index);
    void removeAll();

    /// A new mutable array with the same entries.
    Array mutableCopy() const;

    bool isSameObject(const Array& other) const noexcept { return body_ == other.body_; }
    /// Equal entries in the same order. Null equals null alone.
    bool operator==(const Array& other) const;

    class Iterator;
    Iterator begin() const;
    Iterator end() const;

  private:
    explicit Array(std::shared_ptr<ArrayBody> body) noexcept : body_(std::move(body)) {}
    std::vector<Value>* entriesForEdit(const char* operation);

    std::shared_ptr<ArrayBody> body_;
};

/// Keys and values in the order of their first insertion. Copying the handle shares them. A null dictionary answers 0
/// and null, and edits of it do nothing. Edits of an immutable dictionary throw UnrecognizedOperation.
class Dictionary {
  public:
    using Entry = std::pair<String, Value>;

    Dictionary() noexcept = default;  ///< null
    Dictionary(std::nullptr_t) noexcept {}

    /// These throw InvalidArgumentException for a null key or value. A later entry replaces an earlier one of its key.
    static Dictionary make();
    static Dictionary make(std::initializer_list<Entry> entries);
    static Dictionary makeMutable();
    static Dictionary makeMutable(std::initializer_list<Entry> entries);
    /// A dictionary whose entries the source gives. The first edit of a changeable one reads them all.
    static Dictionary view(std::shared_ptr<const DictionarySource> source, Mutability mutability = Mutability::fixed);

    bool isNull() const noexcept { return body_ == nullptr; }
    explicit operator bool() const noexcept { return body_ != nullptr; }
    bool isMutable() const noexcept;
    /// True as long as the entries come from a source.
    bool isView() const noexcept;
    size_t count() const;
    bool isEmpty() const { return count() == 0; }

    /// Null when the key isn't there.
    Value valueForKey(const String& key) const;
    bool contains(const String& key) const;
    /// In insertion order. Throw RangeException for an index outside; null for a null dictionary.
    String keyAt(size_t index) const;
    Value valueAt(size_t index) const;
    /// A new immutable array; null for a null dictionary.
    Array keys() const;

    /// A key that is there keeps its place. Throws InvalidArgumentException for a null key or value.
    void setValue(const String& key, Value value);
    /// A key that isn't there is no error.
    void removeKey(const String& key);
    void removeAll();

    /// A new mutable dictionary with the same entries.
    Dictionary mutableCopy() const;

    bool isSameObject(const Dictionary& other) const noexcept { return body_ == other.body_; }
    /// Equal values under equal keys, in whatever order. Null equals null alone.
    bool operator==(const Dictionary& other) const;

  private:
    explicit Dictionary(std::shared_ptr<DictionaryBody> body) noexcept : body_(std::move(body)) {}
    DictionaryBody* bodyForEdit(const char* operation);

    std::shared_ptr<DictionaryBody> body_;
};

/// Anything else that travels as a value.
class Object {
  public:
    virtual ~Object();
    /// The text for %@.
    virtual String description() const;
    /// The value under a key. Throws UnrecognizedOperation for a key that the object's kind doesn't have.
    virtual Value valueForKey(const String& key) const;
};

/// Null, or any of the plain values, or an object. A null string, array, dictionary, data or object makes a null value.
class Value {
  public:
    Value() noexcept = default;
    Value(std::nullptr_t) noexcept {}
    Value(String text);
    Value(const char* utf8) : Value(String(utf8)) {}
    Value(const char16_t* units) : Value(String(units)) {}
    Value(Number number) : held_(number) {}
    template <class T>
    requires std::integral<T> || std::floating_point<T> Value(T number) : held_(Number(number)) {}
    Value(Data data);
    Value(Date date) : held_(date) {}
    Value(Array array);
    Value(Dictionary dictionary);
    Value(std::shared_ptr<Object> object);
    template <std::derived_from<Object> T>
    Value(std::shared_ptr<T> object) : Value(std::shared_ptr<Object>(std::move(object))) {}

    Value(const Value& other);
    Value(Value&& other) noexcept;
    Value& operator=(const Value& other);
    Value& operator=(Value&& other) noexcept;
    ~Value();

    /// The object that stands for "nothing" inside a container, where no null may stand (JSON's null).
    static const Value& nothing();

    bool isNull() const noexcept { return std::holds_alternative<std::monostate>(held_); }
    bool isString() const noexcept { return std::holds_alternative<String>(held_); }
    bool isNumber() const noexcept { return std::holds_alternative<Number>(held_); }
    bool isData() const noexcept { return std::holds_alternative<Data>(held_); }
    bool isDate() const noexcept { return std::holds_alternative<Date>(held_); }
    bool isArray() const noexcept { return std::holds_alternative<Array>(held_); }
    bool isDictionary() const noexcept { return std::holds_alternative<Dictionary>(held_); }
    bool isObject() const noexcept { return std::holds_alternative<std::shared_ptr<Object>>(held_); }

    /// The held value when it is of that kind, else null (a number: 0; a date: the start of 1970).
    const String& string() const noexcept;
    Number number() const noexcept;
    const Data& data() const noexcept;
    Date date() const noexcept;
    const Array& array() const noexcept;
    const Dictionary& dictionary() const noexcept;
    const std::shared_ptr<Object>& object() const noexcept;

    /// The integer that a number or a text gives; nothing for other kinds.
    std::optional<int64_t> integerReading() const noexcept;
    /// As integerReading, in 32 bits: a number's low bits, a text's number cut to the range.
    std::optional<int32_t> intReading() const noexcept;

    /// Key-value coding: a dictionary's value (null when it isn't there), an object's own answer, for an array the
    /// array of its entries' answers. Null for null. Throws UnrecognizedOperation for kinds that have no keys, and
    /// InvalidArgumentException for an array with an entry that has no value.
    Value valueForKey(const String& key) const;

    /// The text for %@: a string itself, a number's text, an array as "(\n    a,\n    b\n)", a dictionary as
    /// "{\n    key = value;\n}", data as "<00ff>"; "(null)" for null.
    String description() const;

    /// Equal contents of the same kind.
    bool operator==(const Value& other) const;
    /// The same object; for numbers and dates: equal.
    bool isSameObject(const Value& other) const noexcept;

  private:
    std::variant<std::monostate, String, Number, Data, Date, Array, Dictionary, std::shared_ptr<Object>> held_;
};

/// Gives entries by value, since a view makes them. An edit during the walk is seen.
class Array::Iterator {
  public:
    Iterator(const Array* array, size_t index) : array_(array), index_(index) {}
    Value operator*() const { return array_->objectAt(index_); }
    Iterator& operator++() {
        ++index_;
        return *this;
    }
    bool operator==(const Iterator& other) const { return index_ == other.index_; }

  private:
    const Array* array_;
    size_t index_;
};

inline Array::Iterator Array::begin() const {
    return Iterator(this, 0);
}
inline Array::Iterator Array::end() const {
    return Iterator(this, count());
}
inline Value Array::operator[](size_t index) const {
    return objectAt(index);
}

}  // namespace vornaset
