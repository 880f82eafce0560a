#include "core/link/PortNaming.h"
#include "gui/app/CommSettings.h"
#include "gui/app/PortListView.h"
#include "gui/console/ComConsoleWindow.h"
#include "gui/shared/ChildWindow.h"
#include "sim/SimulatedLine.h"

#include "ShellRig.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QtTest>

using namespace velora;
using namespace Qt::StringLiterals;
using namespace velora::test;

namespace {

constexpr int kReplyWait = 44;

// The main window started from the stored settings, with the comm settings dialog open.
struct DialogRig : ShellRig {
    explicit DialogRig(const QMap<QString, QString>& stored = {}, TransportFactory transports = {},
                       const QString& device = {})
        : ShellRig(stored, std::move(transports), device) {
        start();
        global.Params.ParamValue[kReplyWait] = 30;
        open();
    }
    void open() {
        find<QAction>(u"mnuSystemItem(0)"_s)->trigger();
        dialog = find<CommSettings>(u"CommSettings"_s);
        QVERIFY(dialog->isVisible());
    }
    template <typename T = QWidget>
    [[nodiscard]] T* control(const QString& name) const {
        return find<T>(name, dialog);
    }
    void click(const QString& name) const { control<QAbstractButton>(name)->click(); }
    [[nodiscard]] QString text(const QString& name) const {
        return control<QLineEdit>(name)->text();
    }
    [[nodiscard]] QStringList baudList() const {
        QStringList rates;
        const auto* list = control<QComboBox>(u"ComboBaud"_s);
        for (int i = 0; i < list->count(); ++i)
            rates << list->itemText(i);
        return rates;
    }

    CommSettings* dialog = nullptr;
};

}  // namespace

// The comm settings dialog: what it shows, the field checks, the back-end switch, OK, Cancel
// and OffLine, the reply wait, and the port search against fake ports and the simulated drive.
class TestCommSettings : public QObject {
    Q_OBJECT
private slots:
    void showsTheSettingsAndSuspendsTheMonitor() {
        DialogRig rig({{"COMSetting/PortNumber", "2"},
                       {"COMSetting/AxisNumber", "4"},
                       {"COMSetting/BaudRate", "19200"}});
        QVERIFY(rig.control<QRadioButton>(u"OpUsbRs232c(0)"_s)->isChecked());
        QCOMPARE(rig.text(u"TxtCOMnum"_s), u"2"_s);
        QCOMPARE(rig.text(u"TextAxisNum"_s), u"4"_s);
        QCOMPARE(rig.control<QComboBox>(u"ComboBaud"_s)->currentText(), u"19200"_s);
        QCOMPARE(rig.text(u"TxtReplyWait"_s), u"30"_s);
        QCOMPARE(rig.baudList(), QStringList({"9600", "19200", "38400", "57600", "115200"}));
        QCOMPARE(rig.control<QLabel>(u"Label3"_s)->text(), en(Text::CommSettingsReplyWaitMs));
        QCOMPARE(rig.control<QLabel>(u"Label3"_s)->buddy(), rig.control(u"TxtReplyWait"_s));
        QVERIFY(!rig.link().RealTimeMonitor);

        // Cancel with the port open changes nothing.
        rig.click(u"Command(1)"_s);
        QVERIFY(!rig.dialog->isVisible());
        QVERIFY(rig.link().RealTimeMonitor);
        QVERIFY(rig.link().Online);
        QCOMPARE(rig.link().AxisNumber, 4);
        QCOMPARE(rig.port()->opens.size(), 1);
    }

    void boxesAreCorrectedWhenLeft_data() {
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("shown");
        // clang-format off
        QTest::newRow("port above 16")          << "TxtCOMnum"    << "20"   << "16";
        QTest::newRow("port as a letter")       << "TxtCOMnum"    << "x"    << "1";
        QTest::newRow("axis above 15")          << "TextAxisNum"  << "16"   << "15";
        QTest::newRow("axis below parameter 0") << "TextAxisNum"  << "-1"   << "0";
        QTest::newRow("reply wait above 999")   << "TxtReplyWait" << "1200" << "999";
        QTest::newRow("reply wait as a letter") << "TxtReplyWait" << "q"    << "30";
        // clang-format on
    }
    void boxesAreCorrectedWhenLeft() {
        QFETCH(QString, box);
        QFETCH(QString, typed);
        QFETCH(QString, shown);
        DialogRig rig;
        ShellRig::typeAndLeave(rig.control<QLineEdit>(box), typed);
        QCOMPARE(rig.text(box), shown);
    }

