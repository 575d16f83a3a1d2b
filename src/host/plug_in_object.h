#pragma once
// The module's face to the host: the one plug-in object, the list of what the module offers, and the entry point that
// the host looks for.

#include "host/api/host.h"
#include "host/host_allocation.h"

namespace vornaset {

/// What the module offers. A unit that offers something links its static record at load, before any call of the host.
class OfferedRecords {
  public:
    /// Links a static record onto the head of its list.
    static void link(ImplementationRecord& record);
    static void link(BossRecord& record);

    /// The heads of the lists; null for an empty one.
    static ImplementationRecord* implementations();
    static BossRecord* bosses();
};

/// The plug-in object. The host keeps a pointer to the one instance, asks it to register the module's offers and hands
/// it the identifier under which the host knows the module.
class PlugIn : public IPlugIn, public HostAllocated {
  public:
    PlugIn() = default;
    PlugIn(const PlugIn&) = delete;
    PlugIn& operator=(const PlugIn&) = delete;
    ~PlugIn() override;

    int32_t Startup() override { return 1; }
    int32_t Initialize() override { return 1; }
    int32_t IsLazy() override { return 0; }
    int32_t Shutdown() override { return 1; }
    void Idle() override {}
    uint32_t GetPlugInID() override { return identifier_; }
    void SetPlugInID(uint32_t identifier) override { identifier_ = identifier; }

    /// A later load replaces the file of an earlier one; a null handle leaves the recorded one.
    void Load(const IDFile& resourceFile, void* moduleHandle) override;
    /// Empty before loading.
    IDFile GetResourceFile() override;
    /// Bosses first, those without data passed over, then implementations. Without a session nothing is registered.
    void Register(uint32_t plugIn) override;

  private:
    uint32_t identifier_ = 0;
};

extern PlugIn gPlugIn;

/// The static record of the export provider, defined beside the provider (merge/export_provider.h).
ImplementationRecord* GetkMyPDFExportProviderImpl_InterfaceFactory();

/// Keeps the provider's record in the module although no other code names it.
void DontDeadStrip();

}  // namespace vornaset

/// What the host looks for in the module: the address of `gPlugIn`.
extern "C" IPlugIn* GetPlugIn();
