#pragma once

#include <QColor>
#include <QDateTime>
#include <QTimer>
#include <QWidget>

#include <array>
#include <optional>

#include "core/shared/Language.h"

class QHBoxLayout;
class QLabel;

namespace velora {

class LinkEngine;

// The status bar along the main window: RUN and ALARM lamps, the servo-on label, the axis
// number, the COM indicator and the clock. The polling timer behind it belongs to the link
// engine, which tells the bar what to show. The monitor may report a hundred times a second: the
// lamps and the SVON label show the latest state at most every RefreshIntervalMs, and only what
// changed is redrawn.
class SystemBar : public QWidget {
    Q_OBJECT
public:
    // Fastest repaint of the lamps and the SVON label (25 per second).
    static constexpr int RefreshIntervalMs = 40;

    explicit SystemBar(LinkEngine& engine, QWidget* parent = nullptr);

    void LanguageSelect(Language languageId);

    void setAxisNumber(int axis);
    // Date, two spaces, time, in the user's short formats.
    void setClock(const QDateTime& now);
    // Red while the monitor chain runs online, black otherwise; white text in both cases.
    void setComIndicator(bool live);
    // A lamp (ShpStatus(0) RUN, ShpStatus(1) ALARM): its fill and the colour around it.
    void setLamp(int index, const QColor& fill, const QColor& back);
    // The servo-on label's background and text colours.
    void setServoOnColours(const QColor& back, const QColor& text);
    // A sentence about the connection (adapter unplugged, back, found elsewhere); it stays
    // until the next one.
    void setConnectionNote(const QString& text);
    // The link in use: device, rate and axis.
    void setLinkLine(const QString& text);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // A colour pair as last asked for, and as last drawn.
    struct Colours {
        QColor first;
        QColor second;
        bool operator==(const Colours& other) const {
            return first == other.first && second == other.second;
        }
    };
    // Places the built labels in one row: the lamps, servo on, axis, link, the clock last.
    void arrange(QHBoxLayout* row);
    void scheduleRefresh();
    void refresh();

    LinkEngine& engine_;
    QLabel* Label1 = nullptr;
    QLabel* Label2 = nullptr;
    QLabel* Label3 = nullptr;
    QLabel* LabelAxisNum = nullptr;
    QLabel* LblCom = nullptr;
    QLabel* LblSVON = nullptr;
    QLabel* LblDateTime = nullptr;
    QLabel* LblConnection = nullptr;
    QLabel* LblLink = nullptr;
    std::array<QLabel*, 2> ShpStatus{};

    QTimer refreshTimer_;
    std::array<Colours, 2> lampWanted_{};
    std::array<Colours, 2> lampShown_{};
    Colours svonWanted_;
    Colours svonShown_;
    std::optional<bool> comShown_;
};

}  // namespace velora
