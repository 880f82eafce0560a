#include "core/params/ParamCatalogue.h"
#include "core/params/ParamTransfer.h"
#include "core/shared/ParamTables.h"
#include "core/shared/TextCatalogue.h"
#include "sim/DriveMemory.h"
#include "sim/Payloads.h"
#include "support/LinkRig.h"

#include <QSignalSpy>
#include <QtTest>

using namespace velora;
using Chain = ParamTransfer::Chain;

namespace {

QString field(qint32 value) {
    return QString::number(static_cast<quint32>(value), 16).toUpper().rightJustified(8, '0');
}

QString readAllReply(const std::array<qint32, ParamTables::Count>& values) {
    QString text = QStringLiteral("1pa");
    for (const qint32 v : values)
        text += field(v) + QLatin1Char(',');
    return text;
}

// Values over the whole signed range, some out of the host's ranges (read values are not
// clamped), 16-bit boundaries where the reader switches to unsigned.
std::array<qint32, ParamTables::Count> sampleValues() {
    std::array<qint32, ParamTables::Count> values{};
    for (int n = 0; n < ParamTables::Count; ++n)
        values[static_cast<std::size_t>(n)] = (n - 60) * 1234567;
    values[2] = 0;
    values[17] = 65535;
    values[18] = 32768;
    return values;
}

struct Rig : test::LinkRig {
    explicit Rig(bool realTimeMonitor = false) : LinkRig(BackEnd::Rs232, realTimeMonitor) {
        InitParamTables(tables);
    }
    void mark(const QList<int>& numbers) {
        for (const int n : numbers)
            tables.ParamChanged[static_cast<std::size_t>(n)] = true;
    }
    // Answers every write of the chain as the drive would.
    void acknowledgeWrites(const QString& code) {
        for (int guard = 0; guard < ParamTables::Count && lastSent().mid(1, 2) == code; ++guard)
            port->reply(QStringLiteral("1") + code);
    }

    ParamTables tables;
    ParamTransfer transfer{engine, tables};
};

}  // namespace

class TestParamTransfer : public QObject {
    Q_OBJECT
private slots:
    void readAllStoresEveryValueAndClearsMarks_data() {
        QTest::addColumn<QString>("reply");
        QTest::addColumn<QList<qint32>>("values");
        const auto values = sampleValues();
        QTest::newRow("signed range")
            << readAllReply(values) << QList<qint32>(values.begin(), values.end());
        // The simulator builds its reply on its own: its layout must decode to its values.
        const sim::DriveMemory memory(1, 110);
        const sim::DriveTables& drive = memory.ram();
        QTest::newRow("simulated drive")
            << QStringLiteral("1pa") + sim::payload::allParameters(drive)
            << QList<qint32>(drive.params.begin(), drive.params.end());
    }
    void readAllStoresEveryValueAndClearsMarks() {
        QFETCH(QString, reply);
        QFETCH(QList<qint32>, values);
        Rig rig;
        rig.mark({0, 45, 119});
        rig.tables.FileReadPending = true;
        QStringList order;
        connect(&rig.transfer, &ParamTransfer::fileMergeDue, this,
                [&] { order << QStringLiteral("merge %1").arg(rig.tables.ParamValue[119]); });
        connect(&rig.transfer, &ParamTransfer::transferFinished, this,
                [&](Chain chain) { order << QMetaEnum::fromType<Chain>().valueToKey(int(chain)); });
        rig.transfer.readAll();
        rig.port->reply(reply);
        QCOMPARE(QList<qint32>(rig.tables.ParamValue.begin(), rig.tables.ParamValue.end() - 1),
                 values);
        QVERIFY(!rig.tables.nextChanged(0));
        QVERIFY(rig.tables.ParamsLoaded && !rig.ui.busyDialogShown && rig.ui.messages.isEmpty());
        QCOMPARE(rig.sent(), (QStringList{"1pa", "1ma"}));
        // The file merge sees the drive's values and runs before the read ends.
        QCOMPARE(order, (QStringList{QStringLiteral("merge %1").arg(values[119]), "ReadAll"}));
    }

