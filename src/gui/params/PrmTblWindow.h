#pragma once

#include "core/params/ParamEdit.h"
#include "core/params/ParamEditOutcome.h"
#include "core/shared/Language.h"
#include "gui/shared/ChildWindow.h"

#include <QList>

#include <array>
#include <functional>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTabWidget;

namespace velora {

class DriveLine;
class LinkEngine;
class MessageBoxes;
class ParamFile;
class ParamTransfer;
class SprmTblWindow;
struct Global;

// The parameter window: the servo parameters 00-59 on six tabs of ten, each with its label,
// value box and unit, and the four transfer buttons (Write File, Read File, Write Servo, Read
// Servo). The editing rules are PrmEdit's; this window shows what they decide, asks the
// cautions they raise, and follows the transfers and the parameter file through their signals.
// It owns the system parameter window, which a hidden gesture over Write File opens.
class PrmTblWindow : public ChildWindow {
    Q_OBJECT
public:
    static constexpr int ButtonCount = 4;
    enum Button { WriteFile = 0, ReadFile = 1, WriteServo = 2, ReadServo = 3 };

    PrmTblWindow(Global& global, LinkEngine& engine, ParamTransfer& transfer, MessageBoxes& boxes,
                 QWidget* parent = nullptr);
    ~PrmTblWindow() override;
    Q_DISABLE_COPY_MOVE(PrmTblWindow)

    void LanguageSelect(Language languageId) override;
    void EnableControls(bool enable) override;
    void DisableTransferButtons() override;

    // The actions of the four buttons, by index.
    void Command_Click(int index);
    // Shows the system parameter window (modeless) beside this one.
    void showSystemWindow();
    // Box of parameter `number` (00-59 here, 60-119 in the system parameter window) shows its
    // table value anew; the colour stays.
    void showParameter(int number);

    // Asked before a button's action; false stops it (see TableGuard::buttonGuard).
    void setButtonGuard(std::function<bool(int)> guard) { buttonGuard_ = std::move(guard); }
    // The line naming the drive the values came from, as it is now.
    void showOrigin();
    // Every value shown anew and every box clean: the edits were dropped.
    void showTableAnew();

    [[nodiscard]] SprmTblWindow* systemWindow() const { return sprm_; }
    [[nodiscard]] ParamFile& paramFile() const { return *file_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildTabs();
    void buildButtons();
    void connectSources();
    void applyControls();
    [[nodiscard]] int boxIndex(const QObject* object) const;
    void onKey(int n, FieldKey key);
    void onLeave(int n);
    void follow(int n, EditOutcome outcome);
    void apply(int n, const EditOutcome& outcome);
    void showAllValues();
    void setColour(int n, BoxColour colour);
    void buildFilter();
    // The tab marks and the count of parameters marked for writing, as the table holds them.
    void showMarks();
    void showCaption();
    // Only the parameters the filter box and "show only changed" ask for; tabs without one go.
    void applyFilter();
    [[nodiscard]] bool rowShown(int n) const;
    [[nodiscard]] QString chooseFile(bool save);

    Global& global_;
    LinkEngine& engine_;
    ParamTransfer& transfer_;
    MessageBoxes& boxes_;
    PrmEdit edit_;
    ParamFile* file_ = nullptr;
    SprmTblWindow* sprm_ = nullptr;
    DriveLine* driveLine_ = nullptr;
    std::function<bool(int)> buttonGuard_;

    QTabWidget* SSTabPrm = nullptr;
    std::array<QLineEdit*, PrmEdit::BoxCount> TxtPrm{};
    std::array<QLabel*, PrmEdit::BoxCount> Label1{};
    // Unit labels with the parameter they stand beside.
    QList<QPair<int, QLabel*>> Label2;
    std::array<QPushButton*, ButtonCount> Command{};
    QLabel* LblPrmFilter = nullptr;
    QLineEdit* TxtPrmFilter = nullptr;
    QCheckBox* ChkChangedOnly = nullptr;
    QLabel* LabelMarked = nullptr;
    // The file last written or read, named in the caption; the one a read is loading.
    QString lastFile_;
    QString readingFile_;
    std::array<bool, PrmEdit::BoxCount / PrmEdit::BoxesPerTab> tabMarked_{};
    int markedShown_ = -1;
    // A box is being checked: focus changes made by the check itself check nothing.
    bool checking_ = false;
};

}  // namespace velora
