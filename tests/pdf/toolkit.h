#pragma once
// What the tests of the PDF toolkit share. That no test leaves objects behind is checked for all of them, see
// leak_check.cpp.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "pdf/pdf_doc.h"
#include "support/alert.h"

namespace vornaset {

/// The bytes of an object in a file.
template <class T>
std::string bytesOf(const Handle<T>& object) {
    return std::string(object->pdfData().view());
}

inline Data dataOfText(const std::string& text) {
    return Data(text);
}

inline std::string textOf(const Data& data) {
    return std::string(data.view());
}

inline Handle<MyPDFNumber> number(double value) {
    return MyPDFNumber::make(Number(value));
}

inline Handle<MyPDFNumber> integer(int64_t value) {
    return MyPDFNumber::make(Number(value));
}

inline Handle<MyPDFStream> streamOf(const std::string& text) {
    Handle<MyPDFStream> stream = MyPDFStream::stream();
    stream->setData(Data(text));
    return stream;
}

inline Handle<MyPDFArray> arrayOf(std::vector<Handle<MyPDFObj>> children) {
    Handle<MyPDFArray> array = MyPDFArray::array();
    for (const Handle<MyPDFObj>& child : children) array->addObject(child);
    return array;
}

/// A document of so many pages of 100 by 200 points, whose contents are "page 0", "page 1", ...
inline Handle<MyPDFDoc> documentOfPages(int count) {
    Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    for (int index = 0; index < count; ++index) {
        const Handle<MyPDFDictionary> page = document->addPageWithRect({0, 0, 100, 200});
        page->setContents(streamOf("page " + std::to_string(index)));
    }
    return document;
}

/// The contents of the pages that stand under "Kids", in order.
inline std::vector<std::string> contentsOfKids(const Handle<MyPDFDictionary>& node) {
    std::vector<std::string> contents;
    for (const Handle<MyPDFObj>& kid : objectAs<MyPDFArray>(node->kids())->children()) {
        contents.push_back(textOf(objectAs<MyPDFDictionary>(kid)->contentsData()));
    }
    return contents;
}

/// The contents of the pages in the list.
inline std::vector<std::string> contentsOfPages(const Handle<MyPDFDoc>& document) {
    std::vector<std::string> contents;
    for (const Handle<MyPDFDictionary>& page : document->pages()) contents.push_back(textOf(page->contentsData()));
    return contents;
}

inline Handle<MyPDFDictionary> subDictionary(const Handle<MyPDFDictionary>& holder, const String& key) {
    return objectAs<MyPDFDictionary>(holder->objectForKeyedSubscript(key));
}

/// Gathers what message boxes show, as long as it lives.
class RecordedMessages {
  public:
    RecordedMessages() : recorder_(std::make_shared<Recorder>()), former_(setAlertPresenter(recorder_)) {}
    ~RecordedMessages() { setAlertPresenter(former_); }
    RecordedMessages(const RecordedMessages&) = delete;
    RecordedMessages& operator=(const RecordedMessages&) = delete;

    const std::vector<std::string>& texts() const { return recorder_->texts; }

  private:
    struct Recorder : public AlertPresenter {
        void beep() override {}
        AlertAnswer run(const Alert& alert) override {
            texts.push_back(alert.message.utf8());
            return AlertAnswer::defaultButton;
        }
        std::vector<std::string> texts;
    };

    std::shared_ptr<Recorder> recorder_;
    std::shared_ptr<AlertPresenter> former_;
};

/// An object that raises when it is written.
class RaisingObject : public MyPDFObj {
  public:
    static Handle<MyPDFObj> make() { return Handle<MyPDFObj>::adopt(new RaisingObject()); }
    void appendPDFData(std::string&) override { throw RangeException("no bytes to be had"); }

  private:
    RaisingObject() : MyPDFObj(Kind::plain) {}
};

}  // namespace vornaset
