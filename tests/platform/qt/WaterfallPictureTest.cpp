// A whole waterfall rendered by QPainter: a drifting tone over noise, the level strip on the
// right with its gradient, the axes. The picture is kept as WaterfallPicture.png when
// QV_WRITE_PICTURES names a folder; the test checks the parts landed where the layout put
// them and that the widget hosts the control.
#include <qv/QVWaterfall.h>
#include <qv/qt/QVWaterfallWidget.h>

#include "platform/qt/KeepPicture.h"
#include "qv/foundation/QLStoredForm.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <vector>

using namespace qv;

TEST(WaterfallPicture, ImageLevelStripAndAxesLandWhereTheLayoutPutsThem)
{
    TQVWaterfallWidget Widget;
    TQVWaterfall& Waterfall = Widget.GetWaterfall();
    Waterfall.SetCanvasFactory(QLQtCanvasFactory());
    Waterfall.SetBounds(0, 0, 640, 400);
    Waterfall.GetXAxis()->SetSamples(300);
    Waterfall.GetLevels()->GetLevelLabel()->SetText("dB");
    Waterfall.GetData()->SetSampleRate(48000);
    Waterfall.SetDomains(true, false);
    std::vector<double> Row(256);
    for (int32_t R = 0; R < 400; ++R) {
        const double Peak = 128 + 100 * std::sin(R / 40.0);
        for (int32_t J = 0; J < 256; ++J)
            Row[size_t(J)] = -60 + 50 * std::exp(-std::pow((J - Peak) / 6.0, 2)) + 3 * std::sin(J * 7.3 + R);
        Waterfall.GetData()->AddData(Row.data(), 256);
    }
    Waterfall.Paint();
    const TQLBitmap& Picture = Waterfall.GetBitmap();
    qvtest::KeepPicture(Picture, "WaterfallPicture.png");

    const TRect View = Waterfall.GetDataView()->GetDrawRect();
    const TRect Levels = Waterfall.GetLevels()->GetDrawRect();
    EXPECT_GT(View.Left, 20);           // the Y axis' strip
    EXPECT_LT(View.Bottom, 400 - 15);   // the X axis' strip
    EXPECT_GE(Levels.Left, View.Right); // the level strip to the right
    EXPECT_EQ(Waterfall.GetYAxis()->GetAxisLabelText(), "kHz");
    // The image holds many colours; the level bar runs from the bottom colour at the view's
    // bottom to the top colour at its top.
    std::set<uint32_t> Colours;
    for (int32_t Y = View.Top; Y < View.Bottom; Y += 3)
        for (int32_t X = View.Left; X < View.Right; X += 3)
            Colours.insert(Picture.GetPixel(X, Y));
    EXPECT_GT(Colours.size(), 100u);
    const int32_t BarX = Levels.Left + 2 + 7;
    EXPECT_EQ(Picture.GetPixel(BarX, View.Bottom - 1), Waterfall.GetLevels()->ValueToColor(0, 1));
    EXPECT_EQ(Picture.GetPixel(BarX, View.Top), Waterfall.GetLevels()->ValueToColor(1, 1));
}

// Turned, the rows run down the picture: the first at the top, samples from left to right.
TEST(WaterfallPicture, TurnedRowsRunDownThePicture)
{
    TQVWaterfall Waterfall;
    Waterfall.SetCanvasFactory(QLQtCanvasFactory());
    Waterfall.SetBounds(0, 0, 400, 400);
    Waterfall.SetVertical(true);
    Waterfall.GetXAxis()->SetSamples(100);
    TQVLevelAxis& Axis = *Waterfall.GetLevels()->GetAxis();
    Axis.SetAutoscale(false);
    Axis.SetMax(100);
    std::vector<double> Row(64);
    for (int32_t R = 0; R < 50; ++R) {
        for (int32_t J = 0; J < 64; ++J)
            Row[size_t(J)] = R < 10 ? 100.0 : J; // ten rows at the top level, then ramps
        Waterfall.GetData()->AddData(Row.data(), 64);
    }
    Waterfall.Paint();
    const TQLBitmap& Picture = Waterfall.GetBitmap();
    qvtest::KeepPicture(Picture, "WaterfallTurned.png");
    const TRect View = Waterfall.GetDataView()->GetDrawRect();
    const TAlphaColor Top = Waterfall.GetLevels()->ValueToColorGBR(1, 1);
    EXPECT_EQ(Picture.GetPixel((View.Left + View.Right) / 2, View.Top + 2), Top);
    const int32_t Middle = (View.Top + View.Bottom) / 2 - 20; // in the ramps
    EXPECT_EQ(Picture.GetPixel(View.Left + 1, Middle), Waterfall.GetLevels()->ValueToColorGBR(0, 1));
    EXPECT_NE(Picture.GetPixel(View.Right - 2, Middle), Waterfall.GetLevels()->ValueToColorGBR(0, 1));
    // Below the rows the picture is empty.
    EXPECT_EQ(Picture.GetPixel(View.Left + 1, View.Bottom - 2), Waterfall.GetColor());
}

