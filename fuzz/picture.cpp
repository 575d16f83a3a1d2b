// Foreign pictures of every format: reading may refuse with a sentence; what is taken must be writable. SVG and EPS
// are other programs' to read, and are passed over.

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#include "desk/pictures/picture_library.h"

namespace {

/// Checks what every object of a PDF must keep.
class CheckingSink final : public desk::PictureSink {
  public:
    Number allocate() override { return ++last_; }
    void writeObject(Number number, std::string_view) override { take(number); }
    void writeEncodedStream(Number number, std::string_view, std::string_view) override { take(number); }
    void writePlainStream(Number number, std::string_view, std::string_view) override { take(number); }
    Number shared(std::string_view) override { return allocate(); }
    Number sharedStream(std::string_view, std::string_view) override { return allocate(); }
    Number standIn(const desk::AbsentFont& font) override { return font.baseFont.empty() ? 0 : allocate(); }
    Number known(const desk::PictureIdentity&, uint64_t object) override { return known_[object]; }
    void remember(const desk::PictureIdentity&, uint64_t object, Number number) override { known_[object] = number; }
    void addLayer(Number layer, bool) override {
        if (layer == 0 || layer > last_) __builtin_trap();
    }

  private:
    void take(Number number) {
        if (number == 0 || number > last_ || ++written_[number] != 1) __builtin_trap();
    }
    Number last_ = 0;
    std::map<Number, int> written_;
    std::map<uint64_t, Number> known_;
};

bool isForOtherPrograms(const std::string& bytes) {
    return bytes.starts_with("%!") || bytes.starts_with("\xC5\xD0\xD3\xC6") || bytes.find("svg") != std::string::npos;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    auto bytes = std::make_shared<const std::string>(reinterpret_cast<const char*>(data), size);
    if (isForOtherPrograms(*bytes)) return 0;
    desk::PictureLibrary library;
    for (const int page : {1, 2}) {
        const desk::PictureImport import = library.importBytes(bytes, "fuzz", page);
        if (!import) {
            if (import.failure.empty()) __builtin_trap();
            continue;
        }
        if (!(import.picture->width > 0) || !(import.picture->height > 0)) __builtin_trap();
        CheckingSink sink;
        if (import.picture->write(sink) == 0) __builtin_trap();
    }
    return 0;
}
