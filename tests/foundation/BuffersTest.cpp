// Sample buffers and the typed queue: sharing until a write, conversions at the extremes of
// each element kind, extremes with missing (NaN) samples, errors, and the queue under threads.
#include "qv/foundation/QVArrayOps.h"
#include "qv/foundation/QVBlockExtremes.h"
#include "qv/foundation/QVBuffers.h"
#include "qv/foundation/QVTypedDataQueue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <complex>
#include <limits>
#include <stdexcept>
#include <string>
#include <thread>
#include <typeinfo>
#include <vector>

using namespace qv;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

// Runs AFunc, expects an exception of type E whose message contains every one of AParts.
template <class E, class F>
void ExpectError(F&& AFunc, std::initializer_list<std::string> AParts)
{
    try {
        AFunc();
        ADD_FAILURE() << "no exception";
    } catch (const E& Error) {
        const std::string Message = Error.what();
        for (const auto& Part : AParts)
            EXPECT_NE(Message.find(Part), std::string::npos) << "'" << Part << "' not in: " << Message;
    }
}

std::vector<double> Values(const IQVRealBuffer& ABuffer)
{
    return std::vector<double>(ABuffer.Read(), ABuffer.Read() + ABuffer.GetSize());
}

// Checks the buffer's extremes over AFirst..ALast (and the whole buffer when the range covers
// it) against a plain scan that skips NaN and gives NaN when there is no number.
void ExpectExtremes(const TQVRealBuffer& ABuffer, const std::vector<double>& AData, int32_t AFirst, int32_t ALast)
{
    double Lo = kNaN, Hi = kNaN;
    for (int32_t i = AFirst; i <= ALast; ++i)
        if (!std::isnan(AData[size_t(i)])) {
            Lo = std::isnan(Lo) ? AData[size_t(i)] : std::min(Lo, AData[size_t(i)]);
            Hi = std::isnan(Hi) ? AData[size_t(i)] : std::max(Hi, AData[size_t(i)]);
        }
    std::vector<std::pair<double, double>> Got{{ABuffer.Min(AFirst, ALast), ABuffer.Max(AFirst, ALast)}};
    if (AFirst == 0 && ALast == ABuffer.GetSize() - 1)
        Got.emplace_back(ABuffer.Min(), ABuffer.Max());
    for (const auto& [GotLo, GotHi] : Got) {
        EXPECT_TRUE(GotLo == Lo || (std::isnan(GotLo) && std::isnan(Lo))) << AFirst << ".." << ALast << " " << GotLo;
        EXPECT_TRUE(GotHi == Hi || (std::isnan(GotHi) && std::isnan(Hi))) << AFirst << ".." << ALast << " " << GotHi;
    }
}

TEST(RealBufferSharing, CopiesShareUntilOneHolderWritesAndForeignDataIsCopied)
{
    const double Source[] = {1, 2, 3, 4};
    TQVRealBuffer A(Source, 4);
    TQVRealBuffer B(A);
    TQVRealBuffer C(static_cast<const IQVData&>(A)); // from generic data
    auto E = QVCreateRealBuffer(A);
    B.Write()[0] = 100;
    C.SetItem(3, -7);
    EXPECT_EQ((std::vector<double>{1, 2, 3, 4}), Values(A));
    EXPECT_EQ((std::vector<double>{100, 2, 3, 4}), Values(B));
    EXPECT_EQ((std::vector<double>{1, 2, 3, -7}), Values(C));
    EXPECT_EQ(A.Read(), E->Read()); // an untouched holder still shares

    // Once the other holder is gone, writing needs no copy.
    TQVRealBuffer Solo(4u);
    const double* Shared = nullptr;
    {
        const TQVRealBuffer Other(Solo);
        Shared = Other.Read();
        EXPECT_EQ(Shared, Solo.Read());
    }
    EXPECT_EQ(Shared, Solo.Write());

    double Foreign[] = {1, 2, 3};
    TQVRealBuffer F(TQVDataRef(Foreign, 3));
    Foreign[1] = 50;
    EXPECT_EQ((std::vector<double>{1, 2, 3}), Values(F));
}

