// The scope's legend: its groups and their order, its width, scrolling by the buttons on a
// driven timer and by the wheel, a click on a line, and what it draws when lit and printed.
#include "elements/ElementTestSupport.h"

#include <algorithm>
#include <string>

using namespace qv;
using namespace qvtest;

namespace {
class Legend : public TElementFixture {
protected:
    Legend()
    {
        // Measuring outside a paint (hit tests, sizes) needs a surface.
        Scope.SetCanvasFactory([](TQLBitmap&) { return std::make_unique<TQLRecordingCanvas>(); });
        Scope.GetLegend()->SetVisible(true);
        Paint();
    }
    TQVScopeLegendView& L() { return *Scope.GetLegend(); }
    TRect Rect() { return L().GetDrawRect(); }
    // The texts drawn inside the legend, top to bottom.
    std::vector<TQLCanvasRecord> Texts()
    {
        std::vector<TQLCanvasRecord> Result;
        for (const TQLCanvasRecord& R : Canvas.Of("TextOut"))
            if (R.Args[0] >= Rect().Left && R.Args[0] < Rect().Right)
                Result.push_back(R);
        return Result;
    }
    static int32_t Width(const std::string& AText) { return int32_t(AText.size()) * TQLRecordingCanvas::CharWidth; }
    void AddCursors(int32_t ACount)
    {
        for (int32_t I = 0; I < ACount; ++I)
            AddCursor(ckVertical, 10.0 + I, 0.0);
        Paint();
    }
};
} // namespace

TEST_F(Legend, ListsTheGroupsInOrderAndTakesTheWidestLine)
{
    TQVScopeChannel* Second = Scope.GetChannels()->Add();
    TQVDisplayChannelLink* Fill = Scope.GetChannelLinks()->Add(Scope.GetChannels()->GetItem(0), Second);
    TQVCustomLegendGroup* Custom = L().GetCustomGroups()->Add()->GetGroup();
    Custom->GetCaption()->SetText("Sensors");
    Custom->GetCustomItems()->Add()->SetName("Pressure");
    Scope.GetZones()->Add();
    Scope.GetEllipses()->Add();
    TQVScopeCursor* A = AddCursor(ckVertical, 20.0, 0.0);
    TQVScopeCursor* B = AddCursor(ckVertical, 60.0, 0.0);
    TQVScopeCursorLink* Link = Scope.GetCursorLinks()->Add();
    Link->SetBeginCursor(A);
    Link->SetEndCursor(B);
    Paint();
    const std::vector<std::string> Expected = {"Channels",
                                               Scope.GetChannels()->GetItem(0)->GetDisplayName(),
                                               Second->GetDisplayName(),
                                               "Channel Links",
                                               Fill->GetDisplayName(),
                                               "Zones",
                                               Scope.GetZones()->GetItem(0)->GetDisplayName(),
                                               "Ellipses",
                                               Scope.GetEllipses()->GetItem(0)->GetDisplayName(),
                                               "Cursors",
                                               A->GetDisplayName(),
                                               B->GetDisplayName(),
                                               "Cursor Links",
                                               Link->GetDisplayName(),
                                               "Sensors",
                                               "Pressure"};
    std::vector<std::string> Drawn;
    int32_t Widest = 0;
    for (const TQLCanvasRecord& R : Texts()) {
        Drawn.push_back(R.Text);
        // Headings stand 4 pixels in and need 23 more; names 23 in and 30 more.
        Widest = std::max(Widest, Width(R.Text) + (R.Args[0] == Rect().Left + 4 ? 23 : 30));
    }
    EXPECT_EQ(Drawn, Expected);
    EXPECT_EQ(Rect().Width(), Widest);
    EXPECT_EQ(Rect().Right, 500);

    // A hidden heading leaves the first line where it is, and nothing else drawn.
    L().GetCursorLinks()->GetCaption()->SetVisible(false);
    Paint();
    EXPECT_EQ(Texts().size(), Expected.size() - 1);

    // With nothing to list the legend takes no room.
    L().GetCustomGroups()->Clear();
    Scope.GetChannelLinks()->Clear();
    Scope.GetCursorLinks()->Clear();
    Scope.GetCursors()->Clear();
    Scope.GetZones()->Clear();
    Scope.GetEllipses()->Clear();
    Scope.GetChannels()->Clear();
    Paint();
    EXPECT_EQ(L().GetDefaultSize().cx, 0);
    EXPECT_TRUE(Texts().empty());
}

