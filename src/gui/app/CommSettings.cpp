#include "gui/app/CommSettings.h"

#include "core/connect/PortHint.h"
#include "core/link/DriveRules.h"
#include "core/link/LinkEngine.h"
#include "core/link/WireFormat.h"
#include "core/params/ParamCatalogue.h"
#include "core/shared/FieldCheck.h"
#include "core/shared/Global.h"
#include "core/shared/TextCatalogue.h"
#include "gui/app/PortListView.h"
#include "gui/shared/MessageBoxes.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QShowEvent>

namespace velora {

namespace {

constexpr int kMaxPortNumber = 16;

// The polling timer stands still while a message of the dialog is open, as around the link's
// own messages.
void pausedMessage(LinkEngine& engine, MessageBoxes& boxes, const QString& text,
                   const QString& title, QMessageBox::Icon icon) {
    engine.pauseTimer1();
    boxes.show(text, title, icon);
    engine.resumeTimer1();
}

}  // namespace

CommSettings::CommSettings(Global& global, LinkEngine& engine, MessageBoxes& boxes,
                           TransportFactory transports, QWidget* parent)
    : QDialog(parent),
      global_(global),
      engine_(engine),
      boxes_(boxes),
      transports_(transports),
      search_(engine, std::move(transports)) {
    setObjectName(QStringLiteral("CommSettings"));
    setWindowModality(Qt::ApplicationModal);
    buildLayout();
    search_.setEndHandler([this](PortSearch::Outcome outcome) { onSearchEnded(outcome); });
    search_.setProbeHandler([this] { showSearchProgress(); });
    fillBaudList(global_.Link.UsbMode);
}

CommSettings::~CommSettings() {
    // A box that loses the focus while the dialog goes would run its check on a dialog that is
    // no longer one.
    for (QLineEdit* box : {TxtCOMnum, TextAxisNum, TxtReplyWait})
        box->disconnect(this);
}

QGridLayout* CommSettings::buildPortList() {
    Label6 = new QLabel(this);
    Label6->setObjectName(QStringLiteral("Label6"));
    PortList = new PortListView(this);
    Label6->setBuddy(PortList);
    CmdPortRefresh = new QPushButton(this);
    CmdPortRefresh->setObjectName(QStringLiteral("CmdPortRefresh"));
    LblPortChoice = new QLabel(this);
    LblPortChoice->setObjectName(QStringLiteral("LblPortChoice"));
    LblPortChoice->setWordWrap(true);
    connect(PortList, &PortListView::portChosen, this, &CommSettings::onPortChosen);
    connect(CmdPortRefresh, &QPushButton::clicked, this, &CommSettings::fillPortList);
    connect(TxtCOMnum, &QLineEdit::textEdited, this, [this] {
        deviceChoice_ = QString();
        LblPortChoice->clear();
    });
    auto* ports = new QGridLayout;
    ports->addWidget(Label6, 0, 0);
    ports->addWidget(CmdPortRefresh, 0, 1, Qt::AlignRight);
    ports->addWidget(PortList, 1, 0, 1, 2);
    ports->addWidget(LblPortChoice, 2, 0, 1, 2);
    return ports;
}

void CommSettings::buildLayout() {
    auto* grid = new QGridLayout(this);
    const auto label = [this](const QString& name) {
        auto* l = new QLabel(this);
        l->setObjectName(name);
        return l;
    };
    const auto button = [this](const QString& name) {
        auto* b = new QPushButton(this);
        b->setObjectName(name);
        return b;
    };

    auto* backEnds = new QHBoxLayout;
    const QString backEndTexts[] = {QStringLiteral("RS232C"), QStringLiteral("USB-RS232C")};
    for (int i = 0; i < 2; ++i) {
        auto* option = new QRadioButton(backEndTexts[i], this);
        option->setObjectName(QStringLiteral("OpUsbRs232c(%1)").arg(i));
        connect(option, &QRadioButton::clicked, this, [this, i] { OpUsbRs232c_Click(i); });
        backEnds->addWidget(option);
        OpUsbRs232c[static_cast<std::size_t>(i)] = option;
    }
    grid->addLayout(backEnds, 0, 0, 1, 3);

    Label4 = label(QStringLiteral("Label4"));
    TxtCOMnum = new QLineEdit(this);
    TxtCOMnum->setObjectName(QStringLiteral("TxtCOMnum"));
    QGridLayout* ports = buildPortList();  // made here: the tab order follows
    Label1 = label(QStringLiteral("Label1"));
    TextAxisNum = new QLineEdit(this);
    TextAxisNum->setObjectName(QStringLiteral("TextAxisNum"));
    Label2 = label(QStringLiteral("Label2"));
    ComboBaud = new QComboBox(this);
    ComboBaud->setObjectName(QStringLiteral("ComboBaud"));
    Label3 = label(QStringLiteral("Label3"));
    TxtReplyWait = new QLineEdit(this);
    TxtReplyWait->setObjectName(QStringLiteral("TxtReplyWait"));
    CmdReplyWait = button(QStringLiteral("CmdReplyWait"));
    Label4->setBuddy(TxtCOMnum);
    Label1->setBuddy(TextAxisNum);
    Label2->setBuddy(ComboBaud);
    Label3->setBuddy(TxtReplyWait);

    grid->addWidget(Label4, 1, 0);
    grid->addWidget(TxtCOMnum, 1, 1);
    grid->addLayout(ports, 2, 0, 1, 3);
    grid->addWidget(Label1, 3, 0);
    grid->addWidget(TextAxisNum, 3, 1);
    grid->addWidget(Label2, 4, 0);
    grid->addWidget(ComboBaud, 4, 1);
    grid->addWidget(Label3, 5, 0);
    grid->addWidget(TxtReplyWait, 5, 1);
    grid->addWidget(CmdReplyWait, 5, 2);

    buildActions(grid);
}

void CommSettings::buildActions(QGridLayout* grid) {
    CmdSrch = new QPushButton(this);
    CmdSrch->setObjectName(QStringLiteral("CmdSrch"));
    Label5 = new QLabel(this);
    Label5->setObjectName(QStringLiteral("Label5"));
    grid->addWidget(CmdSrch, 6, 0);
    grid->addWidget(Label5, 6, 1, 1, 2);

    auto* buttons = new QHBoxLayout;
    for (int i = 0; i < 3; ++i) {
        auto* b = new QPushButton(this);
        b->setObjectName(QStringLiteral("Command(%1)").arg(i));
        connect(b, &QPushButton::clicked, this, [this, i] { Command_Click(i); });
        buttons->addWidget(b);
        Command[static_cast<std::size_t>(i)] = b;
    }
    Command[0]->setDefault(true);
    grid->addLayout(buttons, 7, 0, 1, 3);

    connect(TxtCOMnum, &QLineEdit::editingFinished, this, &CommSettings::TxtCOMnum_LostFocus);
    connect(TextAxisNum, &QLineEdit::editingFinished, this, &CommSettings::TextAxisNum_LostFocus);
    connect(TxtReplyWait, &QLineEdit::editingFinished, this, &CommSettings::TxtReplyWait_LostFocus);
    connect(CmdReplyWait, &QPushButton::clicked, this, &CommSettings::CmdReplyWait_Click);
    connect(CmdSrch, &QPushButton::clicked, this, &CommSettings::CmdSrch_Click);
}

void CommSettings::LanguageSelect(Language languageId) {
    setWindowTitle(TextCatalogue::text(languageId, Text::CaptionCommSettings));
    Label4->setText(TextCatalogue::text(languageId, Text::CommSettingsCOMPortNo));
    Label1->setText(TextCatalogue::text(languageId, Text::CommSettingsAxisNo));
    Label2->setText(TextCatalogue::text(languageId, Text::CommSettingsBaudRateBps));
    Label3->setText(TextCatalogue::text(languageId, Text::CommSettingsReplyWaitMs));
    CmdReplyWait->setText(TextCatalogue::text(languageId, Text::CommSettingsSend));
    Command[0]->setText(TextCatalogue::text(languageId, Text::CommSettingsOK));
    Command[1]->setText(TextCatalogue::text(languageId, Text::CommSettingsCancel));
    Command[2]->setText(TextCatalogue::text(languageId, Text::CommSettingsOffLine));
    CmdSrch->setText(TextCatalogue::text(languageId, Text::CommSettingsSearch));
    Label5->clear();
    Label6->setText(TextCatalogue::text(languageId, Text::CheckSerialPortsSystem));
    CmdPortRefresh->setText(TextCatalogue::text(languageId, Text::CheckRefresh));
    PortList->LanguageSelect(languageId);
}

void CommSettings::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (event->spontaneous())
        return;
    if (!placed_) {
        // 3000 twips from the top left of the screen.
        const QScreen* screen = QGuiApplication::primaryScreen();
        move((screen ? screen->availableGeometry().topLeft() : QPoint()) + QPoint(200, 200));
        placed_ = true;
    }
    activate();
}

