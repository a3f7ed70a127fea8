#include "qv/waterfall/QVLevelDisplay.h"

#include "qv/axes/QVScaleTickText.h"
#include "qv/component/QVDisplayOwner.h"
#include "qv/foundation/QLClassBuilder.h"
#include "qv/foundation/QVLog10a.h"
#include "qv/waterfall/QVWaterfallOwner.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace qv {

TQVBasicLevelDisplayLevelView::TQVBasicLevelDisplayLevelView(TQVDisplayOwner* ADisplay, TQVLevelFunc AMinFunc,
                                                             TQVLevelFunc AMaxFunc, TQVGetValueAtFunc AGetValueAtFunc)
    : TQVTrackingOptionalAxis(ADisplay, vaRight), FMinFunc(std::move(AMinFunc)), FMaxFunc(std::move(AMaxFunc)),
      FGetValueAtFunc(std::move(AGetValueAtFunc)), FColors(std::make_unique<TQVLevelDisplayColors>(this, GetLock()))
{}

TQVBasicLevelDisplayLevelView::~TQVBasicLevelDisplayLevelView() = default;

void TQVBasicLevelDisplayLevelView::SetBarWidth(int32_t AValue)
{
    if (AValue < 1)
        throw std::out_of_range("TQVBasicLevelDisplayLevelView: BarWidth " + std::to_string(AValue) +
                                " is not a width; it needs at least 1 pixel");
    Set(FBarWidth, AValue, [this] { InvalidateRecalc(); });
}

void TQVBasicLevelDisplayLevelView::SetGrayScale(bool AValue)
{
    // The picture is coloured anew with the next draw: its levels key changes.
    Set(FGrayScale, AValue, [this] { InvalidateRecalc(); });
}

void TQVBasicLevelDisplayLevelView::SetAlign(TQVViewAlign AValue)
{
    TQVTrackingOptionalAxis::SetAlign(AValue);
    FValidStep = false;
}

// ---- Colours ----

TQVLevelColorMap TQVBasicLevelDisplayLevelView::GetColorMap() const
{
    return TQVLevelColorMap(FGrayScale, FColors->GetColorValues());
}

TAlphaColor TQVBasicLevelDisplayLevelView::ValueToColor(double AValue, double MaxValue) const
{
    const TQVLevelColorMap Map = GetColorMap();
    if (!Map.GetGrayScale() && Map.GetColors().empty())
        return CalculateDefault(AValue, MaxValue);
    return Map.ValueToColor(AValue, MaxValue);
}

TAlphaColor TQVBasicLevelDisplayLevelView::ValueToColorGBR(double AValue, double MaxValue) const
{
    return GetColorMap().ValueToColorGBR(AValue, MaxValue);
}

TAlphaColor TQVBasicLevelDisplayLevelView::CalculateDefault(double AValue, double MaxValue) const
{
    return TQVLevelColorMap().ValueToColor(AValue, MaxValue);
}

TValueToColorGBRFunc TQVBasicLevelDisplayLevelView::GetValueToColorGBRFunc() const
{
    return [this](double AValue, double MaxValue) { return ValueToColorGBR(AValue, MaxValue); };
}

// ---- Levels ----

void TQVBasicLevelDisplayLevelView::GetDomain(double& ALow, double& AHigh, double& ARange) const
{
    ALow = GetMinLevel();
    AHigh = GetMaxLevel();
    if (GetIntScaleMode() != smLinear) {
        ALow = QVLog10a(ALow);
        AHigh = QVLog10a(AHigh);
    }
    ARange = AHigh - ALow;
    if (ARange == 0.0 || !std::isfinite(ARange))
        ARange = 1.0;
}

void TQVBasicLevelDisplayLevelView::MainViewScrolled(bool AForceInvalidate)
{
    if (AForceInvalidate)
        InvalidateView();
    if (FMouseIsIn && IsVisible() && GetTrackCursor() && FGetValueAtFunc && GetDataViewRect().Contains(FOldMousePos)) {
        const double Value = FGetValueAtFunc(FOldMousePos.X, FOldMousePos.Y);
        if (Value != FCurrentLevelValue)
            FCurrentLevelValue = Value;
    }
}

// ---- Scale ----

TQVScaleMode TQVBasicLevelDisplayLevelView::GetIntScaleMode() const
{
    return GetAxis()->GetScaleMode();
}

void TQVBasicLevelDisplayLevelView::SetIntScaleMode(TQVScaleMode AValue)
{
    GetAxis()->SetScaleMode(AValue);
}

