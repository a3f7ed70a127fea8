// Markers on a scope: where each shape is hit, how groups draw their markers and labels,
// channel markers at interpolated samples, and the index rules of groups.
#include "qv/QVScope.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using namespace qv;

namespace {

struct TMarkerScope {
    TMarkerScope()
    {
        Scope.SetBounds(0, 0, 400, 300);
        Bitmap.SetSize(400, 300);
    }
    void Paint(bool APrinting = false)
    {
        Canvas.ClearRecords();
        Scope.PaintToCanvas(Bitmap, Canvas, APrinting);
    }
    TQVScopeMarkerGroups& Groups() { return *Scope.GetMarkerGroups(); }
    // A group of the shape, with one free marker at (AX, AY).
    TQVScopeMarker* AddMarker(TQVDisplayMarkerShape AShape, double AX, double AY)
    {
        TQVScopeMarkerGroup* Group = Groups().Add();
        Group->SetShape(AShape);
        TQVScopeMarker* Marker = Group->GetMarkers()->Add();
        Marker->GetPosition()->SetX(AX);
        Marker->GetPosition()->SetY(AY);
        return Marker;
    }
    // Ellipses drawn with their box centred on APoint.
    size_t EllipsesAt(const TPoint& APoint) const
    {
        size_t Count = 0;
        for (const TQLCanvasRecord& R : Canvas.Of({"Ellipse", "EllipseRect"})) {
            const TRect B = R.ArgRect();
            Count += (B.Left + B.Right - 1) / 2 == APoint.X && (B.Top + B.Bottom - 1) / 2 == APoint.Y;
        }
        return Count;
    }

    TQVScope Scope;
    TQLBitmap Bitmap;
    TQLRecordingCanvas Canvas;
};

} // namespace

// The hit box of each shape round the drawn point (100, 100): its half size is the group's
// size but never below 3, except the dot, plus and cross, which keep 3 at any size;
// triangles reach 2 * s away on their base's side. Right and bottom edges are inside.
TEST(Marker, HitBoxByShape)
{
    struct TCase {
        TQVDisplayMarkerShape Shape;
        uint32_t Size;
        TPoint Inside;
        TPoint Outside;
    };
    const TCase Cases[] = {
        {msSquare, 1, {103, 103}, {104, 100}},      // size 1 still tests with 3
        {msCircle, 6, {106, 94}, {107, 100}},       // size 6: +-6
        {msStar, 6, {94, 106}, {100, 107}},         //
        {msPlus, 10, {103, 97}, {104, 100}},        // fixed 3 whatever the size
        {msCross, 10, {97, 103}, {96, 100}},        //
        {msDot, 10, {100, 103}, {100, 104}},        //
        {msTriangleUp, 5, {100, 110}, {100, 99}},   // hangs below the point
        {msTriangleDown, 5, {100, 90}, {100, 101}}, // stands above it
        {msTriangleLeft, 5, {110, 100}, {99, 100}}, //
        {msTriangleRight, 5, {90, 100}, {101, 100}}, {msHorzLine, 8, {108, 103}, {100, 104}}, // long along X, 3 across
        {msVertLine, 8, {103, 108}, {104, 100}},
    };
    for (const TCase& C : Cases) {
        TMarkerScope S;
        TQVScopeMarker* Marker = S.AddMarker(C.Shape, 0, 0);
        Marker->GetGroup()->SetSize(C.Size);
        TQLRecordingCanvas Canvas;
        Marker->Draw(Canvas, TRect{0, 0, 300, 300}, 100, 100, 0, 0, true);
        SCOPED_TRACE(static_cast<int>(C.Shape));
        EXPECT_TRUE(Marker->HitTest(100, 100));
        EXPECT_TRUE(Marker->HitTest(C.Inside.X, C.Inside.Y));
        EXPECT_FALSE(Marker->HitTest(C.Outside.X, C.Outside.Y));
        // Taken out of the hit test until it is drawn again.
        Marker->ClearDrawData();
        EXPECT_FALSE(Marker->HitTest(100, 100));
    }
}

// Every group draws the free markers of all visible groups: with two groups of one marker
// each, each marker is drawn twice per group per paint, always at the same pixel. A hidden
// group's markers are not drawn, and no group draws nothing.
TEST(Marker, GroupsDrawEveryGroupsMarkers)
{
    TMarkerScope S;
    S.Paint();
    EXPECT_EQ(S.Canvas.Count("EllipseRect"), 0u);

    TQVScopeMarker* A = S.AddMarker(msCircle, 0, 0);
    TQVScopeMarker* B = S.AddMarker(msCircle, 0, 0.5);
    S.Paint();
    ASSERT_GE(A->GetDrawPoint().X, 0);
    EXPECT_NE(A->GetDrawPoint().Y, B->GetDrawPoint().Y);
    EXPECT_EQ(S.EllipsesAt(A->GetDrawPoint()), 4u);
    EXPECT_EQ(S.EllipsesAt(B->GetDrawPoint()), 4u);

    B->GetGroup()->SetVisible(false);
    S.Paint();
    EXPECT_EQ(S.EllipsesAt(A->GetDrawPoint()), 4u);
    EXPECT_EQ(S.EllipsesAt(B->GetDrawPoint()), 0u);
}

