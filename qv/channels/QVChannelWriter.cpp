#include "qv/channels/QVChannelWriter.h"

#include <thread>

namespace qv {

void TQVChannelWriter::Detach()
{
    FData.store(nullptr);
    while (FInFlight.load() != 0)
        std::this_thread::yield();
}

} // namespace qv
