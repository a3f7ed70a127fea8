// The scope as a whole: its channels, the hand-over of data on the refresh tick, producers
// on other threads, its stored form and zoom windows.
#include "qv/QVScope.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <functional>
#include <thread>
#include <vector>

using namespace qv;

namespace {

TQVChannelData& Data(TQVScope& AScope, int32_t AIndex = 0)
{
    return *AScope.GetChannels()->GetItem(AIndex)->GetData();
}

std::vector<double> Ramp(int32_t ACount, double AStart = 0)
{
    std::vector<double> V(static_cast<size_t>(ACount));
    for (int32_t I = 0; I < ACount; ++I)
        V[static_cast<size_t>(I)] = AStart + I;
    return V;
}

} // namespace

// A user includes one header: the data view comes as the scope's own type, tick texts and
// queues are at hand.
TEST(Scope, OneHeaderServesAUser)
{
    TQVScope Scope;
    TQVScopeDataView* View = Scope.GetDataView();
    EXPECT_EQ(View, Scope.GetScopeDataView());
    EXPECT_EQ(QVGetScaleTickText(2.5, 0.0, 10.0, true, 1, false), "2.5");
    TQVTypedDataQueue<double> Queue;
    Queue.Add(1.5);
    double Value = 0.0;
    EXPECT_TRUE(Queue.Pop(Value) && Value == 1.5);
}

TEST(Scope, TheTickHandsNewDataToTheDrawStageEvenOfAHiddenChannel)
{
    TQVScope Scope;
    Scope.GetChannels()->GetItem(0)->SetVisible(false);
    const auto Block = Ramp(100);
    Data(Scope).AddYData(Block.data(), 100);
    EXPECT_EQ(Data(Scope).GetDrawSize(), 0); // not before the tick
    Scope.RefreshView();
    EXPECT_EQ(Data(Scope).GetDrawSize(), 100);
    EXPECT_TRUE(Scope.GetChannels()->GetItem(0)->GetDataChanged());
}

TEST(Scope, ProducersOnManyThreadsLoseNoSampleWhileTheControlTicks)
{
    TQVScope Scope;
    for (int I = 1; I < 4; ++I)
        Scope.GetChannels()->Add();
    constexpr int32_t Blocks = 200, BlockSize = 256;
    std::atomic<int> Done{0};
    std::vector<std::thread> Producers;
    for (int32_t C = 0; C < 4; ++C)
        Producers.emplace_back([&, C] {
            const auto Block = Ramp(BlockSize);
            for (int32_t B = 0; B < Blocks; ++B) {
                if (C % 2 == 0)
                    Data(Scope, C).AddYData(Block.data(), BlockSize);
                else
                    for (double V : Block)
                        Data(Scope, C).AddYPoint(V);
            }
            ++Done;
        });
    // The control's thread ticks and paints while the producers write.
    TQLBitmap Bitmap(64, 48);
    TQLRecordingCanvas Canvas;
    while (Done.load() < 4) {
        Scope.RefreshView();
        Scope.PaintToCanvas(Bitmap, Canvas, false);
        Canvas.ClearRecords();
    }
    for (auto& T : Producers)
        T.join();
    Scope.RefreshView();
    for (int32_t C = 0; C < 4; ++C) {
        EXPECT_EQ(Data(Scope, C).GetSize(), Blocks * BlockSize) << "channel " << C;
        EXPECT_EQ(Data(Scope, C).GetDrawSize(), Blocks * BlockSize) << "channel " << C;
    }
}

TEST(Scope, SettingsRoundTripThroughTheStoredForm)
{
    TQVScope Scope;
    Scope.SetSizeLimit(5000);
    Scope.SetColor(0xFF101010);
    Scope.GetChannels()->Add()->SetWidth(3);
    const TQLStoredNode Stored = QLSaveObject(Scope);

    TQVScope Copy;
    QLLoadObject(Copy, Stored);
    EXPECT_EQ(Copy.GetSizeLimit(), 5000u);
    EXPECT_EQ(Copy.GetColor(), 0xFF101010u);
    ASSERT_EQ(Copy.GetChannels()->GetCount(), 2);
    EXPECT_EQ(Copy.GetChannels()->GetItem(1)->GetWidth(), 3);
    EXPECT_EQ(Copy.GetChannels()->GetItem(1)->GetColor(), 0xFF00FF00u);
}

