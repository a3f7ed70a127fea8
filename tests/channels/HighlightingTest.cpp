// Highlighting: the settings with their defaults and stored form, the rules by which an
// element is taken by the mouse, lit from the legend and drawn lit, and the run-time record.
#include "qv/channels/QVHighlightInfo.h"
#include "qv/display/QVDataDisplay.h"
#include "qv/foundation/QLStoredForm.h"

#include <gtest/gtest.h>

#include <vector>

using namespace qv;

namespace {

class THighlightDisplay : public TQVDataDisplay {
public:
    bool PopulateDrawBuffers() override { return false; }
    void ClearRefreshFlag() { FRefreshImage = false; }
};

// A stand-in for an element that the highlight rules name.
class TItem : public TQLPersistent {
public:
    TItem() : TQLPersistent(nullptr, QLMakeLock()) {}
};

std::vector<TQVDisplayItemHighlighting*> ItemKinds(const TQVDataDisplayHighlighting& H)
{
    return {H.GetMarkers(), H.GetCursors(), H.GetLabels(), H.GetCursorLinks(), H.GetChannels(),
            H.GetChannelLinks(), H.GetZones(), H.GetEllipses()};
}

} // namespace

TEST(Highlighting, DefaultsOfEveryKindAndNothingStoredAtThem)
{
    THighlightDisplay Display;
    TQVDataDisplayHighlighting H(&Display);
    for (TQVDisplayItemHighlighting* Kind : ItemKinds(H)) {
        EXPECT_TRUE(Kind->GetHiglightLegendButton());
        EXPECT_TRUE(Kind->GetHiglightFromLegend());
        EXPECT_EQ(Kind->GetColor(), 0xFFE67FE7u);
        EXPECT_TRUE(Kind->GetMouseHighlighting());
    }
    // Channels and channel links do not light up from the mouse unless asked.
    EXPECT_TRUE(H.GetMarkers()->GetHiglightFromMouse());
    EXPECT_TRUE(H.GetZones()->GetHiglightFromMouse());
    EXPECT_FALSE(H.GetChannels()->GetHiglightFromMouse());
    EXPECT_FALSE(H.GetChannelLinks()->GetHiglightFromMouse());
    EXPECT_TRUE(H.GetMouseHitPoint()->GetEnabled());
    EXPECT_EQ(H.GetMouseHitPoint()->GetColor(), 0xFFFF0000u);
    EXPECT_TRUE(H.GetMouseHitPoint()->GetUseChannelColor());

    const TQLStoredNode Stored = QLSaveObject(H);
    EXPECT_TRUE(Stored.Members.empty()) << Stored.Members.front().first;
}

TEST(Highlighting, ChangedSettingsRoundTripAndEachKindKeepsItsOwnDefault)
{
    THighlightDisplay Display;
    TQVDataDisplayHighlighting H(&Display);
    H.GetChannels()->SetHiglightFromMouse(true);
    H.GetMarkers()->SetHiglightFromMouse(false);
    H.GetCursors()->SetHiglightLegendButton(false);
    H.GetEllipses()->SetColor(0x80102030);
    H.GetCursorLinks()->SetHiglightFromLegend(false);
    H.GetMouseHitPoint()->SetUseChannelColor(false);
    H.GetMouseHitPoint()->GetPointLabel()->SetText("%X");

    const TQLStoredNode Stored = QLSaveObject(H);
    // A channel kind's true and a marker kind's false are both departures from defaults.
    ASSERT_NE(Stored.Find("Channels"), nullptr);
    EXPECT_NE(Stored.Find("Channels")->Find("HiglightFromMouse"), nullptr);
    ASSERT_NE(Stored.Find("Markers"), nullptr);
    EXPECT_NE(Stored.Find("Markers")->Find("HiglightFromMouse"), nullptr);
    EXPECT_EQ(Stored.Find("Zones"), nullptr);

    TQVDataDisplayHighlighting Copy(&Display);
    QLLoadObject(Copy, Stored);
    EXPECT_TRUE(Copy.GetChannels()->GetHiglightFromMouse());
    EXPECT_FALSE(Copy.GetMarkers()->GetHiglightFromMouse());
    EXPECT_FALSE(Copy.GetCursors()->GetHiglightLegendButton());
    EXPECT_EQ(Copy.GetEllipses()->GetColor(), 0x80102030u);
    EXPECT_FALSE(Copy.GetCursorLinks()->GetHiglightFromLegend());
    EXPECT_FALSE(Copy.GetMouseHitPoint()->GetUseChannelColor());
    EXPECT_EQ(Copy.GetMouseHitPoint()->GetPointLabel()->GetText(), "%X");
    EXPECT_FALSE(Copy.GetChannelLinks()->GetHiglightFromMouse());

    // The setters copy into the objects already there.
    TQVDataDisplayHighlighting Third(&Display);
    TQVChannelItemHighlighting* Channels = Third.GetChannels();
    Third.SetChannels(H.GetChannels());
    Third.SetEllipses(H.GetEllipses());
    EXPECT_EQ(Third.GetChannels(), Channels);
    EXPECT_TRUE(Channels->GetHiglightFromMouse());
    EXPECT_EQ(Third.GetEllipses()->GetColor(), 0x80102030u);
}

TEST(Highlighting, ChangesRepaintTheDisplay)
{
    THighlightDisplay Display;
    TQVDataDisplayHighlighting H(&Display);
    Display.ClearRefreshFlag();
    H.GetZones()->SetColor(0xFFE67FE7); // unchanged: nothing happens
    EXPECT_FALSE(Display.GetRefreshImage());
    H.GetZones()->SetColor(0xFF00FF00);
    EXPECT_TRUE(Display.GetRefreshImage());
    Display.ClearRefreshFlag();
    H.GetMouseHitPoint()->GetPointLabel()->SetVisible(false);
    EXPECT_TRUE(Display.GetRefreshImage());
}

