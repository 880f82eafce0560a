#include "sim/AlarmState.h"

#include <algorithm>

namespace velora::sim {

bool AlarmState::raise(int number) {
    if (number < 1 || number > AlarmCount)
        return false;
    const int bit = 1 << (number - 1);
    if ((mask_ & bit) != 0)
        return true;
    mask_ |= bit;
    std::rotate(history_.rbegin(), history_.rbegin() + 1, history_.rend());
    history_[0] = number;
    return true;
}

int AlarmState::code() const {
    for (int n = 1; n <= AlarmCount; ++n) {
        if ((mask_ & (1 << (n - 1))) != 0)
            return n;
    }
    return 0;
}

}  // namespace velora::sim
