#pragma once
// Session and application: where a plug-in that holds nothing yet begins, and where it registers what it offers.

#include <memory>
#include <vector>

#include "desk/border/boss.h"
#include "host/api/documents.h"
#include "host/api/plug_in.h"

namespace desk {

/// One registered implementation.
struct OfferedImplementation {
    uint32_t plugIn = 0;
    ImplementationID identifier;
    CreateImplementation create = nullptr;
    DestroyImplementation destroy = nullptr;
};

/// What plug-ins registered. A second registration of the same implementation replaces the first.
using Offers = std::vector<OfferedImplementation>;

/// The open documents in the order of opening.
class DocumentOrder {
  public:
    virtual int32_t count() = 0;
    virtual IDocument* documentAt(int32_t index) = 0;

  protected:
    ~DocumentOrder() = default;
};

std::unique_ptr<Boss> makeApplication(Ledger& ledger, DocumentOrder& documents);
/// Settings that hold for all documents, an object without a document.
class SessionSettings final : public BossOf<IPDFPlacePrefs, IPDFExportViewPrefs> {
  public:
    using BossOf::BossOf;

    int32_t GetPage() override { return page_; }
    void SetPage(int32_t page) override { page_ = page; }
    bool GetShowAfterExport() override { return showsAfterExport_; }
    void SetShowAfterExport(bool show) override { showsAfterExport_ = show; }

  private:
    int32_t page_ = 1;
    bool showsAfterExport_ = true;
};

std::unique_ptr<Boss> makeSession(Ledger& ledger, Boss& application, Boss& settings, Offers& offers);

}  // namespace desk