    void usbAdapterOffersThreeRates() {
        DialogRig rig;
        auto* list = rig.control<QComboBox>(u"ComboBaud"_s);
        list->setCurrentText(u"115200"_s);
        rig.click(u"OpUsbRs232c(1)"_s);
        QCOMPARE(rig.baudList(), QStringList({"9600", "19200", "38400"}));
        QCOMPARE(list->currentText(), u"9600"_s);
        list->setCurrentText(u"38400"_s);
        rig.click(u"OpUsbRs232c(0)"_s);
        QCOMPARE(rig.baudList().size(), 5);
        QCOMPARE(list->currentText(), u"38400"_s);
    }

    void okOpensThePortWithTheNewSettings() {
        DialogRig rig;
        ShellRig::typeAndLeave(rig.control<QLineEdit>(u"TxtCOMnum"_s), u"3"_s);
        ShellRig::typeAndLeave(rig.control<QLineEdit>(u"TextAxisNum"_s), u"5"_s);
        rig.click(u"OpUsbRs232c(1)"_s);
        rig.control<QComboBox>(u"ComboBaud"_s)->setCurrentText(u"38400"_s);
        rig.click(u"Command(0)"_s);

        QVERIFY(!rig.dialog->isVisible());
        QCOMPARE(rig.link().PortNumber, 3);
        QCOMPARE(rig.link().AxisNumber, 5);
        QCOMPARE(rig.link().BaudRate, u"38400"_s);
        QVERIFY(rig.link().UsbMode && rig.link().Online && rig.link().run().PortOpen);
        QVERIFY(rig.link().RealTimeMonitor);
        QCOMPARE(rig.port()->backEnd(), BackEnd::UsbSerial);
        QCOMPARE(rig.port()->opens.last(), qMakePair(deviceForPort(BackEnd::UsbSerial, 3), 38400));
        QCOMPARE(rig.find<QLabel>(u"LabelAxisNum"_s)->text(), u"5"_s);
        QVERIFY(rig.find<ChildWindow>(u"PrmTbl"_s)->controlsEnabled());
    }

    // The port list sets the port number of a numbered device, and opens any other device as
    // it is, remembered for the next start.
    void portListChoosesAnyDevice() {
        DialogRig rig;
        auto* list = rig.control<PortListView>(u"PortList"_s);
        list->setPortLister([] {
            PortHint usb{u"ttyUSB3"_s, u"FT232R USB UART"_s, 0x0403,           0x6001,
                         u"FTDI"_s,    u"A10K3XYZ"_s,        u"/dev/ttyUSB3"_s};
            PortHint acm{u"ttyACM0"_s, {}, {}, {}, {}, {}, u"/dev/ttyACM0"_s};
            return QList<PortHint>{usb, acm};
        });
        rig.click(u"CmdPortRefresh"_s);
        QCOMPARE(list->topLevelItem(0)->text(3), u"0403:6001"_s);
        emit list->itemClicked(list->topLevelItem(0), 0);
        QCOMPARE(rig.text(u"TxtCOMnum"_s), u"4"_s);
        QVERIFY(rig.control<QRadioButton>(u"OpUsbRs232c(1)"_s)->isChecked());

        emit list->itemClicked(list->topLevelItem(1), 0);
        rig.click(u"Command(0)"_s);
        QCOMPARE(rig.port()->opens.last().first, u"/dev/ttyACM0"_s);
        rig.window->close();
        QCOMPARE(rig.stored(u"Connection/Device"_s), u"/dev/ttyACM0"_s);
    }

