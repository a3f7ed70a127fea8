// Tick texts of real axes, the number format, custom labels, unit and title texts, the
// strip's size and the title box with its button look.
// Standard geometry: data view (60, 20)-(461, 321), X strip (60, 321)-(461, 361) below it, Y
// strip (0, 20)-(60, 321) left of it. Recording canvas: 6 pixels a character, 13 high.
#include "AxisTestSupport.h"

#include "qv/foundation/QLStoredForm.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <string>
#include <vector>

using namespace qv;
using namespace qvtest;

namespace {

// Exposes the title button's state and the track line's depth.
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
    AxisLabel() { Right.SetDrawRect(TRect{461, 20, 521, 321}); }

    // The texts of the major ticks, in walk order, as the strip would draw them.
    std::vector<std::pair<double, std::string>> MajorTexts(TTestAxis& AAxis)
    {
        TTickLog Log;
        const TQVAxisTickProc Proc = Log.Proc();
        AAxis.DrawTickLines(Proc, Proc, true, Canvas, true, false);
        std::vector<std::pair<double, std::string>> Result;
        for (const double Value : Log.MajorValues())
            Result.emplace_back(Value, AAxis.GetTickText(Value));
        return Result;
    }

    TLabelAxis Bottom{&Display, false, vaBottom};
    TLabelAxis Left{&Display, true, vaLeft};
    TLabelAxis Right{&Display, true, vaRight};
};

} // namespace

TEST_F(AxisLabel, TicksOfWalkedAxesNeverRepeatAndReadTheirValues)
{
    struct TCase {
        TQVScaleMode Mode;
        double Lo, Hi;
    };
    const std::vector<TCase> Cases = {
        {smLinear, 0.0, 100.0},      {smLinear, -1e-9, 1e-9},    {smLinear, 1e6, 1e6 + 0.5},
        {smLinear, -5e14, 2e15},     {smLinear, -0.37, 0.011},   {smLinear, 17.0, 17.003},
        {smLogarithmic, 0.0, 1e6},   {smLogarithmic, 0.0, 9.0},  {smLogarithmic, -1e4, 1e4},
        {smLogarithmic, 0.0, 0.01},  {smLogDecascale, 0.0, 1e5}, {smLogDecascale, -1000.0, 1000.0}};
    for (const TCase& C : Cases) {
        for (TTestAxis* Axis : {static_cast<TTestAxis*>(&XAxis), static_cast<TTestAxis*>(&YAxis)}) {
            SCOPED_TRACE(::testing::Message() << "mode " << int(C.Mode) << " " << C.Lo << ".." << C.Hi << " Y "
                                              << Axis->IsY);
            Axis->Mode = C.Mode;
            Axis->SetLimits(C.Lo, C.Hi);
            const auto Ticks = MajorTexts(*Axis);
            ASSERT_GE(Ticks.size(), 2u);
            for (size_t I = 0; I < Ticks.size(); ++I) {
                const double Back = std::stod(Ticks[I].second);
                EXPECT_NEAR(Back, Ticks[I].first, std::fabs(Ticks[I].first) * 1e-3 + (C.Hi - C.Lo) * 1e-3)
                    << Ticks[I].second;
                for (size_t J = 0; J < I; ++J) {
                    if (Ticks[J].first != Ticks[I].first) {
                        EXPECT_NE(Ticks[J].second, Ticks[I].second) << Ticks[J].first << " and " << Ticks[I].first;
                    }
                }
            }
        }
    }
}

TEST_F(AxisLabel, ZoomedTicksResolveTheWindowNotTheFullScale)
{
    XAxis.SetLimits(0.0, 1e6);
    XAxis.ZoomWindow(500000.0, 500001.0);
    const auto Ticks = MajorTexts(XAxis);
    ASSERT_GE(Ticks.size(), 3u);
    for (size_t I = 1; I < Ticks.size(); ++I)
        EXPECT_NE(Ticks[I - 1].second, Ticks[I].second);
    EXPECT_EQ(XAxis.GetTickText(500000.5), "500000.5");
}

