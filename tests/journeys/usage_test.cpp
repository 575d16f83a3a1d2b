#include "journeys/program.h"

namespace journeys {
namespace {

class Usage : public Journey {};

TEST_F(Usage, WrongArgumentsAreStatusTwoAndOneSentence) {
    struct {
        const char* arguments;
        const char* sentence;
    } cases[] = {
        {"",
         "say what to do: merge, export, check, info, preview, number, placeholder, omr, strip-static or pdf; see "
         "vornaset --help."},
        {"print",
         "there is no command \"print\" but merge, export, check, info, preview, number, placeholder, omr, "
         "strip-static "
         "and pdf; see vornaset --help."},
        {"merge", "TEMPLATE is required; see vornaset merge --help."},
        {"merge a.idml b.csv", "--output is required; see vornaset merge --help."},
        {"merge a.idml b.csv -o c.pdf d", "the following argument was not expected: d; see vornaset merge --help."},
        {"merge a.idml b.csv -o c.pdf --loud",
         "the following argument was not expected: --loud; see vornaset merge --help."},
        {"merge a.idml b.csv -o c.pdf --start 0", "--start needs a whole number from 1, not \"0\"."},
        {"merge a.idml b.csv -o c.pdf --count many", "--count needs a whole number from 1, not \"many\"."},
        {"merge a.idml b.csv -o c.pdf --offset -1", "--offset needs a whole number from 1, not \"-1\"."},
        {"merge a.idml b.csv -o c.pdf --encoding ebcdic",
         "--encoding doesn't know \"ebcdic\"; say utf-8, utf-16, utf-16le, utf-16be, windows-1252 or macroman."},
        {"check a.idml b.csv --delimiter ab",
         "--delimiter needs comma, semicolon, tab, pipe or one character that is no letter, digit or quote, not "
         "\"ab\"."},
        {"export a.idml", "--output is required; see vornaset export --help."},
        {"info", "TEMPLATE is required; see vornaset info --help."},
    };
    for (auto& [arguments, sentence] : cases) expectFailure(std::string("$VORNASET ") + arguments, 2, sentence, "");
}

TEST_F(Usage, HelpSaysEverything) {
    std::string general = output("$VORNASET --help");
    for (const char* part : {"merge", "export", "check", "info", "--version", "Exit status:", "130"})
        EXPECT_NE(general.find(part), std::string::npos) << part;
    std::string merge = output("$VORNASET merge --help");
    for (const char* option :
         {"--start N", "--count N", "--offset N", "--fonts DIR", "--keep-empty-lines", "--rules FILE.json",
          "--delimiter C", "--encoding NAME", "--report FILE.json", "--strict", "--quiet", "-o,--output OUT.pdf",
          "Examples:", "Exit status:", "\"contentOf\""})
        EXPECT_NE(merge.find(option), std::string::npos) << option;
    for (const char* command : {"export", "check", "info"})
        EXPECT_NE(output(std::string("$VORNASET ") + command + " --help").find("Exit status:"), std::string::npos)
            << command;
    EXPECT_EQ(run("$VORNASET --help").errors, "");
}

TEST_F(Usage, NoLineOfHelpIsTooLongForATerminal) {
    for (const char* command : {"", "merge", "export", "check", "info"})
        EXPECT_EQ(
            output(std::string("$VORNASET ") + command + " --help | grep -v 'contentOf' | awk 'length > 101' | head"),
            "");
}

TEST_F(Usage, TheVersionIsTheProjects) {
    EXPECT_EQ(output("$VORNASET --version"),
              "vornaset " + output("sed -n 's/^project(vornaset VERSION \\([0-9.]*\\).*/\\1/p' " VORNASET_SOURCE_DIR
                                   "/CMakeLists.txt"));
}

TEST_F(Usage, FullStandardOutputIsAFailure) {
    Outcome outcome = run("$VORNASET --help > /dev/full");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "vornaset: standard output can't be written.\n");
}

}  // namespace
}  // namespace journeys
