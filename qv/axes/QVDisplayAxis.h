#pragma once
// The base of every value axis of a display: the single place that turns a value into a pixel
// of the data view and a pixel back into a value.
//
// An axis keeps three scales, each with full and zoomed limits:
//   FDataTotal       data units (samples on a scope X axis),
//   FScaleTotalReal  real units, what a value truly is (a time, a frequency),
//   FScaleTick       printed units, what the ticks show; all pixel mapping runs on this one.
// In this class the three coincide; the X and Y axes give them their own meaning. Every limit
// is cached and computed once per invalidation (InvalidateMinMaxCache).
//
// Orientation: an X axis runs along the display and a Y axis across it; a turned display
// (GetIsVertical of the display) swaps them. Reversal turns the direction round. The X and Y
// classes answer GetIsVertical, GetIsOposite, GetScaleReversed and the default directions;
// the mapping here reads only those answers.
//
// Axis code never raises: zero widths are replaced by small constants.

#include "qv/axes/QVAxisCache.h"
#include "qv/axes/QVAxisFormat.h"
#include "qv/axes/QVAxisValues.h"
#include "qv/axes/QVTrackingOptionalAxis.h"
#include "qv/component/QVViewButtonSettings.h"
#include "qv/component/QVZoomTypes.h"
#include "qv/decor/QVDisplayLabel.h"

#include <memory>
#include <string>

namespace qv {

class TQVDisplayAxisZoom;
class TQVZoomPin;
class TQVAxisToolBar;

class TQVDisplayAxis : public TQVTrackingOptionalAxis {
public:
    // Adds the axis to the display's list of axes; the display outlives it.
    TQVDisplayAxis(TQVDisplayOwner* ADisplay, TQVViewAlign AAlign);
    ~TQVDisplayAxis() override;

    // ---- Settings ----
    TAlphaColor GetColor() const { return FColor; }
    void SetColor(TAlphaColor AValue);
    TQVDisplayFont* GetFont() const override { return FFont.get(); }
    void SetFont(const TQVDisplayFont* AValue) { FFont->Assign(AValue); }
    TQVAxisValue* GetMin() const { return FMin.get(); }
    void SetMin(const TQVAxisValue* AValue) { FMin->Assign(AValue); }
    TQVMaxAxisValue* GetMax() const { return FMax.get(); }
    void SetMax(const TQVMaxAxisValue* AValue) { FMax->Assign(AValue); }
    bool GetReversed() const { return FReversed; }
    virtual void SetReversed(bool AValue);
    TQVDisplayAxisZoom* GetZooming() const { return FZooming.get(); }
    // The axis' own small tool bar of zoom buttons (QVAxisToolBar.h).
    TQVAxisToolBar* GetToolBar() const { return FToolBar.get(); }
    // Draws the tool bar when it shows; never into a print.
    void DrawToolBar(TQLCanvas& ACanvas, bool APrinting);
    // Ties this axis' zoom window to an axis of another display (QVZoomPin.h).
    TQVZoomPin* GetZoomPin() const { return FZoomPin.get(); }
    void SetZooming(const TQVDisplayAxisZoom* AValue);

    // ---- The three scales ----
    const TQVLimitCachedMinMaxValue& GetDataTotal() const { return FDataTotal; }
    const TQVLimitCachedMinMaxValue& GetScaleTotalReal() const { return FScaleTotalReal; }
    const TQVLimitCachedMinMaxValue& GetScaleTick() const { return FScaleTick; }
    // Zoomed widths of the data scale and of the printed scale.
    double GetDataZoomedRange() const;
    double GetScaleZoomedTickRange() const;

    // ---- Step and text measures ----
    // mtmAuto: the automatic step, computed anew; otherwise MajorTicks.Step made drawable.
    double GetStep() override;
    // Along a horizontal axis the wider of the texts of the two zoomed ends; along a vertical
    // one the line height.
    uint32_t GetMaxTextLength() const override;
    // 1 on a decascale axis; else the text of the zoomed maximum plus 8 (horizontal) or the
    // line height plus 4 (vertical), at least 20.
    uint32_t GetMinScaleLineDistance() const override;

