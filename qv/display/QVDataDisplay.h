#pragma once
// The base of every display control (scope, waterfall). It owns the off-screen picture and
// the surface over it, the list of components, the refresh timer and the settings common
// to all displays, and turns asynchronous data intake into a paced repaint: writers only
// mark state, the timer moves data into draw buffers and asks for a repaint, the repaint
// renders the whole control into the picture that the host then shows.

#include "qv/axes/QVDisplayAxisList.h"
#include "qv/component/QVDisplayOwner.h"
#include "qv/component/QVDisplayView.h"
#include "qv/component/QVZoomTypes.h"
#include "qv/display/QVDisplayElements.h"
#include "qv/foundation/QLBitmap.h"
#include "qv/foundation/QLCanvas.h"
#include "qv/foundation/QLEnumInfo.h"
#include "qv/foundation/QLEvents.h"
#include "qv/foundation/QLPersistent.h"
#include "qv/foundation/QLPictureServices.h"
#include "qv/foundation/QLTimer.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace qv {

class TQVDisplayComponent;
class TQVDisplayTitle;
class TQVChannelMouseHitPoint;
class TQVDisplayHighlighting;
class TQVHighlightInfo;
class TQVDisplayAxis;
class TQVDisplayZoom;
class TQVDisplayZoomList;
class TQVAxisZoomList;
class TQVDisplayToolBar;

using TQVDataToolTipEvent =
    std::function<void(TQLPersistent* Sender, TPoint MousePoint, TQVRealPoint DataPoint, std::string& Text)>;
using TKeyEvent = std::function<void(TQLPersistent* Sender, uint16_t& Key, TShiftState Shift)>;

class TQVDataDisplay : public TQVDisplayOwner, public IQVElementHost {
public:
    TQVDataDisplay();
    ~TQVDataDisplay() override;

    // ---- Settings ----
    TAlphaColor GetColor() const override { return FColor; }
    void SetColor(TAlphaColor AValue);
    TCursor GetCursor() const override { return FCursor; }
    void SetCursor(TCursor AValue);
    TQVDisplayNavigateMode GetNavigateMode() const override { return FNavigateMode; }
    void SetNavigateMode(TQVDisplayNavigateMode AValue);
    // Milliseconds between refresh ticks; a value below 1 is raised to 1.
    uint32_t GetRefreshInterval() const { return FRefreshTimer.GetInterval(); }
    void SetRefreshInterval(uint32_t AValue);
    // Freezes the picture: data keeps arriving but does not reach the draw buffers.
    bool GetHold() const override { return FHold; }
    void SetHold(bool AValue) override;
    bool GetVisible() const { return FVisible; }
    virtual void SetVisible(bool AValue);

    // ---- Geometry ----
    float GetLeft() const { return FLeft; }
    float GetTop() const { return FTop; }
    float GetWidth() const { return FWidth; }
    float GetHeight() const { return FHeight; }
    // A size change recalculates the layout.
    void SetBounds(float ALeft, float ATop, float AWidth, float AHeight);
    // The size being drawn: the print size while printing, else the control's size.
    int32_t GetPlotWidth() const override;
    int32_t GetPlotHeight() const override;

    // ---- Invalidation vocabulary ----
    // Repaint at the next opportunity: sets the refresh flag and asks the host to invalidate.
    void InvalidateRefresh() override;
    // Repaint at the next timer tick; safe from threads other than the control's.
    void PostRefresh() override;
    virtual void ForceFullRedraw() { InvalidateRefresh(); }
    // Layout and channel screen data anew at the next paint, then repaint.
    void InvalidateRecalc() override;
    void InvalidateChannels() override {}
    void InvalidateRange() override;
    void InvalidateValue() override { Invalidate(); }
    void SelectionChange() override { Invalidate(); }
    void InvalidateHistory() override {}
    virtual void RepopulateView() {}
    void InvalidateChannelAxes() override {}
    // Marks the layout and screen data stale without asking for a repaint: what a data
    // writer on any thread does.
    void SetNeedsRecalc() override { FNeedsRecalc.store(true, std::memory_order_release); }
    bool GetNeedsRecalc() const { return FNeedsRecalc.load(std::memory_order_acquire); }
    bool GetRefreshImage() const { return FRefreshImage.load(std::memory_order_acquire); }
    void InvalidateIntRect(const TRect& ARect) override { Invalidate(); }
    virtual void ClearCaches() {}

