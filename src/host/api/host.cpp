#include "host/api/host.h"

#include <cstdlib>
#include <new>
#include <utility>

namespace {

IHost* installedHost = nullptr;

}  // namespace

IHost* InstallHost(IHost* host) {
    return std::exchange(installedHost, host);
}

IExecutionContextSession* GetExecutionContextSession() {
    return installedHost ? installedHost->Session() : nullptr;
}

UIDRef GetUIDRef(IPMUnknown* object) {
    InterfacePtr<IPMPersist> persistent(object);
    return persistent ? UIDRef(persistent->GetDataBase(), persistent->GetUID()) : UIDRef();
}

IDataBase* GetDataBase(IPMUnknown* object) {
    return GetUIDRef(object).GetDataBase();
}

UID GetUID(IPMUnknown* object) {
    return GetUIDRef(object).GetUID();
}

ClassID GetClass(IPMUnknown* object) {
    InterfacePtr<IPMPersist> persistent(object);
    return persistent ? persistent->GetClassID() : ClassID();
}

ClassID GetClass(IDataBase* database, UID uid) {
    InterfacePtr<IPMPersist> persistent(database, uid);
    return persistent ? persistent->GetClassID() : ClassID();
}

// The allocator stands on malloc and not on operator new: a module may put its own operator new on top of these.
namespace K2Memory {

void* RTLCompatibleNewDelegate(size_t size) {
    void* memory = std::malloc(size == 0 ? 1 : size);
    if (!memory) throw std::bad_alloc();
    return memory;
}

void RTLCompatibleDeleteDelegate(void* memory) {
    std::free(memory);
}

}  // namespace K2Memory

namespace CmdUtils {

IPMCommand* CreateCommand(ClassID commandClass) {
    return installedHost ? installedHost->CreateCommand(commandClass) : nullptr;
}

ErrorCode ProcessCommand(IPMCommand* command) {
    return installedHost && command ? installedHost->ProcessCommand(command) : kFailure;
}

}  // namespace CmdUtils

namespace ErrorUtils {

ErrorCode PMGetGlobalErrorCode() {
    return installedHost ? installedHost->GlobalErrorCode() : kSuccess;
}

}  // namespace ErrorUtils

namespace UtilsBoss {

IPMUnknown* QueryUtils(PMIID service) {
    return installedHost ? installedHost->QueryUtils(service) : nullptr;
}

}  // namespace UtilsBoss

namespace DBUtils {

bool IsValidDataBase(IDataBase* database) {
    return installedHost && database && installedHost->IsValidDataBase(database);
}

}  // namespace DBUtils
