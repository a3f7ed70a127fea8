// An audio-style recorder view: a stereo recording at 48 kHz arrives from a recording thread
// (synthesised here: syllable-like bursts over a noise floor) and the scope keeps up to ten
// minutes of it. The view shows the whole take; drag a box or turn the wheel to zoom into a
// passage, press Backspace or the right button to zoom back out, and Space to freeze the
// picture while the recording goes on. C drops two cursors on the passage shown, with a link
// that measures the time between them; drag either cursor to measure another stretch.
//
//   qv_recorder [--snapshot FILE]   with --snapshot: records for a second, zooms into its
//                                   middle, writes the picture to FILE and quits
#include <qv/QVScope.h>
#include <qv/qt/QVScopeWidget.h>

#include <QApplication>
#include <QTimer>

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
constexpr uint32_t TenMinutes = 10 * 60 * 48'000;

// The recording thread: 10 ms blocks in real time. It stops (and is joined) before the
// scope goes.
class TRecorder {
public:
    explicit TRecorder(qv::TQVScope& AScope) : FScope(AScope), FThread([this] { Run(); }) {}
    ~TRecorder()
    {
        FStop = true;
        FThread.join();
    }

private:
    void Run()
    {
        std::mt19937 Gen(1);
        std::normal_distribution<double> Noise(0.0, 0.01);
        std::uniform_real_distribution<double> Pitch(110.0, 220.0);
        const int Block = 480;
        std::vector<double> Left(Block), Right(Block);
        double F0 = 150.0, Phase = 0.0;
        int64_t N = 0;
        auto Next = std::chrono::steady_clock::now();
        while (!FStop) {
            for (int I = 0; I < Block; ++I, ++N) {
                const double T = double(N) / Rate;
                // A "syllable" every 0.25 s: a voiced burst with a new pitch, rising and dying.
                const double InSyllable = std::fmod(T, 0.25);
                if (InSyllable < 1.0 / Rate)
                    F0 = Pitch(Gen);
                const double Envelope = std::sin(std::numbers::pi * std::min(InSyllable / 0.18, 1.0));
                Phase += 2 * std::numbers::pi * F0 / Rate;
                const double Voice = 0.6 * std::sin(Phase) + 0.25 * std::sin(2 * Phase) + 0.1 * std::sin(3 * Phase);
                Left[size_t(I)] = Envelope * Voice + Noise(Gen);
                Right[size_t(I)] = 0.7 * Envelope * Voice + Noise(Gen);
            }
            FScope.GetChannels()->GetItem(0)->GetData()->AddYData(Left.data(), Block);
            FScope.GetChannels()->GetItem(1)->GetData()->AddYData(Right.data(), Block);
            Next += std::chrono::milliseconds(10);
            std::this_thread::sleep_until(Next);
        }
    }

    qv::TQVScope& FScope;
    std::atomic<bool> FStop{false};
    std::thread FThread;
};

// Two cursors at a third and two thirds of the passage shown, marking where they cross the
// left channel, and a link measuring the time between them. Pressing C again moves them.
void DropCursors(qv::TQVScope& AScope)
{
    auto& Cursors = *AScope.GetCursors();
    while (Cursors.GetCount() < 2) {
        qv::TQVScopeCursor* C = Cursors.Add();
        C->GetChannels()->Add()->SetChannel(AScope.GetChannels()->GetItem(0));
    }
    const double Lo = AScope.GetXMinZoom(), Hi = AScope.GetXMaxZoom();
    Cursors.GetItem(0)->GetPosition()->SetX(Lo + (Hi - Lo) / 3.0);
    Cursors.GetItem(1)->GetPosition()->SetX(Lo + 2.0 * (Hi - Lo) / 3.0);
    if (AScope.GetCursorLinks()->GetCount() == 0) {
        qv::TQVScopeCursorLink* Link = AScope.GetCursorLinks()->Add();
        Link->SetBeginCursor(Cursors.GetItem(0));
        Link->SetEndCursor(Cursors.GetItem(1));
        Link->GetMeasurementLine()->GetMeasurementLabel()->SetText("dt = %V");
        Link->GetSelection()->SetVisible(true);
        Link->GetSelection()->GetBrush()->SetColor(0x28FFFFFF);
    }
}

} // namespace

int main(int argc, char** argv)
{
    const char* Snapshot = argc == 3 && std::strcmp(argv[1], "--snapshot") == 0 ? argv[2] : nullptr;
    if (Snapshot && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication App(argc, argv);

    qv::TQVScopeWidget Widget;
    qv::TQVScope& Scope = Widget.GetScope();
    Scope.SetSizeLimit(TenMinutes);
    Scope.GetTitle()->SetText("Recording, 2 x 48 kHz");
    Scope.GetXAxis()->SetTicksMode(qv::atmTime);
    Scope.GetYAxis()->GetAutoScaling()->SetEnabled(false); // full scale is -1 .. 1
    auto& Channels = *Scope.GetChannels();
    Channels.Add();
    const char* Names[] = {"Left", "Right"};
    for (int32_t C = 0; C < 2; ++C) {
        Channels.GetItem(C)->SetName(Names[C]);
        Channels.GetItem(C)->GetData()->SetSampleRate(Rate);
    }
    // Backspace and the right button zoom back out; Space freezes and unfreezes the picture.
    Scope.SetOnKeyDown([&Scope](qv::TQLPersistent*, uint16_t& AKey, qv::TShiftState) {
        if (AKey == qv::vkBack)
            Scope.UndoZoom();
        else if (AKey == ' ')
            Scope.SetHold(!Scope.GetHold());
        else if (AKey == 'C' || AKey == 'c')
            DropCursors(Scope);
    });
    Scope.SetOnMouseUp([&Scope](qv::TQLPersistent*, qv::TMouseButton AButton, qv::TShiftState, float, float) {
        if (AButton == qv::mbRight)
            Scope.UndoZoom();
    });
    Widget.resize(900, 420);
    Widget.show();
    TRecorder Recorder(Scope); // declared after the widget: it stops first

    if (Snapshot) {
        QTimer::singleShot(1000, &App, [&] {
            Scope.SetHold(true); // the picture holds still while the recording goes on
            // What a box dragged over the middle fifth of the plot does.
            const qv::TRect View = Scope.GetDataView()->GetDrawRect();
            const float X0 = float(View.Left + View.Width() * 2 / 5), X1 = float(View.Left + View.Width() * 3 / 5);
            Scope.MouseDown(qv::mbLeft, qv::ssLeft, X0, float(View.Top + 2));
            Scope.MouseMove(qv::ssLeft, X1, float(View.Bottom - 2));
            Scope.MouseUp(qv::mbLeft, 0, X1, float(View.Bottom - 2));
            DropCursors(Scope);
            Scope.SaveToBitmap(Snapshot);
            App.quit();
        });
    }
    return App.exec();
}
