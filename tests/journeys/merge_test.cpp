#include <algorithm>

#include "journeys/program.h"

namespace journeys {
namespace {

const std::string letters = "$VORNASET merge $SAMPLES/letter.idml $SAMPLES/people_100.csv -o letters.pdf";

std::size_t occurrences(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) ++count;
    return count;
}

class Merge : public Journey {
  protected:
    std::string textOfPage(int page, const std::string& file = "letters.pdf") const {
        std::string number = std::to_string(page);
        return output("pdftotext -f " + number + " -l " + number + " -layout " + file + " -");
    }
    std::string pageCount(const std::string& file = "letters.pdf") const {
        return output("pdfinfo " + file + " | sed -n 's/^Pages: *//p'");
    }
};

TEST_F(Merge, MakesOneLetterForEachRecord) {
    Outcome outcome = run(letters);
    ASSERT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.errors, "") << "no progress bar and no warning where nobody looks on";
    EXPECT_EQ(outcome.output.find("letters.pdf: 100 records, 100 pages, "), 0u) << outcome.output;
    EXPECT_NE(outcome.output.find(" seconds, 0 problems\n"), std::string::npos) << outcome.output;
    EXPECT_EQ(occurrences(outcome.output, "\n"), 1u) << "one line";
    EXPECT_EQ(names(), "letters.pdf");
    EXPECT_EQ(run("qpdf --check letters.pdf").status, 0);
    EXPECT_EQ(pageCount(), "100\n");
}

TEST_F(Merge, PutsEachRecordOnItsPage) {
    output(letters);
    std::string first = textOfPage(1), third = textOfPage(3), last = textOfPage(100);
    for (const char* part : {"Nordlicht Gerätebau GmbH", "Zoë Müller", "Hauptstraße 46", "68169 Orléans",
                             "Sehr geehrter Herr Müller,", "VN-2015-277540", "3.832,33"})
        EXPECT_NE(first.find(part), std::string::npos) << part << "\n" << first;
    EXPECT_NE(third.find("Anna Koch"), std::string::npos) << third;
    EXPECT_EQ(first.find("Anna"), std::string::npos);
    std::string lastRow = output("tail -n 1 $SAMPLES/people_100.csv | cut -d, -f3");
    lastRow.pop_back();
    EXPECT_NE(last.find(lastRow), std::string::npos) << last;
    EXPECT_EQ(output("pdftotext letters.pdf - | grep -c '<<' || true"), "0\n") << "no placeholder is ever printed";
}

TEST_F(Merge, AnEmptyLineOfTheAddressGoesUnlessItIsToStay) {
    output(letters + " --start 3 --count 1 && mv letters.pdf without.pdf");
    output(letters + " --start 3 --count 1 --keep-empty-lines && mv letters.pdf with.pdf");
    auto topOf = [&](const std::string& file) {
        return std::stod(
            output("pdftotext -bbox " + file + " - | sed -n 's/.*yMin=\"\\([0-9.]*\\)\".*>Koch<.*/\\1/p' | head -1"));
    };
    EXPECT_GT(topOf("with.pdf"), topOf("without.pdf") + 5)
        << "record 3 has no company: the line above the name stays empty";
}

TEST_F(Merge, EmbedsEveryFontAsASubsetThatCanBeRead) {
    output(letters);
    std::string fonts = output("pdffonts letters.pdf | tail -n +3");
    EXPECT_GT(occurrences(fonts, "\n"), 0u);
    std::string unembedded = output(
        "pdffonts letters.pdf | tail -n +3 | awk '{ if ($(NF-4) != \"yes\" || $(NF-3) != \"yes\" || "
        "$(NF-2) != \"yes\") print }'");
    EXPECT_EQ(unembedded, "") << "embedded, subset, with a map to Unicode: " << fonts;
}

TEST_F(Merge, ThePagesShowSomethingAndDiffer) {
    output(letters + " --count 2");
    output("pdftoppm -r 40 -gray letters.pdf page");
    std::string first = contents("page-1.pgm"), second = contents("page-2.pgm");
    ASSERT_GT(first.size(), 1000u);
    EXPECT_LT(static_cast<unsigned char>(*std::min_element(
                  first.begin() + 20, first.end(),
                  [](char a, char b) { return static_cast<unsigned char>(a) < static_cast<unsigned char>(b); })),
              100)
        << "there is ink on the page";
    EXPECT_NE(first, second);
}

