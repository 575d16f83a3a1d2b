#include "desk/fonts/font_library.h"

#include <algorithm>
#include <array>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "desk/fonts/font_index.h"
#include "desk/fonts/open_type_face.h"
#include "desk/model/document.h"

namespace desk {

namespace {

enum class Match { Itself, OtherStyle };

struct Choice {
    const FontRecord* record = nullptr;
    Match match = Match::Itself;
};

// The four styles of a family in old programs. Such a program knows the family "Montserrat" with the style "Black" as
// the family "Montserrat Black" with the style "Regular", and files list both pairs of names.
bool isStyleOfOldPrograms(const std::string& key) {
    return key == "regular" || key == "italic" || key == "bold" || key == "bolditalic";
}

/// The style names that a face answers to under one of its family's names.
template <class Visitor>
bool anyStyleName(const FontRecord& record, const std::string& familyKey, Visitor visit) {
    const bool typographic = nameKey(record.families[0]) == familyKey;
    for (size_t i = 0; i < record.styles.size(); ++i) {
        if (i > 0 && typographic && isStyleOfOldPrograms(nameKey(record.styles[i]))) continue;
        if (visit(record.styles[i])) return true;
    }
    return false;
}

}  // namespace

struct FontLibrary::State {
    FontIndex index;
    std::vector<std::unique_ptr<OpenTypeFace>> faces;                         ///< by their index
    std::unordered_map<const FontRecord*, const OpenTypeFace*> faceOfRecord;  ///< null: the file is damaged
    std::unordered_map<std::string, const FontFace*> answers;
    std::unordered_map<uint64_t, const FontFace*> fallbacks;
    std::vector<FontReplacement> replacements;

