#pragma once
// Small packages with something of everything that saving must leave alone.

#include <string>
#include <vector>

#include "desk/idml/package.h"

namespace saved_package {

/// What this system doesn't understand, in every part; no edit is about it.
inline const std::string foreign = "<?keep this?><!-- and this --><Mystery Self='m1' a=\"&lt;1&gt;\"/>";

inline std::string part(const std::string& kind, const std::string& content) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<idPkg:" + kind +
           " xmlns:idPkg='urn:packaging' DOMVersion=\"16.0\">" + foreign + content + "</idPkg:" + kind + ">\n";
}

inline std::string path(const std::string& more = {}) {
    return "<Properties><PathGeometry><GeometryPathType PathOpen='false'><PathPointArray><PathPointType Anchor='0 0' "
           "LeftDirection='0 0' RightDirection='0 0'/><PathPointType Anchor='0 40' LeftDirection='0 40' "
           "RightDirection='0 40'/><PathPointType Anchor='60 40' LeftDirection='60 40' RightDirection='60 40'/>"
           "</PathPointArray></GeometryPathType></PathGeometry>" +
           more + "</Properties>";
}

inline std::string labels() {
    return "<Label>\n  <KeyValuePair Key=\"Label\"   Value='a \"quoted\" &#xa; one'/><!-- mine -->\n"
           "  <KeyValuePair Key='Vornaset' Value='&lt;Vornaset&gt;&lt;frameNum&gt;1&lt;/frameNum&gt;&lt;/Vornaset&gt;'"
           " /><KeyValuePair Key='twice' Value='1'/><Unknown/><KeyValuePair Key='twice' Value='2'/></Label>";
}

inline std::string textFrame(const std::string& self, const std::string& more) {
    return "\n  <TextFrame Self='" + self + "' ItemLayer='ub1' Mystery=\"" + self + "\" " + more +
           " ItemTransform=\"1 0 0 1 -100 -50\">" + path(self == "ux1" ? labels() : std::string()) +
           "<Hidden/></TextFrame>";
}

inline const std::string richStory =
    "<StoryPreference FrameType=\"TextFrameType\"/><ParagraphStyleRange AppliedParagraphStyle='ParagraphStyle/Head' "
    "Mystery='p'><CharacterStyleRange PointSize='14'><Properties><AppliedFont type='string'>Serif</AppliedFont>"
    "</Properties><Content>Dear &lt;&lt;Name &gt;&gt;, ]]x> &amp;&#x1F600;\r\n\xF0\x9F\x98\x80</Content><Note "
    "Self='un'><ParagraphStyleRange><Content>mine</Content></ParagraphStyleRange></Note><Br /><Content>two<?ACE 18?>"
    "<?Other x?>three</Content></CharacterStyleRange><CharacterStyleRange "
    "AppliedCharacterStyle='CharacterStyle/Strong'>"
    "<HyperlinkTextSource Self='uh'><Content>li<!-- c -->nk</Content><Br/></HyperlinkTextSource></CharacterStyleRange>"
    "</ParagraphStyleRange>\n<ParagraphStyleRange><CharacterStyleRange><Table Self='ut'><Cell Name='0:0'/></Table>"
    "<TextVariableInstance Self='uv' ResultText='12\nJune'/><Rectangle Self='ur9' Mystery=\"ur9\"><Hidden/></Rectangle>"
    "<Content>a<![CDATA[<b>]]]]><![CDATA[c>]]>\xE2\x80\xA8 end</Content><Br/></CharacterStyleRange>"
    "</ParagraphStyleRange>";

inline std::string spread(const std::string& number, const std::string& items) {
    return "<Spread Self='us" + number + "'><Page Self='up" + number +
           "' Name='1' AppliedMaster='um' GeometricBounds='0 0 800 600' ItemTransform='1 0 0 1 -300 -400'/>" + items +
           "</Spread>";
}

