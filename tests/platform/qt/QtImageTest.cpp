// TQLBitmap and QImage: shared and copied pixels, conversions from other formats, PNG files.
#include <qv/qt/QLQtImage.h>

#include <QDir>
#include <QFile>
#include <QPainter>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

using namespace qv;
using namespace qv::qt;

namespace {

// Expects AFunction to raise std::runtime_error whose message holds AText.
template <class F>
void ExpectRuntimeErrorNaming(F AFunction, const std::string& AText)
{
    try {
        AFunction();
        ADD_FAILURE() << "no error raised";
    } catch (const std::runtime_error& E) {
        EXPECT_NE(std::string(E.what()).find(AText), std::string::npos) << E.what();
    }
}

} // namespace

TEST(QtImage, WrappedImageSharesTheBitmapsPixels)
{
    TQLBitmap Bitmap(6, 4);
    QImage Image = QLWrapBitmap(Bitmap);
    ASSERT_EQ(Image.format(), QImage::Format_ARGB32_Premultiplied);
    EXPECT_EQ(Image.constBits(), reinterpret_cast<const uchar*>(Bitmap.GetBits()));
    {
        QPainter Painter(&Image);
        Painter.fillRect(QRect(1, 2, 1, 1), QColor(0, 255, 0));
    }
    EXPECT_EQ(Bitmap.GetPixel(1, 2), 0xFF00FF00u);

    // The read-only form copies itself before it would write.
    QImage ReadOnly = QLWrapBitmapReadOnly(Bitmap);
    EXPECT_EQ(ReadOnly.pixel(1, 2), 0xFF00FF00u);
    ReadOnly.setPixel(0, 0, 0xFFFF0000u);
    EXPECT_EQ(Bitmap.GetPixel(0, 0), 0u);

    // So does the copying form.
    QImage Copy = QLBitmapToImage(Bitmap);
    Bitmap.SetPixel(1, 2, 0);
    EXPECT_EQ(Copy.pixel(1, 2), 0xFF00FF00u);

    // Empty bitmaps and null images convert to each other.
    TQLBitmap Empty(0, 5);
    EXPECT_TRUE(QLWrapBitmap(Empty).isNull());
    EXPECT_TRUE(QLWrapBitmapReadOnly(Empty).isNull());
    EXPECT_TRUE(QLBitmapToImage(Empty).isNull());
    EXPECT_TRUE(QLImageToBitmap(QImage()).IsEmpty());
}

TEST(QtImage, ImagesOfOtherFormatsConvertToPremultipliedRows)
{
    // RGB888 rows of 3 pixels are 9 bytes, padded to 12: the copy must go row by row.
    QImage Rgb(3, 2, QImage::Format_RGB888);
    for (int Y = 0; Y < 2; ++Y)
        for (int X = 0; X < 3; ++X)
            Rgb.setPixel(X, Y, qRgb(10 * X, 100 + Y, 200));
    const TQLBitmap B = QLImageToBitmap(Rgb);
    ASSERT_EQ(B.GetWidth(), 3);
    ASSERT_EQ(B.GetHeight(), 2);
    for (int Y = 0; Y < 2; ++Y)
        for (int X = 0; X < 3; ++X)
            EXPECT_EQ(B.GetPixel(X, Y), 0xFF000000u | qRgb(10 * X, 100 + Y, 200)) << X << "," << Y;

    QImage Straight(1, 1, QImage::Format_ARGB32);
    Straight.setPixel(0, 0, 0x80FF8000u);
    EXPECT_EQ(QLImageToBitmap(Straight).GetPixel(0, 0), QLPremultiply(0x80FF8000u));
}

TEST(QtImage, PngRoundTrip)
{
    QTemporaryDir Dir;
    ASSERT_TRUE(Dir.isValid());
    TQLBitmap Bitmap(5, 3);
    Bitmap.SetPixel(0, 0, 0xFFFF0000u);
    Bitmap.SetPixel(4, 2, 0xFF0000FFu);
    Bitmap.SetPixel(2, 1, QLPremultiply(0x80FFFFFFu));
    const QString Path = Dir.filePath("picture.png");
    QLSaveBitmapPng(Bitmap, Path);

    QImage Loaded(Path);
    ASSERT_FALSE(Loaded.isNull());
    const TQLBitmap Back = QLImageToBitmap(Loaded);
    ASSERT_EQ(Back.GetWidth(), 5);
    ASSERT_EQ(Back.GetHeight(), 3);
    EXPECT_EQ(Back.GetPixel(0, 0), 0xFFFF0000u);
    EXPECT_EQ(Back.GetPixel(4, 2), 0xFF0000FFu);
    EXPECT_EQ(Back.GetPixel(1, 1), 0u);
    EXPECT_EQ(Back.GetPixel(2, 1) >> 24, 0x80u);
}

TEST(QtImage, SaveFailuresNameThePath)
{
    TQLBitmap Bitmap(2, 2);
    const QString Missing = QDir::tempPath() + "/qv-no-such-dir-7f3a/out.png";
    ExpectRuntimeErrorNaming([&] { QLSaveBitmapPng(Bitmap, Missing); }, Missing.toStdString());

    QTemporaryDir Dir;
    const QString Path = Dir.filePath("empty.png");
    ExpectRuntimeErrorNaming([&] { QLSaveBitmapPng(TQLBitmap(), Path); }, Path.toStdString());
    EXPECT_FALSE(QFile::exists(Path));
}
