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
    LinkUi& ui = engine_.ui();
    ui.setClock(engine_.now());
    ui.setComIndicator(s.Online && s.RealTimeMonitor && s.MonitorRunning);
    if (!s.RealTimeMonitor)
        s.MonitorRunning = false;

    engine_.sender().countTick();
    if (s.AwaitingReply) {
        if (engine_.sender().supervise())
            return;  // the port search used this tick
    } else if (s.Online && s.PortOpen && s.WaveState == 0) {
        sendSlot();
    }
    showWaveProgress();
}

void PollingCycle::sendSlot() {
    LinkState& s = engine_.state();
    if (s.TickCount < 1) {
        ++s.TickCount;
        return;
    }
    s.TickCount = 0;
    if (!s.QueuedCommand.isEmpty()) {
        const QString queued = s.QueuedCommand;
        s.QueuedCommand.clear();
        engine_.SendCommand(queued);
        return;
    }
    if (!s.RealTimeMonitor || s.AxisNumber == wire::AllAxes)
        return;
    engine_.sendPoll();
    if (++s.MissedPolls <= MaxMissedPolls)
        return;
    // The drive has stopped answering: nothing can be sent until a reply comes back.
    s.MissedPolls = MaxMissedPolls;
    s.MonitorRunning = false;
    engine_.DisableCommControls();
    if (s.AlarmSeen) {
        engine_.EnableControls(true);
        engine_.ui().setComText(0, QString());
        s.AlarmSeen = false;
    }
}

void PollingCycle::showWaveProgress() {
    LinkState& s = engine_.state();
    LinkUi& ui = engine_.ui();
    const Transport* transport = engine_.transport();
    if (!transport || !ui.waveReadingShown() || s.WaveState < 1 || s.WaveState > 3)
        return;
    const QByteArray& partial = s.ReceiveBuffer;
    if (partial.mid(transport->codeOffset(), 2) != "wd")
        return;
    ui.showWaveProgress(TextCatalogue::text(s.LanguageId, Text::WaveWaveDataReceiving),
                        waveProgressMarks(static_cast<int>(partial.size()), s.LanguageId));
    s.WaveState = 3;
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
    LinkState& s = engine_.state();
    if (s.EchoPolls) {
        s.EchoPolls = false;
        engine_.ui().setComText(0, QString());
        engine_.ui().setComText(1, QString());
    } else {
        s.EchoPolls = true;
    }
}

}  // namespace velora
