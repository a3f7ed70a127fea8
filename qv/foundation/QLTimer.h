#pragma once
// The pacing timer of a display. The core keeps its settings and its handler; a platform
// host (the Qt widget) runs it on the control's thread and learns of changes through
// OnChange. With no host, nothing fires: headless users call the display's RefreshView.

#include <cstdint>
#include <functional>

namespace qv {

class TQLTimer {
public:
    using THandler = std::function<void()>;

    uint32_t GetInterval() const { return FInterval; }
    void SetInterval(uint32_t AValue)
    {
        if (AValue == FInterval)
            return;
        FInterval = AValue;
        Changed();
    }
    bool GetEnabled() const { return FEnabled; }
    void SetEnabled(bool AValue)
    {
        if (AValue == FEnabled)
            return;
        FEnabled = AValue;
        Changed();
    }

    void SetOnTimer(THandler AHandler) { FOnTimer = std::move(AHandler); }
    // Called by the host on each tick.
    void Fire()
    {
        if (FEnabled && FOnTimer)
            FOnTimer();
    }

    // The host's hook: the interval or the enabled state changed.
    void SetOnChange(THandler AHandler) { FOnChange = std::move(AHandler); }

private:
    void Changed()
    {
        if (FOnChange)
            FOnChange();
    }

    uint32_t FInterval = 100;
    bool FEnabled = true;
    THandler FOnTimer;
    THandler FOnChange;
};

} // namespace qv
