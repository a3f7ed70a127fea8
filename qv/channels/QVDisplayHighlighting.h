#pragma once
// How the elements of a chart highlight: per kind of element, whether pointing at it with
// the mouse or at its legend entry lights it, whether its legend button lights with it, and
// the colour it is lit in. The chart publishes one TQVDataDisplayHighlighting as Highlighting.
//
// Every object writes through the display's lock, so a change repaints the display.

#include "qv/channels/QVChannelMouseHitPoint.h"
#include "qv/component/QVDisplayPersistent.h"

#include <memory>

namespace qv {

class TQVDisplayItemHighlighting : public TQVDisplayPersistent {
public:
    explicit TQVDisplayItemHighlighting(TQVDisplayOwner* ADisplay) : TQVDisplayPersistent(ADisplay) {}

    bool GetHiglightLegendButton() const { return FHiglightLegendButton; }
    void SetHiglightLegendButton(bool AValue) { Set(FHiglightLegendButton, AValue); }
    bool GetHiglightFromLegend() const { return FHiglightFromLegend; }
    void SetHiglightFromLegend(bool AValue) { Set(FHiglightFromLegend, AValue); }
    bool GetHiglightFromMouse() const { return FHiglightFromMouse; }
    void SetHiglightFromMouse(bool AValue) { Set(FHiglightFromMouse, AValue); }
    // The default of HiglightFromMouse for this kind of element, in the stored form.
    bool GetHiglightFromMouseDefault() const { return FHiglightFromMouseDefault; }
    TAlphaColor GetColor() const { return FColor; }
    void SetColor(TAlphaColor AValue) { GetBasicLock().Setter(FColor, AValue, nullptr, false); }

    // Whether a hit test takes an element of this kind: it lights itself or its legend button.
    // An element taken only for its legend button stays unlit in the plot.
    bool GetMouseHighlighting() const { return FHiglightLegendButton || FHiglightFromMouse; }

    QL_CLASS_INFO()

protected:
    // For kinds whose elements do not light up from the mouse by default.
    TQVDisplayItemHighlighting(TQVDisplayOwner* ADisplay, bool AHiglightFromMouse)
        : TQVDisplayPersistent(ADisplay), FHiglightFromMouse(AHiglightFromMouse),
          FHiglightFromMouseDefault(AHiglightFromMouse)
    {}

private:
    bool FHiglightLegendButton = true;
    bool FHiglightFromLegend = true;
    bool FHiglightFromMouse = true;
    bool FHiglightFromMouseDefault = true;
    TAlphaColor FColor = 0xFFE67FE7;
};

// Channels and channel links: lit from the legend, not from the mouse, unless asked.
class TQVChannelItemHighlighting : public TQVDisplayItemHighlighting {
public:
    explicit TQVChannelItemHighlighting(TQVDisplayOwner* ADisplay) : TQVDisplayItemHighlighting(ADisplay, false) {}

    QL_CLASS_INFO()
};

class TQVDisplayHighlighting : public TQVDisplayPersistent {
public:
    explicit TQVDisplayHighlighting(TQVDisplayOwner* ADisplay);
    ~TQVDisplayHighlighting() override;

    TQVDisplayItemHighlighting* GetMarkers() const { return FMarkers.get(); }
    void SetMarkers(const TQVDisplayItemHighlighting* AValue) { FMarkers->Assign(AValue); }
    TQVDisplayItemHighlighting* GetCursors() const { return FCursors.get(); }
    void SetCursors(const TQVDisplayItemHighlighting* AValue) { FCursors->Assign(AValue); }
    TQVDisplayItemHighlighting* GetLabels() const { return FLabels.get(); }
    void SetLabels(const TQVDisplayItemHighlighting* AValue) { FLabels->Assign(AValue); }
    TQVDisplayItemHighlighting* GetCursorLinks() const { return FCursorLinks.get(); }
    void SetCursorLinks(const TQVDisplayItemHighlighting* AValue) { FCursorLinks->Assign(AValue); }
    TQVChannelMouseHitPoint* GetMouseHitPoint() const { return FMouseHitPoint.get(); }
    void SetMouseHitPoint(const TQVChannelMouseHitPoint* AValue) { FMouseHitPoint->Assign(AValue); }

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVDisplayItemHighlighting> FMarkers;
    std::unique_ptr<TQVDisplayItemHighlighting> FCursors;
    std::unique_ptr<TQVDisplayItemHighlighting> FLabels;
    std::unique_ptr<TQVDisplayItemHighlighting> FCursorLinks;
    std::unique_ptr<TQVChannelMouseHitPoint> FMouseHitPoint;
};

// The chart's highlighting: the display's kinds and those of the plot.
class TQVDataDisplayHighlighting : public TQVDisplayHighlighting {
public:
    explicit TQVDataDisplayHighlighting(TQVDisplayOwner* ADisplay);
    ~TQVDataDisplayHighlighting() override;

    TQVChannelItemHighlighting* GetChannels() const { return FChannels.get(); }
    void SetChannels(const TQVChannelItemHighlighting* AValue) { FChannels->Assign(AValue); }
    TQVChannelItemHighlighting* GetChannelLinks() const { return FChannelLinks.get(); }
    void SetChannelLinks(const TQVChannelItemHighlighting* AValue) { FChannelLinks->Assign(AValue); }
    TQVDisplayItemHighlighting* GetZones() const { return FZones.get(); }
    void SetZones(const TQVDisplayItemHighlighting* AValue) { FZones->Assign(AValue); }
    TQVDisplayItemHighlighting* GetEllipses() const { return FEllipses.get(); }
    void SetEllipses(const TQVDisplayItemHighlighting* AValue) { FEllipses->Assign(AValue); }

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVChannelItemHighlighting> FChannels;
    std::unique_ptr<TQVChannelItemHighlighting> FChannelLinks;
    std::unique_ptr<TQVDisplayItemHighlighting> FZones;
    std::unique_ptr<TQVDisplayItemHighlighting> FEllipses;
};

} // namespace qv
