#pragma once
// Sample buffers with shared storage. Copying a buffer, or building one from another buffer of
// the same class, shares the samples; the first holder that writes (Write, SetItem, Resize
// that grows or clears) gets a private copy while others still hold them. Read never copies,
// so a buffer handed to another thread or kept in a history costs no copy.
//
// A buffer object is not guarded; its holder serialises access to it. Two buffer objects that
// share samples may be used from different threads.
//
// Interfaces are held by std::shared_ptr; the QVCreate... functions build one.

#include "qv/foundation/QVData.h"
#include "qv/foundation/QVSharedArray.h"

#include <complex>
#include <cstdint>
#include <memory>
#include <utility>

namespace qv {

// Errors, common to every buffer:
//  - an index outside 0..size-1, or an index range first..last that is not within it
//    (first > last included), raises std::out_of_range naming the indices;
//  - a negative size or count, or a null pointer with a non-zero count, raises
//    std::invalid_argument; a size above INT32_MAX raises std::length_error;
//  - data of a kind a buffer cannot hold raises std::invalid_argument naming the kind.

// What the real and integer buffer interfaces share: samples of type T.
template <class T, TQVDataKind AKind>
class IQVNumberBuffer : public IQVData {
public:
    // Number of samples; GetCount() is the same.
    virtual int32_t GetSize() const = 0;
    // With AKeepContent the first samples stay and new ones are 0; without it every sample is 0.
    virtual void Resize(int32_t ASize, bool AKeepContent) = 0;
    // The samples for reading; null when there are none. Stays valid until the next
    // Write, SetItem or Resize on this object.
    virtual const T* Read() const = 0;
    // The samples for writing; separates this object from other holders first.
    virtual T* Write() = 0;
    virtual T GetItem(int32_t AIndex) const = 0;
    virtual void SetItem(int32_t AIndex, T AValue) = 0;
    // Extremes of all samples, or of AFirst..ALast with both ends included.
    virtual T Min() const = 0;
    virtual T Max() const = 0;
    virtual T Min(int32_t AFirst, int32_t ALast) const = 0;
    virtual T Max(int32_t AFirst, int32_t ALast) const = 0;

    TQVDataKind GetDataKind() const override { return AKind; }
    int32_t GetCount() const override { return GetSize(); }
    const void* ReadData() const override { return Read(); }
};

// Real samples. NaN samples are missing values that Min and Max skip; with no number among
// the samples the result is NaN.
class IQVRealBuffer : public IQVNumberBuffer<double, dkReal> {};

// Integer samples. An empty buffer or range has no extremes: Min and Max raise
// std::out_of_range.
class IQVIntegerBuffer : public IQVNumberBuffer<int32_t, dkInteger> {};

// The storage and the operations the real and integer buffers share; TInterface is the
// interface implemented, T its sample type. The operations raise errors naming AName.
template <class TInterface, class T>
class TQVNumberBuffer : public TInterface {
public:
    int32_t GetSize() const override { return FData.GetSize(); }
    void Resize(int32_t ASize, bool AKeepContent) override;
    const T* Read() const override { return FData.Read(); }
    T* Write() override { return FData.Write(); }
    T GetItem(int32_t AIndex) const override { return FData.Get(AIndex, Name()); }
    void SetItem(int32_t AIndex, T AValue) override { FData.Set(AIndex, AValue, Name()); }
    using TInterface::Max;
    using TInterface::Min;
    T Min(int32_t AFirst, int32_t ALast) const override;
    T Max(int32_t AFirst, int32_t ALast) const override;

protected:
    static const char* Name();

    TQVSharedArray<T> FData;
};

class TQVRealBuffer : public TQVNumberBuffer<IQVRealBuffer, double> {
public:
    TQVRealBuffer() = default;
    // ASize zero samples.
    explicit TQVRealBuffer(uint32_t ASize);
    // Shares the samples of a TQVRealBuffer; copies those of any other implementation.
    explicit TQVRealBuffer(const IQVRealBuffer& ABuffer);
    // Shares real data held by a TQVRealBuffer, copies other real data, converts the numeric
    // kinds; complex and byte data raise std::invalid_argument.
    explicit TQVRealBuffer(const IQVData& AData);
    // A converted copy of ACount elements.
    TQVRealBuffer(const double* AData, int64_t ACount);
    TQVRealBuffer(const float* AData, int64_t ACount);
    TQVRealBuffer(const int32_t* AData, int64_t ACount);
    TQVRealBuffer(const uint32_t* AData, int64_t ACount);
    TQVRealBuffer(const int64_t* AData, int64_t ACount);
    TQVRealBuffer(const uint64_t* AData, int64_t ACount);
    TQVRealBuffer(const int16_t* AData, int64_t ACount);
    TQVRealBuffer(const uint16_t* AData, int64_t ACount);

    using TQVNumberBuffer::Max;
    using TQVNumberBuffer::Min;
    double Min() const override;
    double Max() const override;

private:
    template <class T>
    void ConvertFrom(const T* AData, int64_t ACount);
};

// Real samples in memory the buffer does not own and never writes: a block of doubles that
// the caller keeps, such as a memory-mapped file, read in place without a copy. AOwner, when
// given, is held for as long as this buffer reads the memory (a mapping object that unmaps
// when it goes, say); otherwise the caller keeps the memory alive and unchanged while any
// buffer reads it. Reading costs nothing per sample. The first write (Write, SetItem,
// Resize) separates the buffer as any buffer does: it then holds a private copy of the
// samples and lets the foreign memory go; the memory itself is never written.
class TQVForeignRealBuffer final : public IQVRealBuffer {
public:
    // ACount doubles at AData. A negative count, or a null pointer with a count, raises
    // std::invalid_argument naming it.
    TQVForeignRealBuffer(const double* AData, int32_t ACount, std::shared_ptr<const void> AOwner = nullptr);

