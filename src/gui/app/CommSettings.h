#pragma once

#include "core/connect/PortSearch.h"
#include "core/link/TransportFactory.h"
#include "core/shared/Language.h"

#include <QDialog>

#include <array>
#include <functional>
#include <optional>

class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace velora {

class LinkEngine;
class PortListView;
struct PortHint;
class MessageBoxes;
struct Global;

// The communication settings: back-end, port number, axis number and baud rate, going online
// or offline, the drive's reply wait, and the search for a setting at which a drive answers.
// Modal, and while it is open the real-time monitor is suspended.
class CommSettings : public QDialog {
    Q_OBJECT
public:
    CommSettings(Global& global, LinkEngine& engine, MessageBoxes& boxes,
                 TransportFactory transports, QWidget* parent = nullptr);
    ~CommSettings() override;
    Q_DISABLE_COPY_MOVE(CommSettings)

    void LanguageSelect(Language languageId);

    // The drive identification answered while a search runs: the search has found its drive.
    // The parameter transfer reports it (its portSearchSucceeded signal).
    void onIdentified();

    // The close box and Escape: the search stops, then as "Cancel".
    void reject() override;
    // The program ends while the dialog is open: the search stops and the real-time monitor
    // option is what it was, so that it is saved as the user set it; nothing else changes.
    void dismiss();

    [[nodiscard]] const PortSearch& portSearch() const { return search_; }
    // Asked when OK would address another drive (axis or device); false keeps the dialog open
    // with nothing applied.
    void setDriveChangeGuard(std::function<bool()> guard) { driveChangeGuard_ = std::move(guard); }

signals:
    // OK opened the port: the status bar shows the axis, the caption goes online.
    void axisNumberApplied(int axis);
    // The link went online (OK) or offline (OffLine, or Cancel without an open port).
    void onlineChanged(bool online);
    // "Send" stored a parameter value (44, the reply wait): the parameter window shows it.
    void parameterStored(int number);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void buildLayout();
    // The device list under the port number, with its refresh button and the chosen device.
    QGridLayout* buildPortList();
    // Search, OK/Cancel/Apply, and what the number boxes do when they are left.
    void buildActions(QGridLayout* grid);
    void activate();
    void fillBaudList(bool usb);
    void selectBaud(const QString& rate);
    void fillPortList();
    void onPortChosen(const PortHint& port);
    [[nodiscard]] bool usbChosen() const;
    // The port box holds a device path rather than a port number.
    [[nodiscard]] bool holdsDevicePath() const;

    void OpUsbRs232c_Click(int index);
    void TxtCOMnum_LostFocus();
    void TextAxisNum_LostFocus();
    void TxtReplyWait_LostFocus();
    void CmdReplyWait_Click();
    void Command_Click(int index);
    void CmdSrch_Click();

    void applySettings();
    void goOffline();
    void restoreRealTimeMonitor();
    void onSearchEnded(PortSearch::Outcome outcome);
    void setSearchingLook(bool searching);
    void showSearchProgress();

    Global& global_;
    LinkEngine& engine_;
    MessageBoxes& boxes_;
    TransportFactory transports_;
    PortSearch search_;
    bool savedRealTimeMonitor_ = true;
    bool placed_ = false;
    // A device chosen in the port list: empty for "the port number's device"; unset while the
    // user has not touched the port.
    std::optional<QString> deviceChoice_;
    std::function<bool()> driveChangeGuard_;

    std::array<QRadioButton*, 2> OpUsbRs232c{};
    QLabel* Label1 = nullptr;
    QLabel* Label2 = nullptr;
    QLabel* Label3 = nullptr;
    QLabel* Label4 = nullptr;
    QLabel* Label5 = nullptr;
    QLabel* Label6 = nullptr;
    PortListView* PortList = nullptr;
    QPushButton* CmdPortRefresh = nullptr;
    QLabel* LblPortChoice = nullptr;
    QLineEdit* TxtCOMnum = nullptr;
    QLineEdit* TextAxisNum = nullptr;
    QComboBox* ComboBaud = nullptr;
    QLineEdit* TxtReplyWait = nullptr;
    QPushButton* CmdReplyWait = nullptr;
    std::array<QPushButton*, 3> Command{};
    QPushButton* CmdSrch = nullptr;
};

}  // namespace velora
