#pragma once

#include "core/shared/Global.h"
#include "gui/app/AppLinkUi.h"
#include "gui/app/MDIParent.h"

#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace velora::bench {

// Velora as a user runs it: the main window with all its child windows (drawn offscreen), its
// settings in a folder of its own, online at baud on device through the chosen back-end.
// Constructed once the start-up (identification, first repaints) has settled.
class WholeProgram {
public:
    struct Options {
        int baud = 9600;
        QString device;
        bool monitor = true;
        bool usbAdapter = false;
    };
    explicit WholeProgram(const Options& options);

    [[nodiscard]] MDIParent& window() { return *window_; }
    [[nodiscard]] Global& global() { return global_; }

private:
    QTemporaryDir dir_;
    Global global_;
    MessageBoxes boxes_;
    AppLinkUi linkUi_{boxes_};
    // As in main: the session is there before the window and goes after it.
    std::unique_ptr<DriveSession> session_;
    std::unique_ptr<MDIParent> window_;
};

}  // namespace velora::bench
