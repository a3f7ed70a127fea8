// Scopes hosted as elements of another display: where an element lands in its host's
// picture, that a hidden one draws nothing, that the host draws its elements first and in
// order, that changes reach the host, and that bad fractions and buffers are refused.
#include "qv/QVScope.h"
#include "qv/display/QVExternalScopeElement.h"
#include "qv/display/QVExternalWaterfallElement.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <stdexcept>
#include <vector>

using namespace qv;

namespace {

TQLCanvasFactory RecordingFactory()
{
    return [](TQLBitmap&) -> std::unique_ptr<TQLCanvas> { return std::make_unique<TQLRecordingCanvas>(); };
}

// A host scope that counts its repaint requests.
struct THost {
    TQVScope Scope;
    int Invalidations = 0;
    THost()
    {
        Scope.SetCanvasFactory(RecordingFactory());
        Scope.SetOnInvalidate([this] { ++Invalidations; });
    }
};

} // namespace

TEST(ExternalElement, DrawPlacesTheElementByFractionsOfTheHost)
{
    struct TCase {
        float HostW, HostH;
        double PosX, PosY, SizeX, SizeY;
        std::vector<int32_t> Expected; // x, y, bitmap width, bitmap height
    };
    const TCase Cases[] = {
        // The defaults: 0.6 by 0.3 of the host, half a radius below the middle.
        {400, 200, 0.0, 0.5, 0.6, 0.3, {80, 120, 241, 61}},
        // The whole host, moved half a radius right and up.
        {300, 100, 0.5, -0.5, 1.0, 1.0, {74, -26, 301, 101}},
        {301, 101, 0.0, 0.0, 0.5, 0.5, {75, 25, 152, 52}},
    };
    for (const TCase& C : Cases) {
        TQVExternalScopeElement Element;
        Element.SetCanvasFactory(RecordingFactory());
        if (C.PosX != 0.0 || C.PosY != 0.5) {
            Element.GetPosition()->SetX(C.PosX);
            Element.GetPosition()->SetY(C.PosY);
        }
        Element.GetSize()->SetX(C.SizeX);
        Element.GetSize()->SetY(C.SizeY);
        TQLRecordingCanvas Canvas;
        Element.Draw(Canvas, false, C.HostW / 2, C.HostH / 2, C.HostW, C.HostH, 1, 1);
        const auto Draws = Canvas.Of("DrawBitmap");
        ASSERT_EQ(Draws.size(), 1u) << C.HostW << " x " << C.HostH;
        EXPECT_EQ(Draws[0].Args, C.Expected) << C.HostW << " x " << C.HostH;
        // The canvas state is given back as it was found.
        EXPECT_EQ(Canvas.Count("SaveState"), Canvas.Count("RestoreState"));
    }
}

TEST(ExternalElement, TheHostDrawsVisibleElementsFirstInIndexOrder)
{
    THost Host;
    Host.Scope.SetBounds(0, 0, 400, 200);
    auto* First = Host.Scope.GetElements()->Add<TQVExternalScopeElement>();
    auto* Hidden = Host.Scope.GetElements()->Add<TQVExternalScopeElement>();
    auto* Last = Host.Scope.GetElements()->Add<TQVExternalScopeElement>();
    First->GetSize()->SetX(0.25);
    Last->GetSize()->SetX(0.5);
    Hidden->SetVisible(false);

    TQLBitmap Bitmap(400, 200);
    TQLRecordingCanvas Canvas;
    Host.Scope.PaintToCanvas(Bitmap, Canvas, false);
    // The elements' pictures, in index order with the hidden one left out: widths 0.25 and
    // 0.5 of 400, plus the edge column.
    const auto Draws = Canvas.Of("DrawBitmap");
    ASSERT_EQ(Draws.size(), 2u);
    EXPECT_EQ(Draws[0].Args[2], 101);
    EXPECT_EQ(Draws[1].Args[2], 201);
    // Nothing but the background comes before them.
    const auto& Records = Canvas.GetRecords();
    for (const TQLCanvasRecord& R : Records) {
        if (R.Op == "DrawBitmap")
            break;
        EXPECT_TRUE(R.Op == "FillRect" || R.Op == "SetClipRegion" || R.Op == "SaveState") << R.Op;
    }
    // Painting its elements does not make the host ask for another paint.
    Host.Invalidations = 0;
    TQLRecordingCanvas Again;
    Host.Scope.PaintToCanvas(Bitmap, Again, false);
    EXPECT_EQ(Host.Invalidations, 0);
}

