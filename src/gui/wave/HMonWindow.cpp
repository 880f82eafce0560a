#include "gui/wave/HMonWindow.h"

#include "core/link/LinkEngine.h"
#include "core/shared/Global.h"
#include "core/shared/TextCatalogue.h"
#include "core/wave/WaveCapture.h"
#include "core/wave/WaveFile.h"
#include "core/wave/WaveScale.h"
#include "gui/wave/MarkerStrip.h"
#include "gui/wave/WaveIcons.h"
#include "gui/wave/WavePanel.h"
#include "gui/wave/WaveScope.h"
#include "gui/wave/WaveTrace.h"

#include <QClipboard>
#include <QComboBox>
#include <QFileDialog>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QToolButton>

namespace velora {

namespace {

// Sets a list's index without the effects of a user's choice.
void setQuietly(QComboBox* box, int index) {
    const QSignalBlocker block(box);
    box->setCurrentIndex(index);
}

}  // namespace

HMonWindow::HMonWindow(Global& global, LinkEngine& engine, WaveCapture& capture, QWidget* parent)
    : ChildWindow(QStringLiteral("HMon"), parent),
      global_(global),
      engine_(engine),
      capture_(capture) {
    buildControls();
    connectControls();
    setWaveReadingShown(false);
}

void HMonWindow::buildControls() {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(6, 6, 6, 6);
    scope_ = new WaveScope(global_, this);
    scope_->TxtDummy1->installEventFilter(this);
    row->addWidget(scope_, 1);
    panel_ = new WavePanel(this);
    row->addWidget(panel_);
}

void HMonWindow::connectControls() {
    const auto onIndex = [this](QComboBox* box, auto&& effect) {
        connect(box, &QComboBox::currentIndexChanged, this, [this, effect](int index) {
            if (index >= 0 && !loading_)
                effect(index);
        });
    };
    WaveMonSettings& w = global_.WaveMon;
    onIndex(panel_->CmbTrig, [this, &w](int i) {
        w.Trig = i;
        triggerSettingChanged();
    });
    onIndex(panel_->CmbLgcSel, [this, &w](int i) {
        w.LgcSel = i;
        triggerSettingChanged();
    });
    onIndex(panel_->CmbTimeScale, [this, &w](int i) {
        w.TimeScale = i;
        scope_->updateReadout();
        triggerSettingChanged();
    });
    onIndex(panel_->CmbEdge, [this, &w](int i) {
        w.Edge = i;
        panel_->ImgEdge->setIcon(waveicons::edge(i));
        triggerSettingChanged();
    });
    onIndex(panel_->CmbWave, [this, &w](int i) {
        w.Wave = i;
        panel_->ImgWave->setIcon(waveicons::waveMode(i));
        scope_->redraw();
    });
    onIndex(panel_->CmbVelScale, [this, &w](int i) {
        w.VelScale = i;
        scope_->redraw();
    });
    onIndex(panel_->CmbTqScale, [this, &w](int i) {
        w.TqScale = i;
        scope_->redraw();
    });
    connect(panel_->ImgEdge, &QToolButton::clicked, this, [this] {
        panel_->CmbEdge->setCurrentIndex((panel_->CmbEdge->currentIndex() + 1) % wave::EdgeCount);
    });
    connect(panel_->ImgWave, &QToolButton::clicked, this, [this] {
        panel_->CmbWave->setCurrentIndex((panel_->CmbWave->currentIndex() + 1) %
                                         wave::WaveModeCount);
    });

    connectPlacements();

    connectButtons();
}

void HMonWindow::connectPlacements() {
    // The percent boxes: a list entry at once, a typed one when the box is left or on Enter.
    connect(panel_->CmbTrigPos, &QComboBox::activated, this, [this](int i) {
        placeTrigger(wave::triggerPositionFromPercent(panel_->CmbTrigPos->itemText(i).toInt()));
    });
    connect(panel_->CmbTrigPos->lineEdit(), &QLineEdit::editingFinished, this,
            &HMonWindow::trigPosEntered);
    const std::array<QComboBox*, 2> zeroBoxes{panel_->CmbVelZero, panel_->CmbTqZero};
    for (int c = 0; c < 2; ++c) {
        QComboBox* box = zeroBoxes[static_cast<std::size_t>(c)];
        connect(box, &QComboBox::activated, this,
                [this, box, c](int i) { placeZero(c, box->itemText(i).toInt()); });
        connect(box->lineEdit(), &QLineEdit::editingFinished, this, [this, c] { zeroEntered(c); });
    }

    connect(scope_->LblCursor1, &MarkerStrip::released, this,
            [this](double f) { placeTrigger(wave::triggerPositionFromFraction(f)); });
    connect(scope_->LblCursor1, &MarkerStrip::stepRequested, this, [this](int direction) {
        placeTrigger(wave::limitTriggerPosition(global_.Wave.TriggerPosition +
                                                direction * wave::TriggerStep));
        scope_->TxtDummy1->setFocus(Qt::MouseFocusReason);
    });
    for (int c = 0; c < 2; ++c) {
        const auto k = static_cast<std::size_t>(c);
        const auto step = [this, c](int direction) {
            const int level = global_.Wave.ZeroLevel[static_cast<std::size_t>(c)];
            placeZero(c, wave::limitZeroLevel(level + direction * wave::ZeroStep));
        };
        connect(scope_->LblCursor2[k], &MarkerStrip::released, this,
                [this, c](double f) { placeZero(c, wave::zeroLevelFromFraction(f)); });
        connect(scope_->LblCursor2[k], &MarkerStrip::stepRequested, this, step);
        connect(scope_->Picture1[k], &WaveTrace::zeroStep, this, step);
    }
}

void HMonWindow::connectButtons() {
    for (int i = 0; i < 2; ++i) {
        connect(panel_->CmdFile[static_cast<std::size_t>(i)], &QPushButton::clicked, this,
                [this, i] { CmdFile_Click(i); });
        connect(panel_->CmdImage[static_cast<std::size_t>(i)], &QPushButton::clicked, this,
                [this, i] { CmdImage_Click(i); });
    }
    connect(panel_->CmdRun, &QPushButton::clicked, this, &HMonWindow::CmdRun_Click);
    connect(panel_->CmdCancel, &QPushButton::clicked, this, &HMonWindow::CmdCancel_Click);
    connect(&capture_, &WaveCapture::armed, this, [this] { onArmed(Text::WaveTriggerWaiting); });
    connect(&capture_, &WaveCapture::triggered, this, [this] { onArmed(Text::WaveTriggered); });
    connect(&capture_, &WaveCapture::recordReceived, scope_, &WaveScope::redraw);
}

void HMonWindow::formLoad(Language languageId) {
    // The stored choices, restored without sending anything.
    loading_ = true;
    const WaveMonSettings& w = global_.WaveMon;
    WaveStore& store = global_.Wave;
    store.TriggerPosition = w.TrgPosition;
    store.ZeroLevel = {wave::limitZeroLevel(w.Zero0), wave::limitZeroLevel(w.Zero1)};
    panel_->fillLists(languageId, global_.WaveMon);
    setQuietly(panel_->CmbVelScale, w.VelScale);
    setQuietly(panel_->CmbTqScale, w.TqScale);
    setQuietly(panel_->CmbTimeScale, w.TimeScale);
    panel_->ImgEdge->setIcon(waveicons::edge(panel_->CmbEdge->currentIndex()));
    panel_->ImgWave->setIcon(waveicons::waveMode(panel_->CmbWave->currentIndex()));
    placeTrigger(store.TriggerPosition);
    placeZero(0, store.ZeroLevel[0]);
    placeZero(1, store.ZeroLevel[1]);
    loading_ = false;
    loaded_ = true;
    scope_->redraw();
}

void HMonWindow::LanguageSelect(Language languageId) {
    if (!loaded_)
        formLoad(languageId);
    else
        panel_->fillLists(languageId, global_.WaveMon);
    const auto text = [languageId](Text id) { return TextCatalogue::text(languageId, id); };
    setWindowTitle(text(Text::CaptionWaveMonitor));
    panel_->LanguageSelect(languageId);
    scope_->LanguageSelect(languageId);
}

void HMonWindow::EnableControls(bool enable) {
    ChildWindow::EnableControls(enable);
    panel_->CmdRun->setEnabled(enable);
    for (QPushButton* button : panel_->CmdFile)
        button->setEnabled(enable);
    refreshCancel();
}

void HMonWindow::DisableTransferButtons() {
    ChildWindow::DisableTransferButtons();
    panel_->CmdRun->setEnabled(false);
    refreshCancel();
}

void HMonWindow::refreshCancel() {
    // Cancel reaches the drive whenever a command can, also to end a capture the drive still
    // holds from an earlier run; only while a record arrives does the line belong to it.
    panel_->CmdCancel->setEnabled(transfersAllowed() && !receivingRecord_);
}

void HMonWindow::setWaveReadingShown(bool shown) {
    panel_->PictYomitorichu->setVisible(shown);
    if (!shown) {
        panel_->LblJap->clear();
        panel_->LblT->clear();
        receivingRecord_ = false;
        refreshCancel();
        // A capture no longer shown, however it ended, cannot keep the settings locked.
        panel_->PictEnable->setEnabled(true);
    }
}

bool HMonWindow::waveReadingShown() const {
    return !panel_->PictYomitorichu->isHidden();
}

void HMonWindow::enableWavePanel() {
    panel_->PictEnable->setEnabled(true);
}

void HMonWindow::showWaveProgress(const QString& label, const QString& marks) {
    panel_->LblJap->setText(label);
    panel_->LblT->setText(marks);
}

void HMonWindow::setWaveCancelEnabled(bool enable) {
    receivingRecord_ = !enable;
    refreshCancel();
}

void HMonWindow::onArmed(Text statusText) {
    panel_->LblJap->setText(TextCatalogue::text(global_.Link.LanguageId, statusText));
    panel_->LblT->clear();
    panel_->LblEng->clear();
    panel_->PictEnable->setEnabled(false);
    receivingRecord_ = false;
    refreshCancel();
    // Focus in a window behind others would bring it to the front over the window in use.
    const auto* frame = qobject_cast<QMdiSubWindow*>(parentWidget());
    const bool inFront =
        frame ? frame->mdiArea() && frame->mdiArea()->activeSubWindow() == frame : isActiveWindow();
    if (inFront)
        panel_->CmdCancel->setFocus(Qt::OtherFocusReason);
}

void HMonWindow::CmdRun_Click() {
    capture_.run();
}

void HMonWindow::CmdCancel_Click() {
    capture_.cancel();
}

void HMonWindow::triggerSettingChanged() {
    if (loaded_ && !loading_ && !closing_)
        capture_.sendTriggerSettings();
}

void HMonWindow::trigPosEntered() {
    const int current = global_.Wave.TriggerPosition;
    const int entered = wave::triggerPositionFromText(panel_->CmbTrigPos->currentText(), current);
    // Leaving the box unchanged (or right after the list took the same entry) sends nothing.
    if (entered == current)
        panel_->CmbTrigPos->setEditText(QString::number(wave::percentFromTriggerPosition(current)));
    else
        placeTrigger(entered);
}

void HMonWindow::zeroEntered(int channel) {
    QComboBox* box = channel == 0 ? panel_->CmbVelZero : panel_->CmbTqZero;
    const int current = global_.Wave.ZeroLevel[static_cast<std::size_t>(channel)];
    placeZero(channel, wave::zeroLevelFromText(box->currentText(), current));
}

void HMonWindow::placeTrigger(int triggerPosition) {
    global_.Wave.TriggerPosition = triggerPosition;
    global_.WaveMon.TrgPosition = triggerPosition;
    scope_->showTrigger(triggerPosition);
    panel_->CmbTrigPos->setEditText(
        QString::number(wave::percentFromTriggerPosition(triggerPosition)));
    triggerSettingChanged();
}

void HMonWindow::placeZero(int channel, int level) {
    const auto c = static_cast<std::size_t>(channel);
    global_.Wave.ZeroLevel[c] = level;
    (channel == 0 ? global_.WaveMon.Zero0 : global_.WaveMon.Zero1) = level;
    scope_->showZero(channel, level);
    (channel == 0 ? panel_->CmbVelZero : panel_->CmbTqZero)->setEditText(QString::number(level));
    scope_->redraw();
}

void HMonWindow::setCursor(int cursor, int sample) {
    scope_->setCursor(cursor, sample);
}

QImage HMonWindow::composeImage() {
    return scope_->composeImage(panel_->settingsLine(global_.Link.LanguageId, global_.Wave));
}

bool HMonWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched != scope_->TxtDummy1)
        return ChildWindow::eventFilter(watched, event);
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        scope_->LblCursor1->setOpaque(event->type() == QEvent::FocusIn);
    } else if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Left || key == Qt::Key_Right) {
            // Limited like the mouse: the keys cannot put the trigger where a click cannot.
            const int step = key == Qt::Key_Left ? -wave::TriggerStep : wave::TriggerStep;
            placeTrigger(wave::limitTriggerPosition(global_.Wave.TriggerPosition + step));
            return true;
        }
    }
    return ChildWindow::eventFilter(watched, event);
}

