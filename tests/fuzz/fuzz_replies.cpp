// A byte stream from the drive, through the reply assembly of either back-end into the
// dispatcher with every reply family registered, as the program runs them.
//
// Input: byte 0 seeds the link (bit 0 USB back-end, bit 1 real-time monitor on, bits 2-3 a
// transfer in progress, bits 4-5 the drive version class, bits 6-7 a table read or a wave
// capture under way), the rest is the received stream; on
// the USB back-end each chunk is prefixed by its length byte.

#include "FuzzSupport.h"
#include "comtable/ComTransfer.h"
#include "link/LinkEngine.h"
#include "link/ReplyAssembly.h"
#include "monitor/AlarmMonitor.h"
#include "monitor/RealTimeMonitor.h"
#include "params/ParamTransfer.h"
#include "pointtable/PointTransfer.h"
#include "shared/Global.h"
#include "support/FakeLinkUi.h"
#include "support/FakeTransport.h"
#include "wave/WaveCapture.h"

using namespace velora;

namespace {

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
        port->reply(QString::fromLatin1(reply));
        // A reply answers with at most one command: the link never has two in flight.
        VELORA_FUZZ_CHECK(port->frames.size() - before <= 1);
        engine.endOfTransmission();
        for (const qint16 entry : global.Alarms.AlarmHistory)
            VELORA_FUZZ_CHECK(entry >= 0 && entry <= AlarmData::AlarmCount);
        // The drive's version is a signed 16-bit number.
        VELORA_FUZZ_CHECK(global.Link.DriverVersion >= -32768 &&
                          global.Link.DriverVersion <= 32767);
        VELORA_FUZZ_CHECK(!global.Link.AwaitingReply || !global.Link.LastCommand.isEmpty());
        VELORA_FUZZ_CHECK(global.Link.WaveState >= 0 && global.Link.WaveState <= 3);
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
