// The waterfall control: reading values back, time slices, zoom with the mouse and by call,
// the tool tip's templates, settings refused, and hold and clear while rows arrive.
#include "WaterfallTestSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

using namespace qv;

namespace {

// A 10-row waterfall with rows of 5 samples: row r holds r * 10 + j at sample j.
struct TFixture : TWaterfallSurface {
    explicit TFixture(int32_t ARows = 4) : TWaterfallSurface(10)
    {
        for (int32_t R = 0; R < ARows; ++R)
            Add({R * 10.0, R * 10.0 + 1, R * 10.0 + 2, R * 10.0 + 3, R * 10.0 + 4});
        Paint();
    }
};

} // namespace

TEST(WaterfallControl, ValuesUnderThePixels)
{
    TFixture F;
    const TRect V = F.View();
    struct TCase {
        const char* Name;
        int32_t X, Y;
        double Value;
        bool Found;
    };
    const int32_t Bottom = V.Top + F.Waterfall.GetDataView()->GetHeight();
    const TCase Cases[] = {
        {"top left: first row, last sample", V.Left, V.Top, 4, true},
        {"bottom left: first row, sample 0", V.Left, Bottom, 0, true},
        {"a filled column", V.Left + F.Waterfall.GetDataView()->GetWidth() / 3, Bottom, 30, true},
        {"an empty column gives the lowest level", V.Right - 2, V.Top, 0, false},
        {"left of the rows", V.Left - 50, V.Top, -100000.0, true},
    };
    for (const TCase& C : Cases) {
        bool Found = false;
        EXPECT_EQ(F.Waterfall.GetValueAtInt(F.Waterfall.GetCurrentMinLevel(), C.X, C.Y, Found), C.Value) << C.Name;
        EXPECT_EQ(Found, C.Found) << C.Name;
    }
    // A row arriving under a mouse over the empty part is noticed at the next draw.
    bool Found = false;
    F.Waterfall.GetValueAtInt(0, V.Right - 2, V.Top, Found);
    EXPECT_TRUE(F.Waterfall.GetDataView()->GetMouseAfterLastBuffer());
    const double Row[] = {1, 2, 3, 4, 5};
    F.Waterfall.GetData()->AddData(Row, 5);
    F.Paint();
    EXPECT_FALSE(F.Waterfall.GetDataView()->GetMouseAfterLastBuffer());
}

TEST(WaterfallControl, SlicesAndRowsAtScaleValues)
{
    TFixture F;
    const auto Slice = F.Waterfall.GetBufferAtYScale(2.0);
    ASSERT_EQ(Slice->GetSize(), 4);
    EXPECT_EQ(std::vector<double>(Slice->Read(), Slice->Read() + 4), (std::vector<double>{2, 12, 22, 32}));
    EXPECT_EQ(F.Waterfall.GetBufferAtYScale(99.0)->GetSize(), 0);
    const auto Row = F.Waterfall.GetBufferAtXScale(3.0);
    ASSERT_TRUE(Row);
    EXPECT_EQ(Row->GetItem(4), 34.0);
    EXPECT_FALSE(F.Waterfall.GetBufferAtXScale(8.0)); // past the rows
    EXPECT_EQ(F.Waterfall.GetValueAtScale(-7.0, 1.0, 3.0), 13.0);
    EXPECT_EQ(F.Waterfall.GetValueAtScale(-7.0, 8.0, 3.0), -7.0);
}

TEST(WaterfallControl, ADragZoomsUnlessItIsAClick)
{
    for (const int32_t Drag : {4, 40}) {
        TFixture F;
        const TRect V = F.View();
        const float X = float(V.Left + 10), Y = float(V.Top + 10);
        F.Waterfall.MouseMove(0, X, Y);
        F.Waterfall.MouseDown(mbLeft, 0, X, Y);
        EXPECT_TRUE(F.Waterfall.GetWaterfallHold()); // the picture stands still meanwhile
        F.Waterfall.MouseMove(0, X + Drag, Y + Drag);
        F.Waterfall.MouseUp(mbLeft, 0, X + Drag, Y + Drag);
        EXPECT_FALSE(F.Waterfall.GetDataView()->InMouseZooming());
        EXPECT_EQ(F.Waterfall.GetHold(), Drag > 4); // Zooming.HoldOnZoom
        EXPECT_EQ(F.Waterfall.GetXAxis()->IsZoomed(), Drag > 4) << Drag;
        EXPECT_EQ(F.Waterfall.GetYAxis()->IsZoomed(), Drag > 4) << Drag;
    }
}

