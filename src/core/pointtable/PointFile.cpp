#include "core/pointtable/PointFile.h"

#include "core/link/ClampReport.h"
#include "core/link/DriveRules.h"
#include "core/link/LinkEngine.h"
#include "core/link/TableFile.h"
#include "core/shared/BoundedLineReader.h"
#include "core/shared/FileNumber.h"
#include "core/shared/LinkState.h"
#include "core/shared/PointTables.h"
#include "core/shared/TextCatalogue.h"

#include <limits>

namespace velora {

namespace {

const QByteArray Identification = QByteArrayLiteral("Orvix-Servo point table data file");
const QByteArray LineEnd = QByteArrayLiteral("\r\n");

constexpr PointField FileOrder[] = {
    PointField::PosTor,   PointField::AbsInc,   PointField::Position, PointField::Velocity,
    PointField::AccConst, PointField::WaitTime, PointField::NextStart};

// Position and WaitTime are 32-bit fields, the others unsigned bytes.
bool isWide(PointField field) {
    return field == PointField::Position || field == PointField::WaitTime;
}

}  // namespace

PointFile::PointFile(LinkEngine& engine, PointTables& tables, QObject* parent)
    : QObject(parent), engine_(engine), tables_(tables) {
}

PointFile::~PointFile() = default;

QByteArray PointFile::content() const {
    PointEdit edit(tables_);
    QByteArray text = Identification + LineEnd;
    text.reserve(LineCount * 12);
    // QByteArray::number never groups or localises: the C locale whatever the user's.
    for (int p = 0; p < PointTables::Count; ++p) {
        for (const PointField field : FileOrder)
            text += QByteArray::number(edit.value(p, field)) + LineEnd;
    }
    return text;
}

bool PointFile::WritePointFile(const QString& path) {
    return tablefile::write(engine_, path, content());
}

PointFile::ReadResult PointFile::ReadPointFile(const QString& path) {
    if (path.isEmpty())
        return ReadResult::Ignored;
    BoundedLineReader file;
    if (!tablefile::open(engine_, file, path, Identification, Text::MsgIdentificationError1734,
                         Text::MsgIdentificationErrorCaption1735))
        return ReadResult::Failed;
    PointEdit edit(tables_);
    const Language lang = engine_.state().LanguageId;
    ClampReport clamped;
    for (int p = 0; p < PointTables::Count; ++p) {
        for (const PointField field : FileOrder) {
            const std::optional<QByteArray> line = file.next();
            const std::optional<qint32> number =
                !line           ? std::nullopt
                : isWide(field) ? fileNumber(*line, std::numeric_limits<qint32>::min(),
                                             std::numeric_limits<qint32>::max())
                                : fileNumber(*line, 0, std::numeric_limits<quint8>::max());
            if (!number) {
                // What was loaded before the broken line stays, with its marks.
                tablefile::showError(engine_, Text::MsgFileAccessError,
                                     Text::MsgFileAccessErrorCaption);
                return ReadResult::Failed;
            }
            edit.setValue(p, field, *number);
            // The editor's own check clamps what the field cannot hold, as if typed.
            const FieldCheck check = edit.leave(p, field, QString::fromLatin1(*line));
            if (check.value != *number) {
                // Named as the window names the box: its row and its column heading.
                clamped.add(QStringLiteral("Point%1 %2")
                                .arg(p)
                                .arg(TextCatalogue::text(lang, Text::PointTablePosTor,
                                                         static_cast<int>(field))
                                         .trimmed()),
                            *number, check.value);
            }
            emit fieldLoaded(p, field, check.shown.value_or(QString::fromLatin1(*line)),
                             check.changed);
        }
        tables_.PointChanged[static_cast<std::size_t>(p)] = true;
        emit pointLoaded(p);
    }
    tables_.PointTableValid = true;
    tables_.Origin = driverules::connectedDrive(engine_);
    emit fileLoaded();
    engine_.EnableControls(true);
    clamped.show(engine_);
    return ReadResult::Loaded;
}

}  // namespace velora
