#include "sim/CommandLine.h"
#include "sim/DriveBus.h"
#include "sim/FrameReader.h"

#include <QCommandLineParser>
#include <QtTest>

using namespace velora::sim;

namespace {

const LineSettings At9600{9600};

// The reply texts for each command in turn, "-" where nothing was sent.
QStringList exchange(DriveBus& bus, const QStringList& commands,
                     const LineSettings& line = At9600) {
    QStringList replies;
    for (const QString& c : commands) {
        const QList<OutgoingReply> out = bus.receive(c, line);
        QStringList texts;
        for (const OutgoingReply& r : out)
            texts << QString::fromLatin1(r.text);
        replies << (texts.isEmpty() ? QStringLiteral("-") : texts.join(QLatin1Char('|')));
    }
    return replies;
}

std::optional<SimOptions> parse(const QString& arguments, QString* error) {
    QCommandLineParser parser;
    CommandLine::addOptions(parser);
    QStringList args{QStringLiteral("velora-sim")};
    args += arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (!parser.parse(args)) {
        *error = parser.errorText();
        return std::nullopt;
    }
    return CommandLine::options(parser, error);
}

}  // namespace

class TstSimLine : public QObject {
    Q_OBJECT

private slots:
    void frameReaderCutsCommands_data() {
        QTest::addColumn<QByteArrayList>("chunks");
        QTest::addColumn<QStringList>("texts");
        QTest::newRow("noise before STX") << QByteArrayList{"xx\x04\x02" "0PR77\x04"}
                                      << QStringList{QStringLiteral("0PR77")};
        QTest::newRow("STX restarts") << QByteArrayList{"\x02" "0PR\x02" "0ma\x04"}
                                  << QStringList{QStringLiteral("0ma")};
        QTest::newRow("split over chunks") << QByteArrayList{"\x02" "0P", "R7", "7\x04"}
                                       << QStringList{QStringLiteral("0PR77")};
        QTest::newRow("two in one chunk, noise between")
        << QByteArrayList{"\x02" "0SO\x04zz\x02" "3ma\x04"}
        << QStringList{QStringLiteral("0SO"), QStringLiteral("3ma")};
        QTest::newRow("over-long frame dropped")
            << QByteArrayList{"\x02" + QByteArray(300, 'A') + "\x04",
                              "\x02"
                              "0ma\x04"}
            << QStringList{QStringLiteral("0ma")};
    }

    void frameReaderCutsCommands() {
        QFETCH(QByteArrayList, chunks);
        QFETCH(QStringList, texts);
        FrameReader reader;
        QStringList got;
        for (const QByteArray& chunk : chunks)
            got += reader.feed(chunk);
        QCOMPARE(got, texts);
    }

    void broadcastIsCarriedOutSilently() {
        DriveBus bus({0, 3}, 110);
        QCOMPARE(exchange(bus, {QStringLiteral("FSO"), QStringLiteral("fPJ")}),
                 (QStringList{QStringLiteral("-"), QStringLiteral("-")}));
        for (int i = 0; i < bus.driveCount(); ++i) {
            QVERIFY(bus.driveAt(i).model().isServoOn());
            QVERIFY(bus.driveAt(i).model().motion().busy());
        }
    }

    void newRateAfterRestart() {
        DriveBus bus({0}, 110);
        // COM. format 1 asks for 19200, which a restart puts into effect.
        QCOMPARE(exchange(bus, {QStringLiteral("0PW2B;1"), QStringLiteral("0PR77")}).last(),
                 QStringLiteral("0PR0000006E"));
        QCOMPARE(exchange(bus, {QStringLiteral("0RT")}), QStringList{QStringLiteral("-")});
        QCOMPARE(exchange(bus, {QStringLiteral("0PR77")}), QStringList{QStringLiteral("-")});
        const QList<OutgoingReply> out = bus.receive(QStringLiteral("0PR77"), LineSettings{19200});
        QCOMPARE(out.size(), 1);
        QCOMPARE(out.first().baud, 19200);
    }

    void replyWaitAndDelay() {
        DriveBus bus({0}, 110);
        QCOMPARE(bus.receive(QStringLiteral("0ma"), At9600).first().delayMs, 2);  // parameter 44
        QCOMPARE(exchange(bus, {QStringLiteral("0PW2C;64")}).first(), QStringLiteral("0PW"));
        QCOMPARE(bus.receive(QStringLiteral("0ma"), At9600).first().delayMs, 100);
        bus.faults().delayMs = 50;
        QCOMPARE(bus.receive(QStringLiteral("0ma"), At9600).first().delayMs, 150);
        bus.setFast(true);
        QCOMPARE(bus.receive(QStringLiteral("0ma"), At9600).first().delayMs, 50);
    }