int32_t TQVBasicLevelDisplayLevelView::GetDimentionLength() const
{
    const TRect View = GetDataViewRect();
    return GetIsVertical() ? View.Bottom - View.Top : View.Right - View.Left;
}

double TQVBasicLevelDisplayLevelView::GetRangeWidth(bool ALogarithmic) const
{
    const double Lo = GetMinLevel(), Hi = GetMaxLevel();
    return ALogarithmic ? QVLog10a(Hi) - QVLog10a(Lo) : Hi - Lo;
}

uint32_t TQVBasicLevelDisplayLevelView::GetMaxTextLength() const
{
    TQLCanvas* Canvas = GetMeasureCanvas(GetFont());
    if (!Canvas)
        return 0;
    const int32_t Length = GetIsVertical() ? Canvas->TextHeight("Xg")
                                           : std::max(Canvas->TextWidth(GetTickText(GetMinLevel())),
                                                      Canvas->TextWidth(GetTickText(GetMaxLevel())));
    return static_cast<uint32_t>(std::max(Length, 0));
}

uint32_t TQVBasicLevelDisplayLevelView::GetMinScaleLineDistance() const
{
    return std::max<uint32_t>(GetMaxTextLength() + 4, 20);
}

TQVDisplayFont* TQVBasicLevelDisplayLevelView::GetFont() const
{
    return GetAxis()->GetFont();
}

double TQVBasicLevelDisplayLevelView::GetStep()
{
    if (!IsValidStep()) {
        FStep = ComputeValueStep();
        FValidStep = true;
    }
    return FStep;
}

std::string TQVBasicLevelDisplayLevelView::GetTickText(double AValue) const
{
    const TQVLevelAxis* Axis = GetAxis();
    const double Lo = GetMinLevel(), Hi = GetMaxLevel();
    const int32_t Decimals = QVGetDecimalPoints(std::max(std::fabs(Lo), std::fabs(Hi)), Hi - Lo, Axis->GetPrecision(),
                                                Axis->GetFixedPrecision());
    char Buffer[64];
    std::snprintf(Buffer, sizeof Buffer, "%.*f", Decimals, AValue);
    return GetAxis()->CustomTickText(AValue, Buffer);
}

TSize TQVBasicLevelDisplayLevelView::GetAutoSize() const
{
    int32_t Thickness = FBarWidth + 4;
    const TQVLevelAxis* Axis = GetAxis();
    const TQVBasicLevelDisplayLabel* Label = GetLevelLabel();
    const bool LabelShown = Label && Label->GetVisible();
    if (Axis->GetVisible()) {
        if (TQLCanvas* Canvas = GetMeasureCanvas(Axis->GetFont())) {
            if (GetIsVertical())
                Thickness += std::max(Canvas->TextWidth(GetTickText(GetMinLevel())),
                                      Canvas->TextWidth(GetTickText(GetMaxLevel()))) +
                             9;
            else
                Thickness += Canvas->TextHeight("Xg") + 2;
        }
    }
    FTrackSize = Thickness - 2;
    if (LabelShown) {
        if (TQLCanvas* Canvas = GetMeasureCanvas(Label->GetFont()))
            Thickness += Canvas->TextHeight("Xg") + 2;
    }
    if (!Axis->GetVisible() && !LabelShown)
        Thickness += 2;
    return GetIsVertical() ? TSize{Thickness, -1} : TSize{-1, Thickness};
}

// ---- Drawing ----

bool TQVBasicLevelDisplayLevelView::GetTrackPixel(int32_t& APixel) const
{
    const TRect View = GetDataViewRect();
    const int32_t E = (GetIsVertical() ? View.Bottom - View.Top : View.Right - View.Left) - 1;
    double Low, High, Range;
    GetDomain(Low, High, Range);
    double Value = FCurrentLevelValue;
    if (GetIntScaleMode() != smLinear)
        Value = QVLog10a(Value);
    if (!std::isfinite(Value))
        return false;
    const double P = std::nearbyint((Value - Low) / Range * E);
    if (std::fabs(P) > 1e8)
        return false;
    const int32_t Pixel =
        GetIsVertical() ? View.Top + E - static_cast<int32_t>(P) : View.Left + static_cast<int32_t>(P);
    APixel = Pixel;
    return GetIsVertical() ? View.Top <= Pixel && Pixel < View.Bottom : View.Left <= Pixel && Pixel < View.Right;
}

