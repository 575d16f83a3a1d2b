// Font families and faces.
#include "desk/idml/resources.h"
#include "desk/idml/values.h"

namespace desk {

void readFonts(Reading& reading, const XmlElement& around) {
    around.eachChild([&](const XmlElement& family) {
        const bool isComposite =
            family.name == "CompositeFont" && attributeText(family, "Name") != "$ID/[No composite font]";
        if (isComposite)
            reading.note("the composite font " + quoted(attributeText(family, "Name")) + " isn't put together");
        if (family.name != "FontFamily") return;
        const std::string familyName = withoutKeyMark(attributeText(family, "Name"));
        if (const std::string* self = family.attribute("Self")) reading.fontFamilies[*self] = familyName;
        family.eachChild([&](const XmlElement& face) {
            if (face.name != "Font") return;
            NamedFont font;
            font.family = withoutKeyMark(attributeText(face, "FontFamily"));
            if (font.family.empty()) font.family = familyName;
            font.style = withoutKeyMark(attributeText(face, "FontStyleName"));
            font.postScriptName = withoutKeyMark(attributeText(face, "PostScriptName"));
            if (const std::string* self = face.attribute("Self")) reading.fontFamilies[*self] = font.family;
            reading.document.fonts.push_back(std::move(font));
        });
    });
}

}  // namespace desk
