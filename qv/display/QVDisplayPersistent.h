#pragma once
// A settings object of a display: it writes through the display's lock and knows the display.

#include "qv/display/QVDataDisplay.h"

namespace qv {

class TQVDisplayPersistent : public TQLPersistent {
public:
    explicit TQVDisplayPersistent(TQVDataDisplay* ADisplay)
        : TQLPersistent(ADisplay, ADisplay->GetLock()), FOwner(ADisplay)
    {
    }
    TQVDataDisplay* GetDisplay() const { return FOwner; }

    QL_CLASS_INFO()

private:
    TQVDataDisplay* FOwner;
};

} // namespace qv
