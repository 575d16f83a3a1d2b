#include "desk/idml/placed_graphics.h"

#include <algorithm>
#include <array>

#include "desk/idml/values.h"

namespace desk {
namespace {

constexpr std::array<std::string_view, 9> anchors = {"TopLeftAnchor",    "TopCenterAnchor",    "TopRightAnchor",
                                                     "LeftCenterAnchor", "CenterAnchor",       "RightCenterAnchor",
                                                     "BottomLeftAnchor", "BottomCenterAnchor", "BottomRightAnchor"};

std::optional<Point> toAlignment(std::string_view text) {
    const auto found = std::find(anchors.begin(), anchors.end(), text);
    if (found == anchors.end()) return {};
    const int place = static_cast<int>(found - anchors.begin());
    const int column = place % 3, row = place / 3;
    return Point{column / 2.0, row / 2.0};
}

std::optional<EmptyFrameFitting> toEmptyFrameFitting(std::string_view text) {
    if (text == "None") return EmptyFrameFitting::None;
    if (text == "ContentToFrame") return EmptyFrameFitting::ContentToFrame;
    if (text == "Proportionally") return EmptyFrameFitting::Proportionally;
    if (text == "FillProportionally") return EmptyFrameFitting::FillProportionally;
    return {};
}

PageBox toPageBox(std::string_view text) {
    if (text == "CropArt") return PageBox::Art;
    if (text == "CropTrim") return PageBox::Trim;
    if (text == "CropBleed") return PageBox::Bleed;
    if (text == "CropMedia") return PageBox::Media;
    if (text.starts_with("CropContent")) return PageBox::Content;
    return PageBox::Crop;
}

/// The value of a base64 digit; -1 for another character.
int digitOf(char c) {
    if (c >= 'A' && c <= 'Z') return c - 'A';
    if (c >= 'a' && c <= 'z') return c - 'a' + 26;
    if (c >= '0' && c <= '9') return c - '0' + 52;
    if (c == '+') return 62;
    return c == '/' ? 63 : -1;
}

/// RFC 4648, 4; line ends and other foreign characters are passed over, and it ends at the first "=".
std::string fromBase64(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3 + 3);
    uint32_t bits = 0;
    int count = 0;
    for (char c : text) {
        if (c == '=') break;
        const int digit = digitOf(c);
        if (digit < 0) continue;
        bits = bits << 6 | static_cast<uint32_t>(digit);
        count += 6;
        if (count < 8) continue;
        count -= 8;
        bytes += static_cast<char>(bits >> count);
    }
    return bytes;
}

}  // namespace

void readPlacedGraphic(Reading& reading, const XmlElement& element, PageItem& item) {
    PlacedGraphic graphic;
    graphic.kind = std::string(element.name);
    if (const XmlElement* link = element.child("Link"))
        graphic.uri = withoutKeyMark(attributeText(*link, "LinkResourceURI"));
    const XmlElement* properties = element.child("Properties");
    if (const XmlElement* bounds = properties ? properties->child("GraphicBounds") : nullptr) {
        const auto side = [&](std::string_view name) { return attributeAs(*bounds, name, toNumber).value_or(0); };
        graphic.bounds = {side("Left"), side("Top"), side("Right"), side("Bottom")};
    }
    if (const XmlElement* contents = properties ? properties->child("Contents") : nullptr) {
        std::string bytes = fromBase64(contents->text());
        if (bytes.empty())
            reading.note("the embedded picture " + quoted(item.self) + " has no content");
        else
            graphic.embedded = std::make_shared<const std::string>(std::move(bytes));
    }
    if (const XmlElement* page = element.child("PDFAttribute")) {
        graphic.pageNumber = std::max(1, attributeAs(*page, "PageNumber", toInteger).value_or(1));
        graphic.box = toPageBox(attributeText(*page, "PDFCrop"));
    }
    const XmlElement* clipping = element.child("ClippingPathSettings");
    const std::string& clippingType = clipping ? attributeText(*clipping, "ClippingType") : graphic.failure;
    if (!clippingType.empty() && clippingType != "None")
        reading.note("the clipping path of the picture " + quoted(item.self) + " isn't used");
    item.path = rectanglePath(graphic.bounds);
    item.graphic = std::move(graphic);
}

FrameFitting readFrameFitting(const XmlElement& element) {
    FrameFitting fitting;
    const XmlElement* option = element.child("FrameFittingOption");
    if (!option) return fitting;
    fitting.onEmptyFrame = attributeAs(*option, "FittingOnEmptyFrame", toEmptyFrameFitting);
    fitting.alignment = attributeAs(*option, "FittingAlignment", toAlignment);
    fitting.autoFit = attributeAs(*option, "AutoFit", toBoolean);
    fitting.leftCrop = attributeAs(*option, "LeftCrop", toNumber);
    fitting.topCrop = attributeAs(*option, "TopCrop", toNumber);
    fitting.rightCrop = attributeAs(*option, "RightCrop", toNumber);
    fitting.bottomCrop = attributeAs(*option, "BottomCrop", toNumber);
    return fitting;
}

ContentType readContentType(const XmlElement& element) {
    const std::string& word = attributeText(element, "ContentType");
    if (word == "GraphicType") return ContentType::Graphic;
    return word == "TextType" ? ContentType::Text : ContentType::Unassigned;
}

}  // namespace desk
