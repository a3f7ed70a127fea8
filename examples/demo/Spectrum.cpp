#include "Spectrum.h"

#include <fftw3.h>

#include <cmath>
#include <numbers>
#include <vector>

namespace demo {

namespace {
constexpr int CPoints = 4096;
constexpr int CHop = 1024;
} // namespace

struct TSpectrum::TImpl {
    qv::TQVWaterfall& Waterfall;
    std::vector<double> History = std::vector<double>(CPoints, 0.0); // a ring of the last CPoints samples
    int Next = 0;                                                    // the ring's oldest sample
    std::vector<double> Window = std::vector<double>(CPoints);
    double* In = fftw_alloc_real(CPoints);
    fftw_complex* Out = fftw_alloc_complex(CPoints / 2 + 1);
    fftw_plan Plan = fftw_plan_dft_r2c_1d(CPoints, In, Out, FFTW_ESTIMATE);
    std::vector<double> Row = std::vector<double>(CPoints / 2);
    int Fresh = 0;

    explicit TImpl(qv::TQVWaterfall& AWaterfall) : Waterfall(AWaterfall)
    {
        for (int I = 0; I < CPoints; ++I)
            Window[size_t(I)] = 0.5 - 0.5 * std::cos(2 * std::numbers::pi * I / (CPoints - 1));
    }
    ~TImpl()
    {
        fftw_destroy_plan(Plan);
        fftw_free(Out);
        fftw_free(In);
    }
    void Transform()
    {
        // The chirp rides on an offset that places it on the scope; its mean is taken out so
        // that the DC bin does not outshine the sweep.
        double Mean = 0.0;
        for (const double V : History)
            Mean += V;
        Mean /= CPoints;
        for (int I = 0; I < CPoints; ++I)
            In[I] = (History[size_t((Next + I) % CPoints)] - Mean) * Window[size_t(I)];
        fftw_execute(Plan);
        // Magnitude in dB against a full-scale sine through the window (gain 1/2).
        for (int K = 0; K < CPoints / 2; ++K) {
            const double Magnitude = std::hypot(Out[K][0], Out[K][1]) * 4.0 / CPoints;
            Row[size_t(K)] = 20.0 * std::log10(Magnitude + 1e-9);
        }
        Waterfall.GetData()->AddData(Row.data(), CPoints / 2);
    }
};

TSpectrum::TSpectrum(qv::TQVWaterfall& AWaterfall, double ASampleRate) : FImpl(std::make_unique<TImpl>(AWaterfall))
{
    AWaterfall.GetData()->SetSampleRate(ASampleRate);
}

TSpectrum::~TSpectrum() = default;

void TSpectrum::Add(const double* ASamples, int ACount)
{
    for (int I = 0; I < ACount; ++I) {
        FImpl->History[size_t(FImpl->Next)] = ASamples[I];
        FImpl->Next = (FImpl->Next + 1) % CPoints;
        if (++FImpl->Fresh == CHop) {
            FImpl->Fresh = 0;
            FImpl->Transform();
        }
    }
}

TSliceFollower::TSliceFollower(qv::TQVWaterfall& AWaterfall)
    : FPin(std::make_shared<qv::TQWSinkPin>(
          std::initializer_list<qv::TQVDataKind>{qv::dkReal},
          [this](qv::TQWPin*, qv::TQVDataKind, const qv::TQWOperation& AOperation, uint64_t) {
              if (const auto* Block = dynamic_cast<const qv::TQWSuppliedBufferOperation*>(&AOperation))
                  if (const auto Slice = std::dynamic_pointer_cast<const qv::IQVRealBuffer>(Block->GetBuffer()))
                      FLastSliceSize = Slice->GetSize();
              return true;
          }))
{
    qv::TQVWaterfallCursor& Cursor = *AWaterfall.GetCursors()->Add();
    Cursor.SetKind(qv::ckBoth);
    Cursor.GetPosition()->SetX(300.0);
    Cursor.GetPosition()->SetY(0.1); // kHz
    Cursor.GetYOutputPin()->Connect(*FPin);
    qv::TQVWaterfallMarkerGroup& Group = *AWaterfall.GetMarkerGroups()->Add();
    Group.SetMode(qv::mmAbsolute);
    Group.SetShape(qv::msDiamond);
    Group.SetSize(5);
    Group.GetLabels()->SetVisible(true);
    Group.GetLabels()->SetText("200 Hz");
    qv::TQVWaterfallMarker& Marker = *Group.GetMarkers()->Add();
    Marker.GetPosition()->SetX(450.0);
    Marker.GetPosition()->SetY(0.2);
}

void SetUpWaterfall(qv::TQVWaterfall& AWaterfall, double ASampleRate)
{
    AWaterfall.GetTitle()->SetText("Spectrum of the chirp, 4096-point FFT");
    AWaterfall.GetXAxis()->SetSamples(600);
    AWaterfall.GetXAxis()->GetAxisLabel()->SetText("Rows (newest right)");
    // Rows are spectra: the Y axis reads frequencies up to half the sample rate.
    AWaterfall.SetDomains(true, false);
    AWaterfall.GetData()->SetSampleRate(ASampleRate);
    qv::TQVLevelAxis& Levels = *AWaterfall.GetLevels()->GetAxis();
    Levels.SetAutoscale(false);
    Levels.SetMin(-100.0);
    Levels.SetMax(0.0);
    Levels.SetPrecision(0);
    Levels.SetFixedPrecision(true);
    AWaterfall.GetLevels()->GetLevelLabel()->SetText("dB");
    // The chirp sweeps 5 to 200 Hz: the view opens on the lowest 0.5 kHz of the 50 kHz.
    AWaterfall.GetYAxis()->ZoomTo(0.0, 0.5, false);
}

} // namespace demo
