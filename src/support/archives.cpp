#include "support/archives.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "support/property_list.h"

namespace vornaset {

namespace {

// The archive is a dictionary: kArchiver, kVersion, and under kObjects an array of entries, the first being the whole.
// An entry is a property list's own text, integer, truth value or data, or a dictionary with its class under kClass.
// It refers to others by their places in the array, always to later ones and to each at most once, so that no archive
// holds itself or grows while it is read.
constexpr const char* kArchiver = "$archiver";
constexpr const char* kVersion = "$version";
constexpr const char* kObjects = "$objects";
constexpr const char* kClass = "class";
constexpr const char* kMutable = "mutable";
constexpr const char* kMembers = "members";
constexpr const char* kKeys = "keys";
constexpr const char* kText = "text";
constexpr const char* kProduct = "Vornaset";
constexpr int kThisVersion = 1;
constexpr size_t kDeepest = 512;

/// All but what XML keeps as it is: control characters, lone surrogates, and white space at the ends.
bool isPlainText(const String& text) {
    if (!text.exactUTF8() || text.isEmpty()) return false;
    const auto isOdd = [](char16_t unit) { return unit < 0x20 || unit >= 0xFFFE; };
    const std::u16string_view units = text.view();
    return std::none_of(units.begin(), units.end(), isOdd) && units.front() != u' ' && units.back() != u' ';
}

std::string exactText(double number) {
    char text[40];
    std::snprintf(text, sizeof text, "%a", number);
    return text;
}

class Archiver {
  public:
    Data archive(const Value& value) {
        append(value, 0);
        return propertyListData(
            Dictionary::make({{kArchiver, kProduct}, {kVersion, kThisVersion}, {kObjects, entries_}}));
    }

  private:
    /// The place that the value got.
    Value append(const Value& value, size_t depth) {
        if (depth > kDeepest) throw InvalidArgumentException("a value nests too deep, or holds itself");
        const size_t place = entries_.count();
        entries_.add(0);  // holds the place while the members take theirs
        entries_.replace(place, entryOf(value, depth));
        return place;
    }

    Value entryOf(const Value& value, size_t depth) {
        if (value.isData()) return value;
        if (value.isString()) return entryOfText(value.string());
        if (value.isNumber()) return entryOfNumber(value.number());
        if (value.isArray()) return entryOfArray(value.array(), depth);
        if (value.isDictionary()) return entryOfDictionary(value.dictionary(), depth);
        if (value.isDate()) return ofClass("date", kText, exactText(value.date().seconds).c_str());
        if (value.isNull()) return ofClass("null", kText, "");
        if (value.isSameObject(Value::nothing())) return ofClass("nothing", kText, "");
        return entryOfObject(value, depth);
    }

    static Dictionary ofClass(const String& name, const String& key, const Value& value) {
        return Dictionary::makeMutable({{kClass, name}, {key, value}});
    }

    static Value entryOfText(const String& text) {
        if (isPlainText(text)) return text;
        return ofClass("text", kText, Data::withBytes(text.view().data(), text.length() * sizeof(char16_t)));
    }

    static Value entryOfNumber(const Number& number) {
        if (!number.isFloatingPoint()) return number;
        const char* name = number.kind() == Number::Kind::single ? "single" : "real";
        return ofClass(name, kText, exactText(number.doubleValue()).c_str());
    }

    Value entryOfArray(const Array& array, size_t depth) {
        Array members = Array::makeMutable();
        for (const Value& member : array) members.add(append(member, depth + 1));
        Dictionary entry = ofClass("array", kMembers, members);
        entry.setValue(kMutable, array.isMutable());
        return entry;
    }

    Value entryOfDictionary(const Dictionary& dictionary, size_t depth) {
        Array keys = Array::makeMutable();
        Array members = Array::makeMutable();
        for (size_t index = 0; index < dictionary.count(); ++index) {
            keys.add(append(dictionary.keyAt(index), depth + 1));
            members.add(append(dictionary.valueAt(index), depth + 1));
        }
        Dictionary entry = ofClass("dictionary", kMembers, members);
        entry.setValue(kKeys, keys);
        entry.setValue(kMutable, dictionary.isMutable());
        return entry;
    }

    Value entryOfObject(const Value& value, size_t depth) {
        const auto object = std::dynamic_pointer_cast<ArchivableObject>(value.object());
        if (!object) throw InvalidArgumentException("an object that can't be archived: " + value.description().utf8());
        Dictionary entry = ofClass("object", kMembers, append(object->archiveFields(), depth + 1));
        entry.setValue(kText, object->archiveClass());
        return entry;
    }

    Array entries_ = Array::makeMutable();
};

class ClassRegistry {
  public:
    static ClassRegistry& shared() {
        static ClassRegistry registry;
        return registry;
    }
    void set(const String& name, ObjectMaker maker) {
        const std::lock_guard lock(mutex_);
        makers_[name] = std::move(maker);
    }
    ObjectMaker find(const String& name) {
        const std::lock_guard lock(mutex_);
        const auto found = makers_.find(name);
        return found == makers_.end() ? ObjectMaker() : found->second;
    }

  private:
    std::mutex mutex_;
    std::map<String, ObjectMaker> makers_;
};

/// The entries of a dictionary that nobody else has, for one that can't be changed.
class FixedEntries : public DictionarySource {
  public:
    explicit FixedEntries(Dictionary entries) : entries_(std::move(entries)) {}
    size_t count() const override { return entries_.count(); }
    String keyAt(size_t index) const override { return entries_.keyAt(index); }
    Value valueAt(size_t index) const override { return entries_.valueAt(index); }
    Value find(const String& key) const override { return entries_.valueForKey(key); }

