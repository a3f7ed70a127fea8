#pragma once
// The display's own tool bar: hold and run, zoom and pan mode, zoom off, undo and redo of
// zoom, zoom in and out, zoom in both directions, copy, print, save and setup. It floats over
// the top right corner of the data view, and shows while the mouse is over the control
// unless AutoHide is off.
//
// The dialogs are the platform's: print, save and setup go through hooks that a host fills
// (the Qt widget with its print, file and setup dialogs). Without a hook a dialog counts as
// cancelled.

#include "qv/component/QVScopeElements.h"
#include "qv/decor/QVBasicDisplayToolBar.h"

#include <functional>
#include <memory>
#include <string>

namespace qv {

class TQVDataDisplay;

// The settings of every button of the display's tool bar.
class TQVDisplayToolBarButtons : public TQLPersistentNotify {
public:
    TQVDisplayToolBarButtons(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify);
    ~TQVDisplayToolBarButtons() override;

    TQVDisplayToolBarButton* GetSetup() const { return FSetup.get(); }
    TQVDisplayToolBarButton* GetHold() const { return FHold.get(); }
    TQVDisplayToolBarButton* GetZoomOff() const { return FZoomOff.get(); }
    TQVDisplayToolBarButton* GetZoomPrevious() const { return FZoomPrevious.get(); }
    TQVDisplayToolBarButton* GetZoomNext() const { return FZoomNext.get(); }
    TQVDisplayToolBarButton* GetZoomIn() const { return FZoomIn.get(); }
    TQVDisplayToolBarButton* GetZoomOut() const { return FZoomOut.get(); }
    TQVDisplayToolBarButton* GetZoomMode() const { return FZoomMode.get(); }
    TQVDisplayToolBarButton* GetXYZoomOn() const { return FXYZoomOn.get(); }
    TQVDisplayToolBarButton* GetCopy() const { return FCopy.get(); }
    TQVDisplayToolBarButton* GetPrint() const { return FPrint.get(); }
    TQVDisplayToolBarButton* GetSave() const { return FSave.get(); }

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVDisplayToolBarButton> FSetup, FHold, FZoomOff, FZoomPrevious, FZoomNext, FZoomIn, FZoomOut,
        FZoomMode, FXYZoomOn, FCopy, FPrint, FSave;
};

// Where the bar floats: its right edge XOffset pixels in from the data view's right edge,
// its top YOffset pixels below the data view's top.
class TQVToolBarPosition : public TQLPersistentNotify {
public:
    using TQLPersistentNotify::TQLPersistentNotify;

    int32_t GetXOffset() const { return FXOffset; }
    void SetXOffset(int32_t AValue) { Set(FXOffset, AValue); }
    int32_t GetYOffset() const { return FYOffset; }
    void SetYOffset(int32_t AValue) { Set(FYOffset, AValue); }

    QL_CLASS_INFO()

private:
    int32_t FXOffset = 2;
    int32_t FYOffset = 3;
};

// The platform's dialogs. Each returns whether the user went on; AFileName comes back with
// the chosen file. The setup button opens the display's own setup dialog (ShowSetupDialog).
using TQVPrintDialogHook = std::function<bool()>;
using TQVSaveDialogHook =
    std::function<bool(const std::string& AFilter, const std::string& ADefaultExt, std::string& AFileName)>;

class TQVDisplayToolBar : public TQVBasicDisplayToolBar, public IQVScopeElementFamily {
public:
    explicit TQVDisplayToolBar(TQVDataDisplay* ADisplay);
    ~TQVDisplayToolBar() override;

    TQVToolBarPosition* GetPosition() const { return FPosition.get(); }
    void SetPosition(const TQVToolBarPosition* AValue) { FPosition->Assign(AValue); }
    TQVDisplayToolBarButtons* GetButtons() const { return FButtons.get(); }
    void SetButtons(const TQVDisplayToolBarButtons* AValue) { FButtons->Assign(AValue); }

    int32_t GetXOffset() const override;
    int32_t GetYOffset() const override;
    // The buttons follow the display (which of run and hold, zoom and pan shows; which are
    // enabled), then draw.
    void Draw(TQLCanvas& ACanvas) override;
    // Brings the buttons' state in line with the display without drawing.
    void UpdateButtons();
    // Draws the bar when it shows; never into a print.
    void DrawElements(TQVDisplayDrawPart APart, TQLCanvas& ACanvas, const TRect& AClip, bool APrinting) override;

