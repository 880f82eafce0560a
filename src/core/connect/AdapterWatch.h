#pragma once

#include "core/connect/PortHint.h"
#include "core/shared/TextId.h"

#include <QObject>
#include <QTimer>

#include <functional>

namespace velora {

class LinkEngine;
struct ConnectionMemory;

// Keeps the link on its USB adapter: remembers the adapter by its serial number, finds it again
// when it comes back under another device name, and when it is pulled out while connected,
// waits for it and reopens it, so the monitor resumes without a restart. Everything it has to
// say goes to the status bar, never into a message box: a cable can be replugged many times.
class AdapterWatch : public QObject {
    Q_OBJECT
public:
    using PortLister = std::function<QList<PortHint>()>;

    AdapterWatch(LinkEngine& engine, ConnectionMemory& memory, QObject* parent = nullptr);
    Q_DISABLE_COPY_MOVE(AdapterWatch)

    // The system's ports by default; tests hand in their own table.
    void setPortLister(PortLister lister) { lister_ = std::move(lister); }
    void setRecheckIntervalMs(int ms) { recheck_.setInterval(ms); }

    // Before the port is opened: when the remembered adapter is now under another device name
    // than the settings open, it is opened there.
    void locate();
    // After the port opened: the adapter on it (if it has a serial number) is remembered.
    void rememberOpenedAdapter();
    // True while the port is gone and the adapter is awaited.
    [[nodiscard]] bool waiting() const { return recheck_.isActive(); }

signals:
    // A sentence for the status bar, in the user's language.
    void note(const QString& text);

private:
    void onPortLost();
    void recheck();
    [[nodiscard]] std::optional<PortHint> rememberedAdapter() const;
    [[nodiscard]] QString text(Text id) const;

    LinkEngine& engine_;
    ConnectionMemory& memory_;
    PortLister lister_ = &PortHint::systemPorts;
    QTimer recheck_;
    QString lostDevice_;
};

}  // namespace velora
