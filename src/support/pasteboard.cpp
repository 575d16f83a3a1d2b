#include "support/pasteboard.h"

#include "support/pasteboard_space.h"

namespace vornaset {

PasteboardSpace::~PasteboardSpace() = default;

namespace {

class MemorySpace : public PasteboardSpace {
  public:
    Value value(const String& name, const String& type) override {
        return boards_.valueForKey(name).dictionary().valueForKey(type);
    }

    bool setValue(const String& name, const String& type, const Value& value) override {
        Dictionary board = boards_.valueForKey(name).dictionary();
        if (!board) {
            board = Dictionary::makeMutable();
            boards_.setValue(name, board);
        }
        board.setValue(type, value);
        return true;
    }

    void clear(const String& name) override { boards_.removeKey(name); }

    std::vector<String> types(const String& name) override {
        const Dictionary board = boards_.valueForKey(name).dictionary();
        std::vector<String> types;
        for (size_t index = 0; index < board.count(); ++index) types.push_back(board.keyAt(index));
        return types;
    }

  private:
    Dictionary boards_ = Dictionary::makeMutable();
};

std::shared_ptr<PasteboardSpace>& currentSpace() {
    static std::shared_ptr<PasteboardSpace> space = makeMemoryPasteboardSpace();
    return space;
}

}  // namespace

std::shared_ptr<PasteboardSpace> makeMemoryPasteboardSpace() {
    return std::make_shared<MemorySpace>();
}

Pasteboard Pasteboard::withName(const String& name) {
    if (name.isNull()) throw InvalidArgumentException("a pasteboard needs a name");
    return {currentSpace(), name};
}

void Pasteboard::setPrivateSpace() {
    currentSpace() = makeMemoryPasteboardSpace();
}

void Pasteboard::setSpace(const std::string& folder) {
    currentSpace() = makeFolderPasteboardSpace(folder);
}

Value Pasteboard::propertyListForType(const String& type) const {
    return type.isNull() ? Value() : space_->value(name_, type);
}

String Pasteboard::stringForType(const String& type) const {
    return propertyListForType(type).string();
}

bool Pasteboard::setPropertyList(const Value& value, const String& type) {
    return !value.isNull() && !type.isNull() && space_->setValue(name_, type, value);
}

bool Pasteboard::setString(const String& text, const String& type) {
    return setPropertyList(text, type);
}

void Pasteboard::clear() {
    space_->clear(name_);
}

std::vector<String> Pasteboard::types() const {
    return space_->types(name_);
}

}  // namespace vornaset
