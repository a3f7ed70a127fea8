#include "qv/display/QVDisplayElements.h"

#include "qv/foundation/QLClassBuilder.h"

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

namespace qv {

TQUElementPair::TQUElementPair(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify, double AX, double AY)
    : TQLPersistentNotify(AOwner, std::move(ALock), std::move(ANotify)), FX(AX), FY(AY), FXDefault(AX), FYDefault(AY)
{}

void TQUElementPair::CheckValue(const char* AName, double AValue) const
{
    if (!std::isfinite(AValue))
        throw std::invalid_argument(GetClassInfo().GetName() + "." + AName + ": " + std::to_string(AValue) +
                                    " is not a finite fraction");
}

void TQUElement2DSize::CheckValue(const char* AName, double AValue) const
{
    TQUElementPair::CheckValue(AName, AValue);
    if (AValue < 0)
        throw std::invalid_argument(GetClassInfo().GetName() + "." + AName + ": " + std::to_string(AValue) +
                                    " is negative");
}

void TQUElementPair::SetX(double AValue)
{
    CheckValue("X", AValue);
    Set(FX, AValue);
}

void TQUElementPair::SetY(double AValue)
{
    CheckValue("Y", AValue);
    Set(FY, AValue);
}

void TQUElementPair::SetValueDefault(double AX, double AY)
{
    CheckValue("X", AX);
    CheckValue("Y", AY);
    FXDefault = AX;
    FYDefault = AY;
    SetX(AX);
    SetY(AY);
}

const TQLClassInfo& TQUElementPair::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQUElementPair>("TQUElementPair", &TQLPersistentNotify::StaticClassInfo())
            .Property("X", &TQUElementPair::GetX, &TQUElementPair::SetX, &TQUElementPair::GetXDefault)
            .Property("Y", &TQUElementPair::GetY, &TQUElementPair::SetY, &TQUElementPair::GetYDefault)
            .Build();
    return Info;
}

const TQLClassInfo& TQUElementOffsets::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQUElementOffsets>("TQUElementOffsets", &TQUElementPair::StaticClassInfo()).Build();
    return Info;
}

const TQLClassInfo& TQUElement2DSize::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQUElement2DSize>("TQUElement2DSize", &TQUElementPair::StaticClassInfo())
            .Property("X", &TQUElementPair::GetX, &TQUElementPair::SetX, &TQUElementPair::GetXDefault)
            .Limits(0, std::numeric_limits<double>::infinity())
            .Property("Y", &TQUElementPair::GetY, &TQUElementPair::SetY, &TQUElementPair::GetYDefault)
            .Limits(0, std::numeric_limits<double>::infinity())
            .Build();
    return Info;
}

// ---- TQVDisplayElements ----

TQVDisplayElements::~TQVDisplayElements()
{
    for (auto& Item : FItems)
        Item->SetListOwner(nullptr);
}

IQLDrawComponentElement* TQVDisplayElements::GetItem(int32_t AIndex) const
{
    if (AIndex < 0 || AIndex >= GetCount())
        throw std::out_of_range("TQVDisplayElements: index " + std::to_string(AIndex) + " out of range (count " +
                                std::to_string(GetCount()) + ")");
    return FItems[size_t(AIndex)].get();
}

IQLDrawComponentElement* TQVDisplayElements::Add(std::unique_ptr<IQLDrawComponentElement> AElement)
{
    if (!AElement)
        throw std::invalid_argument("TQVDisplayElements::Add: no element");
    FItems.push_back(std::move(AElement));
    IQLDrawComponentElement* Result = FItems.back().get();
    Result->SetListOwner(&FHost);
    FHost.InvalidateOwner();
    return Result;
}

void TQVDisplayElements::Delete(int32_t AIndex)
{
    GetItem(AIndex)->SetListOwner(nullptr);
    FItems.erase(FItems.begin() + AIndex);
    FHost.InvalidateOwner();
}

