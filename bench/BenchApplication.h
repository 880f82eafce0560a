#pragma once

#include <QApplication>

namespace velora::bench {

// The application, timing when the handling of received bytes starts.
class BenchApplication : public QApplication {
public:
    using QApplication::QApplication;
    bool notify(QObject* receiver, QEvent* event) override;
    // Monotonic nanoseconds at the start of the latest socket activation.
    [[nodiscard]] static qint64 eventStartNs();
    [[nodiscard]] static qint64 nowNs();
};

// Runs the main thread's event loop for ms, as the program does: no sleeping between events.
void runFor(int ms);

}  // namespace velora::bench
