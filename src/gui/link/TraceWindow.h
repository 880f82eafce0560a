#pragma once

#include "core/link/FrameTrace.h"
#include "core/shared/Language.h"
#include "gui/shared/ChildWindow.h"

#include <QTimer>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace velora {

class LinkEngine;
class MessageBoxes;

// The frames on the wire, newest at the foot. Recording is off until "Record" is checked, so
// that the link pays nothing for a trace nobody reads; the view catches up a few times a second
// rather than once per frame, so the monitor chain at full speed is not slowed by painting.
// "Pause" freezes the view while recording goes on; the code filter and "Hide polling" choose
// what is shown, "Save as..." writes the lines shown to a text file.
class TraceWindow : public ChildWindow {
    Q_OBJECT
public:
    TraceWindow(LinkEngine& engine, MessageBoxes& boxes, QWidget* parent = nullptr);
    ~TraceWindow() override;
    Q_DISABLE_COPY_MOVE(TraceWindow)

    void LanguageSelect(Language languageId) override;
    // The window sends nothing, so the link's locking leaves it usable.
    void EnableControls(bool /*enable*/) override {}
    void DisableTransferButtons() override {}

    [[nodiscard]] FrameTrace& trace() { return trace_; }
    // Writes the lines the view shows; false after the failure message.
    bool saveTo(const QString& path);
    // The lines the filters let through, from what the trace holds.
    [[nodiscard]] QStringList shownLines() const;

private:
    void setRecording(bool on);
    void catchUp();
    void rebuild();
    void saveAs();
    [[nodiscard]] bool passes(const FrameTrace::Entry& entry) const;

    LinkEngine& engine_;
    MessageBoxes& boxes_;
    FrameTrace trace_;
    QTimer refresh_;
    quint64 shownUpTo_ = 0;
    Language languageId_ = Language::English;

    QCheckBox* ChkRecord = nullptr;
    QPushButton* CmdPause = nullptr;
    QPushButton* CmdClear = nullptr;
    QLabel* LblCode = nullptr;
    QLineEdit* TxtCode = nullptr;
    QCheckBox* ChkHidePolling = nullptr;
    QPushButton* CmdSave = nullptr;
    QPlainTextEdit* TxtTrace = nullptr;
};

}  // namespace velora
