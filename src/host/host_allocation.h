#pragma once
// Memory that crosses to the host comes from the host's allocator. The objects that do so are few (the export provider,
// the plug-in object and its resource file), and each says so itself by deriving from HostAllocated. The module leaves
// the process's global operators alone: on this platform replacing them in one module replaces them for everybody.

#include "host/api/host.h"

namespace vornaset {

/// Gives a class operators new and delete on the host's allocator.
class HostAllocated {
  public:
    static void* operator new(size_t size) { return K2Memory::RTLCompatibleNewDelegate(size); }
    static void operator delete(void* memory) { K2Memory::RTLCompatibleDeleteDelegate(memory); }

  protected:
    ~HostAllocated() = default;
};

}  // namespace vornaset
