#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <functional>

#include "core/shared/TextCatalogue.h"

using velora::Language;
using velora::Text;
using velora::TextCatalogue;

class TstTextCatalogue : public QObject {
    Q_OBJECT

private slots:
    void bothLanguagesHoldEveryName() {
        const std::vector<Text> names = TextCatalogue::names(Language::English);
        QVERIFY(names == TextCatalogue::names(Language::Japanese));
        // The lookup bisects, so the table must be strictly ascending.
        QVERIFY(std::adjacent_find(names.begin(), names.end(), std::greater_equal<Text>()) ==
                names.end());
        for (const Text name : names) {
            const int id = static_cast<int>(name);
            QVERIFY2(id >= 1000 && id <= 1999, qPrintable(QString::number(id)));
            QVERIFY2(!TextCatalogue::text(Language::English, name).isEmpty(),
                     qPrintable(QString::number(id)));
            QVERIFY2(!TextCatalogue::text(Language::Japanese, name).isEmpty(),
                     qPrintable(QString::number(id)));
        }
        QCOMPARE(names.size(), std::size_t{559});

        // Every name declared has its rows: a name without one would compile and show nothing.
        QFile header(QStringLiteral(VELORA_SOURCE_DIR "/src/core/shared/TextId.h"));
        QVERIFY(header.open(QIODevice::ReadOnly));
        static const QRegularExpression declared(QStringLiteral(R"(^\s*(\w+) = (\d+),)"),
                                                 QRegularExpression::MultilineOption);
        int count = 0;
        for (auto m = declared.globalMatch(QString::fromUtf8(header.readAll())); m.hasNext();
             ++count) {
            const auto match = m.next();
            const Text name = static_cast<Text>(match.captured(2).toInt());
            QVERIFY2(std::binary_search(names.begin(), names.end(), name),
                     qPrintable(match.captured(1)));
        }
        QCOMPARE(std::size_t(count), names.size());

        // Ends of the range and gaps between blocks yield nothing, in either language.
        for (const int id : {0, 999, 1009, 1012, 1199, 1917, 1999, 2009, 3000}) {
            QVERIFY2(TextCatalogue::text(Language::English, static_cast<Text>(id)).isNull(),
                     qPrintable(QString::number(id)));
            QVERIFY2(TextCatalogue::text(Language::Japanese, static_cast<Text>(id)).isNull(),
                     qPrintable(QString::number(id)));
        }
    }

    void textsAreStoredExactly_data() {
        QTest::addColumn<Language>("language");
        QTest::addColumn<Text>("name");
        QTest::addColumn<QString>("expected");

        QTest::newRow("access key kept")
            << Language::Japanese << Text::MenuFile << QStringLiteral("ﾌｧｲﾙ(&F)");
        QTest::newRow("full-width colon")
            << Language::English << Text::ConsoleSendLabel << QStringLiteral("Send：");
        QTest::newRow("leading blanks")
            << Language::English << Text::ComTableComNo << QStringLiteral("  Com.  No.");
        QTest::newRow("ideographic space")
            << Language::Japanese << Text::MsgParameterNo << QStringLiteral("パラメータ　No.");
        QTest::newRow("trailing blanks")
            << Language::English << Text::MsgParameter45ChangedBelow
            << QStringLiteral("Parameter 45 is Changed to the Below Value  ");
        QTest::newRow("busy ja") << Language::Japanese << Text::LinkCommunicating
                                 << QStringLiteral("通信中です……");
    }

    void textsAreStoredExactly() {
        QFETCH(Language, language);
        QFETCH(Text, name);
        QFETCH(QString, expected);
        QCOMPARE(TextCatalogue::text(language, name), expected);
    }
};

QTEST_APPLESS_MAIN(TstTextCatalogue)

#include "tst_textcatalogue.moc"