TEST(WaterfallControl, ZoomToWithHoldOnZoomFreezesThePicture)
{
    TFixture F;
    F.Waterfall.GetZooming()->SetHoldOnZoom(true);
    F.Waterfall.ZoomTo(1, 5, 0, 2);
    EXPECT_TRUE(F.Waterfall.GetHold());
    EXPECT_EQ(F.Waterfall.GetXAxis()->GetMinSample(), 1.0);
    EXPECT_EQ(F.Waterfall.GetXAxis()->GetMaxSample(), 5.0);
    const double Row[] = {1, 2, 3, 4, 5};
    F.Waterfall.GetData()->AddData(Row, 5);
    F.Paint();
    EXPECT_EQ(F.Waterfall.GetDrawData().size(), 4u);
    F.Waterfall.SetHold(false);
    EXPECT_EQ(F.Waterfall.GetDrawData().size(), 5u);
}

TEST(WaterfallControl, LabelTemplates)
{
    TFixture F;
    const TRect V = F.View();
    const TPoint Point{V.Left, V.Top}; // value 4
    struct TCase {
        const char* Format;
        const char* Default;
        const char* Text;
    };
    const TCase Cases[] = {
        {"", "%X : %Y : %Z", "1 : 2 : 4"}, {"%x/%y/%z", "", "1/2/4"}, {"%Q%%", "", "%"},
        {"[%d]", "v=%Z", "[v=4]"},         {"end %", "", "end "},
    };
    F.Waterfall.GetLevels()->GetAxis()->SetPrecision(0);
    F.Waterfall.GetLevels()->GetAxis()->SetFixedPrecision(true);
    for (const TCase& C : Cases)
        EXPECT_EQ(F.Waterfall.GetFormatLabelText(Point, 1.0, 2.0, C.Format, C.Default), C.Text) << C.Format;
}

TEST(WaterfallControl, SettingsOutOfRangeAreRefused)
{
    TQVWaterfall Waterfall;
    EXPECT_THROW(Waterfall.GetXAxis()->SetSamples(0), std::invalid_argument);
    EXPECT_EQ(Waterfall.GetXAxis()->GetSamples(), 512);
    EXPECT_THROW(Waterfall.GetData()->SetSampleRate(-1), std::invalid_argument);
    const double Row[] = {1, 2};
    EXPECT_THROW(Waterfall.GetData()->SetData(0, Row, 2), ERangeError);
    try {
        Waterfall.GetData()->SetData(7, Row, 2);
    } catch (const ERangeError& E) {
        EXPECT_STREQ(E.what(), "Index out of range = 7");
    }
    // A refused array leaves the history alone.
    Waterfall.GetData()->AddData(Row, 2);
    TQVRealBufferArray Bad{std::make_shared<TQVRealBuffer>(2u), std::make_shared<TQVRealBuffer>(3u)};
    EXPECT_THROW(Waterfall.GetData()->SetData(Bad), std::invalid_argument);
    EXPECT_EQ(Waterfall.GetData()->GetData().size(), 1u);
}

TEST(WaterfallControl, SampleRateZeroCountsAsTenThousandForTheAxes)
{
    TQVWaterfall Waterfall;
    EXPECT_EQ(Waterfall.GetData()->GetSampleRate(), 0.0);
    EXPECT_EQ(Waterfall.GetSampleRate(), 10000.0);
    Waterfall.GetYAxis()->SetTicksMode(atmFrequency);
    EXPECT_EQ(Waterfall.GetYAxis()->CalcMaxFreq(), 5.0); // kHz
    EXPECT_EQ(Waterfall.GetYAxis()->GetAxisLabelText(), "kHz");
}

// A producer feeds rows while the control's thread paints, holds, releases and clears:
// the history never passes its bound and its extremes stay in step with its rows.
TEST(WaterfallControl, HoldAndClearWhileRowsArrive)
{
    TFixture F(0);
    std::atomic<bool> Done{false};
    std::thread Producer([&] {
        std::vector<double> Row(5);
        for (int32_t I = 0; !Done.load(); ++I) {
            for (double& V : Row)
                V = I % 100;
            F.Waterfall.GetData()->AddData(Row.data(), 5);
        }
    });
    for (int32_t Step = 0; Step < 200; ++Step) {
        F.Waterfall.SetHold(Step % 3 == 0);
        if (Step % 7 == 0)
            F.Waterfall.Clear();
        F.Paint();
        TQWCriticalSectionLock Lock(F.Waterfall.GetBufferSection());
        const TQVWaterfallBuffers& Buffers = F.Waterfall.GetWaterfallBuffers();
        ASSERT_LE(Buffers.GetBuffersCount(), 10);
        ASSERT_EQ(Buffers.GetExtremesCount(), Buffers.GetBuffersCount());
    }
    Done = true;
    Producer.join();
    F.Waterfall.SetHold(false);
    const std::vector<double> Row(5, 1.0);
    for (int32_t I = 0; I < 10; ++I)
        F.Waterfall.GetData()->AddData(Row.data(), 5);
    F.Paint();
    EXPECT_EQ(F.Waterfall.GetDrawData().size(), 10u);
}