// A waterfall hosts elements as the scope does, and is itself hosted by either: its picture
// lands right after the host's background.
TEST(ExternalElement, WaterfallsHostAndAreHosted)
{
    struct TCase {
        const char* Name;
        std::function<std::unique_ptr<TQVDataDisplay>()> MakeHost;
        std::function<void(TQVDisplayElements&)> AddElement;
    };
    const auto AddWaterfall = [](TQVDisplayElements& E) { E.Add<TQVExternalWaterfallElement>(); };
    const auto AddScope = [](TQVDisplayElements& E) { E.Add<TQVExternalScopeElement>(); };
    const TCase Cases[] = {
        {"a scope hosting a waterfall", [] { return std::make_unique<TQVScope>(); }, AddWaterfall},
        {"a waterfall hosting a scope", [] { return std::make_unique<TQVWaterfall>(); }, AddScope},
        {"a waterfall hosting a waterfall", [] { return std::make_unique<TQVWaterfall>(); }, AddWaterfall},
    };
    for (const TCase& C : Cases) {
        std::unique_ptr<TQVDataDisplay> Host = C.MakeHost();
        Host->SetCanvasFactory(RecordingFactory());
        Host->SetBounds(0, 0, 400, 200);
        C.AddElement(*Host->GetElements());
        TQLBitmap Bitmap(400, 200);
        TQLRecordingCanvas Canvas;
        Host->PaintToCanvas(Bitmap, Canvas, false);
        const auto& Records = Canvas.GetRecords();
        size_t Fills = 0;
        bool Drawn = false;
        for (const TQLCanvasRecord& R : Records) {
            if (R.Op == "DrawBitmap") {
                Drawn = true;
                EXPECT_EQ(R.Args[2], 241) << C.Name; // 0.6 of the host, plus the edge column
                break;
            }
            EXPECT_TRUE(R.Op == "FillRect" || R.Op == "SetClipRegion" || R.Op == "SaveState" || R.Op == "SetPenStyle")
                << C.Name << ": " << R.Op;
            Fills += R.Op == "FillRect";
        }
        EXPECT_TRUE(Drawn) << C.Name;
        EXPECT_EQ(Fills, 1u) << C.Name;
    }
}

TEST(ExternalElement, AHiddenElementDrawsAndRendersNothing)
{
    TQVExternalScopeMatrixLayer Element;
    Element.SetCanvasFactory(RecordingFactory());
    Element.SetVisible(false);
    TQLRecordingCanvas Canvas;
    Element.Draw(Canvas, false, 50, 50, 100, 100, 1, 1);
    EXPECT_TRUE(Canvas.GetRecords().empty());
    std::vector<uint32_t> Buffer(100 * 100, 0x12345678u);
    Element.Render(Buffer.data(), 100, 100);
    EXPECT_EQ(Buffer, std::vector<uint32_t>(100 * 100, 0x12345678u));
}

TEST(ExternalElement, ChangesOfAnElementReachItsHost)
{
    struct TCase {
        const char* What;
        void (*Change)(TQVExternalScopeElement&);
    };
    const TCase Cases[] = {
        {"colour", [](TQVExternalScopeElement& E) { E.SetColor(0xFF102030); }},
        {"visibility", [](TQVExternalScopeElement& E) { E.SetVisible(false); }},
        {"position", [](TQVExternalScopeElement& E) { E.GetPosition()->SetX(0.25); }},
        {"size", [](TQVExternalScopeElement& E) { E.GetSize()->SetY(0.9); }},
    };
    for (const TCase& C : Cases) {
        THost Host;
        auto* Element = Host.Scope.GetElements()->Add<TQVExternalScopeElement>();
        Host.Invalidations = 0;
        C.Change(*Element);
        EXPECT_GT(Host.Invalidations, 0) << C.What;
    }
    // An element without surfaces of its own paints with the host's.
    THost Host;
    auto* Element = Host.Scope.GetElements()->Add<TQVExternalScopeElement>();
    EXPECT_TRUE(Element->GetCanvasFactory());
}

