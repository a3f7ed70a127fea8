#pragma once
// Collections of a display's elements (channels, cursors, markers, ...). They know their
// display, repaint it on every change, and, for coloured items, hand each new item a fresh
// colour from the default palette.

#include "qv/component/QVDisplayOwner.h"
#include "qv/foundation/QLCollection.h"

#include <array>

namespace qv {

// The non-template part: the display the collection belongs to.
class TQVDisplayCollectionBase : public TQLCollection {
public:
    TQVDisplayCollectionBase(TQLPersistent* AOwner, TQLLockPtr ALock, TQVDisplayOwner* ADisplay, TItemFactory AFactory)
        : TQLCollection(AOwner, std::move(ALock), std::move(AFactory)), FDisplay(ADisplay)
    {}
    TQVDisplayOwner* GetDisplay() const { return FDisplay; }

    // Base update, then a repaint of the display.
    void Update(TQLCollectionItem* AItem) override;

private:
    TQVDisplayOwner* FDisplay;
};

template <class T>
class TQVDisplayCollection : public TQLTypedCollection<T, TQVDisplayCollectionBase> {
public:
    TQVDisplayCollection(TQLPersistent* AOwner, TQLLockPtr ALock, TQVDisplayOwner* ADisplay)
        : TQLTypedCollection<T, TQVDisplayCollectionBase>(AOwner, std::move(ALock), ADisplay)
    {}
};

// Marks a collection of items that have Visible.
template <class T>
class TQVOptionalDisplayCollection : public TQVDisplayCollection<T> {
public:
    using TQVDisplayCollection<T>::TQVDisplayCollection;
};

// The default palette that new coloured items draw from. 0xFF00FFFF stands twice; the
// second entry never wins since both always have the same count.
inline constexpr std::array<TAlphaColor, 14> QVDefaultPalette = {
    0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFFFFFF00, 0xFF00FFFF, 0xFFF0FBFF, 0xFF808000,
    0xFFFFFFFF, 0xFFD3D3D3, 0xFF800080, 0xFFFF00FF, 0xFF00FFFF, 0xFF008080, 0xFF000080};

// The palette colour used by the fewest items; the earlier colour wins a tie. ACountOf
// tells how many items hold a colour as their default.
template <class F>
TAlphaColor QVLeastUsedPaletteColor(F&& ACountOf)
{
    int32_t BestCount = 22000;
    TAlphaColor Best = 0xFFFF0000;
    for (TAlphaColor Color : QVDefaultPalette) {
        const int32_t Count = ACountOf(Color);
        if (Count < BestCount) {
            BestCount = Count;
            Best = Color;
        }
    }
    return Best;
}

// A display collection whose items have a default colour (GetColorDefault and
// SetColorDefault): each new item takes the least used palette colour.
template <class T>
class TQVPaletteDisplayCollection : public TQVDisplayCollection<T> {
public:
    using TQVDisplayCollection<T>::TQVDisplayCollection;

    // How many items other than AExcept hold AColor as their default colour.
    int32_t GetCountOfColor(TAlphaColor AColor, const TQLCollectionItem* AExcept = nullptr) const
    {
        int32_t Count = 0;
        for (int32_t I = 0; I < this->GetCount(); ++I) {
            const T* Item = this->GetNoLockItem(I);
            if (Item != AExcept && Item->GetColorDefault() == AColor)
                ++Count;
        }
        return Count;
    }
    TAlphaColor GetNewColor(const TQLCollectionItem* AExcept = nullptr) const
    {
        return QVLeastUsedPaletteColor([&](TAlphaColor C) { return GetCountOfColor(C, AExcept); });
    }

    void NewItemCreated(TQLCollectionItem* AItem) override
    {
        TQVDisplayCollection<T>::NewItemCreated(AItem);
        static_cast<T*>(AItem)->SetColorDefault(GetNewColor(AItem));
        if (TQVDisplayOwner* Display = this->GetDisplay())
            Display->InvalidateRecalc();
    }
};

} // namespace qv
