// Sample buffers and the typed queue: sharing until a write, conversions of every element
// kind at their extremes, extremes over ranges with missing (NaN) samples, errors, and the
// queue's FIFO behaviour alone and under concurrent producers and consumers.
#include "qv/foundation/QVArrayOps.h"
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

// Extremes the slow way, NaN skipped; NaN when there is no number.
std::pair<double, double> NaiveExtremes(const std::vector<double>& AData, size_t AFirst, size_t ALast)
{
    double Lo = kNaN, Hi = kNaN;
    for (size_t i = AFirst; i <= ALast; ++i) {
        if (std::isnan(AData[i]))
            continue;
        if (std::isnan(Lo) || AData[i] < Lo)
            Lo = AData[i];
        if (std::isnan(Hi) || AData[i] > Hi)
            Hi = AData[i];
    }
    return {Lo, Hi};
}

void ExpectSame(double AExpected, double AActual)
{
    if (std::isnan(AExpected))
        EXPECT_TRUE(std::isnan(AActual)) << AActual;
    else
        EXPECT_EQ(AExpected, AActual);
}

// ---------------------------------------------------------------------------------------
// Sharing

TEST(RealBufferSharing, CopiesShareUntilOneHolderWrites)
{
    const double Source[] = {1, 2, 3, 4};
    TQVRealBuffer A(Source, 4);
    TQVRealBuffer B(A);                                    // copy
    TQVRealBuffer C(static_cast<const IQVRealBuffer&>(A)); // from the interface
    TQVRealBuffer D(static_cast<const IQVData&>(A));       // from generic data
    auto E = QVCreateRealBuffer(A);                        // factory
    const std::vector<const IQVRealBuffer*> Holders = {&B, &C, &D, E.get()};
    for (const IQVRealBuffer* Other : Holders)
        EXPECT_EQ(A.Read(), Other->Read());

    B.Write()[0] = 100;
    EXPECT_NE(A.Read(), B.Read());
    EXPECT_EQ((std::vector<double>{1, 2, 3, 4}), Values(A));
    EXPECT_EQ((std::vector<double>{100, 2, 3, 4}), Values(B));

    C.SetItem(3, -7);
    EXPECT_EQ((std::vector<double>{1, 2, 3, 4}), Values(A));
    EXPECT_EQ(-7, C.GetItem(3));
    EXPECT_EQ(A.Read(), D.Read()); // untouched holders still share
    EXPECT_EQ(A.Read(), E->Read());
}

TEST(RealBufferSharing, ReadNeverCopiesAndASoleHolderWritesInPlace)
{
    TQVRealBuffer A(4u);
    const double* Shared = nullptr;
    {
        TQVRealBuffer B(A);
        Shared = B.Read();
        EXPECT_EQ(Shared, A.Read());
        EXPECT_EQ(Shared, B.Read());
    }
    EXPECT_EQ(Shared, A.Write()); // the other holder is gone: no copy
    A.SetItem(0, 5);
    EXPECT_EQ(Shared, A.Read());
}

TEST(RealBufferSharing, ForeignDataIsCopiedNotBorrowed)
{
    double Source[] = {1, 2, 3};
    TQVRealBuffer A(TQVDataRef(Source, 3));
    TQVRealBuffer B(Source, 3);
    Source[1] = 50;
    EXPECT_EQ((std::vector<double>{1, 2, 3}), Values(A));
    EXPECT_EQ((std::vector<double>{1, 2, 3}), Values(B));
}

TEST(RealBufferSharing, ResizeOfOneHolderLeavesTheOtherAlone)
{
    const double Source[] = {1, 2, 3, 4};
    TQVRealBuffer A(Source, 4);

    TQVRealBuffer Shrunk(A);
    Shrunk.Resize(2, true);
    EXPECT_EQ((std::vector<double>{1, 2}), Values(Shrunk));
    Shrunk.Resize(3, true); // the dropped sample does not come back
    EXPECT_EQ((std::vector<double>{1, 2, 0}), Values(Shrunk));

    TQVRealBuffer Grown(A);
    Grown.Resize(6, true);
    EXPECT_EQ((std::vector<double>{1, 2, 3, 4, 0, 0}), Values(Grown));

    TQVRealBuffer Cleared(A);
    Cleared.Resize(3, false);
    EXPECT_EQ((std::vector<double>{0, 0, 0}), Values(Cleared));

    EXPECT_EQ((std::vector<double>{1, 2, 3, 4}), Values(A));
}

