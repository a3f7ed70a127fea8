#pragma once
// Everything needed to build, feed, tick and paint a waterfall, with no window and no Qt:
// the control, its data intake, the row store, the data view, the axes, the level display
// with its colour rules, zoom settings, highlighting, pins, buffers, the drawing surface and
// the stored form of the settings.

#include "qv/axes/QVAxisFormat.h"
#include "qv/axes/QVScaleTickText.h"
#include "qv/channels/QVDisplayHighlighting.h"
#include "qv/component/QVDisplayZoom.h"
#include "qv/decor/QVDisplayTitle.h"
#include "qv/display/QVWaterfall.h"
#include "qv/foundation/QLBitmap.h"
#include "qv/foundation/QLCanvas.h"
#include "qv/foundation/QLKeys.h"
#include "qv/foundation/QLPictureServices.h"
#include "qv/foundation/QLStoredForm.h"
#include "qv/foundation/QVBuffers.h"
#include "qv/pins/QWOperations.h"
#include "qv/pins/QWPins.h"
#include "qv/waterfall/QVLevelAxis.h"
#include "qv/waterfall/QVLevelColors.h"
#include "qv/waterfall/QVLevelDisplay.h"
#include "qv/waterfall/QVWaterfallAxes.h"
#include "qv/waterfall/QVWaterfallBuffers.h"
#include "qv/waterfall/QVWaterfallDataView.h"
