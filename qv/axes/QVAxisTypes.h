#pragma once
// Types shared by every value axis: the scale modes and the growth direction of an axis on
// screen. Logarithmic axes map through QVLog10a.

#include "qv/foundation/QLEnumInfo.h"
#include "qv/foundation/QVLog10a.h"

#include <cstdint>

namespace qv {

// How values are spread along an axis. smLogDecascale is logarithmic with a tick at every
// whole multiple of each decade.
enum TQVScaleMode : uint8_t { smLinear, smLogarithmic, smLogDecascale };

// The screen direction in which values grow.
enum TQVAxisDirection : uint8_t { adToRight, adToLeft, adToUp, adToDown };

} // namespace qv

QL_DECLARE_ENUM(qv::TQVScaleMode, "smLinear", "smLogarithmic", "smLogDecascale")
QL_DECLARE_ENUM(qv::TQVAxisDirection, "adToRight", "adToLeft", "adToUp", "adToDown")
