// Picture output of a display: print, clipboard and files through the platform's services,
// here a fake that writes down what it is handed.
#include "qv/QVScope.h"
#include "qv/channels/QVScopeDataView.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <utility>

using namespace qv;

namespace {

using TLog = std::vector<std::string>;

std::string SizeOf(const TQLBitmap& ABitmap)
{
    return std::to_string(ABitmap.GetWidth()) + "x" + std::to_string(ABitmap.GetHeight());
}

// Clipboard, files and a printer with an 800 by 600 page in one.
class TFakeServices : public IQLPictureServices, public IQLPrinter {
public:
    IQLPrinter* GetPrinter() override { return HasPrinter ? this : nullptr; }
    void CopyBitmapToClipboard(const TQLBitmap& ABitmap) override { Log.push_back("clipboard " + SizeOf(ABitmap)); }
    void SaveBitmapToFile(const TQLBitmap& ABitmap, const std::string& AName) override { Save(AName, ABitmap); }
    void SaveBitmapToJpeg(const TQLBitmap& ABitmap, const std::string& AName) override { Save(AName, ABitmap); }
    void Save(const std::string& AName, const TQLBitmap& ABitmap) { Log.push_back(AName + " " + SizeOf(ABitmap)); }
    void BeginDoc() override { Log.push_back("begin"); }
    void EndDoc() override { Log.push_back("end"); }
    int32_t GetPageWidth() const override { return 800; }
    int32_t GetPageHeight() const override { return 600; }
    void StretchDrawBitmap(const TRect& ADest, const TQLBitmap& ABitmap) override
    {
        if (OnDraw)
            OnDraw();
        Log.push_back("draw " + std::to_string(ADest.Right) + "x" + std::to_string(ADest.Bottom) + " of " +
                      SizeOf(ABitmap));
    }
    bool HasPrinter = true;
    std::function<void()> OnDraw;
    TLog Log;
};

// A scope that writes down each paint: the plot size, the print state and the data view's
// right edge.
class TProbeScope : public TQVScope {
public:
    TProbeScope()
    {
        SetCanvasFactory(
            [](TQLBitmap&) -> std::unique_ptr<TQLCanvas> { return std::make_unique<TQLRecordingCanvas>(); });
        SetPictureServices(Services);
        SetBounds(0, 0, 400.8f, 300.4f);
    }
    void PaintToCanvasRgn(TQLBitmap& ABitmap, TQLCanvas& ACanvas, const TRect& ARect, const TQLRegion& ARegion,
                          bool APrinting) override
    {
        TQVScope::PaintToCanvasRgn(ABitmap, ACanvas, ARect, ARegion, APrinting);
        Paints.push_back(std::to_string(GetPlotWidth()) + "x" + std::to_string(GetPlotHeight()) +
                         (GetPrinting() ? " printing" : "") + (APrinting ? " as print" : ""));
        ViewRight = GetScopeDataView()->GetDrawRect().Right;
        if (auto Hook = std::exchange(OnPaintHook, nullptr))
            Hook();
    }
    std::shared_ptr<TFakeServices> Services = std::make_shared<TFakeServices>();
    TLog Paints;
    int32_t ViewRight = 0;
    std::function<void()> OnPaintHook; // runs once, at the next paint
};

std::string ErrorOf(const std::function<void()>& AOperation)
{
    try {
        AOperation();
    } catch (const std::runtime_error& E) {
        return E.what();
    }
    return "no error";
}

} // namespace

TEST(PictureOutput, PrintLaysOutAtThePageAndCleansUpAlsoWhenThePrinterFails)
{
    TProbeScope Scope;
    Scope.Paint();
    ASSERT_LE(Scope.ViewRight, 400);
    Scope.Print();
    EXPECT_EQ(Scope.Paints.back(), "800x600 printing as print");
    EXPECT_GT(Scope.ViewRight, 400);
    EXPECT_EQ(Scope.Services->Log, (TLog{"begin", "draw 800x600 of 800x600", "end"}));
    Scope.Paint();
    EXPECT_EQ(Scope.Paints.back(), "400x300");
    EXPECT_LE(Scope.ViewRight, 400);

    bool HeldWhileDrawing = false;
    Scope.Services->Log.clear();
    Scope.Services->OnDraw = [&] {
        HeldWhileDrawing = Scope.GetHold();
        throw std::runtime_error("paper jam");
    };
    EXPECT_EQ(ErrorOf([&] { Scope.Print(); }), "paper jam");
    EXPECT_TRUE(HeldWhileDrawing);
    EXPECT_EQ(Scope.Services->Log, (TLog{"begin", "end"}));
    EXPECT_FALSE(Scope.GetHold());
    EXPECT_FALSE(Scope.GetPrinting());
    EXPECT_EQ(Scope.GetPlotWidth(), 400);
}

TEST(PictureOutput, EachOutputTakesItsSizeASaveWithinAPrintThePageAndMissingServicesAreNamed)
{
    TProbeScope Scope;
    Scope.CopyToClipboard();
    Scope.SaveToJpeg("a.jpg");
    Scope.SaveToBitmap("a.bmp");
    EXPECT_EQ(Scope.Services->Log, (TLog{"clipboard 400x300", "a.jpg 400x300", "a.bmp 400x300"}));
    EXPECT_EQ(Scope.Paints.back(), "400x300 as print");

    Scope.Services->Log.clear();
    Scope.OnPaintHook = [&] { Scope.SaveToBitmap("inside.bmp"); };
    Scope.Print();
    EXPECT_EQ(Scope.Services->Log, (TLog{"begin", "inside.bmp 800x600", "draw 800x600 of 800x600", "end"}));

    Scope.SetBounds(0, 0, 0, 0);
    Scope.SaveToBitmap("empty.bmp");
    EXPECT_EQ(Scope.Services->Log.back(), "empty.bmp 0x0");

    // Missing services are named, and a refused print leaves no print state.
    Scope.Services->HasPrinter = false;
    EXPECT_NE(ErrorOf([&] { Scope.Print(); }).find("no printer"), std::string::npos);
    EXPECT_FALSE(Scope.GetHold() || Scope.GetPrinting());
    Scope.SetPictureServices(nullptr);
    EXPECT_NE(ErrorOf([&] { Scope.SaveToJpeg("x.jpg"); }).find("SaveToJpeg: no picture services"), std::string::npos);
    Scope.SetCanvasFactory(nullptr);
    TQLBitmap Bitmap(10, 10);
    EXPECT_NE(ErrorOf([&] { Scope.CopyToBitmap(Bitmap); }).find("no canvas factory"), std::string::npos);
}
