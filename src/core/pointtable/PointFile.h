#pragma once

#include "core/pointtable/PointEdit.h"

#include <QObject>
#include <QString>

namespace velora {

class LinkEngine;
struct PointTables;

// The point table file (.tbl): an identification line, then the seven fields of each of the
// 64 points in decimal, one per line, CR LF line ends, 449 lines. Writing saves the whole
// mirror; reading loads it and marks every point for the next Write Servo. Paths come from the
// caller (the window's file dialog, or a command-line tool); every failure is shown here
// through the link's modal messages. Callers follow the loaded values through the signals.
class PointFile : public QObject {
    Q_OBJECT
public:
    static constexpr int LineCount = 449;

    enum class ReadResult {
        Ignored,  // empty path: nothing was done
        Failed,   // refused or broken; the message was shown, points before the failure stay
        Loaded,   // every point is in and marked
    };
    Q_ENUM(ReadResult)

    PointFile(LinkEngine& engine, PointTables& tables, QObject* parent = nullptr);
    ~PointFile() override;
    Q_DISABLE_COPY_MOVE(PointFile)

    // The file's bytes for the mirror as it is.
    [[nodiscard]] QByteArray content() const;
    // Write File: an existing file is replaced only once the whole new one is on disk. Returns
    // false for an empty path (silently) or a failure (after the message).
    bool WritePointFile(const QString& path);
    // Read File: checks the identification, then loads point by point.
    ReadResult ReadPointFile(const QString& path);

signals:
    // A field of `point` was stored from the file; its box shows `shown`. A value outside the
    // field's range was `clamped` to it, and the row counts as edited.
    void fieldLoaded(int point, velora::PointField field, const QString& shown, bool clamped);
    // All seven fields of `point` are in: it is marked loaded (MarkLoaded).
    void pointLoaded(int point);
    // The whole table is in; the table is valid from now on.
    void fileLoaded();

private:
    LinkEngine& engine_;
    PointTables& tables_;
};

}  // namespace velora
