#include "support/printing.h"

namespace vornaset {
namespace {

/// Numbers squared, told on demand; counts how often it was asked.
class Squares : public ArraySource {
  public:
    explicit Squares(size_t count) : count_(count) {}
    size_t count() const override { return count_; }
    Value objectAt(size_t index) const override {
        ++asked;
        return static_cast<int64_t>(index * index);
    }
    mutable size_t asked = 0;

  private:
    size_t count_;
};

/// A row of a table: the keys are the table's, each cell is made when it is asked for.
class Row : public DictionarySource {
  public:
    Row(std::shared_ptr<const KeyTable> columns, int64_t number) : columns_(std::move(columns)), number_(number) {}
    size_t count() const override { return columns_->count(); }
    String keyAt(size_t index) const override { return columns_->keyAt(index); }
    Value valueAt(size_t index) const override { return columns_->keyAt(index) + Number(number_).text(); }
    Value find(const String& key) const override {
        const size_t index = columns_->indexOf(key);
        return index == KeyTable::npos ? Value() : valueAt(index);
    }

  private:
    std::shared_ptr<const KeyTable> columns_;
    int64_t number_;
};

class Person : public Object {
  public:
    String description() const override { return "a person"; }
    Value valueForKey(const String& key) const override {
        return key == String("name") ? Value("Ann") : Object::valueForKey(key);
    }
};

TEST(Array, HandlesShareTheEntries) {
    Array array = Array::makeMutable({1, "two"});
    Array other = array;
    other.add(3.5);
    EXPECT_EQ(array.count(), 3u);
    EXPECT_TRUE(array.isSameObject(other));
    EXPECT_FALSE(array.isSameObject(array.mutableCopy()));
    EXPECT_EQ(array, array.mutableCopy());
}

TEST(Array, TextsInBracesAreEntries) {
    EXPECT_EQ(Array::make({"a", "b"}).count(), 2u);
    EXPECT_EQ(Array::make({"a", "b"})[1].string(), String("b"));
    EXPECT_EQ(Array::makeMutable({5}).count(), 1u);
}

TEST(Array, NullDiffersFromEmptyAndAnswersNothing) {
    Array null;
    EXPECT_TRUE(null.isNull());
    EXPECT_FALSE(Array::make().isNull());
    EXPECT_EQ(null.count(), 0u);
    EXPECT_TRUE(null.objectAt(7).isNull());
    EXPECT_FALSE(null.isMutable());
    null.add(1);
    EXPECT_TRUE(null.isNull());
    EXPECT_FALSE(null == Array::make());
    EXPECT_TRUE(Value(null).isNull());
    EXPECT_TRUE(null.mutableCopy().isNull());
}

TEST(Array, AnIndexOutsideRaisesWithBothNumbers) {
    const Array array = Array::make({1, 2, 3, 4, 5, 6});
    EXPECT_RAISES(array.objectAt(7), RangeException, "index 7 beyond the end of an array of 6");
    EXPECT_THROW(array.objectAt(6), RangeException);
    Array changeable = array.mutableCopy();
    EXPECT_THROW(changeable.insert(7, 1), RangeException);
    EXPECT_THROW(changeable.replace(6, 1), RangeException);
    EXPECT_THROW(changeable.removeAt(6), RangeException);
    EXPECT_THROW(changeable.exchange(0, 6), RangeException);
    EXPECT_EQ(changeable, array);
}

TEST(Array, ANullEntryRaises) {
    Array array = Array::makeMutable();
    EXPECT_THROW(array.add(nullptr), InvalidArgumentException);
    EXPECT_THROW(array.insert(0, Value()), InvalidArgumentException);
    EXPECT_THROW(Array::make({1, nullptr}), InvalidArgumentException);
    EXPECT_TRUE(array.isEmpty());
}

TEST(Array, AnImmutableOneTakesNoEdits) {
    Array array = Array::make({1});
    EXPECT_RAISES(array.add(2), UnrecognizedOperation, "add of an immutable array");
    EXPECT_THROW(array.removeAll(), UnrecognizedOperation);
    EXPECT_FALSE(array.isMutable());
}

TEST(Array, EditsInPlace) {
    Array array = Array::makeMutable({"a", "c"});
    array.insert(1, "b");
    array.insert(3, "d");
    array.exchange(0, 3);
    array.replace(1, "B");
    array.removeAt(2);
    EXPECT_EQ(array, Array::make({"d", "B", "a"}));
    std::string walked;
    for (const Value& entry : array) walked += entry.string().utf8();
    EXPECT_EQ(walked, "dBa");
    array.removeAll();
    EXPECT_TRUE(array.isEmpty());
}

TEST(ArrayView, ReadsOnlyWhatIsAskedFor) {
    const auto source = std::make_shared<Squares>(1000000);
    const Array array = Array::view(source);
    EXPECT_TRUE(array.isMutable());
    EXPECT_TRUE(array.isView());
    EXPECT_EQ(array.count(), 1000000u);
    EXPECT_EQ(source->asked, 0u);
    EXPECT_EQ(array.objectAt(1000).number(), Number(1000000));
    EXPECT_EQ(source->asked, 1u);
    EXPECT_RAISES(array.objectAt(1000000), RangeException, "index 1000000 beyond the end of an array of 1000000");
}

TEST(ArrayView, TheFirstEditReadsItWhole) {
    const auto source = std::make_shared<Squares>(4);
    Array array = Array::view(source);
    array.add(100);
    EXPECT_FALSE(array.isView());
    EXPECT_EQ(array, Array::make({0, 1, 4, 9, 100}));
    EXPECT_EQ(source->asked, 4u);
    EXPECT_EQ(source.use_count(), 1);
}

TEST(ArrayView, AFixedOneStaysAView) {
    Array array = Array::view(std::make_shared<Squares>(4), Mutability::fixed);
    EXPECT_FALSE(array.isMutable());
    EXPECT_THROW(array.add(1), UnrecognizedOperation);
    EXPECT_TRUE(array.isView());
    EXPECT_THROW(Array::view(nullptr), InvalidArgumentException);
}

TEST(Dictionary, KeepsTheOrderOfFirstInsertion) {
    Dictionary dictionary = Dictionary::makeMutable({{"b", 1}, {"a", 2}});
    dictionary.setValue("c", 3);
    dictionary.setValue("b", 4);
    EXPECT_EQ(dictionary.keys(), Array::make({"b", "a", "c"}));
    EXPECT_EQ(dictionary.valueAt(0).number(), Number(4));
    dictionary.removeKey("b");
    dictionary.setValue("b", 5);
    EXPECT_EQ(dictionary.keys(), Array::make({"a", "c", "b"}));
}

TEST(Dictionary, HandlesShareTheEntries) {
    Dictionary dictionary = Dictionary::makeMutable();
    Dictionary other = dictionary;
    other.setValue("k", "v");
    EXPECT_EQ(dictionary.valueForKey("k").string(), String("v"));
    EXPECT_TRUE(dictionary.isSameObject(other));
    EXPECT_FALSE(dictionary.isSameObject(dictionary.mutableCopy()));
}

TEST(Dictionary, NullDiffersFromEmptyAndAnswersNothing) {
    Dictionary null;
    EXPECT_TRUE(null.isNull());
    EXPECT_TRUE(null.valueForKey("k").isNull());
    EXPECT_FALSE(null.contains("k"));
    EXPECT_TRUE(null.keyAt(3).isNull());
    EXPECT_TRUE(null.valueAt(3).isNull());
    EXPECT_TRUE(null.keys().isNull());
    null.setValue("k", 1);
    null.removeKey("k");
    EXPECT_TRUE(null.isNull());
    EXPECT_FALSE(null == Dictionary::make());
}

TEST(Dictionary, NullKeysAndValuesRaise) {
    Dictionary dictionary = Dictionary::makeMutable();
    EXPECT_THROW(dictionary.setValue(nullptr, 1), InvalidArgumentException);
    EXPECT_RAISES(dictionary.setValue("Name", nullptr), InvalidArgumentException,
                  "a null value can't be set for the key \"Name\"");
    EXPECT_TRUE(dictionary.valueForKey(nullptr).isNull());
    EXPECT_TRUE(dictionary.isEmpty());
    EXPECT_THROW(dictionary.keyAt(0), RangeException);
}

TEST(Dictionary, AnImmutableOneTakesNoEdits) {
    Dictionary dictionary = Dictionary::make({{"k", 1}});
    EXPECT_RAISES(dictionary.setValue("k", 2), UnrecognizedOperation, "setValue of an immutable dictionary");
    EXPECT_THROW(dictionary.removeKey("k"), UnrecognizedOperation);
    EXPECT_EQ(dictionary.valueForKey("k").number(), Number(1));
}

TEST(Dictionary, FindsEveryKeyThroughGrowthAndRemoval) {
    Dictionary dictionary = Dictionary::makeMutable();
    for (int number = 0; number < 500; ++number) dictionary.setValue(Number(number).text(), number);
    for (int number = 0; number < 500; number += 3) dictionary.removeKey(Number(number).text());
    for (int number = 0; number < 500; ++number) {
        const Value value = dictionary.valueForKey(Number(number).text());
        ASSERT_EQ(value.isNull(), number % 3 == 0) << number;
        if (value.isNull()) continue;
        ASSERT_EQ(value.number(), Number(number));
    }
    EXPECT_EQ(dictionary.count(), 333u);
    dictionary.removeAll();
    EXPECT_TRUE(dictionary.valueForKey("1").isNull());
    dictionary.setValue("1", 1);
    EXPECT_EQ(dictionary.count(), 1u);
}

TEST(Dictionary, EqualityIgnoresTheOrder) {
    EXPECT_EQ(Dictionary::make({{"a", 1}, {"b", "x"}}), Dictionary::make({{"b", "x"}, {"a", 1}}));
    EXPECT_FALSE(Dictionary::make({{"a", 1}}) == Dictionary::make({{"a", 2}}));
    EXPECT_FALSE(Dictionary::make({{"a", 1}}) == Dictionary::make({{"b", 1}}));
    EXPECT_FALSE(Dictionary::make({{"a", 1}}) == Dictionary::make({{"a", "1"}}));
}

TEST(DictionaryView, RowsShareTheirKeys) {
    const auto columns = std::make_shared<const KeyTable>(std::vector<String>{"Name", "City", "Name"});
    EXPECT_EQ(columns->count(), 2u);
    const Dictionary row = Dictionary::view(std::make_shared<Row>(columns, 7));
    EXPECT_TRUE(row.isView());
    EXPECT_FALSE(row.isMutable());
    EXPECT_EQ(row.valueForKey("City").string(), String("City7"));
    EXPECT_TRUE(row.valueForKey("Town").isNull());
    EXPECT_TRUE(row.contains("Name"));
    EXPECT_FALSE(row.contains("Town"));
    EXPECT_TRUE(row.keyAt(0).isSameObject(columns->keyAt(0)));
    EXPECT_EQ(row, Dictionary::make({{"Name", "Name7"}, {"City", "City7"}}));
    EXPECT_RAISES(row.valueAt(2), RangeException, "index 2 beyond the end of a dictionary of 2");
}

TEST(DictionaryView, TheFirstEditReadsItWhole) {
    const auto columns = std::make_shared<const KeyTable>(std::vector<String>{"Name", "City"});
    Dictionary row = Dictionary::view(std::make_shared<Row>(columns, 7), Mutability::changeable);
    row.setValue("City", "Ulm");
    EXPECT_FALSE(row.isView());
    EXPECT_EQ(row, Dictionary::make({{"Name", "Name7"}, {"City", "Ulm"}}));
    EXPECT_THROW(Dictionary::view(nullptr), InvalidArgumentException);
}

TEST(KeyTable, FindsAmongFewAndMany) {
    KeyTable table;
    EXPECT_EQ(table.indexOf("0"), KeyTable::npos);
    for (size_t number = 0; number < 300; ++number) {
        table.append(Number(number).text());
        ASSERT_EQ(table.indexOf(Number(number).text()), number);
        ASSERT_EQ(table.indexOf("0"), 0u);
        ASSERT_EQ(table.indexOf("x"), KeyTable::npos);
    }
    table.removeAt(0);
    EXPECT_EQ(table.indexOf("0"), KeyTable::npos);
    EXPECT_EQ(table.indexOf("299"), 298u);
    EXPECT_EQ(table.indexOf(nullptr), KeyTable::npos);
    EXPECT_THROW(table.append(nullptr), InvalidArgumentException);
}

TEST(Value, TellsItsKind) {
    EXPECT_TRUE(Value().isNull());
    EXPECT_TRUE(Value(String()).isNull());
    EXPECT_TRUE(Value(Data()).isNull());
    EXPECT_TRUE(Value(std::shared_ptr<Object>()).isNull());
    EXPECT_TRUE(Value("").isString());
    EXPECT_TRUE(Value(u"x").isString());
    EXPECT_TRUE(Value(true).isNumber());
    EXPECT_EQ(Value(true).number().kind(), Number::Kind::boolean);
    EXPECT_TRUE(Value(Date{1}).isDate());
    EXPECT_TRUE(Value(std::make_shared<Person>()).isObject());
    EXPECT_TRUE(Value(5).string().isNull());
    EXPECT_EQ(Value("5").number(), Number(0));
    EXPECT_TRUE(Value("5").array().isNull());
}

TEST(Value, EqualityAndSamenessDiffer) {
    const Value text("x");
    EXPECT_EQ(text, Value("x"));
    EXPECT_FALSE(text.isSameObject(Value("x")));
    EXPECT_TRUE(text.isSameObject(Value(text)));
    EXPECT_FALSE(Value(1) == Value("1"));
    EXPECT_TRUE(Value(1).isSameObject(Value(1)));
    const Array array = Array::make({1});
    EXPECT_TRUE(Value(array).isSameObject(array));
    EXPECT_FALSE(Value(array).isSameObject(Array::make({1})));
    EXPECT_TRUE(Value::nothing().isSameObject(Value::nothing()));
}

TEST(Value, KeyValueCodingAsksEachKind) {
    const Value person = std::make_shared<Person>();
    EXPECT_EQ(person.valueForKey("name").string(), String("Ann"));
    EXPECT_RAISES(person.valueForKey("age"), UnrecognizedOperation, "the object a person has no key \"age\"");
    EXPECT_TRUE(Value(Dictionary::make()).valueForKey("name").isNull());
    EXPECT_TRUE(Value().valueForKey("name").isNull());
    EXPECT_RAISES(Value(5).valueForKey("name"), UnrecognizedOperation, "the value 5 has no key \"name\"");
    EXPECT_EQ(Value(Array::make({person})).valueForKey("name").array(), Array::make({"Ann"}));
    EXPECT_THROW(Value(Array::make({Dictionary::make()})).valueForKey("name"), InvalidArgumentException);
}

TEST(Value, DescribesItselfForAPerson) {
    EXPECT_EQ(Value().description(), String("(null)"));
    EXPECT_EQ(Value("a b").description(), String("a b"));
    EXPECT_EQ(Value(Data(std::string("\0\xFF", 2))).description(), String("<00ff>"));
    EXPECT_EQ(Value(Array::make()).description(), String("(\n)"));
    const Dictionary dictionary = Dictionary::make({{"k", Array::make({1, "two words"})}, {"a b", Dictionary::make()}});
    EXPECT_EQ(Value(dictionary).description(), String("{\n"
                                                      "    k = (\n"
                                                      "        1,\n"
                                                      "        \"two words\"\n"
                                                      "    );\n"
                                                      "    \"a b\" = {\n"
                                                      "    };\n"
                                                      "}"));
    EXPECT_EQ(Value(std::make_shared<Person>()).description(), String("a person"));
    EXPECT_EQ(Value::nothing().description(), String("<null>"));
}

TEST(Value, AnArrayThatHoldsItselfHasADescription) {
    Array array = Array::makeMutable();
    array.add(array);
    EXPECT_NE(Value(array).description().find("..."), String::npos);
    array.removeAll();
}

TEST(Exception, SaysItsNameAndReason) {
    const InvalidArgumentException failure("no value");
    EXPECT_STREQ(failure.what(), "InvalidArgumentException: no value");
    EXPECT_EQ(exceptionWithReason("why").name(), "Vornaset");
    const std::exception& base = failure;
    EXPECT_NE(dynamic_cast<const Exception*>(&base), nullptr);
}

}  // namespace
}  // namespace vornaset
