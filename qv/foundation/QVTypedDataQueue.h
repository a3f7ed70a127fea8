#pragma once
// A guarded first-in first-out list with index access, safe to use from any thread. Every
// call holds the queue's mutex for one list operation only and waits for nothing else inside
// it. No capacity and no wrap: the list grows as values are added.

#include "qv/foundation/QLCollection.h"

#include <cstdint>
#include <deque>
#include <mutex>
#include <stdexcept>
#include <string>
#include <utility>

namespace qv {

template <class T>
class TQVTypedDataQueue {
public:
    TQVTypedDataQueue() = default;
    TQVTypedDataQueue(const TQVTypedDataQueue&) = delete;
    TQVTypedDataQueue& operator=(const TQVTypedDataQueue&) = delete;

    // Appends at the end. Raises std::length_error when the queue already holds INT32_MAX
    // values, the most GetCount can report.
    void Add(T AValue)
    {
        std::lock_guard Lock(FSection);
        if (FList.size() >= size_t(INT32_MAX))
            throw std::length_error("TQVTypedDataQueue: cannot hold more than " + std::to_string(FList.size()) +
                                    " values");
        FList.push_back(std::move(AValue));
    }

    // Moves the oldest value into AValue and removes it: true. On an empty queue: false, and
    // AValue is left as it was.
    bool Pop(T& AValue)
    {
        std::lock_guard Lock(FSection);
        if (FList.empty())
            return false;
        AValue = std::move(FList.front());
        FList.pop_front();
        return true;
    }

    int32_t GetCount() const
    {
        std::lock_guard Lock(FSection);
        return static_cast<int32_t>(FList.size());
    }

    // Removes the oldest value; does nothing on an empty queue.
    void Remove()
    {
        std::lock_guard Lock(FSection);
        if (!FList.empty())
            FList.pop_front();
    }

    void Clear()
    {
        std::lock_guard Lock(FSection);
        FList.clear();
    }

    // Index 0 is the oldest value. An index outside 0..GetCount()-1 raises EQLListError
    // (a std::out_of_range) naming the index.
    T GetItem(int32_t AIndex) const
    {
        std::lock_guard Lock(FSection);
        CheckIndex(AIndex);
        return FList[static_cast<size_t>(AIndex)];
    }

    void SetItem(int32_t AIndex, T AValue)
    {
        std::lock_guard Lock(FSection);
        CheckIndex(AIndex);
        FList[static_cast<size_t>(AIndex)] = std::move(AValue);
    }

private:
    void CheckIndex(int32_t AIndex) const
    {
        if (AIndex < 0 || static_cast<size_t>(AIndex) >= FList.size())
            throw EQLListError(AIndex);
    }

    mutable std::mutex FSection;
    std::deque<T> FList; // oldest first
};

} // namespace qv
