#include "QLQtCanvas.h"

#include "QLQtImage.h"

#include <QGuiApplication>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainterPath>
#include <QPainterPathStroker>
#include <QPen>
#include <QPolygonF>
#include <QTransform>
#include <QVarLengthArray>

#include <algorithm>
#include <climits>
#include <cmath>
#include <stdexcept>
#include <string>

namespace qv {

namespace {

// A dash pattern for pens of width 1: bit i of Mask set means pixel i of a period is drawn.
struct TDashMask {
    uint32_t Mask;
    uint32_t Period; // 0: solid
};

TDashMask DashMaskOf(uint8_t AStyle)
{
    switch (AStyle) {
    case psDot: return {0b1u, 3};                      // 1 on, 2 off
    case psDash: return {0b111111u, 9};                // 6 on, 3 off
    case psDashDot: return {0b1000111111u, 13};        // 6, 3, 1, 3
    case psDashDotDot: return {0b10001000111111u, 17}; // 6, 3, 1, 3, 1, 3
    default: return {0, 0};
    }
}

// The same patterns for Qt's stroker, in units of the pen width.
QList<qreal> DashPatternOf(uint8_t AStyle)
{
    switch (AStyle) {
    case psDot: return {1, 2};
    case psDash: return {6, 3};
    case psDashDot: return {6, 3, 1, 3};
    case psDashDotDot: return {6, 3, 1, 3, 1, 3};
    default: return {};
    }
}

bool IsPatterned(uint8_t AStyle)
{
    return AStyle >= psDot && AStyle <= psDashDotDot;
}

QColor ToQColor(TAlphaColor AColor)
{
    return QColor::fromRgba(AColor);
}

int PixelSizeOf(int32_t APoints)
{
    // Points at the 96 pixels per inch that screens and images are laid out for.
    const double Pixels = std::round(static_cast<double>(APoints) * 96.0 / 72.0);
    return static_cast<int>(std::clamp(Pixels, 1.0, 100000.0));
}

} // namespace

// ---- construction ----

TQLQtCanvas::TQLQtCanvas(QPainter& APainter) : FPainter(&APainter), FExternal(true)
{
    if (!APainter.isActive())
        throw std::invalid_argument("TQLQtCanvas: the painter is not active");
    const QPaintEngine::Type Engine = APainter.paintEngine()->type();
    FVector = Engine == QPaintEngine::SVG || Engine == QPaintEngine::Pdf || Engine == QPaintEngine::Picture;
    // Qt's SVG generator writes no clip paths: the canvas clips what it draws itself.
    FSoftClip = Engine == QPaintEngine::SVG;
    FPainter->save();
    FHasBaseClip = FPainter->hasClipping();
    if (FHasBaseClip)
        FBaseClip = FPainter->clipRegion();
    PreparePainter();
}

TQLQtCanvas::TQLQtCanvas(TQLBitmap& ABitmap) : FOwnPainter(std::make_unique<QPainter>()), FBitmap(&ABitmap)
{
    FPainter = FOwnPainter.get();
    BeginOnBitmap();
}

TQLQtCanvas::~TQLQtCanvas()
{
    if (FExternal) {
        if (FPainter->isActive()) {
            FlushLine();
            FPainter->restore();
        }
    } else if (FPainter->isActive()) {
        FPainter->end();
    }
}

void TQLQtCanvas::BeginOnBitmap()
{
    if (FPainter->isActive())
        FPainter->end();
    FImage = qt::QLWrapBitmap(*FBitmap);
    FWrappedBits = FBitmap->GetBits();
    FWrappedWidth = FBitmap->GetWidth();
    FWrappedHeight = FBitmap->GetHeight();
    FWrappedRatio = FBitmap->GetDevicePixelRatio();
    // At a whole ratio a logical pixel is a square of stored pixels that spans may fill
    // directly; at a fractional one only the painter knows which pixels a span covers.
    FDirectScale = FWrappedRatio == std::floor(FWrappedRatio) ? static_cast<int32_t>(FWrappedRatio) : 0;
    if (!FImage.isNull() && FPainter->begin(&FImage))
        PreparePainter();
}

void TQLQtCanvas::PreparePainter()
{
    FPainter->setRenderHint(QPainter::Antialiasing, false);
    FPainter->setRenderHint(QPainter::SmoothPixmapTransform, false);
    FPainter->setRenderHint(QPainter::TextAntialiasing, true);
    FPainter->setCompositionMode(QPainter::CompositionMode_SourceOver);

    const QPaintDevice* Device = FPainter->device();
    const QRect DeviceRect(0, 0, Device->width(), Device->height());
    bool Invertible = false;
    const QTransform ToLogical = FPainter->combinedTransform().inverted(&Invertible);
    FVisible = Invertible ? ToLogical.mapRect(DeviceRect).adjusted(-1, -1, 1, 1)
                          : QRect(QPoint(INT_MIN / 2, INT_MIN / 2), QPoint(INT_MAX / 2, INT_MAX / 2));
    InvalidatePlatformState();
}

void TQLQtCanvas::InvalidatePlatformState()
{
    FPainterLent = false;
    FPenValid = false;
    FBrushValid = false;
    FFontValid = false;
    FLineColorValid = false;
    if (FPainter->isActive())
        ApplyClip();
}

bool TQLQtCanvas::Ready()
{
    FlushLine();
    return ReadyKeepingLine();
}

bool TQLQtCanvas::ReadyKeepingLine()
{
    if (FBitmap && (FBitmap->GetBits() != FWrappedBits || FBitmap->GetWidth() != FWrappedWidth ||
                    FBitmap->GetHeight() != FWrappedHeight || FBitmap->GetDevicePixelRatio() != FWrappedRatio))
        BeginOnBitmap();
    return FPainter->isActive();
}

void* TQLQtCanvas::GetPlatformCanvas()
{
    Ready();
    return GetPainter();
}

QPainter* TQLQtCanvas::GetPainter()
{
    FlushLine();
    FPainterLent = true;
    return FPainter;
}

void* TQLQtCanvas::GetDeviceHandle()
{
    Ready();
    return FPainter->device();
}

// ---- state sync ----

void TQLQtCanvas::SyncPen()
{
    if (FPenValid && FAppliedPen == FPen)
        return;
    const uint8_t Style = FPen.GetStyle();
    const int32_t Width = FPen.GetWidth();
    if (Style == psClear) {
        FPainter->setPen(Qt::NoPen);
    } else {
        QPen P(ToQColor(FPen.GetColor()));
        P.setWidth(Width);
        P.setJoinStyle(Qt::MiterJoin);
        if (IsPatterned(Style)) {
            P.setDashPattern(DashPatternOf(Style));
            P.setCapStyle(Qt::FlatCap);
        } else {
            P.setCapStyle(Width > 1 ? Qt::RoundCap : Qt::FlatCap);
        }
        FPainter->setPen(P);
    }
    FAppliedPen = FPen;
    FPenValid = true;
}

void TQLQtCanvas::SyncBrush()
{
    if (FBrushValid && FAppliedBrush == FBrush)
        return;
    if (FBrush.GetStyle() == bsClear)
        FPainter->setBrush(Qt::NoBrush);
    else
        FPainter->setBrush(ToQColor(FBrush.GetColor()));
    FAppliedBrush = FBrush;
    FBrushValid = true;
}

void TQLQtCanvas::SyncFont()
{
    // The colour is not part of the QFont; only face, size and style rebuild it.
    if (FFontValid && FAppliedFont.Name == FFont.Name && FAppliedFont.Size == FFont.Size &&
        FAppliedFont.Style == FFont.Style)
        return;
    QFont F(QString::fromStdString(FFont.Name));
    F.setPixelSize(PixelSizeOf(FFont.Size));
    F.setBold((FFont.Style & fsBold) != 0);
    F.setItalic((FFont.Style & fsItalic) != 0);
    F.setUnderline((FFont.Style & fsUnderline) != 0);
    F.setStrikeOut((FFont.Style & fsStrikeOut) != 0);
    FQFont = F;
    FMetrics.emplace(FQFont);
    FAppliedFont = FFont;
    FFontValid = true;
}

const QColor& TQLQtCanvas::LineColor()
{
    if (!FLineColorValid || FLineColorArgb != FPen.GetColor()) {
        FLineColorArgb = FPen.GetColor();
        FLineColor = ToQColor(FLineColorArgb);
        FLineColorValid = true;
    }
    return FLineColor;
}

void TQLQtCanvas::ApplyClip()
{
    // In logical pixels, as the clip is.
    const QRect Whole = FBitmap ? QRect(0, 0, FBitmap->GetLogicalWidth(), FBitmap->GetLogicalHeight()) : QRect();
    FDirectClipSimple = !FClip.Active || FClip.Region.rectCount() <= 1;
    FDirectClip = FClip.Active ? FClip.Region.boundingRect().intersected(Whole) : Whole;
    FSoftClipActive = FSoftClip && (FClip.Active || FHasBaseClip);
    if (FSoftClipActive) {
        FSoftRegion = FClip.Active ? (FHasBaseClip ? FClip.Region.intersected(FBaseClip) : FClip.Region) : FBaseClip;
        FSoftPath = QPainterPath();
        FSoftPath.addRegion(FSoftRegion);
    }
    if (FClip.Active)
        FPainter->setClipRegion(FHasBaseClip ? FClip.Region.intersected(FBaseClip) : FClip.Region);
    else if (FHasBaseClip)
        FPainter->setClipRegion(FBaseClip);
    else
        FPainter->setClipping(false);
}

void TQLQtCanvas::RequireGui() const
{
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        throw std::logic_error("TQLQtCanvas: text needs a QGuiApplication");
}

// ---- pixels, lines and shapes ----

void TQLQtCanvas::FillSpan(int32_t AX, int32_t AY, int32_t AW, int32_t AH, const QColor& AColor)
{
    if (FSoftClipActive) {
        for (const QRect& R : FSoftRegion.intersected(QRect(AX, AY, AW, AH)))
            FPainter->fillRect(R, AColor);
        return;
    }
    FPainter->fillRect(QRect(AX, AY, AW, AH), AColor);
}

void TQLQtCanvas::DrawVectorLine(QPointF AFrom, QPointF ATo)
{
    if (!FSoftClipActive) {
        FPainter->drawLine(AFrom, ATo);
        return;
    }
    // The part of the segment inside each rectangle of the clip (Liang-Barsky).
    const double DX = ATo.x() - AFrom.x(), DY = ATo.y() - AFrom.y();
    for (const QRect& R : FSoftRegion) {
        double T0 = 0.0, T1 = 1.0;
        const auto Edge = [&](double AP, double AQ) {
            if (AP == 0.0)
                return AQ >= 0.0;
            const double T = AQ / AP;
            if (AP < 0.0)
                T0 = std::max(T0, T);
            else
                T1 = std::min(T1, T);
            return T0 <= T1;
        };
        if (Edge(-DX, AFrom.x() - R.left()) && Edge(DX, R.right() + 1 - AFrom.x()) && Edge(-DY, AFrom.y() - R.top()) &&
            Edge(DY, R.bottom() + 1 - AFrom.y()) && T0 < T1)
            FPainter->drawLine(QPointF(AFrom.x() + T0 * DX, AFrom.y() + T0 * DY),
                               QPointF(AFrom.x() + T1 * DX, AFrom.y() + T1 * DY));
    }
}

bool TQLQtCanvas::SoftClipDraws(const QPainterPath& AShape)
{
    const double Margin = FPainter->pen().style() == Qt::NoPen ? 0.0 : FPainter->pen().widthF() + 1.0;
    const QRect Bounds = AShape.boundingRect().adjusted(-Margin, -Margin, Margin, Margin).toAlignedRect();
    if (QRegion(Bounds).subtracted(FSoftRegion).isEmpty())
        return false; // wholly inside: drawn as it is
    if (FPainter->brush().style() != Qt::NoBrush)
        FPainter->fillPath(AShape.intersected(FSoftPath), FPainter->brush());
    if (FPainter->pen().style() != Qt::NoPen) {
        QPainterPathStroker Stroker(FPainter->pen());
        FPainter->fillPath(Stroker.createStroke(AShape).intersected(FSoftPath), FPainter->pen().color());
    }
    return true;
}

uint32_t* TQLQtCanvas::DirectPixels()
{
    // Over an external painter the device is not ours to write; while the painter is lent
    // out, its borrower may have set a clip, a transform or another composition mode.
    if (!FBitmap || FExternal || FPainterLent || !FDirectClipSimple || FBitmap->GetBits() != FWrappedBits ||
        FDirectScale == 0)
        return nullptr;
    return FBitmap->GetBits();
}

void TQLQtCanvas::SetPixel(int32_t AX, int32_t AY, TAlphaColor AColor)
{
    if (!Ready())
        return;
    FillSpan(AX, AY, 1, 1, ToQColor(AColor));
}

void TQLQtCanvas::MoveTo(int32_t AX, int32_t AY)
{
    TQLCanvas::MoveTo(AX, AY);
    FDashPhase = 0;
}

void TQLQtCanvas::LineTo(int32_t AX, int32_t AY)
{
    const TPoint From = FPenPos;
    FPenPos = TPoint{AX, AY};
    if (FPen.GetStyle() == psClear || !ReadyKeepingLine())
        return;
    if (FPen.GetWidth() > 1) {
        FlushLine();
        SyncPen();
        if (FVector)
            DrawVectorLine(QPointF(From.X, From.Y), QPointF(AX, AY));
        else
            FPainter->drawLine(From.X, From.Y, AX, AY);
        return;
    }
    if (FVector) {
        VectorThinLine(From, TPoint{AX, AY});
        return;
    }
    ThinLine(From, TPoint{AX, AY});
}

// Thin lines that continue one another with the same pen gather into one polyline, drawn
// when anything else is drawn or the state changes: a channel becomes one object in the
// file, and its dash pattern runs on over the joints.
void TQLQtCanvas::VectorThinLine(TPoint AFrom, TPoint ATo)
{
    if (AFrom.X == ATo.X && AFrom.Y == ATo.Y)
        return;
    const QPointF From(AFrom.X + 0.5, AFrom.Y + 0.5), To(ATo.X + 0.5, ATo.Y + 0.5);
    if (FSoftClipActive && !InsideSoftClip(From, To)) {
        FlushLine();
        SyncPen();
        DrawVectorLine(From, To);
        return;
    }
    if (!FLine.isEmpty() && (FLine.last() != From || !(FLinePen == FPen)))
        FlushLine();
    if (FLine.isEmpty()) {
        FLine.append(From);
        FLinePen = FPen;
    }
    FLine.append(To);
}

void TQLQtCanvas::FlushLine()
{
    if (FLine.isEmpty())
        return;
    const TQLCanvasPen Current = FPen;
    FPen = FLinePen;
    FPenValid = false;
    SyncPen();
    FPainter->drawPolyline(FLine.constData(), static_cast<int>(FLine.size()));
    FPen = Current;
    FPenValid = false;
    FLine.clear();
}

bool TQLQtCanvas::InsideSoftClip(QPointF AFrom, QPointF ATo) const
{
    for (const QRect& R : FSoftRegion) {
        const QRectF Box(R.left(), R.top(), R.width(), R.height());
        if (Box.contains(AFrom) && Box.contains(ATo))
            return true;
    }
    return false;
}

// A line of width 1 from AFrom up to but not including ATo, stepping one pixel along the
// major axis and rounding the minor coordinate to nearest (a half moves away from the
// start). Pixels sharing a row or column go out as one span; only the part of the line
// inside the visible area is walked, so far-off end points cost nothing.
void TQLQtCanvas::ThinLine(TPoint AFrom, TPoint ATo)
{
    const int64_t DX = int64_t(ATo.X) - AFrom.X;
    const int64_t DY = int64_t(ATo.Y) - AFrom.Y;
    if (DX == 0 && DY == 0)
        return;
    const bool XMajor = std::llabs(DX) >= std::llabs(DY);
    const int64_t N = XMajor ? std::llabs(DX) : std::llabs(DY); // pixels in the line
    const uint64_t M = static_cast<uint64_t>(XMajor ? std::llabs(DY) : std::llabs(DX));
    const int64_t MajStep = (XMajor ? DX : DY) > 0 ? 1 : -1;
    const int64_t MinStep = (XMajor ? DY : DX) >= 0 ? 1 : -1;
    const int64_t Maj0 = XMajor ? AFrom.X : AFrom.Y;
    const int64_t Min0 = XMajor ? AFrom.Y : AFrom.X;
    const int64_t MajLo = XMajor ? FVisible.left() : FVisible.top();
    const int64_t MajHi = (XMajor ? FVisible.right() : FVisible.bottom()) + 1;
    const int64_t MinLo = XMajor ? FVisible.top() : FVisible.left();
    const int64_t MinHi = (XMajor ? FVisible.bottom() : FVisible.right()) + 1;

    const TDashMask Dash = DashMaskOf(FPen.GetStyle());
    const uint32_t PhaseStart = FDashPhase;
    if (Dash.Period)
        FDashPhase = static_cast<uint32_t>((PhaseStart + static_cast<uint64_t>(N)) % Dash.Period);

    // The steps i in [IBegin, IEnd) whose major coordinate is visible.
    int64_t IBegin = 0;
    int64_t IEnd = N;
    if (MajStep > 0) {
        IBegin = std::max<int64_t>(IBegin, MajLo - Maj0);
        IEnd = std::min<int64_t>(IEnd, MajHi - Maj0);
    } else {
        IBegin = std::max<int64_t>(IBegin, Maj0 - (MajHi - 1));
        IEnd = std::min<int64_t>(IEnd, Maj0 - MajLo + 1);
    }
    if (IBegin >= IEnd)
        return;

    // Minor offset of step i: floor((2 i M + N) / (2 N)), kept as quotient Q and remainder R
    // of that division and advanced by adding 2 M per step. i * M < 2^64 always fits.
    const uint64_t UN = static_cast<uint64_t>(N);
    const uint64_t P = static_cast<uint64_t>(IBegin) * M;
    uint64_t Q = P / UN;
    uint64_t R = 2 * (P % UN) + UN;
    if (R >= 2 * UN) {
        R -= 2 * UN;
        ++Q;
    }
    uint32_t Phase =
        Dash.Period ? static_cast<uint32_t>((PhaseStart + static_cast<uint64_t>(IBegin)) % Dash.Period) : 0;

    const QColor& Color = LineColor();
    // An opaque colour is simply stored: the raster engine would store the same value, so
    // such spans go straight into the pixels, which costs far less than a fill call for
    // the short spans of a dense plot.
    const TAlphaColor Argb = FPen.GetColor();
    uint32_t* const Direct = (Argb >> 24) == 0xFF ? DirectPixels() : nullptr;
    const int32_t Stride = FWrappedWidth;
    const int32_t Scale = FDirectScale;
    const QRect& DC = FDirectClip;
    const auto Store = [&](int32_t AX, int32_t AY, int32_t AW, int32_t AH) {
        const int32_t X0 = std::max(AX, DC.left()), X1 = std::min(AX + AW, DC.right() + 1);
        const int32_t Y0 = std::max(AY, DC.top()), Y1 = std::min(AY + AH, DC.bottom() + 1);
        if (X0 >= X1 || Y0 >= Y1)
            return;
        // Logical pixels to stored ones: Scale by Scale each.
        uint32_t* Row = Direct + static_cast<ptrdiff_t>(Y0) * Scale * Stride + static_cast<ptrdiff_t>(X0) * Scale;
        const int32_t Columns = (X1 - X0) * Scale, Rows = (Y1 - Y0) * Scale;
        if (Columns == 1) {
            // A column: the common span of a dense plot.
            for (int32_t Y = 0; Y < Rows; ++Y, Row += Stride)
                *Row = Argb;
        } else {
            for (int32_t Y = 0; Y < Rows; ++Y, Row += Stride)
                std::fill(Row, Row + Columns, Argb);
        }
    };
    bool InSpan = false;
    int64_t SpanFirst = 0;
    int64_t SpanLast = 0;
    uint64_t SpanQ = 0;
    auto Flush = [&]() {
        if (!InSpan)
            return;
        InSpan = false;
        const int64_t Minor = Min0 + MinStep * static_cast<int64_t>(SpanQ);
        if (Minor < MinLo || Minor >= MinHi)
            return;
        const int64_t A = Maj0 + MajStep * SpanFirst;
        const int64_t B = Maj0 + MajStep * SpanLast;
        const auto Start = static_cast<int32_t>(std::min(A, B));
        const auto Length = static_cast<int32_t>(SpanLast - SpanFirst + 1);
        const int32_t X = XMajor ? Start : static_cast<int32_t>(Minor);
        const int32_t Y = XMajor ? static_cast<int32_t>(Minor) : Start;
        const int32_t W = XMajor ? Length : 1;
        const int32_t H = XMajor ? 1 : Length;
        if (Direct)
            Store(X, Y, W, H);
        else
            FillSpan(X, Y, W, H, Color);
    };

    if (!Dash.Period) {
        // Solid: each run of steps on one minor coordinate is found by arithmetic, so a
        // steep or straight line costs one span per minor step, not one loop per pixel. R
        // stays below 2N before each run; the run ends at the first step that carries it to
        // 2N (never more than one carry, as M <= N), and 2 M times the run stays below 4N.
        for (int64_t I = IBegin; I < IEnd;) {
            int64_t Run = IEnd - I;
            if (M != 0)
                Run = std::min<int64_t>(Run, static_cast<int64_t>((2 * UN - R + 2 * M - 1) / (2 * M)));
            InSpan = true;
            SpanFirst = I;
            SpanLast = I + Run - 1;
            SpanQ = Q;
            Flush();
            I += Run;
            R += 2 * M * static_cast<uint64_t>(Run);
            if (R >= 2 * UN) {
                R -= 2 * UN;
                ++Q;
            }
        }
        return;
    }
    for (int64_t I = IBegin; I < IEnd; ++I) {
        bool On = true;
        if (Dash.Period) {
            On = ((Dash.Mask >> Phase) & 1u) != 0;
            if (++Phase == Dash.Period)
                Phase = 0;
        }
        if (On && InSpan && Q == SpanQ) {
            SpanLast = I;
        } else {
            Flush();
            if (On) {
                InSpan = true;
                SpanFirst = SpanLast = I;
                SpanQ = Q;
            }
        }
        R += 2 * M;
        if (R >= 2 * UN) {
            R -= 2 * UN;
            ++Q;
        }
    }
    Flush();
}

void TQLQtCanvas::Rectangle(int32_t AX0, int32_t AY0, int32_t AX1, int32_t AY1)
{
    if (AX1 <= AX0 || AY1 <= AY0 || !Ready())
        return;
    const int32_t W = AX1 - AX0;
    const int32_t H = AY1 - AY0;
    const bool BrushOn = FBrush.GetStyle() != bsClear;
    const uint8_t Style = FPen.GetStyle();
    if (Style == psClear) {
        if (BrushOn)
            FillSpan(AX0, AY0, W, H, ToQColor(FBrush.GetColor()));
        return;
    }
    const int32_t PW = FPen.GetWidth();
    if (W <= 2 * PW || H <= 2 * PW) {
        // The outline covers the whole box.
        FillSpan(AX0, AY0, W, H, LineColor());
        return;
    }
    if (BrushOn)
        FillSpan(AX0 + PW, AY0 + PW, W - 2 * PW, H - 2 * PW, ToQColor(FBrush.GetColor()));
    if (!IsPatterned(Style)) {
        // Four bands that do not overlap, so a translucent pen is composed once per pixel.
        const QColor& C = LineColor();
        FillSpan(AX0, AY0, W, PW, C);
        FillSpan(AX0, AY1 - PW, W, PW, C);
        FillSpan(AX0, AY0 + PW, PW, H - 2 * PW, C);
        FillSpan(AX1 - PW, AY0 + PW, PW, H - 2 * PW, C);
        return;
    }
    SyncPen();
    FPainter->setBrush(Qt::NoBrush);
    FBrushValid = false;
    if (FSoftClipActive) {
        QPainterPath Shape;
        Shape.addRect(PW == 1 ? QRectF(AX0 + 0.5, AY0 + 0.5, W - 1, H - 1)
                              : QRectF(AX0 + PW / 2.0, AY0 + PW / 2.0, W - PW, H - PW));
        if (SoftClipDraws(Shape))
            return;
    }
    if (PW == 1 && FVector)
        FPainter->drawRect(QRectF(AX0 + 0.5, AY0 + 0.5, W - 1, H - 1)); // through the outermost pixels' centres
    else if (PW == 1)
        FPainter->drawRect(QRect(AX0, AY0, W - 1, H - 1));
    else
        FPainter->drawRect(QRectF(AX0 + PW / 2.0, AY0 + PW / 2.0, W - PW, H - PW));
}

void TQLQtCanvas::FillRect(const TRect& ARect)
{
    if (ARect.IsEmpty() || FBrush.GetStyle() == bsClear || !Ready())
        return;
    FillSpan(ARect.Left, ARect.Top, ARect.Width(), ARect.Height(), ToQColor(FBrush.GetColor()));
}

void TQLQtCanvas::Ellipse(int32_t AX0, int32_t AY0, int32_t AX1, int32_t AY1)
{
    if (AX1 <= AX0 || AY1 <= AY0 || !Ready())
        return;
    const int32_t W = AX1 - AX0;
    const int32_t H = AY1 - AY0;
    SyncPen();
    SyncBrush();
    if (FSoftClipActive) {
        const int32_t PW = FPen.GetStyle() == psClear ? 0 : FPen.GetWidth();
        QPainterPath Shape;
        Shape.addEllipse(PW == 0   ? QRectF(AX0, AY0, W, H)
                         : PW == 1 ? QRectF(AX0 + 0.5, AY0 + 0.5, W - 1, H - 1)
                                   : QRectF(AX0 + PW / 2.0, AY0 + PW / 2.0, W - PW, H - PW));
        if (SoftClipDraws(Shape))
            return;
    }
    if (FPen.GetStyle() == psClear) {
        // Fill only: pixels whose centres lie inside the ellipse of the box.
        FPainter->drawEllipse(QRectF(AX0, AY0, W, H));
        return;
    }
    const int32_t PW = FPen.GetWidth();
    if (W <= 2 * PW || H <= 2 * PW) {
        // Too small for a ring: the pen covers the box.
        FillSpan(AX0, AY0, W, H, LineColor());
        return;
    }
    if (PW == 1 && FVector)
        FPainter->drawEllipse(QRectF(AX0 + 0.5, AY0 + 0.5, W - 1, H - 1));
    else if (PW == 1)
        FPainter->drawEllipse(QRect(AX0, AY0, W - 1, H - 1)); // through the outermost pixels
    else
        FPainter->drawEllipse(QRectF(AX0 + PW / 2.0, AY0 + PW / 2.0, W - PW, H - PW));
}

void TQLQtCanvas::Polygon(const TPoint* APoints, int32_t AHigh)
{
    if (AHigh < 0)
        return;
    if (!APoints)
        throw std::invalid_argument("TQLQtCanvas::Polygon: no points for high index " + std::to_string(AHigh));
    if (!Ready())
        return;
    const int32_t Count = AHigh + 1;
    QVarLengthArray<QPoint, 16> Points(Count);
    for (int32_t I = 0; I < Count; ++I)
        Points[I] = QPoint(APoints[I].X, APoints[I].Y);
    SyncBrush();
    QPainterPath Shape;
    if (FSoftClipActive) {
        Shape.setFillRule(Qt::OddEvenFill);
        Shape.addPolygon(QPolygonF(QPolygon(QList<QPoint>(Points.begin(), Points.end()))));
        Shape.closeSubpath();
    }
    if (FPen.GetStyle() == psClear || FPen.GetWidth() > 1) {
        SyncPen();
        if (!FSoftClipActive || !SoftClipDraws(Shape))
            FPainter->drawPolygon(Points.data(), Count, Qt::OddEvenFill);
        return;
    }
    // A thin outline goes edge by edge like LineTo: each edge starts on its vertex, so every
    // vertex is drawn, and no pixel twice where two edges meet.
    if (FBrush.GetStyle() != bsClear) {
        FPainter->setPen(Qt::NoPen);
        FPenValid = false;
        if (!FSoftClipActive || !SoftClipDraws(Shape))
            FPainter->drawPolygon(Points.data(), Count, Qt::OddEvenFill);
    }
    FDashPhase = 0;
    for (int32_t I = 0; I < Count; ++I) {
        if (FVector)
            VectorThinLine(APoints[I], APoints[I + 1 < Count ? I + 1 : 0]);
        else
            ThinLine(APoints[I], APoints[I + 1 < Count ? I + 1 : 0]);
    }
    FDashPhase = 0;
}

void TQLQtCanvas::DrawFocusRect(const TRect& ARect)
{
    // An inversion of screen pixels; a vector file has none to invert.
    if (ARect.IsEmpty() || FVector || !Ready())
        return;
    const int32_t L = ARect.Left, T = ARect.Top, R = ARect.Right - 1, B = ARect.Bottom - 1;
    FPainter->setCompositionMode(QPainter::RasterOp_NotDestination);
    // Every other pixel round the frame, clockwise from the top-left corner; each pixel of
    // the frame is visited once, so the inversion never undoes itself.
    int64_t K = 0;
    auto Dot = [&](int32_t AX, int32_t AY) {
        if ((K++ & 1) == 0)
            FPainter->fillRect(QRect(AX, AY, 1, 1), Qt::white);
    };
    for (int32_t X = L; X <= R; ++X)
        Dot(X, T);
    if (B > T) {
        for (int32_t Y = T + 1; Y <= B; ++Y)
            Dot(R, Y);
        for (int32_t X = R - 1; X >= L; --X)
            Dot(X, B);
        if (R > L)
            for (int32_t Y = B - 1; Y > T; --Y)
                Dot(L, Y);
    }
    FPainter->setCompositionMode(QPainter::CompositionMode_SourceOver);
}

// ---- text ----

TSize TQLQtCanvas::TextExtent(const std::string& AText)
{
    RequireGui();
    SyncFont();
    const QString S = QString::fromUtf8(AText.data(), static_cast<qsizetype>(AText.size()));
    return TSize{CachedTextWidth(AText, S), FMetrics->height()};
}

int TQLQtCanvas::CachedTextWidth(const std::string& AText, const QString& AQText)
{
    constexpr size_t MaxFonts = 8;
    constexpr size_t MaxTexts = 1024;
    const auto SameFont = [this](const TTextWidths& ACache) {
        return ACache.Font.Name == FFont.Name && ACache.Font.Size == FFont.Size && ACache.Font.Style == FFont.Style;
    };
    auto It = std::find_if(FTextWidths.begin(), FTextWidths.end(), SameFont);
    if (It == FTextWidths.end()) {
        if (FTextWidths.size() == MaxFonts)
            FTextWidths.pop_back();
        FTextWidths.insert(FTextWidths.begin(), TTextWidths{FFont, {}});
        It = FTextWidths.begin();
    } else if (It != FTextWidths.begin()) {
        std::rotate(FTextWidths.begin(), It, It + 1);
        It = FTextWidths.begin();
    }
    auto& Widths = It->Widths;
    if (const auto Found = Widths.find(AText); Found != Widths.end())
        return Found->second;
    if (Widths.size() == MaxTexts)
        Widths.clear();
    const int Width = FMetrics->horizontalAdvance(AQText);
    Widths.emplace(AText, Width);
    return Width;
}

void TQLQtCanvas::TextOut(int32_t AX, int32_t AY, const std::string& AText)
{
    RequireGui();
    if (!Ready())
        return;
    SyncFont();
    const QString S = QString::fromUtf8(AText.data(), static_cast<qsizetype>(AText.size()));
    const int W = CachedTextWidth(AText, S);
    const int H = FMetrics->height();

    const int Angle = FTextAngle % 360;
    if (FSoftClipActive) {
        // Text is not cut: a text wholly outside the clip is left out.
        QTransform Turn;
        Turn.translate(AX, AY);
        Turn.rotate(-Angle);
        if (!FSoftRegion.intersects(Turn.mapRect(QRect(0, 0, W, H))))
            return;
    }
    const QTransform Saved = FPainter->worldTransform();
    QPoint Origin(AX, AY);
    if (Angle != 0) {
        // Qt turns clockwise on a y-down screen; the canvas's angle is counter-clockwise.
        FPainter->translate(AX, AY);
        FPainter->rotate(-Angle);
        Origin = QPoint(0, 0);
    }
    if (FBrush.GetStyle() != bsClear)
        FPainter->fillRect(QRect(Origin.x(), Origin.y(), W, H), ToQColor(FBrush.GetColor()));
    FPainter->setFont(FQFont);
    FPainter->setPen(ToQColor(FFont.Color));
    FPenValid = false;
    FPainter->drawText(QPoint(Origin.x(), Origin.y() + FMetrics->ascent()), S);
    if (Angle != 0)
        FPainter->setWorldTransform(Saved);
}

// ---- clip and state ----

void TQLQtCanvas::ClearClipRegion()
{
    FClip = TClipState{};
    if (Ready())
        ApplyClip();
}

void TQLQtCanvas::SetClipRegion(const TQLRegion& ARegion)
{
    QRegion R;
    for (const TRect& Rect : ARegion.GetRects())
        R += QRect(Rect.Left, Rect.Top, Rect.Width(), Rect.Height());
    FClip = TClipState{true, R};
    if (Ready())
        ApplyClip();
}

void TQLQtCanvas::IntersectClipPolygon(const TPoint* APoints, int32_t AHigh)
{
    QPolygon Polygon;
    for (int32_t i = 0; i <= AHigh; ++i)
        Polygon << QPoint(APoints[i].X, APoints[i].Y);
    IntersectClip(QRegion(Polygon, Qt::OddEvenFill));
}

void TQLQtCanvas::IntersectClipEllipse(const TRect& ARect)
{
    IntersectClip(QRegion(QRect(ARect.Left, ARect.Top, ARect.Width(), ARect.Height()), QRegion::Ellipse));
}

void TQLQtCanvas::IntersectClip(const QRegion& ARegion)
{
    FClip = TClipState{true, FClip.Active ? FClip.Region.intersected(ARegion) : ARegion};
    if (Ready())
        ApplyClip();
}

void TQLQtCanvas::SaveState()
{
    FSavedClips.push_back(FClip);
    TQLCanvas::SaveState();
}

void TQLQtCanvas::StateRestored()
{
    if (!FSavedClips.empty()) {
        FClip = std::move(FSavedClips.back());
        FSavedClips.pop_back();
    }
    // Applied even when unchanged: code may have narrowed the painter's clip directly.
    if (Ready())
        ApplyClip();
}

// ---- images ----

void TQLQtCanvas::DrawBitmap(int32_t AX, int32_t AY, const TQLBitmap& ABitmap)
{
    if (ABitmap.IsEmpty() || !Ready())
        return;
    // Drawing a bitmap onto itself needs a copy to read from.
    const QImage Source =
        ABitmap.GetBits() == FWrappedBits ? qt::QLBitmapToImage(ABitmap) : qt::QLWrapBitmapReadOnly(ABitmap);
    FPainter->drawImage(QPoint(AX, AY), Source);
}

void TQLQtCanvas::StretchDrawBitmap(const TRect& ADest, const TQLBitmap& ASource)
{
    if (ADest.IsEmpty() || ASource.IsEmpty() || !Ready())
        return;
    const QImage Source =
        ASource.GetBits() == FWrappedBits ? qt::QLBitmapToImage(ASource) : qt::QLWrapBitmapReadOnly(ASource);
    FPainter->drawImage(QRect(ADest.Left, ADest.Top, ADest.Width(), ADest.Height()), Source);
}

} // namespace qv
