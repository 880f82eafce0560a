#include "app/TextCatalogue.h"
#include "link/LinkEngine.h"
#include "link/ReplyDispatcher.h"
#include "shared/LinkState.h"
#include "support/FakeLinkUi.h"
#include "support/PtyPair.h"

#include <QtTest>

#include <termios.h>

using namespace velora;

namespace {

// The real back-end on the slave side of a pty, stepped by hand.
struct PtyLink {
    explicit PtyLink(BackEnd backEnd) {
        state.AxisNumber = 1;
        state.UsbMode = backEnd == BackEnd::UsbSerial;
        engine.setTransport(createTransport(backEnd, state));
        engine.setDeviceOverride(pty.slavePath());
        engine.dispatcher().registerHandler(QStringLiteral("PR"), [this](const QString& text) {
            replies.append(text);
            return ReplyStatus::Handled;
        });
    }

    test::PtyPair pty;
    LinkState state;
    test::FakeLinkUi ui;
    LinkEngine engine{state, ui, LinkEngine::Ticks::Manual};
    QStringList replies;
};

}  // namespace

// Both serial back-ends over a real QSerialPort on a pseudo-terminal.
class TestSerialPty : public QObject {
    Q_OBJECT
private slots:
    void backEnds_data() {
        QTest::addColumn<int>("backEnd");
        QTest::newRow("RS-232C") << int(BackEnd::Rs232);
        QTest::newRow("USB-RS232C") << int(BackEnd::UsbSerial);
    }

    void backEnds() {
        QFETCH(int, backEnd);
        PtyLink link(static_cast<BackEnd>(backEnd));
        QVERIFY(link.pty.isValid());
        link.engine.start(250);
        QVERIFY2(link.state.PortOpen, qPrintable(link.engine.lastOpen().reason));

        // The master side sees the line settings (some kernels keep no parity on a pty).
        termios line{};
        QCOMPARE(tcgetattr(link.pty.masterFd(), &line), 0);
        QCOMPARE(cfgetospeed(&line), speed_t(B9600));
        QCOMPARE(line.c_cflag & CSIZE, tcflag_t(CS8));
        QVERIFY(!(line.c_cflag & CSTOPB));

        // The first poll arrives framed; RTS refused by the pty does not fail the send.
        QCOMPARE(link.pty.read(5), QByteArray("\0021ma\x04"));
        link.engine.SendCommand(QStringLiteral("1PR77"));
        QVERIFY(link.engine.timer2Armed());
        QCOMPARE(link.pty.read(7), QByteArray("\0021PR77\x04"));
    }

    void allAxesReadsNothing() {
        PtyLink link(BackEnd::Rs232);
        link.state.AxisNumber = 15;
        link.engine.start(250);
        link.pty.write(QByteArray("\0021PR64\x03\0021PR"));
        QTest::qWait(100);
        QVERIFY(link.replies.isEmpty());
        QVERIFY(link.state.ReceiveBuffer.isEmpty());
    }

    void openFailureNamesDeviceAndReason() {
        PtyLink link(BackEnd::Rs232);
        link.state.PortNumber = 4;
        link.engine.setDeviceOverride(QStringLiteral("/dev/velora-no-such-port"));
        link.engine.start(250);
        QVERIFY(!link.state.PortOpen);
        QCOMPARE(link.state.PortNumber, 1);
        QCOMPARE(link.ui.messages.size(), 1);
        const QString text = link.ui.messages[0].text;
        QVERIFY(text.startsWith(TextCatalogue::text(0, 1702) + QLatin1Char('\n')));
        QVERIFY(text.contains(QStringLiteral("/dev/velora-no-such-port: ")));
        QVERIFY(!link.engine.lastOpen().reason.isEmpty());
        QVERIFY(text.endsWith(link.engine.lastOpen().reason));
        QCOMPARE(link.ui.messages[0].caption, TextCatalogue::text(0, 1703));
        QVERIFY(link.engine.timer1Active());
    }
};

QTEST_GUILESS_MAIN(TestSerialPty)
#include "tst_serialpty.moc"
