#include "support/dictionary_access.h"

#include "support/printing.h"

namespace vornaset {
namespace {

class Answering : public Object {
  public:
    Value valueForKey(const String& key) const override {
        return key == String("n") ? Value(12) : Object::valueForKey(key);
    }
};

TEST(StringForKey, GivesATextAsItStands) {
    const Dictionary row = Dictionary::make({{"Name", "Miller"}, {"Empty", ""}});
    EXPECT_EQ(stringForKey(row, "Name", "x"), String("Miller"));
    EXPECT_EQ(stringForKey(row, String("Empty"), "x"), String(""));
    EXPECT_TRUE(stringForKey(row, "Name").isSameObject(row.valueForKey("Name").string()));
}

TEST(StringForKey, GivesANumberAsItsText) {
    const Dictionary row = Dictionary::make({{"a", 42}, {"b", 0.1f}, {"c", 2.0}});
    EXPECT_EQ(stringForKey(row, "a", nullptr), String("42"));
    EXPECT_EQ(stringForKey(row, "b", nullptr), String("0.1"));
    EXPECT_EQ(stringForKey(row, "c", nullptr), String("2"));
}

TEST(StringForKey, GivesTheDefaultForAnyOtherValue) {
    const Dictionary row = Dictionary::make({{"a", Array::make()}, {"d", Dictionary::make()}, {"x", Data("x")}});
    EXPECT_EQ(stringForKey(row, "a", "default"), String("default"));
    EXPECT_EQ(stringForKey(row, "d", "default"), String("default"));
    EXPECT_EQ(stringForKey(row, "x", "default"), String("default"));
    EXPECT_EQ(stringForKey(row, "missing", "default"), String("default"));
    EXPECT_TRUE(stringForKey(row, "missing").isNull());
    EXPECT_EQ(stringForKey(row, String(), "default"), String("default"));
}

TEST(StringForKey, GivesTheDefaultWhenTheFirstArgumentIsNoDictionary) {
    EXPECT_EQ(stringForKey(Value(Array::make({"Name"})), "Name", "default"), String("default"));
    EXPECT_EQ(stringForKey(Value(Array::make()), String("Name"), "default"), String("default"));
    EXPECT_EQ(stringForKey(Value(), "Name", "default"), String("default"));
    EXPECT_EQ(stringForKey(Dictionary(), "Name", "default"), String("default"));
    EXPECT_EQ(stringForKey(Value(std::make_shared<Answering>()), "n", "default"), String("default"));
}

TEST(StringForKey, TakesADottedKeyWhole) {
    Dictionary outer = Dictionary::makeMutable({{"a", Dictionary::make({{"b", "inner"}})}});
    EXPECT_TRUE(stringForKey(outer, "a.b").isNull());
    outer.setValue("a.b", "whole");
    EXPECT_EQ(stringForKey(outer, "a.b"), String("whole"));
}

TEST(DictForKey, GivesAPresentDictionaryAndNothingElse) {
    const Dictionary inner = Dictionary::make();
    const Dictionary holder = Dictionary::makeMutable({{"d", inner}, {"s", "text"}});
    EXPECT_TRUE(dictForKey(holder, "d", 0).isSameObject(inner));
    EXPECT_TRUE(dictForKey(holder, "d", 1).isSameObject(inner));
    EXPECT_TRUE(dictForKey(holder, "s", 1).isNull());
    EXPECT_EQ(stringForKey(holder, "s"), String("text"));
}

TEST(DictForKey, CreatesAtExactlyOne) {
    const Dictionary holder = Dictionary::makeMutable();
    EXPECT_TRUE(dictForKey(holder, "d", 0).isNull());
    EXPECT_TRUE(dictForKey(holder, "d", 2).isNull());
    EXPECT_TRUE(holder.isEmpty());
    const Dictionary made = dictForKey(holder, "d", 1);
    EXPECT_TRUE(made.isMutable());
    EXPECT_TRUE(dictForKey(holder, "d", 1).isSameObject(made));
    EXPECT_TRUE(dictForKey(holder, "d", 0).isSameObject(made));
}

TEST(DictForKey, AnImmutableDictionaryGivesNullWhateverCreateSays) {
    const Dictionary fixed = Dictionary::make({{"d", Dictionary::makeMutable()}});
    EXPECT_TRUE(dictForKey(fixed, "d", 0).isNull());
    EXPECT_TRUE(dictForKey(fixed, "d", 1).isNull());
    EXPECT_TRUE(dictForKey(fixed, "e", 1).isNull());
    EXPECT_TRUE(dictForKey(Value(Array::makeMutable()), "d", 1).isNull());
    EXPECT_TRUE(dictForKey(Value(), "d", 1).isNull());
    EXPECT_TRUE(dictForKey(Dictionary::makeMutable(), nullptr, 1).isNull());
}

TEST(ArrayForKeyCreating, GivesAMutableArrayAlone) {
    const Array changeable = Array::makeMutable();
    const Dictionary holder = Dictionary::makeMutable({{"m", changeable}, {"f", Array::make()}, {"s", "text"}});
    EXPECT_TRUE(arrayForKey(holder, "m", 0).isSameObject(changeable));
    EXPECT_TRUE(arrayForKey(holder, "f", 1).isNull());
    EXPECT_TRUE(arrayForKey(holder, "s", 1).isNull());
    EXPECT_TRUE(arrayForKey(holder, "new", 0).isNull());
    const Array made = arrayForKey(holder, "new", 1);
    EXPECT_TRUE(made.isMutable());
    EXPECT_TRUE(arrayForKey(holder, "new", 1).isSameObject(made));
    EXPECT_TRUE(arrayForKey(holder.isNull() ? Value() : Value(Dictionary::make({{"m", changeable}})), "m", 1).isNull());
}

TEST(ArrayForKeyWithDefault, GivesAMutableArrayOrTheDefault) {
    const Array changeable = Array::makeMutable();
    const Array fallback = Array::make({1});
    const Dictionary holder = Dictionary::make({{"m", changeable}, {"f", Array::make()}, {"s", "text"}});
    EXPECT_TRUE(arrayForKey(holder, "m", fallback).isSameObject(changeable));
    EXPECT_TRUE(arrayForKey(holder, "f", fallback).isSameObject(fallback));
    EXPECT_TRUE(arrayForKey(holder, "s", fallback).isSameObject(fallback));
    EXPECT_TRUE(arrayForKey(holder, "missing", fallback).isSameObject(fallback));
    EXPECT_TRUE(arrayForKey(holder, "missing", nullptr).isNull());
}

TEST(ArrayForKeyWithDefault, GivesNullAndNotTheDefaultWhenTheFirstArgumentIsNoDictionary) {
    const Array fallback = Array::make({1});
    EXPECT_TRUE(arrayForKey(Value("text"), "m", fallback).isNull());
    EXPECT_TRUE(arrayForKey(Value(Array::makeMutable()), "m", fallback).isNull());
    EXPECT_TRUE(arrayForKey(Value(), "m", fallback).isNull());
}

TEST(IntegerForKey, ReadsNumbersAndTexts) {
    const Dictionary job = Dictionary::make(
        {{"n", 5}, {"t", "17"}, {"word", "x"}, {"real", 2.9}, {"big", "99999999999999999999"}, {"a", Array::make()}});
    EXPECT_EQ(integerForKey(job, "n", 1), 5);
    EXPECT_EQ(integerForKey(job, String("t"), 1), 17);
    EXPECT_EQ(integerForKey(job, "word", 1), 0);
    EXPECT_EQ(integerForKey(job, "real", 1), 2);
    EXPECT_EQ(integerForKey(job, "big", 1), INT64_MAX);
    EXPECT_EQ(integerForKey(job, "missing", 9), 9);
    EXPECT_EQ(integerForKey(job, "a", 9), 9);
}

TEST(IntegerForKey, ANullFirstArgumentGivesTheDefault) {
    EXPECT_EQ(integerForKey(Dictionary(), "n", 4), 4);
    EXPECT_EQ(integerForKey(Value(), "n", 4), 4);
    EXPECT_EQ(intForKey(Dictionary(), "n", 4), 4);
    EXPECT_EQ(intForKey(Value(), "n", 4), 4);
}

TEST(IntegerForKey, AsksWhateverAnswersForAKey) {
    EXPECT_EQ(integerForKey(Value(std::make_shared<Answering>()), "n", 4), 12);
    EXPECT_EQ(intForKey(Value(std::make_shared<Answering>()), "n", 4), 12);
    EXPECT_EQ(integerForKey(Value(std::make_shared<Answering>()), "other", 4), 4);
    EXPECT_EQ(integerForKey(Value(Array::make({1})), "n", 4), 4);
    EXPECT_EQ(integerForKey(Value(Dictionary::make({{"n", 5}})), "n", 4), 5);
}

TEST(IntForKey, Has32Bits) {
    const Dictionary job = Dictionary::make({{"n", (int64_t{1} << 32) + 7}, {"t", "5000000000"}, {"s", 3}});
    EXPECT_EQ(intForKey(job, "n", 1), 7);
    EXPECT_EQ(intForKey(job, "t", 1), INT32_MAX);
    EXPECT_EQ(intForKey(job, "s", 1), 3);
    EXPECT_EQ(intForKey(job, "missing", -2), -2);
}

TEST(FloatForKey, ReadsADecimalCommaInSinglePrecision) {
    const Dictionary record =
        Dictionary::make({{"comma", "1,5"}, {"point", "0.1"}, {"n", 3}, {"a", Array::make()}, {"word", "x"}});
    EXPECT_EQ(floatForKey(record, "comma", 0), 1.5);
    EXPECT_EQ(floatForKey(record, "point", 0), static_cast<double>(0.1f));
    EXPECT_EQ(floatForKey(record, "n", 0), 3);
    EXPECT_EQ(floatForKey(record, "a", 0.1), 0.1);
    EXPECT_EQ(floatForKey(record, "missing", 0.1), 0.1);
    EXPECT_EQ(floatForKey(record, "word", 0.1), 0);
    EXPECT_EQ(floatForKey(Value(Array::make()), "n", 0.1), 0.1);
}

TEST(StringsForKey, CollectsTheValueOfEachObject) {
    const Array objects = Array::make({Dictionary::make({{"k", "a"}}), Dictionary::make({{"k", 2}})});
    EXPECT_EQ(stringsForKey(objects, "k"), Array::make({"a", 2}));
    EXPECT_TRUE(stringsForKey(Array(), "k").isEmpty());
    EXPECT_FALSE(stringsForKey(Array(), "k").isNull());
}

TEST(StringsForKey, EndsQuietlyAtTheFirstObjectWithoutTheKey) {
    const Dictionary has = Dictionary::make({{"k", "a"}});
    EXPECT_TRUE(stringsForKey(Array::make({Dictionary::make(), has}), "k").isEmpty());
    EXPECT_EQ(stringsForKey(Array::make({has, Dictionary::make(), has}), "k"), Array::make({"a"}));
    EXPECT_EQ(stringsForKey(Array::make({has, "no keys", has}), "k"), Array::make({"a"}));
    EXPECT_EQ(stringsForKey(Array::make({has, std::make_shared<Answering>()}), "k"), Array::make({"a"}));
}

TEST(SetStringForKey, StoresOrRemoves) {
    const Dictionary record = Dictionary::makeMutable();
    setStringForKey(record, "k", "v");
    EXPECT_EQ(stringForKey(record, "k"), String("v"));
    setStringForKey(record, String("k"), nullptr);
    EXPECT_FALSE(record.contains("k"));
    setStringForKey(record, "k", nullptr);
    setStringForKey(record, String(), "v");
    EXPECT_TRUE(record.isEmpty());
}

TEST(SetStringForKey, ADotDescends) {
    const Dictionary record = Dictionary::makeMutable();
    setStringForKey(record, "a.b", "v");
    EXPECT_TRUE(record.isEmpty());
    const Dictionary inner = dictForKey(record, "a", 1);
    setStringForKey(record, "a.b", "v");
    EXPECT_EQ(stringForKey(inner, "b"), String("v"));
    EXPECT_TRUE(stringForKey(record, "a.b").isNull());
    const Dictionary innermost = dictForKey(inner, "c", 1);
    setStringForKey(record, "a.c.d", "deep");
    EXPECT_EQ(stringForKey(innermost, "d"), String("deep"));
}

TEST(SetStringForKey, APathThroughSomethingElseStoresNothing) {
    const Dictionary record = Dictionary::makeMutable({{"s", "text"}, {"f", Dictionary::make()}});
    setStringForKey(record, "s.b", "v");
    setStringForKey(record, "f.b", "v");
    setStringForKey(record, ".b", "v");
    EXPECT_EQ(record, Dictionary::make({{"s", "text"}, {"f", Dictionary::make()}}));
}

TEST(SetStringForKey, RemovalTakesTheKeyWhole) {
    const Dictionary record = Dictionary::makeMutable({{"a", Dictionary::makeMutable({{"b", "v"}})}, {"a.b", "w"}});
    setStringForKey(record, "a.b", nullptr);
    EXPECT_EQ(record, Dictionary::make({{"a", Dictionary::make({{"b", "v"}})}}));
}

TEST(SetStringForKey, AnImmutableOrNullDictionaryStaysAsItIs) {
    const Dictionary fixed = Dictionary::make({{"k", "v"}});
    setStringForKey(fixed, "k", "w");
    setStringForKey(fixed, "k", nullptr);
    setStringForKey(Dictionary(), "k", "w");
    EXPECT_EQ(fixed, Dictionary::make({{"k", "v"}}));
}

TEST(SetIntegerForKey, StoresTheDigitsAsText) {
    const Dictionary record = Dictionary::makeMutable();
    setIntegerForKey(record, "n", -42);
    setIntegerForKey(record, String("m"), INT64_MIN);
    EXPECT_TRUE(record.valueForKey("n").isString());
    EXPECT_EQ(stringForKey(record, "n"), String("-42"));
    EXPECT_EQ(integerForKey(record, "m", 0), INT64_MIN);
    setIntegerForKey(record, "a.b", 1);
    EXPECT_EQ(record.count(), 2u);
}

TEST(SetFloatForKey, StoresThePlainTextUnrounded) {
    const Dictionary record = Dictionary::makeMutable();
    setFloatForKey(record, "a", 1.23456789);
    setFloatForKey3(record, "b", 2.0);
    EXPECT_EQ(record, Dictionary::make({{"a", "1.23456789"}, {"b", "2"}}));
    EXPECT_EQ(stringForFloat3(0.1), String("0.1"));
}

}  // namespace
}  // namespace vornaset
