#pragma once
// Markers: small symbols at points of the plot, with optional crosshair lines and a text
// label. A marker group holds the look (shape, size, pen, brush, crosshair lines, label); a
// marker holds only where it is. Free markers (qv/elements) sit at an X and Y value; channel
// markers sit at a sample index of the channel that owns them. Both kinds draw and hit-test
// through the base here, so a channel can draw its own markers without knowing the elements
// built on top of it.
//
// Coordinates handed to Draw and HitTest are pixels of the control, already turned for a
// turned display; the symbol itself turns with the display (QVDisplayMarkerDrawSize).

#include "qv/component/QVDisplayCollectionItem.h"
#include "qv/decor/QVOptionalLabel.h"
#include "qv/foundation/QVDisplayBrush.h"
#include "qv/foundation/QVDisplayPen.h"
#include "qv/foundation/QVMarkerShapes.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace qv {

class TQVDisplayAxis;
class TQVDisplayMarkerGroup;
class TQVBasicDisplayMarker;

// A free marker was dragged from AOldPosition to ANewPosition (axis values).
using TQVDisplayMarkerDraggedEvent =
    std::function<void(TQLPersistent* Sender, TQVRealPoint& AOldPosition, TQVRealPoint& ANewPosition)>;
// A channel marker was dragged from AOldPosition to ANewPosition (sample indexes).
using TQVScopeMarkerDraggedEvent =
    std::function<void(TQLPersistent* Sender, double& AOldPosition, double& ANewPosition)>;

// Where a marker's label stands beside the point: left of it (0 to 2), right (3 to 5) or
// centred on it (6 to 8); above (0, 3, 6), below (1, 4, 7) or centred (2, 5, 8).
enum TQVCoordinateMode : uint8_t {
    cdmLeftAbove,
    cdmLeftBelow,
    cdmLeftCentre,
    cdmRightAbove,
    cdmRightBelow,
    cdmRightCentre,
    cdmCentreAbove,
    cdmCentreBelow,
    cdmCentre
};

// A crosshair line from the marker to one edge of the data view: a pen that can be hidden.
class TQVDisplayMarkerCrosshairLine : public TQVDisplayPen {
public:
    TQVDisplayMarkerCrosshairLine(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify);

    bool GetVisible() const { return FVisible; }
    void SetVisible(bool AValue) { Set(FVisible, AValue); }

    QL_CLASS_INFO()

private:
    bool FVisible = false;
};

class TQVDisplayMarkerCrosshairLines : public TQLPersistentNotify {
public:
    TQVDisplayMarkerCrosshairLines(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify);
    ~TQVDisplayMarkerCrosshairLines() override;

    TQVDisplayMarkerCrosshairLine* GetLeft() const { return FLeft.get(); }
    void SetLeft(const TQVDisplayMarkerCrosshairLine* AValue) { FLeft->Assign(AValue); }
    TQVDisplayMarkerCrosshairLine* GetTop() const { return FTop.get(); }
    void SetTop(const TQVDisplayMarkerCrosshairLine* AValue) { FTop->Assign(AValue); }
    TQVDisplayMarkerCrosshairLine* GetRight() const { return FRight.get(); }
    void SetRigth(const TQVDisplayMarkerCrosshairLine* AValue) { FRight->Assign(AValue); }
    TQVDisplayMarkerCrosshairLine* GetBottom() const { return FBottom.get(); }
    void SetBottom(const TQVDisplayMarkerCrosshairLine* AValue) { FBottom->Assign(AValue); }

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVDisplayMarkerCrosshairLine> FLeft;
    std::unique_ptr<TQVDisplayMarkerCrosshairLine> FTop;
    std::unique_ptr<TQVDisplayMarkerCrosshairLine> FRight;
    std::unique_ptr<TQVDisplayMarkerCrosshairLine> FBottom;
};

// The label's offset from the point in pixels, and on which side it stands.
class TQVDisplayMarkerLabelPosition : public TQLPersistentNotify {
public:
    using TQLPersistentNotify::TQLPersistentNotify;

