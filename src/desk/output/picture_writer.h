#pragma once
// Pictures of a PDF file: each is written once, however often it is placed, and shared with all that is equal to it.

#include <map>
#include <string>
#include <unordered_map>

#include "desk/output/stand_in_fonts.h"

namespace desk {

class PictureWriter final : private PictureSink {
  public:
    PictureWriter(SharedObjects& shared, FontLibrary* fonts) : shared_(shared), standIns_(shared, fonts) {}

    /// Writes the picture at its first use. Throws InputError when its file can't be read any more.
    Resource use(const Picture& picture);

    /// Writes the fonts that stand in. Throws InputError.
    void finish() { standIns_.finish(); }

    /// What the catalog must say so that layers of placed pages show as in their own files: "/OCProperties<<...>>".
    /// Nothing where no placed page has layers.
    void appendLayers(ContentBuffer& catalog) const;

  private:
    struct IdentityHash {
        size_t operator()(const PictureIdentity& identity) const { return static_cast<size_t>(identity.words[0]); }
    };
    using Written = std::unordered_map<PictureIdentity, Resource, IdentityHash>;

    Number allocate() override { return shared_.file().allocate(); }
    void writeObject(Number number, std::string_view object) override;
    void writeEncodedStream(Number number, std::string_view entries, std::string_view bytes) override;
    void writePlainStream(Number number, std::string_view entries, std::string_view bytes) override;
    Number shared(std::string_view object) override;
    Number sharedStream(std::string_view entries, std::string_view bytes) override;
    Number standIn(const AbsentFont& font) override { return standIns_.standIn(font); }
    Number known(const PictureIdentity& file, uint64_t object) override;
    void remember(const PictureIdentity& file, uint64_t object, Number number) override;
    void addLayer(Number layer, bool isShown) override { layers_[layer] = isShown; }

    const Resource* find(const PictureIdentity& identity);

    SharedObjects& shared_;
    StandInFonts standIns_;
    uint64_t bytesWritten_ = 0;
    Written large_;           ///< for good: remembering costs next to nothing beside what is in the file
    Written small_, former_;  ///< two generations: barcodes come by the hundred thousand and never again
    std::map<std::string, Number, std::less<>> objects_;
    std::unordered_map<PictureIdentity, Number, IdentityHash> streams_;
    std::unordered_map<PictureIdentity, std::unordered_map<uint64_t, Number>, IdentityHash> partsOfFiles_;
    std::map<Number, bool> layers_;  ///< with whether they show
};

}  // namespace desk
