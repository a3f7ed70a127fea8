#include "qv/foundation/QVBuffers.h"

#include "qv/foundation/QVArrayOps.h"

#include <charconv>
#include <cmath>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

namespace qv {

void QVRaiseIndexError(const char* AOwner, int64_t AIndex, int64_t ASize)
{
    throw std::out_of_range(std::string(AOwner) + ": index " + std::to_string(AIndex) + " out of range (size " +
                            std::to_string(ASize) + ")");
}

namespace {

constexpr const char* kReal = "TQVRealBuffer";
constexpr const char* kInteger = "TQVIntegerBuffer";
constexpr const char* kComplex = "TQVComplexBuffer";
constexpr const char* kBlock = "TQVBlockBuffer";

int32_t CheckedSize(const char* AOwner, uint32_t ASize)
{
    if (ASize > uint32_t(INT32_MAX))
        throw std::length_error(std::string(AOwner) + ": size " + std::to_string(ASize) + " exceeds " +
                                std::to_string(INT32_MAX));
    return static_cast<int32_t>(ASize);
}

void CheckResize(const char* AOwner, int32_t ASize)
{
    if (ASize < 0)
        throw std::invalid_argument(std::string(AOwner) + ": negative size " + std::to_string(ASize));
}

// The element count of a pointer and count pair.
int32_t CheckedCount(const char* AOwner, const void* AData, int64_t ACount)
{
    if (ACount < 0)
        throw std::invalid_argument(std::string(AOwner) + ": negative count " + std::to_string(ACount));
    if (ACount > INT32_MAX)
        throw std::length_error(std::string(AOwner) + ": count " + std::to_string(ACount) + " exceeds " +
                                std::to_string(INT32_MAX));
    if (ACount > 0 && !AData)
        throw std::invalid_argument(std::string(AOwner) + ": null data with count " + std::to_string(ACount));
    return static_cast<int32_t>(ACount);
}

// The number of elements of AFirst..ALast, both included, after checking it lies in the buffer.
size_t CheckedRange(const char* AOwner, int32_t AFirst, int32_t ALast, int32_t ASize)
{
    if (AFirst < 0 || ALast >= ASize || AFirst > ALast)
        throw std::out_of_range(std::string(AOwner) + ": index range " + std::to_string(AFirst) + ".." +
                                std::to_string(ALast) + " out of range (size " + std::to_string(ASize) + ")");
    return static_cast<size_t>(ALast - AFirst) + 1;
}

[[noreturn]] void RaiseKind(const char* AOwner, TQVDataKind AKind)
{
    throw std::invalid_argument(std::string(AOwner) + ": cannot take data of kind " + QVDataKindName(AKind));
}

// Calls AFunc(const T* data, int32_t count) with the element type of a numeric data block
// (every kind but complex and bytes, for which ANonNumeric runs instead).
template <class F, class G>
decltype(auto) VisitNumeric(const char* AOwner, const IQVData& AData, F&& AFunc, G&& ANonNumeric)
{
    const void* P = AData.ReadData();
    const int32_t N = CheckedCount(AOwner, P, AData.GetCount());
    switch (AData.GetDataKind()) {
    case dkReal: return AFunc(static_cast<const double*>(P), N);
    case dkSingle: return AFunc(static_cast<const float*>(P), N);
    case dkInteger: return AFunc(static_cast<const int32_t*>(P), N);
    case dkCardinal: return AFunc(static_cast<const uint32_t*>(P), N);
    case dkInt64: return AFunc(static_cast<const int64_t*>(P), N);
    case dkUInt64: return AFunc(static_cast<const uint64_t*>(P), N);
    case dkSmallInt: return AFunc(static_cast<const int16_t*>(P), N);
    case dkWord: return AFunc(static_cast<const uint16_t*>(P), N);
    default: return ANonNumeric(AData.GetDataKind());
    }
}

std::string NumberText(double AValue)
{
    char Text[32];
    auto Result = std::to_chars(Text, Text + sizeof Text, AValue);
    return std::string(Text, Result.ptr);
}

// One value of any numeric kind as a 32-bit integer, or std::out_of_range.
template <class T>
int32_t ToInteger(T AValue, int32_t AIndex)
{
    if constexpr (std::is_floating_point_v<T>) {
        const double Rounded = std::nearbyint(static_cast<double>(AValue));
        if (Rounded >= -2147483648.0 && Rounded <= 2147483647.0)
            return static_cast<int32_t>(Rounded);
        throw std::out_of_range(std::string(kInteger) + ": value " + NumberText(AValue) + " at index " +
                                std::to_string(AIndex) + " does not fit in 32 bits");
    } else {
        if (std::in_range<int32_t>(AValue))
            return static_cast<int32_t>(AValue);
        throw std::out_of_range(std::string(kInteger) + ": value " + std::to_string(AValue) + " at index " +
                                std::to_string(AIndex) + " does not fit in 32 bits");
    }
}

} // namespace

// ---- TQVRealBuffer ----

TQVRealBuffer::TQVRealBuffer(uint32_t ASize)
{
    FData.Resize(CheckedSize(kReal, ASize), false);
}

TQVRealBuffer::TQVRealBuffer(const IQVRealBuffer& ABuffer) : TQVRealBuffer(static_cast<const IQVData&>(ABuffer))
{}

TQVRealBuffer::TQVRealBuffer(const IQVData& AData)
{
    if (auto* Same = dynamic_cast<const TQVRealBuffer*>(&AData)) {
        FData = Same->FData;
        return;
    }
    VisitNumeric(
        kReal, AData, [this](const auto* P, int32_t N) { ConvertFrom(P, N); },
        [](TQVDataKind AKind) { RaiseKind(kReal, AKind); });
}

template <class T>
void TQVRealBuffer::ConvertFrom(const T* AData, int64_t ACount)
{
    FData = TQVSharedArray<double>::ForOverwrite(CheckedCount(kReal, AData, ACount));
    QVArrayConvert(AData, FData.Write(), FData.GetSize());
}

TQVRealBuffer::TQVRealBuffer(const double* AData, int64_t ACount)
{
    ConvertFrom(AData, ACount);
}
TQVRealBuffer::TQVRealBuffer(const float* AData, int64_t ACount)
{
    ConvertFrom(AData, ACount);
}
TQVRealBuffer::TQVRealBuffer(const int32_t* AData, int64_t ACount)
{
    ConvertFrom(AData, ACount);
}
TQVRealBuffer::TQVRealBuffer(const uint32_t* AData, int64_t ACount)
{
    ConvertFrom(AData, ACount);
}
TQVRealBuffer::TQVRealBuffer(const int64_t* AData, int64_t ACount)
{
    ConvertFrom(AData, ACount);
}
TQVRealBuffer::TQVRealBuffer(const uint64_t* AData, int64_t ACount)
{
    ConvertFrom(AData, ACount);
}
TQVRealBuffer::TQVRealBuffer(const int16_t* AData, int64_t ACount)
{
    ConvertFrom(AData, ACount);
}
TQVRealBuffer::TQVRealBuffer(const uint16_t* AData, int64_t ACount)
{
    ConvertFrom(AData, ACount);
}

double TQVRealBuffer::Min() const
{
    return QVArrayMin(Read(), size_t(GetSize()));
}
double TQVRealBuffer::Max() const
{
    return QVArrayMax(Read(), size_t(GetSize()));
}

// ---- TQVForeignRealBuffer ----

TQVForeignRealBuffer::TQVForeignRealBuffer(const double* AData, int32_t ACount, std::shared_ptr<const void> AOwner)
    : FData(AData), FCount(ACount), FOwner(std::move(AOwner))
{
    if (ACount < 0)
        throw std::invalid_argument("TQVForeignRealBuffer: negative count " + std::to_string(ACount));
    if (ACount > 0 && !AData)
        throw std::invalid_argument("TQVForeignRealBuffer: null data with count " + std::to_string(ACount));
}

TQVRealBuffer& TQVForeignRealBuffer::Own()
{
    if (!FOwn) {
        FOwn = std::make_unique<TQVRealBuffer>(FData, FCount);
        FData = nullptr;
        FCount = 0;
        FOwner.reset();
    }
    return *FOwn;
}

void TQVForeignRealBuffer::Resize(int32_t ASize, bool AKeepContent)
{
    if (ASize < 0)
        throw std::invalid_argument("TQVForeignRealBuffer: negative size " + std::to_string(ASize));
    Own().Resize(ASize, AKeepContent);
}

double* TQVForeignRealBuffer::Write()
{
    return Own().Write();
}

double TQVForeignRealBuffer::GetItem(int32_t AIndex) const
{
    if (AIndex < 0 || AIndex >= GetSize())
        QVRaiseIndexError("TQVForeignRealBuffer", AIndex, GetSize());
    return Read()[AIndex];
}

void TQVForeignRealBuffer::SetItem(int32_t AIndex, double AValue)
{
    if (AIndex < 0 || AIndex >= GetSize())
        QVRaiseIndexError("TQVForeignRealBuffer", AIndex, GetSize());
    Own().SetItem(AIndex, AValue);
}

double TQVForeignRealBuffer::Min() const
{
    return QVArrayMin(Read(), size_t(GetSize()));
}

double TQVForeignRealBuffer::Max() const
{
    return QVArrayMax(Read(), size_t(GetSize()));
}

namespace {
void CheckForeignRange(int32_t AFirst, int32_t ALast, int32_t ASize)
{
    if (AFirst < 0 || ALast >= ASize || AFirst > ALast)
        throw std::out_of_range("TQVForeignRealBuffer: index range " + std::to_string(AFirst) + ".." +
                                std::to_string(ALast) + " out of range (size " + std::to_string(ASize) + ")");
}
} // namespace

double TQVForeignRealBuffer::Min(int32_t AFirst, int32_t ALast) const
{
    CheckForeignRange(AFirst, ALast, GetSize());
    return QVArrayMin(Read() + AFirst, size_t(ALast - AFirst + 1));
}

double TQVForeignRealBuffer::Max(int32_t AFirst, int32_t ALast) const
{
    CheckForeignRange(AFirst, ALast, GetSize());
    return QVArrayMax(Read() + AFirst, size_t(ALast - AFirst + 1));
}

// ---- What the real and integer buffers share ----

template <>
const char* TQVNumberBuffer<IQVRealBuffer, double>::Name()
{
    return kReal;
}
template <>
const char* TQVNumberBuffer<IQVIntegerBuffer, int32_t>::Name()
{
    return kInteger;
}

template <class TInterface, class T>
void TQVNumberBuffer<TInterface, T>::Resize(int32_t ASize, bool AKeepContent)
{
    CheckResize(Name(), ASize);
    FData.Resize(ASize, AKeepContent);
}

template <class TInterface, class T>
T TQVNumberBuffer<TInterface, T>::Min(int32_t AFirst, int32_t ALast) const
{
    return QVArrayMin(Read() + AFirst, CheckedRange(Name(), AFirst, ALast, GetSize()));
}

template <class TInterface, class T>
T TQVNumberBuffer<TInterface, T>::Max(int32_t AFirst, int32_t ALast) const
{
    return QVArrayMax(Read() + AFirst, CheckedRange(Name(), AFirst, ALast, GetSize()));
}

template class TQVNumberBuffer<IQVRealBuffer, double>;
template class TQVNumberBuffer<IQVIntegerBuffer, int32_t>;

// ---- TQVIntegerBuffer ----

TQVIntegerBuffer::TQVIntegerBuffer(uint32_t ASize)
{
    FData.Resize(CheckedSize(kInteger, ASize), false);
}

TQVIntegerBuffer::TQVIntegerBuffer(const IQVIntegerBuffer& ABuffer)
    : TQVIntegerBuffer(static_cast<const IQVData&>(ABuffer))
{}

TQVIntegerBuffer::TQVIntegerBuffer(const IQVData& AData)
{
    if (auto* Same = dynamic_cast<const TQVIntegerBuffer*>(&AData)) {
        FData = Same->FData;
        return;
    }
    VisitNumeric(
        kInteger, AData,
        [this](const auto* P, int32_t N) {
            // Fill a fresh block and take it only when every value fitted.
            auto Fresh = TQVSharedArray<int32_t>::ForOverwrite(N);
            int32_t* D = Fresh.Write();
            for (int32_t i = 0; i < N; ++i)
                D[i] = ToInteger(P[i], i);
            FData = std::move(Fresh);
        },
        [](TQVDataKind AKind) { RaiseKind(kInteger, AKind); });
}

TQVIntegerBuffer::TQVIntegerBuffer(const int32_t* AData, int64_t ACount)
{
    FData = TQVSharedArray<int32_t>::ForOverwrite(CheckedCount(kInteger, AData, ACount));
    std::copy_n(AData, FData.GetSize(), FData.Write());
}

// An empty buffer fails the range check of 0..-1.
int32_t TQVIntegerBuffer::Min() const
{
    return Min(0, GetSize() - 1);
}
int32_t TQVIntegerBuffer::Max() const
{
    return Max(0, GetSize() - 1);
}

// ---- TQVComplexBuffer ----

TQVComplexBuffer::TQVComplexBuffer(uint32_t ASize)
{
    FData.Resize(CheckedSize(kComplex, ASize), false);
}

TQVComplexBuffer::TQVComplexBuffer(const IQVData& AData)
{
    if (auto* Same = dynamic_cast<const TQVComplexBuffer*>(&AData)) {
        FData = Same->FData;
        return;
    }
    if (AData.GetDataKind() == dkComplex) {
        const void* P = AData.ReadData();
        *this = TQVComplexBuffer(static_cast<const std::complex<double>*>(P), AData.GetCount());
        return;
    }
    VisitNumeric(
        kComplex, AData,
        [this](const auto* P, int32_t N) {
            FData = TQVSharedArray<std::complex<double>>::ForOverwrite(N);
            std::complex<double>* D = FData.Write();
            for (int32_t i = 0; i < N; ++i)
                D[i] = std::complex<double>(static_cast<double>(P[i]), 0.0);
        },
        [](TQVDataKind AKind) { RaiseKind(kComplex, AKind); });
}

TQVComplexBuffer::TQVComplexBuffer(const std::complex<double>* AData, int64_t ACount)
{
    FData = TQVSharedArray<std::complex<double>>::ForOverwrite(CheckedCount(kComplex, AData, ACount));
    std::copy_n(AData, FData.GetSize(), FData.Write());
}

void TQVComplexBuffer::Resize(int32_t ASize, bool AKeepContent)
{
    CheckResize(kComplex, ASize);
    FData.Resize(ASize, AKeepContent);
}

std::shared_ptr<IQVRealBuffer> TQVComplexBuffer::Part(int AWhich) const
{
    const int32_t N = GetSize();
    auto Result = std::make_shared<TQVRealBuffer>(static_cast<uint32_t>(N));
    // std::complex<double> is laid out as double[2], real part first.
    const double* S = reinterpret_cast<const double*>(Read());
    double* D = Result->Write();
    for (int32_t i = 0; i < N; ++i)
        D[i] = S[2 * i + AWhich];
    return Result;
}

std::shared_ptr<IQVRealBuffer> TQVComplexBuffer::GetRealPart() const
{
    return Part(0);
}
std::shared_ptr<IQVRealBuffer> TQVComplexBuffer::GetImaginaryPart() const
{
    return Part(1);
}

// ---- TQVBlockBuffer ----

TQVBlockBuffer::TQVBlockBuffer(uint32_t ASize)
{
    FData.Resize(CheckedSize(kBlock, ASize), false);
}

void TQVBlockBuffer::Resize(int32_t ASize, bool AKeepContent)
{
    CheckResize(kBlock, ASize);
    FData.Resize(ASize, AKeepContent);
}

} // namespace qv
