#pragma once
// Titles: optional views that dock to an edge of the display, hold one line of text and
// draw it centred on the whole control, not on their own strip, so that a title beside a
// legend still stands in the control's middle. A display owns one main title; the main
// title owns any number of additional titles, which lie in the view list right behind it,
// in the order of their collection, and so stack outward from the same edge.

#include "qv/component/QVDisplayCollection.h"
#include "qv/component/QVDisplayView.h"
#include "qv/foundation/QLCollection.h"
#include "qv/foundation/QVDisplayFont.h"

#include <memory>
#include <string>

namespace qv {

class TQVDisplayTitle;
class TQVDisplayTitleCollectionItem;

class TQVBasicDisplayTitle : public TQVOptionalView {
public:
    explicit TQVBasicDisplayTitle(TQVDisplayOwner* ADisplay);
    ~TQVBasicDisplayTitle() override;

    const std::string& GetText() const { return FText; }
    void SetText(const std::string& AValue);
    const std::string& GetTextDefault() const { return FTextDefault; }
    // A text still at the old default moves to the new one; a text of the user's stays.
    void SetTextDefault(const std::string& AValue);
    // The text is stored only when it differs from the default.
    bool GetTextStored() const { return FText != FTextDefault; }
    TQVDisplayFont* GetFont() const { return FFont.get(); }
    void SetFont(const TQVDisplayFont* AValue) { FFont->Assign(AValue); }
    // The strip's thickness depends on the font: lay the display out again.
    virtual void FontChanged();

    // The strip: a line of text and 8 pixels above and below it when sized automatically,
    // else ViewSize.Size; across the edge for left and right titles. The length is -1: a
    // strip always takes the whole remaining edge.
    TSize GetDefaultSize() const override;
    TSize GetAutoSize() const override;
    // Draws the text 4 pixels in from the strip's outer side, centred on the plot; turned to
    // read upward on the left and downward on the right. The canvas state comes back after.
    void Draw(TQVDisplayDrawPart ADrawPart, TQLCanvas& ACanvas, bool AVertical, bool APrinting) override;

    QL_CLASS_INFO()

protected:
    std::string FText;
    std::string FTextDefault;

private:
    std::unique_ptr<TQVDisplayFont> FFont;
};

// A title of the AdditionalTitles collection; its owner is the collection item.
class TQVAdditionalDisplayTitle : public TQVBasicDisplayTitle {
public:
    TQVAdditionalDisplayTitle(TQVDisplayOwner* ADisplay, TQVDisplayTitleCollectionItem* AOwnerItem);

    TQVDisplayTitleCollectionItem* GetOwnerItem() const { return FOwnerItem; }

    QL_CLASS_INFO()

private:
    TQVDisplayTitleCollectionItem* FOwnerItem;
};

// Owns one additional title. Items belong to a TQVDisplayTitleCollection; any other
// collection raises std::invalid_argument, since the title needs the display.
class TQVDisplayTitleCollectionItem : public TQLCollectionItem {
public:
    explicit TQVDisplayTitleCollectionItem(TQLCollection* ACollection);
    ~TQVDisplayTitleCollectionItem() override;

    TQVAdditionalDisplayTitle* GetTitle() const { return FTitle.get(); }
    void SetTitle(const TQVAdditionalDisplayTitle* AValue) { FTitle->Assign(AValue); }
    // The title's text.
    std::string GetDisplayName() const override;

    QL_CLASS_INFO()

private:
    TQVDisplayOwner* FDisplay;
    std::unique_ptr<TQVAdditionalDisplayTitle> FTitle;
};

class TQVDisplayTitleCollection : public TQVDisplayCollection<TQVDisplayTitleCollectionItem> {
public:
    TQVDisplayTitleCollection(TQVDisplayTitle* AOwner, TQLLockPtr ALock, TQVDisplayOwner* ADisplay);

    // The main title the additional titles stand behind.
    TQVDisplayTitle* GetMainTitle() const { return FMainTitle; }

    void NewItemCreated(TQLCollectionItem* AItem) override;
    // A change of the whole collection (insert, delete, move, clear, load) lays the titles
    // in the view list in collection order again and the display out anew.
    void Update(TQLCollectionItem* AItem) override;

    QL_CLASS_INFO()

private:
    void PlaceTitles();

    TQVDisplayTitle* FMainTitle;
};

// The display's main title with its additional titles.
class TQVDisplayTitle : public TQVBasicDisplayTitle {
public:
    explicit TQVDisplayTitle(TQVDisplayOwner* ADisplay);
    ~TQVDisplayTitle() override;

    TQVDisplayTitleCollection* GetAdditionalTitles() const { return FAdditionalTitles.get(); }
    void SetAdditionalTitles(const TQVDisplayTitleCollection* AValue) { FAdditionalTitles->Assign(AValue); }

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVDisplayTitleCollection> FAdditionalTitles;
};

} // namespace qv
