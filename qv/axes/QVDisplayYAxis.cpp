#include "qv/axes/QVDisplayYAxis.h"

#include "qv/axes/QVDisplayAxisList.h"
#include "qv/axes/QVDisplayXAxis.h"
#include "qv/component/QVDisplayOwner.h"
#include "qv/foundation/QLClassBuilder.h"

namespace qv {

TQVBasicDisplayYAxis::TQVBasicDisplayYAxis(TQVDisplayOwner* ADisplay, TQVViewAlign AAlign)
    : TQVDisplayAxis(ADisplay, AAlign)
{
    ADisplay->GetYAxes().Add(this);
}

TQVBasicDisplayYAxis::~TQVBasicDisplayYAxis()
{
    GetDisplay()->GetYAxes().Remove(this);
}

bool TQVBasicDisplayYAxis::GetIsVertical() const
{
    return !GetDisplay()->GetIsVertical();
}

TQVViewScreenAlign TQVBasicDisplayYAxis::GetScreenAlign() const
{
    return QVTurnedScreenAlign(FAlign, GetDisplay()->GetIsVertical());
}

int32_t TQVBasicDisplayYAxis::GetDimentionLength() const
{
    return GetDisplay()->GetIsVertical() ? GetWidth() : GetHeight();
}

int32_t TQVBasicDisplayYAxis::GetDefaultOffsetBegin() const
{
    TQLCanvas* Canvas = GetMeasureCanvas(GetFont());
    if (!Canvas)
        return 4;
    return Canvas->TextHeight("Xg") / 2 + 4;
}

const TQLClassInfo& TQVBasicDisplayYAxis::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVBasicDisplayYAxis>("TQVBasicDisplayYAxis", &TQVDisplayAxis::StaticClassInfo())
            .Property("Align", &TQVBasicDisplayYAxis::GetAlign, &TQVBasicDisplayYAxis::SetAlign, vaLeft)
            .Build();
    return Info;
}

const TQLClassInfo& TQVDisplayYAxis::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayYAxis>("TQVDisplayYAxis", &TQVBasicDisplayYAxis::StaticClassInfo())
            .Property("ScaleMode", &TQVDisplayYAxis::GetScaleMode, &TQVDisplayYAxis::SetScaleMode, smLinear)
            .Build();
    return Info;
}

} // namespace qv
