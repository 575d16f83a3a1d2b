#include "desk/idml/part_editor.h"

#include <algorithm>

namespace desk {

void PartEditor::setAttribute(const SourceElement& element, std::string_view name, std::string_view value) {
    if (const SourceAttribute* known = element.attribute(name)) {
        std::string written = escapedAttribute(value);
        const bool singleQuotes = source_.bytes()[known->end] == '\'';
        if (singleQuotes)
            for (size_t at = written.find('\''); at != std::string::npos; at = written.find('\'', at))
                written.replace(at, 1, "&apos;");
        std::erase_if(edits_, [&](const Edit& edit) { return edit.begin == known->begin && edit.end == known->end; });
        edits_.push_back({known->begin, known->end, std::move(written)});
        return;
    }
    auto& entry = pending_[element.begin];
    entry.first = &element;
    for (auto& [known, text] : entry.second.attributes) {
        if (known != name) continue;
        text = value;
        return;
    }
    entry.second.attributes.emplace_back(name, value);
}

void PartEditor::removeAttribute(const SourceElement& element, std::string_view name) {
    const SourceAttribute* known = element.attribute(name);
    if (!known) return;
    size_t begin = static_cast<size_t>(known->name.data() - source_.bytes().data());
    while (begin > 0 && std::string_view(" \t\r\n").find(source_.bytes()[begin - 1]) != std::string_view::npos) --begin;
    edits_.push_back({begin, known->end + 1, {}});
}

void PartEditor::addFirst(const SourceElement& element, std::string_view xml) {
    auto& entry = pending_[element.begin];
    entry.first = &element;
    entry.second.first += xml;
}

void PartEditor::addLast(const SourceElement& element, std::string_view xml) {
    auto& entry = pending_[element.begin];
    entry.first = &element;
    entry.second.last += xml;
}

void PartEditor::insert(size_t at, std::string_view xml) {
    edits_.push_back({at, at, std::string(xml)});
}

void PartEditor::remove(size_t begin, size_t end) {
    if (begin < end) edits_.push_back({begin, end, {}});
}

void PartEditor::remove(const SourceElement& element) {
    size_t begin = element.begin;
    const SourceElement* parent = element.parent;
    const bool amongElements =
        parent && std::all_of(parent->content.begin(), parent->content.end(), [&](const SourcePiece& piece) {
            return piece.kind != SourcePiece::Kind::Text ||
                   source_.text(piece.begin, piece.end).find_first_not_of(" \t\r\n") == std::string_view::npos;
        });
    if (amongElements)
        while (begin > parent->tagEnd &&
               std::string_view(" \t\r\n").find(source_.bytes()[begin - 1]) != std::string_view::npos)
            --begin;
    edits_.push_back({begin, element.end, {}});
}

/// What is added to an element; one that is a single tag is opened for content.
void PartEditor::addPending(const SourceElement& element, const Pending& pending, std::vector<Edit>& edits) const {
    std::string attributes;
    for (const auto& [name, value] : pending.attributes)
        attributes += " " + name + "=\"" + escapedAttribute(value) + "\"";
    const size_t behindAttributes =
        element.attributes.empty() ? element.begin + 1 + element.name.size() : element.attributes.back().end + 1;
    if (!attributes.empty()) edits.push_back({behindAttributes, behindAttributes, attributes});
    if (pending.first.empty() && pending.last.empty()) return;
    if (element.isOneTag) {
        edits.push_back({element.tagEnd - 2, element.tagEnd,
                         ">" + pending.first + pending.last + "</" + std::string(element.name) + ">"});
        return;
    }
    if (!pending.first.empty()) edits.push_back({element.tagEnd, element.tagEnd, pending.first});
    if (!pending.last.empty()) edits.push_back({element.contentEnd, element.contentEnd, pending.last});
}

std::vector<PartEditor::Edit> PartEditor::allEdits() const {
    std::vector<Edit> edits = edits_;
    for (const auto& [at, entry] : pending_) addPending(*entry.first, entry.second, edits);
    // An insertion comes in front of what is taken away at its place.
    std::stable_sort(edits.begin(), edits.end(), [](const Edit& a, const Edit& b) {
        if (a.begin != b.begin) return a.begin < b.begin;
        return a.begin == a.end && b.begin != b.end;
    });
    return edits;
}

/// The edits inside a range; of those around `kept`, one that takes it away and what goes in beside it, none counts.
std::string PartEditor::rendered(size_t begin, size_t end, const SourceElement* kept) const {
    std::string text;
    size_t at = begin;
    for (const Edit& edit : allEdits()) {
        if (edit.begin < at || edit.end > end || (kept && (edit.begin <= begin || edit.begin >= end))) continue;
        text += source_.text(at, edit.begin);
        text += edit.xml;
        at = edit.end;
    }
    return text.append(source_.text(at, end));
}

std::string PartEditor::result() const {
    return rendered(0, source_.bytes().size(), nullptr);
}

std::string PartEditor::result(const SourceElement& element) const {
    return rendered(element.begin, element.end, &element);
}

}  // namespace desk
