#include "qv/elements/QVLegendGroup.h"

#include "qv/component/QVDisplayCollectionItem.h"
#include "qv/component/QVDisplayOwner.h"
#include "qv/elements/QVLegendView.h"
#include "qv/foundation/QLClassBuilder.h"

#include <algorithm>

namespace qv {

// ---- TQVBasicLegendGroup ----

TQVBasicLegendGroup::TQVBasicLegendGroup(TQVLegendView* ALegend, const std::string& ADefaultLabel)
    : TQLPersistentNotify(ALegend, ALegend->GetLock(), [ALegend] { ALegend->InvalidateRecalc(); }), FLegend(ALegend),
      FCaption(std::make_unique<TQVDisplayLabel>(this, ALegend->GetLock(), [ALegend] { ALegend->InvalidateRecalc(); })),
      FDefaultLabel(ADefaultLabel)
{}

TQVBasicLegendGroup::~TQVBasicLegendGroup() = default;

std::string TQVBasicLegendGroup::GetCaptionText() const
{
    return FCaption->GetText().empty() ? FDefaultLabel : FCaption->GetText();
}

int32_t TQVBasicLegendGroup::GetDefaultWidth(TQLCanvas& ACanvas) const
{
    const int32_t Count = GetItemsCount();
    if (!FVisible || Count == 0)
        return 0;
    int32_t Width = 0;
    if (FCaption->GetVisible()) {
        ACanvas.ApplyFont(*FCaption->GetFont());
        Width = ACanvas.TextWidth(GetCaptionText()) + 23;
    }
    ACanvas.ApplyFont(*FLegend->GetFont());
    std::string Name;
    for (int32_t I = 0; I < Count; ++I)
        if (GetItemVisible(I)) {
            GetItemName(Name, I);
            Width = std::max(Width, ACanvas.TextWidth(Name) + 30);
        }
    return Width;
}

int32_t TQVBasicLegendGroup::GetHeight(TQLCanvas& ACanvas, bool& ANotFirst) const
{
    const int32_t Count = GetItemsCount();
    if (!FVisible || Count == 0)
        return 0;
    ACanvas.ApplyFont(*FLegend->GetFont());
    const int32_t Line = TQVLegendView::LineHeight(ACanvas);
    int32_t Height = 0;
    if (FCaption->GetVisible()) {
        ACanvas.ApplyFont(*FCaption->GetFont());
        // The heading sits 6 pixels up into the line above the first item.
        Height += TQVLegendView::LineHeight(ACanvas) - 6;
    }
    for (int32_t I = 0; I < Count; ++I)
        if (GetItemVisible(I))
            Height += Line;
    if (ANotFirst)
        Height += Line;
    ANotFirst = true;
    return Height;
}

void TQVBasicLegendGroup::Draw(TQLCanvas& ACanvas, int32_t ALeft, int32_t ARight, bool APrinting, int32_t& AYPos,
                               int32_t& ALastY)
{
    const int32_t Count = GetItemsCount();
    if (!FVisible || Count == 0)
        return;
    ACanvas.SetPenStyle(psSolid);
    ALastY = AYPos;
    ACanvas.ApplyFont(*FLegend->GetFont());
    const int32_t Line = TQVLegendView::LineHeight(ACanvas);
    if (FCaption->GetVisible()) {
        ACanvas.ApplyFont(*FCaption->GetFont());
        ACanvas.GetBrush().SetStyle(bsClear);
        AYPos -= 6;
        ACanvas.TextOut(ALeft + 4, AYPos - ACanvas.TextHeight("Xg") / 2, GetCaptionText());
        AYPos += TQVLegendView::LineHeight(ACanvas);
        ACanvas.ApplyFont(*FLegend->GetFont());
        ACanvas.GetBrush().SetStyle(bsSolid);
    }
    ALastY = AYPos;
    const int32_t Half = ACanvas.TextHeight("Xg") / 2;
    const TQVLegendViewButtonSettings& Buttons = *FLegend->GetButtons();
    std::string Name;
    for (int32_t I = 0; I < Count; ++I) {
        if (!GetItemVisible(I))
            continue;
        const bool Down = I == FMuseDownItemIndex || GetItemMouseDown(I);
        const bool Lit = I == FHighlightedItemIndex || GetItemHighlighted(I);
        if (!APrinting && (Lit || Down)) {
            // The selection frame: a filled row with a border and cut corners.
            const TAlphaColor Fill = Down ? Buttons.GetMouseDownColor() : Buttons.GetMouseOverColor();
            const TAlphaColor Border = Down ? Buttons.GetMouseDownBorderColor() : Buttons.GetMouseOverBorderColor();
            AYPos -= 1;
            const int32_t Y = AYPos - Half;
            ACanvas.GetBrush().SetStyle(bsSolid);
            ACanvas.GetBrush().SetColor(Fill);
            ACanvas.FillRect(TRect{ALeft + 5, Y, ARight - 5, Y + Line});
            ACanvas.GetPen().SetColor(Border);
            ACanvas.MoveTo(ALeft + 5, Y);
            ACanvas.LineTo(ARight - 5, Y);
            ACanvas.MoveTo(ALeft + 4, Y + 1);
            ACanvas.LineTo(ALeft + 4, Y + Line);
            ACanvas.MoveTo(ALeft + 5, Y + Line);
            ACanvas.LineTo(ARight - 5, Y + Line);
            ACanvas.MoveTo(ARight - 5, Y + 1);
            ACanvas.LineTo(ARight - 5, Y + Line);
            ACanvas.SetPixel(ALeft + 5, Y + 1, Border);
            ACanvas.SetPixel(ALeft + 5, Y + Line - 1, Border);
            ACanvas.SetPixel(ARight - 6, Y + 1, Border);
            ACanvas.SetPixel(ARight - 6, Y + Line - 1, Border);
            ALastY = AYPos;
            AYPos += 1;
        }
        if (!ItemCustomLegendDraw(I, ACanvas, ALeft + 6, AYPos)) {
            if (GetItemHasPen(I)) {
                ACanvas.GetPen() = GetItemLegendPen(I);
            } else {
                ACanvas.GetPen().SetStyle(psSolid);
                ACanvas.GetPen().SetColor(GetItemLegendPenColor(I));
            }
            if (GetItemHasBrush(I)) {
                ACanvas.GetBrush() = GetItemLegendBrush(I);
            } else {
                ACanvas.GetBrush().SetStyle(bsSolid);
                ACanvas.GetBrush().SetColor(GetItemLegendPenColor(I));
            }
            ACanvas.RectangleRect(TRect{ALeft + 6, AYPos - 1, ALeft + 19, AYPos + 2});
        }
        // The name in the legend's font colour, whatever the item's colour.
        ACanvas.ApplyFont(*FLegend->GetFont());
        ACanvas.GetBrush().SetStyle(bsClear);
        GetItemName(Name, I);
        ACanvas.TextOut(ALeft + 23, AYPos - Half, Name);
        ALastY = AYPos;
        AYPos += Line;
    }
    ALastY = AYPos;
    AYPos += Line;
    ACanvas.ResetDrawState();
    ACanvas.SetPenWidth(1);
}

void TQVBasicLegendGroup::ButtonHitTest(TQLCanvas& ACanvas, int32_t AX, int32_t AY, int32_t& AYPos)
{
    const int32_t Count = GetItemsCount();
    if (!FVisible || Count == 0)
        return;
    const TRect View = FLegend->GetDrawRect();
    if (FCaption->GetVisible()) {
        ACanvas.ApplyFont(*FCaption->GetFont());
        AYPos += TQVLegendView::LineHeight(ACanvas) - 6;
    }
    ACanvas.ApplyFont(*FLegend->GetFont());
    const int32_t Line = TQVLegendView::LineHeight(ACanvas);
    const int32_t Half = ACanvas.TextHeight("Xg") / 2;
    int32_t NewIndex = -1;
    for (int32_t I = 0; I < Count; ++I) {
        if (!GetItemVisible(I))
            continue;
        const TRect Row{View.Left + 4, AYPos - Half, View.Right - 2, AYPos - Half + Line};
        // A row scrolled above the top of the view cannot be hit.
        if (AYPos >= View.Top && Row.Contains(TPoint{AX, AY})) {
            NewIndex = I;
            GetLegend()->GetDisplay()->InvalidateIntRect(Row);
        }
        if (I == FHighlightedItemIndex)
            GetLegend()->GetDisplay()->InvalidateIntRect(Row);
        AYPos += Line;
    }
    AYPos += Line;
    SetHighlightedIndex(NewIndex);
}

void TQVBasicLegendGroup::SetHighlightedIndex(int32_t AIndex)
{
    const int32_t Old = FHighlightedItemIndex;
    FHighlightedItemIndex = AIndex;
    if ((Old < 0) != (AIndex < 0))
        FLegend->ItemHighlightChanged(this, AIndex >= 0);
    if (Old == AIndex)
        return;
    const int32_t Count = GetItemsCount();
    for (int32_t I = 0; I < Count; ++I)
        SetItemHighlighted(I, I == AIndex);
}

bool TQVBasicLegendGroup::ClearHighlight()
{
    if (FHighlightedItemIndex < 0)
        return false;
    SetHighlightedIndex(-1);
    return true;
}

bool TQVBasicLegendGroup::ItemMouseDown(int32_t AGroupIndex)
{
    FMuseDownItemIndex = FHighlightedItemIndex;
    if (FMuseDownItemIndex < 0)
        return false;
    const int32_t Index = FMuseDownItemIndex;
    bool Clicked = false;
    if (FOnItemClick)
        FOnItemClick(this, Index, Clicked);
    if (!Clicked && HasDialogPage())
        FLegend->GetDisplay()->DoLegendClick(AGroupIndex, Index, GetItemObject(Index));
    FMuseDownItemIndex = -1;
    return true;
}

const TQLClassInfo& TQVBasicLegendGroup::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVBasicLegendGroup>("TQVBasicLegendGroup", &TQLPersistentNotify::StaticClassInfo())
            .Object("Caption", &TQVBasicLegendGroup::GetCaption)
            .Property("Visible", &TQVBasicLegendGroup::GetVisible, &TQVBasicLegendGroup::SetVisible, true)
            .Property("Cursor", &TQVBasicLegendGroup::GetCursor, &TQVBasicLegendGroup::SetCursor, crLegendItem)
            .Build();
    return Info;
}

