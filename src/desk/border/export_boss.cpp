#include "desk/border/export_boss.h"

namespace desk {
namespace {

/// Which implementations are export providers: a registration says what it is by its number alone.
bool isExportProvider(ImplementationID identifier) {
    return identifier == kMyPDFExportProviderImpl;
}

}  // namespace

ExportBoss::ExportBoss(Ledger& ledger, const Offers& offers) : BossOf(ledger) {
    for (const OfferedImplementation& offer : offers) {
        if (!isExportProvider(offer.identifier)) continue;
        IPMUnknown* object = offer.create(this);
        if (!object) continue;
        made_.push_back({object, offer.destroy});
        providers_.push_back(static_cast<IPDFExportSetupProvider*>(object));
    }
}

ExportBoss::~ExportBoss() {
    for (const Made& made : made_) made.destroy(made.object);
}

IPMUnknown* ExportBoss::find(PMIID interfaceId) {
    if (interfaceId == IID_IPDFEXPORTSETUPPROVIDER) return made_.empty() ? nullptr : made_.front().object;
    return BossOf::find(interfaceId);
}

}  // namespace desk
