#include "app/TextCatalogue.h"
#include "params/ParamCatalogue.h"
#include "shared/ParamTables.h"
#include "sim/ParameterCatalogue.h"

#include <QtTest>

using namespace velora;

namespace {
using Unit = ParamCatalogue::Unit;
}  // namespace

// The parameter catalogue's data, checked against independent facts: the simulated drive's own
// table, the presets' ranges, the labels of the text catalogue.
class TestParamCatalogue : public QObject {
    Q_OBJECT
private slots:
    void initResetsValuesAndCopiesCatalogue() {
        ParamTables t;
        t.ParamValue.fill(7);
        t.ParamChanged.fill(true);
        t.ParamsLoaded = true;
        InitParamTables(t);
        // Values stay 0 even where 0 is out of range (02-05, 49, 53): nothing clamps yet.
        QVERIFY(std::all_of(t.ParamValue.begin(), t.ParamValue.end(), [](qint32 v) { return !v; }));
        QVERIFY(!t.nextChanged(0) && !t.ParamsLoaded);
        for (int n = 0; n < ParamTables::Count; ++n) {
            const auto i = static_cast<std::size_t>(n);
            QVERIFY(t.ParamMin[i] == ParamCatalogue::minimum(n) &&
                    t.ParamMax[i] == ParamCatalogue::maximum(n) &&
                    t.ParamRebootSet[i] == ParamCatalogue::needsRestart(n));
        }
        QCOMPARE(t.TuningPreset[4][15], 500);
        QCOMPARE(t.clamped(53, 100), 500);
        QCOMPARE(t.clamped(17, 567890123), 99999);
    }

    void restartSetIsExactlyTheServoParametersThatNeedIt() {
        QList<int> restart;
        for (int n = 0; n < ParamTables::Count; ++n) {
            if (ParamCatalogue::needsRestart(n))
                restart << n;
        }
        QCOMPARE(restart, (QList<int>{0, 1, 2, 3, 4, 5, 20, 27, 28, 38, 43, 45, 46, 48, 49}));
    }

    // The simulated drive keeps its own copy of the ranges and its factory values; both were
    // written apart from ours, so any disagreement is a data error in one of them.
    void agreesWithTheSimulatedDrive() {
        for (int n = 0; n < ParamTables::Count; ++n) {
            const sim::params::Range r = sim::params::range(n);
            QVERIFY2(r.min == ParamCatalogue::minimum(n) && r.max == ParamCatalogue::maximum(n),
                     qPrintable(QString::number(n)));
            QVERIFY2(ParamCatalogue::minimum(n) <= ParamCatalogue::maximum(n),
                     qPrintable(QString::number(n)));
            const qint32 factory = sim::params::factoryValue(n);
            QVERIFY2(factory >= ParamCatalogue::minimum(n) && factory <= ParamCatalogue::maximum(n),
                     qPrintable(QStringLiteral("%1 = %2").arg(n).arg(factory)));
        }
    }

    void presets() {
        for (int column = 0; column < ParamTables::PresetColumns; ++column) {
            for (int row = 0; row < ParamTables::PresetRows; ++row) {
                const int n = ParamCatalogue::FirstPresetParam + row;
                const qint32 v = ParamCatalogue::tuningPreset(row, column);
                QVERIFY2(v >= ParamCatalogue::minimum(n) && v <= ParamCatalogue::maximum(n),
                         qPrintable(QStringLiteral("preset %1 row %2").arg(column).arg(row)));
                // Presets p and p + 8 share the velocity gains and the hold enable.
                if (row >= 2 && column < 8)
                    QCOMPARE(ParamCatalogue::tuningPreset(row, column + 8), v);
            }
        }
        // Parameter 10 selects a column: every value it accepts has one.
        QCOMPARE(ParamCatalogue::maximum(ParamCatalogue::PresetSelect),
                 ParamTables::PresetColumns - 1);
        // Column 15 is seen where Enter on parameter 10 applies it.
        QList<qint32> first;
        for (int row = 0; row < ParamTables::PresetRows; ++row)
            first << ParamCatalogue::tuningPreset(row, 0);
        QCOMPARE(first, (QList<qint32>{50, 0, 5, 15, 70, 1}));
    }

    void commandModeCoupling() {
        const int mode = ParamCatalogue::CommandMode;
        const int enable = ParamCatalogue::CommandEnable;
        QList<qint32> coupled;
        for (qint32 m = ParamCatalogue::minimum(mode); m <= ParamCatalogue::maximum(mode); ++m) {
            const std::optional<qint32> value = ParamCatalogue::commandEnableFor(m);
            QVERIFY(value.has_value());
            QVERIFY(*value >= ParamCatalogue::minimum(enable) &&
                    *value <= ParamCatalogue::maximum(enable));
            coupled << *value;
        }
        QCOMPARE(coupled, (QList<qint32>{100, 953, 5}));
        QVERIFY(!ParamCatalogue::commandEnableFor(-1));
        QVERIFY(!ParamCatalogue::commandEnableFor(3));
    }

    void labelsAndUnits() {
        int units = 0;
        int pulses = 0;
        for (int n = 0; n < ParamTables::Count; ++n) {
            const QString number = QString::number(n).rightJustified(2, QLatin1Char('0'));
            const QString prefix = number + QStringLiteral("：");
            if (n < ParamTables::ServoCount) {
                QCOMPARE(ParamCatalogue::labelTextId(n), std::optional<int>(1500 + n));
                QVERIFY2(ParamCatalogue::label(0, n).startsWith(prefix), qPrintable(number));
                QVERIFY2(ParamCatalogue::label(1, n).startsWith(prefix), qPrintable(number));
            } else {
                QVERIFY(!ParamCatalogue::labelTextId(n));
                // The fixed captions are the same whatever the language.
                QCOMPARE(ParamCatalogue::label(0, n), ParamCatalogue::label(1, n));
                QVERIFY2(ParamCatalogue::label(0, n).startsWith(prefix), qPrintable(number));
                QCOMPARE(ParamCatalogue::unit(n), Unit::None);
            }
            units += ParamCatalogue::unit(n) != Unit::None ? 1 : 0;
            pulses += ParamCatalogue::unit(n) == Unit::Pulse ? 1 : 0;
        }
        // The parameter window has 36 unit labels, 13 of them "(Pulse)".
        QCOMPARE(units, 36);
        QCOMPARE(pulses, 13);
        QCOMPARE(ParamCatalogue::unitText(1, Unit::Pulse), QStringLiteral("(ﾊﾟﾙｽ)"));
        QCOMPARE(ParamCatalogue::unitText(1, ParamCatalogue::unit(33)), QStringLiteral("(%x100)"));
        QVERIFY_THROWS_EXCEPTION(std::out_of_range,
                                 static_cast<void>(ParamCatalogue::minimum(120)));
    }
};

QTEST_APPLESS_MAIN(TestParamCatalogue)
#include "tst_paramcatalogue.moc"
