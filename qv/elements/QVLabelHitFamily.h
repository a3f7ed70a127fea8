#pragma once
// The scope's text labels as a family of the data view's hit chain: the topmost label under
// the mouse lights up while labels highlight from the mouse. Labels are not dragged.

#include "qv/channels/QVDataViewHitFamily.h"

namespace qv {

class TQVScopeTextLabels;

class TQVLabelHitFamily : public IQVDataViewHitFamily {
public:
    // The family asks ALabels, which it does not own.
    explicit TQVLabelHitFamily(TQVScopeTextLabels* ALabels) : FLabels(ALabels) {}

    // A label has no mouse cursor of its own: the display's stays shown.
    bool HitTest(TQVHighlightInfo& AInfo, int32_t X, int32_t Y, const TRect& ARect, TQVElementHit& AHit) override;

private:
    TQVScopeTextLabels* FLabels;
};

} // namespace qv
