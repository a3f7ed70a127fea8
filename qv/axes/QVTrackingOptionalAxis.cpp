#include "qv/axes/QVTrackingOptionalAxis.h"

#include "qv/axes/QVScaleTickText.h"
#include "qv/component/QVDisplayOwner.h"
#include "qv/foundation/QLClassBuilder.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace qv {

namespace {

// The smallest positive single: the zero band of a walk is never narrower.
constexpr double CSmallestSingle = 1.401298464324817e-45;
// Both walks of one call together stop after this many ticks.
constexpr int32_t CMaxWalkIterations = 100000;

// Single precision, held to its finite range so that the conversion is always defined.
float ToSingle(double AValue)
{
    if (std::isnan(AValue))
        return static_cast<float>(AValue);
    return static_cast<float>(std::clamp(AValue, -static_cast<double>(FLT_MAX), static_cast<double>(FLT_MAX)));
}

} // namespace

// What both walks of one call share.
struct TQVTrackingOptionalAxis::TTickWalk {
    TQVTrackingOptionalAxis* Axis;
    const TQVAxisTickProc& Proc;
    TQLCanvas& Canvas;
    bool DrawAll;
    bool DecascaleAll;
    bool Logarithmic;
    double Min;
    double Max;
    double Saved; // the step, before any custom change
    double Eps;   // half a step: the band that counts as zero
    double Shift; // 1 on a decascale axis: the walk moves by whole multiples of each decade
    int32_t Gap;  // pixels that must lie between two major ticks
    int32_t Half;
    int32_t First; // the plot's pixel range along the axis, end exclusive
    int32_t Last;
    float Base; // the pixel that value 0 maps to
    double Scale;
    int32_t TopPixel;
    int32_t Counter = 0;

    // The tick pixel of a value, in single precision.
    int32_t Pixel(double AValue) const
    {
        const float Q = ToSingle((Logarithmic ? QVLog10a(AValue) : AValue) * Scale);
        return QLRoundToInt(Base - Q);
    }
    bool IsZero(double AValue) const { return Eps > AValue && AValue > 0.0 - Eps; }
    // The next value: one step, or on a logarithmic axis the step times the power of ten of
    // the decade the walk is in.
    double Advance(double ACur, double AStep, bool AAscending) const
    {
        if (!Logarithmic)
            return AAscending ? ACur + AStep : ACur - AStep;
        const double Decade = std::trunc(QVLog10a(AAscending ? ACur - Shift : ACur + Shift));
        const double Power = std::pow(10.0, std::fabs(Decade));
        return AAscending ? ACur + Power * AStep : ACur - Power * AStep;
    }
    // Whether a linear walk from ACur, with the iterations left, inside its loop bound and
    // each step moving the value, draws nothing more: every value it can reach lies on one
    // side of the plot, or at the pixel of the last tick drawn (APrev, when ASeen). Such a
    // walk would end at the iteration bound, and need not be walked: a walk that starts far
    // from its range (an axis far from zero with a small step), or whose step is too small
    // to move a pixel, would otherwise take its whole bound on every paint.
    bool DrawsNothingMore(double ACur, bool AAscending, int64_t APrev, bool ASeen) const
    {
        if (Logarithmic || !(Saved > 0.0) || !std::isfinite(ACur))
            return false;
        const double Left = double(CMaxWalkIterations - Counter) + 2.0;
        // The values the walk can reach, widened by the rounding of as many additions.
        const double Span = Left * Saved;
        const double Magnitude = std::fabs(ACur) + Span;
        const double Slack = Left * Magnitude * 4.0 * DBL_EPSILON;
        if (!(Saved > 4.0 * Magnitude * DBL_EPSILON)) // a step this small can stall the walk
            return false;
        const double End = AAscending ? ACur + Span + Slack : ACur - Span - Slack;
        if (AAscending ? !(End <= Max + Saved) : !(End >= Min - Saved))
            return false;
        // Pixels follow the value monotonically, so the two ends bound every pixel between.
        const int32_t P0 = Pixel(ACur), P1 = Pixel(End);
        return (P0 < First && P1 < First) || (P0 >= Last && P1 >= Last) || (ASeen && P0 == APrev && P1 == APrev);
    }
};

TQVTrackingOptionalAxis::TQVTrackingOptionalAxis(TQVDisplayOwner* ADisplay, TQVViewAlign AAlign)
    : TQVOptionalAxis(ADisplay, AAlign), FMajorTicks(std::make_unique<TQVMajorTicks>(this, GetLock(),
                                                                                     [this] {
                                                                                         // Another step mode or step: the remembered step no longer holds.
                                                                                         FValidStep = false;
                                                                                         InvalidateRecalc();
                                                                                     })),
      FMinorTicks(std::make_unique<TQVMinorTicks>(this, GetLock(), [this] { Invalidate(); }))
{}

