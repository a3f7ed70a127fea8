#include "qv/waterfall/QVWaterfallDataView.h"

#include "qv/component/QVDisplayOwner.h"
#include "qv/component/QVDisplayZoom.h"
#include "qv/foundation/QLClassBuilder.h"
#include "qv/foundation/QVLog10a.h"
#include "qv/waterfall/QVLevelDisplay.h"
#include "qv/waterfall/QVWaterfallAxes.h"
#include "qv/waterfall/QVWaterfallBuffers.h"
#include "qv/waterfall/QVWaterfallOwner.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace qv {

// ---- Resampling ----

void TQVNearestResampler::Fill(std::vector<int32_t>& ATable, int32_t ACount, int32_t ASourceSize, double ACentre,
                               double ASpan)
{
    ATable.resize(static_cast<size_t>(std::max(ACount, 0)));
    const double PerPixel = ACount > 0 ? ASpan / ACount : 0.0;
    for (int32_t D = 0; D < ACount; ++D) {
        const double S = std::floor(ACentre + (D + 0.5 - ACount / 2.0) * PerPixel);
        ATable[static_cast<size_t>(D)] = static_cast<int32_t>(std::clamp(S, 0.0, ASourceSize - 1.0));
    }
}

void TQVNearestResampler::Prepare(int32_t ASourceWidth, int32_t ASourceHeight, double AXCentre, double AYCentre,
                                  double ASpanWidth, double ASpanHeight, int32_t ADestWidth, int32_t ADestHeight)
{
    const TKey Key{ASourceWidth, ASourceHeight, ADestWidth, ADestHeight, AXCentre, AYCentre, ASpanWidth, ASpanHeight};
    if (Key == FKey)
        return;
    FKey = Key;
    Fill(FColumns, ADestWidth, ASourceWidth, AXCentre, ASpanWidth);
    Fill(FLines, ADestHeight, ASourceHeight, AYCentre, ASpanHeight);
}

void TQVNearestResampler::Turn(bool AAlongColumns, int32_t AOrigin, int32_t ASlots)
{
    const std::vector<int32_t>& Logical = AAlongColumns ? FColumns : FLines;
    std::vector<int32_t>& Physical = AAlongColumns ? FPhysicalColumns : FPhysicalLines;
    (AAlongColumns ? FPhysicalLines : FPhysicalColumns) = AAlongColumns ? FLines : FColumns;
    Physical.resize(Logical.size());
    for (size_t I = 0; I < Logical.size(); ++I) {
        const int32_t P = Logical[I] + AOrigin;
        Physical[I] = P >= ASlots ? P - ASlots : P;
    }
}

void TQVNearestResampler::Resample(const uint32_t* ASource, int32_t AStride, TQLBitmap& ADest, int32_t ALeft,
                                   int32_t ATop) const
{
    const std::vector<int32_t>& FColumns = FPhysicalColumns;
    const std::vector<int32_t>& FLines = FPhysicalLines;
    const int32_t Width = static_cast<int32_t>(FColumns.size());
    const int32_t Height = static_cast<int32_t>(FLines.size());
    const int32_t X0 = std::max(0, -ALeft), X1 = std::min(Width, ADest.GetWidth() - ALeft);
    const int32_t Y0 = std::max(0, -ATop), Y1 = std::min(Height, ADest.GetHeight() - ATop);
    if (X0 >= X1)
        return;
    const int32_t* Columns = FColumns.data();
    for (int32_t Y = Y0; Y < Y1; ++Y) {
        uint32_t* Out = ADest.GetScanLine(ATop + Y) + ALeft;
        // A line that repeats the source line of the one above is a copy of it.
        if (Y > Y0 && FLines[static_cast<size_t>(Y)] == FLines[static_cast<size_t>(Y - 1)]) {
            std::memcpy(Out + X0, ADest.GetScanLine(ATop + Y - 1) + ALeft + X0, size_t(X1 - X0) * 4);
            continue;
        }
        const uint32_t* In = ASource + static_cast<size_t>(FLines[static_cast<size_t>(Y)]) * AStride;
        for (int32_t X = X0; X < X1; ++X)
            Out[X] = In[Columns[X]];
    }
}

// ---- The view ----

TQVBasicWaterfallDataView::TQVBasicWaterfallDataView(TQVDisplayOwner* ADisplay, TQVWaterfallOwner* AWaterfall)
    : TQVDisplayView(ADisplay), FBasicWaterfall(AWaterfall)
{
    FCurrentMousePoint.X = -100;
    FZValues.assign(1, 0.0);
}

TQVBasicWaterfallDataView::~TQVBasicWaterfallDataView() = default;

void TQVBasicWaterfallDataView::ImageGeometry(int32_t& AWidth, int32_t& AHeight, int32_t& AStride) const
{
    const int32_t S = FBasicWaterfall->GetWaterfallXAxis()->GetSamples();
    const int32_t N = FBasicWaterfall->GetWaterfallBuffers().GetBufferSize();
    const bool Vertical = GetDisplay()->GetIsVertical();
    AWidth = Vertical ? N : S;
    AHeight = Vertical ? S : N;
    AStride = (AWidth + 3) / 4 * 4;
}

