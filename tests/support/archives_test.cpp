#include "support/archives.h"

#include <cmath>
#include <limits>
#include <random>

#include "support/printing.h"
#include "support/property_list.h"

namespace vornaset {
namespace {

Value roundTrip(const Value& value) {
    return objWithArchivedData(archivedDataWithObj(value));
}

class Point : public ArchivableObject {
  public:
    explicit Point(double x) : x_(x) {}
    String archiveClass() const override { return "TestPoint"; }
    Dictionary archiveFields() const override { return Dictionary::make({{"x", x_}}); }
    double x() const { return x_; }

  private:
    double x_;
};

TEST(Archives, EveryKindOfTextComesBack) {
    for (const char16_t* text :
         {u"", u" ", u"\n", u"plain", u" both ends ", u"a\r\nb\tc", u"<&>\"']]>", u"\u00E4\U0001F600", u"\xD800 lone",
          u"\xDC00", u"\x01\x1F\xFFFE\xFFFF", u"\uFEFFmark", u"trailing\n"}) {
        EXPECT_EQ(roundTrip(text), Value(text)) << String(text).utf8();
    }
    const String zero(std::u16string_view(u"a\0b", 3));
    EXPECT_EQ(roundTrip(zero), Value(zero));
}

TEST(Archives, EveryKindOfNumberComesBackAsItsKind) {
    for (const Number number : {Number(true), Number(false), Number(0), Number(-1), Number(INT64_MIN),
                                Number(INT64_MAX), Number(0.1), Number(0.1F), Number(-0.0), Number(5e-324),
                                Number(1e308), Number(std::numeric_limits<double>::infinity()), Number(3.0)}) {
        const Value back = roundTrip(number);
        ASSERT_TRUE(back.isNumber());
        EXPECT_EQ(back.number().kind(), number.kind());
        EXPECT_EQ(back.number(), number);
        EXPECT_EQ(std::signbit(back.number().doubleValue()), std::signbit(number.doubleValue()));
    }
    EXPECT_TRUE(std::isnan(roundTrip(std::nan("")).number().doubleValue()));
}

TEST(Archives, DataDatesAndNothingComeBack) {
    EXPECT_EQ(roundTrip(Data(std::string("\0\xFF<", 3))), Value(Data(std::string("\0\xFF<", 3))));
    EXPECT_EQ(roundTrip(Data(std::string())), Value(Data(std::string())));
    EXPECT_EQ(roundTrip(Date{1714564800.123456789}), Value(Date{1714564800.123456789}));
    EXPECT_EQ(roundTrip(Date{-1e12}), Value(Date{-1e12}));
    EXPECT_TRUE(roundTrip(Value::nothing()).isSameObject(Value::nothing()));
    EXPECT_FALSE(archivedDataWithObj(nullptr).isNull());
    EXPECT_TRUE(roundTrip(nullptr).isNull());
}

TEST(Archives, ContainersKeepOrderAndWhetherTheyChange) {
    const Dictionary inner = Dictionary::make({{"z", 1}, {"a", Array::makeMutable({"x", 2.5})}, {u"\x01", ""}});
    const Value back = roundTrip(Array::make({inner, Dictionary::makeMutable(), Array::make()}));
    ASSERT_TRUE(back.isArray());
    EXPECT_FALSE(back.array().isMutable());
    const Dictionary read = back.array()[0].dictionary();
    EXPECT_EQ(read, inner);
    EXPECT_FALSE(read.isMutable());
    EXPECT_EQ(read.keyAt(0), "z");
    EXPECT_EQ(read.keyAt(2), u"\x01");
    EXPECT_TRUE(read.valueForKey("a").array().isMutable());
    EXPECT_TRUE(back.array()[1].dictionary().isMutable());
    EXPECT_EQ(back.array()[2], Value(Array::make()));
}

TEST(Archives, ObjectsOfRegisteredClassesComeBack) {
    const Value object = std::make_shared<Point>(0.25);
    const Data data = archivedDataWithObj(Array::make({object}));
    EXPECT_TRUE(objWithArchivedData(data).isNull());
    registerArchiveClass("TestPoint", [](const Dictionary& fields) -> std::shared_ptr<Object> {
        return std::make_shared<Point>(fields.valueForKey("x").number().doubleValue());
    });
    const auto point = std::dynamic_pointer_cast<Point>(objWithArchivedData(data).array()[0].object());
    ASSERT_NE(point.get(), nullptr);
    EXPECT_EQ(point->x(), 0.25);
    registerArchiveClass("TestPoint", [](const Dictionary&) -> std::shared_ptr<Object> { throw 7; });
    EXPECT_TRUE(objWithArchivedData(data).isNull());
    registerArchiveClass("TestPoint", nullptr);
    EXPECT_TRUE(objWithArchivedData(data).isNull());
    EXPECT_THROW(registerArchiveClass(nullptr, nullptr), InvalidArgumentException);
}

TEST(Archives, WhatCanNotBeArchivedRaises) {
    class Other : public Object {};
    EXPECT_THROW(archivedDataWithObj(std::make_shared<Other>()), InvalidArgumentException);
    Array self = Array::makeMutable();
    self.add(self);
    EXPECT_THROW(archivedDataWithObj(self), InvalidArgumentException);
    self.removeAll();
}

TEST(Archives, BytesThatAreNoArchiveGiveNull) {
    for (const char* bytes : {"", "x", "<plist", "bplist00", "{\"a\":1}", "\xFF\xFE"}) {
        EXPECT_TRUE(objWithArchivedData(Data(std::string(bytes))).isNull()) << bytes;
    }
    EXPECT_TRUE(objWithArchivedData(nullptr).isNull());
}

TEST(Archives, TheOlderFormIsABarePropertyList) {
    const Dictionary value = Dictionary::make({{"a", Array::make({1, "x"})}});
    EXPECT_EQ(objWithArchivedData(propertyListData(value)), Value(value));
    EXPECT_EQ(objWithArchivedData(propertyListData("x")), Value("x"));
}

Value withEntries(const Array& entries) {
    return objWithArchivedData(
        propertyListData(Dictionary::make({{"$archiver", "Vornaset"}, {"$version", 1}, {"$objects", entries}})));
}

Dictionary array(const Value& members) {
    return Dictionary::make({{"class", "array"}, {"members", members}});
}

TEST(Archives, DamagedOrHostileOnesGiveNull) {
    EXPECT_EQ(withEntries(Array::make({array(Array::make({1, 2})), "x", "y"})), Value(Array::make({"x", "y"})));
    EXPECT_TRUE(withEntries(Array::make()).isNull());
    EXPECT_TRUE(withEntries(Array::make({array(Array::make({0}))})).isNull());
    EXPECT_TRUE(withEntries(Array::make({array(Array::make({5}))})).isNull());
    EXPECT_TRUE(withEntries(Array::make({array(Array::make({-1}))})).isNull());
    EXPECT_TRUE(withEntries(Array::make({array(Array::make({"x"}))})).isNull());
    // The same entry twice would grow with every level.
    EXPECT_TRUE(withEntries(Array::make({array(Array::make({1, 1})), "x"})).isNull());
    EXPECT_TRUE(withEntries(Array::make({Array::make()})).isNull());
    for (const char* name : {"", "unknown", "text", "real", "date", "dictionary", "object"}) {
        const Value read =
            withEntries(Array::make({Dictionary::make({{"class", name}, {"text", 1}, {"keys", Array::make({1})}})}));
        EXPECT_TRUE(read.isNull()) << name;
    }
    const Dictionary other =
        Dictionary::make({{"$archiver", "Other"}, {"$version", 1}, {"$objects", Array::make({"x"})}});
    EXPECT_TRUE(objWithArchivedData(propertyListData(other)).isNull());
    Array deep = Array::makeMutable();
    for (int level = 1; level <= 10000; ++level) deep.add(array(Array::make({level})));
    deep.add("end");
    EXPECT_TRUE(withEntries(deep).isNull());
}

TEST(Archives, RandomValuesComeBack) {
    std::mt19937 random(7);
    const std::function<Value(int)> make = [&](int depth) -> Value {
        switch (random() % (depth > 4 ? 5 : 7)) {
            case 0:
                return Number(static_cast<int64_t>(random()) - 1000000);
            case 1:
                return Number(std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 200) - 100));
            case 2: {
                std::u16string units(random() % 6, 0);
                for (char16_t& unit : units)
                    unit = static_cast<char16_t>(random() % 3 == 0 ? random() % 0x10000 : random() % 128);
                return String(units);
            }
            case 3:
                return Data(std::string(random() % 5, static_cast<char>(random())));
            case 4:
                return random() % 2 == 0 ? Value(random() % 2 == 0) : Value::nothing();
            case 5: {
                Array members = Array::makeMutable();
                for (size_t count = random() % 5; count > 0; --count) members.add(make(depth + 1));
                return members;
            }
            default: {
                Dictionary members = Dictionary::makeMutable();
                for (size_t count = random() % 5; count > 0; --count)
                    members.setValue(make(9).description(), make(depth + 1));
                return members;
            }
        }
    };
    for (int round = 0; round < 500; ++round) {
        const Value value = make(0);
        ASSERT_EQ(roundTrip(value), value) << value.description().utf8();
    }
}

}  // namespace
}  // namespace vornaset
