#include "gui/app/MDIParent.h"

#include "core/link/LinkLine.h"
#include "core/link/TableChain.h"
#include "core/link/WireFormat.h"
#include "core/params/ParamCatalogue.h"
#include "core/shared/Global.h"
#include "core/shared/TextCatalogue.h"
#include "gui/app/CommSettings.h"
#include "gui/app/HelpDialog.h"
#include "gui/app/HelpMenu.h"
#include "gui/app/StopStrip.h"
#include "gui/app/WindowArranger.h"
#include "gui/comtable/ComTblWindow.h"
#include "gui/connect/ConnectionCheckDialog.h"
#include "gui/console/ComConsoleWindow.h"
#include "gui/link/InComDialog.h"
#include "gui/link/SystemBar.h"
#include "gui/link/TraceWindow.h"
#include "gui/monitor/AlarmMonWindow.h"
#include "gui/monitor/IOStatusWindow.h"
#include "gui/monitor/NumMonitorWindow.h"
#include "gui/options/OptionDialog.h"
#include "gui/options/VersionDialog.h"
#include "gui/params/PrmTblWindow.h"
#include "gui/pointtable/PointTblWindow.h"
#include "gui/wave/HMonWindow.h"

#include <QActionGroup>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>

#include <algorithm>

namespace velora {

namespace {

// The size the frame is laid out for; smaller screens get the available area instead.
constexpr QSize kDesignSize{1300, 860};

template <typename W>
W* named(W* object, const QString& name) {
    object->setObjectName(name);
    return object;
}

}  // namespace

MDIParent::MDIParent(DriveSession& session, AppLinkUi& ui, QWidget* parent)
    : QMainWindow(parent),
      global_(session.global()),
      setup_(session.setup()),
      ui_(ui),
      boxes_(ui.boxes()),
      engine_(session.engine()),
      params_(session.paramTransfer()),
      points_(session.pointTransfer()),
      commands_(session.comTransfer()),
      monitor_(session.realTimeMonitor()),
      alarms_(session.alarmMonitor()),
      wave_(session.waveCapture()),
      adapterWatch_(session.adapterWatch()),
      copies_(session.driveCopies()),
      activity_(session.transferActivity()),
      guard_(global_, engine_, boxes_, copies_) {
    setObjectName(QStringLiteral("MDIParent"));
    boxes_.setOwner(this);
    buildWindows();
    buildMenus();
    connectReplyFamilies();
    buildConnectionCare();
    buildGuards();
    CaptionOffLineChange(Language::English, 0);  // "Velora" until the link says otherwise
    fitToScreen();
}

void MDIParent::fitToScreen() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    const QRect available = screen ? screen->availableGeometry() : QRect(QPoint(), kDesignSize);
    if (available.width() >= kDesignSize.width() && available.height() >= kDesignSize.height()) {
        resize(kDesignSize);
        return;
    }
    // Maximised, a window manager fits the frame and its title bar into the area.
    resize(available.size());
    setWindowState(windowState() | Qt::WindowMaximized);
}

void MDIParent::keepInsideScreen() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen || !isVisible())
        return;
    const QRect available = screen->availableGeometry();
    if (available.contains(frameGeometry()))
        return;
    // Without a window manager nothing honours the maximised state: the frame itself goes
    // where the area is.
    const QMargins margins = windowHandle() ? windowHandle()->frameMargins() : QMargins();
    setGeometry(available.marginsRemoved(margins));
}

void MDIParent::arrangeWindows() {
    const std::optional<WindowLayout> kept = setup_.settings.loadLayout();
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (kept && screen) {
        if (kept->mainMaximised) {
            // The window manager maximises later; the windows are placed in the size it will give.
            resize(screen->availableGeometry().size());
            setWindowState(windowState() | Qt::WindowMaximized);
        } else if (screen->availableGeometry().contains(kept->mainGeometry))
            setGeometry(kept->mainGeometry);
    }
    keepInsideScreen();
    // The frame's layout decides the area's size; it must be settled before anything is placed.
    layout()->activate();
    centralWidget()->layout()->activate();
    if (kept && arranger_->restore(*kept)) {
        global_.TablesJoined = kept->tablesJoined;
        return;
    }
    arranger_->arrangeFirstStart();
}

