#include "desk/border/boss.h"

namespace desk {

void Ledger::report(std::string misuse) {
    constexpr size_t kept = 100;
    if (misuses_.size() < kept) misuses_.push_back(std::move(misuse));
}

void Boss::dropReference() {
    if (references_ == 0) {
        ledger_.report("A reference was given back that nobody holds: every query must be followed by one release.");
        return;
    }
    --references_;
    ledger_.dropped();
    if (references_ == 0 && keeper_) keeper_->lastReferenceGone(*this);
}

}  // namespace desk
