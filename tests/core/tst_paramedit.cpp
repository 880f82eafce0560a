#include "core/params/ParamCatalogue.h"
#include "core/params/ParamEdit.h"
#include "core/params/ParamEditSystem.h"
#include "core/shared/Global.h"
#include "core/shared/NumericText.h"
#include "core/shared/TextCatalogue.h"

#include <QtTest>

using namespace velora;
using K = CautionKind;
Q_DECLARE_METATYPE(velora::CautionKind)

namespace {

QString en(Text id) {
    return TextCatalogue::text(Language::English, id);
}

struct Editor {
    Editor() { InitParamTables(g.Params); }
    qint32& value(int n) { return g.Params.ParamValue.at(static_cast<std::size_t>(n)); }
    bool marked(int n) const { return g.Params.ParamChanged.at(static_cast<std::size_t>(n)); }
    // Leaves box n and answers each caution in turn as the window does; returns what was asked.
    QList<K> leave(int n, const QString& text, QList<bool> answers = {}) {
        EditOutcome out = edit.leave(n, text);
        paused = out.pausePolling;
        QList<K> asked;
        for (; out.caution.kind != K::None; out = edit.answer(answers.value(asked.size() - 1))) {
            asked << out.caution.kind;
            last = out.caution;
        }
        return asked;
    }

    Global g;
    PrmEdit edit{g};
    bool paused = false;
    Caution last;
};

}  // namespace

