#include "core/link/DriveRules.h"

#include "core/link/LinkEngine.h"
#include "core/shared/Global.h"
#include "core/shared/TextCatalogue.h"

#include <QStringList>

#include <algorithm>

namespace velora::driverules {

namespace {

template <typename Marks>
int countOf(const Marks& marks) {
    return static_cast<int>(std::count(marks.cbegin(), marks.cend(), true));
}

// "1 parameter" or "3 parameters": the singular text, else the plural with the number.
QString counted(Language languageId, int count, Text singular) {
    return count == 1 ? TextCatalogue::text(languageId, singular)
                      : TextCatalogue::text(languageId, singular, 1).arg(count);
}

}  // namespace

DriveId currentDrive(const LinkEngine& engine) {
    return {engine.state().AxisNumber, engine.device()};
}

DriveId connectedDrive(const LinkEngine& engine) {
    const LinkState& s = engine.state();
    return s.Online && s.run().PortOpen ? currentDrive(engine) : DriveId{};
}

QString name(Language languageId, const DriveId& drive) {
    if (!drive.known())
        return TextCatalogue::text(languageId, Text::MsgNoneNotReadDrive);
    return TextCatalogue::text(languageId, Text::MsgAxis).arg(drive.axis).arg(drive.device);
}

QString originLine(Language languageId, const DriveId& origin) {
    return TextCatalogue::text(languageId, Text::MsgDrive).arg(name(languageId, origin));
}

const DriveId& origin(const Global& global, Table table) {
    switch (table) {
        case Table::Points:
            return global.Points.Origin;
        case Table::Commands:
            return global.Com.Origin;
        case Table::Params:
            break;
    }
    return global.Params.Origin;
}

std::optional<QString> writeQuestion(const Global& global, const LinkEngine& engine, Table table) {
    const DriveId& from = origin(global, table);
    const DriveId to = currentDrive(engine);
    // A file loaded offline belongs to no drive: writing it is what loading it was for.
    if (!from.known() || from == to)
        return std::nullopt;
    const Language lang = engine.state().LanguageId;
    return TextCatalogue::text(lang, Text::MsgTheseValuesWereRead)
        .arg(name(lang, from), name(lang, to));
}

Unwritten unwritten(const Global& global, std::optional<Table> only) {
    Unwritten marked;
    if (!only || *only == Table::Params)
        marked.params = countOf(global.Params.ParamChanged);
    if (!only || *only == Table::Points)
        marked.points = countOf(global.Points.PointChanged);
    if (!only || *only == Table::Commands)
        marked.commands = countOf(global.Com.ComChanged);
    return marked;
}

QString discardQuestion(Language languageId, const Unwritten& marked) {
    QStringList parts;
    if (marked.params > 0)
        parts << counted(languageId, marked.params, Text::Msg1Parameter);
    if (marked.points > 0)
        parts << counted(languageId, marked.points, Text::Msg1Point);
    if (marked.commands > 0)
        parts << counted(languageId, marked.commands, Text::Msg1CommandTableEntry);
    const QString joined = parts.join(TextCatalogue::text(languageId, Text::MsgAnd));
    return TextCatalogue::text(languageId, marked.total() == 1 ? Text::MsgNotWrittenDriveDiscard
                                                               : Text::MsgAreNotWrittenDrive)
        .arg(joined);
}

}  // namespace velora::driverules
