#pragma once
// Everything needed to build, feed, tick and paint a scope, with no window and no Qt.

#include "qv/channels/QVChannelData.h"
#include "qv/channels/QVScopeChannel.h"
#include "qv/decor/QVDisplayTitle.h"
#include "qv/axes/QVDisplayAxisZoomSettings.h"
#include "qv/display/QVDisplayZoomList.h"
#include "qv/display/QVScope.h"
#include "qv/foundation/QLBitmap.h"
#include "qv/foundation/QLCanvas.h"
#include "qv/foundation/QVBuffers.h"
#include "qv/pins/QWPins.h"
