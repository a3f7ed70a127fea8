#pragma once
// Zones: a polygon (TQVDisplayZone) or an ellipse (TQVDisplayEllipticZone) given in the
// values of the zone's axes. A zone is filled behind the channels, outlined above the grid,
// hit on its outline only, and draws the channels linked to it again in their highlight
// colour inside its shape.

#include "qv/channels/QVDataViewHitFamily.h"
#include "qv/channels/QVDisplayHighlighting.h"
#include "qv/channels/QVHighlightInfo.h"
#include "qv/component/QVDisplayCollection.h"
#include "qv/component/QVScopeElements.h"
#include "qv/elements/QVElementChannelLink.h"
#include "qv/elements/QVOptionalAxesDisplayCollectionItem.h"
#include "qv/foundation/QVDisplayBrush.h"
#include "qv/foundation/QVDisplayPen.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace qv {

class TQVScopeChannel;

// An element with its own mouse cursor.
class TQVOptionalAxesCursorDisplayCollectionItem : public TQVOptionalAxesDisplayCollectionItem {
public:
    using TQVOptionalAxesDisplayCollectionItem::TQVOptionalAxesDisplayCollectionItem;

    TCursor GetMouseCursor() const { return FMouseCursor; }
    void SetMouseCursor(TCursor AValue) { Set(FMouseCursor, AValue); }

    QL_CLASS_INFO()

private:
    TCursor FMouseCursor = crDefault;
};

// An X and a Y in the values of an element's axes, written through the lock setters: the
// point of a zone's settings, whether it is owned outright (TQLPersistent) or one of a list
// (TQLCollectionItem).
template <class TBase>
class TQVValuePoint : public TBase {
public:
    using TBase::TBase;

    double GetX() const { return FX; }
    void SetX(double AValue) { this->Set(FX, AValue); }
    double GetY() const { return FY; }
    void SetY(double AValue) { this->Set(FY, AValue); }

private:
    double FX = 0.0;
    double FY = 0.0;
};

// A point of an element, in the values of the element's axes.
class TQVDisplayElementPosition : public TQVValuePoint<TQLPersistent> {
public:
    using TQVValuePoint<TQLPersistent>::TQVValuePoint;

    QL_CLASS_INFO()
};

class TQVBasicDisplayZone : public TQVOptionalAxesCursorDisplayCollectionItem {
public:
    explicit TQVBasicDisplayZone(TQLCollection* ACollection);
    ~TQVBasicDisplayZone() override;

    // The channels drawn again inside the zone.
    TQVDisplayZoneChannelLinks* GetChannels() const { return FChannels.get(); }
    void SetChannels(const TQVDisplayZoneChannelLinks* AValue) { FChannels->Assign(AValue); }
    TQVDisplayPen* GetPen() const { return FPen.get(); }
    void SetPen(const TQVDisplayPen* AValue) { FPen->Assign(AValue); }
    TQVDisplayBrush* GetBrush() const { return FBrush.get(); }
    void SetBrush(const TQVDisplayBrush* AValue) { FBrush->Assign(AValue); }
    bool GetIsDynamic() const { return FIsDynamic; }

    // The fill (ddpBackground), the recoloured channels (ddpForeground) and the outline
    // (ddpFeatures).
    void Draw(TQVDisplayDrawPart APart, TQLCanvas& ACanvas, const TRect& DispRect, bool Printing);
    // The distance in pixels from (X, Y) to the outline; QVNoHitDistance when none.
    virtual double HitTest(int32_t X, int32_t Y) const = 0;
    // Whether the value pair lies inside the zone.
    virtual bool PointInZone(double X, double Y) const = 0;

    bool GetHighlighted() const override;
    void SetHighlighted(bool AValue) override;
    TAlphaColor GetLegendPenColor() const override { return FPen->GetColor(); }

    QL_CLASS_INFO()

protected:
    void BeforeDestruction() override;
    // The pixel of a value pair on screen.
    TPoint PixelOf(double AX, double AY) const;
    // The zone's shape: outline (with the highlight pen when AHighlight), or as the clip.
    virtual bool HasShape() const = 0;
    virtual void DrawShape(TQLCanvas& ACanvas, bool AHighlight) const = 0;
    virtual void ClipToShape(TQLCanvas& ACanvas) const = 0;
    // The highlight colour of this kind of zone.
    TAlphaColor HighlightColor() const;

private:
    std::unique_ptr<TQVDisplayZoneChannelLinks> FChannels;
    std::unique_ptr<TQVDisplayPen> FPen;
    std::unique_ptr<TQVDisplayBrush> FBrush;
    bool FIsDynamic = false;
};

