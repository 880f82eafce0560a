#include "gui/app/WindowArranger.h"

#include <QEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QStyle>

#include <algorithm>

namespace velora {

namespace {

// The windows in the order they matter at a first start: what does not fit is minimised.
const char* const kPriority[] = {"ComConsole", "NumMonitor", "PrmTbl",   "IOStatus",
                                 "AlarmMon",   "HMon",       "PointTbl", "ComTbl"};

bool normalState(const QMdiSubWindow* frame) {
    return !frame->isMinimized() && !frame->isMaximized();
}

}  // namespace

WindowArranger::WindowArranger(QMdiArea* area, QObject* parent) : QObject(parent), area_(area) {
}

void WindowArranger::follow(QMdiSubWindow* frame) {
    frame->installEventFilter(this);
    normal_.insert(frame, frame->geometry());
}

bool WindowArranger::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Move || event->type() == QEvent::Resize) {
        const auto* frame = static_cast<const QMdiSubWindow*>(watched);
        if (normalState(frame) && frame->isVisible())
            normal_.insert(frame, frame->geometry());
    }
    return QObject::eventFilter(watched, event);
}

QMdiSubWindow* WindowArranger::frameNamed(const QString& name) const {
    for (QMdiSubWindow* frame : area_->subWindowList()) {
        if (frame->widget() && frame->widget()->objectName() == name)
            return frame;
    }
    return nullptr;
}

QRect WindowArranger::normalGeometry(QMdiSubWindow* frame) const {
    if (normalState(frame))
        return frame->geometry();
    return normal_.value(frame, frame->geometry());
}

void WindowArranger::arrangeFirstStart() {
    // A row along the foot for the minimised title bars, which then cover nothing; more rows
    // when they wrap on a narrow area.
    int shelf = area_->style()->pixelMetric(QStyle::PM_TitleBarHeight) + 8;
    for (int attempt = 0; attempt < 4; ++attempt) {
        const int top = arrangeAbove(shelf);
        if (top >= area_->viewport()->height() - shelf)
            break;
        shelf = area_->viewport()->height() - top + 4;
    }
}

int WindowArranger::arrangeAbove(int shelf) {
    const QSize area = area_->viewport()->size();
    const int height = std::max(1, area.height() - shelf);
    // Columns from the left, each filled from the top with windows in the order they matter.
    QList<QList<QMdiSubWindow*>> columns{{}};
    int x = 0;
    int y = 0;
    int columnRight = 0;
    QList<QMdiSubWindow*> shelved;
    for (const char* name : kPriority) {
        QMdiSubWindow* frame = frameNamed(QString::fromLatin1(name));
        if (!frame)
            continue;
        frame->showNormal();
        frame->widget()->show();
        const QSize least = frame->minimumSizeHint();
        const QSize wanted = frame->sizeHint().expandedTo(least);
        if (y > 0 && height - y < least.height()) {
            x = columnRight;
            y = 0;
            columns.append(QList<QMdiSubWindow*>());
        }
        const int w = std::min(wanted.width(), area.width() - x);
        if (w < least.width() && x > 0) {
            shelved << frame;
            continue;
        }
        const int h = std::min(wanted.height(), height - y);
        frame->setGeometry(x, y, std::max(w, 1), std::max(h, 1));
        columns.last().append(frame);
        columnRight = std::max(columnRight, x + w);
        y += h;
    }
    // The last window of a column takes the rest of its height; every window the width of its
    // column, the last column the rest of the area.
    for (int c = 0; c < columns.size(); ++c) {
        int right = area.width() - 1;
        if (c + 1 < columns.size() && !columns[c + 1].isEmpty())
            right = columns[c + 1].first()->geometry().left() - 1;
        for (QMdiSubWindow* frame : columns[c]) {
            QRect r = frame->geometry();
            if (frame == columns[c].last())
                r.setBottom(height - 1);
            r.setRight(right);
            frame->setGeometry(r);
        }
    }
    int top = area.height();
    for (QMdiSubWindow* frame : shelved) {
        frame->showMinimized();
        top = std::min(top, frame->geometry().top());
    }
    return top;
}

void WindowArranger::tile() {
    area_->tileSubWindows();
}

void WindowArranger::cascade() {
    area_->cascadeSubWindows();
}

QList<WindowLayout::Frame> WindowArranger::capture() const {
    QList<WindowLayout::Frame> frames;
    for (QMdiSubWindow* frame : area_->subWindowList(QMdiArea::CreationOrder)) {
        if (!frame->widget())
            continue;
        WindowLayout::FrameState state = WindowLayout::FrameState::Normal;
        if (frame->isHidden())
            state = WindowLayout::FrameState::Hidden;
        else if (frame->isMinimized())
            state = WindowLayout::FrameState::Minimised;
        frames.append({frame->widget()->objectName(), normalGeometry(frame), state});
    }
    return frames;
}

bool WindowArranger::restore(const WindowLayout& layout) {
    const QRect area(QPoint(), area_->viewport()->size());
    const QList<QMdiSubWindow*> frames = area_->subWindowList(QMdiArea::CreationOrder);
    for (QMdiSubWindow* frame : frames) {
        const WindowLayout::Frame* kept = layout.frame(frame->widget()->objectName());
        if (kept && kept->state != WindowLayout::FrameState::Hidden &&
            !area.contains(kept->geometry))
            return false;
    }
    for (QMdiSubWindow* frame : frames) {
        const WindowLayout::Frame* kept = layout.frame(frame->widget()->objectName());
        if (!kept)
            continue;
        if (kept->state == WindowLayout::FrameState::Hidden) {
            frame->hide();
        } else {
            frame->showNormal();
            frame->widget()->show();
        }
        frame->setGeometry(kept->geometry);
        normal_.insert(frame, kept->geometry);
        if (kept->state == WindowLayout::FrameState::Minimised)
            frame->showMinimized();
    }
    return true;
}

}  // namespace velora