TQVTrackingOptionalAxis::~TQVTrackingOptionalAxis() = default;

void TQVTrackingOptionalAxis::SetTrackCursor(bool AValue)
{
    Set(FTrackCursor, AValue, [this] { Invalidate(); });
}

void TQVTrackingOptionalAxis::SetTrackColor(TAlphaColor AValue)
{
    GetBasicLock().Setter(
        FTrackColor, AValue, [this] { Invalidate(); }, false);
}

std::string TQVTrackingOptionalAxis::GetTickText(double AValue) const
{
    // Without a number format of its own a strip reads its zoomed width in the free form.
    return QVGetScaleTickText(AValue, 0.0, GetRangeWidth(false), false, 3, false);
}

void TQVTrackingOptionalAxis::FontChanged()
{
    InvalidateRecalc();
}

TQVAxisDirection TQVTrackingOptionalAxis::GetDirection() const
{
    const TQVAxisDirection Direction = GetIsVertical() ? GetDefaultVertDir() : GetDefaultHorizDir();
    if (!GetIsReversed())
        return Direction;
    switch (Direction) {
    case adToRight: return adToLeft;
    case adToLeft: return adToRight;
    case adToUp: return adToDown;
    case adToDown: return adToUp;
    }
    return Direction;
}

// ---- Tick walks ----

void TQVTrackingOptionalAxis::UpTickLines(TQVTrackingOptionalAxis* AAxis, const TQVAxisTickProc& ATickProc,
                                          bool AFromEnd, TQLCanvas& ACanvas, int32_t ATextLength, bool ADrawAll,
                                          double AMin, double AMax, double AOffset, double AScale, bool ADecascaleAll)
{
    WalkTickLines(true, AAxis, ATickProc, AFromEnd, ACanvas, ATextLength, ADrawAll, AMin, AMax, AOffset, AScale,
                  ADecascaleAll);
}

void TQVTrackingOptionalAxis::DownTickLines(TQVTrackingOptionalAxis* AAxis, const TQVAxisTickProc& ATickProc,
                                            bool AFromEnd, TQLCanvas& ACanvas, int32_t ATextLength, bool ADrawAll,
                                            double AMin, double AMax, double AOffset, double AScale, bool ADecascaleAll)
{
    WalkTickLines(false, AAxis, ATickProc, AFromEnd, ACanvas, ATextLength, ADrawAll, AMin, AMax, AOffset, AScale,
                  ADecascaleAll);
}

void TQVTrackingOptionalAxis::WalkTickLines(bool AUpLines, TQVTrackingOptionalAxis* AAxis,
                                            const TQVAxisTickProc& ATickProc, bool AFromEnd, TQLCanvas& ACanvas,
                                            int32_t ATextLength, bool ADrawAll, double AMin, double AMax,
                                            double AOffset, double AScale, bool ADecascaleAll)
{
    const double Step = GetStep();
    int32_t Gap = ATextLength;
    if (FMajorTicks->GetMode() == mtmOverride)
        Gap = 1;
    const TQVScaleMode Mode = GetIntScaleMode();
    double Shift = 0.0;
    if (Mode == smLogDecascale) {
        Shift = 1.0;
        if (ADecascaleAll)
            Gap = 1;
    }
    const TRect View = GetDataViewRect();
    const bool Vertical = GetIsVertical();
    const int32_t First = Vertical ? View.Top : View.Left;
    const int32_t Last = Vertical ? View.Bottom : View.Right;

    TTickWalk W{AAxis,
                ATickProc,
                ACanvas,
                ADrawAll,
                ADecascaleAll,
                Mode != smLinear,
                AMin,
                AMax,
                Step,
                std::max(Step / 2.0, CSmallestSingle),
                Shift,
                Gap,
                ATextLength / 2,
                First,
                Last,
                AFromEnd ? ToSingle(Last - AOffset - 1.0) : ToSingle(AOffset),
                AScale,
                0};
    W.TopPixel = W.Pixel(AMax);

    // Where the two walks begin: at zero when the range spans it, else at the multiple of the
    // step next to zero at the range's near end; or from a given start, mirrored for the walk
    // down.
    double UpStart = 0.0;
    double DownStart = 0.0;
    const TQVTicksStart* StartFrom = FMajorTicks->GetStartFrom();
    if (StartFrom->GetMode() == mtmAuto) {
        if (!(AMin < 0.0 && 0.0 < AMax)) {
            double Quotient = std::trunc((AMin < 0.0 ? AMax : AMin) / Step);
            if (AUpLines) // the walk up keeps the whole count within 32 bits
                Quotient = std::isnan(Quotient) ? 0.0 : std::clamp(Quotient, -2147483647.0, 2147483647.0);
            UpStart = DownStart = Quotient * Step;
        }
    } else {
        UpStart = StartFrom->GetStartFrom();
        DownStart = 0.0 - StartFrom->GetStartFrom();
    }

    // Minor ticks of the walk up are handed the value of the walk down.
    double DownCur = DownStart;
    double UpCur = UpStart;
    if (AUpLines) {
        // Pixels fall as values rise: down the values first, with pixels rising from the top.
        if (AMin < 0.0)
            Walk(W, DownCur, DownCur, false, true, 1);
        if (AMax > 0.0)
            Walk(W, UpCur, DownCur, true, false, 0);
    } else {
        // Pixels rise with the values: up the values first.
        if (AMax > 0.0)
            Walk(W, UpCur, DownCur, true, true, -1);
        if (AMin < 0.0)
            Walk(W, DownCur, DownCur, false, false, 0);
    }
}

