// Channels rendered for real by QPainter: a million-sample ramp, cut down to two points per
// pixel column, must paint in every column exactly the rows of its two points, and as a line
// every row between them.
#include <qv/qt/QLQtCanvas.h>
#include <qv/qt/QLQtImage.h>

#include "platform/qt/KeepPicture.h"
#include "qv/axes/QVScopeXAxis.h"
#include "qv/axes/QVScopeYAxis.h"
#include "qv/channels/QVChannelData.h"
#include "qv/channels/QVScopeChannel.h"
#include "qv/channels/QVScopeDataView.h"
#include "qv/component/QVDisplayView.h"
#include "qv/display/QVScope.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

using namespace qv;

namespace {

constexpr TAlphaColor CBackground = 0xFF000000;

class TPictureScope : public TQVScope {
public:
    TQVScopeDataView* GetDataView() const override { return View; }
    TQVScopeDataView* View = nullptr;
};

class ChannelPicture : public ::testing::Test {
protected:
    ChannelPicture()
    {
        Scope.View = &View;
        View.SetDrawRect(Rect);
        // Y fixed to 0..100; X follows the samples.
        TQVScopeYAxis* Y = Scope.GetYAxis();
        Y->GetAutoScaling()->SetEnabled(false);
        Y->GetAutoScaling()->GetSpaceAbove()->SetSpace(0);
        Y->GetAutoScaling()->GetSpaceBelow()->SetSpace(0);
        Y->GetMin()->SetValue(0.0);
        Y->GetMax()->SetValue(100.0);
    }
    TQVScopeChannel* Channel(int32_t AIndex)
    {
        while (Scope.GetChannels()->GetCount() <= AIndex)
            Scope.GetChannels()->Add();
        return Scope.GetChannels()->GetItem(AIndex);
    }
    // The channel alone on a black picture of the data view's size.
    TQLBitmap Render(int32_t AIndex)
    {
        TQLBitmap Picture(Rect.Right, Rect.Bottom);
        TQLQtCanvas Canvas(Picture);
        Canvas.GetBrush().SetStyle(bsSolid);
        Canvas.GetBrush().SetColor(CBackground);
        Canvas.FillRect(Rect);
        Channel(AIndex)->Draw(Canvas, Rect, false);
        return Picture;
    }
    static bool Painted(const TQLBitmap& APicture, int32_t AX, int32_t AY)
    {
        return (APicture.GetPixel(AX, AY) & 0x00FFFFFF) != (CBackground & 0x00FFFFFF);
    }
    // The first and last painted row of each column; (-1, -1) for an empty column.
    std::vector<std::pair<int32_t, int32_t>> Extents(const TQLBitmap& APicture) const
    {
        std::vector<std::pair<int32_t, int32_t>> Result;
        for (int32_t X = 0; X < Rect.Right; ++X) {
            int32_t Top = -1, Bottom = -1;
            for (int32_t Y = 0; Y < Rect.Bottom; ++Y)
                if (Painted(APicture, X, Y)) {
                    if (Top < 0)
                        Top = Y;
                    Bottom = Y;
                }
            Result.emplace_back(Top, Bottom);
        }
        return Result;
    }

    TRect Rect{0, 0, 500, 300};
    TPictureScope Scope;
    TQVScopeDataView View{&Scope};
};

} // namespace

TEST_F(ChannelPicture, DownsampledRampPaintsEachColumnsTwoPointsAndALineThroughThem)
{
    const int32_t N = 1000000;
    std::mt19937 Rng(11);
    std::normal_distribution<double> Noise(50.0, 6.0);
    std::vector<double> Y(N);
    // Spikes beyond the noise, all inside the Y axis' range, so that every extreme is on the
    // picture.
    for (int32_t j = 0; j < N; ++j)
        Y[size_t(j)] =
            std::clamp(Noise(Rng) + (j % 20011 == 0 ? 45.0 : 0.0) - (j % 30013 == 0 ? 45.0 : 0.0), 0.5, 99.5);
    Channel(0)->GetData()->AddYData(Y.data(), N);
    Scope.PopulateDrawBuffers();

    // Points: each column shows its two points, nothing else.
    Channel(0)->SetChannelMode(cmPoint);
    const TQLBitmap Down = Render(0);
    qvtest::KeepPicture(Down, "ChannelPictureDown.png");
    const IQVIntegerBuffer& PX = *Channel(0)->GetDownsampledIntDrawBufferX();
    const IQVIntegerBuffer& PY = *Channel(0)->GetDownsampledIntDrawBufferY();
    ASSERT_EQ(PY.GetSize(), 1000);
    std::vector<std::pair<int32_t, int32_t>> Expected(size_t(Rect.Right), {-1, -1});
    for (int32_t k = 0; k < PY.GetSize(); k += 2) {
        ASSERT_EQ(PX.GetItem(k), k / 2); // one column per pixel, left to right
        Expected[size_t(k / 2)] = std::minmax(PY.GetItem(k), PY.GetItem(k + 1));
    }
    const auto DownExtents = Extents(Down);
    EXPECT_EQ(DownExtents, Expected);
    int32_t Spikes = 0;
    for (const auto& [Top, Bottom] : DownExtents)
        Spikes += Top >= 0 && (Top < 45 || Bottom > 255) ? 1 : 0;
    EXPECT_GT(Spikes, 40); // the spikes reach past the noise, column by column

    // As a line, every row between a column's extremes is painted.
    Channel(0)->SetChannelMode(cmLine);
    const TQLBitmap Line = Render(0);
    for (int32_t Col = 0; Col < Rect.Right; ++Col) {
        const auto [Top, Bottom] = DownExtents[size_t(Col)];
        if (Top < 0)
            continue;
        for (int32_t Row = Top; Row <= Bottom; ++Row)
            ASSERT_TRUE(Painted(Line, Col, Row)) << "column " << Col << " row " << Row;
    }
}
