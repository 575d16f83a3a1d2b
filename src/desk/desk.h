#pragma once
// The desk as a whole: a small page-layout host. Opens templates, takes in plug-ins, exports PDF.
//
// One thread; one open template at a time is the front document.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "desk/model/document.h"

class IDataBase;

namespace desk {

/// How far an export is; told after every page.
struct ExportProgress {
    uint64_t pagesDone = 0;
    uint64_t pagesTotal = 0;
};

/// Asked after every page; Stop ends the export without a file.
enum class ExportAnswer { GoOn, Stop };

struct ExportRequest {
    std::string outputPath;
    /// How many passes over the template's pages; 1 exports the document as it stands.
    uint64_t pageSets = 1;
    int compressionLevel = 6;
    std::string title;
    std::function<ExportAnswer(const ExportProgress&)> progress;  ///< may be empty
    /// Asked while the desk waits for a program that converts a picture: whether Stop will be the next answer of
    /// `progress`. Then the program is killed, and an export that breaks off for lack of the picture counts as stopped.
    /// May be empty.
    std::function<bool()> isToStop;
};

enum class ExportOutcome { Finished, Stopped };

/// A plug-in failed during an export: the export is over and there is no file. what() is the plug-in's own sentence.
class PlugInFailure : public std::runtime_error {
  public:
    PlugInFailure(const std::string& what, int64_t page) : std::runtime_error(what), pageIndex(page) {}
    int64_t pageIndex;  ///< of the export, from 0; -1 outside a page event
};

/// A frame as a person asks for it.
struct FrameInfo {
    Uid uid = 0;
    std::string self;  ///< id in the template
    std::string name;  ///< as a person named it; may be empty
    int page = 0;      ///< from 1; 0 for a frame on no page
    Rect bounds;       ///< points from the page's left top corner
    ItemKind kind = ItemKind::Rectangle;
    Uid story = 0;
};

struct MissingFont {
    std::string family, style, usedFamily, usedStyle;
    bool operator==(const MissingFont&) const = default;
};

class Template;

class Desk {
  public:
    Desk();
    ~Desk();
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    /// Loads a plug-in module, asks it for its plug-in object and lets it register. Throws InputError when the module
    /// can't be loaded or offers no plug-in. Loading the same module again is nothing.
    void loadPlugIn(const std::string& modulePath);

    /// Adds fonts before opening a template. Throws InputError.
    void addFontFolder(const std::string& folder);

    /// Opens a template; it becomes the front document. A folder "Document fonts" beside it is used by itself.
    /// Throws InputError: one sentence that says what, where and what to do.
    std::unique_ptr<Template> open(const std::string& path);

    /// References of the border that are out now; 0 between calls of a plug-in that keeps the rules.
    int64_t outstandingReferences() const;

  private:
    friend class Template;
    struct State;
    std::shared_ptr<State> state_;
};

/// An open template. Closes with the object.
class Template {
  public:
    ~Template();

    Document& document();
    const Document& document() const;
    /// The document as plug-ins name it: its database and the UID of its root object.
    IDataBase* dataBase();

    /// Runs an export: event 0, then for each page of each pass event 1 and the page, then event 4. The document stays
    /// as the plug-ins left it. Throws InputError (output can't be written), PlugInFailure.
    ExportOutcome exportPdf(const ExportRequest& request);

    /// What the last finished export drew plainer than the template asks: clauses without a full stop.
    const std::vector<std::string>& simplifications() const;

    /// Why the last picture that couldn't be imported was refused: a sentence or two; empty when all could.
    const std::string& lastPictureFailure() const;

    /// Writes the document as IDML; the file appears whole or not at all. What this system doesn't understand is kept.
    /// The template stays the one that was opened. Throws InputError.
    void save(const std::string& path);

    /// Every page item with a frame of its own, in page order, groups entered.
    std::vector<FrameInfo> frames() const;

    /// True when the story, as it stands, doesn't fit its frames.
    bool isOverset(Uid story);

    /// Fonts that the text of the document asks for and the machine lacks, with what stands in. Looks at every style
    /// range of every story.
    std::vector<MissingFont> missingFonts();

    /// Characters that no font of the machine has, met by composition so far, in UTF-8.
    std::string missingCharacters() const;

  private:
    friend class Desk;
    Template();
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace desk
