#pragma once

#include "core/app/DriveSession.h"
#include "core/shared/Language.h"
#include "core/shared/WindowLayout.h"
#include "gui/app/AppLinkUi.h"
#include "gui/app/TableGuard.h"
#include "gui/app/ToolkitTexts.h"
#include "gui/shared/MessageBoxes.h"

#include <QMainWindow>

#include <array>

class QAction;
class QMdiArea;
class QMenu;

namespace velora {

class AlarmMonWindow;
class ChildWindow;
class ComConsoleWindow;
class ComTblWindow;
class CommSettings;
class ConnectionCheckDialog;
class HMonWindow;
class HelpMenu;
class IOStatusWindow;
class InComDialog;
class NumMonitorWindow;
class OptionDialog;
class PointTblWindow;
class PrmTblWindow;
class StopStrip;
class TraceWindow;
class SystemBar;
class WindowArranger;
class VersionDialog;
struct Global;

// The main window: an MDI frame with the status bar along its foot, the child windows, the
// menus (file, window list, system), the language switch, the online/offline caption, the
// orderly end that saves the settings, and the hand-over to the sibling program. It builds the
// windows over a drive session that was there before it and stays after it.
class MDIParent : public QMainWindow {
    Q_OBJECT
public:
    // ui: what the session's link engine shows through; it gets this window's windows.
    MDIParent(DriveSession& session, AppLinkUi& ui, QWidget* parent = nullptr);
    ~MDIParent() override;
    Q_DISABLE_COPY_MOVE(MDIParent)

    // The load: settings, data tables, the child windows in their order (the status bar's
    // opens the port), the comm settings when the port could not be opened, the texts.
    void startUp();

    // The menus' texts.
    void LanguageSelect(Language languageId);
    // The language of all windows: this one, then every child window.
    void LanguageOfAllWindows();
    // The caption for online (offline 0) or offline (offline 1).
    void CaptionOffLineChange(Language languageId, int offline);
    // The simulated drive's device while it is the one in use, else empty.
    [[nodiscard]] QString simulatedDeviceInUse() const;
    // Every setting into the store; called at every orderly end.
    void saveAllSettings();

    [[nodiscard]] LinkEngine& engine() { return engine_; }
    [[nodiscard]] MessageBoxes& messageBoxes() { return boxes_; }
    [[nodiscard]] SystemBar* systemBar() const { return systemBar_; }
    [[nodiscard]] ParamTransfer& paramTransfer() { return params_; }
    [[nodiscard]] PointTransfer& pointTransfer() { return points_; }
    [[nodiscard]] ComTransfer& comTransfer() { return commands_; }
    [[nodiscard]] RealTimeMonitor& realTimeMonitor() { return monitor_; }
    [[nodiscard]] AlarmMonitor& alarmMonitor() { return alarms_; }
    [[nodiscard]] WaveCapture& waveCapture() { return wave_; }
    [[nodiscard]] CommSettings* commSettings() const { return commSettings_; }
    [[nodiscard]] AdapterWatch& adapterWatch() { return adapterWatch_; }
    [[nodiscard]] ConnectionCheckDialog* connectionCheck() const { return checkDialog_; }
    [[nodiscard]] TableGuard& tableGuard() { return guard_; }
    // The child windows in their start-up order.
    [[nodiscard]] QList<ChildWindow*> childWindows() const;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    // The design size, or the available screen area on a smaller screen.
    void fitToScreen();
    // Once shown, the frame with its decorations lies inside the available area.
    void keepInsideScreen();
    // The windows where they stood at the last orderly end, or else as at a first start.
    void arrangeWindows();
    // The layout of the moment, as saved at an orderly end.
    [[nodiscard]] WindowLayout currentLayout() const;
    // The status bar's line naming the link in use.
    void showLinkLine();
    void buildMenus();
    void buildWindows();
    void connectReplyFamilies();
    void refreshWindowMenu();
    void mnuSystemItem_Click(int index);
    void mnuSystemLang_Click(int index);
    void softwareVersionChange();
    // Asks, once, whether the program may end with edits waiting or the servo on.
    [[nodiscard]] bool mayEnd();
    void showModal(QDialog* dialog);
    void buildConnectionCare();
    void buildGuards();
    void rememberAdapter();

    Global& global_;
    ShellSetup& setup_;
    AppLinkUi& ui_;
    MessageBoxes& boxes_;
    ToolkitTexts toolkitTexts_;
    // The session's parts, by the names the windows are built with.
    LinkEngine& engine_;
    ParamTransfer& params_;
    PointTransfer& points_;
    ComTransfer& commands_;
    RealTimeMonitor& monitor_;
    AlarmMonitor& alarms_;
    WaveCapture& wave_;
    AdapterWatch& adapterWatch_;
    DriveCopies& copies_;
    TransferActivity& activity_;
    TableGuard guard_;
    bool ended_ = false;
    // The user has agreed to end the program: the close that follows asks nothing more.
    bool quitAgreed_ = false;

    QMdiArea* mdiArea_ = nullptr;
    WindowArranger* arranger_ = nullptr;
    SystemBar* systemBar_ = nullptr;
    ComConsoleWindow* comConsole_ = nullptr;
    PrmTblWindow* prmTbl_ = nullptr;
    PointTblWindow* pointTbl_ = nullptr;
    ComTblWindow* comTbl_ = nullptr;
    NumMonitorWindow* numMonitor_ = nullptr;
    IOStatusWindow* ioStatus_ = nullptr;
    AlarmMonWindow* alarmMon_ = nullptr;
    HMonWindow* hMon_ = nullptr;
    // The frame trace: outside the start-up order, shown from the Window menu.
    TraceWindow* trace_ = nullptr;
    InComDialog* inComDialog_ = nullptr;
    CommSettings* commSettings_ = nullptr;
    OptionDialog* optionDialog_ = nullptr;
    VersionDialog* versionDialog_ = nullptr;
    ConnectionCheckDialog* checkDialog_ = nullptr;
    StopStrip* stopStrip_ = nullptr;

    QMenu* mnuFile = nullptr;
    QAction* mnuFileItem0 = nullptr;
    QMenu* mnuWindow = nullptr;
    // Tile, Cascade, Arrange as at First Start.
    std::array<QAction*, 3> mnuWindowArrange{};
    QMenu* mnuSystem = nullptr;
    std::array<QAction*, 5> mnuSystemItem{};
    QMenu* mnuLanguage = nullptr;
    std::array<QAction*, 2> mnuSystemLang{};
    QAction* mnuSystemCheck = nullptr;
    HelpMenu* helpMenu_ = nullptr;
};

}  // namespace velora
