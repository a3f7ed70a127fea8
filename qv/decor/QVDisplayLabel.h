#pragma once
// The labels of display elements: the text beside an axis, in a legend, at a cursor's mark.
// A title label has a default text that its owner sets (an axis that names its unit, say);
// the text follows the default for as long as nobody changed it, and is stored only when it
// differs from it.

#include "qv/decor/QVOptionalLabel.h"

namespace qv {

class TQVDisplayLabel : public TQVOptionalLabel {
public:
    TQVDisplayLabel(TQLPersistent* AOwnerProperty, TQLLockPtr ALock, TQLNotifyProc AOnChange,
                    const TQLCanvasFont& AFontDefault = QVDefaultLabelFont(), bool ADefaultVisible = true);

    QL_CLASS_INFO()
};

class TQVDisplayTitleLabel : public TQVDisplayLabel {
public:
    using TQVDisplayLabel::TQVDisplayLabel;

    const std::string& GetTextDefault() const { return FTextDefault; }
    // A text still at the old default moves to the new one; a text of the user's stays.
    void SetTextDefault(const std::string& AValue);
    bool GetTextStored() const { return FText != FTextDefault; }

    QL_CLASS_INFO()

private:
    std::string FTextDefault;
};

} // namespace qv
