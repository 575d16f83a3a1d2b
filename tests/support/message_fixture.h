#pragma once
// A library that starts fresh for one test and is put back behind it: no bundle, no table, a presenter that takes
// notes.

#include <gtest/gtest.h>

#include <cstdlib>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "support/alert.h"
#include "support/messages.h"
#include "support/scratch_folder.h"
#include "support/string_tables.h"

namespace vornaset {

/// Notes what is shown and answers from a list; the default button when the list is empty.
class NotingPresenter : public AlertPresenter {
  public:
    void prepare() override { ++prepared; }
    void activateApplication(const String& identifier) override { steps.push_back("activate " + identifier.utf8()); }
    void beep() override { steps.emplace_back("beep"); }
    AlertAnswer run(const Alert& alert) override {
        steps.emplace_back("run");
        secondTextDuringRun = gMsg2;
        alerts.push_back(alert);
        if (answers.empty()) return AlertAnswer::defaultButton;
        const AlertAnswer answer = answers.front();
        answers.pop_front();
        return answer;
    }

    int prepared = 0;
    std::vector<std::string> steps;
    std::vector<Alert> alerts;
    std::deque<AlertAnswer> answers;
    String secondTextDuringRun;
};

class MessageFixture : public testing::Test {
  protected:
    void SetUp() override {
        presenterBefore_ = setAlertPresenter(presenter_);
        bundleBefore_ = gBundle;
        stringsBefore_ = gStrings;
        foldersBefore_ = setBundleFolders({});
        gBundle = nullptr;
        gStrings = nullptr;
        gMsg2 = nullptr;
        gSilent = 0;
        for (const char* name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) setEnvironment(name, nullptr);
    }
    void TearDown() override {
        setAlertPresenter(presenterBefore_);
        gBundle = bundleBefore_;
        gStrings = stringsBefore_;
        setBundleFolders(foldersBefore_);
        gMsg2 = nullptr;
        gSilent = 0;
        for (const auto& [name, value] : environmentBefore_) {
            if (value) {
                setenv(name.c_str(), value->c_str(), 1);
            } else {
                unsetenv(name.c_str());
            }
        }
    }

    /// Null unsets.
    void setEnvironment(const std::string& name, const char* value) {
        const char* before = std::getenv(name.c_str());
        environmentBefore_.try_emplace(name, before != nullptr ? std::optional<std::string>(before) : std::nullopt);
        if (value != nullptr) {
            setenv(name.c_str(), value, 1);
        } else {
            unsetenv(name.c_str());
        }
    }

    /// Puts a file into the test's own bundle and that bundle in force.
    void addResource(const std::string& name, const std::string& content) {
        const std::string folder = scratch_.path() + "/test.bundle";
        std::filesystem::create_directories(folder);
        writeFile(folder + "/" + name, content);
        gBundle = Bundle::withPath(String::fromUTF8(folder));
    }

    std::shared_ptr<NotingPresenter> presenter_ = std::make_shared<NotingPresenter>();
    ScratchFolder scratch_;

  private:
    std::shared_ptr<AlertPresenter> presenterBefore_;
    Bundle bundleBefore_;
    Dictionary stringsBefore_;
    std::vector<String> foldersBefore_;
    std::map<std::string, std::optional<std::string>> environmentBefore_;
};

}  // namespace vornaset
