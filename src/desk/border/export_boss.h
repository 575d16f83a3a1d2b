#pragma once
// The object that carries the export providers of plug-ins.

#include <vector>

#include "desk/border/boss.h"
#include "desk/border/session_boss.h"
#include "host/api/plug_in.h"

namespace desk {

/// Makes one provider of each registration that is known as one, and gives them back at the end. A query for the
/// provider's interface answers with the first.
class ExportBoss final : public BossOf<RootInterface> {
  public:
    ExportBoss(Ledger& ledger, const Offers& offers);
    ~ExportBoss() override;

    const std::vector<IPDFExportSetupProvider*>& providers() const { return providers_; }

  protected:
    IPMUnknown* find(PMIID interfaceId) override;

  private:
    struct Made {
        IPMUnknown* object;
        DestroyImplementation destroy;
    };
    std::vector<Made> made_;
    std::vector<IPDFExportSetupProvider*> providers_;  ///< the same objects as in made_
};

}  // namespace desk
