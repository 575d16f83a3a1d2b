#include "companion/report.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <nlohmann/json.hpp>

#include "companion/error.h"

namespace companion {

using nlohmann::ordered_json;

std::string reportText(const MergeOptions& options, const RunResult& result) {
    ordered_json problems = ordered_json::array();
    for (const ProblemPage& problem : result.problems)
        problems.push_back({{"kind", problem.kind},
                            {"page", problem.page},
                            {"record", problem.record},
                            {"frame", problem.frame},
                            {"story", problem.story}});
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

ReportFile::ReportFile(const std::string& path) : path_(path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) fail("is a folder; name a file", 0);
    temporaryPath_ = path + ".XXXXXX";
    descriptor_ = ::mkostemp(temporaryPath_.data(), O_CLOEXEC);
    if (descriptor_ < 0) {
        temporaryPath_.clear();
        fail("can't be written", errno);
    }
    // mkostemp makes files that only the owner reads; the report is an ordinary file.
    mode_t mask = ::umask(0);
    ::umask(mask);
    ::fchmod(descriptor_, 0666 & ~mask);
}

ReportFile::~ReportFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
    if (!temporaryPath_.empty()) ::unlink(temporaryPath_.c_str());
}

void ReportFile::finish(const std::string& text) {
    for (std::size_t done = 0; done < text.size();) {
        ssize_t written = ::write(descriptor_, text.data() + done, text.size() - done);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) fail("can't be written", errno);
        done += static_cast<std::size_t>(written);
    }
    if (::fsync(descriptor_) != 0) fail("can't be written", errno);
    int closed = ::close(descriptor_);
    descriptor_ = -1;
    if (closed != 0) fail("can't be written", errno);
    if (::rename(temporaryPath_.c_str(), path_.c_str()) != 0) fail("can't be written", errno);
    temporaryPath_.clear();
}

void ReportFile::fail(const std::string& what, int reason) {
    throw Error("the report \"" + path_ + "\" " + what + (reason ? std::string(": ") + std::strerror(reason) : "") +
                ".");
}

}  // namespace companion