    void malformedReadAll_data() {
        QTest::addColumn<QString>("reply");
        const QString whole = readAllReply(sampleValues());
        QTest::newRow("one character lost") << whole.left(whole.size() - 1);
        QTest::newRow("no data") << QStringLiteral("1pa");
    }
    void malformedReadAll() {
        QFETCH(QString, reply);
        Rig rig;
        rig.mark({5});
        rig.tables.ParamValue[5] = 42;
        rig.transfer.readAll();
        rig.port->reply(reply);
        QCOMPARE(rig.ui.messages.size(), 1);  // the Retry/Cancel question
        // Nothing of the broken reply is taken.
        QCOMPARE(rig.tables.ParamValue[5], 42);
        QVERIFY(rig.tables.ParamChanged[5] && !rig.tables.ParamsLoaded);
    }

    void writesExactlyTheMarkedInAscendingOrder() {
        Rig rig;
        rig.tables.ParamValue[6] = -5;
        rig.tables.ParamValue[11] = 200;
        rig.mark({60, 11, 6});
        QVERIFY(rig.transfer.writeChanged());
        rig.acknowledgeWrites(QStringLiteral("PW"));
        QCOMPARE(rig.sent(), (QStringList{"1PW6;FFFFFFFB", "1PWB;C8", "1PW3C;0", "1ma"}));
        QVERIFY(!rig.tables.nextChanged(0) && !rig.state.run().ParamTransferActive);
        // None of them needs a restart: the write ends without a message.
        QVERIFY(rig.ui.messages.isEmpty() && !rig.ui.busyDialogShown && rig.ui.controlsEnabled);
        // Nothing is left marked: another write sends nothing.
        QVERIFY(!rig.transfer.writeChanged());
        QVERIFY(rig.sent().size() == 4 && rig.ui.messages.isEmpty() && !rig.ui.busyDialogShown);
    }

    void writeCodeIsChosenPerCommand() {
        Rig rig;
        rig.mark({1, 2});
        QVERIFY(rig.transfer.writeChanged());
        rig.state.NonVolatileWrite[0] = false;
        rig.port->reply(QStringLiteral("1PW"));
        QCOMPARE(rig.sent(), (QStringList{"1PW1;0", "1PT2;0"}));
    }

    void restartList_data() {
        QTest::addColumn<QList<int>>("numbers");
        QTest::addColumn<bool>("prm45Undo");
        QTest::addColumn<Language>("language");
        QTest::addColumn<QString>("list");  // empty: no message
        QTest::newRow("00 and 20")
            << QList<int>{0, 20} << false << Language::English << "Parameter No. 0, 20";
        QTest::newRow("45 undoes coupling")
            << QList<int>{1, 45} << true << Language::English << "Parameter No. 1";
        QTest::newRow("Japanese") << QList<int>{49} << false << Language::Japanese
                                  << "パラメータ　No. 49";
        QTest::newRow("only 11") << QList<int>{11} << false << Language::English << "";
        QTest::newRow("only undone 45") << QList<int>{45} << true << Language::English << "";
    }
    void restartList() {
        QFETCH(QList<int>, numbers);
        QFETCH(bool, prm45Undo);
        QFETCH(Language, language);
        QFETCH(QString, list);
        Rig rig;
        rig.state.LanguageId = language;
        rig.tables.Prm45Undo = prm45Undo;
        rig.mark(numbers);
        QVERIFY(rig.transfer.writeChanged());
        rig.acknowledgeWrites(QStringLiteral("PW"));
        if (list.isEmpty()) {
            QVERIFY(rig.ui.messages.isEmpty());
            return;
        }
        const auto t = [&](Text id) { return TextCatalogue::text(language, id); };
        QCOMPARE(rig.ui.messages.size(), 1);
        const auto& message = rig.ui.messages[0];
        QCOMPARE(message.kind, QStringLiteral("notice"));
        QCOMPARE(message.caption, t(Text::MsgStatus));
        QCOMPARE(message.text, t(Text::MsgParameterWriteFinished) + "\r\n\r\n" + list + "\r\n" +
                                   t(Text::MsgChangesTheseParametersApplyed) + "\r\n" +
                                   t(Text::MsgAfterRebootingOrvixServo));
        QVERIFY(!message.timer1ActiveWhileOpen);
    }

