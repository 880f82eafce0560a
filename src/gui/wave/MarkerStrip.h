#pragma once

#include <QFrame>

class QLabel;

namespace velora {

// A strip beside the traces with a marker on it: the trigger marker (LblTrgView on LblCursor1,
// horizontal) or a zero marker (LblZero(c) on LblCursor2(c), vertical). The marker is dragged
// with the left button; a click on the strip beside it asks for one step towards the click.
// Positions are fractions of the strip's length (from the left, or from the top), so the
// strip scales with the window.
class MarkerStrip : public QFrame {
    Q_OBJECT
public:
    MarkerStrip(Qt::Orientation orientation, const QString& stripName, const QString& markerName,
                QWidget* parent = nullptr);
    Q_DISABLE_COPY_MOVE(MarkerStrip)

    // Places the marker's centre.
    void setFraction(double fraction);
    [[nodiscard]] double fraction() const { return fraction_; }
    [[nodiscard]] QLabel* marker() const { return marker_; }
    // The focus display: the strip's back colour shows while its keyboard owner has the focus.
    void setOpaque(bool opaque);

signals:
    // The marker was dropped here.
    void released(double fraction);
    // A click beside the marker: +1 towards the right or the top, -1 the other way.
    void stepRequested(int direction);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] double along(const QPointF& point) const;
    [[nodiscard]] double length() const;
    void placeMarker(double centre);

    const Qt::Orientation orientation_;
    QLabel* marker_ = nullptr;
    double fraction_ = 0.5;
    bool dragging_ = false;
    bool opaque_ = false;
};

}  // namespace velora
