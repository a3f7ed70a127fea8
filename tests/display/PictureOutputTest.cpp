// Picture output of a display: print, clipboard, bitmap and files through the platform's
// services, here a fake that records what it is handed.
#include "qv/QVScope.h"
#include "qv/channels/QVScopeDataView.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

using namespace qv;

namespace {

class TFakePrinter : public IQLPrinter {
public:
    void BeginDoc() override { Log.push_back("begin"); }
    void EndDoc() override { Log.push_back("end"); }
    int32_t GetPageWidth() const override { return PageWidth; }
    int32_t GetPageHeight() const override { return PageHeight; }
    void StretchDrawBitmap(const TRect& ADest, const TQLBitmap& ABitmap) override
    {
        if (OnDraw)
            OnDraw();
        Log.push_back("draw " + std::to_string(ADest.Right) + "x" + std::to_string(ADest.Bottom) + " of " +
                      std::to_string(ABitmap.GetWidth()) + "x" + std::to_string(ABitmap.GetHeight()));
    }
    int32_t PageWidth = 800, PageHeight = 600;
    std::function<void()> OnDraw;
    std::vector<std::string> Log;
};

class TFakeServices : public IQLPictureServices {
public:
    IQLPrinter* GetPrinter() override { return HasPrinter ? &Printer : nullptr; }
    void CopyBitmapToClipboard(const TQLBitmap& ABitmap) override { Log("clipboard", ABitmap); }
    void SaveBitmapToFile(const TQLBitmap& ABitmap, const std::string& AFileName) override { Log(AFileName, ABitmap); }
    void SaveBitmapToJpeg(const TQLBitmap& ABitmap, const std::string& AFileName) override { Log(AFileName, ABitmap); }
    void Log(const std::string& ATarget, const TQLBitmap& ABitmap)
    {
        Outputs.push_back(ATarget + " " + std::to_string(ABitmap.GetWidth()) + "x" +
                          std::to_string(ABitmap.GetHeight()));
    }
    TFakePrinter Printer;
    bool HasPrinter = true;
    std::vector<std::string> Outputs;
};

TQLCanvasFactory RecordingFactory()
{
    return [](TQLBitmap&) -> std::unique_ptr<TQLCanvas> { return std::make_unique<TQLRecordingCanvas>(); };
}

// A scope that reports each paint: its plot size and whether it printed.
class TProbeScope : public TQVScope {
public:
    TProbeScope()
    {
        SetCanvasFactory(RecordingFactory());
        SetPictureServices(Services);
        SetBounds(0, 0, 400.8f, 300.4f);
    }
    void PaintToCanvasRgn(TQLBitmap& ABitmap, TQLCanvas& ACanvas, const TRect& ARect, const TQLRegion& ARegion,
                          bool APrinting) override
    {
        TQVScope::PaintToCanvasRgn(ABitmap, ACanvas, ARect, ARegion, APrinting);
        Paints.push_back(std::to_string(GetPlotWidth()) + "x" + std::to_string(GetPlotHeight()) +
                         (GetPrinting() ? " printing" : "") + (APrinting ? " as print" : ""));
        ViewRights.push_back(GetScopeDataView()->GetDrawRect().Right);
        if (OnPaintHook)
            OnPaintHook();
    }
    std::shared_ptr<TFakeServices> Services = std::make_shared<TFakeServices>();
    std::vector<std::string> Paints;
    std::vector<int32_t> ViewRights;
    std::function<void()> OnPaintHook;
};

} // namespace

TEST(PictureOutput, PrintPaintsAtThePageSizeAndTheNextPaintLaysOutAgain)
{
    TProbeScope Scope;
    Scope.Paint();
    ASSERT_LE(Scope.ViewRights.back(), 400);
    Scope.Print();
    EXPECT_EQ(Scope.Paints.back(), "800x600 printing as print");
    // The layout followed the page, not the control.
    EXPECT_GT(Scope.ViewRights.back(), 400);
    EXPECT_EQ(Scope.Services->Printer.Log, (std::vector<std::string>{"begin", "draw 800x600 of 800x600", "end"}));
    EXPECT_FALSE(Scope.GetPrinting());
    EXPECT_TRUE(Scope.GetNeedsRecalc());
    EXPECT_FALSE(Scope.GetHold());
    Scope.Paint();
    EXPECT_EQ(Scope.Paints.back(), "400x300");
    EXPECT_LE(Scope.ViewRights.back(), 400);
}

