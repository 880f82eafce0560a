#include "core/link/ReplyAssembly.h"

#include "core/link/WireFormat.h"

namespace velora::assembly {

std::optional<QByteArray> feedCharacter(QByteArray& buffer, char c) {
    if (c == wire::FrameStart) {
        buffer.clear();
        return std::nullopt;
    }
    if (c != wire::FrameEndEtx && c != wire::FrameEnd) {
        buffer.append(c);
        return std::nullopt;
    }
    QByteArray reply;
    reply.swap(buffer);
    return reply;
}

ChunkOutcome feedChunk(QByteArray& buffer, const QByteArray& chunk) {
    // The part already held has no terminator (it would have completed a reply), so only the
    // new bytes need searching: long wave records arrive in many chunks.
    const qsizetype searchFrom = buffer.size();
    buffer.append(chunk);
    if (buffer.isEmpty())
        return {};
    if (buffer.front() != wire::FrameStart) {
        buffer.clear();
        return {};
    }
    qsizetype end = -1;
    for (qsizetype i = searchFrom; i < buffer.size(); ++i) {
        if (buffer.at(i) == wire::FrameEnd || buffer.at(i) == wire::FrameEndEtx) {
            end = i;
            break;
        }
    }
    if (end < 0)
        return {};
    ChunkOutcome outcome;
    outcome.reply = buffer.mid(1, end - 1);
    outcome.dropsRest = true;
    buffer.clear();
    return outcome;
}

}  // namespace velora::assembly
