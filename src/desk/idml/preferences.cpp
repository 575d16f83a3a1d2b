// Document preferences.
#include "desk/idml/resources.h"
#include "desk/idml/values.h"

namespace desk {
namespace {

void number(const XmlElement& element, std::string_view name, double& field) {
    if (const auto value = attributeAs(element, name, toNumber)) field = *value;
}

void positive(const XmlElement& element, std::string_view name, double& field) {
    const auto value = attributeAs(element, name, toNumber);
    if (value && *value > 0) field = *value;
}

void notNegative(const XmlElement& element, std::string_view name, double& field) {
    const auto value = attributeAs(element, name, toNumber);
    if (value && *value >= 0) field = *value;
}

void boolean(const XmlElement& element, std::string_view name, bool& field) {
    if (const auto value = attributeAs(element, name, toBoolean)) field = *value;
}

void readDocumentPreference(const XmlElement& element, Preferences& preferences) {
    positive(element, "PageWidth", preferences.pageWidth);
    positive(element, "PageHeight", preferences.pageHeight);
    boolean(element, "FacingPages", preferences.facingPages);
    notNegative(element, "DocumentBleedTopOffset", preferences.bleedTop);
    notNegative(element, "DocumentBleedBottomOffset", preferences.bleedBottom);
    notNegative(element, "DocumentBleedInsideOrLeftOffset", preferences.bleedInside);
    notNegative(element, "DocumentBleedOutsideOrRightOffset", preferences.bleedOutside);
}

void readTextPreference(const XmlElement& element, Preferences& preferences) {
    positive(element, "SuperscriptSize", preferences.superscriptSize);
    number(element, "SuperscriptPosition", preferences.superscriptPosition);
    positive(element, "SubscriptSize", preferences.subscriptSize);
    number(element, "SubscriptPosition", preferences.subscriptPosition);
    positive(element, "SmallCap", preferences.smallCapSize);
    boolean(element, "UseParagraphLeading", preferences.useParagraphLeading);
}

void readGridPreference(const XmlElement& element, Preferences& preferences) {
    number(element, "BaselineStart", preferences.baselineGridStart);
    positive(element, "BaselineDivision", preferences.baselineGridDivision);
    preferences.baselineGridFromMargin =
        attributeText(element, "BaselineGridRelativeOption").starts_with("TopOfMargin");
}

}  // namespace

void readPreferences(Reading& reading, const XmlElement& around) {
    Preferences& preferences = reading.document.preferences;
    around.eachChild([&](const XmlElement& child) {
        if (child.name == "DocumentPreference") readDocumentPreference(child, preferences);
        if (child.name == "TextPreference") readTextPreference(child, preferences);
        if (child.name == "GridPreference") readGridPreference(child, preferences);
    });
}

}  // namespace desk
