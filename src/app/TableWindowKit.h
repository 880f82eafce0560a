#pragma once

#include "shared/TableEditing.h"

#include <QString>

class QLabel;
class QLineEdit;
class QMdiSubWindow;
class QWidget;

namespace velora {

// What the point table and command table windows share on screen: their file dialog, the
// colours of their boxes, their tab marks and the docking of one beside the other.
namespace tablekit {

// The file dialog CommonDialog1: `filter` first, then all files; cancel gives an empty name.
[[nodiscard]] QString chooseFile(QWidget* parent, const QString& title, const QString& filter,
                                 const QString& suffix, bool save);

// Background of a box or a row heading.
void paint(QLineEdit* box, TableColour colour);
void paint(QLabel* label, TableColour colour);

// A caption with the mark of unsaved edits, or without it.
[[nodiscard]] QString marked(const QString& caption, bool edited);

// The frame of a child window inside the main window, if it has one.
[[nodiscard]] QMdiSubWindow* frameOf(QWidget* window);

// Places `follower` beside `leader`, bottom edges aligned: on its right
// when followerOnRight (then in its normal state), else on its left.
void dock(QWidget* leader, QWidget* follower, bool followerOnRight);

}  // namespace tablekit

}  // namespace velora