void TQVBasicLevelDisplayLevelView::DrawBar(TQLCanvas& ACanvas, const TRect& AView)
{
    const TRect R = GetDrawRect();
    const bool Vertical = GetIsVertical();
    const int32_t E = (Vertical ? AView.Bottom - AView.Top : AView.Right - AView.Left) - 1;
    if (E <= 0)
        return;
    const TQVLevelColorMap Map = GetColorMap();
    const bool Default = !Map.GetGrayScale() && Map.GetColors().empty();
    ACanvas.SetPenStyle(psSolid);
    for (int32_t I = 0; I <= E; ++I) {
        const double V = Vertical ? E - I : I;
        ACanvas.GetPen().SetColor(Default ? CalculateDefault(V, E) : Map.ValueToColor(V, E));
        switch (FAlign) {
        case vaRight:
            ACanvas.MoveTo(R.Left + 2, AView.Top + I);
            ACanvas.LineTo(R.Left + FBarWidth + 2, AView.Top + I);
            break;
        case vaLeft:
            ACanvas.MoveTo(R.Right - 2, AView.Top + I);
            ACanvas.LineTo(R.Right - FBarWidth - 2, AView.Top + I);
            break;
        case vaTop:
            ACanvas.MoveTo(AView.Left + I, R.Bottom - 2);
            ACanvas.LineTo(AView.Left + I, R.Bottom - FBarWidth - 2);
            break;
        case vaBottom:
            ACanvas.MoveTo(AView.Left + I, R.Top + 2);
            ACanvas.LineTo(AView.Left + I, R.Top + FBarWidth + 2);
            break;
        }
    }
}

void TQVBasicLevelDisplayLevelView::Draw(TQVDisplayDrawPart ADrawPart, TQLCanvas& ACanvas, bool AVertical,
                                         bool APrinting)
{
    if (ADrawPart != ddpFeatures || !IsVisible())
        return;
    TQLCanvasSave Save(ACanvas);
    const TRect R = GetDrawRect();
    const TRect View = GetDataViewRect();
    if (!GetBackground()->GetUseControlColor()) {
        ACanvas.GetBrush().SetStyle(bsSolid);
        ACanvas.GetBrush().SetColor(GetBackground()->GetColor());
        ACanvas.FillRect(R);
    }
    // The track line, while the mouse is over the picture.
    int32_t P = 0;
    if (GetTrackCursor() && !GetDisplay()->GetDesigning() && !APrinting && FMouseIsIn && View.Contains(FOldMousePos) &&
        GetTrackPixel(P)) {
        ACanvas.SetPenStyle(psSolid);
        ACanvas.GetPen().SetColor(GetTrackColor());
        switch (FAlign) {
        case vaTop:
            ACanvas.MoveTo(P, R.Bottom - FTrackSize);
            ACanvas.LineTo(P, R.Bottom - 4);
            break;
        case vaBottom:
            ACanvas.MoveTo(P, R.Top + FTrackSize);
            ACanvas.LineTo(P, R.Top + 4);
            break;
        case vaLeft:
            ACanvas.MoveTo(R.Right - FTrackSize, P);
            ACanvas.LineTo(R.Right - 4, P);
            break;
        case vaRight:
            ACanvas.MoveTo(R.Left + FTrackSize, P);
            ACanvas.LineTo(R.Left + 4, P);
            break;
        }
    }
    DrawBar(ACanvas, View);
    DrawTicks(ACanvas, true, AVertical);
    DrawLabel(ACanvas, APrinting);
}

void TQVBasicLevelDisplayLevelView::DrawEx(TQVDisplayDrawPart /*ADrawPart*/, TQLCanvas& /*ACanvas*/, bool /*AVertical*/)
{}

