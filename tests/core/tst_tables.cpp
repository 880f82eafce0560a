#include "core/comtable/ComEdit.h"
#include "core/comtable/ComFile.h"
#include "core/comtable/ComTransfer.h"
#include "core/pointtable/PointEdit.h"
#include "core/pointtable/PointFile.h"
#include "core/pointtable/PointTransfer.h"
#include "core/shared/ComTables.h"
#include "core/shared/PointTables.h"
#include "core/shared/TextCatalogue.h"
#include "sim/DriveMemory.h"
#include "sim/Payloads.h"
#include "support/LinkRig.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace velora;
using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(velora::FieldKey)

namespace {

QString en(Text id) {
    return TextCatalogue::text(Language::English, id);
}

QByteArray lines(const QByteArray& first, const QList<QByteArray>& rest) {
    QByteArray text = first + "\r\n";
    for (const QByteArray& line : rest)
        text += line + "\r\n";
    return text;
}

// The point table and command table of one drive over a fake port, monitor off so that every
// command leaves at once.
struct Rig : test::LinkRig {
    Rig() : LinkRig(BackEnd::Rs232, false) { QVERIFY(dir.isValid()); }
    [[nodiscard]] QString path(const QString& name) const { return dir.filePath(name); }
    void store(const QString& name, const QByteArray& content) const {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    [[nodiscard]] QByteArray load(const QString& name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir dir;
    PointTables points;
    ComTables com;
    PointTransfer pointTransfer{engine, points};
    ComTransfer comTransfer{engine, com};
    PointFile pointFile{engine, points};
    ComFile comFile{engine, com};
};

}  // namespace

// The rules of both table editors, their transfers and their files, without a window.
class TestTables : public QObject {
    Q_OBJECT
private slots:
    void leavingABoxChecksAndMarks_data() {
        QTest::addColumn<int>("cell");  // 0..6: a field of point 5; 100 + k: command cell k
        QTest::addColumn<qint32>("before");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<qint32>("stored");
        QTest::addColumn<QString>("shown");  // empty: the typed text stays
        QTest::addColumn<bool>("marked");
        QTest::newRow("PosTor above") << 0 << 0 << u"8"_s << 7 << u"7"_s << true;
        QTest::newRow("PosTor at the limit again") << 0 << 7 << u"8"_s << 7 << u"7"_s << false;
        QTest::newRow("letters restore") << 3 << 4 << u"ab"_s << 4 << u"4"_s << false;
        QTest::newRow("wait below") << 5 << 9 << u"-5"_s << 0 << u"0"_s << true;
        QTest::newRow("position lowest")
            << 2 << 0 << u"-99999999"_s << -99999999 << QString() << true;
        QTest::newRow("position below")
            << 2 << 0 << u"-100000000"_s << -99999999 << u"-99999999"_s << true;
        QTest::newRow("beyond 32 bits") << 2 << 0 << u"1E12"_s << 99999999 << u"99999999"_s << true;
        QTest::newRow("velocity half to even")
            << 100 << 0 << u"4500.5"_s << 4500 << QString() << true;
        QTest::newRow("ATC zero") << 110 << 5 << u"0"_s << 1 << u"1"_s << true;
        QTest::newRow("torque negative") << 127 << 0 << u"-3"_s << 0 << u"0"_s << false;
    }
    void leavingABoxChecksAndMarks() {
        QFETCH(int, cell);
        QFETCH(qint32, before);
        QFETCH(QString, typed);
        QFETCH(qint32, stored);
        QFETCH(QString, shown);
        QFETCH(bool, marked);
        PointTables points;
        ComTables com;
        FieldCheck check;
        bool isMarked = false;
        qint32 value = 0;
        if (cell < 100) {
            PointEdit edit(points);
            const auto field = static_cast<PointField>(cell);
            edit.setValue(5, field, before);
            check = edit.leave(5, field, typed);
            value = edit.value(5, field);
            isMarked = points.PointChanged[5];
            QCOMPARE(points.changedCount(), marked ? 1 : 0);
        } else {
            com.setValue(cell - 100, before);
            check = ComEdit(com).leave(cell - 100, typed);
            value = com.value(cell - 100);
            isMarked = com.ComChanged[static_cast<std::size_t>(cell - 100)];
        }
        QCOMPARE(value, stored);
        QCOMPARE(check.shown.value_or(QString()), shown);
        QCOMPARE(check.changed, marked);
        QCOMPARE(isMarked, marked);
    }

