#include "gui/app/HelpDialog.h"

#include "core/monitor/AlarmMonitor.h"
#include "core/shared/TextCatalogue.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QFile>
#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <QMdiSubWindow>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTableWidget>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace velora {

namespace {

// A menu text without its access key: "Read Me(&R)" is listed as "Read Me".
QString plainText(QString text) {
    static const QRegularExpression accessKey(QStringLiteral("\\(&.\\)$"));
    text.remove(accessKey);
    return text.remove(QLatin1Char('&'));
}

QTableWidget* makeTable(const QString& name, int columns, QWidget* parent) {
    auto* table = new QTableWidget(0, columns, parent);
    table->setObjectName(name);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setWordWrap(true);
    table->verticalHeader()->hide();
    table->horizontalHeader()->setStretchLastSection(true);
    return table;
}

void addRow(QTableWidget* table, const QStringList& cells) {
    const int row = table->rowCount();
    table->insertRow(row);
    for (int c = 0; c < cells.size(); ++c)
        table->setItem(row, c, new QTableWidgetItem(cells[c]));
}

}  // namespace

HelpDialog::HelpDialog(const QWidget& shortcutsOf, QWidget* parent)
    : QDialog(parent), shortcutsOf_(shortcutsOf) {
    setObjectName(QStringLiteral("Help"));
    auto* column = new QVBoxLayout(this);
    TabHelp = new QTabWidget(this);
    TabHelp->setObjectName(QStringLiteral("TabHelp"));
    column->addWidget(TabHelp);

    auto* readMePage = new QWidget(TabHelp);
    auto* readMeColumn = new QVBoxLayout(readMePage);
    LblReadMeNote = new QLabel(readMePage);
    LblReadMeNote->setObjectName(QStringLiteral("LblReadMeNote"));
    TxtReadMe = new QTextBrowser(readMePage);
    TxtReadMe->setObjectName(QStringLiteral("TxtReadMe"));
    TxtReadMe->setOpenExternalLinks(true);
    TxtReadMe->setMarkdown(readMe());
    readMeColumn->addWidget(LblReadMeNote);
    readMeColumn->addWidget(TxtReadMe, 1);
    TabHelp->addTab(readMePage, QString());

    GrdShortcuts = makeTable(QStringLiteral("GrdShortcuts"), 2, TabHelp);
    TabHelp->addTab(GrdShortcuts, QString());
    GrdAlarms = makeTable(QStringLiteral("GrdAlarms"), 3, TabHelp);
    GrdAlarms->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    GrdAlarms->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    GrdAlarms->horizontalHeader()->setSectionResizeMode(2, QHeaderView::Stretch);
    // Wrapped causes and remedies stay whole whatever the width.
    connect(GrdAlarms->horizontalHeader(), &QHeaderView::sectionResized, GrdAlarms,
            &QTableWidget::resizeRowsToContents);
    TabHelp->addTab(GrdAlarms, QString());

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::hide);
    column->addWidget(buttons);
    // Room for the README's tables on a 1024x768 screen.
    resize(900, 600);
}

QString HelpDialog::readMe() {
    QFile file(QStringLiteral(":/doc/README.md"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll());
}

void HelpDialog::showPage(Page page, Language languageId) {
    LanguageSelect(languageId);
    fillShortcuts(languageId);
    fillAlarms(languageId);
    TabHelp->setCurrentIndex(static_cast<int>(page));
    show();
    // The wrapped rows fit the columns as they are once shown.
    GrdAlarms->resizeRowsToContents();
    raise();
    activateWindow();
}

void HelpDialog::LanguageSelect(Language languageId) {
    const auto text = [languageId](Text id) { return TextCatalogue::text(languageId, id); };
    setWindowTitle(text(Text::HelpCaption));
    TabHelp->setTabText(0, text(Text::HelpReadMe));
    TabHelp->setTabText(1, text(Text::HelpKeyboardShortcuts));
    TabHelp->setTabText(2, text(Text::HelpAlarmCodes));
    LblReadMeNote->setText(text(Text::HelpReadMeEnglishOnly));
    // The README is English: in English the note would say nothing new.
    LblReadMeNote->setVisible(languageId != Language::English);
    TxtReadMe->setAccessibleName(text(Text::HelpReadMe));
    GrdShortcuts->setHorizontalHeaderLabels({text(Text::HelpKey), text(Text::HelpAction)});
    GrdShortcuts->setAccessibleName(text(Text::HelpKeyboardShortcuts));
    GrdAlarms->setHorizontalHeaderLabels(
        {text(Text::HelpAlarm), text(Text::HelpCause), text(Text::HelpRemedy)});
    GrdAlarms->setAccessibleName(text(Text::HelpAlarmCodes));
}

void HelpDialog::fillShortcuts(Language languageId) {
    const auto text = [languageId](Text id) { return TextCatalogue::text(languageId, id); };
    GrdShortcuts->setRowCount(0);
    // Every action of the main window that has a key, in the order they were made. The frames
    // of the windows inside bring Qt's own (Ctrl+W), which their system menu already shows in
    // Qt's words; those are left out.
    QStringList listed;
    for (const QAction* action : shortcutsOf_.findChildren<QAction*>()) {
        if (action->shortcut().isEmpty() || action->text().isEmpty() ||
            qobject_cast<QMdiSubWindow*>(action->parent()))
            continue;
        const QStringList row{action->shortcut().toString(QKeySequence::NativeText),
                              plainText(action->text())};
        const QString key = row.join(QLatin1Char('\t'));
        if (listed.contains(key))
            continue;
        listed << key;
        addRow(GrdShortcuts, row);
    }
    const auto keys = [](std::initializer_list<Qt::Key> list) {
        QStringList names;
        for (const Qt::Key key : list)
            names << QKeySequence(key).toString(QKeySequence::NativeText);
        return names.join(QStringLiteral(" / "));
    };
    addRow(GrdShortcuts, {text(Text::HelpAltUnderlinedLetter), text(Text::HelpOpenMenu)});
    addRow(GrdShortcuts,
           {keys({Qt::Key_Left, Qt::Key_Right}), text(Text::HelpMoveTriggerMarkerAfter)});
    addRow(GrdShortcuts, {keys({Qt::Key_Up, Qt::Key_Down}), text(Text::HelpMoveZeroLevelTrace)});
    addRow(GrdShortcuts, {keys({Qt::Key_Return, Qt::Key_Down}), text(Text::HelpNextBoxTable)});
    addRow(GrdShortcuts, {keys({Qt::Key_Up}), text(Text::HelpPreviousBoxTable)});
    addRow(GrdShortcuts,
           {keys({Qt::Key_Up, Qt::Key_Down}), text(Text::HelpEarlierLaterCommandsTyped)});
    GrdShortcuts->resizeColumnToContents(0);
}

void HelpDialog::fillAlarms(Language languageId) {
    GrdAlarms->setRowCount(0);
    for (int n = 1; n <= AlarmData::AlarmCount; ++n) {
        addRow(GrdAlarms,
               {AlarmMonitor::alarmName(n, languageId), AlarmMonitor::alarmCause(n, languageId),
                AlarmMonitor::alarmRemedy(n, languageId)});
    }
    GrdAlarms->resizeRowsToContents();
}

}  // namespace velora
