#pragma once
// Counts heap allocations (malloc, calloc, realloc: Qt's containers and operator new both
// end there) made on the calling thread while a TAllocationCount is alive. Counting is not
// available in sanitizer builds, whose runtime owns the allocator.

#include <cstddef>

namespace qvtest {

bool AllocationCountingAvailable();

class TAllocationCount {
public:
    TAllocationCount();
    ~TAllocationCount();
    TAllocationCount(const TAllocationCount&) = delete;
    TAllocationCount& operator=(const TAllocationCount&) = delete;
    size_t Get() const;
};

} // namespace qvtest
