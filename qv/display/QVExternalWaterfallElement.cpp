#include "qv/display/QVExternalWaterfallElement.h"

namespace qv {

const TQLClassInfo& TQVExternalWaterfallElement::StaticClassInfo()
{
    static const TQLClassInfo Info = BuildElementInfo<TQVExternalWaterfallElement>("TQVExternalWaterfallElement");
    return Info;
}

const TQLClassInfo& TQVExternalWaterfallMatrixElement::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVExternalWaterfallMatrixElement>("TQVExternalWaterfallMatrixElement",
                                                           &TQVExternalWaterfallElement::StaticClassInfo())
            .Build();
    return Info;
}

} // namespace qv
