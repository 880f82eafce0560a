#pragma once

#include <QWidget>

#include "core/shared/Language.h"

class QCloseEvent;

namespace velora {

struct LinkState;

// A child window of the main window. It is never closed while the program runs: its close box
// minimises it, so it keeps what it shows. Every child loads its texts in LanguageSelect, and
// follows the link's locking of the command-sending controls.
class ChildWindow : public QWidget {
    Q_OBJECT
public:
    explicit ChildWindow(const QString& name, QWidget* parent = nullptr);

    // The caption and every catalogue text of the window, in the language given.
    virtual void LanguageSelect(Language languageId) = 0;

    // The command-sending controls follow enable; the transfer buttons with them.
    virtual void EnableControls(bool enable);
    // Transfer buttons only (Write Servo, Read Servo and the like).
    virtual void DisableTransferButtons();

    [[nodiscard]] bool controlsEnabled() const { return controlsEnabled_; }
    [[nodiscard]] bool transferButtonsEnabled() const { return transferButtonsEnabled_; }

    // The link whose state decides whether anything can be sent; until one is given, nothing can.
    void followLink(const LinkState& link) { followedLink_ = &link; }
    // Online with the port open: a command can reach the drive.
    [[nodiscard]] bool linkReady() const;
    // The rule every control that sends a command follows, whatever path enables it: unlocked
    // and the link ready. Transfer buttons also obey DisableTransferButtons.
    [[nodiscard]] bool sendingAllowed() const { return controlsEnabled_ && linkReady(); }
    [[nodiscard]] bool transfersAllowed() const {
        return sendingAllowed() && transferButtonsEnabled_;
    }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    const LinkState* followedLink_ = nullptr;
    bool controlsEnabled_ = true;
    bool transferButtonsEnabled_ = true;
};

}  // namespace velora
