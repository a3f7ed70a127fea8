// Titles rendered for real: a top title and a left title drawn by QPainter into the
// display's picture. The text must land centred on the plot, the left text turned, the left
// strip filled with its own colour; the picture is kept as TitlePicture.png beside the
// test program for a look.
#include <qv/qt/QLQtCanvas.h>
#include <qv/qt/QLQtImage.h>

#include "qv/decor/QVDisplayTitle.h"
#include "qv/display/QVDataDisplay.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <memory>

using namespace qv;

namespace {

// Lays out and draws its views the way a chart's paint does, on a black background.
class TPictureDisplay : public TQVDataDisplay {
public:
    TPictureDisplay()
    {
        SetCanvasFactory([](TQLBitmap& ABitmap) { return std::make_unique<TQLQtCanvas>(ABitmap); });
    }
    bool PopulateDrawBuffers() override { return false; }
    TQVDisplayTitle* Title() const { return GetTitle(); }

    void PaintToCanvasRgn(TQLBitmap& ABitmap, TQLCanvas& ACanvas, const TRect& ARect, const TQLRegion& ARegion,
                          bool APrinting) override
    {
        TQVDataDisplay::PaintToCanvasRgn(ABitmap, ACanvas, ARect, ARegion, APrinting);
        RecalculateViewRects();
        FNeedsRecalc = false;
        for (TQVDisplayView* View : GetViews())
            if (View->IsVisible())
                View->Draw(ddpFeatures, ACanvas, false, APrinting);
    }

};

bool IsTextPixel(uint32_t APixel) { return ((APixel >> 16) & 0xFF) > 0x80 && ((APixel >> 8) & 0xFF) > 0x80; }

struct TTextPixels {
    int Inside = 0;
    int Outside = 0;
};

// Text pixels in AArea, split by whether they lie in ABox grown by one pixel (glyphs may
// overhang their advance box a little).
TTextPixels CountTextPixels(const TQLBitmap& ABitmap, const TRect& AArea, const TRect& ABox)
{
    const TRect Box{ABox.Left - 1, ABox.Top - 1, ABox.Right + 1, ABox.Bottom + 1};
    TTextPixels Count;
    for (int32_t Y = AArea.Top; Y < AArea.Bottom; ++Y)
        for (int32_t X = AArea.Left; X < AArea.Right; ++X)
            if (IsTextPixel(ABitmap.GetPixel(X, Y)))
                ++(Box.Contains(TPoint{X, Y}) ? Count.Inside : Count.Outside);
    return Count;
}

} // namespace

TEST(TitlePicture, TopAndLeftTitlesDrawCentredOnThePlot)
{
    TPictureDisplay D;
    D.SetBounds(0, 0, 320, 200);
    D.Title()->SetText("Scope");
    TQVAdditionalDisplayTitle* Left = D.Title()->GetAdditionalTitles()->Add()->GetTitle();
    Left->SetText("Volts");
    Left->SetAlign(vaLeft);
    Left->GetBackground()->SetUseControlColor(false);
    Left->GetBackground()->SetColor(0xFF000080);
    D.Paint();
    const TQLBitmap& Picture = D.GetBitmap();
    ASSERT_EQ(Picture.GetWidth(), 320);
    qt::QLSaveBitmapPng(Picture, QCoreApplication::applicationDirPath() + "/TitlePicture.png");

    // The metrics the titles were laid out with.
    TQLBitmap Scratch(1, 1);
    TQLQtCanvas Measure(Scratch);
    Measure.ApplyFont(*D.Title()->GetFont());
    const int32_t Th = Measure.TextHeight("Xg");
    const int32_t ScopeW = Measure.TextWidth("Scope");
    const int32_t VoltsW = Measure.TextWidth("Volts");
    const int32_t Strip = Th + 16;
    ASSERT_GT(Th, 10);
    EXPECT_EQ(D.Title()->GetDrawRect(), (TRect{0, 0, 320, Strip}));
    EXPECT_EQ(Left->GetDrawRect(), (TRect{0, Strip, Strip, 200}));

    // Top: all the text lies in its box, 4 below the top, centred on the control.
    const int32_t ScopeX = 160 - ScopeW / 2;
    const TTextPixels Top =
        CountTextPixels(Picture, TRect{0, 0, 320, Strip}, TRect{ScopeX, 4, ScopeX + ScopeW, 4 + Th});
    EXPECT_GT(Top.Inside, 40);
    EXPECT_EQ(Top.Outside, 0);
    EXPECT_EQ(Picture.GetPixel(2, 2), 0xFF000000u);

    // Left: the turned text reads upward, 4 in from the left, centred on the plot's height
    // though the strip starts below the top title.
    const int32_t Base = 100 + VoltsW - VoltsW / 2;
    const TTextPixels Side =
        CountTextPixels(Picture, TRect{0, Strip, Strip, 200}, TRect{4, Base - VoltsW, 4 + Th, Base});
    EXPECT_GT(Side.Inside, 40);
    EXPECT_EQ(Side.Outside, 0);
    EXPECT_EQ(Picture.GetPixel(1, Strip + 1), 0xFF000080u);
    EXPECT_EQ(Picture.GetPixel(Strip - 1, 199), 0xFF000080u);
    EXPECT_EQ(Picture.GetPixel(Strip, 199), 0xFF000000u) << "the strip ends at its right edge";

    EXPECT_EQ(Picture.GetPixel(200, 120), 0xFF000000u);
}
