#pragma once

#include "core/link/SerialPortTransport.h"

namespace velora {

// The plain RS-232C port: replies are assembled character by character.
class Rs232Transport : public SerialPortTransport {
    Q_OBJECT
public:
    explicit Rs232Transport(LinkState& state, QObject* parent = nullptr);

    [[nodiscard]] BackEnd backEnd() const override { return BackEnd::Rs232; }
    bool send(const QByteArray& frame) override;

protected:
    void readAvailable() override;
};

}  // namespace velora
