#include "companion/mapping_rules.h"

#include <gtest/gtest.h>

#include "companion/error.h"
#include "placeholders/substitution.h"
#include "support/dictionary_access.h"

namespace companion {
namespace {

using vornaset::Dictionary;
using vornaset::String;

TEST(MappingRules, AreReadInOrder) {
    auto rules = parseRules(R"([{"name": "Salutation", "contentOf": "Sex", "replacements": {"m": "Mr", "f": "Mrs"}},
                               {"replacements": {}, "contentOf": "Größe", "name": "x", "remark": 7}])",
                            "r.json");
    ASSERT_EQ(rules.size(), 2u);
    EXPECT_EQ(rules[0].name, "Salutation");
    EXPECT_EQ(rules[0].contentOf, "Sex");
    EXPECT_EQ(rules[0].replacements, (std::vector<std::pair<std::string, std::string>>{{"m", "Mr"}, {"f", "Mrs"}}));
    EXPECT_EQ(rules[1].contentOf, "Größe");
    EXPECT_TRUE(rules[1].replacements.empty());
    EXPECT_TRUE(parseRules("\xEF\xBB\xBF[]", "r.json").empty()) << "a byte order mark, and no rule at all";
}

TEST(MappingRules, AFaultNamesTheFileAndTheRule) {
    struct {
        const char* json;
        const char* sentence;
    } cases[] = {
        {"{}", "the rules file \"r.json\" isn't a JSON array of rules."},
        {"[{]", "the rules file \"r.json\" isn't JSON: a fault at byte 3."},
        {"", "the rules file \"r.json\" isn't JSON: a fault at byte 1."},
        {"[1]", "the rules file \"r.json\": rule 1 isn't an object with \"name\", \"contentOf\" and \"replacements\"."},
        {R"([{"contentOf":"a","replacements":{}}])", "the rules file \"r.json\": rule 1 needs \"name\", a text."},
        {R"([{"name":"","contentOf":"a","replacements":{}}])",
         "the rules file \"r.json\": rule 1 has an empty \"name\", so no placeholder can use it."},
        {R"([{"name":"a","contentOf":3,"replacements":{}}])",
         "the rules file \"r.json\": rule 1 needs \"contentOf\", a text."},
        {R"([{"name":"a","contentOf":"b","replacements":{}},{"name":"a","contentOf":"b"}])",
         "the rules file \"r.json\": rule 2 needs \"replacements\", an object from text to text."},
        {R"([{"name":"a","contentOf":"b","replacements":{"1":2}}])",
         "the rules file \"r.json\": rule 1 replaces \"1\" by something that isn't a text; put it in quotes."},
    };
    for (auto& [json, sentence] : cases) {
        try {
            parseRules(json, "r.json");
            ADD_FAILURE() << json;
        } catch (const Error& error) {
            EXPECT_STREQ(error.what(), sentence);
        }
    }
}

TEST(MappingRules, DeepNestingIsRefusedBeforeItIsParsed) {
    EXPECT_THROW(parseRules(std::string(1'000'000, '['), "r.json"), Error);
    EXPECT_NO_THROW(parseRules(R"([{"name":"[[[[","contentOf":"\"]","replacements":{"{":"}"}}])", "r.json"));
}

TEST(MappingRules, TheMergeTakesThemOver) {
    vornaset::setupRules(ruleObjects({{"Salutation", "Sex", {{"m", "Mr"}}}, {"Other", "X", {}}}));
    Dictionary rule = vornaset::gRules.valueForKey("Salutation").dictionary();
    EXPECT_EQ(vornaset::stringForKey(rule, "contentOf"), String("Sex"));
    EXPECT_EQ(vornaset::stringForKey(rule.valueForKey("replacements"), "m"), String("Mr"));
    vornaset::setupRules(ruleObjects({}));
    EXPECT_TRUE(vornaset::gRules.isEmpty());
}

}  // namespace
}  // namespace companion
