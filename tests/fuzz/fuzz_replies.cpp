// A byte stream from the drive, through the reply assembly of either back-end into the
// dispatcher with every reply family registered, as the program runs them.
//
// Input: byte 0 seeds the link (bit 0 USB back-end, bit 1 real-time monitor on, bits 2-3 a
// transfer in progress, bits 4-5 the drive version class, bits 6-7 a table read or a wave
// capture under way), the rest is the received stream; on
// the USB back-end each chunk is prefixed by its length byte.

#include "FuzzSupport.h"
#include "core/comtable/ComTransfer.h"
#include "core/link/LinkEngine.h"
#include "core/link/ReplyAssembly.h"
#include "core/monitor/AlarmMonitor.h"
#include "core/monitor/RealTimeMonitor.h"
#include "core/params/ParamTransfer.h"
#include "core/pointtable/PointTransfer.h"
#include "core/shared/Global.h"
#include "core/wave/WaveCapture.h"
#include "support/FakeLinkUi.h"
#include "support/FakeTransport.h"

using namespace velora;

namespace {

// Where each reply carries a number the program reads (0-based offsets after axis and code),
// written out from the protocol rather than taken from the handlers.
bool numericAt(const QByteArray& code, int i, bool torquePeak) {
    if (code == "pa")
        return i < 120 * 9 && i % 9 < 8;
    if (code == "PR" || code == "CR")
        return i < 8;
    if (code == "VR" || code == "QR")
        return i < 4;
    if (code == "ta" || code == "TR") {
        const int j = i % 23;
        return i < (code == "ta" ? 64 : 1) * 23 &&
               (j < 4 || (j >= 5 && j < 13) || j == 14 || j == 16 || (j >= 18 && j < 22));
    }
    if (code == "ca")  // torque No.0 (140-144) is the drive's own
        return (i < 50 && i % 5 < 4) || (i >= 50 && i < 140 && (i - 50) % 9 < 8) ||
               (i >= 145 && i < 180 && (i - 140) % 5 < 4);
    if (code == "AD")
        return i < 2 || (i < 18 && i % 2 == 1);
    if (code == "ma")
        return i < 72 || (torquePeak && i >= 91 && i < 95);
    if (code == "wd")
        return i < 3000 && i % 12 < 9;
    return false;
}

bool isHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

// A character that is not a hex digit stands where the reply carries a number.
bool spoiled(const QByteArray& reply, bool torquePeak) {
    const QByteArray code = reply.mid(1, 2);
    for (int i = 3; i < reply.size(); ++i) {
        if (!isHexDigit(reply[i]) && numericAt(code, i - 3, torquePeak))
            return true;
    }
    return false;
}

// Everything a reply handler stores, as one comparable list.
QList<qint64> mirrors(const Global& g) {
    QList<qint64> v(g.Params.ParamValue.cbegin(), g.Params.ParamValue.cend());
    for (const PointEntry& p : g.Points.PointTable)
        v << p.ModeWord << p.PosTor << p.AbsInc << p.NextStart << p.Position << p.Velocity
          << p.AccConst << p.WaitTime;
    v << QList<qint64>(g.Com.CmdVelocity.cbegin(), g.Com.CmdVelocity.cend())
      << QList<qint64>(g.Com.CmdAtc.cbegin(), g.Com.CmdAtc.cend())
      << QList<qint64>(g.Com.CmdTorque.cbegin(), g.Com.CmdTorque.cend())
      << QList<qint64>(g.Alarms.AlarmHistory.cbegin(), g.Alarms.AlarmHistory.cend())
      << g.Alarms.NowAlarm << g.Link.DriverVersion << g.Link.ServoStatus;
    for (const auto& sample : g.Wave.WaveSamples[0])
        v << sample[0] << sample[1];
    v << QList<qint64>(g.Wave.WaveLogic[0].cbegin(), g.Wave.WaveLogic[0].cend());
    return v;
}

struct Line {
    explicit Line(uint8_t seed) {
        global.Link.UsbMode = (seed & 1U) != 0;
        global.Link.RealTimeMonitor = (seed & 2U) != 0;
        global.Link.AxisNumber = 1;
        const int versions[] = {0, 100, 110, 250};
        global.Link.DriverVersion = versions[(seed >> 4) & 3U];
        auto owned = std::make_unique<test::FakeTransport>(
            global.Link, global.Link.UsbMode ? BackEnd::UsbSerial : BackEnd::Rs232);
        port = owned.get();
        engine.setTransport(std::move(owned));
        QObject::connect(&monitor, &RealTimeMonitor::snapshot, [this] { ++snapshots; });
        engine.start(250);
        engine.endOfTransmission();
        switch ((seed >> 2) & 3U) {
            case 1:
                params.readAll();
                break;
            case 2:
                params.readEach();
                break;
            case 3:
                global.Params.ParamChanged[5] = true;
                global.Params.ParamChanged[70] = true;
                params.writeChanged();
                break;
            default:
                break;
        }
        switch ((seed >> 6) & 3U) {
            case 1:
                points.ReadAllPoints();
                break;
            case 2:
                commands.readAll();
                break;
            case 3:
                wave.run();
                break;
            default:
                break;
        }
    }

