#include "app/MessageBoxes.h"

#include <QApplication>

namespace velora {

QMessageBox::StandardButton MessageBoxes::show(const QString& text, const QString& title,
                                               QMessageBox::Icon icon,
                                               QMessageBox::StandardButtons buttons) {
    if (answerer_)
        return answerer_(Message{text, title, icon, buttons});
    // Over the open modal dialog, if any, so that the box is never hidden behind it.
    QWidget* parent = QApplication::activeModalWidget();
    if (!parent)
        parent = owner_;
    QMessageBox box(icon, title, text, buttons, parent);
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

}  // namespace velora
