#include "core/connect/PortSearch.h"
#include "support/FakeLinkUi.h"

#include "ShellRig.h"

#include <QtTest>

using namespace velora;
using namespace Qt::StringLiterals;
using velora::test::ShellPort;

namespace {

// A link on axis 2 at 19200 baud with the monitor off, and a port search over fake ports.
struct SearchRig {
    explicit SearchRig(bool usb) {
        state.UsbMode = usb;
        state.AxisNumber = 2;
        state.BaudRate = u"19200"_s;
        state.RealTimeMonitor = false;
        applyBackEnd(engine, factory);
        engine.start(250);
        search.setEndHandler([this](PortSearch::Outcome outcome) { outcomes << outcome; });
    }

    [[nodiscard]] ShellPort* port() const { return static_cast<ShellPort*>(engine.transport()); }
    [[nodiscard]] QList<int> rates() const {
        QList<int> opened;
        for (const auto& open : port()->opens)
            opened << open.second;
        return opened;
    }
    // Ticks until the search ends; the number of ticks it took.
    int runOut(int limit = 1000) {
        int n = 0;
        while (search.running() && n < limit) {
            engine.tick();
            ++n;
        }
        return n;
    }

    LinkState state;
    test::FakeLinkUi ui;
    LinkEngine engine{state, ui, LinkEngine::Ticks::Manual};
    bool refuse = false;
    TransportFactory factory = [this](BackEnd backEnd, LinkState& s) {
        return std::make_unique<ShellPort>(s, backEnd, refuse);
    };
    PortSearch search{engine, factory};
    QList<PortSearch::Outcome> outcomes;
};

QStringList probes(int rates) {
    QStringList texts;
    for (int r = 0; r < rates; ++r) {
        for (int axis = 0; axis <= 14; ++axis)
            texts << u"%1PR77"_s.arg(axis, 0, 16).toUpper();
    }
    return texts;
}

}  // namespace

// The port search over the link engine, without windows.
class TestPortSearch : public QObject {
    Q_OBJECT
private slots:
    void searchProbesEveryAxisAtEveryRate_data() {
        QTest::addColumn<bool>("usb");
        QTest::addColumn<QList<int>>("rates");
        QTest::newRow("RS-232C") << false << QList<int>{9600, 19200, 38400, 57600, 115200};
        QTest::newRow("USB adapter") << true << QList<int>{9600, 19200, 38400};
    }
    void searchProbesEveryAxisAtEveryRate() {
        QFETCH(bool, usb);
        QFETCH(QList<int>, rates);
        SearchRig rig(usb);
        rig.port()->opens.clear();
        rig.port()->frames.clear();
        rig.search.start(rig.state.UsbMode);
        QVERIFY(rig.state.run().Searching);
        QVERIFY(rig.state.run().AwaitingReply);
        const int ticks = rig.runOut();

        QCOMPARE(rig.port()->sentTexts(), probes(static_cast<int>(rates.size())));
        // Two ticks per probe: one to wait, one to step on.
        QCOMPARE(ticks, 2 * 15 * static_cast<int>(rates.size()));
        QCOMPARE(rig.outcomes, QList<PortSearch::Outcome>{PortSearch::Outcome::NotFound});
        // The link is handed back at the rate it had.
        QCOMPARE(rig.rates(), rates << 19200);
        QCOMPARE(rig.state.BaudRate, u"19200"_s);
        QCOMPARE(rig.state.AxisNumber, 2);
        QVERIFY(!rig.state.run().Searching);
        QVERIFY(!rig.state.run().AwaitingReply);
    }

    void cancelHandsTheLinkBack() {
        SearchRig rig(false);
        rig.state.AxisNumber = 15;
        rig.state.AlarmSeen = true;
        rig.search.start(rig.state.UsbMode);
        // Probes are supervised even for an all-axes setting or a pending alarm.
        QVERIFY(rig.state.run().AwaitingReply);
        QCOMPARE(rig.state.AxisNumber, 0);
        for (int i = 0; i < 70; ++i)
            rig.engine.tick();
        QCOMPARE(rig.state.BaudRate, u"38400"_s);
        rig.search.cancel();
        QCOMPARE(rig.outcomes, QList<PortSearch::Outcome>{PortSearch::Outcome::Cancelled});
        QCOMPARE(rig.state.AxisNumber, 15);
        QCOMPARE(rig.state.BaudRate, u"19200"_s);
        QCOMPARE(rig.rates().last(), 19200);
        QVERIFY(!rig.state.run().AwaitingReply);
    }

    void portThatCannotOpenEndsTheSearch() {
        SearchRig rig(true);
        rig.refuse = true;
        rig.port()->frames.clear();
        rig.search.start(rig.state.UsbMode);
        QCOMPARE(rig.outcomes, QList<PortSearch::Outcome>{PortSearch::Outcome::NotFound});
        QVERIFY(rig.port()->frames.isEmpty());
        QVERIFY(!rig.state.run().Searching);
    }
};

QTEST_MAIN(TestPortSearch)
#include "tst_portsearch.moc"
