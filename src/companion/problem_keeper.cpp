#include "companion/problem_keeper.h"

#include <utility>

#include "support/paths.h"

namespace companion {

namespace {

/// What a person knows: of a file that the run made for itself the name, of the run's folder nothing.
std::string knownPath(const std::string& path) {
    const std::string folder = vornaset::temporaryPath(nullptr, nullptr).utf8();
    if (path == folder) return {};
    return path.starts_with(folder + "/") ? path.substr(folder.size() + 1) : path;
}

}  // namespace

ProblemKeeper::ProblemKeeper(const TemplateFacts& facts, std::uint64_t realRows, std::vector<ProblemPage>& problems,
                             WhyNoPicture whyNoPicture)
    : facts_(facts),
      realRows_(realRows),
      problems_(problems),
      whyNoPicture_(std::move(whyNoPicture)),
      former_(vornaset::setMergeObserver(this)) {}

ProblemKeeper::~ProblemKeeper() {
    vornaset::setMergeObserver(former_);
}

void ProblemKeeper::problem(vornaset::ProblemKind kind, const vornaset::MergePlace& place) {
    bool isRecord = place.row >= 0 && static_cast<std::uint64_t>(place.row) < realRows_;
    if (!isRecord) return;
    ProblemPage problem;
    problem.kind = vornaset::nameOf(kind);
    problem.page = static_cast<std::uint64_t>(place.pageNum) + 1;
    problem.record = static_cast<std::uint64_t>(place.row) + 1;
    if (const FrameFacts* frame = facts_.frame(place.frame.GetUID().Get())) {
        problem.frame = frame->name;
        if (frame->page > 0) problem.page += static_cast<std::uint64_t>(frame->page) - 1;
    }
    if (const StoryFacts* story = facts_.story(place.story.GetUID().Get())) problem.story = story->name;
    problem.column = place.column.utf8();
    problem.file = knownPath(place.path.utf8());
    const bool isEmptyCell = kind == vornaset::ProblemKind::ImportFailed && problem.file.empty();
    if (isEmptyCell)
        problem.reason = "the cell is empty.";
    else if (whyNoPicture_ && !problem.column.empty())
        problem.reason = whyNoPicture_(kind, problem.file);
    problems_.push_back(std::move(problem));
}

void ProblemKeeper::rangeFailure(const vornaset::MergePlace& place, const vornaset::RangeException&) {
    const StoryFacts* story = facts_.story(place.story.GetUID().Get());
    failure_ = "the template \"" + facts_.path + "\", story " + (story ? story->name : std::string("?")) + ", record " +
               std::to_string(place.row + 1) +
               ": a placeholder that moves on to the next record (its key ends in \"#\") finds none; give --offset the "
               "number of records that the story shows, fill the last page with empty records, and leave the story's "
               "last placeholder without \"#\".";
}

}  // namespace companion
