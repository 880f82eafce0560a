#include "core/link/ClampReport.h"
#include "core/params/ParamCatalogue.h"
#include "core/params/ParamFile.h"
#include "core/params/ParamTransfer.h"
#include "core/shared/ParamTables.h"
#include "core/shared/TextCatalogue.h"
#include "support/LinkRig.h"

#include <QDir>
#include <QLocale>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/resource.h>
#include <csignal>

using namespace velora;

namespace {

QString en(Text id) {
    return TextCatalogue::text(Language::English, id);
}

// A value inside the range of every parameter, different for most of them. 0..3 are those of
// the example table: axis 1, command mode 0, resolution 0 of 1/1.
qint32 sample(const ParamTables& t, int n) {
    if (n < 4)
        return n == 1 ? 0 : 1;
    const auto i = static_cast<std::size_t>(n);
    const qint64 span = qint64(t.ParamMax[i]) - t.ParamMin[i] + 1;
    return static_cast<qint32>(t.ParamMin[i] + (qint64(n) * 7919 * 7919) % span);
}

QString readAllReply(const std::array<qint32, ParamTables::Count + 1>& values) {
    QString fields;
    for (int n = 0; n < ParamTables::Count; ++n) {
        const auto v = static_cast<quint32>(values[static_cast<std::size_t>(n)]);
        fields += QStringLiteral("%1,").arg(v, 8, 16, QLatin1Char('0'));
    }
    return QStringLiteral("1pa") + fields.toUpper();
}

QByteArray fileText(const QByteArray& identification, const QList<QByteArray>& lines,
                    const QByteArray& lineEnd = "\r\n") {
    QByteArray text = identification + lineEnd;
    for (const QByteArray& line : lines)
        text += line + lineEnd;
    return text;
}

struct Rig : test::LinkRig {
    Rig() : LinkRig(BackEnd::Rs232, false) {
        InitParamTables(tables);
        QVERIFY(dir.isValid());
    }
    [[nodiscard]] QString path(const QString& name = QStringLiteral("a.prm")) const {
        return dir.filePath(name);
    }
    void store(const QString& name, const QByteArray& content) const {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    [[nodiscard]] QByteArray load(const QString& name = QStringLiteral("a.prm")) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    [[nodiscard]] QList<int> marked() const {
        QList<int> numbers;
        for (int n = 0; n < ParamTables::Count; ++n) {
            if (tables.ParamChanged[static_cast<std::size_t>(n)])
                numbers << n;
        }
        return numbers;
    }

    QTemporaryDir dir;
    ParamTables tables;
    ParamTransfer transfer{engine, tables};
    ParamFile file{engine, transfer, tables};
};

QList<int> range(int first, int last) {
    QList<int> numbers;
    for (int n = first; n <= last; ++n)
        numbers << n;
    return numbers;
}

}  // namespace

class TestParamFile : public QObject {
    Q_OBJECT
private slots:
    // Offline, the main window test writes and reads a file; online the monitor may be off.
    void roundTripWithoutTheDrive() {
        Rig rig;
        rig.state.Online = true;
        rig.engine.setMonitorRunning(false);
        rig.ui.controlsEnabled = false;
        for (int n = 0; n < ParamTables::Count; ++n)
            rig.tables.ParamValue[static_cast<std::size_t>(n)] = sample(rig.tables, n);
        const auto written = rig.tables.ParamValue;
        QVERIFY(rig.file.write(rig.path()));
        QCOMPARE(rig.load().count('\n'), rig.load().count("\r\n"));
        QVERIFY(rig.marked().isEmpty() && !rig.tables.ParamsLoaded);  // writing changes nothing

        rig.tables.ParamValue.fill(-1);
        QSignalSpy loaded(&rig.file, &ParamFile::valueLoaded);
        QSignalSpy finished(&rig.file, &ParamFile::fileLoaded);
        QCOMPARE(rig.file.read(rig.path()), ParamFile::ReadResult::Loaded);
        // The program's own identification carries 0..59 only.
        for (int n = 0; n < ParamTables::Count; ++n) {
            const auto i = static_cast<std::size_t>(n);
            QCOMPARE(rig.tables.ParamValue[i], n < 60 ? written[i] : -1);
        }
        QCOMPARE(rig.marked(), range(0, 59));
        QCOMPARE(loaded.size(), 60);
        QCOMPARE(loaded.last(), (QVariantList{59, true}));
        QCOMPARE(finished.size(), 1);
        // Write Servo can send the loaded values at once.
        QVERIFY(finished[0][0].toBool() && rig.ui.controlsEnabled);
        QVERIFY(rig.tables.ParamsLoaded && !rig.file.pending() && !rig.file.fileWithSystem());
        QVERIFY(rig.ui.messages.isEmpty() && rig.sent().isEmpty());
    }

