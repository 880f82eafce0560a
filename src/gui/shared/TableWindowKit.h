#pragma once

#include "core/shared/NextFieldIndex.h"
#include "core/shared/TableEditing.h"

#include <QString>

#include <array>
#include <functional>
#include <optional>

class QEvent;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QMdiSubWindow;
class QPushButton;
class QTimer;
class QWidget;

namespace velora {

// What the point table and command table windows share on screen: their file dialog, the
// colours of their boxes, their tab marks, their transfer buttons and the docking of one
// beside the other.
namespace tablekit {

// The four transfer buttons Command(0..3): Write File, Read File, Write Servo, Read Servo, the
// order both windows number them in.
using Buttons = std::array<QPushButton*, 4>;

// What the four buttons do in one window: the file dialog's filter and suffix, and the actions.
struct ButtonActions {
    QString filter;
    QString suffix;
    std::function<bool(const QString&)> writeFile;
    std::function<bool(const QString&)> readFile;
    std::function<void()> writeServo;
    std::function<void()> readServo;
};

// The file dialog CommonDialog1: `filter` first, then all files; cancel gives an empty name.
[[nodiscard]] QString chooseFile(QWidget* parent, const QString& title, const QString& filter,
                                 const QString& suffix, bool save);

// Background of a box or a row heading.
void paint(QLineEdit* box, TableColour colour);
void paint(QLabel* label, TableColour colour);

// Fixes the count line under a table to the size of `widest`, its longest text in the present
// language: a line that keeps its size does not relayout the window each time a chain writes
// one more entry.
void fitCountLine(QLabel* label, const QString& widest);

// A caption with the mark of unsaved edits, or without it.
[[nodiscard]] QString marked(const QString& caption, bool edited);

// The frame of a child window inside the main window, if it has one.
[[nodiscard]] QMdiSubWindow* frameOf(QWidget* window);

// Places `follower` beside `leader`, bottom edges aligned: on its right
// when followerOnRight (then in its normal state), else on its left.
void dock(QWidget* leader, QWidget* follower, bool followerOnRight);

// Creates the four buttons of `owner` into `row`, each reporting its index to `click`.
void addButtons(QWidget* owner, QHBoxLayout* row, Buttons& buttons,
                const std::function<void(int)>& click);

// Runs button `index`: a file button asks for the file first. Returns the file written or
// read in full, as the caption names it; nothing otherwise.
[[nodiscard]] std::optional<QString> runButton(QWidget* owner, const Buttons& buttons, int index,
                                               const ButtonActions& actions);

// Enables the buttons as `controls` says; the servo buttons also need `transferEnabled`.
void enableButtons(const Buttons& buttons, const TableControls& controls, bool transferEnabled);

// Both servo buttons off, as the link asks while a transfer it cannot share is running.
void disableServoButtons(const Buttons& buttons);

// The window caption: `title`, then the name of the last file written or read, if any.
[[nodiscard]] QString fileCaption(const QString& title, const QString& lastFile);

// The movement key a key press in a box asks for; FieldKey::Other for any other event or key.
[[nodiscard]] FieldKey movementKey(const QEvent* event);

// Whether a focus-out event leaves the box: another window or a menu taking the focus does not.
[[nodiscard]] bool leavesBox(const QEvent* event);

// Names and paces the docking timer.
void setUpDockTimer(QTimer& timer);

// Once `window` has a frame, runs `timer` only while that frame is the active one; `hooked`
// remembers that this was done.
void runWhileActive(QWidget* window, QTimer& timer, bool& hooked);

}  // namespace tablekit

}  // namespace velora
