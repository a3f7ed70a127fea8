#pragma once
// The demo's waterfall: a live spectrum of one signal. Blocks of samples go in on the
// producer's thread; every 1024 new samples a 4096-point FFT of the last 4096 (Hann window)
// becomes one row of magnitudes in dB.

#include <qv/QVWaterfall.h>

#include <memory>

namespace demo {

class TSpectrum {
public:
    TSpectrum(qv::TQVWaterfall& AWaterfall, double ASampleRate);
    ~TSpectrum();
    TSpectrum(const TSpectrum&) = delete;
    TSpectrum& operator=(const TSpectrum&) = delete;
    // Takes ACount samples; called on the producer's thread.
    void Add(const double* ASamples, int ACount);

private:
    struct TImpl;
    std::unique_ptr<TImpl> FImpl;
};

// Sets up a waterfall for the spectrum: a frequency axis, levels in dB, 600 rows.
void SetUpWaterfall(qv::TQVWaterfall& AWaterfall, double ASampleRate);

} // namespace demo