WindowLayout MDIParent::currentLayout() const {
    WindowLayout layout;
    layout.mainMaximised = isMaximized();
    layout.mainGeometry = isMaximized() ? normalGeometry() : geometry();
    layout.frames = arranger_->capture();
    layout.tablesJoined = global_.TablesJoined;
    return layout;
}

void MDIParent::showLinkLine() {
    systemBar_->setLinkLine(linkline::statusText(global_.Link.LanguageId, global_.Link,
                                                 engine_.device(), simulatedDeviceInUse()));
}

QString MDIParent::simulatedDeviceInUse() const {
    // A device chosen in Comm Settings after a start with --simulate is a real one.
    return engine_.device() == setup_.simulatedDevice ? setup_.simulatedDevice : QString();
}

MDIParent::~MDIParent() = default;

void MDIParent::connectReplyFamilies() {
    connect(&params_, &ParamTransfer::portSearchSucceeded, commSettings_,
            &CommSettings::onIdentified);
    connect(&monitor_, &RealTimeMonitor::ShowServoStatus, systemBar_,
            [this](const ServoStatusView& status) {
                const IndicatorColours run = status.runLampColours();
                const IndicatorColours alarm = status.alarmLampColours();
                const IndicatorColours svon = status.svonColours();
                systemBar_->setLamp(0, QColor(QRgb(run.fill)), QColor(QRgb(run.back)));
                systemBar_->setLamp(1, QColor(QRgb(alarm.fill)), QColor(QRgb(alarm.back)));
                systemBar_->setServoOnColours(QColor(QRgb(svon.back)), QColor(QRgb(svon.fill)));
            });
    connect(&monitor_, &RealTimeMonitor::ShowIoState, ioStatus_, &IOStatusWindow::ShowIoState);
    connect(&params_, &ParamTransfer::transferFinished, ioStatus_,
            &IOStatusWindow::UpdateInputNames);
    // The monitor switch cannot change while a capture holds the line.
    connect(&wave_, &WaveCapture::armed, numMonitor_,
            [this] { numMonitor_->setMonitorSwitchEnabled(false); });
}

void MDIParent::buildConnectionCare() {
    checkDialog_ = new ConnectionCheckDialog(engine_, this);
    mnuSystemCheck = named(new QAction(this), QStringLiteral("mnuSystemCheck"));
    mnuSystem->insertAction(mnuSystemItem[1], mnuSystemCheck);
    connect(mnuSystemCheck, &QAction::triggered, this, [this] { showModal(checkDialog_); });
    connect(checkDialog_, &ConnectionCheckDialog::searchRequested, this, [this] {
        showModal(commSettings_);
        if (auto* search = commSettings_->findChild<QPushButton*>(QStringLiteral("CmdSrch"));
            search && search->isEnabled())
            search->click();
    });
    connect(&adapterWatch_, &AdapterWatch::note, systemBar_, &SystemBar::setConnectionNote);
    connect(&adapterWatch_, &AdapterWatch::note, this, &MDIParent::showLinkLine);
    connect(commSettings_, &CommSettings::onlineChanged, this, [this](bool online) {
        if (online)
            rememberAdapter();
    });
}

