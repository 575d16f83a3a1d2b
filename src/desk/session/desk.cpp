#include "desk/desk.h"

#include <algorithm>
#include <filesystem>
#include <set>

#include "desk/border/border.h"
#include "desk/border/document_files.h"
#include "desk/border/utf8.h"
#include "desk/fonts/font_library.h"
#include "desk/idml/new_document.h"
#include "desk/idml/reader.h"
#include "desk/idml/writer.h"
#include "desk/output/output_file.h"
#include "desk/pictures/picture_library.h"
#include "desk/session/export_run.h"
#include "desk/session/font_check.h"
#include "desk/session/frame_list.h"
#include "desk/session/module.h"
#include "desk/text/composer.h"
#include "desk/text/unicode.h"

namespace desk {
namespace {

constexpr const char* documentFontsFolder = "Document fonts";

/// Stands behind the border for the time of the desk.
class InstalledHost {
  public:
    explicit InstalledHost(IHost& host) : former_(InstallHost(&host)) {}
    ~InstalledHost() { InstallHost(former_); }
    InstalledHost(const InstalledHost&) = delete;
    InstalledHost& operator=(const InstalledHost&) = delete;

  private:
    IHost* former_;
};

/// Answers the border's questions about text by composing.
class ComposedLayout final : public TextLayoutService {
  public:
    explicit ComposedLayout(Composer& composer) : composer_(composer) {}

    bool isOverset(Uid story) override { return composer_.compose(story).overset; }
    TextRange textOfFrame(Uid frame) override {
        const std::shared_ptr<const FrameLayout> layout = composer_.frameLayout(frame);
        return layout ? TextRange{layout->textStart, layout->textLength} : TextRange{};
    }

  private:
    Composer& composer_;
};

}  // namespace

/// Also opens and saves documents for plug-ins.
struct Desk::State final : DocumentFiles {
    Border border;
    InstalledHost installed{border};
    FontLibrary fonts;
    std::set<std::string> modules;
    std::vector<Template*> all;  ///< every open template
    int namelessDocuments = 0;
    std::vector<std::unique_ptr<Template>> openedByPlugIns;  ///< last, since they need everything above

    State() { border.useFiles(this); }
    ~State() { openedByPlugIns.clear(); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    static std::unique_ptr<Template> show(std::shared_ptr<State> desk, std::unique_ptr<Document> document);
    Document* keep(std::unique_ptr<Document> document);

    // DocumentFiles
    Document* open(const std::string& path) override;
    Document* create() override;
    bool write(const Document& document, const std::string& path) override;
    void close(Document& document) override;
};

struct Template::State {
    std::shared_ptr<Desk::State> desk;
    std::unique_ptr<Document> document;
    std::unique_ptr<Composer> composer;
    std::unique_ptr<ComposedLayout> layout;
    IDataBase* dataBase = nullptr;
    std::vector<std::string> simplifications;