TEST_F(AxisLabel, FormatSetsPrecisionModeAndKeepsPrecisionInRange)
{
    TQVAxisFormat* Format = XAxis.GetFormat();
    EXPECT_EQ(Format->GetPrecision(), 3);
    Format->SetPrecision(19);
    EXPECT_EQ(Format->GetPrecision(), 18);
    Format->SetPrecision(-1);
    EXPECT_EQ(Format->GetPrecision(), 0);

    Format->SetPrecision(2);
    Format->SetFixedPrecision(true);
    EXPECT_EQ(XAxis.GetTickText(50.0), "50.00");
    Format->SetPrecisionMode(dpmScientific);
    EXPECT_EQ(XAxis.GetTickText(50.0), "5.00E1");
    Format->SetFixedPrecision(false);
    EXPECT_EQ(XAxis.GetTickText(50.0), "5E1");

    // A new format lays the display out again: text widths decide the step.
    Display.ClearRecalc();
    Format->SetPrecisionMode(dpmGeneral);
    EXPECT_TRUE(Display.GetNeedsRecalc());
    EXPECT_EQ(XAxis.GetTickText(50.0), "50");
}

TEST_F(AxisLabel, PrecisionIsStoredOnlyAwayFromItsDefault)
{
    TQVAxisFormat* Format = XAxis.GetFormat();
    auto Stored = [&] { return QLSaveObject(*Format).Find("Precision") != nullptr; };
    EXPECT_FALSE(Stored());
    Format->SetPrecisionDefault(0);
    EXPECT_EQ(Format->GetPrecision(), 0);
    EXPECT_FALSE(Stored());
    Format->SetPrecision(3);
    EXPECT_TRUE(Stored());

    // Format, title and button go through the stored form with the axis.
    XAxis.GetFormat()->SetPrecisionMode(dpmScientific);
    XAxis.GetAxisLabel()->SetText("Volts");
    XAxis.GetAxisLabel()->SetVisible(false);
    XAxis.GetButton()->SetMouseDownColor(0xFF123456);
    XAxis.GetButton()->SetEnabled(false);
    QLLoadObject(YAxis, QLSaveObject(XAxis));
    EXPECT_EQ(YAxis.GetFormat()->GetPrecision(), 3);
    EXPECT_EQ(YAxis.GetFormat()->GetPrecisionMode(), dpmScientific);
    EXPECT_EQ(YAxis.GetAxisLabel()->GetText(), "Volts");
    EXPECT_FALSE(YAxis.GetAxisLabel()->GetVisible());
    EXPECT_EQ(YAxis.GetButton()->GetMouseDownColor(), 0xFF123456u);
    EXPECT_FALSE(YAxis.GetButton()->GetEnabled());
}

TEST_F(AxisLabel, CustomLabelReplacesTextAndSetTickTextWins)
{
    std::vector<double> Asked;
    XAxis.SetOnCustomLabel([&](TQLPersistent* Sender, double Value, std::string& Text) {
        EXPECT_EQ(Sender, &XAxis);
        Asked.push_back(Value);
        Text = "<" + Text + ">";
        if (std::fabs(Value - 20.0) < 1e-9) // a walked tick carries the walk's rounding
            static_cast<TQVDisplayAxis*>(Sender)->SetTickText("twenty");
    });
    EXPECT_EQ(XAxis.GetTickText(10.0), "<10>");
    EXPECT_EQ(XAxis.GetTickText(20.0), "twenty");
    // What SetTickText left belongs to its own call only.
    EXPECT_EQ(XAxis.GetTickText(30.0), "<30>");
    EXPECT_EQ(Asked, (std::vector<double>{10.0, 20.0, 30.0}));

    // The strip draws the custom texts.
    XAxis.DrawTicks(Canvas, true, false);
    std::vector<std::string> Drawn;
    for (const TQLCanvasRecord& R : Canvas.Of("TextOut"))
        Drawn.push_back(R.Text);
    EXPECT_NE(std::find(Drawn.begin(), Drawn.end(), "twenty"), Drawn.end());
    EXPECT_NE(std::find(Drawn.begin(), Drawn.end(), "<50>"), Drawn.end());
    EXPECT_EQ(std::find(Drawn.begin(), Drawn.end(), "20"), Drawn.end());

    XAxis.SetOnCustomLabel(nullptr);
    EXPECT_EQ(XAxis.GetTickText(20.0), "20");
}

