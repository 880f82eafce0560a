#include "core/params/ParamFile.h"

#include "core/link/ClampReport.h"
#include "core/link/DriveRules.h"
#include "core/link/LinkEngine.h"
#include "core/shared/LinkState.h"
#include "core/shared/NumericText.h"
#include "core/shared/ParamTables.h"
#include "core/shared/SafeFileWrite.h"
#include "core/shared/TextCatalogue.h"

namespace velora {

namespace {

const QByteArray Identification = QByteArrayLiteral("Orvix-Servo parameter file");
const QByteArray IdentificationWithSystem =
    QByteArrayLiteral("Orvix-Servo parameter file with system parameter");
const QByteArray LineEnd = QByteArrayLiteral("\r\n");

// How often a waiting file looks whether the drive's read is still running. The link ends a
// failed read without telling anyone but the shared flag.
constexpr int WatchIntervalMs = 100;

}  // namespace

ParamFile::ParamFile(LinkEngine& engine, ParamTransfer& transfer, ParamTables& tables,
                     QObject* parent)
    : QObject(parent), engine_(engine), transfer_(transfer), tables_(tables) {
    watch_.setInterval(WatchIntervalMs);
    connect(&watch_, &QTimer::timeout, this, &ParamFile::checkDriveRead);
    connect(&transfer_, &ParamTransfer::fileMergeDue, this, &ParamFile::mergeDue);
    connect(&transfer_, &ParamTransfer::chainStarted, this, &ParamFile::onChainStarted);
}

ParamFile::~ParamFile() {
    closeFile();
}

bool ParamFile::write(const QString& path, bool withSystem) {
    if (path.isEmpty())
        return false;
    // Numbers in the C locale whatever the user's: QByteArray::number never groups or localises.
    QByteArray content = (withSystem ? IdentificationWithSystem : Identification) + LineEnd;
    for (int n = 0; n < ParamTables::Count; ++n)
        content += QByteArray::number(tables_.ParamValue[static_cast<std::size_t>(n)]) + LineEnd;
    if (writeFileSafely(path, content))
        return true;
    showAccessError();
    return false;
}

ParamFile::ReadResult ParamFile::read(const QString& path) {
    if (path.isEmpty())
        return ReadResult::Ignored;
    // A file still waiting for a drive read that went nowhere gives way to the new one.
    abandon();
    auto file = std::make_unique<BoundedLineReader>();
    if (file->open(path) != BoundedLineReader::OpenResult::Ok) {
        failAccess();
        return ReadResult::Failed;
    }
    file_ = std::move(file);
    const std::optional<QByteArray> first = nextLine();
    // A first line longer than any identification (UTF-16 text, a binary file) is not one.
    if (!first && !file_->lineTooLong()) {
        failAccess();
        return ReadResult::Failed;
    }
    FileWithSystem = false;
    if (first && *first == IdentificationWithSystem) {
        FileWithSystem = true;
    } else if (!first || *first != Identification) {
        closeFile();
        const Language lang = engine_.state().LanguageId;
        engine_.showError(TextCatalogue::text(lang, Text::MsgIdentificationError1722),
                          TextCatalogue::text(lang, Text::MsgIdentificationErrorCaption1723));
        return ReadResult::Failed;
    }

    const LinkState& link = engine_.state();
    if (!link.Online || !link.run().MonitorRunning)
        return PrmFileRead(false) ? ReadResult::Loaded : ReadResult::Failed;

    tables_.FileReadPending = true;
    lastLoadOk_ = false;
    watch_.start();
    startingRead_ = true;
    transfer_.readAll();
    startingRead_ = false;
    // A user interface that waits in the busy dialog may have merged the file already.
    if (pending())
        return ReadResult::AwaitingDrive;
    return lastLoadOk_ ? ReadResult::Loaded : ReadResult::Failed;
}

bool ParamFile::PrmFileRead(bool compare) {
    const int last = FileWithSystem ? ParamTables::Count - 1 : ParamTables::ServoCount - 1;
    const Language lang = engine_.state().LanguageId;
    ClampReport clamped;
    for (int n = 0; n <= last; ++n) {
        const std::optional<QByteArray> line = nextLine();
        const std::optional<qint32> number =
            line ? toWholeNumber(QString::fromLatin1(*line)) : std::nullopt;
        if (!number) {
            // What was stored before the broken line stays.
            failAccess();
            return false;
        }
        const auto i = static_cast<std::size_t>(n);
        const qint32 old = tables_.ParamValue[i];
        tables_.ParamValue[i] = tables_.clamped(n, *number);
        if (tables_.ParamValue[i] != *number) {
            clamped.add(TextCatalogue::text(lang, Text::MsgParameterNo) + QLatin1Char(' ') +
                            QString::number(n),
                        *number, tables_.ParamValue[i]);
        }
        // Compared with the drive, only what the file changes needs writing.
        const bool marked = !compare || tables_.ParamValue[i] != old;
        if (marked)
            tables_.ParamChanged[i] = true;
        emit valueLoaded(n, marked);
    }
    closeFile();
    tables_.ParamsLoaded = true;
    tables_.Origin = driverules::connectedDrive(engine_);
    lastLoadOk_ = true;
    const bool online = engine_.state().Online;
    if (online)
        engine_.EnableControls(true);
    emit fileLoaded(online);
    clamped.show(engine_);
    return true;
}

void ParamFile::mergeDue() {
    if (!pending()) {
        tables_.FileReadPending = false;
        return;
    }
    PrmFileRead(true);
}

void ParamFile::onChainStarted(ParamTransfer::Chain) {
    // Any other transfer means the read this file waited for is over.
    if (!startingRead_)
        abandon();
}

void ParamFile::checkDriveRead() {
    if (!engine_.state().run().ParamTransferActive)
        abandon();
}

void ParamFile::abandon() {
    if (!pending())
        return;
    closeFile();
    emit fileReadAbandoned();
}

std::optional<QByteArray> ParamFile::nextLine() {
    if (!file_)
        return std::nullopt;
    return file_->next();
}

void ParamFile::closeFile() {
    watch_.stop();
    file_.reset();
    tables_.FileReadPending = false;
}

void ParamFile::failAccess() {
    closeFile();
    showAccessError();
}

void ParamFile::showAccessError() const {
    const Language lang = engine_.state().LanguageId;
    engine_.showError(TextCatalogue::text(lang, Text::MsgFileAccessError),
                      TextCatalogue::text(lang, Text::MsgFileAccessErrorCaption));
}

}  // namespace velora