// The legend docks at the right edge, before the level strip, and lists the marker groups
// above the cursors; with nothing to list, or hidden, it leaves the full width to the rest.
// Each waterfall is loaded from the stored form of one set up the same way.
TEST(WaterfallPicture, TheLegendListsMarkerGroupsThenCursorsAtTheRightEdge)
{
    constexpr TAlphaColor CursorColor = 0xFF40FF40;
    struct TCase {
        int32_t Groups, Cursors;
        bool Visible;
        bool Shown;
    } Cases[] = {{0, 0, true, false}, {1, 1, true, true}, {0, 1, true, true}, {1, 1, false, false}};
    for (const TCase& Case : Cases) {
        SCOPED_TRACE(testing::Message() << Case.Groups << " groups, " << Case.Cursors << " cursors, visible "
                                        << Case.Visible);
        TQVWaterfall Source;
        Source.GetLegend()->SetVisible(Case.Visible);
        for (int32_t I = 0; I < Case.Groups; ++I)
            Source.GetMarkerGroups()->Add()->SetName("Peaks");
        for (int32_t I = 0; I < Case.Cursors; ++I) {
            TQVWaterfallCursor* Cursor = Source.GetCursors()->Add();
            Cursor->SetName("Slice");
            Cursor->SetColor(CursorColor);
        }
        TQVWaterfall Waterfall;
        QLLoadObject(Waterfall, QLSaveObject(Source));
        Waterfall.SetCanvasFactory(QLQtCanvasFactory());
        Waterfall.SetBounds(0, 0, 500, 300);
        std::vector<double> Row(64, 1.0);
        for (int32_t R = 0; R < 20; ++R)
            Waterfall.GetData()->AddData(Row.data(), 64);
        Waterfall.Paint();
        const TQLBitmap& Picture = Waterfall.GetBitmap();
        if (Case.Groups > 0 && Case.Cursors > 0 && Case.Visible)
            qvtest::KeepPicture(Picture, "WaterfallLegend.png");

        const TRect Legend = Waterfall.GetLegend()->GetDrawRect();
        const TRect Levels = Waterfall.GetLevels()->GetDrawRect();
        if (!Case.Shown) {
            EXPECT_TRUE(Legend.IsEmpty());
            EXPECT_EQ(Levels.Right, 500);
            continue;
        }
        ASSERT_GT(Legend.Width(), 40);
        EXPECT_EQ(Legend.Right, 500);
        EXPECT_LE(Levels.Right, Legend.Left);
        // A cursor's swatch is a bar of one colour across the swatch column, headings are
        // not: one run of such rows per cursor. A group's swatch is its symbol in its pen's
        // colour, above the cursors.
        const TAlphaColor GroupColor =
            Case.Groups > 0 ? Waterfall.GetMarkerGroups()->GetItem(0)->GetPen()->GetColor() : 0;
        std::vector<int32_t> Runs;
        int32_t CursorRow = -1, GroupRow = -1, Previous = -2;
        for (int32_t Y = Legend.Top; Y < Legend.Bottom; ++Y) {
            const TAlphaColor First = Picture.GetPixel(Legend.Left + 6, Y);
            bool Ink = First != Waterfall.GetColor();
            for (int32_t X = Legend.Left + 6; X < Legend.Left + 19; ++X) {
                Ink = Ink && Picture.GetPixel(X, Y) == First;
                if (Picture.GetPixel(X, Y) == CursorColor && CursorRow < 0)
                    CursorRow = Y;
                if (GroupColor && Picture.GetPixel(X, Y) == GroupColor && GroupRow < 0)
                    GroupRow = Y;
            }
            if (Ink && Previous != Y - 1)
                Runs.push_back(Y);
            if (Ink)
                Previous = Y;
        }
        ASSERT_EQ(int32_t(Runs.size()), Case.Cursors);
        EXPECT_GE(CursorRow, Runs.back());
        EXPECT_EQ(GroupRow >= 0, Case.Groups > 0);
        if (GroupRow >= 0) {
            EXPECT_LT(GroupRow, CursorRow);
        }
    }
}