TEST_F(Merge, StartAndCountChooseRecords) {
    EXPECT_NE(output(letters + " --start 3 --count 2").find("2 records, 2 pages"), std::string::npos);
    EXPECT_EQ(pageCount(), "2\n");
    EXPECT_NE(textOfPage(1).find("Koch"), std::string::npos);
    EXPECT_NE(textOfPage(2).find("Klein"), std::string::npos);
    EXPECT_NE(output(letters + " --start 100 --count 7").find("1 record, 1 page, "), std::string::npos);
}

TEST_F(Merge, TheOffsetMovesTheRunOn) {
    Outcome outcome = run(letters + " --offset 50");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.errors.find("printed nowhere"), std::string::npos);
    EXPECT_EQ(pageCount(), "2\n");
    std::string name = output("sed -n 52p $SAMPLES/people_100.csv | cut -d, -f4");
    name.pop_back();
    EXPECT_NE(textOfPage(2).find(name), std::string::npos) << "record 51 stands on page 2";
}

TEST_F(Merge, ASheetOfLabelsTakesAsManyRecordsAsItHasFramesAndLeavesTheRestEmpty) {
    Outcome outcome = run("$VORNASET merge $SAMPLES/labels.idml $SAMPLES/people_100.csv -o labels.pdf --count 30");
    ASSERT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_NE(outcome.output.find("30 records, 2 pages"), std::string::npos) << outcome.output;
    EXPECT_EQ(pageCount("labels.pdf"), "2\n");
    std::string second = output("pdftotext -f 2 -l 2 labels.pdf -");
    EXPECT_EQ(second.find("<<"), std::string::npos);
    std::string record30 = output("sed -n 31p $SAMPLES/people_100.csv | cut -d, -f6");
    std::string record31 = output("sed -n 32p $SAMPLES/people_100.csv | cut -d, -f6");
    record30.pop_back();
    record31.pop_back();
    EXPECT_NE(second.find(record30), std::string::npos) << record30;
    EXPECT_EQ(second.find(record31), std::string::npos) << "no record behind the last that was asked for: " << record31;
}

TEST_F(Merge, TwiceTheSameGivesTheSameBytes) {
    output(letters + " --count 20 --report one.json && mv letters.pdf one.pdf");
    output(letters + " --count 20 --report two.json && mv letters.pdf two.pdf");
    EXPECT_EQ(run("cmp one.pdf two.pdf").status, 0);
    EXPECT_EQ(contents("one.json"), contents("two.json"));
}

TEST_F(Merge, TwoSideBySideDoNotMixTheirJobs) {
    write("a.csv", "last,first\nAlpha,A\nAlpha,B\nAlpha,C\n");
    write("b.csv", "last,first\nBeta,D\nBeta,E\n");
    output(
        "for i in 1 2 3; do"
        " $VORNASET merge $SAMPLES/letter.idml a.csv -o a$i.pdf --quiet & p=$!;"
        " $VORNASET merge $SAMPLES/letter.idml b.csv -o b$i.pdf --quiet & q=$!;"
        " wait $p && wait $q || exit 1; done");
    for (const char* number : {"1", "2", "3"}) {
        std::string a = output(std::string("pdftotext a") + number + ".pdf -");
        std::string b = output(std::string("pdftotext b") + number + ".pdf -");
        EXPECT_EQ(occurrences(a, "Beta"), 0u);
        EXPECT_GE(occurrences(a, "Alpha"), 3u);
        EXPECT_EQ(occurrences(b, "Alpha"), 0u);
        EXPECT_GE(occurrences(b, "Beta"), 2u);
    }
}

TEST_F(Merge, TheSameTableInAnyDressGivesTheSameLetters) {
    output(letters + " --count 3 && mv letters.pdf plain.pdf");
    output(
        "head -n 4 $SAMPLES/people_100.csv > plain.csv;"
        "{ printf '\\357\\273\\277'; cat plain.csv; } > marked.csv;"
        "iconv -f UTF-8 -t UTF-16 plain.csv > utf16.csv;"
        "iconv -f UTF-8 -t UTF-16BE plain.csv > utf16be.csv;"
        "sed 's/$/\\r/' plain.csv > crlf.csv");
    for (const char* dress : {"marked", "utf16", "utf16be", "crlf"}) {
        output(std::string("$VORNASET merge $SAMPLES/letter.idml ") + dress + ".csv -o letters.pdf");
        EXPECT_EQ(run("cmp plain.pdf letters.pdf").status, 0) << dress;
    }
}

