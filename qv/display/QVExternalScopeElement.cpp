#include "qv/display/QVExternalScopeElement.h"

#include "qv/foundation/QLClassBuilder.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>

namespace qv {

const TQLClassInfo& TQVScopeLayer::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVScopeLayer>("TQVScopeLayer", &TQVScope::StaticClassInfo()).Build();
    return Info;
}

TQVExternalScopeElement::TQVExternalScopeElement()
{
    FPosition = std::make_unique<TQUElementOffsets>(
        this, GetLock(), [this] { InvalidateSize(); }, 0.0, 0.5);
    FSize = std::make_unique<TQUElement2DSize>(
        this, GetLock(), [this] { InvalidateSize(); }, 0.6, 0.3);
}

TQVExternalScopeElement::~TQVExternalScopeElement()
{
    BeginDestroy();
    FListOwner = nullptr;
}

void TQVExternalScopeElement::SetVisible(bool AValue)
{
    if (AValue == GetVisible())
        return;
    TQVScope::SetVisible(AValue);
    InvalidateSize();
}

void TQVExternalScopeElement::SetListOwner(IQVElementHost* AOwner)
{
    FListOwner = AOwner;
    // An element paints with the host's surfaces unless it was given its own.
    if (AOwner && !GetCanvasFactory() && AOwner->GetElementCanvasFactory())
        SetCanvasFactory(AOwner->GetElementCanvasFactory());
}

void TQVExternalScopeElement::InvalidateSize()
{
    InvalidateRange();
}

void TQVExternalScopeElement::Invalidate()
{
    TQVScope::Invalidate();
    if (FListOwner)
        FListOwner->InvalidateOwner();
}

void TQVExternalScopeElement::Draw(TQLCanvas& AGraphics, bool AContoursOnly, float ARadiusX, float ARadiusY,
                                   float AWidth, float AHeight, float AXCoeff, float AYCoeff)
{
    if (!GetVisible())
        return;
    TQLCanvasSave Save(AGraphics);
    const double W = FSize->GetXOf(2.0 * ARadiusX), H = FSize->GetYOf(2.0 * ARadiusY);
    const double X = FPosition->GetXOf(ARadiusX), Y = FPosition->GetYOf(ARadiusY);
    // The element's picture goes where its centre lies: the host's centre moved by the
    // offsets.
    struct TOrigin {
        TPoint& Slot;
        TPoint Old;
        ~TOrigin() { Slot = Old; }
    } Origin{FLayerOrigin, FLayerOrigin};
    FLayerOrigin =
        TPoint{QLRoundToInt((AWidth - 1) / 2.0 - W / 2.0 + X), QLRoundToInt((AHeight - 1) / 2.0 - H / 2.0 + Y)};
    (void)AContoursOnly; // the picture has no contour form: it is drawn whole
    IntDraw(AGraphics, AXCoeff, AYCoeff, static_cast<float>(W), static_cast<float>(H), true, false);
}

const TQLClassInfo& TQVExternalScopeElement::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVExternalScopeElement>("TQVExternalScopeElement", &TQVScope::StaticClassInfo())
            .Object("Position", &TQVExternalScopeElement::GetPosition)
            .Object("Size", &TQVExternalScopeElement::GetSize)
            .Build();
    return Info;
}

// ---- Matrix layer ----

TQVExternalScopeMatrixLayer::TQVExternalScopeMatrixLayer()
{
    GetSize()->SetValueDefault(0.6, 0.6);
    GetPosition()->SetValueDefault(0.0, 0.0);
}

void TQVExternalScopeMatrixLayer::Render(uint32_t* ABuffer, uint32_t AWidth, uint32_t AHeight)
{
    if (!GetVisible())
        return;
    constexpr uint32_t Max = static_cast<uint32_t>(std::numeric_limits<int32_t>::max());
    if (AWidth > Max || AHeight > Max)
        throw std::invalid_argument("TQVExternalScopeMatrixLayer::Render: buffer of " + std::to_string(AWidth) + " x " +
                                    std::to_string(AHeight) + " pixels is too large");
    const double W = GetSize()->GetXOf(AWidth), H = GetSize()->GetYOf(AHeight);
    const double X = std::nearbyint(GetPosition()->GetXOf(AWidth));
    const double Y = std::nearbyint(GetPosition()->GetYOf(AHeight));
    IntRender(static_cast<float>(X), static_cast<float>(Y), static_cast<float>(W), static_cast<float>(H), ABuffer,
              static_cast<int32_t>(AWidth), static_cast<int32_t>(AHeight));
}

const TQLClassInfo& TQVExternalScopeMatrixLayer::StaticClassInfo()
{
    static const TQLClassInfo Info = TQLClassBuilder<TQVExternalScopeMatrixLayer>(
                                         "TQVExternalScopeMatrixLayer", &TQVExternalScopeElement::StaticClassInfo())
                                         .Build();
    return Info;
}

const TQLClassInfo& TQVExternalScopeMatrixElement::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVExternalScopeMatrixElement>("TQVExternalScopeMatrixElement",
                                                       &TQVExternalScopeMatrixLayer::StaticClassInfo())
            .Build();
    return Info;
}

} // namespace qv
