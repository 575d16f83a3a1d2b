#pragma once
// PDF files made by hand, object by object, for what is read.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "pdf/pdf_doc.h"

namespace vornaset {

/// A file with the objects 1, 2, 3, ... in this order, a table and a trailer. Object 1 is the catalog.
class SourceFile {
  public:
    explicit SourceFile(std::vector<std::string> objects = {}) : objects_(std::move(objects)) {}

    /// Gives the object's number.
    size_t add(const std::string& object) {
        objects_.push_back(object);
        return objects_.size();
    }
    size_t addStream(const std::string& entries, const std::string& bytes) {
        return add("<<" + entries + "/Length " + std::to_string(bytes.size()) + ">>stream\n" + bytes + "\nendstream");
    }
    SourceFile& version(const std::string& text) {
        version_ = text;
        return *this;
    }
    /// Further entries of the trailer.
    SourceFile& trailer(const std::string& entries) {
        trailer_ += entries;
        return *this;
    }

    std::string bytes() const {
        std::string file = "%PDF-" + version_ + "\n%\xE4\xE5\xE6\xE7\n";
        std::string table = "xref\n0 " + std::to_string(objects_.size() + 1) + "\n0000000000 65535 f \n";
        for (size_t index = 0; index < objects_.size(); ++index) {
            char entry[32];
            std::snprintf(entry, sizeof entry, "%010zu 00000 n \n", file.size());
            table += entry;
            file += std::to_string(index + 1) + " 0 obj\n" + objects_[index] + "\nendobj\n";
        }
        const size_t place = file.size();
        return file + table + "trailer\n<</Root 1 0 R/Size " + std::to_string(objects_.size() + 1) + trailer_ +
               ">>\nstartxref\n" + std::to_string(place) + "\n%%EOF\n";
    }

  private:
    std::vector<std::string> objects_;
    std::string version_ = "1.4";
    std::string trailer_;
};

/// One page of 100 by 200 points with these entries of its own.
inline SourceFile onePage(const std::string& pageEntries = "") {
    return SourceFile({"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[3 0 R]/Count 1>>",
                       "<</Type/Page/Parent 2 0 R/MediaBox[0 0 100 200]" + pageEntries + ">>"});
}

/// A folder that goes with the test.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "vornaset-pdf-XXXXXX").string();
        folder_ = mkdtemp(pattern.data());
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    std::string path(const std::string& name) const { return (folder_ / name).string(); }
    /// Writes the file and gives its path.
    String write(const std::string& name, const std::string& bytes) const {
        std::ofstream(path(name), std::ios::binary) << bytes;
        return String::fromDamagedUTF8(path(name));
    }
    std::string contents(const std::string& name) const {
        std::ifstream file(path(name), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }

  private:
    std::filesystem::path folder_;
};

inline Handle<MyPDFDoc> documentOfBytes(const std::string& bytes, uint8_t customObjs = 0) {
    const TemporaryFolder folder;
    return MyPDFDoc::pdfDocWithPath(folder.write("source.pdf", bytes), customObjs);
}

inline Handle<MyPDFDoc> documentOf(const SourceFile& file, uint8_t customObjs = 0) {
    return documentOfBytes(file.bytes(), customObjs);
}

}  // namespace vornaset
