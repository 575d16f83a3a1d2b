#include "desk/fonts/font_index.h"

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <tuple>

#include "desk/fonts/limits.h"
#include "desk/model/document.h"

namespace desk {

namespace {

struct FontconfigRelease {
    void operator()(FcConfig* object) const { FcConfigDestroy(object); }
    void operator()(FcFontSet* object) const { FcFontSetDestroy(object); }
    void operator()(FcPattern* object) const { FcPatternDestroy(object); }
    void operator()(FcObjectSet* object) const { FcObjectSetDestroy(object); }
};

template <class T>
using FontconfigPointer = std::unique_ptr<T, FontconfigRelease>;

using Records = std::vector<std::unique_ptr<FontRecord>>;

std::vector<std::string> stringsOf(FcPattern* pattern, const char* object) {
    std::vector<std::string> strings;
    FcChar8* value = nullptr;
    for (int i = 0; FcPatternGetString(pattern, object, i, &value) == FcResultMatch; ++i) {
        std::string text(reinterpret_cast<const char*>(value));
        if (std::find(strings.begin(), strings.end(), text) == strings.end()) strings.push_back(std::move(text));
    }
    return strings;
}

int integerOf(FcPattern* pattern, const char* object, int otherwise) {
    int value = otherwise;
    return FcPatternGetInteger(pattern, object, 0, &value) == FcResultMatch ? value : otherwise;
}

bool isSet(FcPattern* pattern, const char* object) {
    FcBool value = FcFalse;
    return FcPatternGetBool(pattern, object, 0, &value) == FcResultMatch && value == FcTrue;
}

// Names say more than numbers do ("Book" is often 350 or 450), and numbers more than nothing.
StyleTraits traitsOf(FcPattern* pattern, const std::string& style) {
    StyleTraits traits = parseStyle(style);
    const StyleTraits plain;
    if (traits == plain && nameKey(style) != "regular") {
        const int weight = static_cast<int>(FcWeightToOpenTypeDouble(integerOf(pattern, FC_WEIGHT, FC_WEIGHT_REGULAR)));
        if (weight > 0) traits.weight = weight;
    }
    if (integerOf(pattern, FC_SLANT, FC_SLANT_ROMAN) != FC_SLANT_ROMAN) traits.italic = true;
    if (traits.width == 100) traits.width = integerOf(pattern, FC_WIDTH, FC_WIDTH_NORMAL);
    return traits;
}

/// Null for what can't be shaped and embedded: bitmaps, Type 1, and the settings of a variable font other than its own
/// default.
std::unique_ptr<FontRecord> recordOf(FcPattern* pattern) {
    const std::vector<std::string> format = stringsOf(pattern, FC_FONTFORMAT), file = stringsOf(pattern, FC_FILE);
    if (file.empty() || format.empty() || (format[0] != "TrueType" && format[0] != "CFF")) return nullptr;
    const int index = integerOf(pattern, FC_INDEX, 0);
    if (index < 0 || index > 0xFFFF || isSet(pattern, FC_VARIABLE) || !isSet(pattern, FC_OUTLINE)) return nullptr;
    auto record = std::make_unique<FontRecord>();
    record->file = file[0];
    record->faceOfFile = static_cast<unsigned>(index);
    record->families = stringsOf(pattern, FC_FAMILY);
    record->styles = stringsOf(pattern, FC_STYLE);
    record->fullNames = stringsOf(pattern, FC_FULLNAME);
    if (record->families.empty()) return nullptr;
    if (record->styles.empty()) record->styles.push_back("Regular");
    const std::vector<std::string> names = stringsOf(pattern, FC_POSTSCRIPT_NAME);
    record->postScriptName = names.empty() ? nameKey(record->families[0]) : names[0];
    record->traits = traitsOf(pattern, record->styles[0]);
    const int spacing = integerOf(pattern, FC_SPACING, FC_PROPORTIONAL);
    record->fontClass = spacing == FC_MONO ? FontClass::Monospaced : guessClass(record->families[0]);
    FcCharSet* characters = nullptr;
    if (FcPatternGetCharSet(pattern, FC_CHARSET, 0, &characters) == FcResultMatch) record->characters = characters;
    return record;
}

Records recordsOf(FcFontSet* set) {
    Records records;
    for (int i = 0; set != nullptr && i < set->nfont; ++i) {
        if (auto record = recordOf(set->fonts[i])) records.push_back(std::move(record));
    }
    std::sort(records.begin(), records.end(), [](const auto& left, const auto& right) {
        return std::tie(left->file, left->faceOfFile) < std::tie(right->file, right->faceOfFile);
    });
    return records;
}

bool isFontFileName(const std::filesystem::path& path) {
    const std::string extension = nameKey(path.extension().string());
    return extension == ".ttf" || extension == ".otf" || extension == ".ttc" || extension == ".otc" ||
           extension == ".woff" || extension == ".woff2";
}

std::vector<std::string> fontFilesIn(const std::string& folder) {
    namespace fs = std::filesystem;
    std::error_code error;
    fs::recursive_directory_iterator at(
        folder, fs::directory_options::follow_directory_symlink | fs::directory_options::skip_permission_denied, error);
    if (error || !fs::is_directory(folder)) {
        throw InputError("The font folder \"" + folder + "\" can't be read (" +
                         (error ? error.message() : "it isn't a folder") + "); name a folder that holds font files.");
    }
    std::vector<std::string> files;
    for (const fs::recursive_directory_iterator end; at != end; at.increment(error)) {
        if (error) break;
        std::error_code ignored;
        if (at->is_directory(ignored)) {
            if (at.depth() + 1 >= font_limits::kFolderDepth) at.disable_recursion_pending();
        } else if (isFontFileName(at->path()) && at->is_regular_file(ignored) &&
                   at->file_size(ignored) <= font_limits::kFileBytes) {
            files.push_back(at->path().string());
        }
    }
    std::sort(files.begin(), files.end());
    if (files.size() > font_limits::kFilesInFolder) files.resize(font_limits::kFilesInFolder);
    return files;
}

const std::vector<const FontRecord*>& found(
    const std::unordered_map<std::string, std::vector<const FontRecord*>>& names, const std::string& key) {
    static const std::vector<const FontRecord*> none;
    const auto entry = names.find(key);
    return entry == names.end() ? none : entry->second;
}

}  // namespace

/// Character sets belong to the lists they came from.
struct FontIndex::Sources {
    FontconfigPointer<FcConfig> config;
    std::vector<FontconfigPointer<FcFontSet>> sets;
};

bool FontRecord::hasCharacter(uint32_t codePoint) const {
    return characters != nullptr && FcCharSetHasChar(static_cast<const FcCharSet*>(characters), codePoint) == FcTrue;
}

FontIndex::FontIndex() : sources_(std::make_unique<Sources>()) {}
FontIndex::~FontIndex() = default;

void FontIndex::addMachineFonts() {
    sources_->config.reset(FcInitLoadConfigAndFonts());
    if (!sources_->config) return;
    FontconfigPointer<FcPattern> any(FcPatternCreate());
    FcPatternAddBool(any.get(), FC_OUTLINE, FcTrue);
    FontconfigPointer<FcObjectSet> objects(FcObjectSetBuild(
        FC_FILE, FC_INDEX, FC_FAMILY, FC_STYLE, FC_FULLNAME, FC_POSTSCRIPT_NAME, FC_WEIGHT, FC_WIDTH, FC_SLANT,
        FC_SPACING, FC_CHARSET, FC_FONTFORMAT, FC_OUTLINE, FC_VARIABLE, static_cast<char*>(nullptr)));
    FontconfigPointer<FcFontSet> set(FcFontList(sources_->config.get(), any.get(), objects.get()));
    Records records = recordsOf(set.get());
    sources_->sets.push_back(std::move(set));
    insert(std::move(records), records_.size());
}

void FontIndex::addFolder(const std::string& folder) {
    FontconfigPointer<FcFontSet> set(FcFontSetCreate());
    for (const std::string& file : fontFilesIn(folder)) {
        int count = 0;
        FcFreeTypeQueryAll(reinterpret_cast<const FcChar8*>(file.c_str()), static_cast<unsigned>(-1), nullptr, &count,
                           set.get());
    }
    Records records = recordsOf(set.get());
    sources_->sets.push_back(std::move(set));
    const size_t added = records.size();
    insert(std::move(records), privateCount_);
    privateCount_ += added;
}

void FontIndex::insert(Records records, size_t position) {
    records_.insert(records_.begin() + static_cast<std::ptrdiff_t>(position), std::make_move_iterator(records.begin()),
                    std::make_move_iterator(records.end()));
    indexNames();
}

void FontIndex::indexNames() {
    families_.clear();
    fullNames_.clear();
    const auto add = [](auto& names, const std::string& name, const FontRecord* record) {
        auto& entry = names[nameKey(name)];
        if (entry.empty() || entry.back() != record) entry.push_back(record);
    };
    for (const auto& record : records_) {
        for (const std::string& family : record->families) add(families_, family, record.get());
        for (const std::string& name : record->fullNames) add(fullNames_, name, record.get());
        add(fullNames_, record->postScriptName, record.get());
    }
}

const std::vector<const FontRecord*>& FontIndex::family(const std::string& key) const {
    return found(families_, key);
}
const std::vector<const FontRecord*>& FontIndex::fullName(const std::string& key) const {
    return found(fullNames_, key);
}

}  // namespace desk
