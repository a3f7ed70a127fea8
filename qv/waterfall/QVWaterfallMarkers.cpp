#include "qv/waterfall/QVWaterfallMarkers.h"

#include "qv/axes/QVDisplayAxis.h"
#include "qv/channels/QVDisplayHighlighting.h"
#include "qv/channels/QVHighlightInfo.h"
#include "qv/channels/QVHitGeometry.h"
#include "qv/component/QVDisplayOwner.h"
#include "qv/foundation/QLClassBuilder.h"

#include <algorithm>
#include <array>

namespace qv {

// ---- TQVWaterfallMarkerGroupLine ----

const TQLClassInfo& TQVWaterfallMarkerGroupLine::StaticClassInfo()
{
    using C = TQVWaterfallMarkerGroupLine;
    static const TQLClassInfo Info =
        TQLClassBuilder<C>("TQVWaterfallMarkerGroupLine", &TQLPersistentNotify::StaticClassInfo())
            .Property("Visible", &C::GetVisible, &C::SetVisible, false)
            .Property("Color", &C::GetColor, &C::SetColor, TAlphaColor(0xFFFF0000))
            .Property("Width", &C::GetWidth, &C::SetWidth, int32_t(1))
            .Property("UsePointsColor", &C::GetUsePointsColor, &C::SetUsePointsColor, true)
            .Build();
    return Info;
}

// ---- TQVWaterfallMarker ----

TQVDisplayAxis* TQVWaterfallMarker::GetLabelXAxis() const
{
    return GetDisplay() ? GetDisplay()->GetXAxis() : nullptr;
}

TQVDisplayAxis* TQVWaterfallMarker::GetLabelYAxis() const
{
    return GetDisplay() ? GetDisplay()->GetYAxis() : nullptr;
}

void TQVWaterfallMarker::BeforeDestruction()
{
    if (TQVHighlightInfo* Info = GetDisplay() ? GetDisplay()->GetHighlightInfo() : nullptr) {
        if (Info->FDraggedMarker == this)
            Info->FDraggedMarker = nullptr;
        if (Info->FHighlightedMarker == this)
            Info->FHighlightedMarker = nullptr;
        if (Info->FMouseDownElement == this)
            Info->FMouseDownElement = nullptr;
    }
    TQVDisplayMarker::BeforeDestruction();
}

const TQLClassInfo& TQVWaterfallMarker::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVWaterfallMarker", &TQVDisplayMarker::StaticClassInfo(), {});
    return Info;
}

// ---- TQVWaterfallMarkers ----

const TQLClassInfo& TQVWaterfallMarkers::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVWaterfallMarkers", &TQLCollection::StaticClassInfo(), {});
    return Info;
}

// ---- TQVWaterfallMarkerGroup ----

TQVWaterfallMarkerGroup::TQVWaterfallMarkerGroup(TQLCollection* ACollection)
    : TQVDisplayMarkerGroup(ACollection),
      FMarkers(std::make_unique<TQVWaterfallMarkers>(this, GetLock(), GetDisplay())),
      FLine(std::make_unique<TQVWaterfallMarkerGroupLine>(this, GetLock(), [this] { InvalidateItem(); }))
{}

TQVWaterfallMarkerGroup::~TQVWaterfallMarkerGroup()
{
    DetachMarkers();
}

double TQVWaterfallMarkerGroup::HitTest(int32_t AX, int32_t AY, TQVBasicDisplayMarker*& SelectedMarker) const
{
    double Nearest = 10000.0;
    const TPoint Mouse{AX, AY};
    const TQVBasicDisplayMarker* Previous = nullptr;
    for (TQVWaterfallMarker* Marker : *FMarkers) {
        if (Marker->HitTest(AX, AY)) {
            SelectedMarker = Marker;
            return 0.0;
        }
        // The line runs between markers that were both drawn.
        if (Previous && Previous->GetDrawPoint().X >= 0 && Marker->GetDrawPoint().X >= 0) {
            double Ratio;
            TPoint Point;
            Nearest = std::min(
                Nearest, QPDistancePointToLine(Mouse, Previous->GetDrawPoint(), Marker->GetDrawPoint(), Ratio, Point));
        }
        Previous = Marker;
    }
    return Nearest;
}

