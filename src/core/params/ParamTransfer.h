#pragma once

#include "core/link/ReplyDispatcher.h"

#include <QObject>
#include <QString>

namespace velora {

class LinkEngine;
struct LinkState;
struct ParamTables;

// Moves parameter values between the host's mirror and the drive, one command per reply:
// reading all with "pa", writing the marked parameters one by one with "PW" or "PT", reading
// one by one with "PR", and the drive identification "PR77" that the monitor and the port
// search send. It owns the replies "pa", "PR", "PW" and "PT" for as long as it lives, so it is
// built once at start-up, beside the link, whether or not a parameter window exists; the
// engine must outlive it. The windows follow it through its signals.
class ParamTransfer : public QObject {
    Q_OBJECT
public:
    // The chain a reply belongs to.
    enum class Chain { None, ReadAll, ReadEach, Write };
    Q_ENUM(Chain)

    ParamTransfer(LinkEngine& engine, ParamTables& tables, QObject* parent = nullptr);
    ~ParamTransfer() override;
    Q_DISABLE_COPY_MOVE(ParamTransfer)

    // Read Servo: asks for all 120 values with one command and shows the busy dialog.
    void readAll();
    // Write Servo: sends the marked parameters in ascending order, each with the write code
    // chosen when it leaves. Returns false, having sent and shown nothing, when none is marked.
    bool writeChanged();
    // Reads the parameters one by one from 00 up to 59, or up to 119 while the system parameter
    // window is shown. Marks are left as they are.
    void readEach();
    // The last number of readEach() follows the visibility of the system parameter window.
    void setSystemWindowShown(bool shown) { systemWindowShown_ = shown; }

    // Number of the parameter in transfer.
    [[nodiscard]] int paramIndex() const { return ParamIndex; }
    // "PW" (also into non-volatile memory) or "PT" (RAM only), from the option as it is now.
    [[nodiscard]] QString writeCode() const;
    // The command that writes parameter n's value from the table, as the write chain sends it.
    [[nodiscard]] QString writeCommand(int n) const;

signals:
    // A chain is about to send its first command.
    void chainStarted(velora::ParamTransfer::Chain chain);
    // All 120 values were replaced and their marks cleared: every box shows its value anew and
    // turns white.
    void valuesRefreshed();
    // One value was read by the one-by-one chain.
    void valueRefreshed(int number);
    // The parameter reached the drive and is no longer marked: its box turns white.
    void parameterWritten(int number);
    // The drive's values are in and a parameter file waits (FileReadPending): merge it now,
    // before the read ends.
    void fileMergeDue();
    // A chain ended: the I/O status window takes its input names afresh; after ReadAll and
    // Write the Write Servo button is disabled.
    void transferFinished(velora::ParamTransfer::Chain chain);
    // The drive answered the identification: DriverVersion is set.
    void identified(int driverVersion);
    // The identification answered the port search's probe (Searching is on): the search has
    // found its drive.
    void portSearchSucceeded();

private:
    [[nodiscard]] ReplyStatus OnParamAll(const QString& text);
    [[nodiscard]] ReplyStatus OnParamRead(const QString& text);
    [[nodiscard]] ReplyStatus OnParamWritten();
    [[nodiscard]] ReplyStatus identify(const QString& text);
    [[nodiscard]] bool chainRunning(Chain chain) const;
    [[nodiscard]] QString readCommand(int n) const;
    void start(Chain chain, const QString& command);
    void endWrite();
    void endReadEach();

    LinkEngine& engine_;
    LinkState& link_;
    ParamTables& tables_;
    Chain chain_ = Chain::None;
    bool systemWindowShown_ = false;

    int ParamIndex = 0;
    // The written parameters that need a restart, as the message lists them.
    QString RebootList;
    bool RebootListUsed = false;
};

}  // namespace velora