inline std::string firstItems() {
    return textFrame("ux1", "ParentStory='ut1' NextTextFrame='ux2'") +
           textFrame("ux2", "ParentStory=\"ut1\" PreviousTextFrame='ux1' NextTextFrame='n'") +
           "<Group Self='ug1' ItemLayer='ub2' Mystery=\"ug1\"><Rectangle Self='ur1' Mystery=\"ur1\"/>\n"
           "<Oval Self='uo1'>" +
           path() + "</Oval></Group>\n<Rectangle Self='ur2' ItemLayer='ub2' Mystery=\"ur2\">" + path() +
           "<Image Self='ui1'><Properties><GraphicBounds Left='0' Top='0' Right='10' Bottom='10'/></Properties><Link "
           "Self='ul1' LinkResourceURI='file:/none.png'/></Image></Rectangle>";
}

inline std::string layersAndSections() {
    return "<Properties><Mystery/></Properties><Layer Self='ub1' Name='One'/><Layer Self='ub2' Name='Two' "
           "Visible='true'><Properties/></Layer><Section Self='uz1' PageStart='up1' Length='2'/>";
}

inline std::string styles() {
    return "<RootParagraphStyleGroup Self='u2'><ParagraphStyle Self='ParagraphStyle/Head' Name='Head'/>"
           "</RootParagraphStyleGroup><RootCharacterStyleGroup Self='u3'><CharacterStyle Self='CharacterStyle/Strong' "
           "Name='Strong'/></RootCharacterStyleGroup>";
}

/// A package of two spreads, a master spread and three stories; spreads and stories stand in members named by their
/// ids.
inline std::vector<desk::PackageMember> package() {
    using Method = desk::PackageMember::Method;
    const std::string map =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Document xmlns:idPkg='urn:packaging' DOMVersion=\"16.0\" "
        "Self='d' StoryList='ut1 ut2 ut3'>" +
        foreign + layersAndSections() +
        "<idPkg:Styles src='Resources/Styles.xml'/><idPkg:MasterSpread src='MasterSpreads/um.xml'/>"
        "<idPkg:Spread src='Spreads/Spread_us1.xml'/>\n<idPkg:Spread src='Spreads/Spread_us2.xml'/>"
        "<idPkg:Story src='Stories/Story_ut1.xml'/><idPkg:Story src='Stories/Story_ut2.xml'/>"
        "<idPkg:Story src='Stories/Story_ut3.xml'/></Document>";
    return {{"mimetype", "application/x-idml-package", Method::Stored},
            {"designmap.xml", map, Method::Stored},
            {"META-INF/unknown.bin", std::string("\0\1\2", 3), Method::Stored},
            {"Resources/Styles.xml", part("Styles", styles()), Method::Stored},
            {"MasterSpreads/um.xml",
             part("MasterSpread",
                  "<MasterSpread Self='um'><Page Self='ump' GeometricBounds='0 0 800 600' "
                  "ItemTransform='1 0 0 1 -300 -400'/>" +
                      textFrame("ux3", "ParentStory='ut3'") + "</MasterSpread>"),
             Method::Stored},
            {"Spreads/Spread_us1.xml", part("Spread", spread("1", firstItems())), Method::Stored},
            {"Spreads/Spread_us2.xml",
             part("Spread", spread("2", "<Oval Self='uo2' ItemLayer='ub1' ParentStory='ut2' Mystery=\"uo2\"/>")),
             Method::Stored},
            {"Stories/Story_ut1.xml", part("Story", "<Story Self='ut1'>" + richStory + "</Story>"), Method::Stored},
            {"Stories/Story_ut2.xml",
             part("Story",
                  "<Story Self='ut2'><ParagraphStyleRange><CharacterStyleRange PointSize='9'/></ParagraphStyleRange>"
                  "</Story>"),
             Method::Stored},
            {"Stories/Story_ut3.xml", "\xEF\xBB\xBF" + part("Story", "<Story Self='ut3'/>"), Method::Stored}};
}

/// The same things in one part.
inline std::string snippet() {
    return "<Document DOMVersion='20.4'>" + foreign + layersAndSections() + styles() + spread("1", firstItems()) +
           "<Story Self='ut1'>" + richStory + "</Story></Document>";
}

}  // namespace saved_package
