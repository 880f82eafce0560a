#pragma once

#include <QDialog>

#include <array>
#include <functional>

#include "core/shared/Language.h"

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace velora {

class LinkEngine;
struct Global;

// The options: the polling period, the real-time monitor, the parameter editor's cautions and
// its parameter 1-45 coupling, and per kind of table whether writes go to RAM only. Changes
// reach the shared state on OK; the settings store takes them at the end of the program.
class OptionDialog : public QDialog {
    Q_OBJECT
public:
    // Drives older than this (version x 100) write every table into non-volatile memory.
    static constexpr int RamOnlyVersion = 110;
    static constexpr int MinRetryTime = 200;
    static constexpr int MaxRetryTime = 2000;

    // fullSize tells whether the non-volatile memory choices are offered (the console's
    // free-text Send button has been revealed).
    OptionDialog(Global& global, LinkEngine& engine, std::function<bool()> fullSize,
                 QWidget* parent = nullptr);
    ~OptionDialog() override;
    Q_DISABLE_COPY_MOVE(OptionDialog)

    void LanguageSelect(Language languageId);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void buildLayout();
    void activate();
    void TxtRetryTime_LostFocus();
    void CmdOkCancel_Click(int index);

    Global& global_;
    LinkEngine& engine_;
    std::function<bool()> fullSize_;

    QLabel* Label1 = nullptr;
    QLineEdit* TxtRetryTime = nullptr;
    QCheckBox* ChkRtmon = nullptr;
    QCheckBox* ChkAxisCtn = nullptr;
    QGroupBox* Frame2 = nullptr;
    QLabel* Label2 = nullptr;
    QComboBox* CmbConnectSel = nullptr;
    QCheckBox* ChkPrmCngCtn = nullptr;
    std::array<QPushButton*, 2> CmdOkCancel{};
    QGroupBox* Frame1 = nullptr;
    std::array<QLabel*, 3> LblDataKind{};
    std::array<QComboBox*, 3> CmbWriteSel{};
};

}  // namespace velora
