#include "gui/console/ComConsoleWindow.h"

#include "core/link/LinkEngine.h"
#include "core/shared/LinkState.h"
#include "core/shared/TextCatalogue.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace velora {

namespace {

// Cells of a frame's grid: a button index, or an argument box as ArgumentCell + box index.
constexpr int ArgumentCell = 100;
constexpr int Blank = -1;
// The button whose middle-button release with Ctrl+Alt reveals the free-text row (TchPnt).
constexpr int RevealButton = 12;

bool isHiddenGesture(const QEvent* event) {
    if (event->type() != QEvent::MouseButtonRelease)
        return false;
    const auto* mouse = static_cast<const QMouseEvent*>(event);
    return mouse->button() == Qt::MiddleButton &&
           mouse->modifiers() == (Qt::ControlModifier | Qt::AltModifier);
}

}  // namespace

ComConsoleWindow::ComConsoleWindow(LinkEngine& engine, QWidget* parent)
    : ChildWindow(QStringLiteral("ComConsole"), parent), engine_(engine), commands_(engine) {
    auto* echo = new QGridLayout;
    for (int i = 0; i < 2; ++i) {
        Label1[i] = new QLabel(this);
        Label1[i]->setObjectName(QStringLiteral("Label1(%1)").arg(i));
        ComText[i] = new QLineEdit(this);
        ComText[i]->setObjectName(QStringLiteral("ComText(%1)").arg(i));
        ComText[i]->setReadOnly(true);
        Label1[i]->setBuddy(ComText[i]);
        echo->addWidget(Label1[i], i, 0);
        echo->addWidget(ComText[i], i, 1);
    }
    ComText[0]->installEventFilter(this);
    connect(ComText[0], &QLineEdit::returnPressed, this, [this] {
        if (commandSendShown_ && CommandSend->isEnabled())
            CommandSend_Click();
    });
    CommandSend = new QPushButton(this);
    CommandSend->setObjectName(QStringLiteral("CommandSend"));
    CommandSend->installEventFilter(this);
    CommandSend->hide();
    connect(CommandSend, &QPushButton::clicked, this, &ComConsoleWindow::CommandSend_Click);
    echo->addWidget(CommandSend, 0, 2);
    echo->setColumnStretch(1, 1);

    // Servo and positioning on the left, jogging and the velocity drive on the right, the
    // drive's own functions (alarms, reset, memory) along the foot. On/off pairs share a row;
    // an argument box sits beside the button that sends it. The controls are made in reading
    // order, which is the order Tab walks them.
    auto* command = buildFrame(0, {{2, 3, 1},
                                   {5, 6, Blank},
                                   {4, ArgumentCell + 0, 12},
                                   {11, ArgumentCell + 1, Blank},
                                   {7, 8, Blank},
                                   {9, 10, Blank},
                                   {15, 16, Blank},
                                   {17, ArgumentCell + 2, Blank}});
    auto* jog = buildFrame(2, {{23, 24, 25}, {26, 27, Blank}, {28, 29, Blank}});
    auto* velocity = buildFrame(3, {{18, 19, Blank}, {20, ArgumentCell + 3, Blank}, {21, 22}});
    auto* etc = buildFrame(1, {{0, 13, 14, 30}, {31, 32, 33, 34}});
    auto* right = new QVBoxLayout;
    right->addWidget(jog);
    right->addWidget(velocity);
    right->addStretch(1);
    auto* frames = new QGridLayout;
    frames->addWidget(command, 0, 0);
    frames->addLayout(right, 0, 1);
    frames->addWidget(etc, 1, 0, 1, 2);

    auto* column = new QVBoxLayout(this);
    column->addLayout(echo);
    column->addLayout(frames);
    column->addStretch(1);

    CmdButton[RevealButton]->installEventFilter(this);

    // Versioned buttons stay off until the drive has told its version.
    applyEnabling();
}