    // ---- Orientation ----
    virtual bool GetIsYAxis() const { return false; }
    // Whether values grow against the orientation's natural direction.
    virtual bool GetIsOposite() const { return GetIsReversed(); }
    bool GetIsReversedDirect() const override { return FReversed; }
    bool GetIsReversed() const override { return FReversed; }
    // The sign of the scale factor of GetScaleInfo.
    virtual bool GetScaleReversed() const { return GetIsReversedDirect(); }

    // ---- Value and pixel ----
    // The data view's start and length along the axis.
    int32_t GetPixelStart() const;
    int32_t GetPixelLength() const;
    // The offset and factor with which a tick walk turns a value (or its QVLog10a) into a
    // pixel. Equal limits give the middle of the axis and a factor of 1.
    virtual void GetScaleInfo(double& AOffset, double& AScale, double AMin, double AMax) const;
    // The pixel of a printed value across the data view's whole length. A zero-width scale
    // maps to a window of plus and minus one round its value.
    int32_t ScaleToPixel(double AValue) const;
    // The pixel of a plotted value, spanning one pixel less than ScaleToPixel. Linear X axes
    // ignore reversal and a plain vertical Y axis sits one pixel lower; both are kept. A scale
    // of zero width gives the start of the data view.
    int32_t GetPosFromValue(double AValue) const;
    // The printed value at a pixel, for the present zoom window.
    double PixelToScale(int32_t APosition) const;
    // The printed value at a pixel for a given window and rectangle: the inverse mapping.
    virtual double GetPositionFromMouse(int32_t APosition, double AMin, double AMax, const TRect& ARect) const;
    // The printed value at a point of the data view, linear also on a logarithmic axis. False,
    // with AxisPos untouched, when the point lies outside the data view.
    bool GetValueAt(int32_t AX, int32_t AY, double& AxisPos) const;

    // ---- Scale conversions (between full ranges; identity when the source has no width) ----
    double ScaleTickToData(double AValue) const;
    double DataToScaleTick(double AValue) const;
    double ScaleRealToScaleTick(double AValue) const;
    double ScaleRealToData(double AValue) const;
    // The same for widths: no offsets.
    double ScaleTickToDataNoOffset(double AValue) const;
    double DataToScaleTickNoOffset(double AValue) const;

    // ---- Limits: the getters behind the caches ----
    // Min.DataValue when Min does not follow the data, else 0.
    virtual double GetDataFullMin() const;
    virtual double GetDataFullMax() const = 0;
    virtual double GetDataZoomedMin() const = 0;
    virtual double GetDataZoomedMax() const = 0;
    virtual double GetScaleFullTickMin() const;
    virtual double GetScaleFullTickMax() const;
    virtual double GetScaleFullRealMin() const;
    virtual double GetScaleFullRealMax() const;
    // The zoomed data window carried onto the printed scale.
    virtual double GetScaleZoomedTickMin() const;
    virtual double GetScaleZoomedTickMax() const;
    // The zoomed data limits scaled to the width of the real scale, without offsets.
    virtual double GetScaleZoomedRealMin() const;
    virtual double GetScaleZoomedRealMax() const;
    // Told how far the zoomed printed minimum or maximum moved when it is computed anew.
    virtual void ScaleMinChange(double ADelta) {}
    virtual void ScaleMaxChange(double ADelta) {}
    // Whether zooming keeps to the data.
    virtual bool GetRestrictMinMax() const { return true; }
    // AAll: the full data limits too; the zoomed data limits and both other scales always.
    virtual void InvalidateMinMaxCache(bool AAll);
    virtual void InvalidateStep();
    // Brings the zoom window inside Min.Range and Max.Range, keeping its width while it can,
    // then its width inside the zoom width range.
    virtual void CorrectMinMax();