TEST(RealBufferSharing, ResizeKeepsOrClearsAndLeavesOtherHoldersAlone)
{
    const double Source[] = {1, 2, 3, 4};
    TQVRealBuffer A(Source, 4);
    TQVRealBuffer Shrunk(A);
    Shrunk.Resize(2, true);
    Shrunk.Resize(3, true); // the dropped sample does not come back
    EXPECT_EQ((std::vector<double>{1, 2, 0}), Values(Shrunk));
    TQVRealBuffer Grown(A);
    Grown.Resize(6, true);
    EXPECT_EQ((std::vector<double>{1, 2, 3, 4, 0, 0}), Values(Grown));
    TQVRealBuffer Cleared(A);
    Cleared.Resize(3, false);
    EXPECT_EQ((std::vector<double>{0, 0, 0}), Values(Cleared));
    EXPECT_EQ((std::vector<double>{1, 2, 3, 4}), Values(A));

    // A sole holder: shrinking then growing within the old block zeroes the tail again.
    A.Resize(1, true);
    A.Resize(4, true);
    EXPECT_EQ((std::vector<double>{1, 0, 0, 0}), Values(A));
    A.Resize(A.GetSize() + 1, true); // appends grow the block in steps, not one at a time
    const double* Block = A.Read();
    A.Resize(A.GetSize() + 1, true);
    EXPECT_EQ(Block, A.Read());
    A.Resize(0, false);
    EXPECT_TRUE(std::isnan(A.Min()));
}

TEST(RealBufferSharing, HoldersOnOtherThreadsWriteTheirOwnCopies)
{
    TQVRealBuffer Original(1000u);
    for (int32_t i = 0; i < 1000; ++i)
        Original.SetItem(i, i);
    std::vector<std::thread> Threads;
    std::vector<int> Good(4, 0);
    for (int t = 0; t < 4; ++t) {
        Threads.emplace_back([Copy = Original, t, &Good]() mutable {
            for (int Round = 0; Round < 50; ++Round) {
                double* P = Copy.Write();
                for (int32_t i = 0; i < 1000; ++i)
                    P[i] = t * 10000 + Round;
            }
            Good[t] = Copy.Min() == t * 10000 + 49 && Copy.Max() == t * 10000 + 49;
        });
    }
    for (auto& T : Threads)
        T.join();
    EXPECT_EQ((std::vector<int>{1, 1, 1, 1}), Good);
    EXPECT_EQ(0, Original.Min());
    EXPECT_EQ(999, Original.Max());
}

template <class T>
class RealBufferConversion : public testing::Test {};
using TElementTypes = testing::Types<double, float, int32_t, uint32_t, int64_t, uint64_t, int16_t, uint16_t>;
TYPED_TEST_SUITE(RealBufferConversion, TElementTypes);

// 37 elements with both ends of the type's range at the first, last and middle positions, so
// that whole blocks and the tail of the conversion loop are covered.
TYPED_TEST(RealBufferConversion, PointerAndGenericDataGiveExactValuesAndBadCountsFail)
{
    using T = TypeParam;
    using L = std::numeric_limits<T>;
    std::vector<T> Source(37);
    for (size_t i = 0; i < Source.size(); ++i)
        Source[i] = static_cast<T>(i * 3);
    Source[0] = Source[17] = L::lowest();
    Source[36] = Source[18] = L::max();

    const TQVRealBuffer FromPointer(Source.data(), int64_t(Source.size()));
    const TQVRealBuffer FromData(TQVDataRef(Source.data(), int32_t(Source.size())));
    ASSERT_EQ(37, FromPointer.GetSize());
    ASSERT_EQ(37, FromData.GetSize());
    for (size_t i = 0; i < Source.size(); ++i) {
        EXPECT_EQ(static_cast<double>(Source[i]), FromPointer.GetItem(int32_t(i))) << i;
        EXPECT_EQ(static_cast<double>(Source[i]), FromData.GetItem(int32_t(i))) << i;
    }
    EXPECT_EQ(static_cast<double>(L::lowest()), FromPointer.Min());
    EXPECT_EQ(static_cast<double>(L::max()), FromPointer.Max());

    EXPECT_EQ(0, TQVRealBuffer(static_cast<const T*>(nullptr), 0).GetSize());
    ExpectError<std::invalid_argument>([] { TQVRealBuffer(static_cast<const T*>(nullptr), 3); }, {"3"});
    ExpectError<std::invalid_argument>([&] { TQVRealBuffer(Source.data(), -2); }, {"-2"});
    ExpectError<std::length_error>([&] { TQVRealBuffer(Source.data(), int64_t(1) << 32); }, {"4294967296"});
}