QGroupBox* ComConsoleWindow::buildFrame(int index, const QList<QList<int>>& rows) {
    auto* frame = new QGroupBox(this);
    frame->setObjectName(QStringLiteral("Frame%1").arg(index + 1));
    auto* grid = new QGridLayout(frame);
    for (int r = 0; r < rows.size(); ++r) {
        for (int c = 0; c < rows[r].size(); ++c) {
            const int cell = rows[r][c];
            if (cell >= ArgumentCell)
                grid->addWidget(makeArgumentBox(cell - ArgumentCell, frame), r, c);
            else if (cell != Blank)
                grid->addWidget(makeButton(cell, frame), r, c);
        }
    }
    // Columns of one width in every frame, so that the buttons line up across the window.
    const int width = QPushButton().sizeHint().width();
    for (int c = 0; c < std::max(3, grid->columnCount()); ++c) {
        grid->setColumnMinimumWidth(c, width);
        grid->setColumnStretch(c, 1);
    }
    Frame[static_cast<std::size_t>(index)] = frame;
    return frame;
}

QPushButton* ComConsoleWindow::makeButton(int index, QWidget* frame) {
    auto* button = new QPushButton(frame);
    button->setObjectName(QStringLiteral("CmdButton(%1)").arg(index));
    connect(button, &QPushButton::clicked, this, [this, index] { CmdButton_Click(index); });
    CmdButton[static_cast<std::size_t>(index)] = button;
    return button;
}

QLineEdit* ComConsoleWindow::makeArgumentBox(int index, QWidget* frame) {
    auto* box = new QLineEdit(QStringLiteral("0"), frame);
    box->setObjectName(QStringLiteral("TxtNum(%1)").arg(index));
    box->setAlignment(Qt::AlignRight);
    // As wide as the longest argument, so that it lines up with the buttons of its column.
    box->setMaximumWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("-999999999")) + 12);
    connect(box, &QLineEdit::editingFinished, this, [this, index] { TxtNum_LostFocus(index); });
    TxtNum[static_cast<std::size_t>(index)] = box;
    return box;
}

void ComConsoleWindow::LanguageSelect(Language languageId) {
    setWindowTitle(TextCatalogue::text(languageId, Text::CaptionCommandConsole));
    Label1[0]->setText(TextCatalogue::text(languageId, Text::ConsoleSendLabel));
    Label1[1]->setText(TextCatalogue::text(languageId, Text::ConsoleReceiveLabel));
    CommandSend->setText(TextCatalogue::text(languageId, Text::ConsoleSendButton));
    for (int i = 0; i < 4; ++i)
        Frame[static_cast<std::size_t>(i)]->setTitle(
            TextCatalogue::text(languageId, Text::ConsoleFrameCommand, i));
    for (int i = 0; i < ConsoleCommands::ButtonCount; ++i)
        CmdButton[static_cast<std::size_t>(i)]->setText(
            TextCatalogue::text(languageId, Text::ConsoleCmdAlmreaD, i));
    // An argument box has no label of its own: the button that sends it names it.
    for (int box = 0; box < ConsoleCommands::ArgumentCount; ++box) {
        int button = 0;
        while (ConsoleCommands::argumentBox(button) != box)
            ++button;
        TxtNum[static_cast<std::size_t>(box)]->setAccessibleName(
            TextCatalogue::text(languageId, Text::ConsoleCmdAlmreaD, button));
    }
    explainButtons(languageId);
}

void ComConsoleWindow::explainButtons(Language languageId) {
    // Each button tells the command it sends and what it does: "SF — servo off: ...".
    for (int i = 0; i < ConsoleCommands::ButtonCount; ++i) {
        QString tip = ConsoleCommands::code(i) + QStringLiteral(" \u2014 ") +
                      TextCatalogue::text(languageId, Text::CmdHelpReadAlarmData, i);
        if (const int box = ConsoleCommands::argumentBox(i); box >= 0) {
            const ConsoleCommands::Limits limits = ConsoleCommands::limits(box);
            const QString argument = TextCatalogue::text(languageId, Text::CmdHelpArgument)
                                         .arg(limits.min)
                                         .arg(limits.max);
            tip += QLatin1Char('\n') + argument;
            TxtNum[static_cast<std::size_t>(box)]->setToolTip(
                TextCatalogue::text(languageId, Text::ConsoleCmdAlmreaD, i) + QLatin1Char('\n') +
                argument);
        }
        if (i >= ConsoleCommands::FirstVersionedButton)
            tip +=
                QLatin1Char('\n') + TextCatalogue::text(languageId, Text::CmdHelpNeedsSoftware110);
        CmdButton[static_cast<std::size_t>(i)]->setToolTip(tip);
    }
}

