#include <gmock/gmock.h>

#include <cstdlib>

#include "journeys/program.h"

namespace journeys {
namespace {

using testing::HasSubstr;

/// Files of letters to work on: front.pdf has 5 pages, back.pdf a page that says "Letterhead".
class Pdf : public Journey {
  protected:
    Pdf() {
        output("head -6 $SAMPLES/people_100.csv > rows.csv");
        output("$VORNASET merge $SAMPLES/letter.idml rows.csv -o front.pdf --quiet");
        write("back.pdf",
              onePage("[0 0 595.276 841.89]", "BT /F1 9 Tf 50 30 Td (Letterhead) Tj ET 1 0 0 0 k 0 0 5 5 re f"));
    }

    /// A page with Helvetica as /F1.
    static std::string onePage(const std::string& box, const std::string& content) {
        const std::string objects[] = {
            "<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[3 0 R]/Count 1/MediaBox" + box + ">>",
            "<</Type/Page/Parent 2 0 R/Contents 4 0 R/Resources<</Font<</F1 5 0 R>>>>>>",
            "<</Length " + std::to_string(content.size()) + ">>stream\n" + content + "\nendstream",
            "<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>"};
        std::string file = "%PDF-1.4\n", table;
        int number = 0;
        for (const std::string& object : objects) {
            char entry[24];
            std::snprintf(entry, sizeof entry, "%010zu 00000 n \n", file.size());
            table += entry;
            file += std::to_string(++number) + " 0 obj\n" + object + "\nendobj\n";
        }
        return file + "xref\n0 6\n0000000000 65535 f \n" + table + "trailer<</Size 6/Root 1 0 R>>\nstartxref\n" +
               std::to_string(file.size()) + "\n%%EOF\n";
    }

    void expectSound(const std::string& name, const std::string& pages) const {
        EXPECT_EQ(run("qpdf --check " + name).status, 0) << name;
        EXPECT_EQ(output("qpdf --show-npages " + name), pages + "\n");
    }