    // Files of other editors load; a refused or broken one keeps what came before it.
    void readsFilesOfOtherEditorsRefusesBrokenOnes_data() {
        QTest::addColumn<QByteArray>("content");  // null: no file at all
        QTest::addColumn<qint64>("size");         // the file is padded with NULs to this size
        QTest::addColumn<Text>("message");        // 0: loaded
        QTest::addColumn<int>("stored");          // values taken (before the failure)
        const QByteArray id = "Orvix-Servo parameter file";
        const auto utf16 = [](const QString& text) {
            return QByteArray("\xFF\xFE") +
                   QByteArray(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
        };
        const QList<QByteArray> ones(ParamTables::ServoCount, "1");
        QList<QByteArray> longest = ones;
        longest[5] = QByteArray(63, '0') + '1';
        QTest::newRow("CR only") << fileText(id, ones, "\r") << 0LL << Text{} << 60;
        QTest::newRow("UTF-8 byte-order mark")
            << "\xEF\xBB\xBF" + fileText(id, ones) << 0LL << Text{} << 60;
        QTest::newRow("64-character line") << fileText(id, longest) << 0LL << Text{} << 60;
        QTest::newRow("no file") << QByteArray() << 0LL << Text::MsgFileAccessError << 0;
        QTest::newRow("not a number")
            << fileText(id, {"5", "1", "1x", "9"}) << 0LL << Text::MsgFileAccessError << 2;
        QTest::newRow("ends early")
            << fileText(id, QList<QByteArray>(30, "1")) << 0LL << Text::MsgFileAccessError << 30;
        QTest::newRow("65-character line") << fileText(id, {"1", QByteArray(64, '0') + '1'}) << 0LL
                                           << Text::MsgFileAccessError << 1;
        QTest::newRow("endless line, 100 MB")
            << id + "\r\n1" << (100LL << 20) << Text::MsgFileAccessError << 0;
        QTest::newRow("UTF-16") << utf16(QString::fromLatin1(fileText(id, {"1"}))) << 0LL
                                << Text::MsgIdentificationError1722 << 0;
        QTest::newRow("UTF-16 with system")
            << utf16(QString::fromLatin1(fileText(id + " with system parameter", {"1"}))) << 0LL
            << Text::MsgIdentificationError1722 << 0;
    }
    void readsFilesOfOtherEditorsRefusesBrokenOnes() {
        QFETCH(QByteArray, content);
        QFETCH(qint64, size);
        QFETCH(Text, message);
        QFETCH(int, stored);
        Rig rig;
        rig.state.Online = false;
        rig.tables.ParamValue.fill(3);
        if (!content.isNull())
            rig.store(QStringLiteral("a.prm"), content);
        if (size > 0)
            QVERIFY(QFile::resize(rig.path(), size));  // sparse: costs no disk and no time
        const bool loads = message == Text{};
        QCOMPARE(rig.file.read(rig.path()),
                 loads ? ParamFile::ReadResult::Loaded : ParamFile::ReadResult::Failed);
        QCOMPARE(rig.ui.messages.size(), 1);
        if (!loads) {
            QCOMPARE(rig.ui.messages[0].text, en(message));
            QCOMPARE(rig.ui.messages[0].caption,
                     TextCatalogue::text(Language::English, message, 1));
        } else {
            // A 1 lies outside the range of several parameters: one message says which.
            QList<int> outside;
            for (int n = 0; n < ParamTables::ServoCount; ++n) {
                if (rig.tables.clamped(n, 1) != 1)
                    outside << n;
            }
            const QStringList lines = rig.ui.messages[0].text.split(QLatin1Char('\n'));
            QCOMPARE(rig.ui.messages[0].caption, en(Text::MsgValuesChangedOnLoading));
            QCOMPARE(lines.value(0), en(Text::MsgValuesFileWereOutside).arg(outside.size()));
            QCOMPARE(lines.value(1), QStringLiteral("%1 %2: 1 \u2192 %3")
                                         .arg(en(Text::MsgParameterNo))
                                         .arg(outside[0])
                                         .arg(rig.tables.clamped(outside[0], 1)));
            QCOMPARE(lines.size(), 1 + std::min<int>(outside.size(), ClampReport::Listed));
        }
        QCOMPARE(rig.marked(), range(0, stored - 1));
        const auto last = static_cast<std::size_t>(stored - 1);
        if (stored > 0)
            QCOMPARE(rig.tables.ParamValue[last], rig.tables.clamped(stored - 1, 1));
        QCOMPARE(rig.tables.ParamValue[last + 1], 3);
        QCOMPARE(rig.tables.ParamsLoaded, loads);
        QVERIFY(!rig.file.pending() && !rig.tables.FileReadPending);
    }

    void numbersIgnoreTheUserLocale() {
        const QLocale before;
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        Rig rig;
        rig.state.Online = false;
        rig.tables.ParamValue[6] = -12345678;
        const bool written = rig.file.write(rig.path());
        QList<QByteArray> lines(ParamTables::Count, "1");
        lines[6] = "1.234";  // 1234 in German
        lines[11] = "2.5";   // 25 in German
        lines[17] = "700000";
        lines[69] = "7";
        // Line ends of other editors read the same.
        rig.store(QStringLiteral("b.prm"),
                  fileText("Orvix-Servo parameter file with system parameter", lines, "\n"));
        const ParamFile::ReadResult result = rig.file.read(rig.path(QStringLiteral("b.prm")));
        QLocale::setDefault(before);
        QVERIFY(written && rig.load().contains("\r\n-12345678\r\n"));
        QCOMPARE(result, ParamFile::ReadResult::Loaded);
        QVERIFY(rig.file.fileWithSystem());
        QCOMPARE(rig.tables.ParamValue[6], 1);
        QCOMPARE(rig.tables.ParamValue[11], 2);
        QCOMPARE(rig.tables.ParamValue[17], 99999);  // clamped to the range
        QCOMPARE(rig.tables.ParamValue[69], 0);
        QCOMPARE(rig.marked(), range(0, 119));
    }

    void failedWriteLeavesTheOldFile() {
        Rig rig;
        rig.tables.ParamValue[0] = 7;
        QVERIFY(rig.file.write(rig.path()));
        const QByteArray old = rig.load();
        rig.tables.ParamValue[0] = 8;

        // The disk fills up after 64 bytes of the new file.
        rlimit saved{};
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &saved), 0);
        const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit small = saved;
        small.rlim_cur = 64;
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
        const bool written = rig.file.write(rig.path());
        setrlimit(RLIMIT_FSIZE, &saved);
        std::signal(SIGXFSZ, previousHandler);

