// Channel markers and the collection a channel keeps them in.
#include "qv/channels/QVScopeChannelMarker.h"

#include "qv/axes/QVScopeXAxis.h"
#include "qv/axes/QVScopeYAxis.h"
#include "qv/channels/QVChannelData.h"
#include "qv/channels/QVChannelPlot.h"
#include "qv/channels/QVScopeChannel.h"
#include "qv/channels/QVScopeOwner.h"
#include "qv/foundation/QLClassBuilder.h"

#include <algorithm>
#include <cmath>

namespace qv {

namespace {

// The scope's marker groups, as the channel that owns AChannelMarkers sees them.
TQLCollection* MarkerGroupsOf(const TQVScopeChannel* AChannel)
{
    TQVScopeOwner* Scope = AChannel ? AChannel->GetScope() : nullptr;
    return Scope ? Scope->GetMarkerGroupCollection() : nullptr;
}

} // namespace

// ---- TQVScopeChannelMarker ----

TQVScopeChannelMarker::TQVScopeChannelMarker(TQLCollection* ACollection) : TQVBasicDisplayMarker(ACollection)
{
    if (TQVScopeChannel* Channel = GetChannel())
        FChannelIndex = Channel->GetIndex();
}

TQVScopeChannel* TQVScopeChannelMarker::GetChannel() const
{
    auto* Markers = dynamic_cast<TQVScopeChannelMarkers*>(GetCollection());
    return Markers ? Markers->GetChannel() : nullptr;
}

void TQVScopeChannelMarker::SetPosition(double AValue)
{
    Set(FPosition, AValue, [this] { InvalidateItem(); });
}

int32_t TQVScopeChannelMarker::GetMarkerGroupIndex() const
{
    TQLCollection* Groups = MarkerGroupsOf(GetChannel());
    return Groups && GetGroup() ? Groups->IndexOfItem(GetGroup()) : -1;
}

void TQVScopeChannelMarker::SetGroupIndex(int32_t AValue)
{
    auto Guard = GetLock()->AcquireWrite();
    TQLCollection* Groups = MarkerGroupsOf(GetChannel());
    if (!Groups)
        return;
    if (AValue >= Groups->GetCount())
        AValue = Groups->GetCount() - 1;
    if (AValue < 0)
        return;
    SetGroup(static_cast<TQVDisplayMarkerGroup*>(Groups->GetBaseItem(AValue)));
}

void TQVScopeChannelMarker::BeginDrag()
{
    FDragging = true;
    FDragPosition = FPosition;
}

void TQVScopeChannelMarker::EndDrag(bool ACommit)
{
    if (!FDragging)
        return;
    FDragging = false;
    double Old = FPosition;
    double New = FDragPosition;
    if (!ACommit || std::isnan(New) || New == Old) {
        InvalidateItem();
        return;
    }
    SetPosition(New);
    if (FOnDragged)
        FOnDragged(this, Old, New);
}

bool TQVScopeChannelMarker::GetInDragging() const
{
    return FDragging && !(FDragPosition == FPosition);
}

void TQVScopeChannelMarker::Assign(const TQLPersistent* ASource)
{
    TQVBasicDisplayMarker::Assign(ASource);
    if (const auto* Source = dynamic_cast<const TQVScopeChannelMarker*>(ASource))
        SetGroupIndex(Source->GetMarkerGroupIndex());
}

TQVDisplayAxis* TQVScopeChannelMarker::GetLabelXAxis() const
{
    TQVScopeChannel* Channel = GetChannel();
    return Channel ? static_cast<TQVDisplayAxis*>(Channel->GetXAxis()) : nullptr;
}

TQVDisplayAxis* TQVScopeChannelMarker::GetLabelYAxis() const
{
    TQVScopeChannel* Channel = GetChannel();
    return Channel ? static_cast<TQVDisplayAxis*>(Channel->GetYAxis()) : nullptr;
}

const TQLClassInfo& TQVScopeChannelMarker::StaticClassInfo()
{
    using C = TQVScopeChannelMarker;
    static const TQLClassInfo Info =
        TQLClassBuilder<C>("TQVScopeChannelMarker", &TQVBasicDisplayMarker::StaticClassInfo())
            .Property("Position", &C::GetPosition, &C::SetPosition, 0.0)
            .Defined("MarkerGroupIndex", &C::GetMarkerGroupIndex, &C::SetMarkerGroupIndex)
            .Build();
    return Info;
}

// ---- Drawing by the channel ----

void TQVScopeChannel::SetMarkers(const TQVScopeChannelMarkers* AValue)
{
    FMarkers->Assign(AValue);
}

void TQVScopeChannel::DrawMarkers(TQLCanvas& ACanvas, const TRect& ARect, bool Printing)
{
    if (FMarkers->GetCount() == 0)
        return;
    UpdateScaledBuffers();
    const IQVIntegerBuffer& PX = *FScaledIntDrawBufferX;
    const IQVIntegerBuffer& PY = *FScaledIntDrawBufferY;
    const int32_t c =
        std::min({PX.GetSize(), PY.GetSize(), FXScreenDataBuffer->GetSize(), FYScreenDataBuffer->GetSize()});
    const bool Vertical = GetDisplay() && GetDisplay()->GetIsVertical();
    TQVDisplayAxis* XAxis = GetPlotXAxis();
    const double* XS = FXScreenDataBuffer->Read();
    const double* YS = FYScreenDataBuffer->Read();
    // The point of sample APosition on screen, blended between its two neighbours for a
    // fraction; false when it lies off the screen slice or on a missing sample.
    auto PointOf = [&](double APosition, TPoint& APixel, double& AX, double& AY) {
        const double Rel = APosition - FScreenStartIndex;
        if (!(Rel >= 0.0) || !(Rel <= c - 1.0) || c == 0)
            return false;
        const int32_t k = static_cast<int32_t>(std::floor(Rel));
        const double f = Rel - k;
        const int32_t k1 = f > 0.0 ? k + 1 : k;
        if (PX.Read()[k] == QVMissingPixel || PY.Read()[k] == QVMissingPixel || PX.Read()[k1] == QVMissingPixel ||
            PY.Read()[k1] == QVMissingPixel)
            return false;
        const double px = PX.Read()[k] + (PX.Read()[k1] - PX.Read()[k]) * f;
        const double py = PY.Read()[k] + (PY.Read()[k1] - PY.Read()[k]) * f;
        AX = XS[k] + (XS[k1] - XS[k]) * f;
        AY = YS[k] + (YS[k1] - YS[k]) * f;
        const int32_t ix = static_cast<int32_t>(std::nearbyint(px));
        const int32_t iy = static_cast<int32_t>(std::nearbyint(py));
        APixel = Vertical ? TPoint{iy, ix} : TPoint{ix, iy};
        if (XAxis)
            AX = XAxis->DataToScaleTick(AX);
        return true;
    };
    TQLCanvasSave Save(ACanvas);
    for (TQVScopeChannelMarker* Marker : *FMarkers) {
        TPoint P;
        double X = 0.0, Y = 0.0;
        if (Marker->GetGroup() && Marker->GetGroup()->GetVisible() && PointOf(Marker->GetPosition(), P, X, Y))
            Marker->Draw(ACanvas, ARect, P.X, P.Y, X, Y, Printing);
        else
            Marker->ClearDrawData();
    }
    if (Printing)
        return;
    for (TQVScopeChannelMarker* Marker : *FMarkers) {
        TPoint P;
        double X = 0.0, Y = 0.0;
        if (Marker->GetInDragging() && Marker->GetGroup() && PointOf(Marker->GetDragPosition(), P, X, Y))
            Marker->DrawDrag(ACanvas, P.X, P.Y, X, Y);
    }
}

// ---- TQVScopeChannelMarkers ----

TQVScopeChannelMarkers::TQVScopeChannelMarkers(TQVScopeChannel* AChannel, TQLLockPtr ALock, TQVDisplayOwner* ADisplay)
    : TQVDisplayCollection<TQVScopeChannelMarker>(AChannel, std::move(ALock), ADisplay), FChannel(AChannel)
{}

TQVScopeChannelMarker* TQVScopeChannelMarkers::AddMarkerAt(int32_t AMarkerGroupIndex, int32_t XValue)
{
    auto Guard = GetLock()->AcquireWrite();
    TQLCollection* Groups = MarkerGroupsOf(FChannel);
    if (!Groups || AMarkerGroupIndex < 0 || AMarkerGroupIndex >= Groups->GetCount())
        throw EListError(AMarkerGroupIndex);
    TQVScopeChannelMarker* Marker = Add();
    Marker->SetGroup(static_cast<TQVDisplayMarkerGroup*>(Groups->GetBaseItem(AMarkerGroupIndex)));
    Marker->FChannelIndex = FChannel ? FChannel->GetIndex() : -1;
    Marker->SetPosition(XValue);
    return Marker;
}

TQVScopeChannelMarker* TQVScopeChannelMarkers::AddMarkerAtCurrentPos(int32_t AMarkerGroupIndex)
{
    return AddMarkerAt(AMarkerGroupIndex, FChannel ? FChannel->GetData()->GetSize() : 0);
}

const TQLClassInfo& TQVScopeChannelMarkers::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVScopeChannelMarkers", &TQLCollection::StaticClassInfo(), {});
    return Info;
}

} // namespace qv
