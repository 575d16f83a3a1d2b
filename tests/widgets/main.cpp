// The tests' own start: one window system for all of them, drawn into memory.

#include <gtest/gtest.h>

#include <QtCore/QCoreApplication>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <optional>
#include <string_view>

#include "widgets/window_system.h"

namespace {

class Windows : public testing::Environment {
  public:
    Windows(int& argumentCount, char** arguments) : argumentCount_(argumentCount), arguments_(arguments) {}
    void SetUp() override { system_ = std::make_unique<vornaset::WindowSystem>(argumentCount_, arguments_); }
    void TearDown() override { system_.reset(); }

  private:
    int& argumentCount_;
    char** arguments_;
    std::unique_ptr<vornaset::WindowSystem> system_;
};

/// What a test starts as a process of its own: sets up windows where there can be none, and prints what came of it.
int setUpWindowsInVain(int argumentCount, char** arguments, bool hasPlainApplication) {
    std::optional<QCoreApplication> plain;
    if (hasPlainApplication) plain.emplace(argumentCount, arguments);
    try {
        std::puts(vornaset::WindowSystem::isThere() ? "there" : "not there");
        const vornaset::WindowSystem system(argumentCount, arguments);
        std::puts("set up");
    } catch (const std::exception& failure) {
        std::puts(failure.what());
    }
    return 0;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    const std::string_view first = argumentCount > 1 ? arguments[1] : "";
    if (first == "--without-windows") return setUpWindowsInVain(argumentCount, arguments, false);
    if (first == "--plain-application") return setUpWindowsInVain(argumentCount, arguments, true);
    testing::InitGoogleTest(&argumentCount, arguments);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    testing::AddGlobalTestEnvironment(new Windows(argumentCount, arguments));
    return RUN_ALL_TESTS();
}
