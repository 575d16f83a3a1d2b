#include "desk/idml/text_difference.h"

#include <algorithm>

namespace desk {
namespace {

struct Unit {
    char16_t character = 0;
    CharacterFormatId characterFormat = 0;
    ParagraphFormatId paragraphFormat = 0;
    Uid item = 0;
    bool operator==(const Unit&) const = default;
};

std::vector<Unit> unitsOf(const StoryContent& content) {
    std::vector<Unit> units(static_cast<size_t>(content.length() - 1));
    size_t character = 0, paragraph = 0, owned = 0;
    for (size_t i = 0; i < units.size(); ++i) {
        const auto at = static_cast<int32_t>(i);
        while (character + 1 < content.characterRuns.size() && content.characterRuns[character + 1].start <= at)
            ++character;
        while (paragraph + 1 < content.paragraphRuns.size() && content.paragraphRuns[paragraph + 1].start <= at)
            ++paragraph;
        while (owned < content.ownedItems.size() && content.ownedItems[owned].position < at) ++owned;
        const bool holds = owned < content.ownedItems.size() && content.ownedItems[owned].position == at;
        units[i] = {content.text[i], content.characterRuns[character].format, content.paragraphRuns[paragraph].format,
                    holds ? content.ownedItems[owned].item : 0};
    }
    return units;
}

/// Greedy shortest edit script (Myers, "An O(ND) difference algorithm", 1986), given up beyond a number of edits that
/// keeps time and memory small.
class Comparison {
  public:
    Comparison(const std::vector<Unit>& before, const std::vector<Unit>& now) : before_(before), now_(now) {}

    std::vector<TextChange> run() {
        while (first_ < before_.size() && first_ < now_.size() && before_[first_] == now_[first_]) ++first_;
        beforeEnd_ = before_.size();
        nowEnd_ = now_.size();
        while (beforeEnd_ > first_ && nowEnd_ > first_ && before_[beforeEnd_ - 1] == now_[nowEnd_ - 1]) {
            --beforeEnd_;
            --nowEnd_;
        }
        if (beforeEnd_ == first_ && nowEnd_ == first_) return {};
        const bool oneSided = beforeEnd_ == first_ || nowEnd_ == first_;
        if (oneSided || !search()) return {{place(first_), place(beforeEnd_), place(first_), place(nowEnd_)}};
        return trace();
    }

  private:
    static constexpr int mostEdits = 1500;
    static int32_t place(size_t at) { return static_cast<int32_t>(at); }

    /// Follows equal units from a place on a diagonal (now minus before).
    int slide(int diagonal, int before) const {
        const auto n = static_cast<int>(beforeEnd_ - first_), m = static_cast<int>(nowEnd_ - first_);
        int now = before - diagonal;
        while (before < n && now < m &&
               before_[first_ + static_cast<size_t>(before)] == now_[first_ + static_cast<size_t>(now)]) {
            ++before;
            ++now;
        }
        return before;
    }

    bool search() {
        const auto n = static_cast<int>(beforeEnd_ - first_), m = static_cast<int>(nowEnd_ - first_);
        for (int edits = 0; edits <= mostEdits; ++edits) {
            // furthest_[edits] holds the place on each diagonal -edits, -edits+2, ..., edits.
            std::vector<int>& reached = furthest_.emplace_back(static_cast<size_t>(edits) + 1);
            for (int i = 0; i <= edits; ++i) {
                const int diagonal = 2 * i - edits;
                int before = 0;
                if (edits > 0) {
                    const std::vector<int>& last = furthest_[static_cast<size_t>(edits) - 1];
                    const int fromLeft = i > 0 ? last[static_cast<size_t>(i) - 1] + 1 : -1;
                    const int fromAbove = i < edits ? last[static_cast<size_t>(i)] : -1;
                    before = std::max(fromLeft, fromAbove);
                }
                before = slide(diagonal, before);
                reached[static_cast<size_t>(i)] = before;
                if (before >= n && before - diagonal >= m) return true;
            }
        }
        return false;
    }

    /// Walks the script back from the end; neighbouring edits become one change.
    std::vector<TextChange> trace() const {
        std::vector<TextChange> changes;
        auto before = static_cast<int>(beforeEnd_ - first_), now = static_cast<int>(nowEnd_ - first_);
        const auto add = [&](int beforeStart, int nowStart, int beforeLimit, int nowLimit) {
            const auto offset = static_cast<int32_t>(first_);
            const TextChange change{beforeStart + offset, beforeLimit + offset, nowStart + offset, nowLimit + offset};
            if (!changes.empty() && changes.back().beforeStart == change.beforeEnd &&
                changes.back().nowStart == change.nowEnd) {
                changes.back().beforeStart = change.beforeStart;
                changes.back().nowStart = change.nowStart;
            } else {
                changes.push_back(change);
            }
        };
        for (int edits = static_cast<int>(furthest_.size()) - 1; edits > 0; --edits) {
            const int diagonal = before - now;
            const int i = (diagonal + edits) / 2;
            const std::vector<int>& last = furthest_[static_cast<size_t>(edits) - 1];
            const int fromLeft = i > 0 ? last[static_cast<size_t>(i) - 1] + 1 : -1;
            const int fromAbove = i < edits ? last[static_cast<size_t>(i)] : -1;
            const bool deletes = fromLeft > fromAbove;
            const int start = std::max(fromLeft, fromAbove);
            const int startNow = start - diagonal;
            if (deletes)
                add(start - 1, startNow, start, startNow);
            else
                add(start, startNow - 1, start, startNow);
            before = deletes ? start - 1 : start;
            now = deletes ? startNow : startNow - 1;
        }
        std::reverse(changes.begin(), changes.end());
        return changes;
    }

    const std::vector<Unit>&before_, &now_;
    size_t first_ = 0, beforeEnd_ = 0, nowEnd_ = 0;
    std::vector<std::vector<int>> furthest_;
};

}  // namespace

std::vector<TextChange> textChanges(const StoryContent& before, const StoryContent& now) {
    return Comparison(unitsOf(before), unitsOf(now)).run();
}

}  // namespace desk
