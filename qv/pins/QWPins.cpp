#include "qv/pins/QWPins.h"

#include "qv/foundation/QLCollection.h"

#include <algorithm>
#include <stdexcept>

namespace qv {

// What a source pin shares with its sinks: the sinks it feeds and how its stream stands.
class TQWSourceLink {
public:
    explicit TQWSourceLink(TQVDataKind AKind) : Kind(AKind) {}

    const TQVDataKind Kind;
    std::mutex Section;
    std::vector<std::weak_ptr<TQWSinkPin>> Sinks; // under Section
    std::atomic<bool> Streaming{false};
    std::atomic<uint64_t> Sequence{0};

    // Removes ASink, and sinks that are gone.
    void Remove(const TQWSinkPin* ASink)
    {
        std::lock_guard Lock(Section);
        std::erase_if(Sinks, [ASink](const std::weak_ptr<TQWSinkPin>& AItem) {
            const std::shared_ptr<TQWSinkPin> Sink = AItem.lock();
            return !Sink || Sink.get() == ASink;
        });
    }
};

// ---- TQWSinkPin ----

TQWSinkPin::TQWSinkPin(std::initializer_list<TQVDataKind> AAccepted, TQWDispatchProc ADispatch)
    : FAccepted(AAccepted), FDispatch(std::make_shared<const TQWDispatchProc>(std::move(ADispatch)))
{}

TQWSinkPin::~TQWSinkPin()
{
    Disconnect();
}

bool TQWSinkPin::IsConnected() const
{
    std::lock_guard Lock(FSection);
    return !FSource.expired();
}

bool TQWSinkPin::Accepts(TQVDataKind AKind) const
{
    return std::find(FAccepted.begin(), FAccepted.end(), AKind) != FAccepted.end();
}

void TQWSinkPin::Disconnect()
{
    std::shared_ptr<TQWSourceLink> Link;
    {
        std::lock_guard Lock(FSection);
        Link = FSource.lock();
        FSource.reset();
    }
    // The two locks are never held together.
    if (Link)
        Link->Remove(this);
}

void TQWSinkPin::DropSource(const TQWSourceLink* ALink)
{
    std::lock_guard Lock(FSection);
    if (FSource.lock().get() == ALink)
        FSource.reset();
}

void TQWSinkPin::Close()
{
    FClosed.store(true, std::memory_order_release);
    std::lock_guard Lock(FSection);
    FDispatch.reset();
}

bool TQWSinkPin::Dispatch(const TQWOperation& AOperation, TQVDataKind AIID, uint64_t AState)
{
    std::shared_ptr<const TQWDispatchProc> Proc;
    {
        std::lock_guard Lock(FSection);
        Proc = FDispatch;
    }
    // Called outside the pin's lock: the procedure may send to this pin again.
    return Proc && *Proc && (*Proc)(this, AIID, AOperation, AState);
}

void TQWSinkPin::Notify(const TQWOperation& AOperation)
{
    if (!dynamic_cast<const TQWQueryStreamOperation*>(&AOperation))
        return;
    std::shared_ptr<TQWSourceLink> Link;
    {
        std::lock_guard Lock(FSection);
        Link = FSource.lock();
    }
    if (Link && !Link->Streaming.load(std::memory_order_acquire))
        Dispatch(TQWIgnoreStreamOperation(), Link->Kind, 0);
}

// ---- TQWSourcePin ----

TQWSourcePin::TQWSourcePin(TQVDataKind AKind) : FLink(std::make_shared<TQWSourceLink>(AKind))
{}

TQWSourcePin::~TQWSourcePin()
{
    DisconnectAll();
}

TQVDataKind TQWSourcePin::GetDataKind() const
{
    return FLink->Kind;
}

bool TQWSourcePin::IsConnected() const
{
    std::lock_guard Lock(FLink->Section);
    return std::any_of(FLink->Sinks.begin(), FLink->Sinks.end(),
                       [](const std::weak_ptr<TQWSinkPin>& AItem) { return !AItem.expired(); });
}

void TQWSourcePin::Connect(TQWSinkPin& ASink)
{
    if (!ASink.Accepts(FLink->Kind))
        throw std::invalid_argument("TQWSourcePin::Connect: the sink pin does not take " + QVDataKindName(FLink->Kind) +
                                    " data");
    std::weak_ptr<TQWSinkPin> Sink = ASink.weak_from_this();
    if (Sink.expired())
        throw std::invalid_argument("TQWSourcePin::Connect: the sink pin is not held by a std::shared_ptr");
    ASink.Disconnect();
    {
        std::lock_guard Lock(FLink->Section);
        FLink->Sinks.push_back(std::move(Sink));
    }
    {
        std::lock_guard Lock(ASink.FSection);
        ASink.FSource = FLink;
    }
    Connected(ASink);
}

void TQWSourcePin::Disconnect(TQWSinkPin& ASink)
{
    ASink.DropSource(FLink.get());
    FLink->Remove(&ASink);
}

void TQWSourcePin::DisconnectAll()
{
    std::vector<std::weak_ptr<TQWSinkPin>> Sinks;
    {
        std::lock_guard Lock(FLink->Section);
        Sinks.swap(FLink->Sinks);
    }
    for (const std::weak_ptr<TQWSinkPin>& Item : Sinks)
        if (const std::shared_ptr<TQWSinkPin> Sink = Item.lock())
            Sink->DropSource(FLink.get());
}

namespace {
void CheckBlock(const std::shared_ptr<const IQVData>& ABlock, TQVDataKind AKind)
{
    if (!ABlock)
        throw std::invalid_argument("TQWSourcePin::Notify: null block");
    if (ABlock->GetDataKind() != AKind)
        throw std::invalid_argument("TQWSourcePin::Notify: a block of " + QVDataKindName(ABlock->GetDataKind()) +
                                    " on a pin of " + QVDataKindName(AKind));
}
} // namespace

void TQWSourcePin::Notify(const TQWOperation& AOperation)
{
    if (const auto* Block = dynamic_cast<const TQWSuppliedBufferOperation*>(&AOperation))
        CheckBlock(Block->GetBuffer(), FLink->Kind);
    if (const auto* Pair = dynamic_cast<const TQWSuppliedBufferPairOperation*>(&AOperation))
        for (const std::shared_ptr<const IQVData>& Block : Pair->GetBuffers())
            CheckBlock(Block, FLink->Kind);

    if (dynamic_cast<const TQWStartOperation*>(&AOperation))
        FLink->Streaming.store(true, std::memory_order_release);
    else if (dynamic_cast<const TQWStopOperation*>(&AOperation) ||
             dynamic_cast<const TQWIgnoreStreamOperation*>(&AOperation))
        FLink->Streaming.store(false, std::memory_order_release);

    std::vector<std::weak_ptr<TQWSinkPin>> Sinks;
    {
        std::lock_guard Lock(FLink->Section);
        Sinks = FLink->Sinks;
    }
    const uint64_t State = FLink->Sequence.fetch_add(1, std::memory_order_relaxed) + 1;
    for (const std::weak_ptr<TQWSinkPin>& Item : Sinks)
        if (const std::shared_ptr<TQWSinkPin> Sink = Item.lock())
            Sink->Dispatch(AOperation, FLink->Kind, State);
}

bool TQWSourcePin::GetStreaming() const
{
    return FLink->Streaming.load(std::memory_order_acquire);
}

// ---- TQWPinList ----

void TQWPinList::Add(const std::string& AName, std::shared_ptr<TQWSinkPin> APin)
{
    if (!APin)
        throw std::invalid_argument("TQWPinList::Add: null pin for \"" + AName + "\"");
    std::lock_guard Lock(FSection);
    FPins.emplace_back(AName, std::move(APin));
}

void TQWPinList::Remove(const TQWSinkPin* APin)
{
    std::lock_guard Lock(FSection);
    std::erase_if(FPins, [APin](const auto& AItem) { return AItem.second.get() == APin; });
}

int32_t TQWPinList::GetCount() const
{
    std::lock_guard Lock(FSection);
    return static_cast<int32_t>(FPins.size());
}

void TQWPinList::CheckIndex(int32_t AIndex) const
{
    if (AIndex < 0 || size_t(AIndex) >= FPins.size())
        throw EQLListError(AIndex);
}

std::shared_ptr<TQWSinkPin> TQWPinList::GetPin(int32_t AIndex) const
{
    std::lock_guard Lock(FSection);
    CheckIndex(AIndex);
    return FPins[size_t(AIndex)].second;
}

std::string TQWPinList::GetName(int32_t AIndex) const
{
    std::lock_guard Lock(FSection);
    CheckIndex(AIndex);
    return FPins[size_t(AIndex)].first;
}

std::shared_ptr<TQWSinkPin> TQWPinList::Find(const std::string& AName) const
{
    std::lock_guard Lock(FSection);
    for (const auto& [Name, Pin] : FPins)
        if (Name == AName)
            return Pin;
    return nullptr;
}

std::vector<std::shared_ptr<TQWSinkPin>> TQWPinList::GetPins() const
{
    std::lock_guard Lock(FSection);
    std::vector<std::shared_ptr<TQWSinkPin>> Result;
    Result.reserve(FPins.size());
    for (const auto& Item : FPins)
        Result.push_back(Item.second);
    return Result;
}

} // namespace qv
