#pragma once

#include "core/shared/Global.h"
#include "core/shared/TextCatalogue.h"
#include "gui/app/AppLinkUi.h"
#include "gui/app/MDIParent.h"
#include "support/FakeTransport.h"

#include <QApplication>
#include <QLineEdit>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace velora::test {

// A fake port that can refuse to open and remembers every opening.
class ShellPort : public FakeTransport {
public:
    ShellPort(LinkState& state, BackEnd backEnd, const bool& refuse)
        : FakeTransport(state, backEnd), refuse_(refuse) {}

    OpenResult open(const QString& device, int baud) override {
        opens.append({device, baud});
        if (refuse_)
            return {false, device, QStringLiteral("No such file or directory")};
        return FakeTransport::open(device, baud);
    }

    QList<QPair<QString, int>> opens;

private:
    const bool& refuse_;
};

// The main window over fake ports, stepped by hand, with its settings in a temporary directory
// and every message box answered and recorded.
class ShellRig {
public:
    // stored: settings present before the start, "Group/Key" -> text. Real back-ends on a
    // device may replace the fake ports.
    explicit ShellRig(const QMap<QString, QString>& stored = {}, TransportFactory transports = {},
                      const QString& device = {}) {
        QSettings settings(settingsFile(), QSettings::IniFormat);
        for (auto it = stored.cbegin(); it != stored.cend(); ++it)
            settings.setValue(it.key(), it.value());
        settings.sync();

        ShellSetup setup;
        setup.settings = SettingsStore(dir.path());
        setup.ticks = LinkEngine::Ticks::Manual;
        setup.transports = [this](BackEnd backEnd, LinkState& state) {
            return std::make_unique<ShellPort>(state, backEnd, refuseOpen);
        };
        if (transports)
            setup.transports = std::move(transports);
        setup.deviceOverride = device;
        setup.siblingDirectory = dir.path();
        session = std::make_unique<DriveSession>(global, linkUi, std::move(setup));
        window = std::make_unique<MDIParent>(*session, linkUi);
        window->messageBoxes().setAnswerer([this](const MessageBoxes::Message& message) {
            messages.append(message);
            if (message.buttons.testFlag(QMessageBox::Yes))
                return yesNoAnswer;
            return message.buttons.testFlag(QMessageBox::Retry) ? QMessageBox::Cancel
                                                                : QMessageBox::Ok;
        });
    }

    void start() {
        window->show();
        window->startUp();
    }

    [[nodiscard]] QString settingsFile() const {
        return dir.filePath(QStringLiteral("Halvern Electronics Velora.conf"));
    }
    [[nodiscard]] QString stored(const QString& key) const {
        return QSettings(settingsFile(), QSettings::IniFormat).value(key).toString();
    }

    [[nodiscard]] LinkEngine& engine() const { return window->engine(); }
    [[nodiscard]] LinkState& link() { return global.Link; }
    [[nodiscard]] ShellPort* port() const { return static_cast<ShellPort*>(engine().transport()); }
    [[nodiscard]] QStringList sent() const { return port()->sentTexts(); }

    // A widget by its object name, in the main window or in one of its dialogs.
    template <typename T = QWidget>
    [[nodiscard]] T* find(const QString& name, const QObject* in = nullptr) const {
        return (in ? in : window.get())->findChild<T*>(name);
    }

    void ticks(int n) {
        for (int i = 0; i < n; ++i)
            engine().tick();
    }

    // Types into a box and leaves it with Tab, as a user does.
    static void typeAndLeave(QLineEdit* box, const QString& text) {
        QWidget* window = box->window();
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window));
        box->setFocus();
        box->selectAll();
        QTest::keyClicks(box, text);
        QTest::keyClick(box, Qt::Key_Tab);
    }

    QTemporaryDir dir;
    Global global;
    MessageBoxes boxes;
    AppLinkUi linkUi{boxes};
    bool refuseOpen = false;
    // The answer to every Yes/No question.
    QMessageBox::StandardButton yesNoAnswer = QMessageBox::No;
    QList<MessageBoxes::Message> messages;
    // As in main: the session is there before the window and goes after it.
    std::unique_ptr<DriveSession> session;
    std::unique_ptr<MDIParent> window;
};

inline QString en(Text id) {
    return TextCatalogue::text(Language::English, id);
}
inline QString ja(Text id) {
    return TextCatalogue::text(Language::Japanese, id);
}

}  // namespace velora::test
