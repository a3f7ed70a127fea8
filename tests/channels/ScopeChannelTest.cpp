// The hand-over from the data stage to the draw stage: frozen until the next refresh, Hold,
// snapshots, several producers against the refresh tick, and the channel's settings.
#include "ChannelTestSupport.h"

#include "qv/foundation/QLClassInfo.h"
#include "qv/foundation/QVArrayOps.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <thread>

using namespace qv;
using namespace qvtest;

namespace {

using ScopeChannel = TChannelFixture;
using V = std::vector<double>;

V Of(const IQVRealBuffer& ABuffer)
{
    return V(ABuffer.Read(), ABuffer.Read() + ABuffer.GetSize());
}

TEST_F(ScopeChannel, DrawStageStaysFrozenUntilTheNextRefreshAndUnderHold)
{
    Scope.SetSizeLimit(8);
    Add(Seq(0, 8));
    EXPECT_TRUE(Channel->GetHasNewBuffer());
    Scope.RefreshView();
    EXPECT_FALSE(Channel->GetHasNewBuffer());
    EXPECT_TRUE(Channel->GetDrawIsRamp());
    Channel->ClearDataChanged();

    const auto DrawXBuffer = Channel->GetXDrawDataBuffer(); // what painting holds
    for (int i = 0; i < 21; ++i)                            // round the ring more than twice
        Data->AddYPoint(100 + i, i % 5 == 0);
    Add(Seq(200, 3));
    Data->AddXYData(Seq(0, 2).data(), Seq(0, 2).data(), 2);
    EXPECT_EQ(DrawY(), Seq(0, 8));
    EXPECT_EQ(Of(*DrawXBuffer), Seq(0, 8));
    EXPECT_FALSE(Channel->GetDataChanged());

    Scope.RefreshView();
    EXPECT_EQ(DrawX(), X());
    EXPECT_EQ(DrawY(), V({118, 119, 120, 200, 201, 202, 0, 1}));
    EXPECT_FALSE(Channel->GetDrawIsRamp());
    EXPECT_EQ(Ints(*Channel->GetDrawGapsBuffer()), Ints(*Channel->GetGapsBuffer()));

    // The next hand-over refills the draw buffer in place, unless someone holds it.
    const IQVRealBuffer* Drawn = Channel->GetYDrawDataBuffer().get();
    Data->AddYPoint(300);
    Scope.RefreshView();
    EXPECT_EQ(Channel->GetYDrawDataBuffer().get(), Drawn);
    const auto Held = Channel->GetYDrawDataBuffer();
    Data->AddYPoint(301);
    Scope.RefreshView();
    EXPECT_NE(Channel->GetYDrawDataBuffer(), Held);
    EXPECT_EQ(Of(*Held), V({119, 120, 200, 201, 202, 0, 1, 300}));
    EXPECT_EQ(DrawY(), V({120, 200, 201, 202, 0, 1, 300, 301}));

    double Min = 0, Max = 0;
    int32_t Size = 0;
    Channel->GetMinMaxSize(Min, Max, Size);
    const V NewX = X();
    EXPECT_EQ(V({Min, Max, double(Size)}),
              V({*std::min_element(NewX.begin(), NewX.end()), *std::max_element(NewX.begin(), NewX.end()), 8.0}));
    ExpectError([&] { Data->GetDrawSampleX(8); }, "index 8");

    // Hold keeps the draw stage while data arrives; releasing shows the newest data at once.
    Scope.SetHold(true);
    Add({4, 5});
    EXPECT_FALSE(Scope.PopulateDrawBuffers());
    Scope.RefreshView();
    EXPECT_EQ(DrawY(), V({120, 200, 201, 202, 0, 1, 300, 301}));
    Scope.SetHold(false);
    EXPECT_EQ(DrawY(), V({201, 202, 0, 1, 300, 301, 4, 5}));
    EXPECT_FALSE(Channel->GetHasNewBuffer());
}

TEST(ScopeChannelSnapshot, SnapshotsAreIndependentAndOutliveTheirScope)
{
    auto Owner = std::make_unique<TQVScope>();
    Owner->SetSizeLimit(4);
    TQVChannelData* D = Owner->GetChannels()->GetItem(0)->GetData();
    D->AddYData(Seq(1, 6).data(), 6);
    Owner->RefreshView();
    D->AddYPoint(7); // the ring now runs round the end of its block
    const auto Now = D->GetDataSnapshot();
    const auto Drawn = D->GetDrawDataSnapshot();
    D->AddYPoint(8);
    Now->GetYData()->SetItem(0, -1.0); // a buffer of its own: the snapshot keeps its value
    Owner.reset();
    EXPECT_EQ(Of(*Now->GetYData()), Seq(4, 4));
    EXPECT_EQ(Of(*Now->GetXData()), Seq(1, 4));
    EXPECT_EQ(Of(*Drawn->GetYData()), Seq(3, 4));
    EXPECT_EQ(Of(*Drawn->GetXData()), Seq(0, 4));
}

// Producer p writes the values p + 10 k, k = 0, 1, 2, ...: every sample tells whose it is and
// where it stands, so a lost, doubled or reordered sample shows in any stage.
void CheckStage(const V& AX, const V& AY, int AProducers, bool AFromStart)
{
    ASSERT_GE(AX.size(), AY.size());
    for (size_t i = 1; i < AX.size(); ++i)
        ASSERT_EQ(AX[i], AX[i - 1] + 1.0) << "X is one running ramp";
    if (AFromStart && !AX.empty()) {
        ASSERT_EQ(AX[0], 0.0);
    }
    std::vector<double> NextK(size_t(AProducers), -1.0);
    for (double Value : AY) {
        const auto P = size_t(std::fmod(Value, 10.0));
        const double K = (Value - double(P)) / 10.0;
        if (NextK[P] >= 0.0 || AFromStart) {
            ASSERT_EQ(K, std::max(NextK[P], 0.0)) << "producer " << P;
        }
        NextK[P] = K + 1.0;
    }
}

TEST_F(ScopeChannel, ProducersAgainstTheRefreshTickEndWithExactCounts)
{
    constexpr int kProducers = 4, kRounds = 250, kBlock = 16;
    constexpr int kTotal = kProducers * kRounds * (kBlock + 1);
    for (uint32_t Limit : {0u, 1000u}) {
        Data->Clear();
        Scope.SetSizeLimit(Limit);
        std::atomic<int> Running{kProducers};
        std::atomic<bool> Go{false};
        std::vector<std::thread> Threads;
        for (int p = 0; p < kProducers; ++p)
            Threads.emplace_back([&, p] {
                while (!Go)
                    std::this_thread::yield();
                double K = 0.0;
                std::vector<double> Block(kBlock);
                for (int r = 0; r < kRounds; ++r) {
                    for (double& Value : Block)
                        Value = p + 10.0 * K++;
                    Data->AddYData(Block.data(), kBlock, r % 10 == 0);
                    Data->AddYPoint(p + 10.0 * K++);
                    if (r % 50 == 0) {
                        const auto Snapshot = Data->GetDataSnapshot();
                        CheckStage(Of(*Snapshot->GetXData()), Of(*Snapshot->GetYData()), kProducers, Limit == 0);
                    }
                }
                --Running;
            });
        do { // the control's thread: tick and look at the draw stage and its summary
            Scope.RefreshView();
            const V Drawn = DrawY();
            CheckStage(DrawX(), Drawn, kProducers, Limit == 0);
            const auto N = int32_t(Drawn.size());
            for (const auto& [First, End] : {std::pair{0, N}, std::pair{N / 3, N - 70}, std::pair{65, 1500}}) {
                double Lo = 0, Hi = 0, ELo = 0, EHi = 0;
                const int32_t F = std::clamp(First, 0, N), E = std::clamp(End, F, N);
                ASSERT_EQ(QVArrayMinMax(Drawn.data() + F, size_t(E - F), ELo, EHi),
                          Channel->GetDrawYExtremes(First, End, false, Lo, Hi));
                ASSERT_EQ(ELo, Lo);
                ASSERT_EQ(EHi, Hi);
            }
            Go = true;
        } while (Running > 0);
        for (auto& T : Threads)
            T.join();
        Scope.RefreshView();
        const V Ys = Y();
        EXPECT_EQ(int(Ys.size()), Limit == 0 ? kTotal : int(Limit));
        EXPECT_EQ(DrawY(), Ys);
        CheckStage(X(), Ys, kProducers, Limit == 0);
        if (Limit == 0) {
            EXPECT_EQ(X(), Seq(0, kTotal));
        } else {
            EXPECT_EQ(X().back(), double(kTotal - 1)) << "the ramp counted every sample";
        }
    }
}

TEST_F(ScopeChannel, NewColourFollowsItsDefaultAndAssignCopiesSettingsAndBothStagesButNotTheRampFlag)
{
    Scope.SetSizeLimit(4);
    Add({1, 2, 3});
    Add({4}, true);
    Scope.RefreshView();
    Add({5});
    Channel->SetWidth(7);
    auto* Copy = Scope.GetChannels()->Add();
    EXPECT_EQ(Copy->GetColor(), 0xFF00FF00u) << "each new channel takes the least used colour";
    const TQLPropertyInfo* ColorProp = Copy->GetClassInfo().FindProperty("Color");
    ASSERT_NE(ColorProp, nullptr);
    EXPECT_FALSE(ColorProp->IsStored(*Copy));
    Copy->SetColor(0xFF123456);
    EXPECT_TRUE(ColorProp->IsStored(*Copy));
    Copy->SetColorDefault(0xFF0000FF);
    EXPECT_EQ(Copy->GetColor(), 0xFF123456u) << "a colour of the user's does not follow";
    Copy->GetData()->AddXYData(V({0}).data(), V({0}).data(), 1);
    Copy->Assign(Channel);

    TQVChannelData* C = Copy->GetData();
    const auto CopyY = [&] { return Read([&](double* P, int32_t N) { return C->GetYData(P, N); }); };
    EXPECT_EQ(CopyY(), V({2, 3, 4, 5}));
    EXPECT_EQ(Read([&](double* P, int32_t N) { return C->GetXData(P, N); }), V({1, 2, 3, 4}));
    EXPECT_EQ(Read([&](double* P, int32_t N) { return C->GetDrawYData(P, N); }), V({1, 2, 3, 4}));
    EXPECT_EQ(Ints(*Copy->GetGapsBuffer()), std::vector<int32_t>({2}));
    EXPECT_EQ(Ints(*Copy->GetDrawGapsBuffer()), std::vector<int32_t>({3}));
    EXPECT_EQ(Copy->GetWidth(), 7);
    EXPECT_EQ(Copy->GetColor(), Channel->GetColor());
    EXPECT_FALSE(Copy->GetIsRamp());

    C->AddYPoint(9); // the copies are separate
    Data->AddYPoint(8);
    EXPECT_EQ(Y(), V({3, 4, 5, 8}));
    EXPECT_EQ(CopyY(), V({3, 4, 5, 9}));
}

// A channel at its limit holds the data stage and one draw stage: never more than three
// stages' worth of X and Y, whatever state the ring is in at a hand-over. X, a ramp here,
// holds no samples until something reads it.
TEST(ScopeChannelMemory, PeakStaysWithinThreeStagesAtTheLimit)
{
    constexpr uint32_t kLimit = 20000;
    TQVScope Scope;
    Scope.SetSizeLimit(kLimit);
    TQVChannelData& D = *Scope.GetChannels()->GetItem(0)->GetData();
    const int64_t Base = TQVChannelBuffer::GetLiveBytes();
    TQVChannelBuffer::ResetPeakBytes();
    const V Block(999, 1.0);
    for (int Round = 0; Round < 200; ++Round) {
        D.AddYData(Block.data(), uint32_t(Block.size()));
        for (int i = 0; i < 37; ++i)
            D.AddYPoint(i);
        if (Round % 3 == 0)
            Scope.RefreshView();
    }
    const int64_t Peak = TQVChannelBuffer::GetPeakBytes() - Base;
    EXPECT_GE(Peak, 2 * 8 * int64_t(kLimit)) << "data and draw stage are both counted";
    EXPECT_LE(Peak, 3 * 16 * int64_t(kLimit));
}

} // namespace
