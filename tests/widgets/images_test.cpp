#include "widgets/images.h"

#include <QtGui/QPainter>

#include "widgets/window_fixture.h"

namespace vornaset {
namespace {

const char* const kIcon = VORNASET_SOURCE_DIR "/resources/com.kelmoriandev.vornaset/Keld.png";

TEST(Images, AFileAndItsBytesGiveTheSameImage) {
    const QImage image = imageWithPath(kIcon);
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.size(), QSize(256, 256));
    const std::string bytes = contentOf(kIcon);
    EXPECT_EQ(imageWithData(Data(bytes)), image);
}

TEST(Images, TheContentCountsAndNotTheName) {
    const ScratchFolder folder;
    writeFile(folder.path() + "/icon.jpg", contentOf(kIcon));
    EXPECT_FALSE(imageWithPath(String::fromUTF8(folder.path() + "/icon.jpg")).isNull());
}

TEST(Images, WhatIsNoPictureIsNull) {
    EXPECT_TRUE(imageWithPath(nullptr).isNull());
    EXPECT_TRUE(imageWithPath("").isNull());
    EXPECT_TRUE(imageWithPath("/nowhere/at all.png").isNull());
    EXPECT_TRUE(imageWithPath("/").isNull());
    EXPECT_TRUE(imageWithData(nullptr).isNull());
    EXPECT_TRUE(imageWithData(Data(std::string())).isNull());
    EXPECT_TRUE(imageWithData(Data(std::string("no picture"))).isNull());
    EXPECT_TRUE(imageWithData(Data(contentOf(kIcon).substr(0, 40))).isNull());
}

TEST(Images, ABitmapsImageIsItsOwn) {
    QImage bitmap(4, 3, QImage::Format_RGB32);
    bitmap.fill(Qt::red);
    bitmap.setDotsPerMeterX(11811);
    const QImage image = imageWithBitmap(bitmap);
    bitmap.fill(Qt::blue);
    EXPECT_EQ(image.size(), QSize(4, 3));
    EXPECT_EQ(image.pixelColor(3, 2), QColor(Qt::red));
    EXPECT_EQ(image.dotsPerMeterX(), 11811);
    EXPECT_TRUE(imageWithBitmap(QImage()).isNull());
}

TEST(Images, AnEmptyImageHasItsSizeAndNothingInIt) {
    const QImage image = imageWithSize(QSizeF(10, 4.2));
    EXPECT_EQ(image.size(), QSize(10, 5));
    EXPECT_EQ(image.pixelColor(9, 4).alpha(), 0);
    EXPECT_EQ(imageWithSize(7).size(), QSize(7, 7));
}

TEST(Images, ASizeThatNoImageHasGivesNull) {
    EXPECT_TRUE(imageWithSize(0).isNull());
    EXPECT_TRUE(imageWithSize(-3).isNull());
    EXPECT_TRUE(imageWithSize(2000000000).isNull());
    EXPECT_TRUE(imageWithSize(QSizeF(10, qQNaN())).isNull());
    EXPECT_TRUE(imageWithSize(QSizeF(qInf(), 10)).isNull());
}

TEST(Images, AnImageIsDrawnIntoItsRectangleOfTheCurrentContext) {
    QImage red(2, 2, QImage::Format_RGB32);
    red.fill(Qt::red);
    QImage page = imageWithSize(20);
    QPainter painter(&page);
    {
        const DrawingContext context(painter);
        drawInRect(red, {5, 6, 10, 8});
        drawInRect(QImage(), {0, 0, 20, 20});
    }
    drawInRect(red, {0, 0, 20, 20});
    painter.end();
    EXPECT_EQ(page.pixelColor(10, 10), QColor(Qt::red));
    EXPECT_EQ(page.pixelColor(5, 6), QColor(Qt::red));
    EXPECT_EQ(page.pixelColor(14, 13), QColor(Qt::red));
    EXPECT_EQ(page.pixelColor(4, 6).alpha(), 0);
    EXPECT_EQ(page.pixelColor(15, 13).alpha(), 0);
    EXPECT_EQ(page.pixelColor(10, 14).alpha(), 0);
}

TEST(Images, TheFormerContextComesBack) {
    QImage first = imageWithSize(4);
    QImage second = imageWithSize(4);
    QImage red(1, 1, QImage::Format_RGB32);
    red.fill(Qt::red);
    {
        QPainter outer(&first);
        QPainter inner(&second);
        const DrawingContext outerContext(outer);
        { const DrawingContext innerContext(inner); }
        drawInRect(red, {0, 0, 4, 4});
    }
    EXPECT_EQ(first.pixelColor(2, 2), QColor(Qt::red));
    EXPECT_EQ(second.pixelColor(2, 2).alpha(), 0);
}

TEST(Images, DrawingWithoutAContextDoesNothing) {
    drawInRect(imageWithPath(kIcon), {0, 0, 10, 10});
}

}  // namespace
}  // namespace vornaset