TEST_F(Legend, ScrollsByHeldButtonsOnTheDrivenTimerAndByTheWheel)
{
    AddCursors(40);
    const TRect R = Rect();
    const TPoint Down{R.Right - 8, R.Bottom - 8}, Up{R.Right - 8, R.Top + 5};
    TQLTimer& Timer = L().GetRepeatTimer();
    enum TAction { aPress, aTick, aRelease, aWheelDown, aWheelUp };
    struct TStep {
        TAction Action;
        TPoint At;
        int32_t Scroll;
        bool Running;
        uint32_t Interval;
    };
    // One step at once, the next after 400 ms, then one every 50 ms; nothing above the top.
    const TStep Steps[] = {
        {aPress, Up, 0, false, Timer.GetInterval()},
        {aPress, Down, 10, true, 400},
        {aTick, Down, 20, true, 50},
        {aTick, Down, 30, true, 50},
        {aRelease, Down, 30, false, 50},
        {aTick, Down, 30, false, 50},
        {aPress, Up, 20, true, 400},
        {aTick, Up, 10, true, 50},
        {aTick, Up, 0, true, 50},
        {aTick, Up, 0, true, 50},
        {aRelease, Up, 0, false, 50},
        {aWheelUp, Up, 0, false, 50},
        {aWheelDown, Down, 10, false, 50},
        {aWheelUp, Up, 0, false, 50},
    };
    int32_t Index = 0;
    for (const TStep& S : Steps) {
        Move(S.At.X, S.At.Y);
        switch (S.Action) {
        case aPress: Scope.MouseDown(mbLeft, {}, float(S.At.X), float(S.At.Y)); break;
        case aTick: Timer.Fire(); break;
        case aRelease: Scope.MouseUp(mbLeft, {}, float(S.At.X), float(S.At.Y)); break;
        case aWheelDown: Scope.DoMouseWheelDown({}, S.At); break;
        case aWheelUp: Scope.DoMouseWheelUp({}, S.At); break;
        }
        EXPECT_EQ(L().GetScrollPos(), S.Scroll) << "step " << Index;
        EXPECT_EQ(Timer.GetEnabled(), S.Running) << "step " << Index;
        EXPECT_EQ(Timer.GetInterval(), S.Interval) << "step " << Index;
        ++Index;
    }

    // All of it fits: the down button does nothing, and the wheel neither.
    Scope.GetCursors()->Clear();
    Paint();
    Move(Down.X, Down.Y);
    Scope.MouseDown(mbLeft, {}, float(Down.X), float(Down.Y));
    Scope.DoMouseWheelDown({}, Down);
    EXPECT_EQ(L().GetScrollPos(), 0);
}

TEST_F(Legend, AClickFiresTheGroupHandlerElseOpensTheSetupOnTheItem)
{
    AddCursors(1);
    TQVDisplayChannelLink* Fill =
        Scope.GetChannelLinks()->Add(Scope.GetChannels()->GetItem(0), Scope.GetChannels()->Add());
    TQVCustomLegendGroup* Custom = L().GetCustomGroups()->Add()->GetGroup();
    Custom->GetCaption()->SetText("Sensors");
    Custom->GetCustomItems()->Add()->SetName("Pressure");
    Paint();
    TQLPersistent* Opened = nullptr;
    Scope.SetOnSetupDialog([&](TQLPersistent* AObject) {
        Opened = AObject;
        return true;
    });
    // A group's first line is the one below its heading. A custom group has no setup page.
    struct TCase {
        const char* Heading;
        TQVBasicLegendGroup* Group;
        bool Handle;
        TQLPersistent* Opens;
    };
    const TCase Cases[] = {{"Cursors", L().GetCursors(), false, Scope.GetCursors()->GetItem(0)},
                           {"Cursors", L().GetCursors(), true, nullptr},
                           {"Channel Links", L().GetChannelLinks(), false, Fill},
                           {"Sensors", Custom, false, nullptr}};
    for (const TCase& C : Cases) {
        const std::vector<TQLCanvasRecord> T = Texts();
        const auto Heading = std::find_if(T.begin(), T.end(), [&](const auto& R) { return R.Text == C.Heading; });
        ASSERT_NE(Heading, T.end());
        const TPoint At{Rect().Left + 30, (Heading + 1)->Args[1] + 5};
        Opened = nullptr;
        TQLPersistent* Sender = nullptr;
        int32_t ClickedIndex = -1;
        C.Group->SetOnItemClick([&](TQLPersistent* ASender, int32_t AIndex, bool& AHandled) {
            Sender = ASender;
            ClickedIndex = AIndex;
            AHandled = C.Handle;
        });
        Move(At.X, At.Y);
        EXPECT_EQ(C.Group->GetHighlightedItemIndex(), 0) << C.Heading;
        Scope.MouseDown(mbLeft, {}, float(At.X), float(At.Y));
        Scope.MouseUp(mbLeft, {}, float(At.X), float(At.Y));
        EXPECT_EQ(Sender, C.Group) << C.Heading;
        EXPECT_EQ(ClickedIndex, 0) << C.Heading;
        EXPECT_EQ(Opened, C.Opens) << C.Heading << C.Handle;
        Paint();
    }

    // Off every line nothing happens.
    Opened = nullptr;
    L().GetCursors()->SetOnItemClick({});
    Move(Rect().Left + 30, Rect().Bottom - 2);
    Scope.MouseDown(mbLeft, {}, float(Rect().Left + 30), float(Rect().Bottom - 2));
    EXPECT_EQ(Opened, nullptr);
}

