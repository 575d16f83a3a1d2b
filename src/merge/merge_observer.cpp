#include "merge/merge_observer.h"

#include <utility>

namespace vornaset {

namespace {
MergeObserver* gMergeObserver = nullptr;
}  // namespace

const char* nameOf(ProblemKind kind) {
    switch (kind) {
        case ProblemKind::Overset:
            return "overset";
        case ProblemKind::MissingImage:
            return "missingImg";
        case ProblemKind::ImportFailed:
            return "importFailed";
    }
    return "";
}

MergeObserver* setMergeObserver(MergeObserver* observer) {
    return std::exchange(gMergeObserver, observer);
}

MergeObserver* mergeObserver() {
    return gMergeObserver;
}

}  // namespace vornaset