// A load that fails changes nothing: the same channels, their samples and rates, the same
// settings. Cases: a bad name deep inside, a wrong type, and a value a setter refuses only
// once the load is under way.
TEST(Scope, ASettingsLoadIsAllOrNothing)
{
    const std::vector<std::pair<const char*, std::function<void(TQLStoredNode&)>>> Cases = {
        {"unknown property",
         [](TQLStoredNode& F) { F.Items.back().Add("NoSuchThing", TQLStoredNode::Of(TQLStoredNode::snBool)); }},
        {"wrong type",
         [](TQLStoredNode& F) { F.Items.back().Add("Width", TQLStoredNode::Of(TQLStoredNode::snString)); }},
        {"refused by a setter", [](TQLStoredNode& F) {
             TQLStoredNode Mode = TQLStoredNode::Of(TQLStoredNode::snInteger);
             Mode.Integer = 200; // fits the type, names no channel mode
             F.Items.back().Add("ChannelMode", Mode);
         }}};
    for (const auto& [Name, Spoil] : Cases) {
        TQVScope Scope;
        Scope.GetChannels()->Add()->SetWidth(2);
        const std::vector<double> Samples = Ramp(50);
        for (int32_t C = 0; C < 2; ++C) {
            Data(Scope, C).SetSampleRate(1000.0 * (C + 1));
            Data(Scope, C).AddYData(Samples.data(), 50);
        }
        Scope.RefreshView();
        const TQVScopeChannel* First = Scope.GetChannels()->GetItem(0);
        const TQLStoredNode Before = QLSaveObject(Scope);

        TQLStoredNode Form = Before;
        Form.Members.erase(std::remove_if(Form.Members.begin(), Form.Members.end(),
                                          [](const auto& M) { return M.first == "Channels"; }),
                           Form.Members.end());
        TQLStoredNode Channels = TQLStoredNode::Of(TQLStoredNode::snList);
        for (int32_t C = 0; C < 3; ++C) // one channel more, and a colour change on the first
            Channels.Items.push_back(TQLStoredNode::MakeObject());
        Channels.Items[0].Add("Width", [] {
            auto N = TQLStoredNode::Of(TQLStoredNode::snInteger);
            N.Integer = 5;
            return N;
        }());
        Spoil(Channels);
        Form.Add("Channels", Channels);
        EXPECT_THROW(QLLoadObject(Scope, Form), EQLPropertyError) << Name;

        EXPECT_EQ(QLSaveObject(Scope), Before) << Name;
        ASSERT_EQ(Scope.GetChannels()->GetCount(), 2) << Name;
        EXPECT_EQ(Scope.GetChannels()->GetItem(0), First) << Name;
        for (int32_t C = 0; C < 2; ++C) {
            EXPECT_EQ(Data(Scope, C).GetSize(), 50) << Name;
            EXPECT_EQ(Data(Scope, C).GetDrawSize(), 50) << Name;
            EXPECT_EQ(Data(Scope, C).GetSampleRate(), 1000.0 * (C + 1)) << Name;
        }
    }
}

// A form's settings become the display's, with what it omits at the defaults; an item that is
// there before and after stays the same object with its samples, so a producer holding it
// goes on writing into a live channel.
TEST(Scope, ALoadKeepsTheItemsItFindsAndOmittedChannelsComeBackAsOne)
{
    TQVScope Scope;
    Scope.GetChannels()->Add();
    Scope.GetChannels()->Add();
    const std::vector<double> Samples = Ramp(20);
    Data(Scope, 0).AddYData(Samples.data(), 20);
    TQVScopeChannel* First = Scope.GetChannels()->GetItem(0);

    QLLoadObject(Scope, TQLStoredNode::MakeObject()); // a valid form that names no channel
    ASSERT_EQ(Scope.GetChannels()->GetCount(), 1);
    EXPECT_EQ(Scope.GetChannels()->GetItem(0), First);
    EXPECT_EQ(Data(Scope, 0).GetSize(), 20);
    Data(Scope, 0).AddYData(Samples.data(), 20);
    EXPECT_EQ(Data(Scope, 0).GetSize(), 40);

    // A scope without channels says so in its form, and the form gives none back.
    Scope.GetChannels()->Clear();
    TQVScope Other;
    QLLoadObject(Other, QLSaveObject(Scope));
    EXPECT_EQ(Other.GetChannels()->GetCount(), 0);
}

