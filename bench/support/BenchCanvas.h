#pragma once
// A drawing surface for the benchmarks that draws nothing and counts the drawing calls, so
// that a figure measures the library's own work and not a rasteriser's.

#include "qv/foundation/QLCanvas.h"

#include <cstdint>
#include <string>

namespace qvbench {

class TBenchCanvas : public qv::TQLCanvas {
public:
    void* GetPlatformCanvas() override { return nullptr; }
    void* GetDeviceHandle() override { return nullptr; }
    void SetPixel(int32_t, int32_t, qv::TAlphaColor) override { ++Calls; }
    void Ellipse(int32_t, int32_t, int32_t, int32_t) override { ++Calls; }
    void Rectangle(int32_t, int32_t, int32_t, int32_t) override { ++Calls; }
    void FillRect(const qv::TRect&) override { ++Calls; }
    void DrawFocusRect(const qv::TRect&) override {}
    void Polygon(const qv::TPoint*, int32_t) override { ++Calls; }
    void LineTo(int32_t AX, int32_t AY) override
    {
        ++Calls;
        FPenPos = qv::TPoint{AX, AY};
    }
    qv::TSize TextExtent(const std::string&) override { return qv::TSize{0, 0}; }
    void TextOut(int32_t, int32_t, const std::string&) override {}
    void ClearClipRegion() override {}
    void SetClipRegion(const qv::TQLRegion&) override {}
    void IntersectClipPolygon(const qv::TPoint*, int32_t) override {}
    void IntersectClipEllipse(const qv::TRect&) override {}
    void DrawBitmap(int32_t, int32_t, const qv::TQLBitmap&) override {}
    void StretchDrawBitmap(const qv::TRect&, const qv::TQLBitmap&) override {}
    int64_t Calls = 0;
};

} // namespace qvbench
