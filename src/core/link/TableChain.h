#pragma once

#include "core/shared/LinkState.h"

#include <functional>

class QString;

namespace velora {

class LinkEngine;

// The start and the whole-table-read ending that the point table and command table transfers
// share, so that the two chains keep the link in the same state.
namespace tablechain {

// Marks the transfer running, sends its first command and shows the busy dialog.
void start(LinkEngine& engine, Transfer kind, const QString& command);

// Ends a whole-table read once the table has been taken: the table counts as loaded, `finish`
// ends the caller's chain and tells its followers, then the controls come back and the poll
// the read held back goes out again.
void endTableRead(LinkEngine& engine, bool& loaded, Transfer kind,
                  const std::function<void()>& finish);

// The user's Cancel of a running transfer: it ends as an error reply ends it. The outstanding
// command is no longer awaited, every chain stops where it is (what was not yet written stays
// marked), the busy dialog goes, the windows are usable again and the monitor chain resumes.
void cancel(LinkEngine& engine);

}  // namespace tablechain

}  // namespace velora
