#pragma once

#include "core/link/ReplyDispatcher.h"

#include <QObject>
#include <QString>

namespace velora {

class LinkEngine;
struct LinkState;
struct PointTables;

// Moves the point table between the host's mirror and the drive: reading all 64 points with
// "ta", writing the marked points one per reply with "TW" (also into non-volatile memory) or
// "TT" (RAM only), and continuing a one-by-one read when a "TR" reply arrives during a
// transfer. It owns the replies "ta", "TR", "TW" and "TT" for as long as it lives, so it is
// built once beside the link; the engine must outlive it. Windows (or a command-line tool)
// follow it through its signals.
class PointTransfer : public QObject {
    Q_OBJECT
public:
    enum class Chain { None, ReadAll, ReadEach, Write };
    Q_ENUM(Chain)

    PointTransfer(LinkEngine& engine, PointTables& tables, QObject* parent = nullptr);
    ~PointTransfer() override;
    Q_DISABLE_COPY_MOVE(PointTransfer)

    // Read Servo: asks for the whole table and shows the busy dialog.
    void ReadAllPoints();
    // Write Servo: sends the marked points in ascending order. Returns false, having sent and
    // shown nothing, when none is marked.
    bool WriteChangedPoints();

    // The write-one text of a point, its ModeWord packed first; the code follows the option as
    // it is now.
    [[nodiscard]] QString BuildPointWriteCommand(int point);
    [[nodiscard]] QString writeCode() const;

signals:
    // All 64 points were replaced and their marks cleared.
    void tableRefreshed();
    // One point was read by the one-by-one chain; its mark stays as it was.
    void pointRefreshed(int point);
    // The point reached the drive and is no longer marked (ResetRow).
    void pointWritten(int point);
    // A chain ended in order; after ReadAll and Write the Write Servo button is disabled
    // before the controls are unlocked again.
    void transferFinished(velora::PointTransfer::Chain chain);

private:
    [[nodiscard]] ReplyStatus OnPointTableAll(const QString& text);
    [[nodiscard]] ReplyStatus OnPointRead(const QString& text);
    [[nodiscard]] ReplyStatus OnPointWritten();
    [[nodiscard]] bool chainRunning(Chain chain) const;
    void start(Chain chain, const QString& command);
    void finish(Chain chain);

    LinkEngine& engine_;
    LinkState& link_;
    PointTables& tables_;
    Chain chain_ = Chain::None;
};

}  // namespace velora