void TQVWaterfallMarkerGroup::ScrollBy(int32_t ACount)
{
    if (FMode != mmRelative || ACount == 0)
        return;
    auto Guard = GetLock()->AcquireWrite();
    for (int32_t I = FMarkers->GetCount() - 1; I >= 0; --I) {
        TQVDisplayMarkerPosition& Position = *FMarkers->GetItem(I)->GetPosition();
        const double X = Position.GetX() - ACount;
        if (X < 0)
            FMarkers->Delete(I);
        else
            Position.SetX(X);
    }
}

void TQVWaterfallMarkerGroup::Draw(TQLCanvas& ACanvas, const TRect& ADispRect, bool APrinting)
{
    bool First = true;
    TPoint Last{};
    for (TQVWaterfallMarker* Marker : *FMarkers) {
        const TQVRealPoint Position = Marker->GetPosition()->GetPoint();
        TPoint P;
        if (!Marker->GetPixel(Position, P))
            continue;
        if (FLine->GetVisible() && !First) {
            ACanvas.SetPenStyle(psSolid);
            if (GetHighlighted() && !APrinting) {
                ACanvas.GetPen().SetColor(Marker->GetHighlightColor());
                ACanvas.SetPenWidth(3);
                ACanvas.MoveTo(Last.X, Last.Y);
                ACanvas.LineTo(P.X, P.Y);
            }
            ACanvas.SetPenWidth(FLine->GetWidth());
            ACanvas.GetPen().SetColor(FLine->GetUsePointsColor() ? GetBrush()->GetColor() : FLine->GetColor());
            ACanvas.MoveTo(Last.X, Last.Y);
            ACanvas.LineTo(P.X, P.Y);
        }
        Marker->Draw(ACanvas, ADispRect, P.X, P.Y, Position.X, Position.Y, APrinting);
        Last = P;
        First = false;
    }
}

const TQLClassInfo& TQVWaterfallMarkerGroup::StaticClassInfo()
{
    using C = TQVWaterfallMarkerGroup;
    static const TQLClassInfo Info =
        TQLClassBuilder<C>("TQVWaterfallMarkerGroup", &TQVDisplayMarkerGroup::StaticClassInfo())
            .Collection("Markers", &C::GetMarkers)
            .Object("Line", &C::GetLine)
            .Property("Mode", &C::GetMode, &C::SetMode, mmRelative)
            .Build();
    return Info;
}

// ---- TQVWaterfallMarkerGroups ----

TQVWaterfallMarkerGroups::TQVWaterfallMarkerGroups(TQLPersistent* AOwner, TQLLockPtr ALock, TQVDisplayOwner* ADisplay)
    : TQVPaletteDisplayCollection<TQVWaterfallMarkerGroup>(AOwner, std::move(ALock), ADisplay)
{}

TAlphaColor TQVWaterfallMarkerGroups::GetWaterfallNewColor(const TQLCollectionItem* AExcept) const
{
    static constexpr std::array<TAlphaColor, 14> CColors = {0xFFFFFFFF, 0xFFD3D3D3, 0xFF00FF00, 0xFF0000FF, 0xFFFFFF00,
                                                            0xFF00FFFF, 0xFFF0FBFF, 0xFF808000, 0xFF800080, 0xFFFF00FF,
                                                            0xFF00FFFF, 0xFF008080, 0xFF000080, 0xFFFF0000};
    TAlphaColor Best = 0xFFFF0000;
    int32_t Fewest = 22000;
    for (TAlphaColor Colour : CColors) {
        const int32_t Count = GetCountOfColor(Colour, AExcept);
        if (Count < Fewest) {
            Fewest = Count;
            Best = Colour;
        }
    }
    return Best;
}

void TQVWaterfallMarkerGroups::NewItemCreated(TQLCollectionItem* AItem)
{
    auto* Group = static_cast<TQVWaterfallMarkerGroup*>(AItem);
    Group->SetName("MarkerGroup" + std::to_string(GetCount()));
    TQVDisplayCollection<TQVWaterfallMarkerGroup>::NewItemCreated(AItem);
    Group->SetColorDefault(GetWaterfallNewColor(AItem));
    if (TQVDisplayOwner* Display = GetDisplay())
        Display->InvalidateRecalc();
}

