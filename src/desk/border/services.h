#pragma once
// The stateless services that the desk hands out, all on one object.

#include <memory>

#include "desk/border/boss.h"
#include "desk/border/commands.h"
#include "host/api/services.h"

namespace desk {

/// What the services need of the border.
class ServiceGround : public OpenDocuments {
  public:
    /// Null without an open document.
    virtual DocumentBorder* front() = 0;
    /// With a reference for the caller.
    virtual IPMCommand* createCommand(ClassID commandClass) = 0;

  protected:
    ~ServiceGround() = default;
};

std::unique_ptr<Boss> makeServices(Ledger& ledger, ServiceGround& ground);

}  // namespace desk