    void keysMoveBetweenBoxes_data() {
        QTest::addColumn<bool>("pointTable");
        QTest::addColumn<int>("from");
        QTest::addColumn<FieldKey>("key");
        QTest::addColumn<int>("to");
        QTest::newRow("point 63 down wraps") << true << 63 << FieldKey::Down << 0;
        QTest::newRow("point 8 up") << true << 8 << FieldKey::Up << 7;
        QTest::newRow("ATC No.9 to torque No.1") << false << 19 << FieldKey::Enter << 21;
        QTest::newRow("torque No.1 up to ATC No.9") << false << 21 << FieldKey::Up << 19;
        QTest::newRow("torque No.7 wraps") << false << 27 << FieldKey::Down << 0;
        QTest::newRow("other keys stay") << false << 5 << FieldKey::Other << 5;
    }
    void keysMoveBetweenBoxes() {
        QFETCH(bool, pointTable);
        QFETCH(int, from);
        QFETCH(FieldKey, key);
        QFETCH(int, to);
        if (pointTable) {
            const PointEdit::Move move = PointEdit::keyDown(from, key);
            QCOMPARE(move.point, to);
            QCOMPARE(move.tab, to / 8);
        } else {
            QCOMPARE(ComEdit::keyDown(from, key), to);
        }
    }

    void pointWriteChainKeepsUnsentMarksOnError() {
        Rig rig;
        QVERIFY(!rig.pointTransfer.WriteChangedPoints());  // nothing marked: nothing at all
        QVERIFY(rig.sent().isEmpty() && !rig.ui.busyDialogShown);

        // An error reply ends the chain; the unsent point stays marked, a late reply is ignored.
        rig.points.PointChanged[5] = rig.points.PointChanged[6] = true;
        QVERIFY(rig.pointTransfer.WriteChangedPoints());
        rig.port->reply(u"1ER1"_s);
        QVERIFY(!rig.state.run().PointTransferActive);
        rig.port->reply(u"1TW"_s);
        QVERIFY(rig.points.PointChanged[5] && rig.points.PointChanged[6]);
    }

    void pointReadEachContinuesOnlyDuringATransfer() {
        Rig rig;
        rig.engine.SendCommand(u"1TR3E"_s);
        rig.port->reply(u"1TR0001 00000005 1 1 0001 "_s);
        QCOMPARE(rig.points.PointTable[0].Position, 0);  // no transfer: no data
        rig.engine.beginTransfer(Transfer::Points);
        rig.points.PointTransferIndex = 62;
        rig.engine.SendCommand(u"1TR3E"_s);
        rig.port->reply(u"1TR0001 00000005 1 1 0001 "_s);
        QCOMPARE(rig.points.PointTable[62].Position, 5);
        QCOMPARE(rig.lastSent(), u"1TR3F"_s);
        rig.port->reply(u"1TR0000 00000006 0 0 0000 "_s);
        QCOMPARE(rig.points.PointTable[63].Position, 6);
        QCOMPARE(rig.ui.messages.value(0).text, en(Text::MsgPointTableReadFinished));
        QVERIFY(rig.points.PointTableValid && !rig.state.run().PointTransferActive);
    }

    void commandTableTransfer() {
        Rig rig;
        // The window test reads every cell from the simulated drive; here the widest ATC and
        // the torque No.0 the drive sends but the program keeps as its own.
        sim::DriveTables drive;
        drive.atc[9] = 70009;
        drive.torque[0] = 1000;
        rig.com.CmdTorque[0] = 42;
        rig.com.ComChanged.fill(true);
        rig.comTransfer.readAll();
        rig.port->reply(u"1ca"_s + sim::payload::allCommands(drive));
        QCOMPARE(rig.com.value(19), 70009);
        QCOMPARE(rig.com.CmdTorque[0], 42);  // the drive's own torque No.0 is not read
        QVERIFY(rig.com.ComLoaded && rig.com.changedCount() == 0);

        rig.com.setValue(3, 1500);
        rig.com.setValue(10, 100);
        rig.com.setValue(27, 15000);
        rig.com.ComChanged[3] = rig.com.ComChanged[10] = rig.com.ComChanged[27] = true;
        rig.state.NonVolatileWrite[2] = true;
        QVERIFY(rig.comTransfer.writeChanged());
        rig.state.NonVolatileWrite[2] = false;  // read afresh for every command
        rig.port->reply(u"1VW"_s);
        rig.port->reply(u"1CT"_s);
        rig.port->reply(u"1QT"_s);
        QCOMPARE(rig.sent().mid(2),
                 (QStringList{u"1VW3;5DC"_s, u"1CT0;64"_s, u"1QT7;3A98"_s, u"1ma"_s}));
        QVERIFY(rig.com.changedCount() == 0 && !rig.state.run().ComTableTransferActive);

        // The one-by-one read goes from velocity No.9 to ATC No.0 and from ATC No.9 to torque
        // No.1.
        rig.engine.beginTransfer(Transfer::Commands);
        rig.com.ComIndex = 9;
        rig.engine.SendCommand(u"1VR9"_s);
        rig.port->reply(u"1VR0064"_s);
        QCOMPARE(rig.lastSent(), u"1CR0"_s);
        rig.com.ComIndex = 19;
        rig.port->reply(u"1CR000F4240"_s);
        QCOMPARE(rig.com.CmdAtc[9], 1000000);
        QCOMPARE(rig.lastSent(), u"1QR1"_s);
        QCOMPARE(rig.com.ComIndex, 21);
    }

