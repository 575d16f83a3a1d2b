#pragma once
// MyPDFObj, the root of the PDF values, and what all of them share: counting, traversal, the rule for absent objects.
//
// Arrays, dictionaries and streams are always indirect objects: inside another container they are written as a
// reference. There is no reference object; a reference is a handle on its target, and its text comes from the target's
// number when a file is written. ISO 32000-1, 7.3.

#include <cstdint>
#include <string>

#include "pdf/handle.h"
#include "support/values.h"

namespace vornaset {

class MyPDFObj;

/// Gets each container that a traversal meets. 0 ends the walk through the children of this container's holder.
using EnumChildrenProc = uint8_t (*)(const Handle<MyPDFObj>& child, void* userData);

class MyPDFObj : public Shared {
  public:
    using Root = MyPDFObj;
    enum class Kind : uint8_t { plain, boolean, number, string, name, array, dictionary, stream };

    static Handle<MyPDFObj> make();

    virtual uint8_t isIndirect() const { return 0; }
    virtual uint8_t isString() const { return 0; }
    virtual uint8_t isNumber() const { return 0; }
    virtual uint8_t isName() const { return 0; }
    virtual uint8_t isArray() const { return 0; }
    virtual uint8_t isDictionary() const { return 0; }
    virtual uint8_t isPage() const { return 0; }
    virtual uint8_t isStream() const { return 0; }
    virtual uint8_t isXObj() const { return 0; }
    virtual uint8_t isFont() const { return 0; }
    virtual int64_t numberOfChildren() const { return 0; }
    virtual uint8_t isBox() const { return 0; }
    /// A container under the key "ColorSpace".
    virtual uint8_t isColorSpace() const;
    virtual uint8_t isContainer() const { return isArray() || isDictionary(); }

    /// Walks the containers below this object, depth first, each told before what it holds; this object itself isn't
    /// told, scalars never are, and `parent` isn't followed. 0 when the procedure answered 0 for a direct child,
    /// else 1.
    ///
    /// Inside a traversal that the class operation began, an object that was met before is passed over. Called by
    /// itself it tells a shared object each time that it is reached; in a graph with a cycle, once.
    virtual uint8_t enumChildren(EnumChildrenProc proc, void* userData);
    /// The proper way to begin a traversal: each container is told once. 0 for what isn't a container.
    static uint8_t enumChildren(const Handle<MyPDFObj>& object, EnumChildrenProc proc, void* userData);

    /// A label for people and for comparisons, never file content. Null for an absent object.
    virtual String pdfString() const { return u""; }
    /// The object's bytes in a file; for a stream this compresses it first. Null for an absent object.
    Data pdfData();
    /// As pdfData, behind what the buffer holds. This is what a class overrides.
    virtual void appendPDFData(std::string& buffer);

    /// The dictionary key under which the reader last attached this object; null for objects made in memory.
    const String& key() const noexcept { return key_; }
    void setKey(const String& key) {
        if (!isAbsent()) key_ = key;
    }
    /// The number that the last write gave; 0 before any.
    int64_t objNum() const noexcept { return objNum_; }
    void setObjNum(int64_t number) {
        if (!isAbsent()) objNum_ = number;
    }
    /// A box in millimetres, for people. Null for anything but an array.
    virtual String boxString() const { return {}; }

    /// How many objects of all classes live.
    static int64_t allocated() noexcept;

    Kind kind() const noexcept { return kind_; }
    /// "MyPDFName" and so on.
    static const char* nameOfKind(Kind kind) noexcept;
    /// True for the stand-in behind a null handle.
    bool isAbsent() const noexcept { return absent_; }
    Ref<WeakAnchor> weakAnchor();
    /// For Handle. However long the chain of objects that go with this one, the stack doesn't grow.
    static void destroy(const MyPDFObj* object) noexcept;

  protected:
    struct AbsentTag {};

    explicit MyPDFObj(Kind kind);
    explicit MyPDFObj(AbsentTag tag) noexcept : MyPDFObj(Kind::plain, tag) {}
    MyPDFObj(Kind kind, AbsentTag) noexcept;
    virtual ~MyPDFObj();

    /// The child at a place below numberOfChildren, in the order of the traversal; null beyond the end.
    virtual MyPDFObj* childAt(int64_t index) const;
    /// Lets go of all that a container holds, where the object alone holds it. False when others hold the same list.
    virtual bool holdsChildrenAlone() const { return true; }
    virtual void dropChildren() {}

  private:
    friend class Traversal;
    friend class GraphRelease;
    friend bool isUnvisitedContainer(const MyPDFObj& object);

    uint32_t innerReferences_ = 0;  ///< of a release of a graph
    mutable uint64_t mark_ = 0;     ///< the traversal that met this object last
    String key_;
    int64_t objNum_ = 0;
    Ref<WeakAnchor> anchor_;
    Kind kind_;
    bool absent_;
};

/// False for what isn't a container and for what the running traversal has met; then it counts as met. Outside a
/// traversal nothing is remembered.
bool isUnvisitedContainer(const MyPDFObj& object);

/// Throws UnrecognizedOperation: objects of that kind have no such operation.
[[noreturn]] void raiseUnrecognized(MyPDFObj::Kind kind, const char* operation);

/// The object as one of class T, which must have `operation`. Null for null. Throws UnrecognizedOperation for an object
/// of another class.
template <class T>
Handle<T> operandOf(const Handle<MyPDFObj>& object, const char* operation) {
    if (!object) return nullptr;
    if (!T::isKind(object->kind())) raiseUnrecognized(object->kind(), operation);
    return Handle<T>::share(static_cast<T*>(object.get()));
}

/// The object as one of class T, or null when it is of another class.
template <class T>
Handle<T> objectAs(const Handle<MyPDFObj>& object) {
    if (!object || !T::isKind(object->kind())) return nullptr;
    return Handle<T>::share(static_cast<T*>(object.get()));
}

/// The stand-in of a class: its own answers, but for those that an absent object gives in another way.
template <class T>
class Absent final : public T {
  public:
    Absent() noexcept : T(MyPDFObj::AbsentTag{}) {}
    uint8_t isString() const override { return 0; }
    uint8_t isNumber() const override { return 0; }
    uint8_t isName() const override { return 0; }
    uint8_t isArray() const override { return 0; }
    uint8_t isDictionary() const override { return 0; }
    uint8_t isStream() const override { return 0; }
    uint8_t isContainer() const override { return 0; }
    uint8_t enumChildren(EnumChildrenProc, void*) override { return 0; }
    String pdfString() const override { return {}; }
    void appendPDFData(std::string&) override {}
};

}  // namespace vornaset
