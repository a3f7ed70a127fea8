#include "qv/display/QVScope.h"

#include "qv/channels/QVDisplayHighlighting.h"
#include "qv/channels/QVScopeChannel.h"
#include "qv/channels/QVScopeDataView.h"
#include "qv/decor/QVDisplayTitle.h"
#include "qv/display/QVDisplayToolBar.h"
#include "qv/elements/QVScopeMarkerGroup.h"
#include "qv/elements/QVTextLabel.h"
#include "qv/foundation/QLClassBuilder.h"

namespace qv {

TQVScope::TQVScope()
{
    GetTitle()->SetTextDefault("Scope");
    FChannels = std::make_unique<TQVScopeChannels>(this, GetLock(), this);
    FChannelLinks = std::make_unique<TQVDisplayChannelLinks>(this, GetLock(), this);
    FTrails = std::make_unique<TQVDisplayTrails>(this);
    FCursors = std::make_unique<TQVScopeCursors>(this, GetLock(), this);
    FZones = std::make_unique<TQVDisplayZones>(this, GetLock(), this, GetHighlighting()->GetZones());
    FEllipses = std::make_unique<TQVDisplayEllipticZones>(this, GetLock(), this, GetHighlighting()->GetEllipses());
    FCursorLinks = std::make_unique<TQVScopeCursorLinks>(this, GetLock(), this);
    FElementFamilies.Set(ekChannelLinks, FChannelLinks.get());
    FElementFamilies.Set(ekCursors, FCursors.get());
    FElementFamilies.Set(ekZones, FZones.get());
    FElementFamilies.Set(ekEllipses, FEllipses.get());
    FElementFamilies.Set(ekCursorLinks, FCursorLinks.get());
    FMarkerGroups = std::make_unique<TQVScopeMarkerGroups>(this, GetLock(), this);
    FLabels = std::make_unique<TQVScopeTextLabels>(this, GetLock(), this);
    FElementFamilies.Set(ekMarkerGroups, FMarkerGroups.get());
    FElementFamilies.Set(ekLabels, FLabels.get());
    FElementFamilies.Set(ekToolBar, GetToolBar());
    // The views dock in the order they are made: the legend, the axes, then the data view,
    // which takes what they leave. Each legend group lists one of the collections.
    FLegend = std::make_unique<TQVScopeLegendView>(this);
    FLegend->GetChannels()->SetItems(FChannels.get());
    FLegend->GetChannelLinks()->SetItems(FChannelLinks.get());
    FLegend->GetZones()->SetItems(FZones.get());
    FLegend->GetEllipses()->SetItems(FEllipses.get());
    FLegend->GetCursors()->SetItems(FCursors.get());
    FLegend->GetCursorLinks()->SetItems(FCursorLinks.get());
    FLegend->GetMarkerGroups()->SetItems(FMarkerGroups.get());
    FLegend->GetLabels()->SetItems(FLabels.get());
    FXAxis = std::make_unique<TQVScopeXAxis>(this);
    FYAxis = std::make_unique<TQVScopeYAxis>(this);
    FDataView = std::make_unique<TQVScopeDataView>(this);
    // Under the mouse: cursors, links, markers, zones, ellipses, labels, then the channels.
    FMarkerHitFamily = std::make_unique<TQVMarkerHitFamily>(FMarkerGroups.get());
    FLabelHitFamily = std::make_unique<TQVLabelHitFamily>(FLabels.get());
    FDataView->SetHitFamily(hfCursors, FCursors.get());
    FDataView->SetHitFamily(hfCursorLinks, FCursorLinks.get());
    FDataView->SetHitFamily(hfMarkerGroups, FMarkerHitFamily.get());
    FDataView->SetHitFamily(hfZones, FZones.get());
    FDataView->SetHitFamily(hfEllipses, FEllipses.get());
    FDataView->SetHitFamily(hfLabels, FLabelHitFamily.get());
    // A new scope has one channel; a stored form without channels gives it back.
    FChannels->SetDefaultCount(1);
    FChannels->Add();
    // Hosted elements draw behind everything else.
    FElementFamilies.Set(ekExternalElements, GetElements());
}

TQVScope::~TQVScope()
{
    // Paint and refresh stop before anything is freed.
    BeginDestroy();
    FLegend.reset();
    // Links let go of their channels before the channels go.
    FElementFamilies.Set(ekChannelLinks, nullptr);
    FChannelLinks.reset();
    FChannels.reset();
    // Links before the cursors they join; all elements before the data view they name.
    FCursorLinks.reset();
    FEllipses.reset();
    FZones.reset();
    FCursors.reset();
    FDataView->SetHitFamily(hfMarkerGroups, nullptr);
    FDataView->SetHitFamily(hfLabels, nullptr);
    FElementFamilies.Set(ekMarkerGroups, nullptr);
    FElementFamilies.Set(ekLabels, nullptr);
    FElementFamilies.Set(ekToolBar, nullptr);
    FMarkerGroups.reset();
    FLabels.reset();
    FYAxis.reset();
    FXAxis.reset();
    FDataView.reset();
}

TQVScopeDataView* TQVScope::GetDataView() const
{
    return FDataView.get();
}

void TQVScope::Print()
{
    struct THoldRestore {
        TQVScope& Scope;
        bool Old;
        ~THoldRestore() { Scope.SetHold(Old); }
    } Restore{*this, GetHold()};
    SetHold(true);
    TQVDataChart::Print();
}

namespace {
// The part of ARegion inside ARect.
TQLRegion ClipRegionTo(const TQLRegion& ARegion, const TRect& ARect)
{
    TQLRegion Result;
    for (const TRect& R : ARegion.GetRects())
        Result.Add(QLIntersectRect(R, ARect));
    return Result;
}
} // namespace

void TQVScope::PaintToCanvasRgn(TQLBitmap& /*ABitmap*/, TQLCanvas& ACanvas, const TRect& /*ARect*/,
                                const TQLRegion& ARegion, bool APrinting)
{
    RecalculateViewRects();
    // A print leaves the flag for the next screen paint.
    const bool Recalculated = !APrinting && FNeedsRecalc.load(std::memory_order_acquire);
    if (!APrinting)
        FNeedsRecalc.store(false, std::memory_order_release);
    const TRect ViewRect = FDataView->GetDrawRect();
    const bool ViewInRegion = !ViewRect.IsEmpty() && ARegion.RectInRegion(ViewRect);
    // Elements clip at the view's bottom edge less one pixel.
    TRect ClipRect = ViewRect;
    ClipRect.Bottom -= 1;

    ACanvas.GetBrush().SetStyle(bsSolid);
    ACanvas.GetBrush().SetColor(GetColor());
    ACanvas.SetPenStyle(psSolid);
    ACanvas.GetPen().SetColor(0xFFFFFFFF);
    ACanvas.SetTextColor(0xFFFFFFFF);
    ACanvas.SetClipRegion(ARegion);
    ACanvas.FillRect(TRect{0, 0, GetPlotWidth(), GetPlotHeight()});

    const TQVScopeElementFamilies& Elements = FElementFamilies;
    Elements.Draw(ekExternalElements, ddpForeground, ACanvas, TRect{0, 0, GetPlotWidth(), GetPlotHeight()}, APrinting);
    Elements.Draw(ekCursorLinks, ddpBackground, ACanvas, ClipRect, APrinting);
    {
        // Backgrounds of zones and markers lie under the grid, inside the view.
        TQLCanvasSave Save(ACanvas);
        ACanvas.SetClipRegion(ClipRegionTo(ARegion, ViewRect));
        for (TQVScopeElementKind Kind : {ekZones, ekEllipses, ekMarkerGroups})
            Elements.Draw(Kind, ddpBackground, ACanvas, ClipRect, APrinting);
        ACanvas.ClearClipRegion();
    }

    ACanvas.GetBrush().SetColor(GetColor());
    const bool Vertical = GetIsVertical();
    for (TQVDisplayView* View : GetViews()) {
        if (!View->IsVisible())
            continue;
        if (ARegion.RectInRegion(View->GetDrawRect()))
            View->Draw(ddpFeatures, ACanvas, Vertical, APrinting);
        else
            View->DrawEx(ddpFeatures, ACanvas, Vertical);
    }

    {
        TQLCanvasSave Save(ACanvas);
        ACanvas.SetClipRegion(ClipRegionTo(ARegion, ViewRect));
        ACanvas.GetBrush().SetColor(GetColor());
        Elements.Draw(ekZones, ddpForeground, ACanvas, ClipRect, APrinting);
        Elements.Draw(ekEllipses, ddpForeground, ACanvas, ClipRect, APrinting);
        // What is dragged over the plot goes onto the control's own picture.
        TQLCanvas* Own = GetBitmapCanvas();
        FDataView->Draw(ddpForeground, Own ? *Own : ACanvas, Vertical, APrinting);
        // Channel links, then the channels over them, in index order.
        if (ViewInRegion) {
            Elements.Draw(ekChannelLinks, ddpForeground, ACanvas, ClipRect, APrinting);
            for (TQVScopeChannel* Channel : *FChannels)
                if (Channel->GetVisible())
                    Channel->Draw(ACanvas, ClipRect, APrinting);
        }
        Elements.Draw(ekMarkerGroups, ddpForeground, ACanvas, ClipRect, APrinting);
        Elements.Draw(ekLabels, ddpForeground, ACanvas, ClipRect, APrinting);
        // The picture moved under a standing mouse: what lies under it is found anew.
        if (Recalculated)
            FDataView->IntHitTests();
        if (!APrinting)
            for (TQVDisplayView* View : GetViews())
                if (View->IsVisible() && ARegion.RectInRegion(View->GetDrawRect()))
                    View->DrawMouseSelction(ACanvas);
        Elements.Draw(ekCursors, ddpForeground, ACanvas, ClipRect, APrinting);
        for (TQVScopeElementKind Kind : {ekCursorLinks, ekZones, ekEllipses})
            Elements.Draw(Kind, ddpFeatures, ACanvas, ClipRect, APrinting);
        // The mark of the channel hit under the mouse, on top of everything in the plot.
        if (!APrinting && FDataView->GetHighlightInfo().FHighlightedItem)
            for (TQVScopeChannel* Channel : *FChannels)
                if (Channel->GetVisible())
                    Channel->DrawHitPoint(ACanvas);
    }

    if (!APrinting && Elements.Get(ekToolBar)) {
        ACanvas.SetClipRegion(ARegion);
        Elements.Draw(ekToolBar, ddpForeground, ACanvas, TRect{0, 0, GetPlotWidth(), GetPlotHeight()}, APrinting);
    }
    // A printed picture shows no focus.
    if (!APrinting && GetIsFocused())
        ACanvas.DrawFocusRect(TRect{0, 0, GetPlotWidth(), GetPlotHeight()});
}

void TQVScope::SetCursorsStayInView(bool AValue)
{
    Set(FCursorsStayInView, AValue, [this] { InvalidateRefresh(); });
}

void TQVScope::SetVertical(bool AValue)
{
    Set(FVertical, AValue, [this] {
        SetNeedsRecalc();
        InvalidateRefresh();
    });
}

void TQVScope::CollectActiveChannels()
{
    for (TQVScopeChannel* Channel : *FChannels)
        Channel->CollectPinConnections();
}

bool TQVScope::ProcessEnoughChannelData(TQVScopeChannel* AChannel, uint32_t ASize, double ASampleRate)
{
    TQWCriticalSectionLock Lock(FAllChannelSection);
    if (AChannel && !AChannel->GetSynchronize())
        return true;
    for (TQVScopeChannel* Channel : *FChannels)
        if (Channel != AChannel && !Channel->HasEnoughData(ASize, ASampleRate))
            return false;
    for (TQVScopeChannel* Channel : *FChannels)
        if (Channel != AChannel)
            Channel->ProcessQueuedData(ASize, ASampleRate);
    return true;
}

void TQVScope::PopulateMaxSample()
{
    for (TQVDisplayAxis* Axis : GetXAxes())
        if (auto* XAxis = dynamic_cast<TQVBasicDisplayXAxis*>(Axis))
            XAxis->PopulateMaxSample();
}

void TQVScope::Loaded()
{
    TQVDataChart::Loaded();
    FChannelLinks->PopulateLinks();
    TQVAxisValue* Min = FYAxis->GetMin();
    if (Min->GetValue() == FYAxis->GetMax()->GetValue())
        Min->SetValue(0.0 - Min->GetValue());
}

void TQVScope::SetMarkerGroups(const TQVScopeMarkerGroups* AValue)
{
    FMarkerGroups->Assign(AValue);
}

TQLCollection* TQVScope::GetMarkerGroupCollection() const
{
    return FMarkerGroups.get();
}

TQVScopeMarkerGroup* TQVScope::GetLastMarerGroup()
{
    auto Guard = GetLock()->AcquireWrite();
    if (FMarkerGroups->GetCount() == 0)
        return FMarkerGroups->Add();
    return FMarkerGroups->GetItem(FMarkerGroups->GetCount() - 1);
}

void TQVScope::SetLabels(const TQVScopeTextLabels* AValue)
{
    FLabels->Assign(AValue);
}

void TQVScope::SetChannels(const TQVScopeChannels* AValue)
{
    FChannels->Assign(AValue);
}

std::string TQVScope::GetFormatedLabelText() const
{
    const TQVRealPoint Value = FDataView->GetValuePoint();
    return GetFormatLabelText(FDataView->GetCurrentMousePoint(), Value.X, Value.Y,
                              GetHighlighting()->GetMouseHitPoint()->GetPointLabel()->GetText(), "%X : %Y");
}

std::string TQVScope::GetFormatedMouseHitLabelText()
{
    std::string Text = GetFormatedLabelText();
    if (FOnCustomMouseHitLabel) {
        FNewText = false;
        const TQVRealPoint Value = FDataView->GetValuePoint();
        FOnCustomMouseHitLabel(this, Value.X, Value.Y, Text);
        if (FNewText)
            Text = FNewLabelText;
    }
    return Text;
}

void TQVScope::SetLabelText(const std::string& AText)
{
    auto Guard = GetLock()->AcquireWrite();
    FNewText = true;
    FNewLabelText = AText;
}

void TQVScope::SetOnCustomMouseHitLabel(TQVCustomMouseLabelEvent AHandler)
{
    auto Guard = GetLock()->AcquireWrite();
    FOnCustomMouseHitLabel = std::move(AHandler);
}

void TQVScope::InvalidateChannels()
{
    for (TQVScopeChannel* Channel : *FChannels)
        Channel->InvalidateChannel();
}

void TQVScope::SetSizeLimit(uint32_t AValue)
{
    Set(FSizeLimit, AValue, [this] {
        // Cut every channel to its newest samples; gaps stay as they are.
        for (TQVScopeChannel* Channel : *FChannels)
            Channel->ApplySizeLimit(GetSizeLimit());
    });
}

bool TQVScope::PopulateDrawBuffers()
{
    // While a zoom box is dragged the data stays frozen, whatever Hold says.
    if (GetHold() || FDataView->InMouseZooming())
        return false;
    bool Changed = false;
    FAllChannelSection.Execute([this, &Changed] {
        for (TQVScopeChannel* Channel : *FChannels)
            if (Channel->GetHasNewBuffer()) {
                Changed = true;
                InvalidateRecalc();
                Channel->PopulateDrawBuffers();
            }
    });
    PopulateMaxSample();
    if (Changed) {
        for (TQVDisplayAxis* Axis : GetAxes())
            Axis->InvalidateMinMaxCache(true);
        for (TQVDisplayAxis* Axis : GetYAxes())
            if (auto* YAxis = dynamic_cast<TQVBasicScopeYAxis*>(Axis))
                YAxis->PopulateScaleHistory();
    }
    return GetNeedsRecalc();
}

void TQVScope::InvalidateRecalc()
{
    if (!GetInDraw())
        TQVDataDisplay::InvalidateRecalc();
}

void TQVScope::Invalidate()
{
    if (!GetInDraw())
        TQVDataDisplay::Invalidate();
}

const TQLClassInfo& TQVScope::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVScope>("TQVScope", &TQVDataChart::StaticClassInfo())
            .Property("Vertical", &TQVScope::GetVertical, &TQVScope::SetVertical, false)
            // Groups before channels: a stored channel marker names its group by index.
            .Collection("MarkerGroups", &TQVScope::GetMarkerGroups)
            .Collection("Channels", &TQVScope::GetChannels)
            // After the channels, whose indexes the links store.
            .Collection("ChannelLinks", &TQVScope::GetChannelLinks)
            .Collection("Cursors", &TQVScope::GetCursors)
            .Collection("Zones", &TQVScope::GetZones)
            .Collection("Ellipses", &TQVScope::GetEllipses)
            .Collection("CursorLinks", &TQVScope::GetCursorLinks)
            .Object("Trails", &TQVScope::GetTrails)
            .Object("Legend", &TQVScope::GetLegend)
            .Property("CursorsStayInView", &TQVScope::GetCursorsStayInView, &TQVScope::SetCursorsStayInView, true)
            .Collection("Labels", &TQVScope::GetLabels)
            .Property("SizeLimit", &TQVScope::GetSizeLimit, &TQVScope::SetSizeLimit, uint32_t(0))
            .Build();
    return Info;
}

} // namespace qv
