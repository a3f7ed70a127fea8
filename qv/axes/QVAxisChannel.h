#pragma once
// What the scope's axes read of the channels drawn against them: which axes a channel uses,
// whether it shows, its domain, its sample rate and its draw stage. Channels implement it;
// a chart lists its channels through IQVAxisChannelSource, so that axes never depend on the
// channel classes built on top of them.

#include "qv/foundation/QVBuffers.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace qv {

class TQVBasicScopeXAxis;
class TQVBasicScopeYAxis;

class IQVAxisChannel {
public:
    virtual ~IQVAxisChannel() = default;

    // The axes the channel is drawn against; null before they are resolved.
    virtual TQVBasicScopeXAxis* GetXAxis() const = 0;
    virtual TQVBasicScopeYAxis* GetYAxis() const = 0;
    virtual bool GetVisible() const = 0;
    virtual bool GetFrequencyDomain() const = 0;
    virtual bool GetIntensityDomain() const = 0;
    virtual bool GetInAxisDomain() const = 0;
    // The sample rate of the data the channel takes.
    virtual double GetAxisSampleRate() const = 0;
    // The draw stage: the samples of the last hand-over, whether X is an even ramp, and a
    // number that changes whenever the draw buffers do.
    virtual const std::shared_ptr<IQVRealBuffer>& GetXDrawDataBuffer() const = 0;
    virtual const std::shared_ptr<IQVRealBuffer>& GetYDrawDataBuffer() const = 0;
    virtual bool GetDrawIsRamp() const = 0;
    virtual uint64_t GetDrawGeneration() const = 0;
    // The extremes of the draw stage's Y samples AFirst to AEnd - 1 (finite ones only with
    // AFinite); false when there are none.
    virtual bool GetDrawYExtremes(int32_t AFirst, int32_t AEnd, bool AFinite, double& ALo, double& AHi) const = 0;
};

// A display whose axes have channels drawn against them.
class IQVAxisChannelSource {
public:
    virtual ~IQVAxisChannelSource() = default;
    // Every channel, first to last.
    virtual std::vector<IQVAxisChannel*> GetAxisChannels() const = 0;
};

} // namespace qv
