#pragma once

#include "core/link/DriveRules.h"
#include "core/shared/TextId.h"

#include <QObject>

#include <functional>

namespace velora {

class DriveCopies;
class LinkEngine;
class MessageBoxes;
struct Global;

// The questions that keep data on the right drive and edits from being dropped unasked, all
// answered Yes or No with No as the default: before a table goes to another drive than the one
// it came from, before a read or a file replaces what is marked for writing, before the link
// turns to another drive while edits wait, and before the program ends with edits waiting or
// the servo on. The polling timer stands still while a question is open.
class TableGuard : public QObject {
    Q_OBJECT
public:
    TableGuard(Global& global, LinkEngine& engine, MessageBoxes& boxes, DriveCopies& copies,
               QObject* parent = nullptr);

    // Write Servo of `table`.
    [[nodiscard]] bool mayWrite(driverules::Table table);
    // Read Servo or Read File of `table`, over its marked entries.
    [[nodiscard]] bool mayReplace(driverules::Table table);
    // The link is to address another axis or device: Yes takes every table back to what its
    // drive holds and drops every mark.
    [[nodiscard]] bool mayChangeDrive();
    // Quit, or the main window's close box.
    [[nodiscard]] bool mayQuit();
    // The guard of a table window's four buttons (Write File, Read File, Write Servo, Read
    // Servo): true when the button may go on.
    [[nodiscard]] std::function<bool(int)> buttonGuard(driverules::Table table);

signals:
    // The edits of every table were dropped: the windows show their tables anew.
    void editsDropped();

private:
    [[nodiscard]] bool ask(const QString& text, Text title);

    Global& global_;
    LinkEngine& engine_;
    MessageBoxes& boxes_;
    DriveCopies& copies_;
};

}  // namespace velora
