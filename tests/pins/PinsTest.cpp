// Connections between source and sink pins, what travels over them, and the block queue.
#include "qv/pins/QWPins.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

using namespace qv;

namespace {

// A sink that records the class of each operation it receives.
struct TRecorder {
    std::vector<std::string> Seen;
    std::vector<uint64_t> States;
    TQWDispatchProc Proc()
    {
        return [this](TQWPin*, TQVDataKind, const TQWOperation& AOperation, uint64_t AState) {
            if (dynamic_cast<const TQWStartOperation*>(&AOperation))
                Seen.push_back("start");
            else if (dynamic_cast<const TQWIgnoreStreamOperation*>(&AOperation))
                Seen.push_back("ignore");
            else if (dynamic_cast<const TQWSuppliedBufferOperation*>(&AOperation))
                Seen.push_back("block");
            else
                Seen.push_back("other");
            States.push_back(AState);
            return false;
        };
    }
};

std::shared_ptr<const IQVData> Reals(std::vector<double> AValues)
{
    return std::make_shared<TQVRealBuffer>(AValues.data(), int64_t(AValues.size()));
}

std::vector<double> Of(const IQVRealBuffer& ABuffer)
{
    return std::vector<double>(ABuffer.Read(), ABuffer.Read() + ABuffer.GetSize());
}

TEST(Pins, ConnectionsFollowTypesAndLifetimes)
{
    TRecorder Rec;
    auto YSink = std::make_shared<TQVQWComboRealIntComplexPairedQueuedSinkPin>(Rec.Proc());
    auto XSink = std::make_shared<TQVQWQueuedIntegerRealSinkPin>(Rec.Proc());
    TQWSourcePin Complex(dkComplex);
    Complex.Connect(*YSink);
    EXPECT_THROW(Complex.Connect(*XSink), std::invalid_argument);
    EXPECT_TRUE(YSink->IsConnected());
    EXPECT_FALSE(XSink->IsConnected());

    TQVQWQueuedIntegerRealSinkPin Unshared(Rec.Proc());
    TQWSourcePin Real(dkReal);
    EXPECT_THROW(Real.Connect(Unshared), std::invalid_argument);

    {
        // A sink has one source: connecting elsewhere leaves the first.
        TQWSourcePin Other(dkReal);
        Other.Connect(*YSink);
        EXPECT_FALSE(Complex.IsConnected());
        EXPECT_TRUE(Other.IsConnected());
    }
    EXPECT_FALSE(YSink->IsConnected()); // its source went away

    Real.Connect(*YSink);
    Real.Connect(*XSink);
    YSink.reset(); // a sink going away leaves its source
    Real.Notify(TQWStartOperation());
    EXPECT_EQ(Rec.Seen, std::vector<std::string>({"start"}));
    Real.Disconnect(*XSink);
    EXPECT_FALSE(Real.IsConnected());
    EXPECT_FALSE(XSink->IsConnected());
}

TEST(Pins, NotifyChecksBlocksAndQueriesAreAnsweredByIdleSources)
{
    TRecorder Rec;
    auto Sink = std::make_shared<TQVQWQueuedIntegerRealSinkPin>(Rec.Proc());
    TQWSourcePin Source(dkReal);
    Source.Connect(*Sink);

    const auto Ints = std::make_shared<TQVIntegerBuffer>(3u);
    EXPECT_THROW(Source.Notify(TQWSuppliedBufferOperation(Ints)), std::invalid_argument);
    EXPECT_THROW(Source.Notify(TQWSuppliedBufferPairOperation({Reals({1}), nullptr})), std::invalid_argument);
    EXPECT_THROW(TQWStartRateOperation(-1.0), std::invalid_argument);
    EXPECT_THROW(TQWStartSpectrumOperation(NAN), std::invalid_argument);
    EXPECT_TRUE(Rec.Seen.empty());

    Sink->Notify(TQWQueryStreamOperation()); // idle: nobody should wait for it
    Source.Notify(TQWStartRateOperation(100.0));
    EXPECT_TRUE(Source.GetStreaming());
    Sink->Notify(TQWQueryStreamOperation()); // streaming: no answer
    Source.Notify(TQWSuppliedBufferOperation(Reals({1, 2})));
    Source.Notify(TQWStopOperation());
    EXPECT_FALSE(Source.GetStreaming());
    EXPECT_EQ(Rec.Seen, std::vector<std::string>({"ignore", "start", "block", "other"}));
    EXPECT_EQ(Rec.States, std::vector<uint64_t>({0, 1, 2, 3}));

    Sink->Close();
    Source.Notify(TQWStartOperation());
    EXPECT_EQ(Rec.Seen.size(), 4u);
}

TEST(Pins, QueueTakesBlocksWholeOrStretched)
{
    TQWBlockQueue Queue;
    EXPECT_EQ(Queue.TakeNext(), nullptr);
    Queue.Append(TQVRealBuffer(std::vector<double>{0, 10, 20}.data(), 3));
    const int32_t Ints[] = {30, 40};
    Queue.Append(TQVIntegerBuffer(Ints, 2));
    EXPECT_THROW(Queue.Append(TQVBlockBuffer(4)), std::invalid_argument);
    EXPECT_EQ(Queue.GetTotalSize(), 5u);

    // Four samples across both blocks, stretched to seven by linear interpolation.
    Queue.SetStretchSize(4);
    EXPECT_EQ(Of(*Queue.StretchLoadBufferSize(7)), std::vector<double>({0, 5, 10, 15, 20, 25, 30}));
    EXPECT_EQ(Queue.GetNextBlockSize(), 1u); // the rest of the integer block
    const auto Rest = Queue.TakeNext();
    ASSERT_EQ(Rest->GetDataKind(), dkInteger);
    EXPECT_EQ(static_cast<const int32_t*>(Rest->ReadData())[0], 40);
    EXPECT_EQ(Queue.GetTotalSize(), 0u);

    // Nothing queued reads as missing values; a complex block stays complex.
    EXPECT_TRUE(std::isnan(Queue.StretchLoadBufferSize(2)->GetItem(1)));
    const std::complex<double> C[] = {{1, 2}};
    Queue.Append(TQVComplexBuffer(C, 1));
    EXPECT_EQ(Queue.TakeNext()->GetDataKind(), dkComplex);
}

} // namespace
