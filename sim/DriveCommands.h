#pragma once

#include "sim/DriveModel.h"
#include "sim/WaveCapture.h"

#include <QHash>
#include <QString>
#include <QStringView>

#include <functional>

namespace velora::sim {

// What the drive does with one command: answer with data after its code, answer with an
// error class, or stay silent.
struct CommandResult {
    enum class Kind { Reply, Error, Silent };
    Kind kind = Kind::Reply;
    QString data;
    int errorClass = 0;

    [[nodiscard]] static CommandResult reply(QString data = {});
    [[nodiscard]] static CommandResult error(int errorClass);
    [[nodiscard]] static CommandResult silent();
};

// The drive's command table: each code's handler parses the data, acts on the model and
// builds the reply. Error classes: 0 unknown code or unreadable data, 1 data out of range,
// 3 refused in the present state.
class DriveCommands {
public:
    static constexpr int IllegalCommand = 0;
    static constexpr int IllegalData = 1;
    static constexpr int ExecutionFailure = 3;
    // The longest command text the drive takes (axis, code and data).
    static constexpr int MaxTextLength = 30;

    DriveCommands(DriveModel& model, WaveCapture& wave);
    Q_DISABLE_COPY_MOVE(DriveCommands)

    [[nodiscard]] CommandResult execute(const QString& code, QStringView data);
    [[nodiscard]] bool knows(const QString& code) const { return handlers_.contains(code); }

private:
    using Handler = std::function<CommandResult(QStringView)>;

    void addTransferCommands();
    void addTableCommands();
    void addOperatingCommands();
    void addMotionCommands();
    void add(const char* code, Handler handler);
    // Handlers for commands without data, with one number, and with "number;number".
    [[nodiscard]] static Handler noData(std::function<CommandResult()> f);
    [[nodiscard]] static Handler oneNumber(int bits, std::function<CommandResult(qint32)> f);
    [[nodiscard]] static Handler twoNumbers(int firstBits, int secondBits,
                                            std::function<CommandResult(qint32, qint32)> f);
    [[nodiscard]] static CommandResult fromRefusal(DriveModel::Refusal refusal);
    [[nodiscard]] CommandResult writePoint(QStringView data, bool nonVolatile);
    [[nodiscard]] CommandResult waveSettings(QStringView data, bool arm);
    [[nodiscard]] CommandResult needsVersion110(const std::function<void()>& action) const;

    DriveModel& model_;
    WaveCapture& wave_;
    QHash<QString, Handler> handlers_;
};

}  // namespace velora::sim
