#pragma once

#include <QString>
#include <Qt>

#include "core/shared/Language.h"

namespace velora {

class LinkEngine;

// One tick of the polling timer: clock and COM indicator, the reply supervision while a command
// is outstanding, otherwise a send slot every second tick (the queued command or the monitor
// poll), link loss after four unanswered polls, and the progress of a long wave record.
class PollingCycle {
public:
    explicit PollingCycle(LinkEngine& engine) : engine_(engine) {}

    void tick();

    // The hidden echo switch on the status bar's COM label: middle button with Ctrl+Alt only.
    void echoSwitch(Qt::MouseButton button, Qt::KeyboardModifiers modifiers);

    // The progress marks for a wave record of the given length so far.
    [[nodiscard]] static QString waveProgressMarks(int receivedLength, Language languageId);

    // Slot polls without any reply before the link counts as lost.
    static constexpr int MaxMissedPolls = 3;

private:
    void sendSlot();
    void showWaveProgress();

    LinkEngine& engine_;
};

}  // namespace velora
