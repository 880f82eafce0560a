#pragma once

#include <QString>
#include <QWidget>

#include <array>
#include <utility>

#include "core/shared/Language.h"

class QComboBox;
class QFrame;
class QGridLayout;
class QGroupBox;
class QLabel;
class QPushButton;
class QToolButton;
class QVBoxLayout;

namespace velora {

struct WaveMonSettings;
struct WaveStore;

// The controls of the wave monitor beside its traces: the settings container (PictEnable) with
// the trigger, time, channel and display choices, the file, image and Run buttons, the capture
// status (PictYomitorichu with LblJap, LblEng, LblT) laid over their foot while a capture runs,
// and Cancel under them. It only lays them out and labels them; HMonWindow gives them their
// behaviour, as a form gives its window.
class WavePanel : public QWidget {
    Q_OBJECT
public:
    explicit WavePanel(QWidget* parent = nullptr);
    Q_DISABLE_COPY_MOVE(WavePanel)

    void LanguageSelect(Language languageId);
    // The lists whose entries are catalogue texts, in the language given, keeping the choices
    // of the settings; nothing is signalled.
    void fillLists(Language languageId, const WaveMonSettings& settings);
    // The display and trigger settings in three lines, for the image of the traces.
    [[nodiscard]] QString settingsLine(Language languageId, const WaveStore& store) const;

    QWidget* PictEnable = nullptr;
    QGroupBox* Frame1 = nullptr;
    QGroupBox* Frame2 = nullptr;
    QGroupBox* Frame3 = nullptr;
    QGroupBox* Frame4 = nullptr;
    std::array<QLabel*, 4> Label{};  // Label1-Label4
    QLabel* Label5 = nullptr;
    QLabel* Label8 = nullptr;
    QLabel* Label9 = nullptr;
    QLabel* Label10 = nullptr;
    QLabel* Label11 = nullptr;
    QLabel* Label12 = nullptr;
    QComboBox* CmbTrig = nullptr;
    QComboBox* CmbLgcSel = nullptr;
    QComboBox* CmbEdge = nullptr;
    QComboBox* CmbWave = nullptr;
    QComboBox* CmbVelScale = nullptr;
    QComboBox* CmbVelZero = nullptr;
    QComboBox* CmbTqScale = nullptr;
    QComboBox* CmbTqZero = nullptr;
    QComboBox* CmbTimeScale = nullptr;
    QComboBox* CmbTrigPos = nullptr;
    QToolButton* ImgEdge = nullptr;
    QToolButton* ImgWave = nullptr;
    std::array<QPushButton*, 2> CmdFile{};
    std::array<QPushButton*, 2> CmdImage{};
    QPushButton* CmdRun = nullptr;
    QPushButton* CmdCancel = nullptr;
    QFrame* PictYomitorichu = nullptr;
    QLabel* LblJap = nullptr;
    QLabel* LblEng = nullptr;
    QLabel* LblT = nullptr;

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // A titled frame of the settings column with its grid.
    std::pair<QGroupBox*, QGridLayout*> addFrame(QVBoxLayout* column, const QString& name);
    // The velocity and torque frames: scale and zero level each.
    void buildScales(QVBoxLayout* column);
    // The display choice, file and image buttons and Start under the settings.
    void buildButtons(QVBoxLayout* column);
    // "Reading" panel laid over the settings while a record arrives.
    void buildBusyPanel();
    void placeBusyPanel();
};

}  // namespace velora
