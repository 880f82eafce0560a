#pragma once

#include <QImage>
#include <QWidget>

#include <array>

#include "core/shared/Language.h"

class QLabel;
class QLineEdit;

namespace velora {

class MarkerStrip;
class WaveTrace;
struct Global;

// The scope face of the wave monitor: the three traces (Picture1(0..2)), the trigger strip with
// its marker above them, the zero strips beside the analogue ones, the keyboard owner of the
// trigger marker (TxtDummy1), and the readouts of the two time cursors and of the pointer. It
// shows the shared wave state; HMonWindow decides what the markers and keys change.
class WaveScope : public QWidget {
    Q_OBJECT
public:
    explicit WaveScope(const Global& global, QWidget* parent = nullptr);
    Q_DISABLE_COPY_MOVE(WaveScope)

    void LanguageSelect(Language languageId);
    // The trigger marker and the trigger line of every picture.
    void showTrigger(int triggerPosition);
    void showZero(int channel, int level);
    // Scales, zero lines and display mode from the shared settings; the readout follows.
    void redraw();
    // Places time cursor 0 or 1 on a sample.
    void setCursor(int cursor, int sample);
    void updateReadout();
    // The three traces as drawn now, with a header line above them.
    [[nodiscard]] QImage composeImage(const QString& header);

    std::array<WaveTrace*, 3> Picture1{};
    MarkerStrip* LblCursor1 = nullptr;
    std::array<MarkerStrip*, 2> LblCursor2{};
    QLineEdit* TxtDummy1 = nullptr;
    QLabel* LblCursorReadout = nullptr;
    QLabel* LblHover = nullptr;

private:
    void showHover(int sample);

    const Global& global_;
    std::array<int, 2> cursors_{-1, -1};
};

}  // namespace velora
