#pragma once

#include <QDialog>

class QLabel;

namespace velora {

struct LinkState;

// "Communicating......": shown while a block transfer runs. It blocks the windows but not the
// program, since the transfer goes on through replies and timer ticks while it is open; it
// refuses its close box and Escape and goes away only when the link hides it.
class InComDialog : public QDialog {
    Q_OBJECT
public:
    explicit InComDialog(const LinkState& state, QWidget* parent = nullptr);

    void LanguageSelect(int languageId);
    // Loads the texts of the present language and shows the dialog over its parent.
    void showBusy();
    void hideBusy() { hide(); }

    void reject() override {}

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    const LinkState& state_;
    QLabel* Label1 = nullptr;
};

}  // namespace velora
