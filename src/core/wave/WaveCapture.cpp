#include "core/wave/WaveCapture.h"

#include "core/link/LinkEngine.h"
#include "core/link/LinkUi.h"
#include "core/link/ReplyFields.h"
#include "core/shared/Global.h"

namespace velora {

namespace {

const QString kWm = QStringLiteral("wm");
const QString kWr = QStringLiteral("wr");
const QString kWd = QStringLiteral("wd");
const QString kWq = QStringLiteral("wq");

}  // namespace

WaveCapture::WaveCapture(LinkEngine& engine, Global& global, QObject* parent)
    : QObject(parent), engine_(engine), global_(global) {
    ReplyDispatcher& d = engine_.dispatcher();
    d.registerHandler(kWm, [this](const QString& text) { return OnWmReply(text); });
    d.registerHandler(kWr, [this](const QString& text) { return OnWrReply(text); });
    d.registerHandler(kWd, [this](const QString& text) { return OnWdReply(text); });
    d.registerHandler(kWq, [this](const QString& text) { return OnWqReply(text); });
}

WaveCapture::~WaveCapture() {
    ReplyDispatcher& d = engine_.dispatcher();
    for (const QString& code : {kWm, kWr, kWd, kWq})
        d.unregisterHandler(code);
}

QString WaveCapture::settingsPayload() const {
    const WaveMonSettings& w = global_.WaveMon;
    return QStringLiteral("%1%2%3%4%5")
        .arg(w.TimeScale)
        .arg(w.Trig)
        .arg(w.LgcSel)
        .arg(w.Edge)
        .arg(QString::number(global_.Wave.TriggerPosition, 16).toUpper());
}

void WaveCapture::run() {
    engine_.PostCommand(engine_.axisPrefix() + kWm + settingsPayload());
}

bool WaveCapture::sendTriggerSettings() {
    const LinkState& s = engine_.state();
    if (!s.Online || !s.run().MonitorRunning)
        return false;
    engine_.PostCommand(engine_.axisPrefix() + QStringLiteral("wt") + settingsPayload());
    return true;
}

void WaveCapture::cancel() {
    const QString text = engine_.axisPrefix() + kWq;
    // A capture holds the monitor chain, so its Cancel goes at once; with no capture running a
    // monitor poll may be on the line, and the cancel waits for the next free slot instead.
    if (engine_.state().run().Wave == WaveState::Idle)
        engine_.PostCommand(text);
    else
        engine_.SendCommand(text);
}

ReplyStatus WaveCapture::OnWmReply(const QString&) {
    engine_.setWaveState(WaveState::Armed);
    engine_.ui().setWaveReadingShown(true);
    engine_.ui().setWaveCancelEnabled(true);
    emit armed();
    return ReplyStatus::Handled;
}

ReplyStatus WaveCapture::OnWrReply(const QString&) {
    engine_.setWaveState(WaveState::Triggered);
    // The USB adapter starts the long record with an empty spool and the line free.
    if (Transport* port = engine_.transport(); port && port->backEnd() == BackEnd::UsbSerial) {
        port->clearReceiveSpool();
        port->setTransmitEnable(false);
    }
    emit triggered();
    return ReplyStatus::Handled;
}

ReplyStatus WaveCapture::OnWdReply(const QString& reply) {
    // A record cut short reads as zeros where it ends, as the drive's record is taken
    // unchecked; a field that is not a number spoils the record.
    ReplyFields fields(reply, ReplyFields::Missing::ReadAsZero);
    WaveStore::Record samples{};
    WaveStore::LogicRecord logic{};
    for (int i = 0; i < WaveStore::SampleCount; ++i) {
        const int at = SampleWidth * i;
        const auto n = static_cast<std::size_t>(i);
        samples[n] = {static_cast<qint16>(fields.number(at, 4)),
                      static_cast<qint16>(fields.number(at + 4, 4))};
        // Of the level's digit only bit 0 is the level, as the display draws it.
        logic[n] = static_cast<quint16>(fields.digit(at + 8) & 1);
    }
    if (!fields.ok())
        return ReplyStatus::Malformed;
    WaveStore& store = global_.Wave;
    store.WaveSamples[0] = samples;
    store.WaveLogic[0] = logic;
    engine_.ui().setWaveCancelEnabled(true);
    store.shiftSlots();
    emit recordReceived();
    finish();
    return ReplyStatus::Handled;
}

ReplyStatus WaveCapture::OnWqReply(const QString&) {
    emit cancelled();
    finish();
    return ReplyStatus::Handled;
}

void WaveCapture::finish() {
    engine_.resetWaveDisplay();
    engine_.EnableControls(true);
    // Sent whether or not the monitor is on: this restarts the chain the capture stopped.
    engine_.SendCommand(engine_.axisPrefix() + QStringLiteral("ma"));
}

}  // namespace velora
