// Zones and ellipses: hit on the outline only, inside by value, drawn in their parts, and the
// channels drawn again inside them under a clip of the zone's shape.
#include "elements/ElementTestSupport.h"

#include <algorithm>

using namespace qv;
using namespace qvtest;

namespace {
class Zones : public TElementFixture {
protected:
    TQVDisplayZone* Square(double ALeft, double ABottom, double ARight, double ATop)
    {
        TQVDisplayZone* Z = Scope.GetZones()->Add();
        for (const auto& [X, Y] :
             {std::pair{ALeft, ABottom}, std::pair{ARight, ABottom}, std::pair{ARight, ATop}, std::pair{ALeft, ATop}})
            Z->GetPoints()->Add(X, Y);
        return Z;
    }
};
} // namespace

TEST_F(Zones, HitOnlyNearTheOutlineAndNeverWithOnePoint)
{
    TQVDisplayZone* Z = Square(20, 20, 80, 80);
    EXPECT_EQ(Z->GetName(), "Zone1");
    const int32_t Left = XPixel(20), Mid = YPixel(50);
    struct TCase {
        int32_t X, Y;
        bool Hit;
    };
    const TCase Cases[] = {{Left, Mid, true},
                           {Left + 2, Mid, true},
                           {Left - 3, Mid, false},
                           {XPixel(50), Mid, false},
                           {XPixel(80) + 1, YPixel(80), true}};
    for (const TCase& C : Cases) {
        int32_t Index = -1;
        EXPECT_EQ(Scope.GetZones()->HitTest(C.X, C.Y, Index), C.Hit) << C.X << "," << C.Y;
    }
    // Inside and outside by value, the even-odd way.
    EXPECT_TRUE(Z->PointInZone(50, 50));
    EXPECT_FALSE(Z->PointInZone(10, 50));
    // One point: drawn, never hit.
    TQVDisplayZone* One = Scope.GetZones()->Add();
    One->GetPoints()->Add(50, 50);
    int32_t Index = -1;
    EXPECT_FALSE(Scope.GetZones()->HitTest(XPixel(50), YPixel(50), Index));
    // Two points make a line, its closing edge running back over it.
    TQVDisplayZone* Two = Scope.GetZones()->Add();
    Two->GetPoints()->Add(30, 30);
    Two->GetPoints()->Add(30, 60);
    EXPECT_TRUE(Scope.GetZones()->HitTest(XPixel(30) + 1, YPixel(45), Index));
    EXPECT_EQ(Index, 2);
    EXPECT_FALSE(Two->PointInZone(30, 45));
}

TEST_F(Zones, AnEllipseDrawsFromItsBoxAsGivenAndIsHitOnItsSortedBox)
{
    TQVDisplayEllipticZone* E = Scope.GetEllipses()->Add();
    EXPECT_EQ(E->GetName(), "Ellipse1");
    E->GetPoint1()->SetX(80);
    E->GetPoint1()->SetY(20);
    E->GetPoint2()->SetX(20);
    E->GetPoint2()->SetY(80);
    Paint();
    const auto Ellipses = Canvas.Of("EllipseRect");
    ASSERT_FALSE(Ellipses.empty());
    EXPECT_EQ(Ellipses[0].ArgRect(), (TRect{XPixel(80), YPixel(20), XPixel(20), YPixel(80)}));
    int32_t Index = -1;
    const int32_t CY = (YPixel(20) + YPixel(80)) / 2;
    EXPECT_TRUE(Scope.GetEllipses()->HitTest(XPixel(20) + 1, CY, Index));
    EXPECT_FALSE(Scope.GetEllipses()->HitTest(XPixel(50), CY, Index)); // the middle
    EXPECT_TRUE(E->PointInZone(50, 50));
    EXPECT_FALSE(E->PointInZone(22, 22));
}

TEST_F(Zones, LinkedChannelsAreDrawnAgainUnderTheZonesClipWhileEnabled)
{
    TQVDisplayZone* Z = Square(20, 20, 80, 80);
    TQVDisplayZoneChannelLink* Link = Z->GetChannels()->Add();
    Link->SetChannel(Scope.GetChannels()->GetItem(0));
    Link->GetHighlighting()->SetColor(0xFF00FFFF);
    struct TCase {
        bool Enabled;
        size_t Clips;
    };
    for (const TCase& T : {TCase{true, 1}, TCase{false, 0}}) {
        Link->GetHighlighting()->SetEnabled(T.Enabled);
        Paint();
        const auto& Records = Canvas.GetRecords();
        EXPECT_EQ(Canvas.Count("IntersectClipPolygon"), T.Clips);
        const auto Clip =
            std::find_if(Records.begin(), Records.end(), [](const auto& R) { return R.Op == "IntersectClipPolygon"; });
        if (Clip == Records.end())
            continue;
        EXPECT_EQ(Clip->ArgPoints().front(), (TPoint{XPixel(20), YPixel(20)}));
        // The channel's line in the zone's colour follows, and the clip is put back after.
        const auto Zoned = std::find_if(Clip, Records.end(),
                                        [](const auto& R) { return R.Op == "LineTo" && R.PenColor == 0xFF00FFFFu; });
        ASSERT_NE(Zoned, Records.end());
        EXPECT_NE(std::find_if(Zoned, Records.end(), [](const auto& R) { return R.Op == "RestoreState"; }),
                  Records.end());
    }
    // The channel goes: the link lets go of it.
    Scope.GetChannels()->Delete(0);
    EXPECT_EQ(Link->GetChannel(), nullptr);
    Paint();
}