TEST(RealBufferConversionValues, ExtremeAndUnusualValuesAndOtherKinds)
{
    // Beyond 2^53 the nearest double: 2^63 for INT64_MAX, ties to even for 2^53 + 1.
    const int64_t S64[] = {INT64_MIN, INT64_MAX, (int64_t(1) << 53) + 1};
    EXPECT_EQ((std::vector<double>{-9223372036854775808.0, 9223372036854775808.0, 9007199254740992.0}),
              Values(TQVRealBuffer(S64, 3)));
    const uint64_t U64[] = {UINT64_MAX};
    EXPECT_EQ((std::vector<double>{18446744073709551616.0}), Values(TQVRealBuffer(U64, 1)));

    const float F[] = {std::numeric_limits<float>::quiet_NaN(), -0.0f, 0.1f};
    const TQVRealBuffer B(F, 3);
    EXPECT_TRUE(std::isnan(B.GetItem(0)));
    EXPECT_TRUE(std::signbit(B.GetItem(1)));
    EXPECT_EQ(0.10000000149011612, B.GetItem(2)); // the float's value, not 0.1

    const int32_t Ints[] = {-5, 7};
    EXPECT_EQ((std::vector<double>{-5, 7}), Values(TQVRealBuffer(TQVIntegerBuffer(Ints, 2))));
    const TQVComplexBuffer C(TQVDataRef(Ints, 2));
    ExpectError<std::invalid_argument>([&] { TQVRealBuffer R(C); }, {"TQVRealBuffer", "dkComplex"});
    ExpectError<std::length_error>([] { TQVRealBuffer R(3000000000u); }, {"3000000000"});
}

TEST(RealBufferExtremes, EveryPositionAndLengthWithNaNsAgainstASimpleScan)
{
    // Lengths around the block width of the kernel; an extreme and NaNs at every position.
    for (int32_t N = 1; N <= 40; ++N)
        for (int32_t Pos = 0; Pos < N; ++Pos) {
            std::vector<double> V(size_t(N), 0.0);
            for (int32_t i = 0; i < N; ++i)
                V[size_t(i)] = std::sin(i * 1.3);
            V[size_t((Pos + 1 + (N - 1) / 2) % N)] = 50;
            V[size_t(Pos)] = -50;
            const TQVRealBuffer B(V.data(), N);
            ASSERT_EQ(-50, B.Min()) << N << " " << Pos;
            ASSERT_EQ(N == 1 ? -50 : 50, B.Max()) << N << " " << Pos;

            V[size_t(Pos)] = kNaN;
            if (N > 2)
                V[size_t((Pos + N / 2) % N)] = kNaN;
            ExpectExtremes(TQVRealBuffer(V.data(), N), V, 0, N - 1);
        }
}

TEST(RealBufferExtremes, RangesIncludeBothEndsAndOnlyInfinitiesCount)
{
    EXPECT_TRUE(std::isnan(TQVRealBuffer().Max()));
    std::vector<double> V(19, kNaN);
    V[11] = kInf;
    V[3] = -kInf;
    const TQVRealBuffer Inf(V.data(), 19);
    EXPECT_EQ(-kInf, Inf.Min());
    EXPECT_EQ(kInf, Inf.Max());
    EXPECT_TRUE(std::isnan(Inf.Max(4, 10)));

    // Long ranges that start and end off the block grid.
    V.resize(1000);
    for (size_t i = 0; i < V.size(); ++i)
        V[i] = std::cos(double(i) * 0.37) * double(i % 13) + (i % 29 == 0 ? kNaN : 0.0);
    const TQVRealBuffer Long(V.data(), 1000);
    for (int32_t First : {0, 1, 7, 333})
        for (int32_t Last : {First, First + 8, 500, 999})
            ExpectExtremes(Long, V, First, Last);
}

