// What writing one letter of a merge costs once it is composed: pages of samples/letter.idml with six values that
// change from record to record. The CPU column is the calling thread's share; the background thread compresses at the
// same time.

#include <benchmark/benchmark.h>

#include <array>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "desk/idml/reader.h"
#include "desk/output/document_writer.h"

namespace {

using namespace desk;

constexpr size_t recordCount = 500;

/// Composed letters: for each record the layout of each frame.
class Letters : public TextSource {
  public:
    Letters() {
        const auto samples = std::filesystem::path(__FILE__).parent_path().parent_path() / "samples";
        document_ = readDocument((samples / "letter.idml").string());
        Composer composer(*document_, fonts_);
        std::map<Uid, std::shared_ptr<const StoryContent>> templates;
        for (Uid uid : document_->stories) templates[uid] = document_->story(uid)->sharedContent();
        for (size_t record = 0; record < recordCount; ++record) {
            auto& layouts = layouts_.emplace_back();
            for (const auto& [uid, content] : templates) {
                fill(*document_->story(uid), content, record);
                for (Uid frame : document_->framesOfStory(uid)) layouts[frame] = composer.frameLayout(frame);
            }
        }
    }

    std::shared_ptr<const FrameLayout> frameLayout(Uid frame, Uid) override { return layouts_[record_][frame]; }
    void show(size_t record) { record_ = record; }
    const Document& document() const { return *document_; }

  private:
    static void fill(Story& story, const std::shared_ptr<const StoryContent>& content, size_t record) {
        story.setContent(content);
        for (size_t slot = 0;; ++slot) {
            const std::u16string& text = story.content().text;
            const size_t open = text.find(u"<<"), close = text.find(u">>");
            if (open == std::u16string::npos || close == std::u16string::npos) return;
            const std::string number = std::to_string(record * 7919 % 9973 + slot * 13);
            story.erase(static_cast<int32_t>(open), static_cast<int32_t>(close + 2 - open));
            story.insert(static_cast<int32_t>(open), u"Value " + std::u16string(number.begin(), number.end()));
        }
    }

    FontLibrary fonts_;
    std::unique_ptr<Document> document_;
    std::vector<std::map<Uid, std::shared_ptr<const FrameLayout>>> layouts_;
    size_t record_ = 0;
};

Letters& letters() {
    static Letters all;
    return all;
}

void writeLetters(benchmark::State& state, bool inBackground) {
    Letters& source = letters();
    const std::vector<Uid> pages = source.document().pages();
    const std::string path = (std::filesystem::temp_directory_path() / "vornaset-bench.pdf").string();
    PdfOptions options;
    options.compressionLevel = static_cast<int>(state.range(0));
    options.inBackground = inBackground;
    for (auto _ : state) {
        DocumentWriter writer(source.document(), source, path, options);
        for (size_t record = 0; record < recordCount; ++record) {
            source.show(record);
            for (Uid page : pages) writer.writePage(page);
        }
        writer.finish();
    }
    state.SetItemsProcessed(static_cast<int64_t>(recordCount) * state.iterations());
    state.counters["bytes"] = static_cast<double>(std::filesystem::file_size(path)) / recordCount;
    std::filesystem::remove(path);
}

void WriteLettersInBackground(benchmark::State& state) {
    writeLetters(state, true);
}
void WriteLettersInPlace(benchmark::State& state) {
    writeLetters(state, false);
}

BENCHMARK(WriteLettersInBackground)->DenseRange(0, 9)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(WriteLettersInPlace)->Arg(0)->Arg(1)->Arg(6)->Unit(benchmark::kMillisecond);

}  // namespace
