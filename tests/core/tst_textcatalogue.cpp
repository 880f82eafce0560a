#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QStringList>
#include <QTest>

#include <algorithm>
#include <functional>

#include "core/shared/TextCatalogue.h"

using velora::TextCatalogue;

class TstTextCatalogue : public QObject {
    Q_OBJECT

private slots:
    void bothLanguagesHoldTheSameIds() {
        const std::vector<int> ids = TextCatalogue::ids();
        // The lookup bisects, so the table must be strictly ascending.
        QVERIFY(std::adjacent_find(ids.begin(), ids.end(), std::greater_equal<int>()) == ids.end());

        for (const int id : ids) {
            const bool english = id >= 1000 && id <= 1999;
            const bool japanese = id >= 2000 && id <= 2999;
            QVERIFY2(english || japanese, qPrintable(QString::number(id)));
            const int counterpart = english ? id + 1000 : id - 1000;
            QVERIFY2(TextCatalogue::contains(counterpart), qPrintable(QString::number(id)));
            QVERIFY2(!TextCatalogue::LoadText(id).isEmpty(), qPrintable(QString::number(id)));
        }
        QCOMPARE(ids.size(), std::size_t{1118});

        // Ends of the range and gaps between blocks.
        for (const int id : {0, 999, 1009, 1012, 1199, 1917, 1999, 2009, 2917, 3000}) {
            QVERIFY2(!TextCatalogue::contains(id), qPrintable(QString::number(id)));
            QVERIFY2(TextCatalogue::LoadText(id).isNull(), qPrintable(QString::number(id)));
        }
    }

    void idsLookedUpInTheSourcesExist() {
        // text(<language>, NNNN) with a literal base id; the language expression may hold calls.
        static const QRegularExpression textCall(
            QStringLiteral(R"(\btext\s*\(\s*[^,;()]*(?:\([^()]*\)[^,;()]*)*,\s*(\d{4})\s*\))"));
        // LoadText(NNNN), also written as LoadText(<language> * 1000 + NNNN).
        static const QRegularExpression loadTextCall(
            QStringLiteral(R"(\bLoadText\s*\(\s*(?:[^;()]*\*\s*1000\s*\+\s*)?(\d{4})\s*\))"));

        int checked = 0;
        QStringList missing;
        QDirIterator it(QStringLiteral(VELORA_SOURCE_DIR "/src"),
                        {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                        QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = it.next();
            QFile file(path);
            QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(path));
            const QString source = QString::fromUtf8(file.readAll());
            // text() takes the base id; LoadText() the id with its language offset.
            for (const bool offset : {false, true}) {
                auto matches = (offset ? loadTextCall : textCall).globalMatch(source);
                while (matches.hasNext()) {
                    const int id = matches.next().captured(1).toInt();
                    const int base = offset && id >= 2000 ? id - 1000 : id;
                    ++checked;
                    if (!TextCatalogue::contains(base) || !TextCatalogue::contains(base + 1000)) {
                        missing << QStringLiteral("%1: %2").arg(path).arg(id);
                    }
                }
            }
        }
        qInfo("checked %d text lookups in the sources", checked);
        QVERIFY2(missing.isEmpty(), qPrintable(missing.join(QLatin1Char('\n'))));
    }

    void textsAreStoredExactly_data() {
        QTest::addColumn<int>("languageId");
        QTest::addColumn<int>("baseId");
        QTest::addColumn<QString>("expected");

        QTest::newRow("access key kept") << 1 << 1000 << QStringLiteral("ﾌｧｲﾙ(&F)");
        QTest::newRow("full-width colon") << 0 << 1100 << QStringLiteral("Send：");
        QTest::newRow("leading blanks") << 0 << 1250 << QStringLiteral("  Com.  No.");
        QTest::newRow("ideographic space") << 1 << 1713 << QStringLiteral("パラメータ　No.");
        QTest::newRow("trailing blanks")
            << 0 << 1740 << QStringLiteral("Parameter 45 is Changed to the Below Value  ");
        QTest::newRow("busy ja") << 1 << 1805 << QStringLiteral("通信中です……");
    }

    void textsAreStoredExactly() {
        QFETCH(int, languageId);
        QFETCH(int, baseId);
        QFETCH(QString, expected);
        QCOMPARE(TextCatalogue::text(languageId, baseId), expected);
    }
};

QTEST_APPLESS_MAIN(TstTextCatalogue)

#include "tst_textcatalogue.moc"
