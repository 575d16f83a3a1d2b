#include "companion/mapping_rules.h"

#include <memory>
#include <nlohmann/json.hpp>

#include "companion/data_file.h"
#include "companion/error.h"
#include "companion/limits.h"

namespace companion {
namespace {

using nlohmann::ordered_json;
using vornaset::String;

class RuleObject : public vornaset::Object {
  public:
    explicit RuleObject(const MappingRule& rule)
        : name_(text(rule.name)), contentOf_(text(rule.contentOf)), replacements_(vornaset::Dictionary::makeMutable()) {
        for (auto& [from, to] : rule.replacements) replacements_.setValue(text(from), text(to));
    }

    vornaset::Value valueForKey(const String& key) const override {
        if (key == String(u"name")) return name_;
        if (key == String(u"contentOf")) return contentOf_;
        if (key == String(u"replacementsDict")) return replacements_;
        return Object::valueForKey(key);
    }

  private:
    static String text(const std::string& utf8) { return String::fromDamagedUTF8(utf8); }

    String name_;
    String contentOf_;
    vornaset::Dictionary replacements_;
};

/// Refuses nesting that no rules file has: the parser calls itself for each level.
bool nestsTooDeep(std::string_view json) {
    constexpr int deepest = 64;
    int depth = 0;
    bool inText = false;
    for (std::size_t i = 0; i < json.size(); ++i) {
        char character = json[i];
        if (inText) {
            if (character == '\\')
                ++i;
            else if (character == '"')
                inText = false;
        } else if (character == '"') {
            inText = true;
        } else if (character == '[' || character == '{') {
            if (++depth > deepest) return true;
        } else if (character == ']' || character == '}') {
            --depth;
        }
    }
    return false;
}

class RuleReader {
  public:
    RuleReader(const std::string& file, const ordered_json& rule, std::size_t number)
        : file_(file), rule_(rule), number_(number) {}

    MappingRule read() {
        if (!rule_.is_object()) fail("isn't an object with \"name\", \"contentOf\" and \"replacements\".");
        MappingRule read{textOf("name"), textOf("contentOf"), {}};
        if (read.name.empty()) fail("has an empty \"name\", so no placeholder can use it.");
        auto replacements = rule_.find("replacements");
        if (replacements == rule_.end() || !replacements->is_object())
            fail("needs \"replacements\", an object from text to text.");
        for (auto& [from, to] : replacements->items()) {
            if (!to.is_string()) fail("replaces \"" + from + "\" by something that isn't a text; put it in quotes.");
            read.replacements.emplace_back(from, to.get<std::string>());
        }
        return read;
    }

  private:
    std::string textOf(const char* member) {
        auto found = rule_.find(member);
        if (found == rule_.end() || !found->is_string()) fail("needs \"" + std::string(member) + "\", a text.");
        return found->get<std::string>();
    }

    [[noreturn]] void fail(const std::string& what) const {
        throw Error("the rules file \"" + file_ + "\": rule " + std::to_string(number_) + " " + what);
    }

    const std::string& file_;
    const ordered_json& rule_;
    std::size_t number_;
};

}  // namespace

std::vector<MappingRule> parseRules(std::string_view json, const std::string& name) {
    if (json.starts_with("\xEF\xBB\xBF")) json.remove_prefix(3);
    if (nestsTooDeep(json)) throw Error("the rules file \"" + name + "\" nests too deep to be a list of rules.");
    ordered_json read;
    try {
        read = ordered_json::parse(json);
    } catch (const ordered_json::parse_error& error) {
        throw Error("the rules file \"" + name + "\" isn't JSON: a fault at byte " + std::to_string(error.byte) + ".");
    }
    if (!read.is_array()) throw Error("the rules file \"" + name + "\" isn't a JSON array of rules.");
    std::vector<MappingRule> rules;
    for (const ordered_json& rule : read) rules.push_back(RuleReader(name, rule, rules.size() + 1).read());
    return rules;
}

std::vector<MappingRule> readRules(const std::string& path) {
    return parseRules(readWholeFile(path, "the rules file", rulesFileBytes).view(), path);
}

vornaset::Array ruleObjects(const std::vector<MappingRule>& rules) {
    std::vector<vornaset::Value> objects;
    objects.reserve(rules.size());
    for (const MappingRule& rule : rules) objects.emplace_back(std::make_shared<RuleObject>(rule));
    return vornaset::Array::make(std::move(objects));
}

}  // namespace companion
