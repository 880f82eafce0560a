#include "core/monitor/AlarmMonitor.h"

#include "core/link/LinkEngine.h"
#include "core/link/ReplyFields.h"
#include "core/shared/LinkState.h"
#include "core/shared/TextCatalogue.h"

namespace velora {

namespace {

const QString kAlarmData = QStringLiteral("AD");
const QString kAlarmReset = QStringLiteral("AR");
const QString kHistoryClear = QStringLiteral("HC");

// Characters before the payload: axis character and the two-letter code.
constexpr int kHeaderLength = 3;
constexpr int kMaskWidth = 2;
constexpr int kEntryWidth = 2;

}  // namespace

AlarmMonitor::AlarmMonitor(LinkEngine& engine, AlarmData& alarms, QObject* parent)
    : QObject(parent), engine_(engine), alarms_(alarms) {
    ReplyDispatcher& d = engine_.dispatcher();
    d.registerHandler(kAlarmData, [this](const QString& text) { return OnAdReply(text); });
    d.registerHandler(kAlarmReset, [this](const QString&) {
        OnArReply();
        return ReplyStatus::Handled;
    });
    d.registerHandler(kHistoryClear, [this](const QString&) {
        OnHcReply();
        return ReplyStatus::Handled;
    });
}

AlarmMonitor::~AlarmMonitor() {
    ReplyDispatcher& d = engine_.dispatcher();
    d.unregisterHandler(kAlarmData);
    d.unregisterHandler(kAlarmReset);
    d.unregisterHandler(kHistoryClear);
}

std::optional<AlarmData> AlarmMonitor::decode(const QString& reply) {
    // A short reply leaves the entries it does not reach empty.
    ReplyFields fields(reply, ReplyFields::Missing::ReadAsZero);
    AlarmData data;
    data.NowAlarm = static_cast<quint8>(fields.number(0, kMaskWidth));
    const int payloadLength = static_cast<int>(reply.size()) - kHeaderLength;
    for (int i = 0; i < AlarmData::HistoryLength; ++i) {
        // Only the second character of an entry holds the alarm number.
        const int at = kMaskWidth + i * kEntryWidth + 1;
        if (at >= payloadLength)
            break;
        const int number = fields.digit(at);
        if (number > AlarmData::AlarmCount)
            return std::nullopt;
        data.AlarmHistory[static_cast<size_t>(i)] = static_cast<qint16>(number);
    }
    if (!fields.ok())
        return std::nullopt;
    return data;
}

ReplyStatus AlarmMonitor::OnAdReply(const QString& reply) {
    const std::optional<AlarmData> decoded = decode(reply);
    if (!decoded)
        return ReplyStatus::Malformed;
    alarms_ = *decoded;
    emit alarmsChanged(alarms_);
    engine_.EnableControls(true);
    return ReplyStatus::Handled;
}

void AlarmMonitor::OnArReply() {
    engine_.EnableControls(true);
    askAlarmData();
}

void AlarmMonitor::OnHcReply() {
    engine_.EnableControls(true);
    askAlarmData();
}

void AlarmMonitor::askAlarmData() {
    engine_.SendCommand(engine_.axisPrefix() + kAlarmData);
}

void AlarmMonitor::alarmReset() {
    engine_.PostCommand(engine_.axisPrefix() + kAlarmReset);
}

void AlarmMonitor::historyClear() {
    engine_.PostCommand(engine_.axisPrefix() + kHistoryClear);
}

QString AlarmMonitor::alarmName(int number, Language languageId) {
    switch (number) {
        case 1:
            return TextCatalogue::text(languageId, Text::AlarmName01EepromError);
        case 2:
            return TextCatalogue::text(languageId, Text::AlarmName02EncoderError);
        case 3:
            return TextCatalogue::text(languageId, Text::AlarmName03SystemError);
        case 4:
            return TextCatalogue::text(languageId, Text::AlarmName04OverDeviation);
        case 5:
            return TextCatalogue::text(languageId, Text::AlarmName05OverCurrent);
        case 6:
            return TextCatalogue::text(languageId, Text::AlarmName06OverHeat);
        case 7:
            return TextCatalogue::text(languageId, Text::AlarmName07PowVoltageError);
        case 8:
            return TextCatalogue::text(languageId, Text::AlarmName08CtrlVoltageError);
        default:
            return {};
    }
}

QString AlarmMonitor::alarmCause(int number, Language languageId) {
    return number >= 1 && number <= AlarmData::AlarmCount
               ? TextCatalogue::text(languageId, Text::AlarmCauseEepromError, number - 1)
               : QString();
}

QString AlarmMonitor::alarmRemedy(int number, Language languageId) {
    return number >= 1 && number <= AlarmData::AlarmCount
               ? TextCatalogue::text(languageId, Text::AlarmRemedyEepromError, number - 1)
               : QString();
}

QString AlarmMonitor::alarmAdvice(int number, Language languageId) {
    if (number < 1 || number > AlarmData::AlarmCount)
        return {};
    const QString separator =
        languageId == Language::English ? QStringLiteral(": ") : QStringLiteral("：");
    return TextCatalogue::text(languageId, Text::HelpCause) + separator +
           alarmCause(number, languageId) + QLatin1Char('\n') +
           TextCatalogue::text(languageId, Text::HelpRemedy) + separator +
           alarmRemedy(number, languageId);
}

AlarmMonitor::HistoryCaptions AlarmMonitor::historyCaptions(const AlarmData& alarms,
                                                            Language languageId) {
    HistoryCaptions captions;
    for (size_t i = 0; i < captions.size(); ++i)
        captions[i] = alarmName(alarms.AlarmHistory[i], languageId);
    return captions;
}

}  // namespace velora