    // ---- Refresh cycle ----
    // One timer tick.
    virtual void OnRefreshTimer(TQLPersistent* ASender) { RefreshView(); }
    // Moves waiting data into the draw buffers and asks for the repaint that every tick of
    // a live control makes, with or without data.
    void RefreshView();
    // Moves every channel's new data to its draw stage; returns whether to recompute.
    virtual bool PopulateDrawBuffers() = 0;
    TQLTimer& GetRefreshTimer() { return FRefreshTimer; }

    // ---- Painting ----
    // Renders the control into its own picture (GetBitmap) and fires OnPaint. Needs a
    // canvas factory.
    void Paint();
    // Renders the control into ABitmap through ACanvas, a surface over that bitmap.
    virtual void PaintToCanvas(TQLBitmap& ABitmap, TQLCanvas& ACanvas, bool APrinting);
    // The draw order of the whole control inside ARect, clipped to ARegion.
    virtual void PaintToCanvasRgn(TQLBitmap& ABitmap, TQLCanvas& ACanvas, const TRect& ARect, const TQLRegion& ARegion,
                                  bool APrinting);
    virtual void PaintOverlay(const TQLRegion& ARegion, bool APrinting) {}
    // Resizes the picture (logical size, at the device pixel ratio) and rebuilds the surface
    // over it, only on a real change.
    void SetBitmapSize(int32_t AWidth, int32_t AHeight);
    // Device pixels per logical pixel of the display's own picture: a host on a HiDPI screen
    // sets its screen's ratio, and the picture is painted with that many pixels per logical
    // pixel. Layout, hit tests and mouse positions stay in logical pixels. A value that is
    // not a finite number in (0, 16] raises std::invalid_argument naming it.
    double GetDevicePixelRatio() const { return FDevicePixelRatio; }
    void SetDevicePixelRatio(double AValue);
    const TQLBitmap& GetBitmap() const { return FBkgBitmap; }
    // The surface over the picture, also used to measure text outside a paint; null without
    // a canvas factory until a paint hands one in.
    TQLCanvas* GetCanvas() const override { return FActiveCanvas ? FActiveCanvas : FBitmapCanvas.get(); }
    void SetCanvasFactory(TQLCanvasFactory AFactory);
    const TQLCanvasFactory& GetCanvasFactory() const { return FCanvasFactory; }
    // Draws the control into a foreign surface, AWidth by AHeight, at the layer origin
    // (the top left corner unless an element places it); AX and AY scale device pixels.
    // APrinting paints it as printed: no tool bar, mouse marks or focus frame.
    virtual void IntDraw(TQLCanvas& AGraphics, float AX, float AY, float AWidth, float AHeight, bool AStretch,
                         bool APrinting);
    // Renders the control, alpha-composed, into a caller's buffer of premultiplied 32-bit
    // pixels (ABufferWidth by ABufferHeight), placed at (AX, AY).
    virtual void IntRender(float AX, float AY, float AWidth, float AHeight, uint32_t* ABuffer, int32_t ABufferWidth,
                           int32_t ABufferHeight);
    // Drawn as a layer of another control: a AWidth by AHeight picture at this control's
    // position on ACanvas.
    void DoLayerDraw(TQLCanvas& ACanvas, int32_t AWidth, int32_t AHeight, float AXCoeff, float AYCoeff,
                     bool AContoursOnly);
    bool PaintIsDisabled() const;
    bool GetPrinting() const override { return FPrinting; }

