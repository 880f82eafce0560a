#pragma once

#include <QObject>
#include <QString>

namespace velora {

class LinkEngine;
struct ComTables;

// The command table file (.sct): an identification line, the ten velocities, the ten ATCs and
// torques No.1-7 in decimal, one per line, CR LF line ends, 28 lines. Writing saves the table;
// reading loads it and marks every cell for the next Write Servo. Paths come from the caller
// (the window's file dialog, or a command-line tool); every failure is shown here through the
// link's modal messages. Callers follow the loaded values through the signals.
class ComFile : public QObject {
    Q_OBJECT
public:
    static constexpr int LineCount = 28;

    enum class ReadResult {
        Ignored,  // empty path: nothing was done
        Failed,   // refused or broken; the message was shown, cells before the failure stay
        Loaded,   // every cell is in and marked
    };
    Q_ENUM(ReadResult)

    ComFile(LinkEngine& engine, ComTables& tables, QObject* parent = nullptr);
    ~ComFile() override;
    Q_DISABLE_COPY_MOVE(ComFile)

    // The file's bytes for the table as it is.
    [[nodiscard]] QByteArray content() const;
    // Write File: an existing file is replaced only once the whole new one is on disk. Returns
    // false for an empty path (silently) or a failure (after the message).
    bool write(const QString& path);
    // Read File: checks the identification, then loads cell by cell.
    ReadResult read(const QString& path);

signals:
    // Cell k was stored from the file and marked; its box shows `shown`. A value outside the
    // cell's range was `clamped` to it, and the box counts as edited.
    void cellLoaded(int k, const QString& shown, bool clamped);
    // The whole table is in; it can be written from now on.
    void fileLoaded();

private:
    LinkEngine& engine_;
    ComTables& tables_;
};

}  // namespace velora
