#pragma once

#include <string>
#include <utility>
#include <vector>

#include "support/values.h"

namespace companion {

/// A computed column: where no column has the name, the placeholder shows the value of another column, translated.
struct MappingRule {
    std::string name;
    std::string contentOf;                                          ///< name of the column that feeds it
    std::vector<std::pair<std::string, std::string>> replacements;  ///< value of that column to text, in file order
};

/// Reads a rules file: a JSON array of objects with the texts "name" and "contentOf" and the object "replacements",
/// text to text. Other members are passed over. Throws Error that names the file and the rule (from 1).
std::vector<MappingRule> readRules(const std::string& path);

/// The same from JSON text; `name` is what messages call the file.
std::vector<MappingRule> parseRules(std::string_view json, const std::string& name);

/// The rules as the merge takes them: objects that answer "name", "contentOf" and "replacementsDict".
vornaset::Array ruleObjects(const std::vector<MappingRule>& rules);

}  // namespace companion
