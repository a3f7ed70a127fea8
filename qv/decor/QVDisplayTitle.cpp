#include "qv/decor/QVDisplayTitle.h"

#include "qv/component/QVDisplayOwner.h"
#include "qv/foundation/QLClassBuilder.h"

#include <algorithm>
#include <climits>
#include <stdexcept>
#include <utility>

namespace qv {

// ---- TQVBasicDisplayTitle ----

TQVBasicDisplayTitle::TQVBasicDisplayTitle(TQVDisplayOwner* ADisplay)
    : TQVOptionalView(ADisplay, vaTop),
      FFont(std::make_unique<TQVDisplayFont>(
          this, GetLock(), [this] { FontChanged(); }, "Arial", 16, TAlphaColor(0xFFFFFFFF), fsBold))
{}

TQVBasicDisplayTitle::~TQVBasicDisplayTitle() = default;

void TQVBasicDisplayTitle::SetText(const std::string& AValue)
{
    Set(FText, AValue, [this] { InvalidateRecalc(); });
}

void TQVBasicDisplayTitle::SetTextDefault(const std::string& AValue)
{
    auto Guard = GetLock()->AcquireWrite();
    const bool Follow = FText == FTextDefault;
    FTextDefault = AValue;
    if (Follow)
        SetText(AValue);
}

void TQVBasicDisplayTitle::FontChanged()
{
    InvalidateRecalc();
}

TSize TQVBasicDisplayTitle::GetAutoSize() const
{
    // Without a surface (a display with no canvas yet) there is nothing to measure with:
    // the strip keeps its margins only.
    int32_t TextHeight = 0;
    if (TQLCanvas* Canvas = GetDisplay()->GetCanvas()) {
        Canvas->ApplyFont(*FFont);
        TextHeight = Canvas->TextHeight("Xg");
    }
    TSize Size{-1, TextHeight + 16};
    if (FAlign == vaLeft || FAlign == vaRight)
        std::swap(Size.cx, Size.cy);
    return Size;
}

TSize TQVBasicDisplayTitle::GetDefaultSize() const
{
    if (GetViewSize()->GetAutoSize())
        return GetAutoSize();
    TSize Size{-1, static_cast<int32_t>(std::min<uint32_t>(GetViewSize()->GetSize(), INT32_MAX))};
    if (FAlign == vaLeft || FAlign == vaRight)
        std::swap(Size.cx, Size.cy);
    return Size;
}

void TQVBasicDisplayTitle::Draw(TQVDisplayDrawPart /*ADrawPart*/, TQLCanvas& ACanvas, bool /*AVertical*/,
                                bool /*APrinting*/)
{
    // Views drawn after this one must not inherit the turned text or the title's font.
    TQLCanvasSave Save(ACanvas);
    const TRect Rect = GetDrawRect();
    const TQVDisplayViewBackground* Background = GetBackground();
    if (Background->GetUseControlColor()) {
        ACanvas.GetBrush().SetStyle(bsClear);
    } else {
        ACanvas.GetBrush().SetStyle(bsSolid);
        ACanvas.GetBrush().SetColor(Background->GetColor());
        ACanvas.FillRect(Rect);
    }
    ACanvas.ApplyFont(*FFont);

    // Centred on the plot, not on the strip. The divisions truncate: with a turned text the
    // odd pixel of the width falls below the centre on the left, above it on the right.
    const int32_t PlotWidth = GetDisplay()->GetPlotWidth();
    const int32_t PlotHeight = GetDisplay()->GetPlotHeight();
    switch (GetScreenAlign()) {
    case vsaLeft: {
        ACanvas.SetTextAngle(90);
        const int32_t W = ACanvas.TextWidth(FText);
        ACanvas.TextOut(Rect.Left + 4, PlotHeight / 2 + W - W / 2, FText);
        break;
    }
    case vsaRight: {
        ACanvas.SetTextAngle(270);
        const int32_t W = ACanvas.TextWidth(FText);
        ACanvas.TextOut(Rect.Right - 4, PlotHeight / 2 - W / 2, FText);
        break;
    }
    default: {
        ACanvas.SetTextAngle(0);
        const int32_t W = ACanvas.TextWidth(FText);
        ACanvas.TextOut(PlotWidth / 2 - W / 2, Rect.Top + 4, FText);
        break;
    }
    }
}

const TQLClassInfo& TQVBasicDisplayTitle::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVBasicDisplayTitle>("TQVBasicDisplayTitle", &TQVOptionalView::StaticClassInfo())
            .Property("Align", &TQVBasicDisplayTitle::GetAlign, &TQVBasicDisplayTitle::SetAlign, vaTop)
            .Property("Text", &TQVBasicDisplayTitle::GetText, &TQVBasicDisplayTitle::SetText,
                      &TQVBasicDisplayTitle::GetTextDefault)
            .StoredWhen(&TQVBasicDisplayTitle::GetTextStored)
            .Object("Font", &TQVBasicDisplayTitle::GetFont)
            .Build();
    return Info;
}

