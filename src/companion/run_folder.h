#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace companion {

/// A temporary folder for one run, which is the temporary folder of this process (support/paths.h) and of the programs
/// that it starts (TMPDIR) as long as the object lives and is gone afterwards. It stands in the folder that TMPDIR
/// names, else in memory where the machine has a file system for that (a run may write a small file for every record),
/// else in the user's temporary folder. A run that was killed leaves its folder there, and the next run takes it away.
class RunFolder {
  public:
    /// Throws Error.
    RunFolder();
    ~RunFolder();
    RunFolder(const RunFolder&) = delete;
    RunFolder& operator=(const RunFolder&) = delete;

    /// Without slash at the end.
    const std::string& path() const { return path_; }
    /// Removes the files in the folder. Costs next to nothing when none came since the last time.
    void clear();

  private:
    std::string path_;
    std::optional<std::string> formerTmpdir_;
    int descriptor_ = -1;        ///< of the folder; it carries the lock that says that the run is alive
    std::int64_t changed_ = -1;  ///< when the folder last changed, as clear() left it, in nanoseconds
};

/// The process's working folder for the time of a scope. Relative paths of pictures begin there.
class WorkingFolder {
  public:
    /// Throws Error when there is no such folder.
    explicit WorkingFolder(const std::string& path);
    ~WorkingFolder();
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;

  private:
    int former_ = -1;
};

}  // namespace companion