        QVERIFY(!written);
        QCOMPARE(rig.load(), old);
        QCOMPARE(QDir(rig.dir.path()).entryList(QDir::Files), QStringList{"a.prm"});
        QCOMPARE(rig.ui.messages.size(), 1);
        QCOMPARE(rig.ui.messages[0].text, en(Text::MsgFileAccessError));
        // A folder that is not there cannot take a file either.
        QVERIFY(!rig.file.write(rig.dir.filePath(QStringLiteral("none/a.prm"))));
        QCOMPARE(rig.ui.messages.size(), 2);
    }

    // Which values differ is velora-cli's diff test; here the values beyond the file and
    // what the window is told.
    void onlineReadMarksOnlyDifferences() {
        Rig rig;
        rig.state.Online = true;
        rig.engine.setMonitorRunning(true);
        for (int n = 0; n < ParamTables::Count; ++n)
            rig.tables.ParamValue[static_cast<std::size_t>(n)] = sample(rig.tables, n);
        QVERIFY(rig.file.write(rig.path()));
        const auto fromFile = rig.tables.ParamValue;
        auto drive = fromFile;
        drive[17] = 5;
        drive[80] = -7;  // not in the file's range of numbers
        rig.tables.ParamValue.fill(0);
        rig.tables.ParamChanged[50] = true;

        QSignalSpy loaded(&rig.file, &ParamFile::valueLoaded);
        QSignalSpy finished(&rig.file, &ParamFile::fileLoaded);
        QCOMPARE(rig.file.read(rig.path()), ParamFile::ReadResult::AwaitingDrive);
        QVERIFY(rig.file.pending() && rig.tables.FileReadPending && loaded.isEmpty());
        rig.port->reply(readAllReply(drive));
        QCOMPARE(rig.marked(), QList<int>{17});
        QCOMPARE(rig.tables.ParamValue[17], fromFile[17]);
        QCOMPARE(rig.tables.ParamValue[80], -7);
        QCOMPARE(loaded.size(), 60);
        QCOMPARE(loaded[16], (QVariantList{16, false}));
        QCOMPARE(loaded[17], (QVariantList{17, true}));
        QCOMPARE(finished.size(), 1);
        QCOMPARE(finished[0][0].toBool(), true);
        QVERIFY(!rig.file.pending() && !rig.tables.FileReadPending && rig.tables.ParamsLoaded);
        QCOMPARE(rig.sent(), (QStringList{"1pa", "1ma"}));
        QVERIFY(rig.ui.messages.isEmpty() && rig.ui.controlsEnabled && !rig.ui.busyDialogShown);
    }

