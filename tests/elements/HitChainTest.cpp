// The order in which the data view takes what lies under the mouse: cursors, links, zones,
// ellipses, then channels; a kind that does not highlight from the mouse only sets the mouse
// cursor and lets what lies behind it be taken.
#include "elements/ElementTestSupport.h"

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
};
} // namespace

TEST_F(HitChain, TheFirstKindInOrderTakesThePointAndTheNextWhenItGoes)
{
    Build();
    TQLPersistent* const Channel = Scope.GetChannels()->GetItem(0);
    const std::pair<const char*, TQLPersistent*> Order[] = {
        {"cursor", Cursor}, {"link", Link}, {"zone", Zone}, {"ellipse", Ellipse}, {"channel", Channel}};
    for (const auto& [Name, Expected] : Order) {
        EXPECT_EQ(Under(), Expected) << Name;
        if (Expected == Cursor)
            Cursor->SetVisible(false);
        else if (Expected == Link)
            Link->GetMeasurementLine()->SetVisible(false);
        else if (Expected == Zone)
            Zone->SetVisible(false);
        else if (Expected == Ellipse)
            Ellipse->SetVisible(false);
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
