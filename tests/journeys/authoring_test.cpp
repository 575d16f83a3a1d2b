// Templates changed from the command line: the change is there, everything else is as it was.
#include "journeys/program.h"

namespace journeys {
namespace {

class Authoring : public Journey {
  protected:
    /// Members of two packages that differ, as `cmp` sees their bytes.
    std::string changedMembers(const std::string& before, const std::string& after) const {
        return output("mkdir a b && (cd a && unzip -q " + before + ") && (cd b && unzip -q ../" + after +
                      ") && diff -rq a b | sed 's/^Files a.\\([^ ]*\\) .*/\\1/'");
    }
    std::string info(const std::string& file, const std::string& part) const {
        return output("$VORNASET info " + file + " | grep '" + part + "'");
    }
};

TEST_F(Authoring, NumbersAndColumnsAreWrittenAndNothingElse) {
    EXPECT_EQ(output("$VORNASET number $SAMPLES/cards.idml u104=2 u102=3:portrait -o out.idml"),
              "out.idml: 2 frames numbered.\n");
    EXPECT_NE(info("out.idml", " u102:").find("number 3, column \"portrait\""), std::string::npos);
    EXPECT_NE(info("out.idml", " u104:").find("number 2"), std::string::npos);
    EXPECT_EQ(changedMembers("$SAMPLES/cards.idml", "out.idml"), "Spreads/Spread_uc0.xml\n");
    EXPECT_EQ(run("xmllint --noout b/Spreads/Spread_uc0.xml || python3 -c \"import xml.dom.minidom as m; "
                  "m.parse('b/Spreads/Spread_uc0.xml')\"")
                  .status,
              0);
}

TEST_F(Authoring, ANumberOfZeroMakesAFrameStatic) {
    output("$VORNASET number $SAMPLES/cards.idml u104=0 -o out.idml");
    EXPECT_EQ(info("out.idml", " u104:").find("number"), std::string::npos);
}

TEST_F(Authoring, APlaceholderIsInsertedAndMerged) {
    EXPECT_EQ(output("$VORNASET placeholder $SAMPLES/letter.idml u10c:9 city --space -o out.idml"),
              "out.idml: <<city >> at position 9 of the story u10c.\n");
    EXPECT_EQ(changedMembers("$SAMPLES/letter.idml", "out.idml"), "Stories/Story_u10c.xml\n");
    output("$VORNASET merge out.idml $SAMPLES/people_100.csv -o out.pdf --count 1");
    EXPECT_NE(output("pdftotext out.pdf -").find("Hamburg, Orléans 09.09.2026"), std::string::npos);
}

TEST_F(Authoring, WithoutAnOutputTheTemplateItselfIsChanged) {
    output("cp $SAMPLES/letter.idml mine.idml && $VORNASET placeholder mine.idml u108:0 first");
    EXPECT_NE(info("mine.idml", " u108:").find("number 1, placeholders <<first>>"), std::string::npos)
        << "a frame without number becomes number 1";
    EXPECT_EQ(names(), "mine.idml");
}

TEST_F(Authoring, AReplacedTemplateKeepsItsPermissionsAndItsLink) {
    output(
        "cp $SAMPLES/letter.idml real.idml && chmod 640 real.idml && ln -s real.idml mine.idml && "
        "$VORNASET placeholder mine.idml u108:0 first");
    EXPECT_EQ(output("stat -c %a real.idml && readlink mine.idml"), "640\nreal.idml\n");
    EXPECT_NE(info("real.idml", " u108:").find("<<first>>"), std::string::npos);
}

TEST_F(Authoring, AKeyMayHoldWhatAColumnsNameHolds) {
    output("$VORNASET placeholder $SAMPLES/letter.idml u108:0 'Käse & \"<Co>\" %@ #' -o out.idml");
    EXPECT_NE(info("out.idml", " u108:").find("<<Käse & \"<Co>\" %@ "), std::string::npos);
}

TEST_F(Authoring, AnOmrFrameStandsAtItsPlaceWithNumberOne) {
    output("$VORNASET omr $SAMPLES/letter.idml -o out.idml");
    EXPECT_NE(info("out.idml", "at 8.5 25.51, 28.91 by 63.72 pt, number 1").size(), 0u);
    EXPECT_EQ(changedMembers("$SAMPLES/letter.idml", "out.idml"), "Spreads/Spread_uc0.xml\n");
}

TEST_F(Authoring, StrippingLeavesNumberedFramesAndOmrFrames) {
    output("$VORNASET omr $SAMPLES/letter.idml -o marked.idml && $VORNASET strip-static marked.idml -o out.idml");
    EXPECT_EQ(output("$VORNASET info out.idml | sed -n 's/^Frames: //p'"), "4\n");
    EXPECT_EQ(output("$VORNASET info out.idml | grep -c 'number 1$\\|number 1,'"), "7\n")
        << "four frames, three stories";
    output("$VORNASET merge out.idml $SAMPLES/people_100.csv -o out.pdf");
    EXPECT_EQ(run("qpdf --check out.pdf").status, 0);
}

TEST_F(Authoring, WhatCannotBeDoneIsToldInASentence) {
    output("cp $SAMPLES/letter.idml $SAMPLES/cards.idml .");
    const struct {
        const char* command;
        int status;
        const char* sentence;
    } cases[] = {
        {"number cards.idml nobody=1 -o x.idml", 1, "has no frame \"nobody\"; \"vornaset info\" lists its frames."},
        {"number cards.idml u104=1:photo -o x.idml", 1,
         "the frame u104 is a text frame: a column feeds frames of pictures; write a placeholder into the text."},
        {"number cards.idml u104 -o x.idml", 2,
         "\"u104\" says no frame number; say FRAME=N or FRAME=N:COLUMN, like u104=2:photo."},
        {"number cards.idml u104=-1 -o x.idml", 2, "\"u104=-1\" says no frame number;"},
        {"placeholder letter.idml u108 City", 2, "\"u108\" says no place in a story; say STORY:POSITION, like u10a:0."},
        {"number cards.idml u104=1 -o ''", 2, "--output needs a file name."},
        {"placeholder letter.idml u108:0 City -o ''", 2, "--output needs a file name."},
        {"placeholder letter.idml nowhere:0 City -o x.idml", 1, "has no story \"nowhere\";"},
        {"placeholder letter.idml u10c:99999 City -o x.idml", 1, "the story u10c has positions 0 to "},
        {"placeholder letter.idml u10c:0 'a>>b' -o x.idml", 1,
         "\"a>>b\" can't be the key of a placeholder; use a column's name, without << or >>."},
        {"placeholder letter.idml u10c:0 'a>' -o x.idml", 1, "\"a>\" can't be the key of a placeholder;"},
        {"placeholder letter.idml u10c:0 ' ' -o x.idml", 1, "\" \" can't be the key of a placeholder;"},
        {"placeholder letter.idml u10c:0 \"$(printf 'a\\001b')\" -o x.idml", 1,
         "the key of the placeholder holds a line end or another character that no text shows; use a column's name, in "
         "UTF-8."},
        {"placeholder letter.idml u10c:0 \"$(printf 'a\\377')\" -o x.idml", 1,
         "the key of the placeholder holds a line end"},
        {"placeholder letter.idml u10c:12 City -o x.idml", 1,
         "position 12 of the story u10c is inside a placeholder or beside a part of its marks; take a place in front "
         "of "
         "it or behind."},
        {"number cards.idml u104=1 u104=2 -o x.idml", 1, "the frame u104 gets two numbers; name it once."},
        {"number cards.idml \"u102=1:$(printf 'a\\nb')\" -o x.idml", 1,
         "the column for the frame u102 holds a line end"},
        {"omr letter.idml -o nowhere/x.idml", 1, "nowhere"},
        {"preview cards.idml $SAMPLES/people_100.csv --record 0 -o x.png", 2,
         "--record needs a whole number from 1, not \"0\"."},
        {"preview cards.idml $SAMPLES/people_100.csv --record 1 --page 2 -o x.png", 1,
         "the template has 1 page, so there is no page 2 for --page."},
        {"preview cards.idml $SAMPLES/people_100.csv --record 101 -o x.png", 1,
         "the data has 100 records, so there is no record 101; choose a smaller --record."}};
    for (const auto& one : cases) {
        SCOPED_TRACE(one.command);
        const Outcome outcome = run(std::string("$VORNASET ") + one.command);
        EXPECT_EQ(outcome.status, one.status);
        EXPECT_NE(outcome.errors.find(one.sentence), std::string::npos) << outcome.errors;
        EXPECT_EQ(names(), "cards.idml letter.idml") << "no file is left";
    }
    for (const char* name : {"cards.idml", "letter.idml"})
        EXPECT_EQ(run(std::string("cmp ") + name + " $SAMPLES/" + name).status, 0) << "none is changed";
}

TEST_F(Authoring, EveryCommandHasHelpWithAnExampleAndExitStatuses) {
    for (const char* command : {"number", "placeholder", "omr", "strip-static", "preview"}) {
        const std::string help = output(std::string("$VORNASET ") + command + " --help");
        for (const char* part : {"Usage: vornaset ", "Example", "Exit status:", "--output"})
            EXPECT_NE(help.find(part), std::string::npos) << command << ": " << part;
    }
}

}  // namespace
}  // namespace journeys
