#include "desk/pictures/digest.h"

#include <cstring>

namespace desk {
namespace {

uint64_t rotated(uint64_t value, int bits) {
    return value << bits | value >> (64 - bits);
}

}  // namespace

void Digest::mix(uint64_t word) {
    first_ = rotated(first_ ^ word * 0x87C37B91114253D5u, 27) * 5 + second_;
    second_ = rotated(second_ ^ word * 0x4CF5AD432745937Fu, 31) * 9 + first_;
}

void Digest::add(const char* bytes, size_t count) {
    length_ += count;
    while (count > 0 && (waitingCount_ > 0 || count < sizeof waiting_)) {
        waiting_[waitingCount_++] = static_cast<unsigned char>(*bytes++);
        --count;
        if (waitingCount_ < sizeof waiting_) continue;
        uint64_t word;
        std::memcpy(&word, waiting_, sizeof word);
        mix(word);
        waitingCount_ = 0;
    }
    for (; count >= sizeof(uint64_t); bytes += sizeof(uint64_t), count -= sizeof(uint64_t)) {
        uint64_t word;
        std::memcpy(&word, bytes, sizeof word);
        mix(word);
    }
    if (count > 0) std::memcpy(waiting_, bytes, count);
    waitingCount_ += count;
}

std::string Digest::value() const {
    Digest last = *this;
    uint64_t word = 0;
    std::memcpy(&word, waiting_, waitingCount_);
    last.mix(word);
    last.mix(length_);
    last.mix(0);
    last.mix(0);
    std::string bytes(16, '\0');
    std::memcpy(bytes.data(), &last.first_, 8);
    std::memcpy(bytes.data() + 8, &last.second_, 8);
    return bytes;
}

}  // namespace desk
