// A scope's channels lit from the legend and under the mouse: what the legend shows, what
// the plot draws in the highlight colour, and that no highlight outlives its channel.
#include "qv/QVScope.h"
#include "qv/channels/QVScopeChannel.h"
#include "qv/channels/QVScopeDataView.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

using namespace qv;

namespace {

class ChannelHighlight : public ::testing::Test {
protected:
    ChannelHighlight()
    {
        Scope.SetBounds(0, 0, 400, 300);
        Scope.GetChannels()->Add();
        View = Scope.GetScopeDataView();
        Settings = Scope.GetHighlighting()->GetChannels();
    }
    TQVScopeChannel* Channel(int32_t AIndex) { return Scope.GetChannels()->GetItem(AIndex); }

    TQVScope Scope;
    TQVScopeDataView* View = nullptr;
    TQVChannelItemHighlighting* Settings = nullptr;
};

} // namespace

TEST_F(ChannelHighlight, LegendPointsAtOneChannelAtATime)
{
    Channel(0)->SetHighlighted(true);
    EXPECT_EQ(View->GetExtHighlightChannel(), Channel(0));
    EXPECT_TRUE(Channel(0)->GetHighlighted());
    EXPECT_TRUE(Channel(0)->GetDrawnHighlighted(false));
    EXPECT_FALSE(Channel(0)->GetDrawnHighlighted(true)); // never on paper
    EXPECT_FALSE(Channel(1)->GetHighlighted());

    Channel(1)->SetHighlighted(true);
    EXPECT_EQ(View->GetExtHighlightChannel(), Channel(1));
    EXPECT_FALSE(Channel(0)->GetHighlighted());
    // Pointing away clears the slot, whichever channel says so.
    Channel(0)->SetHighlighted(false);
    EXPECT_EQ(View->GetExtHighlightChannel(), nullptr);

    // Without HiglightFromLegend the legend lights nothing; without HiglightLegendButton the
    // plot draws the channel lit but its legend button stays dark.
    Settings->SetHiglightFromLegend(false);
    Channel(0)->SetHighlighted(true);
    EXPECT_EQ(View->GetExtHighlightChannel(), nullptr);
    Settings->SetHiglightFromLegend(true);
    Settings->SetHiglightLegendButton(false);
    Channel(0)->SetHighlighted(true);
    EXPECT_FALSE(Channel(0)->GetHighlighted());
    EXPECT_TRUE(Channel(0)->GetDrawnHighlighted(false));
}

TEST_F(ChannelHighlight, ChannelUnderTheMouseLightsItsButtonItsLineOnlyWhenAskedAndItsHitPoint)
{
    TQLRecordingCanvas Canvas;
    auto HitPointDrawn = [&](int32_t AIndex) {
        Canvas.ClearRecords();
        Channel(AIndex)->DrawHitPoint(Canvas);
        return !Canvas.GetRecords().empty();
    };
    EXPECT_FALSE(HitPointDrawn(1)); // nothing under the mouse
    TQVHighlightInfo& Info = View->GetHighlightInfo();
    Info.FHighlightedItem = Channel(1);
    EXPECT_TRUE(Channel(1)->GetHighlighted());
    EXPECT_FALSE(Channel(1)->GetDrawnHighlighted(false)); // channels do not light from the mouse
    Settings->SetHiglightFromMouse(true);
    EXPECT_TRUE(Channel(1)->GetDrawnHighlighted(false));
    EXPECT_FALSE(Channel(0)->GetDrawnHighlighted(false));
    View->SetHighlightedChannel(Channel(1), TPoint{120, 80});
    EXPECT_TRUE(HitPointDrawn(1));
    EXPECT_FALSE(HitPointDrawn(0));
    Scope.GetHighlighting()->GetMouseHitPoint()->SetEnabled(false);
    EXPECT_FALSE(HitPointDrawn(1));
    // Leaving the control forgets what was under the mouse and pointed at, not a drag.
    Channel(0)->SetHighlighted(true);
    Info.FMouseDownElement = Channel(0);
    Info.FDraggedMarkerPosition = TQVRealPoint{1.5, -2.0};
    View->MouseLeave();
    EXPECT_FALSE(Channel(1)->GetHighlighted() || Channel(0)->GetHighlighted());
    EXPECT_EQ(Info.FMouseDownElement, Channel(0));
    EXPECT_EQ(Info.FDraggedMarkerPosition, (TQVRealPoint{1.5, -2.0}));
}

TEST_F(ChannelHighlight, TheLitChannelIsDrawnUnderItsPlainLineInTheHighlightColour)
{
    for (int I = 0; I < 100; ++I)
        Channel(0)->GetData()->AddYPoint(I % 10);
    Scope.RefreshView();
    TQLBitmap Bitmap(400, 300);
    auto LitLines = [&] {
        TQLRecordingCanvas Canvas;
        Scope.PaintToCanvas(Bitmap, Canvas, false);
        size_t Count = 0;
        for (const TQLCanvasRecord& R : Canvas.Of({"LineTo", "Polygon"}))
            Count += R.PenColor == 0xFFE67FE7u ? 1 : 0;
        return Count;
    };
    EXPECT_EQ(LitLines(), 0u);
    Channel(0)->SetHighlighted(true);
    Scope.RefreshView();
    EXPECT_GT(LitLines(), 0u);
}

TEST_F(ChannelHighlight, NoHighlightOrDragOutlivesItsChannel)
{
    TQVScopeChannel* Doomed = Channel(1);
    Doomed->SetHighlighted(true);
    TQVHighlightInfo& Info = View->GetHighlightInfo();
    Info.FHighlightedItem = Doomed;
    Info.FMouseDownElement = Doomed;
    View->SetHighlightedChannel(Doomed, TPoint{5, 6});
    Scope.GetChannels()->Delete(1);
    EXPECT_TRUE(!View->GetExtHighlightChannel() && !Info.FHighlightedItem && !Info.FMouseDownElement &&
                !View->GetHighlightedChannel());
}