    // ---- Picture output (QVDataDisplayOutput.cpp) ----
    // Each runs the paint of the screen as a print (no highlights, drag ghosts or mouse
    // marks) into a fresh bitmap and hands that to the platform's picture services. Without
    // a canvas factory or without the service needed they raise std::runtime_error naming
    // what is missing; failures of the printer, clipboard or file reach the caller.
    // One page on the printer, painted at the page's size; the next paint lays out anew.
    virtual void Print();
    // The picture, Trunc(Width) by Trunc(Height), on the clipboard.
    void CopyToClipboard();
    // The picture into the caller's bitmap, at the bitmap's size.
    void CopyToBitmap(TQLBitmap& ABitmap);
    // The picture, GetPlotWidth by GetPlotHeight (the page's size inside a print), as a
    // bitmap file.
    void SaveToBitmap(const std::string& AFileName);
    // The picture, Trunc(Width) by Trunc(Height), as a JPEG file.
    void SaveToJpeg(const std::string& AFileName);
    // The picture, Trunc(Width) by Trunc(Height), as an SVG or a PDF file: the same paint
    // onto a vector surface, so lines and text stay lines and text. The picture services
    // must offer vector output.
    void SaveToSvg(const std::string& AFileName);
    void SaveToPdf(const std::string& AFileName);
    // The platform's printer, clipboard and image files; a display in a platform widget
    // gets them from the widget.
    void SetPictureServices(std::shared_ptr<IQLPictureServices> AServices) { FPictureServices = std::move(AServices); }
    const std::shared_ptr<IQLPictureServices>& GetPictureServices() const { return FPictureServices; }

    // ---- Mouse and keyboard (platform coordinates, rounded here) ----
    void MouseDown(TMouseButton AButton, TShiftState AShift, float AX, float AY);
    void MouseMove(TShiftState AShift, float AX, float AY);
    void MouseUp(TMouseButton AButton, TShiftState AShift, float AX, float AY);
    bool DoMouseWheelDown(TShiftState AShift, const TPoint& AMousePos);
    bool DoMouseWheelUp(TShiftState AShift, const TPoint& AMousePos);
    void DoMouseEnter();
    void DoMouseLeave();
    void KeyDown(uint16_t& AKey, TShiftState AShift);
    void KeyUp(uint16_t& AKey, TShiftState AShift);
    void Click();
    void DblClick();
    // The plot area, when the display has one.
    TQVDisplayComponent* GetDataView() const override { return nullptr; }
    // The values of the main X and Y axes at the control pixel (AX, AY): false, with the
    // outputs as they were or AxisX alone set, unless both axes give a value there (the Y
    // axis is not asked when the X axis fails). False on a display without axes.
    bool GetAxisValueAt(int32_t AX, int32_t AY, double& AxisX, double& AxisY) const;
    // The name a print job carries: the title's text, or "Untitled" when it has none.
    virtual std::string GetPrintTitle() const;
    bool GetIsVertical() const override { return false; }

    // ---- Axes by kind and index (a chart has them; a plain display has none) ----
    // The main X and Y axes.
    TQVDisplayAxis* GetXAxis() const override { return nullptr; }
    TQVDisplayAxis* GetYAxis() const override { return nullptr; }
    // How the display's elements light up, and which of them are lit or dragged; none on a
    // display without such elements.
    TQVDisplayHighlighting* GetHighlighting() const override { return nullptr; }
    TQVHighlightInfo* GetHighlightInfo() const override { return nullptr; }
    // The position of an axis among all axes of the display; -1 when it has none.
    int32_t GetAxisIndex(const TQVDisplayAxis* AAxis) const override { return -1; }
    // A press on an axis title asks for the setup of the axis AIndex (GetAxisIndex); a
    // display without axes has nothing to show.
    void DoAxisClick(int32_t AIndex) override {}
    void DoLegendClick(int32_t AGroupIndex, int32_t AIndex, TQLPersistent* AItem) override
    {
        ShowSetupDialogFor(AItem);
    }

