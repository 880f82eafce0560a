#pragma once

#include "core/params/ParamTransfer.h"
#include "core/shared/BoundedLineReader.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>
#include <optional>

namespace velora {

class LinkEngine;
struct ParamTables;

// The parameter file (.prm): an identification line, then the 120 values in decimal, one per
// line, CR LF line ends. Writing saves the whole table; reading loads 00-59, or all 120 when
// the file says it carries the system parameters. While the drive is online, reading first
// fetches the drive's values and then marks only the parameters the file changes, so the
// next Write Servo sends just the differences. The paths come from the window's file dialogs;
// every failure is shown here through the link's modal messages, never by the window. The
// window follows the loaded values through the signals.
class ParamFile : public QObject {
    Q_OBJECT
public:
    enum class ReadResult {
        Ignored,        // empty path: nothing was done
        Failed,         // refused or broken; the message was shown
        Loaded,         // the values are in the table
        AwaitingDrive,  // the drive's values are being read; the file is merged when they come
    };
    Q_ENUM(ReadResult)

    ParamFile(LinkEngine& engine, ParamTransfer& transfer, ParamTables& tables,
              QObject* parent = nullptr);
    ~ParamFile() override;
    Q_DISABLE_COPY_MOVE(ParamFile)

    // Write File: saves the identification and all 120 values. An existing file is replaced
    // only once the whole new one is on disk. Flags, colours and the drive stay as they are.
    // Returns false for an empty path (silently) or a failure (after the message). withSystem
    // writes the identification that makes a later read restore all 120 values (the command
    // line's full backup); the windows always write the plain one.
    bool write(const QString& path, bool withSystem = false);

    // Read File: checks the identification, then loads the values at once, or, while the link
    // is online with the monitor running, reads the drive first and merges when it answers.
    ReadResult read(const QString& path);

    // The identification of the file read last announced the system parameters.
    [[nodiscard]] bool fileWithSystem() const { return FileWithSystem; }
    // A file is open and waits for the drive's values.
    [[nodiscard]] bool pending() const { return file_ != nullptr; }

signals:
    // Parameter `number` took its value from the file: box `number` (or box number - 60 of the
    // system parameter window) shows it; a parameter box that was `marked` turns the colour of
    // loaded values.
    void valueLoaded(int number, bool marked);
    // Every value is in. With `enableWriteServo` (online) the Write Servo button is enabled.
    void fileLoaded(bool enableWriteServo);
    // The drive's read ended without answering (error reply, time-out, another transfer): the
    // waiting file was closed without loading anything.
    void fileReadAbandoned();

private:
    // Loads the value lines of the open file; compare marks only the values that differ.
    bool PrmFileRead(bool compare);
    void mergeDue();
    void onChainStarted(ParamTransfer::Chain chain);
    void checkDriveRead();
    void abandon();
    [[nodiscard]] std::optional<QByteArray> nextLine();
    void closeFile();
    void failAccess();
    void showAccessError() const;

    LinkEngine& engine_;
    ParamTransfer& transfer_;
    ParamTables& tables_;
    std::unique_ptr<BoundedLineReader> file_;
    // Looks for the end of a drive read that never brought its values.
    QTimer watch_;
    bool startingRead_ = false;
    bool lastLoadOk_ = false;
    bool FileWithSystem = false;
};

}  // namespace velora
