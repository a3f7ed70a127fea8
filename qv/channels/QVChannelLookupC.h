#pragma once
// The value lookup of a channel as a plain C interface, for hosts in other languages: the
// crossings come back as an array behind an opaque handle, which the caller reads and then
// releases. Every function accepts a null handle (and a null channel): the array is then
// empty, and nothing is written or freed.

#include <stdint.h>

#ifdef __cplusplus
namespace qv {
class TQVDisplayChannel;
}
using QVChannelHandle = qv::TQVDisplayChannel*;
extern "C" {
#else
typedef void* QVChannelHandle;
#endif

typedef struct QVRealArray* QVRealArrayHandle;

// The X values where the channel crosses YValue, and the Y values where it crosses XValue,
// on its last painted frame; release the result with NET_DestroyArray. It is null only when
// memory ran out.
QVRealArrayHandle NET_GetXPointsAtValue(QVChannelHandle AChannel, double YValue);
QVRealArrayHandle NET_GetYPointsAtValue(QVChannelHandle AChannel, double XValue);
// The number of values held.
int32_t NET_GetArrayLength(QVRealArrayHandle AArray);
// The values, valid until the array is released; null when it holds none.
const double* NET_GetArray(QVRealArrayHandle AArray);
// Copies at most ACapacity values into ADest and returns how many were copied.
int32_t NET_PopulateArray(QVRealArrayHandle AArray, double* ADest, int32_t ACapacity);
void NET_DestroyArray(QVRealArrayHandle AArray);

#ifdef __cplusplus
}
#endif
