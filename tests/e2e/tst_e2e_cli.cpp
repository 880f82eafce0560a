#include "core/wave/WaveFile.h"
#include "sim/SimulatedLine.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>
#include <memory>

using namespace velora;

namespace {

// The real velora-cli against simulated drives on a pseudo-terminal, with a settings
// directory of its own that must stay empty: the command line never writes settings.
struct CliRig {
    explicit CliRig(const QList<int>& axes) {
        sim::SimOptions options;
        options.axes = axes;
        options.fast = true;  // the scan's timing is the program's, not the drive's pacing
        line = std::make_unique<sim::SimulatedLine>(options);
        if (!line->open())
            qFatal("simulated line: %s", qPrintable(line->errorString()));
    }

    sim::Drive& drive(int axis) { return *line->bus().drive(axis); }
    // Moves a drive to another rate, as COM. format and a restart do.
    void setBaudIndex(int axis, int index) {
        QVERIFY(drive(axis).model().memory().writeParam(43, index, true));
        QCOMPARE(drive(axis).model().reset(), sim::DriveModel::Refusal::None);
    }
    [[nodiscard]] QString path(const QString& name) const { return dir.filePath(name); }

    // Runs velora-cli on the line while the simulator answers; its exit code.
    int run(const QStringList& args) {
        QProcess cli;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), config.path());
        env.insert(QStringLiteral("HOME"), config.path());
        cli.setProcessEnvironment(env);
        cli.start(QStringLiteral(VELORA_CLI),
                  QStringList{QStringLiteral("--port"), line->devicePath()} + args);
        if (!cli.waitForStarted(5000))
            qFatal("velora-cli did not start");
        // The line answers from this thread's event loop, so the wait must let it run.
        if (!QTest::qWaitFor([&] { return cli.state() == QProcess::NotRunning; }, 60000))
            qFatal("velora-cli did not end");
        out = QString::fromUtf8(cli.readAllStandardOutput())
                  .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        err = QString::fromUtf8(cli.readAllStandardError());
        return cli.exitCode();
    }

    [[nodiscard]] std::array<qint32, 120> params(int axis) {
        std::array<qint32, 120> values{};
        for (int n = 0; n < 120; ++n)
            values[static_cast<std::size_t>(n)] = drive(axis).model().memory().param(n);
        return values;
    }

    std::unique_ptr<sim::SimulatedLine> line;
    QTemporaryDir dir;
    QTemporaryDir config;
    QStringList out;
    QString err;
};

// Replaces value lines of a file's text: of parameters in a .prm text, or with firstLine 0 the
// lines by number (the identification is line 0).
QByteArray edited(QByteArray text, const QMap<int, qint32>& values, int firstLine = 1) {
    QList<QByteArray> lines = text.split('\n');
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        lines[it.key() + firstLine] = QByteArray::number(it.value()) + '\r';
    return lines.join('\n');
}

// A command line written as one string.
QStringList words(const char* line) {
    return QString::fromLatin1(line).split(QLatin1Char(' '));
}

QByteArray readAll(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void writeAll(const QString& path, const QByteArray& content) {
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(content);
}

// Every value of the drive's tables in one list, to compare a whole memory at once.
QList<qint32> flat(const sim::DriveTables& t) {
    QList<qint32> values(t.params.cbegin(), t.params.cend());
    for (const sim::PointEntry& p : t.points)
        values << p.modeWord << p.position << p.velocity << p.accConst << p.waitTime;
    values << QList<qint32>(t.velocity.cbegin(), t.velocity.cend())
           << QList<qint32>(t.atc.cbegin(), t.atc.cend())
           << QList<qint32>(t.torque.cbegin(), t.torque.cend());
    return values;
}

using TableEdit = std::function<void(sim::DriveTables&)>;
using LineValues = QMap<int, qint32>;
// Prepares a line (faults, files) before the run, and looks at it afterwards.
using RigStep = std::function<void(CliRig&)>;

}  // namespace

Q_DECLARE_METATYPE(TableEdit)
Q_DECLARE_METATYPE(RigStep)

