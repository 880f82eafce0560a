#pragma once

#include "core/console/ConsoleCommands.h"
#include "core/shared/Language.h"

#include <QToolBar>

#include <array>

class QAction;

namespace velora {

class LinkEngine;

// The stop controls of the main window: Servo Off, Jog Off and Emergency Stop, sent as the
// console's buttons send them. A toolbar of the frame, so that no child window covers it, with
// shortcuts that work from every window of the program. Enabled as the console's buttons are.
class StopStrip : public QToolBar {
    Q_OBJECT
public:
    enum Stop { ServoOff = 0, JogOff = 1, Emergency = 2 };
    static constexpr int StopCount = 3;

    explicit StopStrip(LinkEngine& engine, QWidget* parent = nullptr);

    void LanguageSelect(Language languageId);
    // Follows the console's command buttons.
    void setStopsEnabled(bool enabled);

private:
    ConsoleCommands commands_;
    std::array<QAction*, StopCount> CmdStop{};
};

}  // namespace velora
