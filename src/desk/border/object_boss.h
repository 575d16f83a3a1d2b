#pragma once
// A boss that stands for one object of a document. It keeps no pointer into the model: every call looks its object up,
// so that an object that is gone answers empty.

#include "desk/border/document_border.h"

namespace desk {

template <class... Interfaces>
class ObjectBoss : public BossOf<IPMPersist, Interfaces...> {
  public:
    ObjectBoss(DocumentBorder& database, Uid uid, ClassID classId)
        : BossOf<IPMPersist, Interfaces...>(database.ledger()), database_(database), uid_(uid), class_(classId) {}

    IDataBase* GetDataBase() override { return &database_; }
    UID GetUID() override { return UID(uid_); }
    ClassID GetClassID() override { return class_; }

  protected:
    DocumentBorder& database() const { return database_; }
    /// Null after the document is closed.
    Document* document() const { return database_.document(); }
    Uid uid() const { return uid_; }

  private:
    DocumentBorder& database_;
    Uid uid_;
    ClassID class_;
};

// Makers of the bosses of each kind; the implementations stand beside each other by subject.
std::unique_ptr<Boss> makeDocumentBoss(DocumentBorder& database, Uid uid);
std::unique_ptr<Boss> makeWorkspaceBoss(DocumentBorder& database, Uid uid);
std::unique_ptr<Boss> makeStyleBoss(DocumentBorder& database, Uid uid);
std::unique_ptr<Boss> makeHostLayerBoss(Ledger& ledger);
std::unique_ptr<Boss> makeLayerBoss(DocumentBorder& database, Uid uid);
std::unique_ptr<Boss> makeSpreadLayerBoss(DocumentBorder& database, Uid uid);
std::unique_ptr<Boss> makeSpreadBoss(DocumentBorder& database, Uid uid);
std::unique_ptr<Boss> makePageBoss(DocumentBorder& database, Uid uid);
std::unique_ptr<Boss> makeItemBoss(DocumentBorder& database, Uid uid);
std::unique_ptr<Boss> makeMultiColumnFrameBoss(DocumentBorder& database, Uid uid);
std::unique_ptr<Boss> makeTextColumnBoss(DocumentBorder& database, Uid uid);
std::unique_ptr<Boss> makeAnchoredObjectBoss(DocumentBorder& database, Uid uid);
std::unique_ptr<Boss> makeStoryBoss(DocumentBorder& database, Uid uid);

/// The columns of a text frame, at least 1.
int columnCountOf(const Document& document, const PageItem& frame);

}  // namespace desk