    const OpenTypeFace* open(const FontRecord& record);
    bool damaged(const FontRecord& record) const;
    Choice inFamily(const std::string& familyKey, const std::string& style) const;
    const FontRecord* byFullName(const std::string& family, const std::string& style) const;
    const FontRecord* byOtherDivision(const std::string& family, const std::string& style) const;
    Choice find(const std::string& family, const std::string& style) const;
    const FontRecord* standIn(const std::string& family, const std::string& style) const;
    void tell(const std::string& family, const std::string& style, const FontRecord& used);
};

const OpenTypeFace* FontLibrary::State::open(const FontRecord& record) {
    const auto known = faceOfRecord.find(&record);
    if (known != faceOfRecord.end()) return known->second;
    FaceDescription description;
    description.file = record.file;
    description.faceOfFile = record.faceOfFile;
    description.family = record.families[0];
    description.style = record.styles[0];
    description.postScriptName = record.postScriptName;
    description.serifByName = record.fontClass == FontClass::Serif;
    description.index = static_cast<uint32_t>(faces.size());
    std::unique_ptr<OpenTypeFace> face = OpenTypeFace::open(description);
    const OpenTypeFace* opened = face.get();
    if (face) faces.push_back(std::move(face));
    faceOfRecord.emplace(&record, opened);
    return opened;
}

bool FontLibrary::State::damaged(const FontRecord& record) const {
    const auto known = faceOfRecord.find(&record);
    return known != faceOfRecord.end() && known->second == nullptr;
}

Choice FontLibrary::State::inFamily(const std::string& familyKey, const std::string& style) const {
    const std::vector<const FontRecord*>& candidates = index.family(familyKey);
    const std::string wantedKey = nameKey(style);
    const StyleTraits wanted = parseStyle(style);
    for (const FontRecord* record : candidates) {
        if (damaged(*record)) continue;
        const auto same = [&](const std::string& name) { return nameKey(name) == wantedKey; };
        if (anyStyleName(*record, familyKey, same)) return {record, Match::Itself};
    }
    for (const FontRecord* record : candidates) {
        if (damaged(*record)) continue;
        const auto synonym = [&](const std::string& name) { return parseStyle(name) == wanted; };
        if (anyStyleName(*record, familyKey, synonym)) return {record, Match::Itself};
    }
    Choice nearest{nullptr, Match::OtherStyle};
    int least = 0;
    for (const FontRecord* record : candidates) {
        if (damaged(*record)) continue;
        const int distance = styleDistance(wanted, record->traits);
        if (nearest.record != nullptr && distance >= least) continue;
        nearest.record = record;
        least = distance;
    }
    return nearest;
}

const FontRecord* FontLibrary::State::byFullName(const std::string& family, const std::string& style) const {
    const auto whole = [&](const std::string& name) -> const FontRecord* {
        for (const FontRecord* record : index.fullName(nameKey(name))) {
            if (!damaged(*record)) return record;
        }
        return nullptr;
    };
    if (const FontRecord* record = whole(family + " " + style)) return record;
    const FontRecord* record = whole(family);
    if (record == nullptr) return nullptr;
    const bool plain = parseStyle(style) == StyleTraits{};
    return plain || parseStyle(style) == record->traits ? record : nullptr;
}

// "Montserrat" + "Black Italic" may stand as "Montserrat Black" + "Italic", and the other way round.
const FontRecord* FontLibrary::State::byOtherDivision(const std::string& family, const std::string& style) const {
    const auto exactly = [&](const std::string& otherFamily, const std::string& otherStyle) -> const FontRecord* {
        const Choice choice = inFamily(nameKey(otherFamily), otherStyle.empty() ? "Regular" : otherStyle);
        return choice.match == Match::Itself ? choice.record : nullptr;
    };
    const std::vector<std::string> ofStyle = nameWords(style), ofFamily = nameWords(family);
    for (size_t moved = ofStyle.size(); moved > 0; --moved) {
        std::string longer = family;
        longer.append(" ").append(joinWords(ofStyle, 0, moved));
        if (const FontRecord* record = exactly(longer, joinWords(ofStyle, moved, ofStyle.size()))) return record;
    }
    for (size_t kept = ofFamily.size(); kept-- > 1;) {
        std::string words = joinWords(ofFamily, kept, ofFamily.size());
        if (!parseStyle(words).rest.empty()) break;
        words.append(" ").append(style);
        if (const FontRecord* record = exactly(joinWords(ofFamily, 0, kept), words)) return record;
    }
    return nullptr;
}

/// Null record when the family is missing.
Choice FontLibrary::State::find(const std::string& family, const std::string& style) const {
    const std::string asked = nameKey(style).empty() ? "Regular" : style;
    const Choice choice = inFamily(nameKey(family), asked);
    if (choice.record != nullptr && choice.match == Match::Itself) return choice;
    if (const FontRecord* record = byFullName(family, asked)) return {record, Match::Itself};
    if (const FontRecord* record = byOtherDivision(family, asked)) return {record, Match::Itself};
    return choice;
}

const FontRecord* FontLibrary::State::standIn(const std::string& family, const std::string& style) const {
    for (const std::string& other : standInFamilies(family)) {
        const Choice choice = find(other, style);
        if (choice.record != nullptr) return choice.record;
    }
    const FontClass wantedClass = guessClass(family);
    const FontRecord* nearest = nullptr;
    int least = 0;
    const StyleTraits wanted = parseStyle(style);
    for (const auto& record : index.records()) {
        if (damaged(*record)) continue;
        const int distance = styleDistance(wanted, record->traits) + (record->fontClass == wantedClass ? 0 : 100000);
        if (nearest != nullptr && distance >= least) continue;
        nearest = record.get();
        least = distance;
    }
    return nearest;
}

void FontLibrary::State::tell(const std::string& family, const std::string& style, const FontRecord& used) {
    FontReplacement replacement{family, style, used.families[0], used.styles[0]};
    if (std::find(replacements.begin(), replacements.end(), replacement) == replacements.end()) {
        replacements.push_back(std::move(replacement));
    }
}

FontLibrary::FontLibrary(MachineFonts machineFonts) : state_(std::make_unique<State>()) {
    if (machineFonts == MachineFonts::Use) state_->index.addMachineFonts();
}

FontLibrary::~FontLibrary() = default;

void FontLibrary::addFolder(const std::string& folder) {
    state_->index.addFolder(folder);
    state_->answers.clear();
    state_->fallbacks.clear();
}

const FontFace& FontLibrary::face(const std::string& family, const std::string& style) {
    const std::string key = family + '\n' + style;
    const auto known = state_->answers.find(key);
    if (known != state_->answers.end()) return *known->second;
    // Each turn that fails has found one more damaged file.
    while (true) {
        const Choice choice = state_->find(family, style);
        const FontRecord* record = choice.record != nullptr ? choice.record : state_->standIn(family, style);
        if (record == nullptr) {
            throw InputError(
                "There is no usable font on this machine; install one (fonts-liberation, for example) or name a "
                "folder of fonts.");
        }
        const OpenTypeFace* face = state_->open(*record);
        if (face == nullptr) continue;
        if (choice.record == nullptr || choice.match == Match::OtherStyle) state_->tell(family, style, *record);
        state_->answers.emplace(key, face);
        return *face;
    }
}

bool FontLibrary::hasFamily(const std::string& family) const {
    return !state_->index.family(nameKey(family)).empty() || hasFace(family, "Regular");
}

bool FontLibrary::hasFace(const std::string& family, const std::string& style) const {
    const Choice choice = state_->find(family, style);
    return choice.record != nullptr && choice.match == Match::Itself;
}

const FontFace* FontLibrary::fallback(uint32_t codePoint, const FontFace& like) {
    const uint64_t key = uint64_t{like.index()} << 32 | codePoint;
    const auto known = state_->fallbacks.find(key);
    if (known != state_->fallbacks.end()) return known->second;

    StyleTraits wanted;
    wanted.weight = like.weight();
    wanted.italic = like.italicAngle() != 0;
    const FontClass wantedClass = like.isFixedPitch() ? FontClass::Monospaced
                                  : like.isSerif()    ? FontClass::Serif
                                                      : FontClass::Sans;
    std::vector<std::pair<int, const FontRecord*>> candidates;
    for (const auto& record : state_->index.records()) {
        if (!record->hasCharacter(codePoint)) continue;
        const int distance = styleDistance(wanted, record->traits) + (record->fontClass == wantedClass ? 0 : 100000);
        candidates.emplace_back(distance, record.get());
    }
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const auto& left, const auto& right) { return left.first < right.first; });
    const FontFace* found = nullptr;
    for (const auto& [distance, record] : candidates) {
        const OpenTypeFace* face = state_->open(*record);
        if (face == nullptr || face->glyphForCharacter(codePoint) == 0) continue;
        found = face;
        break;
    }
    state_->fallbacks.emplace(key, found);
    return found;
}

const std::vector<FontReplacement>& FontLibrary::replacements() const {
    return state_->replacements;
}

}  // namespace desk
