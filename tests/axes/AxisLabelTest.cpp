// Tick texts of walked axes, the number format, custom labels, unit texts, the strip's size
// and the title box with its button. Standard geometry: data view (60, 20)-(461, 321), X strip
// (60, 321)-(461, 361) below it, Y strip (0, 20)-(60, 321) left of it. Recording canvas: 6
// pixels a character, 13 high.
#include "AxisTestSupport.h"

#include "qv/foundation/QLStoredForm.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <string>
#include <tuple>
#include <vector>

using namespace qv;
using namespace qvtest;

namespace {

class TLabelAxis : public TTestAxis {
public:
    using TTestAxis::TTestAxis;
    void SetButtonState(bool AShown, bool ADown)
    {
        FLabelButtonShown = AShown;
        FLabelButtonDown = ADown;
    }
    int32_t TrackSize() const { return FTrackSize; }
};

class AxisLabel : public TAxisFixture {
protected:
    AxisLabel()
    {
        Bottom.SetDrawRect(TRect{60, 321, 461, 361});
        Left.SetDrawRect(TRect{0, 20, 60, 321});
        Right.SetDrawRect(TRect{461, 20, 521, 321});
        Bottom.GetAxisLabel()->SetText("Volts"); // box (245, 346)-(276, 359)
    }

    TLabelAxis Bottom{&Display, false, vaBottom};
    TLabelAxis Left{&Display, true, vaLeft};
    TLabelAxis Right{&Display, true, vaRight};
};

} // namespace

TEST_F(AxisLabel, FormatAndCustomLabelsDecideTheText)
{
    TQVAxisFormat* Format = XAxis.GetFormat();
    Format->SetPrecision(19);
    EXPECT_EQ(Format->GetPrecision(), 18);
    Format->SetPrecision(2);
    // Stored only away from its default.
    EXPECT_NE(QLSaveObject(*Format).Find("Precision"), nullptr);
    Format->SetPrecisionDefault(2);
    EXPECT_EQ(QLSaveObject(*Format).Find("Precision"), nullptr);
    Format->SetFixedPrecision(true);
    Format->SetPrecisionMode(dpmScientific);
    EXPECT_EQ(XAxis.GetTickText(50.0), "5.00E1");
    // A new format lays the display out again: text widths decide the step.
    Display.ClearRecalc();
    Format->SetFixedPrecision(false);
    EXPECT_TRUE(Display.GetNeedsRecalc());
    EXPECT_EQ(XAxis.GetTickText(50.0), "5E1");
    Format->SetPrecisionMode(dpmGeneral);

    // The handler may change the text; SetTickText wins over that, for its own call only.
    XAxis.SetOnCustomLabel([&](TQLPersistent* Sender, double Value, std::string& Text) {
        Text = "<" + Text + ">";
        if (std::fabs(Value - 20.0) < 1e-9) // a walked tick carries the walk's rounding
            static_cast<TQVDisplayAxis*>(Sender)->SetTickText("twenty");
    });
    EXPECT_EQ(XAxis.GetTickText(10.0), "<10>");
    EXPECT_EQ(XAxis.GetTickText(20.0), "twenty");
    EXPECT_EQ(XAxis.GetTickText(30.0), "<30>");
    XAxis.DrawTicks(Canvas, true, false);
    const std::vector<TQLCanvasRecord> Drawn = Canvas.Of("TextOut");
    EXPECT_TRUE(std::any_of(Drawn.begin(), Drawn.end(), [](const auto& R) { return R.Text == "twenty"; }));
}

