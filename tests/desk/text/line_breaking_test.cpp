#include "desk/text/line_breaking.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <tuple>

namespace desk {
namespace {

/// Words and the spaces behind them as candidates: `hyphens` adds a hyphenation point in the middle of some words.
struct Paragraph {
    std::vector<BreakCandidate> places;

    void start() {
        places.push_back({});
        places.back().kind = BreakKind::Start;
    }
    void place(BreakKind kind, Extent end, Extent begin) {
        BreakCandidate added;
        added.kind = kind;
        added.end = end;
        added.start = begin;
        places.push_back(added);
    }
};

Extent plus(Extent a, double natural, double stretch = 0, double shrink = 0) {
    return {a.natural + natural, a.stretch + stretch, a.shrink + shrink};
}

Paragraph randomParagraph(std::mt19937& random) {
    Paragraph result;
    result.start();
    Extent at;
    const int words = std::uniform_int_distribution<int>(1, 24)(random);
    std::uniform_real_distribution<double> width(4, 46);
    for (int word = 0; word < words; ++word) {
        const double whole = width(random);
        if (whole > 18 && random() % 2) result.place(BreakKind::Hyphen, plus(at, whole / 2 + 3), plus(at, whole / 2));
        const Extent end = plus(at, whole);
        at = plus(end, 2.5, 0.9, 0.5);
        const bool last = word + 1 == words;
        const BreakKind kind = last ? BreakKind::End : random() % 15 == 0 ? BreakKind::Forced : BreakKind::Space;
        result.place(kind, end, at);
    }
    return result;
}

/// The slow, obvious way: every sequence of lines is a path through states; the best cost to each state is kept in a
/// map.
struct Best {
    double cost = std::numeric_limits<double>::infinity();
    bool found = false;
};

Extent sumOf(const std::vector<BreakCandidate>& places, uint32_t from, uint32_t to) {
    const Extent& start = places[from].start;
    const Extent& end = places[to].end;
    return {end.natural - start.natural, end.stretch - start.stretch, end.shrink - start.shrink};
}

/// Behind some places stands a tab, which goes to the next multiple of 36 from the column's edge.
class Tabs : public TabbedLines {
  public:
    Tabs(const std::vector<BreakCandidate>& places, std::vector<bool> hasTabBehind, double firstIndent)
        : places_(places), hasTabBehind_(std::move(hasTabBehind)), firstIndent_(firstIndent) {}

    bool hasTab(uint32_t from, uint32_t to) const override {
        return std::find(hasTabBehind_.begin() + from + 1, hasTabBehind_.begin() + to, true) !=
               hasTabBehind_.begin() + to;
    }
    Extent extent(uint32_t from, uint32_t to, uint32_t line) override {
        ++measured;
        const double start = line == 0 ? firstIndent_ : 0;
        double x = start;
        uint32_t last = from;
        for (uint32_t at = from + 1; at < to; ++at) {
            if (!hasTabBehind_[at]) continue;
            x += sumOf(places_, last, at).natural;
            x = (std::floor(x / 36 + 1e-9) + 1) * 36;
            last = at;
        }
        const Extent rest = sumOf(places_, last, to);
        return {x - start + rest.natural, rest.stretch, rest.shrink};
    }
    size_t measured = 0;