    void SetOnPrintDialog(TQVPrintDialogHook AHook) { FOnPrintDialog = std::move(AHook); }
    const TQVPrintDialogHook& GetOnPrintDialog() const { return FOnPrintDialog; }
    void SetOnSaveDialog(TQVSaveDialogHook AHook) { FOnSaveDialog = std::move(AHook); }
    const TQVSaveDialogHook& GetOnSaveDialog() const { return FOnSaveDialog; }

    // The run-time buttons, for hosts and tests.
    TQVDisplayIntToolBarButton* GetRunButton() const { return FRunButton; }
    TQVDisplayIntToolBarButton* GetHoldButton() const { return FHoldButton; }
    TQVDisplayIntToolBarButton* GetZoomModeButton() const { return FZoomModeButton; }
    TQVDisplayIntToolBarButton* GetPanModeButton() const { return FPanModeButton; }
    TQVDisplayIntToolBarButton* GetZoomOffButton() const { return FZoomOffButton; }
    TQVDisplayIntToolBarButton* GetZoomPrevButton() const { return FZoomPrevButton; }
    TQVDisplayIntToolBarButton* GetZoomNextButton() const { return FZoomNextButton; }
    TQVDisplayIntToolBarButton* GetZoomInButton() const { return FZoomInButton; }
    TQVDisplayIntToolBarButton* GetZoomOutButton() const { return FZoomOutButton; }
    TQVDisplayIntToolBarButton* GetXYZoomOnButton() const { return FXYZoomOnButton; }
    TQVDisplayIntToolBarButton* GetSetupButton() const { return FSetupButton; }
    TQVDisplayIntToolBarButton* GetCopyButton() const { return FCopyButton; }
    TQVDisplayIntToolBarButton* GetPrintButton() const { return FPrintButton; }
    TQVDisplayIntToolBarButton* GetSaveButton() const { return FSaveButton; }

    // The actions of the buttons.
    void DoRun();
    void DoHold();
    void DoZoomMode();
    void DoPanMode();
    void DoZoomOff();
    void DoPrevZoom();
    void DoNextZoom();
    void DoZoomIn();
    void DoZoomOut();
    void DoXYZoomMode();
    void DoSetup();
    void DoCopy();
    // Holds the display, asks for the printer; prints when accepted and only then lets the
    // display run again. A cancelled print leaves it held.
    void DoPrint();
    // Holds the display, asks for a file; writes a JPEG for ".jpg" or ".jpeg" (any case),
    // else a bitmap; then Hold is as it was.
    void DoSave();

    QL_CLASS_INFO()

private:
    TQVDataDisplay* FOwnerDisplay;
    std::unique_ptr<TQVToolBarPosition> FPosition;
    std::unique_ptr<TQVDisplayToolBarButtons> FButtons;
    TQVDisplayIntToolBarButton* FRunButton = nullptr;
    TQVDisplayIntToolBarButton* FHoldButton = nullptr;
    TQVDisplayIntToolBarButton* FZoomModeButton = nullptr;
    TQVDisplayIntToolBarButton* FPanModeButton = nullptr;
    TQVDisplayIntToolBarButton* FZoomOffButton = nullptr;
    TQVDisplayIntToolBarButton* FZoomPrevButton = nullptr;
    TQVDisplayIntToolBarButton* FZoomNextButton = nullptr;
    TQVDisplayIntToolBarButton* FZoomInButton = nullptr;
    TQVDisplayIntToolBarButton* FZoomOutButton = nullptr;
    TQVDisplayIntToolBarButton* FXYZoomOnButton = nullptr;
    TQVDisplayIntToolBarButton* FSetupButton = nullptr;
    TQVDisplayIntToolBarButton* FCopyButton = nullptr;
    TQVDisplayIntToolBarButton* FPrintButton = nullptr;
    TQVDisplayIntToolBarButton* FSaveButton = nullptr;
    TQVPrintDialogHook FOnPrintDialog;
    TQVSaveDialogHook FOnSaveDialog;
};

} // namespace qv
