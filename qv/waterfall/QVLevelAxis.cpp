#include "qv/waterfall/QVLevelAxis.h"

#include "qv/foundation/QLClassBuilder.h"
#include "qv/waterfall/QVLevelDisplay.h"

#include <cmath>
#include <stdexcept>

namespace qv {

namespace {
// Every change of the level settings lays the level view out anew.
TQLNotifyProc RecalcOf(TQVBasicLevelDisplayLevelView* AView)
{
    return [AView] {
        if (AView)
            AView->InvalidateRecalc();
    };
}

std::string Number(double AValue)
{
    char Buffer[40];
    std::snprintf(Buffer, sizeof Buffer, "%g", AValue);
    return Buffer;
}
} // namespace

TQVBasicLevelAxis::TQVBasicLevelAxis(TQVBasicLevelDisplayLevelView* ALevelView, TQLLockPtr ALock)
    : TQLPersistentNotify(ALevelView, ALock, RecalcOf(ALevelView)), FLevelView(ALevelView),
      FFont(std::make_unique<TQVDisplayFont>(this, ALock, RecalcOf(ALevelView), "Arial", 8, 0xFFFFFFFF))
{}

TQVBasicLevelAxis::~TQVBasicLevelAxis() = default;

void TQVBasicLevelAxis::SetPrecision(int32_t AValue)
{
    if (AValue < 0 || AValue > 18)
        throw std::out_of_range("TQVBasicLevelAxis: Precision " + std::to_string(AValue) + " is outside 0..18");
    Set(FPrecision, AValue);
}

const TQLClassInfo& TQVBasicLevelAxis::StaticClassInfo()
{
    using C = TQVBasicLevelAxis;
    static const TQLClassInfo Info =
        TQLClassBuilder<C>("TQVBasicLevelAxis", &TQLPersistentNotify::StaticClassInfo())
            .Color("Color", &C::GetColor, &C::SetColor, TAlphaColor(0xFFFFFFFF))
            .Object("Font", &C::GetFont)
            .Property("Precision", &C::GetPrecision, &C::SetPrecision, int32_t(3))
            .Property("FixedPrecision", &C::GetFixedPrecision, &C::SetFixedPrecision, false)
            .Property("Visible", &C::GetVisible, &C::SetVisible, true)
            .Property("ScaleMode", &C::GetScaleMode, &C::SetScaleMode, smLinear)
            .Build();
    return Info;
}

void TQVLevelAxis::SetMin(double AValue)
{
    if (!std::isfinite(AValue))
        throw std::invalid_argument("TQVLevelAxis: Min " + Number(AValue) + " is not a finite level");
    Set(FMin, AValue);
}

void TQVLevelAxis::SetMax(double AValue)
{
    if (!std::isfinite(AValue))
        throw std::invalid_argument("TQVLevelAxis: Max " + Number(AValue) + " is not a finite level");
    Set(FMax, AValue);
}

void TQVLevelAxis::SetTickText(const std::string& AValue)
{
    auto Guard = GetLock()->AcquireWrite();
    FNewText = true;
    FNewTickText = AValue;
}

std::string TQVLevelAxis::CustomTickText(double AValue, const std::string& AText)
{
    if (!FOnCustomLabel)
        return AText;
    FNewText = false;
    std::string Text = AText;
    FOnCustomLabel(FLevelView, AValue, Text);
    return FNewText ? FNewTickText : Text;
}

const TQLClassInfo& TQVLevelAxis::StaticClassInfo()
{
    using C = TQVLevelAxis;
    static const TQLClassInfo Info = TQLClassBuilder<C>("TQVLevelAxis", &TQVBasicLevelAxis::StaticClassInfo())
                                         .Property("Autoscale", &C::GetAutoscale, &C::SetAutoscale, true)
                                         .Property("Min", &C::GetMin, &C::SetMin, 0.0)
                                         .Property("Max", &C::GetMax, &C::SetMax, 0.0)
                                         .Build();
    return Info;
}

const TQLClassInfo& TQVLevelDisplayColor::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVLevelDisplayColor>("TQVLevelDisplayColor", &TQLCollectionItem::StaticClassInfo())
            .Color("Color", &TQVLevelDisplayColor::GetColor, &TQVLevelDisplayColor::SetColor, TAlphaColor(0xFF000000))
            .Build();
    return Info;
}

TQVLevelDisplayColors::TQVLevelDisplayColors(TQVBasicLevelDisplayLevelView* AOwner, TQLLockPtr ALock)
    : TQLTypedCollection<TQVLevelDisplayColor>(AOwner, std::move(ALock)), FOwner(AOwner)
{}

void TQVLevelDisplayColors::NewItemCreated(TQLCollectionItem* AItem)
{
    static constexpr TAlphaColor CTable[] = {0xFF000000, 0xFF0000FF, 0xFF00FF00, 0xFFFFFF00, 0xFFFF0000,
                                             0xFF00FFFF, 0xFFF0FBFF, 0xFF808000, 0xFFFFFFFF, 0xFFD3D3D3,
                                             0xFF800080, 0xFFFF00FF, 0xFF00FFFF, 0xFF008080, 0xFF000080};
    int32_t Best = 22000;
    TAlphaColor Chosen = 0xFFFF0000;
    for (const TAlphaColor Candidate : CTable) {
        int32_t Used = 0;
        for (int32_t I = 0; I < GetCount(); ++I) {
            const TQVLevelDisplayColor* Item = GetNoLockItem(I);
            if (Item != AItem && Item->GetColor() == Candidate)
                ++Used;
        }
        if (Used < Best) {
            Best = Used;
            Chosen = Candidate;
        }
    }
    static_cast<TQVLevelDisplayColor*>(AItem)->SetColor(Chosen);
    if (FOwner)
        FOwner->InvalidateRecalc();
}

void TQVLevelDisplayColors::Update(TQLCollectionItem* AItem)
{
    TQLTypedCollection<TQVLevelDisplayColor>::Update(AItem);
    if (FOwner)
        FOwner->InvalidateRecalc();
}

std::vector<TAlphaColor> TQVLevelDisplayColors::GetColorValues() const
{
    auto Guard = GetLock()->AcquireRead();
    std::vector<TAlphaColor> Result;
    Result.reserve(static_cast<size_t>(GetCount()));
    for (int32_t I = 0; I < GetCount(); ++I)
        Result.push_back(GetNoLockItem(I)->GetColor());
    return Result;
}

TQVBasicLevelDisplayLabel::TQVBasicLevelDisplayLabel(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc AOnChange)
    : TQVBasicOptionalLabel(AOwner, std::move(ALock), std::move(AOnChange),
                            TQLCanvasFont{"Arial", 10, fsBold, 0xFFFFFFFF})
{}

const TQLClassInfo& TQVBasicLevelDisplayLabel::StaticClassInfo()
{
    static const TQLClassInfo Info = TQLClassBuilder<TQVBasicLevelDisplayLabel>(
                                         "TQVBasicLevelDisplayLabel", &TQVBasicOptionalLabel::StaticClassInfo())
                                         .Build();
    return Info;
}

const TQLClassInfo& TQVLevelDisplayLabel::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVLevelDisplayLabel>("TQVLevelDisplayLabel", &TQVBasicLevelDisplayLabel::StaticClassInfo())
            .Property("Text", &TQVLevelDisplayLabel::GetText, &TQVLevelDisplayLabel::SetText, std::string())
            .Build();
    return Info;
}

} // namespace qv
