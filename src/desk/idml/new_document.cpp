#include "desk/idml/new_document.h"

#include <vector>

#include "desk/idml/package.h"

namespace desk {
namespace {

constexpr const char* packaging = "http://ns.adobe.com/AdobeInDesign/idml/1.0/packaging";

std::string part(const std::string& kind, const std::string& content) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<idPkg:" + kind + " xmlns:idPkg=\"" +
           packaging + "\" DOMVersion=\"16.0\">" + content + "</idPkg:" + kind + ">";
}

std::string page(const std::string& self, const std::string& name, const std::string& master) {
    return "<Page Self=\"" + self + "\" Name=\"" + name + "\" AppliedMaster=\"" + master +
           "\" GeometricBounds=\"0 0 792 612\" ItemTransform=\"1 0 0 1 -306 -396\" OverrideList=\"\">"
           "<MarginPreference ColumnCount=\"1\" ColumnGutter=\"12\" Top=\"36\" Bottom=\"36\" Left=\"36\" "
           "Right=\"36\"/></Page>";
}

std::string designmap() {
    return std::string("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<Document xmlns:idPkg=\"") +
           packaging +
           "\" DOMVersion=\"16.0\" Self=\"d\" StoryList=\"\" ActiveLayer=\"ub1\">"
           "<idPkg:Graphic src=\"Resources/Graphic.xml\"/><idPkg:Fonts src=\"Resources/Fonts.xml\"/>"
           "<idPkg:Styles src=\"Resources/Styles.xml\"/><idPkg:Preferences src=\"Resources/Preferences.xml\"/>"
           "<Layer Self=\"ub1\" Name=\"Layer 1\" Visible=\"true\" Locked=\"false\" Printable=\"true\"/>"
           "<idPkg:MasterSpread src=\"MasterSpreads/MasterSpread_ua0.xml\"/>"
           "<idPkg:Spread src=\"Spreads/Spread_uc0.xml\"/>"
           "<Section Self=\"ud0\" PageStart=\"uc1\" Length=\"1\" ContinueNumbering=\"true\"/></Document>";
}

}  // namespace

std::string newDocumentPackage() {
    using Method = PackageMember::Method;
    const std::vector<PackageMember> members = {
        {"mimetype", "application/vnd.adobe.indesign-idml-package", Method::Stored},
        {"designmap.xml", designmap(), Method::Deflated},
        {"META-INF/container.xml",
         "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<container version=\"1.0\" "
         "xmlns=\"urn:oasis:names:tc:opendocument:xmlns:container\"><rootfiles><rootfile full-path=\"designmap.xml\" "
         "media-type=\"text/xml\"/></rootfiles></container>",
         Method::Deflated},
        {"Resources/Graphic.xml",
         part("Graphic",
              "<Color Self=\"Color/Black\" Model=\"Process\" Space=\"CMYK\" ColorValue=\"0 0 0 100\" Name=\"Black\"/>"
              "<Swatch Self=\"Swatch/None\" Name=\"None\"/>"),
         Method::Deflated},
        {"Resources/Fonts.xml", part("Fonts", ""), Method::Deflated},
        {"Resources/Styles.xml",
         part("Styles",
              "<RootCharacterStyleGroup Self=\"u1\"><CharacterStyle Self=\"CharacterStyle/$ID/[No character style]\" "
              "Name=\"$ID/[No character style]\"/></RootCharacterStyleGroup><RootParagraphStyleGroup Self=\"u2\">"
              "<ParagraphStyle Self=\"ParagraphStyle/$ID/[No paragraph style]\" Name=\"$ID/[No paragraph style]\"/>"
              "</RootParagraphStyleGroup><RootObjectStyleGroup Self=\"u3\"><ObjectStyle "
              "Self=\"ObjectStyle/$ID/[None]\" Name=\"$ID/[None]\"/></RootObjectStyleGroup>"),
         Method::Deflated},
        {"Resources/Preferences.xml",
         part("Preferences", "<DocumentPreference PageWidth=\"612\" PageHeight=\"792\" FacingPages=\"false\"/>"),
         Method::Deflated},
        {"MasterSpreads/MasterSpread_ua0.xml",
         part("MasterSpread",
              "<MasterSpread Self=\"ua0\" Name=\"A-Master\" NamePrefix=\"A\" BaseName=\"Master\" "
              "PageCount=\"1\" ItemTransform=\"1 0 0 1 0 0\">" +
                  page("ua1", "A", "n") + "</MasterSpread>"),
         Method::Deflated},
        {"Spreads/Spread_uc0.xml",
         part("Spread", "<Spread Self=\"uc0\" PageCount=\"1\" BindingLocation=\"0\" ItemTransform=\"1 0 0 1 0 0\">" +
                            page("uc1", "1", "ua0") + "</Spread>"),
         Method::Deflated}};
    return zipOf(members);
}

}  // namespace desk
