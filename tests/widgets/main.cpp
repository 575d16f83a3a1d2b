// The tests' own start: one window system for all of them, drawn into memory.

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

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

}  // namespace

int main(int argumentCount, char** arguments) {
    testing::InitGoogleTest(&argumentCount, arguments);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    testing::AddGlobalTestEnvironment(new Windows(argumentCount, arguments));
    return RUN_ALL_TESTS();
}
