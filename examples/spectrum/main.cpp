// A spectrum analyser: a signal thread computes a 4096-point FFT (FFTW) of its input twenty
// times a second and hands the scope the magnitude spectrum in dB against frequency. The
// input is synthesised: a 1 kHz tone, a weaker 5 kHz tone, a tone sweeping from 200 Hz to
// 20 kHz and a noise floor.
//
//   qv_spectrum [--snapshot FILE]   with --snapshot: runs for a second, writes the picture
//                                   to FILE and quits
#include <qv/QVScope.h>
#include <qv/qt/QVScopeWidget.h>

#include <QApplication>
#include <QTimer>

#include <fftw3.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <cstring>
#include <numbers>
#include <random>
#include <thread>
#include <vector>

namespace {

constexpr double Rate = 48'000.0;
constexpr int Points = 4096;
constexpr int Bins = Points / 2 + 1;

// The analyser thread. The FFTW plan is made here, on the constructing thread, since
// planning is not thread-safe; running a plan is.
class TAnalyser {
public:
    explicit TAnalyser(qv::TQVScope& AScope)
        : FScope(AScope), FIn(fftw_alloc_real(Points)), FOut(fftw_alloc_complex(Bins)),
          FPlan(fftw_plan_dft_r2c_1d(Points, FIn, FOut, FFTW_ESTIMATE)), FThread([this] { Run(); })
    {}
    ~TAnalyser()
    {
        FStop = true;
        FThread.join();
        fftw_destroy_plan(FPlan);
        fftw_free(FOut);
        fftw_free(FIn);
    }

private:
    void Run()
    {
        std::mt19937 Gen(3);
        std::normal_distribution<double> Noise(0.0, 1e-4);
        std::vector<double> Frequency(Bins), Level(Bins);
        for (int K = 0; K < Bins; ++K)
            Frequency[size_t(K)] = K * Rate / Points;
        const double Pi = std::numbers::pi;
        int64_t N = 0;
        double SweepPhase = 0.0;
        auto Next = std::chrono::steady_clock::now();
        while (!FStop) {
            for (int I = 0; I < Points; ++I, ++N) {
                const double T = double(N) / Rate;
                const double Sweep = 200.0 * std::pow(100.0, std::fmod(T / 5.0, 1.0)); // 200 Hz .. 20 kHz in 5 s
                SweepPhase += 2 * Pi * Sweep / Rate;
                const double X = std::sin(2 * Pi * 1000.0 * T) + 0.03 * std::sin(2 * Pi * 5000.0 * T) +
                                 0.1 * std::sin(SweepPhase) + Noise(Gen);
                const double Hann = 0.5 - 0.5 * std::cos(2 * Pi * I / (Points - 1));
                FIn[I] = X * Hann;
            }
            fftw_execute(FPlan);
            // dB relative to a full-scale sine: the Hann window's coherent gain is 1/2.
            for (int K = 0; K < Bins; ++K) {
                const double Magnitude = std::hypot(FOut[K][0], FOut[K][1]) / (Points / 4.0);
                Level[size_t(K)] = 20.0 * std::log10(std::max(Magnitude, 1e-9));
            }
            // Each frame replaces the spectrum; the scope shows it at its next refresh.
            FScope.GetChannels()->GetItem(0)->GetData()->SetXYData(Frequency.data(), Level.data(), Bins);
            Next += std::chrono::milliseconds(50);
            std::this_thread::sleep_until(Next);
        }
    }

    qv::TQVScope& FScope;
    double* FIn;
    fftw_complex* FOut;
    fftw_plan FPlan;
    std::atomic<bool> FStop{false};
    std::thread FThread;
};

} // namespace

int main(int argc, char** argv)
{
    const char* Snapshot = argc == 3 && std::strcmp(argv[1], "--snapshot") == 0 ? argv[2] : nullptr;
    if (Snapshot && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication App(argc, argv);

    qv::TQVScopeWidget Widget;
    qv::TQVScope& Scope = Widget.GetScope();
    Scope.GetTitle()->SetText("Spectrum, 4096-point FFT at 48 kHz");
    Scope.GetXAxis()->GetAxisLabel()->SetText("Frequency (Hz)");
    Scope.GetYAxis()->GetAxisLabel()->SetText("Level (dB)");
    // A fixed level scale from -120 dB to 0 dB.
    Scope.GetYAxis()->GetAutoScaling()->SetEnabled(false);
    Scope.GetYAxis()->GetMin()->SetValue(-120.0);
    Scope.GetYAxis()->GetMax()->SetValue(0.0);
    Widget.resize(900, 420);
    Widget.show();
    TAnalyser Analyser(Scope); // declared after the widget: it stops first

    if (Snapshot) {
        QTimer::singleShot(1000, &App, [&] {
            Scope.SaveToBitmap(Snapshot);
            App.quit();
        });
    }
    return App.exec();
}