class TestParamEdit : public QObject {
    Q_OBJECT
private slots:
    void wholeNumbers_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<std::optional<qint32>>("value");
        const std::optional<qint32> no;
        QTest::newRow("blanks, sign") << " +12 " << std::optional(12);
        QTest::newRow("exponent") << "25E-1" << std::optional(2);
        QTest::newRow("half down to even") << "2.5" << std::optional(2);
        QTest::newRow("half up to even") << "-3.5" << std::optional(-4);
        QTest::newRow("just above half") << "2.5000000001" << std::optional(3);
        QTest::newRow("bare point") << ".5" << std::optional(0);
        QTest::newRow("beyond 32 bits") << "99999999999" << std::optional(2147483647);
        QTest::newRow("half beyond") << "-2147483648.5" << std::optional(-2147483647 - 1);
        QTest::newRow("huge exponent") << "-1e999999999999" << std::optional(-2147483647 - 1);
        for (const char* text : {"", " ", "1e", "e3", "1.2.3", "--1", "1 2", "0x10", "1,5", "."})
            QTest::newRow(text) << QString::fromLatin1(text) << no;
    }
    void wholeNumbers() {
        QFETCH(QString, text);
        QFETCH(std::optional<qint32>, value);
        QCOMPARE(toWholeNumber(text), value);
        QCOMPARE(isNumeric(text), value.has_value());
    }

    // Parameter n: servo boxes 0-59 clamp, system boxes 60-119 refuse and restore the old value.
    void leavingABoxClampsOrRefusesAndMarks_data() {
        QTest::addColumn<int>("n");
        QTest::addColumn<qint32>("stored");
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint32>("shown");
        QTest::newRow("last 9 characters, clamped") << 17 << 0 << "1234567890123" << 99999;
        QTest::newRow("02 minimum") << 2 << 5 << "0" << 1;
        QTest::newRow("beyond 32 bits") << 6 << 0 << "-1e12" << -99999999;
        QTest::newRow("not numeric restores") << 11 << 42 << "4x2" << 42;
        QTest::newRow("clamps to the same") << 17 << 99999 << "7e7" << 99999;
        QTest::newRow("69 takes 0") << 69 << 5 << "0" << 0;
        QTest::newRow("93 refuses 201") << 93 << 5 << "201" << 5;
        QTest::newRow("93 takes -200") << 93 << 5 << "-200" << -200;
        QTest::newRow("75 rounded, then checked") << 75 << 5 << "1.5" << 5;
        QTest::newRow("60 not numeric") << 60 << 5 << "x" << 5;
    }
    void leavingABoxClampsOrRefusesAndMarks() {
        QFETCH(int, n);
        QFETCH(qint32, stored);
        QFETCH(QString, text);
        QFETCH(qint32, shown);
        Editor e;
        SprmEdit system(e.g.Params);
        e.value(n) = stored;
        const bool servo = n < 60;
        const EditOutcome out = servo ? e.edit.leave(n, text) : system.leave(n - 60, text);
        QCOMPARE(servo ? e.edit.boxText(n) : system.boxText(n - 60), QString::number(shown));
        const bool changed = shown != stored;
        QCOMPARE(out.changed && e.marked(n), changed);
        // Only the servo window colours a changed box.
        QCOMPARE(out.colour, changed && servo ? std::optional(BoxColour::Edited) : std::nullopt);
        if (servo)
            QVERIFY(out.refreshed.contains(n));
    }

    void tuningPresets() {
        Editor e;
        e.value(10) = 15;
        // Enter takes the stored value, not the text in the box, and always marks 10.
        const KeyOutcome key = e.edit.keyDown(10, FieldKey::Enter);
        QVERIFY(e.marked(10) && key.edit.colour == BoxColour::Edited);
        QCOMPARE(key.edit.refreshed, (QList<int>{11, 12, 13, 14, 15, 16}));
        const auto presets = [&e] {
            return QList<qint32>{e.value(11), e.value(12), e.value(13),
                                 e.value(14), e.value(15), e.value(16)};
        };
        QCOMPARE(presets(), (QList<qint32>{200, 100, 100, 200, 500, 1}));
        QVERIFY(!e.marked(11) && !e.marked(16));
        QVERIFY(e.leave(10, QStringLiteral("3")).isEmpty());
        QCOMPARE(presets(), (QList<qint32>{50, 0, 25, 40, 300, 1}));
        QVERIFY(!e.marked(11));
        // 16 from the drive is one column past the table: Enter selects no preset.
        e.value(10) = 16;
        QVERIFY(e.edit.keyDown(10, FieldKey::Enter).edit.refreshed.isEmpty());
        QCOMPARE(presets(), (QList<qint32>{50, 0, 25, 40, 300, 1}));
    }

    void axisNumberCautionFollowsItsOption_data() {
        QTest::addColumn<bool>("option");
        QTest::newRow("on") << true;
        QTest::newRow("off") << false;
    }
    void axisNumberCautionFollowsItsOption() {
        QFETCH(bool, option);
        Editor e;
        e.g.AxisChangeCaution = option;
        QCOMPARE(e.leave(0, QStringLiteral("3")), option ? QList<K>{K::AxisNumber} : QList<K>{});
        QCOMPARE(e.paused, option);
        QVERIFY(e.marked(0));
        if (option)
            QCOMPARE(e.last.text, en(Text::MsgChangeParameterApplyed) + "\r\n" +
                                      en(Text::MsgAfterRebootingOrvixServo));
    }

    void commandModeCoupling_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<bool>("notice");
        QTest::addColumn<QList<bool>>("answers");
        QTest::addColumn<QList<K>>("asked");
        QTest::newRow("ask, Cancel")
            << 0 << true << QList<bool>{false} << QList<K>{K::ConnectQuestion};
        QTest::newRow("connect") << 1 << true << QList<bool>{true} << QList<K>{K::ConnectNotice};
        QTest::newRow("connect quietly") << 1 << false << QList<bool>{} << QList<K>{};
        QTest::newRow("not connect") << 2 << true << QList<bool>{} << QList<K>{};
    }
    void commandModeCoupling() {
        QFETCH(int, mode);
        QFETCH(bool, notice);
        QFETCH(QList<bool>, answers);
        QFETCH(QList<K>, asked);
        Editor e;
        e.g.Prm1To45Connect = mode;
        e.g.ConnectCautionDialog = notice;
        e.value(45) = 100;
        QCOMPARE(e.leave(1, QStringLiteral("1"), answers), asked);
        QVERIFY(e.paused && e.marked(1));
        const bool connected = mode == 1 || answers.value(0);
        // Declined: 45 keeps its value and is written after 01 to undo the drive's coupling.
        QCOMPARE(e.value(45), connected ? 953 : 100);
        QCOMPARE(e.marked(45), !connected);
        QCOMPARE(e.g.Params.Prm45Undo, !connected);
        if (asked.contains(K::ConnectNotice))
            QCOMPARE(e.last.text, en(Text::MsgParameter45ChangedBelow) + "\r\n953");
        QVERIFY(e.leave(45, QStringLiteral("5")).isEmpty());
        QVERIFY(!e.g.Params.Prm45Undo);  // an edit of 45 is an ordinary change again
    }

    void baudRateCaution_data() {
        QTest::addColumn<bool>("usb");
        QTest::addColumn<qint32>("stored");
        QTest::addColumn<QString>("text");
        QTest::addColumn<Text>("firstLine");  // none: no caution
        QTest::addColumn<bool>("yes");
        QTest::addColumn<qint32>("result");
        QTest::newRow("57600, No")
            << true << 0 << "3" << Text::MsgBaudRate57600bpsSelected << false << 2;
        QTest::newRow("115200, Yes")
            << true << 0 << "4" << Text::MsgBaudRate115200bpsSelected << true << 4;
        QTest::newRow("modulo 8, No")
            << true << 0 << "11" << Text::MsgBaudRate57600bpsSelected << false << 10;
        QTest::newRow("unchanged still asks")
            << true << 12 << "x" << Text::MsgBaudRate115200bpsSelected << false << 10;
        QTest::newRow("38400") << true << 0 << "2" << Text{} << false << 2;
        QTest::newRow("RS-232C") << false << 0 << "4" << Text{} << false << 4;
    }
    void baudRateCaution() {
        QFETCH(bool, usb);
        QFETCH(qint32, stored);
        QFETCH(QString, text);
        QFETCH(Text, firstLine);
        QFETCH(bool, yes);
        QFETCH(qint32, result);
        Editor e;
        e.g.Link.UsbMode = usb;
        e.value(43) = stored;
        QCOMPARE(e.leave(43, text, {yes}),
                 firstLine != Text{} ? QList<K>{K::BaudRate} : QList<K>{});
        QCOMPARE(e.value(43), result);
        QVERIFY(!e.paused);
        QCOMPARE(e.marked(43), stored == 0);  // the answer leaves the edit's mark alone
        if (firstLine != Text{}) {
            QCOMPARE(e.last.text, TextCatalogue::text(Language::English, firstLine) + "\r\n" +
                                      en(Text::MsgBaudRateUnsupported) + "\r\n" +
                                      en(Text::MsgYesIgnore) + "\r\n" + en(Text::MsgNoSet38400bps));
        }
    }

    void focusMovesAndWraps_data() {
        QTest::addColumn<int>("box");
        QTest::addColumn<int>("qtKey");
        QTest::addColumn<int>("focus");
        QTest::newRow("up from the first") << 0 << int(Qt::Key_Up) << 59;
        QTest::newRow("enter on the last") << 59 << int(Qt::Key_Return) << 0;
        QTest::newRow("other key") << 5 << int(Qt::Key_Left) << 5;
    }
    void focusMovesAndWraps() {
        QFETCH(int, box);
        QFETCH(int, qtKey);
        QFETCH(int, focus);
        Editor e;
        const KeyOutcome key = e.edit.keyDown(box, fieldKeyOf(qtKey));
        QCOMPARE(key.focus, focus);
        QCOMPARE(key.tab, focus / 10);
        QCOMPARE(SprmEdit::keyDown(box, fieldKeyOf(qtKey)).focus, focus);
    }
};

QTEST_GUILESS_MAIN(TestParamEdit)
#include "tst_paramedit.moc"