TEST(RealBufferErrors, IndexesAndRangesOutsideTheBufferNameThemselves)
{
    TQVRealBuffer B(4u);
    ExpectError<std::out_of_range>([&] { B.GetItem(4); }, {"TQVRealBuffer", "index 4", "size 4"});
    ExpectError<std::out_of_range>([&] { B.SetItem(-1, 1.0); }, {"-1"});
    ExpectError<std::out_of_range>([&] { B.Max(1, 4); }, {"1..4"});
    ExpectError<std::out_of_range>([&] { B.Min(3, 2); }, {"3..2"});
    ExpectError<std::invalid_argument>([&] { B.Resize(-1, true); }, {"-1"});
    EXPECT_EQ((std::vector<double>{0, 0, 0, 0}), Values(B)); // nothing changed by the failures
}

std::vector<int32_t> Values(const IQVIntegerBuffer& ABuffer)
{
    return std::vector<int32_t>(ABuffer.Read(), ABuffer.Read() + ABuffer.GetSize());
}

TEST(IntegerBuffer, SharesUntilWriteFindsExtremesAndConvertsWhatFits)
{
    const int32_t Source[] = {3, INT32_MIN, 0, INT32_MAX, -4, 9, 1, 2, 5, 6, -7};
    TQVIntegerBuffer A(Source, 11);
    auto B = QVCreateIntegerBuffer(static_cast<const IQVIntegerBuffer&>(A));
    B->SetItem(1, 0);
    EXPECT_EQ(INT32_MIN, A.Min()); // the write went to B's own copy
    EXPECT_EQ(INT32_MAX, A.Max());
    EXPECT_EQ(-7, B->Min());
    EXPECT_EQ(9, A.Max(4, 5));
    ExpectError<std::out_of_range>([] { TQVIntegerBuffer().Min(); }, {"size 0"});

    // Conversions take what fits and refuse what would be lost, naming value and index.
    const int64_t S64[] = {INT32_MIN, INT32_MAX};
    EXPECT_EQ((std::vector<int32_t>{INT32_MIN, INT32_MAX}), Values(TQVIntegerBuffer(TQVDataRef(S64, 2))));
    // Reals round to nearest, ties to even.
    const double Reals[] = {0.5, 1.5, 2.5, -2.5, -0.4, 2147483647.4};
    EXPECT_EQ((std::vector<int32_t>{0, 2, 2, -2, 0, INT32_MAX}), Values(TQVIntegerBuffer(TQVRealBuffer(Reals, 6))));

    const uint32_t U32[] = {1, 4294967295u};
    ExpectError<std::out_of_range>([&] { TQVIntegerBuffer Lossy(TQVDataRef(U32, 2)); }, {"4294967295", "index 1"});
    const float NaN[] = {std::numeric_limits<float>::quiet_NaN()};
    ExpectError<std::out_of_range>([&] { TQVIntegerBuffer Lossy(TQVDataRef(NaN, 1)); }, {"nan", "index 0"});
    ExpectError<std::invalid_argument>([] { TQVIntegerBuffer Lossy(TQVBlockBuffer(4)); }, {"dkByte"});
}

TEST(ComplexAndBlockBuffers, ShareUntilWrittenAndConvert)
{
    const int16_t Reals[] = {-3, 4};
    EXPECT_EQ(std::complex<double>(4, 0), TQVComplexBuffer(TQVDataRef(Reals, 2)).GetItem(1));

    const std::complex<double> Pairs[] = {{1, -1}, {2, -2}, {3, -3}};
    TQVComplexBuffer A(TQVDataRef(Pairs, 3));
    EXPECT_NE(static_cast<const void*>(Pairs), A.ReadData());
    TQVComplexBuffer B(static_cast<const IQVData&>(A));
    B.SetItem(0, {9, 9});
    EXPECT_EQ(std::complex<double>(1, -1), A.GetItem(0));
    EXPECT_EQ((std::vector<double>{1, 2, 3}), Values(*A.GetRealPart()));
    EXPECT_EQ((std::vector<double>{-1, -2, -3}), Values(*A.GetImaginaryPart()));
    ExpectError<std::out_of_range>([&] { A.GetItem(3); }, {"TQVComplexBuffer", "3"});

    TQVBlockBuffer Bytes(16);
    TQVBlockBuffer Copy = Bytes;
    Copy.Write()[15] = 0xAB;
    EXPECT_EQ(0, Bytes.Read()[15]);
    Copy.Resize(20, true);
    EXPECT_EQ(0xAB, Copy.Read()[15]);
    EXPECT_EQ(0, Copy.Read()[19]);
}

