#include "companion/barcode_source.h"

#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <string_view>
#include <utility>
#include <vector>

#include "companion/error.h"
#include "companion/limits.h"
#include "support/exception.h"
#include "support/paths.h"
#include "support/processes.h"
#include "tools/barcode/barcode.h"

namespace companion {
namespace {

namespace fs = std::filesystem;

constexpr const char* shippedTool = "vornaset-barcode";
constexpr std::size_t codeArgument = 3;

std::vector<std::string> textsOf(const vornaset::Array& arguments) {
    std::vector<std::string> texts;
    for (const vornaset::Value& argument : arguments) texts.push_back(argument.string().utf8());
    return texts;
}

bool hasGoodCode(const std::vector<std::string>& arguments) {
    return arguments.size() > codeArgument && isFileName(arguments[codeArgument]);
}

/// Watches a program while it draws one code.
class Patience {
  public:
    Patience(const std::function<bool()>& isToStop, const BarcodeLimits& limits)
        : isToStop_(isToStop), limits_(limits), end_(std::chrono::steady_clock::now() + limits.time) {}

    bool mayGoOn(std::size_t bytes) {
        if (bytes > limits_.bytes)
            complaint_ = "printed more than " + std::to_string(limits_.bytes / 1'000'000) + " MB";
        else if (std::chrono::steady_clock::now() >= end_)
            complaint_ = "didn't end within " +
                         std::to_string(std::chrono::duration_cast<std::chrono::seconds>(limits_.time).count()) +
                         " seconds";
        return complaint_.empty() && !isToStop_();
    }
    /// What the program did; empty when all was well or the run is to stop.
    const std::string& complaint() const { return complaint_; }

  private:
    const std::function<bool()>& isToStop_;
    const BarcodeLimits limits_;
    const std::chrono::steady_clock::time_point end_;
    std::string complaint_;
};

/// What a program printed that draws whole files; null for what may be the content of a page.
const char* kindOfWholeFile(std::string_view bytes) {
    static constexpr std::pair<std::string_view, const char*> kinds[] = {
        {"%PDF-", "a whole PDF file instead of a page's content"},
        {"%!PS", "PostScript instead of a PDF page's content"},
        {"\x89PNG", "a picture instead of a PDF page's content"},
        {"<?xml", "XML instead of a PDF page's content"},
        {"<svg", "SVG instead of a PDF page's content"}};
    for (const auto& [beginning, kind] : kinds)
        if (bytes.starts_with(beginning)) return kind;
    return nullptr;
}

vornaset::Data outputOf(const vornaset::String& program, const vornaset::Array& arguments, Patience& patience,
                        std::string& failure, const std::string& tool) {
    try {
        return vornaset::dataWithShellScript(program, arguments,
                                             [&](std::size_t bytes) { return patience.mayGoOn(bytes); });
    } catch (const vornaset::Exception&) {
        failure = "the barcode program \"" + tool + "\" can't be started; is it a program for this machine?";
        throw;
    }
}

}  // namespace

bool isFileName(const std::string& code) {
    constexpr std::size_t longest = 255 - 4;
    return !code.empty() && code.size() <= longest && code.find('/') == code.npos && code.find('\0') == code.npos &&
           code != "..";
}

BarcodeSource::BarcodeSource(const std::string& tool, std::function<bool()> isToStop, const BarcodeLimits& limits) {
    if (tool.empty())
        registerShippedTool();
    else
        registerProgram(tool, std::move(isToStop), limits);
}

BarcodeSource::~BarcodeSource() {
    vornaset::registerShellScript(vornaset::String::fromDamagedUTF8(name_), {});
}

void BarcodeSource::registerShippedTool() {
    name_ = shippedTool;
    vornaset::registerShellScript(vornaset::String(name_.c_str()), [notes = notes_](const vornaset::Array& arguments) {
        const std::vector<std::string> texts = textsOf(arguments);
        if (!hasGoodCode(texts)) return vornaset::Data();
        barcode::Outcome outcome = barcode::answer(texts);
        notes->code = texts[codeArgument];
        notes->reason = std::move(outcome.problem);
        return outcome.status == barcode::Status::Drawn ? vornaset::Data(std::move(outcome.description))
                                                        : vornaset::Data();
    });
}

void BarcodeSource::registerProgram(const std::string& tool, std::function<bool()> isToStop,
                                    const BarcodeLimits& limits) {
    const fs::path path = fs::absolute(tool);
    std::error_code ignored;
    if (!fs::is_regular_file(path, ignored) || ::access(path.c_str(), X_OK) != 0)
        throw Error("the barcode program \"" + tool + "\" isn't there or can't be run; give its path with --barcode.");
    // The same file under another spelling: what is registered stands for the program and looks at the code first.
    name_ = path.string();
    const vornaset::String started = vornaset::String::fromDamagedUTF8("/." + name_);
    const auto draw = [started, tool, limits, isToStop = std::move(isToStop),
                       notes = notes_](const vornaset::Array& arguments) {
        const std::vector<std::string> texts = textsOf(arguments);
        if (!hasGoodCode(texts)) return vornaset::Data();
        const std::string& code = texts[codeArgument];
        Patience patience(isToStop, limits);
        vornaset::Data data = outputOf(started, arguments, patience, notes->failure, tool);
        std::string complaint = patience.complaint();
        if (const char* kind = kindOfWholeFile(data.view())) complaint = std::string("printed ") + kind;
        if (!complaint.empty()) {
            notes->failure = "the barcode program \"" + tool + "\" " + complaint + " for the code \"" + code +
                             "\"; try it by hand: " + tool + " -e ean13 -b " + code + " -D.";
            throw vornaset::exceptionWithReason(notes->failure);
        }
        notes->code = code;
        notes->reason = data.length() > 0 ? "" : "the barcode program printed nothing.";
        return data;
    };
    vornaset::registerShellScript(vornaset::String::fromDamagedUTF8(name_), draw);
}

std::string BarcodeSource::whyNone(const std::string& cell) const {
    if (cell != notes_->code) return "there is no such file.";
    if (!notes_->reason.empty()) return "there is no such file, and no barcode: " + notes_->reason;
    return "the barcode can't be written into the temporary folder; is there room in \"" +
           vornaset::temporaryPath(nullptr, nullptr).utf8() + "\"?";
}

}  // namespace companion