void TQVBasicWaterfallDataView::Repopulate()
{
    TQWCriticalSectionLock Lock(FBasicWaterfall->GetBufferSection());
    if (FBasicWaterfall->GetWaterfallBuffers().GetBuffersCount() == 0)
        return;
    int32_t Width, Height;
    ImageGeometry(Width, Height, FStride);
    FBufferSize = FStride * Height * 4;
    FImage.assign(static_cast<size_t>(FStride) * Height, 0xFF000000);
    FOrigin = 0;
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
    const bool Vertical = GetDisplay()->GetIsVertical();
    const bool Reversed = FBasicWaterfall->GetWaterfallXAxis()->GetReversed();
    const int32_t Height = Vertical ? S : N;
    const int32_t Count = std::min(ABufferList.GetCount(), S);
    // Along a row: one line up (sample 0 at the bottom), or one pixel right when Vertical.
    const ptrdiff_t SampleStep = Vertical ? 1 : -static_cast<ptrdiff_t>(FStride);
    for (int32_t R = std::max(AStartIndex, 0); R < Count; ++R) {
        const int32_t Place = Physical(Reversed ? S - 1 - R : R, S);
        uint32_t* Out = Vertical ? FImage.data() + static_cast<size_t>(Place) * FStride
                                 : FImage.data() + static_cast<size_t>(Height - 1) * FStride + Place;
        const IQVRealBuffer& Row = *ABufferList.GetItem(R);
        const double* In = Row.Read();
        // Every row is as long as the first; a shorter one (never accepted) would end early.
        const int32_t Samples = std::min(N, Row.GetSize());
        for (int32_t J = 0; J < Samples; ++J, Out += SampleStep) {
            double V = In[J];
            if (ALogarithmic)
                V = QVLog10a(V);
            if (std::isnan(V) || Lo > V)
                V = Lo;
            else if (V > Hi)
                V = Hi;
            const TAlphaColor Colour = AColors.ValueToColorGBR(V - Lo, Range);
            if (AMerge) {
                const uint32_t Old = *Out;
                uint32_t New = Old & 0xFF000000;
                for (int Shift = 0; Shift <= 16; Shift += 8)
                    New |= std::max((Old >> Shift) & 0xFF, (Colour >> Shift) & 0xFF) << Shift;
                *Out = New;
            } else
                *Out = Colour;
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
        ALine = Physical(ALine, S);
    else
        AColumn = Physical(AColumn, S);
    return FImage[static_cast<size_t>(ALine) * FStride + AColumn];
}

void TQVBasicWaterfallDataView::FillEmpty(int32_t ACount)
{
    const int32_t S = FBasicWaterfall->GetWaterfallXAxis()->GetSamples();
    if (ACount >= S)
        return;
    const TAlphaColor Colour = GetDisplay()->GetColor() | 0xFF000000;
    const bool Vertical = GetDisplay()->GetIsVertical();
    const bool Reversed = FBasicWaterfall->GetWaterfallXAxis()->GetReversed();
    const int32_t First = Reversed ? 0 : ACount;
    const int32_t Empty = S - ACount;
    const int32_t Lines = static_cast<int32_t>(FImage.size()) / FStride;
    // The empty slots, in at most two runs of the ring.
    for (int32_t Slot = First; Slot < First + Empty;) {
        const int32_t Start = Physical(Slot, S);
        const int32_t Run = std::min(First + Empty - Slot, S - Start);
        if (Vertical) {
            for (int32_t L = Start; L < Start + Run; ++L)
                std::fill_n(FImage.data() + static_cast<size_t>(L) * FStride, FStride, Colour);
        } else {
            for (int32_t L = 0; L < Lines; ++L)
                std::fill_n(FImage.data() + static_cast<size_t>(L) * FStride + Start, Run, Colour);
        }
        Slot += Run;
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
        int32_t Width, Height, Stride;
        ImageGeometry(Width, Height, Stride);
        bool Rebuilt = false;
        if (FImage.empty() || FBufferSize != Stride * Height * 4 || FStride != Stride) {
            FStride = Stride;
            FOrigin = 0;
            FBufferSize = Stride * Height * 4;
            FImage.assign(static_cast<size_t>(Stride) * Height, 0xFF000000);
            Rebuilt = true;
        }
        int32_t First = 0;
        const int32_t New = Buffers.GetNewBuffersCount();
        if (!TestSetNeedsRedraw() && New < S && !Rebuilt) {
            First = std::max(Count - New, 0);
            if (FOldBufferFill + New > S) {
                // The history is full: the rows that left make room by turning the ring,
                // whatever the history's length; the slots they free are coloured anew
                // below.
                const int32_t Shift = (FOldBufferFill + New - S) % S;
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
    FResampler.Turn(!Vertical, FOrigin, Vertical ? SourceH : SourceW);
    FResampler.Resample(FImage.data(), FStride, ABitmap, Dest.Left, Dest.Top);
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
    if (FLeftMouseDown && GetDisplay()->GetNavigateMode() == nmPan) {
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
    if (AButton == mbLeft && FLeftMouseDown) {
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
