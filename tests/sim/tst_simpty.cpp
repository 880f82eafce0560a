#include "sim/SimulatedLine.h"

#include <QSerialPort>
#include <QSignalSpy>
#include <QtTest>

using namespace velora::sim;

namespace {

// Opens the line's device the way the PC does: <baud>, E, 8, 1.
bool openLike(QSerialPort& port, const QString& path, int baud) {
    port.setPortName(path);
    port.setBaudRate(baud);
    port.setDataBits(QSerialPort::Data8);
    port.setParity(QSerialPort::EvenParity);
    port.setStopBits(QSerialPort::OneStop);
    port.setFlowControl(QSerialPort::NoFlowControl);
    return port.open(QIODevice::ReadWrite);
}

}  // namespace

class TstSimPty : public QObject {
    Q_OBJECT

private slots:
    void answersAtItsRateOnly();
};

void TstSimPty::answersAtItsRateOnly() {
    SimulatedLine line(SimOptions{});
    QVERIFY2(line.open(), qPrintable(line.errorString()));
    QVERIFY(line.devicePath().startsWith(QLatin1String("/dev/")));

    QSerialPort port;
    QVERIFY2(openLike(port, line.devicePath(), 9600), qPrintable(port.errorString()));
    QByteArray received;
    connect(&port, &QSerialPort::readyRead, this, [&] { received += port.readAll(); });

    port.write(
        "\x02"
        "0PR77"
        "\x04");
    QTRY_VERIFY_WITH_TIMEOUT(received.endsWith('\x03'), 3000);
    QCOMPARE(received, QByteArray("\x02"
                                  "0PR0000006E"
                                  "\x03"));

    // At another rate the frame reaches the line but the drive cannot read it.
    received.clear();
    QVERIFY(port.setBaudRate(19200));
    QSignalSpy heard(&line, &SimulatedLine::commandReceived);
    QSignalSpy answered(&line, &SimulatedLine::replySent);
    port.write(
        "\x02"
        "0PR77"
        "\x04");
    QVERIFY(heard.wait(3000));
    QTest::qWait(150);
    QCOMPARE(answered.count(), 0);
    QVERIFY(received.isEmpty());
}

QTEST_GUILESS_MAIN(TstSimPty)
#include "tst_simpty.moc"
