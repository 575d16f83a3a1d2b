#include "merge/merge_observer.h"

#include <utility>

namespace vornaset {

namespace {
MergeObserver* gMergeObserver = nullptr;
}  // namespace

const char* nameOf(ProblemKind kind) {
    return kind == ProblemKind::Overset ? "overset" : "missingImg";
}

MergeObserver* setMergeObserver(MergeObserver* observer) {
    return std::exchange(gMergeObserver, observer);
}

MergeObserver* mergeObserver() {
    return gMergeObserver;
}

}  // namespace vornaset
