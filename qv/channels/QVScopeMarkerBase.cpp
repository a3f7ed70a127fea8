// Markers: the look of a group, and how a marker draws and hit-tests by it.
#include "qv/channels/QVScopeMarkerBase.h"

#include "qv/axes/QVDisplayAxis.h"
#include "qv/channels/QVDisplayHighlighting.h"
#include "qv/channels/QVHighlightInfo.h"
#include "qv/channels/QVScopeDataView.h"
#include "qv/component/QVLabelTemplate.h"
#include "qv/foundation/QLClassBuilder.h"

#include <algorithm>
#include <cmath>

namespace qv {

// ---- Crosshair lines, label position, label ----

TQVDisplayMarkerCrosshairLine::TQVDisplayMarkerCrosshairLine(TQLPersistent* AOwner, TQLLockPtr ALock,
                                                             TQLNotifyProc ANotify)
    : TQVDisplayPen(AOwner, std::move(ALock), std::move(ANotify), 0xFFFF0000)
{}

const TQLClassInfo& TQVDisplayMarkerCrosshairLine::StaticClassInfo()
{
    static const TQLClassInfo Info = TQLClassBuilder<TQVDisplayMarkerCrosshairLine>("TQVDisplayMarkerCrosshairLine",
                                                                                    &TQVDisplayPen::StaticClassInfo())
                                         .Property("Visible", &TQVDisplayMarkerCrosshairLine::GetVisible,
                                                   &TQVDisplayMarkerCrosshairLine::SetVisible, false)
                                         .Build();
    return Info;
}

TQVDisplayMarkerCrosshairLines::TQVDisplayMarkerCrosshairLines(TQLPersistent* AOwner, TQLLockPtr ALock,
                                                               TQLNotifyProc ANotify)
    : TQLPersistentNotify(AOwner, std::move(ALock), std::move(ANotify))
{
    auto Make = [this] {
        return std::make_unique<TQVDisplayMarkerCrosshairLine>(this, GetLock(), [this] { NotifyProp(); });
    };
    FLeft = Make();
    FTop = Make();
    FRight = Make();
    FBottom = Make();
}

TQVDisplayMarkerCrosshairLines::~TQVDisplayMarkerCrosshairLines() = default;

const TQLClassInfo& TQVDisplayMarkerCrosshairLines::StaticClassInfo()
{
    using C = TQVDisplayMarkerCrosshairLines;
    static const TQLClassInfo Info =
        TQLClassBuilder<C>("TQVDisplayMarkerCrosshairLines", &TQLPersistentNotify::StaticClassInfo())
            .Object("Left", &C::GetLeft)
            .Object("Top", &C::GetTop)
            .Object("Right", &C::GetRight)
            .Object("Bottom", &C::GetBottom)
            .Build();
    return Info;
}

void TQVDisplayMarkerLabelPosition::SetCoordinateMode(TQVCoordinateMode AValue)
{
    if (AValue > cdmCentre)
        throw std::invalid_argument("TQVDisplayMarkerLabelPosition.CoordinateMode: " +
                                    std::to_string(static_cast<int>(AValue)) + " is not a coordinate mode");
    Set(FCoordinateMode, AValue);
}

const TQLClassInfo& TQVDisplayMarkerLabelPosition::StaticClassInfo()
{
    using C = TQVDisplayMarkerLabelPosition;
    static const TQLClassInfo Info =
        TQLClassBuilder<C>("TQVDisplayMarkerLabelPosition", &TQLPersistentNotify::StaticClassInfo())
            .Property("CX", &C::GetCX, &C::SetCX, 4)
            .Property("CY", &C::GetCY, &C::SetCY, 0)
            .Property("CoordinateMode", &C::GetCoordinateMode, &C::SetCoordinateMode, cdmRightAbove)
            .Build();
    return Info;
}

TQVMarkerGroupLabel::TQVMarkerGroupLabel(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify)
    : TQVOptionalLabel(AOwner, std::move(ALock), std::move(ANotify), QVDefaultLabelFont(), false),
      FPosition(std::make_unique<TQVDisplayMarkerLabelPosition>(this, GetLock(), [this] { NotifyProp(); }))
{}

TQVMarkerGroupLabel::~TQVMarkerGroupLabel() = default;

const TQLClassInfo& TQVMarkerGroupLabel::StaticClassInfo()
{
    using C = TQVMarkerGroupLabel;
    static const TQLClassInfo Info = TQLClassBuilder<C>("TQVMarkerGroupLabel", &TQVOptionalLabel::StaticClassInfo())
                                         .Object("Position", &C::GetPosition)
                                         .Property("Angle", &C::GetAngle, &C::SetAngle, 0)
                                         .Build();
    return Info;
}

// ---- TQVDisplayMarkerGroup ----

TQVDisplayMarkerGroup::TQVDisplayMarkerGroup(TQLCollection* ACollection)
    : TQVOptionalDisplayCollectionItem(ACollection), FBrush(std::make_unique<TQVDisplayBrush>(
                                                         this, GetLock(), [this] { InvalidateItem(); }, 0xFFFF0000)),
      FPen(std::make_unique<TQVDisplayPen>(
          this, GetLock(), [this] { InvalidateItem(); }, 0xFFFF0000)),
      FCrosshairLines(std::make_unique<TQVDisplayMarkerCrosshairLines>(this, GetLock(), [this] { InvalidateItem(); })),
      FLabels(std::make_unique<TQVMarkerGroupLabel>(this, GetLock(), [this] { InvalidateItem(); }))
{}

TQVDisplayMarkerGroup::~TQVDisplayMarkerGroup()
{
    DetachMarkers();
}

void TQVDisplayMarkerGroup::BeforeDestruction()
{
    TQVOptionalDisplayCollectionItem::BeforeDestruction();
    DetachMarkers();
    if (TQVScopeDataView* View = TQVScopeDataView::Of(GetDisplay()))
        View->ForgetItem(this);
}

void TQVDisplayMarkerGroup::DetachMarkers()
{
    std::vector<TQVBasicDisplayMarker*> Markers;
    Markers.swap(FMarkersList);
    for (TQVBasicDisplayMarker* Marker : Markers)
        Marker->FGroup = nullptr;
}

void TQVDisplayMarkerGroup::SetShape(TQVDisplayMarkerShape AValue)
{
    Set(FShape, AValue, [this] { InvalidateItem(); });
}

void TQVDisplayMarkerGroup::SetColorDefault(TAlphaColor AValue)
{
    FPen->SetColorDefault(AValue);
    FBrush->SetColorDefault(FPen->GetColor());
}

TQVBasicDisplayMarker* TQVDisplayMarkerGroup::GetMarker(int32_t AIndex) const
{
    if (AIndex < 0 || AIndex >= GetMarkerCount())
        throw EQLListError(AIndex);
    return FMarkersList[static_cast<size_t>(AIndex)];
}

void TQVDisplayMarkerGroup::AddMarker(TQVBasicDisplayMarker* AMarker)
{
    if (AMarker && std::find(FMarkersList.begin(), FMarkersList.end(), AMarker) == FMarkersList.end())
        FMarkersList.push_back(AMarker);
}

void TQVDisplayMarkerGroup::RemoveMarker(TQVBasicDisplayMarker* AMarker)
{
    FMarkersList.erase(std::remove(FMarkersList.begin(), FMarkersList.end(), AMarker), FMarkersList.end());
}

bool TQVDisplayMarkerGroup::CustomLegendDraw(TQLCanvas& ACanvas, int32_t AX, int32_t AY)
{
    TQLCanvasSave Save(ACanvas);
    ACanvas.ApplyBrush(*FBrush);
    ACanvas.ApplyPen(*FPen);
    const bool Turned = GetDisplay() && GetDisplay()->GetIsVertical();
    const int32_t CX = AX + 6;
    constexpr int32_t Half = 3;
    // On the plot a triangle's tip lies on the marker's point; in the legend's small box it
    // is centred instead: tip and base each Half from the centre.
    TQVDisplayMarkerShape Shape = FShape;
    if (Turned) {
        static constexpr TQVDisplayMarkerShape TurnedTriangle[] = {msTriangleLeft, msTriangleRight, msTriangleDown,
                                                                   msTriangleUp};
        if (Shape >= msTriangleUp && Shape <= msTriangleRight)
            Shape = TurnedTriangle[Shape - msTriangleUp];
    }
    switch (Shape) {
    case msTriangleUp:
    case msTriangleDown: {
        const int32_t Dir = Shape == msTriangleUp ? -1 : 1;
        const TPoint P[3] = {{CX, AY + Dir * Half}, {CX - Half, AY - Dir * Half}, {CX + Half, AY - Dir * Half}};
        ACanvas.Polygon(P, 2);
        break;
    }
    case msTriangleLeft:
    case msTriangleRight: {
        const int32_t Dir = Shape == msTriangleLeft ? -1 : 1;
        const TPoint P[3] = {{CX + Dir * Half, AY}, {CX - Dir * Half, AY - Half}, {CX - Dir * Half, AY + Half}};
        ACanvas.Polygon(P, 2);
        break;
    }
    default: QVDisplayMarkerDrawSize(ACanvas, CX, AY, FShape, Half, 0, Turned); break;
    }
    return true;
}

bool TQVDisplayMarkerGroup::GetHighlighted() const
{
    TQVDisplayOwner* Display = GetDisplay();
    const TQVHighlightInfo* Info = Display ? Display->GetHighlightInfo() : nullptr;
    const TQVDisplayHighlighting* Settings = Display ? Display->GetHighlighting() : nullptr;
    if (!Info || !Settings)
        return false;
    const TQLPersistent* Self = this;
    return (Info->FHighlightedItem == Self || Info->FExtHighlightMarkerGroup == Self) &&
           Settings->GetMarkers()->GetHiglightLegendButton();
}

void TQVDisplayMarkerGroup::SetHighlighted(bool AValue)
{
    TQVDisplayOwner* Display = GetDisplay();
    TQVHighlightInfo* Info = Display ? Display->GetHighlightInfo() : nullptr;
    const TQVDisplayHighlighting* Settings = Display ? Display->GetHighlighting() : nullptr;
    if (!Info || !Settings)
        return;
    TQLPersistent* Self = this;
    if (QVSetItemHighlighted(Info->FExtHighlightMarkerGroup, Self, AValue, *Settings->GetMarkers()))
        if (TQVScopeDataView* View = TQVScopeDataView::Of(Display))
            View->InvalidateView();
}

void TQVDisplayMarkerGroup::MouseDown(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY,
                                      bool AMouseInside)
{
    FMouseDown = true;
    TQVOptionalDisplayCollectionItem::MouseDown(AButton, AShift, AX, AY, AMouseInside);
}

void TQVDisplayMarkerGroup::MouseUp(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, bool AMouseInside)
{
    if (!FMouseDown)
        return;
    FMouseDown = false;
    TQVOptionalDisplayCollectionItem::MouseUp(AButton, AShift, AX, AY, AMouseInside);
}

const TQLClassInfo& TQVDisplayMarkerGroup::StaticClassInfo()
{
    using C = TQVDisplayMarkerGroup;
    static const TQLClassInfo Info =
        TQLClassBuilder<C>("TQVDisplayMarkerGroup", &TQVOptionalDisplayCollectionItem::StaticClassInfo())
            .Object("Brush", &C::GetBrush)
            .Object("Pen", &C::GetPen)
            .Property("Shape", &C::GetShape, &C::SetShape, msPlus)
            .Object("CrosshairLines", &C::GetCrosshairLines)
            .Property("Size", &C::GetSize, &C::SetSize, uint32_t(3))
            .Object("Labels", &C::GetLabels)
            .Property("CanDrag", &C::GetCanDrag, &C::SetCanDrag, false)
            .Property("MouseCursor", &C::GetMouseCursor, &C::SetMouseCursor, TCursor(0))
            .Build();
    return Info;
}

// ---- TQVBasicDisplayMarker ----

TQVBasicDisplayMarker::TQVBasicDisplayMarker(TQLCollection* ACollection)
    : TQVDisplaySelectableCollectionItem(ACollection)
{}

TQVBasicDisplayMarker::~TQVBasicDisplayMarker()
{
    if (FGroup)
        FGroup->RemoveMarker(this);
}

void TQVBasicDisplayMarker::BeforeDestruction()
{
    TQVDisplaySelectableCollectionItem::BeforeDestruction();
    SetGroup(nullptr);
    if (TQVScopeDataView* View = TQVScopeDataView::Of(GetDisplay()))
        View->ForgetItem(this);
}

void TQVBasicDisplayMarker::SetGroup(TQVDisplayMarkerGroup* AValue)
{
    auto Guard = GetLock()->AcquireWrite();
    if (AValue == FGroup)
        return;
    if (FGroup)
        FGroup->RemoveMarker(this);
    FGroup = AValue;
    if (FGroup)
        FGroup->AddMarker(this);
    InvalidateItem();
}

bool TQVBasicDisplayMarker::IsVerticalDisplay() const
{
    return GetDisplay() && GetDisplay()->GetIsVertical();
}

bool TQVBasicDisplayMarker::HitTest(int32_t AX, int32_t AY) const
{
    if (FDrawPoint.X < 0 || !FGroup)
        return false;
    const int32_t Shape = FGroup->GetShape();
    const int32_t S = static_cast<int32_t>(std::max<uint32_t>(3, std::min<uint32_t>(FGroup->GetSize(), 100000)));
    const int32_t Dx = FDrawPoint.X;
    const int32_t Dy = FDrawPoint.Y;
    // The box of the symbol as drawn; the triangles and lines of a turned display turn with
    // it, and so does their box.
    int32_t Turned = Shape;
    if (IsVerticalDisplay()) {
        static constexpr int32_t CTurn[13] = {0, 1, 2, 3, 4, 5, 6, 9, 10, 8, 7, 12, 11};
        if (Shape <= 12)
            Turned = CTurn[Shape];
    }
    TRect R;
    switch (Turned) {
    case msCircle:
    case msSquare:
    case msDiamond:
    case msStar: R = TRect{Dx - S, Dy - S, Dx + S, Dy + S}; break;
    case msTriangleUp: R = TRect{Dx - S, Dy, Dx + S, Dy + 2 * S}; break;
    case msTriangleDown: R = TRect{Dx - S, Dy - 2 * S, Dx + S, Dy}; break;
    case msTriangleLeft: R = TRect{Dx, Dy - S, Dx + 2 * S, Dy + S}; break;
    case msTriangleRight: R = TRect{Dx - 2 * S, Dy - S, Dx, Dy + S}; break;
    case msHorzLine: R = TRect{Dx - S, Dy - 3, Dx + S, Dy + 3}; break;
    case msVertLine: R = TRect{Dx - 3, Dy - S, Dx + 3, Dy + S}; break;
    default:
        // The dot, plus and cross keep a fixed box, whatever their size.
        R = TRect{Dx - 3, Dy - 3, Dx + 3, Dy + 3};
        break;
    }
    R.Right += 1;
    R.Bottom += 1;
    return AX >= R.Left && AX < R.Right && AY >= R.Top && AY < R.Bottom;
}

TAlphaColor TQVBasicDisplayMarker::GetHighlightColor() const
{
    const TQVDisplayHighlighting* Settings = GetDisplay() ? GetDisplay()->GetHighlighting() : nullptr;
    return Settings ? Settings->GetMarkers()->GetColor() : 0xFFE67FE7;
}

bool TQVBasicDisplayMarker::GetHighlighted() const
{
    const TQVHighlightInfo* Info = GetDisplay() ? GetDisplay()->GetHighlightInfo() : nullptr;
    if (!Info)
        return false;
    return (FGroup && Info->FExtHighlightMarkerGroup == static_cast<const TQLPersistent*>(FGroup)) ||
           Info->FHighlightedMarker == this;
}

bool TQVBasicDisplayMarker::GetInDragging() const
{
    const TQVHighlightInfo* Info = GetDisplay() ? GetDisplay()->GetHighlightInfo() : nullptr;
    return Info && static_cast<const void*>(Info->FDraggedMarker) == static_cast<const void*>(this);
}

void TQVBasicDisplayMarker::InvalidateItem()
{
    if (TQVScopeDataView* View = TQVScopeDataView::Of(GetDisplay()))
        View->InvalidateView();
    else
        TQVDisplaySelectableCollectionItem::InvalidateItem();
}

void TQVBasicDisplayMarker::Draw(TQLCanvas& ACanvas, const TRect& ADispRect, int32_t AX, int32_t AY, double APosition,
                                 double AValue, bool APrinting)
{
    if (!FGroup)
        return;
    const TQVDisplayMarkerCrosshairLines& Lines = *FGroup->GetCrosshairLines();
    const TQVDisplayMarkerCrosshairLine* Each[4] = {Lines.GetLeft(), Lines.GetTop(), Lines.GetRight(),
                                                    Lines.GetBottom()};
    const TPoint Ends[4] = {{ADispRect.Left, AY}, {AX, ADispRect.Top}, {ADispRect.Right, AY}, {AX, ADispRect.Bottom}};
    auto DrawLines = [&](bool AHighlight) {
        for (int I = 0; I < 4; ++I) {
            if (!Each[I]->GetVisible())
                continue;
            if (AHighlight)
                ACanvas.SetPenWidth(Each[I]->GetWidth() + 2);
            else
                ACanvas.ApplyPen(*Each[I]);
            ACanvas.MoveTo(Ends[I].X, Ends[I].Y);
            ACanvas.LineTo(AX, AY);
        }
    };
    if (!APrinting && (GetHighlighted() || GetInDragging())) {
        const TAlphaColor Color = GetHighlightColor();
        ACanvas.GetBrush().SetStyle(bsSolid);
        ACanvas.GetBrush().SetColor(Color);
        ACanvas.GetPen().SetColor(Color);
        ACanvas.SetPenStyle(psSolid);
        DrawLines(true);
        const int32_t Wider = QVMarkerShapeNeedsWiderPen(FGroup->GetShape()) ? 2 : 0;
        ACanvas.SetPenWidth(FGroup->GetPen()->GetWidth() + Wider);
        DrawSize(ACanvas, AX, AY, APosition, AValue, 1);
    }
    DrawLines(false);
    ACanvas.ApplyBrush(*FGroup->GetBrush());
    ACanvas.ApplyPen(*FGroup->GetPen());
    FDrawPoint = TPoint{AX, AY};
    DrawSize(ACanvas, AX, AY, APosition, AValue, 0);
}

void TQVBasicDisplayMarker::DrawDrag(TQLCanvas& ACanvas, int32_t AX, int32_t AY, double APosition, double AValue)
{
    if (!FGroup)
        return;
    ACanvas.GetBrush().SetStyle(bsClear);
    ACanvas.SetPenStyle(psDash);
    ACanvas.GetPen().SetColor(GetHighlightColor());
    DrawSize(ACanvas, AX, AY, APosition, AValue, 0);
    ACanvas.SetPenStyle(psSolid);
}

void TQVBasicDisplayMarker::DrawSize(TQLCanvas& ACanvas, int32_t AX, int32_t AY, double APosition, double AValue,
                                     int32_t AExtra)
{
    const int32_t Size = static_cast<int32_t>(std::min<uint32_t>(FGroup->GetSize(), 100000));
    QVDisplayMarkerDrawSize(ACanvas, AX, AY, FGroup->GetShape(), Size, AExtra, IsVerticalDisplay());
    const TQVMarkerGroupLabel& Label = *FGroup->GetLabels();
    if (AExtra != 0 || !Label.GetVisible())
        return;
    ACanvas.ApplyFont(*Label.GetFont());
    ACanvas.GetBrush().SetStyle(bsClear);
    ACanvas.SetTextAngle(Label.GetAngle());
    DrawTextOut(ACanvas, AX, AY, APosition, AValue);
    ACanvas.SetTextAngle(0);
}

void TQVBasicDisplayMarker::DrawTextOut(TQLCanvas& ACanvas, int32_t AX, int32_t AY, double APosition, double AValue)
{
    const TQVDisplayAxis* XAxis = GetLabelXAxis();
    const TQVDisplayAxis* YAxis = GetLabelYAxis();
    const std::string Text = QVFormatLabelText(
        FGroup->GetLabels()->GetText(), "%X : %Y",
        [&] { return XAxis ? XAxis->GetTickText(APosition) : std::to_string(APosition); },
        [&] { return YAxis ? YAxis->GetTickText(AValue) : std::to_string(AValue); });
    const TSize Extent = ACanvas.TextExtent(Text);
    const TQVDisplayMarkerLabelPosition& Pos = *FGroup->GetLabels()->GetPosition();
    const int32_t Mode = Pos.GetCoordinateMode();
    int32_t X;
    if (Mode <= 2)
        X = AX - Extent.cx - Pos.GetCX();
    else if (Mode <= 5)
        X = AX + Pos.GetCX();
    else
        X = AX - Extent.cx / 2 + Pos.GetCX();
    int32_t Y;
    if (Mode % 3 == 0)
        Y = AY - Extent.cy - Pos.GetCY();
    else if (Mode % 3 == 1)
        Y = AY + Pos.GetCY();
    else
        Y = AY - Extent.cy / 2 + Pos.GetCY();
    ACanvas.TextOut(X, Y, Text);
}

const TQLClassInfo& TQVBasicDisplayMarker::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVBasicDisplayMarker", &TQVDisplaySelectableCollectionItem::StaticClassInfo(), {});
    return Info;
}

} // namespace qv
