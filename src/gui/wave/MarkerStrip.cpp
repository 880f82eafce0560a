#include "gui/wave/MarkerStrip.h"

#include <QLabel>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace velora {

namespace {

constexpr int kThickness = 14;
const QColor kMarker(255, 150, 40);
const QColor kStripBack(150, 190, 230);

// The marker: a triangle pointing at the traces.
QPixmap markerPicture(Qt::Orientation orientation, const QColor& colour) {
    QPixmap pixmap(kThickness, kThickness);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(Qt::black, 1));
    p.setBrush(colour);
    const double k = kThickness - 1;
    if (orientation == Qt::Horizontal)
        p.drawPolygon(QPolygonF{QPointF(1, 1), QPointF(k, 1), QPointF(k / 2 + 0.5, k)});
    else
        p.drawPolygon(QPolygonF{QPointF(k, 1), QPointF(k, k), QPointF(1, k / 2 + 0.5)});
    return pixmap;
}

}  // namespace

MarkerStrip::MarkerStrip(Qt::Orientation orientation, const QString& stripName,
                         const QString& markerName, QWidget* parent)
    : QFrame(parent), orientation_(orientation) {
    setObjectName(stripName);
    marker_ = new QLabel(this);
    marker_->setObjectName(markerName);
    marker_->setPixmap(markerPicture(orientation, kMarker));
    marker_->setFixedSize(kThickness, kThickness);
    marker_->setCursor(orientation == Qt::Horizontal ? Qt::SizeHorCursor : Qt::SizeVerCursor);
    // Presses on the marker reach the strip, which does the dragging.
    marker_->setAttribute(Qt::WA_TransparentForMouseEvents);
    if (orientation == Qt::Horizontal)
        setFixedHeight(kThickness);
    else
        setFixedWidth(kThickness);
}

void MarkerStrip::setFraction(double fraction) {
    fraction_ = std::clamp(fraction, 0.0, 1.0);
    placeMarker(fraction_ * length());
}

void MarkerStrip::setOpaque(bool opaque) {
    opaque_ = opaque;
    update();
}

double MarkerStrip::length() const {
    return orientation_ == Qt::Horizontal ? width() : height();
}

double MarkerStrip::along(const QPointF& point) const {
    return orientation_ == Qt::Horizontal ? point.x() : point.y();
}

void MarkerStrip::placeMarker(double centre) {
    const int at = static_cast<int>(centre - kThickness / 2.0);
    if (orientation_ == Qt::Horizontal)
        marker_->move(at, 0);
    else
        marker_->move(0, at);
}

void MarkerStrip::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    const double at = along(event->position());
    const double centre = fraction_ * length();
    if (std::abs(at - centre) <= kThickness / 2.0) {
        dragging_ = true;
        return;
    }
    const bool forward = orientation_ == Qt::Horizontal ? at > centre : at < centre;
    emit stepRequested(forward ? 1 : -1);
}

void MarkerStrip::mouseMoveEvent(QMouseEvent* event) {
    if (dragging_)
        placeMarker(std::clamp(along(event->position()), 0.0, length()));
}

void MarkerStrip::mouseReleaseEvent(QMouseEvent* event) {
    if (!dragging_ || event->button() != Qt::LeftButton)
        return;
    dragging_ = false;
    const double at = std::clamp(along(event->position()), 0.0, length());
    emit released(length() > 0 ? at / length() : 0.5);
}

void MarkerStrip::resizeEvent(QResizeEvent* event) {
    QFrame::resizeEvent(event);
    placeMarker(fraction_ * length());
}

void MarkerStrip::paintEvent(QPaintEvent* event) {
    QFrame::paintEvent(event);
    if (!opaque_)
        return;
    QPainter p(this);
    p.fillRect(rect(), kStripBack);
}

}  // namespace velora
