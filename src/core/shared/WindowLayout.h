#pragma once

#include <QList>
#include <QRect>
#include <QString>

#include <optional>

class QSettings;

namespace velora {

// Where the windows stood at the last orderly end: the main window, and each child window's
// frame inside the MDI area (its place in the normal state, and whether it was minimised or
// hidden), with the joined tables. Kept in a settings group of its own.
struct WindowLayout {
    enum class FrameState { Normal, Minimised, Hidden };
    struct Frame {
        QString name;  // the child window's object name
        QRect geometry;
        FrameState state = FrameState::Normal;
    };

    QRect mainGeometry;
    bool mainMaximised = false;
    QList<Frame> frames;
    bool tablesJoined = false;

    [[nodiscard]] const Frame* frame(const QString& name) const;

    // The group's keys; nothing when the group is missing or any key is malformed, so that a
    // damaged layout gives the first start's arrangement, never half of one.
    [[nodiscard]] static std::optional<WindowLayout> read(QSettings& settings);
    void write(QSettings& settings) const;
};

}  // namespace velora