void MDIParent::buildGuards() {
    using driverules::Table;
    prmTbl_->setButtonGuard(guard_.buttonGuard(Table::Params));
    pointTbl_->setButtonGuard(guard_.buttonGuard(Table::Points));
    comTbl_->setButtonGuard(guard_.buttonGuard(Table::Commands));
    commSettings_->setDriveChangeGuard([this] { return guard_.mayChangeDrive(); });
    connect(&guard_, &TableGuard::editsDropped, this, [this] {
        prmTbl_->showTableAnew();
        pointTbl_->showAllPoints();
        for (int p = 0; p < PointTables::Count; ++p)
            pointTbl_->ResetRow(p);
        comTbl_->showAllCells();
        for (int k = 0; k < ComTables::CellCount; ++k) {
            if (k != ComTables::NoCell)
                comTbl_->ResetComRow(k);
        }
        pointTbl_->showOrigin();
        comTbl_->showOrigin();
    });
    // The lines stand out while the link addresses another drive than their table's.
    connect(commSettings_, &CommSettings::axisNumberApplied, this, [this] {
        prmTbl_->showOrigin();
        pointTbl_->showOrigin();
        comTbl_->showOrigin();
    });
    inComDialog_->setActivity([this] { activity_.begin(); }, [this] { return activity_.text(); });
    connect(inComDialog_, &InComDialog::cancelRequested, this,
            [this] { tablechain::cancel(engine_); });

    stopStrip_ = new StopStrip(engine_, this);
    addToolBar(Qt::TopToolBarArea, stopStrip_);
    connect(comConsole_, &ComConsoleWindow::commandButtonsEnabled, stopStrip_,
            &StopStrip::setStopsEnabled);
}

bool MDIParent::mayEnd() {
    if (!quitAgreed_)
        quitAgreed_ = guard_.mayQuit();
    return quitAgreed_;
}

void MDIParent::rememberAdapter() {
    // The simulated drive's pseudo-terminal is no adapter of the user's.
    if (global_.Link.run().PortOpen && simulatedDeviceInUse().isEmpty())
        adapterWatch_.rememberOpenedAdapter();
}

void MDIParent::buildWindows() {
    auto* central = new QWidget(this);
    auto* column = new QVBoxLayout(central);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    mdiArea_ = named(new QMdiArea(central), QStringLiteral("MDIClient"));
    // On a small screen the windows stay reachable: the area scrolls instead of cutting them.
    mdiArea_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    mdiArea_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    systemBar_ = new SystemBar(engine_, central);
    column->addWidget(mdiArea_, 1);
    column->addWidget(systemBar_);
    setCentralWidget(central);

    // Each goes into a frame of the MDI area right after.
    comConsole_ = new ComConsoleWindow(engine_, mdiArea_);
    prmTbl_ = new PrmTblWindow(global_, engine_, params_, boxes_, mdiArea_);
    pointTbl_ = new PointTblWindow(global_, engine_, points_, mdiArea_);
    comTbl_ = new ComTblWindow(global_, engine_, commands_, mdiArea_);
    pointTbl_->setPartner(comTbl_);
    comTbl_->setPartner(pointTbl_);
    numMonitor_ = new NumMonitorWindow(monitor_, global_.Link, mdiArea_);
    ioStatus_ = new IOStatusWindow(global_.Params, mdiArea_);
    alarmMon_ = new AlarmMonWindow(alarms_, mdiArea_);
    hMon_ = new HMonWindow(global_, engine_, wave_, mdiArea_);
    arranger_ = new WindowArranger(mdiArea_, this);
    for (ChildWindow* child : childWindows()) {
        child->followLink(global_.Link);
        QMdiSubWindow* frame = mdiArea_->addSubWindow(child);
        frame->hide();  // until its turn in the start-up
        arranger_->follow(frame);
    }
    trace_ = new TraceWindow(engine_, boxes_, mdiArea_);
    QMdiSubWindow* traceFrame = mdiArea_->addSubWindow(trace_);
    traceFrame->setGeometry(100, 100, 640, 360);
    traceFrame->hide();
    arranger_->follow(traceFrame);

    inComDialog_ = new InComDialog(global_.Link, this);
    commSettings_ = new CommSettings(global_, engine_, boxes_, setup_.transports, this);
    optionDialog_ = new OptionDialog(
        global_, engine_, [this] { return comConsole_->commandSendVisible(); }, this);
    versionDialog_ = new VersionDialog(global_.Link, this);
    connect(commSettings_, &CommSettings::axisNumberApplied, systemBar_, &SystemBar::setAxisNumber);
    connect(commSettings_, &CommSettings::parameterStored, prmTbl_, &PrmTblWindow::showParameter);
    connect(commSettings_, &CommSettings::onlineChanged, this,
            [this](bool online) { CaptionOffLineChange(global_.Link.LanguageId, online ? 0 : 1); });

    AppLinkUi::Windows windows;
    windows.systemBar = systemBar_;
    windows.console = comConsole_;
    windows.numMonitor = numMonitor_;
    windows.waveMonitor = hMon_;
    windows.busyDialog = inComDialog_;
    for (ChildWindow* child : childWindows())
        windows.children << child;
    ui_.attach(windows);
    connect(commSettings_, &CommSettings::onlineChanged, this, &MDIParent::showLinkLine);
    connect(commSettings_, &CommSettings::axisNumberApplied, this, &MDIParent::showLinkLine);
}