QString HMonWindow::chooseFile(bool save, bool image) {
    QFileDialog dialog(this,
                       image ? panel_->CmdImage[1]->text() : panel_->CmdFile[save ? 1 : 0]->text());
    dialog.setObjectName(QStringLiteral("CommonDialog1"));
    dialog.setNameFilters(
        image ? QStringList{QStringLiteral("PNG(*.png)")}
              : QStringList{QStringLiteral("Wave Data(*.csv)"), QStringLiteral("All(*.*)")});
    dialog.setDefaultSuffix(image ? QStringLiteral("png") : QStringLiteral("csv"));
    dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    // Cancel is silent: no name, nothing done.
    if (dialog.exec() != QDialog::Accepted)
        return {};
    return dialog.selectedFiles().value(0);
}

void HMonWindow::CmdFile_Click(int index) {
    const bool save = index == 1;
    const QString path = chooseFile(save, false);
    if (save)
        writeFile(path);
    else
        readFile(path);
}

bool HMonWindow::writeFile(const QString& path) {
    if (path.isEmpty())
        return false;
    WaveFile::Settings s;
    s.Trig = panel_->CmbTrig->currentIndex();
    s.LgcSel = panel_->CmbLgcSel->currentIndex();
    s.Edge = panel_->CmbEdge->currentIndex();
    s.Wave = panel_->CmbWave->currentIndex();
    s.VelScale = panel_->CmbVelScale->currentIndex();
    s.VelZero = global_.Wave.ZeroLevel[0];
    s.TqScale = panel_->CmbTqScale->currentIndex();
    s.TqZero = global_.Wave.ZeroLevel[1];
    s.TimeScale = panel_->CmbTimeScale->currentIndex();
    s.TrigPosPercent = wave::percentFromTriggerPosition(global_.Wave.TriggerPosition);
    if (WaveFile::write(path, s, global_.Wave) == WaveFile::Status::Ok)
        return true;
    showFileError(Text::ScopeFileCannotBeOpened);
    return false;
}

