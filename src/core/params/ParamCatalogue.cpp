#include "core/params/ParamCatalogue.h"

#include "core/shared/ParamTables.h"
#include "core/shared/TextCatalogue.h"

#include <array>

namespace velora {

namespace {

using Unit = ParamCatalogue::Unit;

struct Entry {
    qint32 min;
    qint32 max;
    bool restart;
    Unit unit;
};

constexpr qint32 Big = 99999999;
constexpr bool Restart = true;
constexpr bool Live = false;

constexpr std::array<Entry, ParamTables::Count> Entries{{
    {0, 14, Restart, Unit::None},            // 00 Axis No.
    {0, 2, Restart, Unit::None},             // 01 Command Mode Select
    {1, 65535, Restart, Unit::Pulse},        // 02 Resolution 0 Num.
    {1, 65536, Restart, Unit::Pulse},        // 03 Resolution 0 Den.
    {1, 65535, Restart, Unit::Pulse},        // 04 Resolution 1 Num.
    {1, 65535, Restart, Unit::Pulse},        // 05 Resolution 1 Den.
    {-Big, Big, Live, Unit::Pulse},          // 06 Software +OT
    {-Big, Big, Live, Unit::Pulse},          // 07 Software -OT
    {0, 3000, Live, Unit::MilliAmpere},      // 08 Save Current
    {0, 999999, Live, Unit::Millisecond},    // 09 Current Save Time
    {0, 15, Live, Unit::None},               // 10 Preset Servo Tuning
    {0, 9999, Live, Unit::None},             // 11 Pos. P Gain
    {0, 9999, Live, Unit::None},             // 12 Pos.FFD Gain
    {0, 9999, Live, Unit::None},             // 13 Vel.P Gain
    {0, 9999, Live, Unit::None},             // 14 Vel.D Gain
    {0, 9999, Live, Unit::None},             // 15 Vel. I Gain
    {0, 1, Live, Unit::None},                // 16 Hold State IG Enable
    {0, 99999, Live, Unit::Pulse},           // 17 Max Deviation
    {0, 99999, Live, Unit::Pulse},           // 18 Inposition Area
    {0, 4500, Live, Unit::Rpm},              // 19 Press Mode Stable Area
    {0, 2, Restart, Unit::None},             // 20 Input Pulse Type
    {1, 4500, Live, Unit::Rpm},              // 21 Jog Velocity
    {1, 999999, Live, Unit::Millisecond},    // 22 Jog Accel Time Const.
    {-Big, Big, Live, Unit::Pulse},          // 23 STEP Pulse 0
    {-Big, Big, Live, Unit::Pulse},          // 24 STEP Pulse 1
    {-Big, Big, Live, Unit::Pulse},          // 25 STEP Pulse 2
    {-Big, Big, Live, Unit::Pulse},          // 26 STEP Pulse 3
    {0, 5, Restart, Unit::None},             // 27 Zero Return Type
    {0, 1, Restart, Unit::None},             // 28 ZRTN Direction
    {1, 4500, Live, Unit::Rpm},              // 29 ZRTN High Velocity
    {1, 4500, Live, Unit::Rpm},              // 30 ZRTN Low Velocity
    {1, 999999, Live, Unit::Millisecond},    // 31 ZRTN Accel Time Const.
    {0, Big, Live, Unit::Pulse},             // 32 ZRTN Last Run Pulse
    {0, 15000, Live, Unit::PercentX100},     // 33 ZRTN Push Torque
    {0, 4500, Live, Unit::Rpm},              // 34 Press Mode Vel. Limit
    {0, 4500, Live, Unit::Rpm},              // 35 Press Escape Vel. Limit
    {1, 999999, Live, Unit::Millisecond},    // 36 Press Mode Vel. ATC
    {1, 999999, Live, Unit::Millisecond},    // 37 Press Trq Inc/Dec ATC
    {0, 1, Restart, Unit::None},             // 38 Velocity Control Drive
    {0, 1000, Live, Unit::Millisecond},      // 39 ALM Output Time Const
    {1, 1000, Live, Unit::Millisecond},      // 40 Z pulse Output Time
    {0, 999, Live, Unit::Millisecond},       // 41 Input Filter Time Const
    {0, 9999, Live, Unit::Millisecond},      // 42 Pulse Smoothing TC
    {0, 255, Restart, Unit::None},           // 43 COM. Format
    {0, 999, Live, Unit::Millisecond},       // 44 COM. Reply Wait Time
    {0, 1023, Restart, Unit::None},          // 45 COM. Command Enable
    {0, 7, Restart, Unit::None},             // 46 Input Pin Function Bit
    {0, 9999, Live, Unit::Millisecond},      // 47 ServoFree Delay Time
    {0, 1, Restart, Unit::None},             // 48 Rotation Direction
    {24, 36, Restart, Unit::Volt},           // 49 Motor Voltage
    {0, 300, Live, Unit::Rpm},               // 50 Openloop Max Velocity
    {0, 512, Live, Unit::None},              // 51 Openloop Drive Area
    {0, 9999, Live, Unit::Millisecond},      // 52 INP-Out Sample Time
    {500, 999999, Live, Unit::Millisecond},  // 53 Startup Hold Time
    {-Big, Big, Live, Unit::None},           // 54 PointNumber Multilplier
    {-Big, Big, Live, Unit::None},           // 55 Reserved
    {-Big, Big, Live, Unit::None},           // 56 Reserved
    {-Big, Big, Live, Unit::None},           // 57 Reserved
    {-Big, Big, Live, Unit::None},           // 58 Reserved
    {-Big, Big, Live, Unit::None},           // 59 Reserved
    {0, 6, Live, Unit::None},                // 60 motor select
    {0, 9999, Live, Unit::None},             // 61 current proportional gain at standstill
    {0, 9999, Live, Unit::None},             // 62 current proportional gain while moving
    {0, 2133333, Live, Unit::None},          // 63 pulse drive area
    {0, 9999, Live, Unit::None},             // 64 current integral gain
    {0, 9999, Live, Unit::None},             // 65 current derivative gain
    {0, 9999, Live, Unit::None},             // 66 velocity feed-forward coefficient
    {0, 9999, Live, Unit::None},             // 67 position integral gain
    {0, 9999, Live, Unit::None},             // 68 position derivative gain
    {0, 0, Live, Unit::None},                // 69 excitation phase buffer
    {0, 3000, Live, Unit::None},             // 70 current during Z search
    {0, 999, Live, Unit::None},              // 71 phase A current detection reference
    {0, 999, Live, Unit::None},              // 72 phase B current detection reference
    {0, 999999, Live, Unit::None},           // 73 phase A current detection slope
    {0, 999999, Live, Unit::None},           // 74 phase B current detection slope
    {0, 1, Live, Unit::None},                // 75 torque ripple compensation on/off
    {0, 1, Live, Unit::None},                // 76 position compensation on/off
    {-999999, 999999, Live, Unit::None},     // 77 position compensation offset, forward rotation
    {-999999, 999999, Live, Unit::None},     // 78 position compensation offset, reverse rotation
    {1, 999999, Live, Unit::None},           // 79 torque constant, motor type R610
    {1, 999999, Live, Unit::None},           // 80 torque constant, motor type R611
    {1, 999999, Live, Unit::None},           // 81 torque constant, motor type R625
    {0, 999999, Live, Unit::None},           // 82 d-axis current while positioning
    {0, 999, Live, Unit::None},              // 83 lead-angle compensation constant 1, R610
    {0, 999, Live, Unit::None},              // 84 lead-angle compensation constant 2, R610
    {0, 999, Live, Unit::None},              // 85 lead-angle compensation constant 3, R610
    {0, 999, Live, Unit::None},              // 86 lead-angle compensation constant 1, R611
    {0, 999, Live, Unit::None},              // 87 lead-angle compensation constant 2, R611
    {0, 999, Live, Unit::None},              // 88 lead-angle compensation constant 3, R611
    {0, 999, Live, Unit::None},              // 89 lead-angle compensation constant 1, R625
    {0, 999, Live, Unit::None},              // 90 lead-angle compensation constant 2, R625
    {0, 999, Live, Unit::None},              // 91 lead-angle compensation constant 3, R625
    {0, 999999, Live, Unit::None},           // 92 positioning wait time
    {-200, 200, Live, Unit::None},           // 93 lead-angle offset, reverse rotation
    {0, 1, Live, Unit::None},                // 94 velocity detection filter enable
    {0, 1, Live, Unit::None},                // 95 pulse-width velocity detection enable
    {0, 999, Live, Unit::None},              // 96 electronic thermal time constant
    {0, 999, Live, Unit::None},              // 97 electronic thermal operating level
    {0, 1, Live, Unit::None},                // 98 torque command filter enable
    {0, 999999, Live, Unit::None},           // 99 torque command filter time
    {0, 1920000, Live, Unit::None},          // 100 torque command filter lower limit
    {0, 1920000, Live, Unit::None},          // 101 torque command filter upper limit
    {0, 1023, Live, Unit::None},             // 102 thermistor temperature detection threshold
    {0, 2133333, Live, Unit::None},          // 103 velocity integral gain break-point velocity
    {-Big, Big, Live, Unit::None},           // 104 open-loop control fixed at standstill
    {-Big, Big, Live, Unit::None},           // 105 automatic current detection reference
    {-Big, Big, Live, Unit::None},           // 106 wave monitor position deviation display
    {-Big, Big, Live, Unit::None},           // 107 reserved
    {-Big, Big, Live, Unit::None},           // 108 reserved
    {-Big, Big, Live, Unit::None},           // 109 reserved
    {-Big, Big, Live, Unit::None},           // 110 reserved
    {-Big, Big, Live, Unit::None},           // 111 reserved
    {-Big, Big, Live, Unit::None},           // 112 reserved
    {-Big, Big, Live, Unit::None},           // 113 reserved
    {-Big, Big, Live, Unit::None},           // 114 reserved
    {-Big, Big, Live, Unit::None},           // 115 reserved
    {-Big, Big, Live, Unit::None},           // 116 reserved
    {-Big, Big, Live, Unit::None},           // 117 reserved
    {-Big, Big, Live, Unit::None},           // 118 reserved
    {-Big, Big, Live, Unit::None},           // 119 driver software version
}};

// Captions of the system parameters 60-119, shown as they are whatever the language.
constexpr std::array<const char16_t*, ParamTables::Count - ParamTables::ServoCount> SystemCaptions{{
    u"60：モータ選択",
    u"61：停止時電流比例ｹﾞｲﾝ",
    u"62：移動時電流比例ｹﾞｲﾝ",
    u"63：ﾊﾟﾙｽ駆動領域",
    u"64：電流積分ゲイン",
    u"65：電流微分ゲイン",
    u"66：速度ﾌｨｰﾄﾞﾌｫﾜｰﾄﾞ係数",
    u"67：位置積分ゲイン",
    u"68：位置微分ゲイン",
    u"69：励磁位相ﾊﾞｯﾌｧ",
    u"70：Zサーチ時電流",
    u"71：A相電流検出基準値",
    u"72：B相電流検出基準値",
    u"73：A相電流検出傾き",
    u"74：B相電流検出傾き",
    u"75：ﾄﾙｸ脈動補償ON/OFF",
    u"76：位置補償ON/OFF",
    u"77：正転時位置補償ｵﾌｾｯﾄ",
    u"78：逆転時位置補償ｵﾌｾｯﾄ",
    u"79：R610トルク定数",
    u"80：R611トルク定数",
    u"81：R625トルク定数",
    u"82：位置決め時d軸電流",
    u"83：R610進み角補償定数1",
    u"84：R610進み角補償定数2",
    u"85：R610進み角補償定数3",
    u"86：R611進み角補償定数1",
    u"87：R611進み角補償定数2",
    u"88：R611進み角補償定数3",
    u"89：R625進み角補償定数1",
    u"90：R625進み角補償定数2",
    u"91：R625進み角補償定数3",
    u"92：位置決めウェイト時間",
    u"93：逆転時進み角ｵﾌｾｯﾄ",
    u"94：速度検出ﾌｨﾙﾀｲﾈｰﾌﾞﾙ",
    u"95：ﾊﾟﾙｽ幅速度検出ｲﾈｰﾌﾞﾙ",
    u"96：電子ｻｰﾏﾙ熱時定数",
    u"97：電子ｻｰﾏﾙ動作ﾚﾍﾞﾙ",
    u"98：ﾄﾙｸ指令ﾌｨﾙﾀｲﾈｰﾌﾞﾙ",
    u"99：ﾄﾙｸ指令ﾌｨﾙﾀ時限",
    u"100：ﾄﾙｸ指令ﾌｨﾙﾀ下限",
    u"101：ﾄﾙｸ指令ﾌｨﾙﾀ上限",
    u"102：ｻｰﾐｽﾀ温度検出閾値",
    u"103：速度積分ｹﾞｲﾝ折点速度",
    u"104：停止時ｵｰﾌﾟﾝ制御固定",
    u"105：電流検出基準値自動",
    u"106：波形ﾓﾆﾀ位置偏差表示",
    u"107：予備",
    u"108：予備",
    u"109：予備",
    u"110：予備",
    u"111：予備",
    u"112：予備",
    u"113：予備",
    u"114：予備",
    u"115：予備",
    u"116：予備",
    u"117：予備",
    u"118：予備",
    u"119：ﾄﾞﾗｲﾊﾞｿﾌﾄｳｪｱﾊﾞｰｼﾞｮﾝ",
}};

// Row r belongs to parameter 11 + r; presets p and p + 8 differ only in the position gains.
constexpr std::array<std::array<qint32, ParamTables::PresetColumns>, ParamTables::PresetRows>
    Presets{{
        {50, 50, 50, 50, 50, 50, 50, 50, 200, 200, 200, 200, 200, 200, 200, 200},
        {0, 0, 0, 0, 0, 0, 0, 0, 100, 100, 100, 100, 100, 100, 100, 100},
        {5, 10, 15, 25, 40, 50, 75, 100, 5, 10, 15, 25, 40, 50, 75, 100},
        {15, 20, 30, 40, 60, 100, 150, 200, 15, 20, 30, 40, 60, 100, 150, 200},
        {70, 100, 200, 300, 300, 350, 400, 500, 70, 100, 200, 300, 300, 350, 400, 500},
        {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1},
    }};

// Parameter 45 (the commands the drive accepts) for command modes 0, 1 and 2.
constexpr std::array<qint32, 3> CommandEnableOfMode{100, 953, 5};

const Entry& entry(int n) {
    return Entries.at(static_cast<std::size_t>(n));
}

}  // namespace

qint32 ParamCatalogue::minimum(int n) {
    return entry(n).min;
}

qint32 ParamCatalogue::maximum(int n) {
    return entry(n).max;
}

bool ParamCatalogue::needsRestart(int n) {
    return entry(n).restart;
}

ParamCatalogue::Unit ParamCatalogue::unit(int n) {
    return entry(n).unit;
}

QString ParamCatalogue::unitText(Language languageId, Unit unit) {
    switch (unit) {
        case Unit::None:
            return {};
        case Unit::Pulse:
            return TextCatalogue::text(languageId, Text::ParamPulse);
        case Unit::MilliAmpere:
            return QStringLiteral("(mA)");
        case Unit::Millisecond:
            return QStringLiteral("(ms)");
        case Unit::Rpm:
            return QStringLiteral("(rpm)");
        case Unit::PercentX100:
            return QStringLiteral("(%x100)");
        case Unit::Volt:
            return QStringLiteral("(V)");
    }
    return {};
}

QString ParamCatalogue::label(Language languageId, int n) {
    if (n >= 0 && n < ParamTables::ServoCount)
        return TextCatalogue::text(languageId, Text::Param00AxisNo, n);
    return QString::fromUtf16(
        SystemCaptions.at(static_cast<std::size_t>(n - ParamTables::ServoCount)));
}

qint32 ParamCatalogue::tuningPreset(int row, int column) {
    return Presets.at(static_cast<std::size_t>(row)).at(static_cast<std::size_t>(column));
}

std::optional<qint32> ParamCatalogue::commandEnableFor(qint32 commandMode) {
    if (commandMode < 0 || commandMode >= static_cast<qint32>(CommandEnableOfMode.size()))
        return std::nullopt;
    return CommandEnableOfMode[static_cast<std::size_t>(commandMode)];
}

void InitParamTables(ParamTables& tables) {
    tables = ParamTables{};
    for (int n = 0; n < ParamTables::Count; ++n) {
        const auto i = static_cast<std::size_t>(n);
        tables.ParamMin[i] = entry(n).min;
        tables.ParamMax[i] = entry(n).max;
        tables.ParamRebootSet[i] = entry(n).restart;
    }
    tables.TuningPreset = Presets;
}

}  // namespace velora