QList<ChildWindow*> MDIParent::childWindows() const {
    return {comConsole_, prmTbl_, pointTbl_, comTbl_, numMonitor_, ioStatus_, alarmMon_, hMon_};
}

void MDIParent::buildMenus() {
    mnuFile = named(menuBar()->addMenu(QString()), QStringLiteral("mnuFile"));
    mnuFileItem0 = named(mnuFile->addAction(QString()), QStringLiteral("mnuFileItem(0)"));
    connect(mnuFileItem0, &QAction::triggered, this, &QWidget::close);

    mnuWindow = named(menuBar()->addMenu(QString()), QStringLiteral("mnuWindow"));
    connect(mnuWindow, &QMenu::aboutToShow, this, &MDIParent::refreshWindowMenu);
    for (int i = 0; i < 3; ++i) {
        mnuWindowArrange[static_cast<std::size_t>(i)] =
            named(new QAction(this), QStringLiteral("mnuWindowArrange(%1)").arg(i));
    }
    connect(mnuWindowArrange[0], &QAction::triggered, arranger_, &WindowArranger::tile);
    connect(mnuWindowArrange[1], &QAction::triggered, arranger_, &WindowArranger::cascade);
    connect(mnuWindowArrange[2], &QAction::triggered, arranger_,
            &WindowArranger::arrangeFirstStart);

    mnuSystem = named(menuBar()->addMenu(QString()), QStringLiteral("mnuSystem"));
    for (int i = 0; i < 5; ++i) {
        QAction* item = nullptr;
        if (i == 1) {
            mnuLanguage = named(mnuSystem->addMenu(QString()), QStringLiteral("mnuSystemLang"));
            item = mnuLanguage->menuAction();
        } else {
            item = mnuSystem->addAction(QString());
            connect(item, &QAction::triggered, this, [this, i] { mnuSystemItem_Click(i); });
        }
        mnuSystemItem[static_cast<std::size_t>(i)] =
            named(item, QStringLiteral("mnuSystemItem(%1)").arg(i));
    }
    auto* languages = new QActionGroup(this);
    for (int i = 0; i < 2; ++i) {
        QAction* item =
            named(mnuLanguage->addAction(QString()), QStringLiteral("mnuSystemLang(%1)").arg(i));
        item->setCheckable(true);
        languages->addAction(item);
        connect(item, &QAction::triggered, this, [this, i] { mnuSystemLang_Click(i); });
        mnuSystemLang[static_cast<std::size_t>(i)] = item;
    }
    helpMenu_ = new HelpMenu(
        *this, [this] { showModal(versionDialog_); }, [this] { return global_.Link.LanguageId; });
}

