#include "gui/shared/MessageBoxes.h"

#include <QApplication>

namespace velora {

QMessageBox::StandardButton MessageBoxes::show(const QString& text, const QString& title,
                                               QMessageBox::Icon icon,
                                               QMessageBox::StandardButtons buttons,
                                               QMessageBox::StandardButton defaultButton) {
    if (answerer_)
        return answerer_(Message{text, title, icon, buttons, defaultButton});
    // Over the open modal dialog, if any, so that the box is never hidden behind it.
    QWidget* parent = QApplication::activeModalWidget();
    if (!parent)
        parent = owner_;
    QMessageBox box(icon, title, text, buttons, parent);
    if (defaultButton != QMessageBox::NoButton)
        box.setDefaultButton(defaultButton);
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

}  // namespace velora