// ---- TQVAdditionalDisplayTitle ----

TQVAdditionalDisplayTitle::TQVAdditionalDisplayTitle(TQVDisplayOwner* ADisplay,
                                                     TQVDisplayTitleCollectionItem* AOwnerItem)
    : TQVBasicDisplayTitle(ADisplay), FOwnerItem(AOwnerItem)
{
    // The title writes through its item's lock, so that a change of the title is a change of
    // the item and reaches the collection.
    SetOwner(AOwnerItem);
    SetLock(AOwnerItem->GetLock());
}

const TQLClassInfo& TQVAdditionalDisplayTitle::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVAdditionalDisplayTitle", &TQVBasicDisplayTitle::StaticClassInfo(), {});
    return Info;
}

// ---- TQVDisplayTitleCollectionItem ----

namespace {
TQVDisplayTitleCollection* TitleCollectionOf(TQLCollection* ACollection)
{
    auto* Titles = dynamic_cast<TQVDisplayTitleCollection*>(ACollection);
    if (!Titles || !Titles->GetDisplay() || !Titles->GetMainTitle())
        throw std::invalid_argument(
            "TQVDisplayTitleCollectionItem: needs the additional-title collection of a display's title, got " +
            (ACollection ? "a " + ACollection->GetClassInfo().GetName() : std::string("no collection")));
    return Titles;
}
} // namespace

TQVDisplayTitleCollectionItem::TQVDisplayTitleCollectionItem(TQLCollection* ACollection)
    : TQLCollectionItem(ACollection), FDisplay(TitleCollectionOf(ACollection)->GetDisplay()),
      // The view's constructor puts the title at the end of the view list; the collection
      // moves it behind the main title once the item has its place (NewItemCreated).
      FTitle(std::make_unique<TQVAdditionalDisplayTitle>(FDisplay, this))
{}

TQVDisplayTitleCollectionItem::~TQVDisplayTitleCollectionItem()
{
    FTitle.reset(); // leaves the view list
    FDisplay->SetNeedsRecalc();
}

std::string TQVDisplayTitleCollectionItem::GetDisplayName() const
{
    return FTitle->GetText();
}

const TQLClassInfo& TQVDisplayTitleCollectionItem::StaticClassInfo()
{
    static const TQLClassInfo Info = TQLClassBuilder<TQVDisplayTitleCollectionItem>(
                                         "TQVDisplayTitleCollectionItem", &TQLCollectionItem::StaticClassInfo())
                                         .Object("Title", &TQVDisplayTitleCollectionItem::GetTitle)
                                         .Build();
    return Info;
}

// ---- TQVDisplayTitleCollection ----

TQVDisplayTitleCollection::TQVDisplayTitleCollection(TQVDisplayTitle* AOwner, TQLLockPtr ALock,
                                                     TQVDisplayOwner* ADisplay)
    : TQVDisplayCollection<TQVDisplayTitleCollectionItem>(AOwner, std::move(ALock), ADisplay), FMainTitle(AOwner)
{}

void TQVDisplayTitleCollection::NewItemCreated(TQLCollectionItem* AItem)
{
    TQVDisplayCollection<TQVDisplayTitleCollectionItem>::NewItemCreated(AItem);
    // Behind the title of the item before it, or behind the main title when it is first.
    PlaceTitles();
    GetDisplay()->InvalidateRecalc(); // one more strip
}

void TQVDisplayTitleCollection::Update(TQLCollectionItem* AItem)
{
    if (!AItem) { // items came, went or moved: so did their strips
        PlaceTitles();
        GetDisplay()->SetNeedsRecalc();
    }
    TQVDisplayCollection<TQVDisplayTitleCollectionItem>::Update(AItem);
}

void TQVDisplayTitleCollection::PlaceTitles()
{
    TQVDisplayViews& Views = GetDisplay()->GetViews();
    TQVDisplayView* Previous = FMainTitle;
    for (TQVDisplayTitleCollectionItem* Item : *this) {
        Views.AddAfter(Previous, Item->GetTitle());
        Previous = Item->GetTitle();
    }
}

const TQLClassInfo& TQVDisplayTitleCollection::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVDisplayTitleCollection", &TQLCollection::StaticClassInfo(), {});
    return Info;
}

// ---- TQVDisplayTitle ----

TQVDisplayTitle::TQVDisplayTitle(TQVDisplayOwner* ADisplay)
    : TQVBasicDisplayTitle(ADisplay),
      FAdditionalTitles(std::make_unique<TQVDisplayTitleCollection>(this, GetLock(), ADisplay))
{}

TQVDisplayTitle::~TQVDisplayTitle() = default;

const TQLClassInfo& TQVDisplayTitle::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayTitle>("TQVDisplayTitle", &TQVBasicDisplayTitle::StaticClassInfo())
            .Collection("AdditionalTitles", &TQVDisplayTitle::GetAdditionalTitles)
            .Build();
    return Info;
}

} // namespace qv