bool HMonWindow::readFile(const QString& path) {
    if (path.isEmpty())
        return false;
    const WaveFile::ReadResult read = WaveFile::read(path);
    const Language lang = global_.Link.LanguageId;
    switch (read.status) {
        case WaveFile::Status::Ok:
            break;
        case WaveFile::Status::Identification:
            engine_.showError(TextCatalogue::text(lang, Text::MsgIdentificationError),
                              TextCatalogue::text(lang, Text::MsgIdentificationErrorCaption));
            return false;
        case WaveFile::Status::Malformed:
            showFileError(Text::ScopeLineFileCannotBe, read.line);
            return false;
        case WaveFile::Status::CannotOpen:
            showFileError(Text::ScopeFileCannotBeOpened);
            return false;
    }
    // Each choice as if the user had made it, with its effects.
    const WaveFile::Settings& s = read.settings;
    panel_->CmbTrig->setCurrentIndex(s.Trig);
    panel_->CmbLgcSel->setCurrentIndex(s.LgcSel);
    panel_->CmbEdge->setCurrentIndex(s.Edge);
    panel_->CmbVelScale->setCurrentIndex(s.VelScale);
    panel_->CmbTqScale->setCurrentIndex(s.TqScale);
    panel_->CmbTimeScale->setCurrentIndex(s.TimeScale);
    global_.Wave.WaveSamples[1] = read.now;
    global_.Wave.WaveLogic[1] = read.nowLogic;
    placeTrigger(wave::triggerPositionFromPercent(s.TrigPosPercent));
    placeZero(0, s.VelZero);
    placeZero(1, s.TqZero);
    return true;
}

void HMonWindow::showFileError(Text detailText, int line) {
    const Language lang = global_.Link.LanguageId;
    QString detail = TextCatalogue::text(lang, detailText);
    if (line > 0)
        detail = detail.arg(line);
    engine_.showError(
        TextCatalogue::text(lang, Text::MsgFileAccessError) + QLatin1Char('\n') + detail,
        TextCatalogue::text(lang, Text::MsgFileAccessErrorCaption));
}

void HMonWindow::CmdImage_Click(int index) {
    const QImage image = composeImage();
    if (index == 0) {
        QGuiApplication::clipboard()->setImage(image);
        return;
    }
    const QString path = chooseFile(true, true);
    if (!path.isEmpty() && !image.save(path, "PNG"))
        showFileError(Text::ScopeFileCannotBeOpened);
}

}  // namespace velora
