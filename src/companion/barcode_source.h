#pragma once

#include <cstdint>
#include <string>

namespace companion {

/// Barcodes for the time of a run: by the shipped tool, inside this process, or by another program, started for each
/// code. A code that would name a file outside of the run's temporary folder gets no barcode.
class BarcodeSource {
  public:
    /// `tool` is the path of a program, absolute or from the working folder of this moment; empty for the shipped tool.
    /// Throws Error for a path at which there is no program.
    explicit BarcodeSource(const std::string& tool);
    ~BarcodeSource();
    BarcodeSource(const BarcodeSource&) = delete;
    BarcodeSource& operator=(const BarcodeSource&) = delete;

    /// What a merge job names as its barcode program.
    const std::string& name() const { return name_; }

  private:
    std::string name_;
};

/// False for what can't be a file's name in a folder: empty, with a slash or a zero byte, "..", or too long with ".pdf"
/// behind it.
bool isFileName(const std::string& code);

}  // namespace companion