// A lit marker is drawn twice: first grown in the highlight colour with a pen 2 wider for
// the line-only shapes, then plain in the group's colours; a printed picture shows no lit
// pass. Visible crosshair lines run from the view's edges to the point.
TEST(Marker, HighlightPassAndCrosshairLines)
{
    TMarkerScope S;
    TQVScopeMarker* Marker = S.AddMarker(msPlus, 0, 0);
    TQVScopeMarkerGroup* Group = static_cast<TQVScopeMarkerGroup*>(Marker->GetGroup());
    Group->GetPen()->SetColor(0xFF00FF00);
    Group->GetCrosshairLines()->GetLeft()->SetVisible(true);
    S.Scope.GetHighlightInfo()->FHighlightedMarker = Marker;
    const TAlphaColor Lit = S.Scope.GetHighlighting()->GetMarkers()->GetColor();
    const TRect View{10, 20, 210, 120};

    for (bool Printing : {false, true}) {
        TQLRecordingCanvas Canvas;
        Marker->Draw(Canvas, View, 50, 60, 0, 0, Printing);
        std::vector<TQLCanvasRecord> Lines = Canvas.Of("LineTo");
        size_t LitLines = 0;
        for (const TQLCanvasRecord& R : Lines)
            if (R.PenColor == Lit) {
                ++LitLines;
                EXPECT_GE(R.PenWidth, 3);
            }
        // Lit: the crosshair and the two strokes of the plus; plain: the same again.
        EXPECT_EQ(LitLines, Printing ? 0u : 3u);
        EXPECT_EQ(Lines.size(), Printing ? 3u : 6u);
        EXPECT_EQ(Lines.back().PenColor, 0xFF00FF00u);
        // The crosshair line starts at the view's left edge at the marker's height.
        const auto Cross = std::find_if(Lines.begin(), Lines.end(),
                                        [](const TQLCanvasRecord& R) { return R.PenPos.X == 10 && R.PenPos.Y == 60; });
        EXPECT_NE(Cross, Lines.end());
    }
}

// The label stands by the point as its coordinate mode says, offset by CX and CY; text is
// 6 pixels a character and 13 high on the recording canvas.
TEST(Marker, LabelPositionByCoordinateMode)
{
    struct TCase {
        TQVCoordinateMode Mode;
        TPoint Expected;
    };
    // The text "ab" is 12 by 13; the point is (100, 100); CX 4, CY 2.
    const TCase Cases[] = {
        {cdmLeftAbove, {100 - 12 - 4, 100 - 13 - 2}},
        {cdmLeftBelow, {84, 102}},
        {cdmLeftCentre, {84, 100 - 6 + 2}},
        {cdmRightAbove, {104, 85}},
        {cdmRightBelow, {104, 102}},
        {cdmRightCentre, {104, 96}},
        {cdmCentreAbove, {100 - 6 + 4, 85}},
        {cdmCentreBelow, {98, 102}},
        {cdmCentre, {98, 96}},
    };
    for (const TCase& C : Cases) {
        TMarkerScope S;
        TQVScopeMarker* Marker = S.AddMarker(msDot, 0, 0);
        TQVMarkerGroupLabel* Label = Marker->GetGroup()->GetLabels();
        Label->SetVisible(true);
        Label->SetText("ab");
        Label->GetPosition()->SetCY(2);
        Label->GetPosition()->SetCoordinateMode(C.Mode);
        TQLRecordingCanvas Canvas;
        Marker->Draw(Canvas, TRect{0, 0, 300, 300}, 100, 100, 0, 0, true);
        const auto Texts = Canvas.Of("TextOut");
        SCOPED_TRACE(static_cast<int>(C.Mode));
        ASSERT_EQ(Texts.size(), 1u);
        EXPECT_EQ(Texts[0].Args, (std::vector<int32_t>{C.Expected.X, C.Expected.Y}));
    }
}

