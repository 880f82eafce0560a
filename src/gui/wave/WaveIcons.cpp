#include "gui/wave/WaveIcons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <functional>

namespace velora::waveicons {

namespace {

constexpr int kSize = 32;
const QColor kNow(255, 255, 64);
const QColor kPrevious(255, 0, 0);

QIcon drawn(const std::function<void(QPainter&)>& paint) {
    QIcon icon;
    for (const int scale : {1, 2}) {
        QPixmap pixmap(kSize * scale, kSize * scale);
        pixmap.fill(QColor(20, 24, 28));
        QPainter p(&pixmap);
        p.setRenderHint(QPainter::Antialiasing);
        p.scale(scale, scale);
        paint(p);
        icon.addPixmap(pixmap);
    }
    return icon;
}

}  // namespace

QIcon edge(int index) {
    const bool positive = index < 2;
    const bool rising = index % 2 == 0;
    return drawn([positive, rising](QPainter& p) {
        // The trigger level as a dashed line, the signal crossing it with an arrow head.
        p.setPen(QPen(QColor(120, 140, 160), 1, Qt::DashLine));
        p.drawLine(QPointF(2, 16), QPointF(30, 16));
        QPainterPath step;
        const double low = rising ? 26 : 6;
        const double high = rising ? 6 : 26;
        step.moveTo(4, low);
        step.lineTo(16, low);
        step.lineTo(16, high);
        step.lineTo(28, high);
        p.setPen(QPen(kNow, 2.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.drawPath(step);
        const double tip = rising ? 11 : 21;
        const double back = rising ? 17 : 15;
        p.setBrush(kNow);
        p.drawPolygon(QPolygonF{QPointF(16, tip), QPointF(12.5, back), QPointF(19.5, back)});
        // The sign of the level: a plus or a minus in the corner.
        p.setPen(QPen(Qt::white, 2.5, Qt::SolidLine, Qt::RoundCap));
        const double y = rising ? 8 : 24;
        p.drawLine(QPointF(3, y), QPointF(10, y));
        if (positive)
            p.drawLine(QPointF(6.5, y - 3.5), QPointF(6.5, y + 3.5));
    });
}

QIcon waveMode(int index) {
    const bool withPrevious = index == 0;
    return drawn([withPrevious](QPainter& p) {
        const auto wave = [&p](double dy, const QColor& colour) {
            QPainterPath path;
            path.moveTo(3, 20 + dy);
            path.cubicTo(10, 2 + dy, 14, 2 + dy, 17, 16 + dy);
            path.cubicTo(20, 30 + dy, 25, 28 + dy, 29, 12 + dy);
            p.setPen(QPen(colour, 2.5, Qt::SolidLine, Qt::RoundCap));
            p.drawPath(path);
        };
        if (withPrevious)
            wave(5, kPrevious);
        wave(0, kNow);
    });
}

}  // namespace velora::waveicons
