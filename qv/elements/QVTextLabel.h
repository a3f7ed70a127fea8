#pragma once
// Text labels: the item's own name written at a point of the plot, given in axis values and
// centred on it. A scope keeps them in its Labels collection and draws them over the
// channels and markers.

#include "qv/component/QVDisplayCollectionItem.h"
#include "qv/component/QVScopeElements.h"
#include "qv/elements/QVScopeMarker.h"
#include "qv/foundation/QVDisplayFont.h"

#include <memory>

namespace qv {

class TQVDisplayAxis;

class TQVDisplayTextLabel : public TQVOptionalDisplayCollectionItem {
public:
    explicit TQVDisplayTextLabel(TQLCollection* ACollection);
    ~TQVDisplayTextLabel() override;

    // Where the label's centre stands, in values of its X and Y axes.
    TQVDisplayMarkerPosition* GetPosition() const { return FPosition.get(); }
    void SetPosition(const TQVDisplayMarkerPosition* AValue) { FPosition->Assign(AValue); }
    // Arial 8, white, unless changed.
    TQVDisplayFont* GetFont() const { return FFont.get(); }
    void SetFont(const TQVDisplayFont* AValue) { FFont->Assign(AValue); }
    bool GetIsDynamic() const { return FIsDynamic; }

    // The axes the position is read on: by index among the display's X (Y) axes, else the
    // main ones.
    int32_t GetXAxisIndex() const { return FXAxisIndex; }
    void SetXAxisIndex(int32_t AValue)
    {
        Set(FXAxisIndex, AValue, [this] { InvalidateItem(); });
    }
    int32_t GetYAxisIndex() const { return FYAxisIndex; }
    void SetYAxisIndex(int32_t AValue)
    {
        Set(FYAxisIndex, AValue, [this] { InvalidateItem(); });
    }
    TQVDisplayAxis* GetXAxis() const;
    TQVDisplayAxis* GetYAxis() const;

    // The control pixel of the position, turned with the display; (0, 0) without axes.
    TPoint GetDrawPosition(const TRect& ADispRect) const;
    // The name in the label's font, centred on the position (half sizes truncated).
    void Draw(TQLCanvas& ACanvas, const TRect& ADispRect, bool APrinting);
    // Whether the pixel lies on the name's box. The box is measured on the display's canvas
    // in whatever font stands there, so it can differ from the drawn text; an empty name
    // has an empty box and is never hit.
    bool HitTest(int32_t AX, int32_t AY, const TRect& ADispRect) const;
    // Lit when the mouse is over it or the legend points at it, and labels light their
    // legend button. Drawing does not show it.
    bool GetHighlighted() const override;
    void SetHighlighted(bool AValue) override;

    QL_CLASS_INFO()

protected:
    void BeforeDestruction() override;

private:
    std::unique_ptr<TQVDisplayMarkerPosition> FPosition;
    std::unique_ptr<TQVDisplayFont> FFont;
    bool FIsDynamic = false;
    int32_t FXAxisIndex = 0;
    int32_t FYAxisIndex = 0;
};

class TQVScopeTextLabel : public TQVDisplayTextLabel {
public:
    using TQVDisplayTextLabel::TQVDisplayTextLabel;

    QL_CLASS_INFO()
};

// A new label is named "Label" and the count of the collection.
class TQVScopeTextLabels : public TQVOptionalDisplayCollection<TQVScopeTextLabel>, public IQVScopeElementFamily {
public:
    using TQVOptionalDisplayCollection<TQVScopeTextLabel>::TQVOptionalDisplayCollection;

    void NewItemCreated(TQLCollectionItem* AItem) override;
    // Every label, first to last.
    void DrawElements(TQVDisplayDrawPart APart, TQLCanvas& ACanvas, const TRect& AClip, bool APrinting) override;
    // The last label whose box holds the pixel; null when none does.
    TQVScopeTextLabel* HitTest(int32_t AX, int32_t AY) const;

    QL_CLASS_INFO()
};

} // namespace qv
