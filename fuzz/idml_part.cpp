// Foreign IDML: the first byte says what the rest is, a part of a document, a snippet or a whole package.
//
// g graphic, f fonts, s styles, p preferences, S spread, M master spread, T story, d designmap, x snippet, z package.
// Reading may refuse with an InputError; anything else is a bug. What was read is walked through as its users do. Any
// other first byte leaves all parts plain, and then nothing may be refused.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "desk/idml/package.h"
#include "desk/idml/reader.h"

namespace {

using Parts = std::vector<std::pair<char, desk::PackageMember>>;

Parts plainParts() {
    using Method = desk::PackageMember::Method;
    const auto part = [](const std::string& kind, const std::string& content) {
        return "<idPkg:" + kind + " xmlns:idPkg='urn:p' DOMVersion='16.0'>" + content + "</idPkg:" + kind + ">";
    };
    return {
        {'d',
         {"designmap.xml",
          "<Document xmlns:idPkg='urn:p' DOMVersion='16.0' Self='d'><Layer Self='ub1' Name='L'/><idPkg:Graphic "
          "src='g'/>"
          "<idPkg:Fonts src='f'/><idPkg:Styles src='s'/><idPkg:Preferences src='p'/><idPkg:MasterSpread src='M'/>"
          "<idPkg:Spread src='S'/><idPkg:Story src='T'/><idPkg:Story src='t'/></Document>",
          Method::Stored}},
        {'g', {"g", part("Graphic", ""), Method::Stored}},
        {'f', {"f", part("Fonts", ""), Method::Stored}},
        {'s', {"s", part("Styles", ""), Method::Stored}},
        {'p', {"p", part("Preferences", ""), Method::Stored}},
        {'M', {"M", part("MasterSpread", "<MasterSpread Self='um'><Page Self='ump'/></MasterSpread>"), Method::Stored}},
        {'S',
         {"S",
          part(
              "Spread",
              "<Spread Self='us'><Page Self='up' AppliedMaster='um'/><TextFrame Self='uf' ParentStory='u1'/></Spread>"),
          Method::Stored}},
        {'T', {"T", part("Story", "<Story Self='u1'/>"), Method::Stored}},
        {'t', {"t", part("Story", "<Story Self='u2'/>"), Method::Stored}}};
}

/// A package in which the bytes stand for one part and all others are plain.
std::string packageWith(char kind, std::string bytes) {
    std::vector<desk::PackageMember> members;
    for (auto& [letter, member] : plainParts()) {
        members.push_back(member);
        if (letter == kind) members.back().bytes = std::move(bytes);
    }
    return desk::zipOf(members);
}

/// What composer and output ask of every document.
void walk(desk::Document& document) {
    for (desk::Uid uid : document.stories) {
        const desk::StoryContent& content = document.story(uid)->content();
        if (content.text.empty() || content.text.back() != u'\r') __builtin_trap();
        for (const auto& run : content.characterRuns) {
            const auto paragraph = content.paragraphFormatAt(run.start);
            document.resolved(paragraph, run.format);
        }
        for (const desk::OwnedItem& owned : content.ownedItems)
            if (content.text.at(static_cast<size_t>(owned.position)) != desk::marker::inlineObject) __builtin_trap();
        for (desk::Uid frame : document.framesOfStory(uid)) {
            const desk::PageItem& item = *document.item(frame);
            document.frameOptions(item);
            document.itemAttributes(item);
            document.pageOfItem(item);
        }
    }
    for (desk::Uid uid : document.pages())
        if (!(document.page(uid)->rectInSpread().width() > 0)) __builtin_trap();
}

/// What the plain parts make, so that a seed meets a whole document around it.
void requirePlain(desk::Document& document) {
    if (document.stories.size() != 2 || document.masterSpreads.size() != 1 || !document.itemWithSelf("uf"))
        __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const char kind = static_cast<char>(data[0]);
    std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    const bool isWhole = kind == 'x' || kind == 'z';
    const bool isPlain = std::string_view("gfspSMTtdxz").find(kind) == std::string_view::npos;
    try {
        const auto document =
            desk::readDocument(isWhole ? std::move(bytes) : packageWith(kind, std::move(bytes)), "fuzz.idml");
        walk(*document);
        if (isPlain) requirePlain(*document);
    } catch (const desk::InputError&) {
        if (isPlain) __builtin_trap();
    }
    return 0;
}
