#pragma once
// Objects behind the border: interfaces on one object, references counted in one place.

#include <cstdint>
#include <string>
#include <vector>

#include "host/api/unknown.h"

namespace desk {

/// Counts the references that are out and keeps the rules that were broken.
class Ledger {
  public:
    void added() { ++outstanding_; }
    void dropped() { --outstanding_; }
    int64_t outstanding() const { return outstanding_; }
    void report(std::string misuse);
    const std::vector<std::string>& misuses() const { return misuses_; }
    void forgetMisuses() { misuses_.clear(); }

  private:
    int64_t outstanding_ = 0;
    std::vector<std::string> misuses_;
};

class Boss;

/// Deletes objects that live only as long as a reference to them is out.
class BossKeeper {
  public:
    virtual void lastReferenceGone(Boss& boss) = 0;

  protected:
    ~BossKeeper() = default;
};

class Boss {
  public:
    explicit Boss(Ledger& ledger) : ledger_(ledger) {}
    virtual ~Boss() = default;
    Boss(const Boss&) = delete;
    Boss& operator=(const Boss&) = delete;

    /// With a reference for the caller.
    virtual IPMUnknown* query(PMIID interfaceId) = 0;
    int64_t references() const { return references_; }
    /// From now on the object goes with its last reference.
    void liveByReferences(BossKeeper& keeper) { keeper_ = &keeper; }

  protected:
    void addReference() {
        ++references_;
        ledger_.added();
    }
    /// May delete the object.
    void dropReference();
    Ledger& ledger() { return ledger_; }

  private:
    Ledger& ledger_;
    BossKeeper* keeper_ = nullptr;
    int64_t references_ = 0;
};

/// For a boss that has no interface of its own but the root one.
class RootInterface : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IUNKNOWN;
};

/// A boss with these interfaces. A query compares a handful of numbers; the first interface answers for the root one.
template <class First, class... Others>
class BossOf : public Boss, public First, public Others... {
  public:
    using Boss::Boss;

    IPMUnknown* query(PMIID interfaceId) final { return QueryInterface(interfaceId); }

    IPMUnknown* QueryInterface(PMIID interfaceId) final {
        IPMUnknown* found = find(interfaceId);
        if (found) addReference();
        return found;
    }
    void AddRef() final { addReference(); }
    void Release() final { dropReference(); }

  protected:
    /// Without a reference. An object that has an interface only at times, or not by inheritance, says so here.
    virtual IPMUnknown* find(PMIID interfaceId) {
        if (interfaceId == First::kDefaultIID || interfaceId == IID_IUNKNOWN) return static_cast<First*>(this);
        IPMUnknown* found = nullptr;
        (void)((interfaceId == Others::kDefaultIID && (found = static_cast<Others*>(this))) || ...);
        return found;
    }
};

}  // namespace desk