void TQVDisplayElements::Clear()
{
    if (FItems.empty())
        return;
    for (auto& Item : FItems)
        Item->SetListOwner(nullptr);
    FItems.clear();
    FHost.InvalidateOwner();
}

int32_t TQVDisplayElements::IndexOf(const IQLDrawComponentElement* AItem) const
{
    for (size_t I = 0; I < FItems.size(); ++I)
        if (FItems[I].get() == AItem)
            return static_cast<int32_t>(I);
    return -1;
}

void TQVDisplayElements::DrawElements(TQVDisplayDrawPart /*APart*/, TQLCanvas& ACanvas, const TRect& AClip,
                                      bool /*APrinting*/)
{
    const float Width = static_cast<float>(AClip.Right - AClip.Left);
    const float Height = static_cast<float>(AClip.Bottom - AClip.Top);
    for (auto& Item : FItems)
        if (Item->GetVisible())
            Item->Draw(ACanvas, false, Width / 2, Height / 2, Width, Height, 1.0f, 1.0f);
}

void TQVDisplayElements::RefreshElements()
{
    for (auto& Item : FItems)
        Item->RefreshElement();
}

namespace {

// The settings object of an element whose class the stored form can make again; null for
// any other element.
TQLPersistent* StoredSettings(const IQLDrawComponentElement& AElement)
{
    auto* Settings = dynamic_cast<TQLPersistent*>(const_cast<IQLDrawComponentElement*>(&AElement));
    return Settings && QVFindElementClass(Settings->GetClassInfo().GetName()) == &Settings->GetClassInfo() ? Settings
                                                                                                           : nullptr;
}

} // namespace

std::vector<TQLPersistent*> TQVDisplayElements::GetStoredItems() const
{
    std::vector<TQLPersistent*> Result;
    for (const auto& Item : FItems)
        if (TQLPersistent* Settings = StoredSettings(*Item))
            Result.push_back(Settings);
    return Result;
}

std::unique_ptr<TQLPersistent> TQVDisplayElements::MakeStoredItem(const std::string& AClass) const
{
    std::unique_ptr<IQLDrawComponentElement> Element = QVMakeElement(AClass);
    if (!Element)
        throw std::invalid_argument("TQVDisplayElements: no element class \"" + AClass + "\"");
    auto* Settings = dynamic_cast<TQLPersistent*>(Element.get());
    Element.release();
    return std::unique_ptr<TQLPersistent>(Settings);
}

void TQVDisplayElements::ReplaceStoredItems(std::vector<TSlot> ASlots)
{
    // Made elements first take the form of list members, so that nothing below can fail
    // halfway through the exchange.
    std::vector<std::unique_ptr<IQLDrawComponentElement>> Made(ASlots.size());
    for (size_t I = 0; I < ASlots.size(); ++I)
        if (ASlots[I].Made) {
            auto* Element = dynamic_cast<IQLDrawComponentElement*>(ASlots[I].Made.get());
            if (!Element)
                throw std::invalid_argument("TQVDisplayElements: " + ASlots[I].Made->GetClassInfo().GetName() +
                                            " is not an element");
            ASlots[I].Made.release();
            Made[I].reset(Element);
        }
    std::vector<std::unique_ptr<IQLDrawComponentElement>> Old = std::move(FItems), Rest;
    FItems.clear();
    for (size_t I = 0; I < ASlots.size(); ++I) {
        if (Made[I]) {
            FItems.push_back(std::move(Made[I]));
            FItems.back()->SetListOwner(&FHost);
            continue;
        }
        for (auto& Item : Old)
            if (Item && StoredSettings(*Item) == ASlots[I].Kept) {
                FItems.push_back(std::move(Item));
                break;
            }
    }
    // The elements the stored form leaves out stay; stored ones not kept go.
    for (auto& Item : Old)
        if (Item) {
            if (StoredSettings(*Item))
                Item->SetListOwner(nullptr);
            else
                FItems.push_back(std::move(Item));
        }
    FHost.InvalidateOwner();
}

} // namespace qv