TEST(AxisUnits, ExponentAndUnitTexts)
{
    // Rate, auto scale, given exponent -> exponent.
    const std::vector<std::tuple<double, bool, int32_t, int32_t>> Exponents = {
        {999.0, true, 7, 0},   {1000.0, true, 7, 3}, {999999.0, true, 0, 3},     {1e6, true, 0, 6},   {0.5, true, 0, 0},
        {0.0005, true, 0, -3}, {-10.0, true, 0, 0},  {std::nan(""), true, 0, 0}, {1e6, false, 12, 12}};
    for (const auto& [Rate, Auto, Given, Expected] : Exponents)
        EXPECT_EQ(QVGetUnitExponent(Rate, Auto, Given), Expected) << Rate;

    const std::vector<std::tuple<int32_t, std::string, std::string>> Units = {
        {0, "Sec", "Hz"},
        {3, "mSec", "kHz"},
        {6, "uSec", "MHz"},
        {9, "nSec", "GHz"},
        {-3, "Sec (E3)", "mHz"},
        {-6, "Sec (E6)", "uHz"},
        {-9, "Sec (E9)", "nHz"},
        {12, "Sec (E-12)", "Hz (E-12)"},
        {1, "Sec (E-1)", "Hz (E-1)"},
        {INT32_MIN, "Sec (E2147483648)", "Hz (E2147483648)"}};
    for (const auto& [E, Time, Freq] : Units) {
        EXPECT_EQ(QVGetTimeUnitText(E), Time);
        EXPECT_EQ(QVGetFrequencyUnitText(E), Freq);
    }
}

TEST_F(AxisLabel, DefaultSizeMeasuresTickTextsAndTheTitle)
{
    // 0..100: the wider end text "100" is 18 wide; a title adds a line and 4 across the
    // strip, not to the track line.
    Left.GetAxisLabel()->SetVisible(false);
    EXPECT_EQ(Bottom.GetDefaultSize(), (TSize{34, 29 + 17}));
    EXPECT_EQ(Bottom.TrackSize(), 28);
    EXPECT_EQ(Left.GetDefaultSize(), (TSize{34, 29}));
    EXPECT_EQ(Left.TrackSize(), 33);
    Left.GetAxisLabel()->SetVisible(true);
    Left.SetLimits(-12345.0, 10.0);
    EXPECT_EQ(Left.GetDefaultSize(), (TSize{6 * 6 + 16 + 17, 29}));
    // A fixed size wins, but the track line is still measured.
    Bottom.GetViewSize()->SetAutoSize(false);
    Bottom.GetViewSize()->SetSize(40);
    EXPECT_EQ(Bottom.GetDefaultSize(), (TSize{40, 40}));
    EXPECT_EQ(Bottom.TrackSize(), 28);
}

TEST_F(AxisLabel, TitlesAreCentredOnTheDataViewAndTurnedOnVerticalStrips)
{
    Bottom.GetAxisLabel()->GetFont()->SetColor(0xFF00FFFF);
    Left.GetAxisLabel()->SetText("Volts");
    Right.GetAxisLabel()->SetText("Amps");
    for (TLabelAxis* Axis : {&Bottom, &Left, &Right})
        Axis->DrawAxisLabel(Canvas, false);
    const std::vector<TQLCanvasRecord> Texts = Canvas.Of("TextOut");
    ASSERT_EQ(Texts.size(), 3u);
    // Under the plot: 60 + 200 - 15 across, 361 - 13 - 2 down, in the title's font.
    EXPECT_EQ(Texts[0].Args, (std::vector<int32_t>{245, 346}));
    EXPECT_EQ(Texts[0].Font.Color, 0xFF00FFFFu);
    EXPECT_EQ(Texts[0].TextAngle, 0);
    // Left: upward from the box's bottom left, box 2..15 across, 155..186 down.
    EXPECT_EQ(Texts[1].Args, (std::vector<int32_t>{2, 186}));
    EXPECT_EQ(Texts[1].TextAngle, 90);
    EXPECT_EQ(Left.GetLabelBox(Canvas, *Left.GetAxisLabel()->GetFont(), true).Box, (TRect{2, 155, 15, 186}));
    EXPECT_EQ(Canvas.GetTextAngle(), 0); // measuring leaves the canvas as it was
    // Right: downward from the box's top right, 2 inside the outer edge.
    EXPECT_EQ(Texts[2].Args, (std::vector<int32_t>{519, 158}));
    EXPECT_EQ(Texts[2].TextAngle, 270);
    EXPECT_EQ(Canvas.Count("FillRect"), 0u);
    // A hidden title draws nothing.
    Canvas.ClearRecords();
    Bottom.GetAxisLabel()->SetVisible(false);
    Bottom.DrawAxisLabel(Canvas, false);
    EXPECT_TRUE(Canvas.GetRecords().empty());
}

