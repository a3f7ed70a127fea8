#include "qv/foundation/QVData.h"

#include <stdexcept>

namespace qv {

std::string QVDataKindName(TQVDataKind AKind)
{
    switch (AKind) {
    case dkReal: return "dkReal";
    case dkSingle: return "dkSingle";
    case dkInteger: return "dkInteger";
    case dkCardinal: return "dkCardinal";
    case dkInt64: return "dkInt64";
    case dkUInt64: return "dkUInt64";
    case dkSmallInt: return "dkSmallInt";
    case dkWord: return "dkWord";
    case dkComplex: return "dkComplex";
    case dkByte: return "dkByte";
    case dkAxisState: return "dkAxisState";
    }
    return "kind " + std::to_string(static_cast<int>(AKind));
}

void TQVDataRef::Check() const
{
    if (FCount < 0)
        throw std::invalid_argument("TQVDataRef: negative count " + std::to_string(FCount));
    if (FCount > 0 && !FData)
        throw std::invalid_argument("TQVDataRef: null data with count " + std::to_string(FCount));
}

} // namespace qv
