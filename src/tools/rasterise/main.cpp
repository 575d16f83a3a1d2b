// Draws one page of a PDF file into a bitmap with transparent paper. A process of its own: the renderer has no upkeep
// for security, so foreign files meet it here, with limits on time and memory.

#include <sys/resource.h>

#include <QtCore/QByteArray>
#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtGui/QImage>
#include <QtPdf/QPdfDocument>
#include <charconv>
#include <cstdio>
#include <optional>
#include <string_view>

namespace {

constexpr int kLargestSide = 20000;                                          // pixels
[[maybe_unused]] constexpr rlim_t kMemory = rlim_t(4) * 1024 * 1024 * 1024;  // bytes of address space
constexpr rlim_t kSeconds = 60;                                              // of processor time

enum ExitStatus { kDrawn = 0, kUsage = 2, kUnreadable = 3, kNoSuchPage = 4, kNotWritten = 5 };

constexpr const char* kUsageText =
    "usage: vornaset-rasterise FILE PAGE WIDTH HEIGHT\n"
    "Draws page PAGE (from 1) of a PDF file, its crop box turned as the page says, into WIDTH by HEIGHT pixels and\n"
    "prints a PAM image with premultiplied alpha, top row first. Paper without ink is transparent.\n"
    "Exit status: 0 drawn, 2 wrong arguments, 3 the file can't be read, 4 no such page, 5 the output broke off.\n";

void limit(int resource, rlim_t most) {
    const rlimit limits{most, most};
    setrlimit(resource, &limits);
}

std::optional<int> number(std::string_view text, int most) {
    int value = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (failure != std::errc() || end != text.data() + text.size() || value < 1 || value > most) return std::nullopt;
    return value;
}

bool print(const QImage& image) {
    std::printf("P7\nWIDTH %d\nHEIGHT %d\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n", image.width(),
                image.height());
    const size_t rowBytes = static_cast<size_t>(image.width()) * 4;
    for (int row = 0; row < image.height(); ++row) {
        if (std::fwrite(image.constScanLine(row), 1, rowBytes, stdout) != rowBytes) return false;
    }
    return std::fflush(stdout) == 0;
}

}  // namespace

int main(int count, char** words) {
    const auto argument = [&](int index) { return std::string_view(index < count ? words[index] : ""); };
    const auto page = number(argument(2), 1 << 30);
    const auto width = number(argument(3), kLargestSide);
    const auto height = number(argument(4), kLargestSide);
    if (count != 5 || !page || !width || !height) {
        std::fputs(kUsageText, stderr);
        return kUsage;
    }
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)  // which reserve terabytes
    limit(RLIMIT_AS, kMemory);
#endif
    limit(RLIMIT_CPU, kSeconds);

    QPdfDocument document;
    if (document.load(QString::fromLocal8Bit(words[1])) != QPdfDocument::Error::None) {
        std::fprintf(stderr, "vornaset-rasterise: \"%s\" can't be read as a PDF file.\n", words[1]);
        return kUnreadable;
    }
    if (*page > document.pageCount()) {
        std::fprintf(stderr, "vornaset-rasterise: \"%s\" has no page %d, only %d.\n", words[1], *page,
                     document.pageCount());
        return kNoSuchPage;
    }
    const QImage drawn = document.render(*page - 1, QSize(*width, *height));
    if (drawn.isNull()) {
        std::fprintf(stderr, "vornaset-rasterise: page %d of \"%s\" can't be drawn.\n", *page, words[1]);
        return kUnreadable;
    }
    return print(drawn.convertToFormat(QImage::Format_RGBA8888_Premultiplied)) ? kDrawn : kNotWritten;
}
