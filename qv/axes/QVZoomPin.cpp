// The zoom pin: two axes in different displays share one zoom window.
#include "qv/axes/QVZoomPin.h"

#include "qv/axes/QVDisplayAxis.h"

#include <stdexcept>

namespace qv {

TQVZoomPin::TQVZoomPin(TQVDisplayAxis* AAxis)
    : FAxis(AAxis),
      FSink(std::make_shared<TQWSinkPin>(std::initializer_list<TQVDataKind>{dkAxisState},
                                         [this](TQWPin*, TQVDataKind AKind, const TQWOperation& AOperation,
                                                uint64_t AState) { return DispatchData(AKind, AOperation, AState); }))
{}

TQVZoomPin::~TQVZoomPin()
{
    Disconnect();
    FSink->Close();
}

void TQVZoomPin::Connect(TQVZoomPin& AOther)
{
    if (&AOther == this)
        throw std::invalid_argument("TQVZoomPin.Connect: an axis' zoom pin cannot be tied to itself");
    Disconnect();
    AOther.Disconnect();
    FSource.Connect(*AOther.FSink);
    AOther.FSource.Connect(*FSink);
    FPartner = &AOther;
    AOther.FPartner = this;
    SendChange(FAxis->IsZoomed() ? zoZoom : zoZoomOff);
}

void TQVZoomPin::Disconnect()
{
    if (!FPartner)
        return;
    TQVZoomPin* Partner = FPartner;
    FPartner = nullptr;
    Partner->FPartner = nullptr;
    FSource.Disconnect(*Partner->FSink);
    Partner->FSource.Disconnect(*FSink);
}

void TQVZoomPin::SendChange(TQVZoomOperation AOperation)
{
    if (!FPartner)
        return;
    const TQLLockPtr& Lock = FAxis->GetLock();
    double Min = 0.0, Max = 0.0;
    {
        auto Guard = Lock->AcquireRead();
        if (!Guard)
            return;
        FAxis->GetInternalZoomTo(Min, Max);
    }
    std::weak_ptr<TQVZoomPin*> Alive = FAlive;
    Lock->GetBasicLock()->RunAfterRelease([Alive, AOperation, Min, Max] {
        const std::shared_ptr<TQVZoomPin*> Pin = Alive.lock();
        if (!Pin || !(*Pin)->FPartner)
            return;
        try {
            (*Pin)->FSource.Notify(TQWSuppliedZoomOperation((*Pin)->FAxis, AOperation, Min, Max));
        } catch (const std::exception&) {
            // A window the partner cannot take leaves its axis as it was: the hand-over runs
            // from the release of a lock guard, where an exception has nowhere to go.
        }
    });
}

bool TQVZoomPin::DispatchData(TQVDataKind /*ADataTypeID*/, const TQWOperation& AOperation, uint64_t /*AState*/)
{
    const auto* Zoom = dynamic_cast<const TQWSuppliedZoomOperation*>(&AOperation);
    if (!Zoom || !Zoom->GetAxis())
        return false;
    if (Zoom->GetOperation() == zoZoomOff) {
        FAxis->BasicZoomOff();
        FAxis->InvalidateRecalc();
        return true;
    }
    // Taken without sending it back: the partner has this window already.
    FAxis->InternalZoomToScale(Zoom->GetMin(), Zoom->GetMax(), zoZoom, false);
    return true;
}

} // namespace qv
