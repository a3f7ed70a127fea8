#include "qv/component/QVDisplayView.h"

#include "qv/component/QVDisplayOwner.h"
#include "qv/foundation/QLClassBuilder.h"
#include "qv/foundation/QLCollection.h"

#include <algorithm>

namespace qv {

// ---- TQVDisplayView ----

TQVDisplayView::TQVDisplayView(TQVDisplayOwner* ADisplay) : TQVDisplayComponent(ADisplay)
{
    ADisplay->GetViews().Add(this);
}

TQVDisplayView::~TQVDisplayView()
{
    GetDisplay()->GetViews().Remove(this);
}

int32_t TQVDisplayView::GetWidth() const
{
    return std::max(FDrawRect.Right - FDrawRect.Left - 1, 0);
}

int32_t TQVDisplayView::GetHeight() const
{
    return std::max(FDrawRect.Bottom - FDrawRect.Top - 1, 0);
}

void TQVDisplayView::InvalidateView()
{
    GetDisplay()->InvalidateIntRect(FDrawRect);
}

void TQVDisplayView::InvalidateRecalc()
{
    GetDisplay()->InvalidateRecalc();
}

void TQVDisplayView::Invalidate()
{
    GetDisplay()->InvalidateRefresh();
}

int32_t TQVDisplayView::GetDirectionWidth() const
{
    return GetDisplay()->GetIsVertical() ? GetHeight() : GetWidth();
}

int32_t TQVDisplayView::GetDirectionHeight() const
{
    return GetDisplay()->GetIsVertical() ? GetWidth() : GetHeight();
}

int32_t TQVDisplayView::GetDirectionLeft() const
{
    return GetDisplay()->GetIsVertical() ? GetTop() : GetLeft();
}

int32_t TQVDisplayView::GetDirectionTop() const
{
    return GetDisplay()->GetIsVertical() ? GetLeft() : GetTop();
}

const TQLClassInfo& TQVDisplayView::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVDisplayView", &TQVDisplayComponent::StaticClassInfo(), {});
    return Info;
}

// ---- Background and size settings ----

TQVDisplayViewBackground::TQVDisplayViewBackground(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify)
    : TQLPersistentNotify(AOwner, std::move(ALock), std::move(ANotify))
{}

const TQLClassInfo& TQVDisplayViewBackground::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayViewBackground>("TQVDisplayViewBackground", &TQLPersistentNotify::StaticClassInfo())
            .Color("Color", &TQVDisplayViewBackground::GetColor, &TQVDisplayViewBackground::SetColor,
                   TAlphaColor(0xFF000000))
            .Property("UseControlColor", &TQVDisplayViewBackground::GetUseControlColor,
                      &TQVDisplayViewBackground::SetUseControlColor, true)
            .Build();
    return Info;
}

TQVDisplayViewSize::TQVDisplayViewSize(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify)
    : TQLPersistentNotify(AOwner, std::move(ALock), std::move(ANotify))
{}

const TQLClassInfo& TQVDisplayViewSize::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayViewSize>("TQVDisplayViewSize", &TQLPersistentNotify::StaticClassInfo())
            .Property("AutoSize", &TQVDisplayViewSize::GetAutoSize, &TQVDisplayViewSize::SetAutoSize, true)
            .Property("Size", &TQVDisplayViewSize::GetSize, &TQVDisplayViewSize::SetSize, uint32_t(100))
            .Build();
    return Info;
}

// ---- Colour, size and optional views ----

TQVCustomColorDisplayView::TQVCustomColorDisplayView(TQVDisplayOwner* ADisplay)
    : TQVDisplayView(ADisplay),
      FBackground(std::make_unique<TQVDisplayViewBackground>(this, GetLock(), [this] { InvalidateRecalc(); }))
{}

TQVCustomColorDisplayView::~TQVCustomColorDisplayView() = default;

TAlphaColor TQVCustomColorDisplayView::GetBackgroundColor() const
{
    return FBackground->GetUseControlColor() ? GetDisplay()->GetColor() : FBackground->GetColor();
}

