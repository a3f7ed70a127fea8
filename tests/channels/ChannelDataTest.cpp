// Channel intake: SizeLimit arithmetic for blocks above, at and below the limit, the ramp
// that keeps counting past the limit, gap positions, the ramp flag, every element type,
// Clear, and errors that leave the channel as it was.
#include "ChannelTestSupport.h"

#include "qv/foundation/QLClassInfo.h"

#include <cmath>
#include <limits>

using namespace qv;
using namespace qvtest;

namespace {

using ChannelData = TChannelFixture;
using V = std::vector<double>;
using G = std::vector<int32_t>;

TEST_F(ChannelData, AddYDataBlocksAboveAtAndBelowTheLimitAndOfExactlyIt)
{
    Scope.SetSizeLimit(5);
    Add({1, 2, 3});
    EXPECT_EQ(Y(), V({1, 2, 3}));
    EXPECT_EQ(X(), V({0, 1, 2})) << "the first block starts the ramp";
    EXPECT_TRUE(Channel->GetIsRamp());

    Add(Seq(10, 8)); // more than the limit: the newest five of the block, nothing old
    EXPECT_EQ(Y(), Seq(13, 5));
    EXPECT_EQ(X(), Seq(0, 8)) << "below the limit X grows by the block, past the limit";

    Add({20, 21}); // below the limit: the newest three old samples stay
    EXPECT_EQ(Y(), V({15, 16, 17, 20, 21}));
    EXPECT_EQ(X(), Seq(2, 8)) << "at the limit X keeps its size, moves and keeps counting";
    EXPECT_EQ(Data->GetSize(), 5);

    // A block of exactly the limit while X is at the limit restarts the ramp at 0 ...
    Scope.SetSizeLimit(4);
    Add(Seq(30, 4));
    EXPECT_EQ(Y(), Seq(30, 4));
    EXPECT_EQ(X(), Seq(0, 4));
    // ... while X below the limit grows beyond it.
    auto* Other = Scope.GetChannels()->Add();
    Other->GetData()->AddYData(Seq(1, 2).data(), 2);
    Other->GetData()->AddYData(Seq(5, 4).data(), 4);
    std::vector<double> OtherX(8);
    OtherX.resize(size_t(Other->GetData()->GetXData(OtherX.data(), 8)));
    EXPECT_EQ(OtherX, Seq(0, 6));
}

// X, kept as a ramp without samples in the data stage, reaches the draw stage written out
// (painting reads the draw stage without a lock, so reading it must not write); the ramp the
// draw stage holds already is not written again.
TEST_F(ChannelData, TheDrawStageHoldsTheRampWrittenOut)
{
    Scope.SetSizeLimit(6);
    struct TStep {
        bool Set; // SetYData, else AddYData
        V Block, DrawX;
        bool Kept; // the draw stage's X samples stay where they were
    };
    const std::vector<TStep> Steps = {
        {true, Seq(1, 4), Seq(0, 4), false},
        {true, Seq(7, 4), Seq(0, 4), true},   // another record as long: the same ramp
        {false, Seq(1, 3), Seq(0, 7), false}, // X grows past the limit below it
        {false, Seq(1, 2), Seq(2, 7), false}, // at the limit the ramp moves on
        {true, Seq(1, 6), Seq(0, 6), false},
    };
    for (size_t i = 0; i < Steps.size(); ++i) {
        const TStep& S = Steps[i];
        // A view of the draw stage's X: rewritten samples would have to move away from it.
        const auto View = dynamic_cast<const TQVChannelBuffer&>(*Channel->GetXDrawDataBuffer()).Share();
        if (S.Set)
            Data->SetYData(S.Block.data(), uint32_t(S.Block.size()));
        else
            Data->AddYData(S.Block.data(), uint32_t(S.Block.size()));
        Scope.RefreshView();
        const auto* Drawn = dynamic_cast<const TQVChannelBuffer*>(Channel->GetXDrawDataBuffer().get());
        ASSERT_TRUE(Drawn) << i;
        EXPECT_FALSE(Drawn->GetIsRamp()) << i;
        EXPECT_EQ(DrawX(), S.DrawX) << i;
        EXPECT_EQ(View->GetSize() > 0 && Drawn->Read() == View->Read(), S.Kept) << i;
    }
}

TEST_F(ChannelData, PointsAtTheLimitDropTheOldestOnEachSide)
{
    Scope.SetSizeLimit(5);
    for (int i = 0; i < 7; ++i)
        Data->AddYPoint(10 + i);
    EXPECT_EQ(X(), V({2, 3, 4, 5, 6}));
    EXPECT_EQ(Y(), Seq(12, 5));
    EXPECT_FALSE(Channel->GetIsRamp()) << "points alone do not make a ramp";

    Data->AddXYPoint(-1, 99);
    EXPECT_EQ(X(), V({3, 4, 5, 6, -1}));
    EXPECT_EQ(Y(), V({13, 14, 15, 16, 99}));
    Scope.SetSizeLimit(1);
    Data->AddYPoint(7);
    EXPECT_EQ(X(), V({0})) << "a single X sample is 0";
}

TEST_F(ChannelData, GapsAreStoredAndMovedAsSamplesLeave)
{
    Add({1, 2, 3}, true);
    EXPECT_EQ(Gaps(), G{}) << "a gap at 0 is never stored";
    Add({4, 5}, true);
    Data->AddYPoint(6, true);
    EXPECT_EQ(Gaps(), G({3, 5}));

    Scope.SetSizeLimit(6);
    Add({7, 8, 9, 10}, true); // at the limit: four samples leave, the gaps move by one
    EXPECT_EQ(Y(), V({5, 6, 7, 8, 9, 10}));
    EXPECT_EQ(Gaps(), G({2, 4, 5}));
    Data->AddYPoint(11, true);
    EXPECT_EQ(Gaps(), G({1, 3, 4, 5}));
    Data->AddXYData(V({0, 0}).data(), V({12, 13}).data(), 2, true); // moves by the two dropped
    EXPECT_EQ(Gaps(), G({1, 2, 3, 4}));
    EXPECT_FALSE(Channel->GetIsRamp());

    Channel->AddGapAt(0);
    Channel->ShiftGaps(2);
    EXPECT_EQ(Gaps(), G({0, 1, 2})) << "an entry equal to the shift becomes 0 and stays";
    Scope.RefreshView();
    EXPECT_EQ(DrawGaps(), G({0, 1, 2}));
    ExpectError([&] { Channel->AddGapAt(3'000'000'000u); }, "3000000000");
}

TEST_F(ChannelData, AddXYDataWithoutLimitReplacesAndKeepsTheSeparatingGap)
{
    Data->AddXYData(V({1, 2, 3}).data(), V({10, 20, 30}).data(), 3);
    Data->AddXYData(V({4, 5}).data(), V({40, 50}).data(), 2, true);
    EXPECT_EQ(X(), V({4, 5}));
    EXPECT_EQ(Y(), V({40, 50}));
    EXPECT_EQ(Gaps(), G({3})) << "the gap sits at the old size although the old samples are gone";

    // The buffer forms take each side as it is: the sizes may differ.
    Data->AddXYData(QVCreateRealBuffer(V({7}).data(), 1), QVCreateRealBuffer(V({70, 80, 90}).data(), 3));
    EXPECT_EQ(X(), V({7}));
    EXPECT_EQ(Y(), V({70, 80, 90}));
}

TEST_F(ChannelData, AddXYDataAtTheLimitKeepsTheNewestAndPadsAShortSide)
{
    Scope.SetSizeLimit(6);
    Data->AddXYData(Seq(1, 4).data(), Seq(11, 4).data(), 4);
    Data->AddXYData(Seq(5, 4).data(), Seq(15, 4).data(), 4, true);
    EXPECT_EQ(X(), Seq(3, 6));
    EXPECT_EQ(Y(), Seq(13, 6));
    EXPECT_EQ(Gaps(), G({2})) << "moved by the two samples dropped";

    // X shorter than the samples to keep: the missing older X values read NaN.
    Data->SetXYData(QVCreateRealBuffer(V({1, 2}).data(), 2), QVCreateRealBuffer(Seq(10, 5).data(), 5));
    Data->AddXYData(V({3, 4}).data(), V({20, 21}).data(), 2);
    const V Xs = X();
    ASSERT_EQ(Xs.size(), 6u);
    EXPECT_TRUE(std::isnan(Xs[0]) && std::isnan(Xs[1]));
    EXPECT_EQ(V(Xs.begin() + 2, Xs.end()), V({1, 2, 3, 4}));
    EXPECT_EQ(Y(), V({11, 12, 13, 14, 20, 21}));

    // Buffer forms: each side trimmed by its own size; a full Y replaces and moves no gap.
    Data->AddXYData(QVCreateRealBuffer(V({5, 6, 7}).data(), 3), QVCreateRealBuffer(Seq(30, 8).data(), 8));
    EXPECT_EQ(X(), V({2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(Y(), Seq(32, 6));
    EXPECT_EQ(Gaps(), G({1}));
}

TEST_F(ChannelData, SetFamilyTrimsReplacesAndLeavesGapsAndTheRampFlag)
{
    Add({1, 2, 3});
    Add({4}, true);
    Scope.SetSizeLimit(4);
    Data->SetYData(Seq(10, 6).data(), 6);
    EXPECT_EQ(Y(), Seq(12, 4));
    EXPECT_EQ(X(), Seq(0, 4));
    EXPECT_EQ(Gaps(), G({3})) << "replacing the data keeps earlier gaps";

    Data->SetXYData(Seq(100, 6).data(), Seq(200, 6).data(), 6);
    EXPECT_EQ(X(), Seq(102, 4));
    EXPECT_EQ(Y(), Seq(202, 4));
    EXPECT_TRUE(Channel->GetIsRamp()) << "SetXYData after SetYData still counts as a ramp";

    Data->SetXYData(QVCreateIntegerBuffer(std::vector<int32_t>({1, 2}).data(), 2),
                    QVCreateIntegerBuffer(std::vector<int32_t>({5, 6, 7, 8, 9, 10, 11}).data(), 7));
    EXPECT_EQ(X(), V({1, 2}));
    EXPECT_EQ(Y(), V({8, 9, 10, 11}));
    Data->SetYData(QVCreateIntegerBuffer(std::vector<int32_t>({-3}).data(), 1));
    EXPECT_EQ(Y(), V({-3}));
    EXPECT_EQ(X(), V({0}));
}

TEST_F(ChannelData, ScopeSizeLimitCutsEveryChannelAndLeavesGaps)
{
    auto* Other = Scope.GetChannels()->Add();
    Add(Seq(0, 10));
    Add({10}, true);
    Other->GetData()->AddYData(Seq(0, 3).data(), 3);
    Scope.SetSizeLimit(4);
    EXPECT_EQ(Y(), V({7, 8, 9, 10}));
    EXPECT_EQ(X(), V({7, 8, 9, 10}));
    EXPECT_EQ(Gaps(), G({10}));
    Add({11}); // the ramp goes on from where it was
    EXPECT_EQ(X(), V({8, 9, 10, 11}));
    EXPECT_EQ(Other->GetData()->GetSize(), 3);
}

TEST_F(ChannelData, ClearEmptiesTheDataStageOnly)
{
    Add({1, 2, 3});
    Add({4}, true);
    Scope.RefreshView();
    Scope.ResetNeedsRecalc();
    Data->Clear();
    EXPECT_EQ(Data->GetSize(), 0);
    EXPECT_TRUE(X().empty());
    EXPECT_EQ(Gaps(), G{});
    EXPECT_TRUE(Channel->GetIsRamp()) << "Clear leaves the ramp flag";
    EXPECT_TRUE(Channel->GetHasNewBuffer());
    EXPECT_FALSE(Scope.GetNeedsRecalc()) << "Clear does not ask for a recalculation";
    EXPECT_EQ(DrawY(), V({1, 2, 3, 4})) << "the draw stage waits for the next refresh";
    EXPECT_EQ(Data->GetDrawSize(), 4);
    Scope.RefreshView();
    EXPECT_EQ(Data->GetDrawSize(), 0);
    Scope.ResetNeedsRecalc();
    Data->AddYPoint(1);
    EXPECT_TRUE(Scope.GetNeedsRecalc()) << "every intake call asks for one";
}

TEST_F(ChannelData, BadInputRaisesAndLeavesTheChannelAsItWas)
{
    Add({1, 2});
    ExpectError([&] { Data->AddYData(static_cast<const float*>(nullptr), 4); }, "null buffer with size 4");
    ExpectError([&] { Data->AddXYData(Seq(0, 2).data(), static_cast<const double*>(nullptr), 2); }, "size 2");
    ExpectError([&] { Data->SetYData(std::shared_ptr<IQVRealBuffer>()); }, "null buffer");
    ExpectError([&] { Data->AddXYData(QVCreateIntegerBuffer(), std::shared_ptr<IQVIntegerBuffer>()); }, "null buffer");
    ExpectError([&] { Data->SetSampleRate(std::nan("")); }, "nan");
    ExpectError([&] { Data->SetSampleRate(-5); }, "-5");
    ExpectError([&] { Data->GetXData(nullptr); }, "null destination for 2");
    ExpectError([&] { Data->GetYData(nullptr, -1); }, "negative capacity -1");
    ExpectError([&] { Data->GetDrawSampleY(0); }, "index 0");
    EXPECT_EQ(Y(), V({1, 2}));
    EXPECT_EQ(X(), V({0, 1}));
    EXPECT_TRUE(Gaps().empty());
}

// Every element type converts to double the same way a cast does, at its extremes too.
template <class T>
class ChannelDataElement : public TChannelFixture {};
using TElementTypes = ::testing::Types<double, float, int32_t, uint32_t, int64_t, uint64_t, int16_t, uint16_t>;
TYPED_TEST_SUITE(ChannelDataElement, TElementTypes);

TYPED_TEST(ChannelDataElement, ConvertsEveryFormAsACastDoes)
{
    using T = TypeParam;
    const std::vector<T> Values = {std::numeric_limits<T>::lowest(), std::numeric_limits<T>::max(), T(0), T(1),
                                   static_cast<T>(std::numeric_limits<T>::max() / 3)};
    V Expect;
    for (T Value : Values)
        Expect.push_back(static_cast<double>(Value));
    const auto N = uint32_t(Values.size());
    auto& D = *this->Data;

    D.AddYData(Values.data(), N);
    EXPECT_EQ(this->Y(), Expect);
    D.SetXYData(Values.data(), Values.data(), N);
    EXPECT_EQ(this->X(), Expect);
    D.AddXYData(Values.data(), Values.data(), N, true);
    EXPECT_EQ(this->X(), Expect);
    EXPECT_EQ(this->Gaps(), G({5}));
    D.SetYData(Values.data(), N);
    D.AddYData(Values.data(), N, true);
    V Twice = Expect;
    Twice.insert(Twice.end(), Expect.begin(), Expect.end());
    EXPECT_EQ(this->Y(), Twice);
    EXPECT_EQ(this->X(), Seq(0, 10));
}

} // namespace

TEST_F(ChannelData, NoCopyIntakeReadsTheCallersMemoryUntilAnAppendMovesIt)
{
    // Memory the caller owns, with an owner object whose release is watched.
    V Memory = Seq(100, 1000);
    auto Foreign = std::make_shared<TQVForeignRealBuffer>(Memory.data(), 1000, std::make_shared<int>(0));
    const std::weak_ptr<const void> Watch = Foreign->GetOwner();
    const auto DrawRead = [&] { return Channel->GetYDrawDataBuffer()->Read(); };
    struct TCase {
        uint32_t Limit;
        int32_t Skipped; // oldest samples the limit leaves out
    };
    for (const TCase& C : {TCase{0, 0}, TCase{600, 400}, TCase{1000, 0}}) {
        Scope.SetSizeLimit(C.Limit);
        Data->SetYDataNoCopy(Foreign);
        Scope.RefreshView();
        ASSERT_EQ(DrawRead(), Memory.data() + C.Skipped) << C.Limit << ": read in place";
        EXPECT_EQ(DrawY(), V(Memory.begin() + C.Skipped, Memory.end()));
        EXPECT_EQ(X(), Seq(0, 1000 - C.Skipped));
        double Lo = 0, Hi = 0;
        ASSERT_TRUE(Channel->GetDrawYExtremes(0, 1000, false, Lo, Hi));
        EXPECT_EQ(Lo, 100.0 + C.Skipped);
        EXPECT_EQ(Hi, 1099.0);
    }
    Foreign->SetItem(3, 7.0); // the caller lets go; the channel still reads the memory
    EXPECT_FALSE(Watch.expired());
    // An append moves the kept samples into the channel's memory; the caller's stay as they were.
    Data->AddYData(V{-1.0, -2.0}.data(), 2);
    Scope.RefreshView();
    EXPECT_NE(DrawRead(), Memory.data());
    EXPECT_EQ(DrawY().back(), -2.0);
    EXPECT_EQ(Memory, Seq(100, 1000));
    EXPECT_TRUE(Watch.expired()) << "nothing holds the memory once its readers are gone";
    // The write separated the caller's buffer, leaving the memory alone.
    EXPECT_EQ(Foreign->GetItem(3), 7.0);
    EXPECT_EQ(Memory[3], 103.0);
    EXPECT_FALSE(Foreign->GetIsForeign());

    EXPECT_THROW(Data->SetYDataNoCopy(nullptr), std::invalid_argument);
    EXPECT_THROW(TQVForeignRealBuffer(nullptr, 5), std::invalid_argument);
    EXPECT_THROW(TQVForeignRealBuffer(Memory.data(), -1), std::invalid_argument);
}