    int32_t GetSize() const override { return FOwn ? FOwn->GetSize() : FCount; }
    void Resize(int32_t ASize, bool AKeepContent) override;
    const double* Read() const override { return FOwn ? FOwn->Read() : FData; }
    double* Write() override;
    double GetItem(int32_t AIndex) const override;
    void SetItem(int32_t AIndex, double AValue) override;
    double Min() const override;
    double Max() const override;
    double Min(int32_t AFirst, int32_t ALast) const override;
    double Max(int32_t AFirst, int32_t ALast) const override;

    // Whether the samples are still the foreign memory (no write separated them yet).
    bool GetIsForeign() const { return !FOwn; }
    // What keeps the foreign memory alive; null once separated or when none was given.
    const std::shared_ptr<const void>& GetOwner() const { return FOwner; }

private:
    // Takes a private copy of the samples: the first write's separation.
    TQVRealBuffer& Own();

    const double* FData;
    int32_t FCount;
    std::shared_ptr<const void> FOwner;
    std::unique_ptr<TQVRealBuffer> FOwn;
};

class TQVIntegerBuffer : public TQVNumberBuffer<IQVIntegerBuffer, int32_t> {
public:
    TQVIntegerBuffer() = default;
    explicit TQVIntegerBuffer(uint32_t ASize);
    explicit TQVIntegerBuffer(const IQVIntegerBuffer& ABuffer);
    // Shares integer data held by a TQVIntegerBuffer and copies other integer data. Other
    // integer kinds convert when every value fits in 32 bits; real kinds round to nearest,
    // ties to even. A value that does not fit (NaN and infinities included) raises
    // std::out_of_range naming the value and its index, rather than losing it.
    explicit TQVIntegerBuffer(const IQVData& AData);
    TQVIntegerBuffer(const int32_t* AData, int64_t ACount);

    using TQVNumberBuffer::Max;
    using TQVNumberBuffer::Min;
    int32_t Min() const override;
    int32_t Max() const override;
};

// Complex samples, each a pair of doubles (real, imaginary).
class TQVComplexBuffer : public IQVData {
public:
    TQVComplexBuffer() = default;
    explicit TQVComplexBuffer(uint32_t ASize);
    // Shares complex data held by a TQVComplexBuffer and copies other complex data; numeric
    // kinds become the real parts, with imaginary parts 0. Byte data raises
    // std::invalid_argument.
    explicit TQVComplexBuffer(const IQVData& AData);
    TQVComplexBuffer(const std::complex<double>* AData, int64_t ACount);

    int32_t GetSize() const { return FData.GetSize(); }
    void Resize(int32_t ASize, bool AKeepContent);
    const std::complex<double>* Read() const { return FData.Read(); }
    std::complex<double>* Write() { return FData.Write(); }
    std::complex<double> GetItem(int32_t AIndex) const { return FData.Get(AIndex, "TQVComplexBuffer"); }
    void SetItem(int32_t AIndex, std::complex<double> AValue) { FData.Set(AIndex, AValue, "TQVComplexBuffer"); }
    // New real buffers holding the real and the imaginary parts.
    std::shared_ptr<IQVRealBuffer> GetRealPart() const;
    std::shared_ptr<IQVRealBuffer> GetImaginaryPart() const;

    TQVDataKind GetDataKind() const override { return dkComplex; }
    int32_t GetCount() const override { return GetSize(); }
    const void* ReadData() const override { return Read(); }

private:
    std::shared_ptr<IQVRealBuffer> Part(int AWhich) const;

    TQVSharedArray<std::complex<double>> FData;
};

// Raw bytes with the same sharing rules; new bytes are 0.
class TQVBlockBuffer : public IQVData {
public:
    explicit TQVBlockBuffer(uint32_t ASize = 0);

    int32_t GetSize() const { return FData.GetSize(); }
    void Resize(int32_t ASize, bool AKeepContent);
    const uint8_t* Read() const { return FData.Read(); }
    uint8_t* Write() { return FData.Write(); }

    TQVDataKind GetDataKind() const override { return dkByte; }
    int32_t GetCount() const override { return GetSize(); }
    const void* ReadData() const override { return Read(); }

private:
    TQVSharedArray<uint8_t> FData;
};

// Factories: any argument list of the matching constructor.
template <class... TArgs>
std::shared_ptr<IQVRealBuffer> QVCreateRealBuffer(TArgs&&... AArgs)
{
    return std::make_shared<TQVRealBuffer>(std::forward<TArgs>(AArgs)...);
}
template <class... TArgs>
std::shared_ptr<IQVIntegerBuffer> QVCreateIntegerBuffer(TArgs&&... AArgs)
{
    return std::make_shared<TQVIntegerBuffer>(std::forward<TArgs>(AArgs)...);
}
template <class... TArgs>
std::shared_ptr<TQVComplexBuffer> QVCreateComplexBuffer(TArgs&&... AArgs)
{
    return std::make_shared<TQVComplexBuffer>(std::forward<TArgs>(AArgs)...);
}
inline std::shared_ptr<TQVBlockBuffer> QVCreateBlockBuffer(uint32_t ASize = 0)
{
    return std::make_shared<TQVBlockBuffer>(ASize);
}

} // namespace qv
