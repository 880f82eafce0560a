#include "wave/WaveCapture.h"

#include "link/LinkEngine.h"
#include "link/LinkUi.h"
#include "link/WireFormat.h"
#include "shared/Global.h"

namespace velora {

namespace {

const QString kWm = QStringLiteral("wm");
const QString kWr = QStringLiteral("wr");
const QString kWd = QStringLiteral("wd");
const QString kWq = QStringLiteral("wq");
// Axis character and code before the payload.
constexpr int kPayloadStart = 3;

// A four-digit hex field as a signed 16-bit value; a missing field reads as 0, as the drive's
// record is taken unchecked.
qint16 signedField(const QString& reply, int start) {
    return static_cast<qint16>(HexToLong(reply.mid(start, 4)));
}

quint16 logicField(const QString& reply, int at) {
    // A character that is not a digit reads as a low level; of a digit only bit 0 is the level,
    // as the display draws it, so the store holds nothing but 0 and 1.
    const QChar c = at < reply.size() ? reply.at(at) : QChar();
    return c.isDigit() && c.unicode() < 128 ? static_cast<quint16>(c.digitValue() & 1) : quint16(0);
}

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
    if (!s.Online || !s.MonitorRunning)
        return false;
    engine_.PostCommand(engine_.axisPrefix() + QStringLiteral("wt") + settingsPayload());
    return true;
}

void WaveCapture::cancel() {
    engine_.SendCommand(engine_.axisPrefix() + kWq);
}

ReplyStatus WaveCapture::OnWmReply(const QString&) {
    engine_.state().WaveState = 1;
    engine_.ui().setWaveReadingShown(true);
    engine_.ui().setWaveCancelEnabled(true);
    emit armed();
    return ReplyStatus::Handled;
}

ReplyStatus WaveCapture::OnWrReply(const QString&) {
    engine_.state().WaveState = 2;
    // The USB adapter starts the long record with an empty spool and the line free.
    if (Transport* port = engine_.transport(); port && port->backEnd() == BackEnd::UsbSerial) {
        port->clearReceiveSpool();
        port->setTransmitEnable(false);
    }
    emit triggered();
    return ReplyStatus::Handled;
}

ReplyStatus WaveCapture::OnWdReply(const QString& reply) {
    WaveStore& store = global_.Wave;
    for (int i = 0; i < WaveStore::SampleCount; ++i) {
        const int at = kPayloadStart + SampleWidth * i;
        const auto n = static_cast<std::size_t>(i);
        store.WaveSamples[0][n] = {signedField(reply, at), signedField(reply, at + 4)};
        store.WaveLogic[0][n] = logicField(reply, at + 8);
    }
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
