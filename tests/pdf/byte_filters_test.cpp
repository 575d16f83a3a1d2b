#include "pdf/byte_filters.h"

#include <gtest/gtest.h>

#include "pdf/encoders.h"

namespace vornaset {
namespace {

constexpr size_t plenty = 1 << 24;

void expectUndone(const UndoneBytes& undone, const std::string& bytes, UndoOutcome outcome) {
    EXPECT_EQ(undone.bytes, bytes);
    EXPECT_EQ(undone.outcome, outcome);
}

TEST(ASCIIHexFilter, ReadsPairsOfDigitsWithWhiteSpaceBetween) {
    expectUndone(undoASCIIHex("48 65\n6C6c\t6F>", plenty), "Hello", UndoOutcome::whole);
}

TEST(ASCIIHexFilter, CompletesAnOddDigitWithAZero) {
    expectUndone(undoASCIIHex("48657>", plenty), "Hep", UndoOutcome::whole);
}

TEST(ASCIIHexFilter, GivesWhatStoodBeforeTheEndOrAForeignCharacter) {
    expectUndone(undoASCIIHex("4865", plenty), "He", UndoOutcome::partial);
    expectUndone(undoASCIIHex("48!65>", plenty), "H", UndoOutcome::partial);
    expectUndone(undoASCIIHex("", plenty), "", UndoOutcome::partial);
}

TEST(ASCII85Filter, ReadsGroupsAndTheShortFormOfZeros) {
    expectUndone(undoASCII85("87cURDZ~>", plenty), "Hello", UndoOutcome::whole);
    expectUndone(undoASCII85("<~87cUR\nDZ~>", plenty), "Hello", UndoOutcome::whole);
    expectUndone(undoASCII85("z~>", plenty), std::string(4, '\0'), UndoOutcome::whole);
    expectUndone(undoASCII85("~>", plenty), "", UndoOutcome::whole);
}

TEST(ASCII85Filter, DropsALonelyLastCharacter) {
    expectUndone(undoASCII85("87cUR8~>", plenty), "Hell", UndoOutcome::whole);
}

TEST(ASCII85Filter, GivesWhatStoodBeforeTheEndOrAForeignCharacter) {
    expectUndone(undoASCII85("87cURDZ", plenty), "Hello", UndoOutcome::partial);
    expectUndone(undoASCII85("87cUR\x7F"
                             "DZ~>",
                             plenty),
                 "Hell", UndoOutcome::partial);
    expectUndone(undoASCII85("87z~>", plenty), "H", UndoOutcome::partial);
}

TEST(RunLengthFilter, ReadsLiteralsAndRuns) {
    expectUndone(undoRunLength(std::string("\x02"
                                           "abc\xFEx\x80",
                                           7),
                               plenty),
                 "abcxxx", UndoOutcome::whole);
    expectUndone(undoRunLength(std::string("\x80", 1), plenty), "", UndoOutcome::whole);
}

TEST(RunLengthFilter, GivesWhatStoodBeforeTheEnd) {
    expectUndone(undoRunLength(std::string("\x05"
                                           "ab",
                                           3),
                               plenty),
                 "ab", UndoOutcome::partial);
    expectUndone(undoRunLength(std::string("\x00"
                                           "a\xFE",
                                           3),
                               plenty),
                 "a", UndoOutcome::partial);
}

TEST(LZWFilter, ReadsTheExampleOfTheStandard) {
    // ISO 32000-1, 7.4.4.2, example 1 and 2.
    const std::string encoded("\x80\x0B\x60\x50\x22\x0C\x0C\x85\x01", 9);
    expectUndone(undoLZW(encoded, LZWChange::early, plenty), "-----A---B", UndoOutcome::whole);
}

TEST(LZWFilter, ReadsTablesOfEverySizeWithBothChanges) {
    std::mt19937 random(44);
    for (size_t size : {0, 1, 2, 250, 253, 254, 255, 256, 257, 258, 600, 1000, 2000, 3000, 5000, 20'000}) {
        for (unsigned values : {1U, 2U, 16U, 256U}) {
            const std::string bytes = encoders::randomBytes(random, size, values);
            for (bool early : {true, false}) {
                const UndoneBytes undone =
                    undoLZW(encoders::lzw(bytes, early), early ? LZWChange::early : LZWChange::late, plenty);
                ASSERT_EQ(undone.bytes, bytes) << size << " bytes of " << values << " values, early " << early;
                ASSERT_EQ(undone.outcome, UndoOutcome::whole);
            }
        }
    }
}

TEST(LZWFilter, StopsAtACodeThatTheTableDoesNotHave) {
    // Clear, "a", 300, end, nine bits each.
    const std::string encoded("\x80\x18\x65\x96\x02\x02", 6);
    const UndoneBytes undone = undoLZW(encoded, LZWChange::early, plenty);
    expectUndone(undone, "a", UndoOutcome::partial);
}

TEST(LZWFilter, GivesWhatStoodBeforeTheEnd) {
    const std::string bytes(1000, 'x');
    std::string encoded = encoders::lzw(bytes, true);
    encoded.resize(encoded.size() / 2);
    const UndoneBytes undone = undoLZW(encoded, LZWChange::early, plenty);
    EXPECT_EQ(undone.outcome, UndoOutcome::partial);
    EXPECT_GT(undone.bytes.size(), 100u);
    EXPECT_EQ(undone.bytes, bytes.substr(0, undone.bytes.size()));
}

TEST(ByteFilters, GiveRandomBytesBack) {
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        const std::string bytes = encoders::randomBytes(random, random() % 300, round % 3 == 0 ? 2 : 256);
        EXPECT_EQ(undoASCIIHex(encoders::hex(bytes), plenty).bytes, bytes);
        EXPECT_EQ(undoASCII85(encoders::base85(bytes), plenty).bytes, bytes);
        EXPECT_EQ(undoRunLength(encoders::runLength(bytes), plenty).bytes, bytes);
        EXPECT_EQ(inflated(encoders::deflated(bytes), plenty).bytes, bytes);
    }
}

TEST(ByteFilters, TakeAnyBytesWithoutHarm) {
    std::mt19937 random(8);
    for (int round = 0; round < 2000; ++round) {
        const std::string bytes = encoders::randomBytes(random, random() % 200);
        undoASCIIHex(bytes, plenty);
        undoASCII85(bytes, plenty);
        undoRunLength(bytes, plenty);
        undoLZW(bytes, LZWChange::early, plenty);
        undoLZW(bytes, LZWChange::late, plenty);
        inflated(bytes, plenty);
    }
}

TEST(ByteFilters, RefuseMoreThanTheLimit) {
    const std::string bytes(100'000, 'x');
    EXPECT_EQ(undoASCIIHex(encoders::hex(bytes), 1000).outcome, UndoOutcome::tooLarge);
    EXPECT_EQ(undoASCII85(encoders::base85(bytes), 1000).outcome, UndoOutcome::tooLarge);
    EXPECT_EQ(undoRunLength(encoders::runLength(bytes), 1000).outcome, UndoOutcome::tooLarge);
    EXPECT_EQ(undoLZW(encoders::lzw(bytes, true), LZWChange::early, 1000).outcome, UndoOutcome::tooLarge);
    EXPECT_EQ(inflated(encoders::deflated(bytes), 1000).outcome, UndoOutcome::tooLarge);
    EXPECT_EQ(inflated(encoders::deflated(bytes), 100'000).outcome, UndoOutcome::whole);
    EXPECT_EQ(inflated(encoders::deflated(bytes), 99'999).outcome, UndoOutcome::tooLarge);
}

TEST(Inflating, GivesWhatStoodBeforeDamage) {
    std::mt19937 random(9);
    const std::string bytes = encoders::randomBytes(random, 50'000, 16);
    std::string encoded = encoders::deflated(bytes);
    std::string cut = encoded.substr(0, encoded.size() / 2);
    UndoneBytes undone = inflated(cut, plenty);
    EXPECT_EQ(undone.outcome, UndoOutcome::partial);
    EXPECT_GT(undone.bytes.size(), 10'000u);
    EXPECT_EQ(undone.bytes, bytes.substr(0, undone.bytes.size()));
}

TEST(Inflating, PassesOverAWrongCheckSumAndADamagedHeader) {
    const std::string bytes = "BT /F1 12 Tf (Hello) Tj ET";
    std::string encoded = encoders::deflated(bytes);
    std::string wrongSum = encoded;
    wrongSum.back() = static_cast<char>(wrongSum.back() ^ 1);
    expectUndone(inflated(wrongSum, plenty), bytes, UndoOutcome::partial);
    std::string wrongHeader = encoded;
    wrongHeader[0] = 'X';
    expectUndone(inflated(wrongHeader, plenty), bytes, UndoOutcome::partial);
}

TEST(Inflating, DoesNotLookBehindTheEnd) {
    expectUndone(inflated(encoders::deflated("abc") + "\r\n", plenty), "abc", UndoOutcome::whole);
}

TEST(Inflating, GivesNothingForNothing) {
    expectUndone(inflated("", plenty), "", UndoOutcome::partial);
    expectUndone(inflated(encoders::deflated(""), plenty), "", UndoOutcome::whole);
}

}  // namespace
}  // namespace vornaset
