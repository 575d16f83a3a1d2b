#include "support/string_tables.h"

#include "support/message_fixture.h"
#include "support/printing.h"

namespace vornaset {
namespace {

class StringTables : public MessageFixture {
  protected:
    void addAllFlatTables() {
        addResource("MyStrings_F.xml", "<t><key>texte</key></t>");
        addResource("MyStrings_D.xml", "<t><key>Text</key></t>");
        addResource("MyStrings_E.xml", "<t><key>text</key></t>");
    }
};

TEST_F(StringTables, AnUnknownKeyIsItsOwnText) {
    EXPECT_EQ(stringForKey("missing"), String("missing"));
    EXPECT_EQ(stringForKey(String("missing")), String("missing"));
    gStrings = Dictionary::make({{"key", "text"}});
    EXPECT_EQ(stringForKey("missing"), String("missing"));
    EXPECT_EQ(stringForKey("key"), String("text"));
    EXPECT_EQ(stringForKey(String("key")), String("text"));
    EXPECT_TRUE(stringForKey(String()).isNull());
    EXPECT_TRUE(stringForKey(static_cast<const char*>(nullptr)).isNull());
}

TEST_F(StringTables, ADefaultStandsInForAnUnknownKey) {
    EXPECT_EQ(stringForKey("missing", "default"), String("default"));
    EXPECT_EQ(stringForKey(String("missing"), String("default")), String("default"));
    EXPECT_EQ(stringForKey("missing", String("default")), String("default"));
    EXPECT_TRUE(stringForKey("missing", String()).isNull());
    gStrings = Dictionary::make({{"key", "text"}});
    EXPECT_EQ(stringForKey("missing", "default"), String("default"));
    EXPECT_EQ(stringForKey("key", "default"), String("text"));
    EXPECT_EQ(stringForKey(String("key"), String("default")), String("text"));
}

TEST_F(StringTables, ANumberInTheTableIsItsText) {
    gStrings = Dictionary::make({{"key", 42}});
    EXPECT_EQ(stringForKey("key"), String("42"));
}

TEST_F(StringTables, SetupStringsChoosesTheFlatTableByNumber) {
    addAllFlatTables();
    for (const auto& [language, text] :
         std::map<int64_t, String>{{1, "texte"}, {3, "Text"}, {0, "text"}, {2, "text"}, {4, "text"}, {-2, "text"}}) {
        gStrings = nullptr;
        setupStrings(language);
        EXPECT_EQ(stringForKey("key"), text) << language;
    }
    EXPECT_TRUE(presenter_->alerts.empty());
}

TEST_F(StringTables, TheAutomaticChoiceKnowsGermanAndEverythingElse) {
    addAllFlatTables();
    for (const auto& [locale, text] : std::map<std::string, String>{
             {"de_AT.UTF-8", "Text"}, {"fr_FR.UTF-8", "text"}, {"en_GB", "text"}, {"C", "text"}, {"de", "Text"}}) {
        gStrings = nullptr;
        setEnvironment("LANG", locale.c_str());
        setupStrings(-1);
        EXPECT_EQ(stringForKey("key"), text) << locale;
    }
}

TEST_F(StringTables, PreferredLanguageIsWhatTheEnvironmentSaysFirst) {
    EXPECT_EQ(preferredLanguageCode(), String("en"));
    setEnvironment("LANG", "fr_CA.UTF-8");
    EXPECT_EQ(preferredLanguageCode(), String("fr"));
    setEnvironment("LC_MESSAGES", "de_DE@euro");
    EXPECT_EQ(preferredLanguageCode(), String("de"));
    setEnvironment("LC_ALL", "");
    EXPECT_EQ(preferredLanguageCode(), String("de"));
    setEnvironment("LC_ALL", "it_IT");
    EXPECT_EQ(preferredLanguageCode(), String("it"));
    setEnvironment("LANGUAGE", "nl:de");
    EXPECT_EQ(preferredLanguageCode(), String("nl"));
    setEnvironment("LANGUAGE", ":::sv");
    EXPECT_EQ(preferredLanguageCode(), String("sv"));
    setEnvironment("LANGUAGE", "x:de");
    EXPECT_EQ(preferredLanguageCode(), String("x"));
    setEnvironment("LANGUAGE", "de_DE");
    for (const char* without : {"C", "POSIX", "C.UTF-8"}) {
        setEnvironment("LC_ALL", without);
        EXPECT_EQ(preferredLanguageCode(), String("en")) << without;
    }
}

TEST_F(StringTables, AFlatTableTakesElementsAloneAndTheLaterOfTwo) {
    addResource("t.xml",
                "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n"
                "<any> text <!-- comment --><a>first</a><?pi x?><b>caf\xE9 <i>inner</i> &amp; &#x26;</b>"
                "<a>second</a><empty/><![CDATA[x]]></any>");
    const Dictionary table = setupStrings1("t");
    EXPECT_TRUE(table.isSameObject(gStrings));
    EXPECT_EQ(table.count(), 3u);
    EXPECT_EQ(stringForKey("a"), String("second"));
    EXPECT_EQ(stringForKey("b"), String(u"caf\u00E9 inner & &"));
    EXPECT_EQ(stringForKey("empty"), String(u""));
}

TEST_F(StringTables, AMissingTableLeavesTheOneInForceSilently) {
    gStrings = Dictionary::make({{"key", "text"}});
    const Dictionary before = gStrings;
    EXPECT_TRUE(setupStrings1("missing").isSameObject(before));
    EXPECT_TRUE(setupStrings2("missing").isSameObject(before));
    addResource("other.xml", "<t/>");
    EXPECT_TRUE(setupStrings1("missing").isSameObject(before));
    setupStrings(0);
    EXPECT_TRUE(gStrings.isSameObject(before));
    EXPECT_TRUE(presenter_->alerts.empty());
}

TEST_F(StringTables, WithATableFromBeforeTheOneInManyLanguagesIsNotAsked) {
    addResource("MyStrings.xml", "<strings><key>other</key></strings>");
    gStrings = Dictionary::make({{"key", "text"}});
    setupStrings(0);
    EXPECT_EQ(stringForKey("key"), String("text"));
}

TEST_F(StringTables, ATableThatDoesNotParseIsTold) {
    addResource("bad.xml", "<t>\n<a>x</b></t>");
    gStrings = Dictionary::make({{"key", "text"}});
    const Dictionary before = gStrings;
    EXPECT_TRUE(setupStrings1("bad").isSameObject(before));
    ASSERT_EQ(presenter_->alerts.size(), 1u);
    const std::string message = presenter_->alerts[0].message.utf8();
    EXPECT_TRUE(message.starts_with(gBundle.path().utf8() + "/bad.xml: line 2: ")) << message;
    EXPECT_EQ(message.find('\n'), std::string::npos) << message;
    EXPECT_TRUE(setupStrings2("bad").isSameObject(before));
    EXPECT_EQ(presenter_->alerts.size(), 2u);
}

TEST_F(StringTables, EmptyFilesAndDocumentTypesDoNotParse) {
    addResource("empty.xml", "");
    addResource("type.xml", "<!DOCTYPE t [<!ENTITY e SYSTEM \"/etc/passwd\">]><t><a>&e;</a></t>");
    EXPECT_TRUE(setupStrings1("empty").isNull());
    EXPECT_TRUE(setupStrings1("type").isNull());
    ASSERT_EQ(presenter_->alerts.size(), 2u);
    EXPECT_TRUE(presenter_->alerts[1].message.utf8().ends_with("a document type declaration isn't allowed here"));
}

TEST_F(StringTables, SectionsFollowTheUsersLanguage) {
    addResource(
        "MyStrings.xml",
        "<strings>\n <en><key>text</key></en>\n <de><key>Text</key></de>\n <de><key>later</key></de>\n</strings>");
    setEnvironment("LANG", "de_DE");
    setupStrings(1);
    EXPECT_EQ(stringForKey("key"), String("Text"));
    gStrings = nullptr;
    setEnvironment("LANG", "fr_FR");
    setupStrings(3);
    EXPECT_EQ(stringForKey("key"), String("text"));
    EXPECT_EQ(gStrings.count(), 1u);
    EXPECT_TRUE(presenter_->alerts.empty());
}

TEST_F(StringTables, WithoutAnEnglishSectionTheGermanOneIsTaken) {
    addResource("t.xml", "<strings><it><key>testo</key></it><de><key>Text</key></de></strings>");
    setEnvironment("LANG", "fr_FR");
    setupStrings2("t");
    EXPECT_EQ(stringForKey("key"), String("Text"));
}

TEST_F(StringTables, WithoutASectionTheRootIsTheTable) {
    addResource("t.xml", "<strings><key>text</key><other>more</other></strings>");
    setEnvironment("LANG", "fr_FR");
    setupStrings2("t");
    EXPECT_EQ(gStrings.count(), 2u);
    EXPECT_EQ(stringForKey("other"), String("more"));
}

TEST_F(StringTables, EntriesFollowTheUsersLanguageElseEnglish) {
    addResource(
        "t.xml",
        "<strings2>\n <both><de>beide</de><en>both</en></both>\n <english><en>english</en><en>twice</en></english>"
        "\n <german><de>deutsch</de></german>\n <none/>\n <both><fr>deux</fr><en>again</en></both></strings2>");
    setEnvironment("LANG", "de_DE");
    setupStrings2("t");
    EXPECT_EQ(stringForKey("both"), String("again"));
    EXPECT_EQ(stringForKey("english"), String("english"));
    EXPECT_EQ(stringForKey("german"), String("deutsch"));
    EXPECT_FALSE(gStrings.contains("none"));
    setEnvironment("LANG", "it_IT");
    setupStrings2("t");
    EXPECT_FALSE(gStrings.contains("german"));
    EXPECT_EQ(gStrings.count(), 2u);
}

TEST_F(StringTables, ARootOfAnotherNameChangesNothing) {
    addResource("t.xml", "<table><en><key>text</key></en></table>");
    gStrings = Dictionary::make({{"key", "before"}});
    EXPECT_TRUE(setupStrings2("t").isSameObject(gStrings));
    EXPECT_EQ(stringForKey("key"), String("before"));
    EXPECT_TRUE(presenter_->alerts.empty());
}

TEST_F(StringTables, ALaterTableReplacesTheOneInForceWhole) {
    addResource("one.xml", "<t><a>1</a><b>1</b></t>");
    addResource("two.xml", "<t><b>2</b></t>");
    setupStrings1("one");
    setupStrings1("two");
    EXPECT_EQ(stringForKey("a"), String("a"));
    EXPECT_EQ(stringForKey("b"), String("2"));
}

TEST_F(StringTables, HavingNoTableAtAllIsTold) {
    setupStrings(0);
    ASSERT_EQ(presenter_->alerts.size(), 1u);
    EXPECT_EQ(presenter_->alerts[0].message, String("\tVornaset: gStrings = NULL!"));
    EXPECT_TRUE(gStrings.isNull());
}

TEST_F(StringTables, SetupLiteralsDoesNothing) {
    setupLiterals();
    EXPECT_TRUE(gStrings.isNull());
    EXPECT_TRUE(gBundle.isNull());
    EXPECT_TRUE(presenter_->steps.empty());
}

TEST_F(StringTables, LabelsKeepTheirPunctuationApartFromTheKey) {
    gStrings = Dictionary::make({{"name", "Nom"}, {"open", "Ouvrir"}, {"whole:", "entier"}});
    EXPECT_EQ(localizeString("name"), String("Nom"));
    EXPECT_EQ(localizeString("name:"), String("Nom:"));
    EXPECT_EQ(localizeString("name?"), String("Nom?"));
    EXPECT_EQ(localizeString("name!"), String("Nom!"));
    EXPECT_EQ(localizeString(u"open\u2026"), String(u"Ouvrir\u2026"));
    EXPECT_EQ(localizeString("name::"), String("name::"));
    EXPECT_EQ(localizeString("name."), String("name."));
    EXPECT_EQ(localizeString("whole:"), String("whole:"));
}

TEST_F(StringTables, UnknownLabelsComeBackUnchanged) {
    EXPECT_EQ(localizeString("unknown?"), String("unknown?"));
    EXPECT_EQ(localizeString("unknown"), String("unknown"));
    EXPECT_EQ(localizeString(":"), String(":"));
    EXPECT_EQ(localizeString(u""), String(u""));
    EXPECT_FALSE(localizeString(nullptr).isNull());
    EXPECT_TRUE(localizeString(nullptr).isEmpty());
    gStrings = Dictionary::make({{u"", "nothing"}});
    EXPECT_EQ(localizeString(":"), String("nothing:"));
}

}  // namespace
}  // namespace vornaset
