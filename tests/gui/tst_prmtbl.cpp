#include "core/params/ParamCatalogue.h"
#include "gui/params/PrmTblWindow.h"
#include "gui/params/SprmTblWindow.h"

#include "ShellRig.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>
#include <QtTest>

using namespace velora;
using namespace Qt::StringLiterals;
using namespace velora::test;

namespace {

QString boxName(int n) {
    return u"TxtPrm(%1)"_s.arg(n);
}

// A "pa" reply of axis 0 carrying value n + 1 for parameter n.
QString readAllReply() {
    QString text = u"0pa"_s;
    for (int n = 0; n < ParamTables::Count; ++n)
        text += u"%1 "_s.arg(n + 1, 8, 16, QLatin1Char('0')).toUpper();
    return text;
}

QRgb baseOf(const QLineEdit* box) {
    return box->palette().color(QPalette::Base).rgb() & 0xFFFFFF;
}

}  // namespace

// The parameter window and the system parameter window inside the main window: what a user
// sees, types and clicks, over a fake port or the simulated drive.
class TestPrmTbl : public QObject {
    Q_OBJECT
private:
    struct Rig : ShellRig {
        using ShellRig::ShellRig;
        [[nodiscard]] PrmTblWindow* prm() const { return find<PrmTblWindow>(u"PrmTbl"_s); }
        [[nodiscard]] QLineEdit* box(int n, const QWidget* in = nullptr) const {
            return find<QLineEdit>(boxName(n), in ? in : find(u"SSTabPrm"_s, prm()));
        }
        [[nodiscard]] QPushButton* button(int i) const {
            return find<QPushButton>(u"Command(%1)"_s.arg(i), prm());
        }
        // Started, with the controls unlocked as the drive's first answer would.
        void startAnswered() {
            start();
            engine().EnableControls(true);
        }
        void type(int n, const QString& text) {
            prm()->findChild<QTabWidget*>(u"SSTabPrm"_s)->setCurrentIndex(n / 10);
            // The busy dialog, once hidden, leaves no window active on the offscreen platform.
            QApplication::setActiveWindow(window.get());
            typeAndLeave(box(n), text);
        }
    };

private slots:
    void showsEveryParameterWithLabelUnitAndButtons() {
        Rig rig;
        rig.start();
        const auto* tabs = rig.prm()->findChild<QTabWidget*>(u"SSTabPrm"_s);
        QCOMPARE(tabs->count(), 6);
        QCOMPARE(tabs->currentIndex(), 0);
        QCOMPARE(tabs->tabText(5), u"50 - 59"_s);
        for (int n = 0; n < 60; ++n) {
            const auto* label = rig.find<QLabel>(u"Label1(%1)"_s.arg(n), rig.prm());
            QVERIFY2(label && label->buddy() == rig.box(n), qPrintable(boxName(n)));
            QCOMPARE(label->text(), ParamCatalogue::label(Language::English, n));
        }
        QVERIFY(rig.find(u"Label2(35)"_s, rig.prm()) && !rig.find(u"Label2(36)"_s, rig.prm()));
        QCOMPARE(rig.box(17)->text(), u"0"_s);
        for (int i = 0; i < 4; ++i)
            QCOMPARE(rig.button(i)->text(),
                     TextCatalogue::text(Language::English, Text::ParamWriteFile, i));

        rig.window->findChild<QAction*>(u"mnuSystemLang(1)"_s)->trigger();
        QCOMPARE(rig.prm()->windowTitle(), ja(Text::CaptionParameter));
        QCOMPARE(rig.find<QLabel>(u"Label1(2)"_s, rig.prm())->text(),
                 ja(Text::Param02Resolution0Num));
        QCOMPARE(rig.button(3)->text(), ja(Text::ParamReadServo));
    }