TEST(ExternalElement, TheHostTickMovesAnElementsData)
{
    THost Host;
    auto* Element = Host.Scope.GetElements()->Add<TQVExternalScopeElement>();
    TQVChannelData& Data = *Element->GetChannels()->GetItem(0)->GetData();
    const double Samples[] = {1, 2, 3};
    Data.AddYData(Samples, 3);
    EXPECT_EQ(Data.GetDrawSize(), 0);
    Host.Scope.RefreshView();
    EXPECT_EQ(Data.GetDrawSize(), 3);
}

TEST(ExternalElement, BadFractionsAndBuffersAreRefusedAndChangeNothing)
{
    TQVExternalScopeMatrixLayer Element;
    const double NaN = std::numeric_limits<double>::quiet_NaN();
    struct TCase {
        const char* What;
        void (*Bad)(TQVExternalScopeMatrixLayer&, double);
        double Value;
        const char* InMessage;
    };
    const TCase Cases[] = {
        {"negative size", [](TQVExternalScopeMatrixLayer& E, double V) { E.GetSize()->SetX(V); }, -0.5, "-0.5"},
        {"infinite size", [](TQVExternalScopeMatrixLayer& E, double V) { E.GetSize()->SetY(V); },
         std::numeric_limits<double>::infinity(), "inf"},
        {"NaN position", [](TQVExternalScopeMatrixLayer& E, double V) { E.GetPosition()->SetY(V); }, NaN, "nan"},
    };
    for (const TCase& C : Cases) {
        try {
            C.Bad(Element, C.Value);
            ADD_FAILURE() << C.What << " accepted";
        } catch (const std::invalid_argument& E) {
            EXPECT_NE(std::string(E.what()).find(C.InMessage), std::string::npos) << E.what();
        }
        EXPECT_EQ(Element.GetSize()->GetX(), 0.6) << C.What;
        EXPECT_EQ(Element.GetSize()->GetY(), 0.6) << C.What;
        EXPECT_EQ(Element.GetPosition()->GetY(), 0.0) << C.What;
    }
    uint32_t Pixel = 0;
    EXPECT_THROW(Element.Render(&Pixel, 0x80000000u, 1), std::invalid_argument);
    EXPECT_THROW(Element.Render(nullptr, 10, 10), std::invalid_argument);
    TQVScope Host;
    EXPECT_THROW(Host.GetElements()->Add(nullptr), std::invalid_argument);
    try {
        Host.GetElements()->GetItem(3);
        ADD_FAILURE() << "index 3 accepted";
    } catch (const std::out_of_range& E) {
        EXPECT_NE(std::string(E.what()).find('3'), std::string::npos);
    }
}

// A host that asks for contours only gets the element's printed picture: its content
// without the tool bar.
TEST(ExternalElement, ContoursOnlyDrawsThePictureWithoutTheToolBar)
{
    // Keeps what the element painted on its own surface.
    struct TKeptCanvas : TQLRecordingCanvas {
        std::vector<TQLCanvasRecord>& Out;
        explicit TKeptCanvas(std::vector<TQLCanvasRecord>& AOut) : Out(AOut) {}
        ~TKeptCanvas() override { Out = GetRecords(); }
    };
    for (const bool Contours : {false, true}) {
        std::vector<TQLCanvasRecord> Inner; // outlives the element's surfaces
        TQVExternalScopeElement Element;
        Element.SetCanvasFactory(
            [&Inner](TQLBitmap&) -> std::unique_ptr<TQLCanvas> { return std::make_unique<TKeptCanvas>(Inner); });
        Element.GetToolBar()->SetAutoHide(false);
        TQLRecordingCanvas Host;
        Element.Draw(Host, Contours, 200, 100, 400, 200, 1, 1);
        EXPECT_EQ(Host.Count("DrawBitmap"), 1u) << Contours;
        const TRect Bar = Element.GetToolBar()->GetDrawRect();
        ASSERT_FALSE(Bar.IsEmpty());
        size_t Buttons = 0;
        for (const TQLCanvasRecord& R : Inner)
            Buttons += R.Op == "Rectangle" && R.Args[0] >= Bar.Left && R.Args[1] >= Bar.Top && R.Args[2] <= Bar.Right &&
                       R.Args[3] <= Bar.Bottom;
        EXPECT_EQ(Buttons > 0, !Contours) << Buttons << " buttons drawn, contours only " << Contours;
    }
}
