#include "gui/link/TraceWindow.h"

#include "core/link/LinkEngine.h"
#include "core/link/WireFormat.h"
#include "core/shared/SafeFileWrite.h"
#include "core/shared/TextCatalogue.h"
#include "gui/shared/MessageBoxes.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace velora {

namespace {
// Often enough to look live, rarely enough that a fast monitor chain is not slowed.
constexpr int RefreshMs = 500;

template <typename W>
W* named(W* widget, const QString& name) {
    widget->setObjectName(name);
    return widget;
}
}  // namespace

TraceWindow::TraceWindow(LinkEngine& engine, MessageBoxes& boxes, QWidget* parent)
    : ChildWindow(QStringLiteral("Trace"), parent), engine_(engine), boxes_(boxes) {
    ChkRecord = named(new QCheckBox(this), QStringLiteral("ChkRecord"));
    CmdPause = named(new QPushButton(this), QStringLiteral("CmdPause"));
    CmdPause->setCheckable(true);
    CmdClear = named(new QPushButton(this), QStringLiteral("CmdClear"));
    LblCode = named(new QLabel(this), QStringLiteral("LblCode"));
    TxtCode = named(new QLineEdit(this), QStringLiteral("TxtCode"));
    TxtCode->setMaxLength(2);
    TxtCode->setMaximumWidth(48);
    LblCode->setBuddy(TxtCode);
    ChkHidePolling = named(new QCheckBox(this), QStringLiteral("ChkHidePolling"));
    CmdSave = named(new QPushButton(this), QStringLiteral("CmdSave"));
    TxtTrace = named(new QPlainTextEdit(this), QStringLiteral("TxtTrace"));
    TxtTrace->setReadOnly(true);
    TxtTrace->setMaximumBlockCount(FrameTrace::DefaultCapacity);
    TxtTrace->setLineWrapMode(QPlainTextEdit::NoWrap);
    TxtTrace->setFont(QFont(QStringLiteral("monospace")));

    auto* bar = new QHBoxLayout;
    for (QWidget* w : {static_cast<QWidget*>(ChkRecord), static_cast<QWidget*>(CmdPause),
                       static_cast<QWidget*>(CmdClear), static_cast<QWidget*>(LblCode),
                       static_cast<QWidget*>(TxtCode), static_cast<QWidget*>(ChkHidePolling),
                       static_cast<QWidget*>(CmdSave)}) {
        bar->addWidget(w);
    }
    bar->addStretch(1);
    auto* column = new QVBoxLayout(this);
    column->addLayout(bar);
    column->addWidget(TxtTrace, 1);

    refresh_.setInterval(RefreshMs);
    connect(&refresh_, &QTimer::timeout, this, &TraceWindow::catchUp);
    connect(ChkRecord, &QCheckBox::toggled, this, &TraceWindow::setRecording);
    connect(CmdPause, &QPushButton::toggled, this, [this](bool paused) {
        if (!paused)
            catchUp();
    });
    connect(CmdClear, &QPushButton::clicked, this, [this] {
        trace_.clear();
        rebuild();
    });
    connect(TxtCode, &QLineEdit::textChanged, this, &TraceWindow::rebuild);
    connect(ChkHidePolling, &QCheckBox::toggled, this, &TraceWindow::rebuild);
    connect(CmdSave, &QPushButton::clicked, this, &TraceWindow::saveAs);
}

TraceWindow::~TraceWindow() {
    setRecording(false);
}

void TraceWindow::LanguageSelect(Language languageId) {
    languageId_ = languageId;
    setWindowTitle(TextCatalogue::text(languageId, Text::TraceCaption));
    ChkRecord->setText(TextCatalogue::text(languageId, Text::TraceRecord));
    CmdPause->setText(TextCatalogue::text(languageId, Text::TracePause));
    CmdClear->setText(TextCatalogue::text(languageId, Text::TraceClear));
    LblCode->setText(TextCatalogue::text(languageId, Text::TraceCode));
    TxtCode->setAccessibleName(LblCode->text());
    ChkHidePolling->setText(TextCatalogue::text(languageId, Text::TraceHidePolling));
    CmdSave->setText(TextCatalogue::text(languageId, Text::TraceSaveAs));
}

void TraceWindow::setRecording(bool on) {
    if (on) {
        engine_.setFrameTrace(&trace_);
        refresh_.start();
    } else {
        if (engine_.frameTrace() == &trace_)
            engine_.setFrameTrace(nullptr);
        refresh_.stop();
        catchUp();
    }
}

bool TraceWindow::passes(const FrameTrace::Entry& entry) const {
    if (ChkHidePolling->isChecked() && FrameTrace::isPolling(entry))
        return false;
    const QString code = TxtCode->text().trimmed();
    // Case matters: "ma" is the monitor poll, "MA" would be another code.
    return code.isEmpty() || wire::codeOf(entry.text).startsWith(code);
}

void TraceWindow::catchUp() {
    if (CmdPause->isChecked())
        return;
    QStringList lines;
    for (const FrameTrace::Entry& e : trace_.entriesAfter(shownUpTo_)) {
        if (passes(e))
            lines << FrameTrace::formatLine(e);
    }
    shownUpTo_ = trace_.lastSequence();
    // One block per catch-up: appending line by line would lay the text out once per line.
    if (!lines.isEmpty())
        TxtTrace->appendPlainText(lines.join(QLatin1Char('\n')));
}

void TraceWindow::rebuild() {
    TxtTrace->clear();
    shownUpTo_ = 0;
    const bool paused = CmdPause->isChecked();
    CmdPause->blockSignals(true);
    CmdPause->setChecked(false);
    catchUp();
    CmdPause->setChecked(paused);
    CmdPause->blockSignals(false);
}

QStringList TraceWindow::shownLines() const {
    QStringList lines;
    for (const FrameTrace::Entry& e : trace_.entriesAfter(0)) {
        if (passes(e))
            lines << FrameTrace::formatLine(e);
    }
    return lines;
}

bool TraceWindow::saveTo(const QString& path) {
    QByteArray content;
    for (const QString& line : shownLines())
        content += line.toUtf8() + '\n';
    if (writeFileSafely(path, content))
        return true;
    boxes_.show(
        TextCatalogue::text(languageId_, Text::MsgFileAccessError) + QLatin1Char('\n') + path,
        TextCatalogue::text(languageId_, Text::MsgFileAccessErrorCaption), QMessageBox::Critical);
    return false;
}

void TraceWindow::saveAs() {
    const QString path = QFileDialog::getSaveFileName(
        this, TextCatalogue::text(languageId_, Text::TraceSaveAs), QString(),
        TextCatalogue::text(languageId_, Text::TraceFileFilter));
    if (!path.isEmpty())
        saveTo(path);
}

}  // namespace velora
