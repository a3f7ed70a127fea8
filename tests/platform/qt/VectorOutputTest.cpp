// SaveToSvg and SaveToPdf: the screen's paint onto a vector surface. The SVG rasterised at
// 1:1 gives the bitmap's picture; neither file carries a bitmap; the PDF's page has the
// picture's size; a write that fails leaves an existing file as it was.
#include <qv/QVScope.h>
#include <qv/qt/QLQtImage.h>
#include <qv/qt/QLQtPictureOutput.h>

#include "platform/qt/KeepPicture.h"
#include "qv/channels/QVScopeDataView.h"

#include <QFile>
#include <QPainter>
#include <QRegularExpression>
#include <QTemporaryDir>
#if QV_HAVE_SVG
#include <QSvgRenderer>
#endif

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <stdexcept>
#include <string>
#include <vector>

using namespace qv;

namespace {

QByteArray ReadAll(const QString& APath)
{
    QFile File(APath);
    return File.open(QIODevice::ReadOnly) ? File.readAll() : QByteArray();
}

void SetUpScope(TQVScope& AScope)
{
    QLInstallQtPictureServices(AScope);
    AScope.SetBounds(0, 0, 480, 300);
    AScope.GetTitle()->SetText("Vector picture");
    auto* Channels = AScope.GetChannels();
    Channels->Add();
    std::vector<double> A(4000), B(4000);
    for (size_t I = 0; I < A.size(); ++I) {
        A[I] = std::sin(2 * std::numbers::pi * double(I) / 1000.0);
        B[I] = 0.5 * std::cos(2 * std::numbers::pi * double(I) / 700.0);
    }
    Channels->GetItem(0)->GetData()->SetYData(A.data(), uint32_t(A.size()));
    Channels->GetItem(1)->GetData()->SetYData(B.data(), uint32_t(B.size()));
    AScope.RefreshView();
    // Zoomed in: the channels run beyond the plot, which the vector file has to clip.
    AScope.ZoomBy(0.4);
}

} // namespace

#if QV_HAVE_SVG
TEST(VectorOutput, TheSvgRasterisedAtOneToOneIsTheBitmapsPicture)
{
    QTemporaryDir Dir;
    TQVScope Scope;
    SetUpScope(Scope);
    const QString Path = Dir.filePath("scope.svg");
    Scope.SaveToSvg(Path.toStdString());
    TQLBitmap Bitmap(480, 300);
    Scope.CopyToBitmap(Bitmap);

    const QByteArray Svg = ReadAll(Path);
    EXPECT_FALSE(Svg.contains("<image")) << "a bitmap inside the SVG";
    EXPECT_TRUE(Svg.contains("Vector picture")) << "the title is not text";
    // A channel's line is a few polylines, not one element per pixel step.
    EXPECT_LT(Svg.count("<polyline"), 150);
    QSvgRenderer Renderer(Path);
    ASSERT_TRUE(Renderer.isValid());
    EXPECT_EQ(Renderer.viewBox(), QRect(0, 0, 480, 300));
    QImage Raster(480, 300, QImage::Format_ARGB32_Premultiplied);
    Raster.fill(Qt::transparent);
    {
        QPainter Painter(&Raster);
        Renderer.render(&Painter);
    }
    const TQLBitmap Rendered = qt::QLImageToBitmap(Raster);
    qvtest::KeepPicture(Rendered, "VectorOutputSvg.png");
    qvtest::KeepPicture(Bitmap, "VectorOutputBitmap.png");
    // Edges are anti-aliased in the raster of the SVG and text is shaped anew; everything
    // else matches.
    int Far = 0;
    for (int32_t Y = 0; Y < 300; ++Y)
        for (int32_t X = 0; X < 480; ++X) {
            const uint32_t P = Bitmap.GetPixel(X, Y), Q = Rendered.GetPixel(X, Y);
            for (int Shift = 0; Shift < 32; Shift += 8)
                if (std::abs(int((P >> Shift) & 0xFF) - int((Q >> Shift) & 0xFF)) > 96) {
                    ++Far;
                    break;
                }
        }
    EXPECT_LT(Far, 480 * 300 / 100);
    // The channels stay inside the plot: nothing of the first one's colour lies outside it
    // but its legend swatch.
    const TRect View = Scope.GetScopeDataView()->GetDrawRect();
    const TRect Legend = Scope.GetLegend()->GetDrawRect();
    const uint32_t Color = Scope.GetChannels()->GetItem(0)->GetColor();
    int Outside = 0;
    for (int32_t Y = 0; Y < 300; ++Y)
        for (int32_t X = 0; X < 480; ++X)
            Outside += (X < View.Left || X >= View.Right || Y < View.Top || Y >= View.Bottom) &&
                       !Legend.Contains(TPoint{X, Y}) && Rendered.GetPixel(X, Y) == Color;
    EXPECT_EQ(Outside, 0);
}
#endif

