#pragma once
// The small tool bar of an axis: zoom in, zoom out, zoom off and the one-direction switch,
// standing at the far end of the axis' strip. Its zoom buttons call the axis' own zoom
// operations; the switch makes the display's mouse zoom act along this axis' direction only,
// and a second press makes it act in both again. It shows while the mouse is over the strip
// or the bar, unless AutoHide is off.

#include "qv/decor/QVBasicDisplayToolBar.h"

#include <memory>

namespace qv {

class TQVDisplayAxis;

class TQVAxisToolBarButtons : public TQLPersistentNotify {
public:
    TQVAxisToolBarButtons(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify);
    ~TQVAxisToolBarButtons() override;

    TQVDisplayToolBarButton* GetZoomIn() const { return FZoomIn.get(); }
    TQVDisplayToolBarButton* GetZoomOut() const { return FZoomOut.get(); }
    TQVDisplayToolBarButton* GetZoomOff() const { return FZoomOff.get(); }
    TQVDisplayToolBarButton* GetZoomOneDir() const { return FZoomOneDir.get(); }

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVDisplayToolBarButton> FZoomIn, FZoomOut, FZoomOff, FZoomOneDir;
};

class TQVAxisToolBar : public TQVBasicDisplayToolBar {
public:
    TQVAxisToolBar(TQVDisplayOwner* ADisplay, TQVDisplayAxis* AAxis);
    ~TQVAxisToolBar() override;

    TQVDisplayAxis* GetAxis() const { return FAxis; }
    TQVAxisToolBarButtons* GetButtons() const { return FButtons.get(); }
    void SetButtons(const TQVAxisToolBarButtons* AValue) { FButtons->Assign(AValue); }
    TQVDisplayIntToolBarButton* GetZoomInButton() const { return FZoomInButton; }
    TQVDisplayIntToolBarButton* GetZoomOutButton() const { return FZoomOutButton; }
    TQVDisplayIntToolBarButton* GetZoomOffButton() const { return FZoomOffButton; }
    TQVDisplayIntToolBarButton* GetZoomOneDirButton() const { return FZoomOneDirButton; }

    // Only on a visible axis; a hidden axis' bar has no rectangle and takes no mouse.
    bool IsVisible() const override;
    TRect IntGetDrawRect() const override;
    // A row along a horizontal axis, a column along a vertical one, at the strip's far end.
    int32_t GetCountRows() const override;
    int32_t GetXOffset() const override;
    int32_t GetYOffset() const override;
    // Shown while the mouse is over the axis' strip or the bar (or always without AutoHide).
    bool GetAxisShown() const;
    // The buttons enable by what the axis can still do, then draw.
    void Draw(TQLCanvas& ACanvas) override;
    void UpdateButtons();

    QL_CLASS_INFO()

private:
    TQVDisplayAxis* FAxis;
    std::unique_ptr<TQVAxisToolBarButtons> FButtons;
    TQVDisplayIntToolBarButton* FZoomInButton = nullptr;
    TQVDisplayIntToolBarButton* FZoomOutButton = nullptr;
    TQVDisplayIntToolBarButton* FZoomOffButton = nullptr;
    TQVDisplayIntToolBarButton* FZoomOneDirButton = nullptr;
    void ToggleOneDirection();
};

} // namespace qv