// Zoom windows against a scope of 1000 samples (X 0 to 999): inside the data a window is
// shown as asked; beyond it, or of no width, the axis still shows a window of some width with
// its minimum below its maximum, and the window read back is the one shown.
TEST(Scope, ZoomWindowsOutsideTheDataOrOfNoWidthStayProper)
{
    struct TCase {
        const char* Name;
        double XMin, XMax, YMin, YMax;
        double ShownXMin, ShownXMax; // NaN: as asked
    };
    const double AsAsked = std::nan("");
    const TCase Cases[] = {{"inside", 100, 200, -0.5, 0.5, AsAsked, AsAsked},
                           {"beyond the end", 5000, 6000, -0.5, 0.5, 0, 999},
                           {"before the start", -600, -500, -0.5, 0.5, 0, 100},
                           {"across the end", 900, 1500, -0.5, 0.5, 399, 999},
                           {"no width", 300, 300, 0.5, 0.5, AsAsked, AsAsked}};
    for (const TCase& C : Cases) {
        TQVScope Scope;
        Scope.SetBounds(0, 0, 640, 400);
        const std::vector<double> Samples = Ramp(1000);
        Data(Scope).AddYData(Samples.data(), 1000);
        Scope.RefreshView();
        Scope.ZoomTo(C.XMin, C.XMax, C.YMin, C.YMax);
        TQLBitmap Bitmap(640, 400);
        TQLRecordingCanvas Canvas;
        Scope.PaintToCanvas(Bitmap, Canvas, false);
        for (TQVDisplayAxis* Axis :
             {static_cast<TQVDisplayAxis*>(Scope.GetXAxis()), static_cast<TQVDisplayAxis*>(Scope.GetYAxis())}) {
            const double Lo = Axis->GetScaleTick().GetZoomed().GetMin().GetValue();
            const double Hi = Axis->GetScaleTick().GetZoomed().GetMax().GetValue();
            EXPECT_LT(Lo, Hi) << C.Name;
            EXPECT_GE(Hi - Lo, 0.00001) << C.Name;
            const bool IsX = Axis == Scope.GetXAxis();
            EXPECT_DOUBLE_EQ(IsX ? Scope.GetXMinZoom() : Scope.GetYMinZoom(), Lo) << C.Name;
            EXPECT_DOUBLE_EQ(IsX ? Scope.GetXMaxZoom() : Scope.GetYMaxZoom(), Hi) << C.Name;
        }
        if (!std::isnan(C.ShownXMin)) {
            EXPECT_DOUBLE_EQ(Scope.GetXMinZoom(), C.ShownXMin) << C.Name;
            EXPECT_DOUBLE_EQ(Scope.GetXMaxZoom(), C.ShownXMax) << C.Name;
        } else {
            EXPECT_NEAR(Scope.GetXMinZoom(), C.XMin, 0.001) << C.Name;
        }
    }
    // On a time axis the printed units are not samples: a window in the middle of the record
    // stays where it was asked, and the end of the data is the end of the time scale.
    TQVScope Scope;
    Scope.SetBounds(0, 0, 640, 400);
    Scope.GetXAxis()->SetTicksMode(atmTime);
    Data(Scope).SetSampleRate(1000.0);
    const std::vector<double> Samples = Ramp(2000);
    Data(Scope).AddYData(Samples.data(), 2000);
    Scope.RefreshView();
    const double End = Scope.GetXAxis()->GetScaleFullTickMax();
    Scope.ZoomTo(0.4 * End, 0.6 * End, -0.5, 0.5);
    EXPECT_NEAR(Scope.GetXMinZoom(), 0.4 * End, 1e-9 * End);
    EXPECT_NEAR(Scope.GetXMaxZoom(), 0.6 * End, 1e-9 * End);
    Scope.ZoomTo(0.9 * End, 1.5 * End, -0.5, 0.5);
    EXPECT_DOUBLE_EQ(Scope.GetXMaxZoom(), End);
}
