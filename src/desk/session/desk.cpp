#include "desk/desk.h"

#include <filesystem>
#include <set>

#include "desk/border/border.h"
#include "desk/border/utf8.h"
#include "desk/fonts/font_library.h"
#include "desk/idml/reader.h"
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

struct Desk::State {
    Border border;
    InstalledHost installed{border};
    FontLibrary fonts;
    PictureLibrary pictures;
    std::set<std::string> modules;
};

struct Template::State {
    std::shared_ptr<Desk::State> desk;
    std::unique_ptr<Document> document;
    std::unique_ptr<Composer> composer;
    std::unique_ptr<ComposedLayout> layout;
    IDataBase* dataBase = nullptr;
    std::vector<std::string> simplifications;

    ~State() {
        if (dataBase) desk->border.close(*document);
    }
};

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
    auto opened = std::unique_ptr<Template>(new Template());
    Template::State& state = *opened->state_;
    state.desk = state_;
    state.document = readDocument(path);
    loadPlacedPictures(*state.document, state_->pictures);
    std::error_code ignored;
    const std::filesystem::path beside = std::filesystem::path(path).parent_path() / documentFontsFolder;
    if (std::filesystem::is_directory(beside, ignored)) state_->fonts.addFolder(beside.string());
    state.composer = std::make_unique<Composer>(*state.document, state_->fonts);
    state.layout = std::make_unique<ComposedLayout>(*state.composer);
    state.dataBase = state_->border.open(*state.document, *state.layout);
    return opened;
}

Template::Template() : state_(std::make_unique<State>()) {}
Template::~Template() = default;

Document& Template::document() {
    return *state_->document;
}
const Document& Template::document() const {
    return *state_->document;
}
IDataBase* Template::dataBase() {
    return state_->dataBase;
}

ExportOutcome Template::exportPdf(const ExportRequest& request) {
    state_->simplifications.clear();
    return runExport(state_->desk->border, state_->dataBase, *state_->document, *state_->composer, state_->desk->fonts,
                     request, state_->simplifications);
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
