#include "desk/idml/links.h"

#include "desk/idml/circle.h"

namespace desk {
namespace {

void findStory(Reading& reading, const FrameLinks& links, PageItem& frame) {
    if (links.story.empty()) return;
    const auto story = reading.stories.find(links.story);
    if (story == reading.stories.end()) {
        reading.member = links.member;
        throw reading.failure(links.line, "the text frame " + quoted(frame.self) + " shows the story " +
                                              quoted(links.story) + ", which is missing; export the document again.");
    }
    frame.story = story->second;
}

void join(Reading& reading, PageItem& frame, PageItem& next) {
    if (frame.nextFrame == next.uid) return;
    std::string problem;
    if (frame.nextFrame != 0 || next.previousFrame != 0)
        problem = "one of them is threaded already";
    else if (frame.story != next.story)
        problem = "they show different stories";
    if (!problem.empty())
        return reading.note("the thread from " + quoted(frame.self) + " to " + quoted(next.self) +
                            " is cut: " + problem);
    frame.nextFrame = next.uid;
    next.previousFrame = frame.uid;
}

PageItem* frameNamed(Reading& reading, const PageItem& frame, const std::string& id) {
    if (id.empty()) return nullptr;
    PageItem* named = reading.document.itemWithSelf(id);
    if (named && named->kind == ItemKind::TextFrame) return named;
    reading.note("the thread of the text frame " + quoted(frame.self) + " ends there: " + quoted(id) +
                 " is no text frame");
    return nullptr;
}

/// A frame that no way from a thread's start reaches stands in a circle.
void refuseCircles(Reading& reading) {
    Document& document = reading.document;
    std::set<Uid> reached;
    for (const FrameLinks& links : reading.frames) {
        if (document.item(links.frame)->previousFrame != 0) continue;
        for (Uid uid = links.frame; uid != 0; uid = document.item(uid)->nextFrame) reached.insert(uid);
    }
    for (const FrameLinks& links : reading.frames) {
        if (reached.contains(links.frame)) continue;
        std::vector<std::string> circle;
        for (Uid uid = links.frame; uid != 0; uid = document.item(uid)->nextFrame) {
            if (uid == links.frame && !circle.empty()) break;
            circle.push_back(document.item(uid)->self);
        }
        reading.member = links.member;
        throw reading.failure(links.line, "the text frames " + quotedList(circle) +
                                              " are threaded in a circle; break the thread between two of them.");
    }
}

/// One thread shows a story; frames outside it that name the same story would show it twice.
void keepOneThreadForEachStory(Reading& reading) {
    Document& document = reading.document;
    std::set<Uid> shown;
    for (const FrameLinks& links : reading.frames) {
        PageItem& first = *document.item(links.frame);
        if (first.previousFrame != 0 || first.story == 0 || shown.insert(first.story).second) continue;
        reading.note("the text frame " + quoted(first.self) + " stays empty: another thread shows its story");
        for (PageItem* frame = &first; frame; frame = document.item(frame->nextFrame)) frame->story = 0;
    }
}

/// The stories that text frames inside a story show.
std::vector<Uid> storiesInside(const Document& document, const Story& story) {
    std::vector<Uid> inside, waiting;
    for (const OwnedItem& owned : story.content().ownedItems) waiting.push_back(owned.item);
    while (!waiting.empty()) {
        const PageItem* item = document.item(waiting.back());
        waiting.pop_back();
        if (!item) continue;
        waiting.insert(waiting.end(), item->children.begin(), item->children.end());
        if (item->story != 0) inside.push_back(item->story);
    }
    return inside;
}

void refuseStoriesInsideThemselves(const Reading& reading) {
    const Document& document = reading.document;
    enum class State { Unknown, Open, Good };
    struct Step {
        Uid story;
        std::vector<Uid> inside;
    };
    std::unordered_map<Uid, State> states;
    for (Uid start : document.stories) {
        if (states[start] == State::Good) continue;
        std::vector<Step> way{{start, storiesInside(document, *document.story(start))}};
        states[start] = State::Open;
        while (!way.empty()) {
            Step& step = way.back();
            if (step.inside.empty()) {
                states[step.story] = State::Good;
                way.pop_back();
                continue;
            }
            const Uid next = step.inside.back();
            step.inside.pop_back();
            if (states[next] == State::Open)
                throw reading.failure("the story " + quoted(document.story(next)->self) +
                                      " is anchored inside itself; move its frame out of the text.");
            if (states[next] == State::Good) continue;
            states[next] = State::Open;
            way.push_back({next, storiesInside(document, *document.story(next))});
        }
    }
}

}  // namespace

void linkFrames(Reading& reading) {
    Document& document = reading.document;
    for (const FrameLinks& links : reading.frames) findStory(reading, links, *document.item(links.frame));
    // Both ends of a joint name each other; where a writer forgot one, the other one counts.
    for (const FrameLinks& links : reading.frames) {
        PageItem& frame = *document.item(links.frame);
        reading.member = links.member;
        if (PageItem* next = frameNamed(reading, frame, links.next)) join(reading, frame, *next);
    }
    for (const FrameLinks& links : reading.frames) {
        PageItem& frame = *document.item(links.frame);
        reading.member = links.member;
        if (frame.previousFrame != 0) continue;
        if (PageItem* previous = frameNamed(reading, frame, links.previous)) join(reading, *previous, frame);
    }
    refuseCircles(reading);
    keepOneThreadForEachStory(reading);
    document.threadsChanged();
    refuseStoriesInsideThemselves(reading);
}

void linkMasters(Reading& reading) {
    Document& document = reading.document;
    std::unordered_map<std::string, Uid> masters;
    for (Uid uid : document.masterSpreads) masters.emplace(document.spread(uid)->self, uid);
    const auto known = [&](std::string& self, const std::string& who) {
        if (self.empty() || masters.contains(self)) return;
        reading.note(who + " names the master " + quoted(self) + ", which doesn't exist");
        self.clear();
    };
    for (const std::vector<Uid>* spreads : {&document.masterSpreads, &document.spreads}) {
        for (Uid uid : *spreads) {
            Spread& spread = *document.spread(uid);
            known(spread.basedOn, "the master " + quoted(spread.name));
            for (Uid page : spread.pages) known(document.page(page)->appliedMaster, "a page");
        }
    }
    std::unordered_set<const Spread*> good;
    for (Uid uid : document.masterSpreads) {
        const auto parentOf = [&](const Spread& master) -> const Spread* {
            const auto found = masters.find(master.basedOn);
            return found == masters.end() ? nullptr : document.spread(found->second);
        };
        const auto circle = circleFrom<Spread>(document.spread(uid), parentOf, good);
        if (circle.empty()) continue;
        std::vector<std::string> names;
        names.reserve(circle.size());
        for (const Spread* master : circle) names.push_back(master->name.empty() ? master->self : master->name);
        throw reading.failure("the masters " + quotedList(names) +
                              " are based on each other in a circle; give one of them another master.");
    }
}

void linkSections(Reading& reading) {
    std::unordered_map<std::string, std::string> starts;
    for (const SectionStart& section : reading.sections) starts[section.page] = section.marker;
    std::string marker;
    for (Uid uid : reading.document.pages()) {
        Page& page = *reading.document.page(uid);
        if (const auto start = starts.find(page.self); start != starts.end()) marker = start->second;
        page.sectionMarker = marker;
    }
}

}  // namespace desk
