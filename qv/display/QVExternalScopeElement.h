#pragma once
// A scope hosted inside another control: as a layer of a host control (TQVScopeLayer), as
// an element drawn into a host's picture (TQVExternalScopeElement), or as an element rendered
// into a host's pixel matrix (TQVExternalScopeMatrixLayer, TQVExternalScopeMatrixElement).
// Position and Size are fractions of the host's size.

#include "qv/display/QVDisplayElements.h"
#include "qv/display/QVScope.h"

#include <memory>

namespace qv {

// A scope drawn as a layer of a host control (DoLayerDraw); it adds nothing to the scope.
class TQVScopeLayer : public TQVScope {
public:
    QL_CLASS_INFO()
};

class TQVExternalScopeElement : public TQVScope, public IQLDrawComponentElement {
public:
    TQVExternalScopeElement();
    ~TQVExternalScopeElement() override;

    // Offsets of the element's centre from the host's centre, as fractions of the host's
    // radii (X 0, Y 0.5: half a radius below the middle).
    TQUElementOffsets* GetPosition() const { return FPosition.get(); }
    void SetPosition(const TQUElementOffsets* AValue) { FPosition->Assign(AValue); }
    // The element's size as fractions of the host's size (0.6 by 0.3).
    TQUElement2DSize* GetSize() const { return FSize.get(); }
    void SetSize(const TQUElement2DSize* AValue) { FSize->Assign(AValue); }

    bool GetVisible() const override { return TQVScope::GetVisible(); }
    // Hidden or shown again, the host repaints and the element lays out anew.
    void SetVisible(bool AValue) override;
    void SetListOwner(IQVElementHost* AOwner) override;
    IQVElementHost* GetListOwner() const { return FListOwner; }
    void RefreshElement() override { RefreshView(); }

    // Only when visible: the scope, Size of the host's size, centred on the host's centre
    // moved by Position of the radii.
    void Draw(TQLCanvas& AGraphics, bool AContoursOnly, float ARadiusX, float ARadiusY, float AWidth, float AHeight,
              float AXCoeff, float AYCoeff) override;
    // A change of Position or Size: a new layout.
    virtual void InvalidateSize();

    QL_CLASS_INFO()

protected:
    // The element's repaint reaches its host as well.
    void Invalidate() override;

private:
    std::unique_ptr<TQUElementOffsets> FPosition;
    std::unique_ptr<TQUElement2DSize> FSize;
    IQVElementHost* FListOwner = nullptr;
};

// An element rendered into a host's pixel matrix; placed from the matrix's top left corner,
// 0.6 by 0.6 of it at first.
class TQVExternalScopeMatrixLayer : public TQVExternalScopeElement, public IQLMatrixComponentElement {
public:
    TQVExternalScopeMatrixLayer();

    bool GetVisible() const override { return TQVExternalScopeElement::GetVisible(); }
    void SetListOwner(IQVElementHost* AOwner) override { TQVExternalScopeElement::SetListOwner(AOwner); }
    void RefreshElement() override { TQVExternalScopeElement::RefreshElement(); }

    // Only when visible: the scope, Size of AWidth by AHeight, at Position of them, composed
    // over the premultiplied pixels of ABuffer. Sizes beyond 32-bit signed pixels raise
    // std::invalid_argument.
    void Render(uint32_t* ABuffer, uint32_t AWidth, uint32_t AHeight) override;

    QL_CLASS_INFO()
};

class TQVExternalScopeMatrixElement : public TQVExternalScopeMatrixLayer {
public:
    QL_CLASS_INFO()
};

} // namespace qv
