#include "core/comtable/ComFile.h"

#include "core/comtable/ComEdit.h"
#include "core/link/ClampReport.h"
#include "core/link/DriveRules.h"
#include "core/link/LinkEngine.h"
#include "core/link/TableFile.h"
#include "core/shared/BoundedLineReader.h"
#include "core/shared/ComTables.h"
#include "core/shared/FileNumber.h"
#include "core/shared/LinkState.h"
#include "core/shared/TextCatalogue.h"

#include <limits>

namespace velora {

namespace {

const QByteArray Identification = QByteArrayLiteral("Orvix-Servo v/a/t commands file");
const QByteArray LineEnd = QByteArrayLiteral("\r\n");

// The column heading of a cell: " Velocity (rpm)", "  ATC  (ms)", "  Torque  (%x100)".
Text headingText(int k) {
    switch (ComTables::column(k)) {
        case ComTables::Column::Atc:
            return Text::ComTableATCMs;
        case ComTables::Column::Torque:
            return Text::ComTableTorqueX100;
        case ComTables::Column::Velocity:
        case ComTables::Column::None:
            break;
    }
    return Text::ComTableVelocityRpm;
}

}  // namespace

ComFile::ComFile(LinkEngine& engine, ComTables& tables, QObject* parent)
    : QObject(parent), engine_(engine), tables_(tables) {
}

ComFile::~ComFile() = default;

QByteArray ComFile::content() const {
    QByteArray text = Identification + LineEnd;
    for (int k = 0; k < ComTables::CellCount; ++k) {
        if (k != ComTables::NoCell)
            text += QByteArray::number(tables_.value(k)) + LineEnd;
    }
    return text;
}

bool ComFile::write(const QString& path) {
    return tablefile::write(engine_, path, content());
}

ComFile::ReadResult ComFile::read(const QString& path) {
    if (path.isEmpty())
        return ReadResult::Ignored;
    BoundedLineReader file;
    if (!tablefile::open(engine_, file, path, Identification, Text::MsgIdentificationError1736,
                         Text::MsgIdentificationErrorCaption1737))
        return ReadResult::Failed;
    ComEdit edit(tables_);
    const Language lang = engine_.state().LanguageId;
    ClampReport clamped;
    for (int k = 0; k < ComTables::CellCount; ++k) {
        if (k == ComTables::NoCell)
            continue;
        const std::optional<QByteArray> line = file.next();
        const bool wide = ComTables::column(k) == ComTables::Column::Atc;
        const std::optional<qint32> number =
            !line  ? std::nullopt
            : wide ? fileNumber(*line, std::numeric_limits<qint32>::min(),
                                std::numeric_limits<qint32>::max())
                   : fileNumber(*line, std::numeric_limits<qint16>::min(),
                                std::numeric_limits<qint16>::max());
        if (!number) {
            // What was loaded before the broken line stays, with its marks.
            tablefile::showError(engine_, Text::MsgFileAccessError,
                                 Text::MsgFileAccessErrorCaption);
            return ReadResult::Failed;
        }
        tables_.setValue(k, *number);
        // The editor's own check clamps what the cell cannot hold, as if typed.
        const FieldCheck check = edit.leave(k, QString::fromLatin1(*line));
        if (check.value != *number) {
            clamped.add(QStringLiteral("No.%1 %2")
                            .arg(ComEdit::row(k))
                            .arg(TextCatalogue::text(lang, headingText(k)).trimmed()),
                        *number, check.value);
        }
        tables_.ComChanged[static_cast<std::size_t>(k)] = true;
        emit cellLoaded(k, check.shown.value_or(QString::fromLatin1(*line)), check.changed);
    }
    tables_.ComLoaded = true;
    tables_.Origin = driverules::connectedDrive(engine_);
    emit fileLoaded();
    engine_.EnableControls(true);
    clamped.show(engine_);
    return ReadResult::Loaded;
}

}  // namespace velora