TEST(Highlighting, MouseTakesAnItemThatLightsItselfOrItsLegendButton)
{
    THighlightDisplay Display;
    TQVDisplayItemHighlighting Kind(&Display);
    Kind.SetHiglightLegendButton(false);
    Kind.SetHiglightFromMouse(false);
    EXPECT_FALSE(Kind.GetMouseHighlighting());
    Kind.SetHiglightLegendButton(true);
    EXPECT_TRUE(Kind.GetMouseHighlighting());

    // Taken for its legend button only: the legend lights it, the plot does not.
    TItem Item;
    EXPECT_TRUE(QVGetItemHighlighted<TItem>(&Item, &Item, nullptr, Kind));
    EXPECT_FALSE(QVIsItemDrawnHighlighted<TItem>(&Item, &Item, nullptr, Kind, false));
    Kind.SetHiglightFromMouse(true);
    EXPECT_TRUE(QVIsItemDrawnHighlighted<TItem>(&Item, &Item, nullptr, Kind, false));
    EXPECT_FALSE(QVIsItemDrawnHighlighted<TItem>(&Item, &Item, nullptr, Kind, true));
    TItem Other;
    EXPECT_FALSE(QVGetItemHighlighted<TItem>(&Item, &Other, nullptr, Kind));
    EXPECT_FALSE(QVIsItemDrawnHighlighted<TItem>(&Item, &Other, nullptr, Kind, false));
}

TEST(Highlighting, LegendPointsAtAnItemOnlyWhenItsKindAllows)
{
    THighlightDisplay Display;
    TQVChannelItemHighlighting Kind(&Display);
    TItem A;
    TItem B;
    TItem* Ext = nullptr;

    Kind.SetHiglightFromLegend(false);
    EXPECT_FALSE(QVSetItemHighlighted(Ext, &A, true, Kind));
    EXPECT_EQ(Ext, nullptr);

    Kind.SetHiglightFromLegend(true);
    EXPECT_TRUE(QVSetItemHighlighted(Ext, &A, true, Kind));
    EXPECT_EQ(Ext, &A);
    EXPECT_FALSE(QVSetItemHighlighted(Ext, &A, true, Kind)); // already there: no repaint
    EXPECT_TRUE(QVSetItemHighlighted(Ext, &B, true, Kind));
    EXPECT_EQ(Ext, &B);

    // Lit from the legend in the plot, and on the legend button only when that lights.
    EXPECT_TRUE(QVIsItemDrawnHighlighted<TItem>(&B, nullptr, Ext, Kind, false));
    EXPECT_FALSE(QVIsItemDrawnHighlighted<TItem>(&A, nullptr, Ext, Kind, false));
    EXPECT_TRUE(QVGetItemHighlighted<TItem>(&B, nullptr, Ext, Kind));
    Kind.SetHiglightLegendButton(false);
    EXPECT_FALSE(QVGetItemHighlighted<TItem>(&B, nullptr, Ext, Kind));

    // Pointing away clears the slot, whichever item asks; a clear slot stays quiet.
    EXPECT_TRUE(QVSetItemHighlighted(Ext, &A, false, Kind));
    EXPECT_EQ(Ext, nullptr);
    EXPECT_FALSE(QVSetItemHighlighted(Ext, &A, false, Kind));
}

TEST(Highlighting, MouseLeaveClearsWhatIsPointedAtButNotDrags)
{
    TItem Item;
    TQVHighlightInfo Info;
    auto* Cursor = reinterpret_cast<TQVDisplayCursor*>(&Item);
    auto* Link = reinterpret_cast<TQVDisplayCursorLink*>(&Item);
    auto* Marker = reinterpret_cast<TQVDisplayMarker*>(&Item);
    Info.FHighlightedItem = &Item;
    Info.FExtHighlightCursor = Cursor;
    Info.FExtHighlightCursorLink = Link;
    Info.FExtHighlightTextLabel = reinterpret_cast<TQVDisplayTextLabel*>(&Item);
    Info.FExtHighlightMarkerGroup = &Item;
    Info.FHighlightedMarker = reinterpret_cast<TQVBasicDisplayMarker*>(&Item);
    Info.FVMoveCursor = Info.FHMoveCursorLink = true;
    Info.FDraggedCursor = Cursor;
    Info.FDraggedLink = Link;
    Info.FDraggedMarker = Marker;
    Info.FDraggedMarkerPosition = TQVRealPoint{1.5, -2.0};

    Info.MouseLeave();
    EXPECT_EQ(Info.FHighlightedItem, nullptr);
    EXPECT_EQ(Info.FExtHighlightCursor, nullptr);
    EXPECT_EQ(Info.FExtHighlightCursorLink, nullptr);
    EXPECT_EQ(Info.FExtHighlightTextLabel, nullptr);
    EXPECT_EQ(Info.FExtHighlightMarkerGroup, nullptr);
    EXPECT_EQ(Info.FHighlightedMarker, nullptr);
    EXPECT_TRUE(Info.FVMoveCursor);
    EXPECT_TRUE(Info.FHMoveCursorLink);
    EXPECT_EQ(Info.FDraggedCursor, Cursor);
    EXPECT_EQ(Info.FDraggedLink, Link);
    EXPECT_EQ(Info.FDraggedMarker, Marker);
    EXPECT_EQ(Info.FDraggedMarkerPosition, (TQVRealPoint{1.5, -2.0}));
}
