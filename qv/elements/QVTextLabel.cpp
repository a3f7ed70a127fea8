// Text labels: position, drawing, hit test and highlight.
#include "qv/elements/QVTextLabel.h"

#include "qv/axes/QVDisplayAxis.h"
#include "qv/channels/QVHighlightInfo.h"
#include "qv/channels/QVScopeDataView.h"
#include "qv/component/QVDisplayComponent.h"
#include "qv/elements/QVElementDrag.h"
#include "qv/foundation/QLClassBuilder.h"

namespace qv {

TQVDisplayTextLabel::TQVDisplayTextLabel(TQLCollection* ACollection)
    : TQVOptionalDisplayCollectionItem(ACollection),
      FPosition(std::make_unique<TQVDisplayMarkerPosition>(this, GetLock(), [this] { InvalidateItem(); })),
      FFont(std::make_unique<TQVDisplayFont>(this, GetLock(), [this] { InvalidateItem(); }))
{}

TQVDisplayTextLabel::~TQVDisplayTextLabel() = default;

void TQVDisplayTextLabel::BeforeDestruction()
{
    TQVOptionalDisplayCollectionItem::BeforeDestruction();
    if (TQVScopeDataView* View = TQVScopeDataView::Of(GetDisplay()))
        View->ForgetItem(this);
}

TQVDisplayAxis* TQVDisplayTextLabel::GetXAxis() const
{
    TQVDisplayOwner* Display = GetDisplay();
    if (!Display)
        return nullptr;
    TQVDisplayAxis* Axis = Display->GetXAxisByIndex(FXAxisIndex);
    return Axis ? Axis : Display->GetXAxis();
}

TQVDisplayAxis* TQVDisplayTextLabel::GetYAxis() const
{
    TQVDisplayOwner* Display = GetDisplay();
    if (!Display)
        return nullptr;
    TQVDisplayAxis* Axis = Display->GetYAxisByIndex(FYAxisIndex);
    return Axis ? Axis : Display->GetYAxis();
}

TPoint TQVDisplayTextLabel::GetDrawPosition(const TRect& /*ADispRect*/) const
{
    const TQVDisplayAxis* XAxis = GetXAxis();
    const TQVDisplayAxis* YAxis = GetYAxis();
    if (!XAxis || !YAxis)
        return TPoint{0, 0};
    const int32_t Along = XAxis->ScaleToPixel(FPosition->GetX());
    const int32_t Across = YAxis->ScaleToPixel(FPosition->GetY());
    return GetDisplay()->GetIsVertical() ? TPoint{Across, Along} : TPoint{Along, Across};
}

void TQVDisplayTextLabel::Draw(TQLCanvas& ACanvas, const TRect& ADispRect, bool /*APrinting*/)
{
    if (!GetVisible() || FName.empty())
        return;
    const TPoint P = GetDrawPosition(ADispRect);
    TQLCanvasSave Save(ACanvas);
    ACanvas.GetBrush().SetStyle(bsClear);
    ACanvas.ApplyFont(*FFont);
    const TSize Size = ACanvas.TextExtent(FName);
    ACanvas.TextOut(P.X - Size.cx / 2, P.Y - Size.cy / 2, FName);
}

bool TQVDisplayTextLabel::HitTest(int32_t AX, int32_t AY, const TRect& ADispRect) const
{
    TQLCanvas* Canvas = GetDisplay() ? GetDisplay()->GetCanvas() : nullptr;
    if (!GetVisible() || !Canvas || FName.empty())
        return false;
    const TSize Size = Canvas->TextExtent(FName);
    const TPoint P = GetDrawPosition(ADispRect);
    const int32_t Left = P.X - Size.cx / 2;
    const int32_t Top = P.Y - Size.cy / 2;
    return AX >= Left && AX < Left + Size.cx && AY >= Top && AY < Top + Size.cy;
}

bool TQVDisplayTextLabel::GetHighlighted() const
{
    TQVDisplayOwner* Display = GetDisplay();
    const TQVHighlightInfo* Info = Display ? Display->GetHighlightInfo() : nullptr;
    const TQVDisplayHighlighting* Settings = Display ? Display->GetHighlighting() : nullptr;
    if (!Info || !Settings)
        return false;
    return (Info->FHighlightedItem == static_cast<const TQLPersistent*>(this) ||
            Info->FExtHighlightTextLabel == this) &&
           Settings->GetLabels()->GetHiglightLegendButton();
}

void TQVDisplayTextLabel::SetHighlighted(bool AValue)
{
    TQVDisplayOwner* Display = GetDisplay();
    TQVHighlightInfo* Info = Display ? Display->GetHighlightInfo() : nullptr;
    const TQVDisplayHighlighting* Settings = Display ? Display->GetHighlighting() : nullptr;
    if (!Info || !Settings)
        return;
    if (QVSetItemHighlighted(Info->FExtHighlightTextLabel, this, AValue, *Settings->GetLabels()))
        if (TQVScopeDataView* View = TQVScopeDataView::Of(Display))
            View->InvalidateView();
}

const TQLClassInfo& TQVDisplayTextLabel::StaticClassInfo()
{
    using C = TQVDisplayTextLabel;
    static const TQLClassInfo Info =
        TQLClassBuilder<C>("TQVDisplayTextLabel", &TQVOptionalDisplayCollectionItem::StaticClassInfo())
            .Object("Position", &C::GetPosition)
            .Object("Font", &C::GetFont)
            .Property("XAxisIndex", &C::GetXAxisIndex, &C::SetXAxisIndex, 0)
            .Property("YAxisIndex", &C::GetYAxisIndex, &C::SetYAxisIndex, 0)
            .Build();
    return Info;
}

const TQLClassInfo& TQVScopeTextLabel::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVScopeTextLabel", &TQVDisplayTextLabel::StaticClassInfo(), {});
    return Info;
}

// ---- TQVScopeTextLabels ----

void TQVScopeTextLabels::NewItemCreated(TQLCollectionItem* AItem)
{
    TQVOptionalDisplayCollection<TQVScopeTextLabel>::NewItemCreated(AItem);
    static_cast<TQVScopeTextLabel*>(AItem)->SetName("Label" + std::to_string(GetCount()));
}

void TQVScopeTextLabels::DrawElements(TQVDisplayDrawPart /*APart*/, TQLCanvas& ACanvas, const TRect& AClip,
                                      bool APrinting)
{
    for (TQVScopeTextLabel* Label : *this)
        Label->Draw(ACanvas, AClip, APrinting);
}

TQVScopeTextLabel* TQVScopeTextLabels::HitTest(int32_t AX, int32_t AY) const
{
    TQVDisplayOwner* Display = GetDisplay();
    const TQVDisplayComponent* View = Display ? Display->GetDataView() : nullptr;
    const TRect DispRect = View ? View->GetDrawRect() : TRect{};
    return QVTopElementAt<TQVScopeTextLabel>(*this, AX, AY, DispRect);
}

const TQLClassInfo& TQVScopeTextLabels::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVScopeTextLabels", &TQLCollection::StaticClassInfo(), {});
    return Info;
}

} // namespace qv
