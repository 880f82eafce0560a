#pragma once

#include <QList>
#include <QString>
#include <QtGlobal>

#include <optional>

namespace velora {

// Background of a value box of the parameter window.
enum class BoxColour {
    Clean,       // white: as the drive has it
    Edited,      // typed or set by a preset key, waiting to be written
    FileLoaded,  // taken from a parameter file, waiting to be written
};

// The colour as 0xRRGGBB (QColor takes it as it is).
[[nodiscard]] constexpr quint32 boxRgb(BoxColour colour) {
    switch (colour) {
        case BoxColour::Edited:
            return 0xFF8080;
        case BoxColour::FileLoaded:
            return 0xFFC0C0;
        case BoxColour::Clean:
            break;
    }
    return 0xFFFFFF;
}

// A caution the window shows next, with the exclamation icon.
enum class CautionKind {
    None,
    AxisNumber,       // parameter 0 changed: takes effect after a restart (OK)
    ConnectQuestion,  // parameter 1 changed: set parameter 45 to match? (OK / Cancel)
    ConnectNotice,    // parameter 45 was set to match parameter 1 (OK)
    BaudRate,         // parameter 43 picks a rate the USB back-end cannot use (Yes / No)
};
enum class CautionButtons {
    Ok,
    OkCancel,
    YesNo,  // No is the default button
};
struct Caution {
    CautionKind kind = CautionKind::None;
    CautionButtons buttons = CautionButtons::Ok;
    QString text;
    QString caption;
};

// What the window does after a box was checked or a key was pressed. The window shows
// `caution`, hands the answer to the editor's answer() and applies that outcome the same way,
// until no caution is left.
struct EditOutcome {
    // The table value behind the checked box changed (and is marked for the next write).
    bool changed = false;
    // New background of the checked box; none: it keeps its colour.
    std::optional<BoxColour> colour;
    // Boxes that show their table value anew (the checked box among them).
    QList<int> refreshed;
    Caution caution;
    // The polling timer stands still from now until the last caution has been answered.
    bool pausePolling = false;
};

// A key pressed in a box: the box that takes the focus, the tab that shows it, and what the
// key itself changed.
struct KeyOutcome {
    int focus = 0;
    int tab = 0;
    EditOutcome edit;
};

}  // namespace velora
