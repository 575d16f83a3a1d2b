#pragma once
// A host in front of the desk's border: what the plug-in asks of pictures, new items, spreads and files is written down
// and answered as a test wants it, all else goes on to the border. References are counted here too.

#include <filesystem>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "desk/border/border.h"
#include "desk/model/document.h"
#include "host/api/host.h"

namespace recorded {

/// An object with these interfaces that counts its references in one place.
template <class... Interfaces>
class Object : public Interfaces... {
  public:
    explicit Object(int64_t& references) : references_(references) {}
    virtual ~Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    IPMUnknown* QueryInterface(PMIID interfaceId) override {
        IPMUnknown* found = nullptr;
        if (!withheld.contains(interfaceId)) {
            (void)((interfaceId == Interfaces::kDefaultIID && (found = static_cast<Interfaces*>(this))) || ...);
        }
        if (found) ++references_;
        return found;
    }
    void AddRef() override { ++references_; }
    void Release() override { --references_; }

    std::set<PMIID> withheld;  ///< interfaces that the object doesn't have

  private:
    int64_t& references_;
};

inline std::string text(const UIDList& list) {
    std::string told;
    for (int32_t index = 0; index < list.Length(); ++index) told += " " + std::to_string(list[index].Get());
    return told;
}

inline std::string text(double number) {
    std::string digits = std::to_string(number);
    digits.erase(digits.find_last_not_of('0') + 1);
    if (digits.back() == '.') digits.pop_back();
    return digits;
}

inline std::string text(const PMRect& r) {
    return text(r.left) + " " + text(r.top) + " " + text(r.right) + " " + text(r.bottom);
}

class Command : public Object<IPMCommand, IImportResourceCmdData, IOpenFileCmdData, INewSpreadCmdData,
                              INewSpreadReferenceCmdData, INewSpreadOptionCmdData> {
  public:
    using Object::Object;

    void SetItemList(const UIDList& list) override { items = list; }
    const UIDList& GetItemList() override { return items; }
    const UIDList& GetResultList() override { return results; }
    void Set(IDataBase* into, const URI& from, int32_t a, int32_t b, int32_t c, int32_t d, int32_t e) override {
        database = into;
        file = from.GetComponent(URI::Component::Path);
        data += from.GetComponent(URI::Component::Scheme) + " " + numbers({a, b, c, d, e});
    }
    void Set(const IDFile& from, int32_t a, int32_t b, int32_t first, int32_t second) override {
        file = from.GetPath();
        data += numbers({a, b, first, second});
    }
    void Set(const UIDRef& document, int32_t count, int32_t position, int32_t a, int32_t pages, int32_t b, int32_t c,
             int32_t d, const NewPageRecord& page) override {
        data += "document " + std::to_string(document.GetUID().Get()) + ": " +
                numbers({count, position, a, pages, b, c, d}) + " page " + text(page.width) + " " + text(page.height) +
                " " + text(page.scale.x) + " " + text(page.scale.y) + " " + std::to_string(page.option);
    }
    void Set(const UIDRef& reference, int32_t a) override {
        data += "; reference " + std::to_string(reference.GetUID().Get()) + " " + numbers({a});
    }
    void Set(int32_t a) override { data += "; option " + numbers({a}); }

    UIDList items;
    UIDList results;
    IDataBase* database = nullptr;
    std::string file;
    std::string data;
    std::function<ErrorCode(Command&)> process;

  private:
    static std::string numbers(const std::vector<int32_t>& all) {
        std::string told;
        for (int32_t number : all) told += (told.empty() ? "" : " ") + std::to_string(number);
        return told;
    }
};

/// What the session remembers.
class Workspace : public Object<IPDFPlacePrefs, IPDFExportViewPrefs> {
  public:
    Workspace(int64_t& references, std::vector<std::string>& calls) : Object(references), calls_(calls) {}

    int32_t GetPage() override { return page; }
    void SetPage(int32_t number) override {
        calls_.push_back("page " + std::to_string(number));
        page = number;
    }
    bool GetShowAfterExport() override { return showAfterExport; }
    void SetShowAfterExport(bool show) override { showAfterExport = show; }

    int32_t page = 1;
    bool showAfterExport = true;

  private:
    std::vector<std::string>& calls_;
};

class HostSession : public Object<IExecutionContextSession> {
  public:
    HostSession(int64_t& references, IHost& real, Workspace& workspace)
        : Object(references), real_(real), workspace_(workspace) {}

