#pragma once
// How the point of a channel under the mouse is shown: a small square at the sample and a
// label with its values.

#include "qv/component/QVDisplayPersistent.h"
#include "qv/decor/QVOptionalLabel.h"

#include <memory>

namespace qv {

// A highlight that can be switched off, in a colour.
class TQVDisplayOptionalHighlighting : public TQVDisplayPersistent {
public:
    explicit TQVDisplayOptionalHighlighting(TQVDisplayOwner* ADisplay) : TQVDisplayPersistent(ADisplay) {}

    bool GetEnabled() const { return FEnabled; }
    void SetEnabled(bool AValue) { Set(FEnabled, AValue); }
    TAlphaColor GetColor() const { return FColor; }
    void SetColor(TAlphaColor AValue) { GetBasicLock().Setter(FColor, AValue, nullptr, false); }

    QL_CLASS_INFO()

private:
    bool FEnabled = true;
    TAlphaColor FColor = 0xFFFF0000;
};

class TQVChannelMouseHitPoint : public TQVDisplayOptionalHighlighting {
public:
    explicit TQVChannelMouseHitPoint(TQVDisplayOwner* ADisplay);
    ~TQVChannelMouseHitPoint() override;

    TQVOptionalLabel* GetPointLabel() const { return FPointLabel.get(); }
    void SetPointLabel(const TQVOptionalLabel* AValue) { FPointLabel->Assign(AValue); }
    bool GetUseChannelColor() const { return FUseChannelColor; }
    void SetUseChannelColor(bool AValue) { Set(FUseChannelColor, AValue); }

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVOptionalLabel> FPointLabel;
    bool FUseChannelColor = true;
};

} // namespace qv
