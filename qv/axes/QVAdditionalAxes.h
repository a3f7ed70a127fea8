#pragma once
// What the collections of additional X and Y axes share: finding their chart, and docking the
// strip of a new axis behind the axis before it.

#include "qv/component/QVDisplayCollection.h"
#include "qv/component/QVDisplayCollectionItem.h"
#include "qv/component/QVDisplayOwner.h"

#include <memory>

namespace qv {

class TQVDisplayView;

// The chart an additional axes collection belongs to; raises std::invalid_argument when the
// collection's display is not a chart.
TQVDisplayOwner* QVChartOfAxesCollection(TQLCollection* ACollection);

// Docks AAxis, the strip of the additional axis at AIndex, right behind the axis before it:
// APrevious (the additional axis at AIndex - 1), or the main axis that owns the collection for
// the first one. So every strip lies ahead of the data view, which takes what they leave.
void QVDockAdditionalAxis(TQVDisplayCollectionBase& ACollection, int32_t AIndex, TQVDisplayView* APrevious,
                          TQVDisplayView* AAxis);

// An item of a main axis' AdditionalAxes: it owns one axis of class AxisT, made for the
// collection's chart. AfterConstruction runs once the item has its place in the collection;
// a direction whose new axes need more (a default title) overrides it.
template <class AxisT>
class TQVAdditionalAxesCollectionItem : public TQVDisplayCollectionItem {
public:
    explicit TQVAdditionalAxesCollectionItem(TQLCollection* ACollection)
        : TQVDisplayCollectionItem(ACollection),
          FAxis(std::make_unique<AxisT>(QVChartOfAxesCollection(ACollection), this))
    {}

    AxisT* GetAxis() const { return FAxis.get(); }
    void SetAxis(const AxisT* AValue) { FAxis->Assign(AValue); }
    virtual void AfterConstruction() {}

private:
    std::unique_ptr<AxisT> FAxis;
};

// The additional axes of one direction. A new item's strip docks behind the axis before it,
// ahead of the data view, and the layout is made anew.
template <class ItemT>
class TQVAdditionalAxesCollection : public TQVDisplayCollection<ItemT> {
public:
    using TQVDisplayCollection<ItemT>::TQVDisplayCollection;

    void NewItemCreated(TQLCollectionItem* AItem) override
    {
        TQVDisplayCollection<ItemT>::NewItemCreated(AItem);
        auto* Item = static_cast<ItemT*>(AItem);
        const int32_t Index = Item->GetIndex();
        QVDockAdditionalAxis(*this, Index, Index > 0 ? this->GetNoLockItem(Index - 1)->GetAxis() : nullptr,
                             Item->GetAxis());
        Item->AfterConstruction();
        if (TQVDisplayOwner* Display = this->GetDisplay())
            Display->InvalidateRecalc();
    }
};

} // namespace qv