    void faults_data() {
        QTest::addColumn<QString>("options");
        QTest::addColumn<QStringList>("commands");
        QTest::addColumn<QStringList>("replies");  // each checked as a prefix
        const QString pr = QStringLiteral("0PR0");
        const QString value = QStringLiteral("0PR00000000");
        QTest::newRow("every third dropped") << "--drop-every 3" << QStringList(6, pr)
                                             << QStringList{value, value, "-", value, value, "-"};
        QTest::newRow("next PR dropped once")
            << "--drop-code PR:1" << QStringList{pr, pr, QStringLiteral("0SO")}
            << QStringList{"-", value, "0SO"};
        QTest::newRow("SO never answered")
            << "--drop-code SO" << QStringList{QStringLiteral("0SO"), QStringLiteral("0SO"), pr}
            << QStringList{"-", "-", value};
        QTest::newRow("ma corrupted once")
            << "--corrupt ma:1" << QStringList{QStringLiteral("0ma"), QStringLiteral("0ma")}
            << QStringList{"0maG000000", "0ma0000000"};
        QTest::newRow("acknowledgement corrupted")
            << "--corrupt SO" << QStringList{QStringLiteral("0SO")} << QStringList{"0SOG"};
        QTest::newRow("SO refused, not carried out")
            << "--error SO:2" << QStringList{QStringLiteral("0SO"), QStringLiteral("0PJ")}
            << QStringList{"0ER2", "0ER3"};
        QTest::newRow("class beyond the table")
            << "--error PR:7" << QStringList{pr} << QStringList{"0ER7"};
    }

    void faults() {
        QFETCH(QString, options);
        QFETCH(QStringList, commands);
        QFETCH(QStringList, replies);
        QString error;
        const std::optional<SimOptions> o = parse(options, &error);
        QVERIFY2(o, qPrintable(error));
        DriveBus bus(o->axes, o->version);
        bus.faults() = o->faults;
        const QStringList got = exchange(bus, commands);
        QCOMPARE(got.size(), replies.size());
        for (int i = 0; i < got.size(); ++i) {
            QVERIFY2(got[i].startsWith(replies[i]),
                     qPrintable(got[i] + QLatin1String(" / ") + replies[i]));
        }
    }

    void cablePulledHearsNothing() {
        DriveBus bus({0}, 110);
        QCOMPARE(exchange(bus, {QStringLiteral("0wm230080")}).first(), QStringLiteral("0wm"));
        bus.faults().cablePulled = true;
        QCOMPARE(exchange(bus, {QStringLiteral("0SO")}), QStringList{QStringLiteral("-")});
        QVERIFY(!bus.driveAt(0).model().isServoOn());
        // The armed capture triggers and completes, but its replies do not reach the PC.
        QVERIFY(bus.advance(2000).isEmpty());
        bus.faults().cablePulled = false;
        QCOMPARE(exchange(bus, {QStringLiteral("0SO")}), QStringList{QStringLiteral("0SO")});
    }

    void timedFaults() {
        DriveBus bus({0, 1}, 110);
        bus.faults().cablePullAtMs = 300;
        bus.faults().alarm = AlarmState::OverHeat;
        bus.faults().alarmAtMs = 200;
        (void)bus.advance(150);
        QVERIFY(!bus.driveAt(1).model().alarms().active());
        (void)bus.advance(60);
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(bus.driveAt(i).model().alarms().code(), int{AlarmState::OverHeat});
        }
        QCOMPARE(exchange(bus, {QStringLiteral("1AD")}).first(),
                 QStringLiteral("1AD200600000000000000"));
        (void)bus.advance(100);
        QCOMPARE(exchange(bus, {QStringLiteral("1AD")}), QStringList{QStringLiteral("-")});
    }

    void commandLine_data() {
        QTest::addColumn<QString>("arguments");
        QTest::newRow("axis 15") << "--axes 15";
        QTest::newRow("axis not a number") << "--axes 0,x";
        QTest::newRow("alarm 9") << "--alarm 9";
        QTest::newRow("error without class") << "--error SO";
        QTest::newRow("one-letter code") << "--drop-code P:2";
        QTest::newRow("zero count") << "--corrupt ma:0";
        QTest::newRow("valid") << "--axes 3,0,3 --version 106 --fast --delay 30 "
                                  "--cable-pull-after 5000 --alarm 2@100";
    }

    // The fault rows above parse the drop, corrupt and error options; here the rest and refusals.
    void commandLine() {
        QFETCH(QString, arguments);
        QString error;
        const std::optional<SimOptions> o = parse(arguments, &error);
        if (!arguments.contains(QLatin1String("--fast"))) {
            QVERIFY(!o && !error.isEmpty());
            return;
        }
        QVERIFY2(o, qPrintable(error));
        QCOMPARE(o->axes, (QList<int>{3, 0}));
        QCOMPARE(o->version, 106);
        QVERIFY(o->fast);
        QCOMPARE(o->faults.delayMs, 30);
        QCOMPARE(o->faults.cablePullAtMs.value_or(-1), 5000);
        QCOMPARE(o->faults.alarm, 2);
        QCOMPARE(o->faults.alarmAtMs, 100);
    }
};

QTEST_GUILESS_MAIN(TstSimLine)
#include "tst_simline.moc"