class TestE2eCli : public QObject {
    Q_OBJECT
private slots:
    void scanFindsExactlyTheDrives() {
        CliRig rig({2, 14});
        rig.setBaudIndex(14, 4);  // 115200
        QCOMPARE(rig.run({QStringLiteral("scan")}), 0);
        QCOMPARE(rig.out, QStringList({QStringLiteral("axis 2, 9600 baud, version 1.10"),
                                       QStringLiteral("axis 14, 115200 baud, version 1.10")}));
        QVERIFY(QDir(rig.config.path()).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot));
    }

    void paramsBackupEditDiffRestore() {
        CliRig rig({1});
        const QStringList axis{QStringLiteral("--axis"), QStringLiteral("1")};
        const QString backup = rig.path(QStringLiteral("a.prm"));
        const QString trace = rig.path(QStringLiteral("trace.txt"));
        QCOMPARE(
            rig.run(axis + QStringList{QStringLiteral("--trace"), trace, QStringLiteral("params"),
                                       QStringLiteral("read"), QStringLiteral("-o"), backup}),
            0);
        const QByteArray saved = readAll(backup);
        QCOMPARE(saved.count("\r\n"), 121);
        QVERIFY(saved.startsWith("Orvix-Servo parameter file\r\n"));
        const QByteArray frames = readAll(trace);
        QVERIFY(frames.contains(" > 1PR77\n"));
        QVERIFY(QRegularExpression(QStringLiteral(" < 1pa[0-9A-F]{8},.* \\(\\+\\d+ us\\)\\n"))
                    .match(QString::fromLatin1(frames))
                    .hasMatch());

        const std::array<qint32, 120> before = rig.params(1);
        const QString changed = rig.path(QStringLiteral("b.prm"));
        writeAll(changed, edited(saved, {{11, before[11] + 5}, {20, before[20] + 1}}));
        const QStringList diff =
            axis + QStringList{QStringLiteral("params"), QStringLiteral("diff"), changed};
        QCOMPARE(rig.run(diff), 1);
        QCOMPARE(rig.out,
                 QStringList(
                     {QStringLiteral("11\tPos. P Gain\t%1\t%2").arg(before[11]).arg(before[11] + 5),
                      QStringLiteral("20\tInput Pulse Type\t%1\t%2")
                          .arg(before[20])
                          .arg(before[20] + 1)}));

        const QStringList write =
            axis + QStringList{QStringLiteral("params"), QStringLiteral("write"), changed};
        QCOMPARE(rig.run(write + QStringList{QStringLiteral("--dry-run")}), 0);
        QCOMPARE(rig.out, QStringList({QStringLiteral("1PWB;%1").arg(before[11] + 5, 0, 16),
                                       QStringLiteral("1PW14;%1").arg(before[20] + 1, 0, 16)}));
        QVERIFY(rig.params(1) == before);

        QCOMPARE(rig.run(write), 0);
        std::array<qint32, 120> expected = before;
        expected[11] += 5;
        expected[20] += 1;
        QVERIFY(rig.params(1) == expected);
        // Parameter 20 takes effect after a restart; the window's message is a printed line.
        QVERIFY(rig.out.last().startsWith(QStringLiteral("Parameter write finished.")));
        QCOMPARE(rig.run(diff), 0);
        QVERIFY(rig.out.isEmpty());
    }

    // Backup, edit the file, restore: exactly the edited entries change in both memories.
    void tablesBackupEditRestore_data() {
        QTest::addColumn<QString>("family");
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("lineCount");
        QTest::addColumn<LineValues>("lines");
        QTest::addColumn<TableEdit>("expected");
        // Seven lines a point: mode, abs/inc, position, velocity No., ATC No., wait, next.
        QTest::newRow("points .tbl")
            << "points"
            << "a.tbl" << 449 << LineValues{{1 + 7 * 3 + 2, -12345}, {1 + 7 * 60 + 5, 777}}
            << TableEdit([](sim::DriveTables& t) {
                   t.points[3].position = -12345;
                   t.points[60].waitTime = 777;
               });
        // Ten velocities, ten ATCs, then torques No.1-7.
        QTest::newRow("command table .sct")
            << "comtable"
            << "a.sct" << 28 << LineValues{{3, 750}, {18, 444}, {25, 9000}}
            << TableEdit([](sim::DriveTables& t) {
                   t.velocity[2] = 750;
                   t.atc[7] = 444;
                   t.torque[5] = 9000;
               });
    }
    void tablesBackupEditRestore() {
        QFETCH(QString, family);
        QFETCH(QString, file);
        QFETCH(int, lineCount);
        QFETCH(LineValues, lines);
        QFETCH(TableEdit, expected);
        CliRig rig({1});
        const QStringList axis{QStringLiteral("--axis"), QStringLiteral("1")};
        const QString backup = rig.path(file);
        QCOMPARE(rig.run(axis +
                         QStringList{family, QStringLiteral("read"), QStringLiteral("-o"), backup}),
                 0);
        const QByteArray saved = readAll(backup);
        QCOMPARE(saved.count("\r\n"), lineCount);
        writeAll(backup, edited(saved, lines, 0));

        const sim::DriveMemory& memory = rig.drive(1).model().memory();
        sim::DriveTables after = memory.nonVolatile();
        expected(after);
        QCOMPARE(rig.run(axis + QStringList{family, QStringLiteral("write"), backup}), 0);
        QCOMPARE(flat(memory.nonVolatile()), flat(after));
        QCOMPARE(flat(memory.ram()), flat(after));
    }

    void waveCaptureWritesTheWindowsFile() {
        CliRig rig({0});
        const QString path = rig.path(QStringLiteral("w.csv"));
        QCOMPARE(
            rig.run({QStringLiteral("wave"), QStringLiteral("capture"), QStringLiteral("--trigger"),
                     QStringLiteral("manual"), QStringLiteral("--position"), QStringLiteral("30"),
                     QStringLiteral("--timescale"), QStringLiteral("25"), QStringLiteral("-o"),
                     path}),
            0);
        QCOMPARE(readAll(path).count("\r\n"), WaveFile::LineCount);
        const WaveFile::ReadResult read = WaveFile::read(path);
        QCOMPARE(read.status, WaveFile::Status::Ok);
        QCOMPARE(read.settings.Trig, 3);
        QCOMPARE(read.settings.TimeScale, 0);
        QCOMPARE(read.settings.TrigPosPercent, 30);
    }

    void doctorChecksTheLine() {
        CliRig rig({0});
        QCOMPARE(rig.run({QStringLiteral("doctor")}), 0);
        QVERIFY2(!rig.out.isEmpty(), qPrintable(rig.err));
        QVERIFY(rig.out.last().startsWith(QStringLiteral("OK: A drive answered on axis 0")));
    }

    void sendAndMonitor() {
        CliRig rig({0});
        QCOMPARE(rig.run({QStringLiteral("send"), QStringLiteral("0PR77")}), 0);
        QCOMPARE(rig.out, QStringList{QStringLiteral("0PR0000006E")});
        QCOMPARE(
            rig.run({QStringLiteral("monitor"), QStringLiteral("--count"), QStringLiteral("3")}),
            0);
        QCOMPARE(rig.out.size(), 4);
        QVERIFY(rig.out[0].startsWith(QStringLiteral("Now Position,Position Com.,")));
        for (const QString& line : rig.out)
            QCOMPARE(line.count(QLatin1Char(',')), 12 + 16 + 1);
    }

    // Replies that must not be taken as the answer: each run ends on its own, with the drive
    // holding what was written and no file made of a reply that could not be read.
    void repliesThatDoNotAnswer_data() {
        QTest::addColumn<QList<int>>("axes");
        QTest::addColumn<RigStep>("fault");
        QTest::addColumn<QString>("args");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("message");
        QTest::addColumn<RigStep>("check");
        const auto fromFile = [](const char* read, const char* file, LineValues lines, int first) {
            return [=](CliRig& rig) {
                const QString in = rig.path(QStringLiteral("in"));
                QCOMPARE(rig.run(words(read) << in), 0);
                writeAll(rig.path(QLatin1String(file)), edited(readAll(in), lines, first));
            };
        };
        const RigStep noFile = [](CliRig& rig) { QVERIFY(!QFile::exists(rig.path("out.tbl"))); };
        const QString readPoints = QStringLiteral("points read -o out.tbl");
        const QString cannotRead =
            QStringLiteral("The reply to 'ta' from axis 0 at 9600 baud on /");
        QTest::newRow("stale reply of the run before") << QList<int>{0} << RigStep([](CliRig& rig) {
            // The closing poll of this run is answered after it has ended.
            rig.line->faults().lateMs.insert(QStringLiteral("ma"), 300);
            QCOMPARE(rig.run(words("params read -o") << rig.path("in.prm")), 0);
            QTest::qWait(600);
            rig.line->faults().lateMs.clear();
        }) << "--trace t.txt send 0SF" << 0 << "0SF" << RigStep([](CliRig& rig) {
            QCOMPARE(rig.out, QStringList{QStringLiteral("0SF")});
            // Discarded when the port opened: the link never saw it.
            QVERIFY(!readAll(rig.path("t.txt")).contains("< 0ma"));
        });
        QTest::newRow("monitor reply while identification waits")
            << QList<int>{0} << RigStep([](CliRig& rig) {
                   rig.line->faults().wrongCodes.insert(QStringLiteral("PR"), QStringLiteral("ma"));
               })
            << readPoints << 3 << "No answer to 'PR77' from axis 0 at 9600 baud on /" << noFile;
        QTest::newRow("late closing poll, a parameter write lost once")
            << QList<int>{0} << RigStep([fromFile](CliRig& rig) {
                   fromFile("params read -o", "b.prm", {{11, 77}}, 1)(rig);
                   rig.line->faults().lateMs.insert(QStringLiteral("ma"), 50);
                   rig.line->faults().dropCodes.insert(QStringLiteral("PW"), 1);
               })
            << "params write b.prm" << 0 << "11 Pos. P Gain = 77"
            << RigStep([](CliRig& rig) { QCOMPARE(rig.params(0)[11], 77); });
        QTest::newRow("duplicated identification, read-all lost once")
            << QList<int>{0} << RigStep([](CliRig& rig) {
                   rig.line->faults().duplicateCodes.insert(QStringLiteral("PR"), 1);
                   rig.line->faults().dropCodes.insert(QStringLiteral("ta"), 1);
               })
            << readPoints << 0 << ""
            << RigStep([](CliRig& rig) { QVERIFY(QFile::exists(rig.path("out.tbl"))); });
        QTest::newRow("axis 1 answers a point write for axis 0")
            << QList<int>{0, 1} << RigStep([fromFile](CliRig& rig) {
                   fromFile("points read -o", "b.tbl", {{3, -4321}}, 0)(rig);
                   rig.line->faults().misaddressAxis.insert(QStringLiteral("TW"), 1);
                   rig.line->faults().misaddressCounts.insert(QStringLiteral("TW"), 1);
               })
            << "points write b.tbl" << 0 << "PointTable write finished."
            << RigStep([](CliRig& rig) {
                   QCOMPARE(rig.drive(0).model().memory().nonVolatile().points[0].position, -4321);
               });
        QTest::newRow("axis 1 answers the monitor polls for axis 0")
            << QList<int>{0, 1} << RigStep([](CliRig& rig) {
                   rig.line->faults().misaddressAxis.insert(QStringLiteral("ma"), 1);
                   rig.line->faults().misaddressCounts.insert(QStringLiteral("ma"), -1);
               })
            << "monitor --count 1" << 3 << "Communication Failure"
            << RigStep([](CliRig& rig) { QCOMPARE(rig.out.size(), 1); });  // the header only
        QTest::newRow("non-hex field in the point table")
            << QList<int>{0} << RigStep([](CliRig& rig) {
                   rig.line->faults().corruptCodes.insert(QStringLiteral("ta"), -1);
               })
            << readPoints << 3 << cannotRead << noFile;
        QTest::newRow("point table cut short") << QList<int>{0} << RigStep([](CliRig& rig) {
            rig.line->faults().cutCodes.insert(QStringLiteral("ta"), -1);
        }) << readPoints << 3 << cannotRead << noFile;
    }
    void repliesThatDoNotAnswer() {
        QFETCH(QList<int>, axes);
        QFETCH(RigStep, fault);
        QFETCH(QString, args);
        QFETCH(int, exitCode);
        QFETCH(QString, message);
        QFETCH(RigStep, check);
        CliRig rig(axes);
        fault(rig);
        QStringList argv = words(args.toLatin1().constData());
        for (QString& a : argv) {
            if (a.contains(QLatin1Char('.')))
                a = rig.path(a);
        }
        QCOMPARE(rig.run(argv), exitCode);
        const QString told = rig.out.join(QLatin1Char('\n')) + rig.err;
        QVERIFY2(told.contains(message), qPrintable(told));
        if (exitCode != 0)
            QCOMPARE(rig.err.count(QLatin1Char('\n')), 1);
        check(rig);
    }

    void failuresExitWithOneLineAndLeaveNoFile_data() {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("fault");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("message");
        const QStringList read{QStringLiteral("params"), QStringLiteral("read"),
                               QStringLiteral("-o"), QStringLiteral("out.prm")};
        QTest::newRow("silent line") << read << "cable" << 3 << "Communication Failure";
        QTest::newRow("drive refuses pa") << read << "pa" << 4 << "Illegal Data";
        QTest::newRow("wrong identification")
            << QStringList{QStringLiteral("params"), QStringLiteral("diff"),
                           QStringLiteral("bad.prm")}
            << "" << 5 << "Idetification Error: ";
        QTest::newRow("wrong .tbl identification")
            << QStringList{QStringLiteral("points"), QStringLiteral("write"),
                           QStringLiteral("bad.tbl")}
            << "" << 5 << "Idetification Error: ";
        QTest::newRow("refused command")
            << QStringList{QStringLiteral("send"), QStringLiteral("0SO")} << "SO" << 4
            << "Error 1:";
        QTest::newRow("no trigger in time")
            << QStringList{QStringLiteral("wave"),      QStringLiteral("capture"),
                           QStringLiteral("--trigger"), QStringLiteral("logic"),
                           QStringLiteral("--timeout"), QStringLiteral("1"),
                           QStringLiteral("-o"),        QStringLiteral("out.prm")}
            << "" << 3 << "No trigger within 1 s";
        QTest::newRow("usage") << QStringList{QStringLiteral("scan"), QStringLiteral("--ram")} << ""
                               << 2 << "takes no option --ram";
    }
    void failuresExitWithOneLineAndLeaveNoFile() {
        QFETCH(QStringList, args);
        QFETCH(QString, fault);
        QFETCH(int, exitCode);
        QFETCH(QString, message);
        CliRig rig({0});
        if (fault == QLatin1String("cable"))
            rig.line->setCablePulled(true);
        else if (!fault.isEmpty())
            rig.line->faults().errorCodes.insert(fault, 1);
        writeAll(rig.path(QStringLiteral("bad.prm")), "Orvix-Servo parameter file \r\n1\r\n");
        writeAll(rig.path(QStringLiteral("bad.tbl")), "Orvix-Servo parameter file\r\n1\r\n");
        for (QString& a : args) {
            if (a.endsWith(QLatin1String(".prm")) || a.endsWith(QLatin1String(".tbl")))
                a = rig.path(a);
        }
        QCOMPARE(rig.run(args), exitCode);
        QVERIFY2(rig.err.startsWith(QStringLiteral("velora-cli: ")), qPrintable(rig.err));
        QVERIFY2(rig.err.contains(message), qPrintable(rig.err));
        QCOMPARE(rig.err.count(QLatin1Char('\n')), 1);
        QVERIFY(!QFile::exists(rig.path(QStringLiteral("out.prm"))));
    }
};

QTEST_GUILESS_MAIN(TestE2eCli)
#include "tst_e2e_cli.moc"