    // ---- Tick texts, the title and the strip's size (QVDisplayAxisLabel.cpp) ----
    TQVAxisFormat* GetFormat() const { return FFormat.get(); }
    void SetFormat(const TQVAxisFormat* AValue) { FFormat->Assign(AValue); }
    TQVDisplayTitleLabel* GetAxisLabel() const { return FAxisLabel.get(); }
    void SetAxisLabel(const TQVDisplayTitleLabel* AValue) { FAxisLabel->Assign(AValue); }
    TQVViewButtonSettings* GetButton() const { return FButton.get(); }
    void SetButton(const TQVViewButtonSettings* AValue) { FButton->Assign(AValue); }
    void SetOnCustomLabel(TQVCustomAxisLabelEvent AHandler) { FOnCustomLabel = std::move(AHandler); }
    const TQVCustomAxisLabelEvent& GetOnCustomLabel() const { return FOnCustomLabel; }
    // The text of a tick in the axis' Format, on the zoomed printed scale (on a logarithmic
    // axis, on the decade of the value, whose ticks lie closer than the scale's width says).
    // OnCustomLabel, when assigned, may then change it; a text given to SetTickText from
    // inside the handler wins over what the handler left in its argument.
    std::string GetTickText(double AValue) const override;
    // For OnCustomLabel handlers: the text of the tick being asked for.
    void SetTickText(const std::string& AValue);
    // The title: AxisLabel.Text here; the X and Y axes name their units.
    virtual std::string GetAxisLabelText() const;
    // Automatic size: the wider tick text of the zoomed data ends plus 16 across a vertical
    // axis, a line plus 16 across a horizontal one, plus a line and 4 for a visible title.
    // Also sets the depth of the track line. A fixed ViewSize wins.
    TSize GetDefaultSize() const override;
    TSize GetAutoSize() const override;
    // The title's box and where and how its text goes, measured on ACanvas in AFont, turned
    // for a vertical title (AVertical: GetIsVertical of a drawn axis); the canvas is left as
    // it was. The same box serves drawing and hit tests.
    struct TLabelBox {
        TRect Box;
        TPoint TextPos;
        int32_t TextAngle = 0;
        std::string Text;
    };
    TLabelBox GetLabelBox(TQLCanvas& ACanvas, const TQVDisplayFont& AFont, bool AVertical) const;
    // The title along a horizontal axis, and turned along a vertical one; drawn as a button
    // while the mouse is over it, unless printing. The canvas state comes back after.
    void DrawHorizontalLabel(TQLCanvas& ACanvas, const TQVDisplayFont& AFont, bool APrinting);
    void DrawVerticalLabel(TQLCanvas& ACanvas, const TQVDisplayFont& AFont, bool APrinting);
    // The title in its own font and orientation, when AxisLabel is visible.
    void DrawAxisLabel(TQLCanvas& ACanvas, bool APrinting);
    // The title acting as a button: the mouse is over it, and it is pressed.
    bool GetLabelButtonShown() const { return FLabelButtonShown; }
    bool GetLabelButtonDown() const { return FLabelButtonDown; }
    // Set when a press of the title asked the display for the axis' setup.
    bool GetDialogShown() const { return FDialogShown; }

