#pragma once
// An axis that keeps its own scale mode: linear, logarithmic or decascale. A new mode
// recomputes every limit and the step. The X and Y display axes both add it to their base.

#include "qv/axes/QVAxisTypes.h"

namespace qv {

template <class TBase>
class TQVScaleModeAxis : public TBase {
public:
    using TBase::TBase;

    TQVScaleMode GetScaleMode() const override { return FScaleMode; }
    void SetScaleMode(TQVScaleMode AValue) { SetIntScaleMode(AValue); }
    TQVScaleMode GetIntScaleMode() const override { return FScaleMode; }
    void SetIntScaleMode(TQVScaleMode AValue) override
    {
        this->Set(FScaleMode, AValue, [this] {
            this->InvalidateMinMaxCache(true);
            this->InvalidateStep();
        });
    }

private:
    TQVScaleMode FScaleMode = smLinear;
};

} // namespace qv
