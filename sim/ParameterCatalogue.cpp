#include "sim/ParameterCatalogue.h"

#include <array>

namespace velora::sim::params {

namespace {

struct Entry {
    qint32 min;
    qint32 max;
    qint32 factory;
};

constexpr qint32 Big = 99999999;

// Ranges as the drive checks them; factory values of a freshly set up drive.
constexpr std::array<Entry, Count> Table{{
    {0, 14, 0},             // 00 axis no. (replaced by the drive's own axis)
    {0, 2, 0},              // 01 command mode select
    {1, 65535, 10000},      // 02 resolution 0 num.
    {1, 65536, 10000},      // 03 resolution 0 den.
    {1, 65535, 1},          // 04 resolution 1 num.
    {1, 65535, 1},          // 05 resolution 1 den.
    {-Big, Big, Big},       // 06 software +OT
    {-Big, Big, -Big},      // 07 software -OT
    {0, 3000, 500},         // 08 save current
    {0, 999999, 1000},      // 09 current save time
    {0, 15, 2},             // 10 preset servo tuning
    {0, 9999, 50},          // 11 pos. P gain
    {0, 9999, 0},           // 12 pos. FFD gain
    {0, 9999, 15},          // 13 vel. P gain
    {0, 9999, 30},          // 14 vel. D gain
    {0, 9999, 200},         // 15 vel. I gain
    {0, 1, 1},              // 16 hold state IG enable
    {0, 99999, 50000},      // 17 max deviation
    {0, 99999, 10},         // 18 inposition area
    {0, 4500, 10},          // 19 press mode stable area
    {0, 2, 0},              // 20 input pulse type
    {1, 4500, 100},         // 21 jog velocity
    {1, 999999, 100},       // 22 jog accel time const.
    {-Big, Big, 1000},      // 23 step pulse 0
    {-Big, Big, -1000},     // 24 step pulse 1
    {-Big, Big, 10000},     // 25 step pulse 2
    {-Big, Big, -10000},    // 26 step pulse 3
    {0, 5, 0},              // 27 zero return type
    {0, 1, 0},              // 28 ZRTN direction
    {1, 4500, 500},         // 29 ZRTN high velocity
    {1, 4500, 50},          // 30 ZRTN low velocity
    {1, 999999, 100},       // 31 ZRTN accel time const.
    {0, Big, 0},            // 32 ZRTN last run pulse
    {0, 15000, 3000},       // 33 ZRTN push torque
    {0, 4500, 100},         // 34 press mode vel. limit
    {0, 4500, 100},         // 35 press escape vel. limit
    {1, 999999, 100},       // 36 press mode vel. ATC
    {1, 999999, 100},       // 37 press trq inc/dec ATC
    {0, 1, 0},              // 38 velocity control drive
    {0, 1000, 0},           // 39 ALM output time const
    {1, 1000, 2},           // 40 Z pulse output time
    {0, 999, 1},            // 41 input filter time const
    {0, 9999, 0},           // 42 pulse smoothing TC
    {0, 255, 0},            // 43 COM. format
    {0, 999, 2},            // 44 COM. reply wait time
    {0, 1023, 100},         // 45 COM. command enable
    {0, 7, 0},              // 46 input pin function bit
    {0, 9999, 0},           // 47 servo free delay time
    {0, 1, 0},              // 48 rotation direction
    {24, 36, 24},           // 49 motor voltage
    {0, 300, 100},          // 50 openloop max velocity
    {0, 512, 100},          // 51 openloop drive area
    {0, 9999, 10},          // 52 INP-out sample time
    {500, 999999, 500},     // 53 startup hold time
    {-Big, Big, 1},         // 54 point number multiplier
    {-Big, Big, 0},         // 55 reserved
    {-Big, Big, 0},         // 56
    {-Big, Big, 0},         // 57
    {-Big, Big, 0},         // 58
    {-Big, Big, 0},         // 59
    {0, 6, 0},              // 60 motor select
    {0, 9999, 100},         // 61
    {0, 9999, 200},         // 62
    {0, 2133333, 1000},     // 63
    {0, 9999, 50},          // 64
    {0, 9999, 0},           // 65
    {0, 9999, 100},         // 66
    {0, 9999, 0},           // 67
    {0, 9999, 0},           // 68
    {0, 0, 0},              // 69 excitation phase buffer
    {0, 3000, 1000},        // 70
    {0, 999, 512},          // 71
    {0, 999, 512},          // 72
    {0, 999999, 1000},      // 73
    {0, 999999, 1000},      // 74
    {0, 1, 1},              // 75
    {0, 1, 0},              // 76
    {-999999, 999999, 0},   // 77
    {-999999, 999999, 0},   // 78
    {1, 999999, 100},       // 79
    {1, 999999, 150},       // 80
    {1, 999999, 250},       // 81
    {0, 999999, 0},         // 82
    {0, 999, 10},           // 83
    {0, 999, 20},           // 84
    {0, 999, 30},           // 85
    {0, 999, 10},           // 86
    {0, 999, 20},           // 87
    {0, 999, 30},           // 88
    {0, 999, 10},           // 89
    {0, 999, 20},           // 90
    {0, 999, 30},           // 91
    {0, 999999, 0},         // 92
    {-200, 200, 0},         // 93
    {0, 1, 1},              // 94
    {0, 1, 0},              // 95
    {0, 999, 60},           // 96
    {0, 999, 120},          // 97
    {0, 1, 0},              // 98
    {0, 999999, 1},         // 99
    {0, 1920000, 0},        // 100
    {0, 1920000, 1920000},  // 101
    {0, 1023, 800},         // 102
    {0, 2133333, 1000},     // 103
    {-Big, Big, 0},         // 104
    {-Big, Big, 0},         // 105
    {-Big, Big, 0},         // 106
    {-Big, Big, 0},         // 107
    {-Big, Big, 0},         // 108
    {-Big, Big, 0},         // 109
    {-Big, Big, 0},         // 110
    {-Big, Big, 0},         // 111
    {-Big, Big, 0},         // 112
    {-Big, Big, 0},         // 113
    {-Big, Big, 0},         // 114
    {-Big, Big, 0},         // 115
    {-Big, Big, 0},         // 116
    {-Big, Big, 0},         // 117
    {-Big, Big, 0},         // 118
    {-Big, Big, 110},       // 119 driver software version x 100
}};

}  // namespace

Range range(int n) {
    const Entry& e = Table.at(static_cast<std::size_t>(n));
    return {e.min, e.max};
}

qint32 factoryValue(int n) {
    return Table.at(static_cast<std::size_t>(n)).factory;
}

bool inRange(int n, qint64 value) {
    if (n < 0 || n >= Count)
        return false;
    const Range r = range(n);
    return value >= r.min && value <= r.max;
}

int baudFromComFormat(qint32 value) {
    static constexpr std::array<int, 5> Rates{9600, 19200, 38400, 57600, 115200};
    const int index = value % 8;  // the sign follows the value, as the drive computes it
    if (index < 0 || index >= static_cast<int>(Rates.size()))
        return Rates[0];
    return Rates[static_cast<std::size_t>(index)];
}

}  // namespace velora::sim::params
