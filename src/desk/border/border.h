#pragma once
// The desk's face towards plug-ins: everything that stands behind host/api/.
//
// One border serves one desk. It shows each open document as a database of objects, runs commands, hands out services,
// takes the registrations of plug-ins, and counts every reference that is out. One thread.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "desk/border/text_layout_service.h"
#include "desk/model/document.h"
#include "host/api/host.h"

namespace desk {

class DocumentBorder;
class DocumentFiles;
class Ledger;
class PictureLibrary;

class Border final : public IHost {
  public:
    Border();
    ~Border() override;
    Border(const Border&) = delete;
    Border& operator=(const Border&) = delete;

    /// Shows a document to plug-ins; it becomes the front document. Document and layout must outlive their time here.
    IDataBase* open(Document& document, TextLayoutService& layout);
    /// The document is closed: its database is no valid one any more. A reference to one of its objects that is still
    /// out is a misuse; the object stays and answers empty until the reference comes back.
    void close(const Document& document);
    void bringToFront(const Document& document);
    /// Null for a document that isn't open here.
    IDataBase* dataBaseOf(const Document& document) const;
    /// Null for a database that isn't open here.
    Document* documentOf(IDataBase* database) const;

    /// The pictures that imports read, for whoever writes them too.
    PictureLibrary& pictures();
    /// Opens and saves documents for plug-ins; null: they can't. Must outlive its time here.
    void useFiles(DocumentFiles* files);

    /// References that plug-ins hold now; 0 between calls of a plug-in that keeps the rules.
    int64_t outstandingReferences() const;
    /// Broken rules, one sentence each, in the order met: an object deleted under a reference, a reference given back
    /// too often. At most the first hundred are kept.
    const std::vector<std::string>& misuses() const;
    void forgetMisuses();

    // IHost
    IExecutionContextSession* Session() override;
    IPMUnknown* QueryUtils(PMIID service) override;
    IPMCommand* CreateCommand(ClassID commandClass) override;
    ErrorCode ProcessCommand(IPMCommand* command) override;
    bool IsValidDataBase(IDataBase* database) override;
    ErrorCode GlobalErrorCode() override;

  private:
    friend class ExportListeners;
    struct State;
    std::unique_ptr<State> state_;
};

/// The export providers of all plug-ins for the time of one export: one made of each registration that the border knows
/// as an export provider, on an object of their own. They go with this object, which must not outlive the border.
class ExportListeners {
  public:
    explicit ExportListeners(Border& border);
    ~ExportListeners();
    ExportListeners(const ExportListeners&) = delete;
    ExportListeners& operator=(const ExportListeners&) = delete;

    bool isEmpty() const;
    /// Tells every provider one event, in the order of registration. What a provider throws passes through, and the
    /// providers after it are not told.
    void tell(int32_t messageCode, IDataBase* database, int32_t pageNum);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace desk
