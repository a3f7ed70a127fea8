// The display's tool bar: its buttons, their state and their actions.
#include "qv/display/QVDisplayToolBar.h"

#include "qv/component/QVDisplayZoom.h"
#include "qv/display/QVDataDisplay.h"
#include "qv/foundation/QLClassBuilder.h"

#include <algorithm>
#include <cctype>

namespace qv {

// ---- TQVDisplayToolBarButtons ----

TQVDisplayToolBarButtons::TQVDisplayToolBarButtons(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify)
    : TQLPersistentNotify(AOwner, std::move(ALock), std::move(ANotify))
{
    for (auto* Field : {&FSetup, &FHold, &FZoomOff, &FZoomPrevious, &FZoomNext, &FZoomIn, &FZoomOut, &FZoomMode,
                        &FXYZoomOn, &FCopy, &FPrint, &FSave})
        *Field = std::make_unique<TQVDisplayToolBarButton>(this, GetLock(), [this] { NotifyProp(); });
}

TQVDisplayToolBarButtons::~TQVDisplayToolBarButtons() = default;

const TQLClassInfo& TQVDisplayToolBarButtons::StaticClassInfo()
{
    using C = TQVDisplayToolBarButtons;
    static const TQLClassInfo Info =
        TQLClassBuilder<C>("TQVDisplayToolBarButtons", &TQLPersistentNotify::StaticClassInfo())
            .Object("Setup", &C::GetSetup)
            .Object("Hold", &C::GetHold)
            .Object("ZoomOff", &C::GetZoomOff)
            .Object("ZoomPrevious", &C::GetZoomPrevious)
            .Object("ZoomNext", &C::GetZoomNext)
            .Object("ZoomIn", &C::GetZoomIn)
            .Object("ZoomOut", &C::GetZoomOut)
            .Object("ZoomMode", &C::GetZoomMode)
            .Object("XYZoomOn", &C::GetXYZoomOn)
            .Object("Copy", &C::GetCopy)
            .Object("Print", &C::GetPrint)
            .Object("Save", &C::GetSave)
            .Build();
    return Info;
}

const TQLClassInfo& TQVToolBarPosition::StaticClassInfo()
{
    using C = TQVToolBarPosition;
    static const TQLClassInfo Info = TQLClassBuilder<C>("TQVToolBarPosition", &TQLPersistentNotify::StaticClassInfo())
                                         .Property("XOffset", &C::GetXOffset, &C::SetXOffset, 2)
                                         .Property("YOffset", &C::GetYOffset, &C::SetYOffset, 3)
                                         .Build();
    return Info;
}

// ---- TQVDisplayToolBar ----

TQVDisplayToolBar::TQVDisplayToolBar(TQVDataDisplay* ADisplay)
    : TQVBasicDisplayToolBar(ADisplay), FOwnerDisplay(ADisplay),
      FPosition(std::make_unique<TQVToolBarPosition>(this, GetLock(), [this] { ParameterChanged(); })),
      FButtons(std::make_unique<TQVDisplayToolBarButtons>(this, GetLock(), [this] { ParameterChanged(); }))
{
    const TQVDisplayToolBarButtons& B = *FButtons;
    // The draw order; run and hold share a place, and so do zoom and pan mode.
    FRunButton = AddButton(2, B.GetHold(), [this](auto*) { DoRun(); });
    FHoldButton = AddButton(3, B.GetHold(), [this](auto*) { DoHold(); });
    FZoomModeButton = AddButton(14, B.GetZoomMode(), [this](auto*) { DoZoomMode(); });
    FPanModeButton = AddButton(15, B.GetZoomMode(), [this](auto*) { DoPanMode(); });
    FCopyButton = AddButton(9, B.GetCopy(), [this](auto*) { DoCopy(); });
    FPrintButton = AddButton(7, B.GetPrint(), [this](auto*) { DoPrint(); });
    FSaveButton = AddButton(8, B.GetSave(), [this](auto*) { DoSave(); });
    FSetupButton = AddButton(10, B.GetSetup(), [this](auto*) { DoSetup(); });
    FZoomInButton = AddButton(4, B.GetZoomIn(), [this](auto*) { DoZoomIn(); });
    FZoomOutButton = AddButton(5, B.GetZoomOut(), [this](auto*) { DoZoomOut(); });
    FZoomOffButton = AddButton(6, B.GetZoomOff(), [this](auto*) { DoZoomOff(); });
    FZoomPrevButton = AddButton(11, B.GetZoomPrevious(), [this](auto*) { DoPrevZoom(); });
    FZoomNextButton = AddButton(12, B.GetZoomNext(), [this](auto*) { DoNextZoom(); });
    FXYZoomOnButton = AddButton(13, B.GetXYZoomOn(), [this](auto*) { DoXYZoomMode(); });
    UpdateButtons();
}

TQVDisplayToolBar::~TQVDisplayToolBar() = default;

int32_t TQVDisplayToolBar::GetXOffset() const
{
    const TQVDisplayComponent* View = FOwnerDisplay->GetDataView();
    if (FViewLocked || !View)
        return TQVBasicDisplayToolBar::GetXOffset();
    return View->GetDrawRect().Right - GetGrid().PerRow * (CGlyphSize + 1) - FPosition->GetXOffset();
}

int32_t TQVDisplayToolBar::GetYOffset() const
{
    const TQVDisplayComponent* View = FOwnerDisplay->GetDataView();
    if (FViewLocked || !View)
        return TQVBasicDisplayToolBar::GetYOffset();
    return View->GetDrawRect().Top + FPosition->GetYOffset();
}

void TQVDisplayToolBar::UpdateButtons()
{
    const TQVDataDisplay& D = *FOwnerDisplay;
    FRunButton->SetVisible(D.GetHold());
    FHoldButton->SetVisible(!D.GetHold());
    FPanModeButton->SetVisible(D.GetNavigateMode() == nmZoom);
    FZoomModeButton->SetVisible(D.GetNavigateMode() == nmPan);
    FXYZoomOnButton->SetEnabled(D.GetZooming()->GetMode() != zmBoth);
    FZoomOffButton->SetEnabled(D.IsZoomed());
    FZoomPrevButton->SetEnabled(D.CanUndoZoom());
    FZoomNextButton->SetEnabled(D.CanRedoZoom());
    FZoomInButton->SetEnabled(D.CanZoomIn());
    FZoomOutButton->SetEnabled(D.CanZoomOut());
}

void TQVDisplayToolBar::Draw(TQLCanvas& ACanvas)
{
    UpdateButtons();
    TQVBasicDisplayToolBar::Draw(ACanvas);
}

void TQVDisplayToolBar::DrawElements(TQVDisplayDrawPart /*APart*/, TQLCanvas& ACanvas, const TRect& /*AClip*/,
                                     bool APrinting)
{
    if (!APrinting && GetShown())
        Draw(ACanvas);
}

// ---- Actions ----

void TQVDisplayToolBar::DoRun()
{
    FOwnerDisplay->SetHold(false);
    FRunButton->SetClicked(true);
    FHoldButton->SetClicked(true);
}

void TQVDisplayToolBar::DoHold()
{
    FOwnerDisplay->SetHold(true);
    FRunButton->SetClicked(true);
    FHoldButton->SetClicked(true);
}

void TQVDisplayToolBar::DoZoomMode()
{
    FOwnerDisplay->SetNavigateMode(nmZoom);
}

void TQVDisplayToolBar::DoPanMode()
{
    FOwnerDisplay->SetNavigateMode(nmPan);
}

void TQVDisplayToolBar::DoZoomOff()
{
    FOwnerDisplay->ZoomOff();
}

void TQVDisplayToolBar::DoPrevZoom()
{
    FOwnerDisplay->UndoZoom();
}

void TQVDisplayToolBar::DoNextZoom()
{
    FOwnerDisplay->RedoZoom();
}

void TQVDisplayToolBar::DoZoomIn()
{
    FOwnerDisplay->ZoomBy(0.5);
}

void TQVDisplayToolBar::DoZoomOut()
{
    FOwnerDisplay->ZoomBy(2.0);
}

void TQVDisplayToolBar::DoXYZoomMode()
{
    FOwnerDisplay->GetZooming()->SetMode(zmBoth);
}

void TQVDisplayToolBar::DoSetup()
{
    Hide();
    FOwnerDisplay->ShowSetupDialog();
}

void TQVDisplayToolBar::DoCopy()
{
    FOwnerDisplay->CopyToClipboard();
}

void TQVDisplayToolBar::DoPrint()
{
    const bool OldHold = FOwnerDisplay->GetHold();
    FOwnerDisplay->SetHold(true);
    Hide();
    if (!FOnPrintDialog || !FOnPrintDialog())
        return;
    FOwnerDisplay->Print();
    FOwnerDisplay->SetHold(OldHold);
}

void TQVDisplayToolBar::DoSave()
{
    const bool OldHold = FOwnerDisplay->GetHold();
    FOwnerDisplay->SetHold(true);
    Hide();
    struct THoldRestore {
        TQVDataDisplay& Display;
        bool Old;
        ~THoldRestore() { Display.SetHold(Old); }
    } Restore{*FOwnerDisplay, OldHold};
    std::string FileName;
    if (!FOnSaveDialog ||
        !FOnSaveDialog("Bitmap (*.bmp)|*.bmp|JPEG File Interchange Format (*.jpg)|*.jpg", "bmp", FileName))
        return;
    const size_t Dot = FileName.find_last_of('.');
    const size_t Slash = FileName.find_last_of("/\\");
    std::string Ext =
        Dot == std::string::npos || (Slash != std::string::npos && Dot < Slash) ? "" : FileName.substr(Dot);
    std::transform(Ext.begin(), Ext.end(), Ext.begin(), [](unsigned char C) { return std::toupper(C); });
    if (Ext == ".JPG" || Ext == ".JPEG")
        FOwnerDisplay->SaveToJpeg(FileName);
    else
        FOwnerDisplay->SaveToBitmap(FileName);
}

const TQLClassInfo& TQVDisplayToolBar::StaticClassInfo()
{
    using C = TQVDisplayToolBar;
    static const TQLClassInfo Info = TQLClassBuilder<C>("TQVDisplayToolBar", &TQVBasicDisplayToolBar::StaticClassInfo())
                                         .Object("Position", &C::GetPosition)
                                         .Object("Buttons", &C::GetButtons)
                                         .Build();
    return Info;
}

} // namespace qv