    // The device in use without a port number (the simulator, --port) is shown in the port
    // box; OK keeps it without remembering it, and a path typed there is opened as it is.
    void showsAndOpensADevicePath() {
        DialogRig rig({}, {}, u"/tmp/velora-line/tty"_s);
        QCOMPARE(rig.text(u"TxtCOMnum"_s), u"/tmp/velora-line/tty"_s);
        rig.click(u"Command(0)"_s);
        QCOMPARE(rig.port()->opens.last().first, u"/tmp/velora-line/tty"_s);
        rig.open();
        ShellRig::typeAndLeave(rig.control<QLineEdit>(u"TxtCOMnum"_s), u"/dev/ttyV7"_s);
        rig.click(u"Command(0)"_s);
        QCOMPARE(rig.port()->opens.last().first, u"/dev/ttyV7"_s);
        rig.window->close();
        QCOMPARE(rig.stored(u"Connection/Device"_s), u"/dev/ttyV7"_s);
    }

    void okWithAllAxesDisablesTheTransfers() {
        DialogRig rig;
        ShellRig::typeAndLeave(rig.control<QLineEdit>(u"TextAxisNum"_s), u"15"_s);
        rig.click(u"Command(0)"_s);
        QCOMPARE(rig.link().AxisNumber, 15);
        QVERIFY(!rig.find<ChildWindow>(u"PointTbl"_s)->transferButtonsEnabled());
    }

    void okWithAPortThatWillNotOpenKeepsTheDialog() {
        DialogRig rig({{"COMSetting/PortNumber", "2"}});
        rig.refuseOpen = true;
        ShellRig::typeAndLeave(rig.control<QLineEdit>(u"TxtCOMnum"_s), u"9"_s);
        rig.click(u"Command(0)"_s);
        QCOMPARE(rig.messages.size(), 1);
        QVERIFY(rig.messages[0].text.startsWith(en(Text::MsgCannotOpenPort)));
        QCOMPARE(rig.messages[0].title, en(Text::MsgCannotOpenPortCaption));
        QVERIFY(rig.dialog->isVisible());
        QCOMPARE(rig.link().PortNumber, 2);
        QCOMPARE(rig.text(u"TxtCOMnum"_s), u"2"_s);
    }

