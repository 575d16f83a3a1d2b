// A story: its text, its columns, the composer's question, what is anchored in it.
#include <algorithm>

#include "desk/border/object_boss.h"
#include "host/api/text.h"

namespace desk {
namespace {

class StoryBoss final : public ObjectBoss<ITextModel, ITextFrameList, IFrameListComposer, IOwnedItemStrand> {
  public:
    using ObjectBoss::ObjectBoss;

    // ITextModel
    int32_t TotalLength() override { return story() ? story()->content().length() : 0; }
    int32_t GetPrimaryStoryThreadSpan() override { return TotalLength(); }
    TextChunk GetChunk(int32_t position) override {
        const Story* here = story();
        if (!here || position < 0 || position >= here->content().length()) return {};
        return {here->content().text.data() + position, here->content().length() - position};
    }
    void Insert(int32_t position, const WideString& text) override {
        if (!story()) return;
        story()->insert(position, text.View());
        document()->modified = true;
    }
    void Delete(int32_t position, int32_t length) override {
        if (!story()) return;
        story()->erase(position, length);
        document()->modified = true;
    }
    void ApplyStyle(int32_t position, int32_t length, UID style, AttributeStrand strand, bool replace,
                    bool override) override;
    ITextFrameList* QueryFrameList() override {
        AddRef();
        return this;
    }

    // ITextFrameList
    int32_t GetFrameCount() override {
        int32_t count = 0;
        forEachFrame([&](const PageItem&, int32_t, int32_t columns) {
            count += columns;
            return true;
        });
        return count;
    }
    UID GetNthFrameUID(int32_t index) override {
        UID found;
        forEachFrame([&](const PageItem& frame, int32_t before, int32_t columns) {
            if (index < before || index >= before + columns) return true;
            found = UID(document()->textColumn(frame.uid, index - before));
            return false;
        });
        return found;
    }
    /// Composition tells the text of a frame and not of its columns: the answer is the first column of the right frame.
    int32_t GetFrameIndexContaining(int32_t textIndex) override {
        int32_t found = -1;
        forEachFrame([&](const PageItem& frame, int32_t before, int32_t) {
            const TextRange shown = database().layout()->textOfFrame(frame.uid);
            if (textIndex < shown.start || textIndex >= shown.start + shown.length) return true;
            found = before;
            return false;
        });
        return found;
    }

    // IFrameListComposer
    ErrorCode RecomposeThruLastFrame() override {
        if (!story()) return kFailure;
        database().layout()->isOverset(uid());
        return kSuccess;
    }

    // IOwnedItemStrand
    void CollectOwnedItems(int32_t start, int32_t end, K2Vector<OwnedItemRecord>& items) override {
        if (!story()) return;
        for (const OwnedItem& owned : story()->content().ownedItems)
            if (owned.position >= start && owned.position <= end)
                items.push_back({owned.position, UID(document()->anchoredObject(owned.item))});
    }

  protected:
    IPMUnknown* find(PMIID interfaceId) override {
        if (interfaceId == IID_IOWNEDITEMSTRAND && (!story() || story()->content().ownedItems.empty())) return nullptr;
        return ObjectBoss::find(interfaceId);
    }

  private:
    Story* story() const { return document() ? document()->story(uid()) : nullptr; }

    /// Visits the frames of the thread with the index of the first column and the number of columns, until one says
    /// false.
    template <class Visit>
    void forEachFrame(Visit visit) {
        if (!document()) return;
        int32_t before = 0;
        for (Uid frameUid : document()->framesOfStory(uid())) {
            const PageItem* frame = document()->item(frameUid);
            if (!frame) continue;
            const int32_t columns = columnCountOf(*document(), *frame);
            if (!visit(*frame, before, columns)) return;
            before += columns;
        }
    }

    void applyCharacterStyle(int32_t position, int32_t length, Uid style, bool replace, LocalOverrides overrides);
    void applyParagraphStyle(int32_t position, int32_t length, Uid style, bool replace, LocalOverrides overrides);
};

void StoryBoss::ApplyStyle(int32_t position, int32_t length, UID style, AttributeStrand strand, bool replace,
                           bool override) {
    const StyleKind wanted = strand == AttributeStrand::Character ? StyleKind::Character : StyleKind::Paragraph;
    const Style* found = story() ? document()->style(style.Get()) : nullptr;
    if (!found || found->kind != wanted) return;
    const LocalOverrides overrides = override ? LocalOverrides::DropWhatTheStyleDefines : LocalOverrides::Keep;
    if (strand == AttributeStrand::Character) {
        applyCharacterStyle(position, length, found->uid, replace, overrides);
    } else {
        applyParagraphStyle(position, length, found->uid, replace, overrides);
    }
    document()->modified = true;
}

void StoryBoss::applyCharacterStyle(int32_t position, int32_t length, Uid style, bool replace,
                                    LocalOverrides overrides) {
    Story& text = *story();
    const auto styled = [&](CharacterFormatId format) {
        return !replace && document()->characterFormat(format).style != 0
                   ? format
                   : database().withStyle(format, style, overrides);
    };
    if (length <= 0) {
        const int32_t at = std::clamp(position, 0, text.content().length() - 1);
        text.setCharacterFormat(at, 0, styled(text.content().characterFormatForInsertionAt(at)));
        return;
    }
    const int32_t end =
        static_cast<int32_t>(std::clamp<int64_t>(int64_t{position} + length, 0, text.content().length()));
    // Run by run: each keeps its own overrides. Setting a format may join or split runs, so each is looked up anew.
    for (int32_t at = std::max(position, 0); at < end;) {
        const auto& runs = text.content().characterRuns;
        const auto next = std::upper_bound(runs.begin(), runs.end(), at,
                                           [](int32_t place, const auto& run) { return place < run.start; });
        const int32_t limit = next == runs.end() ? end : std::min(next->start, end);
        const CharacterFormatId now = text.content().characterFormatAt(at);
        const CharacterFormatId wanted = styled(now);
        if (wanted != now) text.setCharacterFormat(at, limit - at, wanted);
        at = limit;
    }
}

void StoryBoss::applyParagraphStyle(int32_t position, int32_t length, Uid style, bool replace,
                                    LocalOverrides overrides) {
    Story& text = *story();
    const int32_t total = text.content().length();
    const int32_t end = static_cast<int32_t>(std::clamp<int64_t>(int64_t{position} + std::max(length, 1), 0, total));
    for (int32_t at = std::max(position, 0); at < end;) {
        const ParagraphFormatId now = text.content().paragraphFormatAt(at);
        const bool keeps = !replace && document()->paragraphFormat(now).style != 0;
        if (!keeps) text.setParagraphFormat(at, 1, database().paragraphWithStyle(now, style, overrides));
        const size_t limit = text.content().text.find(u'\r', static_cast<size_t>(at));
        at = limit == std::u16string::npos ? end : static_cast<int32_t>(limit) + 1;
    }
}

}  // namespace

std::unique_ptr<Boss> makeStoryBoss(DocumentBorder& database, Uid uid) {
    return std::make_unique<StoryBoss>(database, uid, kTextStoryBoss);
}

}  // namespace desk