TEST(VectorOutput, ThePdfHasOnePageOfThePicturesSizeAndNoBitmap)
{
    QTemporaryDir Dir;
    TQVScope Scope;
    SetUpScope(Scope);
    const QString Path = Dir.filePath("scope.pdf");
    Scope.SaveToPdf(Path.toStdString());
    const QByteArray Pdf = ReadAll(Path);
    ASSERT_TRUE(Pdf.startsWith("%PDF-"));
    // 480 x 300 pixels at 96 per inch are 360 x 225 points.
    const QRegularExpression MediaBox(R"(/MediaBox\s*\[\s*0\s+0\s+([\d.]+)\s+([\d.]+)\s*\])");
    const auto Match = MediaBox.match(QString::fromLatin1(Pdf));
    ASSERT_TRUE(Match.hasMatch());
    EXPECT_NEAR(Match.captured(1).toDouble(), 360.0, 0.5);
    EXPECT_NEAR(Match.captured(2).toDouble(), 225.0, 0.5);
    EXPECT_EQ(Pdf.count("/Type /Page\n") + Pdf.count("/Type /Page\r") + Pdf.count("/Type /Page "), 1);
    EXPECT_FALSE(Pdf.contains("/Subtype /Image")) << "a bitmap inside the PDF";
}

// Per format: an empty picture writes an empty file; an unwritable path names itself; a paint
// that fails halfway leaves the file that was there.
TEST(VectorOutput, FailuresLeaveTheFileAsItWas)
{
    std::vector<std::pair<TQLVectorFormat, const char*>> Formats = {{vfPdf, "picture.pdf"}};
    if (QLHasSvgOutput())
        Formats.emplace_back(vfSvg, "picture.svg");
    for (const auto& [Format, Name] : Formats) {
        SCOPED_TRACE(Name);
        QTemporaryDir Dir;
        const std::string Path = Dir.filePath(Name).toStdString();
        const auto Line = [](TQLCanvas& ACanvas) {
            ACanvas.MoveTo(0, 0);
            ACanvas.LineTo(10, 10);
        };
        QLSaveVectorPicture(Format, 0, 0, Line, Path);
        EXPECT_TRUE(QFile::exists(QString::fromStdString(Path)));
        EXPECT_TRUE(ReadAll(QString::fromStdString(Path)).isEmpty());

        QLSaveVectorPicture(Format, 20, 20, Line, Path);
        const QByteArray Before = ReadAll(QString::fromStdString(Path));
        ASSERT_FALSE(Before.isEmpty());
        EXPECT_THROW(QLSaveVectorPicture(
                         Format, 30, 30,
                         [](TQLCanvas& ACanvas) {
                             ACanvas.MoveTo(0, 0);
                             ACanvas.LineTo(5, 5);
                             throw std::runtime_error("paint failed");
                         },
                         Path),
                     std::runtime_error);
        EXPECT_EQ(ReadAll(QString::fromStdString(Path)), Before);

        const std::string Unwritable = Dir.filePath("missing/folder/").toStdString() + Name;
        try {
            QLSaveVectorPicture(Format, 20, 20, Line, Unwritable);
            ADD_FAILURE() << "no error for " << Unwritable;
        } catch (const std::runtime_error& E) {
            EXPECT_NE(std::string(E.what()).find(Unwritable), std::string::npos) << E.what();
        }
        EXPECT_THROW(QLSaveVectorPicture(Format, -1, 20, Line, Path), std::invalid_argument);
        EXPECT_EQ(ReadAll(QString::fromStdString(Path)), Before);
    }
}