// A cursor link measures the rows between two cursors over the picture, and a label names a
// point of it: the measurement line runs in its colour from one cursor to the other at its
// place across the view, and the label's text lies in its colour round its point. The
// picture is kept as WaterfallLinks.png.
TEST(WaterfallPicture, ALinkAndALabelDrawOverThePicture)
{
    constexpr TAlphaColor LineColor = 0xFFFFFF00, LabelColor = 0xFFFF00FF;
    TQVWaterfall Waterfall;
    Waterfall.SetCanvasFactory(QLQtCanvasFactory());
    Waterfall.SetBounds(0, 0, 640, 400);
    Waterfall.GetXAxis()->SetSamples(300);
    std::vector<double> Row(128);
    for (int32_t R = 0; R < 300; ++R) {
        for (int32_t J = 0; J < 128; ++J)
            Row[size_t(J)] = std::exp(-std::pow((J - 64 - 30 * std::sin(R / 30.0)) / 5.0, 2));
        Waterfall.GetData()->AddData(Row.data(), 128);
    }
    for (const double At : {80.0, 220.0}) {
        TQVWaterfallCursor& Cursor = *Waterfall.GetCursors()->Add();
        Cursor.GetPosition()->SetXY(At, 0.0);
    }
    TQVWaterfallCursorLink& Link = *Waterfall.GetCursorLinks()->Add();
    Link.SetBeginCursorIndex(0);
    Link.SetEndCursorIndex(1);
    Link.GetMeasurementLine()->SetY(60.0);
    Link.GetMeasurementLine()->SetColor(LineColor);
    Link.GetMeasurementLine()->GetMeasurementLabel()->SetText("%V rows");
    TQVWaterfallTextLabel& Label = *Waterfall.GetLabels()->Add();
    Label.SetName("Peak drift");
    Label.GetPosition()->SetX(150.0);
    Label.GetPosition()->SetY(20.0);
    Label.GetFont()->SetColor(LabelColor);
    Waterfall.Paint();
    const TQLBitmap& Picture = Waterfall.GetBitmap();
    qvtest::KeepPicture(Picture, "WaterfallLinks.png");

    const TRect View = Waterfall.GetDataView()->GetDrawRect();
    const int32_t LineRow = View.Top + int32_t(std::nearbyint(View.Height() * 0.2));
    const int32_t From = Waterfall.GetXAxis()->ScaleToPixel(80.0), To = Waterfall.GetXAxis()->ScaleToPixel(220.0);
    int32_t OnLine = 0;
    for (int32_t X = From + 1; X < To; ++X)
        OnLine += Picture.GetPixel(X, LineRow) == LineColor;
    EXPECT_GT(OnLine, (To - From) * 9 / 10);
    EXPECT_NE(Picture.GetPixel(From - 5, LineRow), LineColor);
    // The label's text, smoothed: magenta ink round the point, nowhere far from it.
    const TPoint At{Waterfall.GetXAxis()->ScaleToPixel(150.0), Waterfall.GetYAxis()->ScaleToPixel(20.0)};
    const auto Magenta = [](TAlphaColor C) {
        return ((C >> 16) & 0xFF) > 0x80 && ((C >> 8) & 0xFF) < 0x50 && (C & 0xFF) > 0x80;
    };
    int32_t Near = 0, Far = 0;
    for (int32_t Y = View.Top; Y < View.Bottom; ++Y)
        for (int32_t X = View.Left; X < View.Right; ++X)
            if (Magenta(Picture.GetPixel(X, Y)))
                ++(std::abs(X - At.X) < 45 && std::abs(Y - At.Y) < 10 ? Near : Far);
    EXPECT_GT(Near, 20);
    EXPECT_EQ(Far, 0);
}