  private:
    Dictionary entries_;
};

/// Reads the entries from the last to the first, so that each finds its members read. Nothing stands for "damaged"; a
/// null value is an archived null.
class Unarchiver {
  public:
    explicit Unarchiver(const Array& entries) : entries_(entries), read_(entries.count()), depths_(entries.count()) {}

    std::optional<Value> whole() {
        for (size_t place = entries_.count(); place > 0; --place) {
            read_[place - 1] = valueOf(entries_[place - 1], place - 1);
            if (depths_[place - 1] > kDeepest) return std::nullopt;
        }
        return read_.empty() ? std::nullopt : read_.front();
    }

  private:
    using Read = std::optional<Value>;

    Read valueOf(const Value& entry, size_t place) {
        if (!entry.isDictionary()) return entry.isArray() || entry.isDate() ? Read() : entry;
        const Dictionary& fields = entry.dictionary();
        const String name = fields.valueForKey(kClass).string();
        const Value text = fields.valueForKey(kText);
        if (name == "null") return Value();
        if (name == "nothing") return Value::nothing();
        if (name == "text") return textOf(text.data());
        if (name == "single" || name == "real" || name == "date") return numberOf(name, text.string());
        if (name == "array") return arrayOf(fields, place);
        if (name == "dictionary") return dictionaryOf(fields, place);
        if (name == "object") return objectOf(fields, place);
        return std::nullopt;
    }

    static Read textOf(const Data& data) {
        if (data.isNull() || data.length() % sizeof(char16_t) != 0) return std::nullopt;
        std::u16string units(data.length() / sizeof(char16_t), 0);
        data.view().copy(reinterpret_cast<char*>(units.data()), data.length());
        return String(units);
    }

    static Read numberOf(const String& name, const String& text) {
        const std::string digits = text.utf8();
        char* end = nullptr;
        const double number = std::strtod(digits.c_str(), &end);
        if (digits.empty() || *end != 0) return std::nullopt;
        if (name == "date") return Date{number};
        return name == "single" ? Number(static_cast<float>(number)) : Number(number);
    }

    /// The member at a later place, once.
    Read take(const Value& reference, size_t place) {
        if (!reference.isNumber() || reference.number().integerValue() <= static_cast<int64_t>(place)) return {};
        const auto member = static_cast<size_t>(reference.number().integerValue());
        if (member >= read_.size()) return {};
        depths_[place] = std::max(depths_[place], depths_[member] + 1);
        return std::exchange(read_[member], std::nullopt);
    }

    Read arrayOf(const Dictionary& fields, size_t place) {
        const Array references = fields.valueForKey(kMembers).array();
        std::vector<Value> members;
        for (const Value& reference : references) {
            Read member = take(reference, place);
            if (!member || member->isNull()) return std::nullopt;
            members.push_back(std::move(*member));
        }
        const bool isMutable = fields.valueForKey(kMutable).number().booleanValue();
        return isMutable ? Array::makeMutable(std::move(members)) : Array::make(std::move(members));
    }

    Read dictionaryOf(const Dictionary& fields, size_t place) {
        const Array keys = fields.valueForKey(kKeys).array();
        const Array members = fields.valueForKey(kMembers).array();
        Dictionary result = Dictionary::makeMutable();
        if (keys.count() != members.count()) return std::nullopt;
        for (size_t index = 0; index < keys.count(); ++index) {
            const Read key = take(keys[index], place);
            const Read member = take(members[index], place);
            if (!key || !key->isString() || !member || member->isNull()) return std::nullopt;
            result.setValue(key->string(), *member);
        }
        if (fields.valueForKey(kMutable).number().booleanValue()) return result;
        return Dictionary::view(std::make_shared<FixedEntries>(result), Mutability::fixed);
    }

    Read objectOf(const Dictionary& fields, size_t place) {
        const ObjectMaker make = ClassRegistry::shared().find(fields.valueForKey(kText).string());
        const Read members = take(fields.valueForKey(kMembers), place);
        if (!make || !members || !members->isDictionary()) return std::nullopt;
        const std::shared_ptr<Object> object = make(members->dictionary());
        return object ? Read(object) : std::nullopt;
    }

    const Array& entries_;
    std::vector<Read> read_;
    std::vector<size_t> depths_;
};

bool isKeyedArchive(const Value& list) {
    return list.isDictionary() && list.dictionary().contains(kArchiver);
}

Value unarchived(const Value& list) {
    if (!isKeyedArchive(list)) return list;
    const Dictionary& archive = list.dictionary();
    if (archive.valueForKey(kArchiver) != Value(kProduct) || archive.valueForKey(kVersion) != Value(kThisVersion)) {
        return {};
    }
    const Array entries = archive.valueForKey(kObjects).array();
    return Unarchiver(entries).whole().value_or(Value());
}

}  // namespace

void registerArchiveClass(const String& archiveClass, ObjectMaker maker) {
    if (archiveClass.isNull()) throw InvalidArgumentException("an archived class needs a name");
    ClassRegistry::shared().set(archiveClass, std::move(maker));
}

Data archivedDataWithObj(const Value& object) {
    return Archiver().archive(object);
}

Value objWithArchivedData(const Data& data) {
    try {
        return unarchived(propertyListWithData(data));
    } catch (...) {
        return {};
    }
}

}  // namespace vornaset
