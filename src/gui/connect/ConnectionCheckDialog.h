#pragma once

#include "core/connect/ConnectionCheck.h"
#include "core/shared/Language.h"

#include <QDialog>

class QPlainTextEdit;
class QPushButton;

namespace velora {

class LinkEngine;

// The connection check as a window: one line per finding with its fix, run when the window
// opens and on request. The link's own port is let go for the check and taken back after it,
// so that the check sees the device as another program would. When no drive answered, the
// window offers the port search.
class ConnectionCheckDialog : public QDialog {
    Q_OBJECT
public:
    ConnectionCheckDialog(LinkEngine& engine, QWidget* parent = nullptr);
    Q_DISABLE_COPY_MOVE(ConnectionCheckDialog)

    void LanguageSelect(Language languageId);
    // Tests check against their own system and line.
    void setCheck(ConnectionCheck check) { check_ = std::move(check); }
    void runCheck();

signals:
    // "Search": the user wants the port search of the comm settings.
    void searchRequested();

protected:
    void showEvent(QShowEvent* event) override;

private:
    LinkEngine& engine_;
    ConnectionCheck check_;
    QPlainTextEdit* TxtFindings = nullptr;
    QPushButton* CmdCheckAgain = nullptr;
    QPushButton* CmdCheckSearch = nullptr;
    QPushButton* CmdCheckClose = nullptr;
};

}  // namespace velora
