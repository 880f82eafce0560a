#include "WholeProgram.h"

#include "BenchApplication.h"

#include "core/app/DriveSession.h"

#include <QSettings>

namespace velora::bench {

namespace {

QString truth(bool value) {
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

}  // namespace

WholeProgram::WholeProgram(const Options& options) {
    {
        QSettings stored(dir_.filePath(QStringLiteral("Halvern Electronics Velora.conf")),
                         QSettings::IniFormat);
        stored.setValue(QStringLiteral("COMSetting/BaudRate"), QString::number(options.baud));
        stored.setValue(QStringLiteral("COMSetting/Online"), truth(true));
        stored.setValue(QStringLiteral("COMSetting/RtMon"), truth(options.monitor));
        stored.setValue(QStringLiteral("COMSetting/USB-RS232C"), truth(options.usbAdapter));
    }
    ShellSetup setup;
    setup.settings = SettingsStore(dir_.path());
    setup.deviceOverride = options.device;
    setup.siblingDirectory = dir_.path();
    session_ = std::make_unique<DriveSession>(global_, linkUi_, std::move(setup));
    window_ = std::make_unique<MDIParent>(*session_, linkUi_);
    window_->messageBoxes().setAnswerer([](const MessageBoxes::Message& message) {
        qWarning("unexpected message: %s", qPrintable(message.text));
        return QMessageBox::Cancel;
    });
    window_->show();
    window_->startUp();
    runFor(1000);  // identification and the first repaints
}

}  // namespace velora::bench
