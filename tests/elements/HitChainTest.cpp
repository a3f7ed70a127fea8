// The order in which the data view takes what lies under the mouse: cursors, links, markers,
// zones, ellipses, labels, then channels; a kind that does not highlight from the mouse only
// sets the mouse cursor and lets what lies behind it be taken. Markers drag through the view.
#include "elements/ElementTestSupport.h"

#include <functional>
#include <tuple>

using namespace qv;
using namespace qvtest;

namespace {
class HitChain : public TElementFixture {
protected:
    // Every element passes through the value (50, 50), where the channel's ramp passes too.
    void Build()
    {
        Cursor = AddCursor(ckVertical, 50.0, 0.0);
        Link = Scope.GetCursorLinks()->Add();
        Link->SetBeginCursor(AddCursor(ckVertical, 30.0, 0.0));
        Link->SetEndCursor(AddCursor(ckVertical, 70.0, 0.0));
        Link->GetMeasurementLine()->SetY(100.0 - (YPixel(50) - View.Top) * 200.0 / View.Height());
        Zone = Scope.GetZones()->Add();
        for (const auto& [X, Y] :
             {std::pair{50.0, 20.0}, std::pair{90.0, 20.0}, std::pair{90.0, 80.0}, std::pair{50.0, 80.0}})
            Zone->GetPoints()->Add(X, Y);
        Ellipse = Scope.GetEllipses()->Add();
        Ellipse->GetPoint1()->SetX(50.0);
        Ellipse->GetPoint1()->SetY(20.0);
        Ellipse->GetPoint2()->SetX(90.0);
        Ellipse->GetPoint2()->SetY(80.0);
        Group = Scope.GetMarkerGroups()->Add();
        Marker = Group->GetMarkers()->Add();
        Marker->GetPosition()->SetX(50.0);
        Marker->GetPosition()->SetY(50.0);
        Label = Scope.GetLabels()->Add();
        Label->GetPosition()->SetX(50.0);
        Label->GetPosition()->SetY(50.0);
        // Labels are measured on the display's canvas outside a paint.
        Scope.SetCanvasFactory([](TQLBitmap&) { return std::make_unique<TQLRecordingCanvas>(); });
        Scope.Paint();
        Paint();
    }
    TQLPersistent* Under()
    {
        Move(XPixel(50), YPixel(50) + 1);
        Move(XPixel(50), YPixel(50));
        return Info().FHighlightedItem;
    }

    TQVScopeCursor* Cursor = nullptr;
    TQVScopeCursorLink* Link = nullptr;
    TQVDisplayZone* Zone = nullptr;
    TQVDisplayEllipticZone* Ellipse = nullptr;
    TQVScopeMarkerGroup* Group = nullptr;
    TQVScopeMarker* Marker = nullptr;
    TQVScopeTextLabel* Label = nullptr;
};
} // namespace

TEST_F(HitChain, TheFirstKindInOrderTakesThePointAndTheNextWhenItGoes)
{
    Build();
    TQLPersistent* const Channel = Scope.GetChannels()->GetItem(0);
    // Each kind in turn, and how it goes away to let the next one take the point.
    const std::tuple<const char*, TQLPersistent*, std::function<void()>> Order[] = {
        {"cursor", Cursor, [&] { Cursor->SetVisible(false); }},
        {"link", Link, [&] { Link->GetMeasurementLine()->SetVisible(false); }},
        {"marker group", Group, [&] { Group->SetVisible(false); }},
        {"zone", Zone, [&] { Zone->SetVisible(false); }},
        {"ellipse", Ellipse, [&] { Ellipse->SetVisible(false); }},
        {"label", Label, [&] { Label->SetVisible(false); }},
        {"channel", Channel, [] {}}};
    for (const auto& [Name, Expected, Hide] : Order) {
        EXPECT_EQ(Under(), Expected) << Name;
        // The marker hit is lit with its group, and only then.
        EXPECT_EQ(Info().FHighlightedMarker, Expected == Group ? Marker : nullptr) << Name;
        Hide();
        Paint();
    }
    // The channel's value under the mouse.
    EXPECT_NEAR(Scope.GetScopeDataView()->GetValuePoint().X, 50.0, 0.5);
    EXPECT_NEAR(Scope.GetScopeDataView()->GetValuePoint().Y, 50.0, 0.5);
    // Outside the view nothing is under the mouse.
    Move(View.Right + 5, View.Top + 5);
    EXPECT_EQ(Info().FHighlightedItem, nullptr);
}

TEST_F(HitChain, AKindThatDoesNotLightFromTheMouseSetsTheCursorAndPassesThePointOn)
{
    Build();
    Cursor->SetVisible(false);
    Group->SetVisible(false);
    Label->SetVisible(false);
    TQVDisplayItemHighlighting& Links = *Scope.GetHighlighting()->GetCursorLinks();
    Links.SetHiglightFromMouse(false);
    Links.SetHiglightLegendButton(false);
    Link->SetMouseCursor(crSizeNS);
    Zone->SetMouseCursor(crCross);
    Paint();
    EXPECT_EQ(Under(), Zone);
    // The zone set its own cursor last; without the zone the link's cursor stays shown.
    EXPECT_EQ(Scope.GetShownCursor(), crCross);
    Zone->SetVisible(false);
    Ellipse->SetVisible(false);
    Paint();
    Scope.GetChannels()->GetItem(0)->SetVisible(false);
    Paint();
    EXPECT_EQ(Under(), nullptr);
    EXPECT_EQ(Scope.GetShownCursor(), Scope.GetCursor());
    Move(XPixel(50), YPixel(50));
}

// A marker that its group lets drag follows a press, move and release in the view: a free
// marker to the value under the mouse, a channel marker to the sample under it. The release
// reports the move.
TEST_F(HitChain, ADraggableMarkerMovesWithTheMouse)
{
    TQVScopeMarkerGroup* G = Scope.GetMarkerGroups()->Add();
    G->SetCanDrag(true);
    TQVScopeMarker* Free = G->GetMarkers()->Add();
    Free->GetPosition()->SetX(20.0);
    Free->GetPosition()->SetY(20.0);
    TQVScopeChannelMarker* OnChannel = Scope.GetChannels()->GetItem(0)->GetMarkers()->AddMarkerAt(0, 60);
    Paint();
    int32_t Reports = 0;
    Free->SetOnDragged([&](TQLPersistent*, TQVRealPoint&, TQVRealPoint&) { ++Reports; });
    OnChannel->SetOnDragged([&](TQLPersistent*, double&, double&) { ++Reports; });
    const std::tuple<const char*, std::function<TPoint()>, std::function<TQVRealPoint()>> Cases[] = {
        {"free", [&] { return Free->GetDrawPoint(); }, [&] { return Free->GetPosition()->GetPoint(); }},
        {"channel", [&] { return OnChannel->GetDrawPoint(); },
         [&] {
             return TQVRealPoint{OnChannel->GetPosition(), OnChannel->GetPosition()};
         }}};
    for (const auto& [Name, At, Where] : Cases) {
        Reports = 0;
        const TPoint From = At();
        ASSERT_GE(From.X, 0) << Name;
        Drag(From, TPoint{XPixel(40), YPixel(40)});
        EXPECT_NEAR(Where().X, 40.0, 1.0) << Name;
        EXPECT_NEAR(Where().Y, 40.0, 1.0) << Name;
        EXPECT_EQ(Reports, 1) << Name;
        EXPECT_EQ(Info().FDraggedMarker, nullptr) << Name;
        EXPECT_FALSE(OnChannel->GetIsDragging()) << Name;
        Paint();
    }
}