void TQVBasicLevelDisplayLevelView::DrawTicks(TQLCanvas& ACanvas, bool ADrawLine, bool /*AVertical*/)
{
    const TQVLevelAxis* Axis = GetAxis();
    if (!Axis->GetVisible())
        return;
    ACanvas.SetPenStyle(psSolid);
    ACanvas.GetPen().SetColor(Axis->GetColor());
    ACanvas.GetBrush().SetStyle(bsClear);
    const TRect View = GetDataViewRect();
    const TRect R = GetDrawRect();
    const int32_t Offset = GetAxesSpaceOffset();
    if (ADrawLine) {
        switch (FAlign) {
        case vaTop: ACanvas.MoveTo(View.Left, R.Bottom - Offset), ACanvas.LineTo(View.Right, R.Bottom - Offset); break;
        case vaBottom: ACanvas.MoveTo(View.Left, R.Top + Offset), ACanvas.LineTo(View.Right, R.Top + Offset); break;
        case vaLeft: ACanvas.MoveTo(R.Right - Offset, View.Top), ACanvas.LineTo(R.Right - Offset, View.Bottom); break;
        case vaRight: ACanvas.MoveTo(R.Left + Offset, View.Top), ACanvas.LineTo(R.Left + Offset, View.Bottom); break;
        }
    }
    ACanvas.ApplyFont(*Axis->GetFont());
    const double Lo = GetMinLevel(), Hi = GetMaxLevel();
    const bool Logarithmic = GetIntScaleMode() != smLinear;
    const double Range = Logarithmic ? QVLog10a(Hi) - QVLog10a(Lo) : Hi - Lo;
    const int32_t Width = View.Right - View.Left, Height = View.Bottom - View.Top;
    double Ratio = 0.0, Scale = 1.0;
    if (Range != 0.0 && std::isfinite(Range)) {
        Ratio = (Logarithmic ? QVLog10a(Lo) : Lo) / Range;
        Scale = GetIsVertical() ? Height / Range : -Width / Range;
    }
    const TQVAxisTickProc Tick = GetDrawTickProc();
    if (GetIsVertical()) {
        const double Start = View.Top + Height - 1 + std::nearbyint(Height * Ratio);
        UpTickLines(this, Tick, false, ACanvas, static_cast<int32_t>(GetMaxTextLength()), true, Lo, Hi, Start, Scale,
                    false);
    } else {
        const double Start = View.Left - std::nearbyint(Width * Ratio);
        DownTickLines(this, Tick, false, ACanvas, static_cast<int32_t>(GetMaxTextLength()), true, Lo, Hi, Start, Scale,
                      false);
    }
}

TRect TQVBasicLevelDisplayLevelView::GetLabelRect(TQLCanvas& ACanvas, int32_t& AAngle) const
{
    const TQVBasicLevelDisplayLabel* Label = GetLevelLabel();
    AAngle = 0;
    if (!Label)
        return TRect{};
    ACanvas.ApplyFont(*Label->GetFont());
    const std::string Text = GetLabelText();
    const int32_t W = ACanvas.TextWidth(Text), H = ACanvas.TextHeight("Xg");
    const TRect R = GetDrawRect();
    const TRect View = GetDataViewRect();
    const int32_t MidX = (View.Left + View.Right) / 2, MidY = (View.Top + View.Bottom) / 2;
    switch (FAlign) {
    case vaTop: return TRect{MidX - W / 2, R.Top + 2, MidX - W / 2 + W + 1, R.Top + 2 + H + 1};
    case vaBottom: return TRect{MidX - W / 2, R.Bottom - 2 - H - 1, MidX - W / 2 + W + 1, R.Bottom - 2};
    case vaLeft: AAngle = 90; return TRect{R.Left + 2 - 1, MidY - W / 2, R.Left + H + 2, MidY - W / 2 + W + 1};
    case vaRight: AAngle = 270; return TRect{R.Right - 2 - H - 1, MidY - W / 2, R.Right - 2, MidY - W / 2 + W + 1};
    }
    return TRect{};
}

void TQVBasicLevelDisplayLevelView::DrawLabel(TQLCanvas& ACanvas, bool APrinting)
{
    const TQVBasicLevelDisplayLabel* Label = GetLevelLabel();
    if (!Label || !Label->GetVisible())
        return;
    int32_t Angle = 0;
    const TRect Box = GetLabelRect(ACanvas, Angle);
    ACanvas.SetTextColor(Label->GetFont()->GetColor());
    if (FLabelButtonShown) {
        const TQVBasicViewButtonSettings* Button = GetButtonSettings();
        const bool Down = FLabelButtonDown && !APrinting;
        const TAlphaColor Fill = Down ? Button->GetMouseDownColor() : Button->GetMouseOverColor();
        const TAlphaColor Border = Down ? Button->GetMouseDownBorderColor() : Button->GetMouseOverBorderColor();
        ACanvas.GetBrush().SetStyle(bsSolid);
        ACanvas.GetBrush().SetColor(Fill);
        ACanvas.FillRect(Box);
        ACanvas.SetPenStyle(psSolid);
        ACanvas.GetPen().SetColor(Border);
        ACanvas.MoveTo(Box.Left, Box.Top - 1), ACanvas.LineTo(Box.Right, Box.Top - 1);
        ACanvas.MoveTo(Box.Left, Box.Bottom), ACanvas.LineTo(Box.Right, Box.Bottom);
        ACanvas.MoveTo(Box.Left - 1, Box.Top), ACanvas.LineTo(Box.Left - 1, Box.Bottom);
        ACanvas.MoveTo(Box.Right, Box.Top), ACanvas.LineTo(Box.Right, Box.Bottom);
        for (const TPoint C : {TPoint{Box.Left, Box.Top}, TPoint{Box.Right - 1, Box.Top},
                               TPoint{Box.Left, Box.Bottom - 1}, TPoint{Box.Right - 1, Box.Bottom - 1}})
            ACanvas.SetPixel(C.X, C.Y, Border);
    }
    ACanvas.GetBrush().SetStyle(bsClear);
    ACanvas.SetTextAngle(Angle);
    const std::string Text = GetLabelText();
    if (Angle == 90)
        ACanvas.TextOut(Box.Left, Box.Bottom, Text);
    else if (Angle == 270)
        ACanvas.TextOut(Box.Right, Box.Top, Text);
    else
        ACanvas.TextOut(Box.Left, Box.Top, Text);
    ACanvas.SetTextAngle(0);
}

