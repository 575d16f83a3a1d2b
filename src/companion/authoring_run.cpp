#include "companion/authoring_run.h"

#include <set>

#include "companion/placeholder_scan.h"
#include "companion/text_encoding.h"
#include "companion/workplace.h"
#include "host/api/host.h"
#include "merge/template_frames.h"
#include "placeholders/authoring.h"
#include "records/merge_records.h"

namespace companion {
namespace {

UIDRef objectOf(Workplace& place, std::uint32_t uid) {
    return UIDRef(place.open().dataBase(), UID(uid));
}

UIDRef documentOf(Workplace& place) {
    return objectOf(place, place.open().document().rootUid());
}

std::string counted(std::size_t count, const char* noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

/// By its id, or by a name that one frame alone has.
const FrameFacts& frameNamed(const TemplateFacts& facts, const std::string& name) {
    std::vector<const FrameFacts*> found;
    for (const FrameFacts& frame : facts.frames) {
        if (frame.name == name) return frame;
        if (!name.empty() && frame.givenName == name) found.push_back(&frame);
    }
    if (found.empty())
        throw Error("the template \"" + facts.path + "\" has no frame \"" + name +
                    "\"; \"vornaset info\" lists its frames.");
    if (found.size() > 1)
        throw Error("the template \"" + facts.path + "\" has " + std::to_string(found.size()) + " frames named \"" +
                    name + "\"; use the id of one, as \"vornaset info\" tells it.");
    return *found.front();
}

const StoryFacts& storyNamed(const TemplateFacts& facts, const std::string& name) {
    for (const StoryFacts& story : facts.stories)
        if (story.name == name) return story;
    throw Error("the template \"" + facts.path + "\" has no story \"" + name +
                "\"; \"vornaset info\" lists its stories.");
}

/// What a text frame can't show and a template can't keep: line ends and other control characters, stand-ins for
/// objects, and code points that are no characters.
bool isNoText(char16_t unit) {
    const bool isControl =
        (unit < 0x20 && unit != u'\t') || (unit >= 0x7F && unit < 0xA0) || unit == 0x2028 || unit == 0x2029;
    const bool isMarker = unit >= desk::marker::pageNumber && unit <= desk::marker::noteNumber;
    return isControl || isMarker || unit == 0xFEFF || unit == desk::marker::inlineObject || unit >= 0xFFFE;
}

void checkText(const std::string& text, const std::string& what) {
    bool isText = firstIllFormedByte(text) == text.size();
    const vornaset::String characters = vornaset::String::fromDamagedUTF8(text);
    for (const char16_t unit : characters.view()) isText = isText && !isNoText(unit);
    if (!isText)
        throw Error(what + " holds a line end or another character that no text shows; use a column's name, in UTF-8.");
}

void checkColumn(const FrameFacts& frame, const FrameAssignment& assignment) {
    checkText(assignment.column, "the column for the frame " + frame.name);
    const bool holdsText = frame.kind == "text frame";
    if (assignment.hasColumn && !assignment.column.empty() && holdsText)
        throw Error("the frame " + frame.name +
                    " is a text frame: a column feeds frames of pictures; write a placeholder into the text.");
}

/// A key that reads as one placeholder and as nothing else.
void checkKey(const PlaceholderPlace& where) {
    checkText(where.key, "the key of the placeholder");
    const std::string inside = where.key + (where.withSpace ? " " : "");
    const bool endsEarly = (inside + ">>").find(">>") < inside.size();
    if (where.key.find_first_not_of(' ') == where.key.npos || endsEarly || inside.find("<<") != inside.npos)
        throw Error("\"" + where.key + "\" can't be the key of a placeholder; use a column's name, without << or >>.");
}

void checkPosition(const desk::Document& document, const StoryFacts& story, std::uint64_t position) {
    const std::u16string& text = document.story(story.uid)->content().text;
    if (position >= text.size())
        throw Error("the story " + story.name + " has positions 0 to " + std::to_string(text.size() - 1) + ", not " +
                    std::to_string(position) + ".");
    if (text[position] >= 0xDC00 && text[position] < 0xE000)
        throw Error("position " + std::to_string(position) + " of the story " + story.name +
                    " is in the middle of a character; take the one before or behind it.");
}

/// The new placeholder is one of its own, and all others are as they were.
void checkStandsAlone(std::u16string_view before, std::u16string_view after, const PlaceholderPlace& where) {
    const auto told = [&](std::u16string_view text, std::size_t shift) {
        std::set<std::pair<std::size_t, std::string>> placeholders;
        for (const FoundPlaceholder& found : findPlaceholders(text))
            placeholders.emplace(found.position + (found.position < where.position ? 0 : shift), found.column);
        return placeholders;
    };
    auto expected = told(before, after.size() - before.size());
    const auto now = told(after, 0);
    const bool isNew = now.size() == expected.size() + 1;
    for (const auto& placeholder : now)
        if (placeholder.first == where.position) expected.insert(placeholder);
    if (!isNew || now != expected)
        throw Error("position " + std::to_string(where.position) + " of the story " + where.story +
                    " is inside a placeholder or beside a part of its marks; take a place in front of it or behind.");
}

std::string saved(Workplace& place, const std::string& outputPath, const std::string& done) {
    place.open().save(outputPath);
    return outputPath + ": " + done + ".\n";
}

}  // namespace

std::string runNumber(const TemplateOptions& options, const std::vector<FrameAssignment>& assignments,
                      const std::string& outputPath) {
    return withOneKindOfError([&] {
        Workplace place(options);
        std::set<std::uint32_t> assigned;
        for (const FrameAssignment& assignment : assignments) {
            const FrameFacts& frame = frameNamed(place.facts(), assignment.frame);
            checkColumn(frame, assignment);
            if (!assigned.insert(frame.uid).second)
                throw Error("the frame " + frame.name + " gets two numbers; name it once.");
            UIDRef reference = objectOf(place, frame.uid);
            vornaset::setFrameNumberForFrame2(reference, static_cast<long>(assignment.number));
            if (assignment.hasColumn)
                vornaset::setColNameForFrame(reference, vornaset::String(assignment.column.c_str()));
        }
        return saved(place, outputPath, counted(assignments.size(), "frame") + " numbered");
    });
}

std::string runPlaceholder(const TemplateOptions& options, const PlaceholderPlace& where,
                           const std::string& outputPath) {
    return withOneKindOfError([&] {
        checkKey(where);
        Workplace place(options);
        const StoryFacts& story = storyNamed(place.facts(), where.story);
        checkPosition(place.open().document(), story, where.position);
        vornaset::TextSelection selection;
        if (story.firstFrame) selection.frame = objectOf(place, story.firstFrame);
        selection.story = objectOf(place, story.uid);
        selection.position = static_cast<int32_t>(where.position);
        const std::u16string before = place.open().document().story(story.uid)->content().text;
        vornaset::insertPlaceholder(selection, vornaset::String(where.key.c_str()), where.withSpace ? 1 : 0);
        checkStandsAlone(before, place.open().document().story(story.uid)->content().text, where);
        std::string done = "<<" + where.key + (where.withSpace ? " " : "") + ">> at position " +
                           std::to_string(where.position) + " of the story " + story.name;
        const FrameFacts* frame = place.facts().frame(story.firstFrame);
        if (frame && frame->number == 0) done += "; the frame " + frame->name + " has number 1 now";
        return saved(place, outputPath, done);
    });
}

std::string runOmr(const TemplateOptions& options, const std::string& outputPath) {
    return withOneKindOfError([&] {
        Workplace place(options);
        const std::size_t before = place.open().frames().size();
        vornaset::createOMRFrame();
        if (place.open().frames().size() != before + 1)
            throw Error("the template \"" + options.path +
                        "\" takes no OMR frame; give it a layer that isn't locked and a page.");
        return saved(place, outputPath, "an OMR frame on the first spread");
    });
}

std::string runStripStatic(const TemplateOptions& options, const std::string& outputPath) {
    return withOneKindOfError([&] {
        Workplace place(options);
        const std::size_t before = place.open().frames().size();
        vornaset::removeStaticFrames(documentOf(place));
        const std::size_t gone = before - place.open().frames().size();
        return saved(place, outputPath, counted(gone, "frame") + " without number removed");
    });
}

}  // namespace companion
