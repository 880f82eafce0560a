#pragma once

#include "core/pointtable/PointEdit.h"
#include "core/shared/Language.h"
#include "core/shared/PointTables.h"
#include "gui/shared/ChildWindow.h"

#include <QTimer>

#include <array>
#include <functional>
#include <optional>

class QLabel;
class QLineEdit;
class QPushButton;
class QTabWidget;

namespace velora {

class DriveLine;
class LinkEngine;
class PointFile;
class PointTransfer;
struct Global;

// The point table window: the 64 points on eight tabs of eight rows, each row a heading and
// seven boxes, the four transfer buttons and the button that joins the command table window
// beside this one. The editing rules are PointEdit's; this window shows what they decide and
// follows the transfer and the point table file through their signals.
class PointTblWindow : public ChildWindow {
    Q_OBJECT
public:
    static constexpr int ButtonCount = 4;
    static constexpr int TabCount = PointTables::Count / PointEdit::PointsPerTab;
    enum Button { WriteFile = 0, ReadFile = 1, WriteServo = 2, ReadServo = 3 };

    PointTblWindow(Global& global, LinkEngine& engine, PointTransfer& transfer,
                   QWidget* parent = nullptr);
    ~PointTblWindow() override;
    Q_DISABLE_COPY_MOVE(PointTblWindow)

    void LanguageSelect(Language languageId) override;
    void EnableControls(bool enable) override;
    void DisableTransferButtons() override;

    // The command table window, kept beside this one while the tables are joined.
    void setPartner(QWidget* comTbl) { partner_ = comTbl; }

    void Command_Click(int index);
    void CmdJoin_Click();
    // Every box shows its stored value anew; colours stay.
    void showAllPoints();
    void MarkEdited(int point);
    void MarkLoaded(int point);
    void ResetRow(int point);

    // Asked before a button's action; false stops it (see TableGuard::buttonGuard).
    void setButtonGuard(std::function<bool(int)> guard) { buttonGuard_ = std::move(guard); }
    // The line naming the drive the table came from, as it is now.
    void showOrigin();

    [[nodiscard]] PointFile& pointFile() const { return *file_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void buildTab(int tab);
    void keepTabsInSight();
    void buildFoot();
    void connectSources();
    void applyControls();
    void onKey(int point, int field, FieldKey key);
    void onLeave(int point, int field);
    void paintRow(int point, TableColour colour);
    void showMarks();
    void showCaption();
    void setJoined(bool joined);
    void Timer1_Timer();

    Global& global_;
    PointTables& tables_;
    LinkEngine& engine_;
    PointTransfer& transfer_;
    PointEdit edit_;
    PointFile* file_ = nullptr;
    QWidget* partner_ = nullptr;

    QTabWidget* SSTabPntTbl = nullptr;
    std::array<QLabel*, PointTables::Count> LabelTitle{};
    std::array<QLabel*, PointTables::Count> LabelPointNo{};
    // Row by point, column by PointField.
    std::array<std::array<QLineEdit*, PointEdit::FieldCount>, PointTables::Count> boxes_{};
    std::array<TableColour, PointTables::Count> rowColour_{};
    // What the tab captions and the status line show now.
    std::array<std::optional<bool>, TabCount> tabMarked_{};
    int markedShown_ = -1;
    std::array<QPushButton*, ButtonCount> Command{};
    QPushButton* CmdJoin = nullptr;
    QLabel* LabelMarked = nullptr;
    DriveLine* driveLine_ = nullptr;
    std::function<bool(int)> buttonGuard_;
    QTimer Timer1;
    QString lastFile_;
    bool frameHooked_ = false;
    // A box is being checked: focus changes made by the check itself check nothing.
    bool checking_ = false;
};

}  // namespace velora
