#include "qv/waterfall/QVWaterfallCursor.h"

#include "qv/channels/QVHighlightInfo.h"
#include "qv/elements/QVElementDrag.h"
#include "qv/foundation/QLClassBuilder.h"
#include "qv/waterfall/QVWaterfallOwner.h"

namespace qv {

namespace {

// The block sent when the cursor stands outside the rows, so a follower shows nothing
// rather than a stale row.
std::shared_ptr<const IQVData> QVBlockOrEmpty(std::shared_ptr<IQVRealBuffer> ABuffer)
{
    if (ABuffer)
        return ABuffer;
    return std::make_shared<TQVRealBuffer>(0u);
}

} // namespace

void TQVBasicWaterfallCursor::DoConnect(TQWSinkPin& ASink)
{
    ASink.Dispatch(TQWStartRateOperation(1.0), dkReal, 0);
}

const TQLClassInfo& TQVBasicWaterfallCursor::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVBasicWaterfallCursor", &TQVDisplayCursor::StaticClassInfo(), {});
    return Info;
}

TQVWaterfallCursor::TQVWaterfallCursor(TQLCollection* ACollection)
    : TQVBasicWaterfallCursor(ACollection),
      FXOutputPin(std::make_unique<TQVQWRealSourcePin>(&TQVBasicWaterfallCursor::DoConnect)),
      FYOutputPin(std::make_unique<TQVQWRealSourcePin>(&TQVBasicWaterfallCursor::DoConnect))
{}

TQVWaterfallCursor::~TQVWaterfallCursor() = default;

void TQVWaterfallCursor::UpdateCursorsData(const TQVWaterfallOwner& AWaterfall)
{
    if (FXOutputPin->IsConnected())
        FXOutputPin->SendBuffer(QVBlockOrEmpty(AWaterfall.GetBufferAtXScale(GetPosition()->GetX())));
    if (FYOutputPin->IsConnected())
        FYOutputPin->SendBuffer(QVBlockOrEmpty(AWaterfall.GetBufferAtYScale(GetPosition()->GetY())));
}

const TQLClassInfo& TQVWaterfallCursor::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVWaterfallCursor", &TQVBasicWaterfallCursor::StaticClassInfo(), {});
    return Info;
}

void TQVWaterfallCursors::Draw(TQLCanvas& ACanvas, const TRect& AClip)
{
    for (TQVWaterfallCursor* Cursor : *this)
        Cursor->Draw(ACanvas, AClip);
}

void TQVWaterfallCursors::UpdateCursorsData(const TQVWaterfallOwner& AWaterfall)
{
    for (TQVWaterfallCursor* Cursor : *this)
        Cursor->UpdateCursorsData(AWaterfall);
}

TQVWaterfallCursor* TQVWaterfallCursors::HitTest(TQVHighlightInfo& AInfo, int32_t X, int32_t Y, const TRect& ARect)
{
    return QVTopElementAt<TQVWaterfallCursor>(*this, AInfo, X, Y, ARect);
}

bool TQVWaterfallCursors::StartDrag(TQVHighlightInfo& AInfo, TShiftState AShift, int32_t X, int32_t Y,
                                    const TRect& ARect)
{
    return QVStartElementDrag(*this, AInfo.FDraggedCursor, AInfo, AShift, X, Y, ARect);
}

bool TQVWaterfallCursors::EndDrag(TQVHighlightInfo& AInfo, TShiftState AShift, int32_t X, int32_t Y, const TRect& ARect)
{
    return QVEndElementDrag(*this, AInfo.FDraggedCursor, AInfo, AShift, X, Y, ARect);
}

const TQLClassInfo& TQVWaterfallCursors::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVWaterfallCursors", &TQLCollection::StaticClassInfo(), {});
    return Info;
}

} // namespace qv
