#pragma once

#include "core/link/LinkEngine.h"
#include "core/shared/LinkState.h"
#include "support/FakeLinkUi.h"
#include "support/FakeTransport.h"

namespace velora::test {

// A started link on axis 1 at 9600 baud over a fake port, stepped by hand.
struct LinkRig {
    explicit LinkRig(BackEnd backEnd = BackEnd::Rs232, bool realTimeMonitor = true) {
        state.AxisNumber = 1;
        state.RealTimeMonitor = realTimeMonitor;
        auto owned = std::make_unique<FakeTransport>(state, backEnd);
        port = owned.get();
        engine.setTransport(std::move(owned));
        ui.timer1Probe = [this] { return engine.timer1Active(); };
        engine.start(250);
        engine.endOfTransmission();  // the first poll has left
        port->frames.clear();
        port->transmissionsDone = 0;
        ui.transferButtonsDisabled = 0;
        ui.consoleDisabled = 0;
    }

    // Ticks Timer1 n times.
    void ticks(int n) {
        for (int i = 0; i < n; ++i)
            engine.tick();
    }
    [[nodiscard]] QStringList sent() const { return port->sentTexts(); }
    [[nodiscard]] QString lastSent() const { return sent().value(sent().size() - 1); }

    LinkState state;
    FakeLinkUi ui;
    LinkEngine engine{state, ui, LinkEngine::Ticks::Manual};
    FakeTransport* port = nullptr;
};

}  // namespace velora::test
