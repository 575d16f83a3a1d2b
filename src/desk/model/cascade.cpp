// Styles, formats and what the cascade of both ends in.
#include <algorithm>

#include "desk/model/document.h"

namespace desk {
namespace {

constexpr size_t styleKinds = 5;
const std::string noParagraphStyle = "[No paragraph style]";
const std::string noCharacterStyle = "[No character style]";

template <class T>
void take(std::optional<T>& weaker, const std::optional<T>& stronger) {
    if (stronger) weaker = stronger;
}

bool isRootStyle(StyleKind kind, const std::string& name) {
    return (kind == StyleKind::Paragraph && name == noParagraphStyle) ||
           (kind == StyleKind::Character && name == noCharacterStyle);
}

template <class Format, class Formats, class Ids>
uint32_t idOf(const Format& format, Formats& formats, Ids& ids) {
    const size_t hash = format.overrides.hash() * 31 + format.style;
    const auto [from, to] = ids.equal_range(hash);
    for (auto candidate = from; candidate != to; ++candidate)
        if (formats[candidate->second] == format) return candidate->second;
    const uint32_t id = static_cast<uint32_t>(formats.size());
    formats.push_back(format);
    ids.emplace(hash, id);
    return id;
}

}  // namespace

void FrameFitting::overlay(const FrameFitting& stronger) {
    take(onEmptyFrame, stronger.onEmptyFrame);
    take(alignment, stronger.alignment);
    take(autoFit, stronger.autoFit);
    take(leftCrop, stronger.leftCrop);
    take(topCrop, stronger.topCrop);
    take(rightCrop, stronger.rightCrop);
    take(bottomCrop, stronger.bottomCrop);
}

void ItemAttributes::overlay(const ItemAttributes& stronger) {
    take(fillColor, stronger.fillColor);
    take(strokeColor, stronger.strokeColor);
    take(gapColor, stronger.gapColor);
    take(fillTint, stronger.fillTint);
    take(strokeTint, stronger.strokeTint);
    take(gapTint, stronger.gapTint);
    take(strokeWeight, stronger.strokeWeight);
    take(strokeType, stronger.strokeType);
    take(strokeAlignment, stronger.strokeAlignment);
    take(endCap, stronger.endCap);
    take(endJoin, stronger.endJoin);
    take(miterLimit, stronger.miterLimit);
    take(dashes, stronger.dashes);
    for (size_t corner = 0; corner < 4; ++corner) {
        take(cornerOption[corner], stronger.cornerOption[corner]);
        take(cornerRadius[corner], stronger.cornerRadius[corner]);
    }
    take(leftLineEnd, stronger.leftLineEnd);
    take(rightLineEnd, stronger.rightLineEnd);
    take(overprintFill, stronger.overprintFill);
    take(overprintStroke, stronger.overprintStroke);
    take(nonprinting, stronger.nonprinting);
    take(gradientAngle, stronger.gradientAngle);
    take(gradientLength, stronger.gradientLength);
    take(gradientStart, stronger.gradientStart);
    take(opacity, stronger.opacity);
    take(blendMode, stronger.blendMode);
}

void TextFrameOptions::overlay(const TextFrameOptions& stronger) {
    take(columnCount, stronger.columnCount);
    take(columnGutter, stronger.columnGutter);
    take(insetTop, stronger.insetTop);
    take(insetLeft, stronger.insetLeft);
    take(insetBottom, stronger.insetBottom);
    take(insetRight, stronger.insetRight);
    take(firstBaseline, stronger.firstBaseline);
    take(minimumFirstBaseline, stronger.minimumFirstBaseline);
    take(verticalJustification, stronger.verticalJustification);
    take(verticalThreshold, stronger.verticalThreshold);
    take(ignoreWrap, stronger.ignoreWrap);
    take(autoSizing, stronger.autoSizing);
}

Style& Document::addStyle(StyleKind kind, const std::string& styleName, const std::string& self) {
    stylesChanged();
    auto& byName = stylesByName_[static_cast<size_t>(kind)];
    if (isRootStyle(kind, styleName)) {
        if (const auto found = byName.find(styleName); found != byName.end()) {
            Style& root = *style(found->second);
            if (!self.empty()) {
                root.self = self;
                stylesBySelf_[self] = root.uid;
            }
            return root;
        }
    }
    Style& added = styleStore_.emplace_back();
    added.uid = newUid(Kind::Style, &added);
    added.kind = kind;
    added.name = styleName;
    added.self = self;
    byName.emplace(styleName, added.uid);
    if (!self.empty()) stylesBySelf_.emplace(self, added.uid);
    return added;
}

const Style* Document::styleNamed(StyleKind kind, const std::string& styleName) const {
    static_assert(static_cast<size_t>(StyleKind::Cell) + 1 == styleKinds);
    const auto& byName = stylesByName_[static_cast<size_t>(kind)];
    const auto found = byName.find(styleName);
    return found == byName.end() ? nullptr : style(found->second);
}

const Style* Document::styleWithSelf(const std::string& self) const {
    const auto found = stylesBySelf_.find(self);
    return found == stylesBySelf_.end() ? nullptr : style(found->second);
}

const Style* Document::parentOf(const Style& child) const {
    const Style* parent = child.basedOn.empty() ? nullptr : styleWithSelf(child.basedOn);
    return parent && parent->kind == child.kind ? parent : nullptr;
}

/// The root style first, the style itself last. A circle of parents ends before its first repetition.
std::vector<const Style*> Document::chainOf(const Style* style) const {
    std::vector<const Style*> chain;
    for (; style && std::find(chain.begin(), chain.end(), style) == chain.end(); style = parentOf(*style))
        chain.push_back(style);
    std::reverse(chain.begin(), chain.end());
    return chain;
}

CharacterFormatId Document::characterFormatId(const CharacterFormat& format) {
    const Style* named = style(format.style);
    if (!named || named->name != noCharacterStyle) return idOf(format, characterFormats_, characterFormatIds_);
    return idOf(CharacterFormat{0, format.overrides}, characterFormats_, characterFormatIds_);
}

ParagraphFormatId Document::paragraphFormatId(const ParagraphFormat& format) {
    const Style* named = style(format.style);
    if (!named || named->name != noParagraphStyle) return idOf(format, paragraphFormats_, paragraphFormatIds_);
    return idOf(ParagraphFormat{0, format.overrides}, paragraphFormats_, paragraphFormatIds_);
}

const ResolvedAttributes& Document::resolved(ParagraphFormatId paragraph, CharacterFormatId character) const {
    std::unique_ptr<ResolvedAttributes>& known = resolved_[uint64_t{paragraph} << 32 | character];
    if (known) return *known;
    auto result = std::make_unique<ResolvedAttributes>();
    const auto applyChain = [&](StyleKind kind, const std::string& rootName, Uid uid) {
        const Style* root = styleNamed(kind, rootName);
        if (root) result->apply(root->text);
        for (const Style* link : chainOf(style(uid)))
            if (link != root && link->kind == kind) result->apply(link->text);
    };
    const ParagraphFormat& paragraphs = paragraphFormats_[paragraph];
    const CharacterFormat& characters = characterFormats_[character];
    applyChain(StyleKind::Paragraph, noParagraphStyle, paragraphs.style);
    result->apply(paragraphs.overrides);
    applyChain(StyleKind::Character, noCharacterStyle, characters.style);
    result->apply(characters.overrides);
    known = std::move(result);
    return *known;
}

ItemAttributes Document::itemAttributes(const PageItem& item) const {
    ItemAttributes result;
    for (const Style* link : chainOf(styleWithSelf(item.objectStyle))) result.overlay(link->item);
    result.overlay(item.attributes);
    return result;
}

TextFrameOptions Document::frameOptions(const PageItem& item) const {
    TextFrameOptions result;
    for (const Style* link : chainOf(styleWithSelf(item.objectStyle))) result.overlay(link->frame);
    result.overlay(item.frameOptions);
    return result;
}

FrameFitting Document::frameFitting(const PageItem& item) const {
    FrameFitting result;
    for (const Style* link : chainOf(styleWithSelf(item.objectStyle))) result.overlay(link->fitting);
    result.overlay(item.fitting);
    return result;
}

}  // namespace desk