    // Hands one assembled reply to the link and checks what it did in answer.
    void deliver(const QByteArray& reply) {
        const qsizetype before = port->frames.size();
        const bool bad = spoiled(reply, global.Link.DriverVersion >= 110);
        const QList<qint64> stored = bad ? mirrors(global) : QList<qint64>();
        snapshots = 0;
        port->reply(QString::fromLatin1(reply));
        // Nothing decoded from a reply with a non-number in a number's place is ever stored.
        VELORA_FUZZ_CHECK(!bad || (mirrors(global) == stored && snapshots == 0));
        // A reply answers with at most one command: the link never has two in flight.
        VELORA_FUZZ_CHECK(port->frames.size() - before <= 1);
        engine.endOfTransmission();
        for (const qint16 entry : global.Alarms.AlarmHistory)
            VELORA_FUZZ_CHECK(entry >= 0 && entry <= AlarmData::AlarmCount);
        // The drive's version is a signed 16-bit number.
        VELORA_FUZZ_CHECK(global.Link.DriverVersion >= -32768 &&
                          global.Link.DriverVersion <= 32767);
        VELORA_FUZZ_CHECK(!global.Link.run().AwaitingReply ||
                          !global.Link.run().LastCommand.isEmpty());
        const int wave = static_cast<int>(global.Link.run().Wave);
        VELORA_FUZZ_CHECK(wave >= 0 && wave <= static_cast<int>(WaveState::ReceivingRecord));
    }

    Global global;
    test::FakeLinkUi ui;
    LinkEngine engine{global.Link, ui, LinkEngine::Ticks::Manual};
    ParamTransfer params{engine, global.Params};
    RealTimeMonitor monitor{engine};
    AlarmMonitor alarms{engine, global.Alarms};
    PointTransfer points{engine, global.Points};
    ComTransfer commands{engine, global.Com};
    WaveCapture wave{engine, global};
    test::FakeTransport* port = nullptr;
    int snapshots = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::ensureApplication();
    if (size == 0)
        return 0;
    Line line(data[0]);
    QByteArray& buffer = line.global.Link.ReceiveBuffer;
    size_t at = 1;
    if (!line.global.Link.UsbMode) {
        for (; at < size; ++at) {
            if (auto reply = assembly::feedCharacter(buffer, static_cast<char>(data[at])))
                line.deliver(*reply);
        }
        return 0;
    }
    while (at < size) {
        const size_t declared = data[at++];
        const size_t length = std::min(declared, size - at);
        const QByteArray chunk(reinterpret_cast<const char*>(data + at),
                               static_cast<qsizetype>(length));
        at += length;
        const assembly::ChunkOutcome outcome = assembly::feedChunk(buffer, chunk);
        if (outcome.reply)
            line.deliver(*outcome.reply);
    }
    return 0;
}
