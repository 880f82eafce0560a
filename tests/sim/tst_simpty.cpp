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

// Complete reply frames (STX text ETX) from what the port received, in order.
QStringList replyTexts(const QByteArray& received) {
    QStringList texts;
    for (const QByteArray& piece : received.split('\x03')) {
        const int start = piece.lastIndexOf('\x02');
        if (start >= 0)
            texts << QString::fromLatin1(piece.mid(start + 1));
    }
    return texts;
}

}  // namespace

class TstSimPty : public QObject {
    Q_OBJECT

private slots:
    void answersAtItsRateOnly();
    void waveCaptureArrivesOverTheLine();
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

void TstSimPty::waveCaptureArrivesOverTheLine() {
    SimOptions options;
    options.axes = {0, 2};
    options.fast = true;
    SimulatedLine line(options);
    QVERIFY2(line.open(), qPrintable(line.errorString()));
    QSerialPort port;
    QVERIFY2(openLike(port, line.devicePath(), 9600), qPrintable(port.errorString()));
    QByteArray received;
    connect(&port, &QSerialPort::readyRead, this, [&] { received += port.readAll(); });

    port.write(
        "\x02"
        "2wm030080"
        "\x04");  // 50 ms/div, manual trigger
    QTRY_VERIFY_WITH_TIMEOUT(replyTexts(received).size() == 3, 5000);
    const QStringList texts = replyTexts(received);
    QCOMPARE(texts.at(0), QStringLiteral("2wm"));
    QCOMPARE(texts.at(1), QStringLiteral("2wr"));
    QVERIFY(texts.at(2).startsWith(QLatin1String("2wd")));
    QCOMPARE(texts.at(2).size(), 3 + 250 * 12);
}

QTEST_GUILESS_MAIN(TstSimPty)
#include "tst_simpty.moc"