// ---- The caption as a button ----

void TQVBasicLevelDisplayLevelView::ButtonHitTest(int32_t AX, int32_t AY, bool AForceInvalidate)
{
    const TQVBasicViewButtonSettings* Button = GetButtonSettings();
    if (!Button || !Button->GetEnabled())
        return;
    const bool Was = FLabelButtonShown;
    FLabelButtonShown = false;
    TRect Box{};
    const TQVBasicLevelDisplayLabel* Label = GetLevelLabel();
    if (Label && Label->GetVisible())
        if (TQLCanvas* Canvas = GetDisplay()->GetCanvas()) {
            TQLCanvasSave Save(*Canvas);
            int32_t Angle = 0;
            Box = GetLabelRect(*Canvas, Angle);
            FLabelButtonShown = Box.Contains(TPoint{AX, AY});
        }
    if (Was == FLabelButtonShown && !AForceInvalidate)
        return;
    if (!FLabelButtonShown && FToolCursorChanged) {
        GetDisplay()->SetDisplayCursor(GetDisplay()->GetCursor());
        FToolCursorChanged = false;
    } else if (FLabelButtonShown && !FToolCursorChanged) {
        GetDisplay()->SetDisplayCursor(Button->GetCursor());
        FToolCursorChanged = true;
    }
    GetDisplay()->InvalidateIntRect(TRect{Box.Left - 1, Box.Top - 1, Box.Right + 1, Box.Bottom + 1});
}

// ---- Mouse ----

void TQVBasicLevelDisplayLevelView::MouseMove(TShiftState AShift, int32_t AX, int32_t AY, bool& AHandled)
{
    TQVTrackingOptionalAxis::MouseMove(AShift, AX, AY, AHandled);
    FMouseIsIn = true;
    if (!IsVisible())
        return;
    ButtonHitTest(AX, AY, false);
    const TRect View = GetDataViewRect();
    const TPoint Point{AX, AY};
    const bool Inside = View.Contains(Point);
    if (!Inside && View.Contains(FOldMousePos))
        InvalidateView();
    if (GetTrackCursor() && Inside && FGetValueAtFunc) {
        const double Value = FGetValueAtFunc(AX, AY);
        if (Value != FCurrentLevelValue) {
            FCurrentLevelValue = Value;
            InvalidateView();
        }
    }
    FOldMousePos = Point;
}

void TQVBasicLevelDisplayLevelView::MouseDown(TMouseButton AButton, TShiftState /*AShift*/, int32_t AX, int32_t AY,
                                              bool /*AMouseInside*/, bool& AHandled)
{
    if (AButton != mbLeft || AHandled)
        return;
    ButtonHitTest(AX, AY, true);
    FLabelButtonDown = FLabelButtonShown;
    if (!FLabelButtonDown)
        return;
    bool Handled = false;
    if (const auto* Button = dynamic_cast<const TQVViewButtonSettings*>(GetButtonSettings());
        Button && Button->GetOnClick())
        Button->GetOnClick()(this, Handled);
    if (!Handled) {
        FDialogShown = true;
        if (const auto* Level = dynamic_cast<const TQVWaterfallDisplayLevelView*>(this); Level && Level->GetWaterfall())
            Level->GetWaterfall()->DoColorChannelClick(0);
    }
    AHandled = true;
}

