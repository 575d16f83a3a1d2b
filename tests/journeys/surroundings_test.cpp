// Runs whose surroundings are odd: streams that are closed, names with line ends, inputs named as outputs, programs
// that don't do as they should, signals while another program works.
#include <sys/stat.h>

#include "journeys/program.h"

namespace journeys {
namespace {

class Surroundings : public Journey {
  protected:
    Surroundings() { output("mkdir tmp && head -3 $SAMPLES/people_100.csv > rows.csv && cp $SAMPLES/*.idml ."); }

    void writeTool(const std::string& text) const {
        write("tool", "#!/bin/sh\n" + text);
        ::chmod(path("tool").c_str(), 0755);
    }
    /// The tool stands for a program of this name.
    void makeToolStandFor(const std::string& program) const { output("mkdir bin && ln -s ../tool bin/" + program); }
    /// Starts the command, waits until the tool has made the file "started", and sends a request to end, or more.
    Outcome endWhileTheToolWorks(const std::string& command, const std::string& send = "kill -TERM $p") const {
        return run("TMPDIR=$PWD/tmp PATH=$PWD/bin:$PATH $VORNASET " + command +
                   " --barcode ./tool & p=$!; for i in $(seq 600); do [ -e started ] && break; sleep 0.05; done; "
                   "[ -e started ] || { kill -KILL $p; exit 99; }; " +
                   send + "; wait $p");
    }
    void expectToolIsGone() const {
        EXPECT_NE(run("kill -0 $(cat started) 2>&- && ! grep -q '^State:.Z' /proc/$(cat started)/status").status, 0)
            << "what the tool started is still there";
    }

    const std::string labels = "merge labels.idml rows.csv -o out.pdf --report r.json";
    const std::string hanging = "sleep 1000 & echo $! > new; mv new started; wait\n";
    const std::string given = "cards.idml labels.idml letter.idml rows.csv started tmp tool";
};

TEST_F(Surroundings, NothingThatIsSaidGoesIntoAFileWhenStandardErrorIsClosed) {
    makeTemplate(
        "wavy.idml", "Spreads/Spread_uc0.xml", R"(StrokeColor="Swatch/None" StrokeWeight="0" ContentType="Una)",
        R"(StrokeColor="Color/House Blue" StrokeWeight="2" StrokeType="StrokeStyle/$ID/Wavy" ContentType="Una)",
        "cards.idml");
    const std::string merge = "$VORNASET merge wavy.idml rows.csv -o out.pdf --images $SAMPLES --report ";
    EXPECT_NE(run(merge + "spoken.json").errors.find("is drawn as a solid line"), std::string::npos);
    EXPECT_EQ(run(merge + "silent.json 2>&-").status, 0);
    EXPECT_EQ(run(merge + "alone.json <&- >&- 2>&-").status, 0);
    EXPECT_EQ(contents("silent.json"), contents("spoken.json"));
    EXPECT_EQ(contents("alone.json"), contents("spoken.json"));
    EXPECT_EQ(run("qpdf --check out.pdf").status, 0);
    EXPECT_EQ(run("$VORNASET info letter.idml >&-").errors, "vornaset: standard output can't be written.\n");
}

TEST_F(Surroundings, ASentenceStaysOneLineWhateverAFileIsCalled) {
    EXPECT_EQ(run("$VORNASET merge letter.idml \"$(printf 'no\\nsuch\\033.csv')\" -o out.pdf").errors,
              "vornaset: the data file \"no\\nsuch\\x1B.csv\" doesn't exist; check its name and folder.\n");
}

TEST_F(Surroundings, APreviewNeverTakesThePlaceOfWhatItReads) {
    writeTool("echo '0 0 20 20 re f'\n");
    write("rules.json", "[]");
    const std::string before = names();
    const struct {
        const char* output;
        const char* what;
    } cases[] = {{"labels.idml", "the template"},
                 {"./rows.csv", "the data file"},
                 {"rules.json", "the rules file"},
                 {"tool", "the barcode program"}};
    for (const auto& one : cases)
        expectFailure(
            std::string("$VORNASET preview labels.idml rows.csv --record 1 --rules rules.json --barcode ./tool "
                        "-o ") +
                one.output,
            1, std::string("the output \"") + one.output + "\" is " + one.what + " itself; choose another name.",
            before);
    EXPECT_EQ(run("cmp labels.idml $SAMPLES/labels.idml").status, 0);
}

TEST_F(Surroundings, AReportNeverTakesThePlaceOfItsPdfUnderAnotherSpelling) {
    expectFailure("$VORNASET merge letter.idml rows.csv -o out.pdf --report ./out.pdf", 1,
                  "the report and the output have the same name, \"out.pdf\"; choose two.", names());
    output("ln -s out.pdf link");
    expectFailure("$VORNASET merge letter.idml rows.csv -o out.pdf --report tmp/../out.pdf", 1,
                  "the report and the output have the same name, \"out.pdf\"; choose two.", names());
}

