#include "desk/text/hyphenation_patterns.h"

#include <gtest/gtest.h>
#include <hyphen.h>
#include <sys/stat.h>
#include <zip.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <sstream>

#include "desk/text/hyphenation.h"
#include "desk/text/unicode.h"

/// The library forgets a pattern's memory when another one has the same letters; a run that looks for leaks may know.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libhyphen\n";
}

namespace desk {
namespace {

const std::string installed = "/usr/share/hyphen";

std::string contentOf(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string bytesOf(std::u16string_view text, const std::string& set = "UTF-8") {
    std::string bytes;
    return unicode::Encoder::make(set)->encode(text, bytes) ? bytes : "";
}

std::u16string textOf(std::string_view bytes, const std::string& set = "UTF-8") {
    std::u16string text;
    unicode::decode(bytes, set, text);
    return text;
}

/// Of this process alone, whatever else the machine does.
double millisecondsOf(const auto& action) {
    const std::clock_t begin = std::clock();
    action();
    return double(std::clock() - begin) * 1000 / CLOCKS_PER_SEC;
}

/// "ex-am-ple": the word with its points.
std::string shown(HyphenationPatterns& patterns, std::u16string_view word) {
    std::vector<uint8_t> follows;
    patterns.find(word, follows);
    std::u16string result;
    for (size_t i = 0; i < word.size(); ++i) {
        result += word[i];
        if (follows[i]) result += u'-';
    }
    return bytesOf(result);
}

std::string hyphenated(const std::string& file, const std::u16string& word) {
    const std::unique_ptr<HyphenationPatterns> patterns = HyphenationPatterns::read(file);
    return patterns ? shown(*patterns, word) : "no patterns";
}

/// The hyphenation library: slow to load, and what other programs of the machine use.
class Library {
  public:
    explicit Library(const std::string& path) : rules_(hnj_hyphen_load(path.c_str())) {
        if (rules_) encoder_ = unicode::Encoder::make(rules_->cset);
    }
    ~Library() {
        if (rules_) hnj_hyphen_free(rules_);
    }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    bool works() const { return encoder_ != nullptr; }

    /// Like HyphenationPatterns::find(). False for a word outside its character set.
    bool find(std::u16string_view word, std::vector<uint8_t>& follows) {
        follows.assign(word.size(), 0);
        if (!encoder_->encode(word, bytes_)) return false;
        std::vector<char> marks(bytes_.size() + 5, '\0');
        char** spellings = nullptr;
        int *positions = nullptr, *cuts = nullptr;
        hnj_hyphen_hyphenate3(rules_, bytes_.data(), static_cast<int>(bytes_.size()), marks.data(), nullptr, &spellings,
                              &positions, &cuts, 0, 0, 0, 0);
        size_t character = 0;
        for (size_t at = 0; at < word.size(); ++character) {
            at += unicode::codePointAt(word, at).units;
            follows[at - 1] = at < word.size() && (marks[character] & 1) && !(spellings && spellings[character]);
        }
        for (size_t i = 0; spellings && i < bytes_.size(); ++i) std::free(spellings[i]);
        std::free(spellings);
        std::free(positions);
        std::free(cuts);
        return true;
    }

  private:
    HyphenDict* rules_;
    std::unique_ptr<unicode::Encoder> encoder_;
    std::string bytes_;
};

/// Dictionary files in a folder of their own.
class PatternFiles : public testing::Test {
  protected:
    void SetUp() override {
        folder_ = testing::TempDir() + "hyphenation-" + std::to_string(::getpid());
        std::filesystem::create_directories(folder_);
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }
    std::string written(const std::string& name, const std::string& content) {
        const std::string path = folder_ + "/" + name;
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }
    std::string folder_;
};

// ---- What a file says ----

TEST(HyphenationPatterns, TheHighestValueOfAllPatternsDecides) {
    EXPECT_EQ(hyphenated("UTF-8\nx1a\nxam3\n4m1p\n1p2l2\n", u"example"), "ex-am-ple");
    EXPECT_EQ(hyphenated("UTF-8\nx1a\n", u"example"), "ex-ample");
    EXPECT_EQ(hyphenated("UTF-8\nx1a\nexa2m\n", u"example"), "example") << "the longer pattern hides the shorter one";
}

TEST(HyphenationPatterns, DotsStandForTheBordersOfTheWord) {
    EXPECT_EQ(hyphenated("UTF-8\n.ab1c\n", u"abcabcabc"), "ab-cabcabc");
    EXPECT_EQ(hyphenated("UTF-8\na1bc.\nRIGHTHYPHENMIN 1\n", u"abcabcabc"), "abcabca-bc");
}

TEST(HyphenationPatterns, TheCharacterSetIsThatOfTheFirstLine) {
    EXPECT_EQ(hyphenated("ISO8859-1\nt\xE4 1\nt\xE4"
                         "1t\n",
                         u"aktätät"),
              "aktä-tät");
    EXPECT_EQ(hyphenated("ISO8859-2\r\no\xE8"
                         "1o\r\n",
                         u"dvočovo"),
              "dvoč-ovo");
    EXPECT_EQ(hyphenated("UTF-8\ntä1t\n", u"aktätät"), "aktä-tät");
    EXPECT_EQ(hyphenated("KLINGON-8\nta1t\n", u"aktatat"), "no patterns");
    EXPECT_EQ(hyphenated("", u"aktatat"), "no patterns");
}

TEST(HyphenationPatterns, CommentsAreNoPatterns) {
    EXPECT_EQ(hyphenated("UTF-8\n% a1b\n#a1b\n%a1b\n\na1b and what follows\n", u"xxabxx"), "xxa-bxx");
}

TEST(HyphenationPatterns, TheLastOfTwoPatternsOfTheSameLettersCounts) {
    EXPECT_EQ(hyphenated("UTF-8\nab1cd\na1bcd\n", u"xxabcdxx"), "xxa-bcdxx");
    EXPECT_EQ(hyphenated("UTF-8\nab1cd\nabcd\n", u"xxabcdxx"), "xxabcdxx");
}

TEST(HyphenationPatterns, KeepsTheDistancesOfTheFile) {
    EXPECT_EQ(hyphenated("UTF-8\n1a\n", u"aaaaaa"), "aa-a-a-aa") << "two on each side unless it says more";
    EXPECT_EQ(hyphenated("UTF-8\nLEFTHYPHENMIN 1\nRIGHTHYPHENMIN 3\n1a\n", u"aaaaaa"), "a-a-a-aaa");
    EXPECT_EQ(hyphenated("UTF-8\nLEFTHYPHENMIN 99999999999999999999\n1a\n", u"aaaaaa"), "aaaaaa");
    EXPECT_EQ(hyphenated("UTF-8\nLEFTHYPHENMIN 3\n1a\n", u"ﬃaaaaa"), "ﬃa-a-a-aa")
        << "three letters in one count as two";
}

TEST(HyphenationPatterns, CompoundsAreCutAtTheFirstLevelAndSyllablesAtTheSecond) {
    const std::string file = "UTF-8\nbau1haus\nNEXTLEVEL\nu1h\na1u\n";
    EXPECT_EQ(hyphenated(file, u"bauhaus"), "bau-ha-us");
    EXPECT_EQ(
        hyphenated("UTF-8\nCOMPOUNDLEFTHYPHENMIN 3\nCOMPOUNDRIGHTHYPHENMIN 2\nbau1haus\nNEXTLEVEL\na1u\n", u"bauhaus"),
        "bau-haus");
    EXPECT_EQ(hyphenated(file, u"rauhaum"), "ra-u-ha-um") << "no compound: the second level alone";
}

TEST(HyphenationPatterns, PartsOfACompoundAreBordersForTheSecondLevel) {
    EXPECT_EQ(hyphenated("UTF-8\nhaus1tor\nNEXTLEVEL\n.t1o\n", u"haustor"), "haus-t-or");
    EXPECT_EQ(hyphenated("UTF-8\nhaus1tor\nhof1haus\nNEXTLEVEL\n", u"hofhaustor"), "hof-haus-tor");
}

TEST(HyphenationPatterns, TheLastLetterOfAPartIsNotCutOff) {
    EXPECT_EQ(hyphenated("UTF-8\nabc1de\nNEXTLEVEL\nb1c\na1b\n", u"xabcdexx"), "xa-bc-dexx");
    EXPECT_EQ(hyphenated("UTF-8\nab1c.\nabc1de\nNEXTLEVEL\n", u"xabcdexx"), "xabc-dexx");
}

TEST(HyphenationPatterns, NoHyphenStandsBesideWhatTheFileLists) {
    EXPECT_EQ(hyphenated("UTF-8\nNOHYPHEN -,'\n1-1\n1'1\nNEXTLEVEL\n", u"lang-wort"), "lang-wort");
    EXPECT_EQ(hyphenated("UTF-8\n1-1\nNEXTLEVEL\n", u"lang-wort"), "lang---wort");
    EXPECT_EQ(hyphenated("UTF-8\nNOHYPHEN gw,\n1g\nw1o\nr1t\nNEXTLEVEL\n", u"langwort"), "langwort");
    EXPECT_EQ(hyphenated("UTF-8\n1w\n1h\n", u"dn'hauswort"), "dn'haus-wort") << "the list of a file of one level";
}

TEST(HyphenationPatterns, AHyphenThatChangesTheSpellingIsLeftOut) {
    EXPECT_EQ(hyphenated("UTF-8\nschif1fahrt/ff=f,5,2\n1ten\n", u"schiffahrten"), "schiffahr-ten");
    EXPECT_EQ(hyphenated("UTF-8\nf3f/ff=f\nf1fa\n", u"schiffahrt"), "schiffahrt")
        << "a lower value gives no hyphen back";
    EXPECT_EQ(hyphenated("UTF-8\nf1f/ff=f\nf3fa\n", u"schiffahrt"), "schif-fahrt") << "a higher one does";
    EXPECT_EQ(hyphenated("UTF-8\nf3f/ff=f\nf1f\n", u"schiffahrt"), "schif-fahrt") << "the last of equal letters";
    EXPECT_EQ(hyphenated("UTF-8\na1bcd1e/bc=c,3,1\n", u"xxabcdexx"), "xxa-bcd-exx") << "hyphens outside of the change";
    EXPECT_EQ(hyphenated("UTF-8\nschif1fahrt/ff=f,5,2\nNEXTLEVEL\nif1f.\nf1f\n", u"schiffahrt"), "schiffahrt");
}

// ---- Through the public class ----

TEST_F(PatternFiles, PointsCountLettersAndKnowCapitals) {
    written("hyph_en_US.dic", "UTF-8\nx1a\nxam3\n4m1p\n1p2l2\n");
    Hyphenator hyphenator(folder_);
    std::vector<HyphenPoint> points;
    hyphenator.find(u"(Example’s", hyphenator.language("$ID/English: USA"), points);
    ASSERT_EQ(points.size(), 2u);
    EXPECT_EQ(points[0].offset, 3);
    EXPECT_EQ(points[0].lettersBefore, 2);
    EXPECT_EQ(points[0].lettersAfter, 6);
    EXPECT_TRUE(points[0].capitalized);
    EXPECT_EQ(points[1].offset, 5);
}

TEST_F(PatternFiles, AWordOutsideTheCharacterSetIsLeftWhole) {
    written("hyph_de_DE.dic", "ISO8859-1\na1l\n");
    Hyphenator hyphenator(folder_);
    std::vector<HyphenPoint> points;
    hyphenator.find(u"wallau", hyphenator.language("$ID/German: 2006 Reform"), points);
    EXPECT_EQ(points.size(), 1u);
    hyphenator.find(u"wałalau", hyphenator.language("$ID/German: 2006 Reform"), points);
    EXPECT_TRUE(points.empty());
}

// ---- Files that are no dictionaries ----

TEST_F(PatternFiles, WhatIsMissingHyphenatesNothing) {
    EXPECT_EQ(HyphenationPatterns::load(folder_ + "/none.dic"), nullptr);
    EXPECT_EQ(HyphenationPatterns::load(folder_), nullptr) << "a folder";
    const std::string pipe = folder_ + "/pipe.dic";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(HyphenationPatterns::load(pipe), nullptr);
    const std::string huge = written("huge.dic", "UTF-8\na1b\n");
    std::filesystem::resize_file(huge, uintmax_t{1} << 33);
    EXPECT_EQ(HyphenationPatterns::load(huge), nullptr);

    Hyphenator hyphenator(folder_ + "/nowhere");
    std::vector<HyphenPoint> points;
    hyphenator.find(u"hyphenation", hyphenator.language("$ID/English: USA"), points);
    EXPECT_TRUE(points.empty());
}

TEST(HyphenationPatterns, APatternWithoutEndIsLeftOut) {
    const std::string longLine = "a1b" + std::string(100000, 'c');
    EXPECT_EQ(hyphenated("UTF-8\n" + longLine + "\nx1y\n", u"aaxyaa"), "aax-yaa");
    EXPECT_EQ(hyphenated("UTF-8\nx1y\n" + longLine, u"aaxyaa"), "aax-yaa");
    EXPECT_EQ(hyphenated("UTF-8\ny1\nxy" + std::string(250, 'c'), u"aaxyaa"), "aaxy-aa") << "it hides no other";
    EXPECT_EQ(hyphenated("UTF-8\nx" + std::string(250, '0') + "1ya\n", u"aaxyaa"), "aax-yaa")
        << "digits are no letters";
}

TEST(HyphenationPatterns, AChangeThatGrowsTheWordComesToAnEnd) {
    EXPECT_EQ(hyphenated("UTF-8\na1b/aaaaaaaa=b,1,2\nNEXTLEVEL\n", u"ccabcc"), "ccabcc");
    EXPECT_EQ(hyphenated("UTF-8\nabc1d/=x,1,3\nNEXTLEVEL\n", u"abcdd"), "abcdd") << "nothing is left before it";
    EXPECT_EQ(hyphenated("UTF-8\na1b/a=b,250,1\na1c/=,1,99999999\nNEXTLEVEL\n", u"ccabacc"), "cca-bacc");
}

TEST(HyphenationPatterns, DamagedFilesAreReadToTheirEnd) {
    const std::string intact =
        "UTF-8\nLEFTHYPHENMIN 2\nNOHYPHEN -,'\n1-1\nbau1haus\nschif1fahrt/ff=f,5,2\nNEXTLEVEL\n"
        "1tä\n.a2b3c.\na1tje./a=t,1,3\n";
    std::mt19937 random(7);
    const std::vector<std::u16string> words = {u"bauhaus", u"schiffahrt", u"aktätät", u"abc",
                                               u"omaatje", u"-'-",        u"a",       u""};
    std::vector<uint8_t> follows;
    for (int round = 0; round < 3000; ++round) {
        std::string file = intact;
        for (int i = 0; i < 1 + round % 5; ++i) {
            const size_t at = 6 + random() % (file.size() - 6);
            if (random() % 4 == 0)
                file.insert(at, file.substr(6 + random() % (file.size() - 6), random() % 20));
            else if (random() % 4 == 0)
                file.erase(at, random() % 20);
            else
                file[at] = static_cast<char>(random());
            if (file.size() < 30) file = intact;
        }
        const std::unique_ptr<HyphenationPatterns> patterns = HyphenationPatterns::read(file);
        ASSERT_TRUE(patterns);
        for (const std::u16string& word : words) {
            patterns->find(word, follows);
            ASSERT_EQ(follows.size(), word.size());
            ASSERT_TRUE(word.empty() || follows.back() == 0);
        }
    }
    std::string binary = "ISO8859-1\n";
    for (int i = 0; i < 1000000; ++i) binary += static_cast<char>(random());
    const std::unique_ptr<HyphenationPatterns> patterns = HyphenationPatterns::read(binary);
    ASSERT_TRUE(patterns);
    for (const std::u16string& word : words) patterns->find(word, follows);
}

// ---- The library as the judge ----

struct Comparison {
    size_t words = 0, points = 0, differences = 0;
    std::string first;
};

void compare(HyphenationPatterns& patterns, Library& library, const std::set<std::u16string>& words,
             Comparison& result) {
    std::vector<uint8_t> ours, theirs;
    for (const std::u16string& word : words) {
        if (word.size() < 2 || word.size() > 90) continue;
        if (!library.find(word, theirs)) continue;
        patterns.find(word, ours);
        ++result.words;
        result.points += static_cast<size_t>(std::count(theirs.begin(), theirs.end(), 1));
        if (ours == theirs) continue;
        ++result.differences;
        if (result.first.size() > 2000) continue;
        result.first += bytesOf(word) + ": " + shown(patterns, word) + ", by the library at";
        for (size_t i = 0; i < word.size(); ++i)
            if (theirs[i]) result.first += " " + std::to_string(i + 1);
        result.first += "\n";
    }
}

/// The letters of each pattern of a dictionary file, dots and digits left out.
std::vector<std::u16string> lettersOfPatterns(const std::string& path) {
    const std::string file = contentOf(path);
    const std::string set = file.substr(0, file.find('\n'));
    std::vector<std::u16string> result;
    std::istringstream lines(bytesOf(textOf(file.substr(set.size()), set)));
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || std::isupper(static_cast<unsigned char>(line[0])) || line[0] == '#' || line[0] == '%')
            continue;
        std::u16string letters;
        for (const char16_t c : textOf(line))
            if (unicode::isLetter(c) || c == u'\'') letters += c;
        if (!letters.empty()) result.push_back(letters);
    }
    return result;
}

/// The letters of the patterns themselves (many are whole words), and as many words put together of two to four of
/// them.
std::set<std::u16string> wordsOf(const std::string& path, size_t atLeast) {
    const std::vector<std::u16string> letters = lettersOfPatterns(path);
    std::set<std::u16string> words(letters.begin(), letters.end());
    const size_t wanted = std::max(words.size() * 2, atLeast);
    std::mt19937 random(11);
    while (!letters.empty() && words.size() < wanted) {
        std::u16string word;
        for (size_t parts = 2 + random() % 3; parts > 0; --parts) word += letters[random() % letters.size()];
        words.insert(word);
    }
    return words;
}

/// All words of a text in small letters.
void addWords(std::u16string_view text, std::set<std::u16string>& words) {
    std::u16string word;
    for (const char16_t c : unicode::lowerCase(text, "de")) {
        if (unicode::isLetter(c)) {
            word += c;
        } else {
            words.insert(word);
            word.clear();
        }
    }
    words.insert(word);
}

/// What the stories of a template say, the marks of its text included.
std::u16string textOfStories(const std::string& template_) {
    int error = 0;
    zip_t* archive = zip_open(template_.c_str(), ZIP_RDONLY, &error);
    std::u16string text;
    for (zip_int64_t i = 0; archive && i < zip_get_num_entries(archive, 0); ++i) {
        zip_stat_t entry;
        if (zip_stat_index(archive, static_cast<zip_uint64_t>(i), 0, &entry) != 0) continue;
        if (std::string_view(entry.name).find("Stories/") == std::string_view::npos) continue;
        std::string xml(entry.size, '\0');
        zip_file_t* file = zip_fopen_index(archive, static_cast<zip_uint64_t>(i), 0);
        zip_fread(file, xml.data(), xml.size());
        zip_fclose(file);
        for (size_t at = xml.find("<Content>"); at != std::string::npos; at = xml.find("<Content>", at + 1))
            text += textOf(xml.substr(at + 9, xml.find("</Content>", at) - at - 9)) + u" ";
    }
    if (archive) zip_discard(archive);
    return text;
}

/// Compares one installed dictionary, reports what was compared, and gives how many times faster ours loads.
double expectLikeTheLibrary(const std::string& name, const std::set<std::u16string>& more = {}) {
    const std::string path = installed + "/" + name;
    std::unique_ptr<HyphenationPatterns> patterns;
    std::unique_ptr<Library> library;
    const double ours = millisecondsOf([&] { patterns = HyphenationPatterns::load(path); });
    const double theirs = millisecondsOf([&] { library = std::make_unique<Library>(path); });
    EXPECT_TRUE(patterns && library->works());
    if (!patterns || !library->works()) return 0;
    Comparison result;
    const std::set<std::u16string> words = wordsOf(path, 20000);
    compare(*patterns, *library, words, result);
    compare(*patterns, *library, more, result);
    EXPECT_EQ(result.differences, 0u) << result.first;
    EXPECT_GT(result.points, result.words / 2);
    std::vector<uint8_t> follows;
    const double looking = millisecondsOf([&] {
        for (const std::u16string& word : words) patterns->find(word, follows);
    });
    std::printf(
        "%s: %zu words, %zu points, %zu differences; loaded in %.1f ms, by the library in %.0f ms; %zu kB; "
        "%.2f us a word\n",
        name.c_str(), result.words, result.points, result.differences, ours, theirs, patterns->size() / 1024,
        looking * 1000 / double(words.size()));
    EXPECT_LT(patterns->size(), size_t{10} << 20);
    return theirs / ours;
}

TEST(PatternComparison, GermanIsHyphenatedAsTheLibraryDoes) {
    if (!std::filesystem::exists(installed + "/hyph_de_DE.dic")) GTEST_SKIP() << "no German dictionary on this machine";
    std::set<std::u16string> samples;
    addWords(textOfStories(VORNASET_SAMPLES_DIR "/letter.idml"), samples);
    EXPECT_GT(samples.size(), 50u);
    addWords(textOf(contentOf(VORNASET_SAMPLES_DIR "/people_100.csv")), samples);
    EXPECT_GT(expectLikeTheLibrary("hyph_de_DE.dic", samples), 10) << "times faster to load";
}

TEST(PatternComparison, EnglishIsHyphenatedAsTheLibraryDoes) {
    if (!std::filesystem::exists(installed + "/hyph_en_US.dic"))
        GTEST_SKIP() << "no English dictionary on this machine";
    expectLikeTheLibrary("hyph_en_US.dic");
}

TEST(PatternComparison, FrenchIsHyphenatedAsTheLibraryDoes) {
    if (!std::filesystem::exists(installed + "/hyph_fr.dic")) GTEST_SKIP() << "no French dictionary on this machine";
    expectLikeTheLibrary("hyph_fr.dic");
}

std::string randomLetters(std::mt19937& random, size_t most) {
    static const std::vector<std::string> letters = {"a", "b", "c", "ä"};
    std::string result;
    for (size_t i = 0, count = 1 + random() % most; i < count; ++i) result += letters[random() % letters.size()];
    return result;
}

std::string randomPattern(std::mt19937& random) {
    static const std::vector<std::string> letters = {"a", "b", "c", "ä"};
    std::string pattern = random() % 6 == 0 ? "." : "";
    for (size_t i = 0, count = 1 + random() % 4; i < count; ++i) {
        if (random() % 3 == 0) pattern += static_cast<char>('1' + random() % 5);
        pattern += letters[random() % letters.size()];
    }
    if (random() % 3 == 0) pattern += static_cast<char>('1' + random() % 5);
    return pattern + (random() % 6 == 0 ? ".\n" : "\n");
}

TEST_F(PatternFiles, RandomDictionariesHyphenateAsTheLibraryDoes) {
    std::mt19937 random(3);
    Comparison result;
    for (int round = 0; round < 400; ++round) {
        std::string file;
        // The library forgets its distance from the right in words that are no longer than it.
        if (random() % 2) file += "LEFTHYPHENMIN " + std::to_string(2 + random() % 3) + "\n";
        if (random() % 2) file += "RIGHTHYPHENMIN " + std::to_string(1 + random() % 3) + "\n";
        const size_t compoundLeft = random() % 4;
        if (compoundLeft) file += "COMPOUNDLEFTHYPHENMIN " + std::to_string(compoundLeft) + "\n";
        if (compoundLeft > 1) file += "COMPOUNDRIGHTHYPHENMIN " + std::to_string(1 + random() % 3) + "\n";
        for (size_t i = random() % 12; i > 0; --i) file += randomPattern(random);
        if (random() % 3 == 0) file += "NOHYPHEN ab,ä\n";
        if (random() % 3) file += "NEXTLEVEL\n";
        for (size_t i = random() % 20; i > 0; --i) file += randomPattern(random);
        // In UTF-8 the library takes bytes for letters at the end of a compound's part.
        file = "ISO8859-1\n" + bytesOf(textOf(file), "ISO8859-1");
        const std::unique_ptr<HyphenationPatterns> patterns = HyphenationPatterns::read(file);
        Library library(written("random.dic", file));
        std::set<std::u16string> words;
        for (int i = 0; i < 100; ++i) words.insert(textOf(randomLetters(random, 14)));
        compare(*patterns, library, words, result);
        ASSERT_EQ(result.differences, 0u) << file << result.first;
    }
    EXPECT_GT(result.points, 5000u);
}

}  // namespace
}  // namespace desk
