#include "core/connect/PortSearch.h"

#include "core/link/LinkEngine.h"
#include "core/link/WireFormat.h"
#include "core/shared/LinkState.h"

#include <array>

namespace velora {

namespace {
constexpr std::array<int, 5> kRates{9600, 19200, 38400, 57600, 115200};
}  // namespace

PortSearch::PortSearch(LinkEngine& engine, TransportFactory factory)
    : engine_(engine), factory_(std::move(factory)) {
    engine_.sender().setPortSearchStep([this] { step(); });
}

PortSearch::~PortSearch() {
    engine_.sender().setPortSearchStep({});
}

int PortSearch::rate(int index) {
    return kRates.at(static_cast<std::size_t>(index));
}

bool PortSearch::running() const {
    return engine_.state().run().Searching;
}

QString PortSearch::SearchBaud() const {
    return QString::number(rate(rateIndex_));
}

int PortSearch::probeCount() const {
    return rateCount(engine_.state().UsbMode) * (LastAxis + 1);
}

int PortSearch::probesLeft() const {
    return probeCount() - (rateIndex_ * (LastAxis + 1) + axis_ + 1);
}

void PortSearch::start(bool usb) {
    LinkState& s = engine_.state();
    axis_ = 0;
    rateIndex_ = 0;
    savedAxis_ = s.AxisNumber;
    savedUsb_ = s.UsbMode;
    savedBaud_ = s.BaudRate;
    s.UsbMode = usb;
    engine_.beginSearch();
    // A pending alarm would leave the probes unsupervised, and then no step would ever come.
    s.AlarmSeen = false;
    applyBackEnd(engine_, factory_);
    s.BaudRate = SearchBaud();
    if (!engine_.reopen().ok) {
        finish(Outcome::NotFound);
        return;
    }
    probe();
}

void PortSearch::cancel() {
    if (running())
        finish(Outcome::Cancelled);
}

void PortSearch::step() {
    LinkState& s = engine_.state();
    if (!s.run().Searching)
        return;
    if (axis_ < LastAxis) {
        ++axis_;
    } else {
        axis_ = 0;
        if (rateIndex_ + 1 >= rateCount(s.UsbMode)) {
            finish(Outcome::NotFound);
            return;
        }
        ++rateIndex_;
        s.BaudRate = SearchBaud();
        if (!engine_.reopen().ok) {
            finish(Outcome::NotFound);
            return;
        }
    }
    probe();
}

void PortSearch::found() {
    if (running())
        finish(Outcome::Found);
}

void PortSearch::probe() {
    LinkState& s = engine_.state();
    // The probe's axis is the link's axis while it is out, so that it is supervised like any
    // command (an all-axes setting would send it unanswered).
    s.AxisNumber = axis_;
    engine_.restartSupervision();
    engine_.SendCommand(wire::axisCharacter(axis_) + QStringLiteral("PR77"));
    if (probed_)
        probed_();
}

void PortSearch::finish(Outcome outcome) {
    LinkState& s = engine_.state();
    engine_.endSearch();
    s.AxisNumber = savedAxis_;
    s.UsbMode = savedUsb_;
    s.BaudRate = savedBaud_;
    // The dialog shows what was found; until its OK applies it, the link runs as before, so
    // that Cancel (or quitting, which saves the settings) keeps the old setting.
    applyBackEnd(engine_, factory_);
    engine_.reopen();
    if (ended_)
        ended_(outcome);
}

}  // namespace velora
