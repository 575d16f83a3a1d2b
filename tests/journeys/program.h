#pragma once
// Runs the program as a user does, in a folder of its own, and reads its results with other people's tools.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace journeys {

/// What a command left behind.
struct Outcome {
    int status = -1;  ///< exit status; 128 and the number for an end by a signal
    std::string output;
    std::string errors;
};

/// A folder that goes with the test, holding nothing but what the test puts there. Commands run in it, by /bin/sh, and
/// find the program as $VORNASET and the samples as $SAMPLES.
class Journey : public testing::Test {
  protected:
    Journey();
    ~Journey() override;

    Outcome run(const std::string& command) const;
    /// The same, and the test fails here unless the status is 0.
    std::string output(const std::string& command) const;

    std::filesystem::path path(const std::string& name) const { return folder_ / name; }
    void write(const std::string& name, const std::string& bytes) const;
    std::string contents(const std::string& name) const;
    bool exists(const std::string& name) const { return std::filesystem::exists(path(name)); }
    /// All names in the folder, sorted, with blanks between.
    std::string names() const;

    /// Puts an empty disk of that size ("64k") at the new folder "disk" until the test ends. False where the machine
    /// doesn't allow it.
    bool mountDisk(const std::string& size);

    /// Copies letter.idml to a template of another name with one text of one member replaced everywhere. Fails the test
    /// when the text isn't there. The text and its replacement are XML.
    void makeTemplate(const std::string& name, const std::string& member, const std::string& text,
                      const std::string& replacement, const std::string& from = "letter.idml") const;

    /// The program says `sentence` and nothing else on standard error, ends with the status and leaves these names.
    void expectFailure(const std::string& command, int status, const std::string& sentence,
                       const std::string& namesAfter) const;

    std::filesystem::path folder_;

  private:
    bool hasDisk_ = false;
};

}  // namespace journeys
