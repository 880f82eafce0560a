#include "core/pointtable/PointTransfer.h"

#include "core/link/DriveRules.h"
#include "core/link/LinkEngine.h"
#include "core/link/ReplyFields.h"
#include "core/link/TableChain.h"
#include "core/link/WireFormat.h"
#include "core/shared/LinkState.h"
#include "core/shared/PointTables.h"
#include "core/shared/TextCatalogue.h"

#include <array>

namespace velora {

namespace {

// A point block: ModeWord (4 digits), Position (8), Velocity (1), AccConst (1), WaitTime (4),
// each followed by a separator nobody reads.
constexpr int BlockWidth = 23;
constexpr int PositionOffset = 5;
constexpr int VelocityOffset = 14;
constexpr int AccConstOffset = 16;
constexpr int WaitTimeOffset = 18;

const QString PointCodes[] = {QStringLiteral("ta"), QStringLiteral("TR"), QStringLiteral("TW"),
                              QStringLiteral("TT")};

// One point block from a 0-based payload offset.
PointEntry decodeBlock(ReplyFields& fields, int start) {
    PointEntry e;
    e.ModeWord = static_cast<qint16>(fields.number(start, 4));
    UnpackModeWord(e);
    e.Position = fields.number(start + PositionOffset, 8);
    e.Velocity = static_cast<quint8>(fields.number(start + VelocityOffset, 1));
    e.AccConst = static_cast<quint8>(fields.number(start + AccConstOffset, 1));
    e.WaitTime = fields.unsigned32(start + WaitTimeOffset, 4);
    return e;
}

}  // namespace

PointTransfer::PointTransfer(LinkEngine& engine, PointTables& tables, QObject* parent)
    : QObject(parent), engine_(engine), link_(engine.state()), tables_(tables) {
    ReplyDispatcher& dispatcher = engine_.dispatcher();
    dispatcher.registerHandler(PointCodes[0],
                               [this](const QString& text) { return OnPointTableAll(text); });
    dispatcher.registerHandler(PointCodes[1],
                               [this](const QString& text) { return OnPointRead(text); });
    for (const QString& code : {PointCodes[2], PointCodes[3]})
        dispatcher.registerHandler(code, [this](const QString&) { return OnPointWritten(); });
}

PointTransfer::~PointTransfer() {
    for (const QString& code : PointCodes)
        engine_.dispatcher().unregisterHandler(code);
}

QString PointTransfer::writeCode() const {
    return link_.NonVolatileWrite[1] ? QStringLiteral("TW") : QStringLiteral("TT");
}

QString PointTransfer::BuildPointWriteCommand(int point) {
    PointEntry& e = tables_.PointTable.at(static_cast<std::size_t>(point));
    PackModeWord(e);
    const QChar sep = QLatin1Char(';');
    return engine_.axisPrefix() + writeCode() + hex32(point) + sep + hex16(e.ModeWord) + sep +
           hex32(e.Position) + sep + hex32(e.Velocity) + sep + hex32(e.AccConst) + sep +
           hex32(e.WaitTime);
}

bool PointTransfer::chainRunning(Chain chain) const {
    // The link clears the shared flag when an error reply or a time-out ends the chain.
    return link_.run().PointTransferActive && chain_ == chain;
}

void PointTransfer::start(Chain chain, const QString& command) {
    chain_ = chain;
    tablechain::start(engine_, Transfer::Points, command);
}

void PointTransfer::ReadAllPoints() {
    tables_.PointTransferIndex = 0;
    start(Chain::ReadAll, engine_.axisPrefix() + QStringLiteral("ta"));
}

bool PointTransfer::WriteChangedPoints() {
    const std::optional<int> first = tables_.nextChanged(0);
    if (!first)
        return false;
    tables_.PointTransferIndex = *first;
    start(Chain::Write, BuildPointWriteCommand(*first));
    return true;
}

ReplyStatus PointTransfer::OnPointTableAll(const QString& text) {
    // Taken whole whatever state the link is in, or not at all: a reply cut short or with a
    // field that is not a number would put points into the table the drive does not hold.
    ReplyFields fields(text, ReplyFields::Missing::Malformed);
    std::array<PointEntry, PointTables::Count> points{};
    for (int p = 0; p < PointTables::Count; ++p)
        points[static_cast<std::size_t>(p)] = decodeBlock(fields, BlockWidth * p);
    if (!fields.ok())
        return ReplyStatus::Malformed;
    tables_.PointTable = points;
    tables_.PointChanged.fill(false);
    tables_.Origin = driverules::currentDrive(engine_);
    emit tableRefreshed();
    tablechain::endTableRead(engine_, tables_.PointTableValid, Transfer::Points, [this] {
        chain_ = Chain::None;
        emit transferFinished(Chain::ReadAll);
    });
    return ReplyStatus::Handled;
}

ReplyStatus PointTransfer::OnPointRead(const QString& text) {
    if (!link_.run().PointTransferActive) {
        engine_.EnableControls(true);
        return ReplyStatus::Handled;
    }
    const int p = tables_.PointTransferIndex;
    ReplyFields fields(text, ReplyFields::Missing::Malformed);
    const PointEntry entry = decodeBlock(fields, 0);
    if (p < 0 || p >= PointTables::Count || !fields.ok())
        return ReplyStatus::Malformed;
    chain_ = Chain::ReadEach;
    tables_.PointTable[static_cast<std::size_t>(p)] = entry;
    // The next request goes out first: the window catches up while it is on the line.
    if (p < PointTables::Count - 1) {
        tables_.PointTransferIndex = p + 1;
        engine_.SendCommand(engine_.axisPrefix() + QStringLiteral("TR") + hex32(p + 1));
        emit pointRefreshed(p);
        return ReplyStatus::Handled;
    }
    emit pointRefreshed(p);
    engine_.pauseTimer1();
    const Language lang = link_.LanguageId;
    engine_.showNotice(TextCatalogue::text(lang, Text::MsgPointTableReadFinished),
                       TextCatalogue::text(lang, Text::MsgStatus));
    engine_.endTransfer(Transfer::Points);
    tables_.PointTableValid = true;
    chain_ = Chain::None;
    engine_.EnableControls(true);
    emit transferFinished(Chain::ReadEach);
    engine_.sendPoll();
    engine_.resumeTimer1();
    return ReplyStatus::Handled;
}

ReplyStatus PointTransfer::OnPointWritten() {
    if (!chainRunning(Chain::Write)) {
        // A single write of the console's, or a late reply after the chain was ended.
        engine_.EnableControls(true);
        return ReplyStatus::Handled;
    }
    const int p = tables_.PointTransferIndex;
    if (p < 0 || p >= PointTables::Count)
        return ReplyStatus::Malformed;
    tables_.PointChanged[static_cast<std::size_t>(p)] = false;
    // The next point goes out first: the window catches up while it is on the line.
    if (const std::optional<int> next = tables_.nextChanged(p + 1)) {
        tables_.PointTransferIndex = *next;
        engine_.SendCommand(BuildPointWriteCommand(*next));
        emit pointWritten(p);
        return ReplyStatus::Handled;
    }
    emit pointWritten(p);
    engine_.HideDialog();
    engine_.pauseTimer1();
    engine_.EnableControls(true);
    engine_.endTransfer(Transfer::Points);
    chain_ = Chain::None;
    emit transferFinished(Chain::Write);
    engine_.sendPoll();
    engine_.resumeTimer1();
    return ReplyStatus::Handled;
}

}  // namespace velora
