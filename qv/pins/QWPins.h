#pragma once
// Connection pins: a source pin sends operations (QWOperations.h) to the sink pins connected
// to it, on the sender's thread. A sink pin hands each operation to its dispatch procedure.
// Queued sink pins hold a block queue for their owner.
//
// A sink pin is typed by the data kinds it takes; a source pin by the one kind it sends.
// Connecting a source to a sink that does not take its kind raises std::invalid_argument.
// A sink has at most one source; a source may feed any number of sinks.
//
// Sink pins must be held by std::shared_ptr: a source keeps weak references to its sinks
// and holds each one alive for the length of a delivery, so a sink may go away while a
// sender on another thread is delivering. Its owner calls Close first: from then on no
// dispatch procedure is entered (one already running finishes; the owner keeps that apart
// with its own lock).

#include "qv/foundation/QVData.h"
#include "qv/pins/QWBlockQueue.h"
#include "qv/pins/QWOperations.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace qv {

class TQWPin;
class TQWSourceLink;

// The dispatch procedure of a sink pin: the pin, the data kind of the source that sent the
// operation (the connection's interface), the operation, and the number the source gave it
// (counting from 1; 0 for an answer made by the pin itself). Returns whether the receiver
// consumed the operation.
using TQWDispatchProc =
    std::function<bool(TQWPin* APin, TQVDataKind AIID, const TQWOperation& AOperation, uint64_t AState)>;

class TQWPin {
public:
    virtual ~TQWPin() = default;
    virtual bool IsConnected() const = 0;
};

class TQWSinkPin : public TQWPin, public std::enable_shared_from_this<TQWSinkPin> {
public:
    TQWSinkPin(std::initializer_list<TQVDataKind> AAccepted, TQWDispatchProc ADispatch);
    ~TQWSinkPin() override;
    TQWSinkPin(const TQWSinkPin&) = delete;
    TQWSinkPin& operator=(const TQWSinkPin&) = delete;

    bool IsConnected() const override;
    bool Accepts(TQVDataKind AKind) const;
    // Leaves the source; nothing when not connected.
    void Disconnect();
    // Stops dispatching for good.
    void Close();
    bool IsClosed() const { return FClosed.load(std::memory_order_acquire); }

    // Hands AOperation to the dispatch procedure; false when there is none (closed).
    bool Dispatch(const TQWOperation& AOperation, TQVDataKind AIID, uint64_t AState);
    // An operation from the pin's own side. A TQWQueryStreamOperation asks the source how its
    // stream stands: a source that is not streaming answers at once, through this pin's
    // dispatch, with a TQWIgnoreStreamOperation. Other operations have no meaning here and
    // are ignored.
    void Notify(const TQWOperation& AOperation);

private:
    friend class TQWSourcePin;
    // Forgets ALink when it is this pin's source.
    void DropSource(const TQWSourceLink* ALink);

    const std::vector<TQVDataKind> FAccepted;
    mutable std::mutex FSection;
    std::weak_ptr<TQWSourceLink> FSource;
    std::shared_ptr<const TQWDispatchProc> FDispatch;
    std::atomic<bool> FClosed{false};
};

// A sink pin with a block queue that its owner fills and drains.
class TQWQueuedSinkPin : public TQWSinkPin {
public:
    using TQWSinkPin::TQWSinkPin;
    TQWBlockQueue& GetQueue() { return FQueue; }
    const TQWBlockQueue& GetQueue() const { return FQueue; }

private:
    TQWBlockQueue FQueue;
};

// Takes real, integer and complex streams, blocks and buffer pairs.
class TQVQWComboRealIntComplexPairedQueuedSinkPin : public TQWQueuedSinkPin {
public:
    explicit TQVQWComboRealIntComplexPairedQueuedSinkPin(TQWDispatchProc ADispatch)
        : TQWQueuedSinkPin({dkReal, dkInteger, dkComplex}, std::move(ADispatch))
    {}
};

// Takes integer and real streams.
class TQVQWQueuedIntegerRealSinkPin : public TQWQueuedSinkPin {
public:
    explicit TQVQWQueuedIntegerRealSinkPin(TQWDispatchProc ADispatch)
        : TQWQueuedSinkPin({dkInteger, dkReal}, std::move(ADispatch))
    {}
};

class TQWSourcePin : public TQWPin {
public:
    explicit TQWSourcePin(TQVDataKind AKind);
    ~TQWSourcePin() override;
    TQWSourcePin(const TQWSourcePin&) = delete;
    TQWSourcePin& operator=(const TQWSourcePin&) = delete;

    TQVDataKind GetDataKind() const;
    // Connected to at least one sink.
    bool IsConnected() const override;
    // Connects ASink, which leaves its former source. A sink that does not take this pin's
    // kind, or one not held by a std::shared_ptr, raises std::invalid_argument.
    void Connect(TQWSinkPin& ASink);
    // Nothing when ASink is not connected to this pin.
    void Disconnect(TQWSinkPin& ASink);
    void DisconnectAll();

    // Sends AOperation to every connected sink, in the order of connection, on the caller's
    // thread. A block (or a block of a pair) that is null or not of the pin's kind raises
    // std::invalid_argument and goes nowhere. A start makes the pin streaming; a stop or an
    // ignore ends that.
    void Notify(const TQWOperation& AOperation);
    bool GetStreaming() const;

protected:
    // Runs after ASink was connected, on the connecting thread, with no lock of the pin held.
    virtual void Connected(TQWSinkPin& ASink) {}

private:
    std::shared_ptr<TQWSourceLink> FLink;
};

// A source of real blocks. Its connect callback runs for every new sink, so the owner can
// open the stream for that sink alone (a start with the rate it sends at).
class TQVQWRealSourcePin : public TQWSourcePin {
public:
    using TQWConnectProc = std::function<void(TQWSinkPin& ASink)>;
    explicit TQVQWRealSourcePin(TQWConnectProc AOnConnect = {})
        : TQWSourcePin(dkReal), FOnConnect(std::move(AOnConnect))
    {}
    // Sends ABuffer as one block to every connected sink; a null buffer raises
    // std::invalid_argument.
    void SendBuffer(std::shared_ptr<const IQVData> ABuffer) { Notify(TQWSuppliedBufferOperation(std::move(ABuffer))); }

protected:
    void Connected(TQWSinkPin& ASink) override
    {
        if (FOnConnect)
            FOnConnect(ASink);
    }

private:
    TQWConnectProc FOnConnect;
};

// Sink pins registered under names, such as the input pins of a chart's channels. Holds the
// pins alive until they are removed.
class TQWPinList {
public:
    void Add(const std::string& AName, std::shared_ptr<TQWSinkPin> APin);
    // Nothing when APin is not in the list.
    void Remove(const TQWSinkPin* APin);
    int32_t GetCount() const;
    // An index outside the list raises EQLListError naming it.
    std::shared_ptr<TQWSinkPin> GetPin(int32_t AIndex) const;
    std::string GetName(int32_t AIndex) const;
    // The first pin of that name; null when there is none.
    std::shared_ptr<TQWSinkPin> Find(const std::string& AName) const;
    // The pins as they are now.
    std::vector<std::shared_ptr<TQWSinkPin>> GetPins() const;

private:
    void CheckIndex(int32_t AIndex) const;

    mutable std::mutex FSection;
    std::vector<std::pair<std::string, std::shared_ptr<TQWSinkPin>>> FPins;
};

} // namespace qv
