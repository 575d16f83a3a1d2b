#include "companion/report.h"

#include <nlohmann/json.hpp>

namespace companion {

using nlohmann::ordered_json;

std::string reportText(const MergeOptions& options, const RunResult& result) {
    ordered_json problems = ordered_json::array();
    for (const ProblemPage& problem : result.problems) {
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
        problems.push_back(std::move(told));
    }
    ordered_json fonts = ordered_json::array();
    for (auto& [asked, used] : result.replacedFonts) fonts.push_back({{"asked", asked}, {"used", used}});
    ordered_json report = {{"template", options.openTemplate.path},
                           {"data", options.dataPath},
                           {"output", options.outputPath},
                           {"records", result.records},
                           {"pages", result.pages},
                           {"pageSets", result.pageSets},
                           {"problems", std::move(problems)},
                           {"warnings", result.warnings},
                           {"missingFonts", std::move(fonts)},
                           {"missingCharacters", result.missingCharacters}};
    return report.dump(2, ' ', false, ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace companion
