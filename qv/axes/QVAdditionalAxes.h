#pragma once
// What the collections of additional X and Y axes share: finding their chart, and docking the
// strip of a new axis behind the axis before it.

#include "qv/component/QVDisplayCollection.h"

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

} // namespace qv
