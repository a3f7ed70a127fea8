#include "qv/elements/QVChannelLinkData.h"

#include "qv/axes/QVDisplayAxis.h"
#include "qv/axes/QVScopeXAxis.h"
#include "qv/axes/QVScopeYAxis.h"
#include "qv/channels/QVScopeChannel.h"
#include "qv/elements/QVDisplayCursor.h"
#include "qv/elements/QVDisplayZone.h"
#include "qv/elements/QVElementChannelLink.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>
#include <string>

namespace qv {

namespace {

class TQVZoneSnapshot final : public IQVZoneChannelDataSnapshot {
public:
    TQVZoneSnapshot(std::shared_ptr<IQVChannelDataSnapshot> AData, std::shared_ptr<TQVIntegerBuffer> AIndexes)
        : FData(std::move(AData)), FIndexes(std::move(AIndexes))
    {}
    std::shared_ptr<IQVRealBuffer> GetXData() const override { return FData->GetXData(); }
    std::shared_ptr<IQVRealBuffer> GetYData() const override { return FData->GetYData(); }
    // A buffer object of its own each time, so that a caller writing to it leaves the
    // snapshot as it was.
    std::shared_ptr<IQVIntegerBuffer> GetIndexData() const override
    {
        return std::make_shared<TQVIntegerBuffer>(*FIndexes);
    }

private:
    const std::shared_ptr<IQVChannelDataSnapshot> FData;
    const std::shared_ptr<TQVIntegerBuffer> FIndexes;
};

std::shared_ptr<IQVRealBuffer> RealBufferOf(const std::vector<double>& AValues)
{
    return std::make_shared<TQVRealBuffer>(AValues.data(), int64_t(AValues.size()));
}

class TQVCursorSnapshot final : public IQVCursorChannelDataSnapshot {
public:
    using TLine = std::array<std::shared_ptr<IQVRealBuffer>, 3>;
    TQVCursorSnapshot(std::shared_ptr<IQVChannelDataSnapshot> AData, TLine AVertical, TLine AHorizontal)
        : FData(std::move(AData)), FVertical(std::move(AVertical)), FHorizontal(std::move(AHorizontal))
    {}
    std::shared_ptr<IQVRealBuffer> GetXData() const override { return FData->GetXData(); }
    std::shared_ptr<IQVRealBuffer> GetYData() const override { return FData->GetYData(); }
    std::shared_ptr<IQVRealBuffer> GetVerticalIntersectIndexData() const override { return Copy(FVertical[0]); }
    std::shared_ptr<IQVRealBuffer> GetVerticalXIntersectData() const override { return Copy(FVertical[1]); }
    std::shared_ptr<IQVRealBuffer> GetVerticalYIntersectData() const override { return Copy(FVertical[2]); }
    std::shared_ptr<IQVRealBuffer> GetHorizontalIntersectIndexData() const override { return Copy(FHorizontal[0]); }
    std::shared_ptr<IQVRealBuffer> GetHorizontalXIntersectData() const override { return Copy(FHorizontal[1]); }
    std::shared_ptr<IQVRealBuffer> GetHorizontalYIntersectData() const override { return Copy(FHorizontal[2]); }

private:
    static std::shared_ptr<IQVRealBuffer> Copy(const std::shared_ptr<IQVRealBuffer>& ABuffer)
    {
        return std::make_shared<TQVRealBuffer>(*ABuffer);
    }