TEST(RealBufferSharing, ResizeOfASoleHolder)
{
    TQVRealBuffer A(3u);
    A.SetItem(0, 1);
    A.SetItem(2, 3);
    A.Resize(1, true);
    A.Resize(4, true); // within the old block: the tail is zero again
    EXPECT_EQ((std::vector<double>{1, 0, 0, 0}), Values(A));
    for (int32_t i = 0; i < 100; ++i) { // repeated growth keeps earlier samples
        A.Resize(A.GetSize() + 1, true);
        A.SetItem(A.GetSize() - 1, i);
    }
    EXPECT_EQ(104, A.GetSize());
    EXPECT_EQ(1, A.GetItem(0));
    EXPECT_EQ(99, A.GetItem(103));
    A.Resize(A.GetSize() + 1, true); // appends grow the block in steps, not one at a time
    const double* Grown = A.Read();
    A.Resize(A.GetSize() + 1, true);
    EXPECT_EQ(Grown, A.Read());
    EXPECT_EQ(0, A.GetItem(105));
    A.Resize(2, false);
    EXPECT_EQ((std::vector<double>{0, 0}), Values(A));
    A.Resize(0, false);
    EXPECT_EQ(0, A.GetSize());
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

// ---------------------------------------------------------------------------------------
// Conversions

template <class T>
class RealBufferConversion : public testing::Test {};
using TElementTypes = testing::Types<double, float, int32_t, uint32_t, int64_t, uint64_t, int16_t, uint16_t>;
TYPED_TEST_SUITE(RealBufferConversion, TElementTypes);

// 37 elements: both ends of the type's range at the first, last and middle positions, so
// that whole blocks and the tail of the conversion loop are covered.
TYPED_TEST(RealBufferConversion, PointerAndGenericDataGiveTheSameExactValues)
{
    using T = TypeParam;
    using L = std::numeric_limits<T>;
    std::vector<T> Source(37);
    for (size_t i = 0; i < Source.size(); ++i)
        Source[i] = static_cast<T>(i * 3);
    Source[0] = L::lowest();
    Source[36] = L::max();
    Source[17] = L::lowest();
    Source[18] = L::max();
    if constexpr (std::is_signed_v<T>)
        Source[5] = static_cast<T>(-1);

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
    if constexpr (std::is_signed_v<T>) {
        EXPECT_EQ(-1.0, FromPointer.GetItem(5));
    }
}

TYPED_TEST(RealBufferConversion, ZeroCountIsEmptyAndBadCountsAreRefused)
{
    using T = TypeParam;
    const T One[1] = {T(1)};
    EXPECT_EQ(0, TQVRealBuffer(One, 0).GetSize());
    EXPECT_EQ(0, TQVRealBuffer(static_cast<const T*>(nullptr), 0).GetSize());
    ExpectError<std::invalid_argument>([] { TQVRealBuffer(static_cast<const T*>(nullptr), 3); }, {"3"});
    ExpectError<std::invalid_argument>([&] { TQVRealBuffer(One, -2); }, {"-2"});
    ExpectError<std::length_error>([&] { TQVRealBuffer(One, int64_t(1) << 32); }, {"4294967296"});
}

TEST(RealBufferConversionValues, ExtremeValuesInDoubleForm)
{
    const int16_t S16[] = {INT16_MIN, INT16_MAX};
    const uint16_t U16[] = {0, UINT16_MAX};
    const int32_t S32[] = {INT32_MIN, INT32_MAX};
    const uint32_t U32[] = {UINT32_MAX};
    const int64_t S64[] = {INT64_MIN, INT64_MAX, (int64_t(1) << 53) + 1};
    const uint64_t U64[] = {UINT64_MAX};
    EXPECT_EQ((std::vector<double>{-32768.0, 32767.0}), Values(TQVRealBuffer(S16, 2)));
    EXPECT_EQ((std::vector<double>{0.0, 65535.0}), Values(TQVRealBuffer(U16, 2)));
    EXPECT_EQ((std::vector<double>{-2147483648.0, 2147483647.0}), Values(TQVRealBuffer(S32, 2)));
    EXPECT_EQ((std::vector<double>{4294967295.0}), Values(TQVRealBuffer(U32, 1)));
    // Beyond 2^53 the nearest double: 2^63 for INT64_MAX, ties to even for 2^53 + 1.
    EXPECT_EQ((std::vector<double>{-9223372036854775808.0, 9223372036854775808.0, 9007199254740992.0}),
              Values(TQVRealBuffer(S64, 3)));
    EXPECT_EQ((std::vector<double>{18446744073709551616.0}), Values(TQVRealBuffer(U64, 1)));
}

TEST(RealBufferConversionValues, FloatSpecialValuesSurvive)
{
    const float F[] = {std::numeric_limits<float>::max(), std::numeric_limits<float>::denorm_min(),
                       -std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN(), -0.0f,
                       0.1f};
    const TQVRealBuffer B(F, 6);
    EXPECT_EQ(3.4028234663852886e38, B.GetItem(0));
    EXPECT_EQ(1.401298464324817e-45, B.GetItem(1));
    EXPECT_EQ(-kInf, B.GetItem(2));
    EXPECT_TRUE(std::isnan(B.GetItem(3)));
    EXPECT_TRUE(std::signbit(B.GetItem(4)));
    EXPECT_EQ(0.10000000149011612, B.GetItem(5)); // the float's value, not 0.1
}

TEST(RealBufferConversionValues, OtherBufferKindsConvertAndNonNumericKindsAreRefused)
{
    const int32_t Ints[] = {-5, 7};
    const TQVIntegerBuffer I(Ints, 2);
    EXPECT_EQ((std::vector<double>{-5, 7}), Values(TQVRealBuffer(I)));

    const TQVComplexBuffer C(TQVDataRef(Ints, 2));
    ExpectError<std::invalid_argument>([&] { TQVRealBuffer B(C); }, {"TQVRealBuffer", "dkComplex"});
    const TQVBlockBuffer Bytes(8);
    ExpectError<std::invalid_argument>([&] { TQVRealBuffer B(Bytes); }, {"dkByte"});
    ExpectError<std::length_error>([] { TQVRealBuffer B(3000000000u); }, {"3000000000"});
}

// ---------------------------------------------------------------------------------------
// Extremes

TEST(RealBufferExtremes, EveryPositionAndLengthAgainstASimpleScan)
{
    // Lengths around the block width of the kernel, extremes placed at every position.
    for (int32_t N = 1; N <= 40; ++N) {
        for (int32_t Pos = 0; Pos < N; ++Pos) {
            std::vector<double> V(size_t(N), 0.0);
            for (int32_t i = 0; i < N; ++i)
                V[size_t(i)] = std::sin(i * 1.3);
            const int32_t MaxPos = (Pos + 1 + (N - 1) / 2) % N; // equals Pos only for N = 1
            V[size_t(MaxPos)] = 50;
            V[size_t(Pos)] = -50;
            const TQVRealBuffer B(V.data(), N);
            ASSERT_EQ(-50, B.Min()) << N << " " << Pos;
            ASSERT_EQ(N == 1 ? -50 : 50, B.Max()) << N << " " << Pos;
        }
    }
}

TEST(RealBufferExtremes, NaNSamplesAreSkippedWhereverTheyAre)
{
    for (int32_t N = 1; N <= 24; ++N) {
        for (int32_t NaNPos = 0; NaNPos < N; ++NaNPos) {
            std::vector<double> V(static_cast<size_t>(N));
            for (int32_t i = 0; i < N; ++i)
                V[size_t(i)] = (i * 7) % 11 - 5;
            V[size_t(NaNPos)] = kNaN;
            if (N > 2)
                V[size_t((NaNPos + N / 2) % N)] = kNaN;
            const TQVRealBuffer B(V.data(), N);
            const auto [Lo, Hi] = NaiveExtremes(V, 0, size_t(N - 1));
            ExpectSame(Lo, B.Min());
            ExpectSame(Hi, B.Max());
        }
    }
}

TEST(RealBufferExtremes, NoNumberGivesNaNButInfinitiesCount)
{
    EXPECT_TRUE(std::isnan(TQVRealBuffer().Min()));
    EXPECT_TRUE(std::isnan(TQVRealBuffer().Max()));
    const std::vector<double> AllNaN(19, kNaN);
    const TQVRealBuffer N(AllNaN.data(), 19);
    EXPECT_TRUE(std::isnan(N.Min()));
    EXPECT_TRUE(std::isnan(N.Max()));
    EXPECT_TRUE(std::isnan(N.Min(3, 10)));

    std::vector<double> V(19, kNaN);
    V[11] = kInf;
    const TQVRealBuffer OnlyInf(V.data(), 19);
    EXPECT_EQ(kInf, OnlyInf.Min());
    EXPECT_EQ(kInf, OnlyInf.Max());
    V[3] = -kInf;
    const TQVRealBuffer BothInf(V.data(), 19);
    EXPECT_EQ(-kInf, BothInf.Min());
    EXPECT_EQ(kInf, BothInf.Max());
    EXPECT_TRUE(std::isnan(BothInf.Max(4, 10)));
}

TEST(RealBufferExtremes, RangesIncludeBothEnds)
{
    const double Source[] = {5, 1, 9, 3, kNaN, 8};
    const TQVRealBuffer B(Source, 6);
    EXPECT_EQ(1, B.Min(1, 2));
    EXPECT_EQ(9, B.Max(1, 2));
    EXPECT_EQ(3, B.Min(2, 3));
    EXPECT_EQ(9, B.Min(2, 2));
    EXPECT_EQ(8, B.Min(4, 5));
    EXPECT_EQ(8, B.Max(5, 5));
    EXPECT_TRUE(std::isnan(B.Min(4, 4)));

    // Long ranges that start and end off the block grid.
    std::vector<double> V(1000);
    for (size_t i = 0; i < V.size(); ++i)
        V[i] = std::cos(double(i) * 0.37) * double(i % 13) + (i % 29 == 0 ? kNaN : 0.0);
    const TQVRealBuffer Long(V.data(), 1000);
    for (int32_t First : {0, 1, 7, 333})
        for (int32_t Last : {First, First + 8, 500, 998, 999}) {
            if (Last < First)
                continue;
            const auto [Lo, Hi] = NaiveExtremes(V, size_t(First), size_t(Last));
            ExpectSame(Lo, Long.Min(First, Last));
            ExpectSame(Hi, Long.Max(First, Last));
        }
}

TEST(RealBufferErrors, IndexesAndRangesOutsideTheBufferNameThemselves)
{
    TQVRealBuffer B(4u);
    ExpectError<std::out_of_range>([&] { B.GetItem(4); }, {"TQVRealBuffer", "index 4", "size 4"});
    ExpectError<std::out_of_range>([&] { B.GetItem(-1); }, {"-1"});
    ExpectError<std::out_of_range>([&] { B.SetItem(7, 1.0); }, {"7"});
    ExpectError<std::out_of_range>([&] { B.Min(-1, 2); }, {"-1..2"});
    ExpectError<std::out_of_range>([&] { B.Max(1, 4); }, {"1..4"});
    ExpectError<std::out_of_range>([&] { B.Min(3, 2); }, {"3..2"});
    ExpectError<std::out_of_range>([&] { TQVRealBuffer().Max(0, 0); }, {"0..0", "size 0"});
    ExpectError<std::invalid_argument>([&] { B.Resize(-1, true); }, {"-1"});
    EXPECT_EQ((std::vector<double>{0, 0, 0, 0}), Values(B)); // nothing changed by the failures
}

// ---------------------------------------------------------------------------------------
// Integer buffers

std::vector<int32_t> Values(const IQVIntegerBuffer& ABuffer)
{
    return std::vector<int32_t>(ABuffer.Read(), ABuffer.Read() + ABuffer.GetSize());
}

TEST(IntegerBuffer, SharesUntilWriteAndFindsExtremes)
{
    const int32_t Source[] = {3, INT32_MIN, 0, INT32_MAX, -4, 9, 1, 2, 5, 6, -7};
    TQVIntegerBuffer A(Source, 11);
    auto B = QVCreateIntegerBuffer(static_cast<const IQVIntegerBuffer&>(A));
    EXPECT_EQ(A.Read(), B->Read());
    B->SetItem(1, 0);
    EXPECT_NE(A.Read(), B->Read());
    EXPECT_EQ(INT32_MIN, A.GetItem(1));

    EXPECT_EQ(INT32_MIN, A.Min());
    EXPECT_EQ(INT32_MAX, A.Max());
    EXPECT_EQ(-7, B->Min());
    EXPECT_EQ(INT32_MAX, B->Max());
    EXPECT_EQ(-4, A.Min(4, 5));
    EXPECT_EQ(9, A.Max(4, 5));
    EXPECT_EQ(-7, A.Min(10, 10));
    ExpectError<std::out_of_range>([] { TQVIntegerBuffer().Min(); }, {"size 0"});
    ExpectError<std::out_of_range>([&] { A.Max(5, 11); }, {"5..11"});
    ExpectError<std::out_of_range>([&] { A.GetItem(11); }, {"TQVIntegerBuffer", "11"});

    A.Resize(13, true);
    EXPECT_EQ(0, A.GetItem(12));
    EXPECT_EQ(-7, A.GetItem(10));
}

TEST(IntegerBuffer, ConvertsWhatFitsAndRefusesWhatWouldBeLost)
{
    const int16_t S16[] = {INT16_MIN, INT16_MAX};
    const uint16_t U16[] = {UINT16_MAX};
    const int64_t S64[] = {INT32_MIN, INT32_MAX};
    EXPECT_EQ((std::vector<int32_t>{-32768, 32767}), Values(TQVIntegerBuffer(TQVDataRef(S16, 2))));
    EXPECT_EQ((std::vector<int32_t>{65535}), Values(TQVIntegerBuffer(TQVDataRef(U16, 1))));
    EXPECT_EQ((std::vector<int32_t>{INT32_MIN, INT32_MAX}), Values(TQVIntegerBuffer(TQVDataRef(S64, 2))));

    // Reals round to nearest, ties to even.
    const double Reals[] = {0.5, 1.5, 2.5, -2.5, -0.4, 2147483647.4, -2147483648.0};
    EXPECT_EQ((std::vector<int32_t>{0, 2, 2, -2, 0, INT32_MAX, INT32_MIN}),
              Values(TQVIntegerBuffer(TQVRealBuffer(Reals, 7))));

    const uint32_t U32[] = {1, 4294967295u};
    ExpectError<std::out_of_range>([&] { TQVIntegerBuffer B(TQVDataRef(U32, 2)); }, {"4294967295", "index 1"});
    const uint64_t U64[] = {uint64_t(1) << 40};
    ExpectError<std::out_of_range>([&] { TQVIntegerBuffer B(TQVDataRef(U64, 1)); }, {"1099511627776"});
    const int64_t Below[] = {0, 0, int64_t(INT32_MIN) - 1};
    ExpectError<std::out_of_range>([&] { TQVIntegerBuffer B(TQVDataRef(Below, 3)); }, {"-2147483649", "index 2"});
    const double Bad[] = {1, 2147483647.5};
    ExpectError<std::out_of_range>([&] { TQVIntegerBuffer B(TQVDataRef(Bad, 2)); }, {"2147483647.5"});
    const float NaN[] = {std::numeric_limits<float>::quiet_NaN()};
    ExpectError<std::out_of_range>([&] { TQVIntegerBuffer B(TQVDataRef(NaN, 1)); }, {"nan", "index 0"});
    ExpectError<std::invalid_argument>([] { TQVIntegerBuffer B(TQVBlockBuffer(4)); }, {"dkByte"});
}

// ---------------------------------------------------------------------------------------
// Complex and byte buffers, generic data

TEST(ComplexBuffer, TakesRealAndComplexDataAndSplitsIntoParts)
{
    const int16_t Reals[] = {-3, 4};
    const TQVComplexBuffer FromReal(TQVDataRef(Reals, 2));
    EXPECT_EQ(std::complex<double>(-3, 0), FromReal.GetItem(0));
    EXPECT_EQ(std::complex<double>(4, 0), FromReal.GetItem(1));

    const std::complex<double> Pairs[] = {{1, -1}, {2, -2}, {3, -3}};
    TQVComplexBuffer A(TQVDataRef(Pairs, 3));
    EXPECT_NE(static_cast<const void*>(Pairs), A.ReadData());
    TQVComplexBuffer B(static_cast<const IQVData&>(A));
    EXPECT_EQ(A.Read(), B.Read());
    B.SetItem(0, {9, 9});
    EXPECT_EQ(std::complex<double>(1, -1), A.GetItem(0));

    EXPECT_EQ((std::vector<double>{1, 2, 3}), Values(*A.GetRealPart()));
    EXPECT_EQ((std::vector<double>{-1, -2, -3}), Values(*A.GetImaginaryPart()));
    EXPECT_EQ(0, TQVComplexBuffer().GetRealPart()->GetSize());
    ExpectError<std::out_of_range>([&] { A.GetItem(3); }, {"TQVComplexBuffer", "3"});
    ExpectError<std::invalid_argument>([] { TQVComplexBuffer C(TQVBlockBuffer(2)); }, {"dkByte"});
}

TEST(BlockBuffer, ZeroedBytesSharedUntilWritten)
{
    TQVBlockBuffer A(16);
    EXPECT_EQ(dkByte, A.GetDataKind());
    EXPECT_EQ(16, A.GetCount());
    EXPECT_TRUE(std::all_of(A.Read(), A.Read() + 16, [](uint8_t B) { return B == 0; }));
    TQVBlockBuffer B = A;
    EXPECT_EQ(A.Read(), B.Read());
    B.Write()[15] = 0xAB;
    EXPECT_EQ(0, A.Read()[15]);
    EXPECT_EQ(0xAB, B.Read()[15]);
    B.Resize(20, true);
    EXPECT_EQ(0xAB, B.Read()[15]);
    EXPECT_EQ(0, B.Read()[19]);
}

TEST(GenericData, BadDescriptionsAreRefused)
{
    EXPECT_EQ("kind 200", QVDataKindName(static_cast<TQVDataKind>(200)));
    const float F[] = {1};
    ExpectError<std::invalid_argument>([&] { TQVDataRef R(F, -1); }, {"-1"});
    ExpectError<std::invalid_argument>([] { TQVDataRef R(static_cast<const float*>(nullptr), 5); }, {"5"});
}

// A foreign producer that describes its data wrongly is refused, not read.
class TBrokenData : public IQVData {
public:
    TQVDataKind GetDataKind() const override { return FKind; }
    int32_t GetCount() const override { return FCount; }
    const void* ReadData() const override { return nullptr; }
    TQVDataKind FKind = dkReal;
    int32_t FCount = 3;
};

TEST(GenericData, ForeignDataWithoutSamplesOrWithAnUnknownKindIsRefused)
{
    TBrokenData Broken;
    ExpectError<std::invalid_argument>([&] { TQVRealBuffer B(Broken); }, {"null", "3"});
    ExpectError<std::invalid_argument>([&] { TQVComplexBuffer B(Broken); }, {"3"});
    Broken.FCount = 0;
    Broken.FKind = static_cast<TQVDataKind>(77);
    ExpectError<std::invalid_argument>([&] { TQVRealBuffer B(Broken); }, {"kind 77"});
}

// ---------------------------------------------------------------------------------------
// Queue

TEST(TypedDataQueue, FirstInFirstOutWithIndexAccess)
{
    TQVTypedDataQueue<double> Q;
    double Value = -1;
    EXPECT_FALSE(Q.Pop(Value));
    EXPECT_EQ(-1, Value); // untouched
    Q.Remove();           // nothing to remove: no error
    EXPECT_EQ(0, Q.GetCount());

    for (double V : {1.0, 2.0, 3.0, 4.0})
        Q.Add(V);
    EXPECT_EQ(4, Q.GetCount());
    EXPECT_EQ(1, Q.GetItem(0));
    EXPECT_EQ(4, Q.GetItem(3));
    Q.SetItem(1, 20);
    Q.Remove();
    EXPECT_EQ(20, Q.GetItem(0));
    ASSERT_TRUE(Q.Pop(Value));
    EXPECT_EQ(20, Value);
    EXPECT_EQ(2, Q.GetCount());
    ASSERT_TRUE(Q.Pop(Value));
    EXPECT_EQ(3, Value);

    Q.Add(5);
    Q.Clear();
    EXPECT_EQ(0, Q.GetCount());
    EXPECT_FALSE(Q.Pop(Value));
    EXPECT_EQ(3, Value);
}

TEST(TypedDataQueue, IndexErrorsNameTheIndex)
{
    TQVTypedDataQueue<double> Q;
    Q.Add(1);
    Q.Add(2);
    ExpectError<std::out_of_range>([&] { Q.GetItem(2); }, {"2"});
    ExpectError<std::out_of_range>([&] { Q.GetItem(-1); }, {"-1"});
    ExpectError<std::out_of_range>([&] { Q.SetItem(5, 0); }, {"5"});
    EXPECT_THROW(Q.GetItem(2), EQLListError);
    EXPECT_EQ(2, Q.GetCount());
    EXPECT_EQ(2, Q.GetItem(1));
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

} // namespace
