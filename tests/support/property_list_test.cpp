#include "support/property_list.h"

#include <cmath>

#include "support/printing.h"

namespace vornaset {
namespace {

TEST(PropertyList, EveryKindSurvivesTheWayThroughXml) {
    const Dictionary job = Dictionary::make({{"text", u"\u00E4 <&> \U0001F600 \" line\nnext"},
                                             {"empty", ""},
                                             {"spaces", "  x  "},
                                             {"integer", INT64_MIN},
                                             {"large", INT64_MAX},
                                             {"real", 1.0 / 3},
                                             {"small", 1e-300},
                                             {"yes", true},
                                             {"data", Data(std::string("\0\x01\xFF", 3))},
                                             {"nodata", Data("")},
                                             {"date", Date{1714564800}},
                                             {"array", Array::make({1, Array::make(), Dictionary::make()})},
                                             {"a key & more", "v"}});
    const Value read = propertyListWithData(propertyListData(job));
    EXPECT_EQ(read, Value(job));
    EXPECT_EQ(read.dictionary().keys(), job.keys());
    EXPECT_EQ(read.dictionary().valueForKey("yes").number().kind(), Number::Kind::boolean);
}

TEST(PropertyList, ContainersComeBackMutable) {
    const Value read = propertyListWithData(propertyListData(Dictionary::make({{"rows", Array::make({1})}})));
    EXPECT_TRUE(read.dictionary().isMutable());
    EXPECT_TRUE(read.dictionary().valueForKey("rows").array().isMutable());
}

TEST(PropertyList, ASingleKeepsItsDigits) {
    EXPECT_EQ(propertyListWithData(propertyListData(Array::make({0.1f}))), Value(Array::make({0.1})));
}

TEST(PropertyList, IsXml) {
    const std::string text(propertyListData("x").view());
    EXPECT_TRUE(text.starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>")) << text;
    EXPECT_NE(text.find("<string>x</string>"), std::string::npos);
}

TEST(PropertyList, CharactersThatXmlDoesNotHaveAreReplaced) {
    const Value read = propertyListWithData(propertyListData(String(std::u16string{u'a', 0, 1, 0xD800})));
    EXPECT_EQ(read.string(), String(u"a\uFFFD\uFFFD\uFFFD"));
}

TEST(PropertyList, IsNullForWhatItCanNotHold) {
    EXPECT_TRUE(propertyListData(Value()).isNull());
    EXPECT_TRUE(propertyListData(Value::nothing()).isNull());
    EXPECT_TRUE(propertyListData(Array::make({1, Value::nothing()})).isNull());
    EXPECT_TRUE(propertyListData(HUGE_VAL).isNull());
    Array loop = Array::makeMutable();
    loop.add(loop);
    EXPECT_TRUE(propertyListData(loop).isNull());
    loop.removeAll();
}

TEST(PropertyList, ForeignTextThatIsNoneIsNull) {
    for (const char* text :
         {"", "nonsense", "<plist version=\"1.0\"><dict><key>a</key>", "<plist", "<plist version=\"1.0\"><string>a",
          "<!DOCTYPE plist [<!ENTITY x SYSTEM 'file:///etc/hostname'>]><plist><string>&x;</string></plist>",
          "<!DOCTYPE plist [<!ENTITY x \"y\">]><plist version=\"1.0\"><string>&x;</string></plist>", "bplist00"}) {
        EXPECT_TRUE(propertyListWithData(Data(text)).isNull()) << text;
    }
    EXPECT_TRUE(propertyListWithData(Data()).isNull());
}

TEST(PropertyList, DepthHasALimit) {
    const auto nested = [](int depth, const std::string& between) {
        std::string text = "<plist version=\"1.0\">";
        for (int level = 0; level < depth; ++level) text += between + "<array>";
        for (int level = 0; level < depth; ++level) text += "</array>";
        return Data(text + "</plist>");
    };
    EXPECT_FALSE(propertyListWithData(nested(200, "")).isNull());
    EXPECT_TRUE(propertyListWithData(nested(300, "")).isNull());
    EXPECT_TRUE(propertyListWithData(nested(200000, "")).isNull());
    EXPECT_TRUE(propertyListWithData(nested(200000, "<!-- </array> -->")).isNull());
    EXPECT_TRUE(propertyListWithData(nested(200000, "<?x </array> ?>")).isNull());
}

}  // namespace
}  // namespace vornaset