TEST(AxisUnits, ExponentFollowsTheSampleRateOrTheGivenValue)
{
    EXPECT_EQ(QVGetUnitExponent(999.0, true, 7), 0);
    EXPECT_EQ(QVGetUnitExponent(1000.0, true, 7), 3);
    EXPECT_EQ(QVGetUnitExponent(999999.0, true, 0), 3);
    EXPECT_EQ(QVGetUnitExponent(1e6, true, 0), 6);
    EXPECT_EQ(QVGetUnitExponent(2.5e9, true, 0), 9);
    // Below 1 the truncation goes toward zero; no rate at all gives 0.
    EXPECT_EQ(QVGetUnitExponent(0.5, true, 0), 0);
    EXPECT_EQ(QVGetUnitExponent(0.0005, true, 0), -3);
    EXPECT_EQ(QVGetUnitExponent(0.0, true, 0), 0);
    EXPECT_EQ(QVGetUnitExponent(-10.0, true, 0), 0);
    EXPECT_EQ(QVGetUnitExponent(std::nan(""), true, 0), 0);
    EXPECT_EQ(QVGetUnitExponent(1e6, false, 12), 12);

    TQVScopeXAxisUnitScale Scale(nullptr, QLMakeLock(), nullptr);
    EXPECT_EQ(QVGetUnitExponent(44100.0, Scale), 3);
    Scale.SetAutoScale(false);
    Scale.SetExponent(-6);
    EXPECT_EQ(QVGetUnitExponent(44100.0, Scale), -6);
}

TEST(AxisUnits, TimeAndFrequencyTextsForEveryExponent)
{
    const std::vector<std::pair<int32_t, std::string>> Time = {
        {0, "Sec"}, {3, "mSec"}, {6, "uSec"}, {9, "nSec"}, {12, "Sec (E-12)"}, {-3, "Sec (E3)"}, {1, "Sec (E-1)"}};
    for (const auto& [E, Text] : Time)
        EXPECT_EQ(QVGetTimeUnitText(E), Text) << E;
    const std::vector<std::pair<int32_t, std::string>> Freq = {
        {-9, "nHz"}, {-6, "uHz"}, {-3, "mHz"}, {0, "Hz"},           {3, "kHz"},
        {6, "MHz"},  {9, "GHz"},  {12, "Hz (E-12)"}, {-12, "Hz (E12)"}, {INT32_MIN, "Hz (E2147483648)"}};
    for (const auto& [E, Text] : Freq)
        EXPECT_EQ(QVGetFrequencyUnitText(E), Text) << E;
}

TEST(AxisUnits, TitleTakesTheFirstRuleThatApplies)
{
    TQVXAxisTitleState S;
    EXPECT_EQ(QVGetScopeXAxisTitle("", S), "Samples");
    S.InXModeAxis = true;
    EXPECT_EQ(QVGetScopeXAxisTitle("", S), "X Axis");
    S.InIntensityAxis = true;
    EXPECT_EQ(QVGetScopeXAxisTitle("", S), "Intensity");
    S.InFreqAxis = true;
    S.Exponent = 3;
    EXPECT_EQ(QVGetScopeXAxisTitle("", S), "kHz");
    S.InTimeAxis = true;
    EXPECT_EQ(QVGetScopeXAxisTitle("", S), "mSec");
    S.Designing = true;
    EXPECT_EQ(QVGetScopeXAxisTitle("", S), "X Axis");
    S.Designing = false;
    S.TicksMode = atmManual;
    EXPECT_EQ(QVGetScopeXAxisTitle("", S), "X Axis");
    // The user's text beats every unit.
    EXPECT_EQ(QVGetScopeXAxisTitle("Distance", S), "Distance");
    S.TicksMode = atmFrequency;
    S.Designing = true;
    EXPECT_EQ(QVGetScopeXAxisTitle("", S), "mSec");
}

