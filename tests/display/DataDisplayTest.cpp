// The display frame: refresh cycle, hold, destroy guard, painting entry points, mouse
// dispatch and label templates.
#include "qv/channels/QVChannelMouseHitPoint.h"
#include "qv/component/QVDisplayComponent.h"
#include "qv/component/QVDisplayView.h"
#include "qv/display/QVDataDisplay.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using namespace qv;

namespace {

class TProbeDisplay : public TQVDataDisplay {
public:
    TProbeDisplay()
    {
        SetOnInvalidate([this] { ++Invalidations; });
    }
    bool PopulateDrawBuffers() override
    {
        ++Populates;
        return PopulateResult;
    }
    void MouseWheelZoom(const TPoint& APoint, double AXFactor, double AYFactor) override
    {
        Log.push_back("zoom " + std::to_string(AXFactor).substr(0, 3));
    }
    TQVDisplayComponent* GetDataView() const override { return DataView; }
    void PaintToCanvasRgn(TQLBitmap& ABitmap, TQLCanvas& ACanvas, const TRect& ARect, const TQLRegion& ARegion,
                          bool APrinting) override
    {
        PlotSizes.push_back(TSize{GetPlotWidth(), GetPlotHeight()});
        TQVDataDisplay::PaintToCanvasRgn(ABitmap, ACanvas, ARect, ARegion, APrinting);
    }
    void StartDestroy() { BeginDestroy(); }
    void ClearRefreshFlag() { FRefreshImage = false; }
    void ClearRecalcFlag() { FNeedsRecalc = false; }

    int Invalidations = 0;
    int Populates = 0;
    bool PopulateResult = false;
    TQVDisplayComponent* DataView = nullptr;
    std::vector<std::string> Log;
    std::vector<TSize> PlotSizes;
};

class TProbeComponent : public TQVDisplayComponent {
public:
    TProbeComponent(TProbeDisplay& ADisplay, std::string AName, TRect ARect, bool AToolBar = false)
        : TQVDisplayComponent(&ADisplay), Name(std::move(AName)), Rect(ARect), ToolBar(AToolBar), Log(ADisplay.Log)
    {}
    TRect IntGetDrawRect() const override { return Visible ? Rect : TRect{}; }
    bool IsVisible() const override { return Visible; }
    bool IsToolBar() const override { return ToolBar; }
    void MouseDown(TMouseButton, TShiftState, int32_t AX, int32_t AY, bool AInside, bool& AHandled) override
    {
        Log.push_back(Name + " down" + (AInside ? " in" : " out"));
        if (ClaimPress && AInside)
            AHandled = true;
    }
    void MouseUp(TMouseButton, TShiftState, int32_t, int32_t, bool) override { Log.push_back(Name + " up"); }
    void MouseEnterView() override { Log.push_back(Name + " enter"); }
    void MouseLeaveView() override { Log.push_back(Name + " leave"); }
    void MouseWheelDown(TShiftState, const TPoint&) override { Log.push_back(Name + " wheel down"); }
    void MouseWheelUp(TShiftState, const TPoint&) override { Log.push_back(Name + " wheel up"); }

    std::string Name;
    TRect Rect;
    bool ToolBar;
    bool Visible = true;
    bool ClaimPress = true;
    std::vector<std::string>& Log;
};

TQLCanvasFactory RecordingFactory()
{
    return [](TQLBitmap&) -> std::unique_ptr<TQLCanvas> { return std::make_unique<TQLRecordingCanvas>(); };
}

} // namespace

