// The display's tool bar: its grid, the buttons following the display, clicks through the
// display's mouse dispatch, the dialogs' hooks, and when it shows.
#include "qv/QVScope.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace qv;

namespace {

struct TBarScope {
    TBarScope()
    {
        Scope.SetBounds(0, 0, 400, 300);
        Bitmap.SetSize(400, 300);
        Paint();
    }
    void Paint()
    {
        Canvas.ClearRecords();
        Scope.PaintToCanvas(Bitmap, Canvas, false);
    }
    TQVDisplayToolBar& Bar() { return *Scope.GetToolBar(); }
    // A left click in the middle of a button's cell, as the user makes it.
    void Click(TQVDisplayIntToolBarButton* AButton)
    {
        const TRect R = Bar().GetButtonRect(AButton);
        ASSERT_FALSE(R.IsEmpty());
        const float X = float(R.Left + 8), Y = float(R.Top + 8);
        Scope.MouseMove(0, X, Y);
        Scope.MouseDown(mbLeft, 0, X, Y);
        Scope.MouseUp(mbLeft, 0, X, Y);
    }
    std::vector<TQVDisplayToolBarButton*> AllSettings()
    {
        TQVDisplayToolBarButtons& B = *Bar().GetButtons();
        return {B.GetSetup(),   B.GetHold(),     B.GetZoomOff(),  B.GetZoomPrevious(), B.GetZoomNext(), B.GetZoomIn(),
                B.GetZoomOut(), B.GetZoomMode(), B.GetXYZoomOn(), B.GetCopy(),         B.GetPrint(),    B.GetSave()};
    }

    TQVScope Scope;
    TQLBitmap Bitmap;
    TQLRecordingCanvas Canvas;
};

} // namespace

// The visible buttons split into GetCountRows rows of (visible / rows) cells, and fewer
// buttons than rows still make rows of one; the rectangle is one row wide and as high as the
// rows drawn. With no visible button the bar is empty and takes no mouse.
TEST(ToolBar, GridByVisibleButtons)
{
    struct TCase {
        int32_t Shown; // settings left visible, from the first
        int32_t Width, Height;
    };
    // Twelve settings drive fourteen buttons; run and zoom mode start hidden, so every
    // setting shows one button.
    const TCase Cases[] = {{12, 6 * 17, 2 * 17}, {5, 2 * 17, 3 * 17}, {1, 17, 17}, {0, 0, 0}};
    for (const TCase& C : Cases) {
        TBarScope S;
        const std::vector<TQVDisplayToolBarButton*> Settings = S.AllSettings();
        for (size_t I = 0; I < Settings.size(); ++I)
            Settings[I]->SetVisible(int32_t(I) < C.Shown);
        const TRect R = S.Bar().GetDrawRect();
        SCOPED_TRACE(C.Shown);
        EXPECT_EQ(R.Right - R.Left, C.Width);
        EXPECT_EQ(R.Bottom - R.Top, C.Height);
        if (C.Shown > 0) {
            // Anchored at the data view's top right corner.
            const TRect View = S.Scope.GetDataView()->GetDrawRect();
            EXPECT_EQ(R.Right, View.Right - 2);
            EXPECT_EQ(R.Top, View.Top + 3);
        }
    }
    // The empty bar: a press where it would be reaches the data view, not the bar.
    TBarScope S;
    for (TQVDisplayToolBarButton* B : S.AllSettings())
        B->SetVisible(false);
    const TRect View = S.Scope.GetDataView()->GetDrawRect();
    bool Handled = false;
    S.Bar().MouseMove(0, View.Right - 10, View.Top + 10, Handled);
    S.Bar().MouseDown(mbLeft, 0, View.Right - 10, View.Top + 10, false, Handled);
    EXPECT_FALSE(Handled);
}

// Run and hold share a place, and so do zoom and pan mode; the others enable by the display.
TEST(ToolBar, ButtonsFollowTheDisplay)
{
    TBarScope S;
    TQVDisplayToolBar& B = S.Bar();
    auto State = [&] {
        B.UpdateButtons();
        return std::vector<bool>{B.GetRunButton()->IsVisible(),       B.GetHoldButton()->IsVisible(),
                                 B.GetZoomModeButton()->IsVisible(),  B.GetPanModeButton()->IsVisible(),
                                 B.GetXYZoomOnButton()->GetEnabled(), B.GetZoomOffButton()->GetEnabled(),
                                 B.GetZoomPrevButton()->GetEnabled(), B.GetZoomNextButton()->GetEnabled()};
    };
    EXPECT_EQ(State(), (std::vector<bool>{false, true, false, true, false, false, false, false}));
    S.Scope.SetHold(true);
    S.Scope.SetNavigateMode(nmPan);
    S.Scope.GetZooming()->SetMode(zmXAxis);
    S.Scope.ZoomBy(0.5);
    EXPECT_EQ(State(), (std::vector<bool>{true, false, true, false, true, true, true, false}));
    S.Scope.UndoZoom();
    EXPECT_EQ(State(), (std::vector<bool>{true, false, true, false, true, false, false, true}));
}

