#include "companion/report.h"

#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

namespace companion {

using nlohmann::ordered_json;

namespace {

constexpr int indentation = 2;

std::string textOf(const ordered_json& value) {
    return value.dump(indentation, ' ', false, ordered_json::error_handler_t::replace);
}

ordered_json told(const ProblemPage& problem) {
    ordered_json told = {{"kind", problem.kind},
                         {"page", problem.page},
                         {"record", problem.record},
                         {"frame", problem.frame},
                         {"story", problem.story}};
    if (!problem.column.empty()) {
        told["column"] = problem.column;
        told["file"] = problem.file;
        if (!problem.reason.empty()) told["reason"] = problem.reason;
    }
    return told;
}

void appendIndented(std::string& text, std::string_view lines) {
    for (const char character : lines) {
        text += character;
        if (character == '\n') text.append(std::size_t{2} * indentation, ' ');
    }
}

/// One after the other: as one tree, the problems of a run in which every picture is missing take ten times their text.
void appendProblems(std::string& text, const std::vector<ProblemPage>& problems) {
    text += "[";
    const char* separator = "\n    ";
    for (const ProblemPage& problem : problems) {
        text += std::exchange(separator, ",\n    ");
        appendIndented(text, textOf(told(problem)));
    }
    text += problems.empty() ? "]" : "\n  ]";
}

}  // namespace

std::string reportText(const MergeOptions& options, const RunResult& result) {
    ordered_json fonts = ordered_json::array();
    for (auto& [asked, used] : result.replacedFonts) fonts.push_back({{"asked", asked}, {"used", used}});
    std::string text = textOf({{"template", options.openTemplate.path},
                               {"data", options.dataPath},
                               {"output", options.outputPath},
                               {"records", result.records},
                               {"pages", result.pages},
                               {"pageSets", result.pageSets}});
    const std::string behind = textOf({{"warnings", result.warnings},
                                       {"missingFonts", std::move(fonts)},
                                       {"missingCharacters", result.missingCharacters}});
    constexpr std::size_t end = 2;  // "\n}" of the one and "{\n" of the other
    text.resize(text.size() - end);
    text += ",\n  \"problems\": ";
    appendProblems(text, result.problems);
    text.append(",\n").append(behind, end).append("\n");
    return text;
}

}  // namespace companion
