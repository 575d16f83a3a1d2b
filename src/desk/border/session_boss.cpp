#include "desk/border/session_boss.h"

#include <algorithm>

namespace desk {
namespace {

class ApplicationBoss final : public BossOf<IApplication, IDocumentList> {
  public:
    ApplicationBoss(Ledger& ledger, DocumentOrder& documents) : BossOf(ledger), documents_(documents) {}

    IDocumentList* QueryDocumentList() override {
        AddRef();
        return this;
    }
    int32_t GetDocCount() override { return documents_.count(); }
    IDocument* GetNthDoc(int32_t index) override { return documents_.documentAt(index); }

  private:
    DocumentOrder& documents_;
};

class SessionBoss final : public BossOf<IExecutionContextSession, IObjectModel> {
  public:
    SessionBoss(Ledger& ledger, Boss& application, Boss& settings, Offers& offers)
        : BossOf(ledger), application_(application), settings_(settings), offers_(offers) {}

    IPMUnknown* QueryWorkspace() override { return settings_.query(IID_IUNKNOWN); }

    IApplication* QueryApplication() override {
        return static_cast<IApplication*>(application_.query(IID_IAPPLICATION));
    }
    /// The desk has no use for classes of a plug-in's own yet.
    void RegisterBoss(uint32_t, ClassID, const void*) override {}
    void RegisterImplementation(uint32_t plugIn, ImplementationID identifier, CreateImplementation create,
                                DestroyImplementation destroy, SizeOfImplementation, uint32_t, uint32_t,
                                uint32_t) override {
        if (!create || !destroy) return;
        const OfferedImplementation offer{plugIn, identifier, create, destroy};
        const auto known = std::find_if(offers_.begin(), offers_.end(), [&](const OfferedImplementation& other) {
            return other.identifier == identifier;
        });
        if (known != offers_.end()) {
            *known = offer;
        } else {
            offers_.push_back(offer);
        }
    }

  private:
    Boss& application_;
    Boss& settings_;
    Offers& offers_;
};

}  // namespace

std::unique_ptr<Boss> makeApplication(Ledger& ledger, DocumentOrder& documents) {
    return std::make_unique<ApplicationBoss>(ledger, documents);
}

std::unique_ptr<Boss> makeSession(Ledger& ledger, Boss& application, Boss& settings, Offers& offers) {
    return std::make_unique<SessionBoss>(ledger, application, settings, offers);
}

}  // namespace desk
