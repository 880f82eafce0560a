#pragma once

#include <QByteArray>
#include <QString>

#include <array>

#include "core/shared/Language.h"

namespace velora {

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

    // Send state.
    QString LastCommand;
    QString LastCode;
    bool AwaitingReply = false;
    int RetryCount = 0;
    int TickCount = 0;
    QString QueuedCommand;
    QByteArray ReceiveBuffer;
    QString ReplyCode;
    int MissedPolls = 0;
    int TransmitTimeMs = 0;

    // Run state.
    bool PortOpen = false;
    bool MonitorRunning = false;
    bool AlarmSeen = false;
    quint32 ServoStatus = 0;
    int DriverVersion = 0;  // software version x 100, from parameter 119
    int WaveState = 0;      // 0 idle, 1 armed, 2 triggered, 3 receiving the record
    bool BusyDialogShown = false;
    bool Searching = false;
    bool EchoPolls = false;

    // Block transfers.
    bool ParamTransferActive = false;
    bool PointTransferActive = false;
    bool ComTableTransferActive = false;

    [[nodiscard]] int baudRateValue() const { return BaudRate.toInt(); }
};

}  // namespace velora
