#pragma once
// A scope hosted inside another control: as a layer of a host control (TQVScopeLayer), as
// an element drawn into a host's picture (TQVExternalScopeElement), or as an element rendered
// into a host's pixel matrix (TQVExternalScopeMatrixLayer, TQVExternalScopeMatrixElement).

#include "qv/display/QVExternalElement.h"
#include "qv/display/QVScope.h"

namespace qv {

// A scope drawn as a layer of a host control (DoLayerDraw); it adds nothing to the scope.
class TQVScopeLayer : public TQVScope {
public:
    QL_CLASS_INFO()
};

class TQVExternalScopeElement : public TQVExternalElement<TQVScope> {
public:
    QL_CLASS_INFO()
};

class TQVExternalScopeMatrixLayer : public TQVExternalMatrixLayer<TQVExternalScopeElement> {
public:
    QL_CLASS_INFO()
};

class TQVExternalScopeMatrixElement : public TQVExternalScopeMatrixLayer {
public:
    QL_CLASS_INFO()
};

} // namespace qv
