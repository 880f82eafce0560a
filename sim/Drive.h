#pragma once

#include "sim/DriveCommands.h"
#include "sim/DriveModel.h"
#include "sim/WaveCapture.h"

#include <QChar>
#include <QString>
#include <QStringList>

#include <optional>

namespace velora::sim {

// One simulated drive: its state, its wave recorder and its command table. Texts in and out
// are frame contents (axis character, code, data) without the frame bytes.
class Drive {
public:
    Drive(int axis, int version);
    Q_DISABLE_COPY_MOVE(Drive)

    // Carries out a command text addressed to this drive; the reply text, or nothing when the
    // command is answered by silence (reset).
    [[nodiscard]] std::optional<QString> execute(const QString& text);
    // A command to all axes: carried out, never answered.
    void executeBroadcast(const QString& text);
    // The reply that refuses the code with an error class, without carrying it out.
    [[nodiscard]] QString errorReply(int errorClass) const;

    // Time passes for the drive: motion, and the wave recorder, which may have replies to send.
    void advance(int ms);
    // Replies the drive sends by itself (wr when the trigger is seen, wd with the record).
    [[nodiscard]] QStringList takeUnsolicited();

    [[nodiscard]] DriveModel& model() { return model_; }
    [[nodiscard]] const DriveModel& model() const { return model_; }
    [[nodiscard]] WaveCapture& wave() { return wave_; }
    [[nodiscard]] int axis() const { return model_.axis(); }
    [[nodiscard]] QChar axisCharacter() const;
    [[nodiscard]] int baudRate() const { return model_.baudRate(); }
    [[nodiscard]] int replyWaitMs() const { return model_.memory().param(params::ReplyWait); }

private:
    [[nodiscard]] CommandResult run(const QString& text);
    [[nodiscard]] WaveSnapshot snapshot() const;

    DriveModel model_;
    WaveCapture wave_;
    DriveCommands commands_;
    QStringList unsolicited_;
};

}  // namespace velora::sim
