#include "core/link/PollingCycle.h"

#include "core/link/LinkEngine.h"
#include "core/link/LinkUi.h"
#include "core/link/WireFormat.h"
#include "core/shared/LinkState.h"
#include "core/shared/Rounding.h"
#include "core/shared/TextCatalogue.h"

namespace velora {

namespace {
// Characters of a wave record per progress mark.
constexpr double kCharactersPerMark = 187.0;
}  // namespace

void PollingCycle::tick() {
    LinkState& s = engine_.state();
    LinkSupervision& run = engine_.supervision();
    LinkUi& ui = engine_.ui();
    ui.setClock(engine_.now());
    ui.setComIndicator(s.Online && s.RealTimeMonitor && run.MonitorRunning);
    if (!s.RealTimeMonitor)
        run.MonitorRunning = false;

    engine_.sender().countTick();
    if (run.AwaitingReply) {
        if (engine_.sender().supervise())
            return;  // the port search used this tick
    } else if (s.Online && run.PortOpen && run.Wave == WaveState::Idle) {
        sendSlot();
    }
    showWaveProgress();
}

void PollingCycle::sendSlot() {
    LinkState& s = engine_.state();
    LinkSupervision& run = engine_.supervision();
    if (run.TickCount < 1) {
        ++run.TickCount;
        return;
    }
    run.TickCount = 0;
    if (!run.QueuedCommand.isEmpty()) {
        const QString queued = run.QueuedCommand;
        run.QueuedCommand.clear();
        engine_.SendCommand(queued);
        return;
    }
    if (!s.RealTimeMonitor || s.AxisNumber == wire::AllAxes)
        return;
    engine_.sendPoll();
    if (++run.MissedPolls <= MaxMissedPolls)
        return;
    // The drive has stopped answering: nothing can be sent until a reply comes back.
    run.MissedPolls = MaxMissedPolls;
    run.MonitorRunning = false;
    engine_.DisableCommControls();
    if (s.AlarmSeen) {
        engine_.EnableControls(true);
        engine_.ui().setComText(0, QString());
        s.AlarmSeen = false;
    }
}

void PollingCycle::showWaveProgress() {
    LinkState& s = engine_.state();
    LinkSupervision& run = engine_.supervision();
    LinkUi& ui = engine_.ui();
    const Transport* transport = engine_.transport();
    if (!transport || !ui.waveReadingShown() || run.Wave == WaveState::Idle)
        return;
    const QByteArray& partial = s.ReceiveBuffer;
    if (partial.mid(transport->codeOffset(), 2) != "wd")
        return;
    ui.showWaveProgress(TextCatalogue::text(s.LanguageId, Text::WaveWaveDataReceiving),
                        waveProgressMarks(static_cast<int>(partial.size()), s.LanguageId));
    run.Wave = WaveState::ReceivingRecord;
    engine_.EnableControls(false);
    ui.setWaveCancelEnabled(false);
}

QString PollingCycle::waveProgressMarks(int receivedLength, Language languageId) {
    const QString mark =
        languageId == Language::English ? QStringLiteral("##") : QStringLiteral("\u25A0");
    const auto count = roundHalfEven(receivedLength / kCharactersPerMark) + 1;
    return mark.repeated(static_cast<int>(count));
}

void PollingCycle::echoSwitch(Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
    if (button != Qt::MiddleButton || modifiers != (Qt::ControlModifier | Qt::AltModifier))
        return;
    LinkSupervision& run = engine_.supervision();
    if (run.EchoPolls) {
        run.EchoPolls = false;
        engine_.ui().setComText(0, QString());
        engine_.ui().setComText(1, QString());
    } else {
        run.EchoPolls = true;
    }
}

}  // namespace velora
