#pragma once
// Views: rectangular regions of a display that dock to its edges in list order, one client
// view (the data view) taking what is left. The size, colour and optional classes add the
// settings that titles, legends and axes share.

#include "qv/component/QVDisplayComponent.h"
#include "qv/foundation/QLCanvas.h"

#include <vector>

namespace qv {

enum TQVViewScreenAlign : uint8_t { vsaTop, vsaBottom, vsaLeft, vsaRight, vsaClient };
// A configured alignment; the values match the screen alignment.
enum TQVViewAlign : uint8_t { vaTop, vaBottom, vaLeft, vaRight };
// The draw phases; every element that draws in several phases gets the phase first.
enum TQVDisplayDrawPart : uint8_t { ddpBackground, ddpForeground, ddpFeatures, ddpText };

class TQVDisplayView : public TQVDisplayComponent {
public:
    explicit TQVDisplayView(TQVDisplayOwner* ADisplay);
    ~TQVDisplayView() override;

    // The rectangle when visible, else all zero.
    TRect IntGetDrawRect() const override { return IsVisible() ? FDrawRect : TRect{}; }
    void IntSetDrawRect(const TRect& ARect) override { FDrawRect = ARect; }
    // Visible while the rectangle has room: a one-pixel-wide rectangle has width 0.
    bool IsVisible() const override { return GetHeight() > 0 && GetWidth() > 0; }

    virtual TSize GetDefaultSize() const { return TSize{}; }
    virtual int32_t GetDefaultOffsetBegin() const { return 0; }
    virtual int32_t GetDefaultOffsetEnd() const { return 0; }
    virtual TQVViewScreenAlign GetScreenAlign() const { return vsaClient; }
    virtual int32_t GetLeft() const { return FDrawRect.Left; }
    virtual int32_t GetTop() const { return FDrawRect.Top; }
    virtual int32_t GetWidth() const;
    virtual int32_t GetHeight() const;
    virtual void InvalidateView();
    virtual bool IsVisibleForced() const { return true; }
    virtual double GetIntValueAt(int32_t AX, int32_t AY) const { return -1000.0; }
    virtual double GetMinValue() const { return 0.0; }
    virtual double GetMaxValue() const { return 0.0; }
    virtual void Draw(TQVDisplayDrawPart ADrawPart, TQLCanvas& ACanvas, bool AVertical, bool APrinting) {}
    // Lets a view outside the repainted region keep its state in step without drawing.
    virtual void DrawEx(TQVDisplayDrawPart ADrawPart, TQLCanvas& ACanvas, bool AVertical) {}
    virtual void DrawMouseSelction(TQLCanvas& ACanvas) {}

    // The rectangle as laid out, whether visible or not.
    const TRect& GetLayoutRect() const { return FDrawRect; }
    TSize GetDefaultRect() const { return GetDefaultSize(); }
    // The sizes along the display's direction: swapped on a turned display.
    int32_t GetDirectionWidth() const;
    int32_t GetDirectionHeight() const;
    int32_t GetDirectionLeft() const;
    int32_t GetDirectionTop() const;
    const TQVRealPoint& GetValuePoint() const { return FValuePoint; }

    void InvalidateRecalc();
    void Invalidate();

    QL_CLASS_INFO()

protected:
    TQVRealPoint FValuePoint;
    std::vector<double> FZValues;
    TRect FDrawRect;
    bool FLeftMouseDown = false;
    TPoint FCurrentMousePoint;
    TPoint FLeftMouseDownPoint;
};

// The background of a view: its own colour, or the display's.
class TQVDisplayViewBackground : public TQLPersistentNotify {
public:
    TQVDisplayViewBackground(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify);

    TAlphaColor GetColor() const { return FColor; }
    void SetColor(TAlphaColor AValue) { GetBasicLock().Setter(FColor, AValue, nullptr, false); }
    bool GetUseControlColor() const { return FUseControlColor; }
    void SetUseControlColor(bool AValue) { Set(FUseControlColor, AValue); }