TEST_F(Zones, ALinksPointSymbolsMarkTheSamplesInsideOnly)
{
    TQVDisplayZone* Z = Square(20.5, 20.5, 79.5, 79.5);
    TQVDisplayZoneChannelLink* Link = Z->GetChannels()->Add();
    TQVScopeChannel* Channel = Scope.GetChannels()->GetItem(0);
    Link->SetChannel(Channel);
    Link->GetHighlighting()->SetEnabled(false);
    Link->GetPoints()->SetSize(2);
    struct TCase {
        bool Visible;
        size_t Symbols;
    };
    for (const TCase& C : {TCase{false, 0}, TCase{true, 59}}) {
        Link->GetPoints()->SetVisible(C.Visible);
        Paint();
        const auto Symbols = Canvas.Of("EllipseRect");
        ASSERT_EQ(Symbols.size(), C.Symbols);
        if (Symbols.empty())
            continue;
        // Samples 21..79 of the ramp, each in a box 2 pixels round its plotted point.
        const TPoint P{Channel->GetDownsampledIntDrawBufferX()->GetItem(21),
                       Channel->GetDownsampledIntDrawBufferY()->GetItem(21)};
        EXPECT_EQ(Symbols.front().ArgRect(), (TRect{P.X - 2, P.Y - 2, P.X + 3, P.Y + 3}));
        EXPECT_EQ(Symbols.front().PenColor, Channel->GetColor());
    }
}

TEST_F(Zones, ElementsAndTheirLinksRoundTripThroughTheStoredForm)
{
    TQVDisplayZone* Z = Square(20, 20, 80, 80);
    Z->GetChannels()->Add()->SetChannel(Scope.GetChannels()->GetItem(0));
    TQVDisplayEllipticZone* E = Scope.GetEllipses()->Add();
    E->GetPoint2()->SetX(40);
    TQVScopeCursor* A = AddCursor(ckBoth, 10, 20);
    TQVScopeCursor* B = AddCursor(ckVertical, 30, 0);
    A->GetChannels()->Add()->SetChannel(Scope.GetChannels()->GetItem(0));
    TQVScopeCursorLink* L = Scope.GetCursorLinks()->Add();
    L->SetBeginCursor(B);
    L->SetEndCursor(A);
    L->GetMeasurementLine()->SetY(-40);
    Scope.GetChannels()->Add();
    Scope.GetChannelLinks()->Add(Scope.GetChannels()->GetItem(1), Scope.GetChannels()->GetItem(0))->SetWidth(7);
    const TQLStoredNode Node = QLSaveObject(Scope);

    TQVScope Copy;
    QLLoadObject(Copy, Node);
    EXPECT_EQ(QLSaveObject(Copy), Node);
    ASSERT_EQ(Copy.GetCursorLinks()->GetCount(), 1);
    const TQVScopeCursorLink* CL = Copy.GetCursorLinks()->GetItem(0);
    EXPECT_EQ(CL->GetBeginCursor(), Copy.GetCursors()->GetItem(1));
    EXPECT_EQ(CL->GetEndCursor(), Copy.GetCursors()->GetItem(0));
    EXPECT_EQ(Copy.GetZones()->GetItem(0)->GetChannels()->GetItem(0)->GetChannel(), Copy.GetChannels()->GetItem(0));
    EXPECT_EQ(Copy.GetZones()->GetItem(0)->GetPoints()->GetCount(), 4);
    ASSERT_EQ(Copy.GetChannelLinks()->GetCount(), 1);
    EXPECT_EQ(Copy.GetChannelLinks()->GetItem(0)->GetFirstChannel(), Copy.GetChannels()->GetItem(1));
    EXPECT_EQ(Copy.GetChannelLinks()->GetItem(0)->GetSecondChannel(), Copy.GetChannels()->GetItem(0));
}
