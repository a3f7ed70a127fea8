// The row store: rows kept and dropped, the running level range, hold, clear, replacement,
// bad rows, and producers on several threads.
#include "qv/waterfall/QVWaterfallBuffers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <thread>
#include <vector>

using namespace qv;

namespace {

struct TFakeHost : IQVWaterfallRowHost {
    int32_t Bound = 512;
    bool Hold = false;
    int32_t RangeChanges = 0;
    int32_t RowSize = 0;
    int32_t GetRowBound() const override { return Bound; }
    bool GetRowHold() const override { return Hold; }
    void RowRangeChanged() override { ++RangeChanges; }
    void RowSizeChanged(int32_t ASize) override { RowSize = ASize; }
};

struct TStore {
    TFakeHost Host;
    TQWCriticalSection Section;
    TQVWaterfallBuffers Buffers{Host, Section};

    // A row of ASize samples, every one AValue except the first, which is AFirst.
    void Add(double AFirst, double AValue = 0.0, int32_t ASize = 4)
    {
        std::vector<double> Row(static_cast<size_t>(ASize), AValue);
        Row[0] = AFirst;
        Buffers.AddBuffer(TQVRealBuffer(Row.data(), ASize));
    }
    // The first sample of every drawn row.
    std::vector<double> Firsts()
    {
        std::vector<double> Result;
        for (const auto& Row : Buffers.GetDrawData())
            Result.push_back(Row->GetItem(0));
        return Result;
    }
};

} // namespace

TEST(WaterfallBuffers, TheHistoryKeepsTheNewestSamplesRowsAndSharesTheirSamples)
{
    TStore S;
    auto First = std::make_shared<TQVRealBuffer>(4u);
    S.Buffers.AddBuffer(*First);
    for (int32_t I = 1; I <= 512; ++I)
        S.Add(I);
    S.Buffers.UpdateIntBuffers();
    ASSERT_EQ(S.Buffers.GetBuffersCount(), 512);
    EXPECT_EQ(S.Firsts().front(), 1.0); // the 513th row dropped the first
    EXPECT_EQ(S.Firsts().back(), 512.0);
    EXPECT_EQ(S.Buffers.GetExtremesCount(), 512);
    EXPECT_EQ(S.Host.RowSize, 4);

    TStore Shared;
    Shared.Buffers.AddBuffer(*First);
    Shared.Buffers.UpdateIntBuffers();
    EXPECT_EQ(Shared.Buffers.GetHoldBufferList().GetItem(0)->Read(), First->Read());
}

// The running range over the history: widened by every row, rescanned only when the row
// that leaves held the extreme, and the level view told each time.
TEST(WaterfallBuffers, RunningRangeFollowsTheRowsInTheHistory)
{
    struct TCase {
        const char* Name;
        std::vector<double> Maxima, Minima; // one row each, bound 3
        double Max, Min;
        int32_t Changes;
    };
    const TCase Cases[] = {
        {"first row sets the range silently", {5}, {0}, 5, 0, 0},
        {"a larger row widens", {5, 7}, {0, 0}, 7, 0, 1},
        {"the only maximum falls out", {9, 1, 2, 3}, {-1, -2, -3, -4}, 3, -4, 3 + 1},
        {"a shared maximum is found again", {9, 9, 2, 3}, {-1, -2, -3, -4}, 9, -4, 3 + 1},
        {"a smaller oldest row changes nothing", {1, 5, 2, 3}, {-1, -2, -3, -4}, 5, -4, 1 + 3},
        {"the minimum falls out", {1, 1, 1, 1}, {-9, -1, -2, -3}, 1, -3, 2},
    };
    for (const TCase& C : Cases) {
        TStore S;
        S.Host.Bound = 3;
        for (size_t I = 0; I < C.Maxima.size(); ++I) {
            S.Add(C.Maxima[I], C.Minima[I]);
            S.Buffers.UpdateIntBuffers();
        }
        EXPECT_EQ(S.Buffers.GetCurrentMax(), C.Max) << C.Name;
        EXPECT_EQ(S.Buffers.GetCurrentMin(), C.Min) << C.Name;
        EXPECT_EQ(S.Host.RangeChanges, C.Changes) << C.Name;
    }
}

TEST(WaterfallBuffers, NaNAndInfinitiesTakeNoPartInTheRange)
{
    TStore S;
    const double Row[] = {NAN, 2.0, INFINITY, -INFINITY, -1.0};
    S.Buffers.AddBuffer(TQVRealBuffer(Row, 5));
    const double AllNaN[] = {NAN, NAN, NAN, NAN, NAN};
    S.Buffers.AddBuffer(TQVRealBuffer(AllNaN, 5));
    S.Buffers.UpdateIntBuffers();
    EXPECT_EQ(S.Buffers.GetCurrentMin(), -1.0);
    EXPECT_EQ(S.Buffers.GetCurrentMax(), 2.0);
}

