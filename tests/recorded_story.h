#pragma once
// A story of the host behind which a test sees what is asked of it.

#include <algorithm>
#include <string>
#include <vector>

#include "host/api/text.h"
#include "support/values.h"

class RecordedStory : public ITextModel {
  public:
    explicit RecordedStory(const UIDRef& story) : story_(story) {}
    virtual ~RecordedStory() = default;

    IPMUnknown* QueryInterface(PMIID interfaceId) override { return story_->QueryInterface(interfaceId); }
    void AddRef() override { story_->AddRef(); }
    void Release() override { story_->Release(); }
    int32_t TotalLength() override { return totalLength >= 0 ? totalLength : story_->TotalLength(); }
    int32_t GetPrimaryStoryThreadSpan() override { return mainSpan >= 0 ? mainSpan : story_->TotalLength(); }
    TextChunk GetChunk(int32_t position) override {
        TextChunk chunk = story_->GetChunk(position);
        if (longestChunk > 0) chunk.length = std::min(chunk.length, longestChunk);
        return chunk;
    }
    void Insert(int32_t position, const WideString& text) override {
        calls.push_back("insert " + std::to_string(position) + " " + vornaset::String(text.View()).utf8());
        story_->Insert(position, text);
    }
    void Delete(int32_t position, int32_t length) override {
        calls.push_back("delete " + std::to_string(position) + "+" + std::to_string(length));
        story_->Delete(position, length);
    }
    void ApplyStyle(int32_t position, int32_t length, UID style, AttributeStrand strand, bool replace,
                    bool override) override {
        calls.push_back((strand == AttributeStrand::Character ? "character style " : "paragraph style ") +
                        std::to_string(style.Get()) + " at " + std::to_string(position) + "+" + std::to_string(length) +
                        (replace && override ? "" : " without both flags"));
        story_->ApplyStyle(position, length, style, strand, replace, override);
    }
    ITextFrameList* QueryFrameList() override { return hasFrameList ? story_->QueryFrameList() : nullptr; }

    std::vector<std::string> calls;  ///< edits in their order
    int32_t longestChunk = 0;        ///< if above 0: the text is given in pieces of at most this length
    int32_t totalLength = -1;        ///< if 0 or more: told in place of the story's own
    int32_t mainSpan = -1;           ///< if 0 or more: told in place of the story's own
    bool hasFrameList = true;

  private:
    InterfacePtr<ITextModel> story_;
};