TEST(DataDisplayRefresh, TicksRepaintHoldHandsOverAndDesignTimeAndDestroyStopTheCycle)
{
    TProbeDisplay D;
    D.SetRefreshInterval(0); // never below one
    EXPECT_EQ(D.GetRefreshTimer().GetInterval(), 1u);
    // Every tick of the timer is a refresh that repaints, with or without data.
    for (int Tick = 1; Tick <= 2; ++Tick) {
        D.GetRefreshTimer().Fire();
        EXPECT_EQ(D.Populates, Tick);
        EXPECT_EQ(D.Invalidations, Tick);
    }
    // With the refresh flag cleared, only new data asks for a repaint.
    D.ClearRefreshFlag();
    D.RefreshView();
    EXPECT_EQ(D.Invalidations, 2);
    D.PopulateResult = true;
    D.RefreshView();
    EXPECT_EQ(D.Invalidations, 3);

    // A change of Hold hands over at once and repaints; an equal value does nothing.
    D.SetHold(true);
    EXPECT_EQ(D.Populates, 5);
    const int Held = D.Invalidations;
    D.SetHold(true);
    EXPECT_EQ(D.Populates, 5);
    EXPECT_EQ(D.Invalidations, Held);
    D.SetHold(false);
    EXPECT_EQ(D.Populates, 6);
    EXPECT_GT(D.Invalidations, Held);

    // At run time PostRefresh waits for the next tick; at design time the timer stops and
    // PostRefresh repaints at once.
    D.ClearRefreshFlag();
    const int Before = D.Invalidations;
    D.PostRefresh();
    EXPECT_EQ(D.Invalidations, Before);
    D.SetDesigning(true);
    EXPECT_FALSE(D.GetRefreshTimer().GetEnabled());
    D.GetRefreshTimer().Fire();
    EXPECT_EQ(D.Populates, 6);
    D.PostRefresh();
    EXPECT_EQ(D.Invalidations, Before + 1);

    // Once destruction began neither refresh nor paint touch anything.
    TProbeDisplay Dying;
    TQLBitmap Bitmap(20, 10);
    TQLRecordingCanvas Canvas;
    Dying.StartDestroy();
    Dying.RefreshView();
    EXPECT_EQ(Dying.Populates, 0);
    Dying.PaintToCanvas(Bitmap, Canvas, false);
    EXPECT_TRUE(Canvas.GetRecords().empty());
}

TEST(DataDisplayPaint, BackgroundFactoryPictureSizeAndPrintSize)
{
    TProbeDisplay D;
    D.SetColor(0xFF102030);
    TQLBitmap Bitmap(64, 32);
    TQLRecordingCanvas Canvas;
    D.PaintToCanvas(Bitmap, Canvas, false);
    const auto Fills = Canvas.Of("FillRect");
    ASSERT_EQ(Fills.size(), 1u);
    EXPECT_EQ(Fills[0].ArgRect(), (TRect{0, 0, 64, 32}));
    EXPECT_EQ(Fills[0].BrushColor, 0xFF102030u);
    D.PlotSizes.clear();

    // Paint needs a canvas factory and sizes the picture to the control.
    EXPECT_THROW(D.Paint(), std::logic_error);
    D.SetCanvasFactory(RecordingFactory());
    D.SetBounds(0, 0, 120.7f, 80.2f);
    int Painted = 0;
    D.SetOnPaint([&](TQLPersistent* ASender) { Painted += ASender == &D; });
    D.Paint();
    EXPECT_EQ(Painted, 1);
    EXPECT_EQ(D.GetBitmap().GetWidth(), 120);
    EXPECT_EQ(D.GetBitmap().GetHeight(), 80);

    // IntDraw plots at the rounded print size on a picture one pixel larger, then leaves
    // printing and the screen size as they were.
    TQLRecordingCanvas Target;
    D.IntDraw(Target, 0, 0, 99.6f, 50.4f, true, false);
    EXPECT_EQ(D.PlotSizes, (std::vector<TSize>{{120, 80}, {100, 50}}));
    const auto Draws = Target.Of("DrawBitmap");
    ASSERT_EQ(Draws.size(), 1u);
    EXPECT_EQ(Draws[0].Args, (std::vector<int32_t>{0, 0, 101, 51}));
    EXPECT_FALSE(D.GetPrinting());
    EXPECT_EQ(D.GetPlotWidth(), static_cast<int32_t>(D.GetWidth()));
}

TEST(DataDisplayGeometry, SizeChangesRecalculateAndBadBoundsAreRefused)
{
    TProbeDisplay D; // 450 by 280
    D.ClearRecalcFlag();
    D.SetBounds(5, 5, 450, 280); // moved only
    EXPECT_FALSE(D.GetNeedsRecalc());
    D.SetBounds(5, 5, 300, 200);
    EXPECT_TRUE(D.GetNeedsRecalc());
    EXPECT_EQ(D.GetPlotWidth(), 300);
    EXPECT_THROW(D.SetBounds(0, 0, -1, 10), std::invalid_argument);
    EXPECT_THROW(D.SetBounds(0, 0, 10, std::numeric_limits<float>::quiet_NaN()), std::invalid_argument);
    EXPECT_EQ(D.GetPlotWidth(), 300);
}

