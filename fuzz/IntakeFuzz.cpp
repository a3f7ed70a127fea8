// Fuzzes the entries that take a buffer and a count: the input is a little program of channel
// calls (every element type, Set and Add forms, points, separations), size limits, refresh
// ticks, zooms and paints. Counts never exceed the bytes that follow, so every call is a valid
// use of the interface; what the library does with any such sequence must not crash, trip a
// sanitizer, or break the draw stage's invariants.
#include "qv/QVScope.h"
#include "support/RecordingCanvas.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

using namespace qv;

namespace {

class TReader {
public:
    TReader(const uint8_t* AData, size_t ASize) : FData(AData), FLeft(ASize) {}
    bool Empty() const { return FLeft == 0; }
    uint8_t Byte()
    {
        if (FLeft == 0)
            return 0;
        --FLeft;
        return *FData++;
    }
    uint32_t Count(uint32_t AMax)
    {
        const uint32_t V = uint32_t(Byte()) | uint32_t(Byte()) << 8;
        return AMax == 0 ? 0 : V % (AMax + 1);
    }
    // ACount values of T taken from the input, zero-filled where it runs out.
    template <class T>
    std::vector<T> Values(uint32_t ACount)
    {
        std::vector<T> Result(ACount);
        const size_t Bytes = std::min(FLeft, size_t(ACount) * sizeof(T));
        if (Bytes == 0) // an empty vector's data() may be null, which memcpy does not take
            return Result;
        std::memcpy(Result.data(), FData, Bytes);
        FData += Bytes;
        FLeft -= Bytes;
        return Result;
    }

private:
    const uint8_t* FData;
    size_t FLeft;
};

template <class T>
void Feed(TQVChannelData& AData, TReader& AIn, uint8_t AOp)
{
    const uint32_t N = AIn.Count(512);
    const std::vector<T> Y = AIn.Values<T>(N);
    const std::vector<T> X = AIn.Values<T>(N);
    const bool Separate = AOp & 0x80;
    switch (AOp % 4) {
    case 0: AData.AddYData(Y.data(), N, Separate); break;
    case 1: AData.AddXYData(X.data(), Y.data(), N, Separate); break;
    case 2: AData.SetYData(Y.data(), N); break;
    default: AData.SetXYData(X.data(), Y.data(), N); break;
    }
}

// One scope serves every input: building a display costs far more than most inputs do, and a
// long-lived scope that takes sequence after sequence is how hosts use it. Each input starts
// from the same state: two new channels with their default settings, the size limit of a
// fresh scope and the zoom off. The inputs touch no other setting and never undo a zoom, so
// nothing an earlier input did plays a part (reloading every setting per input would cost a
// third of the run).
TQVScope& FreshScope()
{
    static TQVScope Scope;
    static const uint32_t FreshLimit = [] {
        Scope.SetBounds(0, 0, 160, 100);
        Scope.GetLegend()->SetVisible(false); // the legend reads no samples; its paint is a tenth of a run
        return Scope.GetSizeLimit();
    }();
    Scope.GetChannels()->Clear();
    Scope.GetChannels()->Add();
    Scope.GetChannels()->Add();
    Scope.SetSizeLimit(FreshLimit);
    Scope.ZoomOff();
    Scope.RefreshView();
    return Scope;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* AData, size_t ASize)
{
    TReader In(AData, ASize);
    TQVScope& Scope = FreshScope();
    static TQLBitmap Bitmap(160, 100);
    for (int Steps = 0; !In.Empty() && Steps < 64; ++Steps) {
        const uint8_t Op = In.Byte();
        TQVChannelData& Data = *Scope.GetChannels()->GetItem(Op & 1)->GetData();
        switch ((Op >> 1) % 12) {
        case 0: Feed<double>(Data, In, In.Byte()); break;
        case 1: Feed<float>(Data, In, In.Byte()); break;
        case 2: Feed<int16_t>(Data, In, In.Byte()); break;
        case 3: Feed<uint64_t>(Data, In, In.Byte()); break;
        case 4: Data.AddYPoint(In.Values<double>(1)[0], In.Byte() & 1); break;
        case 5: {
            const std::vector<double> P = In.Values<double>(2);
            Data.AddXYPoint(P[0], P[1], In.Byte() & 1);
            break;
        }
        case 6: Scope.SetSizeLimit(In.Count(2000)); break;
        case 7: Data.Clear(); break;
        case 8: Scope.RefreshView(); break;
        case 9: {
            const std::vector<double> W = In.Values<double>(4);
            try {
                Scope.ZoomTo(W[0], W[1], W[2], W[3]);
            } catch (const std::invalid_argument&) { // limits that are not finite numbers
            }
            break;
        }
        case 10: Scope.ZoomOff(); break;
        default: {
            Scope.RefreshView();
            TQLRecordingCanvas Canvas;
            Scope.PaintToCanvas(Bitmap, Canvas, false);
            break;
        }
        }
        const uint32_t Limit = Scope.GetSizeLimit();
        if (Limit != 0 && uint32_t(Data.GetSize()) > Limit)
            std::abort(); // the data stage outgrew the size limit
    }
    Scope.RefreshView();
    TQLRecordingCanvas Canvas;
    Scope.PaintToCanvas(Bitmap, Canvas, false);
    return 0;
}
