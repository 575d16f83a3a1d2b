#include "support/property_list.h"

#include <plist/plist.h>

#include <cmath>
#include <cstdlib>
#include <memory>

#include "support/unicode.h"

namespace vornaset {

namespace {

/// The reader goes down one call for each level.
constexpr int kLargestDepth = 256;
/// Property list dates count from the start of 2001, UTC.
constexpr double kStartOf2001 = 978307200;

struct NodeCloser {
    void operator()(plist_t node) const { plist_free(node); }
};
using Node = std::unique_ptr<void, NodeCloser>;

std::string xmlBytes(const String& text) {
    return String(withoutForbiddenXmlCharacters(text.view())).utf8();
}

Node nodeOf(const Value& value, int depth);

Node nodeOf(const Array& array, int depth) {
    Node result(plist_new_array());
    for (const Value& entry : array) {
        Node node = nodeOf(entry, depth + 1);
        if (!node) return nullptr;
        plist_array_append_item(result.get(), node.release());
    }
    return result;
}

Node nodeOf(const Dictionary& dictionary, int depth) {
    Node result(plist_new_dict());
    for (size_t index = 0; index < dictionary.count(); ++index) {
        Node node = nodeOf(dictionary.valueAt(index), depth + 1);
        if (!node) return nullptr;
        plist_dict_set_item(result.get(), xmlBytes(dictionary.keyAt(index)).c_str(), node.release());
    }
    return result;
}

Node nodeOf(const Number& number) {
    switch (number.kind()) {
        case Number::Kind::boolean:
            return Node(plist_new_bool(number.booleanValue() ? 1 : 0));
        case Number::Kind::integer:
            return Node(plist_new_uint(static_cast<uint64_t>(number.integerValue())));
        default:
            break;
    }
    if (!std::isfinite(number.doubleValue())) return nullptr;
    // Through its text a single keeps its own digits: 0.1 and not 0.10000000149.
    return Node(plist_new_real(number.text().doubleValue()));
}

Node nodeOf(const Date& date) {
    const double seconds = std::floor(date.seconds - kStartOf2001);
    if (!(std::abs(seconds) < INT32_MAX)) return nullptr;
    return Node(plist_new_date(static_cast<int32_t>(seconds), 0));
}

Node nodeOf(const Value& value, int depth) {
    if (depth > kLargestDepth) return nullptr;
    if (value.isString()) return Node(plist_new_string(xmlBytes(value.string()).c_str()));
    if (value.isNumber()) return nodeOf(value.number());
    if (value.isArray()) return nodeOf(value.array(), depth);
    if (value.isDictionary()) return nodeOf(value.dictionary(), depth);
    if (value.isData()) return Node(plist_new_data(value.data().view().data(), value.data().length()));
    if (value.isDate()) return nodeOf(value.date());
    return nullptr;
}

Value valueOf(plist_t node);

Array arrayOf(plist_t node) {
    Array array = Array::makeMutable();
    plist_array_iter iterator = nullptr;
    plist_array_new_iter(node, &iterator);
    plist_t entry = nullptr;
    for (plist_array_next_item(node, iterator, &entry); entry != nullptr;
         plist_array_next_item(node, iterator, &entry)) {
        const Value value = valueOf(entry);
        if (!value.isNull()) array.add(value);
    }
    std::free(iterator);
    return array;
}

Dictionary dictionaryOf(plist_t node) {
    Dictionary dictionary = Dictionary::makeMutable();
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(node, &iterator);
    char* key = nullptr;
    plist_t entry = nullptr;
    for (plist_dict_next_item(node, iterator, &key, &entry); entry != nullptr;
         plist_dict_next_item(node, iterator, &key, &entry)) {
        const Value value = valueOf(entry);
        if (key != nullptr && !value.isNull()) dictionary.setValue(String::fromDamagedUTF8(key), value);
        std::free(key);
        key = nullptr;
    }
    std::free(iterator);
    return dictionary;
}

Value dateOf(plist_t node) {
    int32_t seconds = 0;
    int32_t microseconds = 0;
    plist_get_date_val(node, &seconds, &microseconds);
    return Date{seconds + microseconds / 1e6 + kStartOf2001};
}

Value valueOf(plist_t node) {
    uint64_t integer = 0;
    double real = 0;
    uint8_t boolean = 0;
    switch (plist_get_node_type(node)) {
        case PLIST_BOOLEAN:
            plist_get_bool_val(node, &boolean);
            return Number(boolean != 0);
        case PLIST_UINT:
            plist_get_uint_val(node, &integer);
            return Number(static_cast<int64_t>(integer));
        case PLIST_REAL:
            plist_get_real_val(node, &real);
            return Number(real);
        case PLIST_DATE:
            return dateOf(node);
        case PLIST_ARRAY:
            return arrayOf(node);
        case PLIST_DICT:
            return dictionaryOf(node);
        case PLIST_STRING: {
            const char* text = plist_get_string_ptr(node, &integer);
            return String::fromDamagedUTF8({text == nullptr ? "" : text, text == nullptr ? 0 : integer});
        }
        case PLIST_DATA: {
            const char* bytes = plist_get_data_ptr(node, &integer);
            return Data::withBytes(bytes, bytes == nullptr ? 0 : integer);
        }
        default:
            return {};
    }
}

/// Looks at the tags alone, before the reader sees the text: that they nest within the limit and that the document
/// type, where there is one, defines nothing.
class TagCheck {
  public:
    explicit TagCheck(std::string_view text) : text_(text) {}

    bool passes() {
        while ((at_ = text_.find('<', at_)) != std::string_view::npos) {
            if (!(skip("<!--", "-->") || skip("<![CDATA[", "]]>") || skip("<?", "?>") || passesTag())) return false;
        }
        return true;
    }

  private:
    bool skip(std::string_view opening, std::string_view closing) {
        if (!text_.substr(at_).starts_with(opening)) return false;
        const size_t end = text_.find(closing, at_ + opening.size());
        at_ = end == std::string_view::npos ? text_.size() : end + closing.size();
        return true;
    }

    bool passesTag() {
        const size_t end = text_.find('>', at_);
        if (end == std::string_view::npos) return false;
        const std::string_view tag = text_.substr(at_, end - at_);
        at_ = end + 1;
        if (tag.starts_with("<!")) return tag.find('[') == std::string_view::npos;
        if (tag.starts_with("</")) {
            --depth_;
        } else if (!tag.ends_with('/')) {
            ++depth_;
        }
        return depth_ <= kLargestDepth + 2;
    }

    std::string_view text_;
    size_t at_ = 0;
    int depth_ = 0;
};

}  // namespace

Data propertyListData(const Value& value) {
    const Node node = nodeOf(value, 0);
    if (!node) return {};
    char* xml = nullptr;
    uint32_t length = 0;
    plist_to_xml(node.get(), &xml, &length);
    Data data = xml == nullptr ? Data() : Data::withBytes(xml, length);
    plist_to_xml_free(xml);
    return data;
}

Value propertyListWithData(const Data& data) {
    if (data.length() == 0 || data.length() > UINT32_MAX || !TagCheck(data.view()).passes()) return {};
    plist_t read = nullptr;
    plist_from_xml(data.view().data(), static_cast<uint32_t>(data.length()), &read);
    const Node node(read);
    return node ? valueOf(node.get()) : Value();
}

}  // namespace vornaset
