#pragma once

#include <QMessageBox>
#include <QPointer>
#include <QString>

#include <functional>

namespace velora {

// The one way the program shows a modal message box: text and title (catalogue texts looked up
// by the caller when the box opens, or texts composed from them), icon and buttons. Tests
// install an answerer that replies in place of the user.
class MessageBoxes {
public:
    struct Message {
        QString text;
        QString title;
        QMessageBox::Icon icon = QMessageBox::NoIcon;
        QMessageBox::StandardButtons buttons = QMessageBox::Ok;
        QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    };
    using Answerer = std::function<QMessageBox::StandardButton(const Message&)>;

    MessageBoxes() = default;
    MessageBoxes(const MessageBoxes&) = delete;
    MessageBoxes& operator=(const MessageBoxes&) = delete;

    // The window a box belongs to when no modal dialog is open.
    void setOwner(QWidget* owner) { owner_ = owner; }
    void setAnswerer(Answerer answerer) { answerer_ = std::move(answerer); }

    // Shows the box and returns the button pressed (Escape or the close box give the box's
    // escape button). Enter presses defaultButton; NoButton leaves the choice to the toolkit.
    QMessageBox::StandardButton show(
        const QString& text, const QString& title, QMessageBox::Icon icon,
        QMessageBox::StandardButtons buttons = QMessageBox::Ok,
        QMessageBox::StandardButton defaultButton = QMessageBox::NoButton);

private:
    QPointer<QWidget> owner_;
    Answerer answerer_;
};

}  // namespace velora
