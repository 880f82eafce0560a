#pragma once

#include <QByteArray>

#include <optional>

namespace velora {

// Turning received bytes into reply texts. Both work on the caller's receive buffer, which stays
// visible between calls so the polling cycle can watch a long reply arrive.
namespace assembly {

// RS-232C: one character at a time. STX starts a reply afresh, ETX or EOT completes it; the
// completed text (without frame bytes) is returned and the buffer cleared.
[[nodiscard]] std::optional<QByteArray> feedCharacter(QByteArray& buffer, char c);

// USB-RS232C: one chunk at a time. The buffer must begin with STX, or it is dropped. The first
// ETX or EOT completes the reply; what follows it in the chunk is dropped (dropsRest tells the
// back-end to clear its receive spool).
struct ChunkOutcome {
    std::optional<QByteArray> reply;
    bool dropsRest = false;
};
[[nodiscard]] ChunkOutcome feedChunk(QByteArray& buffer, const QByteArray& chunk);

}  // namespace assembly

}  // namespace velora