TEST_F(Surroundings, WhatAnOperationTellsNeverTakesThePlaceOfItsPdf) {
    output("$VORNASET export cards.idml -o plain.pdf && cp plain.pdf kept.pdf");
    for (const char* operation : {"inks plain.pdf", "boxes plain.pdf", "jpeg plain.pdf 1"})
        expectFailure(std::string("$VORNASET pdf ") + operation + " -o ./plain.pdf", 1,
                      "the output \"./plain.pdf\" is the PDF file itself; choose another name.", names());
    EXPECT_EQ(contents("plain.pdf"), contents("kept.pdf"));
}

TEST_F(Surroundings, AnEmptyNameIsToldAsOne) {
    expectFailure("$VORNASET merge letter.idml rows.csv -o ''", 1,
                  "the output has no name; give it a file name with --output.", names());
}

TEST_F(Surroundings, APdfWhoseNameIsNoUtf8IsToldSo) {
    output("$VORNASET export cards.idml -o plain.pdf && mv plain.pdf \"$(printf 'pl\\351n.pdf')\"");
    const Outcome outcome = run("$VORNASET pdf rewrite \"$(printf 'pl\\351n.pdf')\" -o out.pdf");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.errors.find("isn't UTF-8, so the file can't be read; rename it."), std::string::npos)
        << outcome.errors;
}

TEST_F(Surroundings, AReportThatFindsNoRoomSaysThatThePdfIsThere) {
    if (!mountDisk("8k")) GTEST_SKIP() << "mounting a small disk isn\'t allowed here";
    const Outcome outcome =
        run("head -c 8192 /dev/zero > disk/fill; $VORNASET merge letter.idml rows.csv -o out.pdf --report disk/r.json");
    const std::string left = output("ls -A disk");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors,
              "vornaset: the report \"disk/r.json\" can't be written: the disk is full; free some space or choose "
              "another disk. The output \"out.pdf\" is there and whole.\n");
    EXPECT_EQ(left, "fill\n");
    EXPECT_EQ(run("qpdf --check out.pdf").status, 0);
}

TEST_F(Surroundings, APreviewWithoutRoomSaysWhereAndWhatToDo) {
    if (!mountDisk("8k")) GTEST_SKIP() << "mounting a small disk isn\'t allowed here";
    const Outcome outcome =
        run("TMPDIR=$PWD/disk $VORNASET preview cards.idml rows.csv --images $SAMPLES --record 1 -o card.png");
    const std::string left = output("ls -A disk");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "vornaset: the page can't be written into the temporary folder \"" +
                                  path("disk").string() + "\"; make room there or set TMPDIR to another folder.\n");
    EXPECT_EQ(left, "");
    EXPECT_FALSE(exists("card.png"));
}

TEST_F(Surroundings, ARequestToEndReachesTheBarcodeProgramToo) {
    writeTool(hanging);
    const Outcome outcome = endWhileTheToolWorks(labels);
    EXPECT_EQ(outcome.status, 143);
    EXPECT_NE(outcome.errors.find("no file was written.\n"), std::string::npos) << outcome.errors;
    EXPECT_EQ(names(), given);
    EXPECT_EQ(output("ls -A tmp"), "");
    expectToolIsGone();
}

TEST_F(Surroundings, TheTwoSignalsOfATerminalThatClosesAreOneWish) {
    writeTool(hanging);
    const Outcome outcome = endWhileTheToolWorks(labels, "kill -STOP $p; kill -TERM $p; kill -HUP $p; kill -CONT $p");
    EXPECT_TRUE(outcome.status == 143 || outcome.status == 129) << outcome.status;
    EXPECT_EQ(names(), given);
    EXPECT_EQ(output("ls -A tmp"), "");
    expectToolIsGone();
}

TEST_F(Surroundings, APreviewThatIsToEndLeavesNothing) {
    writeTool(hanging);
    const Outcome outcome = endWhileTheToolWorks("preview labels.idml rows.csv --record 1 -o label.png");
    EXPECT_EQ(outcome.status, 143);
    EXPECT_EQ(outcome.errors, "vornaset: stopped; no file was written.\n");
    EXPECT_EQ(names(), given);
    EXPECT_EQ(output("ls -A tmp"), "");
    expectToolIsGone();
}