// A foreign producer that describes its data wrongly is refused, not read.
struct TBrokenData : IQVData {
    TQVDataKind GetDataKind() const override { return FKind; }
    int32_t GetCount() const override { return FCount; }
    const void* ReadData() const override { return nullptr; }
    TQVDataKind FKind = dkReal;
    int32_t FCount = 3;
};

TEST(GenericData, BadDescriptionsAreRefused)
{
    EXPECT_EQ("kind 200", QVDataKindName(static_cast<TQVDataKind>(200)));
    const float F[] = {1};
    ExpectError<std::invalid_argument>([&] { TQVDataRef R(F, -1); }, {"-1"});
    TBrokenData Broken;
    ExpectError<std::invalid_argument>([&] { TQVRealBuffer B(Broken); }, {"null", "3"});
    ExpectError<std::invalid_argument>([&] { TQVComplexBuffer B(Broken); }, {"3"});
    Broken.FCount = 0;
    Broken.FKind = static_cast<TQVDataKind>(77);
    ExpectError<std::invalid_argument>([&] { TQVRealBuffer B(Broken); }, {"kind 77"});
}

TEST(TypedDataQueue, FirstInFirstOutWithIndexAccessAndErrors)
{
    TQVTypedDataQueue<double> Q;
    double Value = -1;
    EXPECT_FALSE(Q.Pop(Value));
    EXPECT_EQ(-1, Value); // untouched
    Q.Remove();           // nothing to remove: no error

    for (double V : {1.0, 2.0, 3.0, 4.0})
        Q.Add(V);
    Q.SetItem(1, 20);
    Q.Remove();
    ASSERT_TRUE(Q.Pop(Value));
    EXPECT_EQ(20, Value);
    EXPECT_EQ(2, Q.GetCount());

    ExpectError<EQLListError>([&] { Q.GetItem(2); }, {"2"});
    ExpectError<std::out_of_range>([&] { Q.SetItem(-1, 0); }, {"-1"});
    EXPECT_EQ(4, Q.GetItem(1));

    Q.Clear();
    EXPECT_FALSE(Q.Pop(Value));
    EXPECT_EQ(20, Value);
}

TEST(TypedDataQueue, ConcurrentProducersAndConsumersLoseAndDuplicateNothing)
{
    constexpr int kProducers = 4;
    constexpr int kConsumers = 3;
    constexpr int kPerProducer = 50000;
    constexpr int kTotal = kProducers * kPerProducer;

    TQVTypedDataQueue<int64_t> Q;
    std::atomic<int> Taken{0};
    std::vector<std::vector<int64_t>> Received(kConsumers);
    std::vector<std::thread> Threads;
    for (int p = 0; p < kProducers; ++p)
        Threads.emplace_back([&Q, p] {
            for (int i = 0; i < kPerProducer; ++i)
                Q.Add(int64_t(p) * kPerProducer + i);
        });
    for (int c = 0; c < kConsumers; ++c)
        Threads.emplace_back([&, c] {
            int64_t V = 0;
            while (Taken.load() < kTotal) {
                if (Q.Pop(V)) {
                    Received[size_t(c)].push_back(V);
                    Taken.fetch_add(1);
                } else {
                    std::this_thread::yield();
                }
            }
        });
    for (auto& T : Threads)
        T.join();

    EXPECT_EQ(0, Q.GetCount());
    std::vector<int64_t> All;
    for (const auto& R : Received) {
        // One producer's values reach any one consumer in the order they were added.
        std::vector<int64_t> Last(kProducers, -1);
        for (int64_t V : R) {
            const auto p = size_t(V / kPerProducer);
            EXPECT_LT(Last[p], V);
            Last[p] = V;
        }
        All.insert(All.end(), R.begin(), R.end());
    }
    ASSERT_EQ(size_t(kTotal), All.size());
    std::sort(All.begin(), All.end());
    for (int i = 0; i < kTotal; ++i)
        ASSERT_EQ(i, All[size_t(i)]);
}

