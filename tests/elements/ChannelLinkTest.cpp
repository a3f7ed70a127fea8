// Channel links: the fill between two channels, the ends moving when a channel goes, and
// what the zone and cursor links read out for the host.
#include "elements/ElementTestSupport.h"

#include <atomic>
#include <thread>

using namespace qv;
using namespace qvtest;

namespace {
class ChannelLinks : public TElementFixture {
protected:
    // A channel of ACount samples, all at AValue.
    TQVScopeChannel* AddFlat(int32_t ACount, double AValue)
    {
        TQVScopeChannel* C = Scope.GetChannels()->Add();
        std::vector<double> Samples(size_t(ACount), AValue);
        C->GetData()->AddYData(Samples.data(), uint32_t(Samples.size()));
        Scope.RefreshView();
        return C;
    }
    TQVScopeChannel* Channel(int32_t AIndex) { return Scope.GetChannels()->GetItem(AIndex); }
    // Where the channel plotted sample AIndex in the last frame.
    static TPoint Plotted(const TQVScopeChannel* AChannel, int32_t AIndex)
    {
        return TPoint{AChannel->GetDownsampledIntDrawBufferX()->GetItem(AIndex),
                      AChannel->GetDownsampledIntDrawBufferY()->GetItem(AIndex)};
    }
};
} // namespace

TEST_F(ChannelLinks, FillsAroundBothChannelsOrBarsUpToTheShorterOne)
{
    TQVScopeChannel* Flat = AddFlat(41, 50.0);
    TQVDisplayChannelLink* Link = Scope.GetChannelLinks()->Add(Channel(0), Flat);
    Link->GetBrush()->SetColor(0xFF123456);
    EXPECT_EQ(Link->GetName(), "ChannelLink1");
    struct TCase {
        TQVScopeChannelLinkMode Mode;
        TQVDisplayChannel* Second;
        size_t Polygons, Bars;
    };
    const TCase Cases[] = {{clmZone, Flat, 1, 0}, {clmBar, Flat, 0, 41}, {clmZone, Channel(0), 0, 0}};
    for (const TCase& C : Cases) {
        Link->SetChannelLinkMode(C.Mode);
        Link->SetSecondChannel(C.Second);
        Paint();
        const auto Fills = Canvas.Of("Polygon");
        std::vector<TQLCanvasRecord> Bars;
        for (const TQLCanvasRecord& R : Canvas.Of("Rectangle"))
            if (R.BrushColor == 0xFF123456u)
                Bars.push_back(R);
        EXPECT_EQ(Fills.size(), C.Polygons) << int(C.Mode);
        EXPECT_EQ(Bars.size(), C.Bars) << int(C.Mode);
        if (!Fills.empty()) {
            // Along the ramp, then back along the flat channel from its last sample.
            const std::vector<TPoint> P = Fills[0].ArgPoints();
            ASSERT_EQ(P.size(), 101u + 41u);
            EXPECT_EQ(P[0], Plotted(Channel(0), 0));
            EXPECT_EQ(P[100], Plotted(Channel(0), 100));
            EXPECT_EQ(P[101], Plotted(Flat, 40));
            EXPECT_EQ(P.back(), Plotted(Flat, 0));
        }
        if (!Bars.empty()) {
            // Bar 10 joins sample 10 of each channel, 5 pixels wide round the sample.
            const TRect R = Bars[10].ArgRect();
            const TPoint A = Plotted(Channel(0), 10), B = Plotted(Flat, 10);
            EXPECT_EQ(R, (TRect{A.X - 2, B.Y, A.X + 3, A.Y}));
        }
    }
}

TEST_F(ChannelLinks, AnEndMovesToTheNextChannelButNeverToTheOneGoingOrTheOtherEnd)
{
    // Channels named by their first index; ends as indexes after the removal, -1 for empty.
    struct TCase {
        int32_t Channels, First, Second, Removed;
        bool Delete;
        int32_t NewFirst, NewSecond;
    };
    const TCase Cases[] = {
        {3, 0, 1, 0, true, 1, 0},  // first end: channel 1 is the other end, so channel 2 (now 1)
        {2, 0, 1, 1, true, 0, -1}, // no other channel left for the second end
        {2, 0, 0, 0, true, 0, -1}, // both ends on the one going: the first takes the other
        {3, 0, 1, 1, false, 0, 2}, // removed while still listed: the next after it
        {3, 2, 1, 2, false, 0, 1}, // round to the first
    };
    for (const TCase& C : Cases) {
        TQVScope S;
        while (S.GetChannels()->GetCount() < C.Channels)
            S.GetChannels()->Add();
        TQVDisplayChannelLink* Link = S.GetChannelLinks()->Add();
        Link->SetFirstChannelIndex(C.First);
        Link->SetSecondChannelIndex(C.Second);
        TQVScopeChannel* Going = S.GetChannels()->GetItem(C.Removed);
        if (C.Delete)
            S.GetChannels()->Delete(C.Removed);
        else
            Link->RemoveChannel(Going);
        EXPECT_EQ(Link->GetFirstChannelIndex(), C.NewFirst) << C.Channels << C.First << C.Second << C.Removed;
        EXPECT_EQ(Link->GetSecondChannelIndex(), C.NewSecond) << C.Channels << C.First << C.Second << C.Removed;
        EXPECT_NE(Link->GetFirstChannel(), Going);
        EXPECT_NE(Link->GetSecondChannel(), Going);
    }
    TQVScope S;
    EXPECT_THROW(S.GetChannelLinks()->Add()->SetFirstChannelIndex(1), std::out_of_range);
}

