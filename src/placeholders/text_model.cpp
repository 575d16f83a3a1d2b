#include "placeholders/text_model.h"

#include <fstream>

#include "host/api/host.h"
#include "host/host_operations.h"
#include "host/styles.h"
#include "support/alert.h"
#include "support/applications.h"
#include "support/exception.h"
#include "support/log.h"
#include "support/paths.h"
#include "support/xml_text.h"

namespace vornaset {

namespace {

const String& noCharacterStyle() {
    static const String name(u"[No character style]");
    return name;
}

void readText(ITextModel& story, MutableString& text) {
    const int32_t total = story.TotalLength();
    for (int32_t position = 0; position < total;) {
        const TextChunk chunk = story.GetChunk(position);
        if (chunk.length < 1) return;
        text.append(std::u16string_view(chunk.text, static_cast<size_t>(chunk.length)));
        position += chunk.length;
    }
}

}  // namespace

MyTextModel::MyTextModel(ITextModel* story) {
    setup(story);
}

MyTextModel::MyTextModel(const UIDRef& story) {
    setup(InterfacePtr<ITextModel>(story).get());
}

void MyTextModel::init() {
    model_.reset();
    mirror_ = MutableString();
    rows_ = Array();
    row_ = 0;
    rowDict_ = Value();
    lineLen_ = 0;
    rmvEmptyLines_ = 1;
}

void MyTextModel::setup(ITextModel* story) {
    if (story) story->AddRef();
    InterfacePtr<ITextModel> reference(Adopt::Reference, story);
    init();
    if (!reference) return;
    model_ = std::move(reference);
    mirror_ = MutableString::makeEmpty();
    readText(*model_, mirror_);
}

// --- Reading

String MyTextModel::string() const {
    if (!model_) return String();
    MutableString text = MutableString::makeEmpty();
    readText(*model_, text);
    return text.string();
}

int32_t MyTextModel::length() const {
    return model_ ? totalLength() - 1 : 0;
}

std::u16string_view MyTextModel::mirrorRange(int64_t location, int64_t length) const {
    const std::u16string_view text = mirror_.view();
    const auto from = static_cast<uint64_t>(location);
    const auto count = static_cast<uint64_t>(length);
    if (from > text.size() || count > text.size() - from) {
        throw RangeException("the range of " + std::to_string(length) + " characters at " + std::to_string(location) +
                             " leaves a story of " + std::to_string(text.size()));
    }
    return text.substr(from, count);
}

String MyTextModel::substringWithRange(int64_t location, int64_t length) const {
    return mirror_.isNull() ? String() : String(mirrorRange(location, length));
}

char16_t MyTextModel::charAt(int32_t position) const {
    if (!model_) return 0;
    TextIterator character(model_.get(), 0);
    character += position;
    const uint32_t codePoint = *character;
    return static_cast<char16_t>(codePoint < 0x10000 ? codePoint : ((codePoint - 0x10000) >> 10) + 0xD800);
}

char16_t MyTextModel::lastChar() const {
    const int32_t total = totalLength();
    return total < 2 ? 0 : charAt(total - 2);
}

bool MyTextModel::isOverset() const {
    if (!model_) return true;
    InterfacePtr<ITextFrameList> frames(Adopt::Reference, model_->QueryFrameList());
    if (!frames) return true;
    InterfacePtr<IFrameListComposer> composer(frames.get());
    if (!composer) return true;
    composer->RecomposeThruLastFrame();
    Utils<ITextUtils> text;
    return !text || text->IsOverset(frames.get());
}

// --- Row state

void MyTextModel::setRow(int64_t number) {
    row_ = number;
    rowDict_ = rows_.objectAt(static_cast<size_t>(number));
}

void MyTextModel::offsetRow(int64_t delta) {
    setRow(row_ + delta);
}

// --- Editing

void MyTextModel::deleteTextAt(int32_t position, int32_t length) {
    if (length <= 0) return;
    mirror_.erase(static_cast<size_t>(position), static_cast<size_t>(length));
    if (!model_ || int64_t{position} + length >= totalLength()) return;
    model_->Delete(position, length);
    lineLen_ -= length;
}

int32_t MyTextModel::insertTextAt(int32_t position, const String& text, const String& charStyle, uint8_t) {
    const auto length = static_cast<int32_t>(text.length());
    if (length < 1) return position;
    mirror_.insert(static_cast<size_t>(position), text.view());
    if (!model_) return position;
    const int32_t place = position < 0 ? 0 : position;
    model_->Insert(place, wideString(text));
    lineLen_ += length;
    applyCharStyle(charStyle, place, length);
    applyCharStyle(noCharacterStyle(), place + length, 0);
    return place + length;
}

void MyTextModel::applyCharStyle(const String& name, int32_t position, int32_t length) {
    if (name.isNull() || !model_) return;
    if (position == -1) position = totalLength() - 1;
    const UID style = getCharStyle(::GetDataBase(model_.get()), name);
    if (style == kInvalidUID) return;
    model_->ApplyStyle(position, length, style, AttributeStrand::Character, true, true);
}

void MyTextModel::applyParaStyle(const String& name, int32_t position, int32_t length) {
    if (name.isNull() || !model_) return;
    if (position == -1) position = totalLength() - 1;
    const UID style = paraStyle(name);
    if (style == kInvalidUID) return;
    if (length == 0) applyCharStyle(noCharacterStyle(), -1, 0);
    model_->ApplyStyle(position, length, style, AttributeStrand::Paragraph, true, true);
}

UID MyTextModel::paraStyle(const String& name) const {
    return getParaStyle(::GetDataBase(model_.get()), name);
}

void MyTextModel::addCR() {
    insertTextAt(length(), String(u"\r"), String(), 0);
}

void MyTextModel::deleteLastChar() {
    const int32_t total = totalLength();
    if (total >= 2) deleteTextAt(total - 2, 1);
}

void MyTextModel::clear() {
    if (!model_) return;
    const int32_t span = model_->GetPrimaryStoryThreadSpan();
    if (span > 1) model_->Delete(0, span - 1);
}

// --- Debugging and reserved

void MyTextModel::log(const String& fileName) const {
    const String path = stringByAppendingPathComponents(temporaryPath(nullptr, nullptr), fileName, nullptr);
    std::ofstream(path.utf8(), std::ios::binary | std::ios::trunc) << mirror_.string().utf8();
    openDocWithPath(path);
}

void MyTextModel::setAttributes(int32_t, int32_t, const String&) {
    alertPresenter().beep();
    systemLog("####\tsetAttributes");
}

void MyTextModel::setAttributes(int32_t position, int32_t length, const Dictionary& attributes) {
    setAttributes(position, length, xmlStringWithDict(attributes));
}

void MyTextModel::enumTextAttributes(TextAttributesCallback, void*) const {}

}  // namespace vornaset
