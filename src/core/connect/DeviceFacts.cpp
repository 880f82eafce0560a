#include "core/connect/DeviceFacts.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_LINUX
#include <grp.h>
#include <pwd.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>
#include <cerrno>
#include <vector>
#endif

namespace velora {

namespace {

#ifdef Q_OS_LINUX

QString processName(qint64 pid) {
    QFile comm(QStringLiteral("/proc/%1/comm").arg(pid));
    if (!comm.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromLocal8Bit(comm.read(256)).trimmed();
}

bool processAlive(qint64 pid) {
    return pid > 0 && (::kill(static_cast<pid_t>(pid), 0) == 0 || errno == EPERM);
}

QString groupName(gid_t gid) {
    const group* g = ::getgrgid(gid);
    return g ? QString::fromLocal8Bit(g->gr_name) : QString::number(gid);
}

// Every process but this one whose open files include device.
QList<DeviceHolder> holdersOf(const QString& device) {
    QList<DeviceHolder> holders;
    const QString target = QFileInfo(device).canonicalFilePath();
    const qint64 self = QCoreApplication::applicationPid();
    const QStringList pids =
        QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& entry : pids) {
        bool numeric = false;
        const qint64 pid = entry.toLongLong(&numeric);
        if (!numeric || pid == self)
            continue;
        // Only processes we may look into can be named; others are invisible without root.
        const QDir fds(QStringLiteral("/proc/%1/fd").arg(pid));
        const QStringList links = fds.entryList(QDir::Files | QDir::System | QDir::NoDotAndDotDot);
        for (const QString& fd : links) {
            if (QFile::symLinkTarget(fds.filePath(fd)) == target) {
                holders.append({pid, processName(pid)});
                break;
            }
        }
    }
    return holders;
}

QString latencyTimerOf(const QString& device) {
    const QString path = QStringLiteral("/sys/bus/usb-serial/devices/%1/latency_timer")
                             .arg(QFileInfo(device).fileName());
    return QFileInfo::exists(path) ? path : QString();
}

bool anyExists(std::initializer_list<const char*> paths) {
    for (const char* path : paths) {
        if (QFileInfo::exists(QString::fromLatin1(path)))
            return true;
    }
    return false;
}

#endif

}  // namespace

std::optional<DeviceLock> findDeviceLock(const QString& device) {
#ifdef Q_OS_LINUX
    // The directories serial programs lock in, QSerialPort's first among them.
    const QStringList directories{QStringLiteral("/var/lock"),
                                  QStringLiteral("/etc/locks"),
                                  QStringLiteral("/var/spool/locks"),
                                  QStringLiteral("/var/spool/uucp"),
                                  QDir::tempPath(),
                                  QStringLiteral("/var/tmp"),
                                  QStringLiteral("/var/lock/lockdev"),
                                  QStringLiteral("/run/lock")};
    // Named after the device below /dev, a slash made an underscore: LCK..ttyUSB0, LCK..pts_3.
    QString port = device;
    if (port.startsWith(QLatin1String("/dev/")))
        port.remove(0, 5);
    const QString name = QStringLiteral("LCK..") + port.replace(QLatin1Char('/'), QLatin1Char('_'));
    for (const QString& directory : directories) {
        const QString path = QDir(directory).filePath(name);
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        DeviceLock lock;
        lock.path = path;
        // The process id stands first, as text; other lines vary between programs.
        lock.pid = QString::fromLatin1(file.readLine(64)).trimmed().toLongLong();
        lock.processAlive = processAlive(lock.pid);
        if (lock.processAlive)
            lock.processName = processName(lock.pid);
        return lock;
    }
#else
    Q_UNUSED(device);
#endif
    return std::nullopt;
}

DeviceFacts gatherDeviceFacts(const QString& device) {
    DeviceFacts facts;
#ifdef Q_OS_LINUX
    struct stat st {};
    facts.exists = ::stat(QFile::encodeName(device).constData(), &st) == 0;
    const passwd* me = ::getpwuid(::getuid());
    facts.user = me ? QString::fromLocal8Bit(me->pw_name) : QString::number(::getuid());
    const int count = ::getgroups(0, nullptr);
    std::vector<gid_t> session(static_cast<std::size_t>(std::max(count, 0)));
    if (count > 0 && ::getgroups(count, session.data()) == count) {
        for (const gid_t gid : session)
            facts.sessionGroups << groupName(gid);
    }
    facts.sessionGroups << groupName(::getgid());
    if (me) {
        int n = 64;
        std::vector<gid_t> listed(static_cast<std::size_t>(n));
        if (::getgrouplist(me->pw_name, me->pw_gid, listed.data(), &n) < 0) {
            listed.resize(static_cast<std::size_t>(n));
            ::getgrouplist(me->pw_name, me->pw_gid, listed.data(), &n);
        }
        for (int i = 0; i < n; ++i)
            facts.memberGroups << groupName(listed[static_cast<std::size_t>(i)]);
    }
    facts.brlttyInstalled = anyExists({"/usr/bin/brltty", "/bin/brltty", "/usr/sbin/brltty"});
    facts.modemManagerInstalled = anyExists({"/usr/sbin/ModemManager", "/usr/bin/ModemManager"});
    facts.lock = findDeviceLock(device);
    if (!facts.exists)
        return facts;
    const passwd* owner = ::getpwuid(st.st_uid);
    facts.owner = owner ? QString::fromLocal8Bit(owner->pw_name) : QString::number(st.st_uid);
    facts.group = groupName(st.st_gid);
    facts.mode = st.st_mode & 0777;
    facts.mayOpen = ::access(QFile::encodeName(device).constData(), R_OK | W_OK) == 0;
    facts.holders = holdersOf(device);
    facts.pseudoTerminal =
        QFileInfo(device).canonicalFilePath().startsWith(QLatin1String("/dev/pts/"));
    facts.latencyTimerPath = latencyTimerOf(device);
#else
    Q_UNUSED(device);
    facts.applies = false;
#endif
    return facts;
}

}  // namespace velora
