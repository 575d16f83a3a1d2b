#pragma once
// A template for the tests of the plug-in: the host's fixture and frames with numbers.

#include <string>

#include "host_fixture.h"
#include "records/merge_records.h"
#include "support/values.h"

class PluginTest : public desk::testing::HostFixture {
  protected:
    using Uid = desk::Uid;
    using ItemKind = desk::ItemKind;

    /// A text frame with a story of its own and a frame number.
    Uid numberedFrame(const std::u16string& text, int64_t number) {
        const Uid frame = textFrame(text);
        vornaset::setFrameNumberForFrame(ref(frame), number);
        return frame;
    }
    /// An empty picture frame with a frame number.
    Uid imageSlot(int64_t number) {
        const Uid frame = pictureFrame();
        vornaset::setFrameNumberForFrame(ref(frame), number);
        return frame;
    }
    /// What a frame's story says, without the terminal return.
    std::u16string textIn(Uid frame) const {
        std::u16string text = textOf(storyOf(frame));
        text.pop_back();
        return text;
    }
    UIDRef storyRef(Uid frame) const { return ref(storyOf(frame)); }
};
