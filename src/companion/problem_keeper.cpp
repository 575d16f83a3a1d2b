#include "companion/problem_keeper.h"

#include <utility>

namespace companion {

ProblemKeeper::ProblemKeeper(const TemplateFacts& facts, std::uint64_t realRows, std::vector<ProblemPage>& problems)
    : facts_(facts), realRows_(realRows), problems_(problems), former_(vornaset::setMergeObserver(this)) {}

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
    problem.file = place.path.utf8();
    problems_.push_back(std::move(problem));
}

void ProblemKeeper::rangeFailure(const vornaset::MergePlace& place, const vornaset::RangeException&) {
    const StoryFacts* story = facts_.story(place.story.GetUID().Get());
    failure_ = "the template \"" + facts_.path + "\", story " + (story ? story->name : std::string("?")) + ", record " +
               std::to_string(place.row + 1) +
               ": a placeholder that moves on to the next record (its key ends in \"#\") finds none; end the run "
               "earlier with --count or take the \"#\" away.";
}

}  // namespace companion
