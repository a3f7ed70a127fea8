#include "qv/axes/QVAdditionalAxes.h"

#include "qv/axes/QVAxisChannel.h"
#include "qv/component/QVDisplayView.h"

#include <stdexcept>

namespace qv {

TQVDisplayOwner* QVChartOfAxesCollection(TQLCollection* ACollection)
{
    auto* Collection = static_cast<TQVDisplayCollectionBase*>(ACollection);
    TQVDisplayOwner* Chart = Collection->GetDisplay();
    if (!dynamic_cast<IQVAxisChannelSource*>(Chart))
        throw std::invalid_argument("additional axes belong to a chart");
    return Chart;
}

void QVDockAdditionalAxis(TQVDisplayCollectionBase& ACollection, int32_t AIndex, TQVDisplayView* APrevious,
                          TQVDisplayView* AAxis)
{
    TQVDisplayView* Before = AIndex > 0 ? APrevious : dynamic_cast<TQVDisplayView*>(ACollection.GetOwner());
    TQVDisplayViews& Views = ACollection.GetDisplay()->GetViews();
    Views.Remove(AAxis);
    Views.AddAfter(Before, AAxis);
}

} // namespace qv