    // ---- Setup dialog ----
    // The host's setup dialog over the display's settings, opened on AObject's page (the
    // display's own when null). The platform fills the hook, which answers whether the user
    // accepted; without one (headless) nothing opens and the answer is cancelled (false).
    using TQVSetupDialogHook = std::function<bool(TQLPersistent* AObject)>;
    bool ShowSetupDialog() { return ShowSetupDialogFor(nullptr); }
    bool ShowSetupDialogFor(TQLPersistent* AObject);
    void SetOnSetupDialog(TQVSetupDialogHook AHook) { FOnSetupDialog = std::move(AHook); }
    const TQVSetupDialogHook& GetOnSetupDialog() const { return FOnSetupDialog; }
    // The index of an X (Y) axis among the X (Y) axes, and back; -1 and null when unknown.
    int32_t GetXAxisIndexOf(const TQVDisplayAxis* AAxis) const override { return -1; }
    TQVDisplayAxis* GetXAxisByIndex(int32_t AIndex) const override { return nullptr; }
    int32_t GetYAxisIndexOf(const TQVDisplayAxis* AAxis) const override { return -1; }
    TQVDisplayAxis* GetYAxisByIndex(int32_t AIndex) const override { return nullptr; }

    // ---- Focus, state, cursor shown ----
    virtual bool GetIsFocused() const { return FFocused; }
    void SetFocus();
    // The host reports focus changes.
    void SetFocused(bool AValue) { FFocused = AValue; }
    int32_t GetTabOrder() const { return FTabOrder; }
    void SetTabOrder(int32_t AValue) { FTabOrder = AValue; }
    TQLComponentState GetComponentState() const { return FComponentState; }
    void SetComponentState(TQLComponentState AValue);
    bool GetDesigning() const override { return (FComponentState & csDesigning) != 0; }
    void SetDesigning(bool AValue);
    // The host window: present, and its own state.
    void SetParentState(bool AHasParent, TQLComponentState AParentState);
    // The cursor shown now (the user's, or one a tool or element put up).
    TCursor GetShownCursor() const { return FShownCursor; }
    void SetDisplayCursor(TCursor AValue) override;
    void SetToolCursorChanged(bool AValue) override { FToolCursorChanged = AValue; }
    void SetElementCursorChanged(bool AValue) override { FElementCursorChanged = AValue; }

    // ---- Tooltips and label templates ----
    // Draws the mark of a channel hit at APoint and, when the hit point's label is visible,
    // the label box beside it, flipped to stay inside the data view. OnDataToolTip may
    // replace the text.
    void DrawHitTest(TQLCanvas& ACanvas, const TPoint& APoint, const TQVChannelMouseHitPoint& AHitPoint) override;
    // The text of the label shown at a channel hit; the chart fills it from its axes.
    std::string GetFormatedMouseHitLabelText() override { return {}; }
    void SetToolTipText(const std::string& AText);
    const std::string& GetToolTipText() const { return FNewToolTipText; }
    // AValue substituted into the label's own template, else into the default one:
    // "%V" is the value, "%%" a percent sign; any other code is dropped.
    static std::string GetMeasurementLabelText(const std::string& AValue, const std::string& ALabelText,
                                               const std::string& ADefaultTemplate);

    // ---- Hosted elements ----
    // Displays and other elements drawn behind everything else, in index order.
    TQVDisplayElements* GetElements() const { return FElements.get(); }
    // The hosted elements are stored with the display's settings.
    IQLStoredList* GetStoredList() const override { return FElements.get(); }
    void InvalidateOwner() override { InvalidateRefresh(); }
    const TQLCanvasFactory& GetElementCanvasFactory() const override { return FCanvasFactory; }

    // ---- Components and views ----
    const std::vector<TQVDisplayComponent*>& GetComponents() const { return FComponents; }
    // The views in layout order.
    TQVDisplayViews& GetViews() override { return FViews; }
    const TQVDisplayViews& GetViews() const { return FViews; }
    // Docks every view to the remaining area in list order; only when a recalculation is due.
    void RecalculateViewRects();
    // All axes, the X axes and the Y axes, in creation order; the lists do not own them.
    TQVDisplayAxisList& GetAxes() override { return FAxes; }
    const TQVDisplayAxisList& GetAxes() const { return FAxes; }
    TQVDisplayAxisList& GetXAxes() override { return FXAxes; }
    const TQVDisplayAxisList& GetXAxes() const { return FXAxes; }
    TQVDisplayAxisList& GetYAxes() override { return FYAxes; }
    const TQVDisplayAxisList& GetYAxes() const { return FYAxes; }

