// QVScope demo: draws a small scope-like picture through the canvas into a TQLBitmap, shows
// it in a window or, with --offscreen, only writes it out.
//
//   qv_demo [--offscreen] [--out DIR]
//
// --out DIR writes DIR/canvas.png (the directory is made when missing). --offscreen needs no
// display and implies writing the picture (to the current directory without --out).

#include <qv/foundation/QLBitmap.h>
#include <qv/foundation/QVMarkerShapes.h>
#include <qv/qt/QLQtCanvas.h>
#include <qv/qt/QLQtImage.h>

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QPixmap>

#include <cmath>
#include <cstdio>
#include <exception>
#include <numbers>
#include <stdexcept>
#include <string>

using namespace qv;

namespace {

constexpr int32_t PictureWidth = 640;
constexpr int32_t PictureHeight = 420;

constexpr TAlphaColor Background = 0xFF14161C;
constexpr TAlphaColor FrameColor = 0xFFB0B4C0;
constexpr TAlphaColor GridColor = 0xFF3A3F4C;
constexpr TAlphaColor TextColor = 0xFFE0E2E8;

void DrawTextCentred(TQLCanvas& C, int32_t X, int32_t Y, const std::string& AText)
{
    C.TextOut(X - C.TextWidth(AText) / 2, Y, AText);
}

// The plot: frame, dashed grid, ticks with labels, two signals, axis titles turned.
void DrawPlot(TQLCanvas& C, const TRect& APlot)
{
    const int32_t W = APlot.Width();
    const int32_t H = APlot.Height();
    const int32_t MidY = APlot.Top + H / 2;

    C.GetBrush().SetStyle(bsClear);
    C.SetPenWidth(1);
    C.GetPen().SetColor(GridColor);
    C.SetPenStyle(psDash);
    for (int32_t I = 1; I < 10; ++I) {
        const int32_t X = APlot.Left + W * I / 10;
        C.MoveTo(X, APlot.Top + 1);
        C.LineTo(X, APlot.Bottom - 1);
    }
    for (int32_t I = 1; I < 8; ++I) {
        const int32_t Y = APlot.Top + H * I / 8;
        C.MoveTo(APlot.Left + 1, Y);
        C.LineTo(APlot.Right - 1, Y);
    }

    C.SetPenStyle(psSolid);
    C.GetPen().SetColor(FrameColor);
    C.RectangleRect(APlot);

    // Ticks and labels under the frame and left of it.
    TQLCanvasFont Font = C.GetFont();
    Font.Size = 8;
    Font.Color = TextColor;
    C.SetFont(Font);
    const int32_t LineHeight = C.TextHeight("Xg");
    for (int32_t I = 0; I <= 10; ++I) {
        const int32_t X = APlot.Left + W * I / 10 - (I == 10 ? 1 : 0);
        C.MoveTo(X, APlot.Bottom);
        C.LineTo(X, APlot.Bottom + 5);
        DrawTextCentred(C, X, APlot.Bottom + 6, std::to_string(I * 10) + " ms");
    }
    for (int32_t I = 0; I <= 4; ++I) {
        const int32_t Y = APlot.Top + H * I / 4 - (I == 4 ? 1 : 0);
        C.MoveTo(APlot.Left - 5, Y);
        C.LineTo(APlot.Left, Y);
        const std::string Label = std::to_string(2 - I) + " V";
        C.TextOut(APlot.Left - 7 - C.TextWidth(Label), Y - LineHeight / 2, Label);
    }

    // Signals, clipped to the inside of the frame.
    TQLCanvasSave Save(C);
    C.SetClipRegion(TQLRegion(TRect{APlot.Left + 1, APlot.Top + 1, APlot.Right - 1, APlot.Bottom - 1}));
    auto Plot = [&](TAlphaColor AColor, int32_t AWidth, auto AValue) {
        C.GetPen().SetColor(AColor);
        C.SetPenWidth(AWidth);
        int32_t LastY = 0;
        for (int32_t X = 0; X < W; ++X) {
            const double V = AValue(static_cast<double>(X) / W); // volts, -2..2
            LastY = MidY - static_cast<int32_t>(std::lround(V * H / 4.0));
            if (X == 0)
                C.MoveTo(APlot.Left + X, LastY);
            else
                C.LineTo(APlot.Left + X, LastY);
        }
        C.SetPixel(APlot.Right - 1, LastY, AColor); // a line stops short of its last point
    };
    const double Pi = std::numbers::pi;
    Plot(0xFFFFD23C, 1, [&](double T) { return 1.5 * std::sin(2 * Pi * 3 * T); });
    Plot(0xFF3CC8FF, 2, [&](double T) { return 1.8 * std::exp(-3 * T) * std::cos(2 * Pi * 7 * T); });

    // Axis titles: reading upwards on the left, downwards on the right.
    C.GetBrush().SetStyle(bsClear);
    C.ClearClipRegion();
    const std::string Left = "Amplitude [V]";
    C.SetTextAngle(90);
    C.TextOut(8, MidY + C.TextWidth(Left) / 2, Left);
    const std::string Right = "Channel 1 and 2";
    C.SetTextAngle(270);
    C.TextOut(PictureWidth - 8, MidY - C.TextWidth(Right) / 2, Right);
    C.SetTextAngle(0);
}

// The thirteen marker shapes, plain and turned, with their values under them.
void DrawMarkerRows(TQLCanvas& C, int32_t ATop)
{
    const TAlphaColor Colors[] = {0xFFFF5A5A, 0xFFFFB43C, 0xFFFFF05A, 0xFF78E65A, 0xFF3CDCC8, 0xFF5AA0FF, 0xFFC882FF};
    const int32_t Step = 42;
    const int32_t X0 = (PictureWidth - Step * 12) / 2;
    const int32_t LineHeight = C.TextHeight("Xg");
    for (int32_t Row = 0; Row < 2; ++Row) {
        const bool Turned = Row == 1;
        const int32_t Y = ATop + Row * 52;
        C.GetBrush().SetStyle(bsClear);
        C.TextOut(8, Y - LineHeight / 2, Turned ? "turned" : "plain");
        for (int32_t Shape = 0; Shape <= msVertLine; ++Shape) {
            const int32_t X = X0 + Shape * Step;
            const TAlphaColor Color = Colors[Shape % 7];
            C.GetPen().SetColor(Color);
            C.SetPenWidth(QVMarkerShapeNeedsWiderPen(static_cast<uint32_t>(Shape)) ? 2 : 1);
            C.GetBrush().SetColor((Color & 0x00FFFFFF) | 0x60000000);
            C.GetBrush().SetStyle(bsSolid);
            QVDisplayMarkerDrawSize(C, X, Y, static_cast<TQVDisplayMarkerShape>(Shape), 6, 0, Turned);
            C.GetBrush().SetStyle(bsClear);
            C.SetPenWidth(1);
            DrawTextCentred(C, X, Y + 16, std::to_string(Shape));
        }
    }
}

TQLBitmap RenderPicture()
{
    TQLBitmap Bitmap(PictureWidth, PictureHeight);
    TQLQtCanvas Canvas(Bitmap);
    Canvas.GetBrush().SetColor(Background);
    Canvas.FillRect(TRect{0, 0, PictureWidth, PictureHeight});

    TQLCanvasFont Title;
    Title.Size = 11;
    Title.Style = fsBold;
    Title.Color = TextColor;
    Canvas.SetFont(Title);
    Canvas.GetBrush().SetColor(0xFF2A3040);
    const std::string Caption = " QVScope canvas ";
    DrawTextCentred(Canvas, PictureWidth / 2, 8, Caption);

    const TRect Plot{70, 36, 590, 236};
    DrawPlot(Canvas, Plot);
    Canvas.DrawFocusRect(TRect{Plot.Left - 3, Plot.Top - 3, Plot.Right + 3, Plot.Bottom + 3});
    DrawMarkerRows(Canvas, 300);
    return Bitmap;
}

void PrintUsage(std::FILE* AStream)
{
    std::fprintf(AStream, "usage: qv_demo [--offscreen] [--out DIR]\n");
}

} // namespace

