#include <algorithm>
#include <filesystem>
#include <memory>
#include <tuple>
#include <utility>

#include "companion/barcode_source.h"
#include "companion/error.h"
#include "companion/mapping_rules.h"
#include "companion/output_places.h"
#include "companion/problem_keeper.h"
#include "companion/report.h"
#include "companion/rows_view.h"
#include "companion/run.h"
#include "companion/run_folder.h"
#include "companion/template_check.h"
#include "companion/whole_file.h"
#include "companion/workplace.h"
#include "merge/merge_job.h"
#include "placeholders/substitution.h"
#include "support/pasteboard.h"

namespace companion {
namespace {

void checkOutput(const std::string& output) {
    if (output.empty()) throw Error("the output has no name; give it a file name with --output.");
    std::error_code ignored;
    if (std::filesystem::is_directory(output, ignored))
        throw Error("the output \"" + output + "\" is a folder; name a file in it.");
}

void checkOutputs(const MergeOptions& options) {
    refuseOverwritingInputs(options, options.outputPath);
    refuseOverwritingInputs(options, options.reportPath);
    checkOutput(options.outputPath);
    if (isSamePlace(options.reportPath, options.outputPath))
        throw Error("the report and the output have the same name, \"" + options.outputPath + "\"; choose two.");
}

class Warnings {
  public:
    Warnings(RunWatcher& watcher, RunResult& result) : watcher_(watcher), result_(result) {}

    void add(const std::string& clause) {
        result_.warnings.push_back(clause);
        watcher_.warn(clause);
    }

    void addAll(const DataWarnings& warnings) {
        for (const DataWarning& warning : warnings.kept) add("data: " + warning.text);
        if (warnings.count > warnings.kept.size())
            add("data: " + std::to_string(warnings.count - warnings.kept.size()) + " more warnings of this kind");
    }

    /// What a merge should say although nobody asked for a check: all that would print something unwanted.
    void addAll(const TemplateCheck& check) {
        for (const UnansweredPlaceholder& one : check.unanswered)
            add("no column or rule answers the placeholder <<" + one.column + ">>");
        for (const std::string& story : check.unnumberedStories)
            add("story " + story +
                " has placeholders, but its first frame has no number: they are printed as they stand");
        for (auto& [style, record] : check.missingStyles)
            add("the template lacks the character style \"" + style + "\" of record " + std::to_string(record));
    }

    /// Of stories that walk through more records than the run moves on by.
    void addRepetitions(const TemplateFacts& facts, std::uint64_t offset) {
        for (const StoryFacts& story : facts.stories) {
            const std::uint64_t shown = story.recordsShown();
            if (shown < 2 || story.lastPlace() <= offset) continue;
            add("story " + story.name + " shows " + std::to_string(shown) + " records (keys that end in \"#\"), and " +
                "the run moves on by " + std::to_string(offset) +
                ": records are printed more than once; say another --offset");
        }
    }