TEST_F(AxisLabel, TitleUnderTheMouseIsDrawnAsAButtonUnlessPrinting)
{
    const TQVViewButtonSettings* Button = Bottom.GetButton();
    for (const bool Down : {false, true}) {
        Canvas.ClearRecords();
        Bottom.SetButtonState(true, Down);
        Bottom.DrawAxisLabel(Canvas, false);
        const TAlphaColor Fill = Down ? Button->GetMouseDownColor() : Button->GetMouseOverColor();
        const TAlphaColor Border = Down ? Button->GetMouseDownBorderColor() : Button->GetMouseOverBorderColor();
        const std::vector<TQLCanvasRecord> Ops = Canvas.Of({"FillRect", "TextOut"});
        ASSERT_EQ(Ops.size(), 2u);
        EXPECT_EQ(Ops[0].ArgRect(), (TRect{245, 346, 276, 359}));
        EXPECT_EQ(Ops[0].BrushColor, Fill);
        EXPECT_EQ(Ops[1].BrushStyle, bsClear); // the text after the fill
        // The border one pixel outside the box; the corners rounded in the border colour.
        const std::vector<TDrawnLine> Lines = DrawnLines(Canvas);
        ASSERT_EQ(Lines.size(), 4u);
        EXPECT_EQ(Lines[1].From, (TPoint{244, 346}));
        EXPECT_EQ(Lines[2].To, (TPoint{276, 359}));
        std::vector<TPoint> Corners;
        for (const TQLCanvasRecord& R : Canvas.Of("SetPixel")) {
            Corners.push_back(TPoint{R.Args[0], R.Args[1]});
            EXPECT_EQ(R.Color, Border);
        }
        EXPECT_EQ(Corners, (std::vector<TPoint>{{245, 346}, {275, 346}, {245, 358}, {275, 358}}));
    }
    Canvas.ClearRecords();
    Bottom.DrawAxisLabel(Canvas, true);
    EXPECT_EQ(Canvas.Count("FillRect"), 0u);
}

TEST_F(AxisLabel, TitleButtonLightsUnderTheMouseAndPressesOnTheLeftButton)
{
    bool Handled = false;
    Bottom.MouseMove(0, 250, 350, Handled);
    EXPECT_TRUE(Bottom.GetLabelButtonShown());
    EXPECT_EQ(Display.GetShownCursor(), crHandPoint);
    Bottom.MouseMove(0, 100, 350, Handled); // on the strip, off the title
    EXPECT_FALSE(Bottom.GetLabelButtonShown());
    EXPECT_EQ(Display.GetShownCursor(), Display.GetCursor());
    // A press with no handler asks the display for the axis' setup; a handler that handles
    // it keeps the setup away.
    Bottom.MouseDown(mbLeft, 0, 250, 350, true, Handled = false);
    EXPECT_TRUE(Handled && Bottom.GetLabelButtonDown() && Bottom.GetDialogShown());
    EXPECT_EQ(Display.AxisClicks, (std::vector<int32_t>{Display.GetAxisIndex(&Bottom)}));
    Bottom.MouseUp(mbLeft, 0, 250, 350, true);
    EXPECT_FALSE(Bottom.GetLabelButtonDown());
    Bottom.GetButton()->SetOnClick([](TQLPersistent*, bool& AHandled) { AHandled = true; });
    Bottom.MouseDown(mbLeft, 0, 250, 350, true, Handled = false);
    EXPECT_EQ(Display.AxisClicks.size(), 1u);
    // Leaving puts the button out; a disabled button never lights.
    Bottom.MouseLeave();
    EXPECT_FALSE(Bottom.GetLabelButtonShown() || Bottom.GetLabelButtonDown());
    Bottom.GetButton()->SetEnabled(false);
    Bottom.MouseMove(0, 250, 350, Handled);
    EXPECT_FALSE(Bottom.GetLabelButtonShown());
}