    // ---- The title as a button (QVDisplayAxisButton.cpp) ----
    // Whether the point (control coordinates) is on the visible title of the strip; shows the
    // button and the button's cursor while it is, and repaints the title when that changes
    // or AForceInvalidate. Nothing while Button is not enabled.
    void ButtonHitTest(int32_t AX, int32_t AY, bool AForceInvalidate);
    // Moving lights the button under the mouse.
    void MouseMove(TShiftState AShift, int32_t AX, int32_t AY, bool& AHandled) override;
    // A left press on the title presses the button: Button.OnClick, and unless that handles
    // it, the display's axis click with this axis' index.
    void MouseDown(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, bool AMouseInside,
                   bool& AHandled) override;
    // Releasing the left button releases the button.
    void MouseUp(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, bool AMouseInside) override;
    // Leaving the control puts the button out and ends a drag.
    void MouseLeave() override;
    // A wheel notch over the strip zooms this axis round the pointer: down widens the
    // window by 1.1, up narrows it by 0.9. Nothing when Zooming.MouseWheelEnabled is off.
    void MouseWheelDown(TShiftState AShift, const TPoint& APoint) override;
    void MouseWheelUp(TShiftState AShift, const TPoint& APoint) override;
    void MouseWheelZoom(const TPoint& APoint, double AFactor);
    // A left press on the strip (not on the title) is held: moves pan the axis.
    bool GetLeftMouseButtonDown() const { return FLeftMouseButtonDown; }

    // ---- Drawing ----
    // The base line along the data view, then every tick with its text.
    virtual void DrawTicks(TQLCanvas& ACanvas, bool ADrawLine, bool AVertical);
    // Walks the ticks of the zoomed printed scale with the function for the axis' orientation:
    // AHorizontalTick along a horizontal axis, AVerticalTick along a vertical one.
    virtual void DrawTickLines(const TQVAxisTickProc& AHorizontalTick, const TQVAxisTickProc& AVerticalTick,
                               bool AFromEnd, TQLCanvas& ACanvas, bool ADrawAll, bool ADecascaleAll);

    // ---- Zooming (QVDisplayAxisZoom.cpp) ----
    // The zoom window is kept in printed units. Zooming never raises for a degenerate axis;
    // the public operations reject factors and limits that are not finite numbers (and
    // factors that are not positive) with std::invalid_argument.
    bool IsZoomed() const { return FZoomed; }
    // The last zoom window, also after the zoom was switched off.
    double GetZoomMin() const { return FZoomMin; }
    double GetZoomMax() const { return FZoomMax; }
    // The zoom window while zoomed, else the current (zoomed data) limits.
    double GetZoomedOrCurrentMin() const;
    double GetZoomedOrCurrentMax() const;
    // Public operations: each saves an undo step on the display when asked to, zooms, and
    // reports the change to the display once. A factor below 1 zooms in.
    void ZoomBy(double AValue, bool SaveHistory = true);
    virtual void ZoomTo(double AMin, double AMax, bool SaveHistory = true);
    void ZoomToData(double AMin, double AMax, bool SaveHistory = true);
    // Halves or doubles the window about its centre.
    void ZoomIn();
    void ZoomOut();
    void ZoomOff();
    // Whether the window may still shrink (grow): false once the allowed width is reached,
    // or once both edges are pinned by the limits' ranges.
    virtual bool GetCanZoomIn() const;
    virtual bool GetCanZoomOut() const;

    // The workers. They change the window without touching the undo history and without
    // reporting to the display.
    // Scales the window about its centre by AValue.
    virtual void IntZoom(double AValue, TQVZoomOperation AOperation);
    virtual void IntZoomBy(double AValue);
    // Sets the window (in either order), kept to the data and at least 0.0001 wide where the
    // axis restricts zooming, then inside the limits' ranges.
    void IntZoomToScale(double AMin, double AMax, TQVZoomOperation AOperation, bool ASendPin);
    // The same with the limits in data units.
    virtual void IntZoomToData(double AMin, double AMax, TQVZoomOperation AOperation);
    // Switches the zoom off; the last window is kept for the next zoom.
    virtual void IntZoomOff();
    virtual void BasicZoomOff();
    // The window handed to or taken from another display's axis.
    void InternalZoomToScale(double AMin, double AMax, TQVZoomOperation AOperation, bool ASendPin);
    void GetInternalZoomTo(double& AMin, double& AMax) const;
    // One wheel notch at APoint: scales the window by AFactor so that the value under the
    // pointer stays where it is.
    virtual void MouseWheelZoomInt(const TPoint& APoint, double AFactor);
    // Lets an axis change the wheel factor for a window of width AWidth; none here.
    virtual void AdjustZoomFactor(double AWidth, double& AFactor) {}
    // The narrowest zoom window the axis allows, in printed units; 0 leaves the window to
    // the general rules.
    virtual double GetLeastZoomWidth() const { return 0.0; }

