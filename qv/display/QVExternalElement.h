#pragma once
// A display of any kind hosted inside another control: TQVExternalElement<TDisplay> is the
// display drawn as an element of a host's picture, TQVExternalMatrixLayer<TElement> one that
// also renders into a host's pixel matrix. Position and Size are fractions of the host's
// size. The scope's classes (QVExternalScopeElement.h) are built on these, and so can any
// other display's be.

#include "qv/display/QVDisplayElements.h"
#include "qv/foundation/QLClassBuilder.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>

namespace qv {

template <class TDisplay>
class TQVExternalElement : public TDisplay, public IQLDrawComponentElement {
public:
    TQVExternalElement()
    {
        FPosition = std::make_unique<TQUElementOffsets>(
            this, this->GetLock(), [this] { InvalidateSize(); }, 0.0, 0.5);
        FSize = std::make_unique<TQUElement2DSize>(
            this, this->GetLock(), [this] { InvalidateSize(); }, 0.6, 0.3);
    }
    ~TQVExternalElement() override
    {
        // Paint and refresh stop before the fractions go.
        this->BeginDestroy();
        FListOwner = nullptr;
    }

    // Offsets of the element's centre from the host's centre, as fractions of the host's
    // radii (X 0, Y 0.5: half a radius below the middle).
    TQUElementOffsets* GetPosition() const { return FPosition.get(); }
    void SetPosition(const TQUElementOffsets* AValue) { FPosition->Assign(AValue); }
    // The element's size as fractions of the host's size (0.6 by 0.3).
    TQUElement2DSize* GetSize() const { return FSize.get(); }
    void SetSize(const TQUElement2DSize* AValue) { FSize->Assign(AValue); }

    bool GetVisible() const override { return TDisplay::GetVisible(); }
    // Hidden or shown again, the host repaints and the element lays out anew.
    void SetVisible(bool AValue) override
    {
        if (AValue == GetVisible())
            return;
        TDisplay::SetVisible(AValue);
        InvalidateSize();
    }
    void SetListOwner(IQVElementHost* AOwner) override
    {
        FListOwner = AOwner;
        // An element paints with the host's surfaces unless it was given its own.
        if (AOwner && !this->GetCanvasFactory() && AOwner->GetElementCanvasFactory())
            this->SetCanvasFactory(AOwner->GetElementCanvasFactory());
    }
    IQVElementHost* GetListOwner() const { return FListOwner; }
    void RefreshElement() override { this->RefreshView(); }

    // Only when visible: the display, Size of the host's size, centred on the host's centre
    // moved by Position of the radii.
    // With AContoursOnly the picture is the printed one: what the display shows, without
    // its tool bar, mouse marks and focus frame.
    void Draw(TQLCanvas& AGraphics, bool AContoursOnly, float ARadiusX, float ARadiusY, float AWidth, float AHeight,
              float AXCoeff, float AYCoeff) override
    {
        if (!GetVisible())
            return;
        TQLCanvasSave Save(AGraphics);
        const double W = FSize->GetXOf(2.0 * ARadiusX), H = FSize->GetYOf(2.0 * ARadiusY);
        const double X = FPosition->GetXOf(ARadiusX), Y = FPosition->GetYOf(ARadiusY);
        struct TOrigin {
            TPoint& Slot;
            TPoint Old;
            ~TOrigin() { Slot = Old; }
        } Origin{this->FLayerOrigin, this->FLayerOrigin};
        this->FLayerOrigin =
            TPoint{QLRoundToInt((AWidth - 1) / 2.0 - W / 2.0 + X), QLRoundToInt((AHeight - 1) / 2.0 - H / 2.0 + Y)};
        this->IntDraw(AGraphics, AXCoeff, AYCoeff, static_cast<float>(W), static_cast<float>(H), true, AContoursOnly);
    }
    // A change of Position or Size: a new layout.
    virtual void InvalidateSize() { this->InvalidateRange(); }

protected:
    // The element's repaint reaches its host as well.
    void Invalidate() override
    {
        TDisplay::Invalidate();
        if (FListOwner)
            FListOwner->InvalidateOwner();
    }

    // The published Position and Size of an element class C.
    template <class C>
    static TQLClassInfo BuildElementInfo(const char* AName)
    {
        return TQLClassBuilder<C>(AName, &TDisplay::StaticClassInfo())
            .Object("Position", &C::GetPosition)
            .Object("Size", &C::GetSize)
            .Build();
    }

private:
    std::unique_ptr<TQUElementOffsets> FPosition;
    std::unique_ptr<TQUElement2DSize> FSize;
    IQVElementHost* FListOwner = nullptr;
};

// An element rendered into a host's pixel matrix; placed from the matrix's top left corner,
// 0.6 by 0.6 of it at first.
template <class TElement>
class TQVExternalMatrixLayer : public TElement, public IQLMatrixComponentElement {
public:
    TQVExternalMatrixLayer()
    {
        this->GetSize()->SetValueDefault(0.6, 0.6);
        this->GetPosition()->SetValueDefault(0.0, 0.0);
    }

    bool GetVisible() const override { return TElement::GetVisible(); }
    void SetListOwner(IQVElementHost* AOwner) override { TElement::SetListOwner(AOwner); }
    void RefreshElement() override { TElement::RefreshElement(); }

    // Only when visible: the display, Size of AWidth by AHeight, at Position of them,
    // composed over the premultiplied pixels of ABuffer. Sizes beyond 32-bit signed pixels
    // raise std::invalid_argument.
    void Render(uint32_t* ABuffer, uint32_t AWidth, uint32_t AHeight) override
    {
        if (!GetVisible())
            return;
        constexpr uint32_t Max = static_cast<uint32_t>(std::numeric_limits<int32_t>::max());
        if (AWidth > Max || AHeight > Max)
            throw std::invalid_argument(this->GetClassInfo().GetName() + "::Render: buffer of " +
                                        std::to_string(AWidth) + " x " + std::to_string(AHeight) +
                                        " pixels is too large");
        const double W = this->GetSize()->GetXOf(AWidth), H = this->GetSize()->GetYOf(AHeight);
        const double X = std::nearbyint(this->GetPosition()->GetXOf(AWidth));
        const double Y = std::nearbyint(this->GetPosition()->GetYOf(AHeight));
        this->IntRender(static_cast<float>(X), static_cast<float>(Y), static_cast<float>(W), static_cast<float>(H),
                        ABuffer, static_cast<int32_t>(AWidth), static_cast<int32_t>(AHeight));
    }
};

} // namespace qv