  private:
    RunWatcher& watcher_;
    RunResult& result_;
};

/// A slot whose cell isn't there has neither a picture nor a code, and the merge would end at its first record.
void refuseMissingColumns(const TemplateCheck& check, const DataTable& table, const std::string& dataPath) {
    if (check.missingImageColumns.empty()) return;
    const auto& [column, frame] = check.missingImageColumns.front();
    const std::string lack =
        "frame " + frame + " takes its picture from the column \"" + column + "\", which \"" + dataPath + "\" lacks; ";
    if (table.columns().size() == 1)
        throw Error(lack + "the file was read as one column alone: separate its columns by comma, semicolon or tab, " +
                    "or say --delimiter.");
    throw Error(lack + "add the column, or name another one with \"vornaset number\".");
}

vornaset::Dictionary makeJob(std::shared_ptr<const DataTable> table, const MergePlan& plan, EmptyLines emptyLines,
                             const BarcodeSource& barcodes) {
    return vornaset::Dictionary::makeMutable({{u"rows", rowsView(std::move(table), plan.rows, plan.padding)},
                                              {u"startNr", plan.startNr},
                                              {u"offset", plan.offset},
                                              {u"rmvEmptyLines", emptyLines == EmptyLines::Remove ? 1 : 0},
                                              {u"barcode", vornaset::String::fromDamagedUTF8(barcodes.name())}});
}

std::string imagesFolder(const MergeOptions& options) {
    if (!options.imagesFolder.empty()) return options.imagesFolder;
    return std::filesystem::absolute(options.dataPath).parent_path().string();
}

/// A run leaves nothing behind for the next one in this process, however it ends.
class PasteboardOfRun {
  public:
    PasteboardOfRun() { vornaset::Pasteboard::setPrivateSpace(); }
    ~PasteboardOfRun() {
        vornaset::cleanupFrameProcessing();
        vornaset::Pasteboard::setPrivateSpace();
    }
    PasteboardOfRun(const PasteboardOfRun&) = delete;
    PasteboardOfRun& operator=(const PasteboardOfRun&) = delete;