const TQLClassInfo& TQVCustomColorDisplayView::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVCustomColorDisplayView>("TQVCustomColorDisplayView", &TQVDisplayView::StaticClassInfo())
            .Object("Background", &TQVCustomColorDisplayView::GetBackground)
            .Build();
    return Info;
}

TQVCustomSizeDisplayView::TQVCustomSizeDisplayView(TQVDisplayOwner* ADisplay, TQVViewAlign AAlign)
    : TQVCustomColorDisplayView(ADisplay), FAlign(AAlign),
      FViewSize(std::make_unique<TQVDisplayViewSize>(this, GetLock(), [this] { InvalidateRecalc(); }))
{}

TQVCustomSizeDisplayView::~TQVCustomSizeDisplayView() = default;

void TQVCustomSizeDisplayView::SetAlign(TQVViewAlign AValue)
{
    Set(FAlign, AValue, [this] { InvalidateRecalc(); });
}

TSize TQVCustomSizeDisplayView::GetDefaultSize() const
{
    if (FViewSize->GetAutoSize())
        return GetAutoSize();
    const int32_t Size = static_cast<int32_t>(std::min<uint32_t>(FViewSize->GetSize(), INT32_MAX));
    return TSize{Size, Size};
}

const TQLClassInfo& TQVCustomSizeDisplayView::StaticClassInfo()
{
    static const TQLClassInfo Info = TQLClassBuilder<TQVCustomSizeDisplayView>(
                                         "TQVCustomSizeDisplayView", &TQVCustomColorDisplayView::StaticClassInfo())
                                         .Object("ViewSize", &TQVCustomSizeDisplayView::GetViewSize)
                                         .Build();
    return Info;
}

void TQVOptionalView::SetVisible(bool AValue)
{
    Set(FVisible, AValue, [this] { InvalidateRecalc(); });
}

const TQLClassInfo& TQVOptionalView::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVOptionalView>("TQVOptionalView", &TQVCustomSizeDisplayView::StaticClassInfo())
            .Property("Visible", &TQVOptionalView::GetVisible, &TQVOptionalView::SetVisible, true)
            .Build();
    return Info;
}

// ---- TQVDisplayViews ----

TQVDisplayView* TQVDisplayViews::GetItem(int32_t AIndex) const
{
    if (AIndex < 0 || AIndex >= GetCount())
        throw EQLListError(AIndex);
    return FItems[static_cast<size_t>(AIndex)];
}

int32_t TQVDisplayViews::IndexOf(const TQVDisplayView* AView) const
{
    auto It = std::find(FItems.begin(), FItems.end(), AView);
    return It == FItems.end() ? -1 : static_cast<int32_t>(It - FItems.begin());
}

void TQVDisplayViews::Remove(TQVDisplayView* AView)
{
    auto It = std::find(FItems.begin(), FItems.end(), AView);
    if (It != FItems.end())
        FItems.erase(It);
}

void TQVDisplayViews::Reassign(TQVDisplayView* AView)
{
    FItems.push_back(AView);
    FItems.erase(std::find(FItems.begin(), FItems.end(), AView));
}

int32_t TQVDisplayViews::AddAfter(TQVDisplayView* AAfter, TQVDisplayView* AView)
{
    Remove(AView);
    const int32_t Index = IndexOf(AAfter);
    if (Index >= 0 && Index < GetCount() - 1) {
        FItems.insert(FItems.begin() + Index + 1, AView);
        return Index + 1;
    }
    FItems.push_back(AView);
    return GetCount() - 1;
}

int32_t TQVDisplayViews::AddBefore(TQVDisplayView* ABefore, TQVDisplayView* AView)
{
    Remove(AView);
    const int32_t Index = IndexOf(ABefore);
    if (Index >= 0) {
        FItems.insert(FItems.begin() + Index, AView);
        return Index;
    }
    FItems.push_back(AView);
    return GetCount() - 1;
}

} // namespace qv
