#include "companion/preview_run.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <optional>

#include "companion/error.h"
#include "companion/output_places.h"
#include "companion/run_folder.h"
#include "companion/whole_file.h"
#include "companion/workplace.h"
#include "support/processes.h"

namespace companion {
namespace {

namespace fs = std::filesystem;

/// A program by its name, where the user's search path has it.
std::optional<std::string> programNamed(const std::string& name) {
    const char* variable = std::getenv("PATH");
    const std::string path = variable ? variable : "/usr/local/bin:/usr/bin:/bin";
    for (std::size_t from = 0; from <= path.size();) {
        const std::size_t to = std::min(path.find(':', from), path.size());
        const fs::path program = fs::path(path.substr(from, to - from)) / name;
        std::error_code ignored;
        if (program.is_absolute() && fs::is_regular_file(program, ignored) && ::access(program.c_str(), X_OK) == 0)
            return program.string();
        from = to + 1;
    }
    return std::nullopt;
}

vornaset::Array texts(const std::vector<std::string>& arguments) {
    vornaset::Array array = vornaset::Array::makeMutable();
    for (const std::string& argument : arguments) array.add(vornaset::String::fromDamagedUTF8(argument));
    return array;
}

/// The page as PNG, by the first program that the machine has. Throws Stopped when the run is to end meanwhile.
std::string drawn(const std::string& pdf, std::uint64_t page, int pixelsPerInch, const RunWatcher& watcher) {
    const std::string number = std::to_string(page), resolution = std::to_string(pixelsPerInch);
    const struct {
        const char* name;
        std::vector<std::string> arguments;
    } ways[] = {{"pdftoppm", {"-png", "-singlefile", "-r", resolution, "-f", number, "-l", number, pdf}},
                {"mutool", {"draw", "-q", "-F", "png", "-r", resolution, "-o", "-", pdf, number}}};
    for (const auto& way : ways) {
        const std::optional<std::string> program = programNamed(way.name);
        if (!program) continue;
        const vornaset::Data image =
            vornaset::dataWithShellScript(vornaset::String::fromDamagedUTF8(*program), texts(way.arguments),
                                          [&](std::size_t) { return !watcher.isToStop(); });
        if (watcher.isToStop()) throw Stopped();
        std::string bytes(reinterpret_cast<const char*>(image.bytes()), image.length());
        if (!bytes.starts_with("\x89PNG"))
            throw Error("the page can't be drawn: " + *program + " gave no picture; is there room for it?");
        return bytes;
    }
    throw Error(
        "this machine has no program that draws PDF pages; install pdftoppm (Debian package poppler-utils) or mutool "
        "(mupdf-tools).");
}

/// The temporary folder isn't the user's choice of a place, so a sentence about it must say what can be chosen.
RunResult mergeInto(const RunFolder& folder, const MergeOptions& options, RunWatcher& watcher) {
    try {
        return runMerge(options, watcher);
    } catch (const Error& error) {
        if (std::string(error.what()).find(folder.path()) == std::string::npos) throw;
        throw Error("the page can't be written into the temporary folder \"" +
                    fs::path(folder.path()).parent_path().string() +
                    "\"; make room there or set TMPDIR to another folder.");
    }
}

/// The first page with a frame that shows the record at this place of the page set.
std::uint64_t pageOfPlace(const TemplateFacts& facts, std::int64_t number) {
    for (const FrameFacts& frame : facts.frames)
        if (frame.number == number && frame.page > 0) return static_cast<std::uint64_t>(frame.page);
    return 1;
}

}  // namespace

std::string runPreview(const PreviewOptions& options, RunWatcher& watcher) {
    return withOneKindOfError([&] {
        refuseOverwritingInputs(options.merge, options.imagePath);
        std::uint64_t offset = 1, page = options.page, pages = 0;
        MergeOptions merge = options.merge;
        {
            const Workplace place(merge.openTemplate);
            const std::vector<std::int64_t> numbers = place.facts().frameNumbers();
            for (std::int64_t number : numbers)
                offset = std::max(offset, static_cast<std::uint64_t>(std::max<std::int64_t>(number, 1)));
            if (merge.range.offset) offset = *merge.range.offset;
            pages = place.facts().pages.size();
            const auto placeInSet = static_cast<std::int64_t>((options.record - 1) % offset) + 1;
            if (page == 0) page = pageOfPlace(place.facts(), placeInSet);
        }
        if (page > pages)
            throw Error("the template has " + std::to_string(pages) + (pages == 1 ? " page" : " pages") +
                        ", so there is no page " + std::to_string(page) + " for --page.");
        watcher.writingBegins();
        WholeFile image("the picture", options.imagePath);
        RunFolder folder;
        merge.outputPath = folder.path() + "/page.pdf";
        merge.reportPath.clear();
        merge.range.start = (options.record - 1) / offset * offset + 1;
        merge.range.count = offset;
        merge.range.shown = options.record;
        const RunResult result = mergeInto(folder, merge, watcher);
        if (result.outcome == RunOutcome::Stopped) throw Stopped();
        image.finish(drawn(merge.outputPath, page, options.pixelsPerInch, watcher));
        return options.imagePath + ": record " + std::to_string(options.record) + ", page " + std::to_string(page) +
               " of its page set\n";
    });
}

}  // namespace companion
