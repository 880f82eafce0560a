#pragma once

#include "app/ChildWindow.h"

#include <array>

class QLabel;
class QLineEdit;

namespace velora {

// The command console. For now it shows the exchange of the link: the last command sent
// (ComText(0)) and the last reply received (ComText(1)); the command buttons and the free-text
// send arrive with the console subsystem.
class ComConsoleWindow : public ChildWindow {
    Q_OBJECT
public:
    explicit ComConsoleWindow(QWidget* parent = nullptr);

    void LanguageSelect(int languageId) override;
    void EnableControls(bool enable) override;

    // Index 0 the sent text, index 1 the received one.
    void setComText(int index, const QString& text);
    [[nodiscard]] QString comText(int index) const;
    // The send button and the command buttons.
    void disableConsole();
    // Under the sending rule of every window: never while the link is down.
    [[nodiscard]] bool consoleEnabled() const { return consoleEnabled_ && sendingAllowed(); }
    // Whether the free-text Send button has been revealed (the options dialog then offers the
    // RAM-only writes).
    [[nodiscard]] bool commandSendVisible() const { return false; }

private:
    std::array<QLabel*, 2> Label1{};
    std::array<QLineEdit*, 2> ComText{};
    bool consoleEnabled_ = true;
};

}  // namespace velora