// Channel markers: the channel draws each at the interpolated pixel of its sample position,
// and one off screen leaves the hit test.
TEST(Marker, ChannelMarkerAtInterpolatedSample)
{
    TMarkerScope S;
    S.Groups().Add()->SetShape(msSquare);
    TQVScopeChannel* Channel = S.Scope.GetChannels()->GetItem(0);
    const std::vector<double> Samples{0, 10, 20, 30, 40, 50, 60, 70};
    Channel->GetData()->AddYData(Samples.data(), uint32_t(Samples.size()));
    TQVScopeChannelMarker* Marker = Channel->GetMarkers()->AddMarkerAt(0, 2);
    Marker->SetPosition(2.5);
    S.Scope.RefreshView();
    S.Paint();
    const int32_t* PX = Channel->GetScaledIntDrawBufferX()->Read();
    const int32_t* PY = Channel->GetScaledIntDrawBufferY()->Read();
    const int32_t Start = Channel->GetScreenStartIndex();
    const TPoint P = Marker->GetDrawPoint();
    EXPECT_NEAR(P.X, (PX[2 - Start] + PX[3 - Start]) / 2.0, 0.51);
    EXPECT_NEAR(P.Y, (PY[2 - Start] + PY[3 - Start]) / 2.0, 0.51);
    EXPECT_TRUE(Marker->HitTest(P.X, P.Y));

    Marker->SetPosition(100);
    S.Paint();
    EXPECT_FALSE(Marker->HitTest(P.X, P.Y));
}

// AddMarkerAt needs an existing group, and names a bad index in its error, adding nothing;
// SetGroupIndex keeps to the last group and ignores a negative index.
TEST(Marker, GroupIndexRules)
{
    TMarkerScope S;
    TQVScopeChannel* Channel = S.Scope.GetChannels()->GetItem(0);
    TQVScopeChannelMarkers* Markers = Channel->GetMarkers();
    for (int32_t Bad : {-1, 0}) {
        try {
            Markers->AddMarkerAt(Bad, 5);
            FAIL() << "no error for group " << Bad;
        } catch (const EListError& E) {
            EXPECT_EQ(std::string(E.what()), "Index out of range : " + std::to_string(Bad));
        }
    }
    EXPECT_EQ(Markers->GetCount(), 0);

    for (int I = 0; I < 3; ++I)
        S.Groups().Add();
    TQVScopeChannelMarker* Marker = Markers->AddMarkerAt(1, 5);
    EXPECT_EQ(Marker->GetPosition(), 5.0);
    EXPECT_EQ(Marker->GetChannelIndex(), 0);
    EXPECT_EQ(Marker->GetMarkerGroupIndex(), 1);
    EXPECT_EQ(S.Groups().GetItem(1)->GetMarkerCount(), 1);

    const std::pair<int32_t, int32_t> Moves[] = {{99, 2}, {-1, 2}, {0, 0}};
    for (auto [Index, Expected] : Moves) {
        Marker->SetGroupIndex(Index);
        EXPECT_EQ(Marker->GetMarkerGroupIndex(), Expected) << Index;
    }
    // The marker left the groups it moved away from.
    EXPECT_EQ(S.Groups().GetItem(1)->GetMarkerCount(), 0);
    EXPECT_EQ(S.Groups().GetItem(2)->GetMarkerCount(), 0);
    EXPECT_EQ(S.Groups().GetItem(0)->GetMarkerCount(), 1);
}

// Names come from the count right after insertion; a group's Clear frees its free markers
// and the channel markers that use it; deleting a group leaves its channel markers without
// a group, drawn nowhere.
TEST(Marker, NamesClearAndGroupRemoval)
{
    TMarkerScope S;
    EXPECT_EQ(S.Scope.GetLastMarerGroup()->GetName(), "MarkerGroup1");
    EXPECT_EQ(S.Groups().GetCount(), 1);
    TQVScopeMarkerGroup* Group = S.Groups().Add();
    EXPECT_EQ(Group->GetName(), "MarkerGroup2");
    EXPECT_EQ(S.Scope.GetLastMarerGroup(), Group);
    EXPECT_EQ(Group->GetMarkers()->Add()->GetName(), "Marker1");
    EXPECT_EQ(Group->GetMarkers()->Add()->GetName(), "Marker2");
    TQVScopeChannelMarkers* ChannelMarkers = S.Scope.GetChannels()->GetItem(0)->GetMarkers();
    ChannelMarkers->AddMarkerAt(1, 3);
    EXPECT_EQ(Group->GetMarkerCount(), 3);

    Group->Clear();
    EXPECT_EQ(Group->GetMarkerCount(), 0);
    EXPECT_EQ(Group->GetMarkers()->GetCount(), 0);
    EXPECT_EQ(ChannelMarkers->GetCount(), 0);

    TQVScopeChannelMarker* Orphan = ChannelMarkers->AddMarkerAt(1, 3);
    S.Groups().Delete(1);
    EXPECT_EQ(Orphan->GetGroup(), nullptr);
    S.Paint();
    EXPECT_FALSE(Orphan->HitTest(Orphan->GetDrawPoint().X, Orphan->GetDrawPoint().Y));
}