void CommSettings::activate() {
    LinkState& s = global_.Link;
    const int index = s.UsbMode ? 1 : 0;
    OpUsbRs232c[static_cast<std::size_t>(index)]->setChecked(true);
    fillBaudList(s.UsbMode);
    // A device that no port number names (the simulator, --port, a chosen device) is shown as
    // it is: that is what the link uses.
    const QString override = engine_.deviceOverride();
    TxtCOMnum->setText(override.isEmpty() ? QString::number(s.PortNumber) : override);
    TextAxisNum->setText(QString::number(s.AxisNumber));
    selectBaud(s.BaudRate);
    TxtReplyWait->setText(QString::number(global_.Params.ParamValue[ParamCatalogue::ReplyWait]));
    Command[0]->setFocus();
    CmdSrch->setEnabled(s.Online);
    // The reply wait is a command: it needs the open port, which the search opens itself.
    CmdReplyWait->setEnabled(s.Online && s.run().PortOpen);
    setSearchingLook(false);
    LanguageSelect(s.LanguageId);
    deviceChoice_.reset();
    fillPortList();
    savedRealTimeMonitor_ = s.RealTimeMonitor;
    s.RealTimeMonitor = false;
}

void CommSettings::fillBaudList(bool usb) {
    ComboBaud->clear();
    for (int i = 0; i < PortSearch::rateCount(usb); ++i)
        ComboBaud->addItem(QString::number(PortSearch::rate(i)));
}

