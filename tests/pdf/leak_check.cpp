// Every test of the toolkit ends with as many objects as it began with.

#include <gtest/gtest.h>

#include "pdf/pdf_objects.h"

namespace vornaset {

namespace {

class LeakCheck : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override { before_ = MyPDFObj::allocated(); }
    void OnTestEnd(const testing::TestInfo& test) override {
        EXPECT_EQ(MyPDFObj::allocated(), before_)
            << test.test_suite_name() << "." << test.name() << " left objects behind";
    }

    int64_t before_ = 0;
};

const bool isListening = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new LeakCheck());
    return true;
}();

TEST(LeakCheck, Listens) {
    EXPECT_TRUE(isListening);
}

}  // namespace

}  // namespace vornaset
