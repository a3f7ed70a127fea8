#pragma once
// A frame of the peer the Qt benchmarks measure against (QCustomPlot, when it is installed):
// the plot painted through its own painter into an image of the image's size.

#include <QImage>
#include <benchmark/benchmark.h>
#include <qcustomplot.h>

namespace qvbench {

inline void PaintPeerFrame(QCustomPlot& APlot, QImage& AImage)
{
    QCPPainter Painter(&AImage);
    APlot.toPainter(&Painter, AImage.width(), AImage.height());
    benchmark::DoNotOptimize(AImage.constBits());
}

} // namespace qvbench
