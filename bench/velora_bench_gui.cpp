// The wave monitor's drawing cost: one full redraw of its three traces with the newest and the
// previous record, at the window's default size. Run by hand: build/bench/velora-bench-gui
// (offscreen unless a platform is chosen).

#include "core/link/LinkEngine.h"
#include "core/shared/Global.h"
#include "core/wave/WaveCapture.h"
#include "gui/wave/HMonWindow.h"
#include "gui/wave/WaveTrace.h"
#include "support/FakeLinkUi.h"

#include <QApplication>
#include <QTest>

#include <cmath>
#include <ctime>

using namespace velora;

namespace {

double threadCpuSeconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + now.tv_nsec / 1e9;
}

// Busy records: every sample differs and the logic toggles often, the worst case to draw.
void fill(WaveStore& store) {
    for (int slot = 1; slot <= 2; ++slot) {
        for (int i = 0; i < WaveStore::SampleCount; ++i) {
            const auto n = static_cast<std::size_t>(i);
            const double phase = i / 12.0 + slot;
            store.WaveSamples[static_cast<std::size_t>(slot)][n] = {
                static_cast<qint16>(140 * std::sin(phase)),
                static_cast<qint16>(500 * std::cos(phase))};
            store.WaveLogic[static_cast<std::size_t>(slot)][n] =
                static_cast<quint16>((i / 7 + slot) % 2);
        }
    }
}

}  // namespace

int main(int argc, char* argv[]) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    Global global;
    test::FakeLinkUi ui;
    LinkEngine engine(global.Link, ui, LinkEngine::Ticks::Manual);
    WaveCapture capture(engine, global);
    HMonWindow window(global, engine, capture);
    window.LanguageSelect(Language::English);
    // The inside of the window's default frame in the main window.
    window.resize(750, 530);
    window.show();
    QTest::qWait(100);
    fill(global.Wave);
    const QList<WaveTrace*> pictures = window.findChildren<WaveTrace*>();
    constexpr int kRedraws = 300;
    for (int i = 0; i < 20; ++i) {
        for (WaveTrace* picture : pictures)
            picture->repaint();  // warm up
    }
    const double start = threadCpuSeconds();
    for (int i = 0; i < kRedraws; ++i) {
        for (WaveTrace* picture : pictures)
            picture->repaint();
    }
    const double perRedraw = (threadCpuSeconds() - start) / kRedraws;
    const QSize size = pictures.value(0) ? pictures.value(0)->size() : QSize();
    printf(
        "| full redraw of the three traces, now and previous (velocity picture %dx%d) | < 2 ms "
        "CPU | %.3f ms |\n",
        size.width(), size.height(), perRedraw * 1e3);
    return 0;
}
