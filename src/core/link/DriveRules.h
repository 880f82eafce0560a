#pragma once

#include "core/shared/DriveId.h"
#include "core/shared/Language.h"

#include <QString>

#include <optional>

namespace velora {

class LinkEngine;
struct Global;

// The rules that keep data on the right drive and edits from being dropped unasked, shared by
// the windows and the command line: which drive the link talks to now, whether a table may go
// to it without a question, and what is still waiting to be written.
namespace driverules {

// The tables a rule looks at.
enum class Table { Params, Points, Commands };

// The drive the link addresses now: its axis and the device the settings open.
[[nodiscard]] DriveId currentDrive(const LinkEngine& engine);
// The same while the link is online with its port open; no drive otherwise. A file loaded
// now belongs to this drive.
[[nodiscard]] DriveId connectedDrive(const LinkEngine& engine);

// "axis 0 (/dev/ttyS0)", or the words for no drive.
[[nodiscard]] QString name(Language languageId, const DriveId& drive);
// The line a table window shows: "Drive: axis 0 (/dev/ttyS0)".
[[nodiscard]] QString originLine(Language languageId, const DriveId& origin);

[[nodiscard]] const DriveId& origin(const Global& global, Table table);
// The question before writing `table` to the drive of the moment, naming both drives; none
// when the table came from that drive or from no drive at all.
[[nodiscard]] std::optional<QString> writeQuestion(const Global& global, const LinkEngine& engine,
                                                   Table table);

// Entries marked for writing, per table.
struct Unwritten {
    int params = 0;
    int points = 0;
    int commands = 0;
    [[nodiscard]] int total() const { return params + points + commands; }
};
// What is marked in every table, or only in `only`.
[[nodiscard]] Unwritten unwritten(const Global& global, std::optional<Table> only = std::nullopt);
// "3 parameters and 2 points are not written to the drive. Discard them?"
[[nodiscard]] QString discardQuestion(Language languageId, const Unwritten& marked);

}  // namespace driverules

}  // namespace velora