    // ---- Panning ----
    // A drag starts at (AX, AY): the window it starts from is remembered.
    void IntSaveMouseDownZoom(int32_t AX, int32_t AY);
    // Remembers the present window as the start of a drag.
    void SetMouseZoomValues();
    // The drag has gone from AFrom to ATo: a zoomed axis moves its window along with the
    // pointer, and reports the pan.
    virtual void MouseMoveScale(const TPoint& AFrom, const TPoint& ATo);
    // Moves the window from the drag's start by AValue printed units, never beyond the
    // full scale.
    virtual void MouseOffsetBy(double AValue);

    QL_CLASS_INFO()

protected:
    // The allowed width of the zoom window: Zooming.Range.
    virtual const TQVDisplayValueRange* GetZoomWidthRange() const;
    // Scales the zoom window about its centre by AValue and corrects it, leaving the step
    // and the layout alone.
    void ScaleZoomWindow(double AValue);
    // A drag of APixels along the axis in printed units of the present window; 0 while the
    // data view has no length.
    double DragToScale(int32_t APixels) const;
    // Min or Max changed: every limit anew, and a new layout.
    void LimitsChanged();

    double FStep = 0.0;
    bool FReversed = false;
    TAlphaColor FColor = 0xFFFFFFFF;
    // The zoom window in printed units.
    double FZoomMin = 0.0;
    double FZoomMax = 0.0;
    bool FZoomed = false;
    bool FLabelButtonShown = false;
    bool FLabelButtonDown = false;
    bool FDialogShown = false;
    // A drag along the strip is under way, and it saved its undo step.
    bool FLeftMouseButtonDown = false;
    bool FPanSaved = false;
    // The window when the drag started.
    double FMouseZoomMin = 0.0;
    double FMouseZoomMax = 0.0;

    // Tells the axis tied through the zoom pin that the window changed.
    void SendZoomChange(TQVZoomOperation AOperation);

private:
    std::unique_ptr<TQVZoomPin> FZoomPin;
    std::unique_ptr<TQVAxisToolBar> FToolBar;
    std::unique_ptr<TQVDisplayAxisZoom> FZooming;
    std::unique_ptr<TQVAxisValue> FMin;
    std::unique_ptr<TQVMaxAxisValue> FMax;
    std::unique_ptr<TQVDisplayFont> FFont;
    std::unique_ptr<TQVAxisFormat> FFormat;
    std::unique_ptr<TQVDisplayTitleLabel> FAxisLabel;
    std::unique_ptr<TQVViewButtonSettings> FButton;
    TQVCustomAxisLabelEvent FOnCustomLabel;
    // This axis replaced the display's cursor with the button's.
    bool FButtonCursorSet = false;
    // What SetTickText left for the tick text being asked for.
    bool FNewText = false;
    std::string FNewTickText;
    // Draws the title's box as a button: fill, a border one pixel outside, rounded corners.
    void DrawLabelButton(TQLCanvas& ACanvas, const TRect& ABox) const;
    void DrawLabel(TQLCanvas& ACanvas, const TQVDisplayFont& AFont, bool APrinting, bool AVertical);
    // Repaints the title's box and one pixel round it, where the button's border lies.
    void InvalidateLabelBox();

protected:
    TQVLimitCachedMinMaxValue FDataTotal;
    TQVLimitCachedMinMaxValue FScaleTotalReal;
    TQVLimitCachedMinMaxValue FScaleTick;
};

} // namespace qv
