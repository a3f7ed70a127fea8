#pragma once
// The main of a benchmark that paints through Qt: offscreen unless a platform was chosen (the
// benchmark needs no display), with the application object Qt's painting wants.

#include <QApplication>
#include <benchmark/benchmark.h>

namespace qvbench {

inline int RunQtBenchmarks(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication App(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

} // namespace qvbench
