#include "gui/link/SystemBar.h"

#include "core/link/LinkEngine.h"
#include "core/shared/TextCatalogue.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QMouseEvent>

namespace velora {

namespace {

void setColours(QLabel* label, const QColor& back, const QColor& text) {
    QPalette palette = label->palette();
    palette.setColor(QPalette::Window, back);
    palette.setColor(QPalette::WindowText, text);
    label->setPalette(palette);
}

QLabel* makeLabel(QWidget* parent, const QString& name) {
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    return label;
}

}  // namespace

SystemBar::SystemBar(LinkEngine& engine, QWidget* parent) : QWidget(parent), engine_(engine) {
    setObjectName(QStringLiteral("SystemBar"));
    refreshTimer_.setSingleShot(true);
    refreshTimer_.setInterval(RefreshIntervalMs);
    connect(&refreshTimer_, &QTimer::timeout, this, &SystemBar::refresh);
    auto* outer = new QHBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    auto* Picture1 = new QFrame(this);
    Picture1->setObjectName(QStringLiteral("Picture1"));
    Picture1->setFrameShape(QFrame::StyledPanel);
    outer->addWidget(Picture1);

    auto* row = new QHBoxLayout(Picture1);
    row->setContentsMargins(6, 2, 6, 2);
    Label1 = makeLabel(Picture1, QStringLiteral("Label1"));
    Label2 = makeLabel(Picture1, QStringLiteral("Label2"));
    for (int i = 0; i < 2; ++i) {
        QLabel* lamp = makeLabel(Picture1, QStringLiteral("ShpStatus(%1)").arg(i));
        lamp->setFixedSize(16, 16);
        ShpStatus[static_cast<std::size_t>(i)] = lamp;
        setLamp(i, Qt::black, Qt::black);
    }
    LblSVON = makeLabel(Picture1, QStringLiteral("LblSVON"));
    LblSVON->setText(QStringLiteral("SVON"));
    LblSVON->setAutoFillBackground(true);
    LblSVON->setMargin(2);
    setServoOnColours(Qt::black, Qt::white);
    Label3 = makeLabel(Picture1, QStringLiteral("Label3"));
    LabelAxisNum = makeLabel(Picture1, QStringLiteral("LabelAxisNum"));
    LabelAxisNum->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("00")));
    Label3->setBuddy(LabelAxisNum);
    LblCom = makeLabel(Picture1, QStringLiteral("LblCom"));
    LblCom->setAutoFillBackground(true);
    LblCom->setMargin(2);
    LblCom->installEventFilter(this);
    setComIndicator(false);
    LblDateTime = makeLabel(Picture1, QStringLiteral("LblDateTime"));
    LblLink = makeLabel(Picture1, QStringLiteral("LblLink"));
    LblConnection = makeLabel(Picture1, QStringLiteral("LblConnection"));
    // A long device name must not widen the main window beyond a small screen.
    LblConnection->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);

    arrange(row);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    // The first look is drawn at once, not a refresh interval later.
    refreshTimer_.stop();
    refresh();
}

void SystemBar::arrange(QHBoxLayout* row) {
    row->addWidget(Label1);
    row->addWidget(ShpStatus[0]);
    row->addSpacing(8);
    row->addWidget(Label2);
    row->addWidget(ShpStatus[1]);
    row->addSpacing(8);
    row->addWidget(LblSVON);
    row->addSpacing(8);
    row->addWidget(Label3);
    row->addWidget(LabelAxisNum);
    row->addSpacing(8);
    row->addWidget(LblLink);
    row->addSpacing(8);
    row->addWidget(LblConnection, 1);
    row->addWidget(LblCom);
    row->addSpacing(8);
    row->addWidget(LblDateTime);
}

void SystemBar::LanguageSelect(Language languageId) {
    Label1->setText(TextCatalogue::text(languageId, Text::StatusBarRUN));
    Label2->setText(TextCatalogue::text(languageId, Text::StatusBarAlarm));
    Label3->setText(TextCatalogue::text(languageId, Text::StatusBarAxisNo));
    LblCom->setText(TextCatalogue::text(languageId, Text::StatusBarCom));
    // What each indicator's colour means, on the indicator and on its name.
    const std::array<QLabel*, 4> indicators{ShpStatus[0], ShpStatus[1], LblSVON, LblCom};
    const std::array<QLabel*, 4> names{Label1, Label2, LblSVON, LblCom};
    for (std::size_t i = 0; i < indicators.size(); ++i) {
        const QString meaning =
            TextCatalogue::text(languageId, Text::LampHelpRun, static_cast<int>(i));
        indicators[i]->setToolTip(meaning);
        names[i]->setToolTip(meaning);
    }
    // The lamps have no text of their own: they are named after the label beside them, which
    // has just changed.
    lampShown_ = {};
    refresh();
}

void SystemBar::setAxisNumber(int axis) {
    LabelAxisNum->setText(QString::number(axis));
}

void SystemBar::setClock(const QDateTime& now) {
    const QLocale locale;
    LblDateTime->setText(locale.toString(now.date(), QLocale::ShortFormat) + QStringLiteral("  ") +
                         locale.toString(now.time(), QLocale::ShortFormat));
}

void SystemBar::setComIndicator(bool live) {
    // Set on every tick of the polling timer; a new palette repaints, so only a change is set.
    if (comShown_ == live)
        return;
    comShown_ = live;
    setColours(LblCom, live ? QColor(255, 0, 0) : QColor(0, 0, 0), QColor(255, 255, 255));
}

void SystemBar::setLamp(int index, const QColor& fill, const QColor& back) {
    if (index < 0 || index > 1)
        return;
    lampWanted_[static_cast<std::size_t>(index)] = {fill, back};
    scheduleRefresh();
}

void SystemBar::setServoOnColours(const QColor& back, const QColor& text) {
    svonWanted_ = {back, text};
    scheduleRefresh();
}

void SystemBar::scheduleRefresh() {
    if (!refreshTimer_.isActive())
        refreshTimer_.start();
}

void SystemBar::refresh() {
    for (std::size_t i = 0; i < lampWanted_.size(); ++i) {
        if (lampShown_[i] == lampWanted_[i])
            continue;
        lampShown_[i] = lampWanted_[i];
        ShpStatus[i]->setStyleSheet(
            QStringLiteral("QLabel { background-color: %1; border: 3px solid %2; "
                           "border-radius: 8px; }")
                .arg(lampShown_[i].first.name(), lampShown_[i].second.name()));
        // A lit lamp is told as the status bits are: the colour alone says nothing to a reader.
        const QLabel* name = i == 0 ? Label1 : Label2;
        const bool lit = lampShown_[i].first != QColor(Qt::black);
        ShpStatus[i]->setAccessibleName(name->text() +
                                        (lit ? QStringLiteral(" : ON") : QStringLiteral(" : OFF")));
    }
    if (!(svonShown_ == svonWanted_)) {
        svonShown_ = svonWanted_;
        setColours(LblSVON, svonShown_.first, svonShown_.second);
    }
}

void SystemBar::setConnectionNote(const QString& text) {
    LblConnection->setText(text);
    LblConnection->setToolTip(text);
}

void SystemBar::setLinkLine(const QString& text) {
    LblLink->setText(text);
    LblLink->setAccessibleName(text);
}

bool SystemBar::eventFilter(QObject* watched, QEvent* event) {
    if (watched == LblCom && event->type() == QEvent::MouseButtonRelease) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        engine_.polling().echoSwitch(mouse->button(), mouse->modifiers());
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace velora
