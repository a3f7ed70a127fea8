// The scope as a whole: its channels, the hand-over of data on the refresh tick, Hold, the
// size limit, producers on other threads and its stored form.
#include "qv/QVScope.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <atomic>
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
    const auto Block = Ramp(100);
    Data(Scope).AddYData(Block.data(), 100);
    EXPECT_EQ(Data(Scope).GetSize(), 100);
    EXPECT_EQ(Data(Scope).GetDrawSize(), 0); // not before the tick
    Scope.RefreshView();
    EXPECT_EQ(Data(Scope).GetDrawSize(), 100);
    EXPECT_TRUE(Scope.GetChannels()->GetItem(0)->GetDataChanged());
    EXPECT_FALSE(Scope.GetChannels()->GetItem(0)->GetHasNewBuffer());
    Scope.GetChannels()->GetItem(0)->SetVisible(false);
    Data(Scope).AddYPoint(1.0);
    Scope.RefreshView();
    EXPECT_EQ(Data(Scope).GetDrawSize(), 101);
}

TEST(Scope, HoldFreezesTheDrawStageWhileDataKeepsArriving)
{
    TQVScope Scope;
    const auto Block = Ramp(10);
    Data(Scope).AddYData(Block.data(), 10);
    Scope.RefreshView();
    Scope.SetHold(true);
    Data(Scope).AddYData(Block.data(), 10);
    Data(Scope).AddYData(Block.data(), 10);
    EXPECT_FALSE(Scope.PopulateDrawBuffers());
    Scope.RefreshView();
    EXPECT_EQ(Data(Scope).GetSize(), 30);
    EXPECT_EQ(Data(Scope).GetDrawSize(), 10);
    EXPECT_TRUE(Scope.GetNeedsRecalc());
    // Releasing hold shows the newest data at once, without waiting for a tick.
    Scope.SetHold(false);
    EXPECT_EQ(Data(Scope).GetDrawSize(), 30);
}

TEST(Scope, LoweringTheSizeLimitKeepsTheNewestSamplesOfEveryChannel)
{
    TQVScope Scope;
    Scope.GetChannels()->Add();
    const auto Block = Ramp(50);
    Data(Scope, 0).AddYData(Block.data(), 50);
    Data(Scope, 1).AddYData(Block.data(), 8);
    Scope.SetSizeLimit(10);
    EXPECT_EQ(Data(Scope, 0).GetSize(), 10);
    EXPECT_EQ(Data(Scope, 1).GetSize(), 8);
    std::vector<double> Y(10);
    Data(Scope, 0).GetYData(Y.data());
    EXPECT_EQ(Y.front(), 40.0);
    EXPECT_EQ(Y.back(), 49.0);
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
