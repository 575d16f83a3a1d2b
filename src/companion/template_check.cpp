#include "companion/template_check.h"

#include <algorithm>
#include <set>

namespace companion {
namespace {

class Check {
  public:
    Check(const TemplateFacts& facts, const DataTable& table, const std::vector<MappingRule>& rules)
        : facts_(facts), table_(table), rules_(rules) {}

    TemplateCheck run() {
        for (const StoryFacts& story : facts_.stories) checkStory(story);
        for (const FrameFacts& frame : facts_.frames) checkImageColumn(frame);
        for (const MappingRule& rule : rules_)
            if (!table_.columnNamed(rule.contentOf)) result_.unfedRules.push_back(rule.name);
        checkColumns();
        checkStyles();
        result_.missingFonts = facts_.replacedFonts;
        return std::move(result_);
    }

  private:
    void checkStory(const StoryFacts& story) {
        if (story.placeholders.empty() || story.firstFrame == 0) return;
        if (story.number < 1) {
            result_.unnumberedStories.push_back(story.name);
            return;
        }
        for (const FoundPlaceholder& placeholder : story.placeholders) {
            if (isAnswered(placeholder.column) || placeholder.mayBePunctuation) continue;
            noteUnanswered(placeholder.column, story.name);
        }
    }

    bool isAnswered(const std::string& name) {
        if (table_.columnNamed(name)) {
            used_.insert(name);
            return true;
        }
        bool isAnsweredByRule = false;
        for (const MappingRule& rule : rules_) {
            if (rule.name != name) continue;
            used_.insert(rule.contentOf);
            isAnsweredByRule = true;
        }
        return isAnsweredByRule;
    }

    void noteUnanswered(const std::string& column, const std::string& story) {
        auto known = std::find_if(result_.unanswered.begin(), result_.unanswered.end(),
                                  [&](const UnansweredPlaceholder& one) { return one.column == column; });
        if (known == result_.unanswered.end())
            result_.unanswered.push_back({column, {story}});
        else if (known->stories.back() != story)
            known->stories.push_back(story);
    }

    void checkImageColumn(const FrameFacts& frame) {
        if (frame.number < 1 || frame.column.empty()) return;
        if (table_.columnNamed(frame.column))
            used_.insert(frame.column);
        else
            result_.missingImageColumns.emplace_back(frame.column, frame.name);
    }

    /// A column "#x" is used where x is, by a column or by a rule of that name.
    void checkColumns() {
        std::set<std::string> asked;
        for (const StoryFacts& story : facts_.stories)
            if (story.number >= 1)
                for (const FoundPlaceholder& placeholder : story.placeholders) asked.insert(placeholder.column);
        for (const std::string& column : table_.columns()) {
            bool isUsed =
                column.empty() || used_.count(column) || (column.front() == '#' && asked.count(column.substr(1)));
            if (!isUsed) result_.unusedColumns.push_back(column);
        }
    }

    void checkStyles() {
        std::set<std::string> known(facts_.characterStyles.begin(), facts_.characterStyles.end());
        std::vector<ScannedCell> found;
        for (std::size_t column = 0; column < table_.columns().size(); ++column) {
            if (!table_.columns()[column].starts_with('#')) continue;
            for (std::size_t row = 0; row < table_.rowCount(); ++row) {
                found.clear();
                if (table_.rawCell(row, column, found).content.empty()) continue;
                std::string style = table_.cell(row, column);
                if (known.insert(style).second) result_.missingStyles.emplace_back(style, row + 1);
            }
        }
    }

    const TemplateFacts& facts_;
    const DataTable& table_;
    const std::vector<MappingRule>& rules_;
    std::set<std::string> used_;
    TemplateCheck result_;
};

std::string quoted(const std::string& name) {
    return "\"" + name + "\"";
}

std::string joined(const std::vector<std::string>& parts) {
    std::string text;
    for (const std::string& part : parts) text += (text.empty() ? "" : ", ") + part;
    return text;
}

}  // namespace

bool TemplateCheck::isGood() const {
    return unanswered.empty() && missingImageColumns.empty() && unfedRules.empty() && missingFonts.empty() &&
           missingStyles.empty() && unnumberedStories.empty();
}

TemplateCheck checkTemplate(const TemplateFacts& facts, const DataTable& table, const std::vector<MappingRule>& rules) {
    return Check(facts, table, rules).run();
}

std::string textOfCheck(const TemplateCheck& check) {
    std::string text;
    for (const UnansweredPlaceholder& one : check.unanswered)
        text +=
            "placeholder <<" + one.column + ">>: no column or rule answers it (story " + joined(one.stories) + ")\n";
    for (const std::string& story : check.unnumberedStories)
        text += "story " + story +
                ": has placeholders, but its first frame has no number; they are printed as they stand\n";
    for (auto& [column, frame] : check.missingImageColumns)
        text += "frame " + frame + ": takes its picture from the column " + quoted(column) + ", which the data lack\n";
    for (const std::string& rule : check.unfedRules)
        text += "rule " + quoted(rule) + ": the column that feeds it isn't in the data\n";
    for (const std::string& column : check.unusedColumns) text += "column " + quoted(column) + ": nothing uses it\n";
    for (const ReplacedFont& font : check.missingFonts)
        text += "font " + font.asked + ": not on this machine, " + font.used + " stands in\n";
    for (auto& [style, record] : check.missingStyles)
        text += "character style \"" + style + "\": the template lacks it (first in record " + std::to_string(record) +
                ")\n";
    return text.empty() ? "Template and data fit together.\n" : text;
}

}  // namespace companion
