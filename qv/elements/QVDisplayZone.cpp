#include "qv/elements/QVDisplayZone.h"

#include "qv/axes/QVDisplayAxis.h"
#include "qv/axes/QVScopeXAxis.h"
#include "qv/axes/QVScopeYAxis.h"
#include "qv/channels/QVChannelPlot.h"
#include "qv/channels/QVHitGeometry.h"
#include "qv/channels/QVScopeChannel.h"
#include "qv/channels/QVScopeDataView.h"
#include "qv/foundation/QLClassBuilder.h"

#include <algorithm>

namespace qv {

const TQLClassInfo& TQVOptionalAxesCursorDisplayCollectionItem::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVOptionalAxesCursorDisplayCollectionItem>(
            "TQVOptionalAxesCursorDisplayCollectionItem", &TQVOptionalAxesDisplayCollectionItem::StaticClassInfo())
            .Property("MouseCursor", &TQVOptionalAxesCursorDisplayCollectionItem::GetMouseCursor,
                      &TQVOptionalAxesCursorDisplayCollectionItem::SetMouseCursor, crDefault)
            .Build();
    return Info;
}

namespace {
// The stored form of a value point: X and Y, each stored when not 0.
template <class C>
TQLClassInfo ValuePointInfo(const char* AName, const TQLClassInfo* AParent)
{
    return TQLClassBuilder<C>(AName, AParent)
        .Property("X", &C::GetX, &C::SetX, 0.0)
        .Property("Y", &C::GetY, &C::SetY, 0.0)
        .Build();
}
} // namespace

const TQLClassInfo& TQVDisplayElementPosition::StaticClassInfo()
{
    static const TQLClassInfo Info =
        ValuePointInfo<TQVDisplayElementPosition>("TQVDisplayElementPosition", &TQLPersistent::StaticClassInfo());
    return Info;
}

// ---- Basic zone ----

TQVBasicDisplayZone::TQVBasicDisplayZone(TQLCollection* ACollection)
    : TQVOptionalAxesCursorDisplayCollectionItem(ACollection),
      FChannels(std::make_unique<TQVDisplayZoneChannelLinks>(this, GetLock(), GetDisplay())),
      FPen(std::make_unique<TQVDisplayPen>(
          this, GetLock(), [this] { NotifyProp(); }, 0xFFFF0000, 1)),
      FBrush(std::make_unique<TQVDisplayBrush>(
          this, GetLock(), [this] { NotifyProp(); }, 0xFF808080, bkNone))
{}

TQVBasicDisplayZone::~TQVBasicDisplayZone() = default;

void TQVBasicDisplayZone::BeforeDestruction()
{
    TQVOptionalAxesCursorDisplayCollectionItem::BeforeDestruction();
    if (TQVScopeDataView* View = TQVScopeDataView::Of(GetDisplay()))
        View->ForgetItem(this);
}

TPoint TQVBasicDisplayZone::PixelOf(double AX, double AY) const
{
    const TQVDisplayAxis* XAxis = GetXAxis();
    const TQVDisplayAxis* YAxis = GetYAxis();
    const int32_t X = XAxis ? XAxis->GetPosFromValue(AX) : 0;
    const int32_t Y = YAxis ? YAxis->GetPosFromValue(AY) : 0;
    // In a turned display the X axis runs down the screen.
    return GetDisplay() && GetDisplay()->GetIsVertical() ? TPoint{Y, X} : TPoint{X, Y};
}

TAlphaColor TQVBasicDisplayZone::HighlightColor() const
{
    if (const auto* Zones = dynamic_cast<const TQVBasicDisplayZones<TQVDisplayZone>*>(GetCollection()))
        return Zones->GetHighlighting()->GetColor();
    if (const auto* Ellipses = dynamic_cast<const TQVBasicDisplayZones<TQVDisplayEllipticZone>*>(GetCollection()))
        return Ellipses->GetHighlighting()->GetColor();
    return 0xFFE67FE7;
}

bool TQVBasicDisplayZone::GetHighlighted() const
{
    const TQVScopeDataView* View = TQVScopeDataView::Of(GetDisplay());
    const TQVDisplayHighlighting* H = GetDisplay() ? GetDisplay()->GetHighlighting() : nullptr;
    // The cursors' legend setting decides, for both kinds of zone.
    return View && H && View->GetHighlightInfo().FHighlightedItem == this && View->GetExtHighlightZone() == this &&
           H->GetCursors()->GetHiglightLegendButton();
}

void TQVBasicDisplayZone::SetHighlighted(bool AValue)
{
    TQVScopeDataView* View = TQVScopeDataView::Of(GetDisplay());
    const TQVDisplayHighlighting* H = GetDisplay() ? GetDisplay()->GetHighlighting() : nullptr;
    if (!View || !H)
        return;
    auto Guard = GetLock()->AcquireWrite();
    if (AValue && H->GetCursors()->GetHiglightFromLegend())
        View->SetExtHighlightZone(this);
    else if (!AValue)
        View->SetExtHighlightZone(nullptr);
    InvalidateItem();
}