// ---- TQVLegendGroup ----

void TQVLegendGroup::SetItems(TQLCollection* AItems)
{
    ClearHighlight();
    FItems = AItems;
    GetLegend()->InvalidateRecalc();
}

TQVDisplayCollectionItem* TQVLegendGroup::Item(int32_t AIndex) const
{
    // The collection raises for an index out of range.
    auto Guard = FItems->GetLock()->AcquireRead();
    return static_cast<TQVDisplayCollectionItem*>(FItems->GetBaseItem(AIndex));
}

int32_t TQVLegendGroup::GetItemsCount() const
{
    return FItems ? FItems->GetCount() : 0;
}

void TQVLegendGroup::GetItemName(std::string& AName, int32_t AIndex) const
{
    AName = Item(AIndex)->GetDisplayName();
}

bool TQVLegendGroup::GetItemVisible(int32_t AIndex) const
{
    return Item(AIndex)->IsVisible();
}

void TQVLegendGroup::SetItemHighlighted(int32_t AIndex, bool AValue)
{
    Item(AIndex)->SetHighlighted(AValue);
}

bool TQVLegendGroup::GetItemHighlighted(int32_t AIndex) const
{
    return Item(AIndex)->GetHighlighted();
}

bool TQVLegendGroup::GetItemMouseDown(int32_t AIndex) const
{
    return Item(AIndex)->GetMouseDown();
}