TEST_F(Surroundings, ARequestToEndReachesTheProgramThatConvertsAPictureToo) {
    writeTool(hanging);
    makeToolStandFor("rsvg-convert");
    write("drawing.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>");
    write("drawings.csv", "first,last,photo\nA,B,drawing.svg\nC,D,drawing.svg\n");
    const Outcome outcome = endWhileTheToolWorks("merge cards.idml drawings.csv -o out.pdf");
    EXPECT_EQ(outcome.status, 143);
    EXPECT_NE(outcome.errors.find("no file was written.\n"), std::string::npos) << outcome.errors;
    EXPECT_EQ(names(), "bin cards.idml drawing.svg drawings.csv labels.idml letter.idml rows.csv started tmp tool");
    EXPECT_EQ(output("ls -A tmp"), "");
    expectToolIsGone();
}

TEST_F(Surroundings, ARequestToEndReachesTheProgramThatDrawsAPreviewToo) {
    writeTool(hanging);
    makeToolStandFor("pdftoppm");
    const Outcome outcome = endWhileTheToolWorks("preview letter.idml rows.csv --record 1 -o letter.png");
    EXPECT_EQ(outcome.status, 143);
    EXPECT_EQ(names(), "bin " + given);
    EXPECT_EQ(output("ls -A tmp"), "");
    expectToolIsGone();
}

TEST_F(Surroundings, ABarcodeProgramThatCannotWorkEndsTheRunWithItsName) {
    write("tool", "#!/no/such/shell\n");
    ::chmod(path("tool").c_str(), 0755);
    expectFailure("$VORNASET " + labels + " --barcode ./tool", 1,
                  "the barcode program \"./tool\" can't be started; is it a program for this machine?",
                  "cards.idml labels.idml letter.idml rows.csv tmp tool");
    writeTool("cat letter.idml > /dev/null; echo %PDF-1.4\n");
    const Outcome outcome = run("$VORNASET " + labels + " --barcode ./tool");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(
        outcome.errors.find("the barcode program \"./tool\" printed a whole PDF file instead of a page's content"),
        std::string::npos)
        << outcome.errors;
}

TEST_F(Surroundings, EveryPictureThatIsMissingIsToldWithItsReason) {
    write("codes.csv",
          "first,last,company,street,zip,city,code\nA,,,,,,4006381333930\nB,,,,,,\nC,,,,,,rows.csv\nD,,,,,,no/such\n");
    const Outcome outcome = run("TMPDIR=$PWD/tmp $VORNASET merge labels.idml codes.csv -o out.pdf --report r.json");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_NE(
        outcome.output.find("4 problems (first: missingImg, page 1, record 1, column \"code\", \"4006381333930\": "
                            "there is no such file, and no barcode: the check digit of the EAN-13 code "
                            "\"4006381333930\" must be 1, not 0.)"),
        std::string::npos)
        << outcome.output;
    EXPECT_EQ(output("python3 -c \"import json\nfor p in json.load(open('r.json'))['problems']: print(p['record'], "
                     "p['kind'], p['file'], p.get('reason'), sep='|')\""),
              "1|missingImg|4006381333930|there is no such file, and no barcode: the check digit of the EAN-13 code "
              "\"4006381333930\" must be 1, not 0.\n"
              "2|importFailed||the cell is empty.\n"
              "3|importFailed|rows.csv|The picture \"" +
                  path("rows.csv").string() +
                  "\" isn't a picture that can be placed. Use JPEG, PNG, TIFF, PDF, SVG or EPS.\n"
                  "4|missingImg|no/such|there is no such file.\n");
}

TEST_F(Surroundings, ABarcodeForWhichTheDiskHasNoRoomIsToldAsThat) {
    if (!mountDisk("4k")) GTEST_SKIP() << "mounting a small disk isn\'t allowed here";
    run("head -c 4096 /dev/zero > disk/fill");
    const Outcome outcome = run("TMPDIR=$PWD/disk $VORNASET " + labels);
    EXPECT_NE(outcome.output.find("the barcode can't be written into the temporary folder; is there room in \"" +
                                  path("disk").string()),
              std::string::npos)
        << outcome.output << outcome.errors;
}

TEST_F(Surroundings, AStoryThatShowsSeveralRecordsIsNotSaidToPassOverThem) {
    makeTemplate("two.idml", "Stories/Story_u103.xml", "&lt;&lt;last&gt;&gt;", "&lt;&lt;last#&gt;&gt;", "cards.idml");
    const std::string merge = "$VORNASET merge two.idml $SAMPLES/people_100.csv -o out.pdf --count 2";
    EXPECT_EQ(run(merge + " --offset 2").errors, "");
    EXPECT_NE(
        run(merge).errors.find("warning: story u103 shows 2 records (keys that end in \"#\"), and the run moves on "
                               "by 1: records are printed more than once; say another --offset.\n"),
        std::string::npos);
}

}  // namespace
}  // namespace journeys
