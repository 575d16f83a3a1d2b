#pragma once
// An array of PDF objects.

#include "pdf/object_collections.h"
#include "pdf/pdf_obj.h"

namespace vornaset {

class MyPDFArray : public MyPDFObj {
  public:
    static bool isKind(Kind kind) noexcept { return kind == Kind::array; }
    static Handle<MyPDFArray> array();

    /// The children's labels between brackets; the empty string when a child is a container.
    String pdfString() const override;
    /// Containers as references, everything else as it prints; a blank behind each.
    void appendPDFData(std::string& buffer) override;
    uint8_t isArray() const override { return 1; }
    /// Four numbers under the key of a box.
    uint8_t isBox() const override;
    /// The children in millimetres with three digits, ".000" left out. Throws UnrecognizedOperation when a child is
    /// no number.
    String boxString() const override;
    int64_t numberOfChildren() const override { return static_cast<int64_t>(children_.count()); }
    uint8_t enumChildren(EnumChildrenProc proc, void* userData) override;
    using MyPDFObj::enumChildren;

    /// These throw RangeException for an index outside, and InvalidArgumentException for a null object.
    Handle<MyPDFObj> objectAtIndexedSubscript(uint64_t index) const { return children_.objectAt(index); }
    void setObject(const Handle<MyPDFObj>& object, uint64_t atIndexedSubscript) {
        children_.replace(atIndexedSubscript, object);
    }
    void addObject(const Handle<MyPDFObj>& object) { children_.add(object); }
    /// Open to callers, who may append to it.
    const ObjectList<MyPDFObj>& children() const noexcept { return children_; }
    void setChildren(const ObjectList<MyPDFObj>& children) {
        if (!isAbsent()) children_ = children;
    }

  protected:
    MyPDFArray() : MyPDFObj(Kind::array), children_(ObjectList<MyPDFObj>::make()) {}
    explicit MyPDFArray(AbsentTag tag) noexcept : MyPDFObj(Kind::array, tag) {}

    MyPDFObj* childAt(int64_t index) const override;
    bool holdsChildrenAlone() const override { return children_.useCount() <= 1; }
    void dropChildren() override { children_.removeAll(); }

  private:
    ObjectList<MyPDFObj> children_;
};

}  // namespace vornaset
