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

TEST_F(Zones, TheChannelDrawsALinksSymbolsOverItsLineInsideTheZoneAlsoWhenDownsampled)
{
    TQVScopeChannel* Channel = Scope.GetChannels()->GetItem(0);
    Channel->GetPoints()->SetShape(psSquare); // the channel's own symbols: squares
    Channel->GetPoints()->SetSize(2);
    struct TCase {
        int32_t Samples; // 2001 on a view some 450 pixels wide: two points per pixel column
        bool Own, Linked;
        size_t Circles; // the link's symbols; 0 for "some"
    };
    const TCase Cases[] = {{101, false, false, 0},
                           {101, false, true, 59},
                           {101, true, true, 59},
                           {2001, false, true, 0},
                           {2001, true, true, 0}};
    for (const TCase& C : Cases) {
        SCOPED_TRACE(testing::Message() << C.Samples << " samples, own " << C.Own << ", linked " << C.Linked);
        // Y climbs 0..100 over the record; the zone holds the samples from 20.5% to 79.5%.
        std::vector<double> Y(size_t(C.Samples));
        for (size_t i = 0; i < Y.size(); ++i)
            Y[i] = 100.0 * double(i) / double(C.Samples - 1);
        Channel->GetData()->SetYData(Y.data(), uint32_t(Y.size()));
        Scope.RefreshView();
        const double Lo = 0.205 * (C.Samples - 1), Hi = 0.795 * (C.Samples - 1);
        TQVDisplayZone* Z = Square(Lo, -1, Hi, 101);
        TQVDisplayZoneChannelLink* Link = Z->GetChannels()->Add();
        Link->GetHighlighting()->SetEnabled(false);
        Link->GetPoints()->SetSize(2);
        Link->SetChannel(Channel);
        Link->GetPoints()->SetVisible(C.Linked); // the channel lists the link from now on
        Channel->GetPoints()->SetVisible(C.Own);
        Paint();

        const auto& Records = Canvas.GetRecords();
        size_t LastLine = 0;
        for (size_t i = 0; i < Records.size(); ++i)
            if (Records[i].Op == "LineTo" && Records[i].PenColor == Channel->GetColor())
                LastLine = i;
        size_t Circles = 0, Squares = 0;
        for (size_t i = 0; i < Records.size(); ++i) {
            const bool Circle = Records[i].Op == "EllipseRect", Sq = Records[i].Op == "RectangleRect";
            if (!Circle && !Sq)
                continue;
            const TRect R = Records[i].ArgRect();
            if (R.Width() != 5 || R.Height() != 5)
                continue;
            const int32_t X = (R.Left + R.Right - 1) / 2;
            EXPECT_GT(i, LastLine) << "a symbol under the channel's line";
            EXPECT_EQ(Records[i].PenColor, Channel->GetColor());
            // Inside the zone the link's circles, outside the channel's squares (a pixel
            // column that the zone's edge cuts may go either way).
            if (Circle)
                EXPECT_TRUE(X >= XPixel(Lo) - 1 && X <= XPixel(Hi) + 1) << "circle at " << X;
            else
                EXPECT_TRUE(X <= XPixel(Lo) + 1 || X >= XPixel(Hi) - 1) << "square at " << X;
            ++(Circle ? Circles : Squares);
        }
        if (C.Circles) {
            EXPECT_EQ(Circles, C.Circles);
        }
        EXPECT_EQ(Circles > 0, C.Linked);
        EXPECT_EQ(Squares > 0, C.Own);
        Scope.GetZones()->Clear();
    }
    // A link that goes leaves the channel's list: the next frame draws the channel's own.
    EXPECT_TRUE(Channel->GetZoneLinks().empty());
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
