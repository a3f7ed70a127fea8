#pragma once
// The Y axes of every display: they run across the display (left to right on a turned
// display) and measure their own strip rather than the data view.

#include "qv/axes/QVDisplayAxis.h"
#include "qv/axes/QVScaleModeAxis.h"

namespace qv {

class TQVBasicDisplayYAxis : public TQVDisplayAxis {
public:
    TQVBasicDisplayYAxis(TQVDisplayOwner* ADisplay, TQVViewAlign AAlign = vaLeft);
    ~TQVBasicDisplayYAxis() override;

    // ---- Orientation: across the display ----
    bool GetIsYAxis() const override { return true; }
    bool GetIsVertical() const override;
    bool GetIsOposite() const override { return GetIsReversed() != !GetIsVertical(); }
    TQVAxisDirection GetDefaultHorizDir() const override { return adToLeft; }
    TQVAxisDirection GetDefaultVertDir() const override { return adToUp; }
    TQVViewScreenAlign GetScreenAlign() const override;

    // ---- Geometry ----
    // The strip's own height, or its width on a turned display.
    int32_t GetDimentionLength() const override;
    // Half a line height plus 4 at both ends.
    int32_t GetDefaultOffsetBegin() const override;
    int32_t GetDefaultOffsetEnd() const override { return GetDefaultOffsetBegin(); }

    const TPoint& GetOldMousePos() const { return FOldMousePos; }

    QL_CLASS_INFO()

protected:
    TPoint FOldMousePos{0, 0};
};

class TQVDisplayYAxis : public TQVScaleModeAxis<TQVBasicDisplayYAxis> {
public:
    using TQVScaleModeAxis<TQVBasicDisplayYAxis>::TQVScaleModeAxis;

    QL_CLASS_INFO()
};

} // namespace qv