void ComConsoleWindow::EnableControls(bool enable) {
    ChildWindow::EnableControls(enable);
    consoleEnabled_ = enable;
    applyEnabling();
}

void ComConsoleWindow::disableConsole() {
    consoleEnabled_ = false;
    applyEnabling();
}

void ComConsoleWindow::applyEnabling() {
    const bool versioned =
        consoleEnabled_ && engine_.state().DriverVersion >= ConsoleCommands::VersionedButtonsFrom;
    for (int i = 0; i < ConsoleCommands::ButtonCount; ++i) {
        CmdButton[static_cast<std::size_t>(i)]->setEnabled(
            i < ConsoleCommands::FirstVersionedButton ? consoleEnabled_ : versioned);
    }
    CommandSend->setEnabled(consoleEnabled_);
    emit commandButtonsEnabled(consoleEnabled_ && linkReady());
}

void ComConsoleWindow::setComText(int index, const QString& text) {
    if (index != 0 && index != 1)
        return;
    QLineEdit* line = ComText[static_cast<std::size_t>(index)];
    // A command the user is still typing is not wiped out by the echo of another one (an
    // alarm query, say); the echo shows again once the typed text has gone out.
    if (index == 0 && commandSendShown_ && line->hasFocus() && line->isModified())
        return;
    line->setText(text);
}

QString ComConsoleWindow::comText(int index) const {
    return index == 0 || index == 1 ? ComText[static_cast<std::size_t>(index)]->text() : QString();
}

void ComConsoleWindow::CmdButton_Click(int index) {
    const int box = ConsoleCommands::argumentBox(index);
    if (box >= 0)
        TxtNum_LostFocus(box);  // a click may come before the box has let go of the focus
    commands_.CmdButton_Click(index,
                              box >= 0 ? TxtNum[static_cast<std::size_t>(box)]->text() : QString());
}

void ComConsoleWindow::CommandSend_Click() {
    const QString typed = ComText[0]->text();
    if (commands_.CommandSend_Click(typed)) {
        history_.add(typed);
        ComText[0]->setModified(false);
    }
}

void ComConsoleWindow::TxtNum_LostFocus(int index) {
    QLineEdit* box = TxtNum[static_cast<std::size_t>(index)];
    const QString corrected = ConsoleCommands::TxtNum_LostFocus(index, box->text());
    if (corrected != box->text())
        box->setText(corrected);
}

void ComConsoleWindow::toggleCommandSend() {
    commandSendShown_ = !commandSendShown_;
    CommandSend->setVisible(commandSendShown_);
    ComText[0]->setReadOnly(!commandSendShown_);
    if (!commandSendShown_) {
        ComText[0]->clear();
        ComText[1]->clear();
    }
}

bool ComConsoleWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == CmdButton[RevealButton] && isHiddenGesture(event)) {
        toggleCommandSend();
    } else if (watched == CommandSend && isHiddenGesture(event)) {
        const auto* mouse = static_cast<const QMouseEvent*>(event);
        engine_.polling().echoSwitch(mouse->button(), mouse->modifiers());
    } else if (watched == ComText[0] && commandSendShown_ && event->type() == QEvent::KeyPress) {
        const int key = static_cast<const QKeyEvent*>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down) {
            ComText[0]->setText(key == Qt::Key_Up ? history_.older() : history_.newer());
            return true;
        }
    }
    return ChildWindow::eventFilter(watched, event);
}

}  // namespace velora
