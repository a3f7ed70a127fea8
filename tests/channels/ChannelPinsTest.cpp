// Channels fed through their pins: stream starts, blocks and the size limit, complex and
// paired X data, and the wait that keeps synchronised channels together.
#include "ChannelTestSupport.h"

#include "qv/foundation/QLStoredForm.h"
#include "qv/pins/QWPins.h"

#include <algorithm>
#include <atomic>
#include <thread>

using namespace qv;
using namespace qvtest;

namespace {

using V = std::vector<double>;

std::shared_ptr<const IQVData> Block(const V& AValues)
{
    return std::make_shared<TQVRealBuffer>(AValues.data(), int64_t(AValues.size()));
}

class ChannelPins : public TChannelFixture {
protected:
    TQVScopeChannel* Channel1 = Scope.GetChannels()->Add();
    TQWSourcePin Source0{dkReal};
    TQWSourcePin Source1{dkReal};

    void SetUp() override
    {
        Source0.Connect(*Channel->GetInputPin());
        Source1.Connect(*Channel1->GetInputPin());
    }
    static void Send(TQWSourcePin& ASource, const V& AValues)
    {
        ASource.Notify(TQWSuppliedBufferOperation(Block(AValues)));
    }
    std::vector<double> DrawY1() const
    {
        return Read([&](double* P, int32_t N) { return Channel1->GetData()->GetDrawYData(P, N); });
    }
};

TEST_F(ChannelPins, ChannelsAreNamedAndRegisteredByTheirPins)
{
    EXPECT_EQ(Channel->GetName(), "Channel0");
    EXPECT_EQ(Channel1->GetName(), "Channel1");
    EXPECT_EQ(Scope.GetInputPins().Find("Channel1").get(), Channel1->GetInputPin());
    EXPECT_EQ(Scope.GetXInputPins().Find("Channel0").get(), Channel->GetXInputPin());

    Channel1->SetSynchronize(false);
    const TQLStoredNode Stored = QLSaveObject(*Channel1);
    ASSERT_NE(Stored.Find("Synchronize"), nullptr);
    EXPECT_EQ(QLSaveObject(*Channel).Find("Synchronize"), nullptr); // the default
    QLLoadObject(*Channel, Stored);
    EXPECT_FALSE(Channel->GetSynchronize());

    // A channel that goes takes its pins out of the lists and off their sources.
    const std::shared_ptr<TQWSinkPin> Pin = Scope.GetInputPins().Find("Channel1");
    Scope.GetChannels()->Delete(1);
    EXPECT_EQ(Scope.GetInputPins().GetCount(), 1);
    EXPECT_FALSE(Pin->IsConnected());
    Send(Source1, {1, 2}); // nothing listens
}

TEST_F(ChannelPins, SynchronisedChannelsAppearTogether)
{
    Source0.Notify(TQWStartOperation());
    Source1.Notify(TQWStartOperation());
    Send(Source0, {1, 2, 3});
    Send(Source0, {4, 5, 6}); // the queue is not drained: this block is lost
    Scope.RefreshView();
    EXPECT_TRUE(DrawY().empty());

    Send(Source1, {7, 8, 9});
    EXPECT_TRUE(DrawY().empty()); // the draw stage waits for the refresh
    Scope.RefreshView();
    EXPECT_EQ(DrawY(), V({1, 2, 3}));
    EXPECT_EQ(DrawY1(), V({7, 8, 9}));

    // A stopped stream holds nobody.
    Source1.Notify(TQWStopOperation());
    Send(Source0, {10, 11, 12});
    Scope.RefreshView();
    EXPECT_EQ(DrawY(), V({10, 11, 12}));
}

TEST_F(ChannelPins, UnsynchronisedOrHiddenChannelsNeitherHoldNorWait)
{
    Source0.Notify(TQWStartOperation());
    Source1.Notify(TQWStartOperation());
    Channel1->SetSynchronize(false);
    Send(Source1, {1});
    Send(Source0, {2});
    Scope.RefreshView();
    EXPECT_EQ(DrawY1(), V({1}));
    EXPECT_EQ(DrawY(), V({2}));

    Channel1->SetSynchronize(true);
    Channel1->SetVisible(false);
    Send(Source0, {3});
    Scope.RefreshView();
    EXPECT_EQ(DrawY(), V({3}));

    // A connected source that has not started holds nobody either: a start asks it.
    Channel1->SetVisible(true);
    TQWSourcePin Idle(dkReal);
    Idle.Connect(*Channel1->GetInputPin());
    Source0.Notify(TQWStartOperation());
    Send(Source0, {4});
    Scope.RefreshView();
    EXPECT_EQ(DrawY(), V({4}));
}

TEST_F(ChannelPins, StartsSetRateAndDomain)
{
    TQVScopeXAxis* Axis = Scope.GetXAxis();
    Source0.Notify(TQWStartRateOperation(500.0));
    EXPECT_EQ(Data->GetSampleRate(), 500.0);
    EXPECT_EQ(Axis->GetSampleRate(), 500.0);
    Source0.Notify(TQWStartOperation());
    EXPECT_EQ(Data->GetSampleRate(), 10000.0);
    EXPECT_EQ(Axis->GetSampleRate(), 10000.0);
    EXPECT_FALSE(Axis->InFreqAxis());

    Source0.Notify(TQWStartSpectrumOperation(2000.0));
    EXPECT_TRUE(Channel->GetFrequencyDomain());
    EXPECT_TRUE(Axis->InFreqAxis());
    Source0.Notify(TQWStartIntensityOperation(2000.0));
    EXPECT_FALSE(Channel->GetFrequencyDomain());
    EXPECT_TRUE(Channel->GetIntensityDomain());
    Source0.Notify(TQWStartOperation());
    EXPECT_FALSE(Channel->GetIntensityDomain());
    EXPECT_FALSE(Axis->InFreqAxis());
}

TEST_F(ChannelPins, BlocksReplaceOrAccumulateUnderTheSizeLimit)
{
    Channel1->SetVisible(false);
    Source0.Notify(TQWStartOperation());
    Send(Source0, {1, 2, 3, 4});
    Send(Source0, {5, 6, 7});
    EXPECT_EQ(Y(), V({5, 6, 7}));
    EXPECT_EQ(X(), V({0, 1, 2}));

    Scope.SetSizeLimit(5);
    Send(Source0, {8, 9});
    Send(Source0, {10, 11, 12, 13, 14, 15}); // above the limit: the newest five
    EXPECT_EQ(Y(), V({11, 12, 13, 14, 15}));
    Send(Source0, {16, 17});
    EXPECT_EQ(Y(), V({13, 14, 15, 16, 17}));
    EXPECT_EQ(X(), V({0, 1, 2, 3, 4})); // X restarts at 0

    // Single values arrive as points; complex ones as X and Y.
    Source0.Notify(TQWSuppliedIntegerOperation(18));
    Source0.Notify(TQWSuppliedRealComplexOperation({40.0, 19.0}));
    EXPECT_EQ(Y(), V({15, 16, 17, 18, 19}));
    EXPECT_EQ(X().back(), 40.0);
}

TEST_F(ChannelPins, ComplexBlocksAndPairsCarryTheirOwnX)
{
    Channel1->SetVisible(false);
    TQWSourcePin Complex(dkComplex);
    Complex.Connect(*Channel->GetInputPin());
    Complex.Notify(TQWStartOperation());
    const std::complex<double> Values[] = {{1, 2}, {3, 4}, {5, 6}};
    Complex.Notify(TQWSuppliedBufferOperation(std::make_shared<TQVComplexBuffer>(Values, 3)));
    EXPECT_EQ(X(), V({1, 3, 5}));
    EXPECT_EQ(Y(), V({2, 4, 6}));
    EXPECT_FALSE(Channel->GetIsRamp());

    Source0.Connect(*Channel->GetInputPin());
    Source0.Notify(TQWSuppliedBufferPairOperation({Block({7, 8}), Block({9, 10})}));
    EXPECT_EQ(X(), V({7, 8}));
    EXPECT_EQ(Y(), V({9, 10}));
    EXPECT_TRUE(Channel->GetInAxisDomain());
}

TEST_F(ChannelPins, XPinValuesAreStretchedToTheirYBlock)
{
    Channel1->SetVisible(false);
    TQWSourcePin XSource(dkReal);
    XSource.Connect(*Channel->GetXInputPin());
    XSource.Notify(TQWStartSampleRateOperation(500.0));
    Source0.Notify(TQWStartRateOperation(1000.0));
    EXPECT_TRUE(Channel->GetInAxisDomain());

    // Ten Y samples at 1000/s span five X values at 500/s.
    XSource.Notify(TQWSuppliedBufferOperation(Block({0, 9, 18, 27, 36, 45, 54})));
    Send(Source0, Seq(100, 10));
    EXPECT_EQ(X(), V({0, 4, 8, 12, 16, 20, 24, 28, 32, 36}));
    EXPECT_EQ(Y(), Seq(100, 10));

    // The next block waits for X values it has not got yet.
    Send(Source0, Seq(200, 10));
    EXPECT_EQ(Y(), Seq(100, 10));
    EXPECT_EQ(Channel->GetXInputPin()->GetQueue().GetTotalSize(), 2u);

    // Without an X stream the channel plots against the sample number.
    XSource.Notify(TQWStopOperation());
    Source0.Notify(TQWStopOperation()); // drops the waiting block
    Source0.Notify(TQWStartOperation());
    EXPECT_FALSE(Channel->GetInAxisDomain());
    Send(Source0, {1, 2});
    EXPECT_EQ(X(), V({0, 1}));
}

TEST_F(ChannelPins, TwoThreadsFeedTwoSynchronisedChannels)
{
    Source0.Notify(TQWStartOperation());
    Source1.Notify(TQWStartOperation());
    std::atomic<int> Running{2};
    auto Feed = [&](TQWSourcePin& ASource, double ABase) {
        for (int i = 0; i < 300; ++i)
            Send(ASource, V(16, ABase + i));
        --Running;
    };
    std::thread A(Feed, std::ref(Source0), 0.0);
    std::thread B(Feed, std::ref(Source1), 1000.0);
    // Each refresh sees whole blocks: sixteen equal samples of the right stream.
    auto Check = [](const V& AValues, double ABase) {
        if (AValues.empty())
            return;
        ASSERT_EQ(AValues.size(), 16u);
        EXPECT_EQ(std::count(AValues.begin(), AValues.end(), AValues[0]), 16);
        EXPECT_GE(AValues[0], ABase);
        EXPECT_LT(AValues[0], ABase + 300);
    };
    while (Running > 0) {
        Scope.RefreshView();
        Check(DrawY(), 0.0);
        Check(DrawY1(), 1000.0);
    }
    A.join();
    B.join();
    Scope.RefreshView();
    Check(DrawY(), 0.0);
    Check(DrawY1(), 1000.0);
    EXPECT_FALSE(DrawY().empty());
}

} // namespace