// Every range between two of APoints, counting non-finite values and not, against a plain
// scan of the samples the summary covers.
void ExpectSummaryMatches(const TQVBlockExtremes& ASummary, const std::vector<double>& AKept,
                          const std::vector<int32_t>& APoints, const std::string& AWhere = {})
{
    const int32_t N = int32_t(AKept.size());
    ASSERT_EQ(N, ASummary.GetCount()) << AWhere;
    for (int32_t First : APoints)
        for (int32_t End : APoints)
            for (const bool Finite : {false, true}) {
                const int32_t F = std::clamp(First, 0, N), E = std::clamp(End, F, N);
                double ELo = 7, EHi = 7, Lo = 7, Hi = 7;
                const bool Expected = E > F && (Finite ? QVArrayFiniteMinMax(AKept.data() + F, size_t(E - F), ELo, EHi)
                                                       : QVArrayMinMax(AKept.data() + F, size_t(E - F), ELo, EHi));
                const bool Got = ASummary.MinMax(AKept.data(), First, End, Finite, Lo, Hi);
                ASSERT_EQ(Expected, Got) << AWhere << First << ".." << End << " " << Finite;
                ASSERT_EQ(ELo, Lo) << AWhere << First << ".." << End << " " << Finite;
                ASSERT_EQ(EHi, Hi) << AWhere << First << ".." << End << " " << Finite;
            }
}

} // namespace

TEST(ArrayExtremes, BothInOnePassAgreeWithASimpleScanAndTellFiniteFromNumber)
{
    // A simple scan: what counts is a number (both) or a finite number (finite only).
    const auto Scan = [](const std::vector<double>& AV, bool AFinite, double& ALo, double& AHi) {
        bool Found = false;
        for (double V : AV) {
            if (V != V || (AFinite && !std::isfinite(V)))
                continue;
            ALo = Found ? std::min(ALo, V) : V;
            AHi = Found ? std::max(AHi, V) : V;
            Found = true;
        }
        return Found;
    };
    const double OddValues[] = {kNaN, kInf, -kInf};
    for (int32_t N = 0; N <= 23; ++N)
        for (int32_t Pos = 0; Pos < std::max(N, 1); ++Pos)
            for (double Odd : OddValues) {
                std::vector<double> V(static_cast<size_t>(N));
                for (int32_t i = 0; i < N; ++i)
                    V[size_t(i)] = std::sin(i * 2.1) * 10.0;
                if (N > 0)
                    V[size_t(Pos)] = Odd;
                for (const bool Finite : {false, true}) {
                    double Lo = 99, Hi = 99, ELo = 0, EHi = 0;
                    const bool Got = Finite ? QVArrayFiniteMinMax(V.data(), V.size(), Lo, Hi)
                                            : QVArrayMinMax(V.data(), V.size(), Lo, Hi);
                    const bool Expected = Scan(V, Finite, ELo, EHi);
                    ASSERT_EQ(Expected, Got) << N << " " << Pos << " " << Odd << " " << Finite;
                    if (Expected) {
                        ASSERT_EQ(ELo, Lo) << N << " " << Pos << " " << Odd << " " << Finite;
                        ASSERT_EQ(EHi, Hi) << N << " " << Pos << " " << Odd << " " << Finite;
                    } else {
                        EXPECT_EQ(99, Lo); // left untouched
                        EXPECT_EQ(99, Hi);
                    }
                }
            }
    // Nothing but non-finite values: a number is there for one, nothing finite for the other.
    const std::vector<double> OnlyInf = {kNaN, kInf, kNaN, kInf, kInf, kNaN};
    double Lo = 0, Hi = 0;
    ASSERT_TRUE(QVArrayMinMax(OnlyInf.data(), OnlyInf.size(), Lo, Hi));
    EXPECT_EQ(kInf, Lo);
    EXPECT_EQ(kInf, Hi);
    EXPECT_FALSE(QVArrayFiniteMinMax(OnlyInf.data(), OnlyInf.size(), Lo, Hi));
}

