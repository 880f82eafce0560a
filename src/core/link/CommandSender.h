#pragma once

#include "core/link/WireFormat.h"

#include <QString>

#include <functional>

namespace velora {

class LinkEngine;

// The one way commands leave: SendCommand sends now, PostCommand waits for the next free slot of
// the monitor chain. Also the reply supervision that each polling tick runs while a supervised
// command is outstanding: re-sends, and the Retry/Cancel question after the fifth.
class CommandSender {
public:
    explicit CommandSender(LinkEngine& engine) : engine_(engine) {}

    // Both return false, having sent and queued nothing, when the command cannot reach the
    // drive (offline, port closed, or a text no frame can carry); the user has been told why.
    bool SendCommand(const QString& text);
    bool PostCommand(const QString& text);
    // Whether text can travel in one frame; when not, the user is told why and what to do.
    [[nodiscard]] bool admits(const QString& text);

    // One tick of supervision. Returns true when the tick was spent on a port search step.
    bool supervise();
    // Ticks a command may wait for its reply before it is re-sent.
    [[nodiscard]] int waitLimit() const;

    // A supervised command was answered after re-sends: each earlier frame may still bring a
    // late answer of the same code, which the next command of that code would take for its
    // own. Its frame is held back for as long as those answers may take.
    void answeredAfterResends();
    // Counts one polling tick of the hold; writes the held frame when the hold is over.
    void countTick();
    // A frame that has not been on the line yet cannot be answered.
    [[nodiscard]] bool frameHeld() const { return !heldFrame_.isEmpty(); }
    // Counts every command given to SendCommand, so a reply can be tied to the one it answers.
    [[nodiscard]] quint64 sequence() const { return sequence_; }

    // The port search runs one step per tick while its probe is unanswered.
    void setPortSearchStep(std::function<void()> step) { portSearchStep_ = std::move(step); }

    static constexpr int MaxResends = 5;

private:
    // A text that cannot travel in one frame is refused with a message, never cut.
    void refuse(const QString& text, wire::TextCheck why);
    // Offline or without an open port nothing reaches the wire: said at once, so that no
    // window waits for a reply that cannot come.
    [[nodiscard]] bool reachable() const;
    void communicationFailure();

    LinkEngine& engine_;
    std::function<void()> portSearchStep_;
    quint64 sequence_ = 0;
    int holdTicks_ = 0;
    QString lateAnswersOf_;
    QString heldFrame_;
};

}  // namespace velora