TEST_F(Legend, ALitLineIsFramedOnScreenOnlyAndNamesTakeTheLegendFontColour)
{
    const TAlphaColor FontColor = 0xFF20E0E0;
    L().GetFont()->SetColor(FontColor);
    Scope.GetChannels()->GetItem(0)->SetColor(0xFFFF0000);
    Paint();
    const TQLCanvasRecord Name = Texts().at(1);
    Move(Rect().Left + 30, Name.Args[1] + 5);
    const TAlphaColor Fill = L().GetButtons()->GetMouseOverColor();
    auto Frames = [&] {
        const auto Fills = Canvas.Of("FillRect");
        return std::count_if(Fills.begin(), Fills.end(),
                             [&](const auto& R) { return R.BrushColor == Fill && R.Args[0] == Rect().Left + 5; });
    };
    struct TCase {
        bool Printing;
        long Frames;
    };
    for (const TCase& C : {TCase{false, 1}, TCase{true, 0}}) {
        Canvas.ClearRecords();
        TQLBitmap Bitmap(500, 400);
        Scope.PaintToCanvas(Bitmap, Canvas, C.Printing);
        EXPECT_EQ(Frames(), C.Frames) << C.Printing;
        const auto T = Texts();
        ASSERT_GE(T.size(), 2u);
        EXPECT_EQ(T[1].Font.Color, FontColor) << C.Printing;
    }
}

TEST_F(Legend, AMarkerGroupsSwatchIsItsSymbolCentredInTheBox)
{
    TQVScopeMarkerGroup* Group = Scope.GetMarkerGroups()->Add();
    Group->SetSize(9); // the swatch keeps its own size
    const int32_t X = 100, Y = 50;
    struct TCase {
        TQVDisplayMarkerShape Shape;
        bool Turned;
        const char* Op;
        std::vector<int32_t> Args;
    };
    const TCase Cases[] = {
        {msDot, false, "Ellipse", {X + 5, Y - 1, X + 8, Y + 2}},
        {msCircle, false, "EllipseRect", {X + 3, Y - 3, X + 10, Y + 4}},
        {msDiamond, false, "Polygon", {X + 6, Y - 3, X + 3, Y, X + 6, Y + 3, X + 9, Y}},
        {msTriangleUp, false, "Polygon", {X + 6, Y - 3, X + 3, Y + 3, X + 9, Y + 3}},
        {msTriangleRight, false, "Polygon", {X + 9, Y, X + 3, Y - 3, X + 3, Y + 3}},
        {msTriangleUp, true, "Polygon", {X + 3, Y, X + 9, Y - 3, X + 9, Y + 3}},
    };
    for (const TCase& C : Cases) {
        SCOPED_TRACE(testing::Message() << "shape " << int(C.Shape) << (C.Turned ? " turned" : ""));
        Scope.SetVertical(C.Turned);
        Group->SetShape(C.Shape);
        TQLRecordingCanvas Swatch;
        EXPECT_TRUE(Group->CustomLegendDraw(Swatch, X, Y));
        const auto Drawn = Swatch.Of(C.Op);
        ASSERT_EQ(Drawn.size(), 1u);
        EXPECT_EQ(Drawn[0].Args, C.Args);
        EXPECT_EQ(Drawn[0].PenColor, Group->GetPen()->GetColor());
    }
    // The legend's line of the group shows it.
    Scope.SetVertical(false);
    Paint();
    const auto Polygons = Canvas.Of("Polygon");
    EXPECT_TRUE(std::any_of(Polygons.begin(), Polygons.end(),
                            [&](const TQLCanvasRecord& R) { return Rect().Contains(R.ArgPoints().front()); }));
}
