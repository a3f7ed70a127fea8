#pragma once
// A waterfall hosted inside another control: as an element drawn into a host's picture
// (TQVExternalWaterfallElement), or as an element rendered into a host's pixel matrix
// (TQVExternalWaterfallMatrixElement).

#include "qv/display/QVExternalElement.h"
#include "qv/display/QVWaterfall.h"

namespace qv {

class TQVExternalWaterfallElement : public TQVExternalElement<TQVWaterfall> {
public:
    QL_CLASS_INFO()
};

class TQVExternalWaterfallMatrixElement : public TQVExternalMatrixLayer<TQVExternalWaterfallElement> {
public:
    QL_CLASS_INFO()
};

} // namespace qv
