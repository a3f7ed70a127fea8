#include "qv/elements/QVCustomLegendGroup.h"

#include "qv/elements/QVLegendView.h"
#include "qv/foundation/QLClassBuilder.h"

#include <stdexcept>

namespace qv {

// ---- TQVCustomLegendItem ----

TQVCustomLegendItem::TQVCustomLegendItem(TQLCollection* ACollection)
    : TQVDisplayCollectionItem(ACollection), FPen(std::make_unique<TQVDisplayPen>(
                                                 this, GetLock(), [this] { NotifyProp(); }, 0xFFFF0000, 1)),
      FBrush(std::make_unique<TQVDisplayBrush>(
          this, GetLock(), [this] { NotifyProp(); }, 0xFFFF0000, bkSolid))
{}

TQVCustomLegendItem::~TQVCustomLegendItem() = default;

TQLCanvasPen TQVCustomLegendItem::GetLegendPen() const
{
    TQLCanvasPen Pen;
    Pen.SetColor(FPen->GetColor());
    Pen.SetWidth(FPen->GetWidth());
    Pen.SetStyle(QVPenStyleOf(FPen->GetDash()));
    return Pen;
}

TQLCanvasBrush TQVCustomLegendItem::GetLegendBrush() const
{
    TQLCanvasBrush Brush;
    Brush.SetColor(FBrush->GetColor());
    Brush.SetStyle(FBrush->GetKind() == bkSolid ? bsSolid : bsClear);
    return Brush;
}

const TQLClassInfo& TQVCustomLegendItem::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVCustomLegendItem>("TQVCustomLegendItem", &TQVDisplayCollectionItem::StaticClassInfo())
            .Object("Pen", &TQVCustomLegendItem::GetPen)
            .Object("Brush", &TQVCustomLegendItem::GetBrush)
            .Build();
    return Info;
}

// ---- TQVCustomLegendGroup ----

TQVCustomLegendGroup::TQVCustomLegendGroup(TQVLegendView* ALegend, const std::string& ADefaultLabel)
    : TQVLegendGroup(ALegend, ADefaultLabel),
      FCustomItems(std::make_unique<TQVCustomLegendItems>(this, ALegend->GetLock(), ALegend->GetDisplay()))
{
    SetItems(FCustomItems.get());
}

TQVCustomLegendGroup::~TQVCustomLegendGroup()
{
    // The legend may still ask the group while it goes: it lists nothing from here on.
    SetItems(nullptr);
}

const TQLClassInfo& TQVCustomLegendGroup::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVCustomLegendGroup>("TQVCustomLegendGroup", &TQVLegendGroup::StaticClassInfo())
            .Collection("Items", &TQVCustomLegendGroup::GetCustomItems)
            .Build();
    return Info;
}

// ---- TQVLegendGroupCollectionItem ----

namespace {
TQVLegendView* LegendOf(TQLCollection* ACollection)
{
    auto* Groups = dynamic_cast<TQVLegendGroupCollection*>(ACollection);
    if (!Groups)
        throw std::invalid_argument("TQVLegendGroupCollectionItem: belongs only in a legend's CustomGroups");
    return Groups->GetLegend();
}
} // namespace

TQVLegendGroupCollectionItem::TQVLegendGroupCollectionItem(TQLCollection* ACollection)
    : TQLNamedCollectionItem(ACollection),
      FGroup(std::make_unique<TQVCustomLegendGroup>(LegendOf(ACollection), "Group"))
{}

TQVLegendGroupCollectionItem::~TQVLegendGroupCollectionItem() = default;

std::string TQVLegendGroupCollectionItem::GetDisplayName() const
{
    return FGroup->GetCaptionText();
}

const TQLClassInfo& TQVLegendGroupCollectionItem::StaticClassInfo()
{
    static const TQLClassInfo Info = TQLClassBuilder<TQVLegendGroupCollectionItem>(
                                         "TQVLegendGroupCollectionItem", &TQLNamedCollectionItem::StaticClassInfo())
                                         .Object("Group", &TQVLegendGroupCollectionItem::GetGroup)
                                         .Build();
    return Info;
}

// ---- TQVLegendGroupCollection ----

TQVLegendGroupCollection::TQVLegendGroupCollection(TQVLegendView* ALegend)
    : TQLTypedCollection<TQVLegendGroupCollectionItem>(ALegend, ALegend->GetLock()), FLegend(ALegend)
{}

void TQVLegendGroupCollection::Update(TQLCollectionItem* AItem)
{
    TQLTypedCollection<TQVLegendGroupCollectionItem>::Update(AItem);
    FLegend->InvalidateRecalc();
}

const TQLClassInfo& TQVLegendGroupCollection::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVLegendGroupCollection", &TQLCollection::StaticClassInfo(), {});
    return Info;
}

} // namespace qv