void MDIParent::LanguageSelect(Language languageId) {
    mnuFile->setTitle(TextCatalogue::text(languageId, Text::MenuFile));
    mnuFileItem0->setText(TextCatalogue::text(languageId, Text::MenuQuit));
    mnuWindow->setTitle(TextCatalogue::text(languageId, Text::MenuWindow));
    mnuSystem->setTitle(TextCatalogue::text(languageId, Text::MenuSystem));
    mnuSystemItem[0]->setText(TextCatalogue::text(languageId, Text::MenuCommSettings));
    mnuSystemItem[1]->setText(TextCatalogue::text(languageId, Text::MenuLanguage));
    mnuSystemItem[2]->setText(TextCatalogue::text(languageId, Text::MenuOption));
    mnuSystemItem[3]->setText(TextCatalogue::text(languageId, Text::MenuVersionInformation));
    mnuSystemItem[4]->setText(TextCatalogue::text(languageId, Text::MenuSoftwareVersionChange));
    mnuSystemLang[0]->setText(TextCatalogue::text(languageId, Text::MenuEnglish));
    mnuSystemLang[1]->setText(TextCatalogue::text(languageId, Text::MenuJapanese));
    mnuSystemCheck->setText(TextCatalogue::text(languageId, Text::MenuConnectionCheck));
    stopStrip_->LanguageSelect(languageId);
    helpMenu_->LanguageSelect(languageId);
    for (std::size_t i = 0; i < mnuWindowArrange.size(); ++i)
        mnuWindowArrange[i]->setText(
            TextCatalogue::text(languageId, Text::MenuWindowTile, static_cast<int>(i)));
}

void MDIParent::LanguageOfAllWindows() {
    const Language lang = global_.Link.LanguageId;
    // First, so that the toolkit's buttons and dialogs follow from the next box on.
    toolkitTexts_.select(lang);
    LanguageSelect(lang);
    alarmMon_->LanguageSelect(lang);
    comConsole_->LanguageSelect(lang);
    comTbl_->LanguageSelect(lang);
    hMon_->LanguageSelect(lang);
    ioStatus_->LanguageSelect(lang);
    numMonitor_->LanguageSelect(lang);
    pointTbl_->LanguageSelect(lang);
    prmTbl_->LanguageSelect(lang);
    systemBar_->LanguageSelect(lang);
    trace_->LanguageSelect(lang);
    showLinkLine();
}

void MDIParent::CaptionOffLineChange(Language languageId, int offline) {
    QString caption = offline != 0 ? TextCatalogue::text(languageId, Text::MainCaptionOffline)
                                   : TextCatalogue::text(languageId, Text::MainCaption);
    caption += linkline::captionPart(languageId, engine_.deviceOverride(), simulatedDeviceInUse());
    setWindowTitle(caption);
}

void MDIParent::startUp() {
    LinkState& s = global_.Link;
    // The settings, then the tables the windows show. The tables start empty, so no editor
    // counts as holding data read from the drive.
    setup_.settings.loadComAndLanguage(global_);
    toolkitTexts_.select(s.LanguageId);
    InitParamTables(global_.Params);
    InitComTable(global_.Com);
    copies_.takeAll();
    // Each window loads its texts as it loads, so that none stands empty while the port is
    // being opened and a message may be waiting; all are set again once every window is there.
    LanguageSelect(s.LanguageId);

    // The status bar's load: the polling period, the port through the chosen back-end, the
    // first poll.
    systemBar_->LanguageSelect(s.LanguageId);
    systemBar_->setClock(engine_.now());
    global_.RetryTime = setup_.settings.loadRetryTime();
    setup_.settings.loadConnection(global_.Connection);
    if (setup_.deviceOverride.isEmpty()) {
        // A device chosen from the port list, or the remembered adapter where it is now.
        engine_.setDeviceOverride(global_.Connection.Device);
        adapterWatch_.locate();
    }
    applyBackEnd(engine_, setup_.transports);
    engine_.start(global_.RetryTime);
    // Without the monitor no reply comes unasked to unlock the windows: they are usable as
    // soon as the port is open.
    if (s.Online && s.run().PortOpen && !s.RealTimeMonitor)
        engine_.EnableControls(true);
    rememberAdapter();
    if (s.Online && !s.run().PortOpen) {
        // The USB adapter's failure shows no message; the bar still says why and what to do.
        const OpenResult& failed = engine_.lastOpen();
        systemBar_->setConnectionNote(
            failed.device + QStringLiteral(": ") +
            QString(failed.reason).replace(QLatin1Char('\n'), QLatin1Char(' ')));
    }
    // "Velora" reads the same in both languages; what names the device does not.
    CaptionOffLineChange(s.LanguageId, s.Online ? 0 : 1);

    for (ChildWindow* child : childWindows()) {
        if (child == hMon_)
            setup_.settings.loadWaveMon(global_.WaveMon);
        child->LanguageSelect(s.LanguageId);
        child->parentWidget()->show();
    }
    // Once each window has its texts, and so its size.
    arrangeWindows();
    if (s.Online && !s.run().PortOpen)
        showModal(commSettings_);
    systemBar_->setAxisNumber(s.AxisNumber);
    if (s.AxisNumber == wire::AllAxes)
        engine_.DisableTransferButtons();
    LanguageOfAllWindows();
    mnuSystemLang[s.LanguageId != Language::English ? 1 : 0]->setChecked(true);
    showLinkLine();
}

