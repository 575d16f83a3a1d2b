#pragma once
// What the host calls during a PDF export: the one way into a merge run.

#include "host/api/host.h"
#include "host/host_allocation.h"

namespace vornaset {

/// The host makes one for its own object and calls it for every export, whether or not a merge is wanted: an export
/// with no job waiting passes through untouched. References are counted by the owning object alone.
class MyPDFExportProvider : public CPMUnknown<IPDFExportSetupProvider>, public HostAllocated {
  public:
    /// The owner outlives the provider.
    explicit MyPDFExportProvider(IPMUnknown* owner) : owner_(owner) {}
    ~MyPDFExportProvider() override = default;

    IPMUnknown* QueryInterface(PMIID interfaceId) override;
    void AddRef() override;
    void Release() override;

    /// Message 0 takes a waiting job, 1 fills the template at the first page of a page set, 4 lets the job go; all
    /// others, and 1 and 4 without a run, do nothing. `pageNum` counts the export's pages from 0. Each event leaves a
    /// line in the system log. 1 in every case; RangeException when a placeholder moves on to a row that isn't there.
    int32_t PDFProcessEvent(_t_PDFExportEvent* event, int32_t pageNum) override;

  private:
    IPMUnknown* owner_;
};

}  // namespace vornaset

// The factory of the provider, as the host calls it: the object in memory of the host's allocator, its end (null is
// fine), and its size in bytes.
extern "C" {
IPMUnknown* CreatekMyPDFExportProviderImpl_(IPMUnknown* boss);
void DestroykMyPDFExportProviderImpl_(IPMUnknown* object);
size_t SizeOfkMyPDFExportProviderImpl_();
}
