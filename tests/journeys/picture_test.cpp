// Pictures and barcodes in a merge, read with other people's tools.
#include <sys/stat.h>

#include "journeys/program.h"

namespace journeys {
namespace {

const std::string quiet = " 2>&1";

class Pictures : public Journey {
  protected:
    Pictures() { output("mkdir tmp && cp $SAMPLES/photos/01.jpg one.jpg && cp $SAMPLES/photos/02.jpg two.jpg"); }

    /// A data file for cards.idml with these photos.
    void writeCards(const std::string& name, const std::vector<std::string>& photos) const {
        std::string text = "first,last,company,zip,city,photo\n";
        for (const std::string& photo : photos) text += "A,B,C,1,D,\"" + photo + "\"\n";
        write(name, text);
    }
    Outcome mergeCards(const std::string& data, const std::string& more = {}) const {
        return run("TMPDIR=$PWD/tmp $VORNASET merge $SAMPLES/cards.idml " + data + " -o cards.pdf --report r.json " +
                   more);
    }
    std::string problems() const {
        return output(
            "python3 -c \"import json; print(';'.join('%s %s %s %s' % (p['kind'], p['record'], p['column'], p['file']) "
            "for p in json.load(open('r.json'))['problems']))\"");
    }
};

TEST_F(Pictures, RelativePathsBeginAtTheDataFilesFolder) {
    output("mkdir data && mv one.jpg two.jpg data");
    writeCards("data/rows.csv", {"one.jpg", "two.jpg", "./one.jpg"});
    const Outcome outcome = mergeCards("data/rows.csv");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(problems(), "\n");
    EXPECT_EQ(output("pdfimages -list cards.pdf | awk 'NR>2{print $1, $3, $9}'"),
              "1 image jpeg\n2 image jpeg\n3 image jpeg\n");
    EXPECT_EQ(output("pdfimages -list cards.pdf | awk 'NR>2{print $11}' | sort -u | wc -l"), "2\n")
        << "a photo stands in the file once";
    output("pdfimages -all -f 1 -l 1 cards.pdf out && cmp out-000.jpg data/one.jpg");
    EXPECT_EQ(run("qpdf --check cards.pdf").status, 0);
}

TEST_F(Pictures, AnotherFolderCanBeNamed) {
    output("mkdir data pictures && mv one.jpg pictures");
    writeCards("data/rows.csv", {"one.jpg"});
    EXPECT_EQ(mergeCards("data/rows.csv", "--images pictures").status, 0);
    EXPECT_EQ(problems(), "\n");
    expectFailure(
        "$VORNASET merge $SAMPLES/cards.idml data/rows.csv -o x.pdf --images nowhere --quiet", 1,
        "the folder of the pictures, \"nowhere\", can't be entered (No such file or directory); name the right "
        "one with --images.",
        names());
}

TEST_F(Pictures, EveryBadPictureIsInTheReportWithRecordAndColumn) {
    output(
        ": > empty.jpg; head -c 300 one.jpg > cut.jpg; echo text > text.jpg; mkdir folder.jpg; "
        "printf '\\211PNG\\r\\n\\032\\n\\0\\0\\0\\rIHDR\\0\\1\\206\\240\\0\\1\\206\\240\\10\\6\\0\\0\\0' > large.png; "
        "qpdf --empty none.pdf; $VORNASET export $SAMPLES/cards.idml -o plain.pdf --quiet && "
        "qpdf --encrypt user owner 256 -- plain.pdf locked.pdf");
    writeCards("rows.csv", {"one.jpg", "empty.jpg", "cut.jpg", "text.jpg", "folder.jpg", "large.png", "none.pdf",
                            "locked.pdf", "missing.jpg", "../missing.jpg", "a/b/4006381333931"});
    const Outcome outcome = mergeCards("rows.csv", "--strict");
    EXPECT_EQ(outcome.status, 3) << outcome.errors;
    EXPECT_EQ(
        problems(),
        "importFailed 2 photo empty.jpg;importFailed 3 photo cut.jpg;importFailed 4 photo text.jpg;importFailed 5 "
        "photo folder.jpg;importFailed 6 photo large.png;importFailed 7 photo none.pdf;importFailed 8 "
        "photo locked.pdf;missingImg 9 photo missing.jpg;missingImg 10 photo ../missing.jpg;missingImg 11 photo "
        "a/b/4006381333931\n");
    EXPECT_EQ(output("pdfinfo cards.pdf | sed -n 's/^Pages: *//p'"), "11\n");
    EXPECT_EQ(output("ls -A tmp"), "") << "nothing of the run is left";
}

TEST_F(Pictures, AVeryLongCellIsAMissingPicture) {
    writeCards("rows.csv", {std::string(5000, '1')});
    EXPECT_EQ(mergeCards("rows.csv").status, 0);
    EXPECT_EQ(problems().substr(0, 18), "missingImg 1 photo");
}

TEST_F(Pictures, BarcodesAreDrawnByTheShippedTool) {
    output("$VORNASET merge $SAMPLES/labels.idml $SAMPLES/people_100.csv -o labels.pdf --report r.json");
    EXPECT_EQ(problems(), "\n");
    EXPECT_NE(output("pdftotext -layout -f 1 -l 1 labels.pdf -").find("045102"), std::string::npos);
    EXPECT_EQ(run("qpdf --check labels.pdf").status, 0);
    EXPECT_EQ(output("pdffonts labels.pdf | awk 'NR>2{print $(NF-4)}' | sort -u"), "yes\n") << "every font is embedded";
}

TEST_F(Pictures, AForeignToolGetsFiveArgumentsAndItsPageIsPlaced) {
    write("tool", "#!/bin/sh\necho \"$#:$*\" >> \"" + path("calls").string() + "\"\necho '0 0 20 20 re f'\n");
    output("chmod +x tool; head -3 $SAMPLES/people_100.csv > rows.csv");
    output(
        "TMPDIR=$PWD/tmp $VORNASET merge $SAMPLES/labels.idml rows.csv -o labels.pdf --barcode ./tool --report r.json");
    EXPECT_EQ(output("sort calls"), "5:-e ean13 -b 4045102890940 -D\n5:-e ean13 -b 4054494902377 -D\n");
    EXPECT_EQ(problems(), "\n");
    EXPECT_EQ(output("ls -A tmp"), "");
}

TEST_F(Pictures, AToolThatIsNotThereIsToldBeforeTheRun) {
    expectFailure("$VORNASET merge $SAMPLES/labels.idml $SAMPLES/people_100.csv -o x.pdf --barcode ./none", 1,
                  "the barcode program \"./none\" isn't there or can't be run; give its path with --barcode.", names());
}

TEST_F(Pictures, ASlotWhoseColumnTheDataLackIsToldBeforeTheRun) {
    write("rows.csv", "first,last,company,zip,city\nA,B,C,1,D\n");
    expectFailure(
        "$VORNASET merge $SAMPLES/cards.idml rows.csv -o x.pdf --quiet", 1,
        "frame u102 takes its picture from the column \"photo\", which \"rows.csv\" lacks; add the column, or "
        "name another one with \"vornaset number\".",
        names());
    write("pipes.csv", "first|photo\nA|B\n");
    expectFailure(
        "$VORNASET merge $SAMPLES/cards.idml pipes.csv -o x.pdf --quiet", 1,
        "frame u102 takes its picture from the column \"photo\", which \"pipes.csv\" lacks; the file was read as "
        "one column alone: separate its columns by comma, semicolon or tab, or say --delimiter.",
        names());
}

TEST_F(Pictures, ADiskThatFillsWhileABarcodeIsWrittenEmptiesThatSlotAndIsReported) {
    if (!mountDisk("40k")) GTEST_SKIP() << "mounting a small disk isn\'t allowed here";
    const Outcome outcome =
        run("TMPDIR=$PWD/disk $VORNASET merge $SAMPLES/labels.idml $SAMPLES/people_100.csv -o x.pdf --report r.json");
    const std::string left = output("ls -A disk");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(left, "");
    EXPECT_EQ(run("qpdf --check x.pdf").status, 0);
    const std::string problem = output(
        "python3 -c \"import json; p = json.load(open('r.json'))['problems'][0]; print(p['kind'], p['column'])\"");
    EXPECT_EQ(problem, "missingImg code\n");
}

TEST_F(Pictures, ACellWithAZeroByteIsToldWithItsPlace) {
    std::string rows = "first,last,company,zip,city,photo\nA,B,C,1,D,one.jpg\nA,B,C,1,D,one.jpg?x\n";
    rows[rows.find('?')] = '\0';
    write("rows.csv", rows);
    expectFailure("$VORNASET merge $SAMPLES/cards.idml rows.csv -o x.pdf", 1,
                  "the data file \"rows.csv\", record 2 (line 3), column 6: a zero byte: the file isn't text, or it is "
                  "UTF-16 without a byte order mark (then say --encoding utf-16le or utf-16be).",
                  names());
}

TEST_F(Pictures, CodesThatLeadOutOfTheRunsFolderReachNoTool) {
    write("tool", "#!/bin/sh\necho called >> \"" + path("calls").string() + "\"\necho '0 0 20 20 re f'\n");
    output(
        "chmod +x tool; printf "
        "'first,last,company,street,zip,city,code\\na,b,c,d,e,f,../../4006381333931\\na,b,c,d,e,f,..\\n' > rows.csv");
    output("TMPDIR=$PWD/tmp $VORNASET merge $SAMPLES/labels.idml rows.csv -o x.pdf --barcode ./tool --report r.json");
    EXPECT_FALSE(exists("calls"));
    EXPECT_EQ(output("python3 -c \"import json; print(sorted((p['record'], p['kind'], p['file']) for p in "
                     "json.load(open('r.json'))['problems']))\""),
              "[(1, 'missingImg', '../../4006381333931'), (2, 'importFailed', '..')]\n");
    EXPECT_EQ(output("ls -A tmp; find . -name '*4006381333931*'"), "");
}

TEST_F(Pictures, TheFolderOfAKilledRunGoesAtTheNextStart) {
    output("mkdir tmp/vornaset-run-dead00 && touch tmp/vornaset-run-dead00/x.pdf && mkdir tmp/mine");
    writeCards("rows.csv", {"one.jpg"});
    EXPECT_EQ(mergeCards("rows.csv").status, 0);
    EXPECT_EQ(output("ls -A tmp"), "mine\n");
}

TEST_F(Pictures, APreviewShowsTheRecordsPage) {
    output("$VORNASET preview $SAMPLES/cards.idml $SAMPLES/people_100.csv --record 2 -o card.png --resolution 72");
    output(
        "$VORNASET merge $SAMPLES/cards.idml $SAMPLES/people_100.csv -o cards.pdf && pdftoppm -png -singlefile -r 72 "
        "-f 2 -l 2 cards.pdf whole");
    EXPECT_EQ(contents("card.png"), contents("whole.png"));
    EXPECT_EQ(
        run("PATH=/nowhere $VORNASET preview $SAMPLES/cards.idml $SAMPLES/people_100.csv --record 2 -o no.png").errors,
        "vornaset: this machine has no program that draws PDF pages; install pdftoppm (Debian package "
        "poppler-utils) or mutool (mupdf-tools).\n");
    EXPECT_FALSE(exists("no.png"));
}

}  // namespace
}  // namespace journeys