void TQVBasicDisplayZone::Draw(TQVDisplayDrawPart APart, TQLCanvas& ACanvas, const TRect& DispRect, bool Printing)
{
    if (!GetVisible() || !HasShape())
        return;
    if (APart != ddpForeground) {
        // The fill lies behind the channels; the outline is drawn again above the grid.
        if (APart == ddpFeatures)
            ACanvas.GetBrush().SetStyle(bsClear);
        else
            ACanvas.ApplyBrush(*FBrush);
        const TQVScopeDataView* View = TQVScopeDataView::Of(GetDisplay());
        const TQLPersistent* Lit =
            View ? (View->GetExtHighlightZone() ? static_cast<const TQLPersistent*>(View->GetExtHighlightZone())
                                                : View->GetHighlightInfo().FHighlightedItem)
                 : nullptr;
        if (Lit == this && !Printing) {
            ACanvas.SetPenWidth(3);
            ACanvas.GetPen().SetColor(HighlightColor());
            DrawShape(ACanvas, true);
        }
        ACanvas.ApplyPen(*FPen);
        DrawShape(ACanvas, false);
        return;
    }
    const TQVDisplayAxis* XAxis = GetXAxis();
    for (TQVDisplayZoneChannelLink* Link : *FChannels) {
        auto* Channel = dynamic_cast<TQVScopeChannel*>(Link->GetChannel());
        // The link's point symbols are the channel's to draw, over its line.
        if (!Channel || !Channel->GetVisible() || !Link->GetHighlighting()->GetEnabled())
            continue;
        // A channel on another X axis does not meet the zone.
        if (static_cast<const TQVDisplayAxis*>(Channel->GetXAxis()) != XAxis)
            continue;
        TQLCanvasSave Save(ACanvas);
        ClipToShape(ACanvas);
        Channel->ZoneDraw(ACanvas, Link->GetHighlighting()->GetColor(), DispRect, Printing);
    }
}

const TQLClassInfo& TQVBasicDisplayZone::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVBasicDisplayZone>("TQVBasicDisplayZone",
                                             &TQVOptionalAxesCursorDisplayCollectionItem::StaticClassInfo())
            .Collection("Channels", &TQVBasicDisplayZone::GetChannels)
            .Object("Pen", &TQVBasicDisplayZone::GetPen)
            .Object("Brush", &TQVBasicDisplayZone::GetBrush)
            .Build();
    return Info;
}

// ---- Points ----

const TQLClassInfo& TQVDisplayZonePoint::StaticClassInfo()
{
    static const TQLClassInfo Info =
        ValuePointInfo<TQVDisplayZonePoint>("TQVDisplayZonePoint", &TQLCollectionItem::StaticClassInfo());
    return Info;
}

TQVDisplayZonePoint* TQVDisplayZonePoints::Add(double AX, double AY)
{
    auto Guard = GetLock()->AcquireWrite();
    TQVDisplayZonePoint* Point = Add();
    Point->SetX(AX);
    Point->SetY(AY);
    return Point;
}

bool TQVDisplayZonePoints::PointInPolygon(double X, double Y) const
{
    bool Result = false;
    const int32_t N = GetCount();
    for (int32_t i = 0, j = N - 1; i < N; j = i++) {
        const TQVDisplayZonePoint* Pi = GetNoLockItem(i);
        const TQVDisplayZonePoint* Pj = GetNoLockItem(j);
        const double Yi = Pi->GetY(), Yj = Pj->GetY();
        if (((Yi < Y && Y <= Yj) || (Yj < Y && Y <= Yi)) &&
            Pi->GetX() + (Y - Yi) / (Yj - Yi) * (Pj->GetX() - Pi->GetX()) < X)
            Result = !Result;
    }
    return Result;
}

const TQLClassInfo& TQVDisplayZonePoints::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVDisplayZonePoints", &TQLCollection::StaticClassInfo(), {});
    return Info;
}

// ---- Polygon zone ----

TQVDisplayZone::TQVDisplayZone(TQLCollection* ACollection)
    : TQVBasicDisplayZone(ACollection), FPoints(std::make_unique<TQVDisplayZonePoints>(this, GetLock(), GetDisplay()))
{}

TQVDisplayZone::~TQVDisplayZone() = default;

std::vector<TPoint> TQVDisplayZone::Pixels() const
{
    std::vector<TPoint> Result;
    for (const TQVDisplayZonePoint* P : *FPoints)
        Result.push_back(PixelOf(P->GetX(), P->GetY()));
    return Result;
}

void TQVDisplayZone::DrawShape(TQLCanvas& ACanvas, bool /*AHighlight*/) const
{
    const std::vector<TPoint> P = Pixels();
    ACanvas.Polygon(P.data(), int32_t(P.size()) - 1);
}

void TQVDisplayZone::ClipToShape(TQLCanvas& ACanvas) const
{
    const std::vector<TPoint> P = Pixels();
    ACanvas.IntersectClipPolygon(P.data(), int32_t(P.size()) - 1);
}