TEST_F(Merge, SemicolonsAndOldEncodingsAreFound) {
    write("old.csv", "last;first;city\r\nM\xFCller;J\xF6rg;K\xF6ln\r\n");
    output("$VORNASET merge $SAMPLES/letter.idml old.csv -o letters.pdf --quiet");
    EXPECT_NE(textOfPage(1).find("Jörg Müller"), std::string::npos);
    write("mac.csv", "last\tfirst\rM\x9Fller\tJ\x9Arg\r");
    output("$VORNASET merge $SAMPLES/letter.idml mac.csv -o letters.pdf --quiet");
    EXPECT_NE(textOfPage(1).find("Jörg Müller"), std::string::npos);
    write("told.csv", "last|first\nM\x8Aller|J\xE4rg\n");
    output(
        "$VORNASET merge $SAMPLES/letter.idml told.csv -o letters.pdf --quiet --delimiter pipe --encoding "
        "windows-1252");
    EXPECT_NE(textOfPage(1).find("Järg MŠller"), std::string::npos);
}

TEST_F(Merge, ALineBreakInACellIsALineBreakInTheLetter) {
    write("rows.csv", "last,first,street\nMiller,Ann,\"12 High Street\r\nRear house\"\n");
    output("$VORNASET merge $SAMPLES/letter.idml rows.csv -o letters.pdf --quiet");
    std::string text = output("pdftotext letters.pdf -");
    EXPECT_NE(text.find("12 High Street\nRear house\n"), std::string::npos) << text;
}

TEST_F(Merge, RulesTranslateValues) {
    makeTemplate("ruled.idml", "Stories/Story_u10e.xml", "&lt;&lt;salutation &gt;&gt;", "&lt;&lt;Greeting &gt;&gt;");
    write("rows.csv", "sex,last,first\nm,Miller,Bob\nf,Smith,Ann\nx,Jones,Kim\n");
    write("rules.json",
          R"([{"name":"Greeting","contentOf":"sex","replacements":{"m":"Lieber Herr","f":"Liebe Frau"}}])");
    output("$VORNASET merge ruled.idml rows.csv -o letters.pdf --rules rules.json --quiet");
    EXPECT_NE(textOfPage(1).find("Lieber Herr Miller,"), std::string::npos) << textOfPage(1);
    EXPECT_NE(textOfPage(2).find("Liebe Frau Smith,"), std::string::npos);
    EXPECT_NE(textOfPage(3).find("x Jones,"), std::string::npos) << "what the rule doesn't translate stands as it is";
}

TEST_F(Merge, TheReportHasEveryProblemPage) {
    std::string many = "\"";
    for (int line = 0; line < 60; ++line) many += "line\n";
    many += "\"";
    write("rows.csv", "last,street\nA,x\nB," + many + "\nC,y\nD," + many + "\nE," + many + "\n");
    Outcome outcome = run("$VORNASET merge $SAMPLES/letter.idml rows.csv -o letters.pdf --report r.json");
    EXPECT_EQ(outcome.status, 0) << "problems alone are no failure";
    EXPECT_NE(outcome.output.find("3 problems (first: overset, page 2, record 2)"), std::string::npos)
        << outcome.output;
    std::string problems = output(
        "python3 -c 'import json; r = json.load(open(\"r.json\")); print(r[\"records\"], r[\"pages\"], "
        "[(p[\"kind\"], p[\"page\"], p[\"record\"], p[\"story\"]) for p in r[\"problems\"]])'");
    EXPECT_EQ(problems, "5 5 [('overset', 2, 2, 'u10a'), ('overset', 4, 4, 'u10a'), ('overset', 5, 5, 'u10a')]\n");
    std::string frame =
        output("python3 -c 'import json; print(json.load(open(\"r.json\"))[\"problems\"][0][\"frame\"])'");
    frame.pop_back();
    EXPECT_NE(output("$VORNASET info $SAMPLES/letter.idml").find("  " + frame + ": text frame, page 1"),
              std::string::npos)
        << "the frame has the name that info gives it";
    EXPECT_EQ(run("$VORNASET merge $SAMPLES/letter.idml rows.csv -o letters.pdf --strict --quiet").status, 3);
    EXPECT_EQ(run("$VORNASET merge $SAMPLES/letter.idml rows.csv -o letters.pdf --strict --quiet --count 1").status, 0);
}

