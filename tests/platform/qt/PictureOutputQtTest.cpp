// Picture output through Qt: image files that load back, a PDF print and the clipboard.
#include "qv/platform/qt/QLQtPictureOutput.h"
#include "qv/platform/qt/QVDisplayWidget.h"

#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImageReader>
#include <QTemporaryDir>

#include <gtest/gtest.h>

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

// The size and the mark, with a tolerance for JPEG.
void ExpectMarkedPicture(const QImage& AImage, const std::string& AWhat)
{
    const auto Near = [](QRgb APixel, int AGreen, int ABlue) {
        return qRed(APixel) < 40 && std::abs(qGreen(APixel) - AGreen) < 40 && std::abs(qBlue(APixel) - ABlue) < 40;
    };
    EXPECT_EQ(AImage.size(), QSize(120, 80)) << AWhat;
    EXPECT_TRUE(Near(AImage.pixel(20, 12), 255, 0)) << AWhat;
    EXPECT_TRUE(Near(AImage.pixel(20, 70), 0, 255)) << AWhat;
}

} // namespace

TEST(QtPictureOutput, AWidgetsDisplaySavesFilesThatLoadBack)
{
    TQVDisplayWidget Widget(std::make_unique<TMarkDisplay>(), nullptr);
    TQVDataDisplay& Display = Widget.GetDisplay();
    QTemporaryDir Dir;
    ASSERT_TRUE(Dir.isValid());
    const auto Path = [&](const char* AName) { return Dir.filePath(AName).toStdString(); };
    Display.SaveToJpeg(Path("photo.jpg"));
    for (const char* Name : {"plain.bmp", "by-suffix.png", "unknown.xyz"})
        Display.SaveToBitmap(Path(Name));
    for (const auto& [Name, Format] :
         {std::pair{"photo.jpg", "jpeg"}, {"plain.bmp", "bmp"}, {"by-suffix.png", "png"}, {"unknown.xyz", "bmp"}}) {
        QImageReader Reader(Dir.filePath(Name));
        EXPECT_EQ(Reader.format(), Format) << Name;
        ExpectMarkedPicture(Reader.read(), Name);
    }

    const std::string Bad = Path("no-such-dir/x.jpg");
    try {
        Display.SaveToJpeg(Bad);
        ADD_FAILURE() << "writing into a missing folder went through";
    } catch (const std::runtime_error& E) {
        EXPECT_NE(std::string(E.what()).find(Bad), std::string::npos) << E.what();
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

TEST(QtPictureOutput, AHeadlessDisplayPrintsToAPdfFileAndCopiesToTheClipboard)
{
    TMarkDisplay Display;
    const auto Services = QLInstallQtPictureServices(Display);
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
    Services->GetQPrinter().setOutputFileName(Dir.filePath("no-such-dir/page.pdf"));
    EXPECT_THROW(Display.Print(), std::runtime_error);

    QGuiApplication::clipboard()->clear();
    Display.CopyToClipboard();
    const QImage Image = QGuiApplication::clipboard()->image();
    if (Image.isNull())
        GTEST_SKIP() << "this Qt platform keeps no clipboard content";
    ExpectMarkedPicture(Image, "clipboard");
}
