#pragma once

#include "core/link/ReplyAssembly.h"
#include "core/link/Transport.h"
#include "core/shared/LinkState.h"

namespace velora::bench {

// A port whose drive answers inside the call: the engine's own cost per exchange, without the
// line or the operating system.
class LoopbackTransport : public Transport {
public:
    explicit LoopbackTransport(LinkState& state) : Transport(state) {}

    [[nodiscard]] BackEnd backEnd() const override { return BackEnd::Rs232; }
    OpenResult open(const QString& device, int) override { return {true, device, {}}; }
    void close() override {}
    [[nodiscard]] bool isOpen() const override { return true; }
    bool send(const QByteArray& frame) override {
        lastFrame = frame;
        return true;
    }

    // Feeds a reply frame byte by byte, as the RS-232C port delivers it.
    void receive(const QByteArray& frame) {
        for (const char c : frame) {
            if (auto reply = assembly::feedCharacter(state().ReceiveBuffer, c)) {
                emit replyReceived(QString::fromLatin1(*reply));
            }
        }
    }

    QByteArray lastFrame;
};

}  // namespace velora::bench
