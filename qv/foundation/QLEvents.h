#pragma once
// Event types shared by many classes. An event is assigned when the function is not empty.

#include "qv/foundation/QLTypes.h"

#include <functional>

namespace qv {

class TQLPersistent;

using TNotifyEvent = std::function<void(TQLPersistent* Sender)>;
using TMouseEvent =
    std::function<void(TQLPersistent* Sender, TMouseButton Button, TShiftState Shift, float X, float Y)>;

} // namespace qv