TEST(DataDisplayMouse, ToolBarsHearThePressFirstHiddenOnesNotAndEveryoneTheRelease)
{
    TProbeDisplay D;
    TProbeComponent A(D, "A", {0, 0, 100, 100});
    TProbeComponent B(D, "B", {0, 0, 100, 100});
    TProbeComponent Bar(D, "Bar", {0, 0, 100, 20}, true); // created last, still first
    Bar.ClaimPress = false;
    D.MouseDown(mbLeft, 0, 10, 50);
    EXPECT_EQ(D.Log, (std::vector<std::string>{"Bar down out", "B down in"})); // the first claim stops it
    EXPECT_TRUE(D.GetIsFocused());
    D.Log.clear();
    Bar.ClaimPress = true;
    D.MouseDown(mbLeft, 0, 10, 10);
    EXPECT_EQ(D.Log, (std::vector<std::string>{"Bar down in"}));

    D.Log.clear();
    Bar.Visible = B.Visible = false;
    D.MouseDown(mbRight, 0, 10, 10);
    D.MouseUp(mbRight, 0, 10, 10);
    EXPECT_EQ(D.Log, (std::vector<std::string>{"A down in", "Bar up", "B up", "A up"}));

    // Nothing is dispatched at design time.
    D.Log.clear();
    D.SetDesigning(true);
    D.MouseDown(mbLeft, 0, 1, 1);
    D.MouseMove(0, 1, 1);
    D.MouseUp(mbLeft, 0, 1, 1);
    D.DoMouseWheelDown(0, TPoint{1, 1});
    EXPECT_TRUE(D.Log.empty());
}

TEST(DataDisplayMouse, MoveSharesOneClaimSoTheLastComponentUnderTheMouseWins)
{
    TProbeDisplay D;
    TProbeComponent Under(D, "Under", {0, 0, 100, 100});
    TProbeComponent Over(D, "Over", {50, 0, 100, 100});
    D.MouseMove(0, 10, 10);
    EXPECT_EQ(D.Log, (std::vector<std::string>{"Under enter"}));
    D.Log.clear();
    D.MouseMove(0, 60, 10); // both hold it; the later one claims it
    EXPECT_EQ(D.Log, (std::vector<std::string>{"Over enter", "Under leave"}));
    D.Log.clear();
    const int Before = D.Invalidations;
    D.DoMouseLeave();
    EXPECT_EQ(D.Log, (std::vector<std::string>{"Over leave"}));
    D.MouseMove(0, 500, 500);
    EXPECT_EQ(D.Invalidations, Before + 1); // every move repaints
}

TEST(DataDisplayMouse, CoordinatesRoundToNearestWithTiesToEven)
{
    TProbeDisplay D;
    TProbeComponent C(D, "C", {2, 0, 3, 10}); // only column 2
    D.MouseDown(mbLeft, 0, 2.5f, 1);          // 2.5 -> 2: inside
    D.MouseDown(mbLeft, 0, 3.5f, 1);          // 3.5 -> 4: outside
    D.MouseDown(mbLeft, 0, 1.5f, 1);          // 1.5 -> 2: inside
    EXPECT_EQ(D.Log, (std::vector<std::string>{"C down in", "C down out", "C down in"}));
}

TEST(DataDisplayMouse, WheelReachesTheComponentUnderItAndZoomsOverTheDataView)
{
    TProbeDisplay D;
    TProbeComponent View(D, "View", {0, 0, 100, 100});
    TProbeComponent Axis(D, "Axis", {0, 90, 100, 100});
    D.DataView = &View;
    D.DoMouseWheelDown(0, TPoint{10, 95});
    EXPECT_EQ(D.Log, (std::vector<std::string>{"View wheel down", "Axis wheel down", "zoom 1.1"}));
    D.Log.clear();
    D.DoMouseWheelUp(0, TPoint{10, 200});
    EXPECT_TRUE(D.Log.empty());
    D.DoMouseWheelUp(0, TPoint{10, 10});
    EXPECT_EQ(D.Log, (std::vector<std::string>{"View wheel up", "zoom 0.9"}));
}

TEST(DataDisplayMouse, LeavingTheControlPutsTheUsersCursorBack)
{
    TProbeDisplay D;
    std::vector<TCursor> Shown;
    D.SetOnCursorChange([&](TCursor C) { Shown.push_back(C); });
    D.SetCursor(crCross);
    D.SetDisplayCursor(crSizeWE);
    D.SetToolCursorChanged(true);
    D.DoMouseLeave();
    EXPECT_EQ(Shown, (std::vector<TCursor>{crCross, crSizeWE, crCross}));
    EXPECT_EQ(D.GetShownCursor(), crCross);
}

TEST(DataDisplayComponents, ComponentsJoinAndLeaveTheDispatchList)
{
    TProbeDisplay D;
    const size_t Own = D.GetComponents().size(); // the display's title
    {
        TProbeComponent A(D, "A", {0, 0, 10, 10});
        EXPECT_EQ(D.GetComponents().back(), &A);
    }
    EXPECT_EQ(D.GetComponents().size(), Own);
}

