#pragma once
// Where the module's resource file is.

#include "host/api/strings.h"
#include "host/host_allocation.h"

namespace vornaset {

/// The location of the resource file, in memory of the host's allocator.
class ResourceFile : public IDFile, public HostAllocated {
  public:
    explicit ResourceFile(const IDFile& file) : IDFile(file) {}
    virtual ~ResourceFile() = default;
};

/// Access to the resource file by way of the one record that loading fills.
class MBaseResourceAccess {
  public:
    struct ResourceFileInfo {
        int16_t isUnopened = 1;  ///< 0 once a handle is recorded
        int32_t referenceNumber = -1;
        int16_t hasHandle = 0;         ///< 1 once a handle is recorded
        void* handle = nullptr;        ///< of the loaded module
        ResourceFile* file = nullptr;  ///< owned by the plug-in object; null before loading
    };

    /// The module's own record.
    static ResourceFileInfo& resourceFileInfo();

    explicit MBaseResourceAccess(const ResourceFileInfo& info) : info_(info) {}
    /// Empty before loading.
    IDFile GetResourceFile() const { return info_.file ? IDFile(*info_.file) : IDFile(); }

  private:
    const ResourceFileInfo& info_;
};

}  // namespace vornaset