double TQVDisplayZone::HitTest(int32_t X, int32_t Y) const
{
    double Result = QVNoHitDistance;
    if (!GetVisible() || FPoints->GetCount() < 2)
        return Result; // a zone of a single point has no outline to hit
    const std::vector<TPoint> P = Pixels();
    const TPoint M{X, Y};
    for (size_t i = 0; i < P.size(); ++i) {
        const TPoint& A = P[i == 0 ? P.size() - 1 : i - 1];
        const TPoint& B = P[i];
        // Both ends more than 3 pixels to one side: too far to measure.
        if ((A.X < X - 3 && B.X < X - 3) || (A.X > X + 3 && B.X > X + 3) || (A.Y < Y - 3 && B.Y < Y - 3) ||
            (A.Y > Y + 3 && B.Y > Y + 3))
            continue;
        double Ratio = 0.0;
        TPoint Nearest{};
        Result = std::min(Result, QPDistancePointToLine(M, A, B, Ratio, Nearest));
    }
    return Result;
}

bool TQVDisplayZone::CustomLegendDraw(TQLCanvas& ACanvas, int32_t AX, int32_t AY)
{
    ACanvas.ApplyBrush(*GetBrush());
    ACanvas.ApplyPen(*GetPen());
    ACanvas.Rectangle(AX, AY - 4, AX + 13, AY + 5);
    return true;
}

const TQLClassInfo& TQVDisplayZone::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayZone>("TQVDisplayZone", &TQVBasicDisplayZone::StaticClassInfo())
            .Collection("Points", &TQVDisplayZone::GetPoints)
            .Build();
    return Info;
}

// ---- Elliptic zone ----

TQVDisplayEllipticZone::TQVDisplayEllipticZone(TQLCollection* ACollection)
    : TQVBasicDisplayZone(ACollection), FPoint1(std::make_unique<TQVDisplayElementPosition>(this, GetLock())),
      FPoint2(std::make_unique<TQVDisplayElementPosition>(this, GetLock()))
{}

TQVDisplayEllipticZone::~TQVDisplayEllipticZone() = default;

TRect TQVDisplayEllipticZone::PixelBox() const
{
    const TPoint A = PixelOf(FPoint1->GetX(), FPoint1->GetY());
    const TPoint B = PixelOf(FPoint2->GetX(), FPoint2->GetY());
    return TRect{A.X, A.Y, B.X, B.Y};
}

namespace {
TRect Sorted(const TRect& R)
{
    return TRect{std::min(R.Left, R.Right), std::min(R.Top, R.Bottom), std::max(R.Left, R.Right),
                 std::max(R.Top, R.Bottom)};
}
} // namespace

void TQVDisplayEllipticZone::DrawShape(TQLCanvas& ACanvas, bool AHighlight) const
{
    if (AHighlight)
        ACanvas.SetPenStyle(psSolid);
    // Drawn from the box as given.
    ACanvas.EllipseRect(PixelBox());
    if (!AHighlight)
        ACanvas.ResetDrawState();
}

void TQVDisplayEllipticZone::ClipToShape(TQLCanvas& ACanvas) const
{
    ACanvas.IntersectClipEllipse(Sorted(PixelBox()));
}

double TQVDisplayEllipticZone::HitTest(int32_t X, int32_t Y) const
{
    if (!GetVisible())
        return QVNoHitDistance;
    TPoint Nearest{};
    return QPDistancePointToEllipse(TPoint{X, Y}, Sorted(PixelBox()), Nearest);
}

bool TQVDisplayEllipticZone::PointInZone(double X, double Y) const
{
    const double CX = (FPoint1->GetX() + FPoint2->GetX()) / 2.0;
    const double CY = (FPoint1->GetY() + FPoint2->GetY()) / 2.0;
    const double A = (FPoint2->GetX() - FPoint1->GetX()) / 2.0;
    const double B = (FPoint2->GetY() - FPoint1->GetY()) / 2.0;
    const double DX = (X - CX) / A, DY = (Y - CY) / B;
    return DX * DX + DY * DY <= 1.0;
}

bool TQVDisplayEllipticZone::CustomLegendDraw(TQLCanvas& ACanvas, int32_t AX, int32_t AY)
{
    ACanvas.ApplyBrush(*GetBrush());
    ACanvas.ApplyPen(*GetPen());
    ACanvas.Ellipse(AX, AY - 4, AX + 13, AY + 5);
    return true;
}

const TQLClassInfo& TQVDisplayEllipticZone::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayEllipticZone>("TQVDisplayEllipticZone", &TQVBasicDisplayZone::StaticClassInfo())
            .Object("Point1", &TQVDisplayEllipticZone::GetPoint1)
            .Object("Point2", &TQVDisplayEllipticZone::GetPoint2)
            .Build();
    return Info;
}

const TQLClassInfo& TQVDisplayZones::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVDisplayZones", &TQLCollection::StaticClassInfo(), {});
    return Info;
}

const TQLClassInfo& TQVDisplayEllipticZones::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVDisplayEllipticZones", &TQLCollection::StaticClassInfo(), {});
    return Info;
}

} // namespace qv
