#pragma once
// How a channel is plotted: the plot modes, the base of bars, and the point symbols drawn at
// the samples (TQVScopePoints).

#include "qv/foundation/QLEnumInfo.h"
#include "qv/foundation/QLPersistent.h"
#include "qv/foundation/QVDisplayBrush.h"
#include "qv/foundation/QVDisplayPen.h"
#include "qv/foundation/QVMarkerShapes.h"

#include <memory>

namespace qv {

class TQLCanvas;

// A polyline, a staircase, a bar per sample, or a pixel per sample.
enum TQVScopeChannelMode : uint8_t { cmLine, cmStep, cmBar, cmPoint };
// Where bars stand: on the zero line, hanging from the top, or standing on the bottom.
enum TQVChannelShadeMode : uint8_t { csmZero, csmTop, csmBottom };

// The symbols drawn at a channel's samples. Pen and brush are used only when
// UseChannelColor is off; their changes reach the owner like any property change.
class TQVScopePoints : public TQLPersistentNotify {
public:
    TQVScopePoints(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify = {});
    ~TQVScopePoints() override;

    bool GetVisible() const { return FVisible; }
    void SetVisible(bool AValue) { Set(FVisible, AValue); }
    TQVScopePointsShape GetShape() const { return FShape; }
    // A value outside the enumeration raises std::invalid_argument naming it.
    void SetShape(TQVScopePointsShape AValue);
    // Half the symbol's size in pixels.
    uint32_t GetSize() const { return FSize; }
    // Kept at 1000 at most, so that a symbol's box stays far inside the pixel range.
    void SetSize(uint32_t AValue);
    TQVDisplayBrush* GetBrush() const { return FBrush.get(); }
    void SetBrush(const TQVDisplayBrush* AValue) { FBrush->Assign(AValue); }
    TQVDisplayPen* GetPen() const { return FPen.get(); }
    void SetPen(const TQVDisplayPen* AValue) { FPen->Assign(AValue); }
    bool GetUseChannelColor() const { return FUseChannelColor; }
    void SetUseChannelColor(bool AValue) { Set(FUseChannelColor, AValue); }

    QL_CLASS_INFO()

private:
    bool FVisible = false;
    TQVScopePointsShape FShape = psCircle;
    uint32_t FSize = 3;
    std::unique_ptr<TQVDisplayBrush> FBrush;
    std::unique_ptr<TQVDisplayPen> FPen;
    bool FUseChannelColor = true;
};

// Draws the symbol of AShape in the box from (AX - ASize, AY - ASize) to
// (AX + ASize + 1, AY + ASize + 1), right and bottom outside, with the canvas's pen and brush.
// The line shapes (plus, cross, star) end AInset pixels short of the box's far edges.
void QVDrawPointSymbol(TQLCanvas& ACanvas, TQVScopePointsShape AShape, int32_t AX, int32_t AY, int32_t ASize,
                       int32_t AInset);
// The same in the box ARect.
void QVDrawPointSymbolRect(TQLCanvas& ACanvas, TQVScopePointsShape AShape, const TRect& ARect, int32_t AInset);

} // namespace qv

QL_DECLARE_ENUM(qv::TQVScopeChannelMode, "cmLine", "cmStep", "cmBar", "cmPoint")
QL_DECLARE_ENUM(qv::TQVChannelShadeMode, "csmZero", "csmTop", "csmBottom")
