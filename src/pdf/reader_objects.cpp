#include <algorithm>
#include <unordered_set>

#include "pdf/limits.h"
#include "pdf/reader.h"

namespace vornaset {

bool ReaderObject::boolean() const noexcept {
    const bool* value = std::get_if<bool>(&held_);
    return value != nullptr && *value;
}

int64_t ReaderObject::integer() const noexcept {
    const int64_t* value = std::get_if<int64_t>(&held_);
    return value != nullptr ? *value : 0;
}

double ReaderObject::real() const noexcept {
    const double* value = std::get_if<double>(&held_);
    return value != nullptr ? *value : 0;
}

std::string_view ReaderObject::name() const noexcept {
    const auto* bytes = std::get_if<std::string>(&held_);
    return type_ == ReaderType::name && bytes != nullptr ? std::string_view(*bytes) : std::string_view();
}

std::string_view ReaderObject::string() const noexcept {
    const auto* bytes = std::get_if<std::string>(&held_);
    return type_ == ReaderType::string && bytes != nullptr ? std::string_view(*bytes) : std::string_view();
}

const ReaderObject::Items& ReaderObject::items() const {
    static const Items none;
    if (type_ != ReaderType::array) return none;
    if (std::holds_alternative<std::monostate>(held_)) document_.read(*this);
    return std::get<Items>(held_);
}

const ReaderObject::Entries& ReaderObject::entries() const {
    static const Entries none;
    if (type_ != ReaderType::dictionary && type_ != ReaderType::stream) return none;
    if (std::holds_alternative<std::monostate>(held_)) document_.read(*this);
    return std::get<Entries>(held_);
}

const ReaderObject* ReaderObject::entry(std::string_view key) const {
    const Entries& all = entries();
    const auto place = std::lower_bound(
        all.begin(), all.end(), key, [](const ReaderEntry& entry, std::string_view k) { return entry.key->bytes < k; });
    return place != all.end() && place->key->bytes == key ? place->value : nullptr;
}

namespace {

int64_t integerEntry(const ReaderObject* dictionary, std::string_view key, int64_t otherwise) {
    const ReaderObject* value = dictionary != nullptr ? dictionary->entry(key) : nullptr;
    return value != nullptr && value->type() == ReaderType::integer ? value->integer() : otherwise;
}

FilterStep stepOf(std::string_view name, const ReaderObject* parameters) {
    FilterStep step;
    step.name = name;
    step.predictor.predictor = integerEntry(parameters, "Predictor", 1);
    step.predictor.colors = integerEntry(parameters, "Colors", 1);
    step.predictor.bitsPerComponent = integerEntry(parameters, "BitsPerComponent", 8);
    step.predictor.columns = integerEntry(parameters, "Columns", 1);
    step.change = integerEntry(parameters, "EarlyChange", 1) == 0 ? LZWChange::late : LZWChange::early;
    return step;
}

/// Files are found with one dictionary for a list of one filter, and with a list of one for a single filter.
const ReaderObject* parametersAt(const ReaderObject* parameters, size_t index, size_t filterCount) {
    if (parameters == nullptr) return nullptr;
    if (parameters->type() != ReaderType::array) return filterCount == 1 ? parameters : nullptr;
    return index < parameters->items().size() ? parameters->items()[index] : nullptr;
}

}  // namespace

std::vector<FilterStep> filtersOf(const ReaderObject& stream) {
    const ReaderObject* filter = stream.entry("Filter");
    const ReaderObject* parameters = stream.entry("DecodeParms");
    std::vector<FilterStep> steps;
    if (filter == nullptr || filter->type() == ReaderType::null) return steps;
    if (filter->type() != ReaderType::array) {
        steps.push_back(stepOf(filter->name(), parametersAt(parameters, 0, 1)));
        return steps;
    }
    const auto& items = filter->items();
    if (items.size() > pdf_limits::kMaximumFilters) return {FilterStep{}};
    for (size_t at = 0; at < items.size(); ++at)
        steps.push_back(stepOf(items[at]->name(), parametersAt(parameters, at, items.size())));
    return steps;
}

// A node is a dictionary with an array of kids; each is walked once, so that a tree that bites its tail ends.
void ReaderDocument::findPages() {
    if (hasPages_) return;
    hasPages_ = true;
    std::unordered_set<const ReaderObject*> seen;
    std::vector<const ReaderObject*> waiting;
    if (const ReaderObject* root = catalog().entry("Pages")) waiting.push_back(root);
    while (!waiting.empty() && pages_.size() < pdf_limits::kMaximumPages) {
        const ReaderObject* node = waiting.back();
        waiting.pop_back();
        if (node->type() != ReaderType::dictionary) continue;
        const ReaderObject* kids = node->entry("Kids");
        if (kids == nullptr || kids->type() != ReaderType::array) {
            pages_.push_back(node);
        } else if (seen.insert(node).second) {
            waiting.insert(waiting.end(), kids->items().rbegin(), kids->items().rend());
        }
    }
}

int64_t ReaderDocument::numberOfPages() {
    findPages();
    return static_cast<int64_t>(pages_.size());
}

const ReaderObject* ReaderDocument::page(int64_t number) {
    findPages();
    return number >= 1 && number <= static_cast<int64_t>(pages_.size()) ? pages_[static_cast<size_t>(number - 1)]
                                                                        : nullptr;
}

}  // namespace vornaset