TEST(DataDisplayLabels, MeasurementTemplatesSubstituteTheValue)
{
    EXPECT_EQ(TQVDataDisplay::GetMeasurementLabelText("1.5", "", "dt = %V s"), "dt = 1.5 s");
    EXPECT_EQ(TQVDataDisplay::GetMeasurementLabelText("1.5", "%v%%", "unused"), "1.5%");
    EXPECT_EQ(TQVDataDisplay::GetMeasurementLabelText("7", "a%Qb", ""), "ab");
    EXPECT_EQ(TQVDataDisplay::GetMeasurementLabelText("7", "tail %", ""), "tail ");
    EXPECT_EQ(TQVDataDisplay::GetMeasurementLabelText("7", "%V%", ""), "7");
}

TEST(DataDisplayState, PaintIsDisabledUntilHostedVisibleAndLoaded)
{
    TProbeDisplay D;
    EXPECT_TRUE(D.PaintIsDisabled()); // no host window
    D.SetParentState(true, csLoading);
    EXPECT_TRUE(D.PaintIsDisabled());
    D.SetParentState(true, 0);
    EXPECT_FALSE(D.PaintIsDisabled());
    D.SetVisible(false);
    EXPECT_TRUE(D.PaintIsDisabled());
    D.SetDesigning(true); // designing shows even a hidden control
    EXPECT_FALSE(D.PaintIsDisabled());
}

namespace {

class THitDisplay : public TProbeDisplay {
public:
    std::string GetFormatedMouseHitLabelText() override { return "1.00 : 2.00"; } // 66 x 13
};

class TPlotView : public TQVCustomColorDisplayView {
public:
    using TQVCustomColorDisplayView::TQVCustomColorDisplayView;
};

// The label box of a hit drawn at APoint: its Rectangle and TextOut records.
std::pair<TRect, TPoint> HitLabelBox(THitDisplay& ADisplay, const TQVChannelMouseHitPoint& AHit, TPoint APoint)
{
    TQLRecordingCanvas Canvas;
    ADisplay.DrawHitTest(Canvas, APoint, AHit);
    const auto Rects = Canvas.Of("Rectangle");
    const auto Texts = Canvas.Of("TextOut");
    if (Rects.size() != 2 || Texts.size() != 1) {
        ADD_FAILURE() << "a mark, a box and a text expected";
        return {};
    }
    EXPECT_EQ(Rects[0].ArgRect(), (TRect{APoint.X - 2, APoint.Y - 2, APoint.X + 3, APoint.Y + 3}));
    return {Rects[1].ArgRect(), TPoint{Texts[0].Args[0], Texts[0].Args[1]}};
}

} // namespace

TEST(DataDisplayToolTips, HitLabelFlipsToStayInTheViewAHandlerMayReplaceItAndItMayHide)
{
    THitDisplay D;
    TPlotView View(&D);
    View.SetDrawRect(TRect{0, 0, 200, 100});
    D.DataView = &View;
    TQVChannelMouseHitPoint Hit(&D);

    // Above right of the point; too far right it moves left; too high it drops below the
    // top, and cannot flip left of the view's edge.
    auto [Box, Text] = HitLabelBox(D, Hit, TPoint{50, 50});
    EXPECT_EQ(Box, (TRect{54, 37, 124, 52}));
    EXPECT_EQ(Text, (TPoint{56, 38}));
    std::tie(Box, Text) = HitLabelBox(D, Hit, TPoint{180, 50});
    EXPECT_EQ(Box.Left, 184 - 66 - 11);
    std::tie(Box, Text) = HitLabelBox(D, Hit, TPoint{50, 5});
    EXPECT_EQ(Box, (TRect{54, 5, 124, 20}));

    std::string Seen;
    D.SetOnDataToolTip([&](TQLPersistent*, TPoint, TQVRealPoint, std::string& AText) {
        Seen = AText;
        D.SetToolTipText("custom");
    });
    TQLRecordingCanvas Canvas;
    D.DrawHitTest(Canvas, TPoint{50, 50}, Hit);
    EXPECT_EQ(Seen, "1.00 : 2.00");
    ASSERT_EQ(Canvas.Of("TextOut").size(), 1u);
    EXPECT_EQ(Canvas.Of("TextOut")[0].Text, "custom");

    // A hidden label leaves only the mark.
    Hit.GetPointLabel()->SetVisible(false);
    TQLRecordingCanvas Plain;
    D.DrawHitTest(Plain, TPoint{50, 50}, Hit);
    EXPECT_EQ(Plain.Of("Rectangle").size(), 1u);
    EXPECT_TRUE(Plain.Of("TextOut").empty());
}
