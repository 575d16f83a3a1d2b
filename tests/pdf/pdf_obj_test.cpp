// The root class, absent objects, handles, lists and maps.

#include <vector>

#include "pdf/pdf_objects.h"
#include "pdf/toolkit.h"

namespace vornaset {

TEST(PdfRootObject, AnswersNoToEveryQuestionAndHasNoContent) {
    const Handle<MyPDFObj> object = MyPDFObj::make();
    EXPECT_EQ(object->isIndirect(), 0);
    EXPECT_EQ(object->isString(), 0);
    EXPECT_EQ(object->isNumber(), 0);
    EXPECT_EQ(object->isName(), 0);
    EXPECT_EQ(object->isArray(), 0);
    EXPECT_EQ(object->isDictionary(), 0);
    EXPECT_EQ(object->isPage(), 0);
    EXPECT_EQ(object->isStream(), 0);
    EXPECT_EQ(object->isXObj(), 0);
    EXPECT_EQ(object->isFont(), 0);
    EXPECT_EQ(object->isBox(), 0);
    EXPECT_EQ(object->isColorSpace(), 0);
    EXPECT_EQ(object->isContainer(), 0);
    EXPECT_EQ(object->numberOfChildren(), 0);
    EXPECT_EQ(object->enumChildren([](const Handle<MyPDFObj>&, void*) -> uint8_t { return 0; }, nullptr), 1);
    EXPECT_TRUE(object->boxString().isNull());
    EXPECT_TRUE(object->key().isNull());
    EXPECT_EQ(object->objNum(), 0);
    EXPECT_FALSE(object->pdfString().isNull());
    EXPECT_EQ(object->pdfString().length(), 0U);
    EXPECT_FALSE(object->pdfData().isNull());
    EXPECT_EQ(object->pdfData().length(), 0U);
}

TEST(PdfRootObject, KeepsKeyAndNumber) {
    const Handle<MyPDFObj> object = MyPDFObj::make();
    object->setKey(u"First");
    object->setKey(u"Second");
    object->setObjNum(17);
    EXPECT_EQ(object->key(), String(u"Second"));
    EXPECT_EQ(object->objNum(), 17);
}

TEST(PdfRootObject, IsNeverIndirectWhateverItsClass) {
    const std::vector<Handle<MyPDFObj>> objects{MyPDFBoolean::boolean(), MyPDFNumber::make(), MyPDFString::make(),
                                                MyPDFName::name(),       MyPDFArray::array(), MyPDFDictionary::make(),
                                                MyPDFStream::stream()};
    for (const Handle<MyPDFObj>& object : objects) EXPECT_EQ(object->isIndirect(), 0);
}

TEST(PdfRootObject, TellsWhatEachClassIs) {
    const Handle<MyPDFObj> text = MyPDFString::make();
    const Handle<MyPDFObj> null = MyPDFNumber::make();
    const Handle<MyPDFObj> name = MyPDFName::name();
    const Handle<MyPDFObj> array = MyPDFArray::array();
    const Handle<MyPDFObj> dictionary = MyPDFDictionary::make();
    const Handle<MyPDFObj> stream = MyPDFStream::stream();
    EXPECT_EQ(text->isString(), 1);
    EXPECT_EQ(null->isNumber(), 1);
    EXPECT_EQ(name->isName(), 1);
    EXPECT_EQ(array->isArray(), 1);
    EXPECT_EQ(array->isContainer(), 1);
    EXPECT_EQ(dictionary->isDictionary(), 1);
    EXPECT_EQ(dictionary->isContainer(), 1);
    EXPECT_EQ(dictionary->isStream(), 0);
    EXPECT_EQ(stream->isDictionary(), 1);
    EXPECT_EQ(stream->isStream(), 1);
    EXPECT_EQ(stream->isContainer(), 1);
    for (const Handle<MyPDFObj>& scalar : {text, null, name}) EXPECT_EQ(scalar->isContainer(), 0);
}

TEST(PdfRootObject, IsAColourSpaceAsAContainerUnderThatKey) {
    const Handle<MyPDFArray> array = MyPDFArray::array();
    EXPECT_EQ(array->isColorSpace(), 0);
    array->setKey(u"ColorSpace");
    EXPECT_EQ(array->isColorSpace(), 1);
    array->setKey(u"XObject");
    EXPECT_EQ(array->isColorSpace(), 0);
    const Handle<MyPDFName> name = MyPDFName::nameWithCString("DeviceCMYK");
    name->setKey(u"ColorSpace");
    EXPECT_EQ(name->isColorSpace(), 0);
}

TEST(PdfAllocated, CountsLiveObjectsOfAllClasses) {
    const int64_t before = MyPDFObj::allocated();
    {
        const Handle<MyPDFObj> plain = MyPDFObj::make();
        const Handle<MyPDFDictionary> dictionary = MyPDFDictionary::make();
        dictionary->setInteger(1, u"One");
        const Handle<MyPDFDictionary> again = dictionary;
        EXPECT_EQ(MyPDFObj::allocated(), before + 3);
        dictionary->setObject(nullptr, u"One");
        EXPECT_EQ(MyPDFObj::allocated(), before + 2);
    }
    EXPECT_EQ(MyPDFObj::allocated(), before);
}

TEST(PdfAllocated, DoesNotCountStandInsForAbsentObjects) {
    const int64_t before = MyPDFObj::allocated();
    const Handle<MyPDFDictionary> absent;
    EXPECT_TRUE(absent->type().isNull());
    EXPECT_EQ(MyPDFObj::allocated(), before);
}

TEST(PdfAllocated, ReturnsToItsFormerValueWhenADocumentIsGone) {
    const int64_t before = MyPDFObj::allocated();
    {
        const Handle<MyPDFDoc> document = documentOfPages(3);
        EXPECT_FALSE(document->pdfData().isNull());
        EXPECT_GT(MyPDFObj::allocated(), before);
    }
    EXPECT_EQ(MyPDFObj::allocated(), before);
}

// ----- Absent objects

TEST(AbsentPdfObject, AnswersAbsentZeroOrFalse) {
    const Handle<MyPDFObj> object;
    EXPECT_EQ(object->isContainer(), 0);
    EXPECT_EQ(object->numberOfChildren(), 0);
    EXPECT_EQ(object->objNum(), 0);
    EXPECT_TRUE(object->key().isNull());
    EXPECT_TRUE(object->pdfString().isNull());
    EXPECT_TRUE(object->pdfData().isNull());
    EXPECT_TRUE(object->boxString().isNull());
    EXPECT_EQ(object->enumChildren([](const Handle<MyPDFObj>&, void*) -> uint8_t { return 1; }, nullptr), 0);
    EXPECT_EQ(MyPDFObj::enumChildren(
                  object, [](const Handle<MyPDFObj>&, void*) -> uint8_t { return 1; }, nullptr),
              0);
}

TEST(AbsentPdfObject, AnswersSoInEveryClass) {
    const Handle<MyPDFBoolean> boolean;
    EXPECT_EQ(boolean->b(), 0);
    EXPECT_TRUE(boolean->pdfString().isNull());
    EXPECT_TRUE(boolean->pdfData().isNull());
    const Handle<MyPDFNumber> absentNumber;
    EXPECT_EQ(absentNumber->isNumber(), 0);
    EXPECT_EQ(absentNumber->floatValue(), 0);
    EXPECT_FALSE(absentNumber->number().has_value());
    EXPECT_TRUE(absentNumber->pdfString().isNull());
    const Handle<MyPDFString> string;
    EXPECT_EQ(string->isString(), 0);
    EXPECT_TRUE(string->string().isNull());
    EXPECT_TRUE(string->data().isNull());
    EXPECT_TRUE(string->pdfData().isNull());
    const Handle<MyPDFName> name;
    EXPECT_EQ(name->isName(), 0);
    EXPECT_TRUE(name->data().isNull());
    const Handle<MyPDFArray> array;
    EXPECT_EQ(array->isArray(), 0);
    EXPECT_EQ(array->isContainer(), 0);
    EXPECT_TRUE(array->children().isNull());
    EXPECT_EQ(array->objectAtIndexedSubscript(7), nullptr);
    EXPECT_TRUE(array->boxString().isNull());
    EXPECT_TRUE(array->pdfString().isNull());
    const Handle<MyPDFStream> stream;
    EXPECT_EQ(stream->isStream(), 0);
    EXPECT_EQ(stream->isContainer(), 0);
    EXPECT_TRUE(stream->data().isNull());
    EXPECT_EQ(stream->dataFormat(), 0);
    EXPECT_EQ(stream->streamRef(), nullptr);
    EXPECT_TRUE(stream->pdfData().isNull());
}

TEST(AbsentPdfObject, AsADictionaryGivesZeroRectanglesAndNoEntries) {
    const Handle<MyPDFDictionary> dictionary;
    for (const Rect& box : {dictionary->mediaBox(), dictionary->cropBox(), dictionary->bleedBox(),
                            dictionary->trimBox(), dictionary->artBox(), dictionary->bbox()}) {
        EXPECT_EQ(box, Rect());
    }
    EXPECT_EQ(dictionary->hasTrimBox(), 0);
    EXPECT_EQ(dictionary->isPage(), 0);
    EXPECT_EQ(dictionary->isDictionary(), 0);
    EXPECT_EQ(dictionary->count(), 0);
    EXPECT_TRUE(dictionary->filter().isNull());
    EXPECT_EQ(dictionary->parent(), nullptr);
    EXPECT_TRUE(dictionary->dictionary().isNull());
    EXPECT_TRUE(dictionary->contentsData().isNull());
    EXPECT_TRUE(dictionary->description().isNull());
}

TEST(AbsentPdfObject, ForgetsWhatItIsGiven) {
    const Handle<MyPDFStream> stream;
    stream->setKey(u"Key");
    stream->setObjNum(4);
    stream->setData(Data(std::string("x")));
    stream->setDataFormat(1);
    stream->setInteger(3, u"Count");
    stream->setParent(MyPDFDictionary::make());
    stream->setMatrix(u"1 0 0 1 0 0");
    stream->setDictionary(ObjectMap::make());
    stream->setMediaBox({0, 0, 1, 1});
    EXPECT_TRUE(stream->key().isNull());
    EXPECT_EQ(stream->objNum(), 0);
    EXPECT_TRUE(stream->data().isNull());
    EXPECT_EQ(stream->dataFormat(), 0);
    EXPECT_EQ(stream->count(), 0);
    EXPECT_EQ(stream->parent(), nullptr);
    EXPECT_TRUE(stream->matrix().isNull());
    EXPECT_TRUE(stream->dictionary().isNull());
    const Handle<MyPDFArray> array;
    array->addObject(integer(1));
    array->setChildren(ObjectList<MyPDFObj>::make());
    array->children().add(integer(1));
    EXPECT_EQ(array->numberOfChildren(), 0);
    const Handle<MyPDFBoolean> boolean;
    boolean->setB(1);
    EXPECT_EQ(boolean->b(), 0);
    const Handle<MyPDFNumber> absentNumber;
    absentNumber->setFloatValue(3);
    absentNumber->scale(2);
    EXPECT_FALSE(absentNumber->number().has_value());
    const Handle<MyPDFName> name;
    name->setData(Data(std::string("/x")));
    EXPECT_TRUE(name->data().isNull());
}

// ----- Handles

TEST(PdfHandle, OfAClassIsOneOnItsBase) {
    const Handle<MyPDFStream> stream = MyPDFStream::stream();
    const Handle<MyPDFDictionary> dictionary = stream;
    const Handle<MyPDFObj> object = dictionary;
    EXPECT_EQ(object.get(), stream.get());
    EXPECT_EQ(stream->useCount(), 3U);
    EXPECT_EQ(objectAs<MyPDFStream>(object), stream);
    EXPECT_EQ(objectAs<MyPDFArray>(object), nullptr);
    EXPECT_EQ(objectAs<MyPDFArray>(nullptr), nullptr);
}

TEST(PdfHandle, RefusesAnOperandOfAnotherClassByItsName) {
    const Handle<MyPDFObj> name = MyPDFName::name();
    try {
        operandOf<MyPDFNumber>(name, "number");
        FAIL() << "a name is no number";
    } catch (const UnrecognizedOperation& exception) {
        EXPECT_EQ(exception.reason(), "A MyPDFName has no operation \"number\".");
    }
    EXPECT_EQ(operandOf<MyPDFNumber>(nullptr, "number"), nullptr);
}

TEST(PdfHandle, DoesNotKeepAnObjectWhenItIsWeak) {
    Handle<MyPDFDictionary> dictionary = MyPDFDictionary::make();
    const WeakHandle<MyPDFDictionary> weak(dictionary);
    const WeakHandle<MyPDFDictionary> none;
    EXPECT_EQ(weak.lock(), dictionary);
    EXPECT_EQ(dictionary->useCount(), 1U);
    dictionary = nullptr;
    EXPECT_EQ(weak.lock(), nullptr);
    EXPECT_EQ(weak.get(), nullptr);
    EXPECT_EQ(none.lock(), nullptr);
}

TEST(PdfHandle, EndsAChainOfAHundredThousandObjectsWithoutGrowingTheStack) {
    Handle<MyPDFDictionary> head = MyPDFDictionary::make();
    for (int link = 0; link < 100'000; ++link) {
        const Handle<MyPDFDictionary> next = MyPDFDictionary::make();
        next->setObject(head, u"Next");
        head = next;
    }
    const int64_t before = MyPDFObj::allocated();
    head = nullptr;
    EXPECT_EQ(MyPDFObj::allocated(), before - 100'001);
}

// ----- Lists and maps

TEST(PdfObjectList, RaisesForPlacesOutsideAndForAbsentObjects) {
    const ObjectList<MyPDFObj> list = ObjectList<MyPDFObj>::make();
    list.add(integer(1));
    EXPECT_THROW(list.objectAt(1), RangeException);
    EXPECT_THROW(list.replace(1, integer(2)), RangeException);
    EXPECT_THROW(list.insert(2, integer(2)), RangeException);
    EXPECT_THROW(list.removeRange(0, 2), RangeException);
    EXPECT_THROW(list.removeRange(2, 0), RangeException);
    EXPECT_THROW(list.add(nullptr), InvalidArgumentException);
    EXPECT_THROW(list.insert(0, nullptr), InvalidArgumentException);
    EXPECT_THROW(list.replace(0, nullptr), InvalidArgumentException);
    EXPECT_THROW(ObjectList<MyPDFObj>::make({nullptr}), InvalidArgumentException);
    EXPECT_EQ(list.count(), 1U);
}

TEST(PdfObjectList, InsertsAndRemovesInOrder) {
    const Handle<MyPDFObj> one = integer(1);
    const Handle<MyPDFObj> two = integer(2);
    const Handle<MyPDFObj> three = integer(3);
    const ObjectList<MyPDFObj> list = ObjectList<MyPDFObj>::make({one, three});
    list.insert(1, two);
    EXPECT_EQ(list[1], two);
    EXPECT_EQ(list.first(), one);
    EXPECT_EQ(list.last(), three);
    list.removeRange(0, 2);
    EXPECT_EQ(list.count(), 1U);
    EXPECT_EQ(list[0], three);
    list.removeLast();
    EXPECT_TRUE(list.isEmpty());
    list.removeLast();
    EXPECT_EQ(list.first(), nullptr);
}

TEST(PdfObjectList, AbsentAnswersNothingAndTakesNothing) {
    const ObjectList<MyPDFObj> list;
    list.add(integer(1));
    list.insert(5, integer(1));
    list.replace(5, integer(1));
    list.removeRange(3, 4);
    list.removeLast();
    list.removeAll();
    EXPECT_EQ(list.count(), 0U);
    EXPECT_EQ(list.objectAt(3), nullptr);
    EXPECT_EQ(list.last(), nullptr);
}

TEST(PdfObjectMap, KeepsTheOrderOfFirstInsertion) {
    const ObjectMap map = ObjectMap::make();
    for (int index = 0; index < 40; ++index) map.setObject(integer(index), String(std::to_string(index).c_str()));
    map.setObject(integer(100), u"0");
    map.setObject(nullptr, u"1");
    map.setObject(nullptr, u"never there");
    ASSERT_EQ(map.count(), 39U);
    EXPECT_EQ(map.keyAt(0), String(u"0"));
    EXPECT_EQ(map.objectAt(0)->pdfString(), String(u"100"));
    EXPECT_EQ(map.keyAt(1), String(u"2"));
    EXPECT_EQ(map.objectForKey(u"39")->pdfString(), String(u"39"));
    EXPECT_EQ(map.objectForKey(u"1"), nullptr);
    EXPECT_THROW(map.keyAt(39), RangeException);
    EXPECT_THROW(map.objectAt(39), RangeException);
    EXPECT_THROW(map.setObject(integer(1), nullptr), InvalidArgumentException);
}

TEST(PdfObjectMap, DescribesItselfByTheLabelsOfItsValues) {
    const ObjectMap map = ObjectMap::make();
    EXPECT_EQ(map.description(), String(u"{\n}"));
    map.setObject(MyPDFName::nameWithCString("Page"), u"Type");
    map.setObject(integer(2), u"Count");
    EXPECT_EQ(map.description(), String(u"{\n    Type = /Page;\n    Count = 2;\n}"));
}

}  // namespace vornaset
