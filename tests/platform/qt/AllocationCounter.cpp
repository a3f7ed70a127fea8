#include "AllocationCounter.h"

#include <cstdlib>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define QV_TEST_COUNT_ALLOCATIONS 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define QV_TEST_COUNT_ALLOCATIONS 0
#endif
#endif
#if !defined(QV_TEST_COUNT_ALLOCATIONS) && defined(__GLIBC__)
#define QV_TEST_COUNT_ALLOCATIONS 1
#endif
#ifndef QV_TEST_COUNT_ALLOCATIONS
#define QV_TEST_COUNT_ALLOCATIONS 0
#endif

namespace {
thread_local bool GCounting = false;
thread_local size_t GCount = 0;
} // namespace

#if QV_TEST_COUNT_ALLOCATIONS
// glibc's own allocator under its exported internal names; the definitions below take the
// place of malloc, calloc and realloc for the whole process and only add the count.
extern "C" {
void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);

void* malloc(size_t ASize)
{
    if (GCounting)
        ++GCount;
    return __libc_malloc(ASize);
}
void* calloc(size_t ACount, size_t ASize)
{
    if (GCounting)
        ++GCount;
    return __libc_calloc(ACount, ASize);
}
void* realloc(void* APtr, size_t ASize)
{
    if (GCounting)
        ++GCount;
    return __libc_realloc(APtr, ASize);
}
}
#endif

namespace qvtest {

bool AllocationCountingAvailable()
{
    return QV_TEST_COUNT_ALLOCATIONS != 0;
}

TAllocationCount::TAllocationCount()
{
    GCount = 0;
    GCounting = true;
}

TAllocationCount::~TAllocationCount()
{
    GCounting = false;
}

size_t TAllocationCount::Get() const
{
    return GCount;
}

} // namespace qvtest