int main(int argc, char** argv)
{
    bool Offscreen = false;
    QString OutDir;
    for (int I = 1; I < argc; ++I) {
        const std::string Arg = argv[I];
        if (Arg == "--offscreen") {
            Offscreen = true;
        } else if (Arg == "--out" && I + 1 < argc) {
            OutDir = QString::fromLocal8Bit(argv[++I]);
        } else if (Arg == "--help" || Arg == "-h") {
            PrintUsage(stdout);
            return 0;
        } else {
            std::fprintf(stderr, "qv_demo: unknown or incomplete option '%s'\n", Arg.c_str());
            PrintUsage(stderr);
            return 2;
        }
    }
    if (Offscreen && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (Offscreen && OutDir.isEmpty())
        OutDir = QStringLiteral(".");

    QApplication App(argc, argv);
    try {
        const TQLBitmap Picture = RenderPicture();
        if (!OutDir.isEmpty()) {
            if (!QDir().mkpath(OutDir))
                throw std::runtime_error("cannot make the directory '" + OutDir.toStdString() + "'");
            const QString Path = QDir(OutDir).filePath(QStringLiteral("canvas.png"));
            qt::QLSaveBitmapPng(Picture, Path);
            std::printf("wrote %s\n", qPrintable(QDir::toNativeSeparators(Path)));
        }
        if (Offscreen)
            return 0;
        QLabel Window;
        Window.setWindowTitle(QStringLiteral("QVScope demo"));
        Window.setPixmap(QPixmap::fromImage(qt::QLBitmapToImage(Picture)));
        Window.show();
        return App.exec();
    } catch (const std::exception& E) {
        std::fprintf(stderr, "qv_demo: %s\n", E.what());
        return 1;
    }
}
