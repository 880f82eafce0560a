#pragma once

#include "core/connect/DeviceFacts.h"
#include "core/connect/Finding.h"
#include "core/connect/LineTest.h"
#include "core/shared/Language.h"

#include <QList>

#include <functional>

namespace velora {

// What the check is about: the device the settings open and the drive it should reach.
struct CheckTarget {
    QString device;
    int axis = 0;
    int baud = 9600;
};

// The connection check: for the chosen port, one finding per question, each with its fix: does
// the device exist, may this user open it, is another program holding or locking it, is a
// program installed that is known to claim such adapters, then the line test. The rules work
// on gathered inputs, so the same check serves the window, the command line and the tests.
class ConnectionCheck {
public:
    using FactSource = std::function<DeviceFacts(const QString&)>;
    using LineTester = std::function<LineTestResult(const CheckTarget&)>;

    // The real system and the real port.
    ConnectionCheck();
    ConnectionCheck(FactSource facts, LineTester lineTest);

    // Everything, in order; the line test only when the device can be tried at all.
    [[nodiscard]] QList<Finding> run(const CheckTarget& target) const;

    // The findings about the device and the system alone.
    [[nodiscard]] static QList<Finding> deviceFindings(const QString& device,
                                                       const DeviceFacts& facts);
    // The one line that tells a user what to do after a port failed to open: the group to join
    // and the command, the lock file left behind and how to remove it, or the process holding
    // the device. Empty when the facts suggest nothing.
    [[nodiscard]] static QString openFailureAdvice(const QString& device, const DeviceFacts& facts,
                                                   Language languageId);
    // That line for a port that would not open, from the facts of this system; empty when the
    // opening failed otherwise (the port opened but refused its settings).
    [[nodiscard]] static QString adviceForFailedOpen(const OpenResult& failed, Language languageId);
    // The findings of a line test.
    [[nodiscard]] static QList<Finding> lineFindings(const CheckTarget& target,
                                                     const LineTestResult& result,
                                                     const DeviceFacts& facts);
    // True when some finding is a problem.
    [[nodiscard]] static bool hasProblem(const QList<Finding>& findings);
    // True when the line test ran and no drive answered: the user may search.
    [[nodiscard]] static bool driveSilent(const QList<Finding>& findings);

private:
    FactSource facts_;
    LineTester lineTest_;
};

}  // namespace velora
