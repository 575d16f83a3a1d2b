#include <cstdio>

#include "companion/template_check.h"

namespace companion {
namespace {

std::string inPoints(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value);
    std::string trimmed = text;
    while (trimmed.back() == '0') trimmed.pop_back();
    if (trimmed.back() == '.') trimmed.pop_back();
    return trimmed == "-0" ? "0" : trimmed;
}

std::string frameLine(const FrameFacts& frame) {
    std::string text = "  " + frame.name;
    if (!frame.givenName.empty()) text += " \"" + frame.givenName + "\"";
    text += ": " + frame.kind;
    text += frame.page ? ", page " + std::to_string(frame.page) : ", on no page";
    text += ", at " + inPoints(frame.left) + " " + inPoints(frame.top) + ", " + inPoints(frame.width) + " by " +
            inPoints(frame.height) + " pt";
    if (frame.number) text += ", number " + std::to_string(frame.number);
    if (!frame.column.empty()) text += ", column \"" + frame.column + "\"";
    if (!frame.story.empty()) text += ", story " + frame.story;
    return text + "\n";
}

std::string storyLine(const StoryFacts& story) {
    std::string text = "  " + story.name + ": " + std::to_string(story.characters) + " characters";
    if (!story.firstFrame) text += ", in no frame";
    if (story.number) text += ", number " + std::to_string(story.number);
    std::string placeholders;
    for (const FoundPlaceholder& placeholder : story.placeholders)
        placeholders += " <<" + placeholder.column + (placeholder.advancesRow ? "#" : "") + ">>";
    if (!placeholders.empty()) text += ", placeholders" + placeholders;
    return text + "\n";
}

std::string section(const std::string& title, std::size_t count) {
    return title + ": " + std::to_string(count) + "\n";
}

std::string listed(const std::string& title, const std::vector<std::string>& names) {
    std::string text = section(title, names.size());
    for (const std::string& name : names) text += "  " + name + "\n";
    return text;
}

}  // namespace

std::string textOfFacts(const TemplateFacts& facts) {
    std::string text = facts.path + "\n" + section("Pages", facts.pages.size());
    for (const PageFacts& page : facts.pages)
        text += "  " + page.number + ": " + inPoints(page.width) + " by " + inPoints(page.height) + " pt\n";
    text += section("Frames", facts.frames.size());
    for (const FrameFacts& frame : facts.frames) text += frameLine(frame);
    text += section("Stories", facts.stories.size());
    for (const StoryFacts& story : facts.stories) text += storyLine(story);
    text += listed("Paragraph styles", facts.paragraphStyles);
    text += listed("Character styles", facts.characterStyles);
    text += listed("Object styles", facts.objectStyles);
    text += listed("Fonts", facts.fonts);
    for (const ReplacedFont& font : facts.replacedFonts)
        text += "  not on this machine: " + font.asked + ", " + font.used + " stands in\n";
    if (!facts.notes.empty()) text += listed("Passed over in reading", facts.notes);
    return text;
}

}  // namespace companion