// A saved scope's groups, free markers, channel markers and labels come back in a fresh
// scope, each channel marker in its group by index.
TEST(Marker, StoredFormRoundTrip)
{
    TMarkerScope S;
    S.Groups().Add();
    TQVScopeMarker* Free = S.AddMarker(msDiamond, 3, 4);
    Free->GetGroup()->GetLabels()->SetText("%Y");
    Free->SetYAxisIndex(2); // no such axis yet: kept, and the main axis stands in
    // The axis indexes travel together, Y first, and only when either is not the main axis.
    const TQLStoredNode MarkerForm = QLSaveObject(*Free);
    EXPECT_EQ(MarkerForm.Find("XAxisIndex"), nullptr);
    EXPECT_EQ(MarkerForm.Find("YAxisIndex"), nullptr);
    ASSERT_NE(MarkerForm.Find("AxisIndex_"), nullptr);
    EXPECT_EQ(MarkerForm.Find("AxisIndex_")->String, "2 0");
    Free->SetYAxisIndex(0);
    EXPECT_EQ(QLSaveObject(*Free).Find("AxisIndex_"), nullptr);
    Free->SetYAxisIndex(2);
    S.Scope.GetChannels()->GetItem(0)->GetMarkers()->AddMarkerAt(1, 7);
    S.Scope.GetLabels()->Add()->SetName("note");
    const TQLStoredNode Form = QLSaveObject(S.Scope);

    TMarkerScope T;
    QLLoadObject(T.Scope, Form);
    ASSERT_EQ(T.Groups().GetCount(), 2);
    const TQVScopeMarkerGroup* Group = T.Groups().GetItem(1);
    EXPECT_EQ(Group->GetShape(), msDiamond);
    EXPECT_EQ(Group->GetLabels()->GetText(), "%Y");
    ASSERT_EQ(Group->GetMarkers()->GetCount(), 1);
    EXPECT_EQ(Group->GetMarkers()->GetItem(0)->GetPosition()->GetY(), 4.0);
    EXPECT_EQ(Group->GetMarkers()->GetItem(0)->GetYAxisIndex(), 2);
    EXPECT_EQ(Group->GetMarkers()->GetItem(0)->GetYAxis(), T.Scope.GetYAxis());
    const TQVScopeChannelMarkers* Markers = T.Scope.GetChannels()->GetItem(0)->GetMarkers();
    ASSERT_EQ(Markers->GetCount(), 1);
    EXPECT_EQ(Markers->GetItem(0)->GetPosition(), 7.0);
    EXPECT_EQ(Markers->GetItem(0)->GetMarkerGroupIndex(), 1);
    // Two markers use the group: the free one and the channel's.
    EXPECT_EQ(Group->GetMarkerCount(), 2);
    ASSERT_EQ(T.Scope.GetLabels()->GetCount(), 1);
    EXPECT_EQ(T.Scope.GetLabels()->GetItem(0)->GetName(), "note");
}

// The stored axis indexes read back: the Y index alone leaves X as it is; anything but one or
// two whole numbers from 0 is refused by name and changes neither index.
TEST(Marker, AxisIndexReading)
{
    struct TCase {
        const char* Text;
        bool Valid;
        int32_t Y, X;
    };
    const TCase Cases[] = {{"3", true, 3, 1},   {"4 5", true, 4, 5},  {"0,0", true, 0, 0},    {"", false, 2, 1},
                           {"-1", false, 2, 1}, {"1.5", false, 2, 1}, {"1 2 3", false, 2, 1}, {"y", false, 2, 1}};
    for (const TCase& C : Cases) {
        TMarkerScope S;
        TQVScopeMarker* Marker = S.AddMarker(msSquare, 0, 0);
        Marker->SetYAxisIndex(2);
        Marker->SetXAxisIndex(1);
        if (C.Valid) {
            Marker->ReadAxisIndex(C.Text);
        } else {
            try {
                Marker->ReadAxisIndex(C.Text);
                ADD_FAILURE() << "accepted \"" << C.Text << "\"";
            } catch (const std::invalid_argument& E) {
                EXPECT_NE(std::string(E.what()).find(std::string("\"") + C.Text + "\""), std::string::npos) << E.what();
            }
        }
        EXPECT_EQ(Marker->GetYAxisIndex(), C.Y) << C.Text;
        EXPECT_EQ(Marker->GetXAxisIndex(), C.X) << C.Text;
    }
}
