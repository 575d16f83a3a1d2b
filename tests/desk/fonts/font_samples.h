#pragma once
// Fonts for the tests: the machine's (fonts-liberation, fonts-dejavu, fonts-urw-base35 belong to the set-up) and the
// two that lie beside the shared sample documents.

#include <filesystem>
#include <string>
#include <vector>

#include "desk/fonts/font_library.h"

namespace desk::samples {

/// The machine's fonts, listed once.
inline FontLibrary& machine() {
    static FontLibrary library;
    return library;
}

/// Empty when the shared folder isn't there.
inline std::string sharedFontFolder() {
    const std::string folder = std::string(VORNASET_SHARED_DIR) + "/samples/idml/fonts";
    return std::filesystem::is_directory(folder) ? folder : std::string();
}

inline std::vector<ShapedGlyph> shape(const FontFace& face, std::u16string_view text,
                                      const std::vector<FontFeature>& features = {}) {
    ShapingRequest request;
    request.text = text;
    request.features = &features;
    std::vector<ShapedGlyph> glyphs;
    face.shape(request, glyphs);
    return glyphs;
}

inline double width(const std::vector<ShapedGlyph>& glyphs) {
    double sum = 0;
    for (const ShapedGlyph& glyph : glyphs) sum += glyph.advance;
    return sum;
}

inline FontFeature feature(const char* tag, uint32_t value) {
    FontFeature result;
    for (int i = 0; i < 4; ++i) result.tag[i] = tag[i];
    result.value = value;
    return result;
}

/// A folder that goes with the object.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "vornaset_fonts_XXXXXX").string();
        path_ = mkdtemp(pattern.data());
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

}  // namespace desk::samples

#define SKIP_WITHOUT_SHARED_FONTS()                \
    if (desk::samples::sharedFontFolder().empty()) \
    GTEST_SKIP() << "The shared sample documents and their fonts aren't here."