void MDIParent::showModal(QDialog* dialog) {
    // Modal for the user, but the program goes on: replies and ticks arrive while it is open.
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
}

void MDIParent::refreshWindowMenu() {
    mnuWindow->clear();
    // Each window once, in the order it was made; a check on those open (not minimised).
    const QList<QMdiSubWindow*> frames = mdiArea_->subWindowList(QMdiArea::CreationOrder);
    for (int i = 0; i < frames.size(); ++i) {
        QMdiSubWindow* frame = frames[i];
        QAction* item = mnuWindow->addAction(
            QStringLiteral("&%1 %2").arg(i + 1).arg(frame->widget()->windowTitle()));
        item->setObjectName(QStringLiteral("mnuWindowItem(%1)").arg(i));
        item->setCheckable(true);
        item->setChecked(frame->isVisible() && !frame->isMinimized());
        connect(item, &QAction::triggered, this, [this, frame] {
            if (frame->isMinimized() || frame->isHidden())
                frame->showNormal();
            frame->widget()->show();
            mdiArea_->setActiveSubWindow(frame);
        });
    }
    mnuWindow->addSeparator();
    for (QAction* arrange : mnuWindowArrange)
        mnuWindow->addAction(arrange);
}

void MDIParent::mnuSystemItem_Click(int index) {
    switch (index) {
        case 0:
            showModal(commSettings_);
            break;
        case 2:
            showModal(optionDialog_);
            break;
        case 3:
            showModal(versionDialog_);
            break;
        case 4:
            softwareVersionChange();
            break;
        default:
            break;
    }
}

void MDIParent::mnuSystemLang_Click(int index) {
    global_.Link.LanguageId = static_cast<Language>(index);
    mnuSystemLang[static_cast<std::size_t>(index)]->setChecked(true);
    LanguageOfAllWindows();
}

void MDIParent::softwareVersionChange() {
    if (!mayEnd())
        return;
    setup_.settings.clearSiblingSkipFlag();
    const QString directory = setup_.siblingDirectory.isEmpty()
                                  ? QCoreApplication::applicationDirPath()
                                  : setup_.siblingDirectory;
    const SiblingProgram::Launch launch = SiblingProgram::start(directory, setup_.startSibling);
    if (!launch.started) {
        quitAgreed_ = false;
        engine_.showError(
            launch.tried.join(QLatin1Char('\n')) + QStringLiteral("\nFile Not Found."),
            QStringLiteral("Error"));
        return;
    }
    close();
}

void MDIParent::saveAllSettings() {
    global_.RetryTime = engine_.pollIntervalMs();
    setup_.settings.saveAll(global_);
    setup_.settings.saveLayout(currentLayout());
}

void MDIParent::closeEvent(QCloseEvent* event) {
    if (!ended_ && !mayEnd()) {
        event->ignore();
        return;
    }
    hMon_->programClosing();
    commSettings_->dismiss();
    if (!ended_) {
        ended_ = true;
        saveAllSettings();
    }
    for (QDialog* dialog : std::initializer_list<QDialog*>{
             optionDialog_, versionDialog_, inComDialog_, checkDialog_, helpMenu_->dialog()})
        dialog->hide();
    QMainWindow::closeEvent(event);
}

}  // namespace velora