void CommSettings::selectBaud(const QString& rate) {
    // A rate the list does not offer (57600 and up through the USB adapter) falls back to the
    // first one.
    ComboBaud->setCurrentIndex(std::max(0, ComboBaud->findText(rate)));
}

void CommSettings::fillPortList() {
    PortList->refresh(deviceChoice_.value_or(engine_.device()));
    LblPortChoice->clear();
}

void CommSettings::onPortChosen(const PortHint& port) {
    LblPortChoice->clear();
    const std::optional<int> number = port.portNumber();
    // Beyond the numbers the box takes, a device is opened by its name as well.
    if (!number || *number > kMaxPortNumber) {
        deviceChoice_ = port.systemLocation;
        TxtCOMnum->setText(port.systemLocation);
        LblPortChoice->setText(
            TextCatalogue::text(global_.Link.LanguageId, Text::CheckHasNoPortNumber)
                .arg(port.systemLocation));
        return;
    }
    // The number alone opens it, through the back-end its name belongs to.
    deviceChoice_ = QString();
    TxtCOMnum->setText(QString::number(*number));
    const bool usb = port.portName.startsWith(QLatin1String("ttyUSB"));
    if (usb || port.portName.startsWith(QLatin1String("ttyS"))) {
        OpUsbRs232c[usb ? 1 : 0]->setChecked(true);
        OpUsbRs232c_Click(usb ? 1 : 0);
    }
}

bool CommSettings::usbChosen() const {
    return OpUsbRs232c[1]->isChecked();
}