// A corner of a polygon zone.
class TQVDisplayZonePoint : public TQVValuePoint<TQLCollectionItem> {
public:
    using TQVValuePoint<TQLCollectionItem>::TQVValuePoint;

    QL_CLASS_INFO()
};

// The corners of a polygon zone, in order; a change repaints the display.
class TQVDisplayZonePoints : public TQVDisplayCollection<TQVDisplayZonePoint> {
public:
    using TQVDisplayCollection<TQVDisplayZonePoint>::TQVDisplayCollection;

    // A new point at the end, at (AX, AY).
    TQVDisplayZonePoint* Add(double AX, double AY);
    using TQVDisplayCollection<TQVDisplayZonePoint>::Add;
    // Whether (X, Y) lies inside the polygon, by the even-odd rule.
    bool PointInPolygon(double X, double Y) const;

    QL_CLASS_INFO()
};

class TQVDisplayZone : public TQVBasicDisplayZone {
public:
    explicit TQVDisplayZone(TQLCollection* ACollection);
    ~TQVDisplayZone() override;

    TQVDisplayZonePoints* GetPoints() const { return FPoints.get(); }
    void SetPoints(const TQVDisplayZonePoints* AValue) { FPoints->Assign(AValue); }

    // From the nearest edge (the closing one included); a zone of one point is never hit.
    double HitTest(int32_t X, int32_t Y) const override;
    bool PointInZone(double X, double Y) const override { return FPoints->PointInPolygon(X, Y); }
    bool CustomLegendDraw(TQLCanvas& ACanvas, int32_t AX, int32_t AY) override;

    QL_CLASS_INFO()

protected:
    bool HasShape() const override { return FPoints->GetCount() > 0; }
    void DrawShape(TQLCanvas& ACanvas, bool AHighlight) const override;
    void ClipToShape(TQLCanvas& ACanvas) const override;

private:
    std::vector<TPoint> Pixels() const;

    std::unique_ptr<TQVDisplayZonePoints> FPoints;
};

class TQVDisplayEllipticZone : public TQVBasicDisplayZone {
public:
    explicit TQVDisplayEllipticZone(TQLCollection* ACollection);
    ~TQVDisplayEllipticZone() override;

    // Two opposite corners of the ellipse's box.
    TQVDisplayElementPosition* GetPoint1() const { return FPoint1.get(); }
    void SetPoint1(const TQVDisplayElementPosition* AValue) { FPoint1->Assign(AValue); }
    TQVDisplayElementPosition* GetPoint2() const { return FPoint2.get(); }
    void SetPoint2(const TQVDisplayElementPosition* AValue) { FPoint2->Assign(AValue); }

    // Along the ray from the centre to the outline of the box's ellipse, corners sorted.
    double HitTest(int32_t X, int32_t Y) const override;
    bool PointInZone(double X, double Y) const override;
    bool CustomLegendDraw(TQLCanvas& ACanvas, int32_t AX, int32_t AY) override;

    QL_CLASS_INFO()

protected:
    bool HasShape() const override { return true; }
    void DrawShape(TQLCanvas& ACanvas, bool AHighlight) const override;
    void ClipToShape(TQLCanvas& ACanvas) const override;

private:
    // The box from Point1 to Point2 as given, not sorted.
    TRect PixelBox() const;

    std::unique_ptr<TQVDisplayElementPosition> FPoint1;
    std::unique_ptr<TQVDisplayElementPosition> FPoint2;
};

