// Laying documents under one another, and appending.

#include "pdf/pdf_merging.h"

#include <cstdlib>
#include <filesystem>

#include "pdf/toolkit.h"
#include "support/scratch_folder.h"

namespace vornaset {

namespace {

using Texts = std::vector<std::string>;

Handle<MyPDFDictionary> namesOf(const Handle<MyPDFDictionary>& page) {
    return subDictionary(subDictionary(page, u"Resources"), u"XObject");
}

std::string formText(const Handle<MyPDFDictionary>& page, const String& name) {
    return textOf(dataOf(namesOf(page)->objectForKeyedSubscript(name)));
}

std::string written(const ScratchFolder& folder, const std::string& name, const Handle<MyPDFDoc>& document) {
    const std::string path = folder.path() + "/" + name;
    document->writeToFile(path.c_str());
    return path;
}

Handle<MyPDFDoc> readFrom(const std::string& path) {
    return MyPDFDoc::pdfDocWithPath(path.c_str());
}

/// Pages whose contents are `text` and the page's place.
Handle<MyPDFDoc> pagesOf(const std::string& text, int count) {
    Handle<MyPDFDoc> document = documentOfPages(count);
    for (int index = 0; index < count; ++index) {
        document->pages()[static_cast<size_t>(index)]->setContents(streamOf(text + std::to_string(index)));
    }
    return document;
}

}  // namespace

// ----- Names

TEST(PdfFormName, IsTheFirstFreeOneAndStandsInTheResources) {
    const Handle<MyPDFDictionary> page = documentOfPages(1)->pages()[0];
    const Handle<MyPDFStream> form = MyPDFStream::stream();
    EXPECT_EQ(addFormToPageResource(page, form), String(u"Kd1"));
    EXPECT_EQ(namesOf(page)->objectForKeyedSubscript(u"Kd1"), Handle<MyPDFObj>(form));
    EXPECT_EQ(addFormToPageResource(page, MyPDFStream::stream()), String(u"Kd2"));
    namesOf(page)->setObject(nullptr, u"Kd1");
    EXPECT_EQ(addFormToPageResource(page, MyPDFStream::stream()), String(u"Kd1"));
}

TEST(PdfFormName, DoesNotCountWhatElseStandsThere) {
    const Handle<MyPDFDictionary> page = documentOfPages(1)->pages()[0];
    const Handle<MyPDFDictionary> names = MyPDFDictionary::make();
    names->setObject(MyPDFStream::stream(), u"Im1");
    names->setObject(MyPDFStream::stream(), u"Im2");
    subDictionary(page, u"Resources")->setObject(names, u"XObject");
    EXPECT_EQ(addFormToPageResource(page, MyPDFStream::stream()), String(u"Kd1"));
    EXPECT_EQ(names->numberOfChildren(), 3);
}

TEST(PdfFormName, BeginsBehindTheEntryCount) {
    const Handle<MyPDFDictionary> page = documentOfPages(1)->pages()[0];
    addFormToPageResource(page, MyPDFStream::stream());
    namesOf(page)->setCount(7);
    EXPECT_EQ(addFormToPageResource(page, MyPDFStream::stream()), String(u"Kd8"));
}

TEST(PdfFormName, EndsAfterAHundred) {
    const Handle<MyPDFDictionary> page = documentOfPages(1)->pages()[0];
    for (int taken = 1; taken <= 100; ++taken) {
        EXPECT_EQ(addFormToPageResource(page, MyPDFStream::stream()).utf8(), "Kd" + std::to_string(taken));
    }
    const Handle<MyPDFStream> form = MyPDFStream::stream();
    EXPECT_TRUE(addFormToPageResource(page, form).isNull());
    EXPECT_EQ(namesOf(page)->numberOfChildren(), 100);
    EXPECT_EQ(form->useCount(), 1U);
}

TEST(PdfFormName, TakesThePlaceOfWhatIsNoDictionary) {
    const Handle<MyPDFDictionary> page = documentOfPages(1)->pages()[0];
    subDictionary(page, u"Resources")->setInteger(3, u"XObject");
    EXPECT_EQ(addFormToPageResource(page, MyPDFStream::stream()), String(u"Kd1"));
    EXPECT_EQ(namesOf(page)->numberOfChildren(), 1);
}

TEST(PdfFormName, IsGivenWithoutResourcesButKeptNowhere) {
    const Handle<MyPDFDictionary> page = documentOfPages(1)->pages()[0];
    page->setResources(nullptr);
    EXPECT_EQ(addFormToPageResource(page, MyPDFStream::stream()), String(u"Kd1"));
    EXPECT_EQ(page->resources(), nullptr);
    page->setResources(MyPDFArray::array());
    EXPECT_THROW(addFormToPageResource(page, MyPDFStream::stream()), UnrecognizedOperation);
}

// ----- Content

TEST(PdfFormContent, OfTheSameSizeIsPlacedWithoutOffset) {
    const Handle<MyPDFDoc> document = documentOfPages(1);
    const Handle<MyPDFDictionary> page = document->pages()[0];
    addFormToPageContent(page, document->formForPageNum(0), u"Kd1", nullptr);
    EXPECT_EQ(textOf(page->contentsData()), "q 1 0 0 1 0.000000 0.000000 cm /Kd1 Do Q\npage 0");
}

TEST(PdfFormContent, IsCentredBySizesWithoutOrigins) {
    const Handle<MyPDFDictionary> page = documentOfPages(1)->pages()[0];
    page->setCropBox({7, 7, 100, 200});
    const Handle<MyPDFStream> form = MyPDFStream::stream();
    form->setBbox({50, 50, 20, 300});
    addFormToPageContent(page, form, u"Kd1", nullptr);
    EXPECT_EQ(textOf(page->contentsData()), "q 1 0 0 1 40.000000 -50.000000 cm /Kd1 Do Q\npage 0");
}

TEST(PdfFormContent, TakesAMatrixAsItStandsAndAnAbsentName) {
    const Handle<MyPDFDictionary> page = documentOfPages(1)->pages()[0];
    addFormToPageContent(page, MyPDFStream::stream(), nullptr, u"2 0 0 2 1 1");
    EXPECT_EQ(textOf(page->contentsData()), "q 2 0 0 2 1 1 cm /(null) Do Q\npage 0");
}

TEST(PdfFormContent, GoesIntoTheFirstStreamOfAnArray) {
    const Handle<MyPDFDictionary> page = documentOfPages(1)->pages()[0];
    const Handle<MyPDFStream> first = streamOf("first ");
    const Handle<MyPDFStream> second = streamOf("second");
    page->setContents(arrayOf({first, second}));
    addFormToPageContent(page, MyPDFStream::stream(), u"Kd1", u"1 0 0 1 0 0");
    EXPECT_EQ(textOf(first->data()), "q 1 0 0 1 0 0 cm /Kd1 Do Q\nfirst ");
    EXPECT_EQ(textOf(second->data()), "second");
}

TEST(PdfFormContent, IsNotMadeForAPageWithoutContents) {
    const Handle<MyPDFDoc> source = documentOfPages(1);
    const Handle<MyPDFDoc> target = documentOfPages(1);
    const Handle<MyPDFDictionary> page = target->pages()[0];
    page->setContents(nullptr);
    mergeDocs(source, target, nullptr);
    EXPECT_EQ(formText(page, u"Kd1"), "page 0");
    EXPECT_EQ(page->contents(), nullptr);
}

TEST(PdfFormContent, SpoilsAPageThatWasWritten) {
    const Handle<MyPDFDoc> document = documentOfPages(1);
    document->pdfData();
    const Handle<MyPDFDictionary> page = document->pages()[0];
    addFormToPageContent(page, MyPDFStream::stream(), u"Kd1", u"1 0 0 1 0 0");
    EXPECT_EQ(textOf(page->contentsData()).substr(0, 29), "q 1 0 0 1 0 0 cm /Kd1 Do Q\n\x78\x9C");
    EXPECT_EQ(objectAs<MyPDFStream>(page->contents())->dataFormat(), -1);
}

TEST(PdfFormAtPoint, IsPlacedThere) {
    const Handle<MyPDFDoc> source = pagesOf("form ", 2);
    const Handle<MyPDFDictionary> page = documentOfPages(1)->pages()[0];
    addFormAtPoint(source, 1, page, 10.5, -3);
    EXPECT_EQ(textOf(page->contentsData()), "q 1 0 0 1 10.500000 -3.000000 cm /Kd1 Do Q\npage 0");
    EXPECT_EQ(formText(page, u"Kd1"), "form 1");
    addFormAtPoint(source, 2, page, 0, 0);
    addFormAtPoint(nullptr, 0, page, 0, 0);
    EXPECT_EQ(namesOf(page)->numberOfChildren(), 1);
}

// ----- Under one another

TEST(PdfUnderlay, PutsOneFormUnderAllPages) {
    const Handle<MyPDFDoc> source = pagesOf("letterhead ", 1);
    const Handle<MyPDFDoc> target = documentOfPages(5);
    mergeDocs(source, target, nullptr);
    const Handle<MyPDFObj> form = namesOf(target->pages()[0])->objectForKeyedSubscript(u"Kd1");
    for (const Handle<MyPDFDictionary>& page : target->pages()) {
        EXPECT_EQ(namesOf(page)->objectForKeyedSubscript(u"Kd1"), form);
        EXPECT_EQ(textOf(page->contentsData()).find("q 1 0 0 1 0.000000 0.000000 cm /Kd1 Do Q\npage "), 0U);
    }
    target->rebuildObjectsList();
    size_t times = 0;
    for (const Handle<MyPDFObj>& object : target->pdfObjs()) times += object == form ? 1 : 0;
    EXPECT_EQ(times, 1U);
}

TEST(PdfUnderlay, GoesThroughTheSourcePagesOverAndOver) {
    const Handle<MyPDFDoc> target = documentOfPages(7);
    mergeDocs(pagesOf("s", 3), target, nullptr);
    Texts texts;
    for (const Handle<MyPDFDictionary>& page : target->pages()) texts.push_back(formText(page, u"Kd1"));
    EXPECT_EQ(texts, (Texts{"s0", "s1", "s2", "s0", "s1", "s2", "s0"}));
}

TEST(PdfUnderlay, IgnoresSourcePagesBeyondTheTarget) {
    const Handle<MyPDFDoc> target = documentOfPages(1);
    mergeDocs(pagesOf("s", 3), target, nullptr);
    EXPECT_EQ(formText(target->pages()[0], u"Kd1"), "s0");
    EXPECT_EQ(namesOf(target->pages()[0])->numberOfChildren(), 1);
}

TEST(PdfUnderlay, TakesTheNextNameOnAPageThatHasOne) {
    const Handle<MyPDFDoc> target = documentOfPages(1);
    mergeDocs(pagesOf("a", 1), target, nullptr);
    mergeDocs(pagesOf("b", 1), target, nullptr);
    EXPECT_EQ(formText(target->pages()[0], u"Kd1"), "a0");
    EXPECT_EQ(formText(target->pages()[0], u"Kd2"), "b0");
}

TEST(PdfUnderlay, WritesTheTargetWithoutSourcePagesToo) {
    const ScratchFolder folder;
    const std::string path = folder.path() + "/out.pdf";
    mergeDocs(MyPDFDoc::pdfDoc(), documentOfPages(1), path.c_str());
    EXPECT_EQ(contentOf(path).substr(0, 8), "%PDF-1.3");
}

TEST(PdfUnderlay, ShowsWhatRaisesAndWritesTheTargetAllTheSame) {
    const RecordedMessages messages;
    const ScratchFolder folder;
    const std::string path = folder.path() + "/out.pdf";
    const Handle<MyPDFDoc> target = documentOfPages(3);
    target->pages()[1]->setResources(MyPDFArray::array());
    mergeDocs(pagesOf("s", 1), target, path.c_str());
    ASSERT_EQ(messages.texts().size(), 1U);
    EXPECT_EQ(messages.texts()[0], "A MyPDFArray has no operation \"objectForKeyedSubscript:\".");
    EXPECT_TRUE(namesOf(target->pages()[0]));
    EXPECT_FALSE(namesOf(target->pages()[2]));
    EXPECT_GT(contentOf(path).size(), 500U);
}

TEST(PdfUnderlayFiles, MakeTheLongerOneTheTarget) {
    const ScratchFolder folder;
    const std::string two = written(folder, "two.pdf", pagesOf("two", 2));
    const std::string three = written(folder, "three.pdf", pagesOf("three", 3));
    const std::string out = folder.path() + "/out.pdf";
    EXPECT_EQ(mergeDocs(two.c_str(), three.c_str(), out.c_str()).utf8(), out);
    const Handle<MyPDFDoc> merged = readFrom(out);
    ASSERT_EQ(merged->pages().count(), 3U);
    EXPECT_EQ(formText(merged->pages()[2], u"Kd1"), "two0");
}

TEST(PdfUnderlayFiles, OverwriteTheTargetWithoutAnOutputPath) {
    const ScratchFolder folder;
    const std::string two = written(folder, "two.pdf", pagesOf("two", 2));
    const std::string three = written(folder, "three.pdf", pagesOf("three", 3));
    const std::string before = contentOf(two);
    EXPECT_EQ(mergeDocs(two.c_str(), three.c_str(), nullptr).utf8(), three);
    EXPECT_EQ(contentOf(two), before);
    EXPECT_EQ(formText(readFrom(three)->pages()[1], u"Kd1"), "two1");
}

TEST(PdfUnderlayFiles, OverwriteTheFirstOnATie) {
    const ScratchFolder folder;
    const std::string first = written(folder, "first.pdf", pagesOf("first", 2));
    const std::string second = written(folder, "second.pdf", pagesOf("second", 2));
    EXPECT_EQ(mergeDocs(first.c_str(), second.c_str(), nullptr).utf8(), first);
    const Handle<MyPDFDoc> merged = readFrom(first);
    ASSERT_EQ(merged->pages().count(), 2U);
    EXPECT_EQ(formText(merged->pages()[1], u"Kd1"), "second1");
    EXPECT_EQ(textOf(merged->pages()[1]->contentsData()), "q 1 0 0 1 0.000000 0.000000 cm /Kd1 Do Q\nfirst1");
}

TEST(PdfUnderlayFiles, RewriteTheOtherWhenOneIsMissing) {
    const ScratchFolder folder;
    const std::string there = written(folder, "there.pdf", pagesOf("there", 2));
    const std::string missing = folder.path() + "/missing.pdf";
    EXPECT_EQ(mergeDocs(missing.c_str(), there.c_str(), nullptr).utf8(), there);
    EXPECT_EQ(contentsOfPages(readFrom(there)), (Texts{"there0", "there1"}));
    EXPECT_FALSE(std::filesystem::exists(missing));
}

TEST(PdfUnderlayFiles, LeaveAnUnreadableFileAloneAndSaySo) {
    const RecordedMessages messages;
    const ScratchFolder folder;
    const std::string bad = folder.path() + "/bad.pdf";
    const std::string missing = folder.path() + "/missing.pdf";
    writeFile(bad, "no PDF at all");
    EXPECT_EQ(mergeDocs(bad.c_str(), missing.c_str(), nullptr).utf8(), bad);
    EXPECT_EQ(contentOf(bad), "no PDF at all");
    EXPECT_EQ(messages.texts().size(), 1U);
}

// ----- Appending

TEST(PdfAppending, MovesPagesWithTheirInheritedBoxes) {
    const ScratchFolder folder;
    const std::string out = folder.path() + "/out.pdf";
    const Handle<MyPDFDoc> target = pagesOf("t", 2);
    {
        const Handle<MyPDFDoc> source = pagesOf("s", 2);
        const Handle<MyPDFDictionary> page = source->pages()[1];
        page->setObject(nullptr, u"MediaBox");
        page->setObject(nullptr, u"CropBox");
        source->pagesObj()->setMediaBox({0, 0, 30, 40});
        source->pagesObj()->setResources(MyPDFDictionary::make());
        page->setResources(nullptr);
        mergePages(target, source, out.c_str());
    }
    EXPECT_EQ(target->numberOfPages(), 4);
    ASSERT_EQ(target->pages().count(), 4U);
    EXPECT_EQ(target->pages()[3]->mediaBox(), (Rect{0, 0, 30, 40}));
    EXPECT_EQ(target->pages()[3]->parent(), target->pagesObj());
    EXPECT_EQ(target->pages()[3]->resources(), nullptr);
    EXPECT_EQ(contentsOfPages(readFrom(out)), (Texts{"t0", "t1", "s0", "s1"}));
}

TEST(PdfAppending, JoinsFiles) {
    const ScratchFolder folder;
    const std::string first = written(folder, "first.pdf", pagesOf("first", 2));
    const std::string second = written(folder, "second.pdf", pagesOf("second", 1));
    const std::string out = folder.path() + "/out.pdf";
    mergePages(first.c_str(), second.c_str(), out.c_str());
    EXPECT_EQ(contentsOfPages(readFrom(out)), (Texts{"first0", "first1", "second0"}));
}

TEST(PdfAppending, OfADocumentToItselfListsItsPagesTwice) {
    const ScratchFolder folder;
    const std::string out = folder.path() + "/out.pdf";
    const Handle<MyPDFDoc> document = pagesOf("t", 3);
    mergePages(document, document, out.c_str());
    EXPECT_EQ(document->numberOfPages(), 6);
    EXPECT_EQ(contentsOfPages(readFrom(out)), (Texts{"t0", "t1", "t2", "t0", "t1", "t2"}));
}

TEST(PdfAppending, RewritesTheTargetWhenTheSourceIsMissing) {
    const ScratchFolder folder;
    const std::string first = written(folder, "first.pdf", pagesOf("first", 2));
    const std::string out = folder.path() + "/out.pdf";
    mergePages(first.c_str(), (folder.path() + "/missing.pdf").c_str(), out.c_str());
    EXPECT_EQ(contentsOfPages(readFrom(out)), (Texts{"first0", "first1"}));
}

TEST(PdfAppending, ToAFileThatIsMissingWritesNoPages) {
    const ScratchFolder folder;
    const std::string second = written(folder, "second.pdf", pagesOf("second", 1));
    const std::string out = folder.path() + "/out.pdf";
    mergePages((folder.path() + "/missing.pdf").c_str(), second.c_str(), out.c_str());
    EXPECT_EQ(readFrom(out)->numberOfPages(), 0);
}

TEST(PdfLastPageOfAFile, IsDeletedInPlaceButForASinglePage) {
    const ScratchFolder folder;
    const std::string path = written(folder, "a.pdf", pagesOf("a", 2));
    deleteLastPage(path.c_str());
    EXPECT_EQ(contentsOfPages(readFrom(path)), Texts{"a0"});
    deleteLastPage(path.c_str());
    EXPECT_EQ(contentsOfPages(readFrom(path)), Texts{"a0"});
}

// ----- Backgrounds

TEST(PdfBackgrounds, LieUnderThePagesOfTheirPlaces) {
    const ScratchFolder folder;
    const std::string red = written(folder, "red.pdf", pagesOf("red", 2));
    const std::string blue = written(folder, "blue.pdf", pagesOf("blue", 1));
    const Handle<MyPDFDoc> target = documentOfPages(4);
    mergeDocWithPaths(target, Array::make({red.c_str(), blue.c_str(), "/no/such/file", red.c_str(), "unused"}));
    EXPECT_EQ(formText(target->pages()[0], u"Kd1"), "red0");
    EXPECT_EQ(formText(target->pages()[1], u"Kd1"), "blue0");
    EXPECT_FALSE(namesOf(target->pages()[2]));
    EXPECT_EQ(textOf(target->pages()[2]->contentsData()), "page 2");
    EXPECT_EQ(namesOf(target->pages()[3])->objectForKeyedSubscript(u"Kd1"),
              namesOf(target->pages()[0])->objectForKeyedSubscript(u"Kd1"));
}

TEST(PdfBackgrounds, WithOnePathOpenItsFileOnceAndShareItsForm) {
    const ScratchFolder folder;
    const std::string path = written(folder, "red.pdf", pagesOf("red", 1));
    const Handle<MyPDFDoc> target = documentOfPages(3);
    mergeDocWithPaths(target, Array::make({path.c_str(), path.c_str(), path.c_str()}));
    const Handle<MyPDFObj> form = namesOf(target->pages()[0])->objectForKeyedSubscript(u"Kd1");
    ASSERT_TRUE(form);
    for (const Handle<MyPDFDictionary>& page : target->pages()) {
        EXPECT_EQ(namesOf(page)->objectForKeyedSubscript(u"Kd1"), form);
    }
}

TEST(PdfBackgrounds, FewerThanPagesRaiseAtTheFirstMissingPlace) {
    const ScratchFolder folder;
    const std::string path = written(folder, "red.pdf", pagesOf("red", 1));
    const Handle<MyPDFDoc> target = documentOfPages(3);
    EXPECT_THROW(mergeDocWithPaths(target, Array::make({path.c_str(), path.c_str()})), RangeException);
    EXPECT_TRUE(namesOf(target->pages()[1]));
}

TEST(PdfBackgrounds, DoNothingWithAnEmptyList) {
    const Handle<MyPDFDoc> target = documentOfPages(3);
    mergeDocWithPaths(target, Array::make());
    mergeDocWithPaths(target, Array());
    EXPECT_EQ(contentsOfPages(target), (Texts{"page 0", "page 1", "page 2"}));
}

TEST(PdfBackgrounds, OfAFileGiveTheDocumentWithoutWritingIt) {
    const ScratchFolder folder;
    const std::string path = written(folder, "target.pdf", pagesOf("t", 1));
    const std::string red = written(folder, "red.pdf", pagesOf("red", 1));
    const std::string before = contentOf(path);
    const Handle<MyPDFDoc> document = mergeDocWithPaths(path.c_str(), Array::make({red.c_str()}));
    EXPECT_EQ(formText(document->pages()[0], u"Kd1"), "red0");
    EXPECT_EQ(contentOf(path), before);
}

TEST(PdfBackgrounds, OfAFileWithTooFewPathsShowAMessageAndGiveNothing) {
    const RecordedMessages messages;
    const ScratchFolder folder;
    const std::string path = written(folder, "target.pdf", pagesOf("t", 2));
    EXPECT_EQ(mergeDocWithPaths(path.c_str(), Array::make({"/no/such/file"})), nullptr);
    EXPECT_EQ(messages.texts().size(), 1U);
}

// ----- Whole documents

TEST(PdfRoundTrip, RewritesAFileInPlace) {
    const ScratchFolder folder;
    const std::string path = written(folder, "a.pdf", pagesOf("a", 2));
    EXPECT_EQ(doMyPDF(path.c_str()).utf8(), path);
    const std::string once = contentOf(path);
    EXPECT_NE(once.find("/Vornaset (7.20)"), std::string::npos);
    EXPECT_EQ(doMyPDF(path.c_str(), 1).utf8(), path);
    EXPECT_EQ(contentOf(path), once);
}

TEST(PdfTestDocument, HasAHundredPagesThatInheritTheirBox) {
    const ScratchFolder home;
    const std::string former = std::getenv("HOME") == nullptr ? "" : std::getenv("HOME");
    setenv("HOME", home.path().c_str(), 1);
    const std::string path = makePDFDoc().utf8();
    former.empty() ? unsetenv("HOME") : setenv("HOME", former.c_str(), 1);
    EXPECT_EQ(path, home.path() + "/vornaset-test.pdf");
    const Handle<MyPDFDoc> document = readFrom(path);
    ASSERT_EQ(document->pages().count(), 100U);
    EXPECT_EQ(document->numberOfPages(), 100);
    const Handle<MyPDFDictionary> page = document->pages()[99];
    EXPECT_EQ(page->objectForKeyedSubscript(u"MediaBox"), nullptr);
    EXPECT_EQ(page->mediaBox(), (Rect{0, 0, 300, 500}));
    EXPECT_EQ(textOf(page->contentsData()), "100 100 m 100 200 l 200 200 l 200 100 l f");
    EXPECT_EQ(page->resources(), document->pages()[0]->resources());
}

}  // namespace vornaset
