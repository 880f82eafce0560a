#include "gui/shared/ChildWindow.h"

#include "core/shared/LinkState.h"

#include <QCloseEvent>
#include <QMdiSubWindow>

namespace velora {

ChildWindow::ChildWindow(const QString& name, QWidget* parent) : QWidget(parent) {
    setObjectName(name);
}

bool ChildWindow::linkReady() const {
    return followedLink_ && followedLink_->Online && followedLink_->run().PortOpen;
}

void ChildWindow::EnableControls(bool enable) {
    controlsEnabled_ = enable;
    transferButtonsEnabled_ = enable;
}

void ChildWindow::DisableTransferButtons() {
    transferButtonsEnabled_ = false;
}

void ChildWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    // Inside the main window the frame around the window is what gets minimised.
    if (auto* frame = qobject_cast<QMdiSubWindow*>(parentWidget()))
        frame->showMinimized();
    else
        showMinimized();
}

}  // namespace velora
