#include "gui/app/StopStrip.h"

#include "core/shared/TextCatalogue.h"

#include <QAction>
#include <QKeySequence>
#include <QToolButton>

namespace velora {

namespace {

struct StopDef {
    int button;  // the console's button that sends the same command
    Text text;
    Qt::Key key;
};

// F7, F8 and F12: keys no box or list of the program uses, away from the letters.
constexpr std::array<StopDef, StopStrip::StopCount> kStops{{
    {3, Text::MsgServoOff, Qt::Key_F8},        // ServoofF "SF"
    {25, Text::MsgJogOff, Qt::Key_F7},         // JogofF "JF"
    {1, Text::MsgEmergencyStop, Qt::Key_F12},  // EmcStop "ES"
}};

}  // namespace

StopStrip::StopStrip(LinkEngine& engine, QWidget* parent) : QToolBar(parent), commands_(engine) {
    setObjectName(QStringLiteral("StopStrip"));
    setMovable(false);
    setFloatable(false);
    setToolButtonStyle(Qt::ToolButtonTextOnly);
    for (int i = 0; i < StopCount; ++i) {
        const StopDef& def = kStops.at(static_cast<std::size_t>(i));
        auto* action = new QAction(this);
        action->setObjectName(QStringLiteral("CmdStop(%1)").arg(i));
        action->setShortcut(QKeySequence(def.key));
        // From the floating system parameter window as well as from the frame's children.
        action->setShortcutContext(Qt::ApplicationShortcut);
        connect(action, &QAction::triggered, this, [this, def] { commands_.stop(def.button); });
        addAction(action);
        widgetForAction(action)->setObjectName(QStringLiteral("CmdStopButton(%1)").arg(i));
        CmdStop[static_cast<std::size_t>(i)] = action;
    }
    // The program starts unable to send until its first reply.
    setStopsEnabled(false);
}

void StopStrip::LanguageSelect(Language languageId) {
    setWindowTitle(TextCatalogue::text(languageId, Text::MsgStop));
    for (int i = 0; i < StopCount; ++i) {
        const StopDef& def = kStops.at(static_cast<std::size_t>(i));
        QAction* action = CmdStop.at(static_cast<std::size_t>(i));
        const QString text = TextCatalogue::text(languageId, def.text);
        // The key is part of the visible text: people learn it from the button.
        action->setText(QStringLiteral("%1 (%2)").arg(
            text, action->shortcut().toString(QKeySequence::NativeText)));
        action->setToolTip(action->text());
    }
}

void StopStrip::setStopsEnabled(bool enabled) {
    for (QAction* action : CmdStop)
        action->setEnabled(enabled);
}

}  // namespace velora
