#pragma once
// Where a channel lies on the last painted frame: the vocabulary of hit tests and of the
// crossings of a channel with a vertical or horizontal line at a value.

#include <cstdint>
#include <functional>
#include <vector>

namespace qv {

// Which way the piece of a channel under the mouse runs: a sloped line (both), the riser
// or the tread of a step, or a step's corner.
enum TQVHitDetectDirection : uint8_t { hddVertical, hddHorizontal, hddBoth, hddPoint };

// What a hit test answers when nothing is near.
inline constexpr double QVNoHitDistance = 10000.0;
// A channel, zone or link is hit when the mouse lies closer than this, in pixels.
inline constexpr double QVHitTolerance = 3.0;

using TQVScopeRealPoints = std::vector<double>;

// One crossing: AX, AY its pixel on screen; APosition the sample position (index plus
// fraction) relative to the screen slice's start; AXValue, AYValue the values there;
// AVertical whether the display is turned. AData is the caller's, handed through.
using TQVIntersectionCallback = std::function<void(void* AData, int32_t AX, int32_t AY, double APosition,
                                                   double AXValue, double AYValue, bool AVertical)>;

} // namespace qv
