// Reads a PDF file, writes it anew, and reads that.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "pdf/pdf_doc.h"
#include "support/messages.h"

namespace {

/// A file of this process under one name, gone at its end.
class ScratchFile {
  public:
    ScratchFile() : path_(folder() / ("pdf_rewrite-" + std::to_string(getpid()) + ".pdf")) {}
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;
    ~ScratchFile() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }

    vornaset::String write(const void* bytes, size_t count) const {
        FILE* file = std::fopen(path_.c_str(), "wb");
        if (file == nullptr || std::fwrite(bytes, 1, count, file) != count) std::abort();
        std::fclose(file);
        return vornaset::String(path_.c_str());
    }

  private:
    /// In memory where the system has such a folder.
    static std::filesystem::path folder() {
        return std::filesystem::exists("/dev/shm") ? "/dev/shm" : std::filesystem::temp_directory_path();
    }
    std::filesystem::path path_;
};

/// What callers ask of a document that was read.
void look(const vornaset::Handle<vornaset::MyPDFDoc>& document) {
    for (const auto& page : document->pages()) {
        try {
            page->contentsData();
            page->trimBox();
            page->isXObj();
        } catch (const std::exception&) {  // an entry of another kind than its key asks for
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace vornaset;
    static const ScratchFile scratch;
    const uint8_t former = setSilent(1);
    const int64_t before = MyPDFObj::allocated();
    {
        const auto document = MyPDFDoc::pdfDocWithPath(scratch.write(data, size), 1);
        look(document);
        const Data written = document->pdfData();
        const size_t count = document->pdfObjs().count();
        // The first write lets go of lists of filters. From then on every stream is compressed, and nothing changes.
        const Data second = document->pdfData();
        if (document->pdfData().view() != second.view()) __builtin_trap();
        if (count > 0 && document->catalog() && written.length() == 0) __builtin_trap();
        if (written.length() > 0) look(MyPDFDoc::pdfDocWithPath(scratch.write(written.bytes(), written.length()), 0));
    }
    if (MyPDFObj::allocated() != before) __builtin_trap();
    setSilent(former);
    return 0;
}