    void post(const vornaset::Dictionary& job) {
        vornaset::Pasteboard::withName(vornaset::kMergePasteboard).setPropertyList(job, vornaset::kMergeJobType);
    }
};

/// `temporary` is emptied after each page set: what was made for it is in the PDF then. Null for none.
void exportSets(Workplace& place, const std::string& output, std::uint64_t pageSets, RunFolder* temporary,
                RunWatcher& watcher, RunResult& result) {
    desk::ExportRequest request;
    request.outputPath = output;
    request.pageSets = pageSets;
    request.progress = [&](const desk::ExportProgress& progress) {
        if (temporary && progress.pagesDone % place.facts().pages.size() == 0) temporary->clear();
        return watcher.goesOn(progress.pagesDone, progress.pagesTotal) ? desk::ExportAnswer::GoOn
                                                                       : desk::ExportAnswer::Stop;
    };
    request.isToStop = [&] { return watcher.isToStop(); };
    watcher.writingBegins();
    result.outcome =
        place.open().exportPdf(request) == desk::ExportOutcome::Finished ? RunOutcome::Finished : RunOutcome::Stopped;
    result.pageSets = pageSets;
    result.pages = pageSets * place.facts().pages.size();
    for (const ReplacedFont& font : place.facts().replacedFonts)
        result.replacedFonts.emplace_back(font.asked, font.used);
    result.missingCharacters = place.open().missingCharacters();
    Warnings warnings(watcher, result);
    for (const std::string& simplification : place.open().simplifications()) warnings.add(simplification);
}

/// What a run has about it.
struct Surroundings {
    RunFolder& temporary;
    const BarcodeSource& barcodes;
};

/// In the order of pages and records, whatever order frames were filled in.
void sortProblems(std::vector<ProblemPage>& problems) {
    std::stable_sort(problems.begin(), problems.end(), [](const ProblemPage& one, const ProblemPage& other) {
        return std::tie(one.page, one.record) < std::tie(other.page, other.record);
    });
}

void exportRecords(Workplace& place, const std::string& output, const MergePlan& plan, const vornaset::Dictionary& job,
                   const Surroundings& surroundings, RunWatcher& watcher, RunResult& result) {
    const BarcodeSource& barcodes = surroundings.barcodes;
    PasteboardOfRun pasteboard;
    ProblemKeeper keeper(place.facts(), plan.rows, result.problems,
                         [&](vornaset::ProblemKind kind, const std::string& path) {
                             return kind == vornaset::ProblemKind::ImportFailed ? place.open().lastPictureFailure()
                                                                                : barcodes.whyNone(path);
                         });
    pasteboard.post(job);
    try {
        exportSets(place, output, plan.pageSets, &surroundings.temporary, watcher, result);
    } catch (const desk::PlugInFailure& failure) {
        for (const std::string& known : {keeper.failure(), barcodes.failure()})
            if (!known.empty()) throw Error(known);
        throw Error("the template \"" + place.facts().path + "\", page " + std::to_string(failure.pageIndex + 1) +
                    " of the export: the merge failed: " + failure.what() + ".");
    }
    sortProblems(result.problems);
}

/// The PDF stands under its name by now.
void finishReport(WholeFile& report, const MergeOptions& options, const RunResult& result) {
    try {
        report.finish(reportText(options, result));
    } catch (const Error& error) {
        throw Error(std::string(error.what()) + " The output \"" + options.outputPath + "\" is there and whole.");
    }
}

RunResult merge(const MergeOptions& options, RunWatcher& watcher) {
    checkOutputs(options);

    RunResult result;
    Warnings warnings(watcher, result);
    auto table = std::make_shared<const DataTable>(readDataFile(options.dataPath, options.data));
    std::vector<MappingRule> rules;
    if (!options.rulesPath.empty()) rules = readRules(options.rulesPath);
    warnings.addAll(table->warnings());

    Workplace place(options.openTemplate);
    std::uint64_t lastPlace = 0;
    for (const StoryFacts& story : place.facts().stories) lastPlace = std::max(lastPlace, story.lastPlace());
    MergePlan plan = planMerge(table->rowCount(), place.facts().frameNumbers(), place.facts().pages.size(),
                               options.range, lastPlace);
    for (const std::string& warning : plan.warnings) warnings.add(warning);
    const TemplateCheck check = checkTemplate(place.facts(), *table, rules);
    refuseMissingColumns(check, *table, options.dataPath);
    warnings.addAll(check);
    warnings.addRepetitions(place.facts(), plan.offset);
    watcher.writingBegins();
    std::unique_ptr<WholeFile> report;
    if (!options.reportPath.empty()) report = std::make_unique<WholeFile>("the report", options.reportPath);

    vornaset::setupRules(ruleObjects(rules));
    result.records = plan.records;
    const BarcodeSource barcodes(options.barcodeTool, [&] { return watcher.isToStop(); });
    RunFolder temporary;
    const std::string output = std::filesystem::absolute(options.outputPath).string();
    {
        const WorkingFolder pictures(imagesFolder(options));
        exportRecords(place, output, plan, makeJob(std::move(table), plan, options.emptyLines, barcodes),
                      {temporary, barcodes}, watcher, result);
    }
    if (report && result.outcome == RunOutcome::Finished) finishReport(*report, options, result);
    return result;
}

}  // namespace

RunResult runMerge(const MergeOptions& options, RunWatcher& watcher) {
    return withOneKindOfError([&] { return merge(options, watcher); });
}

RunResult runExport(const TemplateOptions& options, const std::string& outputPath, RunWatcher& watcher) {
    return withOneKindOfError([&] {
        refuseOverwriting(outputPath, options.path, "the template");
        checkOutput(outputPath);
        RunResult result;
        Workplace place(options);
        PasteboardOfRun pasteboard;
        exportSets(place, outputPath, 1, nullptr, watcher, result);
        return result;
    });
}

CheckResult runCheck(const TemplateOptions& options, const std::string& dataPath, const DataOptions& data,
                     const std::string& rulesPath) {
    return withOneKindOfError([&] {
        DataTable table = readDataFile(dataPath, data);
        std::vector<MappingRule> rules;
        if (!rulesPath.empty()) rules = readRules(rulesPath);
        Workplace place(options);
        TemplateCheck check = checkTemplate(place.facts(), table, rules);
        CheckResult result{textOfCheck(check), check.isGood(), {}};
        for (const DataWarning& warning : table.warnings().kept) result.warnings.push_back("data: " + warning.text);
        return result;
    });
}

std::string runInfo(const TemplateOptions& options) {
    return withOneKindOfError([&] { return textOfFacts(Workplace(options).facts()); });
}

}  // namespace companion
