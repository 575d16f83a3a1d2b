#include "desk/output/item_painter.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

namespace desk {
namespace {

/// Items in items in items: deeper than this is a circle.
constexpr int deepestNesting = 100;

/// Text may hang out of its frame this far before it counts as off the sheet, points.
constexpr double textOverhang = 72;

constexpr std::array<std::string_view, 16> blendModes = {
    "Normal", "Multiply", "Screen",     "Overlay",   "SoftLight", "HardLight",  "ColorDodge", "ColorBurn",
    "Darken", "Lighten",  "Difference", "Exclusion", "Hue",       "Saturation", "Color",      "Luminosity"};

/// Counts how deep painting stands, whatever way it is left.
class Descent {
  public:
    explicit Descent(int& depth) : depth_(depth) { ++depth_; }
    ~Descent() { --depth_; }
    Descent(const Descent&) = delete;
    Descent& operator=(const Descent&) = delete;

  private:
    int& depth_;
};

/// How far a stroke may reach beyond the path.
double strokeReach(const ItemAttributes& attributes) {
    const double weight = attributes.strokeWeight.value_or(1);
    constexpr double lineEndReach = 5;  // line ends are wider than mitred corners of the usual limit
    return weight * std::max(lineEndReach, attributes.miterLimit.value_or(4)) + 1;
}

/// Empty for an item that paints plainly.
std::string blendStateOf(const ItemAttributes& attributes) {
    const double opacity = std::clamp(attributes.opacity.value_or(100), 0.0, 100.0) / 100;
    std::string_view mode = "Normal";
    if (attributes.blendMode) {
        const auto known = std::find(blendModes.begin(), blendModes.end(), *attributes.blendMode);
        if (known != blendModes.end()) mode = *known;
    }
    if (opacity >= 1 && mode == "Normal") return {};
    ContentBuffer state;
    state.append("<</ca ").number(opacity).append("/CA ").number(opacity).append("/BM").name(mode).append(">>");
    return std::string(state.view());
}

/// The picture and where it lies, in as many words as tell it from another.
void appendPictureSignature(const PageItem& item, const Matrix& toSheet, std::vector<uint64_t>& signature) {
    const PictureIdentity& identity = item.graphic->picture->identity;
    signature.insert(signature.end(), identity.words.begin(), identity.words.end());
    const Rect& bounds = item.graphic->bounds;
    for (const double value : {toSheet.a, toSheet.b, toSheet.c, toSheet.d, toSheet.e, toSheet.f, bounds.left,
                               bounds.top, bounds.right, bounds.bottom})
        signature.push_back(std::bit_cast<uint64_t>(value));
}

/// "The picture is damaged. Save it again." as part of a list: "the picture is damaged".
std::string asClause(const std::string& sentence) {
    std::string clause = sentence.substr(0, sentence.rfind(". "));
    if (!clause.empty() && clause.front() == 'T') clause.front() = 't';
    return clause;
}

bool hasPicture(const PageItem& item) {
    return item.graphic && item.graphic->picture;
}

/// From the picture's natural points, y upwards, to the rectangle that the item gives it.
Matrix toBounds(const Picture& picture, const Rect& bounds) {
    const double x = bounds.width() / picture.width, y = bounds.height() / picture.height;
    return {x, 0, 0, -y, bounds.left, bounds.bottom};
}

}  // namespace

void LookCache::nextRound() {
    constexpr size_t slack = 256;
    if (looks_.size() > 2 * kept_ + slack) {
        std::erase_if(looks_, [this](const auto& entry) { return entry.second.lastUsed < round_; });
        kept_ = looks_.size();
    }
    ++round_;
}

/// Whether something is painted between the item's fill and its stroke.
ShapeHolds ItemPainter::holds(const PageItem& item) const {
    if (showsText(item)) return ShapeHolds::Content;
    const bool holdsItems = std::any_of(item.children.begin(), item.children.end(), [this](Uid child) {
        const PageItem* found = document_.item(child);
        return found && (found->kind != ItemKind::Graphic || hasPicture(*found));
    });
    return holdsItems ? ShapeHolds::Content : ShapeHolds::Nothing;
}

const ItemLook& ItemPainter::lookOf(const PageItem& item, const Matrix& toSheet, const Sheet& sheet, LookCache& looks) {
    ItemLook& look = looks.at(item.uid);
    const ShapeHolds held = holds(item);
    const bool known = look.toSheet == toSheet && look.revision == item.revision + 1 &&  // 0 is a look not made yet
                       look.holds == held;
    if (known) return look;
    const uint64_t lastUsed = look.lastUsed;
    look = ItemLook();
    look.lastUsed = lastUsed;
    look.revision = item.revision + 1;
    look.toSheet = toSheet;
    look.holds = held;
    if (!item.visible) return look;
    if (item.kind == ItemKind::Graphic && !hasPicture(item)) {
        if (item.graphic && !item.graphic->failure.empty())
            shapes_.simplifications().add(asClause(item.graphic->failure) + ", and is left out");
        return look;
    }
    const ItemAttributes attributes = document_.itemAttributes(item);
    if (attributes.nonprinting.value_or(false)) return look;
    look.blendState = blendStateOf(attributes);
    look.blends = !look.blendState.empty();
    look.visible = true;
    if (item.kind == ItemKind::Group || item.kind == ItemKind::Graphic) return look;
    const bool text = showsText(item);
    const Rect bounds = toSheet.boundsOf(boundsOf(item.path).grownBy(strokeReach(attributes)));
    look.visible = bounds.grownBy(text ? textOverhang : 0).intersects(sheet.rect());
    if (!look.visible) return look;
    shapes_.paint(item.path, attributes, sheet.toPdf().after(toSheet), held, look.shape);
    return look;
}

void ItemPainter::paint(const PageItem& item, const Matrix& toSheet, const Sheet& sheet, LookCache& looks,
                        Fragment& out) {
    if (depth_ > deepestNesting) return;
    const Descent descent(depth_);
    const ItemLook& look = lookOf(item, toSheet, sheet, looks);
    if (!look.visible) return;
    if (!look.blends) {
        paintContent(item, toSheet, sheet, looks, out);
        return;
    }
    Fragment group;
    const std::string blendState = look.blendState;
    paintContent(item, toSheet, sheet, looks, group);
    if (group.bytes.empty()) return;
    const Resource form = shared_.writeForm(group, sheet.boundingBox, SharedObjects::Group::Transparency);
    out.bytes.append("q\n");
    shapes_.setState(out, blendState);
    appendName(out.bytes, form);
    out.bytes.append(" Do\nQ\n");
    out.resources.add(form);
    out.resources.blends = true;
}

void ItemPainter::paintContent(const PageItem& item, const Matrix& toSheet, const Sheet& sheet, LookCache& looks,
                               Fragment& out) {
    if (item.kind == ItemKind::Graphic) {
        paintPicture(item, toSheet, sheet, out);
        return;
    }
    const ItemLook& look = looks.at(item.uid);
    out.add(look.shape.below);
    if (showsText(item)) paintText(item, toSheet, sheet, looks, out);
    if (!item.children.empty()) paintChildren(item, toSheet, sheet, looks, look, out);
    out.add(look.shape.above);
}

/// What stands inside a frame is clipped by it; a group clips nothing.
void ItemPainter::paintChildren(const PageItem& item, const Matrix& toSheet, const Sheet& sheet, LookCache& looks,
                                const ItemLook& look, Fragment& out) {
    const bool clips = item.kind != ItemKind::Group && !look.shape.clip.empty();
    const size_t before = out.bytes.size();
    if (clips) out.bytes.append("q\n").append(look.shape.clip.view());
    const size_t start = out.bytes.size();
    for (Uid child : item.children)
        if (const PageItem* found = document_.item(child))
            paint(*found, toSheet.after(found->transform), sheet, looks, out);
    if (!clips) return;
    if (out.bytes.size() == start) {
        out.bytes.truncate(before);
    } else {
        out.bytes.append("Q\n");
    }
}

void ItemPainter::paintPicture(const PageItem& item, const Matrix& toSheet, const Sheet& sheet, Fragment& out) {
    const Picture& picture = *item.graphic->picture;
    const Matrix m =
        sheet.toPdf().after(toSheet).after(toBounds(picture, item.graphic->bounds)).after(picture.toNatural);
    for (const double value : {m.a, m.b, m.c, m.d, m.e, m.f})
        if (!std::isfinite(value)) return;
    if (!m.isInvertible()) return;
    const Resource resource = pictures_.use(picture);
    out.bytes.append("q ");
    for (const double value : {m.a, m.b, m.c, m.d}) out.bytes.factor(value).append(' ');
    out.bytes.number(m.e).append(' ').number(m.f).append(" cm ");
    appendName(out.bytes, resource);
    out.bytes.append(" Do Q\n");
    out.resources.add(resource);
}

void ItemPainter::paintText(const PageItem& item, const Matrix& toSheet, const Sheet& sheet, LookCache& looks,
                            Fragment& out) {
    const std::shared_ptr<const FrameLayout> layout = texts_.frameLayout(item.uid, sheet.page);
    if (!layout) return;
    textPainter_.paint(*layout, {sheet.toPdf().after(toSheet), boundsOf(item.path)}, out);
    if (!hasInlineItems(item)) return;
    forEachInlineItem(*layout, toSheet, [&](const PageItem& inlineItem, const Matrix& inlineToSheet) {
        paint(inlineItem, inlineToSheet, sheet, looks, out);
    });
}

bool ItemPainter::hasInlineItems(const PageItem& frame) const {
    const Story* story = document_.story(frame.story);
    return story && !story->content().ownedItems.empty();
}

/// An inline item is a big glyph: its left edge at its place in the line, its bottom edge on the baseline.
template <class Visit>
void ItemPainter::forEachInlineItem(const FrameLayout& layout, const Matrix& frameToSheet, Visit visit) const {
    for (const PlacedParagraph& placed : layout.paragraphs) {
        if (!placed.paragraph) continue;
        for (uint32_t i = 0; i < placed.lineCount && placed.firstLine + i < placed.paragraph->lines.size(); ++i) {
            const LayoutLine& line = placed.paragraph->lines[placed.firstLine + i];
            for (const auto& [uid, x] : line.inlineItems) {
                const PageItem* item = document_.item(uid);
                if (!item || i >= placed.baselines.size()) continue;
                Matrix inner = item->transform;
                inner.e = inner.f = 0;
                const Rect bounds = inner.boundsOf(boundsOf(item->path));
                const Matrix toLine =
                    Matrix::translation(placed.x + line.x + x - bounds.left, placed.baselines[i] - bounds.bottom);
                visit(*item, frameToSheet.after(toLine.after(inner)));
            }
        }
    }
}

void ItemPainter::appendSignature(const PageItem& item, const Matrix& toSheet, const Sheet& sheet, LookCache& looks,
                                  std::vector<uint64_t>& signature) {
    signature.push_back(uint64_t{item.uid} << 1 | (item.visible ? 1 : 0));
    signature.push_back(item.revision);
    if (depth_ > deepestNesting) return;
    const Descent descent(depth_);
    if (!lookOf(item, toSheet, sheet, looks).visible) return;
    if (item.kind == ItemKind::Graphic) {
        appendPictureSignature(item, toSheet, signature);
        return;
    }
    for (Uid child : item.children)
        if (const PageItem* found = document_.item(child))
            appendSignature(*found, toSheet.after(found->transform), sheet, looks, signature);
    if (!showsText(item)) return;
    const std::shared_ptr<const FrameLayout> layout = texts_.frameLayout(item.uid, sheet.page);
    signature.push_back(layout ? layout->serial : 0);
    if (!layout || !hasInlineItems(item)) return;
    forEachInlineItem(*layout, toSheet, [&](const PageItem& inlineItem, const Matrix& inlineToSheet) {
        appendSignature(inlineItem, inlineToSheet, sheet, looks, signature);
    });
}

}  // namespace desk