    const std::shared_ptr<IQVChannelDataSnapshot> FData;
    const TLine FVertical;
    const TLine FHorizontal;
};

template <class T>
void CopyInto(const char* AOperation, const std::vector<T>& AValues, T* ADest)
{
    if (AValues.empty())
        return;
    if (!ADest)
        throw std::invalid_argument(std::string(AOperation) + ": null destination for " +
                                    std::to_string(AValues.size()) + " entries");
    std::memcpy(ADest, AValues.data(), AValues.size() * sizeof(T));
}

} // namespace

// ---- Zone link data ----

std::shared_ptr<IQVZoneChannelDataSnapshot> TQVDisplayZoneChannelLinkData::Take(bool ADrawStage) const
{
    auto* Channel = dynamic_cast<TQVScopeChannel*>(FChannelLink->GetChannel());
    const TQVBasicDisplayZone* Zone = FChannelLink->GetZone();
    if (!Channel || !Zone)
        return nullptr;
    // The snapshot shares the stage's samples as they stand, so the walk over it needs no
    // lock and the indexes agree with the samples handed out.
    std::shared_ptr<IQVChannelDataSnapshot> Data =
        ADrawStage ? Channel->GetData()->GetDrawDataSnapshot() : Channel->GetData()->GetDataSnapshot();
    const std::shared_ptr<IQVRealBuffer> X = Data->GetXData();
    const std::shared_ptr<IQVRealBuffer> Y = Data->GetYData();
    const int32_t n = std::min(X->GetSize(), Y->GetSize());
    const double* XS = X->Read();
    const double* YS = Y->Read();
    std::vector<int32_t> Inside;
    for (int32_t i = 0; i < n; ++i)
        if (Zone->PointInZone(XS[i], YS[i]))
            Inside.push_back(i);
    return std::make_shared<TQVZoneSnapshot>(std::move(Data),
                                             std::make_shared<TQVIntegerBuffer>(Inside.data(), int64_t(Inside.size())));
}

namespace {
std::vector<uint32_t> IndexesOf(const std::shared_ptr<IQVZoneChannelDataSnapshot>& ASnapshot)
{
    if (!ASnapshot)
        return {};
    const std::shared_ptr<IQVIntegerBuffer> I = ASnapshot->GetIndexData();
    return std::vector<uint32_t>(I->Read(), I->Read() + I->GetSize());
}
} // namespace

int32_t TQVDisplayZoneChannelLinkData::GetSize() const
{
    return int32_t(GetDataIndexes().size());
}

void TQVDisplayZoneChannelLinkData::GetDataIndexes(uint32_t* AIndexes) const
{
    CopyInto("TQVDisplayZoneChannelLinkData.GetDataIndexes", GetDataIndexes(), AIndexes);
}

std::vector<uint32_t> TQVDisplayZoneChannelLinkData::GetDataIndexes() const
{
    return IndexesOf(Take(false));
}

int32_t TQVDisplayZoneChannelLinkData::GetDrawSize() const
{
    return int32_t(GetDrawDataIndexes().size());
}

void TQVDisplayZoneChannelLinkData::GetDrawDataIndexes(uint32_t* AIndexes) const
{
    CopyInto("TQVDisplayZoneChannelLinkData.GetDrawDataIndexes", GetDrawDataIndexes(), AIndexes);
}

std::vector<uint32_t> TQVDisplayZoneChannelLinkData::GetDrawDataIndexes() const
{
    return IndexesOf(Take(true));
}

std::shared_ptr<IQVZoneChannelDataSnapshot> TQVDisplayZoneChannelLinkData::GetDataSnapshot() const
{
    return Take(false);
}

std::shared_ptr<IQVZoneChannelDataSnapshot> TQVDisplayZoneChannelLinkData::GetDrawDataSnapshot() const
{
    return Take(true);
}

// ---- Cursor link data ----

bool TQVDisplayCursorChannelLinkData::Cross(bool AVertical, TCrossings& AResult) const
{
    const TQVDisplayChannel* Channel = FChannelLink->GetChannel();
    const TQVDisplayCursor* Cursor = FChannelLink->GetCursor();
    if (!Channel || !Cursor)
        return false;
    const TQVDisplayAxis* Axis = AVertical ? static_cast<const TQVDisplayAxis*>(Channel->GetXAxis())
                                           : static_cast<const TQVDisplayAxis*>(Channel->GetYAxis());
    if (!Axis)
        return false;
    // The cursor stands in printed units; the channel is crossed in data units.
    const double Value =
        Axis->ScaleTickToData(AVertical ? Cursor->GetPosition()->GetX() : Cursor->GetPosition()->GetY());
    // Crossings count from the start of the frame's slice; the host indexes the whole stage.
    const double Start = Channel->GetScreenStartIndex();
    const auto Add = [&](void*, int32_t, int32_t, double APosition, double AXValue, double AYValue, bool) {
        AResult.Position.push_back(APosition + Start);
        AResult.X.push_back(AXValue);
        AResult.Y.push_back(AYValue);
    };
    TQWCriticalSectionLock Lock(Channel->GetDrawCriticalSection());
    if (AVertical)
        Channel->CalcVIntersections(Add, nullptr, Value);
    else
        Channel->CalcHIntersections(Add, nullptr, Value);
    return true;
}

int32_t TQVDisplayCursorChannelLinkData::GetVerticalDrawSize() const
{
    return int32_t(GetVerticalDrawDataIndexes().size());
}

void TQVDisplayCursorChannelLinkData::GetVerticalDrawDataIndexes(double* AIndexes) const
{
    CopyInto("TQVDisplayCursorChannelLinkData.GetVerticalDrawDataIndexes", GetVerticalDrawDataIndexes(), AIndexes);
}

std::vector<double> TQVDisplayCursorChannelLinkData::GetVerticalDrawDataIndexes() const
{
    TCrossings C;
    Cross(true, C);
    return std::move(C.Position);
}

int32_t TQVDisplayCursorChannelLinkData::GetHorizontalDrawSize() const
{
    return int32_t(GetHorizontalDrawDataIndexes().size());
}

void TQVDisplayCursorChannelLinkData::GetHorizontalDrawDataIndexes(double* AIndexes) const
{
    CopyInto("TQVDisplayCursorChannelLinkData.GetHorizontalDrawDataIndexes", GetHorizontalDrawDataIndexes(), AIndexes);
}

std::vector<double> TQVDisplayCursorChannelLinkData::GetHorizontalDrawDataIndexes() const
{
    TCrossings C;
    Cross(false, C);
    return std::move(C.Position);
}

std::shared_ptr<IQVCursorChannelDataSnapshot> TQVDisplayCursorChannelLinkData::GetDrawDataSnapshot() const
{
    auto* Channel = dynamic_cast<TQVScopeChannel*>(FChannelLink->GetChannel());
    if (!Channel || !FChannelLink->GetCursor())
        return nullptr;
    // One hold of the draw section: the crossings and the samples come from the same stage.
    TQWCriticalSectionLock Lock(Channel->GetDrawCriticalSection());
    TCrossings V, H;
    Cross(true, V);
    Cross(false, H);
    return std::make_shared<TQVCursorSnapshot>(
        Channel->GetData()->GetDrawDataSnapshot(),
        TQVCursorSnapshot::TLine{RealBufferOf(V.Position), RealBufferOf(V.X), RealBufferOf(V.Y)},
        TQVCursorSnapshot::TLine{RealBufferOf(H.Position), RealBufferOf(H.X), RealBufferOf(H.Y)});
}

} // namespace qv
