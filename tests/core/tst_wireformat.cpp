#include "core/link/WireFormat.h"

#include <QtTest>

using namespace velora;

class TestWireFormat : public QObject {
    Q_OBJECT
private slots:
    // The two readers of reply fields: HexToLong takes four digits as signed 16 bits,
    // HexToLong32 as unsigned; eight digits are 32 bits to both.
    void hexReaders_data() {
        QTest::addColumn<bool>("wide");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("expected");
        QTest::newRow("four digits are signed") << false << "FFFF" << -1;
        QTest::newRow("7FFF") << false << "7FFF" << 32767;
        QTest::newRow("8000") << false << "8000" << -32768;
        QTest::newRow("five digits with zero top half") << false << "0FFFF" << 65535;
        QTest::newRow("eight digits two's complement") << false << "FFFFFF9C" << -100;
        QTest::newRow("six digits") << false << "12345" << 0x12345;
        QTest::newRow("nine digits") << false << "000000064" << 0;
        QTest::newRow("empty") << false << "" << 0;
        QTest::newRow("not hex") << false << "G1" << 0;
        QTest::newRow("stops at non-hex") << false << "1G" << 1;
        QTest::newRow("lower case") << false << "ff9c" << -100;
        QTest::newRow("32: four digits are unsigned") << true << "FFFF" << 65535;
        QTest::newRow("32: keeps the last eight of nine") << true << "1FFFFFFFF" << -1;
        QTest::newRow("32: negative") << true << "FFFFFF9C" << -100;
        QTest::newRow("32: upper half zero") << true << "0000FFFF" << 65535;
        QTest::newRow("32: empty") << true << "" << 0;
    }
    void hexReaders() {
        QFETCH(bool, wide);
        QFETCH(QString, text);
        QFETCH(int, expected);
        QCOMPARE(wide ? HexToLong32(text) : HexToLong(text), expected);
    }

    void hexWriters() {
        // No padding; negative values in two's complement of their width.
        QCOMPARE(hex32(100), QStringLiteral("64"));
        QCOMPARE(hex32(0), QStringLiteral("0"));
        QCOMPARE(hex16(-100), QStringLiteral("FF9C"));
        // What is written reads back the same.
        for (const int value : {-32768, -1, 0, 1, 32767})
            QCOMPARE(HexToLong(hex16(value)), value);
        for (const int value : {-2000000000, -100, 100, 2000000000})
            QCOMPARE(HexToLong(hex32(value)), value);
    }

    void commandTextChecks() {
        QCOMPARE(wire::checkCommandText(QString(30, QLatin1Char('A'))), wire::TextCheck::Ok);
        QCOMPARE(wire::checkCommandText(QString(31, QLatin1Char('A'))), wire::TextCheck::TooLong);
        QCOMPARE(wire::checkCommandText(QStringLiteral(" 1SO~")), wire::TextCheck::Ok);
        for (const QString& bad :
             {QStringLiteral("1PW\x03"), QStringLiteral("1SO\x7F"), QStringLiteral("1SO\u00E9")})
            QCOMPARE(wire::checkCommandText(bad), wire::TextCheck::BadCharacter);
    }

    // Polling codes are the lower-case ones; "F" or axis 15 addresses every drive.
    void pollingCodesAndBroadcast() {
        for (const char* code : {"ma", "ca", "PR", "za", "a"})
            QCOMPARE(wire::isPollingCode(QLatin1String(code)), code[0] == 'm' || code[0] == 'c');
        QVERIFY(wire::isBroadcast(QStringLiteral("fSO"), 0));
        QVERIFY(wire::isBroadcast(QStringLiteral("1SO"), 15));
        QVERIFY(!wire::isBroadcast(QStringLiteral("ESO"), 14));
    }
};

QTEST_APPLESS_MAIN(TestWireFormat)
#include "tst_wireformat.moc"
