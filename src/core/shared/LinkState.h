#pragma once

#include <QByteArray>
#include <QString>

#include <array>

#include "core/shared/Language.h"

namespace velora {

// Where a wave capture stands.
enum class WaveState { Idle, Armed, Triggered, ReceivingRecord };

// The block transfers, one a table.
enum class Transfer { Params, Points, Commands };

// The send, run and transfer state of the link. The link engine and its parts (sender,
// dispatcher, polling cycle) write it; every other file reads it through LinkState::run().
struct LinkSupervision {
    // Send state.
    QString LastCommand;
    QString LastCode;
    bool AwaitingReply = false;
    int RetryCount = 0;
    int TickCount = 0;
    QString QueuedCommand;
    QString ReplyCode;
    int MissedPolls = 0;
    int TransmitTimeMs = 0;

    // Run state.
    bool PortOpen = false;
    bool MonitorRunning = false;
    WaveState Wave = WaveState::Idle;
    bool BusyDialogShown = false;
    bool Searching = false;
    bool EchoPolls = false;

    // Block transfers.
    bool ParamTransferActive = false;
    bool PointTransferActive = false;
    bool ComTableTransferActive = false;

    [[nodiscard]] bool transferActive(Transfer kind) const {
        switch (kind) {
            case Transfer::Params:
                return ParamTransferActive;
            case Transfer::Points:
                return PointTransferActive;
            case Transfer::Commands:
                return ComTableTransferActive;
        }
        return false;
    }
    [[nodiscard]] bool anyTransferActive() const {
        return ParamTransferActive || PointTransferActive || ComTableTransferActive;
    }
};

// The shared record of the serial link and the program's global flags. Field names follow the
// names the whole program uses for them, so a reader can trace each one through every window.
struct LinkState {
    // Frame characters.
    char FrameStart = 0x02;
    char FrameEndEtx = 0x03;
    char FrameEnd = 0x04;

    // Configuration.
    bool UsbMode = false;
    int PortNumber = 1;
    int AxisNumber = 0;  // 0..14, 15 addresses every drive on the line
    QString BaudRate = QStringLiteral("9600");
    bool Online = true;
    bool RealTimeMonitor = true;
    Language LanguageId = Language::English;
    // Parameter, point table and command table writes also go to non-volatile memory.
    std::array<bool, 3> NonVolatileWrite{true, true, true};

    // What the drive last told the monitor and the identification.
    bool AlarmSeen = false;
    quint32 ServoStatus = 0;
    int DriverVersion = 0;  // software version x 100, from parameter 119
    // The reply being assembled; the port's back-end feeds it.
    QByteArray ReceiveBuffer;

    // What the link is doing; only the link engine changes it.
    [[nodiscard]] const LinkSupervision& run() const { return run_; }

    [[nodiscard]] int baudRateValue() const { return BaudRate.toInt(); }

private:
    friend class LinkEngine;  // the one writer; it lends its parts a mutable reference
    LinkSupervision run_;
};

}  // namespace velora
