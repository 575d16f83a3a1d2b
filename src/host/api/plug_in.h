#pragma once
// What a plug-in module offers and how the host takes it in.

#include <memory>

#include "host/api/database.h"

/// The host's record of one event of a PDF export.
struct _t_PDFExportEvent {
    int32_t messageCode = 0;  ///< 0 export starts, 1 a page is about to be written, 4 export has ended
    IDataBase* database = nullptr;
};

class IPDFExportSetupProvider : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IPDFEXPORTSETUPPROVIDER;
    /// pageNum counts the pages of the export from 0. The result is not read. A host that hears an exception ends the
    /// export.
    virtual int32_t PDFProcessEvent(_t_PDFExportEvent* event, int32_t pageNum) = 0;
};

using CreateImplementation = IPMUnknown* (*)(IPMUnknown* boss);
using DestroyImplementation = void (*)(IPMUnknown* object);
using SizeOfImplementation = size_t (*)();

/// One interface implementation that a module offers. Static, linked into a list at load.
struct ImplementationRecord {
    ImplementationID identifier;
    CreateImplementation create = nullptr;
    DestroyImplementation destroy = nullptr;
    SizeOfImplementation sizeOf = nullptr;
    uint32_t words[3] = {0, 0, 0};
    ImplementationRecord* next = nullptr;
};

/// One class of objects that a module offers; skipped without data.
struct BossRecord {
    ClassID identifier;
    const void* data = nullptr;
    BossRecord* next = nullptr;
};

/// Takes registrations; an interface of the session.
class IObjectModel : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IOBJECTMODEL;
    virtual void RegisterBoss(uint32_t plugIn, ClassID identifier, const void* data) = 0;
    virtual void RegisterImplementation(uint32_t plugIn, ImplementationID identifier, CreateImplementation create,
                                        DestroyImplementation destroy, SizeOfImplementation sizeOf, uint32_t word1,
                                        uint32_t word2, uint32_t word3) = 0;
};

/// The plug-in object, one for each module. The order of the operations is fixed.
class IPlugIn {
  public:
    virtual int32_t Startup() = 0;     ///< 1
    virtual int32_t Initialize() = 0;  ///< 1
    virtual int32_t IsLazy() = 0;      ///< 0
    virtual int32_t Shutdown() = 0;    ///< 1
    virtual void Idle() = 0;
    virtual uint32_t GetPlugInID() = 0;
    virtual void SetPlugInID(uint32_t identifier) = 0;
    /// Keeps the resource file, and the handle of the loaded module when it isn't null.
    virtual void Load(const IDFile& resourceFile, void* moduleHandle) = 0;
    virtual IDFile GetResourceFile() = 0;
    /// Registers the module's classes and implementations under the plug-in identifier.
    virtual void Register(uint32_t plugIn) = 0;
    virtual ~IPlugIn() = default;
};

extern "C" {
/// What every module exports under this name.
using GetPlugInFunction = IPlugIn* (*)();
}
