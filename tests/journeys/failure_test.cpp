#include <sys/stat.h>
#include <unistd.h>

#include "journeys/program.h"

namespace journeys {
namespace {

class Failure : public Journey {
  protected:
    /// One sentence on standard error that has the part, the status, and the same names in the folder as before.
    void expectSentence(const std::string& command, int status, const std::string& part) const {
        std::string before = names();
        Outcome outcome = run(command);
        EXPECT_EQ(outcome.status, status) << command << "\n" << outcome.errors;
        EXPECT_EQ(outcome.errors.rfind("vornaset: ", 0), 0u) << outcome.errors;
        EXPECT_EQ(outcome.errors.find('\n'), outcome.errors.size() - 1) << outcome.errors;
        EXPECT_EQ(outcome.errors[outcome.errors.size() - 2], '.') << outcome.errors;
        EXPECT_NE(outcome.errors.find(part), std::string::npos) << part << " isn't in: " << outcome.errors;
        EXPECT_EQ(names(), before) << "no file is left behind";
    }
    std::string merge(const std::string& openTemplate, const std::string& data) const {
        return "$VORNASET merge " + openTemplate + " " + data + " -o out.pdf --quiet";
    }
    std::string letter(const std::string& data) const { return merge("$SAMPLES/letter.idml", data); }