TEST_F(AxisLabel, DefaultSizeMeasuresTickTextsAndTheTitle)
{
    // 0..100: the wider end text "100" is 18 wide; a line is 13 high.
    Bottom.SetLimits(0.0, 100.0);
    Left.SetLimits(0.0, 100.0);
    Bottom.GetAxisLabel()->SetVisible(false);
    Left.GetAxisLabel()->SetVisible(false);
    EXPECT_EQ(Bottom.GetDefaultSize(), (TSize{34, 29}));
    EXPECT_EQ(Bottom.TrackSize(), 28);
    EXPECT_EQ(Left.GetDefaultSize(), (TSize{34, 29}));
    EXPECT_EQ(Left.TrackSize(), 33);

    // A visible title adds a line and 4 across the strip, not to the track line.
    Bottom.GetAxisLabel()->SetVisible(true);
    Left.GetAxisLabel()->SetVisible(true);
    EXPECT_EQ(Bottom.GetDefaultSize(), (TSize{34, 46}));
    EXPECT_EQ(Bottom.TrackSize(), 28);
    EXPECT_EQ(Left.GetDefaultSize(), (TSize{51, 29}));
    EXPECT_EQ(Left.TrackSize(), 33);

    // Negative ends are wider; the text of the wider end counts.
    Left.SetLimits(-12345.0, 10.0);
    EXPECT_EQ(Left.GetDefaultSize().cx, 6 * 6 + 16 + 17);

    // A fixed size wins, but the track line is still measured.
    Bottom.GetViewSize()->SetAutoSize(false);
    Bottom.GetViewSize()->SetSize(40);
    Bottom.GetAxisLabel()->SetVisible(false);
    EXPECT_EQ(Bottom.GetDefaultSize(), (TSize{40, 40}));
    EXPECT_EQ(Bottom.TrackSize(), 28);
}

TEST_F(AxisLabel, HorizontalTitleIsCentredOnTheDataViewAtTheOuterEdge)
{
    Bottom.SetDrawRect(TRect{60, 321, 461, 361});
    Bottom.GetAxisLabel()->SetText("Volts");
    Bottom.GetAxisLabel()->GetFont()->SetColor(0xFF00FFFF);
    Bottom.DrawAxisLabel(Canvas, false);
    ASSERT_EQ(Canvas.Count("TextOut"), 1u);
    const TQLCanvasRecord Text = Canvas.Of("TextOut")[0];
    // 400 wide view: 60 + 200 - 15; 361 - 13 - 2.
    EXPECT_EQ(Text.Args, (std::vector<int32_t>{245, 346}));
    EXPECT_EQ(Text.Text, "Volts");
    EXPECT_EQ(Text.Font.Color, 0xFF00FFFFu);
    EXPECT_EQ(Text.TextAngle, 0);
    EXPECT_EQ(Canvas.Count("FillRect"), 0u);

    // On a top strip the box hangs 2 below the strip's top.
    Canvas.ClearRecords();
    Bottom.SetAlign(vaTop);
    Bottom.SetDrawRect(TRect{60, 0, 461, 20});
    Bottom.DrawAxisLabel(Canvas, false);
    EXPECT_EQ(Canvas.Of("TextOut")[0].Args, (std::vector<int32_t>{245, 2}));

    // A hidden title draws nothing.
    Canvas.ClearRecords();
    Bottom.GetAxisLabel()->SetVisible(false);
    Bottom.DrawAxisLabel(Canvas, false);
    EXPECT_TRUE(Canvas.GetRecords().empty());
}

