#include "core/connect/AdapterWatch.h"
#include "core/connect/ConnectionCheck.h"
#include "core/connect/OpenAdvice.h"
#include "core/link/LinkEngine.h"
#include "core/link/TransportFactory.h"
#include "core/shared/Global.h"
#include "core/shared/TextCatalogue.h"
#include "sim/SimulatedLine.h"
#include "support/FakeLinkUi.h"
#include "support/PtyPair.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace velora;
using namespace Qt::StringLiterals;
using velora::test::FakeLinkUi;
using velora::test::PtyPair;

Q_DECLARE_METATYPE(velora::DeviceFacts)

namespace {

const QString kDevice = QStringLiteral("/dev/ttyUSB0");

// A device of the dialout group that this user may not open.
DeviceFacts dialoutDevice() {
    DeviceFacts f;
    f.exists = true;
    f.owner = QStringLiteral("root");
    f.group = QStringLiteral("dialout");
    f.mode = 0660;
    f.user = QStringLiteral("alice");
    f.sessionGroups = QStringList{QStringLiteral("alice")};
    f.memberGroups = f.sessionGroups;
    return f;
}

QStringList lines(const QList<Finding>& findings) {
    QStringList result;
    for (const Finding& finding : findings)
        result << finding.line(Language::English);
    return result;
}

// What the check finds on a real device, as this process sees it.
QString realFindings(const QString& device) {
    return lines(ConnectionCheck::deviceFindings(device, gatherDeviceFacts(device))).join('\n');
}

}  // namespace

// The connection check and the adapter watch, against a table of device facts and real
// pseudo-terminals.
class TestConnection : public QObject {
    Q_OBJECT
private slots:
    void findingNamesProblemAndFix_data() {
        QTest::addColumn<DeviceFacts>("facts");
        QTest::addColumn<QString>("expected");
        QTest::newRow("missing device")
            << DeviceFacts{} << "Problem: /dev/ttyUSB0 does not exist. Fix: plug the adapter in";
        QTest::newRow("not in the group")
            << dialoutDevice()
            << "not in the group dialout. Fix: run  sudo usermod -aG dialout alice  then log out";
        DeviceFacts notYet = dialoutDevice();
        notYet.memberGroups << QStringLiteral("dialout");
        QTest::newRow("group not yet in this login") << notYet << "this login does not have it yet";
        DeviceFacts foreign = dialoutDevice();
        foreign.owner = QStringLiteral("bob");
        foreign.mode = 0600;
        QTest::newRow("owned by another user, mode 600")
            << foreign
            << "(owner bob, group dialout, mode 600). Fix: run  sudo chmod 666 /dev/ttyUSB0";
        DeviceFacts busy = dialoutDevice();
        busy.mayOpen = true;
        busy.holders = {{4242, QStringLiteral("minicom")}};
        QTest::newRow("busy") << busy
                              << "in use by minicom (process 4242). Fix: close that "
                                 "program, or run  kill 4242";
        DeviceFacts stale = busy;
        stale.holders.clear();
        stale.lock = DeviceLock{QStringLiteral("/var/lock/LCK..ttyUSB0"), 999, false, {}};
        QTest::newRow("stale lock")
            << stale
            << "process 999, which no longer runs. Fix: run  sudo rm /var/lock/LCK..ttyUSB0";
        DeviceFacts brltty = stale;
        brltty.lock.reset();
        brltty.brlttyInstalled = true;
        QTest::newRow("brltty") << brltty << "sudo apt remove brltty";
    }
    void findingNamesProblemAndFix() {
        QFETCH(DeviceFacts, facts);
        QFETCH(QString, expected);
        const QList<Finding> findings = ConnectionCheck::deviceFindings(kDevice, facts);
        const QString found = lines(findings).join('\n');
        QVERIFY2(found.contains(expected), qPrintable(found));
        QVERIFY(ConnectionCheck::hasProblem(findings));
        for (const Finding& f : findings)
            QVERIFY(!f.text(Language::Japanese).contains(QLatin1String("%")));  // in Japanese too
    }

    // The facts of the real system: a device that is not there, and a pty another process holds.
    void realSystemMissingAndBusy() {
        const QString missing = QStringLiteral("/dev/ttyVeloraNone");
        LinkState link;
        FakeLinkUi ui;
        LinkEngine engine(link, ui, LinkEngine::Ticks::Manual);
        adviseOpenFailures(engine);
        engine.setTransport(createTransport(BackEnd::Rs232, link));
        engine.setDeviceOverride(missing);
        const OpenResult opened = engine.reopen();
        QVERIFY(!opened.ok);
        QVERIFY2(opened.reason.endsWith(
                     TextCatalogue::text(Language::English, Text::CheckMissing).arg(missing)),
                 qPrintable(opened.reason));  // the open failure says what to do

        PtyPair pty;
        QProcess holder;
        holder.setStandardInputFile(pty.slavePath());
        holder.start(QStringLiteral("sleep"), {QStringLiteral("5")});
        QVERIFY(holder.waitForStarted());
        const qint64 pid = holder.processId();
        const QString found = realFindings(pty.slavePath());
        holder.kill();
        holder.waitForFinished();
        QVERIFY2(found.contains(QStringLiteral("is in use by sleep (process %1)").arg(pid)),
                 qPrintable(found));

        // The simulator holding its own pseudo-terminal is the drive, not a program to kill.
        QTemporaryDir bin;
        const QString simulator = bin.filePath(QStringLiteral("velora-sim"));
        QVERIFY(QFile::link(QStandardPaths::findExecutable(QStringLiteral("sleep")), simulator));
        holder.start(simulator, {QStringLiteral("5")});
        QVERIFY(holder.waitForStarted());
        const qint64 simPid = holder.processId();
        const QString held = realFindings(pty.slavePath());
        holder.kill();
        holder.waitForFinished();
        QVERIFY2(held.contains(u"OK: "_s + TextCatalogue::text(Language::English,
                                                               Text::StatusBarHeldBySimulator)
                                               .arg(pty.slavePath())
                                               .arg(simPid)),
                 qPrintable(held));
        QVERIFY2(!held.contains(u"kill"_s), qPrintable(held));
    }

