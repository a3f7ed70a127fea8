#pragma once
// Pixel geometry of hit tests: how far a mouse point lies from a drawn segment or ellipse.

#include "qv/foundation/QLTypes.h"

namespace qv {

// The distance from AP to the segment AA..AB in pixels. ANearest is the segment's point
// nearest to AP and ARatio its place on the segment (0 at AA, 1 at AB); a segment of no
// length answers with AA.
double QPDistancePointToLine(const TPoint& AP, const TPoint& AA, const TPoint& AB, double& ARatio, TPoint& ANearest);

// The distance from AP to the outline of the ellipse in ARect (sorted), measured along the
// ray from the centre through AP rather than the shortest way. The centre is added to
// ANearest.
double QPDistancePointToEllipse(const TPoint& AP, const TRect& ARect, TPoint& ANearest);

} // namespace qv
