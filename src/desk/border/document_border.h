#pragma once
// One open document as plug-ins see it: a database whose objects are made on first asking and kept.

#include <memory>
#include <unordered_map>
#include <vector>

#include "desk/border/boss.h"
#include "desk/border/text_layout_service.h"
#include "desk/model/document.h"
#include "host/api/documents.h"

namespace desk {

enum class LocalOverrides { Keep, DropWhatTheStyleDefines };

class DocumentBorder final : public IDataBase, private BossKeeper {
  public:
    DocumentBorder(Document& document, TextLayoutService& layout, Ledger& ledger);
    ~DocumentBorder() override;

    /// Null after closing.
    Document* document() const { return document_; }
    TextLayoutService* layout() const { return document_ ? &layout_ : nullptr; }
    Ledger& ledger() const { return ledger_; }

    // IDataBase
    IPMUnknown* Instantiate(UID uid, PMIID interfaceId) override;
    UID GetRootUID() override;
    IDFile GetSaveFile() override;
    IDFile GetReadFile() override;
    void SetModified(bool modified) override;

    /// The document was written to its path.
    void saved() { isSaved_ = true; }
    /// The document's own interface without a reference: good until closing.
    IDocument* documentInterface();
    /// The layer that is the host's own, with a reference for the caller.
    IDocumentLayer* queryHostLayer();

    /// Remove from the document; an object that a plug-in still holds is reported and answers empty from now on. False
    /// for a UID of another kind.
    bool removeItem(Uid uid);
    bool removeStory(Uid uid);
    bool removeSpread(Uid uid);

    /// An imported item that stands nowhere yet. It goes when it is still loose at the next removal of items.
    void addLooseItem(Uid uid) { looseItems_.push_back(uid); }
    void dropLooseItems();
    /// Makes a loose item the content of a frame, in place of what the frame holds. False when one of the two isn't
    /// what it must be.
    bool putIntoFrame(Uid item, Uid frame);

    /// The format of text in this format that gets a style (0 or a style of the kind).
    CharacterFormatId withStyle(CharacterFormatId format, Uid style, LocalOverrides overrides);
    ParagraphFormatId paragraphWithStyle(ParagraphFormatId format, Uid style, LocalOverrides overrides);

    /// From now on every object answers empty.
    void close();
    /// True while a reference to one of the objects is out.
    bool isHeld() const;

  private:
    void lastReferenceGone(Boss& boss) override;
    Boss* boss(Uid uid);
    std::unique_ptr<Boss> makeBoss(Uid uid);
    void collectItem(Uid uid, std::vector<Uid>& found) const;
    void forgetRemoved(const std::vector<Uid>& uids);
    void retire(std::unique_ptr<Boss> boss, const char* reason);
    void forgetStyledFormatsOfOldStyles();
    TextAttributes definedBy(Uid style) const;

    Document* document_;
    TextLayoutService& layout_;
    Ledger& ledger_;
    std::vector<std::unique_ptr<Boss>> bosses_;   ///< by Uid
    std::vector<std::unique_ptr<Boss>> retired_;  ///< of removed objects that are still held
    std::unique_ptr<Boss> hostLayer_;
    std::vector<Uid> looseItems_;
    bool isSaved_ = false;
    // A merge sets the same few styles on the same few formats again and again. Key: format, style, overrides.
    std::unordered_map<uint64_t, CharacterFormatId> styledCharacters_;
    std::unordered_map<uint64_t, ParagraphFormatId> styledParagraphs_;
    uint64_t knownStyleRevision_ = 0;
};

}  // namespace desk
