#pragma once
// Which faces there are, without opening them. Inner header of this folder.

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "desk/fonts/font_names.h"

namespace desk {

/// A face as the font list describes it. The first family and style are the typographic ones; the others are those of
/// old programs, with four styles a family, and translations.
struct FontRecord {
    std::string file;
    unsigned faceOfFile = 0;
    std::vector<std::string> families, styles, fullNames;
    std::string postScriptName;
    StyleTraits traits;
    FontClass fontClass = FontClass::Sans;
    const void* characters = nullptr;  ///< the character set, kept alive by the index

    bool hasCharacter(uint32_t codePoint) const;
};

class FontIndex {
  public:
    FontIndex();
    ~FontIndex();

    /// Lists the fonts of the machine, behind what is there.
    void addMachineFonts();
    /// Adds the fonts of a folder and the folders in it, behind the folders added before and before the machine's
    /// fonts. Files that aren't fonts are passed over. Throws InputError for a folder that can't be read.
    void addFolder(const std::string& folder);

    /// All faces, the private ones first; otherwise by file.
    const std::vector<std::unique_ptr<FontRecord>>& records() const { return records_; }

    /// Faces of a family by the key of any of its names; empty when there is none.
    const std::vector<const FontRecord*>& family(const std::string& key) const;
    /// Faces by the key of a full name or a PostScript name.
    const std::vector<const FontRecord*>& fullName(const std::string& key) const;

  private:
    struct Sources;
    void insert(std::vector<std::unique_ptr<FontRecord>> records, size_t position);
    void indexNames();

    std::unique_ptr<Sources> sources_;
    std::vector<std::unique_ptr<FontRecord>> records_;
    size_t privateCount_ = 0;
    std::unordered_map<std::string, std::vector<const FontRecord*>> families_, fullNames_;
};

}  // namespace desk