bool TQVLegendGroup::ItemCustomLegendDraw(int32_t AIndex, TQLCanvas& ACanvas, int32_t AX, int32_t AY)
{
    return Item(AIndex)->CustomLegendDraw(ACanvas, AX, AY);
}

TAlphaColor TQVLegendGroup::GetItemLegendPenColor(int32_t AIndex) const
{
    return Item(AIndex)->GetLegendPenColor();
}

bool TQVLegendGroup::GetItemHasPen(int32_t AIndex) const
{
    return Item(AIndex)->GetHasPen();
}

TQLCanvasPen TQVLegendGroup::GetItemLegendPen(int32_t AIndex) const
{
    return Item(AIndex)->GetLegendPen();
}

bool TQVLegendGroup::GetItemHasBrush(int32_t AIndex) const
{
    return Item(AIndex)->GetHasBrush();
}

TQLCanvasBrush TQVLegendGroup::GetItemLegendBrush(int32_t AIndex) const
{
    return Item(AIndex)->GetLegendBrush();
}

TQLPersistent* TQVLegendGroup::GetItemObject(int32_t AIndex) const
{
    return Item(AIndex);
}

const TQLClassInfo& TQVLegendGroup::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVLegendGroup", &TQVBasicLegendGroup::StaticClassInfo(), {});
    return Info;
}

} // namespace qv