TEST_F(ChannelLinks, AZoneLinkListsTheSamplesInsideAndItsSnapshotKeepsThem)
{
    TQVDisplayZone* Z = Scope.GetZones()->Add();
    for (const auto& [X, Y] :
         {std::pair{20.5, 0.0}, std::pair{30.5, 0.0}, std::pair{30.5, 100.0}, std::pair{20.5, 100.0}})
        Z->GetPoints()->Add(X, Y);
    TQVDisplayZoneChannelLink* Link = Z->GetChannels()->Add();
    EXPECT_EQ(Link->GetData()->GetDataSnapshot(), nullptr);
    EXPECT_EQ(Link->GetData()->GetSize(), 0);
    Link->SetChannel(Channel(0));
    // The box holds samples 21..30 of the ramp.
    const std::vector<uint32_t> Expected = {21, 22, 23, 24, 25, 26, 27, 28, 29, 30};
    EXPECT_EQ(Link->GetData()->GetDataIndexes(), Expected);
    EXPECT_EQ(Link->GetData()->GetDrawDataIndexes(), Expected);
    std::vector<uint32_t> Raw(size_t(Link->GetData()->GetSize()));
    Link->GetData()->GetDataIndexes(Raw.data());
    EXPECT_EQ(Raw, Expected);
    EXPECT_THROW(Link->GetData()->GetDataIndexes(nullptr), std::invalid_argument);

    const auto Snap = Link->GetData()->GetDataSnapshot();
    Channel(0)->GetData()->Clear();
    Channel(0)->GetData()->AddYPoint(25.0);
    const auto I = Snap->GetIndexData();
    EXPECT_EQ(std::vector<int32_t>(I->Read(), I->Read() + I->GetSize()),
              std::vector<int32_t>(Expected.begin(), Expected.end()));
    EXPECT_EQ(Snap->GetYData()->GetSize(), 101);
    EXPECT_EQ(Snap->GetYData()->Read()[21], 21.0);
    EXPECT_TRUE(Link->GetData()->GetDataIndexes().empty());
}

TEST_F(ChannelLinks, AZoneSnapshotTakenWhileAProducerAddsSamplesAgreesWithItsSamples)
{
    TQVDisplayEllipticZone* E = Scope.GetEllipses()->Add();
    E->GetPoint1()->SetX(0);
    E->GetPoint1()->SetY(0);
    E->GetPoint2()->SetX(1e9);
    E->GetPoint2()->SetY(100);
    TQVDisplayZoneChannelLink* Link = E->GetChannels()->Add();
    Link->SetChannel(Channel(0));
    // A bounded record, fed in blocks that leave the lock to the reader between them.
    Scope.SetSizeLimit(20000);
    std::atomic<bool> Stop{false};
    std::thread Producer([&] {
        std::vector<double> Block(100);
        for (int32_t i = 0; !Stop.load(); ++i) {
            for (size_t j = 0; j < Block.size(); ++j)
                Block[j] = double((i + int32_t(j)) % 200);
            Channel(0)->GetData()->AddYData(Block.data(), uint32_t(Block.size()));
            std::this_thread::yield();
        }
    });
    for (int32_t k = 0; k < 200; ++k) {
        const auto Snap = Link->GetData()->GetDataSnapshot();
        const auto X = Snap->GetXData(), Y = Snap->GetYData();
        const auto I = Snap->GetIndexData();
        int32_t Inside = 0;
        for (int32_t i = 0; i < std::min(X->GetSize(), Y->GetSize()); ++i)
            Inside += E->PointInZone(X->Read()[i], Y->Read()[i]) ? 1 : 0;
        ASSERT_EQ(I->GetSize(), Inside);
        for (int32_t j = 0; j < I->GetSize(); ++j)
            ASSERT_TRUE(E->PointInZone(X->Read()[I->Read()[j]], Y->Read()[I->Read()[j]]));
    }
    Stop = true;
    Producer.join();
}

TEST_F(ChannelLinks, ACursorLinkReadsItsCrossingsFromTheLastFrame)
{
    Scope.ZoomTo(50.0, 100.0, 0.0, 100.0, false);
    TQVScopeCursor* C = AddCursor(ckBoth, 60.25, 70.5);
    TQVDisplayCursorChannelLink* Link = C->GetChannels()->Add();
    EXPECT_EQ(Link->GetData()->GetDrawDataSnapshot(), nullptr);
    EXPECT_EQ(Link->GetData()->GetVerticalDrawSize(), 0);
    Link->SetChannel(Channel(0));
    Paint();
    // Positions index the whole draw stage, not the slice on screen.
    EXPECT_EQ(Link->GetData()->GetVerticalDrawDataIndexes(), std::vector<double>{60.25});
    EXPECT_EQ(Link->GetData()->GetHorizontalDrawDataIndexes(), std::vector<double>{70.5});
    const auto Snap = Link->GetData()->GetDrawDataSnapshot();
    ASSERT_NE(Snap, nullptr);
    EXPECT_EQ(Snap->GetVerticalIntersectIndexData()->GetItem(0), 60.25);
    EXPECT_EQ(Snap->GetVerticalYIntersectData()->GetItem(0), 60.25);
    EXPECT_EQ(Snap->GetHorizontalXIntersectData()->GetItem(0), 70.5);
    EXPECT_EQ(Snap->GetYData()->GetSize(), 101);
}
