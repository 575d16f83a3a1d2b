#pragma once
// The stateless services that the desk hands out, by subject.

#include <memory>

#include "desk/border/boss.h"
#include "desk/border/commands.h"
#include "host/api/services.h"

namespace desk {

std::unique_ptr<Boss> makeServices(Ledger& ledger, Surroundings& surroundings);
std::unique_ptr<Boss> makePictureServices(Ledger& ledger, Surroundings& surroundings);
std::unique_ptr<Boss> makeItemServices(Ledger& ledger, Surroundings& surroundings);
std::unique_ptr<Boss> makeFileServices(Ledger& ledger, Surroundings& surroundings);

}  // namespace desk
