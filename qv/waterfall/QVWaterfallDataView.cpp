#include "qv/waterfall/QVWaterfallDataView.h"

#include "qv/channels/QVDisplayHighlighting.h"
#include "qv/channels/QVHighlightInfo.h"
#include "qv/component/QVDisplayOwner.h"
#include "qv/component/QVDisplayZoom.h"
#include "qv/foundation/QLClassBuilder.h"
#include "qv/foundation/QVLog10a.h"
#include "qv/waterfall/QVLevelDisplay.h"
#include "qv/waterfall/QVWaterfallAxes.h"
#include "qv/waterfall/QVWaterfallBuffers.h"
#include "qv/waterfall/QVWaterfallCursor.h"
#include "qv/waterfall/QVWaterfallCursorLinks.h"
#include "qv/waterfall/QVWaterfallMarkers.h"
#include "qv/waterfall/QVWaterfallOwner.h"
#include "qv/waterfall/QVWaterfallTextLabels.h"

#include <algorithm>
#include <cmath>

namespace qv {

// ---- The view ----

TQVBasicWaterfallDataView::TQVBasicWaterfallDataView(TQVDisplayOwner* ADisplay, TQVWaterfallOwner* AWaterfall)
    : TQVDisplayView(ADisplay), FBasicWaterfall(AWaterfall)
{
    FCurrentMousePoint.X = -100;
    FZValues.assign(1, 0.0);
}

TQVBasicWaterfallDataView::~TQVBasicWaterfallDataView() = default;

void TQVBasicWaterfallDataView::ImageGeometry(int32_t& ASlots, int32_t& AStride) const
{
    ASlots = FBasicWaterfall->GetWaterfallXAxis()->GetSamples();
    AStride = (FBasicWaterfall->GetWaterfallBuffers().GetBufferSize() + 3) / 4 * 4;
    // Slots a whole number of 4 KB apart would fall on the same cache sets, and reading one
    // pixel from each of many slots, as the resampling does, would thrash: 64 bytes more
    // keep them apart.
    if (AStride % 1024 == 0)
        AStride += 16;
}

void TQVBasicWaterfallDataView::Repopulate()
{
    TQWCriticalSectionLock Lock(FBasicWaterfall->GetBufferSection());
    if (FBasicWaterfall->GetWaterfallBuffers().GetBuffersCount() == 0)
        return;
    int32_t Slots;
    ImageGeometry(Slots, FStride);
    FBufferSize = FStride * Slots * 4;
    FImage.assign(static_cast<size_t>(FStride) * Slots, 0xFF000000);
    FOrigin = 0;
    FResampler.InvalidateAll();
    Populate(0);
}

void TQVBasicWaterfallDataView::Populate(int32_t /*AStartIndex*/)
{}

void TQVBasicWaterfallDataView::PopulateOne(int32_t AStartIndex, double AMin, double AMax, bool ALogarithmic,
                                            const TQPRealBufferList& ABufferList, const TQVLevelColorMap& AColors,
                                            bool AMerge)
{
    double Lo = AMin, Hi = AMax;
    if (ALogarithmic) {
        Lo = QVLog10a(AMin);
        Hi = QVLog10a(AMax);
    }
    double Range = Hi - Lo;
    if (Range == 0.0 || !std::isfinite(Range))
        Range = 1.0;
    if (ABufferList.GetCount() == 0 || FImage.empty())
        return;
    const int32_t S = FBasicWaterfall->GetWaterfallXAxis()->GetSamples();
    const int32_t N = ABufferList.GetItem(0)->GetSize();
    const bool Reversed = FBasicWaterfall->GetWaterfallXAxis()->GetReversed();
    const int32_t Count = std::min(ABufferList.GetCount(), S);
    for (int32_t R = std::max(AStartIndex, 0); R < Count; ++R) {
        // A row fills its slot, sample after sample.
        const int32_t Slot = Physical(Reversed ? S - 1 - R : R, S);
        FResampler.InvalidateSlot(Slot);
        uint32_t* Out = FImage.data() + static_cast<size_t>(Slot) * FStride;
        const IQVRealBuffer& Row = *ABufferList.GetItem(R);
        const double* In = Row.Read();
        // Every row is as long as the first; a shorter one (never accepted) would end early.
        const int32_t Samples = std::min(N, Row.GetSize());
        if (!AMerge) {
            AColors.ColourRun(In, Samples, Out, Lo, Hi, Range, ALogarithmic);
            continue;
        }
        // Merging keeps in each colour byte the greater of the old and the new value.
        for (int32_t J = 0; J < Samples; ++J, ++Out) {
            double V = In[J];
            if (ALogarithmic)
                V = QVLog10a(V);
            if (std::isnan(V) || Lo > V)
                V = Lo;
            else if (V > Hi)
                V = Hi;
            const TAlphaColor Colour = AColors.ValueToColorGBR(V - Lo, Range);
            const uint32_t Old = *Out;
            uint32_t New = Old & 0xFF000000;
            for (int Shift = 0; Shift <= 16; Shift += 8)
                New |= std::max((Old >> Shift) & 0xFF, (Colour >> Shift) & 0xFF) << Shift;
            *Out = New;
        }
    }
}

bool TQVBasicWaterfallDataView::TestSetNeedsRedraw()
{
    TQVWaterfallBuffers& Buffers = FBasicWaterfall->GetWaterfallBuffers();
    const double Min = FBasicWaterfall->GetCurrentMinLevel();
    const double Max = FBasicWaterfall->GetCurrentMaxLevel();
    const bool Logarithmic = FBasicWaterfall->GetLevelsLogarithmic();
    const bool Forced = FBasicWaterfall->TakeForcedFullRedraw();
    if (!Forced && Buffers.FWasLogarithmic == Logarithmic && Buffers.FBufferMax == Max && Buffers.FBufferMin == Min)
        return false;
    Buffers.FWasLogarithmic = Logarithmic;
    Buffers.FBufferMax = Max;
    Buffers.FBufferMin = Min;
    return true;
}

int32_t TQVBasicWaterfallDataView::Physical(int32_t ASlot, int32_t ASlots) const
{
    const int32_t P = ASlot + FOrigin;
    return P >= ASlots ? P - ASlots : P;
}

uint32_t TQVBasicWaterfallDataView::GetImagePixel(int32_t AColumn, int32_t ALine) const
{
    const int32_t S = FBasicWaterfall->GetWaterfallXAxis()->GetSamples();
    if (GetDisplay()->GetIsVertical())
        return FImage[static_cast<size_t>(Physical(ALine, S)) * FStride + AColumn];
    const int32_t N = FBasicWaterfall->GetWaterfallBuffers().GetBufferSize();
    return FImage[static_cast<size_t>(Physical(AColumn, S)) * FStride + (N - 1 - ALine)];
}

void TQVBasicWaterfallDataView::FillEmpty(int32_t ACount)
{
    const int32_t S = FBasicWaterfall->GetWaterfallXAxis()->GetSamples();
    if (ACount >= S)
        return;
    const TAlphaColor Colour = GetDisplay()->GetColor() | 0xFF000000;
    const bool Reversed = FBasicWaterfall->GetWaterfallXAxis()->GetReversed();
    const int32_t First = Reversed ? 0 : ACount;
    for (int32_t Slot = First; Slot < First + S - ACount; ++Slot) {
        const int32_t P = Physical(Slot, S);
        FResampler.InvalidateSlot(P);
        std::fill_n(FImage.data() + static_cast<size_t>(P) * FStride, FStride, Colour);
    }
}

void TQVBasicWaterfallDataView::DirectDraw(TQLBitmap& ABitmap)
{
    TQVWaterfallXAxis* XAxis = FBasicWaterfall->GetWaterfallXAxis();
    TQVWaterfallYAxis* YAxis = FBasicWaterfall->GetWaterfallYAxis();
    const bool Vertical = GetDisplay()->GetIsVertical();
    const bool Reversed = XAxis->GetReversed();
    double SpanX, SpanY, SpanW, SpanH;
    int32_t SourceW, SourceH;
    {
        TQWCriticalSectionLock Lock(FBasicWaterfall->GetBufferSection());
        TQVWaterfallBuffers& Buffers = FBasicWaterfall->GetWaterfallBuffers();
        const int32_t Count = Buffers.GetBuffersCount();
        if (Count <= 0)
            return;
        const int32_t S = XAxis->GetSamples();
        const int32_t N = Buffers.GetBufferSize();
        const double XMin = XAxis->GetMinSample(), XMax = XAxis->GetMaxSample();
        const double YMin = YAxis->GetMinSample(), YMax = YAxis->GetMaxSample();
        const double RowStart = Reversed ? S - XMax : XMin;
        if (Vertical) {
            SourceW = N, SourceH = S;
            SpanX = YMin, SpanW = YMax - YMin, SpanY = RowStart, SpanH = XMax - XMin;
        } else {
            SourceW = S, SourceH = N;
            SpanX = RowStart, SpanW = XMax - XMin, SpanY = N - YMax, SpanH = YMax - YMin;
        }
        int32_t Slots, Stride;
        ImageGeometry(Slots, Stride);
        bool Rebuilt = false;
        if (FImage.empty() || FBufferSize != Stride * Slots * 4 || FStride != Stride) {
            FStride = Stride;
            FOrigin = 0;
            FBufferSize = Stride * Slots * 4;
            FImage.assign(static_cast<size_t>(Stride) * Slots, 0xFF000000);
            FResampler.InvalidateAll();
            Rebuilt = true;
        }
        int32_t First = 0;
        const int32_t New = Buffers.GetNewBuffersCount();
        // The rows that left the picture since the last draw. Markers of relative groups ride
        // with their rows also when the whole image is coloured anew (new levels, or a
        // history's worth of new rows at once).
        const int32_t Left = Rebuilt ? 0 : std::max(FOldBufferFill + New - S, 0);
        if (Left > 0)
            FBasicWaterfall->GetWaterfallMarkerGroups()->ScrollBy(Left);
        if (!TestSetNeedsRedraw() && New < S && !Rebuilt) {
            First = std::max(Count - New, 0);
            if (Left > 0) {
                // The history is full: the rows that left make room by turning the ring,
                // whatever the history's length; the slots they free are coloured anew
                // below.
                const int32_t Shift = Left % S;
                FOrigin = Reversed ? (FOrigin - Shift + S) % S : (FOrigin + Shift) % S;
                FBasicWaterfall->MainViewScrolled(false);
            }
        }
        if (FMouseAfterLastBuffer && New > 0) {
            FMouseAfterLastBuffer = false;
            FBasicWaterfall->MainViewScrolled(false);
        }
        Buffers.ResetNewBuffersCount();
        FOldBufferFill = Count;
        Populate(First);
        FillEmpty(Count);
    }
    // Only the painting thread writes the image: the resampling reads it without the lock.
    const TRect Dest = GetDrawRect();
    const double XCentre = SpanX + SpanW / 2.0 + (Vertical || !Reversed ? 0.5 : -0.5);
    const double YCentre = SpanY + SpanH / 2.0 + (Vertical ? (Reversed ? -0.5 : 0.5) : -0.5);
    FResampler.Prepare(SourceW, SourceH, XCentre, YCentre, SpanW, SpanH, Dest.Right - Dest.Left,
                       Dest.Bottom - Dest.Top);
    FResampler.Place(!Vertical, FOrigin, Vertical ? SourceH : SourceW, FStride, (Vertical ? SourceW : SourceH) - 1);
    FResampler.Resample(FImage.data(), ABitmap, Dest.Left, Dest.Top);
}

// ---- Lookup ----

double TQVBasicWaterfallDataView::GetValueAtInt(double AMinValue, int32_t AX, int32_t AY, bool& AFound) const
{
    AFound = false;
    TQWCriticalSectionLock Lock(FBasicWaterfall->GetBufferSection());
    if (FImage.empty())
        return CQVNoWaterfallValue;
    const TQVWaterfallXAxis* XAxis = FBasicWaterfall->GetWaterfallXAxis();
    const TQVWaterfallYAxis* YAxis = FBasicWaterfall->GetWaterfallYAxis();
    const TQPRealBufferList& Rows = FBasicWaterfall->GetWaterfallBuffers().GetHoldBufferList();
    const double X = AX - GetLeft(), Y = AY - GetTop();
    const double W = std::max(GetWidth(), 1), H = std::max(GetHeight(), 1);
    const double XMin = XAxis->GetMinSample(), XMax = XAxis->GetMaxSample();
    const double YMin = YAxis->GetMinSample(), YMax = YAxis->GetMaxSample();
    const bool Vertical = GetDisplay()->GetIsVertical();
    const bool Reversed = XAxis->GetReversed();
    AFound = true;
    double R, S;
    if (!Vertical) {
        R = (Reversed ? W - X : X) * (XMax - XMin) / W + XMin;
        S = Y * (YMax - YMin) / H + YMin;
    } else {
        R = (Reversed ? H - Y : Y) * (XMax - XMin) / H + XMin;
        S = X * (YMax - YMin) / W + YMin;
    }
    if (R < XMin || R > XMax)
        return CQVNoWaterfallValue;
    const double I = std::nearbyint(R);
    if (I >= Rows.GetCount()) {
        FMouseAfterLastBuffer = true;
        AFound = false;
        return AMinValue;
    }
    FMouseAfterLastBuffer = false;
    const IQVRealBuffer& Row = *Rows.GetItem(static_cast<int32_t>(I));
    double Sample;
    if (!Vertical) {
        if (S < YMin || S > YMax)
            return CQVNoWaterfallValue;
        Sample = std::nearbyint(YMax + YMin - S);
    } else {
        if (S < 0 || S > Rows.GetItem(0)->GetSize() - 1)
            return CQVNoWaterfallValue;
        Sample = std::nearbyint(S);
    }
    if (Sample < 0 || Sample >= Row.GetSize())
        return CQVNoWaterfallValue;
    return Row.Read()[static_cast<size_t>(Sample)];
}

namespace {
// A scale value of an axis as a position on its data scale.
double DataPosition(const TQVDisplayAxis& AAxis, double AValue)
{
    const double DataMin = AAxis.GetDataFullMin(), DataMax = AAxis.GetDataFullMax();
    const double TickMin = AAxis.GetScaleFullTickMin(), TickMax = AAxis.GetScaleFullTickMax();
    if (TickMax == TickMin)
        return DataMin;
    return (AValue - TickMin) * (DataMax - DataMin) / (TickMax - TickMin) + DataMin;
}
} // namespace

double TQVBasicWaterfallDataView::GetValueAtScale(double AMinValue, double AXValue, double AYValue) const
{
    TQWCriticalSectionLock Lock(FBasicWaterfall->GetBufferSection());
    if (FImage.empty())
        return CQVNoWaterfallValue;
    const TQVWaterfallXAxis& XAxis = *FBasicWaterfall->GetWaterfallXAxis();
    const TQVWaterfallYAxis& YAxis = *FBasicWaterfall->GetWaterfallYAxis();
    const TQPRealBufferList& Rows = FBasicWaterfall->GetWaterfallBuffers().GetHoldBufferList();
    const bool Vertical = GetDisplay()->GetIsVertical();
    const double RowPos = DataPosition(XAxis, Vertical ? AYValue : AXValue);
    if (RowPos < XAxis.GetDataFullMin() || RowPos > XAxis.GetDataFullMax())
        return CQVNoWaterfallValue;
    if (RowPos >= Rows.GetCount())
        return AMinValue;
    const int32_t I = std::min(static_cast<int32_t>(std::nearbyint(RowPos)), Rows.GetCount() - 1);
    const double SamplePos = DataPosition(YAxis, Vertical ? AXValue : AYValue);
    const IQVRealBuffer& Row = *Rows.GetItem(I);
    if (SamplePos < YAxis.GetDataFullMin() || SamplePos > YAxis.GetDataFullMax())
        return CQVNoWaterfallValue;
    const double Sample = std::nearbyint(SamplePos);
    if (Sample < 0 || Sample >= Row.GetSize())
        return CQVNoWaterfallValue;
    return Row.Read()[static_cast<size_t>(Sample)];
}

std::shared_ptr<IQVRealBuffer> TQVBasicWaterfallDataView::GetBufferAtXScale(double AValue) const
{
    TQWCriticalSectionLock Lock(FBasicWaterfall->GetBufferSection());
    const TQVWaterfallXAxis& XAxis = *FBasicWaterfall->GetWaterfallXAxis();
    const TQPRealBufferList& Rows = FBasicWaterfall->GetWaterfallBuffers().GetHoldBufferList();
    const double RowPos = DataPosition(XAxis, AValue);
    if (FImage.empty() || RowPos < XAxis.GetDataFullMin() || RowPos > XAxis.GetDataFullMax() ||
        RowPos >= Rows.GetCount())
        return nullptr;
    const int32_t I = std::min(static_cast<int32_t>(std::nearbyint(RowPos)), Rows.GetCount() - 1);
    return std::make_shared<TQVRealBuffer>(*Rows.GetItem(I));
}

std::shared_ptr<IQVRealBuffer> TQVBasicWaterfallDataView::GetBufferAtYScale(double AValue) const
{
    TQWCriticalSectionLock Lock(FBasicWaterfall->GetBufferSection());
    const TQVWaterfallYAxis& YAxis = *FBasicWaterfall->GetWaterfallYAxis();
    const TQPRealBufferList& Rows = FBasicWaterfall->GetWaterfallBuffers().GetHoldBufferList();
    const double SamplePos = DataPosition(YAxis, AValue);
    if (FImage.empty() || SamplePos < YAxis.GetDataFullMin() || SamplePos > YAxis.GetDataFullMax())
        return std::make_shared<TQVRealBuffer>();
    const double Sample = std::nearbyint(SamplePos);
    auto Result = std::make_shared<TQVRealBuffer>(static_cast<uint32_t>(Rows.GetCount()));
    double* Out = Result->Write();
    for (int32_t I = 0; I < Rows.GetCount(); ++I) {
        const IQVRealBuffer& Row = *Rows.GetItem(I);
        Out[I] = Sample >= 0 && Sample < Row.GetSize() ? Row.Read()[static_cast<size_t>(Sample)] : NAN;
    }
    return Result;
}

// ---- Mouse ----

bool TQVBasicWaterfallDataView::InMouseZooming() const
{
    return FLeftMouseDown && GetDisplay()->GetZooming()->GetMouseZoom();
}

void TQVBasicWaterfallDataView::MouseDown(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY,
                                          bool AMouseInside, bool& AHandled)
{
    TQVDisplayView::MouseDown(AButton, AShift, AX, AY, AMouseInside, AHandled);
    if (AHandled || AButton != mbLeft)
        return;
    FViewMouseMoved = false;
    if (!GetDrawRect().Contains(TPoint{AX, AY}))
        return;
    AHandled = true;
    // Cursors, then cursor links, then markers, take the press before a zoom or a pan.
    if (TQVHighlightInfo* Info = GetDisplay()->GetHighlightInfo();
        Info && (FBasicWaterfall->GetWaterfallCursors()->StartDrag(*Info, AShift, AX, AY, GetDrawRect()) ||
                 FBasicWaterfall->GetWaterfallCursorLinks()->StartDrag(*Info, AShift, AX, AY, GetDrawRect()) ||
                 FBasicWaterfall->GetWaterfallMarkerGroups()->MouseDownOnMarkers(AButton, AShift, AX, AY, *Info))) {
        FLeftMouseItemDown = true;
        Invalidate();
        return;
    }
    FLeftMouseDown = true;
    FLeftMouseDownPoint = TPoint{AX, AY};
    FCurrentMousePoint = FLeftMouseDownPoint;
    for (TQVDisplayAxis* Axis : {static_cast<TQVDisplayAxis*>(FBasicWaterfall->GetWaterfallXAxis()),
                                 static_cast<TQVDisplayAxis*>(FBasicWaterfall->GetWaterfallYAxis())})
        Axis->SetMouseZoomValues();
}

void TQVBasicWaterfallDataView::MouseMove(TShiftState AShift, int32_t AX, int32_t AY, bool& AHandled)
{
    TQVDisplayView::MouseMove(AShift, AX, AY, AHandled);
    if (FCurrentMousePoint.X != AX || FCurrentMousePoint.Y != AY) {
        FBasicWaterfall->GetWaterfallXAxis()->InvalidateView();
        FBasicWaterfall->GetWaterfallYAxis()->InvalidateView();
    }
    FCurrentMousePoint = TPoint{AX, AY};
    TQVHighlightInfo* Info = GetDisplay()->GetHighlightInfo();
    if (Info && Info->FDraggedMarker) {
        // The dragged marker follows the mouse, held to the axes' full scale.
        const bool Vertical = GetDisplay()->GetIsVertical();
        const auto Clamp = [](const TQVDisplayAxis& AAxis, double AValue) {
            const double Lo = AAxis.GetScaleTick().GetFull().GetMin().GetValue();
            const double Hi = AAxis.GetScaleTick().GetFull().GetMax().GetValue();
            return std::clamp(AValue, std::min(Lo, Hi), std::max(Lo, Hi));
        };
        const TQVDisplayAxis& XAxis = *FBasicWaterfall->GetWaterfallXAxis();
        const TQVDisplayAxis& YAxis = *FBasicWaterfall->GetWaterfallYAxis();
        Info->FDraggedMarkerPosition = TQVRealPoint{Clamp(XAxis, XAxis.PixelToScale(Vertical ? AY : AX)),
                                                    Clamp(YAxis, YAxis.PixelToScale(Vertical ? AX : AY))};
        Invalidate();
    } else if (FLeftMouseDown && GetDisplay()->GetNavigateMode() == nmPan) {
        if (!FViewMouseMoved) {
            GetDisplay()->SaveUndoZoom(false);
            if (GetDisplay()->GetZooming()->GetHoldOnPan())
                GetDisplay()->SetHold(true);
        }
        FBasicWaterfall->GetWaterfallXAxis()->MouseMoveScale(FLeftMouseDownPoint, FCurrentMousePoint);
        FBasicWaterfall->GetWaterfallYAxis()->MouseMoveScale(FLeftMouseDownPoint, FCurrentMousePoint);
        FViewMouseMoved = true;
    }
    if (FLeftMouseDown)
        Invalidate();
    HitTests();
}

void TQVBasicWaterfallDataView::MouseUp(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY,
                                        bool AMouseInside)
{
    TQVDisplayView::MouseUp(AButton, AShift, AX, AY, AMouseInside);
    TQVWaterfallMarkerGroups& Groups = *FBasicWaterfall->GetWaterfallMarkerGroups();
    for (TQVWaterfallMarkerGroup* Group : Groups.GetReverse())
        for (TQVWaterfallMarker* Marker : Group->GetMarkers()->GetReverse())
            Marker->MouseUp(AButton, AShift, AX, AY, AMouseInside);
    for (TQVWaterfallMarkerGroup* Group : Groups.GetReverse())
        Group->MouseUp(AButton, AShift, AX, AY, AMouseInside);
    TQVHighlightInfo* Info = GetDisplay()->GetHighlightInfo();
    if (AButton == mbLeft && FLeftMouseItemDown) {
        FLeftMouseItemDown = false;
        if (Info && !FBasicWaterfall->GetWaterfallCursors()->EndDrag(*Info, AShift, AX, AY, GetDrawRect()))
            FBasicWaterfall->GetWaterfallCursorLinks()->EndDrag(*Info, AShift, AX, AY, GetDrawRect());
        if (Info && Info->FDraggedMarker) {
            TQVDisplayMarker* Marker = Info->FDraggedMarker;
            Info->FDraggedMarker = nullptr;
            Marker->DragTo(Info->FDraggedMarkerPosition);
        }
        Invalidate();
    } else if (AButton == mbLeft && FLeftMouseDown) {
        if (GetDisplay()->GetNavigateMode() == nmZoom)
            MouseZoom(AX, AY);
        else if (FViewMouseMoved) {
            GetDisplay()->ZoomChanged(GetDisplay()->GetZoomRanges(), zoZoom);
            FViewMouseMoved = false;
        }
        FLeftMouseDown = false;
        Invalidate();
    }
    HitTests();
}

void TQVBasicWaterfallDataView::MouseZoom(int32_t AX, int32_t AY)
{
    const TQVDisplayZoom& Zooming = *GetDisplay()->GetZooming();
    if (!Zooming.GetMouseZoom())
        return;
    const TPoint A = FLeftMouseDownPoint;
    // A drag below 5 pixels in both directions is a click.
    if (std::abs(AX - A.X) < 5 && std::abs(AY - A.Y) < 5) {
        InvalidateRecalc();
        return;
    }
    TQVDisplayAxis& XAxis = *FBasicWaterfall->GetWaterfallXAxis();
    TQVDisplayAxis& YAxis = *FBasicWaterfall->GetWaterfallYAxis();
    double XMin = XAxis.GetScaleTick().GetZoomed().GetMin().GetValue();
    double XMax = XAxis.GetScaleTick().GetZoomed().GetMax().GetValue();
    double YMin = YAxis.GetScaleTick().GetZoomed().GetMin().GetValue();
    double YMax = YAxis.GetScaleTick().GetZoomed().GetMax().GetValue();
    const TQVRealRanges Old = GetDisplay()->GetZoomRanges();
    const bool Vertical = GetDisplay()->GetIsVertical();
    const TRect R = GetDrawRect();
    // Along a pixel direction: a and b the smaller and larger end of the drag, L the view's
    // start and E its extent.
    const auto Ends = [&](bool AAlongX, double& AA, double& AB, double& AL, double& AE) {
        AA = AAlongX ? std::min(A.X, AX) : std::min(A.Y, AY);
        AB = AAlongX ? std::max(A.X, AX) : std::max(A.Y, AY);
        AL = AAlongX ? R.Left : R.Top;
        AE = std::max(AAlongX ? GetWidth() : GetHeight(), 1);
    };
    double a, b, L, E;
    if (Zooming.GetMode() != zmYAxis) {
        Ends(!Vertical, a, b, L, E);
        const double Unit = (XMax - XMin) / E;
        if (!XAxis.GetReversed()) {
            const double NewMin = XMin + Unit * (a - L), NewMax = XMax + Unit * (b - L - E + 1);
            XMin = NewMin, XMax = NewMax;
        } else {
            const double NewMin = XMin + Unit * (E - (a - L)), NewMax = XMax + Unit * (-1 - (b - L));
            XMin = NewMin, XMax = NewMax;
        }
    }
    if (Zooming.GetMode() != zmXAxis) {
        Ends(Vertical, a, b, L, E);
        const double Unit = (YMax - YMin) / E;
        if (!Vertical) {
            const double NewMin = YMin - Unit * (b - L - E + 1), NewMax = YMax - Unit * (a - L);
            YMin = NewMin, YMax = NewMax;
        } else {
            const double NewMin = YMin - Unit * (-1 - (b - L)), NewMax = YMax - Unit * (E - (a - L));
            YMin = NewMin, YMax = NewMax;
        }
    }
    GetDisplay()->ZoomTo(XMin, XMax, YMin, YMax, true);
    GetDisplay()->ZoomChanged(Old, zoZoom);
}

void TQVBasicWaterfallDataView::HitTests()
{
    const bool Was = FIsHighlighted;
    const TPoint OldPoint = FHighlightedPoint;
    bool Found = false;
    if (GetDrawRect().Contains(FCurrentMousePoint)) {
        Found = GetCurrentMouseValue();
        if (Found && !(FCurrentMousePoint.X == FHighlightedPoint.X && FCurrentMousePoint.Y == FHighlightedPoint.Y)) {
            FHighlightedPoint = FCurrentMousePoint;
            // The scale values at the mouse, for the label templates.
            const TQVDisplayAxis& XAxis = *FBasicWaterfall->GetWaterfallXAxis();
            const TQVDisplayAxis& YAxis = *FBasicWaterfall->GetWaterfallYAxis();
            const bool Vertical = GetDisplay()->GetIsVertical();
            const TRect R = GetDrawRect();
            const auto At = [](const TQVDisplayAxis& AAxis, double APixels, double AExtent) {
                const double Lo = AAxis.GetScaleTick().GetZoomed().GetMin().GetValue();
                const double Hi = AAxis.GetScaleTick().GetZoomed().GetMax().GetValue();
                return Lo + APixels * (Hi - Lo) / std::max(AExtent, 1.0);
            };
            const double W = GetWidth(), H = GetHeight();
            const double MX = FCurrentMousePoint.X - R.Left, MY = FCurrentMousePoint.Y - R.Top;
            if (!Vertical) {
                FValuePoint.X = At(XAxis, XAxis.GetReversed() ? W - MX : MX, W);
                FValuePoint.Y = At(YAxis, H - MY, H);
            } else {
                FValuePoint.Y = At(YAxis, MX, W);
                FValuePoint.X = At(XAxis, XAxis.GetReversed() ? H - MY : MY, H);
            }
        }
    }
    // The cursor, cursor link, marker group or label under the mouse, in that order.
    if (TQVHighlightInfo* Info = GetDisplay()->GetHighlightInfo()) {
        TQLPersistent* OldItem = Info->FHighlightedItem;
        TQVBasicDisplayMarker* OldMarker = Info->FHighlightedMarker;
        Info->FHighlightedItem = nullptr;
        Info->FHighlightedMarker = nullptr;
        const TQVDisplayHighlighting* Settings = GetDisplay()->GetHighlighting();
        const bool Inside =
            GetDrawRect().Contains(FCurrentMousePoint) && Settings && !Info->FDraggedCursor && !Info->FDraggedLink;
        const int32_t MX = FCurrentMousePoint.X, MY = FCurrentMousePoint.Y;
        if (Inside && Settings->GetCursors()->GetMouseHighlighting())
            Info->FHighlightedItem = FBasicWaterfall->GetWaterfallCursors()->HitTest(*Info, MX, MY, GetDrawRect());
        // A link under the mouse is taken only while links light from the mouse; otherwise
        // the search goes on below it.
        if (Inside && !Info->FHighlightedItem && Settings->GetCursorLinks()->GetMouseHighlighting())
            Info->FHighlightedItem = FBasicWaterfall->GetWaterfallCursorLinks()->HitTest(*Info, MX, MY, GetDrawRect());
        if (Inside && !Info->FHighlightedItem && Settings->GetMarkers()->GetMouseHighlighting()) {
            TQVBasicDisplayMarker* Marker = nullptr;
            if (TQVWaterfallMarkerGroup* Group = FBasicWaterfall->GetWaterfallMarkerGroups()->HitTest(
                    FCurrentMousePoint.X, FCurrentMousePoint.Y, Marker)) {
                Info->FHighlightedItem = Group;
                Info->FHighlightedMarker = Marker;
            }
        }
        if (Inside && !Info->FHighlightedItem && Settings->GetLabels()->GetMouseHighlighting())
            Info->FHighlightedItem = FBasicWaterfall->GetWaterfallTextLabels()->HitTest(MX, MY, GetDrawRect());
        if (OldItem != Info->FHighlightedItem || OldMarker != Info->FHighlightedMarker)
            Invalidate();
    }
    FIsHighlighted = Found;
    if (Was != FIsHighlighted || OldPoint.X != FHighlightedPoint.X || OldPoint.Y != FHighlightedPoint.Y)
        Invalidate();
}

void TQVBasicWaterfallDataView::MouseLeave()
{
    TQVDisplayView::MouseLeave();
    FCurrentMousePoint.X = -10000;
}

void TQVBasicWaterfallDataView::MouseLeaveView()
{
    if (FIsHighlighted) {
        FIsHighlighted = false;
        Invalidate();
    }
}

void TQVBasicWaterfallDataView::DrawMouseSelction(TQLCanvas& ACanvas)
{
    const TQVDisplayZoom& Zooming = *GetDisplay()->GetZooming();
    if (GetDisplay()->GetNavigateMode() != nmZoom || !FLeftMouseDown || !Zooming.GetMouseZoom())
        return;
    ACanvas.GetPen().SetColor(Zooming.GetSelectionColor());
    ACanvas.SetPenStyle(psSolid);
    ACanvas.GetBrush().SetStyle(bsClear);
    const TPoint A = FLeftMouseDownPoint, B = FCurrentMousePoint;
    ACanvas.RectangleRect(
        TRect{std::min(A.X, B.X), std::min(A.Y, B.Y), std::max(A.X, B.X) + 1, std::max(A.Y, B.Y) + 1});
}

const TQLClassInfo& TQVBasicWaterfallDataView::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVBasicWaterfallDataView>("TQVBasicWaterfallDataView", &TQVDisplayView::StaticClassInfo())
            .Build();
    return Info;
}

