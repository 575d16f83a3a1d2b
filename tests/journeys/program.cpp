#include "journeys/program.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>

namespace journeys {

namespace fs = std::filesystem;

namespace {

std::string bytesOf(const fs::path& file) {
    std::ostringstream bytes;
    bytes << std::ifstream(file, std::ios::binary).rdbuf();
    return bytes.str();
}

fs::path newFolder(const char* kind) {
    std::string pattern = fs::temp_directory_path() / (std::string("vornaset-") + kind + "-XXXXXX");
    if (!::mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
    return pattern;
}

}  // namespace

Journey::Journey() : folder_(newFolder("journey")) {
    ::setenv("VORNASET", VORNASET_BUILD_DIR "/vornaset", 1);
    ::setenv("SAMPLES", VORNASET_SAMPLES_DIR, 1);
    ::setenv("LC_ALL", "C.UTF-8", 1);
}

Journey::~Journey() {
    if (hasDisk_) run("umount disk");
    fs::remove_all(folder_);
}

bool Journey::mountDisk(const std::string& size) {
    output("mkdir disk");
    hasDisk_ = run("mount -t tmpfs -o size=" + size + " tmpfs disk").status == 0;
    return hasDisk_;
}

Outcome Journey::run(const std::string& command) const {
    fs::path told = newFolder("told");
    std::string line = "cd '" + folder_.string() + "' && ( " + command + "\n) >'" + (told / "output").string() +
                       "' 2>'" + (told / "errors").string() + "' </dev/null";
    int ended = std::system(line.c_str());
    Outcome outcome;
    outcome.status = WIFEXITED(ended) ? WEXITSTATUS(ended) : 128 + WTERMSIG(ended);
    outcome.output = bytesOf(told / "output");
    outcome.errors = bytesOf(told / "errors");
    fs::remove_all(told);
    return outcome;
}

std::string Journey::output(const std::string& command) const {
    Outcome outcome = run(command);
    EXPECT_EQ(outcome.status, 0) << command << "\n" << outcome.errors;
    return outcome.output;
}

void Journey::write(const std::string& name, const std::string& bytes) const {
    std::ofstream(path(name), std::ios::binary) << bytes;
}

std::string Journey::contents(const std::string& name) const {
    return bytesOf(path(name));
}

std::string Journey::names() const {
    std::set<std::string> sorted;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder_)) sorted.insert(entry.path().filename());
    std::string all;
    for (const std::string& name : sorted) all += (all.empty() ? "" : " ") + name;
    return all;
}

void Journey::makeTemplate(const std::string& name, const std::string& member, const std::string& text,
                           const std::string& replacement, const std::string& from) const {
    fs::path package = newFolder("package");
    output("cd '" + package.string() + "' && unzip -q '" + VORNASET_SAMPLES_DIR "/" + from + "'");
    std::string bytes = bytesOf(package / member);
    ASSERT_NE(bytes.find(text), std::string::npos) << member << " has no " << text;
    for (std::size_t at = 0; (at = bytes.find(text, at)) != std::string::npos; at += replacement.size())
        bytes.replace(at, text.size(), replacement);
    std::ofstream(package / member, std::ios::binary) << bytes;
    output("target=\"$PWD/" + name + "\"; cd '" + package.string() +
           "' && zip -q -0 -X \"$target\" mimetype && zip -q -X -r \"$target\" . -x mimetype");
    fs::remove_all(package);
}

void Journey::expectFailure(const std::string& command, int status, const std::string& sentence,
                            const std::string& namesAfter) const {
    Outcome outcome = run(command);
    EXPECT_EQ(outcome.status, status) << command;
    EXPECT_EQ(outcome.errors, "vornaset: " + sentence + "\n") << command;
    EXPECT_EQ(outcome.output, "") << command;
    EXPECT_EQ(names(), namesAfter) << command;
}

}  // namespace journeys
