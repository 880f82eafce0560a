#pragma once

#include "core/link/Transport.h"

#include <QStringList>

namespace velora::test {

// A back-end without a port: records the frames written and delivers replies on request.
class FakeTransport : public Transport {
public:
    FakeTransport(LinkState& state, BackEnd backEnd) : Transport(state), backEnd_(backEnd) {}

    QList<QByteArray> frames;
    bool failSends = false;
    bool transmitEnable = false;
    int spoolClears = 0;
    int transmissionsDone = 0;

    [[nodiscard]] BackEnd backEnd() const override { return backEnd_; }
    OpenResult open(const QString& device, int) override {
        open_ = true;
        return {true, device, {}};
    }
    void close() override { open_ = false; }
    [[nodiscard]] bool isOpen() const override { return open_; }
    bool send(const QByteArray& frame) override {
        if (failSends)
            return false;
        frames.append(frame);
        return true;
    }
    void transmissionDone() override { ++transmissionsDone; }
    void setTransmitEnable(bool on) override { transmitEnable = on; }
    bool clearReceiveSpool() override {
        ++spoolClears;
        return true;
    }

    // The command texts sent so far, without frame bytes.
    [[nodiscard]] QStringList sentTexts() const {
        QStringList texts;
        for (const QByteArray& frame : frames) {
            texts.append(QString::fromLatin1(frame.mid(1, frame.size() - 2)));
        }
        return texts;
    }
    void reply(const QString& text) { emit replyReceived(text); }

private:
    BackEnd backEnd_;
    bool open_ = false;
};

}  // namespace velora::test
