#include "qv/foundation/QVArrayOps.h"

#include <cstring>
#include <limits>

namespace qv {

namespace {

// Conversions are plain element loops: GCC and Clang turn each into packed conversions where
// the target has them (16- and 32-bit integers, float); 64-bit integers stay scalar on x86-64
// without AVX-512.
template <class T>
void ConvertBlock(const T* ASource, double* ADest, size_t ACount)
{
    for (size_t i = 0; i < ACount; ++i)
        ADest[i] = static_cast<double>(ASource[i]);
}

constexpr double kInf = std::numeric_limits<double>::infinity();

// The extremes of doubles skip NaN with one rule: an accumulator takes a sample only when the
// comparison "sample beats accumulator" is true, and every comparison with NaN is false. The
// form `x < a ? x : a` is exactly what the SSE/AVX min instructions compute (they return the
// second operand when either is NaN), so it stays branch-free.
//
// Eight independent accumulators hide the latency of the compare. They are written with the
// compiler's 16-byte vector type: GCC 12 vectorises the same loop over a plain double[8] at
// -O2, but at -O3 it unrolls the lane loop completely before vectorising and ends with eight
// scalar chains, at about half the speed on data in cache.
struct TLess {
    template <class V>
    static V Pick(V AValue, V AAcc)
    {
        return AValue < AAcc ? AValue : AAcc;
    }
};
struct TGreater {
    template <class V>
    static V Pick(V AValue, V AAcc)
    {
        return AValue > AAcc ? AValue : AAcc;
    }
};

template <class TOrder>
double ReduceScalar(const double* AData, size_t ACount, double AAcc)
{
    for (size_t i = 0; i < ACount; ++i)
        AAcc = TOrder::Pick(AData[i], AAcc);
    return AAcc;
}

#if defined(__GNUC__) || defined(__clang__)
using TPair = double __attribute__((vector_size(16)));

template <class TOrder>
double ReduceBlock(const double* AData, size_t ACount, double AStart)
{
    const TPair Start = {AStart, AStart};
    TPair A0 = Start, A1 = Start, A2 = Start, A3 = Start;
    size_t i = 0;
    for (; i + 8 <= ACount; i += 8) {
        TPair X0, X1, X2, X3;
        std::memcpy(&X0, AData + i, sizeof X0);
        std::memcpy(&X1, AData + i + 2, sizeof X1);
        std::memcpy(&X2, AData + i + 4, sizeof X2);
        std::memcpy(&X3, AData + i + 6, sizeof X3);
        A0 = TOrder::Pick(X0, A0);
        A1 = TOrder::Pick(X1, A1);
        A2 = TOrder::Pick(X2, A2);
        A3 = TOrder::Pick(X3, A3);
    }
    A0 = TOrder::Pick(A1, A0);
    A2 = TOrder::Pick(A3, A2);
    A0 = TOrder::Pick(A2, A0);
    const double Acc = TOrder::Pick(A0[1], A0[0]);
    return ReduceScalar<TOrder>(AData + i, ACount - i, Acc);
}
#else
template <class TOrder>
double ReduceBlock(const double* AData, size_t ACount, double AStart)
{
    double Acc[8];
    for (double& A : Acc)
        A = AStart;
    size_t i = 0;
    for (; i + 8 <= ACount; i += 8)
        for (size_t j = 0; j < 8; ++j)
            Acc[j] = TOrder::Pick(AData[i + j], Acc[j]);
    double R = AStart;
    for (double A : Acc)
        R = TOrder::Pick(A, R);
    return ReduceScalar<TOrder>(AData + i, ACount - i, R);
}
#endif

// Both extremes in one read of the samples. TSkip::Take turns a sample that does not count into
// NaN, which then changes neither accumulator (see TLess/TGreater).
struct TKeepAll {
    template <class V>
    static V Take(V AValue)
    {
        return AValue;
    }
};
struct TFiniteOnly {
    // x - x is 0 for a finite x and NaN for an infinity or NaN: a finite sample is kept as
    // it is, any other becomes that NaN. A select, so it stays branch-free.
    template <class V>
    static V Take(V AValue)
    {
        const V Zero = AValue - AValue;
        return Zero == Zero ? AValue : Zero;
    }
};

template <class TSkip>
void ReduceBoth(const double* AData, size_t ACount, double& ALo, double& AHi)
{
    constexpr double Inf = std::numeric_limits<double>::infinity();
    double Lo = Inf, Hi = -Inf;
    size_t i = 0;
#if defined(__GNUC__) || defined(__clang__)
    const TPair PInf = {Inf, Inf}, NInf = {-Inf, -Inf};
    TPair L0 = PInf, L1 = PInf, L2 = PInf, L3 = PInf, H0 = NInf, H1 = NInf, H2 = NInf, H3 = NInf;
    for (; i + 8 <= ACount; i += 8) {
        TPair X0, X1, X2, X3;
        std::memcpy(&X0, AData + i, sizeof X0);
        std::memcpy(&X1, AData + i + 2, sizeof X1);
        std::memcpy(&X2, AData + i + 4, sizeof X2);
        std::memcpy(&X3, AData + i + 6, sizeof X3);
        X0 = TSkip::Take(X0);
        X1 = TSkip::Take(X1);
        X2 = TSkip::Take(X2);
        X3 = TSkip::Take(X3);
        L0 = TLess::Pick(X0, L0);
        L1 = TLess::Pick(X1, L1);
        L2 = TLess::Pick(X2, L2);
        L3 = TLess::Pick(X3, L3);
        H0 = TGreater::Pick(X0, H0);
        H1 = TGreater::Pick(X1, H1);
        H2 = TGreater::Pick(X2, H2);
        H3 = TGreater::Pick(X3, H3);
    }
    L0 = TLess::Pick(L1, L0);
    L2 = TLess::Pick(L3, L2);
    L0 = TLess::Pick(L2, L0);
    H0 = TGreater::Pick(H1, H0);
    H2 = TGreater::Pick(H3, H2);
    H0 = TGreater::Pick(H2, H0);
    Lo = TLess::Pick(L0[1], L0[0]);
    Hi = TGreater::Pick(H0[1], H0[0]);
#endif
    for (; i < ACount; ++i) {
        const double X = TSkip::Take(AData[i]);
        Lo = TLess::Pick(X, Lo);
        Hi = TGreater::Pick(X, Hi);
    }
    ALo = Lo;
    AHi = Hi;
}

// The finite extremes equal the extremes of the numbers unless one of those is infinite; only
// then, which real records rarely give, is the block read a second time.
void ReduceFour(const double* AData, size_t ACount, double& ALo, double& AHi, double& AFiniteLo, double& AFiniteHi)
{
    constexpr double Inf = std::numeric_limits<double>::infinity();
    ReduceBoth<TKeepAll>(AData, ACount, ALo, AHi);
    if (ALo > -Inf && AHi < Inf) {
        // Both finite, or +inf and -inf for a block without numbers: the same for finite.
        AFiniteLo = ALo;
        AFiniteHi = AHi;
    } else {
        ReduceBoth<TFiniteOnly>(AData, ACount, AFiniteLo, AFiniteHi);
    }
}

bool HasNumber(const double* AData, size_t ACount)
{
    for (size_t i = 0; i < ACount; ++i)
        if (AData[i] == AData[i])
            return true;
    return false;
}

// AStart is the identity of the reduction (+inf for the minimum). A result still equal to it
// means either that the extreme really is that infinity or that no sample was a number; only
// then is the block scanned again to tell the two apart.
template <class TOrder>
double Extreme(const double* AData, size_t ACount, double AStart)
{
    const double R = ReduceBlock<TOrder>(AData, ACount, AStart);
    if (R == AStart && !HasNumber(AData, ACount))
        return std::numeric_limits<double>::quiet_NaN();
    return R;
}

// Integer extremes are ordinary min/max reductions, which the vectoriser handles directly.
template <class TOrder>
int32_t ExtremeInt(const int32_t* AData, size_t ACount, int32_t AStart)
{
    int32_t Acc = AStart;
    for (size_t i = 0; i < ACount; ++i)
        Acc = TOrder::Pick(AData[i], Acc);
    return Acc;
}

} // namespace

void QVArrayConvert(const double* ASource, double* ADest, size_t ACount)
{
    if (ACount)
        std::memcpy(ADest, ASource, ACount * sizeof(double));
}
void QVArrayConvert(const float* ASource, double* ADest, size_t ACount)
{
    ConvertBlock(ASource, ADest, ACount);
}
void QVArrayConvert(const int32_t* ASource, double* ADest, size_t ACount)
{
    ConvertBlock(ASource, ADest, ACount);
}
void QVArrayConvert(const uint32_t* ASource, double* ADest, size_t ACount)
{
    ConvertBlock(ASource, ADest, ACount);
}
void QVArrayConvert(const int64_t* ASource, double* ADest, size_t ACount)
{
    ConvertBlock(ASource, ADest, ACount);
}
void QVArrayConvert(const uint64_t* ASource, double* ADest, size_t ACount)
{
    ConvertBlock(ASource, ADest, ACount);
}
void QVArrayConvert(const int16_t* ASource, double* ADest, size_t ACount)
{
    ConvertBlock(ASource, ADest, ACount);
}
void QVArrayConvert(const uint16_t* ASource, double* ADest, size_t ACount)
{
    ConvertBlock(ASource, ADest, ACount);
}

double QVArrayMin(const double* AData, size_t ACount)
{
    return Extreme<TLess>(AData, ACount, kInf);
}
double QVArrayMax(const double* AData, size_t ACount)
{
    return Extreme<TGreater>(AData, ACount, -kInf);
}

bool QVArrayMinMax(const double* AData, size_t ACount, double& ALo, double& AHi)
{
    double Lo, Hi;
    ReduceBoth<TKeepAll>(AData, ACount, Lo, Hi);
    // The accumulators start at the infinities: an untouched pair is only told apart from
    // real infinite samples by a second look, which then finds a number almost at once.
    if ((Lo == kInf || Hi == -kInf) && !HasNumber(AData, ACount))
        return false;
    ALo = Lo;
    AHi = Hi;
    return true;
}

bool QVArrayFiniteMinMax(const double* AData, size_t ACount, double& ALo, double& AHi)
{
    double Lo, Hi;
    ReduceBoth<TFiniteOnly>(AData, ACount, Lo, Hi);
    // Only finite samples were taken, so an infinite accumulator means none was.
    if (Lo == kInf)
        return false;
    ALo = Lo;
    AHi = Hi;
    return true;
}

void QVArrayExtremes(const double* AData, size_t ACount, double& ALo, double& AHi, double& AFiniteLo, double& AFiniteHi)
{
    ReduceFour(AData, ACount, ALo, AHi, AFiniteLo, AFiniteHi);
}

int32_t QVArrayMin(const int32_t* AData, size_t ACount)
{
    return ExtremeInt<TLess>(AData, ACount, std::numeric_limits<int32_t>::max());
}
int32_t QVArrayMax(const int32_t* AData, size_t ACount)
{
    return ExtremeInt<TGreater>(AData, ACount, std::numeric_limits<int32_t>::min());
}

} // namespace qv