    IApplication* QueryApplication() override { return real_.Session()->QueryApplication(); }
    IPMUnknown* QueryWorkspace() override {
        if (!hasWorkspace) return nullptr;
        workspace_.AddRef();
        return static_cast<IPDFPlacePrefs*>(&workspace_);
    }

    bool hasWorkspace = true;

  private:
    IHost& real_;
    Workspace& workspace_;
};

class FileHandler : public Object<IDocumentFileHandler> {
  public:
    FileHandler(int64_t& references, std::vector<std::string>& calls) : Object(references), calls_(calls) {}

    bool CanSave(const UIDRef&) override { return agrees; }
    void Save(const UIDRef&, K2::UIFlags flags) override { tell("save", {}, flags, 0, 0); }
    bool CanSaveAs(const UIDRef&) override { return agrees; }
    void SaveAs(const UIDRef&, const IDFile& file, K2::UIFlags flags, int32_t a, int32_t b) override {
        tell("save as", file, flags, a, b);
    }
    bool CanSaveACopy(const UIDRef&) override { return agrees; }
    void SaveACopy(const UIDRef&, const IDFile& file, K2::UIFlags flags, int32_t a, int32_t b) override {
        tell("save a copy", file, flags, a, b);
    }
    void Close(const UIDRef&, K2::UIFlags flags, int32_t a, int32_t b) override { tell("close", {}, flags, a, b); }

    bool agrees = true;

  private:
    void tell(const char* action, const IDFile& file, K2::UIFlags flags, int32_t a, int32_t b) {
        const std::string old = std::filesystem::exists(file.GetPath()) ? " (over the old file)" : "";
        calls_.push_back(std::string(action) + " " + std::filesystem::path(file.GetPath()).filename().string() + " " +
                         std::to_string(flags) + " " + std::to_string(a) + " " + std::to_string(b) + old);
    }

    std::vector<std::string>& calls_;
};

class Window : public Object<ILayoutWindow> {
  public:
    Window(int64_t& references, std::vector<std::string>& calls) : Object(references), calls_(calls) {}
    void BringToFront() override { calls_.push_back("window to the front"); }