// The zones of one kind. New zones are named by the kind ("Zone", "Ellipse") and the count,
// and take the least used palette colour for their outline.
template <class T>
class TQVBasicDisplayZones : public TQVOptionalDisplayCollection<T>,
                             public IQVScopeElementFamily,
                             public IQVDataViewHitFamily {
public:
    // AHighlighting: how this kind of zone lights up; AName: the stem of new names.
    TQVBasicDisplayZones(TQLPersistent* AOwner, TQLLockPtr ALock, TQVDisplayOwner* ADisplay,
                         TQVDisplayItemHighlighting* AHighlighting, std::string AName)
        : TQVOptionalDisplayCollection<T>(AOwner, std::move(ALock), ADisplay), FHighlighting(AHighlighting),
          FName(std::move(AName))
    {}

    TQVDisplayItemHighlighting* GetHighlighting() const { return FHighlighting; }

    // The zone whose outline lies nearest to (X, Y), from the last zone to the first; a
    // later zone wins a tie and a distance of 0 ends the walk. True below QVHitTolerance.
    bool HitTest(int32_t X, int32_t Y, int32_t& AIndex) const
    {
        double Best = QVNoHitDistance;
        AIndex = 0;
        for (int32_t i = this->GetCount() - 1; i >= 0; --i) {
            const double D = this->GetNoLockItem(i)->HitTest(X, Y);
            if (i == this->GetCount() - 1 || D < Best) {
                Best = D;
                AIndex = i;
                if (D == 0.0)
                    break;
            }
        }
        return Best < QVHitTolerance;
    }
    // As a family of the data view: a zone under the mouse shows its mouse cursor, and
    // becomes the highlighted item only while its kind highlights from the mouse.
    bool HitTest(TQVHighlightInfo& AInfo, int32_t X, int32_t Y, const TRect& ARect, TQVElementHit& AHit) override
    {
        int32_t Index = 0;
        if (!HitTest(X, Y, Index))
            return false;
        T* Zone = this->GetNoLockItem(Index);
        AHit.Item = Zone;
        AHit.Cursor = Zone->GetMouseCursor();
        AHit.Takes = FHighlighting && FHighlighting->GetMouseHighlighting();
        return true;
    }
    int32_t GetCountOfPenColor(TAlphaColor AColor, const TQLCollectionItem* AExcept = nullptr) const
    {
        int32_t Count = 0;
        for (int32_t i = 0; i < this->GetCount(); ++i) {
            const T* Item = this->GetNoLockItem(i);
            if (Item != AExcept && Item->GetPen()->GetColorDefault() == AColor)
                ++Count;
        }
        return Count;
    }
    TAlphaColor GetNewPenColor(const TQLCollectionItem* AExcept = nullptr) const
    {
        return QVLeastUsedPaletteColor([&](TAlphaColor C) { return GetCountOfPenColor(C, AExcept); });
    }
    void NewItemCreated(TQLCollectionItem* AItem) override
    {
        TQVOptionalDisplayCollection<T>::NewItemCreated(AItem);
        T* Item = static_cast<T*>(AItem);
        Item->SetName(FName + std::to_string(this->GetCount()));
        Item->GetPen()->SetColorDefault(GetNewPenColor(AItem));
        if (TQVDisplayOwner* Display = this->GetDisplay())
            Display->InvalidateRecalc();
    }
    void DrawElements(TQVDisplayDrawPart APart, TQLCanvas& ACanvas, const TRect& AClip, bool APrinting) override
    {
        for (T* Zone : *this)
            Zone->Draw(APart, ACanvas, AClip, APrinting);
    }

private:
    TQVDisplayItemHighlighting* FHighlighting;
    std::string FName;
};

class TQVDisplayZones : public TQVBasicDisplayZones<TQVDisplayZone> {
public:
    TQVDisplayZones(TQLPersistent* AOwner, TQLLockPtr ALock, TQVDisplayOwner* ADisplay,
                    TQVDisplayItemHighlighting* AHighlighting)
        : TQVBasicDisplayZones<TQVDisplayZone>(AOwner, std::move(ALock), ADisplay, AHighlighting, "Zone")
    {}
    QL_CLASS_INFO()
};

class TQVDisplayEllipticZones : public TQVBasicDisplayZones<TQVDisplayEllipticZone> {
public:
    TQVDisplayEllipticZones(TQLPersistent* AOwner, TQLLockPtr ALock, TQVDisplayOwner* ADisplay,
                            TQVDisplayItemHighlighting* AHighlighting)
        : TQVBasicDisplayZones<TQVDisplayEllipticZone>(AOwner, std::move(ALock), ADisplay, AHighlighting, "Ellipse")
    {}
    QL_CLASS_INFO()
};

} // namespace qv