    // The floating tool bar over the data view.
    TQVDisplayToolBar* GetToolBar() const { return FToolBar.get(); }
    void SetToolBar(const TQVDisplayToolBar* AValue);

    // The main title and its additional titles.
    TQVDisplayTitle* GetTitle() const { return FTitle.get(); }
    void SetTitle(const TQVDisplayTitle* AValue);

    // ---- Zooming (QVDataDisplayZoom.cpp) ----
    // Every zoom is a set of per-axis windows. The public operations take the write guard,
    // save an undo step unless told not to, and report the change once through
    // OnZoomChanged. The main X and Y axes set the display's window; the other axes of a
    // direction follow them by proportion. Factors that are not positive finite numbers and
    // limits that are not finite raise std::invalid_argument.
    TQVDisplayZoom* GetZooming() const override { return FZooming.get(); }
    void SetZooming(const TQVDisplayZoom* AValue);
    // Every axis back to its full range.
    virtual void ZoomOff();
    // Scales every axis' window about its centre; below 1 zooms in.
    void ZoomBy(double AValue) { ZoomBy(AValue, AValue, true); }
    void ZoomBy(double AValue, bool SaveHistory) { ZoomBy(AValue, AValue, SaveHistory); }
    void ZoomBy(double XValue, double YValue) { ZoomBy(XValue, YValue, true); }
    virtual void ZoomBy(double XValue, double YValue, bool SaveHistory);
    // The main axes to the given printed limits; with HoldOnZoom the display holds.
    void ZoomTo(double XMin, double XMax, double YMin, double YMax) { ZoomTo(XMin, XMax, YMin, YMax, true); }
    void ZoomTo(double XMin, double XMax, double YMin, double YMax, bool SaveHistory) override;
    // The same with the limits in data units.
    void ZoomToData(double XMin, double XMax, double YMin, double YMax) { ZoomToData(XMin, XMax, YMin, YMax, true); }
    virtual void ZoomToData(double XMin, double XMax, double YMin, double YMax, bool SaveHistory);
    // Back to the zoom before the last step, and forward again. Harmless on an empty history.
    virtual void UndoZoom();
    virtual void RedoZoom();
    virtual void ClearZoomUndo();
    // Records the present zoom as an undo step and forgets the redo steps. A burst of wheel
    // notches (AFromWheel) makes one step.
    void SaveUndoZoom(bool AFromWheel) override;
    // One wheel notch over the data view: every axis scales about the pointer.
    virtual void MouseWheelZoom(const TPoint& APoint, double AXFactor, double AYFactor);
    // One wheel notch over a single axis.
    void MouseWheelZoomAxis(TQVDisplayAxis* AAxis, const TPoint& APoint, double AFactor);
    // Reports a change: a new layout, then OnZoomChanged with ARanges' new half filled in.
    void ZoomChanged(TQVRealRanges ARanges, TQVZoomOperation AOperation) override;
    // The display's window now, as the old half of a change's ranges.
    TQVRealRanges GetZoomRanges() const override;
    bool CanZoomIn() const { return GetIntCanZoomIn(); }
    bool CanZoomOut() const { return GetIntCanZoomOut(); }
    bool CanUndoZoom() const;
    bool CanRedoZoom() const;
    // Whether any axis of the display is zoomed.
    virtual bool IsZoomed() const;
    bool IsMainAxisZoomed() const override;
    // The main axes' windows: the zoom window while zoomed, else the current limits.
    double GetXMinZoom() const override;
    double GetXMaxZoom() const override;
    double GetYMinZoom() const override;
    double GetYMaxZoom() const override;
    void SetOnZoomChanged(TQVZoomChangedEvent AHandler) { FOnZoomChanged = std::move(AHandler); }
    const TQVZoomChangedEvent& GetOnZoomChanged() const { return FOnZoomChanged; }
    // The undo and redo stacks, for inspection.
    const TQVDisplayZoomList& GetUndoList() const { return *FUndoList; }
    const TQVDisplayZoomList& GetRedoList() const { return *FRedoList; }
    // An axis that is going away leaves the zoom history.
    void ForgetZoomAxis(const TQVDisplayAxis* AAxis) override;