    void offLineAndCancelWithoutAPortGoOffline_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<bool>("portFails");
        QTest::newRow("OffLine") << "Command(2)" << false;
        QTest::newRow("Cancel without a port") << "Command(1)" << true;
        QTest::newRow("close box without a port") << "" << true;
    }
    void offLineAndCancelWithoutAPortGoOffline() {
        QFETCH(QString, button);
        QFETCH(bool, portFails);
        ShellRig rig({{"Language/Language", "1"}});
        rig.refuseOpen = portFails;
        rig.start();
        rig.find<QAction>(u"mnuSystemItem(0)"_s)->trigger();
        auto* dialog = rig.find<CommSettings>(u"CommSettings"_s);
        QVERIFY(dialog->isVisible());
        if (button.isEmpty())
            QVERIFY(dialog->close());
        else
            dialog->findChild<QPushButton*>(button)->click();
        QVERIFY(!dialog->isVisible());
        QVERIFY(!rig.link().Online);
        QVERIFY(!rig.link().run().PortOpen);
        QVERIFY(!rig.port()->isOpen());
        QVERIFY(rig.link().RealTimeMonitor);
        QCOMPARE(rig.window->windowTitle(), ja(Text::MainCaptionOffline));
        QVERIFY(!rig.find<ComConsoleWindow>(u"ComConsole"_s)->consoleEnabled());
        // Offline, the next opening offers neither the search nor the reply wait.
        rig.find<QAction>(u"mnuSystemItem(0)"_s)->trigger();
        QVERIFY(!dialog->findChild<QPushButton*>(u"CmdSrch"_s)->isEnabled());
        QVERIFY(!dialog->findChild<QPushButton*>(u"CmdReplyWait"_s)->isEnabled());
    }

    void sendWritesTheReplyWaitToTheDrive() {
        DialogRig rig;
        QSignalSpy stored(rig.dialog, &CommSettings::parameterStored);
        ShellRig::typeAndLeave(rig.control<QLineEdit>(u"TxtReplyWait"_s), u"100"_s);
        rig.click(u"CmdReplyWait"_s);
        QCOMPARE(rig.sent().last(), u"0PW2C;64"_s);
        QCOMPARE(rig.global.Params.ParamValue[kReplyWait], 100);
        QCOMPARE(stored.size(), 1);
        QCOMPARE(stored[0][0].toInt(), kReplyWait);
    }

    void searchWithoutADriveGivesUp() {
        DialogRig rig({{"COMSetting/USB-RS232C", "True"}});
        rig.click(u"CmdSrch"_s);
        QCOMPARE(rig.control<QPushButton>(u"CmdSrch"_s)->text(),
                 en(Text::CommSettingsSearchCancel));
        // Where the search stands: the probe out now and how many are still to come.
        const auto* state = rig.control<QLabel>(u"Label5"_s);
        QCOMPARE(state->text(),
                 en(Text::LinkSearching) + u" "_s +
                     en(Text::PointTableAxisBpsProbesLeft).arg(0).arg(9600).arg(44).arg(45));
        QVERIFY(!rig.control(u"Command(0)"_s)->isEnabled());
        rig.ticks(2 * 16);
        QCOMPARE(state->text(),
                 en(Text::LinkSearching) + u" "_s +
                     en(Text::PointTableAxisBpsProbesLeft).arg(1).arg(19200).arg(28).arg(45));
        rig.ticks(2 * 15 * 3 - 2 * 16);
        QCOMPARE(rig.messages.size(), 1);
        QCOMPARE(rig.messages[0].text, en(Text::LinkCOMSettingNotFound));
        QCOMPARE(rig.messages[0].title, en(Text::LinkFailure));
        QCOMPARE(rig.messages[0].icon, QMessageBox::Critical);
        QCOMPARE(rig.control<QPushButton>(u"CmdSrch"_s)->text(), en(Text::CommSettingsSearch));
        QVERIFY(rig.control<QLabel>(u"Label5"_s)->text().isEmpty());
        QVERIFY(rig.control(u"Command(0)"_s)->isEnabled());
        QVERIFY(!rig.link().run().Searching);
    }

    void searchFindsTheSimulatedDrive_data() {
        QTest::addColumn<bool>("ok");
        QTest::newRow("OK applies it") << true;
        QTest::newRow("Cancel keeps the old setting") << false;
    }
    void searchFindsTheSimulatedDrive() {
        QFETCH(bool, ok);
        sim::SimOptions options;
        options.axes = {3};
        options.fast = true;
        sim::SimulatedLine line(options);
        QVERIFY2(line.open(), qPrintable(line.errorString()));
        sim::DriveModel& drive = line.bus().drive(3)->model();
        QVERIFY(drive.memory().writeParam(43, 1, true));  // 19200 baud after a restart
        QVERIFY(drive.reset() == sim::DriveModel::Refusal::None);

        DialogRig rig({}, createTransport, line.devicePath());
        rig.click(u"CmdSrch"_s);
        for (int i = 0; i < 200 && rig.messages.isEmpty(); ++i) {
            rig.engine().tick();
            QTest::qWait(10);
        }
        QCOMPARE(rig.messages.size(), 1);
        QCOMPARE(rig.messages[0].text, en(Text::LinkCOMSettingFound));
        QCOMPARE(rig.messages[0].title, en(Text::LinkSucceed));
        QCOMPARE(rig.messages[0].icon, QMessageBox::NoIcon);
        QCOMPARE(rig.text(u"TextAxisNum"_s), u"3"_s);
        QCOMPARE(rig.control<QComboBox>(u"ComboBaud"_s)->currentIndex(), 1);
        QCOMPARE(rig.link().AxisNumber, 0);  // not before OK
        if (!ok) {
            rig.click(u"Command(1)"_s);
            rig.window->close();
            QCOMPARE(rig.stored(u"COMSetting/BaudRate"_s), u"9600"_s);
            QCOMPARE(rig.stored(u"COMSetting/AxisNumber"_s), u"0"_s);
            return;
        }
        rig.click(u"Command(0)"_s);
        QCOMPARE(rig.link().AxisNumber, 3);
        QCOMPARE(rig.link().BaudRate, u"19200"_s);
        // The drive answers the monitor on the new setting.
        rig.engine().supervisionForTests().ReplyCode.clear();
        QVERIFY(QTest::qWaitFor(
            [&rig] {
                rig.engine().tick();
                return rig.link().run().ReplyCode == QLatin1String("ma");
            },
            2000));
    }
};

QTEST_MAIN(TestCommSettings)
#include "core/shared/TextId.h"
#include "tst_commsettings.moc"