    const std::string people = "$SAMPLES/people_100.csv";
};

TEST_F(Failure, ADataFileThatCannotBeUsed) {
    expectSentence(letter("none.csv"), 1, "the data file \"none.csv\" doesn't exist");
    expectSentence(letter("."), 1, "the data file \".\" is a folder");
    write("empty.csv", "");
    expectSentence(letter("empty.csv"), 1, "the data file \"empty.csv\" is empty.");
    write("names.csv", "a,b\n");
    expectSentence(letter("names.csv"), 1, "has a line of column names and no records");
    expectSentence(letter("$SAMPLES/photos/01.jpg"), 1, "isn't text");
    expectSentence(letter("$SAMPLES/letter.idml"), 1, "is a ZIP package");
    write("twice.csv", "a,b,a\n1,2,3\n");
    expectSentence(letter("twice.csv"), 1, "the columns 1 and 3 are both named \"a\"");
    write("open.csv", "a,b\n1,2\n3,\"4\n");
    expectSentence(letter("open.csv"), 1,
                   "record 2 (line 3), column 2: the quote that opens this cell is never closed.");
    write("long.csv", "a,b\n1,2,3\n");
    expectSentence(letter("long.csv"), 1, "record 1 (line 2), column 3");
}

TEST_F(Failure, AStartBehindTheData) {
    expectSentence(letter(people) + " --start 101", 1, "the data has 100 records, so record 101 can't be the first");
}

TEST_F(Failure, ATemplateThatCannotBeUsed) {
    expectSentence(merge("none.idml", people), 1, "none.idml");
    expectSentence(merge(".", people), 1, "");
    write("text.idml", "no package at all");
    expectSentence(merge("text.idml", people), 1, "text.idml");
    output("mkdir p && echo x > p/x && cd p && zip -q ../other.idml x && cd .. && rm -r p");
    expectSentence(merge("other.idml", people), 1, "other.idml");
    makeTemplate("broken.idml", "Stories/Story_u10a.xml", "</Story>", "</Stor>");
    expectSentence(merge("broken.idml", people), 1, "broken.idml");
    expectSentence("$VORNASET info none.idml", 1, "none.idml");
    expectSentence("$VORNASET check none.idml " + people, 1, "none.idml");
    expectSentence("$VORNASET export none.idml -o out.pdf", 1, "none.idml");
}

TEST_F(Failure, RulesThatCannotBeUsed) {
    expectSentence(letter(people) + " --rules none.json", 1, "the rules file \"none.json\" doesn't exist");
    write("rules.json", "[{]");
    expectSentence(letter(people) + " --rules rules.json", 1, "the rules file \"rules.json\" isn't JSON");
}

TEST_F(Failure, AnOutputFolderThatIsNotThere) {
    expectSentence("$VORNASET merge $SAMPLES/letter.idml " + people + " -o none/out.pdf --quiet", 1, "none");
    expectSentence(letter(people) + " --report none/r.json", 1, "the report \"none/r.json\" can't be written");
    expectSentence("$VORNASET merge $SAMPLES/letter.idml " + people + " -o . --quiet", 1, "is a folder");
}

TEST_F(Failure, AnOutputFolderThatMayNotBeWritten) {
    output("mkdir locked && chmod 555 locked");
    if (::geteuid() == 0) {
        if (run("command -v setpriv").status != 0) GTEST_SKIP() << "root may write everywhere, and setpriv isn't there";
        output("chmod 755 .");
        std::string asNobody = "setpriv --reuid=65534 --regid=65534 --clear-groups ";
        if (run(asNobody + "test -x $VORNASET && " + asNobody + "test -r $SAMPLES/letter.idml").status != 0)
            GTEST_SKIP() << "another user can't reach the program";
        expectSentence(asNobody + "$VORNASET merge $SAMPLES/letter.idml " + people + " -o locked/out.pdf --quiet", 1,
                       "locked");
    } else {
        expectSentence("$VORNASET merge $SAMPLES/letter.idml " + people + " -o locked/out.pdf --quiet", 1, "locked");
    }
}

TEST_F(Failure, AnOutputThatIsAnInput) {
    output("cp $SAMPLES/letter.idml t.idml && cp " + people + " d.csv");
    expectSentence("$VORNASET merge t.idml d.csv -o t.idml", 1, "the output \"t.idml\" is the template itself");
    expectSentence("$VORNASET merge t.idml d.csv -o ./d.csv", 1, "is the data file itself");
    expectSentence("$VORNASET merge t.idml d.csv -o out.pdf --report d.csv", 1, "is the data file itself");
    expectSentence("$VORNASET merge t.idml d.csv -o out.pdf --report out.pdf", 1, "have the same name");
    expectSentence("$VORNASET export t.idml -o t.idml", 1, "is the template itself");
    EXPECT_EQ(run("cmp t.idml $SAMPLES/letter.idml && cmp d.csv " + people).status, 0);
}

TEST_F(Failure, AFullDiskLeavesTheOldFile) {
    write("out.pdf", "old");
    // A file size limit of 8 KiB stands in for a disk without room.
    expectSentence("ulimit -f 16; " + letter(people), 1, "out.pdf");
    EXPECT_EQ(contents("out.pdf"), "old");
}

TEST_F(Failure, ASmallDiskThatFillsUpLeavesTheOldFile) {
    if (!mountDisk("64k")) GTEST_SKIP() << "mounting a small disk isn\'t allowed here";
    Outcome outcome = run("echo old > disk/out.pdf; $VORNASET merge $SAMPLES/letter.idml " + people +
                          " -o disk/out.pdf --quiet; s=$?; cat disk/out.pdf; ls disk; exit $s");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "old\nout.pdf\n");
    EXPECT_EQ(outcome.errors.rfind("vornaset: ", 0), 0u) << outcome.errors;
}

TEST_F(Failure, ARowThatIsMissingNamesTemplateStoryAndRecord) {
    makeTemplate("advance.idml", "Stories/Story_u10c.xml", "&lt;&lt;date&gt;&gt;", "&lt;&lt;date#&gt;&gt;");
    write("out.pdf", "old");
    expectSentence(
        merge("advance.idml", people), 1,
        "the template \"advance.idml\", story u10c, record 100: a placeholder that moves on to the next record");
    EXPECT_EQ(contents("out.pdf"), "old");
    EXPECT_EQ(run(merge("advance.idml", people) + " --count 1").status, 1) << "that many records and no more";
}

// The run below takes long enough to be met in the middle of its work.
class Interrupted : public Failure {
  protected:
    Interrupted() {
        output("python3 $SAMPLES/rows.py 200000 > many.csv");
        write("out.pdf", "old");
    }
    /// Starts the merge, waits until its temporary file has grown, sends the signal and gives the merge's end.
    Outcome interrupt(const std::string& signal) const {
        return run(
            "$VORNASET merge $SAMPLES/letter.idml many.csv -o out.pdf & p=$!;"
            " for i in $(seq 600); do"
            "   n=$(find . -name '*out.pdf*' ! -name out.pdf -size +100k | wc -l); [ $n -gt 0 ] && break; sleep 0.05;"
            " done; [ $n -gt 0 ] || { kill -KILL $p; exit 99; };"
            " kill -" +
            signal + " $p; wait $p");
    }
};

TEST_F(Interrupted, CtrlCLeavesTheOldFileAndSaysSo) {
    // A shell starts background jobs with SIGINT ignored; the program obeys that, so python gives it back.
    write("start.py",
          "import signal, sys, os\n"
          "signal.signal(signal.SIGINT, signal.SIG_DFL)\n"
          "os.execvp(sys.argv[1], sys.argv[1:])\n");
    Outcome outcome =
        run("python3 start.py $VORNASET merge $SAMPLES/letter.idml many.csv -o out.pdf & p=$!;"
            " for i in $(seq 600); do"
            "   n=$(find . -name '*out.pdf*' ! -name out.pdf -size +100k | wc -l); [ $n -gt 0 ] && break; "
            "sleep 0.05; done; [ $n -gt 0 ] || { kill -KILL $p; exit 99; };"
            " kill -INT $p; wait $p");
    EXPECT_EQ(outcome.status, 130);
    EXPECT_EQ(outcome.errors.rfind("vornaset: stopped after ", 0), 0u) << outcome.errors;
    EXPECT_NE(outcome.errors.find(" of 200000 pages; no file was written.\n"), std::string::npos) << outcome.errors;
    EXPECT_EQ(contents("out.pdf"), "old");
    EXPECT_EQ(names(), "many.csv out.pdf start.py") << "nothing else stays";
}

TEST_F(Interrupted, ARequestToEndDoesTheSame) {
    Outcome outcome = interrupt("TERM");
    EXPECT_EQ(outcome.status, 143);
    EXPECT_EQ(outcome.errors.rfind("vornaset: stopped after ", 0), 0u) << outcome.errors;
    EXPECT_EQ(contents("out.pdf"), "old");
    EXPECT_EQ(names(), "many.csv out.pdf");
}

TEST_F(Interrupted, AKillLeavesTheOldFileAndNoJobForTheNext) {
    Outcome outcome = interrupt("KILL");
    EXPECT_EQ(outcome.status, 137);
    EXPECT_EQ(contents("out.pdf"), "old");
    output("$VORNASET export $SAMPLES/letter.idml -o plain.pdf");
    EXPECT_NE(output("pdftotext plain.pdf -").find("<<company>>"), std::string::npos)
        << "an export afterwards finds no job waiting";
}

TEST_F(Interrupted, BeforeTheWorkItEndsAtOnce) {
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
    Outcome outcome =
        run("$VORNASET merge $SAMPLES/letter.idml pipe -o out.pdf & p=$!; sleep 0.3; kill -TERM $p; wait $p");
    EXPECT_EQ(outcome.status, 143);
    EXPECT_NE(outcome.errors.find("vornaset: stopped; no file was written.\n"), std::string::npos) << outcome.errors;
    EXPECT_EQ(contents("out.pdf"), "old");
}

}  // namespace
}  // namespace journeys