    /// The largest difference of two pages' pixels, 0 to 255.
    int difference(const std::string& one, const std::string& other, int page) const {
        const std::string number = std::to_string(page);
        output("pdftoppm -r 72 -f " + number + " -l " + number + " -singlefile " + one + " one");
        output("pdftoppm -r 72 -f " + number + " -l " + number + " -singlefile " + other + " other");
        const std::string first = contents("one.ppm"), second = contents("other.ppm");
        if (first.size() != second.size()) return 255;
        int largest = 0;
        for (std::size_t i = 0; i < first.size(); ++i)
            largest = std::max(largest,
                               std::abs(static_cast<unsigned char>(first[i]) - static_cast<unsigned char>(second[i])));
        return largest;
    }
};

TEST_F(Pdf, ARewrittenFileShowsTheSame) {
    EXPECT_EQ(output("$VORNASET pdf rewrite front.pdf -o out.pdf"), "out.pdf: 5 pages\n");
    expectSound("out.pdf", "5");
    EXPECT_EQ(output("pdftotext out.pdf -"), output("pdftotext front.pdf -"));
    for (int page = 1; page <= 5; ++page) EXPECT_LE(difference("front.pdf", "out.pdf", page), 1) << page;
}

TEST_F(Pdf, AFileMayBeWrittenOverItself) {
    output("$VORNASET pdf rewrite front.pdf -o front.pdf --quiet");
    expectSound("front.pdf", "5");
    EXPECT_EQ(names(), "back.pdf front.pdf rows.csv");
}

TEST_F(Pdf, ALetterheadLiesUnderEveryPage) {
    output("$VORNASET pdf underlay back.pdf front.pdf -o out.pdf");
    expectSound("out.pdf", "5");
    for (int page = 1; page <= 5; ++page) {
        const std::string number = std::to_string(page);
        const std::string text = output("pdftotext -f " + number + " -l " + number + " out.pdf -");
        EXPECT_THAT(text, HasSubstr("Letterhead"));
        EXPECT_THAT(text, HasSubstr("Sehr geehrte"));
    }
    EXPECT_EQ(output("qpdf --qdf out.pdf - | grep -a -c '/Subtype /Form'"),
              output("qpdf --qdf front.pdf - | grep -a -c '/Subtype /Form' | awk '{print $1 + 1}'"))
        << "the letterhead is written once";
}

TEST_F(Pdf, ALetterheadWithInheritedEntriesIsWhole) {
    // Its media box stands on the node above the page, which the underlay alone would not look at.
    write("other.pdf", onePage("[0 0 595.276 841.89]", "BT /F1 9 Tf 50 300 Td (In front) Tj ET"));
    output("$VORNASET pdf underlay back.pdf other.pdf -o out.pdf");
    EXPECT_THAT(output("pdftotext out.pdf -"), HasSubstr("Letterhead"));
    EXPECT_THAT(output("pdftotext out.pdf -"), HasSubstr("In front"));
}

TEST_F(Pdf, EachPageGetsTheBackgroundOfItsPlace) {
    write("other.pdf", onePage("[0 0 595.276 841.89]", "BT /F1 9 Tf 50 30 Td (Continuation) Tj ET"));
    output("$VORNASET pdf backgrounds front.pdf back.pdf other.pdf other.pdf other.pdf back.pdf -o out.pdf");
    expectSound("out.pdf", "5");
    EXPECT_THAT(output("pdftotext -f 1 -l 1 out.pdf -"), HasSubstr("Letterhead"));
    EXPECT_THAT(output("pdftotext -f 2 -l 2 out.pdf -"), HasSubstr("Continuation"));
    EXPECT_THAT(output("pdftotext -f 5 -l 5 out.pdf -"), HasSubstr("Letterhead"));
    expectFailure("$VORNASET pdf backgrounds front.pdf back.pdf other.pdf -o none.pdf", 1,
                  "\"front.pdf\" has 5 pages, and 2 backgrounds were named; name one for each page, in order.",
                  "back.pdf front.pdf other.pdf out.pdf rows.csv");
}

TEST_F(Pdf, FilesAreJoinedInOrder) {
    output("$VORNASET pdf append back.pdf front.pdf back.pdf -o out.pdf");
    expectSound("out.pdf", "7");
    EXPECT_THAT(output("pdftotext -f 1 -l 1 out.pdf -"), HasSubstr("Letterhead"));
    EXPECT_THAT(output("pdftotext -f 7 -l 7 out.pdf -"), HasSubstr("Letterhead"));
    EXPECT_EQ(output("pdftotext -f 2 -l 6 out.pdf -"), output("pdftotext front.pdf -"));
}

TEST_F(Pdf, PagesAreCutToTheirTrim) {
    output("head -2 $SAMPLES/people_100.csv > one.csv");
    output("$VORNASET merge $SAMPLES/cards.idml one.csv -o cards.pdf --quiet");
    EXPECT_THAT(output("pdfinfo -box cards.pdf"), Not(HasSubstr("Page size:       240.946 x 155.905 pts")));
    output("$VORNASET pdf crop-to-trim cards.pdf -o out.pdf");
    EXPECT_THAT(output("pdfinfo -box out.pdf"), HasSubstr("Page size:       240.946 x 155.905 pts"));
}

TEST_F(Pdf, PagesAreScaledAndFitted) {
    output("$VORNASET pdf scale front.pdf 0.5 -o half.pdf");
    expectSound("half.pdf", "5");
    EXPECT_THAT(output("pdfinfo half.pdf"), HasSubstr("297.638 x 420.945"));
    output("$VORNASET pdf fit front.pdf 100mm 8in -o fitted.pdf");
    EXPECT_THAT(output("pdfinfo fitted.pdf"), HasSubstr("283.46"));
    EXPECT_THAT(output("pdfinfo fitted.pdf"), HasSubstr(" x 576 pts"));
}

TEST_F(Pdf, TheLastPageGoesAndTheOrderTurns) {
    output("$VORNASET pdf delete-last front.pdf -o out.pdf");
    expectSound("out.pdf", "4");
    EXPECT_EQ(output("pdftotext out.pdf -"), output("pdftotext -l 4 front.pdf -"));
    output("$VORNASET pdf reverse front.pdf -o turned.pdf");
    expectSound("turned.pdf", "5");
    EXPECT_EQ(output("pdftotext -f 1 -l 1 turned.pdf -"), output("pdftotext -f 5 -l 5 front.pdf -"));
    expectFailure("$VORNASET pdf delete-last back.pdf -o none.pdf", 1,
                  "\"back.pdf\" has one page alone, and a document keeps at least one.",
                  "back.pdf front.pdf out.pdf rows.csv turned.pdf");
}

TEST_F(Pdf, InksAndBoxesAreTold) {
    EXPECT_EQ(output("$VORNASET pdf inks back.pdf"), "page 1: CK\n");
    EXPECT_EQ(output("$VORNASET pdf boxes back.pdf"), "page 1: MediaBox [0 0 210 297] mm\n");
    output("$VORNASET pdf boxes back.pdf -o boxes.txt");
    EXPECT_EQ(contents("boxes.txt"), output("$VORNASET pdf boxes back.pdf"));
}

TEST_F(Pdf, APageThatCannotBeDrawnIsNotSaidToHaveNoInk) {
    const Outcome outcome = run("PATH=/nowhere $VORNASET pdf inks back.pdf");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(
        outcome.errors,
        "vornaset: \"back.pdf\", page 1: the page can't be drawn; is Ghostscript there (Debian package ghostscript), "
        "and is the page sound?\n");
}

TEST_F(Pdf, APageBecomesAJPEG) {
    EXPECT_EQ(output("$VORNASET pdf jpeg front.pdf 2 -o page.jpg"), "page.jpg: 1 page\n");
    EXPECT_THAT(output("file page.jpg"), HasSubstr("595x841"));
    expectFailure("$VORNASET pdf jpeg front.pdf 6 -o none.jpg", 1, "\"front.pdf\" has no page 6; its last is page 5.",
                  "back.pdf front.pdf page.jpg rows.csv");
}

TEST_F(Pdf, BadInputIsOneSentenceAndNoFile) {
    write("empty.pdf", "");
    write("cut.pdf", contents("front.pdf").substr(0, 300));
    output("qpdf --encrypt secret secret 256 -- front.pdf locked.pdf");
    const std::string all = "back.pdf cut.pdf empty.pdf front.pdf locked.pdf rows.csv";
    for (const char* name : {"empty.pdf", "rows.csv", "locked.pdf"})
        expectFailure(std::string("$VORNASET pdf rewrite ") + name + " -o out.pdf", 1,
                      std::string("\"") + name +
                          "\" can't be read as PDF: it is damaged, needs a password or is another kind of file.",
                      all);
    EXPECT_EQ(run("$VORNASET pdf rewrite cut.pdf -o out.pdf").status, 1);
    expectFailure("$VORNASET pdf append front.pdf missing.pdf -o out.pdf", 1, "there is no file \"missing.pdf\".", all);
    expectFailure("$VORNASET pdf rewrite . -o out.pdf", 1, "\".\" isn't a file; name a PDF file.", all);
    expectFailure("$VORNASET pdf rewrite front.pdf -o missing/out.pdf", 1,
                  "the output \"missing/out.pdf\" can't be written: there is no folder \"missing\"; make it or choose "
                  "another one.",
                  all);
    expectFailure("$VORNASET pdf scale front.pdf 0 -o out.pdf", 2,
                  "FACTOR needs a number above 0 and up to 1000, like 0.5, not \"0\".", all);
    expectFailure("$VORNASET pdf", 2,
                  "say what to do: rewrite, underlay, backgrounds, append, crop-to-trim, scale, fit, delete-last, "
                  "reverse, inks, boxes or jpeg; see vornaset pdf --help.",
                  all);
}

TEST_F(Pdf, HelpSaysEverything) {
    for (const char* operation : {"rewrite", "underlay", "backgrounds", "append", "crop-to-trim", "scale", "fit",
                                  "delete-last", "reverse", "inks", "boxes", "jpeg"}) {
        EXPECT_THAT(output("$VORNASET pdf --help"), HasSubstr(operation));
        const std::string help = output(std::string("$VORNASET pdf ") + operation + " --help");
        EXPECT_THAT(help, HasSubstr(std::string("vornaset pdf ") + operation));
        EXPECT_THAT(help, HasSubstr("Example:"));
        EXPECT_THAT(help, HasSubstr("Exit status:"));
    }
}

TEST_F(Pdf, AHundredAndFiftyUnderlaysOfOneSharedDictionaryFindTheirNames) {
    // Pages that share one resource dictionary have a hundred names between them; each gets its own before.
    write("other.pdf", onePage("[0 0 595.276 841.89]", "BT /F1 9 Tf 50 300 Td (In front) Tj ET"));
    output("qpdf --empty --pages $(for i in $(seq 150); do echo other.pdf; done) -- many.pdf");
    output("$VORNASET pdf underlay back.pdf many.pdf -o out.pdf");
    expectSound("out.pdf", "150");
    EXPECT_EQ(output("pdftotext out.pdf - | grep -c Letterhead"), "150\n");
}

}  // namespace
}  // namespace journeys
