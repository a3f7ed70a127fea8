#pragma once
// The generic form of a block of samples: what kind of element it holds, how many, and where
// they are. Pins and other producers hand data over as an IQVData; the buffer classes take
// any IQVData and either share its samples (when it is one of their own kind) or convert.

#include <complex>
#include <cstdint>
#include <string>
#include <type_traits>

namespace qv {

// Element kind of a data block. The names follow the element types: Real = double,
// Single = float, Integer = int32_t, Cardinal = uint32_t, SmallInt = int16_t, Word = uint16_t.
enum TQVDataKind : uint8_t {
    dkReal,
    dkSingle,
    dkInteger,
    dkCardinal,
    dkInt64,
    dkUInt64,
    dkSmallInt,
    dkWord,
    dkComplex,  // std::complex<double>: pairs of doubles, real part first
    dkByte,     // raw bytes, no numeric meaning
    dkAxisState // no samples: the zoom state of an axis, passed between displays
};

// "dkReal", "dkComplex", ...; an unknown value gives "kind <number>".
std::string QVDataKindName(TQVDataKind AKind);

// The kind that describes elements of type T; only the element types above have one.
template <class T>
inline constexpr bool QVHasDataKind =
    std::is_same_v<T, double> || std::is_same_v<T, float> || std::is_same_v<T, int32_t> ||
    std::is_same_v<T, uint32_t> || std::is_same_v<T, int64_t> || std::is_same_v<T, uint64_t> ||
    std::is_same_v<T, int16_t> || std::is_same_v<T, uint16_t> || std::is_same_v<T, std::complex<double>> ||
    std::is_same_v<T, uint8_t>;

template <class T>
requires QVHasDataKind<T>
inline constexpr TQVDataKind QVDataKindOf = std::is_same_v<T, double>     ? dkReal
                                            : std::is_same_v<T, float>    ? dkSingle
                                            : std::is_same_v<T, int32_t>  ? dkInteger
                                            : std::is_same_v<T, uint32_t> ? dkCardinal
                                            : std::is_same_v<T, int64_t>  ? dkInt64
                                            : std::is_same_v<T, uint64_t> ? dkUInt64
                                            : std::is_same_v<T, int16_t>  ? dkSmallInt
                                            : std::is_same_v<T, uint16_t> ? dkWord
                                            : std::is_same_v<T, uint8_t>  ? dkByte
                                                                          : dkComplex;

// A block of GetCount() elements of GetDataKind() at ReadData(). ReadData() may be null only
// when the count is 0. The pointer stays valid while the object lives and is not changed.
class IQVData {
public:
    virtual ~IQVData() = default;
    virtual TQVDataKind GetDataKind() const = 0;
    virtual int32_t GetCount() const = 0;
    virtual const void* ReadData() const = 0;
};

// A non-owning IQVData over memory the caller keeps alive, e.g. to hand a plain array to
// a buffer constructor that takes an IQVData.
class TQVDataRef final : public IQVData {
public:
    // Raises std::invalid_argument for a negative count, or a null pointer with a count.
    template <class T>
    requires QVHasDataKind<T> TQVDataRef(const T* AData, int32_t ACount)
        : FKind(QVDataKindOf<T>), FData(AData), FCount(ACount)
    {
        Check();
    }

    TQVDataKind GetDataKind() const override { return FKind; }
    int32_t GetCount() const override { return FCount; }
    const void* ReadData() const override { return FData; }

private:
    void Check() const;

    TQVDataKind FKind;
    const void* FData;
    int32_t FCount;
};

} // namespace qv
