// A scope rendered as a matrix element into a caller's pixels: inside its rectangle the
// buffer holds exactly the picture of the same scope painted alone at that size; outside it
// the caller's pixels are untouched.
#include <qv/QVScope.h>
#include <qv/qt/QVDisplayWidget.h>

#include "platform/qt/KeepPicture.h"
#include "qv/display/QVExternalScopeElement.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using namespace qv;

namespace {

void Configure(TQVScope& AScope)
{
    AScope.SetCanvasFactory(QLQtCanvasFactory());
    AScope.GetTitle()->SetText("Element");
    AScope.GetChannels()->GetItem(0)->SetColor(0xFF40C0FF);
    std::vector<double> Samples(200);
    for (size_t I = 0; I < Samples.size(); ++I)
        Samples[I] = std::sin(double(I) / 10.0);
    AScope.GetChannels()->GetItem(0)->GetData()->AddYData(Samples.data(), uint32_t(Samples.size()));
    AScope.RefreshView();
}

} // namespace

TEST(ExternalElementPicture, RenderEqualsTheScopePaintedAloneAndLeavesTheRestAlone)
{
    struct TCase {
        double SizeX, SizeY, PosX, PosY;
        TRect Inside; // in a 400 x 250 buffer
    };
    const TCase Cases[] = {
        {1.0, 1.0, 0.0, 0.0, {0, 0, 400, 250}},
        {0.6, 0.6, 0.0, 0.0, {0, 0, 240, 150}}, // the matrix layer's defaults
        {0.5, 0.4, 0.25, 0.5, {100, 125, 300, 225}},
    };
    constexpr int32_t W = 400, H = 250;
    constexpr uint32_t Backdrop = 0xFF203040u;
    for (const TCase& C : Cases) {
        TQVExternalScopeMatrixLayer Element;
        Configure(Element);
        Element.GetSize()->SetX(C.SizeX);
        Element.GetSize()->SetY(C.SizeY);
        Element.GetPosition()->SetX(C.PosX);
        Element.GetPosition()->SetY(C.PosY);
        std::vector<uint32_t> Buffer(size_t(W) * H, Backdrop);
        Element.Render(Buffer.data(), W, H);

        const int32_t EW = C.Inside.Right - C.Inside.Left, EH = C.Inside.Bottom - C.Inside.Top;
        TQVScope Alone;
        Configure(Alone);
        Alone.SetBounds(0, 0, float(EW), float(EH));
        TQLBitmap Picture(EW, EH);
        Alone.CopyToBitmap(Picture);

        TQLBitmap Kept(W, H);
        std::copy(Buffer.begin(), Buffer.end(), Kept.GetBits());
        qvtest::KeepPicture(Kept, "ElementRender.png");
        int Wrong = 0, Touched = 0;
        for (int32_t Y = 0; Y < H; ++Y)
            for (int32_t X = 0; X < W; ++X) {
                const uint32_t Got = Buffer[size_t(Y) * W + size_t(X)];
                const bool In = X >= C.Inside.Left && X < C.Inside.Right && Y >= C.Inside.Top && Y < C.Inside.Bottom;
                if (In)
                    Wrong += Got != Picture.GetScanLine(Y - C.Inside.Top)[X - C.Inside.Left];
                else
                    Touched += Got != Backdrop;
            }
        EXPECT_EQ(Wrong, 0) << C.SizeX << " x " << C.SizeY;
        EXPECT_EQ(Touched, 0) << C.SizeX << " x " << C.SizeY;
    }
}