    int32_t GetCX() const { return FCX; }
    void SetCX(int32_t AValue) { Set(FCX, AValue); }
    int32_t GetCY() const { return FCY; }
    void SetCY(int32_t AValue) { Set(FCY, AValue); }
    TQVCoordinateMode GetCoordinateMode() const { return FCoordinateMode; }
    void SetCoordinateMode(TQVCoordinateMode AValue);

    QL_CLASS_INFO()

private:
    int32_t FCX = 4;
    int32_t FCY = 0;
    TQVCoordinateMode FCoordinateMode = cdmRightAbove;
};

// The label of a group's markers: a template ("%X", "%Y" for the marker's values; empty for
// "%X : %Y"), its font, where it stands and at what angle. Hidden by default.
class TQVMarkerGroupLabel : public TQVOptionalLabel {
public:
    TQVMarkerGroupLabel(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify);
    ~TQVMarkerGroupLabel() override;

    TQVDisplayMarkerLabelPosition* GetPosition() const { return FPosition.get(); }
    void SetPosition(const TQVDisplayMarkerLabelPosition* AValue) { FPosition->Assign(AValue); }
    int32_t GetAngle() const { return FAngle; }
    void SetAngle(int32_t AValue) { Set(FAngle, AValue); }

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVDisplayMarkerLabelPosition> FPosition;
    int32_t FAngle = 0;
};

// The look of a group of markers, and the list of every marker that uses it (free markers
// and channel markers alike). The list does not own its markers.
class TQVDisplayMarkerGroup : public TQVOptionalDisplayCollectionItem {
public:
    explicit TQVDisplayMarkerGroup(TQLCollection* ACollection);
    ~TQVDisplayMarkerGroup() override;

    TQVDisplayBrush* GetBrush() const { return FBrush.get(); }
    void SetBrush(const TQVDisplayBrush* AValue) { FBrush->Assign(AValue); }
    TQVDisplayPen* GetPen() const { return FPen.get(); }
    void SetPen(const TQVDisplayPen* AValue) { FPen->Assign(AValue); }
    TQVDisplayMarkerCrosshairLines* GetCrosshairLines() const { return FCrosshairLines.get(); }
    void SetCrosshairLines(const TQVDisplayMarkerCrosshairLines* AValue) { FCrosshairLines->Assign(AValue); }
    TQVDisplayMarkerShape GetShape() const { return FShape; }
    void SetShape(TQVDisplayMarkerShape AValue);
    uint32_t GetSize() const { return FSize; }
    void SetSize(uint32_t AValue)
    {
        Set(FSize, AValue, [this] { InvalidateItem(); });
    }
    TQVMarkerGroupLabel* GetLabels() const { return FLabels.get(); }
    void SetLabels(const TQVMarkerGroupLabel* AValue) { FLabels->Assign(AValue); }
    bool GetCanDrag() const { return FCanDrag; }
    void SetCanDrag(bool AValue) { Set(FCanDrag, AValue); }
    TCursor GetMouseCursor() const { return FMouseCursor; }
    void SetMouseCursor(TCursor AValue) { Set(FMouseCursor, AValue); }

    // The palette hands each new group a colour: the pen's default, and the brush's.
    TAlphaColor GetColorDefault() const { return FPen->GetColorDefault(); }
    void SetColorDefault(TAlphaColor AValue);

    // Every marker that draws with this group, in the order they joined it.
    int32_t GetMarkerCount() const { return static_cast<int32_t>(FMarkersList.size()); }
    TQVBasicDisplayMarker* GetMarker(int32_t AIndex) const;
    virtual void AddMarker(TQVBasicDisplayMarker* AMarker);
    virtual void RemoveMarker(TQVBasicDisplayMarker* AMarker);

    // Lit when the mouse is over it or the legend points at it, and markers light their
    // legend button.
    bool GetHighlighted() const override;
    // The legend points at the group (when markers highlight from the legend) or away.
    void SetHighlighted(bool AValue) override;
    void MouseDown(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, bool AMouseInside) override;
    void MouseUp(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, bool AMouseInside) override;
    bool GetGroupMouseDown() const { return FMouseDown; }
    // The legend's swatch: the group's symbol in its pen and brush, at half size 3 round
    // (AX + 6, AY) whatever the group's size; triangles sit centred in that box, and turn
    // with a turned display as on the plot.
    bool CustomLegendDraw(TQLCanvas& ACanvas, int32_t AX, int32_t AY) override;

