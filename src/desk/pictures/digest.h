#pragma once
// A short name for a run of bytes.

#include <cstddef>
#include <cstdint>
#include <string>

namespace desk {

/// Own 128-bit digest of a run of bytes, the same however the run is cut. Not for secrets.
class Digest {
  public:
    void add(const char* bytes, size_t count);
    void add(uint64_t word) { add(reinterpret_cast<const char*>(&word), sizeof word); }
    /// Sixteen bytes.
    std::string value() const;

  private:
    void mix(uint64_t word);

    uint64_t first_ = 0x9E3779B97F4A7C15u;
    uint64_t second_ = 0xC2B2AE3D27D4EB4Fu;
    uint64_t length_ = 0;
    unsigned char waiting_[8] = {};
    size_t waitingCount_ = 0;
};

}  // namespace desk