    // A pty of mode 600 owned by root, checked by an unprivileged user: only root can set that
    // up, so the check runs in a child process that drops to "nobody".
    void realPermissionProblem() {
        if (::geteuid() != 0)
            QSKIP("needs root to hand the device to another user; the facts table covers it");
        PtyPair pty;
        QVERIFY(::chmod(QFile::encodeName(pty.slavePath()).constData(), 0600) == 0);
        int fds[2];
        QVERIFY(::pipe(fds) == 0);
        const pid_t child = ::fork();
        if (child == 0) {
            ::close(fds[0]);
            const bool dropped =
                ::setgroups(0, nullptr) == 0 && ::setgid(65534) == 0 && ::setuid(65534) == 0;
            const QByteArray found =
                dropped ? realFindings(pty.slavePath()).toUtf8() : "could not drop privileges";
            [[maybe_unused]] const auto n = ::write(fds[1], found.constData(), found.size());
            ::_exit(0);
        }
        ::close(fds[1]);
        QFile output;
        QVERIFY(output.open(fds[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle));
        const QString found = QString::fromUtf8(output.readAll());
        ::waitpid(child, nullptr, 0);
        for (const char* part : {"Problem: You may not open %1 (owner root, group ",
                                 "mode 600). Fix: run  sudo chmod 666 %1"})
            QVERIFY2(found.contains(QString::fromLatin1(part).arg(pty.slavePath())),
                     qPrintable(found));
    }

    // Through the real port against a simulated line whose drive is silent: the check offers
    // the search. (The answering drive is checked by the command line's doctor.)
    void lineTestOfASilentDrive() {
        sim::SimOptions options;
        options.fast = true;
        sim::SimulatedLine line(options);
        QVERIFY(line.open());
        line.setCablePulled(true);
        const ConnectionCheck check(&gatherDeviceFacts, [](const CheckTarget& t) {
            return runLineTest(t.device, t.axis, t.baud, 300);
        });
        QVERIFY(ConnectionCheck::driveSilent(check.run(CheckTarget{line.devicePath(), 0, 9600})));
    }

    // The adapter is found at start under another device, is pulled out while the monitor runs
    // and comes back: the link notices at once, says so on the status bar only, and resumes.
    void replugReopensAndResumes() {
        auto pty = std::make_unique<PtyPair>();
        Global global;
        LinkState& link = global.Link;
        FakeLinkUi ui;
        LinkEngine engine(link, ui, LinkEngine::Ticks::Manual);
        engine.setTransport(createTransport(BackEnd::Rs232, link));
        QString location = pty->slavePath();
        global.Connection.AdapterSerial = QStringLiteral("FT1234");
        AdapterWatch watch(engine, global.Connection);
        watch.setRecheckIntervalMs(20);
        watch.setPortLister([&location] {
            PortHint adapter;
            adapter.serialNumber = QStringLiteral("FT1234");
            adapter.systemLocation = location;
            return QList<PortHint>{adapter};
        });
        QStringList notes;
        connect(&watch, &AdapterWatch::note, this, [&notes](const QString& t) { notes << t; });
        // The settings name a device the adapter is no longer on: it is found by its number.
        engine.setDeviceOverride(QStringLiteral("/dev/ttyUSB7"));
        watch.locate();
        QCOMPARE(engine.device(), location);
        QCOMPARE(notes.takeFirst(),
                 TextCatalogue::text(Language::English, Text::CheckAdapterFoundOnInstead)
                     .arg(u"FT1234", location, u"/dev/ttyUSB7"));
        engine.start(250);
        QVERIFY(link.run().PortOpen);
        QVERIFY(pty->read(5).contains("0ma"));
        QCOMPARE(ui.consoleDisabled, 1);  // until the drive's first reply

        const QString oldDevice = location;
        location.clear();  // unplugged: the system lists no such adapter
        pty.reset();
        // Noticed by the port's own read, or at the latest by the next poll's write.
        QVERIFY(QTest::qWaitFor(
            [&] {
                engine.tick();
                return watch.waiting();
            },
            2000));
        QVERIFY(!link.run().PortOpen);
        QCOMPARE(notes.value(0),
                 TextCatalogue::text(Language::English, Text::CheckAdapterUnpluggedWaitingCome)
                     .arg(oldDevice));
        engine.tick();
        engine.tick();  // the polls of the cycle go nowhere, silently

        PtyPair second;  // plugged in again
        location = second.slavePath();
        QVERIFY(QTest::qWaitFor([&] { return link.run().PortOpen; }, 2000));
        QVERIFY(second.read(5).contains("0ma"));  // the monitor resumes
        QVERIFY(!watch.waiting());
        QVERIFY(notes.size() == 2 && notes[1].contains(location));
        QVERIFY(ui.messages.isEmpty());
    }
};

QTEST_MAIN(TestConnection)
#include "tst_connection.moc"
