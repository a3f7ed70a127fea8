#pragma once
// The base of every element tied to an X and a Y axis (cursors, zones, markers, labels):
// the axes by index, and the pixels of values on them.

#include "qv/component/QVDisplayCollectionItem.h"
#include "qv/foundation/QLTypes.h"

#include <string>

namespace qv {

class TQVDisplayAxis;

// The zoomed printed window of an element's two axes and the factors of their mapping.
struct TQVElementAxesWindow {
    TQVDisplayAxis* XAxis = nullptr;
    TQVDisplayAxis* YAxis = nullptr;
    double XMin = 0.0, XMax = 0.0, YMin = 0.0, YMax = 0.0;
    // Pixels per unit (per decade on a logarithmic axis), signed; XScale already negated.
    double XScale = 0.0, YScale = 0.0;
    bool XLog = false, YLog = false;
    // The window's widths in the mapping's units, never 0.
    double XWidth() const;
    double YWidth() const;
};

// What every element tied to an X and a Y axis shares, whatever collection item it is built
// on: the axes by index, the pixels of values on them, and the stored form of the indexes.
// Cursors, zones and labels take it with TQVOptionalAxesDisplayCollectionItem; free markers,
// which are markers first, take it beside their marker base.
class IQVOptionalAxesDisplayCollectionItem {
public:
    IQVOptionalAxesDisplayCollectionItem(const IQVOptionalAxesDisplayCollectionItem&) = delete;
    IQVOptionalAxesDisplayCollectionItem& operator=(const IQVOptionalAxesDisplayCollectionItem&) = delete;

    // 0 the main axis, N the additional axis N - 1; a negative index raises
    // std::out_of_range naming it. An index with no axis (yet) stands for the main axis.
    int32_t GetXAxisIndex() const { return FXAxisIndex; }
    void SetXAxisIndex(int32_t AValue);
    int32_t GetYAxisIndex() const { return FYAxisIndex; }
    void SetYAxisIndex(int32_t AValue);
    // The axes of the indexes, or the display's main axes; null on a display without axes.
    TQVDisplayAxis* GetXAxis() const;
    TQVDisplayAxis* GetYAxis() const;
    // The item's axes and their zoomed windows; AWidenEmptyX opens an X window of no width
    // by 1 on each side. False when the display has no axes.
    bool GetAxesWindow(TQVElementAxesWindow& AWindow, bool AWidenEmptyX) const;

    // The pixel of AValue on the X axis across ARect (its height when ATurned): linear over
    // one pixel less than the span, logarithmic by AScale from AMin.
    int32_t GetVAt(double AValue, bool ATurned, const TRect& ARect, double AMin, double AMax, double AScale,
                   double AWidth) const;
    // The pixel of AValue on the Y axis: from the top (left when ATurned) at AMax, or at AMin
    // on a reversed axis.
    int32_t GetHAt(double AValue, bool ATurned, const TRect& ARect, double AMin, double AMax, double AScale,
                   double AWidth) const;

    // Both indexes as one stored value, "AxisIndex_": the Y index, then the X index, as text.
    // Worth storing only when either axis is not the main one.
    std::string GetAxisIndex_() const;
    bool GetAxisIndexStored() const { return FXAxisIndex != 0 || FYAxisIndex != 0; }
    // Reads that value; the Y index alone leaves the X index as it is. Anything but one or
    // two whole numbers at or above 0 raises std::invalid_argument naming the text and
    // changes nothing.
    void ReadAxisIndex(const std::string& AText);

protected:
    explicit IQVOptionalAxesDisplayCollectionItem(TQVDisplayCollectionItem* AItem) : FItem(*AItem) {}
    virtual ~IQVOptionalAxesDisplayCollectionItem() = default;
    // A changed index moves the item on the plot.
    virtual void AxisIndexChanged() { FItem.InvalidateItem(); }

private:
    TQVDisplayCollectionItem& FItem;
    int32_t FXAxisIndex = 0;
    int32_t FYAxisIndex = 0;
};

class TQVOptionalAxesDisplayCollectionItem : public TQVOptionalDisplayCollectionItem,
                                             public IQVOptionalAxesDisplayCollectionItem {
public:
    explicit TQVOptionalAxesDisplayCollectionItem(TQLCollection* ACollection)
        : TQVOptionalDisplayCollectionItem(ACollection), IQVOptionalAxesDisplayCollectionItem(this)
    {}

    QL_CLASS_INFO()
};

} // namespace qv
