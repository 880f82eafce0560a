#pragma once

#include "core/shared/WaveStore.h"

#include <QPixmap>
#include <QPolygonF>
#include <QWidget>

#include <array>

namespace velora {

// One picture of the wave monitor (Picture1(index)): 0 velocity, 1 torque command, 2 the logic
// signal, drawn over a grid of ten time divisions and six value divisions (the logic picture
// has the time divisions only). Samples fill the width; the analogue value range is six
// divisions with the zero line at the zero level. The picture reports mouse clicks (cursors),
// the pointer (hover) and, for the analogue ones, the Up and Down keys (zero level).
class WaveTrace : public QWidget {
    Q_OBJECT
public:
    static constexpr int NoCursor = -1;

    WaveTrace(const WaveStore& store, int index, QWidget* parent = nullptr);
    Q_DISABLE_COPY_MOVE(WaveTrace)

    [[nodiscard]] int index() const { return index_; }
    [[nodiscard]] bool isLogic() const { return index_ == 2; }

    // Value range (six divisions, in the stored unit) and zero level; analogue pictures only.
    void setScale(double span, int zeroLevel);
    // Whether slot 2 is drawn under slot 1.
    void setShowPrevious(bool show);
    void setTriggerPosition(int triggerPosition);
    // Sample indexes of the two time cursors and the pointer, NoCursor for none.
    void setCursors(const std::array<int, 2>& cursors);
    void setHover(int sample);

    // The points the painter draws for a slot, in widget coordinates. The logic trace steps
    // between its levels with a vertical edge where two samples differ.
    [[nodiscard]] QPolygonF tracePoints(int slot) const;
    // The sample under a horizontal widget position.
    [[nodiscard]] int sampleAt(double x) const;
    // Slots drawn, the older first.
    [[nodiscard]] QList<int> drawnSlots() const;

    static const QColor NowColour;
    static const QColor PreviousColour;

signals:
    // A left click places cursor 0, a right click cursor 1.
    void cursorPlaced(int cursor, int sample);
    void hovered(int sample);
    // Up (+1) or Down (-1) while the picture has the keyboard.
    void zeroStep(int direction);
    void focusChanged(bool focused);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void paintGrid(QPainter& p) const;
    void paintCursors(QPainter& p) const;

    const WaveStore& store_;
    const int index_;
    double span_ = 300;
    int zeroLevel_ = 50;
    bool showPrevious_ = true;
    int triggerPosition_ = 128;
    std::array<int, 2> cursors_{NoCursor, NoCursor};
    int hover_ = NoCursor;
    QPixmap grid_;
    QString gridKey_;
};

}  // namespace velora