TEST(BlockExtremes, AnyRangeAgreesWithReadingItsSamples)
{
    // Ranges that start and end inside blocks, on block edges, inside one block, empty, and
    // beyond the record; NaN runs longer than a block and lone infinities.
    const int32_t N = 1000;
    std::vector<double> V(static_cast<size_t>(N));
    for (int32_t i = 0; i < N; ++i)
        V[size_t(i)] = std::cos(i * 0.71) * double(i % 17);
    for (int32_t i = 200; i < 340; ++i)
        V[size_t(i)] = kNaN;
    V[77] = kInf;
    V[700] = -kInf;
    TQVBlockExtremes B;
    B.Build(V.data(), N);
    ExpectSummaryMatches(B, V,
                         {-5, 0, 1, 63, 64, 65, 127, 128, 200, 210, 339, 340, 341, 699, 700, 701, 999, 1000, 1200});
    // A rebuilt summary follows new samples; an empty one finds nothing.
    V.assign(10, kNaN);
    B.Build(V.data(), 10);
    double Lo = 0, Hi = 0;
    EXPECT_FALSE(B.MinMax(V.data(), 0, 10, false, Lo, Hi));
    B.Build(nullptr, 0);
    EXPECT_FALSE(B.MinMax(nullptr, 0, 10, true, Lo, Hi));
}

TEST(BlockExtremes, KeptAtBothEndsAgreesWithReadingTheSamples)
{
    // A summary fed in pieces and dropped at the front, as a ring feeds it, answers as one
    // built over the samples it keeps; a copy taken on the way keeps answering for the
    // samples it was taken over while the original goes on. Each row: append sizes, then
    // samples dropped, repeated. The record spans several levels of groups (16 * 64 = 1024
    // samples a group, 16384 a group of groups).
    struct TStep {
        int32_t Add, Drop;
    };
    const std::vector<std::vector<TStep>> Runs = {
        {{70000, 0}},                          // one piece
        {{1, 0}, {63, 0}, {1, 0}, {20000, 5}}, // block edges crossed by small pieces
        {{4096, 0}, {4096, 1000}, {4096, 4096}, {50000, 20000}, {3, 17}},
        {{30000, 30000}, {17000, 0}, {1, 1}}, // everything dropped, then more
    };
    std::vector<double> Source(200000);
    for (size_t i = 0; i < Source.size(); ++i)
        Source[i] = std::sin(double(i) * 0.0031) * double(i % 97);
    for (size_t i = 9000; i < 9300; ++i)
        Source[i] = kNaN;
    Source[40001] = kInf;
    Source[61234] = -kInf;
    Source[70555] = -500; // extremes inside a group of groups
    Source[70556] = 500;
    const auto Check = [](const TQVBlockExtremes& B, const std::vector<double>& Kept, const std::string& AWhere) {
        const int32_t N = int32_t(Kept.size());
        ExpectSummaryMatches(B, Kept, {0, 1, 63, 64, 1023, 1025, N / 3, N / 2 + 7, N - 1025, N - 64, N - 1, N}, AWhere);
    };
    for (size_t r = 0; r < Runs.size(); ++r) {
        TQVBlockExtremes B;
        std::vector<double> Kept;
        size_t Pos = 0;
        for (size_t s = 0; s < Runs[r].size(); ++s) {
            const TStep& Step = Runs[r][s];
            B.Append(Source.data() + Pos, Step.Add);
            Kept.insert(Kept.end(), Source.begin() + std::ptrdiff_t(Pos),
                        Source.begin() + std::ptrdiff_t(Pos + Step.Add));
            Pos += size_t(Step.Add);
            const TQVBlockExtremes Copy = B;
            const std::vector<double> CopyKept = Kept;
            B.DropFront(Step.Drop);
            Kept.erase(Kept.begin(), Kept.begin() + Step.Drop);
            const std::string Where = "run " + std::to_string(r) + " step " + std::to_string(s) + ": ";
            Check(B, Kept, Where);
            // The original goes on past the copy; the copy then writes on its own.
            B.Append(Source.data() + Pos, 3000);
            Kept.insert(Kept.end(), Source.begin() + std::ptrdiff_t(Pos), Source.begin() + std::ptrdiff_t(Pos + 3000));
            Pos += 3000;
            Check(Copy, CopyKept, Where + "copy ");
            TQVBlockExtremes Own = Copy;
            std::vector<double> OwnKept = CopyKept;
            Own.Append(Source.data() + 150000, 2000);
            OwnKept.insert(OwnKept.end(), Source.begin() + 150000, Source.begin() + 152000);
            Check(Own, OwnKept, Where + "copy appended ");
            Check(B, Kept, Where + "after copy appended ");
        }
    }
    TQVBlockExtremes B;
    EXPECT_THROW(B.DropFront(1), std::out_of_range);
}

