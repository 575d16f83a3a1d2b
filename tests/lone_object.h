#pragma once
// A database that holds one object of a test's own: for what a complete host has no case of.

#include <cstdint>

#include "recorded_host.h"

namespace recorded {

/// Under every UID it gives the one object, or what that answers null to. `references` is 0 when all were given back.
template <class Object>
class LoneObject : public IDataBase {
  public:
    IPMUnknown* Instantiate(UID, PMIID interfaceId) override { return object.QueryInterface(interfaceId); }
    UID GetRootUID() override { return UID(1); }
    IDFile GetSaveFile() override { return {}; }
    IDFile GetReadFile() override { return {}; }
    void SetModified(bool) override {}

    int64_t references = 0;
    Object object{references};
};

}  // namespace recorded
