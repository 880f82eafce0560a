#include "core/params/ParamTransfer.h"

#include "core/link/DriveRules.h"
#include "core/link/LinkEngine.h"
#include "core/link/ReplyFields.h"
#include "core/link/WireFormat.h"
#include "core/params/ParamCatalogue.h"
#include "core/shared/LinkState.h"
#include "core/shared/ParamTables.h"
#include "core/shared/TextCatalogue.h"

#include <algorithm>
#include <array>
#include <limits>

namespace velora {

namespace {

// Reply text: axis character, two-letter code, then the data.
constexpr int DataStart = 3;
// Each value of the read-all reply is 8 hex digits and a separator nobody reads.
constexpr int FieldDigits = 8;
constexpr int FieldWidth = 9;

bool isParamNumber(int n) {
    return n >= 0 && n < ParamTables::Count;
}

}  // namespace

ParamTransfer::ParamTransfer(LinkEngine& engine, ParamTables& tables, QObject* parent)
    : QObject(parent), engine_(engine), link_(engine.state()), tables_(tables) {
    ReplyDispatcher& dispatcher = engine_.dispatcher();
    dispatcher.registerHandler(QStringLiteral("pa"),
                               [this](const QString& text) { return OnParamAll(text); });
    dispatcher.registerHandler(QStringLiteral("PR"),
                               [this](const QString& text) { return OnParamRead(text); });
    for (const QString& code : {QStringLiteral("PW"), QStringLiteral("PT")}) {
        dispatcher.registerHandler(code, [this](const QString&) { return OnParamWritten(); });
    }
}

ParamTransfer::~ParamTransfer() {
    ReplyDispatcher& dispatcher = engine_.dispatcher();
    for (const QString& code :
         {QStringLiteral("pa"), QStringLiteral("PR"), QStringLiteral("PW"), QStringLiteral("PT")}) {
        dispatcher.unregisterHandler(code);
    }
}

QString ParamTransfer::writeCode() const {
    return link_.NonVolatileWrite[0] ? QStringLiteral("PW") : QStringLiteral("PT");
}

QString ParamTransfer::writeCommand(int n) const {
    return engine_.axisPrefix() + writeCode() + hex32(n) + QLatin1Char(';') +
           hex32(tables_.ParamValue.at(static_cast<std::size_t>(n)));
}

QString ParamTransfer::readCommand(int n) const {
    return engine_.axisPrefix() + QStringLiteral("PR") + hex32(n);
}

bool ParamTransfer::chainRunning(Chain chain) const {
    // The link clears the shared flag when an error reply or a time-out ends the chain.
    return link_.run().ParamTransferActive && chain_ == chain;
}

void ParamTransfer::start(Chain chain, const QString& command) {
    emit chainStarted(chain);
    chain_ = chain;
    engine_.beginTransfer(Transfer::Params);
    if (!engine_.PostCommand(command)) {
        engine_.endTransfer(Transfer::Params);
        chain_ = Chain::None;
        return;
    }
    engine_.ShowBusyDialog();
}

void ParamTransfer::readAll() {
    ParamIndex = 0;
    start(Chain::ReadAll, engine_.axisPrefix() + QStringLiteral("pa"));
}

bool ParamTransfer::writeChanged() {
    const std::optional<int> first = tables_.nextChanged(0);
    if (!first)
        return false;
    ParamIndex = *first;
    RebootList = TextCatalogue::text(link_.LanguageId, Text::MsgParameterNo);
    RebootListUsed = false;
    start(Chain::Write, writeCommand(*first));
    return true;
}

void ParamTransfer::readEach() {
    ParamIndex = 0;
    start(Chain::ReadEach, readCommand(0));
}

ReplyStatus ParamTransfer::OnParamAll(const QString& text) {
    // A reply that lost characters would shift every later field: take none of it, nor of one
    // with a field that is not a number.
    if (text.size() < DataStart + ParamTables::Count * FieldWidth)
        return ReplyStatus::Malformed;
    ReplyFields fields(text, ReplyFields::Missing::Malformed);
    std::array<qint32, ParamTables::Count> values{};
    for (int n = 0; n < ParamTables::Count; ++n)
        values[static_cast<std::size_t>(n)] = fields.number(FieldWidth * n, FieldDigits);
    if (!fields.ok())
        return ReplyStatus::Malformed;
    // Stored as received: the drive's values are not clamped to the host's ranges.
    std::copy(values.begin(), values.end(), tables_.ParamValue.begin());
    tables_.ParamChanged.fill(false);
    tables_.Origin = driverules::currentDrive(engine_);
    emit valuesRefreshed();
    engine_.HideDialog();
    if (tables_.FileReadPending)
        emit fileMergeDue();
    tables_.ParamsLoaded = true;
    engine_.endTransfer(Transfer::Params);
    chain_ = Chain::None;
    emit transferFinished(Chain::ReadAll);
    engine_.EnableControls(true);
    engine_.sendPoll();
    return ReplyStatus::Handled;
}

ReplyStatus ParamTransfer::OnParamRead(const QString& text) {
    if (!chainRunning(Chain::ReadEach)) {
        if (link_.run().LastCommand.mid(1) == QLatin1String("PR77"))
            return identify(text);
        engine_.EnableControls(true);
        return ReplyStatus::Handled;
    }
    ReplyFields fields(text, ReplyFields::Missing::ReadAsZero);
    const QString field = fields.field(0, FieldDigits);
    if (!fields.ok() || field.isEmpty() || !isParamNumber(ParamIndex))
        return ReplyStatus::Malformed;
    tables_.ParamValue[static_cast<std::size_t>(ParamIndex)] = HexToLong(field);
    emit valueRefreshed(ParamIndex);
    const int last = systemWindowShown_ ? ParamTables::Count - 1 : ParamTables::ServoCount - 1;
    if (ParamIndex >= last) {
        endReadEach();
    } else {
        ++ParamIndex;
        engine_.SendCommand(readCommand(ParamIndex));
    }
    return ReplyStatus::Handled;
}

ReplyStatus ParamTransfer::identify(const QString& text) {
    ReplyFields fields(text, ReplyFields::Missing::ReadAsZero);
    const QString field = fields.field(0, FieldDigits);
    const qint32 version = HexToLong(field);
    // The version is kept as a 16-bit number; anything wider is not a version.
    if (!fields.ok() || field.isEmpty() || version < std::numeric_limits<qint16>::min() ||
        version > std::numeric_limits<qint16>::max()) {
        return ReplyStatus::Malformed;
    }
    link_.DriverVersion = version;
    emit identified(version);
    if (link_.run().Searching)
        emit portSearchSucceeded();
    engine_.EnableControls(true);
    return ReplyStatus::Handled;
}

ReplyStatus ParamTransfer::OnParamWritten() {
    if (!chainRunning(Chain::Write)) {
        // A single write of its own (the reply wait of the comm settings): only unlock.
        engine_.EnableControls(true);
        return ReplyStatus::Handled;
    }
    const int n = ParamIndex;
    if (!isParamNumber(n))
        return ReplyStatus::Malformed;
    const auto i = static_cast<std::size_t>(n);
    tables_.ParamChanged[i] = false;
    emit parameterWritten(n);
    // Parameter 45 written only to undo the coupling to 01 changes nothing the drive must
    // restart for.
    const bool needsRestart =
        tables_.ParamRebootSet[i] && (n != ParamCatalogue::CommandEnable || !tables_.Prm45Undo);
    if (needsRestart) {
        RebootList += QLatin1Char(' ') + QString::number(n) + QLatin1Char(',');
        RebootListUsed = true;
    }
    if (const std::optional<int> next = tables_.nextChanged(n + 1)) {
        ParamIndex = *next;
        engine_.SendCommand(writeCommand(*next));
    } else {
        endWrite();
    }
    return ReplyStatus::Handled;
}

void ParamTransfer::endWrite() {
    engine_.HideDialog();
    engine_.pauseTimer1();
    if (RebootListUsed) {
        RebootList.chop(1);  // the comma after the last number
        const Language lang = link_.LanguageId;
        const QString crlf = QStringLiteral("\r\n");
        engine_.showWarning(TextCatalogue::text(lang, Text::MsgParameterWriteFinished) + crlf +
                                crlf + RebootList + crlf +
                                TextCatalogue::text(lang, Text::MsgChangesTheseParametersApplyed) +
                                crlf + TextCatalogue::text(lang, Text::MsgAfterRebootingOrvixServo),
                            TextCatalogue::text(lang, Text::MsgStatus));
    }
    engine_.EnableControls(true);
    engine_.endTransfer(Transfer::Params);
    chain_ = Chain::None;
    emit transferFinished(Chain::Write);
    engine_.sendPoll();
    engine_.resumeTimer1();
}

void ParamTransfer::endReadEach() {
    engine_.endTransfer(Transfer::Params);
    chain_ = Chain::None;
    tables_.ParamsLoaded = true;
    engine_.HideDialog();
    engine_.EnableControls(true);
    emit transferFinished(Chain::ReadEach);
    engine_.sendPoll();
}

}  // namespace velora
