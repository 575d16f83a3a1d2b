#pragma once
// Named pasteboards: how a job reaches the merge and how feedback comes back.

#include <memory>
#include <string>
#include <vector>

#include "support/values.h"

namespace vornaset {

class PasteboardSpace;

/// A pasteboard holds one value for each type. All pasteboards live in a space. At start the space is private to the
/// process and lies in memory alone: nothing is serialised, and a value read is the very object that was set. A shared
/// space is a folder: each value also stands there as an XML property list, written whole or not at all, where another
/// process with the same folder finds it; in the process that set it a value is still handed over as the object itself,
/// as long as nobody else has written or cleared the type since.
class Pasteboard {
  public:
    /// The pasteboard of that name in the space in force now. Throws InvalidArgumentException for a null name.
    static Pasteboard withName(const String& name);

    /// Back to a new, empty space in memory.
    static void setPrivateSpace();
    /// A space in a folder, which is made when it is missing. Throws Exception when it can't be.
    static void setSpace(const std::string& folder);

    /// The value of the type; null when there is none. What another process wrote comes with mutable containers.
    Value propertyListForType(const String& type) const;
    /// The value of the type when it is a text, else null.
    String stringForType(const String& type) const;
    /// False, and nothing is changed, for a null value or type; in a shared space also for a value that no property
    /// list can hold (an object) and when the folder can't be written.
    bool setPropertyList(const Value& value, const String& type);
    bool setString(const String& text, const String& type);
    /// Removes every type.
    void clear();
    /// The types that are there; in a private space in the order in which they were set, else by name.
    std::vector<String> types() const;

  private:
    Pasteboard(std::shared_ptr<PasteboardSpace> space, String name)
        : space_(std::move(space)), name_(std::move(name)) {}

    std::shared_ptr<PasteboardSpace> space_;
    String name_;
};

}  // namespace vornaset
