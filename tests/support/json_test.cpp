#include "support/json.h"

#include <cmath>

#include "support/logged.h"
#include "support/printing.h"
#include "support/scratch_folder.h"

namespace vornaset {
namespace {

TEST(JsonString, IsCompactInTheDictionarysOrder) {
    const Dictionary record = Dictionary::make(
        {{"b", 1}, {"a", Array::make({"x\"y", true, 0.1f, 2.5, Value::nothing()})}, {"d", Dictionary::make()}});
    EXPECT_EQ(jsonString(record, kCompactJson), String("{\"b\":1,\"a\":[\"x\\\"y\",true,0.1,2.5,null],\"d\":{}}"));
    EXPECT_EQ(jsonString(Dictionary::make({{"b", 1}, {"a", 2}}), kSortedKeysJson), String("{\"a\":2,\"b\":1}"));
    EXPECT_EQ(jsonString(Dictionary::make({{"b", 1}}), kPrettyPrintedJson), String("{\n  \"b\": 1\n}"));
    EXPECT_EQ(jsonString(Array::make(), 0), String("[]"));
}

TEST(JsonString, IsNullForWhatJsonDoesNotHave) {
    EXPECT_TRUE(jsonString(Value(), 0).isNull());
    EXPECT_TRUE(jsonString("text", 0).isNull());
    EXPECT_TRUE(jsonString(Array::make({Data("x")}), 0).isNull());
    EXPECT_TRUE(jsonString(Array::make({Date{}}), 0).isNull());
    EXPECT_TRUE(jsonString(Dictionary::make({{"k", HUGE_VAL}}), 0).isNull());
    Array loop = Array::makeMutable();
    loop.add(loop);
    EXPECT_TRUE(jsonString(loop, 0).isNull());
    loop.removeAll();
}

TEST(JsonString, ALoneSurrogateBecomesAReplacement) {
    EXPECT_EQ(jsonString(Array::make({String(std::u16string{0xD800})}), 0), String(u"[\"\uFFFD\"]"));
}

TEST(JsonObject, HasMutableContainersAllThrough) {
    const Value root = jsonObjWithString("{\"a\":[1,-2,2.5,true,null,{\"b\":\"\\u00e4\"}]}");
    ASSERT_TRUE(root.isDictionary());
    EXPECT_TRUE(root.dictionary().isMutable());
    const Array array = root.dictionary().valueForKey("a").array();
    EXPECT_TRUE(array.isMutable());
    EXPECT_EQ(array[0].number().kind(), Number::Kind::integer);
    EXPECT_EQ(array[1].number(), Number(-2));
    EXPECT_EQ(array[2].number().kind(), Number::Kind::real);
    EXPECT_EQ(array[3].number().kind(), Number::Kind::boolean);
    EXPECT_TRUE(array[4].isSameObject(Value::nothing()));
    EXPECT_TRUE(array[5].dictionary().isMutable());
    EXPECT_EQ(array[5].dictionary().valueForKey("b").string(), String(u"\u00E4"));
}

TEST(JsonObject, TheLaterOfTwoEqualKeysWins) {
    EXPECT_EQ(jsonObjWithString("{\"a\":1,\"b\":2,\"a\":3}").dictionary(), Dictionary::make({{"a", 3}, {"b", 2}}));
}

TEST(JsonObject, IsNullForAnythingElse) {
    for (const char* text : {"", "{", "[1,]", "nonsense", "<a/>", "5", "\"text\"", "null", "{\"a\":1} x", "[1e]"}) {
        EXPECT_TRUE(jsonObjWithString(text).isNull()) << text;
    }
    EXPECT_TRUE(jsonObjWithString(nullptr).isNull());
    EXPECT_TRUE(jsonObjWithData(Data("[\"\xE4\"]")).isNull());
    EXPECT_TRUE(jsonObjWithData(Data()).isNull());
}

TEST(JsonObject, DepthHasALimit) {
    const auto nested = [](size_t depth) {
        return String::fromUTF8(std::string(depth, '[') + std::string(depth, ']'));
    };
    EXPECT_FALSE(jsonObjWithString(nested(512)).isNull());
    EXPECT_TRUE(jsonObjWithString(nested(513)).isNull());
    EXPECT_TRUE(jsonObjWithString(nested(1000000)).isNull());
}

TEST(JsonObject, ComesFromTheFileWithTheExtensionJson) {
    const ScratchFolder folder;
    writeFile(folder.path() + "/settings.json", "{\"a\":1}");
    writeFile(folder.path() + "/settings.txt", "{\"a\":2}");
    writeFile(folder.path() + "/a.b.json", "[3]");
    const String base = String::fromUTF8(folder.path());
    EXPECT_EQ(jsonObjWithPath(base + "/settings.txt").dictionary(), Dictionary::make({{"a", 1}}));
    EXPECT_EQ(jsonObjWithPath(base + "/settings.json").dictionary(), Dictionary::make({{"a", 1}}));
    EXPECT_EQ(jsonObjWithPath(base + "/settings").dictionary(), Dictionary::make({{"a", 1}}));
    EXPECT_EQ(jsonObjWithPath(base + "/a.b.xml").array(), Array::make({3}));
    EXPECT_TRUE(jsonObjWithPath(base + "/other.txt").isNull());
    EXPECT_TRUE(jsonObjWithPath(nullptr).isNull());
}

TEST(JsonObject, NumbersKeepTheirValue) {
    const Array numbers =
        jsonObjWithString("[9223372036854775807,-9223372036854775808,18446744073709551615,1e-7,-0.0]").array();
    EXPECT_EQ(numbers[0].number(), Number(INT64_MAX));
    EXPECT_EQ(numbers[1].number(), Number(INT64_MIN));
    EXPECT_EQ(numbers[2].number().doubleValue(), 18446744073709551615.0);
    EXPECT_EQ(numbers[3].number().doubleValue(), 1e-7);
    EXPECT_TRUE(std::signbit(numbers[4].number().doubleValue()));
    EXPECT_TRUE(jsonObjWithString("[1e999]").isNull());
}

TEST(DictWithJsonData, NullDataGivesNull) {
    EXPECT_TRUE(dictWithJsonData(Data()).isNull());
    EXPECT_TRUE(dictWithJsonData(String()).isNull());
}

TEST(DictWithJsonData, IsNullForAnArray) {
    EXPECT_EQ(dictWithJsonData(String("{\"a\":1}")), Dictionary::make({{"a", 1}}));
    EXPECT_TRUE(dictWithJsonData(String("[1]")).isNull());
    EXPECT_EQ(dictWithJsonData(Data("{}")).count(), 0u);
    EXPECT_FALSE(dictWithJsonData(Data("{}")).isNull());
}

class JsonErrors : public LoggedTest {};

TEST_F(JsonErrors, AreLoggedWithTheirPlace) {
    jsonObjWithString("[1,\n2 3]");
    ASSERT_EQ(entries().size(), 1u);
    EXPECT_EQ(entries()[0].find("JSON, byte 7: "), 0u) << entries()[0];
    jsonObjWithString("5");
    EXPECT_EQ(entries().back(), "JSON: the root is neither an array nor an object");
    jsonObjWithString(String::fromUTF8(std::string(600, '[')));
    EXPECT_EQ(entries().back(), "JSON: nested deeper than 512");
    EXPECT_EQ(entries().size(), 3u);
}

TEST_F(JsonErrors, AreLoggedForWhatCannotBeWritten) {
    jsonData(Array::make({Data("x")}), 0);
    jsonString("text", 0);
    EXPECT_EQ(entries(), (std::vector<std::string>(2, "JSON: a value that JSON doesn't have")));
}

TEST_F(JsonErrors, AMissingFileAndNullDataAreNone) {
    jsonObjWithPath("no such folder/file.txt");
    jsonObjWithData(Data());
    EXPECT_TRUE(entries().empty());
}

TEST_F(JsonErrors, AreGivenAndNotLoggedWhereTheCallerAsks) {
    Error error;
    EXPECT_TRUE(readJson(Data("{"), error).isNull());
    EXPECT_FALSE(error.isNull());
    EXPECT_FALSE(readJson(Data("[1]"), error).isNull());
    EXPECT_TRUE(error.isNull());
    EXPECT_TRUE(writeJson("text", 0, error).isNull());
    EXPECT_FALSE(error.isNull());
    EXPECT_EQ(writeJson(Array::make({1}), 0, error).view(), "[1]");
    EXPECT_TRUE(error.isNull());
    EXPECT_TRUE(entries().empty());
}

TEST(Json, SurvivesTheWayThroughText) {
    const Dictionary record = Dictionary::make({{"a b", "x\n\t\"\\"}, {"n", INT64_MIN}, {"r", 1.0 / 3}, {"", ""}});
    EXPECT_EQ(jsonObjWithString(jsonString(record, 0)).dictionary(), record);
}

}  // namespace
}  // namespace vornaset
