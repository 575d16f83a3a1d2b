#pragma once
// What the library's log says for a while, without a file.

#include <gtest/gtest.h>

#include <string>

#include "support/log.h"

/// Takes the lines of the log off standard output; the time and the name before each text are cut away.
class CapturedLog {
  public:
    CapturedLog() {
        vornaset::setLogging(1, 1);
        ::testing::internal::CaptureStdout();
    }
    ~CapturedLog() {
        if (isCapturing_) ::testing::internal::GetCapturedStdout();
        vornaset::setLogging(0, 0);
    }
    CapturedLog(const CapturedLog&) = delete;
    CapturedLog& operator=(const CapturedLog&) = delete;

    /// The texts so far, a line each. May be asked once.
    std::string texts() {
        isCapturing_ = false;
        const std::string all = ::testing::internal::GetCapturedStdout();
        std::string texts;
        size_t begin = 0;
        while (begin < all.size()) {
            const size_t end = all.find('\n', begin);
            const std::string line = all.substr(begin, end - begin);
            const size_t mark = line.find("::");
            texts += (mark == std::string::npos ? line : line.substr(mark + 2)) + "\n";
            if (end == std::string::npos) break;
            begin = end + 1;
        }
        return texts;
    }

  private:
    bool isCapturing_ = true;
};
