#pragma once

#include "core/shared/WindowLayout.h"

#include <QHash>
#include <QObject>
#include <QRect>

class QMdiArea;
class QMdiSubWindow;

namespace velora {

// Places the child windows inside the MDI area: the first start's arrangement (the console,
// the monitor and the parameter window side by side where the area allows, the others
// minimised along the area's foot so that every title bar shows), tiling and cascading, and the
// layout kept between runs.
class WindowArranger : public QObject {
    Q_OBJECT
public:
    explicit WindowArranger(QMdiArea* area, QObject* parent = nullptr);

    // Follows a frame from now on: its last place in the normal state is what is kept.
    void follow(QMdiSubWindow* frame);

    // The first start's arrangement, by the names of the windows in the order they matter.
    void arrangeFirstStart();
    void tile();
    void cascade();

    // The frames as they stand now.
    [[nodiscard]] QList<WindowLayout::Frame> capture() const;
    // Puts the frames where the layout says; false, touching nothing, when a frame's place does
    // not lie inside the area of the moment.
    bool restore(const WindowLayout& layout);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // The first start's arrangement above a shelf of that height; the top of the highest
    // minimised title bar.
    int arrangeAbove(int shelf);
    [[nodiscard]] QMdiSubWindow* frameNamed(const QString& name) const;
    [[nodiscard]] QRect normalGeometry(QMdiSubWindow* frame) const;

    QMdiArea* area_;
    QHash<const QMdiSubWindow*, QRect> normal_;
};

}  // namespace velora