    void errorReplyMidChainKeepsTheRestMarked() {
        Rig rig;
        rig.mark({2, 5, 9});
        QVERIFY(rig.transfer.writeChanged());
        rig.port->reply(QStringLiteral("1PW"));
        rig.port->reply(QStringLiteral("1ER1"));
        QVERIFY(!rig.tables.ParamChanged[2] && rig.tables.ParamChanged[5] &&
                rig.tables.ParamChanged[9]);
        // A late write reply no longer drives the chain.
        rig.port->reply(QStringLiteral("1PW"));
        QCOMPARE(rig.sent(), (QStringList{"1PW2;0", "1PW5;0", "1ma"}));

        QVERIFY(rig.transfer.writeChanged());
        rig.acknowledgeWrites(QStringLiteral("PW"));
        QCOMPARE(rig.sent().mid(3), (QStringList{"1PW5;0", "1PW9;0", "1ma"}));
        QVERIFY(!rig.tables.nextChanged(0));
        QVERIFY(rig.ui.messages.last().text.contains(QStringLiteral("Parameter No. 5\r\n")));
    }

    void identification_data() {
        QTest::addColumn<QString>("lastCommand");
        QTest::addColumn<QString>("reply");
        QTest::addColumn<int>("version");  // -1: malformed, version stays 0
        QTest::newRow("short value") << "1PR77"
                                     << "1PR6A" << 106;
        QTest::newRow("read of 5 is no identification") << "1PR5"
                                                        << "1PR0000006E" << 0;
        QTest::newRow("no value") << "1PR77"
                                  << "1PR" << -1;
        QTest::newRow("wider than 16 bits") << "1PR77"
                                            << "1PR0000FFFF" << -1;
    }
    void identification() {
        QFETCH(QString, lastCommand);
        QFETCH(QString, reply);
        QFETCH(int, version);
        Rig rig;
        QSignalSpy identified(&rig.transfer, &ParamTransfer::identified);
        rig.engine.SendCommand(lastCommand);
        rig.port->reply(reply);
        QCOMPARE(rig.state.DriverVersion, std::max(version, 0));
        QCOMPARE(identified.size(), version > 0 ? 1 : 0);
        QCOMPARE(rig.ui.messages.size(), version < 0 ? 1 : 0);
        QCOMPARE(rig.tables.ParamValue[0], 0);
    }

    void identificationDuringReadAllIsNoChainStep() {
        Rig rig(true);
        rig.transfer.readAll();  // waits for the monitor's next slot
        QCOMPARE(rig.state.run().QueuedCommand, QStringLiteral("1pa"));
        rig.engine.SendCommand(QStringLiteral("1PR77"));
        rig.port->reply(QStringLiteral("1PR0000006E"));
        QCOMPARE(rig.state.DriverVersion, 110);
        QCOMPARE(rig.tables.ParamValue[0], 0);
        QCOMPARE(rig.sent(), QStringList{"1PR77"});
    }

    void readEachStopsAtTheLastShownNumber_data() {
        QTest::addColumn<bool>("systemShown");
        QTest::newRow("servo parameters") << false;
        QTest::newRow("with system parameters") << true;
    }
    void readEachStopsAtTheLastShownNumber() {
        QFETCH(bool, systemShown);
        Rig rig;
        rig.mark({3});
        rig.transfer.setSystemWindowShown(systemShown);
        rig.transfer.readEach();
        const int last = systemShown ? 119 : 59;
        for (int n = 0; n <= last; ++n) {
            QCOMPARE(rig.lastSent(), QStringLiteral("1PR") + QString::number(n, 16).toUpper());
            rig.port->reply(QStringLiteral("1PR") + field(-n));
        }
        QCOMPARE(rig.lastSent(), QStringLiteral("1ma"));
        QCOMPARE(rig.sent().size(), last + 2);
        QCOMPARE(rig.tables.ParamValue[static_cast<std::size_t>(last)], -last);
        QVERIFY(rig.tables.ParamChanged[3] && rig.tables.ParamsLoaded);
        QVERIFY(!rig.ui.busyDialogShown && !rig.state.run().ParamTransferActive);
    }
};

QTEST_GUILESS_MAIN(TestParamTransfer)
#include "tst_paramtransfer.moc"
