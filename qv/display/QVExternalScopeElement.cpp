#include "qv/display/QVExternalScopeElement.h"

namespace qv {

const TQLClassInfo& TQVScopeLayer::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVScopeLayer>("TQVScopeLayer", &TQVScope::StaticClassInfo()).Build();
    return Info;
}

const TQLClassInfo& TQVExternalScopeElement::StaticClassInfo()
{
    static const TQLClassInfo Info = BuildElementInfo<TQVExternalScopeElement>("TQVExternalScopeElement");
    return Info;
}

const TQLClassInfo& TQVExternalScopeMatrixLayer::StaticClassInfo()
{
    static const TQLClassInfo Info = TQLClassBuilder<TQVExternalScopeMatrixLayer>(
                                         "TQVExternalScopeMatrixLayer", &TQVExternalScopeElement::StaticClassInfo())
                                         .Build();
    return Info;
}

const TQLClassInfo& TQVExternalScopeMatrixElement::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVExternalScopeMatrixElement>("TQVExternalScopeMatrixElement",
                                                       &TQVExternalScopeMatrixLayer::StaticClassInfo())
            .Build();
    return Info;
}

} // namespace qv
