#pragma once

#include "ShellRig.h"
#include "core/link/TransportFactory.h"
#include "sim/SimulatedLine.h"

#include <QPushButton>
#include <QRegularExpression>
#include <QtTest>

#include <functional>

namespace velora::test {

// The main window on the simulated drive through the real serial back-end.
struct DriveRig : ShellRig {
    explicit DriveRig(sim::SimulatedLine& line) : ShellRig({}, createTransport, line.devicePath()) {
        QObject::connect(&line, &sim::SimulatedLine::commandReceived,
                         [this](const QString& text) { received << text; });
        start();
        QVERIFY(runUntil([this] { return link().run().MonitorRunning; }));
    }
    // Ticks the polling timer by hand every 50 ms while the drive answers, until done or
    // about 3 s.
    bool runUntil(const std::function<bool()>& done) {
        for (int i = 0; i < 300 && !done(); ++i) {
            if (i % 5 == 0)
                engine().tick();
            QTest::qWait(10);
        }
        return done();
    }
    // Clicks once the button is usable: the identification sent at the start locks the
    // windows until the drive answers it.
    void click(QWidget* window, const QString& name) {
        auto* button = find<QPushButton>(name, window);
        QVERIFY(runUntil([button] { return button->isEnabled(); }));
        QApplication::setActiveWindow(this->window.get());
        QTest::mouseClick(button, Qt::LeftButton);
    }
    // The busy dialog, once hidden, leaves no window active on the offscreen platform.
    void type(QLineEdit* box, const QString& text) {
        QApplication::setActiveWindow(window.get());
        typeAndLeave(box, text);
    }
    void key(QLineEdit* box, Qt::Key key) {
        QApplication::setActiveWindow(window.get());
        box->setFocus();
        QTest::keyClick(box, key);
    }
    // The distinct commands of a kind the drive received: a loaded machine may make the link
    // send one again after its reply wait.
    [[nodiscard]] QStringList receivedWith(const QString& code) const {
        QStringList found = received.filter(QRegularExpression(QStringLiteral("^0") + code));
        found.removeDuplicates();
        return found;
    }
    QStringList received;
};

}  // namespace velora::test