void CommSettings::OpUsbRs232c_Click(int index) {
    QString remembered = ComboBaud->currentText();
    if (remembered.isEmpty())
        remembered = global_.Link.BaudRate;
    fillBaudList(index == 1);
    selectBaud(remembered.toInt() >= 57600 ? QStringLiteral("9600") : remembered);
}

bool CommSettings::holdsDevicePath() const {
    const QString text = TxtCOMnum->text().trimmed();
    return text.contains(QLatin1Char('/')) || text.contains(QLatin1Char('\\'));
}

void CommSettings::TxtCOMnum_LostFocus() {
    // A device path typed or shown there is opened as it is.
    if (holdsDevicePath()) {
        const QString device = TxtCOMnum->text().trimmed();
        // The device in use already is no new choice (a simulator's line is not remembered).
        if (device == engine_.deviceOverride())
            deviceChoice_.reset();
        else
            deviceChoice_ = device;
        TxtCOMnum->setText(device);
        return;
    }
    const int port =
        checkedWholeNumber(TxtCOMnum->text(), global_.Link.PortNumber, 0, kMaxPortNumber);
    TxtCOMnum->setText(QString::number(port));
}

void CommSettings::TextAxisNum_LostFocus() {
    const int axis =
        checkedWholeNumber(TextAxisNum->text(), global_.Link.AxisNumber,
                           global_.Params.ParamMin[ParamCatalogue::AxisNo], wire::AllAxes);
    TextAxisNum->setText(QString::number(axis));
}

void CommSettings::TxtReplyWait_LostFocus() {
    const ParamTables& p = global_.Params;
    const int n = ParamCatalogue::ReplyWait;
    const int wait =
        checkedWholeNumber(TxtReplyWait->text(), p.ParamValue[n], p.ParamMin[n], p.ParamMax[n]);
    TxtReplyWait->setText(QString::number(wait));
}

void CommSettings::CmdReplyWait_Click() {
    TxtReplyWait_LostFocus();
    const int n = ParamCatalogue::ReplyWait;
    const int wait = TxtReplyWait->text().toInt();
    global_.Params.ParamValue[n] = wait;
    emit parameterStored(n);
    // Always into non-volatile memory as well: the drive must keep its reply wait.
    engine_.PostCommand(engine_.axisPrefix() + QStringLiteral("PW2C;") + hex32(wait));
}

void CommSettings::Command_Click(int index) {
    switch (index) {
        case 0:
            applySettings();
            break;
        case 1:
            if (global_.Link.run().PortOpen) {
                restoreRealTimeMonitor();
                QDialog::reject();
            } else {
                goOffline();
            }
            break;
        default:
            goOffline();
            break;
    }
}

void CommSettings::applySettings() {
    // Boxes not yet left are checked as leaving them would.
    TxtCOMnum_LostFocus();
    TextAxisNum_LostFocus();
    LinkState& s = global_.Link;
    const LinkState previous = s;
    const DriveId previousDrive = driverules::currentDrive(engine_);
    s.UsbMode = usbChosen();
    const int previousPort = s.PortNumber;
    if (!holdsDevicePath())
        s.PortNumber = TxtCOMnum->text().toInt();
    s.AxisNumber = TextAxisNum->text().toInt();
    s.BaudRate = ComboBaud->currentText();

    const QString previousDevice = engine_.deviceOverride();
    if (deviceChoice_)
        engine_.setDeviceOverride(*deviceChoice_);
    // Edits meant for one drive are not carried to another unasked; No changes nothing.
    if (driverules::currentDrive(engine_) != previousDrive && driveChangeGuard_ &&
        !driveChangeGuard_()) {
        s.UsbMode = previous.UsbMode;
        s.PortNumber = previous.PortNumber;
        s.AxisNumber = previous.AxisNumber;
        s.BaudRate = previous.BaudRate;
        engine_.setDeviceOverride(previousDevice);
        return;
    }
    applyBackEnd(engine_, transports_);
    const OpenResult opened = engine_.reopen();
    if (!opened.ok) {
        engine_.setDeviceOverride(previousDevice);
        // The USB adapter's driver reports nothing the user could act on.
        if (!s.UsbMode) {
            engine_.showError(TextCatalogue::text(s.LanguageId, Text::MsgCannotOpenPort) +
                                  QLatin1Char('\n') + opened.device + QStringLiteral(": ") +
                                  opened.reason,
                              TextCatalogue::text(s.LanguageId, Text::MsgCannotOpenPortCaption));
        }
        s.PortNumber = previousPort;
        TxtCOMnum->setText(previousDevice.isEmpty() ? QString::number(previousPort)
                                                    : previousDevice);
        // The box shows the previous device again: OK must not retry the failed one unseen.
        deviceChoice_.reset();
        return;
    }
    if (deviceChoice_)
        global_.Connection.Device = *deviceChoice_;
    emit axisNumberApplied(s.AxisNumber);
    if (s.AxisNumber != wire::AllAxes)
        engine_.EnableControls(true);
    else
        engine_.DisableTransferButtons();
    s.Online = true;
    emit onlineChanged(true);
    restoreRealTimeMonitor();
    accept();
}