    ~State() { leave(); }
    void leave() {
        if (dataBase) desk->border.close(*document);
        dataBase = nullptr;
    }
};

namespace {

/// A file that was there before keeps its permissions.
void writeDocument(const Document& document, const std::string& path) {
    const std::string bytes = packageOf(document);
    std::error_code ignored;
    const std::filesystem::file_status former = std::filesystem::status(path, ignored);
    OutputFile file(path);
    file.write(bytes.data(), bytes.size());
    file.commit();
    if (std::filesystem::is_regular_file(former)) std::filesystem::permissions(path, former.permissions(), ignored);
}

}  // namespace

std::unique_ptr<Template> Desk::State::show(std::shared_ptr<State> desk, std::unique_ptr<Document> document) {
    auto opened = std::unique_ptr<Template>(new Template());
    Template::State& state = *opened->state_;
    state.desk = std::move(desk);
    State& shared = *state.desk;
    state.document = std::move(document);
    // The working folder may change while the document is open.
    std::string& path = state.document->path;
    if (!path.empty()) path = std::filesystem::absolute(path).string();
    loadPlacedPictures(*state.document, shared.border.pictures());
    std::error_code ignored;
    const std::filesystem::path beside = std::filesystem::path(path).parent_path() / documentFontsFolder;
    if (!path.empty() && std::filesystem::is_directory(beside, ignored)) shared.fonts.addFolder(beside.string());
    state.composer = std::make_unique<Composer>(*state.document, shared.fonts);
    state.layout = std::make_unique<ComposedLayout>(*state.composer);
    state.dataBase = shared.border.open(*state.document, *state.layout);
    shared.all.push_back(opened.get());
    return opened;
}

/// The desk can't own itself: a template that it keeps refers to it without a share.
Document* Desk::State::keep(std::unique_ptr<Document> document) {
    openedByPlugIns.push_back(show(std::shared_ptr<State>(std::shared_ptr<void>(), this), std::move(document)));
    return openedByPlugIns.back()->state_->document.get();
}

Document* Desk::State::open(const std::string& path) {
    for (Template* known : all) {
        Document& document = *known->state_->document;
        if (!known->state_->dataBase || document.path != path) continue;
        border.bringToFront(document);
        return &document;
    }
    try {
        return keep(readDocument(path));
    } catch (const InputError&) {
        return nullptr;
    }
}

Document* Desk::State::create() {
    try {
        return keep(readDocument(newDocumentPackage(), "Untitled-" + std::to_string(++namelessDocuments)));
    } catch (const std::runtime_error&) {
        return nullptr;
    }
}

bool Desk::State::write(const Document& document, const std::string& path) {
    try {
        writeDocument(document, path);
        return true;
    } catch (const std::runtime_error&) {
        return false;
    }
}

void Desk::State::close(Document& document) {
    const auto kept = std::find_if(openedByPlugIns.begin(), openedByPlugIns.end(),
                                   [&](const auto& opened) { return opened->state_->document.get() == &document; });
    if (kept != openedByPlugIns.end()) {
        openedByPlugIns.erase(kept);
        return;
    }
    for (Template* known : all)
        if (known->state_->document.get() == &document) known->state_->leave();
}

Desk::Desk() : state_(std::make_shared<State>()) {}
Desk::~Desk() = default;

void Desk::loadPlugIn(const std::string& modulePath) {
    const std::string path = std::filesystem::weakly_canonical(modulePath).string();
    if (!state_->modules.insert(path).second) return;
    loadModule(path, static_cast<uint32_t>(state_->modules.size()));
}

void Desk::addFontFolder(const std::string& folder) {
    state_->fonts.addFolder(folder);
}

int64_t Desk::outstandingReferences() const {
    return state_->border.outstandingReferences();
}

std::unique_ptr<Template> Desk::open(const std::string& path) {
    return State::show(state_, readDocument(path));
}

Template::Template() : state_(std::make_unique<State>()) {}
Template::~Template() {
    if (state_->desk) std::erase(state_->desk->all, this);
}

Document& Template::document() {
    return *state_->document;
}
const Document& Template::document() const {
    return *state_->document;
}
IDataBase* Template::dataBase() {
    return state_->dataBase;
}

void Template::save(const std::string& path) {
    writeDocument(*state_->document, path);
}

ExportOutcome Template::exportPdf(const ExportRequest& request) {
    if (!state_->dataBase) throw InputError(state_->document->name + " was closed by a plug-in: open it again.");
    state_->simplifications.clear();
    return runExport(state_->desk->border, state_->dataBase, *state_->document, *state_->composer, state_->desk->fonts,
                     request, state_->simplifications);
}

const std::string& Template::lastPictureFailure() const {
    return state_->desk->border.pictures().lastFailure();
}

const std::vector<std::string>& Template::simplifications() const {
    return state_->simplifications;
}

std::vector<FrameInfo> Template::frames() const {
    return listFrames(*state_->document);
}

bool Template::isOverset(Uid story) {
    return state_->composer->compose(story).overset;
}

std::vector<MissingFont> Template::missingFonts() {
    return desk::missingFonts(*state_->document, state_->desk->fonts);
}

std::string Template::missingCharacters() const {
    std::u16string text;
    for (const char32_t character : state_->composer->missingCharacters()) unicode::append(text, character);
    return utf8Of(text);
}

}  // namespace desk
