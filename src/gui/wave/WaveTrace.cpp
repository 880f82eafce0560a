#include "gui/wave/WaveTrace.h"

#include "core/wave/WaveScale.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace velora {

namespace {

const QColor kBackground(12, 16, 20);
const QColor kGrid(60, 72, 84);
const QColor kGridCentre(95, 110, 125);
const QColor kTrigger(255, 150, 40);
const std::array<QColor, 2> kCursor{QColor(0, 220, 255), QColor(255, 80, 255)};

}  // namespace

const QColor WaveTrace::NowColour(255, 255, 64);
const QColor WaveTrace::PreviousColour(255, 0, 0);

WaveTrace::WaveTrace(const WaveStore& store, int index, QWidget* parent)
    : QWidget(parent), store_(store), index_(index) {
    setObjectName(QStringLiteral("Picture1(%1)").arg(index));
    setMouseTracking(true);
    // The analogue pictures take the keyboard for their zero markers.
    setFocusPolicy(isLogic() ? Qt::NoFocus : Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(250, isLogic() ? 30 : 80);
}

void WaveTrace::setScale(double span, int zeroLevel) {
    span_ = span;
    zeroLevel_ = zeroLevel;
    update();
}

void WaveTrace::setShowPrevious(bool show) {
    showPrevious_ = show;
    update();
}

void WaveTrace::setTriggerPosition(int triggerPosition) {
    triggerPosition_ = triggerPosition;
    update();
}

void WaveTrace::setCursors(const std::array<int, 2>& cursors) {
    cursors_ = cursors;
    update();
}

void WaveTrace::setHover(int sample) {
    if (hover_ == sample)
        return;
    hover_ = sample;
    update();
}

QList<int> WaveTrace::drawnSlots() const {
    return showPrevious_ ? QList<int>{2, 1} : QList<int>{1};
}

QPolygonF WaveTrace::tracePoints(int slot) const {
    const double w = width();
    const double h = height();
    // 250 units across the width: sample i at x = i.
    const double dx = w / WaveStore::SampleCount;
    QPolygonF points;
    points.reserve(WaveStore::SampleCount * 2);
    if (!isLogic()) {
        for (int i = 0; i < WaveStore::SampleCount; ++i) {
            const double value = store_.sample(slot, i, index_);
            points.append({i * dx, wave::yFraction(value, span_, zeroLevel_) * h});
        }
        return points;
    }
    const double high = wave::logicYFraction(slot, true) * h;
    const double low = wave::logicYFraction(slot, false) * h;
    double previous = 0;
    for (int i = 0; i < WaveStore::SampleCount; ++i) {
        const double y = (store_.logic(slot, i) & 1U) != 0 ? high : low;
        if (i > 0 && y != previous)
            points.append({i * dx, previous});  // the edge at x = i
        points.append({i * dx, y});
        previous = y;
    }
    return points;
}

int WaveTrace::sampleAt(double x) const {
    const double units = x * WaveStore::SampleCount / std::max(1, width());
    // The nearest sample: sample i is drawn at x = i.
    return std::clamp(static_cast<int>(std::lround(units)), 0, WaveStore::SampleCount - 1);
}

void WaveTrace::paintEvent(QPaintEvent*) {
    QPainter p(this);
    // The grid changes only with the size, the zero level and the trigger: kept as a picture,
    // as the grid image behind a trace always was.
    const QString key = QStringLiteral("%1x%2/%3/%4/%5")
                            .arg(width())
                            .arg(height())
                            .arg(span_)
                            .arg(zeroLevel_)
                            .arg(triggerPosition_);
    if (gridKey_ != key || grid_.size() != size() * devicePixelRatioF()) {
        grid_ = QPixmap(size() * devicePixelRatioF());
        grid_.setDevicePixelRatio(devicePixelRatioF());
        grid_.fill(kBackground);
        QPainter g(&grid_);
        paintGrid(g);
        gridKey_ = key;
    }
    p.drawPixmap(0, 0, grid_);
    // Smooth one-pixel traces take the raster engine's fast path; wider ones cost ten times more.
    p.setRenderHint(QPainter::Antialiasing);
    for (const int slot : drawnSlots()) {
        p.setPen(QPen(slot == 1 ? NowColour : PreviousColour, 1.0));
        p.drawPolyline(tracePoints(slot));
    }
    paintCursors(p);
    if (hasFocus()) {
        p.setRenderHint(QPainter::Antialiasing, false);
        p.setPen(QPen(palette().highlight().color(), 2));
        p.drawRect(rect().adjusted(1, 1, -1, -1));
    }
}

void WaveTrace::paintGrid(QPainter& p) const {
    const double w = width() - 1;
    const double h = height() - 1;
    const QPen minor(kGrid, 1, Qt::DotLine);
    const QPen centre(kGridCentre, 1, Qt::DotLine);
    for (int i = 1; i < wave::HorizontalDivisions; ++i) {
        p.setPen(i == wave::HorizontalDivisions / 2 ? centre : minor);
        const double x = w * i / wave::HorizontalDivisions;
        p.drawLine(QPointF(x, 0), QPointF(x, h));
    }
    if (!isLogic()) {
        for (int i = 1; i < wave::VerticalDivisions; ++i) {
            p.setPen(minor);
            const double y = h * i / wave::VerticalDivisions;
            p.drawLine(QPointF(0, y), QPointF(w, y));
        }
        // The zero line, where the zero marker points.
        p.setPen(QPen(kGridCentre, 1));
        const double zero = wave::yFraction(0, span_, zeroLevel_) * height();
        p.drawLine(QPointF(0, zero), QPointF(w, zero));
    }
    p.setPen(QPen(kTrigger, 1, Qt::DashLine));
    const double trigger = width() * triggerPosition_ / 256.0;
    p.drawLine(QPointF(trigger, 0), QPointF(trigger, h));
    p.setPen(QPen(kGrid, 1));
    p.drawRect(QRectF(0, 0, w, h));
}

void WaveTrace::paintCursors(QPainter& p) const {
    const double dx = static_cast<double>(width()) / WaveStore::SampleCount;
    if (hover_ != NoCursor) {
        p.setPen(QPen(QColor(200, 200, 200, 140), 1, Qt::DotLine));
        p.drawLine(QPointF(hover_ * dx, 0), QPointF(hover_ * dx, height()));
    }
    for (std::size_t c = 0; c < cursors_.size(); ++c) {
        if (cursors_[c] == NoCursor)
            continue;
        const double x = cursors_[c] * dx;
        p.setPen(QPen(kCursor[c], 1));
        p.drawLine(QPointF(x, 0), QPointF(x, height()));
        p.drawText(QPointF(x + 3, 12), QString::number(c + 1));
    }
}

void WaveTrace::mousePressEvent(QMouseEvent* event) {
    if (!isLogic())
        setFocus(Qt::MouseFocusReason);
    const int sample = sampleAt(event->position().x());
    if (event->button() == Qt::LeftButton)
        emit cursorPlaced(0, sample);
    else if (event->button() == Qt::RightButton)
        emit cursorPlaced(1, sample);
}

void WaveTrace::mouseMoveEvent(QMouseEvent* event) {
    emit hovered(sampleAt(event->position().x()));
}

void WaveTrace::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    emit hovered(NoCursor);
}

void WaveTrace::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Up) {
        emit zeroStep(1);
    } else if (event->key() == Qt::Key_Down) {
        emit zeroStep(-1);
    } else {
        QWidget::keyPressEvent(event);
    }
}

void WaveTrace::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    emit focusChanged(true);
    update();
}

void WaveTrace::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    emit focusChanged(false);
    update();
}

}  // namespace velora