TEST(WaterfallBuffers, AHeldHistoryStaysWhileRowsWaitForTheRelease)
{
    TStore S;
    S.Add(-1);
    S.Buffers.UpdateIntBuffers();
    S.Host.Hold = true;
    for (int32_t I = 0; I < 600; ++I)
        S.Add(I);
    S.Buffers.UpdateIntBuffers();
    EXPECT_EQ(S.Firsts(), std::vector<double>{-1});
    EXPECT_EQ(S.Buffers.GetPendingCount(), 512); // the latest ones
    EXPECT_EQ(S.Buffers.GetIntData().size(), 513u);

    // A clear while held leaves the picture; on release only the rows after it remain.
    S.Buffers.Clear(true);
    EXPECT_EQ(S.Firsts(), std::vector<double>{-1});
    S.Add(42);
    S.Buffers.UpdateIntBuffers();
    S.Host.Hold = false;
    S.Buffers.PopulateDrawBuffers();
    EXPECT_EQ(S.Firsts(), std::vector<double>{42});
    EXPECT_EQ(S.Buffers.GetCurrentMax(), 42);
}

// SetBufferInt: a drawn row, a waiting row, or past them all.
TEST(WaterfallBuffers, ReplacingARowReachesDrawnAndWaitingRowsOnly)
{
    TStore S;
    S.Add(10, 0);
    S.Add(20, 5);
    S.Buffers.UpdateIntBuffers();
    const double Low[] = {1, 1, 1, 1};
    EXPECT_FALSE(S.Buffers.SetBufferInt(2, TQVRealBuffer(Low, 4)));
    EXPECT_EQ(S.Firsts(), (std::vector<double>{10, 20}));

    // Replacing the row that holds the maximum does not lower it; one that holds the
    // minimum rescans.
    EXPECT_TRUE(S.Buffers.SetBufferInt(0, TQVRealBuffer(Low, 4)));
    EXPECT_EQ(S.Firsts(), (std::vector<double>{1, 20}));
    EXPECT_EQ(S.Buffers.GetCurrentMin(), 1.0);
    EXPECT_EQ(S.Buffers.GetCurrentMax(), 20.0);
    EXPECT_EQ(S.Buffers.GetNewBuffersCount(), 2);

    S.Host.Hold = true;
    S.Add(30);
    S.Buffers.UpdateIntBuffers();
    const double Other[] = {7, 7, 7, 7};
    EXPECT_TRUE(S.Buffers.SetBufferInt(2, TQVRealBuffer(Other, 4))); // the waiting row
    EXPECT_TRUE(S.Buffers.SetBufferInt(1, TQVRealBuffer(Other, 4))); // kept until release
    EXPECT_EQ(S.Firsts(), (std::vector<double>{1, 20}));
    S.Host.Hold = false;
    S.Buffers.PopulateDrawBuffers();
    EXPECT_EQ(S.Firsts(), (std::vector<double>{1, 7, 7}));
}

TEST(WaterfallBuffers, BadRowsAreRefusedAndChangeNothing)
{
    TStore S;
    S.Add(1, 0, 4);
    S.Buffers.UpdateIntBuffers();
    struct TCase {
        int32_t Size;
        const char* Message;
    };
    for (const TCase& C : {TCase{0, "0 samples"}, TCase{3, "3 samples does not fit the waterfall's rows of 4"},
                           TCase{5, "5 samples does not fit the waterfall's rows of 4"}}) {
        try {
            S.Buffers.AddBuffer(TQVRealBuffer(static_cast<uint32_t>(C.Size)));
            ADD_FAILURE() << C.Size;
        } catch (const std::invalid_argument& E) {
            EXPECT_NE(std::string(E.what()).find(C.Message), std::string::npos) << E.what();
        }
        EXPECT_THROW(S.Buffers.SetBufferInt(0, TQVRealBuffer(static_cast<uint32_t>(C.Size))), std::invalid_argument);
    }
    S.Buffers.UpdateIntBuffers();
    EXPECT_EQ(S.Firsts(), std::vector<double>{1});
    // After a clear another length is welcome.
    S.Buffers.Clear(false);
    S.Add(2, 0, 8);
    S.Buffers.UpdateIntBuffers();
    EXPECT_EQ(S.Buffers.GetBufferSize(), 8);
}

// Four producers and a consumer at once: every row arrives, each producer's in its order.
TEST(WaterfallBuffers, RowsFromFourThreadsAllArrive)
{
    TStore S;
    S.Host.Bound = 100000;
    constexpr int32_t CRows = 2000;
    std::atomic<bool> Done{false};
    std::vector<std::thread> Producers;
    for (int32_t T = 0; T < 4; ++T)
        Producers.emplace_back([&S, T] {
            for (int32_t I = 0; I < CRows; ++I)
                S.Add(T * CRows + I);
        });
    std::thread Consumer([&] {
        while (!Done.load())
            S.Buffers.UpdateIntBuffers();
    });
    for (auto& P : Producers)
        P.join();
    Done = true;
    Consumer.join();
    S.Buffers.UpdateIntBuffers();
    const std::vector<double> Got = S.Firsts();
    ASSERT_EQ(Got.size(), 4u * CRows);
    std::vector<double> Last(4, -1);
    for (double V : Got) {
        const auto T = static_cast<size_t>(V) / CRows;
        EXPECT_GT(V, Last[T]);
        Last[T] = V;
    }
}