    void driveReadWithoutValuesClosesTheFile_data() {
        QTest::addColumn<QString>("end");
        QTest::newRow("error reply") << "error";
        QTest::newRow("time-out, Cancel") << "timeout";
        QTest::newRow("broken reply, Cancel, then Read Servo") << "malformed";
    }
    void driveReadWithoutValuesClosesTheFile() {
        QFETCH(QString, end);
        Rig rig;
        rig.state.Online = true;
        rig.engine.setMonitorRunning(true);
        QVERIFY(rig.file.write(rig.path()));
        QSignalSpy abandoned(&rig.file, &ParamFile::fileReadAbandoned);
        QCOMPARE(rig.file.read(rig.path()), ParamFile::ReadResult::AwaitingDrive);
        rig.ui.answerRetry = false;
        if (end == QLatin1String("error")) {
            rig.port->reply(QStringLiteral("1ER3"));
        } else if (end == QLatin1String("timeout")) {
            for (int i = 0; i < 200 && rig.ui.messages.isEmpty(); ++i)
                rig.ticks(1);
        } else {
            rig.port->reply(QStringLiteral("1pa0000"));
            // The link leaves the chain flagged as running: the next transfer ends the wait.
            rig.transfer.readAll();
        }
        QCOMPARE(rig.ui.messages.size(), 1);
        QVERIFY(abandoned.size() == 1 || abandoned.wait(1000));
        QVERIFY(!rig.file.pending() && !rig.tables.FileReadPending);

        // A later Read Servo brings the drive's values and merges nothing.
        std::array<qint32, ParamTables::Count + 1> drive{};
        drive[17] = 5;
        if (end != QLatin1String("malformed"))
            rig.transfer.readAll();
        rig.port->reply(readAllReply(drive));
        QCOMPARE(rig.tables.ParamValue[17], 5);
        QVERIFY(rig.marked().isEmpty());
        QCOMPARE(abandoned.size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestParamFile)
#include "tst_paramfile.moc"