void TQVTrackingOptionalAxis::Walk(TTickWalk& AWalk, double& ACur, const double& AMinorValue, bool AAscending,
                                   bool APixelsRise, int32_t ATopTest)
{
    int64_t Prev = APixelsRise ? -100 : static_cast<int64_t>(AWalk.Last) + 100;
    bool Seen = false;
    double Step = AWalk.Saved;
    // Without a custom step every tick follows from the saved step, so the rest of the walk
    // can be foreseen (drawing only the first tick ends the walk there anyway): now and then
    // it is asked whether anything is left to draw.
    const bool Foreseen = !FOnCustomStep && AWalk.DrawAll;
    for (int32_t Walked = 0; AAscending ? ACur <= AWalk.Max + Step : ACur >= AWalk.Min - Step; ++Walked) {
        if (Foreseen && Walked % 1024 == 0 && AWalk.DrawsNothingMore(ACur, AAscending, Prev, Seen)) {
            AWalk.Counter = CMaxWalkIterations + 1;
            return;
        }
        bool Draw = true;
        Step = AWalk.Saved;
        if (FOnCustomStep) {
            // A changed step holds for this tick only.
            double Custom = Step;
            FOnCustomStep(this, ACur, Custom, Draw);
            if (Custom != Step)
                Step = ValidateStep(Custom, FMajorTicks->GetMode(), AWalk.DecascaleAll);
        }
        const int32_t P = AWalk.Pixel(ACur);
        const int64_t Distance = APixelsRise ? P - Prev : Prev - P;
        if (Distance > AWalk.Gap) {
            if (ATopTest == 0 || (ATopTest > 0 ? P >= AWalk.TopPixel : P <= AWalk.TopPixel)) {
                if (Draw && AWalk.First <= P && P < AWalk.Last && AWalk.Proc)
                    AWalk.Proc(AWalk.Axis, AWalk.Canvas, AWalk.IsZero(ACur), AWalk.Half, false, ACur, P);
                if (Seen && Prev != P)
                    DrawMinorTicks(AWalk, Prev, P, AMinorValue);
                if (!AWalk.DrawAll)
                    return;
            }
            Prev = P;
            Seen = true;
        }
        // A step too small to move the value, or a step of 0, ends the walk.
        const double Next = AWalk.Advance(ACur, Step, AAscending);
        const bool Unchanged = Next == ACur;
        ACur = Next;
        if (Unchanged || ++AWalk.Counter > CMaxWalkIterations)
            return;
    }
}

void TQVTrackingOptionalAxis::DrawMinorTicks(TTickWalk& AWalk, int64_t APrev, int32_t APosition, double AValue)
{
    // Evenly spaced in pixels, also on a logarithmic axis.
    const int32_t Count = FMinorTicks->GetCount();
    for (int32_t I = 0; I < Count; ++I) {
        APrev += (APosition - APrev) / (Count - I + 1);
        if (AWalk.First <= APrev && APrev < AWalk.Last && AWalk.Proc)
            AWalk.Proc(AWalk.Axis, AWalk.Canvas, false, AWalk.Half, true, AValue, static_cast<int32_t>(APrev));
    }
}

// ---- Drawing ----

