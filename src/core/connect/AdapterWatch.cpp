#include "core/connect/AdapterWatch.h"

#include "core/link/LinkEngine.h"
#include "core/link/WireFormat.h"
#include "core/shared/ConnectionMemory.h"
#include "core/shared/LinkState.h"
#include "core/shared/TextCatalogue.h"

#include <QFileInfo>

namespace velora {

namespace {
// Often enough that a replugged adapter is back before the user looks; cheap enough to run
// for as long as the adapter stays away.
constexpr int kRecheckMs = 500;
}  // namespace

AdapterWatch::AdapterWatch(LinkEngine& engine, ConnectionMemory& memory, QObject* parent)
    : QObject(parent), engine_(engine), memory_(memory) {
    recheck_.setInterval(kRecheckMs);
    connect(&recheck_, &QTimer::timeout, this, &AdapterWatch::recheck);
    connect(&engine_, &LinkEngine::portLost, this, &AdapterWatch::onPortLost);
}

QString AdapterWatch::text(Text id) const {
    return TextCatalogue::text(engine_.state().LanguageId, id);
}

std::optional<PortHint> AdapterWatch::rememberedAdapter() const {
    if (memory_.AdapterSerial.isEmpty())
        return std::nullopt;
    for (const PortHint& port : lister_()) {
        if (port.serialNumber == memory_.AdapterSerial)
            return port;
    }
    return std::nullopt;
}

void AdapterWatch::locate() {
    const std::optional<PortHint> adapter = rememberedAdapter();
    const QString configured = engine_.device();
    if (!adapter || adapter->systemLocation == configured)
        return;
    engine_.setDeviceOverride(adapter->systemLocation);
    emit note(text(Text::CheckAdapterFoundOnInstead)
                  .arg(memory_.AdapterSerial, adapter->systemLocation, configured));
}

void AdapterWatch::rememberOpenedAdapter() {
    const QString device = engine_.device();
    for (const PortHint& port : lister_()) {
        if (port.systemLocation != device)
            continue;
        // An adapter without a serial number cannot be told from another of its kind.
        memory_.AdapterSerial = port.serialNumber;
        memory_.AdapterDevice = port.serialNumber.isEmpty() ? QString() : device;
        return;
    }
}

void AdapterWatch::onPortLost() {
    if (waiting())
        return;
    lostDevice_ = engine_.device();
    engine_.markPortClosed();
    emit note(text(Text::CheckAdapterUnpluggedWaitingCome).arg(lostDevice_));
    recheck_.start();
}

void AdapterWatch::recheck() {
    const LinkState& state = engine_.state();
    // Gone offline, or the user opened a port meanwhile: nothing to wait for any more.
    if (!state.Online || state.run().PortOpen) {
        recheck_.stop();
        return;
    }
    QString device;
    if (const std::optional<PortHint> adapter = rememberedAdapter())
        device = adapter->systemLocation;
    else if (memory_.AdapterSerial.isEmpty() && QFileInfo::exists(lostDevice_))
        device = lostDevice_;
    if (device.isEmpty())
        return;
    const bool moved = device != engine_.device();
    const QString previousOverride = engine_.deviceOverride();
    if (moved)
        engine_.setDeviceOverride(device);
    // Right after plugging in, the system may not yet have given the device its group; the
    // next round tries again.
    if (!engine_.reopen().ok) {
        engine_.setDeviceOverride(previousOverride);
        return;
    }
    recheck_.stop();
    emit note(
        moved
            ? text(Text::CheckAdapterFoundOnInstead).arg(memory_.AdapterSerial, device, lostDevice_)
            : text(Text::CheckAdapterBackOnLink).arg(device));
    if (state.AxisNumber != wire::AllAxes)
        engine_.sendPoll();
}

}  // namespace velora