// ---- The waterfall's data view ----

double TQVWaterfallDataView::GetIntValueAt(int32_t AX, int32_t AY) const
{
    bool Found = false;
    return GetValueAtInt(FBasicWaterfall->GetCurrentMinLevel(), AX, AY, Found);
}

double TQVWaterfallDataView::GetValueAt(int32_t AX, int32_t AY) const
{
    return GetIntValueAt(AX + GetLeft(), AY + GetTop());
}

double TQVWaterfallDataView::GetMinValue() const
{
    return FBasicWaterfall->GetCurrentMinLevel();
}

double TQVWaterfallDataView::GetMaxValue() const
{
    return FBasicWaterfall->GetCurrentMaxLevel();
}

bool TQVWaterfallDataView::GetCurrentMouseValue()
{
    bool Found = false;
    FCurrentMouseValue =
        GetValueAtInt(FBasicWaterfall->GetCurrentMinLevel(), FCurrentMousePoint.X, FCurrentMousePoint.Y, Found);
    FZValues[0] = FCurrentMouseValue;
    return Found;
}

void TQVWaterfallDataView::Populate(int32_t AStartIndex)
{
    TQWCriticalSectionLock Lock(FBasicWaterfall->GetBufferSection());
    const TQVWaterfallBuffers& Buffers = FBasicWaterfall->GetWaterfallBuffers();
    if (Buffers.GetBuffersCount() == 0)
        return;
    PopulateOne(AStartIndex, FBasicWaterfall->GetCurrentMinLevel(), FBasicWaterfall->GetCurrentMaxLevel(),
                FBasicWaterfall->GetLevelsLogarithmic(), Buffers.GetHoldBufferList(),
                FBasicWaterfall->GetLevelView()->GetColorMap(), false);
}

const TQLClassInfo& TQVWaterfallDataView::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVWaterfallDataView>("TQVWaterfallDataView", &TQVBasicWaterfallDataView::StaticClassInfo())
            .Build();
    return Info;
}

} // namespace qv
