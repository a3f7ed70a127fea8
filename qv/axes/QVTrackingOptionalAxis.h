#pragma once
// The second level of every axis strip: it walks the ticks of a scale and draws one tick, and
// it marks on the strip where the mouse is while the mouse is over the plot.
//
// The walk turns values into pixels itself, in single precision, with an offset and a factor
// handed in (GetScaleInfo of a display axis gives them), and calls a per-tick function for
// every tick it accepts. The axis strip draws lines and texts with it; grids hand in their own
// function. Two walks exist: UpTickLines for an axis whose pixels fall as values rise (a plain
// Y axis) and DownTickLines for one whose pixels rise (a plain X axis). Each walks away from
// zero in both directions, or from a given start, and keeps ticks at least a text length
// apart.

#include "qv/axes/QVOptionalAxis.h"

#include <functional>
#include <memory>
#include <string>

namespace qv {

class TQVTrackingOptionalAxis;
class TQVDisplayGridDirectionalLinesSettings;

// One tick of a walk: AZero when the value counts as zero, AHalfLength half the text length,
// AMinor for a minor tick, the tick's value and its pixel along the axis.
using TQVAxisTickProc = std::function<void(TQVTrackingOptionalAxis* AAxis, TQLCanvas& ACanvas, bool AZero,
                                           int32_t AHalfLength, bool AMinor, double AValue, int32_t APosition)>;

class TQVTrackingOptionalAxis : public TQVOptionalAxis {
public:
    TQVTrackingOptionalAxis(TQVDisplayOwner* ADisplay, TQVViewAlign AAlign);
    ~TQVTrackingOptionalAxis() override;

    // ---- Settings ----
    // A short line on the strip opposite the mouse while the mouse is over the plot.
    bool GetTrackCursor() const { return FTrackCursor; }
    void SetTrackCursor(bool AValue);
    TAlphaColor GetTrackColor() const { return FTrackColor; }
    void SetTrackColor(TAlphaColor AValue);
    TQVMajorTicks* GetMajorTicks() const { return FMajorTicks.get(); }
    void SetMajorTicks(const TQVMajorTicks* AValue) { FMajorTicks->Assign(AValue); }
    TQVMinorTicks* GetMinorTicks() const { return FMinorTicks.get(); }
    void SetMinorTicks(const TQVMinorTicks* AValue) { FMinorTicks->Assign(AValue); }
    void SetOnCustomStep(TQVCustomStepEvent AHandler) { FOnCustomStep = std::move(AHandler); }
    const TQVCustomStepEvent& GetOnCustomStep() const { return FOnCustomStep; }
    // The mouse is inside the control.
    bool GetMouseIsIn() const { return FMouseIsIn; }

    // ---- Virtual operations ----
    // Distance between the strip's inner edge and its base line.
    virtual int32_t GetAxesSpaceOffset() const { return 3; }
    // The text of a tick: the shortest of up to six significant digits.
    virtual std::string GetTickText(double AValue) const;
    // The major step in force.
    virtual double GetStep() = 0;
    // The tick font changed: the strip's size depends on it.
    virtual void FontChanged();
    // Whether the axis runs up and down the screen.
    virtual bool GetIsVertical() const = 0;
    virtual TQVScaleMode GetScaleMode() const { return GetIntScaleMode(); }
    // Strips that are not display axes are never reversed.
    virtual bool GetIsReversedDirect() const { return false; }
    virtual bool GetIsReversed() const { return false; }
    virtual TQVAxisDirection GetDefaultHorizDir() const { return adToRight; }
    virtual TQVAxisDirection GetDefaultVertDir() const { return adToDown; }
    // The default direction of the axis' orientation, turned round when reversed.
    virtual TQVAxisDirection GetDirection() const;
    // The grid lines the axis draws across the data view at its ticks; none by default.
    virtual const TQVDisplayGridDirectionalLinesSettings* GetViewGridOptions() const { return nullptr; }

    // ---- Tick walks ----
    void UpTickLines(TQVTrackingOptionalAxis* AAxis, const TQVAxisTickProc& ATickProc, bool AFromEnd,
                     TQLCanvas& ACanvas, int32_t ATextLength, bool ADrawAll, double AMin, double AMax, double AOffset,
                     double AScale, bool ADecascaleAll);
    void DownTickLines(TQVTrackingOptionalAxis* AAxis, const TQVAxisTickProc& ATickProc, bool AFromEnd,
                       TQLCanvas& ACanvas, int32_t ATextLength, bool ADrawAll, double AMin, double AMax, double AOffset,
                       double AScale, bool ADecascaleAll);

    // ---- Drawing ----
    // The strip's per-tick function: text and a line for a major tick, a shorter line for a
    // minor one, on the side of the strip that faces the data.
    void DrawTick(TQVTrackingOptionalAxis* AAxis, TQLCanvas& ACanvas, bool AZero, int32_t AHalfLength, bool AMinor,
                  double AValue, int32_t APosition);
    // DrawTick bound to this axis, for handing to a walk.
    TQVAxisTickProc GetDrawTickProc();
    // The track line, ASize pixels deep into the strip, opposite the last mouse position;
    // nothing while that position is outside the plot.
    virtual void DrawMouseMarker(TQLCanvas& ACanvas, int32_t ASize);

    // ---- Mouse ----
    // Remembers the pointer (in control coordinates) for the track line.
    void MouseMove(TShiftState AShift, int32_t AX, int32_t AY, bool& AHandled) override;
    void MouseEnter() override;
    void MouseLeave() override;

    QL_CLASS_INFO()

protected:
    bool FTrackCursor = true;
    TAlphaColor FTrackColor = 0xFFFF0000;
    bool FMouseIsIn = false;
    TQVCustomStepEvent FOnCustomStep;
    // Depth of the track line; set by the strip's size computation, which is a const query.
    mutable int32_t FTrackSize = 0;

private:
    struct TTickWalk;
    // The two walks of UpTickLines (AUpLines) or DownTickLines.
    void WalkTickLines(bool AUpLines, TQVTrackingOptionalAxis* AAxis, const TQVAxisTickProc& ATickProc, bool AFromEnd,
                       TQLCanvas& ACanvas, int32_t ATextLength, bool ADrawAll, double AMin, double AMax, double AOffset,
                       double AScale, bool ADecascaleAll);
    // One walk from ACur in one value direction. APixelsRise: pixels grow as the walk goes on.
    // ATopTest: 0 none; 1 a tick's pixel must be at least that of the maximum, -1 at most.
    void Walk(TTickWalk& AWalk, double& ACur, const double& AMinorValue, bool AAscending, bool APixelsRise,
              int32_t ATopTest);
    void DrawMinorTicks(TTickWalk& AWalk, int64_t APrev, int32_t APosition, double AValue);

    std::unique_ptr<TQVMajorTicks> FMajorTicks;
    std::unique_ptr<TQVMinorTicks> FMinorTicks;
};

} // namespace qv
