#pragma once
// A group of the legend: a heading and one line per item, each with a swatch and the item's
// name. The basic group measures, draws and hit-tests its lines; what the items are comes
// from the derived groups. A legend group lists the items of one of the display's
// collections (channels, zones, cursors, ...), which need not exist yet: a group with no
// collection has no items and takes no room.

#include "qv/decor/QVDisplayLabel.h"
#include "qv/foundation/QLCanvas.h"
#include "qv/foundation/QLCollection.h"
#include "qv/foundation/QLPersistent.h"

#include <functional>
#include <memory>
#include <string>

namespace qv {

class TQVLegendView;
class TQVDisplayCollectionItem;

// A click on the item at AIndex of the group Sender; set AHandled to keep the setup dialog
// from opening.
using TQVChartItemClickEvent = std::function<void(TQLPersistent* Sender, int32_t AIndex, bool& AHandled)>;

inline constexpr TCursor crLegendItem = -21;

class TQVBasicLegendGroup : public TQLPersistentNotify {
public:
    TQVBasicLegendGroup(TQVLegendView* ALegend, const std::string& ADefaultLabel);
    ~TQVBasicLegendGroup() override;

    TQVLegendView* GetLegend() const { return FLegend; }
    TQVDisplayLabel* GetCaption() const { return FCaption.get(); }
    void SetCaption(const TQVDisplayLabel* AValue) { FCaption->Assign(AValue); }
    const std::string& GetDefaultLabel() const { return FDefaultLabel; }
    // The heading shown: the caption's text, or the default label when that is empty.
    std::string GetCaptionText() const;
    bool GetVisible() const { return FVisible; }
    void SetVisible(bool AValue) { Set(FVisible, AValue); }
    TCursor GetCursor() const { return FCursor; }
    void SetCursor(TCursor AValue) { Set(FCursor, AValue); }
    void SetOnItemClick(TQVChartItemClickEvent AHandler) { FOnItemClick = std::move(AHandler); }
    const TQVChartItemClickEvent& GetOnItemClick() const { return FOnItemClick; }
    int32_t GetHighlightedItemIndex() const { return FHighlightedItemIndex; }

    virtual int32_t GetItemsCount() const { return 0; }
    virtual void GetItemName(std::string& AName, int32_t AIndex) const { AName.clear(); }
    virtual bool GetItemVisible(int32_t AIndex) const { return true; }
    virtual void SetItemHighlighted(int32_t AIndex, bool AValue) {}
    virtual bool GetItemHighlighted(int32_t AIndex) const { return false; }
    virtual bool GetItemMouseDown(int32_t AIndex) const { return false; }
    // False: the legend draws the default swatch.
    virtual bool ItemCustomLegendDraw(int32_t AIndex, TQLCanvas& ACanvas, int32_t AX, int32_t AY) { return false; }
    virtual TAlphaColor GetItemLegendPenColor(int32_t AIndex) const { return 0xFFFF0000; }
    virtual bool GetItemHasPen(int32_t AIndex) const { return false; }
    virtual TQLCanvasPen GetItemLegendPen(int32_t AIndex) const { return TQLCanvasPen{}; }
    virtual bool GetItemHasBrush(int32_t AIndex) const { return false; }
    virtual TQLCanvasBrush GetItemLegendBrush(int32_t AIndex) const { return TQLCanvasBrush{}; }
    // Whether a click on an item opens the setup dialog on it.
    virtual bool HasDialogPage() const { return true; }
    // The object the setup dialog opens on for the item at AIndex.
    virtual TQLPersistent* GetItemObject(int32_t AIndex) const { return nullptr; }

    // The width the group needs: 0 when hidden or empty.
    int32_t GetDefaultWidth(TQLCanvas& ACanvas) const;
    // The group's height; ANotFirst adds the gap above every group but the first that shows.
    int32_t GetHeight(TQLCanvas& ACanvas, bool& ANotFirst) const;
    // Draws the heading and the lines from AYPos (the middle of the first line) between
    // ALeft and ARight, and moves AYPos past them; ALastY is the last line drawn.
    void Draw(TQLCanvas& ACanvas, int32_t ALeft, int32_t ARight, bool APrinting, int32_t& AYPos, int32_t& ALastY);
    // Finds the line under (AX, AY) and lights it; AYPos as in Draw.
    void ButtonHitTest(TQLCanvas& ACanvas, int32_t AX, int32_t AY, int32_t& AYPos);
    // Drops the line lit under the mouse; returns whether there was one.
    bool ClearHighlight();
    // A press on the lit line: fires OnItemClick or opens the setup dialog on the item.
    // Returns whether a line was lit; AGroupIndex is the group's place in the legend.
    bool ItemMouseDown(int32_t AGroupIndex);

    QL_CLASS_INFO()

private:
    void SetHighlightedIndex(int32_t AIndex);

    TQVLegendView* FLegend;
    std::unique_ptr<TQVDisplayLabel> FCaption;
    int32_t FHighlightedItemIndex = -1;
    int32_t FMuseDownItemIndex = -1;
    std::string FDefaultLabel;
    bool FVisible = true;
    TCursor FCursor = crLegendItem;
    TQVChartItemClickEvent FOnItemClick;
};

// The items of one of the display's collections; the group does not own the collection.
class TQVLegendGroup : public TQVBasicLegendGroup {
public:
    using TQVBasicLegendGroup::TQVBasicLegendGroup;

    TQLCollection* GetItems() const { return FItems; }
    // Binds the group to a collection of TQVDisplayCollectionItem (or none).
    void SetItems(TQLCollection* AItems);

    int32_t GetItemsCount() const override;
    void GetItemName(std::string& AName, int32_t AIndex) const override;
    bool GetItemVisible(int32_t AIndex) const override;
    void SetItemHighlighted(int32_t AIndex, bool AValue) override;
    bool GetItemHighlighted(int32_t AIndex) const override;
    bool GetItemMouseDown(int32_t AIndex) const override;
    bool ItemCustomLegendDraw(int32_t AIndex, TQLCanvas& ACanvas, int32_t AX, int32_t AY) override;
    TAlphaColor GetItemLegendPenColor(int32_t AIndex) const override;
    bool GetItemHasPen(int32_t AIndex) const override;
    TQLCanvasPen GetItemLegendPen(int32_t AIndex) const override;
    bool GetItemHasBrush(int32_t AIndex) const override;
    TQLCanvasBrush GetItemLegendBrush(int32_t AIndex) const override;
    TQLPersistent* GetItemObject(int32_t AIndex) const override;

    QL_CLASS_INFO()

private:
    TQVDisplayCollectionItem* Item(int32_t AIndex) const;

    TQLCollection* FItems = nullptr;
};

} // namespace qv
