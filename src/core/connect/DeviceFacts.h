#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace velora {

// A process that has the device open.
struct DeviceHolder {
    qint64 pid = 0;
    QString name;
};

// A lock file of the serial device in one of the system's lock directories (LCK..ttyUSB0).
struct DeviceLock {
    QString path;
    qint64 pid = 0;  // 0 when the file names none that can be read
    bool processAlive = false;
    QString processName;
};

// What the system says about a serial device and the user who wants to open it: the inputs of
// the connection check. Gathered from the system by gatherDeviceFacts(); tests fill it by hand.
struct DeviceFacts {
    // False where device files, groups and /proc cannot be read as on Linux (Windows): those
    // checks are skipped.
    bool applies = true;
    bool exists = false;
    // The device is (or leads to) the slave end of a pseudo-terminal, as the simulator offers.
    bool pseudoTerminal = false;
    QString owner;
    QString group;
    uint mode = 0;         // permission bits, e.g. 0660
    bool mayOpen = false;  // read and write access for this process
    QString user;
    QStringList sessionGroups;  // the groups this login has now
    QStringList memberGroups;   // the groups the user is listed in (after the next login)
    QList<DeviceHolder> holders;
    std::optional<DeviceLock> lock;
    bool brlttyInstalled = false;
    bool modemManagerInstalled = false;
    // The adapter driver's latency knob in sysfs, when it has one.
    QString latencyTimerPath;
};

// The facts of this system for device. Another process's lock or hold on the device is found
// through the lock directories and /proc; this process itself is left out.
[[nodiscard]] DeviceFacts gatherDeviceFacts(const QString& device);

// The lock file QSerialPort and other serial programs use for device, if one exists.
[[nodiscard]] std::optional<DeviceLock> findDeviceLock(const QString& device);

}  // namespace velora
