#pragma once
// Image slots against a recorded host: files to place, a barcode program that is a function, a temporary folder of the
// test's own.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "merge/image_slots.h"
#include "merge/page_fill.h"
#include "merge_fixture.h"
#include "pdf/pdf_doc.h"
#include "recorded_host.h"
#include "support/dictionary_access.h"
#include "support/paths.h"
#include "support/processes.h"
#include "support/volumes.h"

class ImageSlotsTest : public recorded::With<MergeTest> {
  protected:
    void SetUp() override {
        With::SetUp();
        std::string pattern = (std::filesystem::temp_directory_path() / "image-slots-XXXXXX").string();
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        folder = pattern;
        std::filesystem::create_directory(folder / "tmp");
        vornaset::setTemporaryFolder(vornaset::String((folder / "tmp").c_str()));
        vornaset::registerShellScript(tool, [this](const vornaset::Array& arguments) {
            std::string told;
            for (const vornaset::Value& argument : arguments) told += argument.string().utf8() + "|";
            toolCalls.push_back(told);
            const std::string code = arguments[3].string().utf8();
            const bool isCode = code.size() == 13 && code.find_first_not_of("0123456789") == std::string::npos;
            return isCode ? vornaset::Data("0 0 10 10 re f % " + code) : vornaset::Data();
        });
    }
    void TearDown() override {
        vornaset::registerShellScript(tool, nullptr);
        vornaset::setTemporaryFolder(nullptr);
        vornaset::setVolumes({});
        std::filesystem::remove_all(folder);
        With::TearDown();
    }

    std::string path(const std::string& name) const { return (folder / name).string(); }
    std::string inTemporaryFolder(const std::string& name) const { return (folder / "tmp" / name).string(); }
    std::string file(const std::string& name, const std::string& content = "picture") const {
        std::ofstream(path(name), std::ios::binary) << content;
        return path(name);
    }
    std::string pdf(const std::string& name, int pages) const {
        const vornaset::Handle<vornaset::MyPDFDoc> made = vornaset::MyPDFDoc::pdfDoc();
        for (int count = 0; count < pages; ++count) made->addPageWithRect({0, 0, 100, 50});
        made->writeToFile(vornaset::String(path(name).c_str()));
        return path(name);
    }
    /// An empty picture frame with a number and a column.
    Uid slot(int64_t number, const char* column = "Picture") {
        const Uid frame = imageSlot(number);
        vornaset::setColNameForFrame(ref(frame), column);
        return frame;
    }
    /// Rows {Picture: cell}.
    static vornaset::Array pictures(const std::vector<std::string>& cells) {
        vornaset::Array made = vornaset::Array::makeMutable();
        for (const std::string& cell : cells)
            made.add(vornaset::Dictionary::make({{"Picture", vornaset::String(cell.c_str())}}));
        return made;
    }
    vornaset::Dictionary jobWith(const vornaset::Array& rows) {
        vornaset::Dictionary job = jobOf(rows);
        vornaset::setIntegerForKey(job, "pageCnt", 1);
        vornaset::runSetupPasses(documentRef(), job);
        host->calls.clear();
        return job;
    }
    void useTool(const vornaset::Dictionary& job) { vornaset::setStringForKey(job, "barcode", tool); }
    void fill(const vornaset::Dictionary& job, int32_t pageNum = 0) { vornaset::processFrames(database, job, pageNum); }
    /// The file placed in a frame; empty for an empty frame.
    std::string placed(Uid frame) const {
        const auto& children = document.item(frame)->children;
        return children.empty() ? std::string() : document.item(children.front())->name;
    }
    std::vector<std::string> kinds() const {
        std::vector<std::string> told;
        for (const auto& [kind, place] : problems) told.emplace_back(vornaset::nameOf(kind));
        return told;
    }

    const vornaset::String tool{u"/nowhere/barcode-tool"};
    std::filesystem::path folder;
    std::vector<std::string> toolCalls;  ///< the arguments of each start, a "|" behind every one
};
