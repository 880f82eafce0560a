#include "core/console/ConsoleCommands.h"

#include "core/link/LinkEngine.h"
#include "core/link/WireFormat.h"
#include "core/shared/LinkState.h"
#include "core/shared/NumericText.h"

#include <algorithm>
#include <array>

namespace velora {

namespace {

// Button index -> code, in the order of the captions 1110-1144.
constexpr std::array<const char*, ConsoleCommands::ButtonCount> kCodes{
    "AD", "ES", "SO", "SF", "SP", "ON", "OF", "ZO", "ZF", "DO", "DF", "NW",
    "TP", "AR", "HC", "R0", "R1", "TS", "VO", "VF", "VS", "VP", "VN", "PJ",
    "NJ", "JF", "S0", "S1", "S2", "S3", "RT", "QP", "EW", "ED", "EP"};

// Argument box -> the button that reads it: SetPoint, NeWpos, TqSel, VelSel.
constexpr std::array<int, ConsoleCommands::ArgumentCount> kArgumentButtons{4, 11, 17, 20};

constexpr std::array<ConsoleCommands::Limits, ConsoleCommands::ArgumentCount> kLimits{{
    {0, 63, false},               // point number
    {-99999999, 99999999, true},  // new position in pulses
    {0, 7, false},                // torque limit selection
    {0, 9, false},                // velocity selection
}};

}  // namespace

QString ConsoleCommands::code(int button) {
    if (button < 0 || button >= ButtonCount)
        return {};
    return QLatin1String(kCodes.at(static_cast<std::size_t>(button)));
}

int ConsoleCommands::argumentBox(int button) {
    const auto* at = std::find(kArgumentButtons.cbegin(), kArgumentButtons.cend(), button);
    return at == kArgumentButtons.cend() ? -1 : static_cast<int>(at - kArgumentButtons.cbegin());
}

ConsoleCommands::Limits ConsoleCommands::limits(int box) {
    return kLimits.at(static_cast<std::size_t>(std::clamp(box, 0, ArgumentCount - 1)));
}

QString ConsoleCommands::TxtNum_LostFocus(int box, const QString& text) {
    const std::optional<qint32> value = toWholeNumber(text);
    if (!value)
        return QStringLiteral("0");
    const Limits l = limits(box);
    if (*value < l.min)
        return QString::number(l.min);
    if (*value > l.max)
        return QString::number(l.max);
    return text;
}

QString ConsoleCommands::commandText(int axis, int button, const QString& argument) {
    QString text = wire::axisCharacter(axis) + code(button);
    const int box = argumentBox(button);
    if (box < 0)
        return text;
    // The box's own correction first, so that what is sent is what the box ends up showing.
    const qint32 value = toWholeNumber(TxtNum_LostFocus(box, argument)).value_or(0);
    text += limits(box).wide ? hex32(value) : hex16(value);
    return text;
}

void ConsoleCommands::CmdButton_Click(int button, const QString& argument) {
    if (button < 0 || button >= ButtonCount)
        return;
    post(commandText(engine_.state().AxisNumber, button, argument));
}

bool ConsoleCommands::CommandSend_Click(const QString& typed) {
    // Checked before it waits in the queue: the user hears at once, and the text does not
    // push out a command that is already waiting.
    if (typed.isEmpty() || !engine_.sender().admits(typed))
        return false;
    post(typed);
    return true;
}

void ConsoleCommands::post(const QString& text) {
    LinkState& s = engine_.state();
    engine_.queueCommand(text);
    // A running wave capture keeps the monitor chain still; the command goes now instead.
    if (s.RealTimeMonitor && s.run().Wave == WaveState::Idle)
        return;
    const QString now = s.run().QueuedCommand;
    engine_.dropQueuedCommand();
    engine_.SendCommand(now);
}

void ConsoleCommands::stop(int button) {
    LinkState& s = engine_.state();
    const QString text = commandText(s.AxisNumber, button, QString());
    // An alarm sends its query ahead of any queued command, turn after turn.
    if (s.RealTimeMonitor && s.run().MonitorRunning && s.run().Wave == WaveState::Idle &&
        !s.AlarmSeen) {
        engine_.queueCommand(text);
        return;
    }
    engine_.dropQueuedCommand();
    engine_.SendCommand(text);
}

}  // namespace velora
