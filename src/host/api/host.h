#pragma once
// Free entry points of the border, and the seam by which a host puts itself behind them.

#include "host/api/commands.h"
#include "host/api/documents.h"
#include "host/api/page_items.h"
#include "host/api/plug_in.h"
#include "host/api/services.h"
#include "host/api/text.h"

/// The session; no reference for the caller. Null without a host.
IExecutionContextSession* GetExecutionContextSession();

/// Of any persistent object; null database, UID 0 and class 0 for null and for objects that aren't persistent.
IDataBase* GetDataBase(IPMUnknown* object);
UID GetUID(IPMUnknown* object);
UIDRef GetUIDRef(IPMUnknown* object);
ClassID GetClass(IPMUnknown* object);
/// Class 0 for a UID that names nothing.
ClassID GetClass(IDataBase* database, UID uid);

namespace K2Memory {
/// The host's allocator, so that memory crosses the border freely. Throws std::bad_alloc.
void* RTLCompatibleNewDelegate(size_t size);
void RTLCompatibleDeleteDelegate(void* memory);
}  // namespace K2Memory

/// What a host gives to stand behind the free functions of this border.
class IHost {
  public:
    virtual IExecutionContextSession* Session() = 0;
    virtual IPMUnknown* QueryUtils(PMIID service) = 0;
    virtual IPMCommand* CreateCommand(ClassID commandClass) = 0;
    virtual ErrorCode ProcessCommand(IPMCommand* command) = 0;
    virtual bool IsValidDataBase(IDataBase* database) = 0;
    virtual ErrorCode GlobalErrorCode() { return kSuccess; }

  protected:
    virtual ~IHost() = default;
};

/// Puts a host behind the border and gives back the one before (null for none). The host must outlive its time there.
IHost* InstallHost(IHost* host);