// Clicks through the display: each button runs its action; a disabled one does nothing; a
// settings handler that sets Handled keeps the action from running.
TEST(ToolBar, ClicksRunTheActions)
{
    TBarScope S;
    TQVDisplayToolBar& B = S.Bar();
    const double Width = S.Scope.GetXAxis()->GetScaleTick().GetZoomed().GetMax().GetValue() -
                         S.Scope.GetXAxis()->GetScaleTick().GetZoomed().GetMin().GetValue();

    S.Click(B.GetHoldButton());
    EXPECT_TRUE(S.Scope.GetHold());
    S.Paint();
    S.Click(B.GetRunButton());
    EXPECT_FALSE(S.Scope.GetHold());

    S.Click(B.GetZoomInButton());
    S.Paint();
    EXPECT_TRUE(S.Scope.IsZoomed());
    EXPECT_NEAR(S.Scope.GetXAxis()->GetZoomMax() - S.Scope.GetXAxis()->GetZoomMin(), Width / 2, 1e-9);
    EXPECT_EQ(S.Scope.GetUndoList().GetCount(), 1);
    S.Click(B.GetZoomPrevButton());
    EXPECT_FALSE(S.Scope.IsZoomed());
    S.Click(B.GetPanModeButton());
    EXPECT_EQ(S.Scope.GetNavigateMode(), nmPan);
    S.Paint();
    S.Click(B.GetZoomModeButton());
    EXPECT_EQ(S.Scope.GetNavigateMode(), nmZoom);

    // Zoom off is disabled while nothing is zoomed: the press is not the bar's.
    S.Paint();
    bool Handled = false;
    const TRect Off = B.GetButtonRect(B.GetZoomOffButton());
    B.MouseDown(mbLeft, 0, Off.Left + 8, Off.Top + 8, true, Handled);
    EXPECT_FALSE(Handled);

    int32_t Calls = 0;
    B.GetButtons()->GetHold()->SetOnClick([&](TQLPersistent*, bool& AHandled) {
        ++Calls;
        AHandled = true;
    });
    S.Click(B.GetHoldButton());
    EXPECT_EQ(Calls, 1);
    EXPECT_FALSE(S.Scope.GetHold());
}

// Without a dialog, or with one the user cancels, nothing is printed or saved. A cancelled
// print leaves the display held; a save puts Hold back as it was. The save dialog is offered
// the bitmap and JPEG filter with "bmp" as the default extension.
TEST(ToolBar, DialogsThroughHooks)
{
    TBarScope S;
    TQVDisplayToolBar& B = S.Bar();
    S.Click(B.GetPrintButton());
    EXPECT_TRUE(S.Scope.GetHold());

    S.Scope.SetHold(false);
    std::string Filter, Ext;
    B.SetOnSaveDialog([&](const std::string& AFilter, const std::string& ADefaultExt, std::string&) {
        Filter = AFilter;
        Ext = ADefaultExt;
        return false;
    });
    S.Click(B.GetSaveButton());
    EXPECT_FALSE(S.Scope.GetHold());
    EXPECT_EQ(Filter, "Bitmap (*.bmp)|*.bmp|JPEG File Interchange Format (*.jpg)|*.jpg");
    EXPECT_EQ(Ext, "bmp");

    // Accepted, but this display has no picture services: the failure reaches the caller
    // and Hold still comes back.
    B.SetOnSaveDialog([](const std::string&, const std::string&, std::string& AFileName) {
        AFileName = "picture.jpeg";
        return true;
    });
    EXPECT_THROW(B.DoSave(), std::runtime_error);
    EXPECT_FALSE(S.Scope.GetHold());
}

// The setup button opens the display's setup dialog on the display's page; headless (no
// host dialog) the display answers cancelled and the button does nothing else.
TEST(ToolBar, SetupButtonOpensTheDisplaysSetupDialog)
{
    TBarScope S;
    TQVDisplayToolBar& B = S.Bar();
    EXPECT_FALSE(S.Scope.ShowSetupDialog());
    S.Click(B.GetSetupButton());
    std::vector<TQLPersistent*> Opened;
    S.Scope.SetOnSetupDialog([&](TQLPersistent* AObject) {
        Opened.push_back(AObject);
        return true;
    });
    S.Click(B.GetSetupButton());
    EXPECT_EQ(Opened, std::vector<TQLPersistent*>{&S.Scope});
    EXPECT_TRUE(S.Scope.ShowSetupDialog());
}

// AutoHide: the bar is drawn only while the mouse is over the control; without AutoHide it
// always is. A print never shows it.
TEST(ToolBar, ShownWhileTheMouseIsOverTheControl)
{
    TBarScope S;
    const TRect Cell = S.Bar().GetButtonRect(S.Bar().GetHoldButton());
    auto Drawn = [&] {
        for (const TQLCanvasRecord& R : S.Canvas.Of("Rectangle"))
            if (R.ArgRect() == Cell)
                return true;
        return false;
    };
    S.Paint();
    EXPECT_FALSE(Drawn());
    S.Scope.DoMouseEnter();
    S.Scope.MouseMove(0, 100, 100);
    S.Paint();
    EXPECT_TRUE(Drawn());
    S.Canvas.ClearRecords();
    S.Scope.PaintToCanvas(S.Bitmap, S.Canvas, true);
    EXPECT_FALSE(Drawn());
    S.Scope.DoMouseLeave();
    S.Paint();
    EXPECT_FALSE(Drawn());
    S.Bar().SetAutoHide(false);
    S.Paint();
    EXPECT_TRUE(Drawn());
}