    QL_CLASS_INFO()

protected:
    void BeforeDestruction() override;
    // The markers leave a group that goes away: they keep drawing nothing until given another.
    void DetachMarkers();

    std::vector<TQVBasicDisplayMarker*> FMarkersList;

private:
    std::unique_ptr<TQVDisplayBrush> FBrush;
    std::unique_ptr<TQVDisplayPen> FPen;
    std::unique_ptr<TQVDisplayMarkerCrosshairLines> FCrosshairLines;
    TQVDisplayMarkerShape FShape = msPlus;
    uint32_t FSize = 3;
    std::unique_ptr<TQVMarkerGroupLabel> FLabels;
    bool FCanDrag = false;
    TCursor FMouseCursor = crDefault;
    bool FMouseDown = false;
};

// What every marker shares: its group, the pixel where it was last drawn, and the drawing
// and hit test by the group's look.
class TQVBasicDisplayMarker : public TQVDisplaySelectableCollectionItem {
public:
    // No pixel yet: HitTest fails until the marker is drawn.
    static constexpr int32_t CNoDrawPoint = -10000;

    explicit TQVBasicDisplayMarker(TQLCollection* ACollection);
    ~TQVBasicDisplayMarker() override;

    TQVDisplayMarkerGroup* GetGroup() const { return FGroup; }
    // Leaves the old group's list and joins the new one's.
    void SetGroup(TQVDisplayMarkerGroup* AValue);
    const TPoint& GetDrawPoint() const { return FDrawPoint; }
    int32_t GetChannelIndex() const { return FChannelIndex; }

    // Whether the control pixel (AX, AY) lies on the symbol as last drawn.
    bool HitTest(int32_t AX, int32_t AY) const;
    // The symbol at (AX, AY) in the group's look, its crosshair lines to the edges of
    // ADispRect and its label; first a wider pass in the highlight colour when the marker is
    // lit or dragged and the picture is not printed. Remembers the pixel for HitTest.
    void Draw(TQLCanvas& ACanvas, const TRect& ADispRect, int32_t AX, int32_t AY, double APosition, double AValue,
              bool APrinting);
    // The ghost of a marker under drag: the outline dashed in the drag colour, with its label.
    void DrawDrag(TQLCanvas& ACanvas, int32_t AX, int32_t AY, double APosition, double AValue);
    // Out of the hit test until it is next drawn.
    void ClearDrawData() { FDrawPoint.X = CNoDrawPoint; }
    TAlphaColor GetHighlightColor() const;

    // Lit when its group is pointed at from the legend or it is the marker under the mouse.
    bool GetHighlighted() const override;
    virtual bool GetInDragging() const;
    void InvalidateItem() override;

    QL_CLASS_INFO()

protected:
    // The label text at the marker's values, from the group's template, at the pixel by
    // the label's position.
    virtual void DrawTextOut(TQLCanvas& ACanvas, int32_t AX, int32_t AY, double APosition, double AValue);
    // The axes that format the label's "%X" and "%Y".
    virtual TQVDisplayAxis* GetLabelXAxis() const = 0;
    virtual TQVDisplayAxis* GetLabelYAxis() const = 0;
    void BeforeDestruction() override;

    int32_t FChannelIndex = -1;

private:
    friend class TQVDisplayMarkerGroup;
    // The symbol grown by AExtra; the label with it on the plain pass (AExtra 0).
    void DrawSize(TQLCanvas& ACanvas, int32_t AX, int32_t AY, double APosition, double AValue, int32_t AExtra);
    bool IsVerticalDisplay() const;

    TQVDisplayMarkerGroup* FGroup = nullptr;
    TPoint FDrawPoint{CNoDrawPoint, 0};
};

} // namespace qv

QL_DECLARE_ENUM(qv::TQVCoordinateMode, "cdmLeftAbove", "cdmLeftBelow", "cdmLeftCentre", "cdmRightAbove",
                "cdmRightBelow", "cdmRightCentre", "cdmCentreAbove", "cdmCentreBelow", "cdmCentre")
