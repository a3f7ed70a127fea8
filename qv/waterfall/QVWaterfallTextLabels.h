#pragma once
// The waterfall's text labels: each label's name written over the picture at a row (X) and
// a sample (Y) in the axes' scale values, centred on that point. They lie over the markers
// and under the cursors.

#include "qv/elements/QVTextLabel.h"

namespace qv {

class TQVWaterfallTextLabel : public TQVDisplayTextLabel {
public:
    using TQVDisplayTextLabel::TQVDisplayTextLabel;

    QL_CLASS_INFO()

protected:
    // The label lets go of the highlight state that names it.
    void BeforeDestruction() override;
};

// A new label is named "Label" and the count of the collection.
class TQVWaterfallTextLabels : public TQVOptionalDisplayCollection<TQVWaterfallTextLabel> {
public:
    using TQVOptionalDisplayCollection<TQVWaterfallTextLabel>::TQVOptionalDisplayCollection;

    void NewItemCreated(TQLCollectionItem* AItem) override;
    // Every label, first to last, placed in the data view's rectangle AClip.
    void Draw(TQLCanvas& ACanvas, const TRect& AClip, bool APrinting);
    // The last label whose box holds the pixel; null when none does.
    TQVWaterfallTextLabel* HitTest(int32_t AX, int32_t AY, const TRect& ARect) const;

    QL_CLASS_INFO()
};

} // namespace qv