    // ---- Events ----
    void SetOnPaint(TNotifyEvent AHandler) { FOnPaint = std::move(AHandler); }
    const TNotifyEvent& GetOnPaint() const { return FOnPaint; }
    void SetOnDataToolTip(TQVDataToolTipEvent AHandler) { FOnDataToolTip = std::move(AHandler); }
    const TQVDataToolTipEvent& GetOnDataToolTip() const { return FOnDataToolTip; }
    void SetOnMouseDown(TMouseEvent AHandler) { FOnMouseDown = std::move(AHandler); }
    const TMouseEvent& GetOnMouseDown() const { return FOnMouseDown; }
    void SetOnMouseUp(TMouseEvent AHandler) { FOnMouseUp = std::move(AHandler); }
    const TMouseEvent& GetOnMouseUp() const { return FOnMouseUp; }
    using TMouseMoveEvent = std::function<void(TQLPersistent* Sender, TShiftState Shift, float X, float Y)>;
    void SetOnMouseMove(TMouseMoveEvent AHandler) { FOnMouseMove = std::move(AHandler); }
    const TMouseMoveEvent& GetOnMouseMove() const { return FOnMouseMove; }
    void SetOnClick(TNotifyEvent AHandler) { FOnClick = std::move(AHandler); }
    const TNotifyEvent& GetOnClick() const { return FOnClick; }
    void SetOnDblClick(TNotifyEvent AHandler) { FOnDblClick = std::move(AHandler); }
    const TNotifyEvent& GetOnDblClick() const { return FOnDblClick; }
    void SetOnKeyDown(TKeyEvent AHandler) { FOnKeyDown = std::move(AHandler); }
    const TKeyEvent& GetOnKeyDown() const { return FOnKeyDown; }
    void SetOnKeyUp(TKeyEvent AHandler) { FOnKeyUp = std::move(AHandler); }
    const TKeyEvent& GetOnKeyUp() const { return FOnKeyUp; }

    // ---- Host hooks ----
    // The host's repaint request (a widget's update()).
    void SetOnInvalidate(std::function<void()> AHandler) { FOnInvalidate = std::move(AHandler); }
    // The host shows a new cursor.
    void SetOnCursorChange(std::function<void(TCursor)> AHandler) { FOnCursorChange = std::move(AHandler); }
    // The host moves the keyboard focus to the control.
    void SetOnSetFocus(std::function<void()> AHandler) { FOnSetFocus = std::move(AHandler); }

    void Loaded() override;

    QL_CLASS_INFO()

protected:
    // Zoom workers: no history, no report.
    virtual bool GetIntCanZoomIn() const;
    virtual bool GetIntCanZoomOut() const;
    // AIsScale false: the limits are in data units.
    virtual void IntZoomTo(double XMin, double XMax, double YMin, double YMax, TQVZoomOperation AOperation,
                           bool AIsScale);
    virtual void IntZoomOff();
    virtual void IntZoomToList(const TQVAxisZoomList& AList, TQVZoomOperation AOperation);
    // ZoomTo (printed units, AIsScale) and ZoomToData (data units): checks, history, hold, the
    // zoom and its report.
    void ZoomToWindow(const char* AOperation, double XMin, double XMax, double YMin, double YMax, bool SaveHistory,
                      bool AIsScale);
    // A snapshot of every axis' zoom window.
    virtual std::unique_ptr<TQVAxisZoomList> GetAxisUndoList() const;

