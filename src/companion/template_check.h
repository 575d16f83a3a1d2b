#pragma once

#include <string>
#include <vector>

#include "companion/data_table.h"
#include "companion/mapping_rules.h"
#include "companion/template_facts.h"

namespace companion {

/// A placeholder that nothing answers, and the stories where it stands.
struct UnansweredPlaceholder {
    std::string column;
    std::vector<std::string> stories;
};

/// How a template and its data fit together. Only what differs from a good fit is listed; each list in the order of the
/// template or of the columns.
struct TemplateCheck {
    /// Placeholders in numbered stories for which there is neither column nor rule. The merge prints nothing for them.
    std::vector<UnansweredPlaceholder> unanswered;
    /// Columns that image frames name and the data lack, with the frame.
    std::vector<std::pair<std::string, std::string>> missingImageColumns;
    /// Rules whose "contentOf" names no column, by name.
    std::vector<std::string> unfedRules;
    /// Columns that no placeholder, rule or image frame uses.
    std::vector<std::string> unusedColumns;
    std::vector<ReplacedFont> missingFonts;
    /// Character styles that cells of "#" columns name and the template lacks, each with the first record (from 1).
    std::vector<std::pair<std::string, std::size_t>> missingStyles;
    /// Stories with placeholders whose first frame has no number: they are printed as they stand.
    std::vector<std::string> unnumberedStories;

    /// True when nothing is listed that makes a print wrong; unused columns don't.
    bool isGood() const;
};

TemplateCheck checkTemplate(const TemplateFacts& facts, const DataTable& table, const std::vector<MappingRule>& rules);

/// The check as text for a person, one finding a line.
std::string textOfCheck(const TemplateCheck& check);

/// What `info` prints of a template: pages, frames with their numbers and columns, stories, styles, fonts.
std::string textOfFacts(const TemplateFacts& facts);

}  // namespace companion
