#pragma once

#include "core/console/CommandHistory.h"
#include "core/console/ConsoleCommands.h"
#include "core/shared/Language.h"
#include "gui/shared/ChildWindow.h"

#include <QList>

#include <array>

class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace velora {

class LinkEngine;

// The command console: the drive's single-action commands as buttons in four groups, the four
// argument boxes, the last command sent (ComText(0)) and the last reply (ComText(1)). A hidden
// free-text row sends any typed command; Up and Down recall what was typed before.
class ComConsoleWindow : public ChildWindow {
    Q_OBJECT
public:
    // The engine must outlive the window.
    explicit ComConsoleWindow(LinkEngine& engine, QWidget* parent = nullptr);
    Q_DISABLE_COPY_MOVE(ComConsoleWindow)

    void LanguageSelect(Language languageId) override;
    // Buttons 0-30 and Send follow enable; 31-34 only on drives of version 1.10 or later.
    void EnableControls(bool enable) override;

    // Index 0 the sent text, index 1 the received one.
    void setComText(int index, const QString& text);
    [[nodiscard]] QString comText(int index) const;
    // The send button and all command buttons.
    void disableConsole();
    // Under the sending rule of every window: never while the link is down.
    [[nodiscard]] bool consoleEnabled() const { return consoleEnabled_ && sendingAllowed(); }
    // Whether the free-text Send button has been revealed (the options dialog then offers the
    // RAM-only writes).
    [[nodiscard]] bool commandSendVisible() const { return commandSendShown_; }

signals:
    // The command buttons (the stops among them) became usable or not.
    void commandButtonsEnabled(bool enabled);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // A frame with its buttons and argument boxes, made row by row.
    QGroupBox* buildFrame(int index, const QList<QList<int>>& rows);
    QPushButton* makeButton(int index, QWidget* frame);
    QLineEdit* makeArgumentBox(int index, QWidget* frame);
    // The tooltips: code, meaning and argument range of every button.
    void explainButtons(Language languageId);
    void CmdButton_Click(int index);
    void CommandSend_Click();
    void TxtNum_LostFocus(int index);
    void toggleCommandSend();
    void applyEnabling();

    LinkEngine& engine_;
    ConsoleCommands commands_;
    CommandHistory history_;

    std::array<QLabel*, 2> Label1{};
    std::array<QLineEdit*, 2> ComText{};
    QPushButton* CommandSend = nullptr;
    std::array<QGroupBox*, 4> Frame{};
    std::array<QPushButton*, ConsoleCommands::ButtonCount> CmdButton{};
    std::array<QLineEdit*, ConsoleCommands::ArgumentCount> TxtNum{};
    bool consoleEnabled_ = true;
    bool commandSendShown_ = false;
};

}  // namespace velora