TEST_F(Merge, PaddedRecordsAreNoProblems) {
    // The last label of the sheet holds more text than its frame takes, with a record in it or without.
    std::string info = output("$VORNASET info $SAMPLES/labels.idml | sed -n 's/.*number 24, story //p'");
    ASSERT_EQ(occurrences(info, "\n"), 1u) << info;
    info.pop_back();
    std::string much;
    for (int line = 0; line < 30; ++line) much += "line &lt;&lt;first&gt;&gt; ";
    makeTemplate("full.idml", "Stories/Story_" + info + ".xml", "&lt;&lt;company&gt;&gt;", much, "labels.idml");
    EXPECT_NE(output("$VORNASET merge full.idml $SAMPLES/people_100.csv -o full.pdf --count 30 --report r.json")
                  .find("30 records, 2 pages"),
              std::string::npos);
    EXPECT_EQ(output("python3 -c 'import json; print([(p[\"record\"], p[\"page\"]) for p in "
                     "json.load(open(\"r.json\"))[\"problems\"] if p[\"kind\"] == \"overset\"])'"),
              "[(24, 1)]\n")
        << "place 24 of the second sheet is padding";
}

TEST_F(Merge, MissingFontsAreReplacedAndToldEverywhere) {
    makeTemplate("foreign.idml", "Resources/Styles.xml", "Liberation Serif", "Unheard Of Antiqua");
    Outcome outcome =
        run("$VORNASET merge foreign.idml $SAMPLES/people_100.csv -o letters.pdf --count 1 --report r.json");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_NE(outcome.output.find("; fonts replaced: Unheard Of Antiqua"), std::string::npos) << outcome.output;
    EXPECT_EQ(std::count(outcome.output.begin(), outcome.output.end(), '\n'), 1);
    EXPECT_NE(contents("r.json").find("Unheard Of Antiqua"), std::string::npos);
    EXPECT_NE(output("$VORNASET check foreign.idml $SAMPLES/people_100.csv").find("font Unheard Of Antiqua"),
              std::string::npos);
}

TEST_F(Merge, FontsBesideTheTemplateAndInTheFolderThatIsToldAreUsed) {
    // A machine whose only fonts are some of another family.
    output(
        "mkdir machine more && cp $(fc-match -f '%{file}' 'DejaVu Sans') machine/ && cp $SAMPLES/letter.idml . && "
        "cp $(fc-list -f '%{file}\n' 'Liberation Serif') more/ && cp $(fc-list -f '%{file}\n' 'Liberation Sans') "
        "more/");
    write("fonts.conf", "<fontconfig><dir>" + path("machine").string() + "</dir><cachedir>" + path("cache").string() +
                            "</cachedir></fontconfig>");
    std::string poor = "FONTCONFIG_FILE=$PWD/fonts.conf $VORNASET merge letter.idml $SAMPLES/people_100.csv --count 1 ";
    EXPECT_NE(output(poor + "-o poor.pdf").find("fonts replaced: Liberation"), std::string::npos);
    EXPECT_EQ(output(poor + "-o told.pdf --fonts more").find("fonts replaced"), std::string::npos);
    output("mv more 'Document fonts'");
    EXPECT_EQ(output(poor + "-o beside.pdf").find("fonts replaced"), std::string::npos);
    EXPECT_NE(output("pdffonts beside.pdf").find("Liberation"), std::string::npos);
    EXPECT_EQ(run("cmp told.pdf beside.pdf").status, 0);
}

TEST_F(Merge, WhatLooksWrongIsWarnedOf) {
    write("rows.csv", "last,first\n\nMiller\n");
    Outcome outcome = run("$VORNASET merge $SAMPLES/letter.idml rows.csv -o letters.pdf");
    EXPECT_EQ(outcome.status, 0);
    for (const char* part :
         {"vornaset: warning: data: line 2 is empty and was skipped.\n",
          "vornaset: warning: data: record 1 (line 3), column 2 (\"first\") is missing; taken as empty.\n",
          "vornaset: warning: no column or rule answers the placeholder <<company>>.\n"})
        EXPECT_NE(outcome.errors.find(part), std::string::npos) << part << "in\n" << outcome.errors;
    outcome = run("$VORNASET merge $SAMPLES/letter.idml rows.csv -o letters.pdf --quiet");
    EXPECT_EQ(outcome.errors + outcome.output, "");
}