namespace {
// Pieces of every element type stored through AppendConverted (cache-bypassing stores and
// not), starting inside and on block edges, against converting first and summarising after.
template <class T>
void ExpectConvertedOnTheWay(const std::vector<T>& ASource)
{
    const std::vector<int32_t> Pieces = {1, 62, 64, 5000, 3, 64 * 300 + 5, 130};
    // Whole blocks land on the destination's 16-byte alignment at offset 0, off it at 1,
    // where streamed stores give way to ordinary ones.
    for (const auto& [Stream, Offset] : {std::pair{false, 0}, std::pair{true, 0}, std::pair{true, 1}}) {
        TQVBlockExtremes B;
        std::vector<double> Stored(ASource.size() + 1, 42.0), Expected;
        size_t Pos = 0;
        for (const int32_t Piece : Pieces) {
            B.AppendConverted(ASource.data() + Pos, Stored.data() + Pos + Offset, Piece, Stream);
            for (int32_t i = 0; i < Piece; ++i)
                Expected.push_back(static_cast<double>(ASource[Pos + size_t(i)]));
            Pos += size_t(Piece);
        }
        const std::vector<double> Got(Stored.begin() + Offset, Stored.begin() + Offset + std::ptrdiff_t(Pos));
        for (size_t i = 0; i < Got.size(); ++i)
            ASSERT_TRUE(Got[i] == Expected[i] || (Got[i] != Got[i] && Expected[i] != Expected[i])) << i;
        const int32_t N = int32_t(Pos);
        ExpectSummaryMatches(B, Expected, {0, 1, 63, 64, 65, 5127, 9000, N - 200, N - 1, N},
                             std::string(typeid(T).name()) + " " + std::to_string(Stream) + std::to_string(Offset));
    }
    TQVBlockExtremes B;
    double D = 0;
    B.AppendConverted(ASource.data(), &D, 0, true); // nothing stored, nothing counted
    EXPECT_EQ(0, B.GetCount());
}

template <class T>
std::vector<T> Wave(size_t ACount, double AAmplitude)
{
    std::vector<T> V(ACount);
    for (size_t i = 0; i < ACount; ++i)
        V[i] = static_cast<T>(std::abs(std::sin(double(i) * 0.013)) * AAmplitude * double(i % 7 + 1) / 7.0);
    return V;
}
} // namespace

TEST(BlockExtremes, ConvertedOnTheWayAgreesWithConvertingFirst)
{
    const size_t N = 64 * 400;
    auto Doubles = Wave<double>(N, 1e3);
    for (size_t i = 0; i < N; i += 97)
        Doubles[i] = -Doubles[i];
    Doubles[70] = kNaN;  // inside a part block
    Doubles[640] = kInf; // inside a whole block: its finite extremes read apart
    Doubles[5000] = -kInf;
    for (size_t i = 9000; i < 9200; ++i)
        Doubles[i] = kNaN;
    ExpectConvertedOnTheWay(Doubles);
    ExpectConvertedOnTheWay(Wave<float>(N, 1e6));
    ExpectConvertedOnTheWay(Wave<int16_t>(N, 32767));
    ExpectConvertedOnTheWay(Wave<uint16_t>(N, 65535));
    ExpectConvertedOnTheWay(Wave<int32_t>(N, 2e9));
    ExpectConvertedOnTheWay(Wave<uint32_t>(N, 4e9));
    ExpectConvertedOnTheWay(Wave<int64_t>(N, 9e18));
    ExpectConvertedOnTheWay(Wave<uint64_t>(N, 1.8e19));
}