    void commandFileClampsAsIfTyped() {
        Rig rig;
        rig.com.setValue(0, -5);
        rig.com.setValue(19, 999999);
        QVERIFY(rig.comFile.write(rig.path(u"a.sct"_s)));
        QVERIFY(rig.load(u"a.sct"_s).startsWith("Orvix-Servo v/a/t commands file\r\n-5\r\n"));
        rig.com = ComTables{};
        rig.com.CmdTorque[0] = 9;
        QCOMPARE(rig.comFile.read(rig.path(u"a.sct"_s)), ComFile::ReadResult::Loaded);
        QCOMPARE(rig.com.value(0), 0);
        QCOMPARE(rig.com.value(19), 999999);
        QCOMPARE(rig.com.CmdTorque[0], 9);  // torque No.0 is not in the file
        QVERIFY(rig.com.ComLoaded && rig.com.changedCount() == 27);
    }

    void brokenFilesKeepWhatCameBefore_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<Text>("message");
        QTest::addColumn<int>("marked");  // points or cells loaded before the failure
        const QByteArray point = "Orvix-Servo point table data file";
        const QByteArray com = "Orvix-Servo v/a/t commands file";
        QTest::newRow("trailing blank")
            << u"a.tbl"_s << lines(point + ' ', {"0"}) << Text::MsgIdentificationError1734 << 0;
        QTest::newRow("binary") << u"a.tbl"_s << QByteArray("\x00\xff\x10\x02zz\x7f", 7)
                                << Text::MsgIdentificationError1734 << 0;
        QTest::newRow("truncated after two points")
            << u"a.tbl"_s << lines(point, QList<QByteArray>(17, "1")) << Text::MsgFileAccessError
            << 2;
        QTest::newRow("PosTor 300")
            << u"a.tbl"_s << lines(point, {"0", "0", "0", "0", "0", "0", "0", "300"})
            << Text::MsgFileAccessError << 1;
        QTest::newRow("velocity 40000")
            << u"a.sct"_s << lines(com, {"1", "2", "40000"}) << Text::MsgFileAccessError << 2;
        QTest::newRow("wrong commands id")
            << u"a.sct"_s << lines(point, {"1"}) << Text::MsgIdentificationError1736 << 0;
    }
    void brokenFilesKeepWhatCameBefore() {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        QFETCH(Text, message);
        QFETCH(int, marked);
        Rig rig;
        rig.store(name, content);
        rig.points.PointTable[5].Position = 77;
        if (name.endsWith(u"tbl"_s)) {
            QCOMPARE(rig.pointFile.ReadPointFile(rig.path(name)), PointFile::ReadResult::Failed);
            QCOMPARE(rig.points.changedCount(), marked);
            QVERIFY(!rig.points.PointTableValid);
            QCOMPARE(rig.points.PointTable[5].Position, 77);
        } else {
            QCOMPARE(rig.comFile.read(rig.path(name)), ComFile::ReadResult::Failed);
            QCOMPARE(rig.com.changedCount(), marked);
            QVERIFY(!rig.com.ComLoaded);
        }
        QCOMPARE(rig.ui.messages.size(), 1);
        QCOMPARE(rig.ui.messages[0].text, en(message));
        QCOMPARE(rig.ui.messages[0].caption, TextCatalogue::text(Language::English, message, 1));
    }

    void clampedFileValueStaysMarked() {
        Rig rig;
        QList<QByteArray> values(448, "0");
        values[3] = "12";  // Velocity of point 0
        rig.store(u"a.tbl"_s, lines("Orvix-Servo point table data file", values));
        QSignalSpy fields(&rig.pointFile, &PointFile::fieldLoaded);
        QCOMPARE(rig.pointFile.ReadPointFile(rig.path(u"a.tbl"_s)), PointFile::ReadResult::Loaded);
        QCOMPARE(rig.points.PointTable[0].Velocity, 9);
        QCOMPARE(fields.at(3).at(2).toString(), u"9"_s);
        QVERIFY(fields.at(3).at(3).toBool() && !fields.at(2).at(3).toBool());
        QVERIFY(rig.points.PointChanged[0]);
    }

    // The safe replace itself is the parameter file test's; here only that a failure is told.
    void failedWriteIsTold() {
        Rig rig;
        QVERIFY(!rig.pointFile.WritePointFile(rig.path(u"none/a.tbl"_s)));
        QCOMPARE(rig.ui.messages.value(0).text, en(Text::MsgFileAccessError));
    }
};

QTEST_MAIN(TestTables)
#include "tst_tables.moc"