TEST_F(Merge, OnATerminalThereIsAProgressBar) {
    if (run("command -v script").status != 0) GTEST_SKIP() << "the program script isn't there to play a terminal";
    std::string seen = output(
        "TERM=xterm script -qec '$VORNASET merge $SAMPLES/letter.idml $SAMPLES/people_100.csv "
        "-o letters.pdf' /dev/null");
    EXPECT_NE(seen.find(" of 100 pages"), std::string::npos) << seen;
    EXPECT_NE(seen.find("\r\033[K"), std::string::npos) << "it goes at the end";
}

TEST_F(Merge, StyleColumnsSetCharacterStyles) {
    makeTemplate(
        "styled.idml", "Resources/Styles.xml", "</RootCharacterStyleGroup>",
        "<CharacterStyle Self=\"CharacterStyle/Huge\" Name=\"Huge\" PointSize=\"30\"/></RootCharacterStyleGroup>");
    write("rows.csv", "last,#last,first\nMiller,,A\nMiller,Huge,A\nMiller,Unknown,A\n");
    Outcome outcome = run("$VORNASET merge styled.idml rows.csv -o letters.pdf");
    ASSERT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_NE(outcome.errors.find("the template lacks the character style \"Unknown\" of record 3"), std::string::npos)
        << outcome.errors;
    auto height = [&](int page) {
        std::string number = std::to_string(page);
        return std::stod(
            output("pdftotext -bbox -f " + number + " -l " + number +
                   " letters.pdf - | grep '>Miller<' | head -1 | "
                   "sed 's/.*yMin=\"\\([0-9.]*\\)\".*yMax=\"\\([0-9.]*\\)\".*/\\2 \\1/' | awk '{print $1 - $2}'"));
    };
    EXPECT_GT(height(2), 2 * height(1));
    EXPECT_NEAR(height(3), height(1), 0.01) << "a style that isn't there leaves the value unstyled";
}

TEST_F(Merge, ExportShowsTheTemplateAsItStands) {
    std::string line = output("$VORNASET export $SAMPLES/letter.idml -o plain.pdf");
    EXPECT_EQ(line.find("plain.pdf: 1 page, "), 0u) << line;
    EXPECT_EQ(run("qpdf --check plain.pdf").status, 0);
    EXPECT_NE(output("pdftotext plain.pdf -").find("<<company>>"), std::string::npos);
    EXPECT_EQ(output("$VORNASET export $SAMPLES/letter.idml -o again.pdf --quiet"), "");
    EXPECT_EQ(run("cmp plain.pdf again.pdf").status, 0);
}

TEST_F(Merge, CheckListsWhatDoesNotFit) {
    std::string good = output("$VORNASET check $SAMPLES/letter.idml $SAMPLES/people_100.csv");
    EXPECT_NE(good.find("column \"photo\": nothing uses it\n"), std::string::npos) << good;
    EXPECT_EQ(good.find("placeholder"), std::string::npos) << good;
    EXPECT_EQ(run("$VORNASET check $SAMPLES/letter.idml $SAMPLES/people_100.csv --strict").status, 0);
    write("rows.csv", "last,#last\nx,Nowhere\n");
    std::string bad = output("$VORNASET check $SAMPLES/letter.idml rows.csv");
    EXPECT_NE(bad.find("placeholder <<street>>: no column or rule answers it (story u10a)\n"), std::string::npos)
        << bad;
    EXPECT_NE(bad.find("character style \"Nowhere\": the template lacks it (first in record 1)\n"), std::string::npos)
        << bad;
    EXPECT_EQ(run("$VORNASET check $SAMPLES/letter.idml rows.csv --strict").status, 3);
}

TEST_F(Merge, InfoTellsPagesFramesStoriesStylesAndFonts) {
    std::string letter = output("$VORNASET info $SAMPLES/letter.idml");
    for (const char* part :
         {"Pages: 1\n  1: 595.28 by 841.89 pt\n", "number 1, story u10a\n",
          "placeholders <<company>> <<first>> <<last>> <<street>> <<zip>> <<city>>\n", "\n  Address\n", "Liberation S"})
        EXPECT_NE(letter.find(part), std::string::npos) << part << " in\n" << letter;
    std::string cards = output("$VORNASET info $SAMPLES/cards.idml");
    EXPECT_NE(cards.find("u102: rectangle, page 1"), std::string::npos) << cards;
    EXPECT_NE(cards.find("number 1, column \"photo\"\n"), std::string::npos) << cards;
}

}  // namespace
}  // namespace journeys
