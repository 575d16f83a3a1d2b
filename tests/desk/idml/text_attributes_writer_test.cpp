// Every text attribute that is written reads as it was.
#include "desk/idml/text_attributes_writer.h"

#include <gtest/gtest.h>

#include "desk/idml/text_attributes_reader.h"

namespace desk {
namespace {

template <class T>
T other(const T& initial);
template <>
std::string other(const std::string&) {
    return "Some \"<&> name";
}
template <>
double other(const double& initial) {
    return initial + 1.25;
}
template <>
int other(const int& initial) {
    return initial + 1;
}
template <>
bool other(const bool& initial) {
    return !initial;
}
template <>
Leading other(const Leading&) {
    return {false, 13.5};
}
template <>
std::u16string other(const std::u16string&) {
    return u"\u2022";
}
template <>
std::vector<TabStop> other(const std::vector<TabStop>&) {
    return {{10.5, TabAlignment::Right, u"", u"."}, {90, TabAlignment::Character, u",", u"<"}};
}
template <class T>
T other(const T& initial) {
    return static_cast<T>(static_cast<int>(initial) == 1 ? 2 : 1);
}

TextAttributes readBack(const TextAttributes& attributes) {
    const WrittenAttributes written = writeTextAttributes(attributes);
    const std::string xml = "<R" + written.tag + "><Properties>" + written.properties + "</Properties></R>";
    Document document;
    const auto package = Package::fromBytes("<R/>", "test");
    const Reading reading(document, *package);
    const XmlDocument parsed = XmlDocument::parse(xml, "test", "test");
    return readTextAttributes(reading, parsed.root());
}

TEST(TextAttributesOut, EachAttributeAloneReadsAsItWas) {
#define DESK_ATTRIBUTE(type, name, initial)                       \
    if (std::string(#name) != "hiddenByCondition") {              \
        TextAttributes attributes;                                \
        attributes.name = other<type>(initial);                   \
        EXPECT_TRUE(readBack(attributes) == attributes) << #name; \
        attributes.name = initial;                                \
        EXPECT_TRUE(readBack(attributes) == attributes) << #name; \
    }
#include "desk/model/attributes.def"
#undef DESK_ATTRIBUTE
}

TEST(TextAttributesOut, NothingIsWrittenForAnEmptySet) {
    const WrittenAttributes written = writeTextAttributes({});
    EXPECT_EQ(written.tag, "");
    EXPECT_EQ(written.properties, "");
}

TEST(TextAttributesOut, BulletsBeyondTheBasicPlaneAndListTextWithTabsReadAsTheyWere) {
    TextAttributes attributes;
    attributes.bulletCharacter = u"\U0001F600";
    attributes.bulletTextAfter = u"\t^\u2003";
    attributes.numberingExpression = u"^#.^t";
    EXPECT_TRUE(readBack(attributes) == attributes);
}

}  // namespace
}  // namespace desk
