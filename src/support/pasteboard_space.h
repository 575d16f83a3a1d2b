#pragma once
// Where the pasteboards of a run live: in memory, or in a folder that several processes share.

#include <memory>
#include <string>
#include <vector>

#include "support/values.h"

namespace vornaset {

class PasteboardSpace {
  public:
    virtual ~PasteboardSpace();
    virtual Value value(const String& name, const String& type) = 0;
    /// False when the value can't be kept; nothing has changed then.
    virtual bool setValue(const String& name, const String& type, const Value& value) = 0;
    virtual void clear(const String& name) = 0;
    virtual std::vector<String> types(const String& name) = 0;
};

std::shared_ptr<PasteboardSpace> makeMemoryPasteboardSpace();
/// Throws Exception when the folder isn't there and can't be made.
std::shared_ptr<PasteboardSpace> makeFolderPasteboardSpace(const std::string& folder);

}  // namespace vornaset
