// The axis tool bar: its buttons, where it stands on the strip and what it calls.
#include "qv/axes/QVAxisToolBar.h"

#include "qv/axes/QVDisplayAxis.h"
#include "qv/component/QVDisplayOwner.h"
#include "qv/component/QVDisplayZoom.h"
#include "qv/foundation/QLClassBuilder.h"

namespace qv {

TQVAxisToolBarButtons::TQVAxisToolBarButtons(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify)
    : TQLPersistentNotify(AOwner, std::move(ALock), std::move(ANotify))
{
    for (auto* Field : {&FZoomIn, &FZoomOut, &FZoomOff, &FZoomOneDir})
        *Field = std::make_unique<TQVDisplayToolBarButton>(this, GetLock(), [this] { NotifyProp(); });
}

TQVAxisToolBarButtons::~TQVAxisToolBarButtons() = default;

const TQLClassInfo& TQVAxisToolBarButtons::StaticClassInfo()
{
    using C = TQVAxisToolBarButtons;
    static const TQLClassInfo Info =
        TQLClassBuilder<C>("TQVAxisToolBarButtons", &TQLPersistentNotify::StaticClassInfo())
            .Object("ZoomIn", &C::GetZoomIn)
            .Object("ZoomOut", &C::GetZoomOut)
            .Object("ZoomOff", &C::GetZoomOff)
            .Object("ZoomOneDir", &C::GetZoomOneDir)
            .Build();
    return Info;
}

TQVAxisToolBar::TQVAxisToolBar(TQVDisplayOwner* ADisplay, TQVDisplayAxis* AAxis)
    : TQVBasicDisplayToolBar(ADisplay), FAxis(AAxis),
      FButtons(std::make_unique<TQVAxisToolBarButtons>(this, GetLock(), [this] { ParameterChanged(); }))
{
    FZoomInButton = AddButton(4, FButtons->GetZoomIn(), [this](auto*) { FAxis->ZoomIn(); });
    FZoomOutButton = AddButton(5, FButtons->GetZoomOut(), [this](auto*) { FAxis->ZoomOut(); });
    FZoomOffButton = AddButton(6, FButtons->GetZoomOff(), [this](auto*) { FAxis->ZoomOff(); });
    FZoomOneDirButton = AddButton(16, FButtons->GetZoomOneDir(), [this](auto*) { ToggleOneDirection(); });
}

TQVAxisToolBar::~TQVAxisToolBar() = default;

bool TQVAxisToolBar::IsVisible() const
{
    return GetVisible() && FAxis->IsVisible();
}

TRect TQVAxisToolBar::IntGetDrawRect() const
{
    return IsVisible() ? TQVBasicDisplayToolBar::IntGetDrawRect() : TRect{};
}

int32_t TQVAxisToolBar::GetCountRows() const
{
    // One row along the axis; along a vertical axis every button has a row of its own.
    return FAxis->GetIsVertical() ? GetButtonCount() : 1;
}

int32_t TQVAxisToolBar::GetXOffset() const
{
    if (FViewLocked)
        return FViewRect.Left;
    const TRect Strip = FAxis->GetDrawRect();
    if (FAxis->GetIsVertical())
        return Strip.Left + 2;
    return Strip.Right - GetGrid().PerRow * (CGlyphSize + 1) - 2;
}

int32_t TQVAxisToolBar::GetYOffset() const
{
    if (FViewLocked)
        return FViewRect.Top;
    return FAxis->GetDrawRect().Top + 2;
}

bool TQVAxisToolBar::GetAxisShown() const
{
    return IsVisible() &&
           (!GetAutoHide() || FAxis->GetMouseIsInView() || GetMouseIsInView() || GetDisplay()->GetDesigning());
}

void TQVAxisToolBar::UpdateButtons()
{
    FZoomInButton->SetEnabled(FAxis->GetCanZoomIn());
    FZoomOutButton->SetEnabled(FAxis->GetCanZoomOut());
    FZoomOffButton->SetEnabled(FAxis->IsZoomed());
}

void TQVAxisToolBar::Draw(TQLCanvas& ACanvas)
{
    UpdateButtons();
    TQVBasicDisplayToolBar::Draw(ACanvas);
}

void TQVAxisToolBar::ToggleOneDirection()
{
    TQVDisplayZoom* Zooming = GetDisplay()->GetZooming();
    if (!Zooming)
        return;
    const TQVDisplayZoomMode Own = FAxis->GetIsYAxis() ? zmYAxis : zmXAxis;
    Zooming->SetMode(Zooming->GetMode() == Own ? zmBoth : Own);
}

const TQLClassInfo& TQVAxisToolBar::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVAxisToolBar>("TQVAxisToolBar", &TQVBasicDisplayToolBar::StaticClassInfo())
            .Object("Buttons", &TQVAxisToolBar::GetButtons)
            .Build();
    return Info;
}

} // namespace qv
