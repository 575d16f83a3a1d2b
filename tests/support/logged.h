#pragma once
// What a test's own log holds.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "support/log.h"
#include "support/scratch_folder.h"

namespace vornaset {

/// Turns the log on, in a folder of the test's own, and off again.
class LoggedTest : public testing::Test {
  protected:
    LoggedTest() {
        if (const char* home = std::getenv("HOME")) home_ = home;
        setenv("HOME", folder_.path().c_str(), 1);
        if (const char* config = std::getenv("XDG_CONFIG_HOME")) config_ = config;
        setenv("XDG_CONFIG_HOME", folder_.path().c_str(), 1);
        std::filesystem::create_directories(folder_.path() + "/Documents");
        setupLog(1, 0, nullptr);
        setLogging(1, 0);
    }
    ~LoggedTest() override {
        setLogging(0, 0);
        restore("HOME", home_);
        restore("XDG_CONFIG_HOME", config_);
    }

    /// The texts of the entries since the test began.
    std::vector<std::string> entries() const {
        std::vector<std::string> texts;
        std::istringstream lines(contentOf(getLogPath().utf8()));
        const std::string mark = ": Vornaset::";
        for (std::string line; std::getline(lines, line);) {
            const size_t at = line.find(mark);
            if (at != std::string::npos) texts.push_back(line.substr(at + mark.size()));
        }
        return texts;
    }

  private:
    static void restore(const char* name, const std::string& value) {
        value.empty() ? unsetenv(name) : setenv(name, value.c_str(), 1);
    }

    ScratchFolder folder_;
    std::string home_;
    std::string config_;
};

}  // namespace vornaset
