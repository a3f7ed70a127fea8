#pragma once
// The vocabulary shared by the display's zoom operations, its axes and the zoom event.

#include "qv/foundation/QLEnumInfo.h"
#include "qv/foundation/QLTypes.h"

#include <cstdint>
#include <functional>

namespace qv {

class TQLPersistent;

// What moved the zoom window.
enum TQVZoomOperation : uint8_t { zoUndo, zoRedo, zoMousePan, zoMouseWheel, zoZoom, zoZoomOff };

using TQVZoomChangedEvent =
    std::function<void(TQLPersistent* Sender, TQVZoomOperation ZoomOperation, TQVRealRanges ZoomValues)>;

// Raise std::invalid_argument, naming AWhere and the value, for a zoom factor that is not a
// positive number and for a zoom limit that is not finite.
void QVCheckZoomFactor(const char* AWhere, double AValue);
void QVCheckZoomLimit(const char* AWhere, double AValue);

} // namespace qv

QL_DECLARE_ENUM(qv::TQVZoomOperation, "zoUndo", "zoRedo", "zoMousePan", "zoMouseWheel", "zoZoom", "zoZoomOff")