  private:
    const std::vector<BreakCandidate>& places_;
    std::vector<bool> hasTabBehind_;
    double firstIndent_;
};

Extent extentOf(const std::vector<BreakCandidate>& places, TabbedLines* tabs, uint32_t from, uint32_t to, size_t line) {
    if (tabs && tabs->hasTab(from, to)) return tabs->extent(from, to, static_cast<uint32_t>(line));
    return sumOf(places, from, to);
}

using StateKey = std::tuple<uint32_t, uint8_t, uint32_t>;  // line, fitness, hyphens above

Best cheapest(const std::vector<BreakCandidate>& places, const std::vector<double>& measures,
              const BreakingRules& rules, double tolerance, TabbedLines* tabs = nullptr) {
    std::vector<std::map<StateKey, double>> states(places.size());
    states[0][{0, 1, 0}] = 0;
    for (uint32_t to = 1; to < places.size(); ++to) {
        for (uint32_t from = 0; from < to; ++from) {
            bool crossesForced = false;
            for (uint32_t between = from + 1; between < to; ++between)
                crossesForced = crossesForced || places[between].kind == BreakKind::Forced;
            if (crossesForced) continue;
            for (const auto& [key, cost] : states[from]) {
                const auto [number, fitness, hyphens] = key;
                const size_t place = std::min<size_t>(number, measures.size() - 1);
                const Extent line = extentOf(places, tabs, from, to, place);
                const double measure = measures[place];
                const LineCost lineCost =
                    costOfLine(line, measure, places[to].kind == BreakKind::End, tolerance, rules);
                if (!lineCost.fits || breaksLadderLimit(places[to].kind, hyphens, rules)) continue;
                const double total = cost + demerits(lineCost, places[to].kind, rules, from == 0, fitness, hyphens);
                const bool hyphenated = places[to].kind == BreakKind::Hyphen;
                const StateKey next{number + 1, lineCost.fitness, hyphenated ? hyphens + 1 : 0};
                auto [known, added] = states[to].emplace(next, total);
                if (!added) known->second = std::min(known->second, total);
            }
        }
    }
    Best best;
    for (const auto& [key, cost] : states.back()) {
        best.found = true;
        best.cost = std::min(best.cost, cost);
    }
    return best;
}

double costOf(const std::vector<BreakCandidate>& places, const std::vector<double>& measures,
              const BreakingRules& rules, const std::vector<uint32_t>& ends, TabbedLines* tabs = nullptr) {
    double total = 0;
    uint32_t from = 0, hyphens = 0, number = 0;
    uint8_t fitness = 1;
    for (const uint32_t to : ends) {
        const size_t place = std::min<size_t>(number++, measures.size() - 1);
        const Extent line = extentOf(places, tabs, from, to, place);
        const double measure = measures[place];
        const LineCost cost = costOfLine(line, measure, places[to].kind == BreakKind::End, 1e9, rules);
        total += demerits(cost, places[to].kind, rules, from == 0, fitness, hyphens);
        fitness = cost.fitness;
        hyphens = places[to].kind == BreakKind::Hyphen ? hyphens + 1 : 0;
        from = to;
    }
    return total;
}

class LineBreakingOracle : public ::testing::TestWithParam<std::tuple<LineFilling, int, int>> {};

TEST_P(LineBreakingOracle, FindsWhatTheExhaustiveSearchFinds) {
    const auto [filling, ladder, measureKind] = GetParam();
    std::mt19937 random(static_cast<unsigned>(7 + ladder + measureKind * 31));
    LineBreaker breaker;
    int compared = 0;
    for (int round = 0; round < 400; ++round) {
        const Paragraph paragraph = randomParagraph(random);
        BreakingRules rules;
        rules.filling = filling;
        rules.ladderLimit = ladder;
        rules.raggedUnit = 12;
        std::vector<double> measures{100, 100};
        if (measureKind == 1) measures = {80, 100};
        if (measureKind == 2) measures = {100, 100, 70, 130};
        std::vector<uint32_t> ends;
        breaker.breakTotalFit(paragraph.places, {measures.data(), static_cast<uint32_t>(measures.size())}, rules,
                              nullptr, ends);
        Best best;
        for (const double tolerance : tolerances) {
            best = cheapest(paragraph.places, measures, rules, tolerance);
            if (best.found) break;
        }
        if (!best.found) continue;
        ++compared;
        ASSERT_FALSE(ends.empty());
        EXPECT_EQ(ends.back(), paragraph.places.size() - 1);
        EXPECT_NEAR(costOf(paragraph.places, measures, rules, ends), best.cost, best.cost * 1e-9 + 1e-6)
            << "round " << round;
    }
    EXPECT_GT(compared, 300);
}

TEST_P(LineBreakingOracle, FindsItWithTabsToo) {
    const auto [filling, ladder, measureKind] = GetParam();
    std::mt19937 random(static_cast<unsigned>(70 + ladder + measureKind * 31));
    LineBreaker breaker;
    int compared = 0;
    for (int round = 0; round < 200; ++round) {
        const Paragraph paragraph = randomParagraph(random);
        std::vector<bool> hasTabBehind(paragraph.places.size());
        for (size_t i = 1; i + 1 < hasTabBehind.size(); ++i)
            hasTabBehind[i] = paragraph.places[i].kind == BreakKind::Space && random() % 3 == 0;
        BreakingRules rules;
        rules.filling = filling;
        rules.ladderLimit = ladder;
        rules.raggedUnit = 12;
        std::vector<double> measures{100, 100};
        if (measureKind == 1) measures = {80, 100};
        if (measureKind == 2) measures = {100, 100, 70, 130};
        Tabs tabs(paragraph.places, hasTabBehind, measures[1] - measures[0]);
        std::vector<uint32_t> ends;
        breaker.breakTotalFit(paragraph.places, {measures.data(), static_cast<uint32_t>(measures.size())}, rules, &tabs,
                              ends);
        Best best;
        for (const double tolerance : tolerances) {
            best = cheapest(paragraph.places, measures, rules, tolerance, &tabs);
            if (best.found) break;
        }
        if (!best.found) continue;
        ++compared;
        EXPECT_NEAR(costOf(paragraph.places, measures, rules, ends, &tabs), best.cost, best.cost * 1e-9 + 1e-6)
            << "round " << round;
    }
    EXPECT_GT(compared, 100);
}

INSTANTIATE_TEST_SUITE_P(AllWays, LineBreakingOracle,
                         ::testing::Combine(::testing::Values(LineFilling::Ragged, LineFilling::Justified),
                                            ::testing::Values(0, 1, 3), ::testing::Values(0, 1, 2)));

std::vector<uint32_t> breakAll(const Paragraph& paragraph, double measure, const BreakingRules& rules) {
    std::vector<uint32_t> ends;
    LineBreaker().breakTotalFit(paragraph.places, {&measure, 1}, rules, nullptr, ends);
    return ends;
}

// The setter counts on this: it doesn't ask for the places inside what fits one line.
TEST(LineBreaking, WhatFitsOneLineIsNeverDivided) {
    std::mt19937 random(17);
    int fitting = 0;
    for (int round = 0; round < 600; ++round) {
        const Paragraph paragraph = randomParagraph(random);
        const auto isForced = [](const BreakCandidate& place) { return place.kind == BreakKind::Forced; };
        if (std::any_of(paragraph.places.begin(), paragraph.places.end(), isForced)) continue;
        ++fitting;
        BreakingRules rules;
        rules.filling = round % 2 ? LineFilling::Ragged : LineFilling::Justified;
        rules.lastLineIndent = round % 3 ? 0 : 12;
        rules.ladderLimit = round % 4;
        rules.hyphenWeight = round % 11;
        const double whole = paragraph.places.back().end.natural;
        const double room = std::uniform_real_distribution<double>(0, 30)(random);
        const double measures[] = {whole + rules.lastLineIndent + (round % 5 ? room : 0), 10};
        const auto end = static_cast<uint32_t>(paragraph.places.size() - 1);
        std::vector<uint32_t> ends;
        LineBreaker().breakTotalFit(paragraph.places, {measures, 2}, rules, nullptr, ends);
        EXPECT_EQ(ends, std::vector<uint32_t>{end}) << "round " << round;
        LineBreaker().breakLineByLine(paragraph.places, {measures, 2}, rules, nullptr, ends);
        EXPECT_EQ(ends, std::vector<uint32_t>{end}) << "round " << round << ", line by line";
    }
    EXPECT_GT(fitting, 200);
}

TEST(LineBreaking, LinesMuchTooFullOfTabsAreNotMeasured) {
    constexpr uint32_t words = 500;
    Paragraph paragraph;
    paragraph.start();
    Extent at;
    for (uint32_t word = 0; word < words; ++word) {
        const Extent end = plus(at, 2);
        at = end;
        paragraph.place(word + 1 == words ? BreakKind::End : BreakKind::Space, end, at);
    }
    Tabs tabs(paragraph.places, std::vector<bool>(paragraph.places.size(), true), 0);
    const double measures[] = {100, 100};
    std::vector<uint32_t> ends;
    LineBreaker().breakTotalFit(paragraph.places, {measures, 2}, {}, &tabs, ends);
    EXPECT_EQ(ends.back(), words);
    EXPECT_GE(ends.size(), words / 3);
    EXPECT_LT(tabs.measured, words * 30);
}

TEST(LineBreaking, NothingIsOneEmptyLine) {
    Paragraph paragraph;
    paragraph.start();
    paragraph.place(BreakKind::End, {}, {});
    EXPECT_EQ(breakAll(paragraph, 100, {}), std::vector<uint32_t>{1});
}

TEST(LineBreaking, WhatIsWiderThanAnyLineStandsAlone) {
    Paragraph paragraph;
    paragraph.start();
    paragraph.place(BreakKind::Space, {20, 0, 0}, {23, 0, 0});
    paragraph.place(BreakKind::Space, {323, 0, 0}, {326, 0, 0});
    paragraph.place(BreakKind::End, {340, 0, 0}, {340, 0, 0});
    for (const LineFilling filling : {LineFilling::Ragged, LineFilling::Justified}) {
        BreakingRules rules;
        rules.filling = filling;
        EXPECT_EQ(breakAll(paragraph, 100, rules), (std::vector<uint32_t>{1, 2, 3}));
    }
}

TEST(LineBreaking, NoMoreHyphensBelowEachOtherThanTheLadderAllows) {
    std::mt19937 random(3);
    for (int round = 0; round < 200; ++round) {
        const Paragraph paragraph = randomParagraph(random);
        BreakingRules rules;
        rules.ladderLimit = 1;
        rules.hyphenWeight = 0;
        const auto ends = breakAll(paragraph, 60, rules);
        for (size_t i = 1; i < ends.size(); ++i)
            EXPECT_FALSE(paragraph.places[ends[i]].kind == BreakKind::Hyphen &&
                         paragraph.places[ends[i - 1]].kind == BreakKind::Hyphen);
    }
}

TEST(LineBreaking, ManyHyphensCostMoreWithAHeavierHyphen) {
    std::mt19937 random(5);
    int light = 0, heavy = 0;
    for (int round = 0; round < 100; ++round) {
        const Paragraph paragraph = randomParagraph(random);
        for (const double weight : {0.0, 10.0}) {
            BreakingRules rules;
            rules.hyphenWeight = weight;
            for (const uint32_t end : breakAll(paragraph, 90, rules))
                (weight == 0 ? light : heavy) += paragraph.places[end].kind == BreakKind::Hyphen;
        }
    }
    EXPECT_LT(heavy, light / 2);
}

TEST(LineBreaking, LineByLineTakesTheLastPlaceThatFits) {
    Paragraph paragraph;
    paragraph.start();
    for (int i = 0; i < 6; ++i) {
        const double end = 30.0 * (i + 1) + 3 * i;
        paragraph.place(i == 5 ? BreakKind::End : BreakKind::Space, {end, 0, 0}, {end + 3, 0, 0});
    }
    const double measure = 100;
    std::vector<uint32_t> ends;
    LineBreaker().breakLineByLine(paragraph.places, {&measure, 1}, {}, nullptr, ends);
    EXPECT_EQ(ends, (std::vector<uint32_t>{3, 6}));
}

TEST(LineBreaking, LineByLineLeavesHyphensThatTheLadderForbids) {
    std::mt19937 random(11);
    for (int round = 0; round < 100; ++round) {
        const Paragraph paragraph = randomParagraph(random);
        BreakingRules rules;
        rules.ladderLimit = 1;
        const double measure = 70;
        std::vector<uint32_t> ends;
        LineBreaker().breakLineByLine(paragraph.places, {&measure, 1}, rules, nullptr, ends);
        ASSERT_EQ(ends.back(), paragraph.places.size() - 1);
        for (size_t i = 1; i < ends.size(); ++i)
            EXPECT_FALSE(paragraph.places[ends[i]].kind == BreakKind::Hyphen &&
                         paragraph.places[ends[i - 1]].kind == BreakKind::Hyphen);
    }
}

}  // namespace
}  // namespace desk
