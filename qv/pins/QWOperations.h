#pragma once
// The operations a source pin sends down a connection. A receiver tells them apart by class
// and may test "is a" against a more general class: every start that names a rate is a
// TQWStartRateOperation, every start is a TQWStartOperation. The other operations stand alone,
// so a test in a fixed order finds each one exactly once.

#include "qv/foundation/QVData.h"

#include <cmath>
#include <complex>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace qv {

class TQWOperation {
public:
    virtual ~TQWOperation() = default;
};

// ---- Stream life ----

// A stream begins; the receiver forgets the previous one.
class TQWStartOperation : public TQWOperation {};

// A start that names the stream's sample rate (samples per second). A negative or non-finite
// rate raises std::invalid_argument naming it; 0 is taken (receivers treat it as unknown).
class TQWStartRateOperation : public TQWStartOperation {
public:
    explicit TQWStartRateOperation(double ASampleRate) : FSampleRate(ASampleRate)
    {
        if (!std::isfinite(ASampleRate) || ASampleRate < 0.0)
            throw std::invalid_argument("TQWStartRateOperation: invalid sample rate " + std::to_string(ASampleRate));
    }
    double GetSampleRate() const { return FSampleRate; }

private:
    double FSampleRate;
};

// The stream is a spectrum: its samples are frequency bins of a signal sampled at the rate.
class TQWStartSpectrumOperation : public TQWStartRateOperation {
public:
    using TQWStartRateOperation::TQWStartRateOperation;
};

// The stream is an intensity spectrum.
class TQWStartIntensityOperation : public TQWStartRateOperation {
public:
    using TQWStartRateOperation::TQWStartRateOperation;
};

// The start of a stream of X positions: the rate at which its values follow each other.
class TQWStartSampleRateOperation : public TQWStartRateOperation {
public:
    using TQWStartRateOperation::TQWStartRateOperation;
};

// The stream ends.
class TQWStopOperation : public TQWOperation {};

// The source has no stream to deliver for now: receivers waiting for it should not.
class TQWIgnoreStreamOperation : public TQWOperation {};

// A receiver asks the source of a connection how its stream stands. A source that is not
// streaming answers with a TQWIgnoreStreamOperation.
class TQWQueryStreamOperation : public TQWOperation {};

// ---- Data ----

// A block of samples. The block is shared, never written by a receiver.
class TQWSuppliedBufferOperation : public TQWOperation {
public:
    explicit TQWSuppliedBufferOperation(std::shared_ptr<const IQVData> ABuffer) : FBuffer(std::move(ABuffer)) {}
    const std::shared_ptr<const IQVData>& GetBuffer() const { return FBuffer; }

private:
    std::shared_ptr<const IQVData> FBuffer;
};

// Blocks that belong together, such as X positions and Y values of the same samples.
class TQWSuppliedBufferPairOperation : public TQWOperation {
public:
    explicit TQWSuppliedBufferPairOperation(std::vector<std::shared_ptr<const IQVData>> ABuffers)
        : FBuffers(std::move(ABuffers))
    {}
    const std::vector<std::shared_ptr<const IQVData>>& GetBuffers() const { return FBuffers; }

private:
    std::vector<std::shared_ptr<const IQVData>> FBuffers;
};

// One sample, in the source's own type.
template <class T>
class TQWSuppliedValueOperation : public TQWOperation {
public:
    explicit TQWSuppliedValueOperation(T AValue) : FValue(AValue) {}
    T GetValue() const { return FValue; }

private:
    T FValue;
};

class TQWSuppliedSingleOperation : public TQWSuppliedValueOperation<float> {
public:
    using TQWSuppliedValueOperation::TQWSuppliedValueOperation;
};

class TQWSuppliedRealOperation : public TQWSuppliedValueOperation<double> {
public:
    using TQWSuppliedValueOperation::TQWSuppliedValueOperation;
};

class TQWSuppliedIntegerOperation : public TQWSuppliedValueOperation<int32_t> {
public:
    using TQWSuppliedValueOperation::TQWSuppliedValueOperation;
};

class TQWSuppliedRealComplexOperation : public TQWSuppliedValueOperation<std::complex<double>> {
public:
    using TQWSuppliedValueOperation::TQWSuppliedValueOperation;
};

} // namespace qv
