#pragma once

#include <QString>

namespace velora {

// What the link does around each two-letter code: whether the sender waits for its reply and
// re-sends it, whether the windows stay locked until the reply, and which replies are routed to
// a family's handler rather than taken as a plain acknowledgement.
namespace commands {

// Sent without waiting for a reply ("ma" is re-sent by the polling cycle, "RT" resets the drive).
[[nodiscard]] bool isSupervised(const QString& code);
// Leaves the windows usable while it is outstanding.
[[nodiscard]] bool locksUi(const QString& code);
// Read-all commands, answered by one long reply: their wait is about two seconds.
[[nodiscard]] bool isReadAll(const QString& code);
// Replies to single writes: the write chain, not the dispatcher, unlocks the windows.
[[nodiscard]] bool isWriteReply(const QString& code);
// Replies that belong to a family's handler; every other reply is an acknowledgement.
[[nodiscard]] bool isRoutedReply(const QString& code);

}  // namespace commands

}  // namespace velora
