#pragma once
// The zoom settings of one axis.

#include "qv/component/QVDisplayZoom.h"

#include <memory>

namespace qv {

class TQVDisplayAxis;
class TQVDisplayValueRange;

// The zoom settings of one axis: whether a drag pans it and how wide its zoom window may be.
class TQVDisplayAxisZoom : public TQVBasicDisplayZoom {
public:
    TQVDisplayAxisZoom(TQVDisplayOwner* ADisplay, TQVDisplayAxis* AAxis);
    ~TQVDisplayAxisZoom() override;

    bool GetMousePan() const { return FMousePan; }
    void SetMousePan(bool AValue) { Set(FMousePan, AValue); }
    // The allowed width of the zoom window, in printed units.
    TQVDisplayValueRange* GetRange() const { return FRange.get(); }
    void SetRange(const TQVDisplayValueRange* AValue);

    TQVDisplayAxis* GetAxis() const { return FAxis; }
    bool IsZoomed() const;
    // The axis' zoom window when it is zoomed, its current limits otherwise.
    double GetMin() const;
    double GetMax() const;

    QL_CLASS_INFO()

private:
    bool FMousePan = true;
    std::unique_ptr<TQVDisplayValueRange> FRange;
    TQVDisplayAxis* FAxis;
};

} // namespace qv
