#include "app/TableWindowKit.h"

#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>

namespace velora::tablekit {

QString chooseFile(QWidget* parent, const QString& title, const QString& filter,
                   const QString& suffix, bool save) {
    QFileDialog dialog(parent, title);
    dialog.setObjectName(QStringLiteral("CommonDialog1"));
    dialog.setNameFilters({filter, QStringLiteral("All(*.*)")});
    dialog.setDefaultSuffix(suffix);
    dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    return dialog.selectedFiles().value(0);
}

void paint(QLineEdit* box, TableColour colour) {
    QPalette palette = box->palette();
    palette.setColor(QPalette::Base, QColor(QRgb(tableRgb(colour))));
    box->setPalette(palette);
}

void paint(QLabel* label, TableColour colour) {
    QPalette palette = label->palette();
    palette.setColor(QPalette::Window, QColor(QRgb(tableRgb(colour))));
    label->setAutoFillBackground(true);
    label->setPalette(palette);
}

QString marked(const QString& caption, bool edited) {
    // A dot after the caption, as editors mark a document with unsaved changes.
    return edited ? caption + QStringLiteral(" \u25CF") : caption;
}

QMdiSubWindow* frameOf(QWidget* window) {
    return qobject_cast<QMdiSubWindow*>(window->parentWidget());
}

void dock(QWidget* leader, QWidget* follower, bool followerOnRight) {
    QWidget* lead = frameOf(leader) ? frameOf(leader) : leader;
    QWidget* follow = frameOf(follower) ? frameOf(follower) : follower;
    // Only the command table is brought back to its normal state; the point table is moved as
    // it is.
    if (followerOnRight && (follow->isMinimized() || follow->isMaximized()))
        follow->showNormal();
    const QRect l = lead->geometry();
    const QRect f = follow->geometry();
    const int x = followerOnRight ? l.x() + l.width() : l.x() - f.width();
    const QPoint target(x, l.y() + l.height() - f.height());
    if (follow->pos() != target)
        follow->move(target);
}

}  // namespace velora::tablekit
