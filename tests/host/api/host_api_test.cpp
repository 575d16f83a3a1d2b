// The border by itself: value types, text, and the entry points without a host.
#include "host/api/host.h"

#include <gtest/gtest.h>

namespace {

std::u16string textOf(const char* utf8) {
    return PMString(utf8).CreateCFString();
}

TEST(UIDRef, NullConstantsHaveNoDatabaseAndNoUid) {
    EXPECT_EQ(UIDRef::gNull, UIDRef());
    EXPECT_EQ(kInvalidUIDRef, UIDRef::gNull);
    EXPECT_EQ(UIDRef::gNull.GetDataBase(), nullptr);
    EXPECT_EQ(UIDRef::gNull.GetUID(), kInvalidUID);
    EXPECT_NE(UIDRef(nullptr, UID(1)), UIDRef::gNull);
}

TEST(UIDList, KeepsItsOrderAndAnswersEmptyOutside) {
    UIDList list;
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_EQ(list.GetRef(0), UIDRef::gNull);
    EXPECT_EQ(list.GetRef(-1), UIDRef::gNull);
    list.Append(UID(7));
    UIDList more;
    more.Append(UID(5));
    more.Append(UID(7));
    list.Append(more);
    ASSERT_EQ(list.Length(), 3);
    EXPECT_EQ(list[0], UID(7));
    EXPECT_EQ(list[1], UID(5));
    EXPECT_EQ(list[3], kInvalidUID);
    EXPECT_EQ(list.GetRef(2), UIDRef(nullptr, UID(7)));
    EXPECT_TRUE(list.Contains(UID(5)));
    EXPECT_FALSE(list.Contains(UID(6)));
}

TEST(UIDList, OfNoObjectIsEmpty) {
    const UIDList list(static_cast<IPMUnknown*>(nullptr));
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_EQ(list.GetDataBase(), nullptr);
}

TEST(PMRect, UnionAndSizes) {
    PMRect rect(1, 2, 3, 4);
    rect.Union(PMRect(0, 3, 2, 9));
    EXPECT_EQ(rect, PMRect(0, 2, 3, 9));
    rect.SetWidth(10);
    rect.SetHeight(1);
    EXPECT_EQ(rect, PMRect(0, 2, 10, 3));
}

struct Decoding {
    const char* bytes;
    std::u16string text;
};

TEST(BorderStrings, DecodeUtf8AndReplaceWhatIsNone) {
    const Decoding table[] = {
        {"", u""},
        {"abc", u"abc"},
        {"\xC3\xA4", u"\u00E4"},
        {"\xE2\x82\xAC", u"\u20AC"},
        {"\xF0\x9F\x98\x80", u"\U0001F600"},
        {"\xEF\xBF\xBD", u"\uFFFD"},
        {"\xF4\x8F\xBF\xBF", u"\U0010FFFF"},
        {"\x80", u"\uFFFD"},
        {"a\xC3", u"a\uFFFD"},
        {"\xC3z", u"\uFFFDz"},
        {"\xC0\xAF", u"\uFFFD\uFFFD"},
        {"\xE0\x80\x80", u"\uFFFD\uFFFD\uFFFD"},
        {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"\xE2\x82z", u"\uFFFDz"},
        {"\xFF", u"\uFFFD"},
    };
    for (const Decoding& row : table) {
        EXPECT_EQ(textOf(row.bytes), row.text) << row.bytes;
        EXPECT_EQ(WideString(row.bytes).View(), row.text) << row.bytes;
    }
    EXPECT_TRUE(PMString(static_cast<const char*>(nullptr)).IsEmpty());
}

TEST(BorderStrings, ConvertIntoEachOther) {
    PMString name("Text");
    name.AppendW(u'!');
    EXPECT_EQ(name.ToWideString(), WideString("Text!"));
    EXPECT_EQ(PMString(WideString("Text!")), name);
    EXPECT_EQ(WideString("\xF0\x9F\x98\x80").Length(), 2);
    name.SetCFString(u"other");
    EXPECT_EQ(name, PMString("other"));
}

TEST(EntryPoints, AnswerEmptyWithoutAHost) {
    IHost* before = InstallHost(nullptr);
    EXPECT_EQ(GetExecutionContextSession(), nullptr);
    EXPECT_EQ(UtilsBoss::QueryUtils(IID_ITEXTUTILS), nullptr);
    EXPECT_EQ(CmdUtils::CreateCommand(kDeleteStoryCmdBoss), nullptr);
    EXPECT_EQ(CmdUtils::ProcessCommand(nullptr), kFailure);
    EXPECT_FALSE(DBUtils::IsValidDataBase(nullptr));
    EXPECT_EQ(GetUIDRef(nullptr), UIDRef::gNull);
    EXPECT_EQ(GetClass(nullptr, UID(1)), ClassID());
    EXPECT_FALSE(Utils<ITextUtils>());
    InstallHost(before);
}

TEST(EntryPoints, AllocatorGivesMemoryForEverySize) {
    void* none = K2Memory::RTLCompatibleNewDelegate(0);
    void* some = K2Memory::RTLCompatibleNewDelegate(100);
    EXPECT_NE(none, nullptr);
    EXPECT_NE(some, nullptr);
    K2Memory::RTLCompatibleDeleteDelegate(none);
    K2Memory::RTLCompatibleDeleteDelegate(some);
    K2Memory::RTLCompatibleDeleteDelegate(nullptr);
#ifndef __SANITIZE_ADDRESS__  // whose malloc ends the process instead of giving null
    EXPECT_THROW(K2Memory::RTLCompatibleNewDelegate(SIZE_MAX / 2), std::bad_alloc);
#endif
}

}  // namespace
