#include "qv/axes/QVDisplayXAxis.h"

#include "qv/axes/QVDisplayAxisList.h"
#include "qv/component/QVDisplayOwner.h"
#include "qv/foundation/QLClassBuilder.h"

#include <algorithm>

namespace qv {

TQVViewScreenAlign QVTurnedScreenAlign(TQVViewAlign AAlign, bool ATurned)
{
    if (!ATurned)
        return static_cast<TQVViewScreenAlign>(AAlign);
    switch (AAlign) {
    case vaTop: return vsaRight;
    case vaBottom: return vsaLeft;
    case vaLeft: return vsaBottom;
    case vaRight: return vsaTop;
    }
    return vsaClient;
}

void QVDrawAxisStrip(TQVDisplayAxis& AAxis, TQLCanvas& ACanvas, bool AVertical, bool APrinting, int32_t ATrackSize)
{
    if (!AAxis.IsVisible())
        return;
    TQLCanvasSave Save(ACanvas);
    const TQVDisplayViewBackground* Background = AAxis.GetBackground();
    if (!Background->GetUseControlColor()) {
        ACanvas.GetBrush().SetStyle(bsSolid);
        ACanvas.GetBrush().SetColor(Background->GetColor());
        ACanvas.FillRect(AAxis.GetDrawRect());
    }
    AAxis.DrawTicks(ACanvas, true, AVertical);
    AAxis.DrawAxisLabel(ACanvas, APrinting);
    if (AAxis.GetTrackCursor() && AAxis.GetMouseIsIn() && !APrinting && !AAxis.GetDisplay()->GetDesigning())
        AAxis.DrawMouseMarker(ACanvas, ATrackSize);
    AAxis.DrawToolBar(ACanvas, APrinting);
}

TQVBasicDisplayXAxis::TQVBasicDisplayXAxis(TQVDisplayOwner* ADisplay, TQVViewAlign AAlign)
    : TQVDisplayAxis(ADisplay, AAlign)
{
    ADisplay->GetXAxes().Add(this);
}

TQVBasicDisplayXAxis::~TQVBasicDisplayXAxis()
{
    GetDisplay()->GetXAxes().Remove(this);
}

double TQVBasicDisplayXAxis::GetMinSample() const
{
    return 0.0;
}

double TQVBasicDisplayXAxis::GetMaxSample() const
{
    if (FSamples < 1)
        return GetMax()->GetDataValue();
    return static_cast<double>(FSamples) - 1.0;
}

void TQVBasicDisplayXAxis::SetSamples(int32_t AValue)
{
    FSamples = AValue;
}

bool TQVBasicDisplayXAxis::GetIsVertical() const
{
    return GetDisplay()->GetIsVertical();
}

TQVViewScreenAlign TQVBasicDisplayXAxis::GetScreenAlign() const
{
    return QVTurnedScreenAlign(FAlign, GetDisplay()->GetIsVertical());
}

int32_t TQVBasicDisplayXAxis::GetDimentionLength() const
{
    const TRect View = GetDataViewRect();
    return GetDisplay()->GetIsVertical() ? QVRectHeight(View) : QVRectWidth(View);
}

double TQVBasicDisplayXAxis::GetRangeWidth(bool ALogarithmic) const
{
    const double Lo = FScaleTick.GetZoomed().GetMin().GetValue();
    const double Hi = FScaleTick.GetZoomed().GetMax().GetValue();
    return ALogarithmic ? QVLog10a(Hi) - QVLog10a(Lo) : Hi - Lo;
}

int32_t TQVBasicDisplayXAxis::GetDefaultOffsetBegin() const
{
    TQLCanvas* Canvas = GetMeasureCanvas(GetFont());
    if (!Canvas)
        return 4;
    return Canvas->TextWidth(GetTickText(FScaleTick.GetZoomed().GetMin().GetValue())) / 2 + 4;
}

int32_t TQVBasicDisplayXAxis::GetDefaultOffsetEnd() const
{
    TQLCanvas* Canvas = GetMeasureCanvas(GetFont());
    if (!Canvas)
        return 4;
    return Canvas->TextWidth(GetTickText(FScaleTick.GetZoomed().GetMax().GetValue())) / 2 + 4;
}

double TQVBasicDisplayXAxis::GetDataZoomedMin() const
{
    double Value = FDataTotal.GetFull().GetMin().GetValue();
    if (FZoomed)
        Value = std::max(Value, ScaleTickToData(FZoomMin));
    return Value;
}

double TQVBasicDisplayXAxis::GetDataZoomedMax() const
{
    double Value = FDataTotal.GetFull().GetMax().GetValue();
    if (FZoomed)
        Value = std::min(Value, ScaleTickToData(FZoomMax));
    return Value;
}

std::string TQVBasicDisplayXAxis::GetAxisLabelText() const
{
    const std::string& Text = GetAxisLabel()->GetText();
    return Text.empty() ? std::string("X Axis") : Text;
}

const TQLClassInfo& TQVBasicDisplayXAxis::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVBasicDisplayXAxis>("TQVBasicDisplayXAxis", &TQVDisplayAxis::StaticClassInfo())
            .Property("Align", &TQVBasicDisplayXAxis::GetAlign, &TQVBasicDisplayXAxis::SetAlign, vaBottom)
            .Build();
    return Info;
}

const TQLClassInfo& TQVDisplayXAxis::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayXAxis>("TQVDisplayXAxis", &TQVBasicDisplayXAxis::StaticClassInfo())
            .Property("ScaleMode", &TQVDisplayXAxis::GetScaleMode, &TQVDisplayXAxis::SetScaleMode, smLinear)
            .Build();
    return Info;
}

} // namespace qv
