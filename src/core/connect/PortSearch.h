#pragma once

#include "core/link/TransportFactory.h"

#include <QString>

#include <functional>

namespace velora {

class LinkEngine;

// The search for a port setting at which a drive answers: the identification read "PR77" goes
// to axes 0 to 14 at 9600 baud, then at each higher rate (up to 38400 through the USB adapter,
// up to 115200 through an RS-232C port). Each probe has one polling tick to be answered; the
// engine's reply supervision calls step() when it was not. The search ends when the
// identification reply comes (found()), when the rates run out, or when it is cancelled.
class PortSearch {
public:
    enum class Outcome { Found, NotFound, Cancelled };
    using EndHandler = std::function<void(Outcome)>;

    static constexpr int LastAxis = 14;

    PortSearch(LinkEngine& engine, TransportFactory factory);
    ~PortSearch();
    PortSearch(const PortSearch&) = delete;
    PortSearch& operator=(const PortSearch&) = delete;

    // Told once per search, after the search state is cleared.
    void setEndHandler(EndHandler handler) { ended_ = std::move(handler); }
    // Told as each probe leaves, so that the user sees where the search stands.
    void setProbeHandler(std::function<void()> handler) { probed_ = std::move(handler); }

    [[nodiscard]] bool running() const;
    // The axis and rate being probed, or the ones found.
    [[nodiscard]] int SearchAxis() const { return axis_; }
    [[nodiscard]] QString SearchBaud() const;
    // Probes of the whole search through its back-end (75, or 45 through the USB adapter), and
    // how many of them are still to come after the one out now.
    [[nodiscard]] int probeCount() const;
    [[nodiscard]] int probesLeft() const;

    // Opens the port at 9600 through the back-end that usb names and sends the first probe.
    // A port that cannot be opened ends the search at once (NotFound).
    void start(bool usb);
    void cancel();
    // The probe got no reply: the next axis, or the next rate from axis 0.
    void step();
    // The identification reply came while searching.
    void found();

    // The rates a search tries through the back-end.
    [[nodiscard]] static int rateCount(bool usb) { return usb ? 3 : 5; }
    [[nodiscard]] static int rate(int index);

private:
    void probe();
    // Puts the back-end, axis and rate of the link back and reopens the port as it was, found
    // or not: a found setting takes effect only when the user confirms it.
    void finish(Outcome outcome);

    LinkEngine& engine_;
    TransportFactory factory_;
    EndHandler ended_;
    std::function<void()> probed_;
    int axis_ = 0;
    int rateIndex_ = 0;
    int savedAxis_ = 0;
    bool savedUsb_ = false;
    QString savedBaud_;
};

}  // namespace velora