TEST(PictureOutput, AFailingPrintEndsTheDocumentAndRestoresHoldAndTheScreenSize)
{
    TProbeScope Scope;
    bool HeldWhileDrawing = false;
    Scope.Services->Printer.OnDraw = [&] {
        HeldWhileDrawing = Scope.GetHold();
        throw std::runtime_error("paper jam");
    };
    EXPECT_THROW(Scope.Print(), std::runtime_error);
    EXPECT_TRUE(HeldWhileDrawing);
    EXPECT_EQ(Scope.Services->Printer.Log, (std::vector<std::string>{"begin", "end"}));
    EXPECT_FALSE(Scope.GetHold());
    EXPECT_FALSE(Scope.GetPrinting());
    EXPECT_EQ(Scope.GetPlotWidth(), 400);
    // A held scope stays held after a print.
    Scope.Services->Printer.OnDraw = nullptr;
    Scope.SetHold(true);
    Scope.Print();
    EXPECT_TRUE(Scope.GetHold());
}

TEST(PictureOutput, EachOutputTakesItsOwnSizeAndSaveToBitmapInsideAPrintTakesThePage)
{
    TProbeScope Scope;
    Scope.CopyToClipboard();
    Scope.SaveToJpeg("a.jpg");
    Scope.SaveToBitmap("a.bmp");
    EXPECT_EQ(Scope.Services->Outputs, (std::vector<std::string>{"clipboard 400x300", "a.jpg 400x300", "a.bmp 400x300"}));
    EXPECT_EQ(Scope.Paints.back(), "400x300 as print");
    TQLBitmap Own(50, 40);
    Scope.CopyToBitmap(Own);
    EXPECT_EQ(Scope.Paints.back(), "400x300 as print");

    // A save from a handler that runs within the paint of a print.
    Scope.Services->Outputs.clear();
    bool Inside = false;
    Scope.OnPaintHook = [&] {
        if (Scope.GetPrinting() && !Inside) {
            Inside = true;
            Scope.SaveToBitmap("inside.bmp");
        }
    };
    Scope.Print();
    EXPECT_EQ(Scope.Services->Outputs, (std::vector<std::string>{"inside.bmp 800x600"}));

    Scope.SetBounds(0, 0, 0, 0);
    Scope.SaveToBitmap("empty.bmp");
    EXPECT_EQ(Scope.Services->Outputs.back(), "empty.bmp 0x0");
}

TEST(PictureOutput, MissingServicesRaiseClearErrorsAndLeaveNoPrintState)
{
    TProbeScope Scope;
    Scope.Services->HasPrinter = false;
    try {
        Scope.Print();
        FAIL() << "a print without a printer went through";
    } catch (const std::runtime_error& E) {
        EXPECT_NE(std::string(E.what()).find("no printer"), std::string::npos) << E.what();
    }
    EXPECT_FALSE(Scope.GetHold());
    Scope.SetPictureServices(nullptr);
    for (const auto& Op : std::vector<std::function<void()>>{[&] { Scope.Print(); }, [&] { Scope.CopyToClipboard(); },
                                                             [&] { Scope.SaveToBitmap("x.bmp"); },
                                                             [&] { Scope.SaveToJpeg("x.jpg"); }}) {
        try {
            Op();
            ADD_FAILURE() << "an output without services went through";
        } catch (const std::runtime_error& E) {
            EXPECT_NE(std::string(E.what()).find("no picture services"), std::string::npos) << E.what();
        }
    }
    Scope.SetCanvasFactory(nullptr);
    TQLBitmap Bitmap(10, 10);
    EXPECT_THROW(Scope.CopyToBitmap(Bitmap), std::runtime_error);
    EXPECT_TRUE(Scope.Paints.empty());
    EXPECT_FALSE(Scope.GetPrinting());
}
