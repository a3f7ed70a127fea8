#pragma once
// The channel collection of a display: besides the palette of new channels, it finds the
// channel under the mouse.

#include "qv/channels/QVChannelLookup.h"
#include "qv/component/QVDisplayCollection.h"
#include "qv/foundation/QLTypes.h"

namespace qv {

template <class T>
class TQVDisplayChannels : public TQVPaletteDisplayCollection<T> {
public:
    using TQVPaletteDisplayCollection<T>::TQVPaletteDisplayCollection;

    // The channel nearest to (X, Y) on the last painted frame, asked from the last channel
    // to the first: a channel replaces the best so far only when strictly nearer, so the
    // later channel wins a tie, and a direct hit ends the search. True when the best lies
    // closer than QVHitTolerance; the other arguments then hold that channel's answer (see
    // TQVDisplayChannel::HitTest). Hidden channels are not drawn and not hit.
    bool HitTest(int32_t X, int32_t Y, int32_t& AChannelIndex, TPoint& APoint, TQVHitDetectDirection& ADirection,
                 double& AFraction, int32_t& ABeginIndex, int32_t& AEndIndex) const
    {
        double Best = QVNoHitDistance;
        AChannelIndex = 0;
        ADirection = hddBoth;
        for (int32_t i = this->GetCount() - 1; i >= 0; --i) {
            T* Channel = this->GetItem(i);
            if (!Channel->GetVisible())
                continue;
            TPoint Point{};
            TQVHitDetectDirection Direction = hddBoth;
            double Fraction = 0.0;
            int32_t Begin = 0, End = 0;
            const double D = Channel->HitTest(X, Y, Point, Direction, Fraction, Begin, End);
            if (D < Best) {
                Best = D;
                AChannelIndex = i;
                APoint = Point;
                ADirection = Direction;
                AFraction = Fraction;
                ABeginIndex = Begin;
                AEndIndex = End;
                if (D == 0.0)
                    break;
            }
        }
        return Best < QVHitTolerance;
    }
};

} // namespace qv
