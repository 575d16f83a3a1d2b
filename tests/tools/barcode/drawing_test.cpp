#include "tools/barcode/drawing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>

#include "tools/barcode/barcode.h"
#include "tools/barcode/content_reading.h"
#include "tools/barcode/digits.h"

namespace {

using barcode::Kind;

constexpr double module = 0.33;
constexpr double close = 0.0005;  // millimetres

reading::Drawing drawn(const std::string& kind, const std::string& code) {
    const barcode::Outcome outcome = barcode::draw(kind, code);
    EXPECT_EQ(outcome.problem, "");
    return reading::drawingOf(outcome.description);
}

double leftOf(const reading::Drawing& drawing) {
    double left = 1e9;
    for (const auto& bar : drawing.rectangles) left = std::min(left, bar.x);
    return left;
}

double rightOf(const reading::Drawing& drawing) {
    double right = 0;
    for (const auto& bar : drawing.rectangles) right = std::max(right, bar.right());
    return right;
}

// The three sets of ISO/IEC 15420, table 1, and the sets of the left half by the leading digit, table 2.
constexpr std::array<const char*, 10> setA{"0001101", "0011001", "0010011", "0111101", "0100011",
                                           "0110001", "0101111", "0111011", "0110111", "0001011"};
constexpr std::array<const char*, 10> leading{"AAAAAA", "AABABB", "AABBAB", "AABBBA", "ABAABB",
                                              "ABBAAB", "ABBBAA", "ABABAB", "ABABBA", "ABBABA"};

std::string inverted(std::string bits) {
    for (char& bit : bits) bit = bit == '0' ? '1' : '0';
    return bits;
}

std::string reversed(std::string bits) {
    std::reverse(bits.begin(), bits.end());
    return bits;
}

std::string ean13Modules(const std::string& digits) {
    std::string modules = "101";
    for (size_t at = 1; at <= 6; ++at) {
        const std::string a = setA.at(digits[at] - '0');
        modules += leading.at(digits[0] - '0')[at - 1] == 'A' ? a : reversed(inverted(a));
    }
    modules += "01010";
    for (size_t at = 7; at <= 12; ++at) modules += inverted(setA.at(digits[at] - '0'));
    return modules + "101";
}

std::string ean8Modules(const std::string& digits) {
    std::string modules = "101";
    for (size_t at = 0; at < 4; ++at) modules += setA.at(digits[at] - '0');
    modules += "01010";
    for (size_t at = 4; at < 8; ++at) modules += inverted(setA.at(digits[at] - '0'));
    return modules + "101";
}

std::string randomDigits(std::mt19937& random, size_t count) {
    std::string digits;
    while (digits.size() < count) digits += static_cast<char>('0' + random() % 10);
    return digits;
}

TEST(Ean13Drawing, HasTheModulesOfTheStandardForEveryCode) {
    std::mt19937 random(13);
    for (int round = 0; round < 500; ++round) {
        const std::string code = randomDigits(random, 12);
        const reading::Drawing drawing = drawn("ean13", code);
        const std::string whole = code + barcode::checkDigitOf(code);
        EXPECT_EQ(reading::modulesAt(drawing, 20, module), ean13Modules(whole)) << whole;
    }
}

TEST(Ean13Drawing, SetsTheModuleAtAThirdOfAMillimetre) {
    const reading::Drawing drawing = drawn("ean13", "4006381333931");
    EXPECT_NEAR(drawing.rectangles.front().width, 0.330, close);
    EXPECT_NEAR(rightOf(drawing) - leftOf(drawing), 95 * 0.330, close);
}

TEST(Ean13Drawing, KeepsElevenModulesFreeOnTheLeftAndSevenOnTheRight) {
    const reading::Drawing drawing = drawn("ean13", "4006381333931");
    EXPECT_NEAR(leftOf(drawing), 11 * 0.330, close);
    const barcode::Extent extent = barcode::extentOf(Kind::Ean13, barcode::encode(Kind::Ean13, "4006381333931"));
    EXPECT_NEAR(extent.width * 25.4 / 72 - rightOf(drawing), 7 * 0.330, close);
    EXPECT_NEAR(extent.width * 25.4 / 72, 37.29, close);
}

TEST(Ean13Drawing, MakesBarsOfNaturalHeightAndGuardsFiveModulesLonger) {
    const reading::Drawing drawing = drawn("ean13", "4006381333931");
    ASSERT_EQ(drawing.rectangles.size(), 30u);
    size_t guards = 0;
    for (const auto& bar : drawing.rectangles) {
        EXPECT_NEAR(bar.top(), 25.93, close);
        const int at = static_cast<int>((bar.x - leftOf(drawing)) / module + 0.5);
        const bool isGuard = at == 0 || at == 2 || at == 46 || at == 48 || at == 92 || at == 94;
        guards += isGuard ? 1 : 0;
        EXPECT_NEAR(bar.height, isGuard ? 22.85 + 5 * 0.330 : 22.85, close) << "module " << at;
    }
    EXPECT_EQ(guards, 6u);
}

TEST(Ean13Drawing, SetsEachDigitUnderItsOwnBars) {
    const reading::Drawing drawing = drawn("ean13", "400638133393");
    ASSERT_EQ(drawing.lines.size(), 3u);
    EXPECT_EQ(drawing.lines[0].text, "4");
    EXPECT_EQ(drawing.lines[1].text, "006381");
    EXPECT_EQ(drawing.lines[2].text, "333931");
    const double left = leftOf(drawing);
    EXPECT_LT(drawing.lines[0].x + 7 * module, left);
    EXPECT_NEAR(drawing.lines[1].x, left + 3 * module, close);
    EXPECT_NEAR(drawing.lines[2].x, left + 50 * module, close);
    for (const auto& line : drawing.lines) {
        EXPECT_EQ(line.font, "/Courier");
        EXPECT_NEAR(line.size * 0.6, 7 * module, close) << "a digit is seven modules wide";
    }
}

TEST(Ean13Drawing, KeepsHalfAModuleBetweenDigitsAndBarsAndStaysAboveTheOrigin) {
    const reading::Drawing drawing = drawn("ean13", "4006381333931");
    double lowestOrdinaryBar = 0;
    for (const auto& bar : drawing.rectangles) lowestOrdinaryBar = std::max(lowestOrdinaryBar, bar.y);
    for (const auto& line : drawing.lines) {
        EXPECT_LE(line.y + 0.622 * line.size, lowestOrdinaryBar - 0.5 * module);
        EXPECT_GE(line.y - 0.015 * line.size, 0);
    }
}

TEST(BarcodeDrawing, PaintsInBlackInkAndLeavesTheGraphicsStateAlone) {
    for (const auto& measures : barcode::allKinds()) {
        const std::string code = measures.kind == Kind::Ean8         ? "9638507"
                                 : measures.kind == Kind::UpcA       ? "03600029145"
                                 : measures.kind == Kind::Itf14      ? "1540014128876"
                                 : measures.kind == Kind::Gs1Code128 ? "(10)AB1"
                                                                     : "400638133393";
        const reading::Drawing drawing = drawn(std::string(measures.name), code);
        EXPECT_EQ(drawing.colour, (std::vector<std::string>{"0", "0", "0", "1", "k"})) << measures.name;
        EXPECT_EQ(drawing.operators.at("q"), 1);
        EXPECT_EQ(drawing.operators.at("Q"), 1);
        EXPECT_EQ(drawing.operators.at("f"), 1);
        for (const auto& [name, count] : drawing.operators)
            EXPECT_NE(std::string(" q cm k re f BT Tf Td Tj ET Q ").find(" " + name + " "), std::string::npos) << name;
    }
}

TEST(BarcodeDrawing, StaysWithinItsExtentFromTheLeftBottomCorner) {
    const std::vector<std::pair<std::string, std::string>> codes{
        {"ean13", "4006381333931"},     {"ean8", "96385074"},  {"upca", "036000291452"},
        {"code128", "AB-12"},           {"gs1-128", "(10)X1"}, {"itf14", "15400141288763"},
        {"qr", "https://example.org/"}, {"datamatrix", "one"}, {"pdf417", "one two three"}};
    for (const auto& [name, code] : codes) {
        const auto& measures = *barcode::measuresNamed(name);
        const barcode::Extent extent = barcode::extentOf(measures.kind, barcode::encode(measures.kind, code));
        const double quiet = measures.moduleMillimetres * (measures.kind == Kind::Itf14 ? 0 : measures.leftQuiet);
        const reading::Drawing drawing = drawn(name, code);
        double top = 0;
        for (const auto& bar : drawing.rectangles) {
            EXPECT_GE(bar.x, quiet - close) << name;
            EXPECT_LE(bar.right(), extent.width * 25.4 / 72 + close) << name;
            EXPECT_GE(bar.y, 0) << name;
            top = std::max(top, bar.top());
        }
        const double free = measures.rowHeight > 0 ? measures.moduleMillimetres * measures.leftQuiet : 0;
        EXPECT_NEAR(top, extent.height * 25.4 / 72 - free, close) << name;
    }
}

TEST(Ean8Drawing, HasTheModulesAndMeasuresOfTheStandard) {
    std::mt19937 random(8);
    for (int round = 0; round < 100; ++round) {
        const std::string code = randomDigits(random, 7);
        const std::string whole = code + barcode::checkDigitOf(code);
        const reading::Drawing drawing = drawn("ean8", code);
        EXPECT_EQ(reading::modulesAt(drawing, 15, module), ean8Modules(whole)) << whole;
        EXPECT_NEAR(leftOf(drawing), 7 * module, close);
        EXPECT_NEAR(drawing.rectangles[3].height, 18.23, close);
        EXPECT_NEAR(drawing.rectangles[0].top(), 21.31, close);
        ASSERT_EQ(drawing.lines.size(), 2u);
        EXPECT_EQ(drawing.lines[0].text + drawing.lines[1].text, whole);
    }
}

TEST(UpcADrawing, IsTheEan13WithALeadingZeroAndItsOuterBarsReachDown) {
    const reading::Drawing drawing = drawn("upca", "03600029145");
    EXPECT_EQ(reading::modulesAt(drawing, 20, module), ean13Modules("0036000291452"));
    size_t longBars = 0;
    for (const auto& bar : drawing.rectangles) longBars += bar.height > 23 ? 1 : 0;
    EXPECT_EQ(longBars, 10u) << "two bars a guard, two each of the first and the last digit";
    ASSERT_EQ(drawing.lines.size(), 4u);
    EXPECT_EQ(drawing.lines[0].text, "0");
    EXPECT_EQ(drawing.lines[1].text, "36000");
    EXPECT_EQ(drawing.lines[2].text, "29145");
    EXPECT_EQ(drawing.lines[3].text, "2");
    EXPECT_LT(drawing.lines[0].size, drawing.lines[1].size);
    EXPECT_NEAR(leftOf(drawing), 9 * module, close);
}

TEST(Itf14Drawing, StandsBetweenTwoBearerBars) {
    const reading::Drawing drawing = drawn("itf14", "1540014128876");
    const auto& low = drawing.rectangles.at(0);
    const auto& high = drawing.rectangles.at(1);
    const auto& bar = drawing.rectangles.at(2);
    EXPECT_NEAR(low.top(), bar.y, close);
    EXPECT_NEAR(high.y, bar.top(), close);
    EXPECT_NEAR(low.height, 2 * 0.495, close);
    EXPECT_NEAR(bar.height, 31.75, close);
    EXPECT_NEAR(bar.x, 10 * 0.495, close);
    EXPECT_EQ(drawing.lines.at(0).text, "15400141288763");
}

TEST(Code128Drawing, ShrinksTextThatIsWiderThanTheSymbol) {
    const reading::Drawing drawing = drawn("code128", std::string(90, '1'));
    const auto& line = drawing.lines.at(0);
    EXPECT_GE(line.x, -close);
    EXPECT_LE(line.x + 90 * 0.6 * line.size, rightOf(drawing) + 10 * module + close);
    EXPECT_GE(drawing.rectangles[0].height, 0.15 * (rightOf(drawing) - leftOf(drawing)) - close);
}

TEST(Code128Drawing, EscapesParenthesesAndBackslashesOfItsText) {
    EXPECT_EQ(drawn("code128", "a(b)\\c").lines.at(0).text, "a(b)\\c");
}

TEST(MatrixDrawing, HasTheFinderPatternOfItsKind) {
    const reading::Drawing qr = drawn("qr", "hello");
    EXPECT_NEAR(qr.rectangles.front().width, 7 * 0.495, close);
    EXPECT_NEAR(qr.rectangles.front().x, 4 * 0.495, close);
    const reading::Drawing dataMatrix = drawn("datamatrix", "hello");
    const auto& lowest = dataMatrix.rectangles.back();
    EXPECT_NEAR(lowest.y, 0.495, close);
    EXPECT_NEAR(lowest.x, 0.495, close);
    EXPECT_NEAR(lowest.right(), rightOf(dataMatrix), close) << "the solid lower edge";
    const reading::Drawing pdf417 = drawn("pdf417", "hello");
    EXPECT_NEAR(pdf417.rectangles.front().height, 3 * 0.33, close);
    EXPECT_NEAR(pdf417.rectangles.front().width, 8 * 0.33, close) << "the start pattern";
    EXPECT_TRUE(qr.lines.empty() && dataMatrix.lines.empty() && pdf417.lines.empty());
}

}  // namespace
