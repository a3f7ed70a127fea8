#include "qv/display/QVDataDisplay.h"

#include "qv/axes/QVDisplayAxis.h"
#include "qv/component/QVLabelTemplate.h"
#include "qv/display/QVDisplayToolBar.h"

#include "qv/channels/QVChannelMouseHitPoint.h"
#include "qv/component/QVDisplayComponent.h"
#include "qv/component/QVDisplayZoom.h"
#include "qv/decor/QVDisplayTitle.h"
#include "qv/display/QVDisplayZoomList.h"
#include "qv/foundation/QLClassBuilder.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <stdexcept>

#include <limits>

namespace qv {

TQVDataDisplay::TQVDataDisplay() : TQVDisplayOwner(QLMakeLock())
{
    // Any settings change of the display or of its settings objects repaints.
    GetBasicLock().SetNotify([this] { InvalidateRefresh(); });
    FRefreshTimer.SetOnTimer([this] { OnRefreshTimer(this); });
    FRefreshTimer.SetInterval(100);
    FZooming = std::make_unique<TQVDisplayZoom>(this);
    FUndoList = std::make_unique<TQVDisplayZoomList>();
    FRedoList = std::make_unique<TQVDisplayZoomList>();
    FBkgBitmap.SetSize(10, 10);
    FElements = std::make_unique<TQVDisplayElements>(*this);
    FToolBar = std::make_unique<TQVDisplayToolBar>(this);
    // Created last: until a derived display adds its own views the title stands last.
    FTitle = std::make_unique<TQVDisplayTitle>(this);
}

TQVDataDisplay::~TQVDataDisplay()
{
    BeginDestroy();
    FElements.reset();
    FRedoList.reset();
    FUndoList.reset();
    FTitle.reset();
    FToolBar.reset();
    FZooming.reset();
    FRefreshTimer.SetOnTimer({});
    FRefreshTimer.SetOnChange({});
    GetBasicLock().SetNotify({});
    FBitmapCanvas.reset();
}

void TQVDataDisplay::BeginDestroy()
{
    if (!FDestroyGuard)
        FDestroyGuard = GetLock()->AcquireDestroy();
    FComponentState |= csDestroying;
}

// ---- Settings ----

void TQVDataDisplay::SetColor(TAlphaColor AValue)
{
    GetBasicLock().Setter(
        FColor, AValue, [this] { InvalidateRecalc(); }, false);
}

void TQVDataDisplay::SetCursor(TCursor AValue)
{
    auto Guard = GetLock()->AcquireWrite();
    FCursor = AValue;
    SetDisplayCursor(AValue);
}

void TQVDataDisplay::SetDisplayCursor(TCursor AValue)
{
    if (FShownCursor == AValue)
        return;
    FShownCursor = AValue;
    if (FOnCursorChange)
        FOnCursorChange(AValue);
}

bool TQVDataDisplay::GetAxisValueAt(int32_t AX, int32_t AY, double& AxisX, double& AxisY) const
{
    const TQVDisplayAxis* XAxis = GetXAxis();
    const TQVDisplayAxis* YAxis = GetYAxis();
    return XAxis && YAxis && XAxis->GetValueAt(AX, AY, AxisX) && YAxis->GetValueAt(AX, AY, AxisY);
}

std::string TQVDataDisplay::GetPrintTitle() const
{
    const std::string& Text = FTitle->GetText();
    return Text.empty() ? "Untitled" : Text;
}

void TQVDataDisplay::SetToolBar(const TQVDisplayToolBar* AValue)
{
    FToolBar->Assign(AValue);
}

void TQVDataDisplay::SetTitle(const TQVDisplayTitle* AValue)
{
    FTitle->Assign(AValue);
}

void TQVDataDisplay::SetNavigateMode(TQVDisplayNavigateMode AValue)
{
    Set(FNavigateMode, AValue);
}

void TQVDataDisplay::SetRefreshInterval(uint32_t AValue)
{
    FRefreshTimer.SetInterval(std::max<uint32_t>(AValue, 1));
}

void TQVDataDisplay::SetHold(bool AValue)
{
    // Releasing hold shows the newest data at once, without waiting for the next tick.
    Set(FHold, AValue, [this] {
        PopulateDrawBuffers();
        InvalidateRefresh();
    });
}

void TQVDataDisplay::SetVisible(bool AValue)
{
    if (FVisible == AValue)
        return;
    FVisible = AValue;
    InvalidateRefresh();
}

void TQVDataDisplay::SetComponentState(TQLComponentState AValue)
{
    FComponentState = AValue;
    FRefreshTimer.SetEnabled((AValue & csDesigning) == 0);
}

void TQVDataDisplay::SetDesigning(bool AValue)
{
    SetComponentState(AValue ? (FComponentState | csDesigning) : (FComponentState & ~csDesigning));
}

void TQVDataDisplay::SetParentState(bool AHasParent, TQLComponentState AParentState)
{
    FHasParent = AHasParent;
    FParentState = AParentState;
}

// ---- Geometry ----

void TQVDataDisplay::SetBounds(float ALeft, float ATop, float AWidth, float AHeight)
{
    if (!std::isfinite(ALeft) || !std::isfinite(ATop) || !std::isfinite(AWidth) || !std::isfinite(AHeight) ||
        AWidth < 0 || AHeight < 0)
        throw std::invalid_argument("TQVDataDisplay::SetBounds: invalid bounds " + std::to_string(ALeft) + ", " +
                                    std::to_string(ATop) + ", " + std::to_string(AWidth) + " x " +
                                    std::to_string(AHeight));
    if (AWidth != FWidth || AHeight != FHeight)
        InvalidateRecalc();
    FLeft = ALeft;
    FTop = ATop;
    FWidth = AWidth;
    FHeight = AHeight;
}

int32_t TQVDataDisplay::GetPlotWidth() const
{
    return FPrinting ? FPrintSize.cx : static_cast<int32_t>(FWidth);
}

int32_t TQVDataDisplay::GetPlotHeight() const
{
    return FPrinting ? FPrintSize.cy : static_cast<int32_t>(FHeight);
}

// ---- Invalidation ----

void TQVDataDisplay::InvalidateRefresh()
{
    FRefreshImage.store(true, std::memory_order_release);
    Invalidate();
}

void TQVDataDisplay::PostRefresh()
{
    FRefreshImage.store(true, std::memory_order_release);
    if (GetDesigning())
        Invalidate();
}

void TQVDataDisplay::InvalidateRecalc()
{
    FNeedsRecalc.store(true, std::memory_order_release);
    InvalidateRefresh();
}

void TQVDataDisplay::InvalidateRange()
{
    ClearCaches();
    InvalidateRecalc();
}

void TQVDataDisplay::Invalidate()
{
    if (FOnInvalidate)
        FOnInvalidate();
}

void TQVDataDisplay::Loaded()
{
    TQLPersistent::Loaded();
    SetNeedsRecalc();
}

// ---- Refresh cycle ----

bool TQVDataDisplay::ShowSetupDialogFor(TQLPersistent* AObject)
{
    return FOnSetupDialog && FOnSetupDialog(AObject ? AObject : this);
}

void TQVDataDisplay::RefreshView()
{
    auto Guard = GetLock()->AcquireWrite();
    if (!Guard)
        return;
    // The refresh flag is never cleared: every tick of a live control repaints.
    if (PopulateDrawBuffers() || FRefreshImage.load(std::memory_order_acquire))
        InvalidateRefresh();
    // Hosted elements move their own data on the host's tick.
    FElements->RefreshElements();
}

// ---- Painting ----

void TQVDataDisplay::SetCanvasFactory(TQLCanvasFactory AFactory)
{
    FCanvasFactory = std::move(AFactory);
    FBitmapCanvas.reset();
    if (FCanvasFactory)
        FBitmapCanvas = FCanvasFactory(FBkgBitmap);
}

void TQVDataDisplay::SetBitmapSize(int32_t AWidth, int32_t AHeight)
{
    AWidth = std::max(AWidth, 0);
    AHeight = std::max(AHeight, 0);
    if (FBkgBitmap.GetLogicalWidth() == AWidth && FBkgBitmap.GetLogicalHeight() == AHeight &&
        FBkgBitmap.GetDevicePixelRatio() == FDevicePixelRatio && (FBitmapCanvas || !FCanvasFactory))
        return;
    FBitmapCanvas.reset();
    FBkgBitmap.SetSize(AWidth, AHeight, FDevicePixelRatio);
    if (FCanvasFactory)
        FBitmapCanvas = FCanvasFactory(FBkgBitmap);
}

void TQVDataDisplay::SetDevicePixelRatio(double AValue)
{
    if (!std::isfinite(AValue) || AValue <= 0.0 || AValue > 16.0)
        throw std::invalid_argument("TQVDataDisplay::SetDevicePixelRatio: invalid ratio " + std::to_string(AValue));
    if (AValue == FDevicePixelRatio)
        return;
    FDevicePixelRatio = AValue;
    // The picture takes the new ratio at the next paint; the layout, in logical pixels, stays.
    InvalidateRefresh();
}

void TQVDataDisplay::Paint()
{
    if (!FCanvasFactory)
        throw std::logic_error("TQVDataDisplay::Paint: no canvas factory set; paint with PaintToCanvas instead");
    SetBitmapSize(static_cast<int32_t>(FWidth), static_cast<int32_t>(FHeight));
    PaintToCanvas(FBkgBitmap, *FBitmapCanvas, false);
    PaintOverlay(TQLRegion(TRect{0, 0, GetPlotWidth(), GetPlotHeight()}), false);
    if (FOnPaint)
        FOnPaint(this);
}

void TQVDataDisplay::PaintToCanvas(TQLBitmap& ABitmap, TQLCanvas& ACanvas, bool APrinting)
{
    // Laid out in the bitmap's logical size; the canvas puts it into device pixels.
    PaintToCanvasSized(ABitmap, ACanvas, TRect{0, 0, ABitmap.GetLogicalWidth(), ABitmap.GetLogicalHeight()}, APrinting);
}

void TQVDataDisplay::PaintToCanvasSized(TQLBitmap& ABitmap, TQLCanvas& ACanvas, const TRect& ARect, bool APrinting)
{
    auto Guard = GetLock()->AcquireWrite();
    if (!Guard)
        return;
    const TRect Rect = ARect;
    const TQLRegion Region(Rect);
    if (&ABitmap != &FBkgBitmap)
        SetBitmapSize(Rect.Right, Rect.Bottom);
    // Text is measured on the surface being painted for the length of the paint.
    struct TActive {
        TQLCanvas*& Slot;
        TQLCanvas* Old;
        ~TActive() { Slot = Old; }
    } Active{FActiveCanvas, FActiveCanvas};
    FActiveCanvas = &ACanvas;
    PaintToCanvasRgn(ABitmap, ACanvas, Rect, Region, APrinting);
}

void TQVDataDisplay::PaintToCanvasRgn(TQLBitmap& /*ABitmap*/, TQLCanvas& ACanvas, const TRect& ARect,
                                      const TQLRegion& /*ARegion*/, bool /*APrinting*/)
{
    TQLCanvasSave Save(ACanvas);
    ACanvas.GetBrush().SetStyle(bsSolid);
    ACanvas.GetBrush().SetColor(FColor);
    ACanvas.FillRect(ARect);
}

namespace {
// Restores the print state however the drawing ends.
struct TPrintScope {
    bool& Printing;
    TSize& Size;
    TPrintScope(bool& APrinting, TSize& ASize, TSize ANew) : Printing(APrinting), Size(ASize)
    {
        Printing = true;
        Size = ANew;
    }
    ~TPrintScope() { Printing = false; }
};
} // namespace

void TQVDataDisplay::IntDraw(TQLCanvas& AGraphics, float AX, float AY, float AWidth, float AHeight, bool /*AStretch*/,
                             bool APrinting)
{
    if (!FCanvasFactory)
        throw std::logic_error("TQVDataDisplay::IntDraw: no canvas factory set");
    if (!(AWidth >= 0) || !(AHeight >= 0))
        throw std::invalid_argument("TQVDataDisplay::IntDraw: invalid size " + std::to_string(AWidth) + " x " +
                                    std::to_string(AHeight));
    TPrintScope Print(FPrinting, FPrintSize, TSize{QLRoundToInt(AWidth), QLRoundToInt(AHeight)});
    TQLBitmap Bitmap(QLRoundToInt(AWidth + 1), QLRoundToInt(AHeight + 1));
    {
        std::unique_ptr<TQLCanvas> Canvas = FCanvasFactory(Bitmap);
        PaintToCanvas(Bitmap, *Canvas, APrinting);
    }
    AGraphics.DrawBitmap(FLayerOrigin.X, FLayerOrigin.Y, Bitmap);
}

void TQVDataDisplay::IntRender(float AX, float AY, float AWidth, float AHeight, uint32_t* ABuffer, int32_t ABufferWidth,
                               int32_t ABufferHeight)
{
    if (!FVisible)
        return;
    if (!ABuffer || ABufferWidth < 0 || ABufferHeight < 0)
        throw std::invalid_argument("TQVDataDisplay::IntRender: invalid buffer of " + std::to_string(ABufferWidth) +
                                    " x " + std::to_string(ABufferHeight));
    if (!FCanvasFactory)
        throw std::logic_error("TQVDataDisplay::IntRender: no canvas factory set");
    TQLBitmap Bitmap(QLRoundToInt(AWidth + 1), QLRoundToInt(AHeight + 1));
    {
        std::unique_ptr<TQLCanvas> Canvas = FCanvasFactory(Bitmap);
        IntDraw(*Canvas, 1.0f, 1.0f, AWidth, AHeight, true, false);
    }
    // The overlap of the picture placed at (X, Y) with the buffer.
    const int32_t X = QLRoundToInt(AX), Y = QLRoundToInt(AY);
    int32_t CopyWidth, CopyHeight, SrcX = 0, SrcY = 0, DstX = 0, DstY = 0;
    if (X < 0) {
        CopyWidth = std::min(Bitmap.GetWidth() + X, ABufferWidth);
        SrcX = -X;
    } else {
        CopyWidth = std::min(Bitmap.GetWidth(), ABufferWidth - X);
        DstX = X;
    }
    if (Y < 0) {
        CopyHeight = std::min(Bitmap.GetHeight() + Y, ABufferHeight);
        SrcY = -Y;
    } else {
        CopyHeight = std::min(Bitmap.GetHeight(), ABufferHeight - Y);
        DstY = Y;
    }
    if (CopyWidth <= 0 || CopyHeight <= 0)
        return;
    // Premultiplied "over": dst = src + dst * (1 - src alpha), per channel.
    for (int32_t Row = 0; Row < CopyHeight; ++Row) {
        const uint32_t* Src = Bitmap.GetScanLine(SrcY + Row) + SrcX;
        uint32_t* Dst = ABuffer + static_cast<size_t>(DstY + Row) * ABufferWidth + DstX;
        for (int32_t Col = 0; Col < CopyWidth; ++Col) {
            const uint32_t S = Src[Col], D = Dst[Col];
            const uint32_t Inv = 255 - (S >> 24);
            uint32_t Out = 0;
            for (int Shift = 0; Shift < 32; Shift += 8) {
                const uint32_t C = ((S >> Shift) & 0xFF) + (((D >> Shift) & 0xFF) * Inv + 127) / 255;
                Out |= std::min<uint32_t>(C, 255) << Shift;
            }
            Dst[Col] = Out;
        }
    }
}

void TQVDataDisplay::DoLayerDraw(TQLCanvas& ACanvas, int32_t AWidth, int32_t AHeight, float /*AXCoeff*/,
                                 float /*AYCoeff*/, bool /*AContoursOnly*/)
{
    if (!FVisible || !FCanvasFactory || AWidth <= 0 || AHeight <= 0)
        return;
    auto Guard = GetLock()->AcquireWrite();
    if (!Guard)
        return;
    TQLBitmap Bitmap(AWidth, AHeight);
    {
        std::unique_ptr<TQLCanvas> Canvas = FCanvasFactory(Bitmap);
        PaintToCanvas(Bitmap, *Canvas, false);
    }
    const int32_t L = QLRoundToInt(FLeft), T = QLRoundToInt(FTop);
    ACanvas.StretchDrawBitmap(TRect{L, T, L + AWidth, T + AHeight}, Bitmap);
}

bool TQVDataDisplay::PaintIsDisabled() const
{
    const TQLComponentState Busy = csLoading | csReading;
    const bool Enabled =
        (FComponentState & Busy) == 0 && FHasParent && (FParentState & Busy) == 0 && (FVisible || GetDesigning());
    return !Enabled;
}

// ---- Mouse and keyboard ----

void TQVDataDisplay::SetFocus()
{
    FFocused = true;
    if (FOnSetFocus)
        FOnSetFocus();
}

template <class F>
void TQVDataDisplay::ForEachMouseTarget(F&& AProc, bool AVisibleOnly, bool AStopWhenHandled, bool& AHandled)
{
    // A handler may add or remove components: walk a copy, skipping any that went away.
    const std::vector<TQVDisplayComponent*> Snapshot = FComponents;
    auto Alive = [this](TQVDisplayComponent* C) {
        return std::find(FComponents.begin(), FComponents.end(), C) != FComponents.end();
    };
    // Tool bars first, then every other component, each pass from the last to the first.
    for (const bool ToolBars : {true, false}) {
        if (AStopWhenHandled && AHandled)
            return;
        for (auto It = Snapshot.rbegin(); It != Snapshot.rend(); ++It) {
            TQVDisplayComponent* C = *It;
            if (C->IsToolBar() != ToolBars || !Alive(C) || (AVisibleOnly && !C->IsVisible()))
                continue;
            AProc(C);
            if (AStopWhenHandled && AHandled)
                return;
        }
    }
}

void TQVDataDisplay::MouseMove(TShiftState AShift, float AX, float AY)
{
    if (FOnMouseMove)
        FOnMouseMove(this, AShift, AX, AY);
    if (GetDesigning())
        return;
    const int32_t X = QLRoundToInt(AX), Y = QLRoundToInt(AY);
    bool Handled = false;
    ForEachMouseTarget([&](TQVDisplayComponent* C) { C->MouseMove(AShift, X, Y, Handled); }, true, false, Handled);
    InvalidateRefresh();
}

void TQVDataDisplay::MouseDown(TMouseButton AButton, TShiftState AShift, float AX, float AY)
{
    if (FOnMouseDown)
        FOnMouseDown(this, AButton, AShift, AX, AY);
    if (GetDesigning())
        return;
    if (!GetIsFocused() && FTabOrder >= 0)
        SetFocus();
    const int32_t X = QLRoundToInt(AX), Y = QLRoundToInt(AY);
    bool Handled = false;
    ForEachMouseTarget(
        [&](TQVDisplayComponent* C) {
            C->MouseDown(AButton, AShift, X, Y, C->GetDrawRect().Contains(TPoint{X, Y}), Handled);
        },
        true, true, Handled);
}

void TQVDataDisplay::MouseUp(TMouseButton AButton, TShiftState AShift, float AX, float AY)
{
    if (FOnMouseUp)
        FOnMouseUp(this, AButton, AShift, AX, AY);
    if (GetDesigning())
        return;
    const int32_t X = QLRoundToInt(AX), Y = QLRoundToInt(AY);
    // Every component hears the release, hidden ones too, so that no drag stays stuck.
    const std::vector<TQVDisplayComponent*> Snapshot = FComponents;
    for (auto It = Snapshot.rbegin(); It != Snapshot.rend(); ++It)
        if (std::find(FComponents.begin(), FComponents.end(), *It) != FComponents.end())
            (*It)->MouseUp(AButton, AShift, X, Y, (*It)->GetDrawRect().Contains(TPoint{X, Y}));
}

bool TQVDataDisplay::DoMouseWheelDown(TShiftState AShift, const TPoint& AMousePos)
{
    DispatchWheel(true, AShift, AMousePos);
    return false;
}

bool TQVDataDisplay::DoMouseWheelUp(TShiftState AShift, const TPoint& AMousePos)
{
    DispatchWheel(false, AShift, AMousePos);
    return false;
}

void TQVDataDisplay::DispatchWheel(bool ADown, TShiftState AShift, const TPoint& AMousePos)
{
    if (GetDesigning())
        return;
    // Every component under the wheel hears it, first to last; over the data view the
    // display also zooms about the point.
    const std::vector<TQVDisplayComponent*> Snapshot = FComponents;
    for (TQVDisplayComponent* C : Snapshot) {
        if (!C->GetDrawRect().Contains(AMousePos))
            continue;
        if (ADown)
            C->MouseWheelDown(AShift, AMousePos);
        else
            C->MouseWheelUp(AShift, AMousePos);
    }
    if (TQVDisplayComponent* View = GetDataView(); View && View->GetDrawRect().Contains(AMousePos)) {
        const double Factor = ADown ? 1.1 : 0.9;
        MouseWheelZoom(AMousePos, Factor, Factor);
    }
}

void TQVDataDisplay::DoMouseEnter()
{
    if (GetDesigning())
        return;
    const std::vector<TQVDisplayComponent*> Snapshot = FComponents;
    for (TQVDisplayComponent* C : Snapshot)
        C->MouseEnter();
}

void TQVDataDisplay::DoMouseLeave()
{
    if (!GetDesigning()) {
        const std::vector<TQVDisplayComponent*> Snapshot = FComponents;
        for (TQVDisplayComponent* C : Snapshot)
            C->MouseLeave();
    }
    if (FToolCursorChanged || FElementCursorChanged) {
        SetDisplayCursor(FCursor);
        FToolCursorChanged = false;
        FElementCursorChanged = false;
    }
}

void TQVDataDisplay::KeyDown(uint16_t& AKey, TShiftState AShift)
{
    if (FOnKeyDown)
        FOnKeyDown(this, AKey, AShift);
}

void TQVDataDisplay::KeyUp(uint16_t& AKey, TShiftState AShift)
{
    if (FOnKeyUp)
        FOnKeyUp(this, AKey, AShift);
}

void TQVDataDisplay::Click()
{
    if (FOnClick)
        FOnClick(this);
}

void TQVDataDisplay::DblClick()
{
    if (FOnDblClick)
        FOnDblClick(this);
}

// ---- Tooltips and label templates ----

void TQVDataDisplay::DrawHitTest(TQLCanvas& ACanvas, const TPoint& APoint, const TQVChannelMouseHitPoint& AHitPoint)
{
    const int32_t X = APoint.X, Y = APoint.Y;
    ACanvas.SetPenStyle(psSolid);
    ACanvas.Rectangle(X - 2, Y - 2, X + 3, Y + 3);
    const TQVOptionalLabel& Label = *AHitPoint.GetPointLabel();
    if (!Label.GetVisible())
        return;
    ACanvas.ApplyFont(*Label.GetFont());
    std::string Text = GetFormatedMouseHitLabelText();
    auto* View = dynamic_cast<TQVDisplayView*>(GetDataView());
    if (FOnDataToolTip) {
        FHasNewToolTipText = false;
        FNewToolTipText = Text;
        const TQVRealPoint Value = View ? View->GetValuePoint() : TQVRealPoint{};
        FOnDataToolTip(this, APoint, Value, Text);
        if (FHasNewToolTipText)
            Text = FNewToolTipText;
    }
    const TSize Size = ACanvas.TextExtent(Text);
    const TRect ViewRect = View ? View->GetDrawRect() : TRect{0, 0, GetPlotWidth(), GetPlotHeight()};
    int32_t BoxX = X + 4, BoxY = Y - Size.cy;
    bool Flip = false;
    if (BoxX + Size.cx + 3 > ViewRect.Left + (View ? View->GetWidth() : ViewRect.Width()))
        Flip = true;
    if (BoxY < ViewRect.Top) {
        BoxY += Size.cy;
        Flip = true;
    }
    if (Flip && BoxX - Size.cx - 11 > ViewRect.Left)
        BoxX = BoxX - Size.cx - 11;
    ACanvas.Rectangle(BoxX, BoxY, BoxX + Size.cx + 4, BoxY + Size.cy + 2);
    ACanvas.TextOut(BoxX + 2, BoxY + 1, Text);
}

void TQVDataDisplay::SetToolTipText(const std::string& AText)
{
    auto Guard = GetLock()->AcquireWrite();
    FHasNewToolTipText = true;
    FNewToolTipText = AText;
}

std::string TQVDataDisplay::GetMeasurementLabelText(const std::string& AValue, const std::string& ALabelText,
                                                    const std::string& ADefaultTemplate)
{
    return QVExpandLabelTemplate(ALabelText.empty() ? ADefaultTemplate : ALabelText,
                                 [&](char ACode, std::string& AResult) {
                                     if (ACode == 'V')
                                         AResult += AValue;
                                 });
}

// ---- Components ----

void TQVDataDisplay::AddComponent(TQVDisplayComponent* AComponent)
{
    FComponents.push_back(AComponent);
}

void TQVDataDisplay::RemoveComponent(TQVDisplayComponent* AComponent)
{
    auto It = std::find(FComponents.begin(), FComponents.end(), AComponent);
    if (It != FComponents.end())
        FComponents.erase(It);
}

namespace {

// A strip of AThickness docks at the near or far edge of the running span ALo..AHi of one
// orientation: the view's span (AViewLo..AViewHi, the running span so far) shrinks to the
// strip, the running span loses it.
void DockStrip(int32_t& ALo, int32_t& AHi, int32_t& AViewLo, int32_t& AViewHi, int32_t AThickness, bool AFar)
{
    if (AFar) {
        AViewLo = AHi - AThickness;
        AHi -= AThickness;
    } else {
        AViewHi = ALo + AThickness;
        ALo += AThickness;
    }
}

// A strip's end reservations across it: the larger one asked so far counts.
void Reserve(int32_t& ABeginOffset, int32_t& AEndOffset, int32_t ABegin, int32_t AEnd)
{
    ABeginOffset = std::max(ABegin, ABeginOffset);
    AEndOffset = std::max(AEnd, AEndOffset);
}

} // namespace

void TQVDataDisplay::RecalculateViewRects()
{
    if (!GetNeedsRecalc())
        return;
    const int32_t PlotWidth = GetPlotWidth(), PlotHeight = GetPlotHeight();
    TRect R{0, 0, PlotWidth, PlotHeight};
    // Reservations that axes ask for at the ends of their strips; they keep the client view
    // clear of them without reducing the running rectangle.
    int32_t OffTop = 0, OffBottom = 0, OffLeft = 0, OffRight = 0;
    for (TQVDisplayView* View : FViews) {
        View->SetDrawRect(R);
        if (!View->IsVisibleForced())
            continue;
        const TSize Size = View->GetDefaultSize();
        const int32_t Begin = View->GetDefaultOffsetBegin();
        const int32_t End = View->GetDefaultOffsetEnd();
        TRect V = R;
        const TQVViewScreenAlign Align = View->GetScreenAlign();
        switch (Align) {
        case vsaLeft:
        case vsaRight:
            DockStrip(R.Left, R.Right, V.Left, V.Right, Size.cx, Align == vsaRight);
            Reserve(OffTop, OffBottom, Begin, End);
            break;
        case vsaTop:
        case vsaBottom:
            DockStrip(R.Top, R.Bottom, V.Top, V.Bottom, Size.cy, Align == vsaBottom);
            Reserve(OffLeft, OffRight, Begin, End);
            break;
        case vsaClient: {
            // Left and top come from GetDrawRect, which is all zero for a view that is not
            // visible yet.
            const TRect Current = View->GetDrawRect();
            V.Left = std::max(Current.Left, OffLeft);
            V.Top = std::max(Current.Top, OffTop);
            V.Bottom = std::min(V.Bottom, PlotHeight - OffBottom);
            V.Right = std::min(V.Right, PlotWidth - OffRight);
            break;
        }
        }
        View->SetDrawRect(V);
    }
}

const TQLClassInfo& TQVDataDisplay::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDataDisplay>("TQVDataDisplay", &TQLPersistent::StaticClassInfo())
            .Color("Color", &TQVDataDisplay::GetColor, &TQVDataDisplay::SetColor, TAlphaColor(0xFF000000))
            .Object("Title", &TQVDataDisplay::GetTitle)
            .Object("Zooming", &TQVDataDisplay::GetZooming)
            .Object("ToolBar", &TQVDataDisplay::GetToolBar)
            .Property("Cursor", &TQVDataDisplay::GetCursor, &TQVDataDisplay::SetCursor, crDefault)
            .Property("NavigateMode", &TQVDataDisplay::GetNavigateMode, &TQVDataDisplay::SetNavigateMode, nmZoom)
            .Property("RefreshInterval", &TQVDataDisplay::GetRefreshInterval, &TQVDataDisplay::SetRefreshInterval,
                      uint32_t(100))
            .Limits(1, std::numeric_limits<uint32_t>::max())
            .Property("Visible", &TQVDataDisplay::GetVisible, &TQVDataDisplay::SetVisible, true)
            .Build();
    return Info;
}
} // namespace qv
