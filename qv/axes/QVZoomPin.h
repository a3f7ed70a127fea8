#pragma once
// The zoom pin of an axis: ties the zoom window of two axes in different displays. Each
// change of one axis' window (a zoom, a pan, a wheel step, a zoom off) goes to the other,
// which takes the same window without sending it back. On connection the pin tells the other
// side how its axis stands: its window when zoomed, else a zoom off.
//
// The pin is a source and a sink of axis states (dkAxisState) over the pin framework; a
// connection joins this pin's source to the other's sink and the other's source to this
// sink. Deliveries run on the thread that changed the sending axis, once that thread has let
// the sending display's lock go: the receiver takes its own display's lock, and a thread
// holding both locks, in whichever order the user happens to zoom, could deadlock against
// another doing the same the other way round.

#include "qv/component/QVZoomTypes.h"
#include "qv/pins/QWPins.h"

#include <memory>

namespace qv {

class TQVDisplayAxis;

// An axis changed its zoom window by AOperation. The window (on the printed scale) is read
// while the sender's lock is held and travels with the operation, so the receiver never
// reaches into the sending display.
class TQWSuppliedZoomOperation : public TQWOperation {
public:
    TQWSuppliedZoomOperation(TQVDisplayAxis* AAxis, TQVZoomOperation AOperation, double AMin, double AMax)
        : FAxis(AAxis), FOperation(AOperation), FMin(AMin), FMax(AMax)
    {}
    TQVDisplayAxis* GetAxis() const { return FAxis; }
    TQVZoomOperation GetOperation() const { return FOperation; }
    double GetMin() const { return FMin; }
    double GetMax() const { return FMax; }

private:
    TQVDisplayAxis* FAxis;
    TQVZoomOperation FOperation;
    double FMin;
    double FMax;
};

class TQVZoomPin {
public:
    explicit TQVZoomPin(TQVDisplayAxis* AAxis);
    ~TQVZoomPin();
    TQVZoomPin(const TQVZoomPin&) = delete;
    TQVZoomPin& operator=(const TQVZoomPin&) = delete;

    TQVDisplayAxis* GetAxis() const { return FAxis; }
    // Ties this pin to AOther both ways, leaving any earlier partner of either, and tells
    // AOther the present state of this axis. Connecting a pin to itself raises
    // std::invalid_argument.
    void Connect(TQVZoomPin& AOther);
    // Leaves the partner; nothing when not connected.
    void Disconnect();
    bool IsConnected() const { return FPartner != nullptr; }
    TQVZoomPin* GetPartner() const { return FPartner; }
    // Tells the partner that the axis' window changed by AOperation: the window is taken now,
    // and handed over once the calling thread lets the axis' display lock go (at once when it
    // does not hold it).
    void SendChange(TQVZoomOperation AOperation);
    // What arrives: a zoom off switches the axis' zoom off; any other change takes the
    // window it carries. Returns whether the operation was one of the pin's.
    bool DispatchData(TQVDataKind ADataTypeID, const TQWOperation& AOperation, uint64_t AState);

private:
    TQVDisplayAxis* FAxis;
    TQWSourcePin FSource{dkAxisState};
    std::shared_ptr<TQWSinkPin> FSink;
    TQVZoomPin* FPartner = nullptr;
    // Expires with the pin, so that a hand-over still waiting for the lock's release finds
    // out that the pin has gone.
    std::shared_ptr<TQVZoomPin*> FAlive = std::make_shared<TQVZoomPin*>(this);
};

} // namespace qv
