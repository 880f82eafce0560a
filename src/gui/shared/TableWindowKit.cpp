#include "gui/shared/TableWindowKit.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QFocusEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTimer>

namespace velora::tablekit {

namespace {

constexpr int DockIntervalMs = 10;
enum Button { WriteFile = 0, ReadFile = 1, WriteServo = 2, ReadServo = 3 };

}  // namespace

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

void fitCountLine(QLabel* label, const QString& widest) {
    const QFontMetrics metrics(label->font());
    const QMargins margins = label->contentsMargins();
    const int extra = 2 * label->margin();
    label->setFixedSize(
        metrics.horizontalAdvance(widest) + margins.left() + margins.right() + extra + 1,
        metrics.height() + margins.top() + margins.bottom() + extra);
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

void addButtons(QWidget* owner, QHBoxLayout* row, Buttons& buttons,
                const std::function<void(int)>& click) {
    for (int i = 0; i < static_cast<int>(buttons.size()); ++i) {
        auto* button = new QPushButton(owner);
        button->setObjectName(QStringLiteral("Command(%1)").arg(i));
        QObject::connect(button, &QPushButton::clicked, owner, [click, i] { click(i); });
        row->addWidget(button);
        buttons[static_cast<std::size_t>(i)] = button;
    }
}

std::optional<QString> runButton(QWidget* owner, const Buttons& buttons, int index,
                                 const ButtonActions& actions) {
    switch (index) {
        case WriteFile: {
            const QString path =
                chooseFile(owner, buttons[WriteFile]->text(), actions.filter, actions.suffix, true);
            if (actions.writeFile(path))
                return path;
            break;
        }
        case ReadFile: {
            const QString path =
                chooseFile(owner, buttons[ReadFile]->text(), actions.filter, actions.suffix, false);
            if (actions.readFile(path))
                return path;
            break;
        }
        case WriteServo:
            actions.writeServo();
            break;
        case ReadServo:
            actions.readServo();
            break;
        default:
            break;
    }
    return std::nullopt;
}

void enableButtons(const Buttons& buttons, const TableControls& controls, bool transferEnabled) {
    buttons[WriteFile]->setEnabled(controls.writeFile);
    buttons[ReadFile]->setEnabled(controls.readFile);
    // Buttons the link disabled on their own (all axes addressed) stay so until it unlocks.
    buttons[WriteServo]->setEnabled(controls.writeServo && transferEnabled);
    buttons[ReadServo]->setEnabled(controls.readServo && transferEnabled);
}

void disableServoButtons(const Buttons& buttons) {
    buttons[WriteServo]->setEnabled(false);
    buttons[ReadServo]->setEnabled(false);
}

QString fileCaption(const QString& title, const QString& lastFile) {
    if (lastFile.isEmpty())
        return title;
    return title + QStringLiteral(" - ") + QFileInfo(lastFile).fileName();
}

FieldKey movementKey(const QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return FieldKey::Other;
    return fieldKeyOf(static_cast<const QKeyEvent*>(event)->key());
}

bool leavesBox(const QEvent* event) {
    if (event->type() != QEvent::FocusOut)
        return false;
    const Qt::FocusReason reason = static_cast<const QFocusEvent*>(event)->reason();
    return reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason;
}

void setUpDockTimer(QTimer& timer) {
    timer.setObjectName(QStringLiteral("Timer1"));
    timer.setInterval(DockIntervalMs);
}

void runWhileActive(QWidget* window, QTimer& timer, bool& hooked) {
    QMdiSubWindow* frame = frameOf(window);
    if (hooked || !frame)
        return;
    hooked = true;
    QObject::connect(frame, &QMdiSubWindow::windowStateChanged, window,
                     [&timer](Qt::WindowStates, Qt::WindowStates now) {
                         if (now.testFlag(Qt::WindowActive))
                             timer.start();
                         else
                             timer.stop();
                     });
}

}  // namespace velora::tablekit
