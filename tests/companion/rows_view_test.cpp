#include "companion/rows_view.h"

#include <gtest/gtest.h>

#include <cstring>

#include "companion/csv_reader.h"
#include "support/dictionary_access.h"

namespace companion {
namespace {

using vornaset::Array;
using vornaset::Dictionary;
using vornaset::String;

Array view(std::string_view text, std::size_t rows, std::size_t padding) {
    ByteBuffer bytes(text.size());
    std::memcpy(bytes.data(), text.data(), text.size());
    return rowsView(std::make_shared<const DataTable>(readData(std::move(bytes), "t.csv")), rows, padding);
}

TEST(RowsView, GivesEachRecordAsADictionary) {
    Array rows = view("name,#name,x\nMüller,Bold,\"say \"\"a\"\"\nb\"\nb,,c\n", 2, 0);
    ASSERT_EQ(rows.count(), 2u);
    Dictionary row = rows[0].dictionary();
    EXPECT_EQ(row.count(), 3u);
    EXPECT_EQ(row.keyAt(1), String("#name")) << "a style column is an ordinary key";
    EXPECT_EQ(row.valueForKey("name").string(), String("Müller"));
    EXPECT_EQ(row.valueForKey("#name").string(), String("Bold"));
    EXPECT_EQ(row.valueForKey("x").string(), String("say \"a\"\u2028b"));
    EXPECT_EQ(row.valueAt(2).string(), String("say \"a\"\u2028b"));
    EXPECT_TRUE(row.valueForKey("y").isNull());
    EXPECT_TRUE(row.valueForKey("").isNull());
    EXPECT_EQ(rows[1].dictionary().valueForKey("#name").string(), String(""));
    EXPECT_THROW(rows[2], vornaset::RangeException);
}

TEST(RowsView, IsWhatTheMergeTakesAsRows) {
    Array rows = view("a\n1\n", 1, 1);
    Dictionary job = Dictionary::makeMutable({{"rows", rows}});
    Array taken = vornaset::arrayForKey(job, "rows", Array());
    EXPECT_TRUE(taken.isSameObject(rows)) << "it counts as a mutable array, and nothing is copied";
    EXPECT_TRUE(taken.isView());
}

TEST(RowsView, PaddedRowsHaveEveryColumnEmpty) {
    Array rows = view("a,,b\n1,2,3\n", 1, 2);
    ASSERT_EQ(rows.count(), 3u);
    for (std::size_t index : {1u, 2u}) {
        Dictionary row = rows[index].dictionary();
        EXPECT_EQ(row.count(), 2u) << "the column without name isn't there";
        EXPECT_EQ(row.valueForKey("a").string(), String(""));
        EXPECT_FALSE(row.valueForKey("a").isNull()) << "empty, not absent: a rule of that name stays out";
        EXPECT_EQ(row.valueAt(1).string(), String(""));
        EXPECT_TRUE(row.valueForKey("c").isNull());
    }
    EXPECT_THROW(rows[3], vornaset::RangeException);
}

TEST(RowsView, ShowsNoRecordBehindTheLastOfTheRun) {
    Array rows = view("a\n1\n2\n3\n", 2, 0);
    EXPECT_EQ(rows.count(), 2u);
    EXPECT_THROW(rows[2], vornaset::RangeException);
}

TEST(RowsView, KeepsTheTableAlive) {
    Array rows = view("a\n1\n", 1, 0);
    Dictionary row = rows[0].dictionary();
    rows = Array();
    EXPECT_EQ(row.valueForKey("a").string(), String("1"));
}

}  // namespace
}  // namespace companion
