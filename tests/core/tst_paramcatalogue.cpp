#include "core/params/ParamCatalogue.h"
#include "core/shared/ParamTables.h"
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
    void initResetsValuesAndClampsToTheCatalogue() {
        ParamTables t;
        t.ParamValue.fill(7);
        t.ParamChanged.fill(true);
        t.ParamsLoaded = true;
        InitParamTables(t);
        // Values stay 0 even where 0 is out of range (02-05, 49, 53): nothing clamps yet.
        QVERIFY(std::all_of(t.ParamValue.begin(), t.ParamValue.end(), [](qint32 v) { return !v; }));
        QVERIFY(!t.nextChanged(0) && !t.ParamsLoaded);
        QCOMPARE(t.clamped(53, 100), 500);
        QCOMPARE(t.clamped(17, 567890123), 99999);
        QVERIFY_THROWS_EXCEPTION(std::out_of_range,
                                 static_cast<void>(ParamCatalogue::minimum(120)));
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

    void presetsAndCouplingStayInRange() {
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
        // Every command mode couples to a valid command enable, and only they do.
        const int mode = ParamCatalogue::CommandMode;
        const int enable = ParamCatalogue::CommandEnable;
        for (qint32 m = ParamCatalogue::minimum(mode); m <= ParamCatalogue::maximum(mode); ++m) {
            const qint32 value = ParamCatalogue::commandEnableFor(m).value_or(-1);
            QVERIFY(value >= ParamCatalogue::minimum(enable) &&
                    value <= ParamCatalogue::maximum(enable));
        }
        QVERIFY(!ParamCatalogue::commandEnableFor(-1));
        QVERIFY(!ParamCatalogue::commandEnableFor(3));
    }

    void labelsStartWithTheNumber() {
        for (int n = 0; n < ParamTables::Count; ++n) {
            const QString prefix = QString::number(n).rightJustified(2, QLatin1Char('0')) + u'：';
            QVERIFY2(ParamCatalogue::label(Language::English, n).startsWith(prefix),
                     qPrintable(prefix));
            QVERIFY2(ParamCatalogue::label(Language::Japanese, n).startsWith(prefix),
                     qPrintable(prefix));
            // System parameters have fixed captions and no unit, whatever the language.
            if (n >= ParamTables::ServoCount) {
                QCOMPARE(ParamCatalogue::label(Language::English, n),
                         ParamCatalogue::label(Language::Japanese, n));
                QCOMPARE(ParamCatalogue::unit(n), Unit::None);
            }
        }
    }
};

QTEST_APPLESS_MAIN(TestParamCatalogue)
#include "core/shared/Language.h"
#include "tst_paramcatalogue.moc"
