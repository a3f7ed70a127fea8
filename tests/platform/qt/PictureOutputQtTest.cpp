// Picture output through Qt: image files that load back, a PDF print and the clipboard.
#include "qv/platform/qt/QLQtPictureOutput.h"
#include "qv/platform/qt/QVDisplayWidget.h"

#include <QClipboard>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

using namespace qv;

namespace {

// A blue picture with a green mark near the top left corner: a picture saved upside down
// or shifted shows it elsewhere.
class TMarkDisplay : public TQVDataDisplay {
public:
    TMarkDisplay()
    {
        SetColor(0xFF0000FF);
        SetBounds(0, 0, 120.9f, 80.5f);
    }
    bool PopulateDrawBuffers() override { return false; }
    void PaintToCanvasRgn(TQLBitmap& ABitmap, TQLCanvas& ACanvas, const TRect& ARect, const TQLRegion& ARegion,
                          bool APrinting) override
    {
        TQVDataDisplay::PaintToCanvasRgn(ABitmap, ACanvas, ARect, ARegion, APrinting);
        ACanvas.GetBrush().SetColor(0xFF00FF00);
        ACanvas.FillRect(TRect{10, 5, 30, 20});
    }
};

// Whether the pixel is near the colour (JPEG moves colours a little).
bool Near(QRgb APixel, QRgb AColor)
{
    return std::abs(qRed(APixel) - qRed(AColor)) < 40 && std::abs(qGreen(APixel) - qGreen(AColor)) < 40 &&
           std::abs(qBlue(APixel) - qBlue(AColor)) < 40;
}

void ExpectMarkedPicture(const QImage& AImage, const char* AWhat)
{
    ASSERT_FALSE(AImage.isNull()) << AWhat;
    EXPECT_EQ(AImage.size(), QSize(120, 80)) << AWhat;
    EXPECT_TRUE(Near(AImage.pixel(20, 12), qRgb(0, 255, 0))) << AWhat;
    EXPECT_TRUE(Near(AImage.pixel(20, 70), qRgb(0, 0, 255))) << AWhat;
    EXPECT_TRUE(Near(AImage.pixel(100, 12), qRgb(0, 0, 255))) << AWhat;
}

} // namespace

TEST(QtPictureOutput, AWidgetsDisplaySavesFilesThatLoadBack)
{
    TQVDisplayWidget Widget(std::make_unique<TMarkDisplay>(), nullptr);
    TQVDataDisplay& Display = Widget.GetDisplay();
    Display.SetBounds(0, 0, 120.9f, 80.5f);
    QTemporaryDir Dir;
    ASSERT_TRUE(Dir.isValid());
    const auto Path = [&](const char* AName) { return Dir.filePath(AName).toStdString(); };

    Display.SaveToBitmap(Path("plain.bmp"));
    Display.SaveToBitmap(Path("by-suffix.png"));
    Display.SaveToBitmap(Path("unknown.xyz"));
    Display.SaveToJpeg(Path("photo.jpg"));
    EXPECT_EQ(QImageReader(Dir.filePath("plain.bmp")).format(), "bmp");
    EXPECT_EQ(QImageReader(Dir.filePath("by-suffix.png")).format(), "png");
    EXPECT_EQ(QImageReader(Dir.filePath("unknown.xyz")).format(), "bmp");
    EXPECT_EQ(QImageReader(Dir.filePath("photo.jpg")).format(), "jpeg");
    for (const char* Name : {"plain.bmp", "by-suffix.png", "unknown.xyz", "photo.jpg"})
        ExpectMarkedPicture(QImageReader(Dir.filePath(Name)).read(), Name);

    // A file that cannot be written is named in the error.
    const std::string Bad = Path("no-such-dir/x.jpg");
    for (bool Jpeg : {false, true}) {
        try {
            Jpeg ? Display.SaveToJpeg(Bad) : Display.SaveToBitmap(Bad);
            ADD_FAILURE() << "writing into a missing folder went through";
        } catch (const std::runtime_error& E) {
            EXPECT_NE(std::string(E.what()).find(Bad), std::string::npos) << E.what();
        }
    }

    // A control of no size writes empty files.
    Display.SetBounds(0, 0, 0, 0);
    Display.SaveToBitmap(Path("empty.bmp"));
    Display.SaveToJpeg(Path("empty.jpg"));
    for (const char* Name : {"empty.bmp", "empty.jpg"}) {
        EXPECT_TRUE(QFileInfo::exists(Dir.filePath(Name))) << Name;
        EXPECT_EQ(QFileInfo(Dir.filePath(Name)).size(), 0) << Name;
    }
}

TEST(QtPictureOutput, AHeadlessDisplayPrintsToAPdfFile)
{
    TMarkDisplay Display;
    const auto Services = QLInstallQtPictureServices(Display);
    ASSERT_TRUE(Display.GetCanvasFactory());
    QTemporaryDir Dir;
    ASSERT_TRUE(Dir.isValid());
    const QString Pdf = Dir.filePath("page.pdf");
    Services->GetQPrinter().setOutputFormat(QPrinter::PdfFormat);
    Services->GetQPrinter().setOutputFileName(Pdf);
    Display.Print();
    QFile File(Pdf);
    ASSERT_TRUE(File.open(QIODevice::ReadOnly));
    EXPECT_TRUE(File.read(5) == "%PDF-");
    EXPECT_GT(File.size(), 1000);
    EXPECT_FALSE(Display.GetPrinting());

    // A print that cannot start is an error naming the target, and leaves no print state.
    Services->GetQPrinter().setOutputFileName(Dir.filePath("no-such-dir/page.pdf"));
    EXPECT_THROW(Display.Print(), std::runtime_error);
    EXPECT_FALSE(Display.GetPrinting());
}

TEST(QtPictureOutput, CopyToClipboardPutsThePictureOnTheClipboard)
{
    TMarkDisplay Display;
    QLInstallQtPictureServices(Display);
    QClipboard* Clipboard = QGuiApplication::clipboard();
    Clipboard->clear();
    Display.CopyToClipboard();
    const QImage Image = Clipboard->image();
    if (Image.isNull())
        GTEST_SKIP() << "this Qt platform keeps no clipboard content";
    ExpectMarkedPicture(Image, "clipboard");
}