bool TQVWaterfallMarkerGroups::GetNeedsMouseEvents() const
{
    if (FOnClick)
        return true;
    for (const TQVWaterfallMarkerGroup* Group : *this)
        if (Group->GetCanDrag() || Group->GetOnMouseDown() || Group->GetOnMouseUp() || Group->GetOnClick())
            return true;
    return false;
}

void TQVWaterfallMarkerGroups::ClearAllMarkers()
{
    auto Guard = GetLock()->AcquireWrite();
    for (TQVWaterfallMarkerGroup* Group : *this)
        Group->GetMarkers()->Clear();
}

void TQVWaterfallMarkerGroups::ScrollBy(int32_t ACount)
{
    for (TQVWaterfallMarkerGroup* Group : *this)
        Group->ScrollBy(ACount);
}

void TQVWaterfallMarkerGroups::DrawMarkers(TQLCanvas& ACanvas, const TRect& ADispRect, bool APrinting)
{
    TQLCanvasSave Save(ACanvas);
    for (TQVWaterfallMarkerGroup* Group : *this)
        if (Group->GetVisible())
            Group->Draw(ACanvas, ADispRect, APrinting);
    // The ghost of a marker under drag, where the drag has taken it.
    const TQVHighlightInfo* Info = GetDisplay() ? GetDisplay()->GetHighlightInfo() : nullptr;
    if (APrinting || !Info || !Info->FDraggedMarker)
        return;
    auto* Marker = dynamic_cast<TQVWaterfallMarker*>(Info->FDraggedMarker);
    const TQVRealPoint Drag = Info->FDraggedMarkerPosition;
    TPoint P;
    const TQVRealPoint Now = Marker ? Marker->GetPosition()->GetPoint() : Drag;
    if (Marker && (Now.X != Drag.X || Now.Y != Drag.Y) && Marker->GetPixel(Drag, P))
        Marker->DrawDrag(ACanvas, P.X, P.Y, Drag.X, Drag.Y);
}

TQVWaterfallMarkerGroup* TQVWaterfallMarkerGroups::HitTest(int32_t AX, int32_t AY,
                                                           TQVBasicDisplayMarker*& AMarker) const
{
    double Nearest = 10000.0;
    for (TQVWaterfallMarkerGroup* Group : GetReverse()) {
        if (!Group->GetVisible())
            continue;
        TQVBasicDisplayMarker* Marker = nullptr;
        const double Distance = Group->HitTest(AX, AY, Marker);
        Nearest = std::min(Nearest, Distance);
        if (Nearest < 3.0) {
            AMarker = Marker;
            return Group;
        }
    }
    return nullptr;
}

bool TQVWaterfallMarkerGroups::MouseDownOnMarkers(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY,
                                                  TQVHighlightInfo& AInfo)
{
    if (AButton != mbLeft || !GetNeedsMouseEvents())
        return false;
    for (TQVWaterfallMarkerGroup* Group : GetReverse())
        for (TQVWaterfallMarker* Marker : Group->GetMarkers()->GetReverse()) {
            if (!Marker->HitTest(AX, AY))
                continue;
            bool Handled = false;
            if (FOnClick)
                FOnClick(this, Group->GetIndex(), Marker->GetIndex(), Marker->GetPosition()->GetPoint(), Handled);
            if (Handled)
                return true;
            // The marker hears the press, then its group; a group that can drag starts the drag.
            Marker->MouseDown(AButton, AShift, AX, AY, true);
            Group->MouseDown(AButton, AShift, AX, AY, true);
            if (Group->GetCanDrag()) {
                AInfo.FDraggedMarker = Marker;
                AInfo.FDraggedMarkerPosition = Marker->GetPosition()->GetPoint();
            }
            return true;
        }
    return false;
}

const TQLClassInfo& TQVWaterfallMarkerGroups::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVWaterfallMarkerGroups", &TQLCollection::StaticClassInfo(), {});
    return Info;
}

} // namespace qv
