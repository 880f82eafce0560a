#pragma once

#include "core/link/ReplyDispatcher.h"
#include "core/shared/AlarmData.h"
#include "core/shared/Language.h"

#include <QObject>
#include <QString>

#include <array>
#include <optional>

namespace velora {

class LinkEngine;

// The alarm replies: "AD" fills the alarm mirror, "AR" (alarm reset) and "HC" (history clear)
// ask for the alarm data again. Registers itself as the engine's handler of the three codes; must
// not outlive the engine.
class AlarmMonitor : public QObject {
    Q_OBJECT
public:
    using HistoryCaptions = std::array<QString, AlarmData::HistoryLength>;

    AlarmMonitor(LinkEngine& engine, AlarmData& alarms, QObject* parent = nullptr);
    ~AlarmMonitor() override;
    Q_DISABLE_COPY_MOVE(AlarmMonitor)

    // Reply handlers.
    [[nodiscard]] ReplyStatus OnAdReply(const QString& reply);
    void OnArReply();
    void OnHcReply();

    // The alarm window's buttons: posted, so they wait for the monitor chain while it runs.
    void alarmReset();
    void historyClear();

    [[nodiscard]] const AlarmData& alarms() const { return alarms_; }

    // The payload of an "AD" reply (axis character, "AD", payload); nullopt when the mask is not
    // hex or a history entry is not an alarm number 0..8. Missing characters read as zeros.
    [[nodiscard]] static std::optional<AlarmData> decode(const QString& reply);
    // The name of alarm 1..8 ("01：EEPROM Error", ...), empty for any other number.
    [[nodiscard]] static QString alarmName(int number, Language languageId);
    // The likely cause of alarm 1..8 and what to do, empty for any other number.
    [[nodiscard]] static QString alarmCause(int number, Language languageId);
    [[nodiscard]] static QString alarmRemedy(int number, Language languageId);
    // Both as the lines "Cause: ..." and "Remedy: ...".
    [[nodiscard]] static QString alarmAdvice(int number, Language languageId);
    // The history labels: the name of each entry's alarm, empty for empty entries.
    [[nodiscard]] static HistoryCaptions historyCaptions(const AlarmData& alarms,
                                                         Language languageId);

signals:
    // A new alarm data reply was stored: the now-alarm lamps and the history labels follow it.
    void alarmsChanged(const velora::AlarmData& alarms);

private:
    void askAlarmData();

    LinkEngine& engine_;
    AlarmData& alarms_;
};

}  // namespace velora
