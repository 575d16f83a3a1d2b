#include "pdf/pdf_writer.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>

#include "pdf/parallel_compression.h"
#include "pdf/pdf_text.h"
#include "support/file_handle.h"
#include "support/messages.h"
#include "support/raise_exception.h"

namespace vornaset {

void appendString(std::string& buffer, const char* text) {
    if (text != nullptr) buffer += text;
}

void appendFormat(std::string& buffer, const char* format, ...) {
    char line[256];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    if (length < 0) return;
    if (static_cast<size_t>(length) < sizeof line) {
        buffer.append(line, static_cast<size_t>(length));
        return;
    }
    const size_t start = buffer.size();
    buffer.resize(start + static_cast<size_t>(length) + 1);
    va_start(arguments, format);
    std::vsnprintf(buffer.data() + start, static_cast<size_t>(length) + 1, format, arguments);
    va_end(arguments);
    buffer.pop_back();
}

void writePDFObjs(const ObjectList<MyPDFObj>& objects, std::string& buffer, std::span<int64_t> offsets, int64_t start) {
    try {
        ParallelCompression compression(objects);
        for (size_t place = 0; place < objects.count(); ++place) {
            const auto entry = static_cast<size_t>(start) + place;
            if (entry >= offsets.size()) raiseBeyondEnd(entry, offsets.size());
            offsets[entry] = static_cast<int64_t>(buffer.size());
            appendInteger(buffer, static_cast<int64_t>(entry + 1));
            buffer += " 0 obj\n";
            compression.finish(place);
            objects.begin()[place]->appendPDFData(buffer);
            buffer += "endobj\n";
        }
    } catch (const std::exception& exception) {
        msgBox(exception);
    }
}

void writeXRef(std::string& buffer, std::span<const int64_t> offsets, int64_t count) {
    appendString(buffer, "xref\n");
    appendFormat(buffer, "0 %zd\n", static_cast<ssize_t>(count + 1));
    appendString(buffer, "0000000000 65535 f \n");
    for (int64_t index = 0; index < count; ++index) {
        const auto entry = static_cast<size_t>(index);
        if (entry >= offsets.size()) raiseBeyondEnd(entry, offsets.size());
        appendFormat(buffer, "%010d 00000 n \n", static_cast<int32_t>(offsets[entry]));
    }
}

void writeTrailer(std::string& buffer, int64_t count, int64_t position) {
    appendString(buffer, "trailer\n");
    appendFormat(buffer, "<</Size %d /Info 1 0 R /Root 2 0 R>>\n", static_cast<int32_t>(count + 1));
    appendString(buffer, "startxref\n");
    appendFormat(buffer, "%d\n", static_cast<int32_t>(position));
    appendString(buffer, "%%EOF\n");
}

Data pdfHeaderWithPath(const String& path) {
    constexpr size_t kVersionLength = 8;
    char version[kVersionLength];
    size_t length = 0;
    const FileHandle file(::open(path.utf8().c_str(), O_RDONLY | O_CLOEXEC));
    while (file.isOpen() && length < kVersionLength) {
        const ssize_t got = ::read(file.number(), version + length, kVersionLength - length);
        if (got <= 0) break;
        length += static_cast<size_t>(got);
    }
    return Data(std::string(version, length) + "\n%\xE2\xE3\xCF\xD3\n");
}

void raiseError() {
    raiseException("error");
}

void raiseFinished() {
    raiseException("finished");
}

}  // namespace vornaset