void TQVBasicLevelDisplayLevelView::MouseUp(TMouseButton AButton, TShiftState /*AShift*/, int32_t AX, int32_t AY,
                                            bool /*AMouseInside*/)
{
    if (AButton != mbLeft)
        return;
    ButtonHitTest(AX, AY, true);
    FLabelButtonDown = false;
}

void TQVBasicLevelDisplayLevelView::MouseLeaveView()
{
    if (FLabelButtonShown) {
        FLabelButtonShown = false;
        FLabelButtonDown = false;
        InvalidateView();
    }
}

const TQLClassInfo& TQVBasicLevelDisplayLevelView::StaticClassInfo()
{
    using C = TQVBasicLevelDisplayLevelView;
    static const TQLClassInfo Info =
        TQLClassBuilder<C>("TQVBasicLevelDisplayLevelView", &TQVTrackingOptionalAxis::StaticClassInfo())
            .Property("BarWidth", &C::GetBarWidth, &C::SetBarWidth, int32_t(14))
            .Property("GrayScale", &C::GetGrayScale, &C::SetGrayScale, false)
            .Collection("Colors", &C::GetColors)
            .Property("Align", &C::GetAlign, &C::SetAlign, vaRight)
            .Build();
    return Info;
}

// ---- The derived views ----

TQVAxisDisplayLevelView::TQVAxisDisplayLevelView(TQVDisplayOwner* ADisplay, TQVLevelFunc AMinFunc,
                                                 TQVLevelFunc AMaxFunc, TQVGetValueAtFunc AGetValueAtFunc)
    : TQVBasicLevelDisplayLevelView(ADisplay, std::move(AMinFunc), std::move(AMaxFunc), std::move(AGetValueAtFunc)),
      FAxis(std::make_unique<TQVLevelAxis>(this, GetLock()))
{}

TQVAxisDisplayLevelView::~TQVAxisDisplayLevelView() = default;

const TQLClassInfo& TQVAxisDisplayLevelView::StaticClassInfo()
{
    static const TQLClassInfo Info = TQLClassBuilder<TQVAxisDisplayLevelView>(
                                         "TQVAxisDisplayLevelView", &TQVBasicLevelDisplayLevelView::StaticClassInfo())
                                         .Object("Axis", &TQVAxisDisplayLevelView::GetAxis)
                                         .Build();
    return Info;
}

TQVDisplayLevelView::TQVDisplayLevelView(TQVDisplayOwner* ADisplay, TQVLevelFunc AMinFunc, TQVLevelFunc AMaxFunc,
                                         TQVGetValueAtFunc AGetValueAtFunc)
    : TQVAxisDisplayLevelView(ADisplay, std::move(AMinFunc), std::move(AMaxFunc), std::move(AGetValueAtFunc)),
      FLevelLabel(std::make_unique<TQVLevelDisplayLabel>(this, GetLock(), [this] { InvalidateRecalc(); }))
{}

TQVDisplayLevelView::~TQVDisplayLevelView() = default;

const TQLClassInfo& TQVDisplayLevelView::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayLevelView>("TQVDisplayLevelView", &TQVAxisDisplayLevelView::StaticClassInfo())
            .Object("LevelLabel", &TQVDisplayLevelView::GetLevelLabel)
            .Build();
    return Info;
}

TQVWaterfallDisplayLevelView::TQVWaterfallDisplayLevelView(TQVDisplayOwner* ADisplay, TQVWaterfallOwner* AWaterfall,
                                                           TQVLevelFunc AMinFunc, TQVLevelFunc AMaxFunc,
                                                           TQVGetValueAtFunc AGetValueAtFunc)
    : TQVDisplayLevelView(ADisplay, std::move(AMinFunc), std::move(AMaxFunc), std::move(AGetValueAtFunc)),
      FWaterfall(AWaterfall),
      FButton(std::make_unique<TQVViewButtonSettings>(this, GetLock(), [this] { InvalidateView(); }))
{}

TQVWaterfallDisplayLevelView::~TQVWaterfallDisplayLevelView() = default;

const TQLClassInfo& TQVWaterfallDisplayLevelView::StaticClassInfo()
{
    static const TQLClassInfo Info = TQLClassBuilder<TQVWaterfallDisplayLevelView>(
                                         "TQVWaterfallDisplayLevelView", &TQVDisplayLevelView::StaticClassInfo())
                                         .Object("Button", &TQVWaterfallDisplayLevelView::GetButton)
                                         .Build();
    return Info;
}

} // namespace qv