    // What the table windows have, and a filter: the marks follow an edit, the filter keeps
    // the rows asked for, the caption names the file written, each box explains itself.
    void marksFilterCaptionAndToolTips() {
        Rig rig;
        rig.start();
        auto* tabs = rig.prm()->findChild<QTabWidget*>(u"SSTabPrm"_s);
        rig.type(17, u"5"_s);
        QVERIFY(tabs->tabText(1).endsWith(u"\u25CF"_s) && !tabs->tabText(0).endsWith(u"\u25CF"_s));
        QCOMPARE(rig.find<QLabel>(u"LabelMarked"_s, rig.prm())->text(),
                 en(Text::ParamParametersMarkedWriting) + u"1"_s);
        QCOMPARE(rig.box(20)->toolTip(), ParamCatalogue::label(Language::English, 20) + u"\n"_s +
                                             en(Text::ParamRange).arg(0).arg(2) + u"\n"_s +
                                             en(Text::ParamTakesEffectAfterDrive));
        QVERIFY(rig.box(17)->toolTip().endsWith(en(Text::ParamRange).arg(0).arg(99999) +
                                                u" (Pulse)"_s));

        const auto shown = [&rig] {
            QList<int> numbers;
            for (int n = 0; n < 60; ++n) {
                if (!rig.box(n)->isHidden())
                    numbers << n;
            }
            return numbers;
        };
        auto* filter = rig.find<QLineEdit>(u"TxtPrmFilter"_s, rig.prm());
        filter->setText(u"zrtn  VELOCITY"_s);
        QCOMPARE(shown(), (QList<int>{29, 30}));
        QVERIFY(!tabs->isTabVisible(0) && tabs->currentIndex() == 2);
        filter->setText(u"45"_s);
        QCOMPARE(shown(), QList<int>{45});
        filter->clear();
        rig.find<QCheckBox>(u"ChkChangedOnly"_s, rig.prm())->setChecked(true);
        QCOMPARE(shown(), QList<int>{17});

        const QString path = rig.dir.filePath(u"axis.prm"_s);
        auto* poll = new QTimer(this);
        connect(poll, &QTimer::timeout, poll, [poll, path] {
            if (auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget())) {
                dialog->selectFile(path);
                static_cast<QDialog*>(dialog)->accept();
                poll->deleteLater();
            }
        });
        poll->start(5);
        rig.prm()->Command_Click(PrmTblWindow::WriteFile);
        QCOMPARE(rig.prm()->windowTitle(), en(Text::CaptionParameter) + u" - axis.prm"_s);
    }

    void commandModeAsksThenCouplesWithThePollingStopped() {
        Rig rig;
        rig.start();
        QList<bool> timerDuring;
        rig.window->messageBoxes().setAnswerer([&](const MessageBoxes::Message& message) {
            rig.messages.append(message);
            timerDuring.append(rig.engine().timer1Active());
            return QMessageBox::Ok;
        });
        rig.type(1, u"1"_s);
        QCOMPARE(rig.messages.size(), 2);
        QCOMPARE(rig.messages[0].text, en(Text::MsgChangePrm45With));
        QCOMPARE(rig.messages[0].buttons, QMessageBox::Ok | QMessageBox::Cancel);
        QCOMPARE(rig.messages[0].icon, QMessageBox::Warning);
        QVERIFY(rig.messages[1].text.startsWith(en(Text::MsgParameter45ChangedBelow)));
        QCOMPARE(timerDuring, (QList<bool>{false, false}));
        QVERIFY(rig.engine().timer1Active());
        QCOMPARE(rig.box(45)->text(), u"953"_s);
        QVERIFY(!rig.global.Params.ParamChanged[45]);
    }

    void readServoFillsAndEnablesWriteServoThatSendsTheEdit() {
        Rig rig;
        rig.startAnswered();
        QVERIFY(!rig.button(PrmTblWindow::WriteServo)->isEnabled());
        QVERIFY(!rig.button(PrmTblWindow::WriteFile)->isEnabled());
        QVERIFY(rig.button(PrmTblWindow::ReadServo)->isEnabled());
        rig.type(20, u"5"_s);

        // The edit is dropped only when the user agrees.
        QTest::mouseClick(rig.button(PrmTblWindow::ReadServo), Qt::LeftButton);
        QCOMPARE(rig.messages.last().title, en(Text::MsgUnwrittenChanges));
        QCOMPARE(rig.messages.last().defaultButton, QMessageBox::No);
        rig.ticks(2);
        QVERIFY(!rig.sent().contains(u"0pa"_s) && rig.global.Params.ParamChanged[20]);
        rig.yesNoAnswer = QMessageBox::Yes;
        QTest::mouseClick(rig.button(PrmTblWindow::ReadServo), Qt::LeftButton);
        QVERIFY(QTest::qWaitFor([&rig] {
            rig.ticks(1);
            return rig.sent().contains(u"0pa"_s);
        }));
        QVERIFY(!rig.box(20)->isEnabled());  // locked while the drive answers
        rig.port()->reply(readAllReply());
        QCOMPARE(rig.box(20)->text(), u"21"_s);
        QCOMPARE(baseOf(rig.box(20)), 0xFFFFFFu);
        QCOMPARE(rig.find<QLineEdit>(boxName(9), rig.prm()->systemWindow())->text(), u"70"_s);
        QVERIFY(rig.box(20)->isEnabled());
        QVERIFY(rig.button(PrmTblWindow::WriteServo)->isEnabled());

        rig.type(20, u"2"_s);                      // takes effect after a restart
        QCOMPARE(baseOf(rig.box(20)), 0xFF8080u);  // marked for the write
        QTest::mouseClick(rig.button(PrmTblWindow::WriteServo), Qt::LeftButton);
        const QString write = rig.global.Link.NonVolatileWrite[0] ? u"0PW14;2"_s : u"0PT14;2"_s;
        QVERIFY(QTest::qWaitFor([&rig, &write] {
            rig.ticks(1);
            return rig.sent().contains(write);
        }));
        rig.port()->reply(write.left(3));
        QCOMPARE(baseOf(rig.box(20)), 0xFFFFFFu);
        QVERIFY(!rig.global.Params.ParamChanged[20]);
        QVERIFY(rig.messages.last().text.startsWith(en(Text::MsgParameterWriteFinished)));
        QCOMPARE(rig.messages.last().icon, QMessageBox::Warning);
    }

    void baudRateCautionDefaultsToNo() {
        Rig rig({{"COMSetting/USB-RS232C", "True"}});
        rig.start();
        rig.type(43, u"3"_s);  // 57600 baud, beyond the USB adapter
        QVERIFY(rig.messages.value(0).text.startsWith(en(Text::MsgBaudRate57600bpsSelected)));
        QCOMPARE(rig.messages.value(0).defaultButton, QMessageBox::No);
    }

    void hiddenGestureOpensTheSystemWindowThatRefuses() {
        Rig rig;
        rig.start();
        rig.global.Params.ParamsLoaded = true;
        rig.engine().EnableControls(true);
        SprmTblWindow* sprm = rig.prm()->systemWindow();
        QPushButton* writeFile = rig.button(PrmTblWindow::WriteFile);
        QTest::mouseRelease(writeFile, Qt::MiddleButton,
                            Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier);
        QVERIFY(!sprm->isVisible());
        QTest::mouseRelease(writeFile, Qt::MiddleButton, Qt::ControlModifier | Qt::AltModifier);
        QVERIFY(sprm->isVisible());
        QCOMPARE(sprm->windowTitle(), u"SystemParameter"_s);
        QCOMPARE(rig.find<QLabel>(u"Label1(9)"_s, sprm)->text(),
                 ParamCatalogue::label(Language::Japanese, 69));

        QLineEdit* box69 = rig.box(9, sprm);
        rig.global.Params.ParamValue[69] = 0;
        ShellRig::typeAndLeave(box69, u"5"_s);
        QCOMPARE(box69->text(), u"0"_s);
        QVERIFY(!rig.global.Params.ParamChanged[69]);
        QCOMPARE(baseOf(box69), 0xFFFFFFu);

        QVERIFY(!sprm->close());
        QVERIFY(!sprm->isVisible());
    }
};

QTEST_MAIN(TestPrmTbl)
#include "core/shared/TextId.h"
#include "tst_prmtbl.moc"
