#include "desk/border/document_border.h"

#include <algorithm>
#include <utility>

#include "desk/border/object_boss.h"
#include "desk/model/content_fit.h"

namespace desk {

DocumentBorder::DocumentBorder(Document& document, TextLayoutService& layout, Ledger& ledger)
    : document_(&document), layout_(layout), ledger_(ledger), hostLayer_(makeHostLayerBoss(ledger)) {}

DocumentBorder::~DocumentBorder() = default;

std::unique_ptr<Boss> DocumentBorder::makeBoss(Uid uid) {
    using Kind = Document::Kind;
    switch (document_->kindOf(uid)) {
        case Kind::Root:
            return makeDocumentBoss(*this, uid);
        case Kind::Workspace:
            return makeWorkspaceBoss(*this, uid);
        case Kind::Spread:
            return makeSpreadBoss(*this, uid);
        case Kind::Page:
            return makePageBoss(*this, uid);
        case Kind::Layer:
            return makeLayerBoss(*this, uid);
        case Kind::SpreadLayer:
            return makeSpreadLayerBoss(*this, uid);
        case Kind::Item:
            return makeItemBoss(*this, uid);
        case Kind::MultiColumnFrame:
            return makeMultiColumnFrameBoss(*this, uid);
        case Kind::TextColumn:
            return makeTextColumnBoss(*this, uid);
        case Kind::AnchoredObject:
            return makeAnchoredObjectBoss(*this, uid);
        case Kind::Story:
            return makeStoryBoss(*this, uid);
        case Kind::Style:
            return makeStyleBoss(*this, uid);
        case Kind::None:
            break;
    }
    return nullptr;
}

Boss* DocumentBorder::boss(Uid uid) {
    if (!document_ || document_->kindOf(uid) == Document::Kind::None) return nullptr;
    if (uid >= bosses_.size()) bosses_.resize(uid + 1);
    std::unique_ptr<Boss>& made = bosses_[uid];
    if (!made) made = makeBoss(uid);
    return made.get();
}

IPMUnknown* DocumentBorder::Instantiate(UID uid, PMIID interfaceId) {
    Boss* found = boss(uid.Get());
    return found ? found->query(interfaceId) : nullptr;
}

UID DocumentBorder::GetRootUID() {
    return document_ ? UID(document_->rootUid()) : kInvalidUID;
}

IDFile DocumentBorder::GetSaveFile() {
    return document_ && isSaved_ ? IDFile(document_->path) : IDFile();
}

IDFile DocumentBorder::GetReadFile() {
    return document_ ? IDFile(document_->path) : IDFile();
}

void DocumentBorder::SetModified(bool modified) {
    if (document_) document_->modified = modified;
}

IDocument* DocumentBorder::documentInterface() {
    InterfacePtr<IDocument> document(this, GetRootUID());
    return document.get();
}

IDocumentLayer* DocumentBorder::queryHostLayer() {
    return hostLayer_ ? static_cast<IDocumentLayer*>(hostLayer_->query(IID_IDOCUMENTLAYER)) : nullptr;
}

void DocumentBorder::collectItem(Uid uid, std::vector<Uid>& found) const {
    const size_t first = found.size();
    found.push_back(uid);
    for (size_t next = first; next < found.size(); ++next)
        if (const PageItem* item = document_->item(found[next]))
            found.insert(found.end(), item->children.begin(), item->children.end());
    for (size_t i = first, items = found.size(); i < items; ++i) {
        const PageItem* item = document_->item(found[i]);
        if (!item) continue;
        if (item->kind == ItemKind::TextFrame) {
            found.push_back(document_->multiColumnFrame(item->uid));
            for (int column = columnCountOf(*document_, *item) - 1; column >= 0; --column)
                found.push_back(document_->textColumn(item->uid, column));
        }
        const bool isLoose = std::find(looseItems_.begin(), looseItems_.end(), item->uid) != looseItems_.end();
        if (item->parent == 0 && !isLoose) found.push_back(document_->anchoredObject(item->uid));
    }
}

bool DocumentBorder::removeItem(Uid uid) {
    if (!document_ || !document_->item(uid)) return false;
    std::vector<Uid> going;
    collectItem(uid, going);
    document_->removeItem(uid);
    forgetRemoved(going);
    return true;
}

bool DocumentBorder::removeStory(Uid uid) {
    const Story* story = document_ ? document_->story(uid) : nullptr;
    if (!story) return false;
    std::vector<Uid> going{uid};
    for (const OwnedItem& owned : story->content().ownedItems) collectItem(owned.item, going);
    document_->removeStory(uid);
    forgetRemoved(going);
    return true;
}

bool DocumentBorder::removeSpread(Uid uid) {
    const Spread* spread = document_ ? document_->spread(uid) : nullptr;
    if (!spread) return false;
    std::vector<Uid> going{uid};
    going.insert(going.end(), spread->pages.begin(), spread->pages.end());
    for (Uid layer : spread->layers) {
        going.push_back(layer);
        for (Uid item : document_->spreadLayer(layer)->items) collectItem(item, going);
    }
    if (!document_->removeSpread(uid)) return false;
    forgetRemoved(going);
    return true;
}

void DocumentBorder::dropLooseItems() {
    for (Uid uid : std::exchange(looseItems_, {}))
        if (const PageItem* item = document_ ? document_->item(uid) : nullptr; item && item->parent == 0)
            removeItem(uid);
}

bool DocumentBorder::putIntoFrame(Uid item, Uid frame) {
    const PageItem* picture = document_ ? document_->item(item) : nullptr;
    const PageItem* holder = picture ? document_->item(frame) : nullptr;
    if (!holder || picture->kind != ItemKind::Graphic || picture->parent != 0 || !canHoldPicture(*holder)) return false;
    const std::vector<Uid> former = holder->children;
    for (Uid child : former) removeItem(child);
    if (!desk::putIntoFrame(*document_, item, frame)) return false;
    std::erase(looseItems_, item);
    return true;
}

void DocumentBorder::forgetRemoved(const std::vector<Uid>& uids) {
    for (Uid uid : uids)
        if (uid < bosses_.size() && document_->kindOf(uid) == Document::Kind::None)
            retire(std::move(bosses_[uid]), "was deleted");
}

void DocumentBorder::retire(std::unique_ptr<Boss> boss, const char* reason) {
    if (!boss || boss->references() == 0) return;
    ledger_.report("An object " + std::string(reason) + " while " + std::to_string(boss->references()) +
                   " of its references were out: release every queried interface first.");
    boss->liveByReferences(*this);
    retired_.push_back(std::move(boss));
}

void DocumentBorder::lastReferenceGone(Boss& boss) {
    std::erase_if(retired_, [&](const std::unique_ptr<Boss>& retired) { return retired.get() == &boss; });
}

void DocumentBorder::close() {
    document_ = nullptr;
    for (std::unique_ptr<Boss>& boss : bosses_) retire(std::move(boss), "went with its closed document");
    bosses_.clear();
    if (hostLayer_->references() > 0) retire(std::move(hostLayer_), "went with its closed document");
}

bool DocumentBorder::isHeld() const {
    return !retired_.empty();
}

// The root styles don't count: what they say lies under every text anyway, and one of them may say everything.
TextAttributes DocumentBorder::definedBy(Uid style) const {
    TextAttributes defined;
    const Style* link = document_->style(style);
    constexpr int deepestChain = 64;
    for (int depth = 0; link && depth < deepestChain; ++depth) {
        if (link->name == "[No paragraph style]" || link->name == "[No character style]") break;
        defined.overlay(link->text);
        link = document_->parentOf(*link);
    }
    return defined;
}

void DocumentBorder::forgetStyledFormatsOfOldStyles() {
    if (knownStyleRevision_ == document_->styleRevision()) return;
    styledCharacters_.clear();
    styledParagraphs_.clear();
    knownStyleRevision_ = document_->styleRevision();
}

namespace {

uint64_t styledKey(uint32_t format, Uid style, LocalOverrides overrides) {
    return uint64_t{format} << 33 | uint64_t{style} << 1 | static_cast<uint64_t>(overrides);
}

}  // namespace

CharacterFormatId DocumentBorder::withStyle(CharacterFormatId format, Uid style, LocalOverrides overrides) {
    forgetStyledFormatsOfOldStyles();
    const auto [entry, isNew] = styledCharacters_.try_emplace(styledKey(format, style, overrides));
    if (isNew) {
        CharacterFormat styled = document_->characterFormat(format);
        styled.style = style;
        if (overrides == LocalOverrides::DropWhatTheStyleDefines) styled.overrides.subtract(definedBy(style));
        entry->second = document_->characterFormatId(styled);
    }
    return entry->second;
}

ParagraphFormatId DocumentBorder::paragraphWithStyle(ParagraphFormatId format, Uid style, LocalOverrides overrides) {
    forgetStyledFormatsOfOldStyles();
    const auto [entry, isNew] = styledParagraphs_.try_emplace(styledKey(format, style, overrides));
    if (isNew) {
        ParagraphFormat styled = document_->paragraphFormat(format);
        styled.style = style;
        if (overrides == LocalOverrides::DropWhatTheStyleDefines) styled.overrides.subtract(definedBy(style));
        entry->second = document_->paragraphFormatId(styled);
    }
    return entry->second;
}

}  // namespace desk