  private:
    std::vector<std::string>& calls_;
};

class Host final
    : public IHost,
      private Object<IURIUtils, IFrameContentUtils, IContentFitUtils, IGeometryUtils, ITransformUtils, ILayerUtils,
                     IPageItemFactoryUtils, IGraphicAttributeUtils, IDocumentUtils, IWindowUtils, ILayoutUtils> {
  public:
    Host(desk::Border& real, desk::Document& document)
        : Object(references),
          workspace(references, calls),
          session(references, real, workspace),
          fileHandler(references, calls),
          window(references, calls),
          real_(real),
          document_(document) {}

    std::vector<std::string> calls;      ///< what was asked, in order
    std::vector<std::string> files;      ///< what was imported, in order
    std::set<PMIID> missingServices;     ///< that this host doesn't have
    std::set<ClassID> missingCommands;   ///< that this host doesn't have
    std::set<PMIID> missingCommandData;  ///< that this host's commands don't have
    std::set<std::string> unimportable;  ///< paths; a folder and what isn't there are so in any case
    int commandsMade = 0;                ///< of whatever class, recorded or not
    ErrorCode commandResult = 0;         ///< of the commands recorded here
    ErrorCode putResult = 0;             ///< of putting an item into a frame
    ErrorCode serviceResult = 0;         ///< of fits and resizing
    ErrorCode globalError = 0;           ///< after saving
    desk::Layer* activeLayer = nullptr;  ///< null: none
    bool createsRectangles = true;
    bool hasFileHandler = true;
    bool hasWindows = true;
    desk::Uid openedDocument = 0;  ///< what the open commands give; 0: they fail
    desk::Uid createdDocument = 0;
    int64_t references = 0;
    Workspace workspace;
    HostSession session;
    FileHandler fileHandler;
    Window window;

    /// The calls, and none from here on.
    std::vector<std::string> takeCalls() { return std::exchange(calls, {}); }

    // IHost
    IExecutionContextSession* Session() override { return &session; }
    IPMUnknown* QueryUtils(PMIID service) override {
        if (missingServices.contains(service)) return nullptr;
        IPMUnknown* own = Object::QueryInterface(service);
        return own ? own : real_.QueryUtils(service);
    }
    IPMCommand* CreateCommand(ClassID commandClass) override {
        ++commandsMade;
        if (missingCommands.contains(commandClass)) return nullptr;
        const char* name = nameOf(commandClass);
        if (!name) return real_.CreateCommand(commandClass);
        calls.push_back(std::string("make ") + name);
        Command& made = *commands_.emplace_back(std::make_unique<Command>(references));
        made.withheld = missingCommandData;
        made.process = [this, name, commandClass](Command& command) { return process(command, commandClass, name); };
        made.AddRef();
        return &made;
    }
    ErrorCode ProcessCommand(IPMCommand* command) override {
        for (const auto& own : commands_) {
            if (own.get() == command) return own->process(*own);
        }
        return real_.ProcessCommand(command);
    }
    bool IsValidDataBase(IDataBase* database) override { return real_.IsValidDataBase(database); }
    ErrorCode GlobalErrorCode() override { return globalError; }

  private:
    static const char* nameOf(ClassID commandClass) {
        if (commandClass == kImportResourceCmdBoss) return "import";
        if (commandClass == kNewSpreadCmdBoss) return "new spread";
        if (commandClass == kDeleteSpreadCmdBoss) return "delete spread";
        if (commandClass == kSetNonPrintingCmdBoss) return "non-printing";
        if (commandClass == kOpenDocumentCmdBoss) return "open";
        if (commandClass == kOpenLayoutWindowCmdBoss) return "open window";
        return nullptr;
    }

    ErrorCode process(Command& command, ClassID commandClass, const char* name) {
        calls.push_back(name + (command.items.IsEmpty() ? "" : text(command.items)) +
                        (command.data.empty() ? "" : " (" + command.data + ")"));
        if (commandResult != 0) return commandResult;
        IDataBase* database = real_.dataBaseOf(document_);
        if (commandClass == kImportResourceCmdBoss) {
            files.push_back(command.file);
            if (!std::filesystem::is_regular_file(command.file) || unimportable.contains(command.file)) return 7;
            desk::PageItem& item = document_.addItem(desk::ItemKind::Graphic);
            item.path = desk::rectanglePath({0, 0, 20, 10});
            item.name = command.file;
            command.results = UIDList(command.database, UID(item.uid));
        }
        if (commandClass == kOpenDocumentCmdBoss) {
            files.push_back(command.file);
            if (openedDocument == 0) return 5;
            command.results = UIDList(database, UID(openedDocument));
        }
        return 0;
    }

    // Services
    URI IDFileToURI(const IDFile& file) override { return URI("file", file.GetPath()); }
    ErrorCode PutItemInFrame(IDataBase*, UID item, UID frame, int32_t last) override {
        calls.push_back("put " + std::to_string(item.Get()) + " into " + std::to_string(frame.Get()) + " " +
                        std::to_string(last));
        if (putResult != 0) return putResult;
        document_.placeInside(*document_.item(item.Get()), *document_.item(frame.Get()));
        return 0;
    }
    ErrorCode fit(const char* how, const UIDList& items) {
        calls.push_back(how + text(items));
        return serviceResult;
    }
    ErrorCode FitFrameToContent(const UIDList& items) override { return fit("fit frame to content", items); }
    ErrorCode FitContentToFrame(const UIDList& items) override { return fit("fit content to frame", items); }
    ErrorCode FitContentProportionally(const UIDList& items) override { return fit("fit proportionally", items); }
    ErrorCode CenterContent(const UIDList& items) override { return fit("centre", items); }
    ErrorCode FillFrameProportionally(const UIDList& items) override { return fit("fill proportionally", items); }
    ErrorCode Resize(const UIDList& items, const PMMatrix& matrix, bool pathBounds,
                     const K2Vector<PMRect>& rectangles) override {
        std::string told = (pathBounds ? "resize path" : "resize stroke") + text(items) + ":";
        for (const PMRect& rectangle : rectangles) told += " " + text(rectangle);
        if (matrix != PMMatrix()) told += " under a matrix";
        return calls.push_back(told), serviceResult;
    }
    ErrorCode TransformItems(const UIDList& items, const PMMatrix& space, const TransformReferencePoint& around,
                             const PMMatrix& m, int32_t mode) override {
        calls.push_back("transform" + text(items) + " by " + text(m.a) + " " + text(m.b) + " " + text(m.c) + " " +
                        text(m.d) + " " + text(m.tx) + " " + text(m.ty) + " mode " + std::to_string(mode) +
                        (space == PMMatrix() && around.point == PMPoint() ? "" : " elsewhere"));
        return serviceResult;
    }
    IDocumentLayer* QueryActiveLayer(IDocument* of) override {
        if (!activeLayer) return nullptr;
        return static_cast<IDocumentLayer*>(::GetDataBase(of)->Instantiate(UID(activeLayer->uid), IID_IDOCUMENTLAYER));
    }
    UIDRef CreateRectangle(const UIDRef& parent, const PMRect& rectangle, int32_t type, int32_t a,
                           const PMMatrix& matrix) override {
        calls.push_back("rectangle under " + std::to_string(parent.GetUID().Get()) + ": " + text(rectangle) + " " +
                        std::to_string(type) + " " + std::to_string(a) +
                        (matrix == PMMatrix() ? "" : " under a matrix"));
        const desk::SpreadLayer* layer = document_.spreadLayer(parent.GetUID().Get());
        if (!createsRectangles || !layer) return UIDRef::gNull;
        desk::PageItem& made = document_.addItem(desk::ItemKind::Rectangle);
        made.path = desk::rectanglePath({rectangle.left, rectangle.top, rectangle.right, rectangle.bottom});
        document_.placeOnSpread(made, *document_.spread(layer->spread), *document_.layer(layer->layer));
        return UIDRef(parent.GetDataBase(), UID(made.uid));
    }
    IPMCommand* QueryNonPrintingCommand(bool nonPrinting, const UIDList& items, int32_t a, int32_t b) override {
        calls.push_back(std::string("ask for ") + (nonPrinting ? "non-printing" : "printing") + text(items) + " " +
                        std::to_string(a) + " " + std::to_string(b));
        IPMCommand* command = CreateCommand(kSetNonPrintingCmdBoss);
        if (command) command->SetItemList(items);
        return command;
    }
    ErrorCode CreateDocument(UIDRef& created, const IDFile* file, int32_t a, int32_t b) override {
        calls.push_back(std::string("new document ") + (file ? file->GetPath() : "without a file ") +
                        std::to_string(a) + " " + std::to_string(b));
        if (createdDocument == 0) return 3;
        created = UIDRef(real_.dataBaseOf(document_), UID(createdDocument));
        return 0;
    }
    ErrorCode OpenDocument(UIDRef& opened, const IDFile& file, int32_t a, int32_t b, int32_t c, int32_t sixth,
                           int32_t seventh) override {
        files.push_back(file.GetPath());
        calls.push_back("documents: open " + std::to_string(a) + " " + std::to_string(b) + " " + std::to_string(c) +
                        " " + std::to_string(sixth) + " " + std::to_string(seventh));
        if (openedDocument == 0) return 5;
        opened = UIDRef(real_.dataBaseOf(document_), UID(openedDocument));
        return 0;
    }
    void CloseDocument(const UIDRef& document, int32_t a) override {
        calls.push_back("documents: close " + std::to_string(document.GetUID().Get()) + " " + std::to_string(a));
    }
    IDocumentFileHandler* QueryFileHandler(const UIDRef& document) override {
        if (!hasFileHandler || !document.GetDataBase()) return nullptr;
        fileHandler.AddRef();
        return &fileHandler;
    }
    ILayoutWindow* QueryLayoutWindow(IDataBase* database) override {
        if (!hasWindows || !database) return nullptr;
        window.AddRef();
        return &window;
    }
    IDocument* GetFrontDocument() override {
        InterfacePtr<ILayoutUtils> layout(Adopt::Reference,
                                          static_cast<ILayoutUtils*>(real_.QueryUtils(IID_ILAYOUTUTILS)));
        return layout->GetFrontDocument();
    }
    void InvalidateViews(IDocument* document) override {
        calls.push_back("redraw " + std::to_string(::GetUID(document).Get()));
    }

    desk::Border& real_;
    desk::Document& document_;
    std::vector<std::unique_ptr<Command>> commands_;
};

/// Any fixture of the host with a recorded host in front. The recorded references must balance too.
template <class Fixture>
class With : public Fixture {
  protected:
    void SetUp() override {
        Fixture::SetUp();
        host = std::make_unique<Host>(this->border, this->document);
        former_ = InstallHost(host.get());
    }
    void TearDown() override {
        EXPECT_EQ(host->references, 0) << "references to the recorded host were left behind or kept";
        InstallHost(former_);
        Fixture::TearDown();
    }

    std::unique_ptr<Host> host;

  private:
    IHost* former_ = nullptr;
};

}  // namespace recorded
