#pragma once

#include "core/link/LinkEngine.h"
#include "core/link/TransportFactory.h"
#include "core/shared/Global.h"
#include "sim/SimulatedLine.h"
#include "support/FakeLinkUi.h"

#include <QStringList>
#include <QtTest>

namespace velora::test {

// Velora's link over a real QSerialPort on a pseudo-terminal, with a simulated drive line at
// the other end. Timer1 is stepped by hand; replies arrive through the event loop.
struct SimLink {
    explicit SimLink(BackEnd backEnd = BackEnd::Rs232, const sim::SimOptions& options = fastLine())
        : line(options) {
        if (!line.open())
            qFatal("simulated line: %s", qPrintable(line.errorString()));
        QObject::connect(&line, &sim::SimulatedLine::commandReceived,
                         [this](const QString& text) { heard.append(text); });
        link.AxisNumber = options.axes.value(0);
        link.UsbMode = backEnd == BackEnd::UsbSerial;
        engine.setTransport(createTransport(backEnd, link));
        engine.setDeviceOverride(line.devicePath());
        ui.timer1Probe = [this] { return engine.timer1Active(); };
    }

    static sim::SimOptions fastLine() {
        sim::SimOptions options;
        options.fast = true;
        return options;
    }

    // Starts the link; with the monitor off nothing is sent unasked.
    void start(bool realTimeMonitor, bool driveAnswers = true) {
        link.RealTimeMonitor = realTimeMonitor;
        engine.start(250);
        QVERIFY2(link.run().PortOpen, qPrintable(engine.lastOpen().reason));
        engine.endOfTransmission();
        // The first poll's reply would end the supervision of a command sent before it.
        if (!driveAnswers)
            return;
        QVERIFY(
            QTest::qWaitFor([this] { return link.run().ReplyCode == QLatin1String("ma"); }, 2000));
    }

    // One Timer1 tick, then time for the drive to answer what it sent.
    void tick(int settleMs = 40) {
        engine.tick();
        QTest::qWait(settleMs);
    }
    void ticks(int n) {
        for (int i = 0; i < n; ++i)
            tick();
    }
    [[nodiscard]] bool waitForReply(int timeoutMs = 2000) {
        return QTest::qWaitFor([this] { return !link.run().AwaitingReply; }, timeoutMs);
    }
    [[nodiscard]] int heardCount(const QString& text) const {
        return static_cast<int>(heard.count(text));
    }

    sim::SimulatedLine line;
    Global global;
    LinkState& link = global.Link;
    FakeLinkUi ui;
    LinkEngine engine{link, ui, LinkEngine::Ticks::Manual};
    QStringList heard;
};

}  // namespace velora::test