    QL_CLASS_INFO()

private:
    TAlphaColor FColor = 0xFF000000;
    bool FUseControlColor = true;
};

// The thickness of a docked view: automatic, or Size pixels.
class TQVDisplayViewSize : public TQLPersistentNotify {
public:
    TQVDisplayViewSize(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify);

    bool GetAutoSize() const { return FAutoSize; }
    void SetAutoSize(bool AValue) { Set(FAutoSize, AValue); }
    uint32_t GetSize() const { return FSize; }
    void SetSize(uint32_t AValue) { Set(FSize, AValue); }

    QL_CLASS_INFO()

private:
    bool FAutoSize = true;
    uint32_t FSize = 100;
};

class TQVCustomColorDisplayView : public TQVDisplayView {
public:
    explicit TQVCustomColorDisplayView(TQVDisplayOwner* ADisplay);
    ~TQVCustomColorDisplayView() override;

    TQVDisplayViewBackground* GetBackground() const { return FBackground.get(); }
    void SetBackground(const TQVDisplayViewBackground* AValue) { FBackground->Assign(AValue); }
    // The colour the background is painted in.
    TAlphaColor GetBackgroundColor() const;

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVDisplayViewBackground> FBackground;
};

class TQVCustomSizeDisplayView : public TQVCustomColorDisplayView {
public:
    explicit TQVCustomSizeDisplayView(TQVDisplayOwner* ADisplay, TQVViewAlign AAlign = vaTop);
    ~TQVCustomSizeDisplayView() override;

    TQVDisplayViewSize* GetViewSize() const { return FViewSize.get(); }
    void SetViewSize(const TQVDisplayViewSize* AValue) { FViewSize->Assign(AValue); }
    TQVViewAlign GetAlign() const { return FAlign; }
    virtual void SetAlign(TQVViewAlign AValue);
    TQVViewScreenAlign GetScreenAlign() const override { return static_cast<TQVViewScreenAlign>(FAlign); }
    // The fixed thickness when AutoSize is off; else the view's own measure.
    TSize GetDefaultSize() const override;
    // The thickness the view needs when sized automatically.
    virtual TSize GetAutoSize() const { return TSize{}; }

    QL_CLASS_INFO()

protected:
    TQVViewAlign FAlign;

private:
    std::unique_ptr<TQVDisplayViewSize> FViewSize;
};

class TQVOptionalView : public TQVCustomSizeDisplayView {
public:
    using TQVCustomSizeDisplayView::TQVCustomSizeDisplayView;

    bool GetVisible() const { return FVisible; }
    void SetVisible(bool AValue);
    bool IsVisible() const override { return FVisible && TQVCustomSizeDisplayView::IsVisible(); }
    // Once the remaining area has inverted, an optional view no longer fits and takes no
    // part in the layout.
    bool IsVisibleForced() const override { return IsVisible(); }

    QL_CLASS_INFO()

protected:
    bool FVisible = true;
};

// The display's views in layout order; the list does not own them.
class TQVDisplayViews {
public:
    int32_t GetCount() const { return static_cast<int32_t>(FItems.size()); }
    TQVDisplayView* GetItem(int32_t AIndex) const;
    int32_t IndexOf(const TQVDisplayView* AView) const;
    void Add(TQVDisplayView* AView) { FItems.push_back(AView); }
    void Remove(TQVDisplayView* AView);
    // Moves the view to the end of the list.
    void Reassign(TQVDisplayView* AView);
    // Inserts behind AAfter when found and not last, else appends; returns the new index.
    int32_t AddAfter(TQVDisplayView* AAfter, TQVDisplayView* AView);
    // Inserts at ABefore's index when found, else appends; returns the new index.
    int32_t AddBefore(TQVDisplayView* ABefore, TQVDisplayView* AView);

    auto begin() const { return FItems.begin(); }
    auto end() const { return FItems.end(); }

private:
    std::vector<TQVDisplayView*> FItems;
};

} // namespace qv

QL_DECLARE_ENUM(qv::TQVViewAlign, "vaTop", "vaBottom", "vaLeft", "vaRight")
