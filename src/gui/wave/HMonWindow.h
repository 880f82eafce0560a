#pragma once

#include "core/shared/Language.h"
#include "core/shared/TextId.h"
#include "gui/shared/ChildWindow.h"

#include <QImage>

namespace velora {

class LinkEngine;
class WaveCapture;
class WavePanel;
class WaveScope;
struct Global;

// The wave monitor: trigger settings, the three traces of the captured record beside the
// previous one, the trigger and zero markers, the .csv files, and on top of that two time
// cursors with their readout, a pointer readout and the traces as an image. The capture
// itself is WaveCapture's; this window sets the shared settings and follows its signals.
class HMonWindow : public ChildWindow {
    Q_OBJECT
public:
    HMonWindow(Global& global, LinkEngine& engine, WaveCapture& capture, QWidget* parent = nullptr);

    void LanguageSelect(Language languageId) override;
    void EnableControls(bool enable) override;
    void DisableTransferButtons() override;

    // The "reading" picture (PictYomitorichu) shown while a capture runs.
    void setWaveReadingShown(bool shown);
    [[nodiscard]] bool waveReadingShown() const;
    // The panel of the settings (PictEnable) usable again.
    void enableWavePanel();
    // The progress line of a long record: the status text and its marks.
    void showWaveProgress(const QString& label, const QString& marks);
    void setWaveCancelEnabled(bool enable);
    // From now on no setting change sends anything.
    void programClosing() { closing_ = true; }

    // Write File and Read File with the name already chosen; an empty name does nothing.
    bool writeFile(const QString& path);
    bool readFile(const QString& path);
    // The three traces with their settings written above them.
    [[nodiscard]] QImage composeImage();
    // Sample indexes of the two time cursors (WaveTrace::NoCursor when not placed).
    void setCursor(int cursor, int sample);

private:
    void buildControls();
    void connectControls();
    // The trigger position and the zero levels, from their boxes and their markers.
    void connectPlacements();
    // File, image, Start and Cancel, and the capture's progress shown.
    void connectButtons();
    void formLoad(Language languageId);

    void CmdRun_Click();
    void CmdCancel_Click();
    void CmdFile_Click(int index);
    void CmdImage_Click(int index);
    void triggerSettingChanged();
    void trigPosEntered();
    void zeroEntered(int channel);
    void placeTrigger(int triggerPosition);
    void placeZero(int channel, int level);
    void onArmed(Text statusText);
    void refreshCancel();
    [[nodiscard]] QString chooseFile(bool save, bool image);
    void showFileError(Text detailText, int line = 0);
    bool eventFilter(QObject* watched, QEvent* event) override;

    Global& global_;
    LinkEngine& engine_;
    WaveCapture& capture_;
    bool loaded_ = false;
    bool closing_ = false;
    bool loading_ = false;
    // The record is arriving: Cancel waits until it is complete.
    bool receivingRecord_ = false;

    WaveScope* scope_ = nullptr;
    WavePanel* panel_ = nullptr;
};

}  // namespace velora
