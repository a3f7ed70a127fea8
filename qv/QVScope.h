#pragma once
// Everything needed to build, feed, tick and paint a scope, with no window and no Qt: the
// control, its channels and their data intake, the data view, axes with their tick texts,
// titles, zoom settings and history, highlighting, pins, buffers and queues, the drawing
// surface and picture services, and the stored form of the settings.

#include "qv/axes/QVAxisFormat.h"
#include "qv/axes/QVDisplayAxisZoomSettings.h"
#include "qv/axes/QVScaleTickText.h"
#include "qv/axes/QVScopeXAxis.h"
#include "qv/axes/QVScopeYAxis.h"
#include "qv/channels/QVChannelData.h"
#include "qv/channels/QVDisplayHighlighting.h"
#include "qv/channels/QVHighlightInfo.h"
#include "qv/channels/QVScopeChannel.h"
#include "qv/channels/QVScopeChannelMarker.h"
#include "qv/channels/QVScopeDataView.h"
#include "qv/component/QVDisplayZoom.h"
#include "qv/component/QVLabelTemplate.h"
#include "qv/decor/QVDisplayTitle.h"
#include "qv/display/QVDisplayToolBar.h"
#include "qv/display/QVDisplayZoomList.h"
#include "qv/display/QVScope.h"
#include "qv/elements/QVScopeMarkerGroup.h"
#include "qv/elements/QVTextLabel.h"
#include "qv/foundation/QLBitmap.h"
#include "qv/foundation/QLCanvas.h"
#include "qv/foundation/QLKeys.h"
#include "qv/foundation/QLPictureServices.h"
#include "qv/foundation/QLStoredForm.h"
#include "qv/foundation/QVBuffers.h"
#include "qv/foundation/QVTypedDataQueue.h"
#include "qv/pins/QWPins.h"
