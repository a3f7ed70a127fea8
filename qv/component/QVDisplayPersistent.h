#pragma once
// A settings object of a display: it writes through the display's lock and knows the display.

#include "qv/component/QVDisplayOwner.h"

namespace qv {

class TQVDisplayPersistent : public TQLPersistent {
public:
    explicit TQVDisplayPersistent(TQVDisplayOwner* ADisplay)
        : TQLPersistent(ADisplay, ADisplay->GetLock()), FOwner(ADisplay)
    {}
    TQVDisplayOwner* GetDisplay() const { return FOwner; }

    QL_CLASS_INFO()

private:
    TQVDisplayOwner* FOwner;
};

} // namespace qv
