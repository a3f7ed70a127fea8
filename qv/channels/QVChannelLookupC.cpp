#include "qv/channels/QVChannelLookupC.h"

#include "qv/channels/QVDisplayChannel.h"

#include <algorithm>
#include <new>

struct QVRealArray {
    qv::TQVScopeRealPoints Values;
};

namespace {
// A heap array for the foreign host; nothing may escape across the C boundary.
QVRealArrayHandle MakeArray(qv::TQVScopeRealPoints AValues) noexcept
{
    return new (std::nothrow) QVRealArray{std::move(AValues)};
}
} // namespace

extern "C" {

QVRealArrayHandle NET_GetXPointsAtValue(QVChannelHandle AChannel, double YValue)
{
    try {
        return MakeArray(AChannel ? AChannel->GetXPointsAtValue(YValue) : qv::TQVScopeRealPoints{});
    } catch (...) {
        return MakeArray({});
    }
}

QVRealArrayHandle NET_GetYPointsAtValue(QVChannelHandle AChannel, double XValue)
{
    try {
        return MakeArray(AChannel ? AChannel->GetYPointsAtValue(XValue) : qv::TQVScopeRealPoints{});
    } catch (...) {
        return MakeArray({});
    }
}

int32_t NET_GetArrayLength(QVRealArrayHandle AArray)
{
    return AArray ? int32_t(AArray->Values.size()) : 0;
}

const double* NET_GetArray(QVRealArrayHandle AArray)
{
    return AArray && !AArray->Values.empty() ? AArray->Values.data() : nullptr;
}

int32_t NET_PopulateArray(QVRealArrayHandle AArray, double* ADest, int32_t ACapacity)
{
    if (!AArray || !ADest || ACapacity <= 0)
        return 0;
    const int32_t Count = std::min(ACapacity, int32_t(AArray->Values.size()));
    std::copy_n(AArray->Values.data(), Count, ADest);
    return Count;
}

void NET_DestroyArray(QVRealArrayHandle AArray)
{
    delete AArray;
}

} // extern "C"
