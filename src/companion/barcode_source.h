#pragma once

#include <functional>
#include <memory>
#include <string>

#include "companion/limits.h"

namespace companion {

/// Barcodes for the time of a run: by the shipped tool, inside this process, or by another program, started for each
/// code. A code that would name a file outside of the run's temporary folder gets no barcode.
class BarcodeSource {
  public:
    /// `tool` is the path of a program, absolute or from the working folder of this moment; empty for the shipped tool.
    /// While the program draws, `isToStop` is asked whether somebody wants the run to end; then the program is killed
    /// and gives nothing. Throws Error for a path at which there is no program.
    BarcodeSource(const std::string& tool, std::function<bool()> isToStop, const BarcodeLimits& limits = {});
    ~BarcodeSource();
    BarcodeSource(const BarcodeSource&) = delete;
    BarcodeSource& operator=(const BarcodeSource&) = delete;

    /// What a merge job names as its barcode program.
    const std::string& name() const { return name_; }
    /// Why the run had to end: a sentence; empty when nothing was wrong with the program.
    const std::string& failure() const { return notes_->failure; }
    /// Why the slot of the cell that was looked at last has no picture: a sentence.
    std::string whyNone(const std::string& cell) const;

  private:
    /// What is noted while codes are drawn.
    struct Notes {
        std::string failure;
        std::string code;    ///< the last one
        std::string reason;  ///< why there is no symbol of it; empty when there is
    };
    void registerShippedTool();
    void registerProgram(const std::string& tool, std::function<bool()> isToStop, const BarcodeLimits& limits);

    std::string name_;
    std::shared_ptr<Notes> notes_ = std::make_shared<Notes>();
};

/// False for what can't be a file's name in a folder: empty, with a slash or a zero byte, "..", or too long with ".pdf"
/// behind it.
bool isFileName(const std::string& code);

}  // namespace companion
