#include "qv/axes/QVAxisCache.h"

namespace qv {

double TQVDisplayCachedValue::Populate() const
{
    // Marked first: a getter that reads this same limit sees the old value instead of
    // recursing.
    FPopulated = true;
    const double Old = FValue;
    FValue = FGetLimit();
    if (FOnChange)
        FOnChange(FValue - Old);
    return FValue;
}

} // namespace qv
