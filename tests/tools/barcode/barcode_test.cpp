#include "tools/barcode/barcode.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "tools/barcode/content_reading.h"
#include "tools/barcode/encoding.h"

namespace {

using barcode::Outcome;
using barcode::Status;

Outcome answer(const std::vector<std::string>& arguments) {
    return barcode::answer(arguments);
}

void expectRefusal(const std::string& kind, const std::string& code, const std::string& sentence) {
    const Outcome outcome = answer({"-e", kind, "-b", code, "-D"});
    EXPECT_EQ(outcome.status, Status::Refused) << code;
    EXPECT_EQ(outcome.description, "");
    EXPECT_EQ(outcome.problem, sentence);
}

TEST(BarcodeTool, GivesTwelveDigitsTheirCheckDigit) {
    const Outcome twelve = answer({"-e", "ean13", "-b", "400638133393", "-D"});
    const Outcome thirteen = answer({"-e", "ean13", "-b", "4006381333931", "-D"});
    EXPECT_EQ(twelve.status, Status::Drawn);
    EXPECT_EQ(twelve.problem, "");
    EXPECT_FALSE(twelve.description.empty());
    EXPECT_EQ(twelve.description, thirteen.description);
}

TEST(BarcodeTool, GivesEveryFixedKindItsCheckDigit) {
    EXPECT_EQ(barcode::draw("ean8", "9638507").description, barcode::draw("ean8", "96385074").description);
    EXPECT_EQ(barcode::draw("upca", "03600029145").description, barcode::draw("upca", "036000291452").description);
    EXPECT_EQ(barcode::draw("itf14", "1540014128876").description,
              barcode::draw("itf14", "15400141288763").description);
}

TEST(BarcodeTool, RefusesAWrongCheckDigit) {
    expectRefusal("ean13", "4006381333932", "the check digit of the EAN-13 code \"4006381333932\" must be 1, not 2.");
    expectRefusal("ean8", "96385075", "the check digit of the EAN-8 code \"96385075\" must be 4, not 5.");
    expectRefusal("upca", "036000291453", "the check digit of the UPC-A code \"036000291453\" must be 2, not 3.");
    expectRefusal("itf14", "15400141288764", "the check digit of the ITF-14 code \"15400141288764\" must be 3, not 4.");
}

TEST(BarcodeTool, RefusesEveryOtherLastDigit) {
    for (char last = '0'; last <= '9'; ++last)
        EXPECT_EQ(barcode::draw("ean13", std::string("400638133393") + last).status,
                  last == '1' ? Status::Drawn : Status::Refused);
}

TEST(BarcodeTool, RefusesALetterAndTellsItsPlace) {
    expectRefusal("ean13", "40063813339A",
                  "EAN-13 takes digits alone; \"40063813339A\" has something else at place 12.");
    expectRefusal("ean13", "400638133393 ",
                  "EAN-13 takes digits alone; \"400638133393 \" has something else at place 13.");
    expectRefusal("ean13", "4006381333931+12",
                  "EAN-13 takes digits alone; \"4006381333931+12\" has something else at place 14.");
}

TEST(BarcodeTool, RefusesANumberOfDigitsThatTheKindDoesNotHave) {
    expectRefusal("ean13", "40063", "EAN-13 takes 12 digits, or 13 with the check digit; \"40063\" has 5.");
    expectRefusal("ean13", "96385074", "EAN-13 takes 12 digits, or 13 with the check digit; \"96385074\" has 8.");
    expectRefusal("ean13", "40063813339312",
                  "EAN-13 takes 12 digits, or 13 with the check digit; \"40063813339312\" has 14.");
    expectRefusal("ean13", "", "EAN-13 needs a code; it got an empty one.");
}

TEST(BarcodeTool, RefusesABrokenGs1String) {
    expectRefusal("gs1-128", "(01)09501101530004",
                  "GS1-128 can't hold \"(01)09501101530004\": AI (01) position 14: Bad checksum '4', expected '3'.");
    expectRefusal("gs1-128", "0109501101530003",
                  "GS1-128 can't hold \"0109501101530003\": Data does not start with an AI.");
}

TEST(BarcodeTool, RefusesWhatCode128CanNotShow) {
    expectRefusal("code128", "H\xC3\xA4llo",
                  "Code 128 is drawn for printable ASCII alone; \"H\xC3\xA4llo\" holds something else.");
    expectRefusal("code128", std::string("a\0b", 3),
                  "Code 128 is drawn for printable ASCII alone; \"a.b\" holds something else.");
}

TEST(BarcodeTool, RefusesCodesThatNoSymbolHolds) {
    expectRefusal("qr", std::string(8001, '1'), "a code of 8001 bytes is longer than any symbol holds.");
    const Outcome tooMuch = barcode::draw("qr", std::string(8000, 'x'));
    EXPECT_EQ(tooMuch.status, Status::Refused);
    EXPECT_TRUE(tooMuch.problem.starts_with("QR can't hold \"" + std::string(60, 'x') + "...\": ")) << tooMuch.problem;
    EXPECT_EQ(barcode::draw("qr", "\xC3").status, Status::Refused) << "damaged UTF-8";
}

TEST(BarcodeTool, TakesItsOptionsInAnyOrder) {
    EXPECT_EQ(answer({"-D", "-b", "4006381333931", "-e", "ean13"}).description,
              answer({"-e", "ean13", "-b", "4006381333931", "-D"}).description);
}

TEST(BarcodeTool, SaysWhichArgumentIsWrong) {
    const auto problem = [](const std::vector<std::string>& arguments) {
        const Outcome outcome = answer(arguments);
        EXPECT_EQ(outcome.status, Status::WrongUsage);
        EXPECT_EQ(outcome.description, "");
        return outcome.problem;
    };
    EXPECT_EQ(problem({}), "the kind is missing; give it with -e.");
    EXPECT_EQ(problem({"-e", "ean13", "-D"}), "the code is missing; give it with -b.");
    EXPECT_EQ(problem({"-e", "ean13", "-b", "4006381333931"}),
              "-D is missing: a page description is all that can be printed.");
    EXPECT_EQ(problem({"-e", "ean13", "-D", "-b"}), "a value is missing behind -b; see --help.");
    EXPECT_EQ(problem({"-x"}), "there is no option \"-x\"; see --help.");
    EXPECT_EQ(problem({"-b", "1", "-b", "2"}), "-b stands twice; give it once.");
    EXPECT_EQ(problem({"-e", "ean14", "-b", "1", "-D"}),
              "there is no kind \"ean14\"; the kinds are ean13, ean8, upca, code128, gs1-128, itf14, qr, datamatrix, "
              "pdf417.");
}

TEST(BarcodeTool, TakesAValueThatLooksLikeAnOption) {
    EXPECT_EQ(answer({"-e", "code128", "-b", "-D", "-D"}).status, Status::Drawn);
}

TEST(BarcodeTool, DoesNotDependOnTheThread) {
    const std::string alone = barcode::draw("ean13", "4006381333931").description;
    std::vector<std::string> seen(4);
    {
        std::vector<std::jthread> threads;
        for (std::string& result : seen)
            threads.emplace_back([&result] {
                for (int round = 0; round < 500; ++round) {
                    barcode::draw("qr", std::to_string(round));
                    result = barcode::draw("ean13", "4006381333931").description;
                }
            });
    }
    for (const std::string& result : seen) EXPECT_EQ(result, alone);
}

TEST(Encoding, GivesTheTextUnderTheBars) {
    using barcode::Kind;
    EXPECT_EQ(barcode::encode(Kind::Ean13, "400638133393").readable, "4006381333931");
    EXPECT_EQ(barcode::encode(Kind::Code128, "AB-1").readable, "AB-1");
    EXPECT_EQ(barcode::encode(Kind::Gs1Code128, "(01)09501101530003(10)A1").readable, "(01)09501101530003(10)A1");
    EXPECT_EQ(barcode::encode(Kind::QrCode, "x").readable, "");
}

}  // namespace
