#pragma once

#include "core/link/ReplyDispatcher.h"

#include <QObject>
#include <QString>

namespace velora {

class LinkEngine;
struct ComTables;
struct LinkState;

// Moves the command table between the host's copy and the drive: reading all with "ca",
// writing the marked cells one per reply with "VW"/"CW"/"QW" (also into non-volatile memory) or
// "VT"/"CT"/"QT" (RAM only), and continuing a one-by-one read ("VR", "CR", "QR") when such a
// reply arrives during a transfer. It owns those replies for as long as it lives, so it is
// built once beside the link; the engine must outlive it. Windows (or a command-line tool)
// follow it through its signals.
class ComTransfer : public QObject {
    Q_OBJECT
public:
    enum class Chain { None, ReadAll, ReadEach, Write };
    Q_ENUM(Chain)

    ComTransfer(LinkEngine& engine, ComTables& tables, QObject* parent = nullptr);
    ~ComTransfer() override;
    Q_DISABLE_COPY_MOVE(ComTransfer)

    // Read Servo: asks for the whole table and shows the busy dialog.
    void readAll();
    // Write Servo: sends the marked cells in ascending order. Returns false, having sent and
    // shown nothing, when none is marked.
    bool writeChanged();

    // The write text of cell k, its code chosen by the option as it is now.
    [[nodiscard]] QString writeCommand(int k) const;

signals:
    // Every cell was replaced and its mark cleared.
    void tableRefreshed();
    // One cell was read by the one-by-one chain.
    void cellRefreshed(int k);
    // The cell reached the drive and is no longer marked (ResetComRow).
    void cellWritten(int k);
    // A chain ended in order; after ReadAll and Write the Write Servo button is disabled.
    void transferFinished(velora::ComTransfer::Chain chain);

private:
    [[nodiscard]] ReplyStatus OnComAll(const QString& text);
    [[nodiscard]] ReplyStatus OnComWritten();
    [[nodiscard]] ReplyStatus OnEntryRead(const QString& text, int digits);
    void start(Chain chain, const QString& command);

    LinkEngine& engine_;
    LinkState& link_;
    ComTables& tables_;
    Chain chain_ = Chain::None;
};

}  // namespace velora
