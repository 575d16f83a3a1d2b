#include "companion/barcode_source.h"

#include <unistd.h>

#include <filesystem>
#include <vector>

#include "companion/error.h"
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

vornaset::Data drawn(const vornaset::Array& arguments) {
    const std::vector<std::string> texts = textsOf(arguments);
    if (!hasGoodCode(texts)) return {};
    const barcode::Outcome outcome = barcode::answer(texts);
    return outcome.status == barcode::Status::Drawn ? vornaset::Data(outcome.description) : vornaset::Data();
}

}  // namespace

bool isFileName(const std::string& code) {
    constexpr std::size_t longest = 255 - 4;
    return !code.empty() && code.size() <= longest && code.find('/') == code.npos && code.find('\0') == code.npos &&
           code != "..";
}

BarcodeSource::BarcodeSource(const std::string& tool) {
    if (tool.empty()) {
        name_ = shippedTool;
        vornaset::registerShellScript(vornaset::String(name_.c_str()), drawn);
        return;
    }
    const fs::path program = fs::absolute(tool);
    std::error_code ignored;
    if (!fs::is_regular_file(program, ignored) || ::access(program.c_str(), X_OK) != 0)
        throw Error("the barcode program \"" + tool + "\" isn't there or can't be run; give its path with --barcode.");
    // The same file under another spelling: what is registered stands for the program and looks at the code first.
    name_ = program.string();
    const vornaset::String started = vornaset::String::fromDamagedUTF8("/." + name_);
    vornaset::registerShellScript(
        vornaset::String::fromDamagedUTF8(name_), [started](const vornaset::Array& arguments) {
            return hasGoodCode(textsOf(arguments)) ? vornaset::dataWithShellScript(started, arguments)
                                                   : vornaset::Data();
        });
}

BarcodeSource::~BarcodeSource() {
    vornaset::registerShellScript(vornaset::String::fromDamagedUTF8(name_), {});
}

}  // namespace companion
