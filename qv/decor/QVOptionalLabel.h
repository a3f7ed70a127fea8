#pragma once
// Small text settings that elements carry beside themselves: a label that can be hidden and
// has its own font, and the same with a text of its own. The element that owns the label
// draws it; the label only holds the settings and reports every change to its owner through
// the closure given at construction.

#include "qv/foundation/QLCanvas.h"
#include "qv/foundation/QLPersistent.h"
#include "qv/foundation/QVDisplayFont.h"

#include <memory>
#include <string>

namespace qv {

// The font a label starts with unless its owner chooses another: Arial 8, white, plain.
TQLCanvasFont QVDefaultLabelFont();

// Visible and Font.
class TQVBasicOptionalLabel : public TQLPersistentNotify {
public:
    // AOnChange runs after every change of the label or of its font. AFontDefault and
    // ADefaultVisible are this label's defaults, both as initial values and in the stored form.
    TQVBasicOptionalLabel(TQLPersistent* AOwnerProperty, TQLLockPtr ALock, TQLNotifyProc AOnChange,
                          const TQLCanvasFont& AFontDefault = QVDefaultLabelFont(), bool ADefaultVisible = true);
    ~TQVBasicOptionalLabel() override;

    bool GetVisible() const { return FVisible; }
    void SetVisible(bool AValue) { Set(FVisible, AValue); }
    bool GetVisibleDefault() const { return FVisibleDefault; }
    TQVDisplayFont* GetFont() const { return FFont.get(); }
    void SetFont(const TQVDisplayFont* AValue) { FFont->Assign(AValue); }

    QL_CLASS_INFO()

private:
    bool FVisibleDefault;
    bool FVisible;
    std::unique_ptr<TQVDisplayFont> FFont;
};

// Adds Text, empty by default.
class TQVOptionalLabel : public TQVBasicOptionalLabel {
public:
    using TQVBasicOptionalLabel::TQVBasicOptionalLabel;

    const std::string& GetText() const { return FText; }
    void SetText(const std::string& AValue) { Set(FText, AValue); }

    QL_CLASS_INFO()

protected:
    std::string FText;
};

} // namespace qv
