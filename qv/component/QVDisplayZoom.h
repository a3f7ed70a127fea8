#pragma once
// The zoom settings of a display and of each of its axes.

#include "qv/component/QVDisplayPersistent.h"
#include "qv/component/QVZoomTypes.h"
#include "qv/foundation/QLEnumInfo.h"

#include <memory>

namespace qv {

// Which axes a gesture zooms.
enum TQVDisplayZoomMode : uint8_t { zmBoth, zmXAxis, zmYAxis };

// What the display and its axes share: whether the wheel zooms.
class TQVBasicDisplayZoom : public TQVDisplayPersistent {
public:
    using TQVDisplayPersistent::TQVDisplayPersistent;

    bool GetMouseWheelEnabled() const { return FMouseWheelEnabled; }
    void SetMouseWheelEnabled(bool AValue) { Set(FMouseWheelEnabled, AValue); }

    QL_CLASS_INFO()

private:
    bool FMouseWheelEnabled = true;
};

// The display's zoom settings, and a view of its present zoom window.
class TQVDisplayZoom : public TQVBasicDisplayZoom {
public:
    using TQVBasicDisplayZoom::TQVBasicDisplayZoom;

    // A left drag in the data view zooms.
    bool GetMouseZoom() const { return FMouseZoom; }
    void SetMouseZoom(bool AValue) { Set(FMouseZoom, AValue); }
    bool GetKeyboardZoom() const { return FKeyboardZoom; }
    void SetKeyboardZoom(bool AValue) { Set(FKeyboardZoom, AValue); }
    // The colour of the drag feedback.
    TAlphaColor GetSelectionColor() const { return FSelectionColor; }
    void SetSelectionColor(TAlphaColor AValue) { GetBasicLock().Setter(FSelectionColor, AValue, nullptr, false); }
    // ZoomTo and ZoomToData freeze the display.
    bool GetHoldOnZoom() const { return FHoldOnZoom; }
    void SetHoldOnZoom(bool AValue) { Set(FHoldOnZoom, AValue); }
    // A pan freezes the display.
    bool GetHoldOnPan() const { return FHoldOnPan; }
    void SetHoldOnPan(bool AValue) { Set(FHoldOnPan, AValue); }
    TQVDisplayZoomMode GetMode() const { return FMode; }
    void SetMode(TQVDisplayZoomMode AValue) { Set(FMode, AValue); }

    // The display's main X axis or its main Y axis is zoomed.
    bool IsZoomed() const;
    // The display's present window: an axis' zoom window when it is zoomed, its current
    // limits otherwise.
    double GetXMin() const;
    double GetXMax() const;
    double GetYMin() const;
    double GetYMax() const;

    QL_CLASS_INFO()

private:
    bool FMouseZoom = true;
    bool FKeyboardZoom = true;
    TAlphaColor FSelectionColor = 0xFFFFFFFF;
    bool FHoldOnZoom = true;
    bool FHoldOnPan = false;
    TQVDisplayZoomMode FMode = zmBoth;
};

} // namespace qv

QL_DECLARE_ENUM(qv::TQVDisplayZoomMode, "zmBoth", "zmXAxis", "zmYAxis")
