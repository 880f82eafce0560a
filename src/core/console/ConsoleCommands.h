#pragma once

#include <QString>
#include <QtGlobal>

namespace velora {

class LinkEngine;

// What the command console sends: the 35 single-action commands with their arguments, the
// limits of the four argument boxes, and the posting of a command (button or typed text).
// No widgets: the console window only hands over what the user did.
class ConsoleCommands {
public:
    static constexpr int ButtonCount = 35;
    static constexpr int ArgumentCount = 4;
    // Buttons from here on ("QP", "EW", "ED", "EP") need a drive of version 1.10 or later.
    static constexpr int FirstVersionedButton = 31;
    static constexpr int VersionedButtonsFrom = 110;

    struct Limits {
        qint32 min;
        qint32 max;
        bool wide;  // sent as a 32-bit value, else as a 16-bit one
    };

    explicit ConsoleCommands(LinkEngine& engine) : engine_(engine) {}
    Q_DISABLE_COPY_MOVE(ConsoleCommands)

    // The two-letter code of button 0..34 ("AD", "ES", ...); empty outside.
    [[nodiscard]] static QString code(int button);
    // The argument box a button reads, or -1 when it takes no argument.
    [[nodiscard]] static int argumentBox(int button);
    [[nodiscard]] static Limits limits(int box);
    // The text an argument box shows after losing focus: "0" for a text that is not a number,
    // the nearer limit for a number outside them, the text as typed otherwise.
    [[nodiscard]] static QString TxtNum_LostFocus(int box, const QString& text);
    // Axis character, code and, for the four buttons that take one, the argument in hex.
    [[nodiscard]] static QString commandText(int axis, int button, const QString& argument);

    // A button: its command posted for the configured axis.
    void CmdButton_Click(int button, const QString& argument);
    // The typed text exactly as written; false when it was refused (the user has been told)
    // or empty, so that it is neither sent nor remembered.
    bool CommandSend_Click(const QString& typed);
    // The posting rule, except that a command waits for the monitor chain only while no wave
    // capture holds the chain still.
    void post(const QString& text);
    // A stop button (EmcStop, ServoofF, JogofF): it takes the place of whatever command waits,
    // so that nothing queued before it follows it, and leaves with the monitor chain's next
    // turn, or at once when no running chain would carry it soon.
    void stop(int button);

private:
    LinkEngine& engine_;
};

}  // namespace velora
