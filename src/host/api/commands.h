#pragma once
// Commands change documents. Made, given data and targets, processed, released; results are read from the result list.

#include "host/api/database.h"

class IPMCommand : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IPMCOMMAND;
    virtual void SetItemList(const UIDList& items) = 0;
    virtual const UIDList& GetItemList() = 0;
    virtual const UIDList& GetResultList() = 0;
};

namespace CmdUtils {
/// With a reference for the caller; null for a class that the host doesn't know.
IPMCommand* CreateCommand(ClassID commandClass);
ErrorCode ProcessCommand(IPMCommand* command);
}  // namespace CmdUtils