    // The control's repaint request; a scope ignores it while a user draw event runs.
    virtual void Invalidate();
    // Takes the destroy guard once: every later guard comes back empty and paint and
    // refresh do nothing. Derived destructors call it first.
    void BeginDestroy();
    // The surface over the display's own picture; null without a canvas factory.
    TQLCanvas* GetBitmapCanvas() const { return FBitmapCanvas.get(); }
    // Where IntDraw puts the picture on the foreign surface.
    TPoint FLayerOrigin{0, 0};

    std::atomic<bool> FNeedsRecalc{true};
    std::atomic<bool> FRefreshImage{true};

    void AddComponent(TQVDisplayComponent* AComponent) override;
    void RemoveComponent(TQVDisplayComponent* AComponent) override;

private:
    void DispatchWheel(bool ADown, TShiftState AShift, const TPoint& AMousePos);
    template <class F>
    void ForEachMouseTarget(F&& AProc, bool AVisibleOnly, bool AStopWhenHandled, bool& AHandled);
    // Picture output helpers: the services or the canvas factory, or a clear error naming
    // the operation.
    IQLPictureServices& RequirePictureServices(const char* AOperation) const;
    const TQLCanvasFactory& RequireCanvasFactory(const char* AOperation) const;
    // The control's picture, painted as for print into ABitmap at its size.
    void PaintPicture(const char* AOperation, TQLBitmap& ABitmap);
    void SaveToVector(const char* AOperation, TQLVectorFormat AFormat, const std::string& AFileName);
    // PaintToCanvas for a picture of ARect's size.
    void PaintToCanvasSized(TQLBitmap& ABitmap, TQLCanvas& ACanvas, const TRect& ARect, bool APrinting);

    TQLBitmap FBkgBitmap;
    double FDevicePixelRatio = 1.0;
    std::unique_ptr<TQLCanvas> FBitmapCanvas;
    TQLCanvas* FActiveCanvas = nullptr; // the surface of the paint under way
    TQVDisplayViews FViews;
    TQVDisplayAxisList FAxes;
    TQVDisplayAxisList FXAxes;
    TQVDisplayAxisList FYAxes;
    std::vector<TQVDisplayComponent*> FComponents;
    std::unique_ptr<TQVDisplayTitle> FTitle;
    std::unique_ptr<TQVDisplayElements> FElements;
    std::unique_ptr<TQVDisplayToolBar> FToolBar;
    std::unique_ptr<TQVDisplayZoom> FZooming;
    std::unique_ptr<TQVDisplayZoomList> FUndoList;
    std::unique_ptr<TQVDisplayZoomList> FRedoList;
    TQVZoomChangedEvent FOnZoomChanged;
    TAlphaColor FColor = 0xFF000000;
    bool FPrinting = false;
    TSize FPrintSize;
    TNotifyEvent FOnPaint;
    TCursor FCursor = crDefault;
    TCursor FShownCursor = crDefault;
    bool FToolCursorChanged = false;
    bool FElementCursorChanged = false;
    bool FWasMouseWheel = false;
    TQVDataToolTipEvent FOnDataToolTip;
    TQVDisplayNavigateMode FNavigateMode = nmZoom;
    bool FHold = false;
    TQLTimer FRefreshTimer;
    bool FHasNewToolTipText = false;
    std::string FNewToolTipText;

    float FLeft = 0, FTop = 0, FWidth = 450, FHeight = 280;
    bool FVisible = true;
    bool FFocused = false;
    int32_t FTabOrder = 0;
    TQLComponentState FComponentState = 0;
    bool FHasParent = false;
    TQLComponentState FParentState = 0;
    TQLCanvasFactory FCanvasFactory;
    std::shared_ptr<IQLPictureServices> FPictureServices;
    TQLLockGuard FDestroyGuard;

    TMouseEvent FOnMouseDown, FOnMouseUp;
    TMouseMoveEvent FOnMouseMove;
    TNotifyEvent FOnClick, FOnDblClick;
    TKeyEvent FOnKeyDown, FOnKeyUp;
    std::function<void()> FOnInvalidate;
    std::function<void(TCursor)> FOnCursorChange;
    std::function<void()> FOnSetFocus;
    TQVSetupDialogHook FOnSetupDialog;
};

} // namespace qv
