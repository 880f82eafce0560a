#pragma once

#include <QDialog>
#include <QTimer>

#include <functional>

#include "core/shared/Language.h"

class QLabel;
class QPushButton;

namespace velora {

struct LinkState;

// "Communicating......": shown while a block transfer runs. It blocks the windows but not the
// program, since the transfer goes on through replies and timer ticks while it is open; it
// refuses its close box and Escape and goes away only when the link hides it. Below its label
// it says what is transferred and how far, and its Cancel asks to end the transfer.
class InComDialog : public QDialog {
    Q_OBJECT
public:
    // How often the line of what is transferred is read again while the dialog shows.
    static constexpr int ActivityIntervalMs = 100;

    explicit InComDialog(const LinkState& state, QWidget* parent = nullptr);

    void LanguageSelect(Language languageId);
    // Where the line of what is transferred comes from; `begin` is told when the dialog shows.
    void setActivity(std::function<void()> begin, std::function<QString()> text);
    // Loads the texts of the present language and shows the dialog over its parent.
    void showBusy();
    void hideBusy();

    void reject() override {}

signals:
    // The user pressed Cancel: the transfer is to end as an error reply ends it.
    void cancelRequested();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void showActivity();

    const LinkState& state_;
    QLabel* Label1 = nullptr;
    QLabel* LabelActivity = nullptr;
    QPushButton* CmdCancel = nullptr;
    QTimer activityTimer_;
    std::function<void()> begin_;
    std::function<QString()> activity_;
};

}  // namespace velora
