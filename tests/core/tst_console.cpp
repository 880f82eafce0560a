#include "core/console/ConsoleCommands.h"

#include "core/shared/TextCatalogue.h"
#include "support/LinkRig.h"

#include <QtTest>

using namespace velora;
using namespace velora::test;
using namespace Qt::StringLiterals;

// The console's rules: what a button sends, how an argument box corrects itself, and when a
// command leaves at once or waits for the monitor chain.
class TstConsole : public QObject {
    Q_OBJECT
private slots:
    void commandText_data() {
        QTest::addColumn<int>("button");
        QTest::addColumn<QString>("argument");
        QTest::addColumn<QString>("expected");
        QTest::newRow("no argument") << 1 << u"77"_s << u"2ES"_s;
        QTest::newRow("16-bit") << 4 << u"12"_s << u"2SPC"_s;
        QTest::newRow("32-bit negative") << 11 << u"-1"_s << u"2NWFFFFFFFF"_s;
        QTest::newRow("half to even") << 4 << u"2.5"_s << u"2SP2"_s;
        QTest::newRow("not a number") << 11 << u"abc"_s << u"2NW0"_s;
    }
    void commandText() {
        QFETCH(int, button);
        QFETCH(QString, argument);
        QFETCH(QString, expected);
        QCOMPARE(ConsoleCommands::commandText(2, button, argument), expected);
    }

    void argumentBoxCorrection_data() {
        QTest::addColumn<int>("box");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("shown");
        QTest::newRow("below") << 2 << u"-3"_s << u"0"_s;
        QTest::newRow("below, 32-bit") << 1 << u"-100000000"_s << u"-99999999"_s;
        QTest::newRow("within, kept as typed") << 3 << u"4.5"_s << u"4.5"_s;
        QTest::newRow("rounds above the limit") << 3 << u"9.5"_s << u"9"_s;
    }
    void argumentBoxCorrection() {
        QFETCH(int, box);
        QFETCH(QString, typed);
        QFETCH(QString, shown);
        QCOMPARE(ConsoleCommands::TxtNum_LostFocus(box, typed), shown);
    }

    void posting_data() {
        QTest::addColumn<bool>("monitorOn");
        QTest::addColumn<WaveState>("waveState");
        QTest::addColumn<bool>("waits");
        QTest::newRow("monitor off") << false << WaveState::Idle << false;
        QTest::newRow("monitor on") << true << WaveState::Idle << true;
        QTest::newRow("monitor on, wave capture armed") << true << WaveState::Armed << false;
    }
    void posting() {
        QFETCH(bool, monitorOn);
        QFETCH(WaveState, waveState);
        QFETCH(bool, waits);
        LinkRig rig(BackEnd::Rs232, monitorOn);
        rig.engine.setWaveState(waveState);
        ConsoleCommands console(rig.engine);
        console.CmdButton_Click(2, QString());
        console.CmdButton_Click(1, QString());
        if (waits) {
            // Only the last click leaves, with the next turn of the chain.
            QVERIFY(rig.sent().isEmpty());
            QCOMPARE(rig.state.run().QueuedCommand, u"1ES"_s);
        } else {
            QCOMPARE(rig.sent(), (QStringList{u"1SO"_s, u"1ES"_s}));
            QVERIFY(rig.state.run().QueuedCommand.isEmpty());
        }
    }

    void typedText_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<Text>("advice");
        QTest::newRow("sent as typed") << u"0pr77"_s << true << Text{};
        QTest::newRow("empty") << QString() << false << Text{};
        QTest::newRow("delete character")
            << u"1SO\x7f"_s << false << Text::LinkTextHoldsCharacterCannot;
    }
    void typedText() {
        QFETCH(QString, typed);
        QFETCH(bool, accepted);
        QFETCH(Text, advice);
        LinkRig rig;
        rig.engine.queueCommand(u"1SO"_s);
        ConsoleCommands console(rig.engine);
        QCOMPARE(console.CommandSend_Click(typed), accepted);
        // A refused text does not push out the command already waiting.
        QCOMPARE(rig.state.run().QueuedCommand, accepted ? typed : u"1SO"_s);
        QVERIFY(rig.sent().isEmpty());
        QCOMPARE(rig.ui.messages.size(), advice != Text{} ? 1 : 0);
        if (advice != Text{})
            QVERIFY(
                rig.ui.messages[0].text.endsWith(TextCatalogue::text(Language::English, advice)));
    }
};

QTEST_GUILESS_MAIN(TstConsole)
#include "tst_console.moc"