// The input pin: a start names the rate and the domain and clears; blocks become rows.
TEST(WaterfallControl, TheInputPinTakesStartsAndRows)
{
    TFixture F;
    TQWSourcePin Source(dkReal);
    Source.Connect(*F.Waterfall.GetInputPin());
    Source.Notify(TQWStartSpectrumOperation(48000.0));
    EXPECT_EQ(F.Waterfall.GetData()->GetSampleRate(), 48000.0);
    EXPECT_TRUE(F.Waterfall.IsFrequencyDomain());
    EXPECT_TRUE(F.Waterfall.GetData()->GetData().empty());
    const double Row[] = {1, 2, 3};
    Source.Notify(TQWSuppliedBufferOperation(std::make_shared<TQVRealBuffer>(Row, 3)));
    ASSERT_EQ(F.Waterfall.GetData()->GetData().size(), 1u);
    EXPECT_EQ(F.Waterfall.GetData()->GetData()[0]->GetItem(2), 3.0);
    Source.Notify(TQWStartOperation());
    EXPECT_EQ(F.Waterfall.GetData()->GetSampleRate(), 10000.0);
    EXPECT_FALSE(F.Waterfall.IsFrequencyDomain());
}

namespace {
// A printer that notes whether the waterfall was held while it printed.
struct TPrinter : IQLPictureServices, IQLPrinter {
    TQVWaterfall* Waterfall = nullptr;
    bool HeldWhilePrinting = false;
    IQLPrinter* GetPrinter() override { return this; }
    void CopyBitmapToClipboard(const TQLBitmap&) override {}
    void SaveBitmapToFile(const TQLBitmap&, const std::string&) override {}
    void SaveBitmapToJpeg(const TQLBitmap&, const std::string&) override {}
    void BeginDoc() override {}
    void EndDoc() override {}
    int32_t GetPageWidth() const override { return 400; }
    int32_t GetPageHeight() const override { return 300; }
    void StretchDrawBitmap(const TRect&, const TQLBitmap&) override { HeldWhilePrinting = Waterfall->GetHold(); }
};
} // namespace

TEST(WaterfallControl, PrintsHeldAndPutsHoldBack)
{
    TFixture F;
    F.Waterfall.SetCanvasFactory(
        [](TQLBitmap&) -> std::unique_ptr<TQLCanvas> { return std::make_unique<TQLRecordingCanvas>(); });
    auto Printer = std::make_shared<TPrinter>();
    Printer->Waterfall = &F.Waterfall;
    F.Waterfall.SetPictureServices(Printer);
    F.Waterfall.Print();
    EXPECT_TRUE(Printer->HeldWhilePrinting);
    EXPECT_FALSE(F.Waterfall.GetHold());
}

// A press on the level caption opens the setup of the level settings, unless the button's own
// click handler takes it.
TEST(WaterfallControl, LevelCaptionClickOpensTheLevelSetup)
{
    for (const bool Handler : {false, true}) {
        TQVWaterfall Waterfall;
        Waterfall.SetCanvasFactory(
            [](TQLBitmap&) -> std::unique_ptr<TQLCanvas> { return std::make_unique<TQLRecordingCanvas>(); });
        Waterfall.SetBounds(0, 0, 320, 240);
        TQLBitmap Bitmap{320, 240};
        TQLRecordingCanvas Canvas;
        Waterfall.PaintToCanvas(Bitmap, Canvas, false);
        TQLPersistent* Opened = nullptr;
        Waterfall.SetOnSetupDialog([&](TQLPersistent* AObject) {
            Opened = AObject;
            return true;
        });
        auto* Button = dynamic_cast<TQVViewButtonSettings*>(Waterfall.GetLevels()->GetButtonSettings());
        ASSERT_NE(Button, nullptr);
        if (Handler)
            Button->SetOnClick([](TQLPersistent*, bool& AHandled) { AHandled = true; });
        int32_t Angle = 0;
        const TRect Box = Waterfall.GetLevels()->GetLabelRect(Canvas, Angle);
        ASSERT_FALSE(Box.IsEmpty());
        Waterfall.MouseDown(mbLeft, 0, (Box.Left + Box.Right) / 2, (Box.Top + Box.Bottom) / 2);
        EXPECT_EQ(Opened, Handler ? nullptr : static_cast<TQLPersistent*>(Waterfall.GetLevels())) << Handler;
    }
}
