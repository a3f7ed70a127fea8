#pragma once
// The demo's waterfall: a live spectrum of one signal. Blocks of samples go in on the
// producer's thread; every 1024 new samples a 4096-point FFT of the last 4096 (Hann window)
// becomes one row of magnitudes in dB.

#include <qv/QVWaterfall.h>

#include <atomic>
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

// A cursor on the waterfall at 100 Hz whose slice (the level at that frequency in every row)
// goes to this follower after each paint, and a marker at 200 Hz, the chirp's top.
class TSliceFollower {
public:
    explicit TSliceFollower(qv::TQVWaterfall& AWaterfall);
    // The number of values in the last slice received; -1 before the first.
    int GetLastSliceSize() const { return FLastSliceSize.load(); }

private:
    std::shared_ptr<qv::TQWSinkPin> FPin;
    std::atomic<int> FLastSliceSize{-1};
};

} // namespace demo
