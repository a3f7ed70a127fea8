// The scope's marker groups: drawing every group's free markers, the hit test of a group,
// and the collection's mouse events.
#include "qv/elements/QVScopeMarkerGroup.h"

#include "qv/channels/QVHighlightInfo.h"
#include "qv/channels/QVScopeChannelMarker.h"
#include "qv/component/QVDisplayComponent.h"
#include "qv/foundation/QLClassBuilder.h"

namespace qv {

// ---- TQVScopeMarkerGroup ----

TQVScopeMarkerGroup::TQVScopeMarkerGroup(TQLCollection* ACollection)
    : TQVDisplayMarkerGroup(ACollection), FMarkers(std::make_unique<TQVScopeMarkers>(this, GetLock(), GetDisplay()))
{}

TQVScopeMarkerGroup::~TQVScopeMarkerGroup()
{
    // Channel markers keep their channel; they only lose the group.
    DetachMarkers();
}

bool TQVScopeMarkerGroup::HitTest(int32_t AX, int32_t AY, TQVBasicDisplayMarker*& SelectedMarker) const
{
    for (TQVBasicDisplayMarker* Marker : FMarkersList)
        if (Marker->HitTest(AX, AY)) {
            SelectedMarker = Marker;
            return true;
        }
    return false;
}

void TQVScopeMarkerGroup::Clear()
{
    auto Guard = GetLock()->AcquireWrite();
    std::vector<TQVBasicDisplayMarker*> Markers;
    Markers.swap(FMarkersList);
    for (TQVBasicDisplayMarker* Marker : Markers) {
        TQLCollection* Owner = Marker->GetCollection();
        const int32_t Index = Owner ? Owner->IndexOfItem(Marker) : -1;
        // The marker has left the list already: it must not look for itself there again.
        Marker->SetGroup(nullptr);
        if (Index >= 0)
            Owner->Delete(Index);
    }
    InvalidateItem();
}

void TQVScopeMarkerGroup::Draw(TQVDisplayDrawPart /*APart*/, TQLCanvas& ACanvas, const TRect& ADispRect, bool APrinting)
{
    auto* Groups = dynamic_cast<TQVScopeMarkerGroups*>(GetCollection());
    if (!Groups)
        return;
    TQLCanvasSave Save(ACanvas);
    for (TQVScopeMarkerGroup* Group : *Groups) {
        if (!Group->GetVisible())
            continue;
        for (TQVScopeMarker* Marker : *Group->GetMarkers()) {
            const TQVRealPoint Position = Marker->GetPosition()->GetPoint();
            TPoint P;
            if (Marker->GetPixel(Position, P))
                Marker->Draw(ACanvas, ADispRect, P.X, P.Y, Position.X, Position.Y, APrinting);
        }
    }
}

const TQLClassInfo& TQVScopeMarkerGroup::StaticClassInfo()
{
    using C = TQVScopeMarkerGroup;
    static const TQLClassInfo Info =
        TQLClassBuilder<C>("TQVScopeMarkerGroup", &TQVDisplayMarkerGroup::StaticClassInfo())
            .Property("SnapToSample", &C::GetSnapToSample, &C::SetSnapToSample, true)
            .Collection("Markers", &C::GetMarkers)
            .Build();
    return Info;
}

// ---- TQVScopeMarkerGroups ----

TQVScopeMarkerGroups::TQVScopeMarkerGroups(TQLPersistent* AOwner, TQLLockPtr ALock, TQVDisplayOwner* ADisplay)
    : TQVPaletteDisplayCollection<TQVScopeMarkerGroup>(AOwner, std::move(ALock), ADisplay)
{}

void TQVScopeMarkerGroups::NewItemCreated(TQLCollectionItem* AItem)
{
    static_cast<TQVScopeMarkerGroup*>(AItem)->SetName("MarkerGroup" + std::to_string(GetCount()));
    TQVPaletteDisplayCollection<TQVScopeMarkerGroup>::NewItemCreated(AItem);
}

bool TQVScopeMarkerGroups::GetNeedsMouseEvents() const
{
    if (FOnChannelMarkerClick || FOnClick)
        return true;
    for (const TQVScopeMarkerGroup* Group : *this)
        if (Group->GetCanDrag() || Group->GetOnMouseDown() || Group->GetOnMouseUp() || Group->GetOnClick())
            return true;
    return false;
}

void TQVScopeMarkerGroups::DrawElements(TQVDisplayDrawPart APart, TQLCanvas& ACanvas, const TRect& /*AClip*/,
                                        bool APrinting)
{
    TQVDisplayOwner* Display = GetDisplay();
    const TQVDisplayComponent* View = Display ? Display->GetDataView() : nullptr;
    const TRect DispRect = View ? View->GetDrawRect() : TRect{};
    for (TQVScopeMarkerGroup* Group : *this)
        Group->Draw(APart, ACanvas, DispRect, APrinting);
    // The ghost of a free marker under drag, where the drag has taken it.
    const TQVHighlightInfo* Info = Display ? Display->GetHighlightInfo() : nullptr;
    if (APrinting || APart != ddpForeground || !Info || !Info->FDraggedMarker)
        return;
    auto* Marker = dynamic_cast<TQVScopeMarker*>(Info->FDraggedMarker);
    const TQVRealPoint Drag = Info->FDraggedMarkerPosition;
    const TQVRealPoint Now = Marker ? Marker->GetPosition()->GetPoint() : Drag;
    TPoint P;
    if (Marker && (Drag.X != Now.X || Drag.Y != Now.Y) && Marker->GetPixel(Drag, P)) {
        TQLCanvasSave Save(ACanvas);
        Marker->DrawDrag(ACanvas, P.X, P.Y, Drag.X, Drag.Y);
    }
}

const TQLClassInfo& TQVScopeMarkerGroups::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVScopeMarkerGroups", &TQLCollection::StaticClassInfo(), {});
    return Info;
}

} // namespace qv
