#include "core/connect/LineTest.h"

#include "core/connect/PortSearch.h"
#include "core/link/TransportFactory.h"
#include "core/link/WireFormat.h"
#include "core/shared/LinkState.h"

#include <QEventLoop>
#include <QTimer>

namespace velora {

LineTestResult runLineTest(const QString& device, int axis, int baud, int timeoutMs) {
    LineTestResult result;
    LinkState state;
    state.AxisNumber = axis;
    state.BaudRate = QString::number(baud);
    const std::unique_ptr<Transport> port = createTransport(BackEnd::Rs232, state);
    result.open = port->open(device, baud);
    if (!result.open.ok)
        return result;
    result.lowLatency = port->lowLatency();

    const QString expected = wire::axisCharacter(axis) + QStringLiteral("PR");
    QEventLoop loop;
    QTimer deadline;
    deadline.setSingleShot(true);
    QObject::connect(&deadline, &QTimer::timeout, &loop, &QEventLoop::quit);
    QObject::connect(port.get(), &Transport::replyReceived, &loop, [&](const QString& text) {
        if (!text.startsWith(expected))
            return;
        result.answered = true;
        result.driverVersion = static_cast<int>(HexToLong(text.mid(expected.size())));
        loop.quit();
    });
    if (port->send(wire::buildFrame(expected + QStringLiteral("77")))) {
        deadline.start(timeoutMs);
        loop.exec();
    }
    port->close();
    return result;
}

std::optional<LineSearchHit> searchLine(const QString& device, bool usb, int probeTimeoutMs) {
    for (int r = 0; r < PortSearch::rateCount(usb); ++r) {
        const int baud = PortSearch::rate(r);
        for (int axis = 0; axis < wire::AllAxes; ++axis) {
            const LineTestResult probe = runLineTest(device, axis, baud, probeTimeoutMs);
            if (!probe.open.ok)
                return std::nullopt;
            if (probe.answered)
                return LineSearchHit{axis, baud};
        }
    }
    return std::nullopt;
}

}  // namespace velora