void CommSettings::goOffline() {
    LinkState& s = global_.Link;
    engine_.DisableCommControls();
    s.Online = false;
    emit onlineChanged(false);
    if (Transport* port = engine_.transport())
        port->close();
    engine_.markPortClosed();
    restoreRealTimeMonitor();
    QDialog::reject();
}

void CommSettings::restoreRealTimeMonitor() {
    global_.Link.RealTimeMonitor = savedRealTimeMonitor_;
}

void CommSettings::reject() {
    search_.cancel();
    Command_Click(1);
}

void CommSettings::dismiss() {
    if (!isVisible())
        return;
    search_.cancel();
    restoreRealTimeMonitor();
    hide();
}

void CommSettings::CmdSrch_Click() {
    if (search_.running()) {
        search_.cancel();
        return;
    }
    search_.start(usbChosen());
    if (search_.running())
        setSearchingLook(true);
}

void CommSettings::onIdentified() {
    search_.found();
}

void CommSettings::setSearchingLook(bool searching) {
    const Language lang = global_.Link.LanguageId;
    if (searching) {
        CmdSrch->setText(TextCatalogue::text(lang, Text::CommSettingsSearchCancel));
        showSearchProgress();
    }
    for (QPushButton* b : Command)
        b->setEnabled(!searching);
}

void CommSettings::showSearchProgress() {
    const Language lang = global_.Link.LanguageId;
    Label5->setText(TextCatalogue::text(lang, Text::LinkSearching) + QLatin1Char(' ') +
                    TextCatalogue::text(lang, Text::PointTableAxisBpsProbesLeft)
                        .arg(search_.SearchAxis())
                        .arg(search_.SearchBaud())
                        .arg(search_.probesLeft())
                        .arg(search_.probeCount()));
}

void CommSettings::onSearchEnded(PortSearch::Outcome outcome) {
    setSearchingLook(false);
    const Language lang = global_.Link.LanguageId;
    switch (outcome) {
        case PortSearch::Outcome::Found:
            TextAxisNum->setText(QString::number(search_.SearchAxis()));
            ComboBaud->setCurrentIndex(std::max(0, ComboBaud->findText(search_.SearchBaud())));
            pausedMessage(engine_, boxes_, TextCatalogue::text(lang, Text::LinkCOMSettingFound),
                          TextCatalogue::text(lang, Text::LinkSucceed), QMessageBox::NoIcon);
            LanguageSelect(lang);
            break;
        case PortSearch::Outcome::NotFound:
            LanguageSelect(lang);
            pausedMessage(engine_, boxes_, TextCatalogue::text(lang, Text::LinkCOMSettingNotFound),
                          TextCatalogue::text(lang, Text::LinkFailure), QMessageBox::Critical);
            break;
        case PortSearch::Outcome::Cancelled:
            LanguageSelect(lang);
            break;
    }
}

}  // namespace velora
