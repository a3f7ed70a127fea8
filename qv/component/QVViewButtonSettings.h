#pragma once
// A part of a view that acts as a button (an axis title, a level scale's caption): whether it
// does, the mouse cursor over it, and the fill and border colours while the mouse is over it
// and while it is pressed. The view draws and hit-tests the button; these are its settings.

#include "qv/foundation/QLPersistent.h"
#include "qv/foundation/QLTypes.h"

#include <functional>

namespace qv {

// A press of the button; set AHandled to keep the view's own action from running.
using TQVViewButtonClickEvent = std::function<void(TQLPersistent* Sender, bool& AHandled)>;

class TQVBasicViewButtonSettings : public TQLPersistentNotify {
public:
    using TQLPersistentNotify::TQLPersistentNotify;

    bool GetEnabled() const { return FEnabled; }
    void SetEnabled(bool AValue) { Set(FEnabled, AValue); }
    TCursor GetCursor() const { return FCursor; }
    void SetCursor(TCursor AValue) { Set(FCursor, AValue); }
    TAlphaColor GetMouseOverBorderColor() const { return FMouseOverBorderColor; }
    void SetMouseOverBorderColor(TAlphaColor AValue) { Set(FMouseOverBorderColor, AValue); }
    TAlphaColor GetMouseOverColor() const { return FMouseOverColor; }
    void SetMouseOverColor(TAlphaColor AValue) { Set(FMouseOverColor, AValue); }
    TAlphaColor GetMouseDownBorderColor() const { return FMouseDownBorderColor; }
    void SetMouseDownBorderColor(TAlphaColor AValue) { Set(FMouseDownBorderColor, AValue); }
    TAlphaColor GetMouseDownColor() const { return FMouseDownColor; }
    void SetMouseDownColor(TAlphaColor AValue) { Set(FMouseDownColor, AValue); }

    QL_CLASS_INFO()

private:
    bool FEnabled = true;
    TCursor FCursor = crHandPoint;
    TAlphaColor FMouseOverBorderColor = 0xFF00FF00;
    TAlphaColor FMouseOverColor = 0xFF008000;
    TAlphaColor FMouseDownBorderColor = 0xFFFFFF00;
    TAlphaColor FMouseDownColor = 0xFF808000;
};

class TQVViewButtonSettings : public TQVBasicViewButtonSettings {
public:
    using TQVBasicViewButtonSettings::TQVBasicViewButtonSettings;

    void SetOnClick(TQVViewButtonClickEvent AHandler) { FOnClick = std::move(AHandler); }
    const TQVViewButtonClickEvent& GetOnClick() const { return FOnClick; }

    QL_CLASS_INFO()

private:
    TQVViewButtonClickEvent FOnClick;
};

} // namespace qv