TEST_F(AxisLabel, VerticalTitlesTurnTowardTheirStripAndComeBackStraight)
{
    Left.GetAxisLabel()->SetText("Volts");
    Left.SetDrawRect(TRect{0, 20, 60, 321});
    Left.DrawAxisLabel(Canvas, false);
    // Box: left 2, top 20 + 150 - 15, right 15, bottom 155 + 31; text from the bottom left.
    const TQLCanvasRecord L = Canvas.Of("TextOut")[0];
    EXPECT_EQ(L.Args, (std::vector<int32_t>{2, 186}));
    EXPECT_EQ(L.TextAngle, 90);
    EXPECT_EQ(Canvas.GetTextAngle(), 0);
    const TQVDisplayAxis::TLabelBox Box = Left.GetLabelBox(Canvas, *Left.GetAxisLabel()->GetFont(), true);
    EXPECT_EQ(Box.Box, (TRect{2, 155, 15, 186}));

    // The right strip reads downward from the box's top right, 2 inside the outer edge.
    Canvas.ClearRecords();
    Right.GetAxisLabel()->SetText("Amps");
    Right.DrawAxisLabel(Canvas, false);
    const TQLCanvasRecord R = Canvas.Of("TextOut")[0];
    EXPECT_EQ(R.TextAngle, 270);
    EXPECT_EQ(R.Args, (std::vector<int32_t>{519, 20 + 150 - 12}));
}

TEST_F(AxisLabel, TitleUnderTheMouseIsDrawnAsAButtonUnlessPrinting)
{
    Bottom.SetDrawRect(TRect{60, 321, 461, 361});
    Bottom.GetAxisLabel()->SetText("Volts");
    const TRect Box{245, 346, 276, 359};
    TQVViewButtonSettings* Button = Bottom.GetButton();

    Bottom.SetButtonState(true, false);
    Bottom.DrawAxisLabel(Canvas, false);
    ASSERT_EQ(Canvas.Count("FillRect"), 1u);
    const TQLCanvasRecord Fill = Canvas.Of("FillRect")[0];
    EXPECT_EQ(Fill.ArgRect(), Box);
    EXPECT_EQ(Fill.BrushColor, Button->GetMouseOverColor());
    // The border one pixel outside the box, in the border colour.
    const std::vector<TDrawnLine> Lines = DrawnLines(Canvas);
    ASSERT_EQ(Lines.size(), 4u);
    EXPECT_EQ(Lines[0].From, (TPoint{245, 345}));
    EXPECT_EQ(Lines[0].To, (TPoint{276, 345}));
    EXPECT_EQ(Lines[1].From, (TPoint{244, 346}));
    EXPECT_EQ(Lines[1].To, (TPoint{244, 359}));
    EXPECT_EQ(Lines[2].From, (TPoint{245, 359}));
    EXPECT_EQ(Lines[3].From, (TPoint{276, 346}));
    for (const TQLCanvasRecord& R : Canvas.Of("LineTo"))
        EXPECT_EQ(R.PenColor, Button->GetMouseOverBorderColor());
    // Rounded corners: the border colour on the four inner corners.
    std::vector<TPoint> Corners;
    for (const TQLCanvasRecord& R : Canvas.Of("SetPixel")) {
        Corners.push_back(TPoint{R.Args[0], R.Args[1]});
        EXPECT_EQ(R.Color, Button->GetMouseOverBorderColor());
    }
    EXPECT_EQ(Corners, (std::vector<TPoint>{{245, 346}, {275, 346}, {245, 358}, {275, 358}}));
    // The text after the fill, with the brush clear.
    const std::vector<TQLCanvasRecord> Drawn = Canvas.Of({"FillRect", "TextOut"});
    ASSERT_EQ(Drawn.size(), 2u);
    EXPECT_EQ(Drawn[1].Op, "TextOut");
    EXPECT_EQ(Drawn[1].BrushStyle, bsClear);

    // Pressed: the mouse-down pair.
    Canvas.ClearRecords();
    Bottom.SetButtonState(true, true);
    Bottom.DrawAxisLabel(Canvas, false);
    EXPECT_EQ(Canvas.Of("FillRect")[0].BrushColor, Button->GetMouseDownColor());
    EXPECT_EQ(Canvas.Of("SetPixel")[0].Color, Button->GetMouseDownBorderColor());

    // Printing shows the text alone.
    Canvas.ClearRecords();
    Bottom.DrawAxisLabel(Canvas, true);
    EXPECT_EQ(Canvas.Count("FillRect"), 0u);
    EXPECT_EQ(Canvas.Count("TextOut"), 1u);
}

