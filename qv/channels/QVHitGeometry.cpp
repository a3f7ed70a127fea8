#include "qv/channels/QVHitGeometry.h"

#include <algorithm>
#include <cmath>

namespace qv {

namespace {
double Distance(const TPoint& A, const TPoint& B)
{
    return std::hypot(double(A.X) - B.X, double(A.Y) - B.Y);
}
} // namespace

double QPDistancePointToLine(const TPoint& AP, const TPoint& AA, const TPoint& AB, double& ARatio, TPoint& ANearest)
{
    // Integer vectors; products in 64 bits, since pixels may lie far outside the view.
    const int64_t VX = int64_t(AB.X) - AA.X, VY = int64_t(AB.Y) - AA.Y;
    const int64_t WX = int64_t(AP.X) - AA.X, WY = int64_t(AP.Y) - AA.Y;
    const int64_t C1 = WX * VX + WY * VY;
    if (C1 <= 0) {
        ANearest = AA;
        ARatio = 0.0;
        return Distance(AP, AA);
    }
    const int64_t C2 = VX * VX + VY * VY;
    if (C1 >= C2) {
        ANearest = AB;
        ARatio = 1.0;
        return Distance(AP, AB);
    }
    ARatio = double(C1) / double(C2);
    ANearest = TPoint{AA.X + int32_t(std::nearbyint(ARatio * double(VX))),
                      AA.Y + int32_t(std::nearbyint(ARatio * double(VY)))};
    return Distance(AP, ANearest);
}

double QPDistancePointToEllipse(const TPoint& AP, const TRect& ARect, TPoint& ANearest)
{
    const int32_t CX = ARect.Left + (ARect.Right - ARect.Left) / 2;
    const int32_t CY = ARect.Top + (ARect.Bottom - ARect.Top) / 2;
    const double A = (ARect.Right - ARect.Left) / 2;
    const double B = (ARect.Bottom - ARect.Top) / 2;
    const double QX = double(AP.X) - CX, QY = double(AP.Y) - CY;
    ANearest.X += CX;
    ANearest.Y += CY;
    double Result;
    if (QX == 0.0 && QY == 0.0) {
        Result = std::min(A, B);
    } else if (A == 0.0 && B == 0.0) {
        Result = std::max(QX, QY);
    } else {
        const double D = std::sqrt((B * QX) * (B * QX) + (A * QY) * (A * QY));
        if (D == 0.0) {
            // A flat ellipse seen along its missing axis.
            if (B == 0.0 && std::fabs(QX) < A)
                Result = QY;
            else if (std::fabs(QY) < B)
                Result = QX;
            else
                Result = std::max(std::fabs(QY - B), std::fabs(QX - A));
        } else {
            // The outline's point on the ray is s * q; the distance is what is left of q.
            const double S = A * B / D;
            Result = std::hypot(QX - S * QX, QY - S * QY);
        }
    }
    return std::fabs(Result);
}

} // namespace qv
