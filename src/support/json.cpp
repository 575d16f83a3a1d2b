#include "support/json.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <optional>

#include "support/limits.h"
#include "support/log.h"
#include "support/paths.h"
#include "support/text_decoding.h"
#include "support/text_files.h"

namespace vornaset {

namespace {

using Json = nlohmann::ordered_json;

std::optional<Json> jsonOf(const Value& value, uint64_t options, size_t depth);

std::optional<Json> jsonOf(const Array& array, uint64_t options, size_t depth) {
    Json result = Json::array();
    for (const Value& entry : array) {
        std::optional<Json> converted = jsonOf(entry, options, depth + 1);
        if (!converted) return std::nullopt;
        result.push_back(std::move(*converted));
    }
    return result;
}

std::optional<Json> jsonOf(const Dictionary& dictionary, uint64_t options, size_t depth) {
    std::vector<size_t> order(dictionary.count());
    for (size_t index = 0; index < order.size(); ++index) order[index] = index;
    if ((options & kSortedKeysJson) != 0) {
        std::sort(order.begin(), order.end(),
                  [&](size_t one, size_t other) { return dictionary.keyAt(one) < dictionary.keyAt(other); });
    }
    Json::object_t result;
    result.reserve(order.size());
    for (const size_t index : order) {
        std::optional<Json> converted = jsonOf(dictionary.valueAt(index), options, depth + 1);
        if (!converted) return std::nullopt;
        // Keys are distinct; the container's own insertion would look for an equal one each time.
        static_cast<std::vector<std::pair<const std::string, Json>>&>(result).emplace_back(
            dictionary.keyAt(index).utf8(), std::move(*converted));
    }
    return Json(std::move(result));
}

std::optional<Json> jsonOf(const Number& number) {
    switch (number.kind()) {
        case Number::Kind::boolean:
            return Json(number.booleanValue());
        case Number::Kind::integer:
            return Json(number.integerValue());
        default:
            break;
    }
    if (!std::isfinite(number.doubleValue())) return std::nullopt;
    // Through its text a single keeps its own digits: 0.1 and not 0.10000000149.
    return Json(number.text().doubleValue());
}

std::optional<Json> jsonOf(const Value& value, uint64_t options, size_t depth) {
    if (depth > kDeepestJson) return std::nullopt;
    if (value.isString()) return Json(value.string().utf8());
    if (value.isNumber()) return jsonOf(value.number());
    if (value.isArray()) return jsonOf(value.array(), options, depth);
    if (value.isDictionary()) return jsonOf(value.dictionary(), options, depth);
    if (value.isSameObject(Value::nothing())) return Json(nullptr);
    return std::nullopt;
}

/// Builds mutable containers while the parser reads.
class ValueBuilder : public nlohmann::json_sax<Json> {
  public:
    const Value& root() const { return root_; }
    const std::string& error() const { return error_; }

    bool null() override { return take(Value::nothing()); }
    bool boolean(bool value) override { return take(Number(value)); }
    bool number_integer(number_integer_t value) override { return take(Number(value)); }
    bool number_unsigned(number_unsigned_t value) override { return take(Number(value)); }
    bool number_float(number_float_t value, const string_t&) override { return take(Number(value)); }
    bool string(string_t& value) override { return take(String::fromDamagedUTF8(value)); }
    bool binary(binary_t&) override { return false; }
    bool start_object(size_t) override { return open(Dictionary::makeMutable()); }
    bool start_array(size_t) override { return open(Array::makeMutable()); }
    bool key(string_t& value) override {
        open_.back().key = String::fromDamagedUTF8(value);
        return true;
    }
    bool end_object() override { return closeInnermost(); }
    bool end_array() override { return closeInnermost(); }
    bool parse_error(size_t position, const std::string&, const nlohmann::detail::exception& failure) override {
        error_ = "JSON, byte " + std::to_string(position) + ": " + failure.what();
        return false;
    }

  private:
    struct Container {
        Value value;
        String key;  ///< under which the next value goes
    };

    bool open(const Value& container) {
        if (open_.size() >= kDeepestJson) {
            error_ = "JSON: nested deeper than " + std::to_string(kDeepestJson);
            return false;
        }
        if (!take(container)) return false;
        open_.push_back({container, {}});
        return true;
    }

    bool closeInnermost() {
        open_.pop_back();
        return true;
    }

    bool take(const Value& value) {
        if (open_.empty()) {
            root_ = value;
        } else if (open_.back().value.isArray()) {
            Array(open_.back().value.array()).add(value);
        } else {
            Dictionary(open_.back().value.dictionary()).setValue(open_.back().key, value);
        }
        return true;
    }

    Value root_;
    std::vector<Container> open_;
    std::string error_;
};

Error jsonError(const std::string& text) {
    return Error(1, String::fromDamagedUTF8(text));
}

}  // namespace

Data writeJson(const Value& value, uint64_t options, Error& error) {
    error = Error();
    const bool container = value.isArray() || value.isDictionary();
    const std::optional<Json> json = container ? jsonOf(value, options, 0) : std::nullopt;
    if (!json) {
        error = jsonError("JSON: a value that JSON doesn't have");
        return {};
    }
    const int indentation = (options & kPrettyPrintedJson) != 0 ? 2 : -1;
    return Data(json->dump(indentation, ' ', false, Json::error_handler_t::replace));
}

Data jsonData(const Value& value, uint64_t options) {
    Error error;
    const Data data = writeJson(value, options, error);
    if (!error.isNull()) logError(error);
    return data;
}

String jsonString(const Value& value, uint64_t options) {
    const Data data = jsonData(value, options);
    return data.length() == 0 ? String() : stringWithData(data);
}

Value readJson(const Data& data, Error& error) {
    error = Error();
    if (data.isNull()) return {};
    ValueBuilder builder;
    if (!Json::sax_parse(data.view(), &builder)) {
        error = jsonError(builder.error());
        return {};
    }
    if (builder.root().isArray() || builder.root().isDictionary()) return builder.root();
    error = jsonError("JSON: the root is neither an array nor an object");
    return {};
}

Value jsonObjWithData(const Data& data) {
    Error error;
    const Value read = readJson(data, error);
    if (!error.isNull()) logError(error);
    return read;
}

Value jsonObjWithString(const String& text) {
    return jsonObjWithData(dataWithString(text));
}

Value jsonObjWithPath(const String& path) {
    return jsonObjWithData(dataWithFile(stringByReplacingPathExtension(path, "json")));
}

Dictionary dictWithJsonData(const Data& data) {
    return jsonObjWithData(data).dictionary();
}
Dictionary dictWithJsonData(const String& text) {
    return dictWithJsonData(dataWithString(text));
}

}  // namespace vornaset
