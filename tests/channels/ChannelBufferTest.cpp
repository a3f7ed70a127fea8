// Channel sample storage: the ring against a plain model under random appends and drops,
// buffers handed out that never change while the writer goes on, copying only when a write
// would touch what was handed out, and the gap list's shifting rules.
#include "ChannelTestSupport.h"
#include "qv/channels/QVChannelBuffer.h"
#include "qv/foundation/QVArrayOps.h"

#include <gtest/gtest.h>

#include <cmath>
#include <deque>
#include <functional>
#include <limits>
#include <mutex>
#include <random>
#include <stdexcept>
#include <thread>
#include <vector>

using namespace qv;
using qvtest::ExpectError;

namespace {

std::vector<double> Values(const TQVChannelBuffer& ABuffer)
{
    std::vector<double> Result(size_t(ABuffer.GetSize()));
    ABuffer.CopyTo(Result.data(), 0, ABuffer.GetSize());
    return Result;
}

std::vector<double> ReadValues(const IQVRealBuffer& ABuffer)
{
    return std::vector<double>(ABuffer.Read(), ABuffer.Read() + ABuffer.GetSize());
}

TEST(ChannelBuffer, RingFollowsPlainModelUnderRandomAppendsAndDrops)
{
    std::mt19937 Random(7);
    for (uint32_t Limit : {0u, 1u, 7u, 64u}) {
        TQVChannelBuffer Ring;
        std::deque<double> Model;
        double Next = 0.0;
        std::vector<std::shared_ptr<TQVChannelBuffer>> Views;
        std::vector<std::vector<double>> Seen;
        for (int Step = 0; Step < 3000; ++Step) {
            const int Op = int(Random() % 9);
            const int32_t Count = int32_t(Random() % 20);
            if (Op <= 2) { // a block, held to the limit by dropping first as a channel does
                std::vector<double> Block(static_cast<size_t>(Count));
                for (double& V : Block)
                    V = Next++;
                const int32_t Drop = Limit == 0 ? 0 : std::max<int32_t>(0, Ring.GetSize() + Count - int32_t(Limit));
                const int32_t Take = Limit == 0 ? Count : std::min<int32_t>(Count, int32_t(Limit));
                Ring.DropFront(std::min(Drop, Ring.GetSize()));
                Model.erase(Model.begin(), Model.begin() + std::min<ptrdiff_t>(Drop, ptrdiff_t(Model.size())));
                Ring.Append(Block.data() + (Count - Take), Take, Limit);
                Model.insert(Model.end(), Block.end() - Take, Block.end());
            } else if (Op == 6) { // a ramp, kept without a block until something writes
                const int32_t Take = Limit == 0 ? Count : std::min<int32_t>(Count, int32_t(Limit));
                Ring.AssignRamp(Take);
                Model.clear();
                for (int32_t i = 0; i < Take; ++i)
                    Model.push_back(double(i));
                Next = std::max(Next, double(Take));
            } else if (Op == 7) { // the ramp goes on from the last value, held to the limit
                const double Last = Model.empty() ? Next - 1.0 : Model.back();
                const int32_t Take = Limit == 0 ? Count : std::min<int32_t>(Count, int32_t(Limit));
                const int32_t Drop = Limit == 0 ? 0 : std::max<int32_t>(0, Ring.GetSize() + Take - int32_t(Limit));
                Ring.DropFront(Drop);
                Model.erase(Model.begin(), Model.begin() + Drop);
                Ring.AppendRamp(Take, Last, 1.0, Limit);
                for (int32_t i = 0; i < Take; ++i)
                    Model.push_back(Last + (1.0 + double(i)));
                // And one point more, as AddYPoint adds it.
                const double Point = (Take > 0 ? Model.back() : Last) + 1.0;
                if (Limit != 0 && Ring.GetSize() >= int32_t(Limit)) {
                    Ring.DropFront(1);
                    Model.pop_front();
                }
                Ring.AppendValue(Point, Limit);
                Model.push_back(Point);
                Next = std::max(Next, Point + 1.0);
            } else if (Op == 8) { // a copy holds the same samples, and says so when they are a ramp
                TQVChannelBuffer Copy;
                Copy.CopyFrom(Ring);
                ASSERT_EQ(Values(Copy), std::vector<double>(Model.begin(), Model.end())) << "step " << Step;
                ASSERT_EQ(Copy.GetHoldsRampOf(Ring), Ring.GetIsRamp()) << "step " << Step;
            } else if (Op == 3) {
                const int32_t Drop = std::min(Count, Ring.GetSize());
                Ring.DropFront(Drop);
                Model.erase(Model.begin(), Model.begin() + Drop);
            } else if (Op == 4 && Ring.GetSize() > 0) {
                const int32_t Index = int32_t(Random() % uint32_t(Ring.GetSize()));
                Ring.SetItem(Index, -1.0 - Step);
                Model[size_t(Index)] = -1.0 - Step;
            } else { // hand out the samples now and then; they must never change
                if (Views.size() == 3) {
                    Views.erase(Views.begin());
                    Seen.erase(Seen.begin());
                }
                Views.push_back(Ring.Share());
                Seen.push_back(Values(Ring));
            }
            ASSERT_EQ(Values(Ring), std::vector<double>(Model.begin(), Model.end())) << "step " << Step;
            if (Limit != 0) {
                ASSERT_LE(Ring.GetCapacity(), int32_t(Limit)) << "a ring held to a limit never grows past it";
            }
            for (size_t i = 0; i < Views.size(); ++i)
                ASSERT_EQ(ReadValues(*Views[i]), Seen[i]) << "step " << Step;
        }
        // Extremes across the wrap, then the straightened read.
        const std::vector<double> Expect(Model.begin(), Model.end());
        if (!Expect.empty()) {
            EXPECT_EQ(Ring.Max(0, Ring.GetSize() - 1), *std::max_element(Expect.begin(), Expect.end()));
        }
        EXPECT_EQ(ReadValues(Ring), Expect);
        EXPECT_FALSE(Ring.GetIsWrapped());
    }
}

TEST(ChannelBuffer, WriterCopiesOnlyWhenAWriteWouldTouchWhatItHandedOut)
{
    TQVChannelBuffer Ring;
    const std::vector<double> Seed = {0, 1, 2, 3, 4, 5, 6, 7};
    Ring.Append(Seed.data(), 8, 12); // capacity 12, unwrapped
    ASSERT_EQ(Ring.GetCapacity(), 12);
    const double* Before = Ring.Read();

    auto View = Ring.Share();
    EXPECT_EQ(View->Read(), Before) << "an unwrapped ring is shared, not copied";
    Ring.AppendValue(8.0, 12);
    Ring.DropFront(3);
    Ring.AppendValue(9.0, 12); // still in free positions after the handed-out range
    EXPECT_EQ(Ring.Read(), Before + 3) << "appends outside the handed-out range stay in place";
    Ring.AppendFill(2, 10.0, 12); // up to the end of the block
    EXPECT_EQ(Ring.Read(), Before + 3);
    Ring.AppendValue(11.0, 12); // round to position 0, which the view still shows: the writer moves
    EXPECT_NE(Ring.Read(), Before + 3);
    EXPECT_EQ(ReadValues(*View), std::vector<double>({0, 1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(Values(Ring), std::vector<double>({3, 4, 5, 6, 7, 8, 9, 10, 10, 11}));
    EXPECT_TRUE(Ring.GetIsSole());

    // Once every view is gone the writer writes in place; a view that writes separates.
    Ring.Share().reset();
    const double* Moved = Ring.Read();
    Ring.SetItem(0, -3.0);
    EXPECT_EQ(Ring.Read(), Moved);
    auto Writer = Ring.Share();
    Writer->SetItem(0, 99.0);
    EXPECT_EQ(Ring.GetItem(0), -3.0);
    EXPECT_EQ(Writer->GetItem(0), 99.0);
}

// A record handed to its draw stage on every refresh swaps two large blocks: the one the
// draw stage let go of comes back as the writer's next fresh block, never while anybody
// still reads it, and the spare blocks go when the recycler is cleared or gone.
TEST(ChannelBuffer, LargeBlocksComeBackThroughTheRecyclerOnlyWhenNobodyHoldsThem)
{
    constexpr int32_t N = 300'000; // 2.4 MB a block
    std::vector<double> A(N, 1.0), B(N, 2.0);
    auto Recycler = std::make_shared<TQVChannelBuffer::TRecycler>();
    const int64_t Live0 = TQVChannelBuffer::GetLiveBytes();
    {
        TQVChannelBuffer Writer;
        Writer.SetRecycler(Recycler);
        Writer.Assign(A.data(), N);
        auto Draw = Writer.Share();
        const double* First = Draw->Read();
        Writer.Assign(B.data(), N); // the draw stage holds the first block: a fresh one
        const double* Second = Writer.Read();
        ASSERT_NE(Second, First);
        EXPECT_EQ(Draw->GetItem(N - 1), 1.0);
        Draw = Writer.Share(); // the first block's last holder lets go: it is kept
        EXPECT_EQ(Recycler->GetBytes(), int64_t(N) * 8);
        Writer.Assign(A.data(), N);
        EXPECT_EQ(Writer.Read(), First) << "the kept block is written again";
        EXPECT_EQ(Recycler->GetBytes(), 0);
        EXPECT_EQ(Draw->Read(), Second);
        EXPECT_EQ(Draw->GetItem(0), 2.0) << "the block still read was not taken";
        // A kept block much larger than asked for stays aside.
        Draw.reset();
        auto Held = Writer.Share();
        Writer.Assign(A.data(), N / 2);
        EXPECT_EQ(Writer.GetCapacity(), N / 2);
        EXPECT_EQ(Recycler->GetBytes(), int64_t(N) * 8);
        Recycler->Clear();
        EXPECT_EQ(Recycler->GetBytes(), 0);
        EXPECT_EQ(TQVChannelBuffer::GetLiveBytes() - Live0, int64_t(N + N / 2) * 8);
        Recycler.reset(); // blocks released afterwards are simply freed
    }
    EXPECT_EQ(TQVChannelBuffer::GetLiveBytes(), Live0);
}

TEST(ChannelBuffer, WrappedRingIsHandedOutContiguousAndResizesFollowTheBufferRules)
{
    TQVChannelBuffer Ring;
    const double Data[] = {1, 2, 3, 4};
    Ring.Append(Data, 4, 4);
    Ring.DropFront(2);
    Ring.Append(Data, 2, 4); // 3, 4 | 1, 2 round the end
    ASSERT_TRUE(Ring.GetIsWrapped());
    auto View = Ring.Share();
    EXPECT_EQ(ReadValues(*View), std::vector<double>({3, 4, 1, 2}));
    EXPECT_TRUE(Ring.GetIsSole()) << "a wrapped ring hands out a copy";

    Ring.Resize(6, true); // keeps the wrapped values in order
    EXPECT_EQ(Values(Ring), std::vector<double>({3, 4, 1, 2, 0, 0}));
    Ring.Resize(3, false);
    Ring.AppendRamp(2, 3.0, 1.0);
    Ring.PrependFill(1, -1.0);
    EXPECT_EQ(Values(Ring), std::vector<double>({-1, 0, 0, 0, 4, 5}));
    EXPECT_EQ(ReadValues(*View), std::vector<double>({3, 4, 1, 2}));

    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    const double WithNaN[] = {kNaN, 5, kNaN};
    Ring.Assign(WithNaN, 3);
    EXPECT_EQ(Ring.Min(), 5.0);
    EXPECT_TRUE(std::isnan(Ring.Max(0, 0)));
    Ring.Clear();
    EXPECT_TRUE(std::isnan(Ring.Min()));
    EXPECT_EQ(Ring.Read(), nullptr);
}

TEST(ChannelBuffer, BadArgumentsRaiseNamingTheValueAndChangeNothing)
{
    TQVChannelBuffer Ring;
    const double One = 1.0;
    Ring.Append(&One, 1);
    ExpectError([&] { Ring.Append(static_cast<const double*>(nullptr), 3); }, "null data with count 3");
    ExpectError([&] { Ring.DropFront(2); }, "cannot drop 2 of 1");
    ExpectError([&] { Ring.Max(0, 3); }, "index range 0..3");
    EXPECT_EQ(Values(Ring), std::vector<double>({1.0}));
}

// A writer that appends a running count while readers check the buffers handed to them: a
// view must always hold consecutive values, whatever the writer does meanwhile.
TEST(ChannelBuffer, ViewsStayIntactWhileTheWriterRunsOnAnotherThread)
{
    TQVChannelBuffer Ring;
    std::mutex Section;
    std::shared_ptr<TQVChannelBuffer> Latest;
    std::atomic<bool> Done{false};
    std::atomic<int> Checked{0};
    std::atomic<bool> Broken{false};
    std::thread Writer([&] {
        double Next = 0.0;
        std::vector<double> Block(37);
        // Bounded, and stopped by a reader that saw a broken view, so a fault fails the test
        // instead of hanging it.
        for (int Round = 0; !Broken && (Round < 2000 || Checked < 200) && Round < 2000000; ++Round) {
            for (double& V : Block)
                V = Next++;
            std::lock_guard<std::mutex> Lock(Section);
            const int32_t Drop = std::max(0, Ring.GetSize() + 37 - 500);
            Ring.DropFront(Drop);
            Ring.Append(Block.data(), 37, 500);
            if (Round % 7 == 0)
                Latest = Ring.Share();
        }
        Done = true;
    });
    std::vector<std::thread> Readers;
    for (int r = 0; r < 2; ++r)
        Readers.emplace_back([&] {
            while (!Done) {
                std::shared_ptr<TQVChannelBuffer> View;
                {
                    std::lock_guard<std::mutex> Lock(Section);
                    View = Latest;
                }
                if (!View)
                    continue;
                const double* P = View->Read();
                for (int32_t i = 1; i < View->GetSize(); ++i)
                    if (P[i] != P[i - 1] + 1.0) {
                        ADD_FAILURE() << "view breaks at " << i << ": " << P[i - 1] << ", " << P[i];
                        Broken = true;
                        return;
                    }
                ++Checked;
            }
        });
    Writer.join();
    for (auto& T : Readers)
        T.join();
    EXPECT_GE(Checked.load(), 200);
}

TEST(ChannelGapList, ShiftDropsLeadingEntriesAndMovesTheRest)
{
    TQVGapList Gaps;
    for (int64_t G : {3, 5, 9, 2})
        Gaps.Add(G);
    auto Before = Gaps.ToBuffer();
    Gaps.Shift(5); // 3 leads and is below 5: dropped; 5 becomes 0 and stays; 2 is not leading
    EXPECT_EQ(Gaps.ToVector(), std::vector<int32_t>({0, 4, -3}));
    EXPECT_EQ(Before->GetSize(), 4) << "a buffer handed out keeps its entries";
    Gaps.Shift(5); // 0 and 4 dropped, then -8 leads and is dropped too
    EXPECT_TRUE(Gaps.ToVector().empty());

    // Many entries moved one at a time, as at the limit: the same as subtracting each time.
    std::vector<int64_t> Model;
    for (int i = 1; i <= 300; ++i) {
        Gaps.Add(i * 3);
        Model.push_back(i * 3);
        Gaps.Shift(2);
        while (!Model.empty() && Model.front() < 2)
            Model.erase(Model.begin());
        for (auto& M : Model)
            M -= 2;
    }
    const std::vector<int32_t> Got = Gaps.ToVector();
    EXPECT_EQ(std::vector<int64_t>(Got.begin(), Got.end()), Model);
    auto Buffer = Gaps.ToBuffer();
    Buffer->SetItem(0, -77);
    EXPECT_EQ(Gaps.GetItem(0), Got[0]) << "writing to a handed-out buffer leaves the list alone";

    ExpectError([&] { Gaps.Add(int64_t(INT32_MAX) + 1); }, "2147483648");
}

} // namespace

namespace {

TEST(ChannelBufferExtremes, SummaryFollowsEveryKindOfChange)
{
    // Each change, on a ring that runs round its block: the summary handed out answers as a
    // read of the samples the buffer then holds, and so does the one a shared copy carries.
    using TChange = std::function<void(TQVChannelBuffer&)>;
    const std::vector<double> Fresh = {5, -3, 8, 1};
    const std::pair<const char*, TChange> Changes[] = {
        {"append", [&](TQVChannelBuffer& B) { B.Append(Fresh.data(), 4, 300); }},
        {"drop", [](TQVChannelBuffer& B) { B.DropFront(77); }},
        {"write", [](TQVChannelBuffer& B) { B.Write()[150] = 1e6; }},
        {"set item", [](TQVChannelBuffer& B) { B.SetItem(3, -1e6); }},
        {"shrink", [](TQVChannelBuffer& B) { B.Resize(120, true); }},
        {"grow", [](TQVChannelBuffer& B) { B.Resize(400, true); }},
        {"resize anew", [](TQVChannelBuffer& B) { B.Resize(90, false); }},
        {"prepend", [](TQVChannelBuffer& B) { B.PrependFill(5, -7.0); }},
        {"ramp", [](TQVChannelBuffer& B) { B.AssignRamp(333); }},
        {"fill", [](TQVChannelBuffer& B) { B.AppendFill(70, 9.5, 300); }},
        {"clear", [](TQVChannelBuffer& B) { B.Clear(); }},
    };
    for (const auto& [Name, Change] : Changes) {
        TQVChannelBuffer B;
        B.SetKeepExtremes(true);
        std::vector<double> Start(300);
        for (size_t i = 0; i < Start.size(); ++i)
            Start[i] = std::sin(double(i)) * 100.0;
        B.Assign(Start.data(), 300);
        B.DropFront(100);
        B.Append(Start.data(), 100, 300); // now wrapped
        Change(B);
        const auto Check = [&](const TQVChannelBuffer& AHolder, const char* AWho) {
            const TQVBlockExtremes* E = AHolder.GetExtremes();
            ASSERT_NE(E, nullptr) << Name << AWho;
            const int32_t N = AHolder.GetSize();
            ASSERT_EQ(E->GetCount(), N) << Name << AWho;
            double Lo = 0, Hi = 0, ELo = 0, EHi = 0;
            const bool Found = QVArrayMinMax(AHolder.Read(), size_t(N), ELo, EHi);
            ASSERT_EQ(Found, E->MinMax(AHolder.Read(), 0, N, false, Lo, Hi)) << Name << AWho;
            EXPECT_EQ(ELo, Lo) << Name << AWho;
            EXPECT_EQ(EHi, Hi) << Name << AWho;
        };
        const auto Shared = B.Share();
        Check(*Shared, " (shared)");
        Check(B, "");
    }
}

} // namespace
