// Display settings objects, display collections and their items.
#include "qv/component/QVDisplayCollectionItem.h"
#include "qv/component/QVDisplayPersistent.h"
#include "qv/foundation/QLClassBuilder.h"

namespace qv {

const TQLClassInfo& TQVDisplayPersistent::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVDisplayPersistent", &TQLPersistent::StaticClassInfo(), {});
    return Info;
}

void TQVDisplayCollectionBase::Update(TQLCollectionItem* AItem)
{
    TQLCollection::Update(AItem);
    if (FDisplay)
        FDisplay->InvalidateRefresh();
}

namespace {
TQVDisplayOwner* DisplayOf(TQLCollection* ACollection)
{
    auto* Collection = dynamic_cast<TQVDisplayCollectionBase*>(ACollection);
    return Collection ? Collection->GetDisplay() : nullptr;
}
} // namespace

TQVDisplayCollectionItem::TQVDisplayCollectionItem(TQLCollection* ACollection)
    : TQLNamedCollectionItem(ACollection), FOwner(DisplayOf(ACollection))
{}

void TQVDisplayCollectionItem::InvalidateItem()
{
    if (FOwner)
        FOwner->InvalidateRefresh();
}

TQLCanvasPen TQVDisplayCollectionItem::GetLegendPen() const
{
    TQLCanvas* Canvas = FOwner ? FOwner->GetCanvas() : nullptr;
    return Canvas ? Canvas->GetPen() : TQLCanvasPen();
}

TQLCanvasBrush TQVDisplayCollectionItem::GetLegendBrush() const
{
    TQLCanvas* Canvas = FOwner ? FOwner->GetCanvas() : nullptr;
    return Canvas ? Canvas->GetBrush() : TQLCanvasBrush();
}

const TQLClassInfo& TQVDisplayCollectionItem::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayCollectionItem>("TQVDisplayCollectionItem",
                                                  &TQLNamedCollectionItem::StaticClassInfo())
            .Property("Tag", &TQVDisplayCollectionItem::GetTag, &TQVDisplayCollectionItem::SetTag, 0)
            .Build();
    return Info;
}

void TQVDisplaySelectableCollectionItem::MouseEnter()
{
    if (FOnMouseEnter)
        FOnMouseEnter(this);
}

void TQVDisplaySelectableCollectionItem::MouseLeave()
{
    if (FOnMouseLeave)
        FOnMouseLeave(this);
}

void TQVDisplaySelectableCollectionItem::MouseDown(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY,
                                                   bool /*AMouseInside*/)
{
    FMouseIsDown = true;
    if (FOnMouseDown)
        FOnMouseDown(this, AButton, AShift, static_cast<float>(AX), static_cast<float>(AY));
    if (AButton == mbLeft && FOnClick)
        FOnClick(this);
}

void TQVDisplaySelectableCollectionItem::MouseUp(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY,
                                                 bool /*AMouseInside*/)
{
    if (FMouseIsDown && FOnMouseUp)
        FOnMouseUp(this, AButton, AShift, static_cast<float>(AX), static_cast<float>(AY));
}

const TQLClassInfo& TQVDisplaySelectableCollectionItem::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVDisplaySelectableCollectionItem", &TQVDisplayCollectionItem::StaticClassInfo(),
                                   {});
    return Info;
}

void TQVOptionalDisplayCollectionItem::SetVisible(bool AValue)
{
    Set(FVisible, AValue, [this] { VisibleChanged(); });
}

const TQLClassInfo& TQVOptionalDisplayCollectionItem::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVOptionalDisplayCollectionItem>("TQVOptionalDisplayCollectionItem",
                                                          &TQVDisplaySelectableCollectionItem::StaticClassInfo())
            .Property("Visible", &TQVOptionalDisplayCollectionItem::GetVisible,
                      &TQVOptionalDisplayCollectionItem::SetVisibleProp, true)
            .Build();
    return Info;
}

} // namespace qv
