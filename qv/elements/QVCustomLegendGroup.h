#pragma once
// Groups of the legend that list what the host puts there rather than the display's own
// elements: each item is a name with a pen and a brush for its swatch. They follow the
// display's groups, one per entry of the legend's CustomGroups, in collection order. They
// have no setup page: a click on one of their lines only fires the group's OnItemClick.

#include "qv/component/QVDisplayCollection.h"
#include "qv/component/QVDisplayCollectionItem.h"
#include "qv/elements/QVLegendGroup.h"
#include "qv/foundation/QVDisplayBrush.h"
#include "qv/foundation/QVDisplayPen.h"

#include <memory>
#include <string>

namespace qv {

class TQVCustomLegendItem : public TQVDisplayCollectionItem {
public:
    explicit TQVCustomLegendItem(TQLCollection* ACollection);
    ~TQVCustomLegendItem() override;

    TQVDisplayPen* GetPen() const { return FPen.get(); }
    void SetPen(const TQVDisplayPen* AValue) { FPen->Assign(AValue); }
    TQVDisplayBrush* GetBrush() const { return FBrush.get(); }
    void SetBrush(const TQVDisplayBrush* AValue) { FBrush->Assign(AValue); }

    TAlphaColor GetLegendPenColor() const override { return FPen->GetColor(); }
    bool GetHasPen() const override { return true; }
    TQLCanvasPen GetLegendPen() const override;
    bool GetHasBrush() const override { return true; }
    TQLCanvasBrush GetLegendBrush() const override;

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVDisplayPen> FPen;
    std::unique_ptr<TQVDisplayBrush> FBrush;
};

using TQVCustomLegendItems = TQVDisplayCollection<TQVCustomLegendItem>;

class TQVCustomLegendGroup : public TQVLegendGroup {
public:
    TQVCustomLegendGroup(TQVLegendView* ALegend, const std::string& ADefaultLabel);
    ~TQVCustomLegendGroup() override;

    TQVCustomLegendItems* GetCustomItems() const { return FCustomItems.get(); }
    void SetCustomItems(const TQVCustomLegendItems* AValue) { FCustomItems->Assign(AValue); }
    bool HasDialogPage() const override { return false; }

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVCustomLegendItems> FCustomItems;
};

// An entry of the legend's CustomGroups: one group and its items. Its name in lists is the
// group's heading.
class TQVLegendGroupCollectionItem : public TQLNamedCollectionItem {
public:
    explicit TQVLegendGroupCollectionItem(TQLCollection* ACollection);
    ~TQVLegendGroupCollectionItem() override;

    TQVCustomLegendGroup* GetGroup() const { return FGroup.get(); }
    void SetGroup(const TQVCustomLegendGroup* AValue) { FGroup->Assign(AValue); }
    std::string GetDisplayName() const override;

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVCustomLegendGroup> FGroup;
};

// The custom groups of a legend; a change lays the display out anew.
class TQVLegendGroupCollection : public TQLTypedCollection<TQVLegendGroupCollectionItem> {
public:
    TQVLegendGroupCollection(TQVLegendView* ALegend);

    TQVLegendView* GetLegend() const { return FLegend; }
    void Update(TQLCollectionItem* AItem) override;

    QL_CLASS_INFO()

private:
    TQVLegendView* FLegend;
};

} // namespace qv
