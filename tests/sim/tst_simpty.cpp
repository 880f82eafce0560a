#include "sim/SimulatedLine.h"

#include <QFileInfo>
#include <QLockFile>
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
    void answersAtItsRateOnly() {
        SimulatedLine line(SimOptions{});
        QVERIFY2(line.open(), qPrintable(line.errorString()));
        // The pseudo-terminal has a name of its own: a lock on its /dev/pts name, which a killed
        // run of another user may have left, is not in the way.
        const QString pts = QFileInfo(line.devicePath()).canonicalFilePath();
        QVERIFY(pts.startsWith(QLatin1String("/dev/pts/")));
        QLockFile foreign(QStringLiteral("/var/lock/LCK..") + pts.mid(5).replace(u'/', u'_'));
        QVERIFY(foreign.tryLock(0));
        QSerialPort byPtsName;
        QVERIFY(!openLike(byPtsName, pts, 9600));

        QSerialPort port;
        QVERIFY2(openLike(port, line.devicePath(), 9600), qPrintable(port.errorString()));
        QByteArray received;
        connect(&port, &QSerialPort::readyRead, this, [&] { received += port.readAll(); });

        port.write("\0020PR77\004");
        QTRY_VERIFY_WITH_TIMEOUT(received.endsWith('\x03'), 3000);
        QCOMPARE(received, QByteArray("\0020PR0000006E\003"));

        // At another rate the frame reaches the line but the drive cannot read it.
        received.clear();
        QVERIFY(port.setBaudRate(19200));
        QSignalSpy heard(&line, &SimulatedLine::commandReceived);
        QSignalSpy answered(&line, &SimulatedLine::replySent);
        port.write("\0020PR77\004");
        QVERIFY(heard.wait(3000));
        QTest::qWait(150);
        QCOMPARE(answered.count(), 0);
        QVERIFY(received.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TstSimPty)
#include "tst_simpty.moc"
