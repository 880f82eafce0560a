#pragma once

namespace velora {

// The wave monitor's choices as the settings store keeps them: list indices of its choice lists,
// the trigger position and the zero levels of both channels.
struct WaveMonSettings {
    int VelScale = 2;
    int TqScale = 1;
    int TimeScale = 2;
    int Edge = 0;
    int LgcSel = 0;
    int Wave = 0;
    int Trig = 0;
    int TrgPosition = 128;
    int Zero0 = 50;
    int Zero1 = 50;
};

}  // namespace velora
