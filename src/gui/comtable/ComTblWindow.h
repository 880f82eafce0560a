#pragma once

#include "core/comtable/ComEdit.h"
#include "core/shared/ComTables.h"
#include "core/shared/Language.h"
#include "gui/shared/ChildWindow.h"

#include <QTimer>

#include <array>
#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;

namespace velora {

class ComFile;
class ComTransfer;
class DriveLine;
class LinkEngine;
struct Global;

// The velocity/ATC/torque command table window: ten rows No.0-No.9 with a velocity and an ATC
// box each and a torque box from No.1 on, and the four transfer buttons. The editing rules are
// ComEdit's; this window shows what they decide and follows the transfer and the command table
// file through their signals. While the tables are joined and this window is active, it keeps
// the point table window on its left.
class ComTblWindow : public ChildWindow {
    Q_OBJECT
public:
    static constexpr int ButtonCount = 4;
    static constexpr int RowCount = 10;
    enum Button { WriteFile = 0, ReadFile = 1, WriteServo = 2, ReadServo = 3 };

    ComTblWindow(Global& global, LinkEngine& engine, ComTransfer& transfer,
                 QWidget* parent = nullptr);
    ~ComTblWindow() override;
    Q_DISABLE_COPY_MOVE(ComTblWindow)

    void LanguageSelect(Language languageId) override;
    void EnableControls(bool enable) override;
    void DisableTransferButtons() override;

    // The point table window, kept beside this one while the tables are joined.
    void setPartner(QWidget* pointTbl) { partner_ = pointTbl; }

    void Command_Click(int index);
    // Every box shows its stored value anew; colours stay.
    void showAllCells();
    void ResetComRow(int k);

    // Asked before a button's action; false stops it (see TableGuard::buttonGuard).
    void setButtonGuard(std::function<bool(int)> guard) { buttonGuard_ = std::move(guard); }
    // The line naming the drive the table came from, as it is now.
    void showOrigin();

    [[nodiscard]] ComFile& comFile() const { return *file_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void buildGrid();
    void buildFoot();
    void connectSources();
    void applyControls();
    void onKey(int k, FieldKey key);
    void onLeave(int k);
    void paintCell(int k, TableColour colour);
    void showMarks();
    void showCaption();
    void Timer1_Timer();

    Global& global_;
    ComTables& tables_;
    LinkEngine& engine_;
    ComTransfer& transfer_;
    ComEdit edit_;
    ComFile* file_ = nullptr;
    QWidget* partner_ = nullptr;

    // Column headings Label2..Label5 and the row headings.
    std::array<QLabel*, 4> Labels{};
    std::array<QLabel*, RowCount> LabelComNo{};
    // Index k = cell; no box at 20.
    std::array<QLineEdit*, ComTables::CellCount> TextCom{};
    std::array<QPushButton*, ButtonCount> Command{};
    QLabel* LabelMarked = nullptr;
    DriveLine* driveLine_ = nullptr;
    std::function<bool(int)> buttonGuard_;
    QTimer Timer1;
    QString lastFile_;
    bool frameHooked_ = false;
    bool checking_ = false;
};

}  // namespace velora
