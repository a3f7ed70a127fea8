#pragma once
// What the parts of a waterfall (axes, data view, level view, data facade) need of the
// control, so that they live below the control's folder. TQVBasicWaterfall implements it.

#include "qv/foundation/QVBuffers.h"
#include "qv/foundation/QWCriticalSection.h"

#include <cstdint>
#include <memory>

namespace qv {

class TQVWaterfallXAxis;
class TQVWaterfallYAxis;
class TQVWaterfallBuffers;
class TQVBasicLevelDisplayLevelView;
class TQVWaterfallMarkerGroups;
class TQVWaterfallCursors;
class TQVWaterfallCursorLinks;
class TQVWaterfallTextLabels;

class TQVWaterfallOwner {
public:
    virtual ~TQVWaterfallOwner() = default;

    // Guards the drawn history; re-entrant.
    virtual TQWCriticalSection& GetBufferSection() = 0;
    // The row store.
    virtual TQVWaterfallBuffers& GetWaterfallBuffers() = 0;
    virtual TQVWaterfallXAxis* GetWaterfallXAxis() const = 0;
    virtual TQVWaterfallYAxis* GetWaterfallYAxis() const = 0;
    // The colour key; it owns the value-to-colour rule.
    virtual TQVBasicLevelDisplayLevelView* GetLevelView() const = 0;
    // The marker groups that ride on the picture.
    virtual TQVWaterfallMarkerGroups* GetWaterfallMarkerGroups() const = 0;
    // The cursors over the picture.
    virtual TQVWaterfallCursors* GetWaterfallCursors() const = 0;
    // The links that measure between cursors, and the text labels over the picture.
    virtual TQVWaterfallCursorLinks* GetWaterfallCursorLinks() const = 0;
    virtual TQVWaterfallTextLabels* GetWaterfallTextLabels() const = 0;
    // The level range the picture is coloured with, and whether on a logarithmic scale.
    virtual double GetCurrentMinLevel() const = 0;
    virtual double GetCurrentMaxLevel() const = 0;
    virtual bool GetLevelsLogarithmic() const = 0;
    // Takes waiting rows into the history.
    virtual void UpdateIntBuffers() = 0;
    // Whether the whole image must be coloured anew; the request is taken.
    virtual bool TakeForcedFullRedraw() = 0;
    // The range or the rows under the mouse moved.
    virtual void MainViewScrolled(bool AForceInvalidate) = 0;
    // The picture is frozen: Hold, or a zoom box being dragged.
    virtual bool GetWaterfallHold() const = 0;
    // Rows per second; 0 set counts as 10000.
    virtual double GetSampleRate() const = 0;
    virtual bool IsFrequencyDomain() const = 0;
    virtual bool IsIntensityDomain() const = 0;
    // The X axis' bound on the history changed.
    virtual void RowBoundChanged() = 0;
    // The image's row order turned round: sized and coloured anew at the next draw.
    virtual void RepopulateView() = 0;
    // The row at the X scale value AValue, and the slice of sample Round(AValue) of the
    // Y scale across every row; null outside the rows or samples.
    virtual std::shared_ptr<IQVRealBuffer> GetBufferAtXScale(double AValue) const = 0;
    virtual std::shared_ptr<IQVRealBuffer> GetBufferAtYScale(double AValue) const = 0;
    // A press on the level caption asks for the setup of the colour channel AIndex.
    virtual void DoColorChannelClick(int32_t AIndex) = 0;
};

} // namespace qv