TEST_F(AxisLabel, TitleButtonLightsUnderTheMouseAndPressesOnTheLeftButton)
{
    Bottom.SetDrawRect(TRect{60, 321, 461, 361});
    Bottom.GetAxisLabel()->SetText("Volts"); // box (245, 346)-(276, 359)
    bool Handled = false;
    Bottom.MouseMove(0, 250, 350, Handled);
    EXPECT_TRUE(Bottom.GetLabelButtonShown());
    EXPECT_EQ(Display.GetShownCursor(), crHandPoint);
    // Off the title, still on the strip: out again, with the display's own cursor.
    Bottom.MouseMove(0, 100, 350, Handled);
    EXPECT_FALSE(Bottom.GetLabelButtonShown());
    EXPECT_EQ(Display.GetShownCursor(), Display.GetCursor());

    // A press on the title with no handler asks the display for the axis' setup.
    Handled = false;
    Bottom.MouseDown(mbLeft, 0, 250, 350, true, Handled);
    EXPECT_TRUE(Handled);
    EXPECT_TRUE(Bottom.GetLabelButtonDown());
    EXPECT_TRUE(Bottom.GetDialogShown());
    EXPECT_EQ(Display.AxisClicks, (std::vector<int32_t>{Display.GetAxisIndex(&Bottom)}));
    Bottom.MouseUp(mbLeft, 0, 250, 350, true);
    EXPECT_FALSE(Bottom.GetLabelButtonDown());
    EXPECT_TRUE(Bottom.GetLabelButtonShown());

    // A handler that handles the press keeps the setup away; the right button does nothing.
    int Clicks = 0;
    Bottom.GetButton()->SetOnClick([&](TQLPersistent* Sender, bool& AHandled) {
        EXPECT_EQ(Sender, &Bottom);
        ++Clicks;
        AHandled = true;
    });
    Handled = false;
    Bottom.MouseDown(mbLeft, 0, 250, 350, true, Handled);
    Handled = false;
    Bottom.MouseDown(mbRight, 0, 250, 350, true, Handled);
    EXPECT_FALSE(Handled);
    EXPECT_EQ(Clicks, 1);
    EXPECT_EQ(Display.AxisClicks.size(), 1u);

    // Leaving the control puts the button out, pressed or not.
    Bottom.MouseLeave();
    EXPECT_FALSE(Bottom.GetLabelButtonShown());
    EXPECT_FALSE(Bottom.GetLabelButtonDown());

    // A disabled button or a hidden title never lights.
    Bottom.GetButton()->SetEnabled(false);
    Bottom.MouseMove(0, 250, 350, Handled);
    EXPECT_FALSE(Bottom.GetLabelButtonShown());
    Bottom.GetButton()->SetEnabled(true);
    Bottom.GetAxisLabel()->SetVisible(false);
    Bottom.MouseMove(0, 250, 350, Handled);
    EXPECT_FALSE(Bottom.GetLabelButtonShown());
}
