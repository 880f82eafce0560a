#include "core/comtable/ComTransfer.h"

#include "core/link/DriveRules.h"
#include "core/link/LinkEngine.h"
#include "core/link/ReplyFields.h"
#include "core/link/TableChain.h"
#include "core/link/WireFormat.h"
#include "core/shared/ComTables.h"
#include "core/shared/LinkState.h"

#include <array>
#include <optional>

namespace velora {

namespace {

// Payload offsets (after the axis character and the code). The "ca" reply holds the ten
// velocities (4 digits and a separator each), the ten ATCs (8 digits and a separator), and the
// torques No.0-7 (4 digits and a separator); torque No.0 is the drive's own and not read.
constexpr int VelocityStart = 0;
constexpr int AtcStart = VelocityStart + 10 * 5;
constexpr int TorqueStart = AtcStart + 10 * 9;

const QString WriteCodes[] = {QStringLiteral("VW"), QStringLiteral("VT"), QStringLiteral("CW"),
                              QStringLiteral("CT"), QStringLiteral("QW"), QStringLiteral("QT")};
const QString ReadCodes[] = {QStringLiteral("VR"), QStringLiteral("CR"), QStringLiteral("QR")};

// The letter of a cell's column in its write and read codes.
QChar columnLetter(int k) {
    switch (ComTables::column(k)) {
        case ComTables::Column::Atc:
            return QLatin1Char('C');
        case ComTables::Column::Torque:
            return QLatin1Char('Q');
        case ComTables::Column::Velocity:
        case ComTables::Column::None:
            break;
    }
    return QLatin1Char('V');
}

}  // namespace

ComTransfer::ComTransfer(LinkEngine& engine, ComTables& tables, QObject* parent)
    : QObject(parent), engine_(engine), link_(engine.state()), tables_(tables) {
    ReplyDispatcher& dispatcher = engine_.dispatcher();
    dispatcher.registerHandler(QStringLiteral("ca"),
                               [this](const QString& text) { return OnComAll(text); });
    for (const QString& code : WriteCodes)
        dispatcher.registerHandler(code, [this](const QString&) { return OnComWritten(); });
    dispatcher.registerHandler(ReadCodes[0],
                               [this](const QString& text) { return OnEntryRead(text, 4); });
    dispatcher.registerHandler(ReadCodes[1],
                               [this](const QString& text) { return OnEntryRead(text, 8); });
    dispatcher.registerHandler(ReadCodes[2],
                               [this](const QString& text) { return OnEntryRead(text, 4); });
}

ComTransfer::~ComTransfer() {
    ReplyDispatcher& dispatcher = engine_.dispatcher();
    dispatcher.unregisterHandler(QStringLiteral("ca"));
    for (const QString& code : WriteCodes)
        dispatcher.unregisterHandler(code);
    for (const QString& code : ReadCodes)
        dispatcher.unregisterHandler(code);
}

QString ComTransfer::writeCommand(int k) const {
    const QChar kind = link_.NonVolatileWrite[2] ? QLatin1Char('W') : QLatin1Char('T');
    const qint32 v = tables_.value(k);
    // 16-bit columns go out as 4-digit two's complement, the ATC as 8 digits.
    const QString value = ComTables::column(k) == ComTables::Column::Atc ? hex32(v) : hex16(v);
    return engine_.axisPrefix() + columnLetter(k) + kind + hex32(ComTables::number(k)) +
           QLatin1Char(';') + value;
}

void ComTransfer::start(Chain chain, const QString& command) {
    chain_ = chain;
    tablechain::start(engine_, Transfer::Commands, command);
}

void ComTransfer::readAll() {
    tables_.ComIndex = 0;
    start(Chain::ReadAll, engine_.axisPrefix() + QStringLiteral("ca"));
}

bool ComTransfer::writeChanged() {
    const std::optional<int> first = tables_.nextChanged(0);
    if (!first)
        return false;
    tables_.ComIndex = *first;
    start(Chain::Write, writeCommand(*first));
    return true;
}

ReplyStatus ComTransfer::OnComAll(const QString& text) {
    // Taken whole or not at all: a reply cut short or with a field that is not a number would
    // put values into the table the drive does not hold.
    ReplyFields fields(text, ReplyFields::Missing::Malformed);
    std::array<std::optional<qint32>, ComTables::CellCount> values{};
    for (int k = 0; k < ComTables::CellCount; ++k) {
        int start = 0;
        int digits = 4;
        switch (ComTables::column(k)) {
            case ComTables::Column::Velocity:
                start = VelocityStart + 5 * k;
                break;
            case ComTables::Column::Atc:
                start = AtcStart + 9 * ComTables::number(k);
                digits = 8;
                break;
            case ComTables::Column::Torque:
                start = TorqueStart + 5 * ComTables::number(k);
                break;
            case ComTables::Column::None:
                continue;
        }
        values[static_cast<std::size_t>(k)] = fields.number(start, digits);
    }
    if (!fields.ok())
        return ReplyStatus::Malformed;
    for (int k = 0; k < ComTables::CellCount; ++k) {
        if (const auto& value = values[static_cast<std::size_t>(k)])
            tables_.setValue(k, *value);
    }
    tables_.ComChanged.fill(false);
    tables_.Origin = driverules::currentDrive(engine_);
    emit tableRefreshed();
    tablechain::endTableRead(engine_, tables_.ComLoaded, Transfer::Commands, [this] {
        chain_ = Chain::None;
        emit transferFinished(Chain::ReadAll);
    });
    return ReplyStatus::Handled;
}

ReplyStatus ComTransfer::OnComWritten() {
    // The link clears the shared flag when an error reply or a time-out ends the chain.
    if (!link_.run().ComTableTransferActive || chain_ != Chain::Write) {
        engine_.EnableControls(true);
        return ReplyStatus::Handled;
    }
    const int k = tables_.ComIndex;
    if (ComTables::column(k) == ComTables::Column::None)
        return ReplyStatus::Malformed;
    tables_.ComChanged[static_cast<std::size_t>(k)] = false;
    // The next cell goes out first: the window catches up while it is on the line.
    if (const std::optional<int> next = tables_.nextChanged(k + 1)) {
        tables_.ComIndex = *next;
        engine_.SendCommand(writeCommand(*next));
        emit cellWritten(k);
        return ReplyStatus::Handled;
    }
    emit cellWritten(k);
    engine_.HideDialog();
    engine_.pauseTimer1();
    engine_.endTransfer(Transfer::Commands);
    chain_ = Chain::None;
    engine_.EnableControls(true);
    emit transferFinished(Chain::Write);
    engine_.sendPoll();
    engine_.resumeTimer1();
    return ReplyStatus::Handled;
}

ReplyStatus ComTransfer::OnEntryRead(const QString& text, int digits) {
    if (!link_.run().ComTableTransferActive) {
        engine_.EnableControls(true);
        return ReplyStatus::Handled;
    }
    const int k = tables_.ComIndex;
    ReplyFields fields(text, ReplyFields::Missing::Malformed);
    const qint32 value = fields.number(0, digits);
    if (ComTables::column(k) == ComTables::Column::None || !fields.ok())
        return ReplyStatus::Malformed;
    chain_ = Chain::ReadEach;
    tables_.setValue(k, value);
    int next = k + 1;
    if (next == ComTables::NoCell)
        next = ComTables::FirstTorqueCell;
    // The next request goes out first: the window catches up while it is on the line.
    if (next < ComTables::CellCount) {
        tables_.ComIndex = next;
        engine_.SendCommand(engine_.axisPrefix() + columnLetter(next) + QLatin1Char('R') +
                            hex32(ComTables::number(next)));
        emit cellRefreshed(k);
        return ReplyStatus::Handled;
    }
    emit cellRefreshed(k);
    tables_.ComLoaded = true;
    engine_.endTransfer(Transfer::Commands);
    chain_ = Chain::None;
    engine_.EnableControls(true);
    emit transferFinished(Chain::ReadEach);
    engine_.sendPoll();
    return ReplyStatus::Handled;
}

}  // namespace velora