void TQVTrackingOptionalAxis::DrawTick(TQVTrackingOptionalAxis* /*AAxis*/, TQLCanvas& ACanvas, bool /*AZero*/,
                                       int32_t AHalfLength, bool AMinor, double AValue, int32_t APosition)
{
    const TRect R = GetDrawRect();
    const int32_t Offset = GetAxesSpaceOffset();
    const int32_t P = APosition;
    std::string Text;
    int32_t Tw = 0;
    int32_t Th = 0;
    if (!AMinor) {
        Text = GetTickText(AValue);
        Tw = ACanvas.TextWidth(Text);
        Th = ACanvas.TextHeight(Text);
    }
    // B is the strip's edge that faces the data, moved in by the space offset.
    switch (GetScreenAlign()) {
    case vsaTop: {
        const int32_t B = R.Bottom - Offset;
        if (!AMinor)
            ACanvas.TextOut(P - Tw / 2, B - Th - 10, Text);
        ACanvas.MoveTo(P, B - 2);
        ACanvas.LineTo(P, AMinor ? B - 7 : B - 9);
        break;
    }
    case vsaBottom: {
        const int32_t B = R.Top + Offset;
        if (!AMinor)
            ACanvas.TextOut(P - Tw / 2, B + 11, Text);
        ACanvas.MoveTo(P, B + 2);
        ACanvas.LineTo(P, AMinor ? B + 7 : B + 9);
        break;
    }
    case vsaLeft: {
        const int32_t B = R.Right - Offset;
        if (!AMinor)
            ACanvas.TextOut(B - Tw - 10, P - AHalfLength, Text);
        ACanvas.MoveTo(AMinor ? B - 6 : B - 8, P);
        ACanvas.LineTo(B - 2, P);
        break;
    }
    case vsaRight: {
        const int32_t B = R.Left + Offset;
        if (!AMinor)
            ACanvas.TextOut(B + 10, P - AHalfLength, Text);
        ACanvas.MoveTo(B + 2, P);
        ACanvas.LineTo(AMinor ? B + 6 : B + 8, P);
        break;
    }
    case vsaClient: break; // an axis never fills the client area
    }
}

TQVAxisTickProc TQVTrackingOptionalAxis::GetDrawTickProc()
{
    return [this](TQVTrackingOptionalAxis* AAxis, TQLCanvas& ACanvas, bool AZero, int32_t AHalfLength, bool AMinor,
                  double AValue,
                  int32_t APosition) { DrawTick(AAxis, ACanvas, AZero, AHalfLength, AMinor, AValue, APosition); };
}

void TQVTrackingOptionalAxis::DrawMouseMarker(TQLCanvas& ACanvas, int32_t ASize)
{
    ACanvas.SetPenStyle(psSolid);
    const TPoint Mouse = FCurrentMousePoint;
    if (!GetDataViewRect().Contains(Mouse))
        return;
    ACanvas.GetPen().SetColor(FTrackColor);
    const TRect R = GetDrawRect();
    switch (GetScreenAlign()) {
    case vsaTop:
        ACanvas.MoveTo(Mouse.X, R.Bottom - 5);
        ACanvas.LineTo(Mouse.X, R.Bottom - ASize);
        break;
    case vsaBottom:
        ACanvas.MoveTo(Mouse.X, R.Top + 5);
        ACanvas.LineTo(Mouse.X, R.Top + ASize);
        break;
    case vsaLeft:
        ACanvas.MoveTo(R.Right - ASize, Mouse.Y);
        ACanvas.LineTo(R.Right - 4, Mouse.Y);
        break;
    case vsaRight:
        ACanvas.MoveTo(R.Left + ASize, Mouse.Y);
        ACanvas.LineTo(R.Left + 4, Mouse.Y);
        break;
    case vsaClient: break;
    }
}

// ---- Mouse ----

void TQVTrackingOptionalAxis::MouseMove(TShiftState AShift, int32_t AX, int32_t AY, bool& AHandled)
{
    FCurrentMousePoint = TPoint{AX, AY};
    TQVOptionalAxis::MouseMove(AShift, AX, AY, AHandled);
}

void TQVTrackingOptionalAxis::MouseEnter()
{
    FMouseIsIn = true;
    InvalidateView();
}

void TQVTrackingOptionalAxis::MouseLeave()
{
    TQVOptionalAxis::MouseLeave();
    FMouseIsIn = false;
    InvalidateView();
}

const TQLClassInfo& TQVTrackingOptionalAxis::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVTrackingOptionalAxis>("TQVTrackingOptionalAxis", &TQVOptionalAxis::StaticClassInfo())
            .Property("TrackCursor", &TQVTrackingOptionalAxis::GetTrackCursor, &TQVTrackingOptionalAxis::SetTrackCursor,
                      true)
            .Color("TrackColor", &TQVTrackingOptionalAxis::GetTrackColor, &TQVTrackingOptionalAxis::SetTrackColor,
                   TAlphaColor(0xFFFF0000))
            .Object("MinorTicks", &TQVTrackingOptionalAxis::GetMinorTicks)
            .Object("MajorTicks", &TQVTrackingOptionalAxis::GetMajorTicks)
            .Build();
    return Info;
}

} // namespace qv
