#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "companion/run.h"
#include "companion/template_facts.h"
#include "merge/merge_observer.h"

namespace companion {

/// A sentence or two; empty when nothing is known.
using WhyNoPicture = std::function<std::string(vornaset::ProblemKind kind, const std::string& path)>;

/// Keeps every report of a run, and the place where a placeholder ran out of rows. It is the run's observer as long as
/// it lives; facts and problems must outlive it.
class ProblemKeeper : public vornaset::MergeObserver {
  public:
    /// `realRows` is the number of rows that aren't padding: what is told of padding is no problem. `whyNoPicture` is
    /// asked for the reason when a frame stays without its picture; place.path is the cell or the file.
    ProblemKeeper(const TemplateFacts& facts, std::uint64_t realRows, std::vector<ProblemPage>& problems,
                  WhyNoPicture whyNoPicture = {});
    ~ProblemKeeper() override;
    ProblemKeeper(const ProblemKeeper&) = delete;
    ProblemKeeper& operator=(const ProblemKeeper&) = delete;

    void problem(vornaset::ProblemKind kind, const vornaset::MergePlace& place) override;
    void rangeFailure(const vornaset::MergePlace& place, const vornaset::RangeException& failure) override;

    /// A sentence that names template, story and record; empty as long as no row was missing.
    const std::string& failure() const { return failure_; }

  private:
    const TemplateFacts& facts_;
    std::uint64_t realRows_;
    std::vector<ProblemPage>& problems_;
    WhyNoPicture whyNoPicture_;
    std::string failure_;
    vornaset::MergeObserver* former_;
};

}  // namespace companion
