#pragma once
// How the traces of a drag look: the ghost line of a cursor or link under drag, the line
// from where it stood, and the difference written beside it.

#include "qv/component/QVDisplayPersistent.h"
#include "qv/foundation/QVDisplayFont.h"

#include <memory>

namespace qv {

class TQVDisplayTrails : public TQVDisplayPersistent {
public:
    explicit TQVDisplayTrails(TQVDisplayOwner* ADisplay);
    ~TQVDisplayTrails() override;

    TAlphaColor GetColor() const { return FColor; }
    void SetColor(TAlphaColor AValue) { Set(FColor, AValue); }
    TQVDisplayFont* GetFont() const { return FFont.get(); }
    void SetFont(const TQVDisplayFont* AValue) { FFont->Assign(AValue); }

    QL_CLASS_INFO()

private:
    TAlphaColor FColor = 0xFFFFFF00;
    std::unique_ptr<TQVDisplayFont> FFont;
};

} // namespace qv
